// SPDX-License-Identifier: LicenseRef-all-rights-reserved

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
        const QVariant known = value.userType() == QMetaType::QIcon ? QVariant(QIcon(sample.image))
                                                                    : QVariant(sample.image);
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
        const QList<QByteArray> keys = type.valueToKeys(number).split('|');
        for (const QByteArray &key : keys) {
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

/// What the statements of the two languages differ in.
struct Language
{
    const char *make;    ///< the statement that makes a widget: %1 of class %2 on %3
    const char *font;    ///< the statement that makes the font %1
    const char *member;  ///< between a variable and its method
    const char *end;     ///< of a statement
    const char *comment; ///< the beginning
    const char *yes;
    const char *no;
    const char *string; ///< %1 is the escaped text
    const char *state;  ///< a state of %1 and %2
    bool scopesEnumerators;
};

constexpr Language cpp = {"auto *%1 = new %2(%3)",  "QFont %1", "->", ";\n", "//", "true", "false",
                          "QStringLiteral(\"%1\")", "{%1, %2}", false};
constexpr Language python = {"%1 = %2(%3)", "%1 = QFont()", ".",      "\n",       "#",
                             "True",        "False",        "\"%1\"", "(%1, %2)", true};

QString quoted(const Language &language, const QString &text)
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
    return QString::fromLatin1(language.string).arg(escaped);
}

QString enumeratorsIn(const Language &language, const WidgetSettings::Setting &setting)
{
    const QString combined = QStringLiteral(" | ");
    if (!language.scopesEnumerators)
        return setting.enumerators.join(combined);
    // PyQt6 knows an enumerator by its enumeration alone, and PyQt5 by that, too.
    QStringList names;
    for (const QString &name : setting.enumerators)
        names.append(setting.enumeration + QLatin1String("::") +
                     name.section(QStringLiteral("::"), -1));
    return names.join(combined).replace(QStringLiteral("::"), QStringLiteral("."));
}

QString numberText(double number)
{
    const QString text = QString::number(number, 'g', QLocale::FloatingPointShortest);
    const bool isWhole = !text.contains(QLatin1Char('.')) && !text.contains(QLatin1Char('e'));
    return isWhole ? text + QStringLiteral(".0") : text;
}

QString colorText(const QColor &color)
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
QString valueText(const Language &language, const WidgetSettings::Setting &setting)
{
    const QVariant &value = setting.value;
    if (!setting.enumerators.isEmpty())
        return enumeratorsIn(language, setting);
    const auto pair = [](const char *type, int a, int b) {
        return QStringLiteral("%1(%2, %3)").arg(QLatin1String(type)).arg(a).arg(b);
    };
    switch (value.userType()) {
    case QMetaType::Bool:
        return QString::fromLatin1(value.toBool() ? language.yes : language.no);
    case QMetaType::Double:
    case QMetaType::Float:
        return numberText(value.toDouble());
    case QMetaType::QString:
        return quoted(language, value.toString());
    case QMetaType::QColor:
        return colorText(value.value<QColor>());
    case QMetaType::QPoint:
        return pair("QPoint", value.toPoint().x(), value.toPoint().y());
    case QMetaType::QSize:
        return pair("QSize", value.toSize().width(), value.toSize().height());
    case QMetaType::QKeySequence:
        return QStringLiteral("QKeySequence(%1)")
            .arg(quoted(language, value.value<QKeySequence>().toString()));
    case QMetaType::QIcon:
    case QMetaType::QPixmap: {
        const QString type = QString::fromLatin1(value.typeName());
        if (imageOf(value).isNull())
            return type + QStringLiteral("()");
        return setting.imageFile.isEmpty()
                   ? QString()
                   : QStringLiteral("%1(%2)").arg(type, quoted(language, setting.imageFile));
    }
    default:
        return value.canConvert<int>() ? QString::number(value.toInt()) : QString();
    }
}

QString callText(const Language &language, const WidgetSettings &settings,
                 const WidgetSettings::Setting &setting, const QString &value)
{
    QString call = QStringLiteral("setProperty(\"%1\", ").arg(setting.property);
    if (!setting.setter.isEmpty())
        call = setting.setter + QLatin1Char('(');
    return settings.variable + QLatin1String(language.member) + call + value + QLatin1Char(')') +
           QLatin1String(language.end);
}

QString statements(const Language &language, const WidgetSettings &settings, const QString &parent)
{
    const QString end = QString::fromLatin1(language.end);
    const QString object = settings.variable + QLatin1String(language.member);
    QString code =
        QString::fromLatin1(language.make).arg(settings.variable, settings.className, parent) + end;
    if (settings.size.isValid())
        code += object +
                QStringLiteral("resize(%1, %2)")
                    .arg(settings.size.width())
                    .arg(settings.size.height()) +
                end;
    for (const WidgetSettings::Setting &setting : settings.settings) {
        if (setting.value.userType() == QMetaType::QFont) {
            const QString font = settings.variable + QStringLiteral("Font");
            code += QString::fromLatin1(language.font).arg(font) + end;
            code += QStringLiteral("%1.fromString(%2)")
                        .arg(font, quoted(language, setting.value.value<QFont>().toString())) +
                    end;
            code += callText(language, settings, setting, font);
            continue;
        }
        const QString value = valueText(language, setting);
        code += value.isEmpty() ? QStringLiteral("%1 %2: an image of your own\n")
                                      .arg(QLatin1String(language.comment), setting.property)
                                : callText(language, settings, setting, value);
    }
    if (settings.state) {
        const QString state = QString::fromLatin1(language.state)
                                  .arg(settings.state->alarmSt)
                                  .arg(settings.state->elemSt);
        code += object + QStringLiteral("setState(%1)").arg(state) + end;
    }
    return code;
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
        if (property.isEnumType()) {
            const QMetaEnum type = property.enumerator();
            setting.enumerators = enumeratorsOf(type, ValueEditor::numberOf(value));
            setting.enumeration = QString::fromLatin1(type.scope()) + QLatin1String("::") +
                                  QString::fromLatin1(type.enumName());
        }
        if (isImage(value))
            setting.imageFile = fileOf(value);
        result.settings.push_back(setting);
    }
    return result;
}

QString toCpp(const WidgetSettings &settings, const QString &parent)
{
    return statements(cpp, settings, parent);
}

QString toPython(const WidgetSettings &settings, const QString &parent)
{
    return statements(python, settings, parent);
}
