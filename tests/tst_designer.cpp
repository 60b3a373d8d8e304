// SPDX-License-Identifier: LicenseRef-all-rights-reserved

#include "newwidgetsform.h"
#include "ui_allwidgets.h"

#include "images.h"
#include "testmain.h"
#include "widgetclasses.h"
#include "widgetprobe.h"

#include <QtCore/QBuffer>
#include <QtCore/QFile>
#include <QtCore/QFileInfo>
#include <QtCore/QMetaProperty>
#include <QtCore/QPluginLoader>
#include <QtUiPlugin/QDesignerCustomWidgetCollectionInterface>
#include <QtUiTools/QUiLoader>

#include <memory>
#include <utility>

namespace {

/// The plugin of the build tree, or the one that whoever runs this wants tested.
QString pluginFile()
{
    return qEnvironmentVariable("KIV_DESIGNER_PLUGIN", QStringLiteral(KIV_DESIGNER_PLUGIN));
}

/// Another value for a property, and how a form writes it; an invalid one for types without a text.
struct FormValue
{
    QVariant value;
    QString xml;
};

FormValue otherValue(const QMetaProperty &property, const QVariant &present)
{
    if (property.isEnumType()) {
        const QMetaEnum type = property.enumerator();
        const int index = present.toInt() == type.value(0) ? 1 : 0;
        return {type.value(index),
                QStringLiteral("<enum>%1::%2</enum>")
                    .arg(QLatin1String(type.scope()), QLatin1String(type.key(index)))};
    }
    switch (property.userType()) {
    case QMetaType::Int:
        return {7, QStringLiteral("<number>7</number>")};
    case QMetaType::Double:
        // The limits of a scale keep their order.
        if (QByteArray(property.name()).startsWith("max"))
            return {121.5, QStringLiteral("<double>121.5</double>")};
        return {21.5, QStringLiteral("<double>21.5</double>")};
    case QMetaType::Bool:
        return {!present.toBool(), present.toBool() ? QStringLiteral("<bool>false</bool>")
                                                    : QStringLiteral("<bool>true</bool>")};
    case QMetaType::QString:
        return {QStringLiteral("%.0f x"), QStringLiteral("<string>%.0f x</string>")};
    case QMetaType::QPoint:
        return {QPoint(3, 4), QStringLiteral("<point><x>3</x><y>4</y></point>")};
    case QMetaType::QColor:
        return {QColor(1, 2, 3), QStringLiteral("<color><red>1</red><green>2</green>"
                                                "<blue>3</blue></color>")};
    default:
        return {};
    }
}

} // namespace

class DesignerTest : public WidgetTest
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void offersEveryWidget();
    void descriptions_data();
    void descriptions();
    void formsSetEveryProperty_data();
    void formsSetEveryProperty();
    void compiledForm();
    void newWidgetsAlike_data();
    void newWidgetsAlike();

private:
    QList<QDesignerCustomWidgetInterface *> widgets;
};

void DesignerTest::initTestCase()
{
    QPluginLoader loader(pluginFile());
    auto *collection = qobject_cast<QDesignerCustomWidgetCollectionInterface *>(loader.instance());
    QVERIFY2(collection, qPrintable(loader.errorString()));
    widgets = collection->customWidgets();
}

void DesignerTest::offersEveryWidget()
{
    QStringList names;
    QSet<QString> groups;
    QSet<QString> tips;
    for (const QDesignerCustomWidgetInterface *widget : std::as_const(widgets)) {
        names.append(widget->name());
        groups.insert(widget->group());
        tips.insert(widget->toolTip());
    }
    QCOMPARE(names, widgetClasses());
    QCOMPARE(groups.size(), 3);
    QCOMPARE(tips.size(), names.size());
}

void DesignerTest::descriptions_data()
{
    QTest::addColumn<int>("index");
    for (int i = 0; i < widgetClasses().size(); ++i)
        QTest::newRow(qPrintable(widgetClasses().at(i))) << i;
}

void DesignerTest::descriptions()
{
    QFETCH(int, index);
    QDesignerCustomWidgetInterface *description = widgets.at(index);
    QWidget window;
    QWidget *created = description->createWidget(&window);
    QCOMPARE(created->parentWidget(), &window);
    QCOMPARE(QLatin1String(created->metaObject()->className()), description->name());
    QCOMPARE(description->includeFile(),
             QStringLiteral("KivWidgets/%1.h").arg(description->name().toLower()));
    QCOMPARE(description->isContainer(), findWidget(description->name())->isContainer);

    // The icon is the widget's own image: it has ink, and none looks like another.
    const QImage icon = description->icon().pixmap(24, 24).toImage();
    QCOMPARE(icon.size(), QSize(24, 24));
    int inked = 0;
    for (int y = 0; y < 24; ++y) {
        for (int x = 0; x < 24; ++x)
            inked += qAlpha(icon.pixel(x, y)) > 40 ? 1 : 0;
    }
    QVERIFY2(inked >= 20, qPrintable(QString::number(inked)));
    for (int other = 0; other < index; ++other)
        QVERIFY(widgets.at(other)->icon().pixmap(24, 24).toImage() != icon);

    // What a new one on a form is.
    QUiLoader loader;
    loader.addPluginPath(QFileInfo(pluginFile()).path());
    QBuffer form;
    form.setData(description->domXml()
                     .replace(QStringLiteral("<ui language=\"c++\">"),
                              QStringLiteral("<ui version=\"4.0\">"))
                     .toUtf8());
    form.open(QIODevice::ReadOnly);
    const std::unique_ptr<QWidget> loaded(loader.load(&form));
    QVERIFY2(loaded.get(), qPrintable(loader.errorString()));
    QCOMPARE(QLatin1String(loaded->metaObject()->className()), description->name());
    QVERIFY(!loaded->objectName().isEmpty());
}

void DesignerTest::formsSetEveryProperty_data()
{
    descriptions_data();
}

void DesignerTest::formsSetEveryProperty()
{
    QFETCH(int, index);
    const QString name = widgetClasses().at(index);
    const std::unique_ptr<QWidget> plain(widgets.at(index)->createWidget(nullptr));
    const QMetaObject *meta = plain->metaObject();
    QString properties;
    QMap<QByteArray, QVariant> expected;
    for (int i = meta->propertyOffset(); i < meta->propertyCount(); ++i) {
        const QMetaProperty property = meta->property(i);
        const FormValue other = otherValue(property, plain->property(property.name()));
        if (!other.value.isValid())
            continue;
        properties += QStringLiteral("<property name=\"%1\">%2</property>")
                          .arg(QLatin1String(property.name()), other.xml);
        expected.insert(property.name(), other.value);
    }
    QUiLoader loader;
    loader.addPluginPath(QFileInfo(pluginFile()).path());
    QVERIFY(loader.availableWidgets().contains(name));
    QBuffer form;
    form.setData(QStringLiteral("<ui version=\"4.0\"><widget class=\"%1\" name=\"it\">%2</widget>"
                                "</ui>")
                     .arg(name, properties)
                     .toUtf8());
    form.open(QIODevice::ReadOnly);
    const std::unique_ptr<QWidget> loaded(loader.load(&form));
    QVERIFY2(loaded.get(), qPrintable(loader.errorString()));
    for (auto it = expected.begin(); it != expected.end(); ++it) {
        const QVariant is = loaded->property(it.key());
        // An enum's value and its number are not equal as variants.
        const bool equal = it.value().userType() == QMetaType::Int
                               ? is.toInt() == it.value().toInt()
                               : is == it.value();
        QVERIFY2(equal, it.key().constData());
    }
}

void DesignerTest::compiledForm()
{
    QWidget window;
    Ui::AllWidgets form;
    form.setupUi(&window);
    window.show();
    deliverAll();
    QCOMPARE(form.aeroButton->text(), QStringLiteral("Start"));
    QCOMPARE(form.aeroButton->getColor(), QColor(0, 174, 240));
    QCOMPARE(form.metroCirclerate->getValue(), 42.5);
    QCOMPARE(form.aeroLinebar->getValuePosition(), AeroLinebar::CenterVal);
    QCOMPARE(form.metroNavdrawer->getState(), MetroNavdrawer::close);
}

void DesignerTest::newWidgetsAlike_data()
{
    descriptions_data();
}

/// A new widget is the same in a compiled form and in one that is loaded at run time: as large as
/// recommended, and in a state that shows what it is.
void DesignerTest::newWidgetsAlike()
{
    QFETCH(int, index);
    const WidgetDescription &description = widgetCatalogue().at(std::size_t(index));
    const QString name = widgetClasses().at(index);
    const QString objectName = name.at(0).toLower() + name.mid(1);

    QWidget compiledWindow;
    Ui::NewWidgets compiledForm;
    compiledForm.setupUi(&compiledWindow);
    QUiLoader loader;
    loader.addPluginPath(QFileInfo(pluginFile()).path());
    QFile form(QStringLiteral(KIV_NEW_WIDGETS));
    QVERIFY(form.open(QIODevice::ReadOnly));
    const std::unique_ptr<QWidget> loadedWindow(loader.load(&form));
    QVERIFY2(loadedWindow.get(), qPrintable(loader.errorString()));
    auto *compiled = compiledWindow.findChild<QWidget *>(objectName);
    auto *loaded = loadedWindow->findChild<QWidget *>(objectName);
    QVERIFY(compiled && loaded);
    // The others would cover it.
    for (QWidget *window : {&compiledWindow, loadedWindow.get()}) {
        for (QObject *child : window->children()) {
            if (child->isWidgetType() && child != compiled && child != loaded)
                static_cast<QWidget *>(child)->hide();
        }
        window->resize(900, 300);
        window->show();
    }
    deliverAll();
    QCOMPARE(QLatin1String(loaded->metaObject()->className()), name);
    QCOMPARE(compiled->minimumSize(), description.minimumSize);
    QCOMPARE(loaded->minimumSize(), description.minimumSize);
    QCOMPARE(loaded->size(), compiled->size());
    const QMetaObject *meta = compiled->metaObject();
    for (int i = QWidget::staticMetaObject.propertyCount(); i < meta->propertyCount(); ++i) {
        const QMetaProperty property = meta->property(i);
        const QVariant value = property.read(compiled);
        if (value.userType() == QMetaType::QIcon || value.userType() == QMetaType::QPixmap)
            continue; // compared by the image below
        QVERIFY2(value == property.read(loaded), property.name());
    }
    COMPARE_IMAGES(imageOf(loaded), imageOf(compiled));

    // It shows something, and not the least that the class can show.
    const QImage shown = imageOf(compiled);
    QVERIFY(!shown.isNull());
    QSet<QRgb> colors;
    for (int y = 0; y < shown.height(); ++y) {
        for (int x = 0; x < shown.width(); ++x)
            colors.insert(shown.pixel(x, y));
    }
    if (!description.isContainer)
        QVERIFY2(colors.size() > 2, qPrintable(QString::number(colors.size())));
}

KIV_TEST_MAIN(DesignerTest)

#include "tst_designer.moc"
