// SPDX-License-Identifier: LicenseRef-all-rights-reserved

#include "testmain.h"
#include "widgetclasses.h"
#include "widgetprobe.h"

#include <QAction>
#include <QtCore/QFile>
#include <QtCore/QMetaProperty>
#include <QtCore/QProcess>
#include <QtCore/QRegularExpression>
#include <QtCore/QTemporaryDir>
#include <QtDesigner/QDesignerComponents>
#include <QtDesigner/QDesignerContainerExtension>
#include <QtDesigner/QDesignerFormEditorInterface>
#include <QtDesigner/QDesignerFormWindowInterface>
#include <QtDesigner/QDesignerFormWindowManagerInterface>
#include <QtDesigner/QDesignerIntegration>
#include <QtDesigner/QDesignerPropertyEditorInterface>
#include <QtDesigner/QDesignerPropertySheetExtension>
#include <QtDesigner/QDesignerWidgetBoxInterface>
#include <QtDesigner/QDesignerWidgetDataBaseInterface>
#include <QtDesigner/QExtensionManager>
#include <QtWidgets/QStackedWidget>

#include <memory>

// What Qt Designer's own editor makes of the plugin: its components run inside this test, and find
// the plugin as Designer does, through the library path of the build tree.

namespace {

/// Where Designer's widget box has the widget.
QString groupOf(const WidgetDescription &widget)
{
    switch (widget.family) {
    case WidgetFamily::Aero:
        return QStringLiteral("KivWidgets: Aero");
    case WidgetFamily::Metro:
        return QStringLiteral("KivWidgets: Metro");
    case WidgetFamily::SwitchesAndPages:
        break;
    }
    return QStringLiteral("KivWidgets: Switches and Pages");
}

QString contentsOf(const QString &file)
{
    QFile form(file);
    return form.open(QIODevice::ReadOnly) ? QString::fromUtf8(form.readAll()) : QString();
}

/// The descriptions of the custom classes in a form's XML, by class.
QMap<QString, QString> customClasses(const QString &form)
{
    QMap<QString, QString> result;
    const QRegularExpression element(
        QStringLiteral("<customwidget>\\s*<class>(\\w+)</class>(.*?)</customwidget>"),
        QRegularExpression::DotMatchesEverythingOption);
    for (auto match = element.globalMatch(form); match.hasNext();) {
        const QRegularExpressionMatch one = match.next();
        result.insert(one.captured(1), one.captured(2));
    }
    return result;
}

} // namespace

class DesignerEditorTest : public WidgetTest
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void cleanupTestCase();
    void widgetBoxHoldsTheGroups();
    void dataBaseKnowsTheClasses();
    void newWidgets_data();
    void newWidgets();
    void formSurvivesEditing();
    void childrenInContainers_data();
    void childrenInContainers();
    void pagesOfTheStack();
    void groupBoxOffersWhatApplies();

private:
    QDesignerFormWindowInterface *open(const QString &contents);
    template <typename Extension>
    Extension *extension(QObject *object) const
    {
        return qt_extension<Extension *>(core->extensionManager(), object);
    }

    QTemporaryDir home;
    std::unique_ptr<QDesignerFormEditorInterface> core;
    std::unique_ptr<QWidget> host;
};

void DesignerEditorTest::initTestCase()
{
    // The settings of whoever runs the test stay out of it.
    QVERIFY(home.isValid());
    qputenv("HOME", QFile::encodeName(home.path()));
    qputenv("XDG_CONFIG_HOME", QFile::encodeName(home.path()));
    QCoreApplication::setLibraryPaths(QStringList(QStringLiteral(KIV_PLUGIN_DIRECTORY)) +
                                      QCoreApplication::libraryPaths());

    QDesignerComponents::initializeResources();
    core.reset(QDesignerComponents::createFormEditor(nullptr));
    host = std::make_unique<QWidget>();
    core->setTopLevel(host.get());
    core->setWidgetBox(QDesignerComponents::createWidgetBox(core.get(), host.get()));
    core->widgetBox()->setFileName(QStringLiteral(":/qt-project.org/widgetbox/widgetbox.xml"));
    QVERIFY(core->widgetBox()->load());
    core->setPropertyEditor(QDesignerComponents::createPropertyEditor(core.get(), host.get()));
    core->setObjectInspector(QDesignerComponents::createObjectInspector(core.get(), host.get()));
    core->setActionEditor(QDesignerComponents::createActionEditor(core.get(), host.get()));
    new QDesignerIntegration(core.get(), core.get());
    QDesignerComponents::createTaskMenu(core.get(), core.get());
    QDesignerComponents::initializePlugins(core.get());
}

void DesignerEditorTest::cleanupTestCase()
{
    host.reset();
    core.reset();
}

/// A form window that shows @p contents; null if they cannot be read.
QDesignerFormWindowInterface *DesignerEditorTest::open(const QString &contents)
{
    QDesignerFormWindowInterface *form = core->formWindowManager()->createFormWindow(host.get());
    // Forms name their resources relative to themselves.
    form->setFileName(QStringLiteral(KIV_ALL_WIDGETS));
    if (!form->setContents(contents)) {
        delete form;
        return nullptr;
    }
    core->formWindowManager()->setActiveFormWindow(form);
    form->editWidgets();
    return form;
}

void DesignerEditorTest::widgetBoxHoldsTheGroups()
{
    QStringList expected;
    QStringList found;
    for (const WidgetDescription &widget : widgetCatalogue())
        expected.append(groupOf(widget) + QLatin1Char('/') + QLatin1String(widget.className));
    const QDesignerWidgetBoxInterface *box = core->widgetBox();
    for (int i = 0; i < box->categoryCount(); ++i) {
        const QString name = box->category(i).name();
        if (!name.startsWith(QLatin1String("KivWidgets")))
            continue;
        for (int j = 0; j < box->widgetCount(i); ++j)
            found.append(name + QLatin1Char('/') + box->widget(i, j).name());
    }
    QCOMPARE(found, expected);
}

void DesignerEditorTest::dataBaseKnowsTheClasses()
{
    const QDesignerWidgetDataBaseInterface *base = core->widgetDataBase();
    for (const WidgetDescription &widget : widgetCatalogue()) {
        const QString name = QLatin1String(widget.className);
        const int index = base->indexOfClassName(name);
        QVERIFY2(index >= 0, widget.className);
        const QDesignerWidgetDataBaseItemInterface *item = base->item(index);
        QVERIFY2(item->isCustom() && !item->isPromoted(), widget.className);
        QCOMPARE(item->group(), groupOf(widget));
        QCOMPARE(item->extends(), QLatin1String(widget.metaObject->superClass()->className()));
        QCOMPARE(item->isContainer(), widget.isContainer);
        QCOMPARE(item->includeFile(), QStringLiteral("KivWidgets/%1.h").arg(name.toLower()));
        QVERIFY2(!item->toolTip().isEmpty(), widget.className);
        QVERIFY2(item->whatsThis().contains(item->toolTip()) &&
                     item->whatsThis().size() > item->toolTip().size() + 20,
                 widget.className);
        QVERIFY2(item->icon().availableSizes().contains(QSize(22, 22)), widget.className);
    }
}

void DesignerEditorTest::newWidgets_data()
{
    QTest::addColumn<QString>("className");
    for (const QString &name : widgetClasses())
        QTest::newRow(qPrintable(name)) << name;
}

/// What the widget box drops on a form is a widget of the class, saved with its true base class.
void DesignerEditorTest::newWidgets()
{
    QFETCH(QString, className);
    const QDesignerWidgetBoxInterface *box = core->widgetBox();
    QString xml;
    for (int i = 0; i < box->categoryCount(); ++i) {
        for (int j = 0; j < box->widgetCount(i); ++j) {
            if (box->widget(i, j).name() == className)
                xml = box->widget(i, j).domXml();
        }
    }
    const QRegularExpressionMatch widget =
        QRegularExpression(QStringLiteral("<widget .*</widget>"),
                           QRegularExpression::DotMatchesEverythingOption)
            .match(xml);
    QVERIFY(widget.hasMatch());
    const QDesignerFormWindowInterface *form =
        open(QStringLiteral("<ui version=\"4.0\"><class>Form</class><widget class=\"QWidget\" "
                            "name=\"Form\">%1</widget></ui>")
                 .arg(widget.captured()));
    QVERIFY(form);
    const QString objectName = className.at(0).toLower() + className.mid(1);
    auto *created = form->mainContainer()->findChild<QWidget *>(objectName);
    QVERIFY(created);
    QCOMPARE(QLatin1String(created->metaObject()->className()), className);

    // Every property of the class is offered.
    auto *sheet = extension<QDesignerPropertySheetExtension>(created);
    const QMetaObject *meta = created->metaObject();
    for (int i = meta->propertyOffset(); i < meta->propertyCount(); ++i) {
        const char *name = meta->property(i).name();
        const int index = sheet->indexOf(QLatin1String(name));
        QVERIFY2(index >= 0, name);
        QVERIFY2(sheet->isVisible(index), name);
        sheet->setChanged(index, true);
    }

    const QString contents = form->contents();
    const QMap<QString, QString> saved = customClasses(contents);
    const QString base = QLatin1String(meta->superClass()->className());
    QVERIFY2(saved.value(className).contains(QStringLiteral("<extends>%1</extends>").arg(base)),
             qPrintable(contents));
    // The form's compiler must not make up setters: those with names of their own are marked.
    for (int i = meta->propertyOffset(); i < meta->propertyCount(); ++i) {
        const QMetaProperty property = meta->property(i);
        const QRegularExpressionMatch element =
            QRegularExpression(QStringLiteral("<property name=\"%1\"( stdset=\"0\")?>")
                                   .arg(QLatin1String(property.name())))
                .match(contents);
        // Empty pixmaps have nothing to save.
        if (property.userType() == QMetaType::QPixmap && !element.hasMatch())
            continue;
        QVERIFY2(element.hasMatch(), property.name());
        QCOMPARE(element.captured(1).isEmpty(), property.hasStdCppSet());
    }
    delete form;
}

void DesignerEditorTest::formSurvivesEditing()
{
    const QString original = contentsOf(QStringLiteral(KIV_ALL_WIDGETS));
    const QDesignerFormWindowInterface *form = open(original);
    QVERIFY(form);
    const QString saved = form->contents();
    QCOMPARE(customClasses(saved).keys(), customClasses(original).keys());
    const QStringList kept = {
        QStringLiteral("<double>42.500000000000000</double>"),
        QStringLiteral("<enum>AeroLinebar::CenterVal</enum>"),
        QStringLiteral("<enum>MetroNavdrawer::close</enum>"),
        QStringLiteral("<string>Start</string>"),
    };
    for (const QString &value : kept)
        QVERIFY2(saved.contains(value), qPrintable(value));
    delete form;
    // Saved and read again, nothing is different.
    form = open(saved);
    QVERIFY(form);
    QCOMPARE(form->contents(), saved);
    delete form;
}

void DesignerEditorTest::childrenInContainers_data()
{
    QTest::addColumn<QString>("className");
    for (const WidgetDescription &widget : widgetCatalogue()) {
        // A stack takes its pages in another way.
        if (widget.isContainer && !widget.metaObject->inherits(&QStackedWidget::staticMetaObject))
            QTest::newRow(widget.className) << QString::fromLatin1(widget.className);
    }
}

/// A child and a layout stay where they were put.
void DesignerEditorTest::childrenInContainers()
{
    QFETCH(QString, className);
    const QDesignerFormWindowInterface *form =
        open(QStringLiteral("<ui version=\"4.0\"><class>Form</class><widget class=\"QWidget\" "
                            "name=\"Form\"><widget class=\"%1\" name=\"outer\"><layout "
                            "class=\"QHBoxLayout\" name=\"row\"><item><widget "
                            "class=\"AeroButton\" name=\"inner\"/></item></layout></widget>"
                            "</widget></ui>")
                 .arg(className));
    QVERIFY(form);
    const auto *inner = form->mainContainer()->findChild<QWidget *>(QStringLiteral("inner"));
    QVERIFY(inner);
    QCOMPARE(inner->parentWidget()->objectName(), QStringLiteral("outer"));
    QVERIFY(inner->parentWidget()->layout());
    const QRegularExpression nested(
        QStringLiteral(
            "<widget class=\"%1\" name=\"outer\">.*<layout class=\"QHBoxLayout\".*<widget "
            "class=\"AeroButton\" name=\"inner\"/>.*</layout>")
            .arg(className),
        QRegularExpression::DotMatchesEverythingOption);
    QVERIFY2(form->contents().contains(nested), qPrintable(form->contents()));
    delete form;
}

/// Designer adds and turns pages, and the form's compiler adds them to the stack.
void DesignerEditorTest::pagesOfTheStack()
{
    const QDesignerFormWindowInterface *form = open(contentsOf(QStringLiteral(KIV_ALL_WIDGETS)));
    QVERIFY(form);
    auto *stack =
        form->mainContainer()->findChild<QStackedWidget *>(QStringLiteral("rotateStackedWidget"));
    QVERIFY(stack);
    auto *pages = extension<QDesignerContainerExtension>(stack);
    QVERIFY(pages);
    QCOMPARE(pages->count(), 2);
    QVERIFY(pages->canAddWidget());
    // Designer's own page commands work on this stack, too.
    const auto trigger = [stack](const QString &text) {
        for (QAction *action : stack->findChildren<QAction *>()) {
            if (action->text() == text && action->isEnabled()) {
                action->trigger();
                return true;
            }
        }
        return false;
    };
    QVERIFY(trigger(QStringLiteral("Next Page")));
    QCOMPARE(stack->currentWidget()->objectName(), QStringLiteral("secondPage"));
    QVERIFY(trigger(QStringLiteral("After Current Page")));
    QCOMPARE(pages->count(), 3);
    QCOMPARE(stack->currentIndex(), 2);
    const QString added = stack->currentWidget()->objectName();
    pages->setCurrentIndex(0);
    QCOMPARE(stack->currentWidget()->objectName(), QStringLiteral("firstPage"));
    // The page that shows is a property in Designer.
    const auto *sheet = extension<QDesignerPropertySheetExtension>(stack);
    QVERIFY(sheet->isVisible(sheet->indexOf(QStringLiteral("currentPageName"))));

    const QString file = home.filePath(QStringLiteral("form.ui"));
    QFile saved(file);
    QVERIFY(saved.open(QIODevice::WriteOnly));
    saved.write(form->contents().toUtf8());
    saved.close();
    QProcess uic;
    uic.start(QStringLiteral(KIV_UIC), {file});
    QVERIFY(uic.waitForFinished());
    const QString code = QString::fromUtf8(uic.readAllStandardOutput());
    for (const QString &page : {QStringLiteral("firstPage"), QStringLiteral("secondPage"), added})
        QVERIFY2(code.contains(QStringLiteral("rotateStackedWidget->addWidget(%1);").arg(page)),
                 qPrintable(page));
    delete form;
}

/// The panel's colours can be edited while the box shows the panel, the image while it shows
/// that.
void DesignerEditorTest::groupBoxOffersWhatApplies()
{
    const QDesignerFormWindowInterface *form = open(contentsOf(QStringLiteral(KIV_ALL_WIDGETS)));
    QVERIFY(form);
    auto *box = form->mainContainer()->findChild<QWidget *>(QStringLiteral("aeroGroupbox"));
    QVERIFY(box);
    const auto *sheet = extension<QDesignerPropertySheetExtension>(box);
    const auto editable = [sheet](const char *name) {
        return sheet->isEnabled(sheet->indexOf(QLatin1String(name)));
    };
    QVERIFY(editable("color"));
    QVERIFY(editable("shadow"));
    QVERIFY(!editable("backgroundGroup"));
    box->setProperty("backgroudType", 0);
    QVERIFY(!editable("color"));
    QVERIFY(!editable("shadow"));
    QVERIFY(editable("backgroundGroup"));
    QVERIFY(editable("colorPen"));
    QVERIFY(editable("opacity"));
    delete form;
}

KIV_TEST_MAIN(DesignerEditorTest)

#include "tst_designereditor.moc"
