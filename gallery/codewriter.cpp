#include "codewriter.h"

#include "propertyeditor.h"
#include "samples.h"
#include "valueeditor.h"
#include "widgetcatalogue.h"

#include <QtCore/QLocale>
#include <QtCore/QMetaProperty>
#include <QtGui/QColor>
#include <QtGui/QFont>
#include <QtGui/QIcon>
#include <QtGui/QKeySequence>
#include <QtGui/QPixmap>
#include <QtWidgets/QWidget>

namespace {

constexpr int comparedSide = 48;

QImage imageOf(const QVariant &value)
{
    if (value.userType() == QMetaType::QIcon)
        return value.value<QIcon>().pixmap(comparedSide).toImage();
    return value.value<QPixmap>().toImage();
}

bool isImage(const QVariant &value)
{
    return value.userType() == QMetaType::QIcon || value.userType() == QMetaType::QPixmap;
}

bool equal(const QVariant &a, const QVariant &b, bool isEnum)
{
    if (isEnum)
        return ValueEditor::numberOf(a) == ValueEditor::numberOf(b);
    if (isImage(a))
        return imageOf(a) == imageOf(b);
    return a == b;
}

/// Where the library keeps the image @p value; empty for another one.
QString fileOf(const QVariant &value)
{
    const auto path = [](const QString &name) {
        return QStringLiteral(":/Images/%1.png").arg(name);
    };
    const QImage image = imageOf(value);
    if (image.isNull())
        return {};
    for (const Sample<QPixmap> &sample : samplePixmaps()) {
        const QVariant known = value.userType() == QMetaType::QIcon
                                   ? QVariant(QIcon(sample.picture))
                                   : QVariant(sample.picture);
        if (!QPixmap(path(sample.name)).isNull() && imageOf(known) == image)
            return path(sample.name);
    }
    return {};
}

QStringList enumeratorsOf(const QMetaEnum &type, int number)
{
    const QString scope = QString::fromLatin1(type.scope()) + QStringLiteral("::");
    QStringList names;
    if (type.isFlag()) {
        const QByteArray keys = type.valueToKeys(number);
        for (const QByteArray &key : keys.split('|')) {
            if (!key.isEmpty())
                names.append(scope + QString::fromLatin1(key));
        }
    } else if (const char *key = type.valueToKey(number)) {
        names.append(scope + QString::fromLatin1(key));
    }
    return names;
}

QString capitalized(const QString &name)
{
    return name.at(0).toUpper() + name.mid(1);
}

QString cppString(const QString &text)
{
    QString escaped;
    for (const QChar c : text) {
        if (c == QLatin1Char('"') || c == QLatin1Char('\\'))
            escaped += QLatin1Char('\\') + QString(c);
        else if (c.unicode() < 0x20)
            escaped += QStringLiteral("\\%1").arg(int(c.unicode()), 3, 8, QLatin1Char('0'));
        else
            escaped += c;
    }
    return QStringLiteral("QStringLiteral(\"%1\")").arg(escaped);
}

QString cppNumber(double number)
{
    const QString text = QString::number(number, 'g', QLocale::FloatingPointShortest);
    const bool isWhole = !text.contains(QLatin1Char('.')) && !text.contains(QLatin1Char('e'));
    return isWhole ? text + QStringLiteral(".0") : text;
}

QString cppColor(const QColor &color)
{
    if (!color.isValid())
        return QStringLiteral("QColor()");
    const QString alpha =
        color.alpha() == 255 ? QString() : QStringLiteral(", %1").arg(color.alpha());
    return QStringLiteral("QColor(%1, %2, %3%4)")
        .arg(color.red())
        .arg(color.green())
        .arg(color.blue())
        .arg(alpha);
}

/// @p setting's value as an expression; empty for a value that has none.
QString cppValue(const WidgetSettings::Setting &setting)
{
    const QVariant &value = setting.value;
    if (!setting.enumerators.isEmpty())
        return setting.enumerators.join(QStringLiteral(" | "));
    const auto pair = [](const char *type, int a, int b) {
        return QStringLiteral("%1(%2, %3)").arg(QLatin1String(type)).arg(a).arg(b);
    };
    switch (value.userType()) {
    case QMetaType::Bool:
        return value.toBool() ? QStringLiteral("true") : QStringLiteral("false");
    case QMetaType::Double:
    case QMetaType::Float:
        return cppNumber(value.toDouble());
    case QMetaType::QString:
        return cppString(value.toString());
    case QMetaType::QColor:
        return cppColor(value.value<QColor>());
    case QMetaType::QPoint:
        return pair("QPoint", value.toPoint().x(), value.toPoint().y());
    case QMetaType::QSize:
        return pair("QSize", value.toSize().width(), value.toSize().height());
    case QMetaType::QKeySequence:
        return QStringLiteral("QKeySequence(%1)")
            .arg(cppString(value.value<QKeySequence>().toString()));
    case QMetaType::QIcon:
    case QMetaType::QPixmap: {
        const QString type = QString::fromLatin1(value.typeName());
        if (imageOf(value).isNull())
            return type + QStringLiteral("()");
        return setting.imageFile.isEmpty()
                   ? QString()
                   : QStringLiteral("%1(%2)").arg(type, cppString(setting.imageFile));
    }
    default:
        return value.canConvert<int>() ? QString::number(value.toInt()) : QString();
    }
}

QString cppCall(const WidgetSettings &settings, const WidgetSettings::Setting &setting,
                const QString &value)
{
    if (!setting.setter.isEmpty())
        return QStringLiteral("%1->%2(%3);\n").arg(settings.variable, setting.setter, value);
    return QStringLiteral("%1->setProperty(\"%2\", %3);\n")
        .arg(settings.variable, setting.property, value);
}

} // namespace

WidgetSettings settingsOf(QWidget *widget, const WidgetDescription &description,
                          const std::optional<elemDesc_t> &state)
{
    WidgetSettings result;
    result.className = QString::fromLatin1(description.className);
    result.variable = result.className.at(0).toLower() + result.className.mid(1);
    result.state = state;
    if (!description.sizesItself)
        result.size = widget->size();
    // A widget without a parent begins with another size, which images may have taken.
    QWidget window;
    const QWidget *plain = description.create(&window);
    for (const QMetaProperty &property : PropertyEditor::propertiesOf(widget)) {
        if (!property.isWritable())
            continue;
        const QVariant value = property.read(widget);
        if (equal(value, property.read(plain), property.isEnumType()))
            continue;
        WidgetSettings::Setting setting;
        setting.property = QString::fromLatin1(property.name());
        if (property.hasStdCppSet())
            setting.setter = QStringLiteral("set") + capitalized(setting.property);
        setting.value = value;
        if (property.isEnumType())
            setting.enumerators =
                enumeratorsOf(property.enumerator(), ValueEditor::numberOf(value));
        if (isImage(value))
            setting.imageFile = fileOf(value);
        result.settings.push_back(setting);
    }
    return result;
}

QString toCpp(const WidgetSettings &settings, const QString &parent)
{
    QString code = QStringLiteral("auto *%1 = new %2(%3);\n")
                       .arg(settings.variable, settings.className, parent);
    if (settings.size.isValid())
        code += QStringLiteral("%1->resize(%2, %3);\n")
                    .arg(settings.variable)
                    .arg(settings.size.width())
                    .arg(settings.size.height());
    for (const WidgetSettings::Setting &setting : settings.settings) {
        if (setting.value.userType() == QMetaType::QFont) {
            const QString font = settings.variable + QStringLiteral("Font");
            code += QStringLiteral("QFont %1;\n%1.fromString(%2);\n")
                        .arg(font, cppString(setting.value.value<QFont>().toString()));
            code += cppCall(settings, setting, font);
            continue;
        }
        const QString value = cppValue(setting);
        code += value.isEmpty()
                    ? QStringLiteral("// %1: an image of your own\n").arg(setting.property)
                    : cppCall(settings, setting, value);
    }
    if (settings.state)
        code += QStringLiteral("%1->setState({%2, %3});\n")
                    .arg(settings.variable)
                    .arg(settings.state->alarmSt)
                    .arg(settings.state->elemSt);
    return code;
}
