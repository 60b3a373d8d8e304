// SPDX-License-Identifier: LicenseRef-all-rights-reserved

#include "codewriter.h"
#include "elidedlabel.h"
#include "gallerywindow.h"
#include "magnifier.h"
#include "options.h"
#include "propertyeditor.h"
#include "screenshots.h"
#include "sizehandle.h"
#include "statesheet.h"
#include "valueeditor.h"
#include "widgetcatalogue.h"
#include "widgetlist.h"
#include "widgetstage.h"

#include "images.h"
#include "mouse.h"
#include "programrun.h"
#include "testmain.h"
#include "widgetclasses.h"
#include "widgetprobe.h"

#include <aerobutton.h>
#include <aerogroupbox.h>
#include <metrobatticon.h>
#include <metrocirclerate.h>
#include <metronavdrawer.h>
#include <metroshelter.h>
#include <metrosysicon.h>
#include <metrotabicon.h>
#include <rotatestackedwidget.h>
#include <simpleslideswitch.h>
#include <slideswitch.h>

#include <QtCore/QDir>
#include <QtCore/QMetaProperty>
#include <QtCore/QProcess>
#include <QtCore/QTemporaryDir>
#include <QtGui/QClipboard>
#include <QtWidgets/QCheckBox>
#include <QtWidgets/QColorDialog>
#include <QtWidgets/QComboBox>
#include <QtWidgets/QKeySequenceEdit>
#include <QtWidgets/QLabel>
#include <QtWidgets/QLayout>
#include <QtWidgets/QLineEdit>
#include <QtWidgets/QMenu>
#include <QtWidgets/QPushButton>
#include <QtWidgets/QSpinBox>
#include <QtWidgets/QToolButton>

#include <utility>

namespace {

/// Properties of the library that a still image of the staged widget does not show.
const QStringList withoutALook = {
    // Only stored.
    QStringLiteral("AeroStatusbar.colorText"),
    QStringLiteral("AeroStatusbar.bold"),
    QStringLiteral("MetroLinerate.foregroundcolor"),
    QStringLiteral("MetroXbar.foregroundcolor"),
    // The scale begins at zero.
    QStringLiteral("MetroCirclerate.paintFromZero"),
    // For another state than the shown one.
    QStringLiteral("AeroSwitch.color"),
    QStringLiteral("SimpleSlideSwitch.uncheckedImg"),
    QStringLiteral("SimpleSlideSwitch.checkedDisImg"),
    QStringLiteral("SimpleSlideSwitch.uncheckedDisImg"),
    QStringLiteral("SimpleSlideSwitch.btnDisImg"),
    // The knob stands at the other end.
    QStringLiteral("SimpleSlideSwitch.marginLeft"),
    // Of a page change.
    QStringLiteral("RotateStackedWidget.rotate"),
    QStringLiteral("RotateStackedWidget.scale"),
    QStringLiteral("RotateStackedWidget.endPositionAnimate"),
    QStringLiteral("RotateStackedWidget.timeRotationAnimate"),
    QStringLiteral("RotateStackedWidget.timePositionAnimate"),
};

/// It takes its size from its icon.
const QString holdsItsOwn = QStringLiteral("MetroSysIcon.iconSize");

/// The gallery, shown, with one widget on its stage.
struct Gallery
{
    explicit Gallery(const QString &name = QString())
    {
        window.resize(1000, 640);
        window.show();
        show(name);
    }
    void show(const QString &name)
    {
        window.showWidget(name);
        deliverAll();
    }
    QWidget *staged() const
    {
        return stage->staged();
    }
    template <typename W>
    W *staged() const
    {
        return qobject_cast<W *>(stage->staged());
    }
    ValueEditor *editor(const char *name) const
    {
        return properties->editor(QString::fromLatin1(name));
    }
    /// The control of class @p W with this text.
    template <typename W>
    W *withText(const char *text) const
    {
        for (W *widget : window.findChildren<W *>()) {
            if (widget->text() == QLatin1String(text))
                return widget;
        }
        return nullptr;
    }
    QSpinBox *sizeBox(const char *toolTip) const
    {
        for (QSpinBox *box : window.findChildren<QSpinBox *>()) {
            if (box->toolTip() == QLatin1String(toolTip))
                return box;
        }
        return nullptr;
    }
    bool says(const QString &text) const
    {
        for (const QLabel *label : window.findChildren<QLabel *>()) {
            if (label->isVisible() && label->text().contains(text))
                return true;
        }
        return false;
    }
    /// As well as whole pixels allow.
    bool isCentred() const
    {
        const QPoint off = staged()->geometry().center() - stage->canvas()->rect().center();
        return qAbs(off.x()) <= 1 && qAbs(off.y()) <= 1;
    }
    SizeHandle *handle(QPoint role) const
    {
        for (SizeHandle *handle : window.findChildren<SizeHandle *>()) {
            if (handle->role() == role)
                return handle;
        }
        return nullptr;
    }
    /// Drags from the middle of @p handle, as the pointer goes.
    static void drag(SizeHandle *handle, QPoint by)
    {
        const QPoint start(SizeHandle::side / 2, SizeHandle::side / 2);
        const QPoint begin = handle->mapToGlobal(start);
        Mouse::press(handle, start);
        // The handle moves along.
        Mouse::drag(handle, handle->mapFromGlobal(begin + by / 2));
        Mouse::drag(handle, handle->mapFromGlobal(begin + by));
        Mouse::release(handle, handle->mapFromGlobal(begin + by));
        deliverAll();
    }

    GalleryWindow window;
    WidgetList *list = window.findChild<WidgetList *>();
    WidgetStage *stage = window.findChild<WidgetStage *>();
    PropertyEditor *properties = window.findChild<PropertyEditor *>();
};

void type(QWidget *input, const QString &text)
{
    if (auto *line = qobject_cast<QLineEdit *>(input))
        line->selectAll();
    else
        static_cast<QAbstractSpinBox *>(input)->selectAll();
    if (text.isEmpty())
        QTest::keyClick(input, Qt::Key_Delete);
    // Keys that are not on the keyboard come in by a paste.
    auto *line = input->findChild<QLineEdit *>();
    (line ? line : static_cast<QLineEdit *>(input))->insert(text);
    QTest::keyClick(input, Qt::Key_Return);
}

/// With four keys, the last the first again, the input waits for no more.
void typeShortcut(QKeySequenceEdit *keys)
{
    for (const Qt::Key key : {Qt::Key_F5, Qt::Key_F6, Qt::Key_F7, Qt::Key_F5})
        QTest::keyClick(keys, key);
}

/// Another number within the bounds of @p box, far enough for a change to be seen.
template <typename Box>
QString otherNumber(const Box *box)
{
    const bool isLarge = box->maximum() > 10000;
    const auto step = isLarge ? 30 : 2 * box->singleStep();
    const auto other = box->value() + step;
    return QString::number(other <= box->maximum() ? other : box->value() - step);
}

void chooseOther(QComboBox *box, int steps = 1)
{
    const bool goesDown = box->currentIndex() + steps < box->count();
    for (int i = 0; i < steps; ++i)
        QTest::keyClick(box, goesDown ? Qt::Key_Down : Qt::Key_Up);
}

/// Edits as a person would, to some other value.
void edit(ValueEditor *editor)
{
    if (auto *box = editor->findChild<QCheckBox *>())
        QTest::mouseClick(box, Qt::LeftButton, {}, QPoint(8, box->height() / 2));
    else if (auto *number = editor->findChild<QSpinBox *>())
        type(number, otherNumber(number));
    else if (auto *decimal = editor->findChild<QDoubleSpinBox *>())
        type(decimal, otherNumber(decimal));
    else if (auto *choice = editor->findChild<QComboBox *>())
        chooseOther(choice, choice->count() > 20 ? 2 : 1); // images: not none
    else if (auto *menu = editor->findChild<QMenu *>())
        menu->actions().at(1)->trigger();
    else if (auto *keys = editor->findChild<QKeySequenceEdit *>())
        typeShortcut(keys);
    else if (editor->value().userType() == QMetaType::QColor)
        type(editor->findChild<QLineEdit *>(), QStringLiteral("#336699"));
    else if (auto *line = editor->findChild<QLineEdit *>())
        type(line, QStringLiteral("other"));
}

bool equal(const QVariant &a, const QVariant &b)
{
    if (a.userType() == QMetaType::QPixmap)
        return a.value<QPixmap>().cacheKey() == b.value<QPixmap>().cacheKey();
    if (a.userType() == QMetaType::QIcon)
        return a.value<QIcon>().cacheKey() == b.value<QIcon>().cacheKey();
    if (a.userType() >= QMetaType::User || b.userType() >= QMetaType::User)
        return ValueEditor::numberOf(a) == ValueEditor::numberOf(b);
    return a == b;
}

elemDesc_t stateOf(QWidget *widget)
{
    return dynamic_cast<MetroStyle *>(widget)->getElementState();
}

int colorsIn(const QImage &image)
{
    QSet<QRgb> colors;
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x)
            colors.insert(image.pixel(x, y));
    }
    return int(colors.size());
}

void everyClass()
{
    QTest::addColumn<QString>("name");
    for (const QString &name : widgetClasses())
        QTest::newRow(qPrintable(name)) << name;
}

ProgramRun run(const QStringList &arguments)
{
    return ProgramRun(QStringLiteral(KIV_GALLERY_PROGRAM), arguments);
}

} // namespace

class GalleryTest : public WidgetTest
{
    Q_OBJECT

private Q_SLOTS:
    void listsEveryWidget();
    void descriptionsAreReadWhole();
    void searchNarrowsTheList();
    void choosingShowsTheWidget();
    void everyPropertyIsListed_data();
    void everyPropertyIsListed();
    void editsReachTheWidget_data();
    void editsReachTheWidget();
    void editsActAsAnApplicationWould();
    void wrongTextsAreTakenBack();
    void colorDialog();
    void editorsFollowTheWidget();
    void typingIsNotDisturbed();
    void propertiesThatDoNotApplyAreHidden();
    void wheelScrollsTheList();
    void noValueIsTooMuch_data();
    void noValueIsTooMuch();
    void stateSelectors_data();
    void stateSelectors();
    void onlyStatesThatShowAreOffered();
    void enabledBox();
    void background();
    void sizeFields();
    void handlesResize_data();
    void handlesResize();
    void selfSizingWidgetsHaveNoHandles_data();
    void selfSizingWidgetsHaveNoHandles();
    void largeWidgetsScroll();
    void widgetsAreLive();
    void drawerKeepsItsRightEdge();
    void pagesTurn();
    void zoomEnlargesWholePixels();
    void zoomPassesTheMouseOn();
    void allStatesAtOnce_data();
    void allStatesAtOnce();
    void copiesCpp();
    void codeCompiles();
    void copiesPython();
    void pythonCodeRuns();
    void codeMakesTheSameWidget();
    void rememberedTheme();
    void reset();
    void widgetDeletedByTheApplication();
    void smallestWindowShowsEverything();
    void screenshots();
    void oneScreenshot();
    void screenshotsNeedADirectory();
    void options();
    void wrongOptions_data();
    void wrongOptions();
    void program();
};

/// Also in the smallest window.
void GalleryTest::descriptionsAreReadWhole()
{
    Gallery gallery;
    gallery.window.resize(GalleryWindow::smallestSize);
    for (const QString &name : gallery.window.widgetNames()) {
        gallery.show(name);
        const auto *label = gallery.window.findChild<ElidedLabel *>(QStringLiteral("subtitle"));
        QVERIFY(label && !label->text().isEmpty());
        QVERIFY2(!label->isElided(), qPrintable(label->text()));
    }
}

void GalleryTest::listsEveryWidget()
{
    QCOMPARE(GalleryWindow::widgetNames(), widgetClasses());
    Gallery gallery;
    QStringList listed = gallery.list->listedNames();
    // Group by group, the containers last.
    QStringList containers;
    for (const WidgetDescription &description : widgetCatalogue()) {
        if (description.isContainer)
            containers.append(QString::fromLatin1(description.className));
    }
    QCOMPARE(listed.mid(listed.size() - containers.size()), containers);
    QStringList all = widgetClasses();
    listed.sort();
    all.sort();
    QCOMPARE(listed, all);
}

void GalleryTest::searchNarrowsTheList()
{
    Gallery gallery;
    auto *search = gallery.list->findChild<QLineEdit *>();
    QTest::keyClicks(search, QStringLiteral("BAR gauge"));
    QCOMPARE(gallery.list->listedNames(),
             QStringList({QStringLiteral("AeroLinebar"), QStringLiteral("MetroXbar")}));
    QTest::keyClick(search, Qt::Key_Return);
    deliverAll();
    QCOMPARE(gallery.staged()->metaObject()->className(), "AeroLinebar");
    QTest::keyClicks(search, QStringLiteral("nothing"));
    QVERIFY(gallery.list->listedNames().isEmpty());
    QTest::keyClick(search, Qt::Key_Return);
    search->clear();
    QCOMPARE(gallery.list->listedNames().size(), widgetClasses().size());
    QCOMPARE(gallery.staged()->metaObject()->className(), "AeroLinebar");
}

void GalleryTest::choosingShowsTheWidget()
{
    Gallery gallery;
    QCOMPARE(gallery.staged()->metaObject()->className(), "AeroButton");
    Q_EMIT gallery.list->chosen(QStringLiteral("MetroXbar"));
    QCOMPARE(gallery.staged()->metaObject()->className(), "MetroXbar");
    QVERIFY(gallery.says(QStringLiteral("MetroXbar")));
    QVERIFY(gallery.says(QStringLiteral("Bar gauge")));
    gallery.window.showWidget(QStringLiteral("NoSuchWidget"));
    QCOMPARE(gallery.staged()->metaObject()->className(), "MetroXbar");
}

void GalleryTest::everyPropertyIsListed_data()
{
    everyClass();
}

void GalleryTest::everyPropertyIsListed()
{
    QFETCH(QString, name);
    Gallery gallery(name);
    const QStringList listed = gallery.properties->names();
    const QMetaObject *meta = gallery.staged()->metaObject();
    int own = 0;
    for (int i = QWidget::staticMetaObject.propertyCount(); i < meta->propertyCount(); ++i) {
        const QMetaProperty property = meta->property(i);
        QVERIFY2(listed.contains(QLatin1String(property.name())), property.name());
        QVERIFY2(bool(gallery.editor(property.name())) == property.isWritable(), property.name());
        ++own;
    }
    for (const char *common : {"enabled", "font", "toolTip", "layoutDirection"})
        QVERIFY2(gallery.editor(common), common);
    // Nothing twice, the widget's own first.
    QCOMPARE(QStringList(listed).removeDuplicates(), 0);
    QVERIFY(listed.indexOf(QStringLiteral("enabled")) >= own);
}

void GalleryTest::editsReachTheWidget_data()
{
    everyClass();
}

void GalleryTest::editsReachTheWidget()
{
    QFETCH(QString, name);
    Gallery gallery(name);
    for (const QString &property : gallery.properties->names()) {
        // A new one each time: an edit may change what the next one does.
        gallery.show(name);
        ValueEditor *editor = gallery.properties->editor(property);
        const QMetaObject *meta = gallery.staged()->metaObject();
        const int index = meta->indexOfProperty(qPrintable(property));
        if (!editor || index < 0 || !editor->isVisibleTo(&gallery.window) ||
            holdsItsOwn == name + QLatin1Char('.') + property)
            continue;
        // A button takes the checked state only then.
        if (property == QLatin1String("checked"))
            gallery.staged()->setProperty("checkable", true);
        gallery.properties->refresh();
        const QVariant before = meta->property(index).read(gallery.staged());
        QVERIFY2(equal(editor->value(), before), qPrintable(property));
        const QImage look = imageOf(gallery.staged());
        edit(editor);
        deliverAll();
        const QVariant after = meta->property(index).read(gallery.staged());
        QVERIFY2(!equal(after, before), qPrintable(property));
        QVERIFY2(equal(editor->value(), after), qPrintable(property));
        // What the library's own classes declare is to be seen.
        const QMetaObject *declaring = meta;
        while (declaring->propertyOffset() > index)
            declaring = declaring->superClass();
        if (widgetClasses().contains(QLatin1String(declaring->className())) &&
            !withoutALook.contains(name + QLatin1Char('.') + property))
            QVERIFY2(imageOf(gallery.staged()) != look, qPrintable(property));
    }
}

void GalleryTest::editsActAsAnApplicationWould()
{
    // Each of these is shown only by the setter of the widget's own class.
    Gallery gallery(QStringLiteral("SimpleSlideSwitch"));
    gallery.editor("checked")->findChild<QCheckBox *>()->click();
    deliverAll();
    Stage<SimpleSlideSwitch> unchecked;
    unchecked->setChecked(true);
    imageOf(unchecked.widget);
    unchecked->setChecked(false);
    COMPARE_IMAGES(imageOf(gallery.staged()), imageOf(unchecked.widget));

    gallery.show(QStringLiteral("MetroSysIcon"));
    const QSize before = gallery.staged()->size();
    chooseOther(gallery.editor("icon")->findChild<QComboBox *>(), 2);
    deliverAll();
    QVERIFY(gallery.staged()->size() != before);

    gallery.show(QStringLiteral("AeroGroupbox"));
    edit(gallery.editor("backgroudType"));
    deliverAll();
    const QImage titled = imageOf(gallery.staged());
    edit(gallery.editor("title"));
    deliverAll();
    QVERIFY(imageOf(gallery.staged()) != titled);

    const std::pair<const char *, const char *> shown[] = {
        {"AeroButton", "text"},    {"AeroButton", "icon"},     {"MetroShelter", "text"},
        {"MetroBattIcon", "icon"}, {"TranspButton", "text"},   {"TranspButton", "icon"},
        {"TranspButton", "font"},  {"AeroButton", "font"},     {"MetroShelter", "font"},
        {"MetroTabicon", "icon"},  {"MetroTabicon", "checked"}};
    for (const auto &[name, property] : shown) {
        gallery.show(QString::fromLatin1(name));
        const QImage look = imageOf(gallery.staged());
        edit(gallery.editor(property));
        deliverAll();
        QVERIFY2(imageOf(gallery.staged()) != look, property);
    }
}

void GalleryTest::wrongTextsAreTakenBack()
{
    Gallery gallery(QStringLiteral("AeroButton"));
    auto *button = gallery.staged<AeroButton>();
    const QColor before = button->getColor();
    auto *line = gallery.editor("color")->findChild<QLineEdit *>();
    type(line, QStringLiteral("no such colour"));
    QCOMPARE(button->getColor(), before);
    QCOMPARE(line->text(), before.name());
    type(line, QStringLiteral("#80ff0000"));
    QCOMPARE(button->getColor(), QColor(255, 0, 0, 128));
    type(line, QString());
    QVERIFY(!button->getColor().isValid());
}

void GalleryTest::colorDialog()
{
    Gallery gallery(QStringLiteral("AeroButton"));
    const auto open = [&] {
        gallery.editor("shadow")->findChild<QToolButton *>()->click();
        return gallery.window.findChild<QColorDialog *>();
    };
    QColorDialog *dialog = open();
    QVERIFY(dialog && dialog->isVisible());
    QCOMPARE(dialog->currentColor(), gallery.staged<AeroButton>()->getShadow());
    dialog->setCurrentColor(QColor(10, 20, 30, 40));
    dialog->accept();
    QCOMPARE(gallery.staged<AeroButton>()->getShadow(), QColor(10, 20, 30, 40));
    deliverAll();
    // Another widget closes it.
    QPointer<QColorDialog> other = open();
    QVERIFY(other);
    gallery.show(QStringLiteral("MetroXbar"));
    QTRY_VERIFY(!other);
    // The platform of the tests has no size limits for the dialog.
    for (const QString &warning : takeWarnings())
        QVERIFY2(warning.contains(QLatin1String("propagateSizeHints")), qPrintable(warning));
}

void GalleryTest::editorsFollowTheWidget()
{
    Gallery gallery(QStringLiteral("SlideSwitch"));
    auto *control = gallery.staged<SlideSwitch>();
    control->setLocked(true);
    control->setChecked(false);
    QTRY_COMPARE(gallery.editor("locked")->findChild<QCheckBox *>()->isChecked(), true);
    QCOMPARE(gallery.editor("checked")->findChild<QCheckBox *>()->isChecked(), false);
    gallery.show(QStringLiteral("MetroCirclerate"));
    gallery.staged<MetroCirclerate>()->setRadius(50);
    gallery.properties->refresh();
    QCOMPARE(gallery.editor("radius")->findChild<QSpinBox *>()->value(), 50);
    // A widget that finds its size late is followed at once.
    gallery.show(QStringLiteral("MetroSysIcon"));
    QCOMPARE(gallery.staged()->size(), QSize(68, 68));
    QCOMPARE(gallery.sizeBox("Width in pixels")->value(), 68);
    gallery.show(QStringLiteral("MetroCirclerate"));
    // A value that the dial refuses is not left standing.
    type(gallery.editor("minValue")->findChild<QDoubleSpinBox *>(), QStringLiteral("500"));
    QCOMPARE(gallery.staged<MetroCirclerate>()->getMinValue(), 0.0);
    QCOMPARE(gallery.editor("minValue")->findChild<QDoubleSpinBox *>()->value(), 0.0);
}

void GalleryTest::typingIsNotDisturbed()
{
    Gallery gallery(QStringLiteral("MetroXbar"));
    auto *box = gallery.editor("value")->findChild<QSpinBox *>();
    box->selectAll();
    QTest::keyClicks(box, QStringLiteral("12"));
    gallery.sizeBox("Width in pixels")->selectAll();
    QTest::keyClicks(gallery.sizeBox("Width in pixels"), QStringLiteral("7"));
    const QString width = gallery.sizeBox("Width in pixels")->text();
    QVERIFY(width != QString::number(gallery.staged()->width()));
    gallery.window.follow();
    deliverAll();
    QCOMPARE(box->text(), QStringLiteral("12"));
    QCOMPARE(gallery.sizeBox("Width in pixels")->text(), width);
    QTest::keyClicks(box, QStringLiteral("3"));
    QTest::keyClick(box, Qt::Key_Return);
    QCOMPARE(gallery.staged()->property("value").toInt(), 123);
}

void GalleryTest::propertiesThatDoNotApplyAreHidden()
{
    Gallery gallery(QStringLiteral("AeroGroupbox"));
    QVERIFY(gallery.editor("color")->isVisibleTo(&gallery.window));
    QVERIFY(!gallery.editor("backgroundGroup")->isVisibleTo(&gallery.window));
    // Qt's own word: it stands for no setting.
    QVERIFY(!Gallery(QStringLiteral("AeroButton")).editor("down")->isVisible());
    edit(gallery.editor("backgroudType"));
    QCOMPARE(gallery.staged<AeroGroupbox>()->getBackgroudType(), AeroGroupbox::ImageBG);
    QVERIFY(!gallery.editor("color")->isVisibleTo(&gallery.window));
    QVERIFY(gallery.editor("backgroundGroup")->isVisibleTo(&gallery.window));

    // The image chosen shows, and the one before can be had again.
    const QImage look = imageOf(gallery.staged());
    auto *choice = gallery.editor("backgroundGroup")->findChild<QComboBox *>();
    chooseOther(choice);
    deliverAll();
    QVERIFY(imageOf(gallery.staged()) != look);
    QVERIFY(!gallery.staged<AeroGroupbox>()->getBackgroundGroup().isNull());
    QTest::keyClick(choice, Qt::Key_Up);
    deliverAll();
    COMPARE_IMAGES(imageOf(gallery.staged()), look);
}

void GalleryTest::wheelScrollsTheList()
{
    Gallery gallery(QStringLiteral("MetroXbar"));
    auto *box = gallery.editor("value")->findChild<QSpinBox *>();
    const auto turn = [box] {
        QWheelEvent wheel(QPointF(5, 5), box->mapToGlobal(QPoint(5, 5)), QPoint(), QPoint(0, 120),
                          Qt::NoButton, Qt::NoModifier, Qt::NoScrollPhase, false);
        QCoreApplication::sendEvent(box, &wheel);
    };
    turn();
    QCOMPARE(gallery.staged()->property("value").toInt(), 230);
    gallery.window.activateWindow();
    QTRY_VERIFY(gallery.window.isActiveWindow());
    box->setFocus();
    turn();
    QCOMPARE(gallery.staged()->property("value").toInt(), 231);
}

void GalleryTest::noValueIsTooMuch_data()
{
    everyClass();
}

void GalleryTest::noValueIsTooMuch()
{
    QFETCH(QString, name);
    const QStringList texts = {QString(), QStringLiteral("%n%s%*d%.99999f"),
                               QString(500, QLatin1Char('W')), QStringLiteral("%"),
                               QStringLiteral("€ ± 漢字")};
    Gallery gallery(name);
    const auto look = [&] {
        deliverAll();
        imageOf(gallery.staged());
    };
    for (const QString &property : gallery.properties->names()) {
        ValueEditor *editor = gallery.properties->editor(property);
        if (!editor)
            continue;
        for (QSpinBox *box : editor->findChildren<QSpinBox *>()) {
            for (const int number : {box->minimum(), box->maximum(), 0}) {
                type(box, QString::number(number));
                look();
            }
            type(box, QStringLiteral("99999999999"));
        }
        for (QDoubleSpinBox *box : editor->findChildren<QDoubleSpinBox *>()) {
            for (const double number : {box->minimum(), box->maximum(), 0.001, 0.0}) {
                type(box, QString::number(number, 'f'));
                look();
            }
            type(box, QStringLiteral("nan"));
        }
        if (editor->value().userType() == QMetaType::QString) {
            for (const QString &text : texts) {
                type(editor->findChild<QLineEdit *>(), text);
                look();
            }
        }
        for (QComboBox *box : editor->findChildren<QComboBox *>()) {
            box->setFocus();
            QTest::keyClick(box, Qt::Key_Home);
            for (int i = 0; i < qMin(box->count(), 8); ++i) {
                QTest::keyClick(box, Qt::Key_Down);
                look();
            }
        }
    }
    for (const QSize size : {QSize(1, 1), QSize(2000, 2000), QSize(2000, 1), QSize(1, 2000)}) {
        gallery.stage->resizeStaged(size);
        look();
    }
    // An empty text has no image; nothing else is amiss.
    for (const ErrorLine &line : takeErrorLines())
        QVERIFY2(line.message.contains(QLatin1String("ImageText e' NULL")),
                 qPrintable(line.message));
    QVERIFY(gallery.staged());
    QCOMPARE(QLatin1String(gallery.staged()->metaObject()->className()), name);
}

void GalleryTest::stateSelectors_data()
{
    QTest::addColumn<QString>("name");
    for (const char *name : {"MetroSysIcon", "MetroBattIcon", "MetroShelter", "MetroTabicon"})
        QTest::newRow(name) << QString::fromLatin1(name);
}

void GalleryTest::stateSelectors()
{
    QFETCH(QString, name);
    Gallery gallery(name);
    const auto choose = [&](const char *selector, const char *word) {
        auto *box = gallery.editor(selector)->findChild<QComboBox *>();
        QTest::keyClick(box, Qt::Key_Home);
        while (box->currentText() != QLatin1String(word) && box->currentIndex() + 1 < box->count())
            QTest::keyClick(box, Qt::Key_Down);
        QCOMPARE(box->currentText(), QString::fromLatin1(word));
        deliverAll();
    };
    const QImage inOrder = imageOf(gallery.staged());
    choose("alarm", "Fault");
    choose("operation", "On bypass");
    QVERIFY(stateOf(gallery.staged()) == (elemDesc_t{4, 7}));
    const QImage fault = imageOf(gallery.staged());
    QVERIFY(fault != inOrder);
    choose("alarm", "Communication lost");
    QVERIFY(stateOf(gallery.staged()) == (elemDesc_t{0, 7}));
    QVERIFY(imageOf(gallery.staged()) != fault);
    choose("alarm", "No alarm");
    choose("operation", "Waiting for battery voltage");
    QVERIFY(stateOf(gallery.staged()) == (elemDesc_t{1, 4}));
}

void GalleryTest::onlyStatesThatShowAreOffered()
{
    Gallery gallery;
    for (const WidgetDescription &description : widgetCatalogue()) {
        gallery.show(QString::fromLatin1(description.className));
        QCOMPARE(bool(gallery.editor("alarm")), bool(description.setState));
        QCOMPARE(bool(gallery.editor("operation")), bool(description.setState));
    }
}

void GalleryTest::enabledBox()
{
    Gallery gallery(QStringLiteral("AeroButton"));
    auto *box = gallery.withText<QCheckBox>("Enabled");
    QVERIFY(box->isChecked());
    const QImage enabled = imageOf(gallery.staged());
    box->click();
    deliverAll();
    QVERIFY(!gallery.staged()->isEnabled());
    QVERIFY(imageOf(gallery.staged()) != enabled);
    QVERIFY(!gallery.editor("enabled")->findChild<QCheckBox *>()->isChecked());
    // The other way round.
    gallery.editor("enabled")->findChild<QCheckBox *>()->click();
    QVERIFY(gallery.staged()->isEnabled());
    QTRY_VERIFY(box->isChecked());
}

void GalleryTest::background()
{
    Gallery gallery(QStringLiteral("TranspButton"));
    const auto backgroundColor = [&] {
        return gallery.window
            .grab(QRect(gallery.stage->mapTo(&gallery.window, QPoint(3, 3)), QSize(1, 1)))
            .toImage()
            .pixelColor(0, 0)
            .lightness();
    };
    const auto windowColor = [&] {
        return gallery.window.grab(QRect(2, 2, 1, 1)).toImage().pixelColor(0, 0).lightness();
    };
    QVERIFY(backgroundColor() > 200);
    auto *dark = gallery.withText<QCheckBox>("Dark background");
    dark->click();
    QVERIFY(backgroundColor() < 60);
    QVERIFY(windowColor() > 200);
    // A widget without a background of its own writes so that it can be read.
    QVERIFY(gallery.staged()->palette().color(QPalette::ButtonText).lightness() > 200);
    dark->click();
    QVERIFY(backgroundColor() > 200);
    QVERIFY(gallery.staged()->palette().color(QPalette::ButtonText).lightness() < 80);
    gallery.withText<QCheckBox>("Dark theme")->click();
    QVERIFY(windowColor() < 60);
    QVERIFY(backgroundColor() < 60);
    QVERIFY(dark->isChecked());
}

void GalleryTest::sizeFields()
{
    Gallery gallery(QStringLiteral("AeroButton"));
    QSpinBox *width = gallery.sizeBox("Width in pixels");
    QSpinBox *height = gallery.sizeBox("Height in pixels");
    QCOMPARE(QSize(width->value(), height->value()), gallery.staged()->size());
    type(width, QStringLiteral("200"));
    type(height, QStringLiteral("90"));
    deliverAll();
    QCOMPARE(gallery.staged()->size(), QSize(200, 90));
    QVERIFY(gallery.isCentred());
    gallery.withText<QPushButton>("Natural size")->click();
    QCOMPARE(gallery.staged()->size(), QSize(120, 40));
    QCOMPARE(width->value(), 120);
    type(height, QStringLiteral("0"));
    QCOMPARE(gallery.staged()->height(), 40);
}

void GalleryTest::handlesResize_data()
{
    QTest::addColumn<QPoint>("role");
    QTest::addColumn<QPoint>("by");
    QTest::addColumn<QSize>("size");
    QTest::newRow("right") << QPoint(1, 0) << QPoint(30, 50) << QSize(150, 40);
    QTest::newRow("left") << QPoint(-1, 0) << QPoint(-30, 50) << QSize(150, 40);
    QTest::newRow("top") << QPoint(0, -1) << QPoint(30, -24) << QSize(120, 64);
    QTest::newRow("bottom") << QPoint(0, 1) << QPoint(30, 24) << QSize(120, 64);
    QTest::newRow("bottom right") << QPoint(1, 1) << QPoint(40, 10) << QSize(160, 50);
    QTest::newRow("top left, inwards") << QPoint(-1, -1) << QPoint(40, 10) << QSize(80, 30);
    QTest::newRow("top right") << QPoint(1, -1) << QPoint(-20, -20) << QSize(100, 60);
    QTest::newRow("bottom left") << QPoint(-1, 1) << QPoint(-20, 20) << QSize(140, 60);
    QTest::newRow("beyond nothing") << QPoint(1, 1) << QPoint(-400, -400) << QSize(1, 1);
    QTest::newRow("too far") << QPoint(1, 1) << QPoint(5000, 5000) << QSize(2000, 2000);
}

void GalleryTest::handlesResize()
{
    QFETCH(QPoint, role);
    QFETCH(QPoint, by);
    QFETCH(QSize, size);
    Gallery gallery(QStringLiteral("AeroButton"));
    QCOMPARE(gallery.staged()->size(), QSize(120, 40));
    const QRect before = gallery.staged()->geometry();
    SizeHandle *handle = gallery.handle(role);
    QVERIFY(handle && handle->isVisible());
    QVERIFY(!handle->geometry().intersects(before));
    QVERIFY(handle->geometry().adjusted(-1, -1, 1, 1).intersects(before));

    // While the drag lasts, the opposite edges stay.
    const QPoint grip(4, 4);
    const QPoint begin = handle->mapToGlobal(grip);
    Mouse::press(handle, grip);
    Mouse::drag(handle, handle->mapFromGlobal(begin + by));
    deliverAll();
    const QRect during = gallery.staged()->geometry();
    QCOMPARE(during.size(), size);
    QCOMPARE(role.x() < 0 ? during.right() : during.left(),
             role.x() < 0 ? before.right() : before.left());
    QCOMPARE(role.y() < 0 ? during.bottom() : during.top(),
             role.y() < 0 ? before.bottom() : before.top());
    Mouse::release(handle, handle->mapFromGlobal(begin + by));
    deliverAll();
    QCOMPARE(gallery.staged()->size(), size);
    QVERIFY(gallery.isCentred());
    // Without a press nothing moves.
    Mouse::drag(handle, QPointF(40, 40));
    QCOMPARE(gallery.staged()->size(), size);
}

void GalleryTest::selfSizingWidgetsHaveNoHandles_data()
{
    everyClass();
}

void GalleryTest::selfSizingWidgetsHaveNoHandles()
{
    QFETCH(QString, name);
    Gallery gallery(name);
    const QSize own = gallery.staged()->size();
    QCOMPARE(own, gallery.staged()->size());
    const bool hasHandles = gallery.handle(QPoint(1, 1))->isVisible();
    QCOMPARE(gallery.sizeBox("Width in pixels")->isEnabled(), hasHandles);
    QCOMPARE(gallery.withText<QPushButton>("Natural size")->isEnabled(), hasHandles);
    // A widget that takes no other size for good comes back to its own.
    gallery.staged()->resize(own + QSize(40, 40));
    deliverAll();
    gallery.staged()->resize(own + QSize(60, 60));
    deliverAll();
    QCOMPARE(gallery.staged()->size(), hasHandles ? own + QSize(60, 60) : own);
}

void GalleryTest::largeWidgetsScroll()
{
    Gallery gallery(QStringLiteral("MetroStatusbar"));
    QCOMPARE(gallery.staged()->width(), 800);
    QVERIFY(gallery.stage->viewport()->width() < 800);
    QVERIFY(gallery.stage->canvas()->rect().contains(gallery.staged()->geometry()));
    // The middle shows first.
    const int middle = gallery.staged()->mapTo(gallery.stage->viewport(), QPoint(400, 0)).x();
    QVERIFY(qAbs(middle - gallery.stage->viewport()->width() / 2) <= 1);
    gallery.window.resize(1500, 700);
    deliverAll();
    QCOMPARE(gallery.stage->canvas()->size(), gallery.stage->viewport()->size());
}

void GalleryTest::widgetsAreLive()
{
    Gallery gallery(QStringLiteral("AeroButton"));
    QVERIFY(gallery.says(QStringLiteral("No signals yet")));
    QTest::mouseClick(gallery.staged(), Qt::LeftButton);
    QVERIFY(gallery.says(QStringLiteral("Signal 3:")));
    QVERIFY(gallery.says(QStringLiteral("clicked(checked: false)")));
    QVERIFY(gallery.says(QStringLiteral("pressed()")));
    gallery.show(QStringLiteral("AeroSwitch"));
    QVERIFY(gallery.says(QStringLiteral("No signals yet")));
    QTest::mouseClick(gallery.staged(), Qt::LeftButton);
    QVERIFY(gallery.says(QStringLiteral("toggled(checked: false)")));
    QTRY_VERIFY(!gallery.editor("checked")->findChild<QCheckBox *>()->isChecked());

    gallery.show(QStringLiteral("SlideSwitch"));
    Mouse::press(gallery.staged(), QPoint(150, 30));
    Mouse::drag(gallery.staged(), QPoint(60, 30));
    Mouse::release(gallery.staged(), QPoint(40, 30));
    QVERIFY(gallery.says(QStringLiteral("toggled(checked: false)")));
}

void GalleryTest::drawerKeepsItsRightEdge()
{
    Gallery gallery(QStringLiteral("MetroNavdrawer"));
    auto *drawer = gallery.staged<MetroNavdrawer>();
    QCOMPARE(drawer->getState(), MetroNavdrawer::open);
    const int right = drawer->geometry().right();
    QTest::mouseClick(drawer, Qt::LeftButton, {}, QPoint(20, 40));
    deliverAll();
    QCOMPARE(drawer->getState(), MetroNavdrawer::close);
    QCOMPARE(drawer->width(), 62);
    QCOMPARE(drawer->geometry().right(), right);
    QTest::mouseClick(drawer, Qt::LeftButton, {}, QPoint(20, 40));
    deliverAll();
    QCOMPARE(drawer->getState(), MetroNavdrawer::open);
    QCOMPARE(drawer->width(), 62 + 2 * 69);
    QCOMPARE(drawer->geometry().right(), right);
    // Opened again and again it goes left, but not off the stage.
    for (int i = 0; i < 5; ++i) {
        drawer->setState(MetroNavdrawer::open);
        deliverAll();
        QVERIFY(gallery.stage->canvas()->rect().contains(drawer->geometry()));
    }
}

void GalleryTest::pagesTurn()
{
    Gallery gallery(QStringLiteral("RotateStackedWidget"));
    auto *stack = gallery.staged<RotateStackedWidget>();
    QCOMPARE(stack->count(), 3);
    const auto choosePage = [&] { chooseOther(gallery.editor("page")->findChild<QComboBox *>()); };
    // Animated, the old page stays current until the change is over.
    choosePage();
    QCOMPARE(stack->currentIndex(), 0);
    QVERIFY(stack->currentWidget()->isHidden());
    // A change may be broken off by another widget.
    gallery.show(QStringLiteral("RotateStackedWidget"));
    stack = gallery.staged<RotateStackedWidget>();
    gallery.editor("animated")->findChild<QCheckBox *>()->click();
    choosePage();
    QCOMPARE(stack->currentIndex(), 1);
    QVERIFY(gallery.says(QStringLiteral("currentChanged(1)")));
    QTest::mouseClick(stack->currentWidget()->findChild<AeroButton *>(), Qt::LeftButton);
    QCOMPARE(stack->currentIndex(), 2);
}

void GalleryTest::zoomEnlargesWholePixels()
{
    Gallery gallery(QStringLiteral("SlideSwitch"));
    auto *zoom = gallery.sizeBox("Shows each pixel as a square of so many");
    QVERIFY(zoom);
    auto *magnifier = gallery.window.findChild<Magnifier *>();
    QVERIFY(!magnifier->isVisible());
    for (const int factor : {2, 3, 8}) {
        zoom->setValue(factor);
        deliverAll();
        QVERIFY(magnifier->isVisible());
        QCOMPARE(magnifier->widget()->size(), gallery.staged()->size() * factor);
        const auto expected = [&] {
            QImage small(gallery.staged()->size(), QImage::Format_ARGB32_Premultiplied);
            small.fill(Qt::white);
            gallery.staged()->render(&small, QPoint(), QRegion(), QWidget::DrawChildren);
            QImage large(small.size() * factor, QImage::Format_RGB32);
            for (int y = 0; y < large.height(); ++y) {
                for (int x = 0; x < large.width(); ++x)
                    large.setPixel(x, y, small.pixel(x / factor, y / factor));
            }
            return large;
        };
        const auto shown = [&] {
            return magnifier->widget()->grab().toImage().convertToFormat(QImage::Format_RGB32);
        };
        COMPARE_IMAGES(shown(), expected());
        // A change of the widget is followed.
        auto *control = gallery.staged<SlideSwitch>();
        control->setLocked(!control->isChecked() || factor != 3);
        QTRY_COMPARE(shown(), expected());
    }
    zoom->setValue(1);
    QVERIFY(!magnifier->isVisible());
    // A deleted widget leaves its last image.
    zoom->setValue(4);
    delete gallery.staged();
    deliverAll();
    QTest::mouseClick(magnifier->widget(), Qt::LeftButton, {}, QPoint(10, 10));
    gallery.show(QStringLiteral("AeroButton"));
    QCOMPARE(magnifier->widget()->size(), gallery.staged()->size() * 4);
}

void GalleryTest::zoomPassesTheMouseOn()
{
    Gallery gallery(QStringLiteral("AeroGroupbox"));
    gallery.stage->setZoom(3);
    deliverAll();
    QWidget *canvas = gallery.window.findChild<Magnifier *>()->widget();
    auto *inner = gallery.staged()->findChild<SimpleSlideSwitch *>();
    QVERIFY(inner);
    const bool before = inner->isChecked();
    const QPoint place = inner->mapTo(gallery.staged(), inner->rect().center()) * 3;
    QTest::mouseClick(canvas, Qt::LeftButton, {}, place);
    QCOMPARE(inner->isChecked(), !before);
    // Outside of the switch nothing toggles.
    QTest::mouseClick(canvas, Qt::LeftButton, {}, QPoint(4, canvas->height() - 5));
    QCOMPARE(inner->isChecked(), !before);

    gallery.show(QStringLiteral("TranspButton"));
    deliverAll();
    const QImage idle = imageOf(gallery.staged());
    QTest::mouseMove(canvas, canvas->rect().center());
    QTRY_VERIFY(imageOf(gallery.staged()) != idle);
    QVERIFY(gallery.says(QStringLiteral("mouseEnter")));
    QEvent leave(QEvent::Leave);
    QCoreApplication::sendEvent(canvas, &leave);
    COMPARE_IMAGES(imageOf(gallery.staged()), idle);
}

void GalleryTest::allStatesAtOnce_data()
{
    everyClass();
}

void GalleryTest::allStatesAtOnce()
{
    QFETCH(QString, name);
    Gallery gallery(name);
    gallery.withText<QPushButton>("All states")->click();
    deliverAll();
    auto *sheet = gallery.window.findChild<StateSheet *>();
    QVERIFY(sheet && sheet->isVisible());
    QVERIFY(!gallery.stage->isVisible());
    QVERIFY(sheet->captions().size() >= int(widgetStates(name).size()));
    for (const QObject *child : sheet->children())
        QVERIFY(sheet->rect().contains(static_cast<const QWidget *>(child)->geometry()));
    const QString other =
        name == widgetClasses().first() ? widgetClasses().last() : widgetClasses().first();
    gallery.show(other);
    sheet = gallery.window.findChild<StateSheet *>();
    QCOMPARE(sheet->captions().first(), widgetStates(other).front().caption);
    gallery.withText<QPushButton>("All states")->click();
    deliverAll();
    QVERIFY(!gallery.window.findChild<StateSheet *>());
    QVERIFY(gallery.stage->isVisible());
}

/// Gives a tile one setting of each kind.
static void changeTile(Gallery &gallery)
{
    edit(gallery.editor("alarm"));
    type(gallery.editor("text")->findChild<QLineEdit *>(), QStringLiteral("a \"b\" \\ °"));
    type(gallery.editor("colorText")->findChild<QLineEdit *>(), QStringLiteral("#80ff0000"));
    type(gallery.editor("xLabel")->findChild<QSpinBox *>(), QStringLiteral("12"));
    gallery.withText<QCheckBox>("Enabled")->click();
    gallery.stage->resizeStaged(QSize(150, 50));
}

void GalleryTest::copiesCpp()
{
    Gallery gallery(QStringLiteral("MetroShelter"));
    changeTile(gallery);
    gallery.withText<QPushButton>("Copy C++")->click();
    QCOMPARE(QApplication::clipboard()->text(),
             QStringLiteral("auto *metroShelter = new MetroShelter(parent);\n"
                            "metroShelter->resize(150, 50);\n"
                            "metroShelter->setColorText(QColor(255, 0, 0, 128));\n"
                            "metroShelter->setProperty(\"xLabel\", 12);\n"
                            "metroShelter->setText(QStringLiteral(\"a \\\"b\\\" \\\\ °\"));\n"
                            "metroShelter->setEnabled(false);\n"
                            "metroShelter->setState({2, 5});\n"));
    gallery.show(QStringLiteral("AeroLinebar"));
    const QString code = gallery.window.cppCode();
    QVERIFY2(code.contains(QStringLiteral("aeroLinebar->setProperty(\"valueF\", 65.0);\n")),
             qPrintable(code));
    QVERIFY2(code.contains(QStringLiteral("->setValuePosition(AeroLinebar::leftVal);\n")),
             qPrintable(code));
    delete gallery.staged();
    QCOMPARE(gallery.window.cppCode(), QString());
}

/// Edits every property of the widget that the gallery shows.
static void editEverything(Gallery &gallery)
{
    for (const QString &property : gallery.properties->names()) {
        ValueEditor *editor = gallery.properties->editor(property);
        if (editor && editor->isVisibleTo(&gallery.window))
            edit(editor);
    }
}

/// Edits every property of every widget, and hands the code for it to the compiler.
void GalleryTest::codeCompiles()
{
    QString code;
    for (const QString &name : widgetClasses()) {
        Gallery gallery(name);
        editEverything(gallery);
        code += QStringLiteral("#include <%1.h>\nvoid make%2(QWidget *parent)\n{\n%3}\n")
                    .arg(name.toLower(), name, gallery.window.cppCode());
        takeErrorLines();
    }
    QTemporaryDir directory;
    QFile file(directory.filePath(QStringLiteral("code.cpp")));
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.write("#include <QtGui/QtGui>\n#include <QtWidgets/QtWidgets>\n" + code.toUtf8());
    file.close();
    QProcess compiler;
    compiler.start(QStringLiteral(KIV_COMPILER),
                   QStringLiteral(KIV_COMPILER_OPTIONS).split(QLatin1Char(' ')) +
                       QStringList({QStringLiteral("-fsyntax-only"), file.fileName()}));
    QVERIFY(compiler.waitForFinished(120000));
    QVERIFY2(compiler.exitCode() == 0,
             (compiler.readAllStandardError() + code.toUtf8()).constData());
}

void GalleryTest::copiesPython()
{
    Gallery gallery(QStringLiteral("MetroShelter"));
    changeTile(gallery);
    gallery.withText<QPushButton>("Copy Python")->click();
    QCOMPARE(QApplication::clipboard()->text(),
             QStringLiteral("metroShelter = MetroShelter(parent)\n"
                            "metroShelter.resize(150, 50)\n"
                            "metroShelter.setColorText(QColor(255, 0, 0, 128))\n"
                            "metroShelter.setProperty(\"xLabel\", 12)\n"
                            "metroShelter.setText(\"a \\\"b\\\" \\\\ °\")\n"
                            "metroShelter.setEnabled(False)\n"
                            "metroShelter.setState((2, 5))\n"));
    gallery.show(QStringLiteral("AeroLinebar"));
    const QString code = gallery.window.pythonCode();
    QVERIFY2(code.contains(QStringLiteral(".setValuePosition(AeroLinebar.ValPos.leftVal)\n")),
             qPrintable(code));
    delete gallery.staged();
    QCOMPARE(gallery.window.pythonCode(), QString());
}

/// Edits every property of every widget, and runs the code for it with the bindings.
void GalleryTest::pythonCodeRuns()
{
    const QString bindings = QStringLiteral(KIV_PYTHON_BINDINGS);
    if (bindings.isEmpty())
        QSKIP("the Python bindings are not built: -DKIVWIDGETS_BUILD_PYTHON=ON builds them");
    QString code;
    for (const char *module : {"QtCore", "QtGui", "QtWidgets"})
        code += QStringLiteral("from PyQt%1.%2 import *\n")
                    .arg(QT_VERSION_MAJOR)
                    .arg(QLatin1String(module));
    code += QStringLiteral("from kivwidgets import *\n"
                           "application = QApplication([])\nparent = QWidget()\n");
    for (const QString &name : widgetClasses()) {
        Gallery gallery(name);
        editEverything(gallery);
        code += gallery.window.pythonCode();
        takeErrorLines();
    }
    code += QStringLiteral("print(len(parent.children()))\n");
    QProcess python;
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert(QStringLiteral("PYTHONPATH"), bindings);
    environment.insert(QStringLiteral("PYTHONIOENCODING"), QStringLiteral("utf-8"));
    environment.insert(QStringLiteral("LD_LIBRARY_PATH"), QStringLiteral(KIV_LIBRARY_DIRECTORY));
    python.setProcessEnvironment(environment);
    python.start(QStringLiteral("/usr/bin/python3"), {QStringLiteral("-B"), QStringLiteral("-")});
    python.write(code.toUtf8());
    python.closeWriteChannel();
    QVERIFY(python.waitForFinished(120000));
    const QByteArray errors = python.readAllStandardError();
    QVERIFY2(python.exitCode() == 0, (errors + code.toUtf8()).constData());
    QVERIFY(python.readAllStandardOutput().trimmed().toInt() >= widgetClasses().size());
}

/// The settings alone, applied to a new widget, show the same.
void GalleryTest::codeMakesTheSameWidget()
{
    for (const char *name : {"MetroXbar", "MetroCirclerate", "AeroButton", "AeroLinebar"}) {
        Gallery gallery(QString::fromLatin1(name));
        const WidgetDescription &description = *findWidget(QString::fromLatin1(name));
        const WidgetSettings settings = settingsOf(gallery.staged(), description, std::nullopt);
        QVERIFY(!settings.settings.empty());
        QWidget window;
        window.resize(600, 300);
        window.setPalette(gallery.stage->canvasPalette());
        QWidget *made = description.create(&window);
        if (settings.size.isValid())
            made->resize(settings.size);
        for (const WidgetSettings::Setting &setting : settings.settings)
            QVERIFY(made->setProperty(qPrintable(setting.property), setting.value));
        window.show();
        deliverAll();
        COMPARE_IMAGES(imageOf(made), imageOf(gallery.staged()));
        // Of those, nothing differs any more.
        QCOMPARE(settingsOf(made, description, std::nullopt).settings.size(),
                 settings.settings.size());
    }
}

void GalleryTest::rememberedTheme()
{
    QTemporaryDir directory;
    const QString file = directory.filePath(QStringLiteral("gallery.ini"));
    const auto isDark = [](const Gallery &gallery) {
        return gallery.window.palette().color(QPalette::Window).lightness() < 128;
    };
    {
        Gallery gallery;
        gallery.window.remember(file);
        QVERIFY(!isDark(gallery));
        gallery.withText<QCheckBox>("Dark theme")->click();
        gallery.withText<QCheckBox>("Dark background")->click();
    }
    {
        Gallery gallery;
        QVERIFY(!isDark(gallery));
        gallery.window.remember(file);
        QVERIFY(isDark(gallery));
        QVERIFY(!gallery.withText<QCheckBox>("Dark background")->isChecked());
        gallery.withText<QCheckBox>("Dark theme")->click();
        QVERIFY(!isDark(gallery));
    }
    // What is no file of ours is no obstacle.
    QFile garbage(file);
    QVERIFY(garbage.open(QIODevice::WriteOnly));
    garbage.write("\xff[=\n[General\ndarkTheme=@Variant(garbage)\n");
    garbage.close();
    Gallery gallery;
    gallery.window.remember(file);
    takeWarnings();
    gallery.withText<QCheckBox>("Dark theme")->click();
}

void GalleryTest::reset()
{
    Gallery gallery(QStringLiteral("MetroShelter"));
    const QImage fresh = imageOf(gallery.staged());
    edit(gallery.editor("alarm"));
    edit(gallery.editor("colorText"));
    gallery.stage->resizeStaged(QSize(300, 100));
    gallery.withText<QCheckBox>("Enabled")->click();
    gallery.withText<QPushButton>("Reset")->click();
    deliverAll();
    COMPARE_IMAGES(imageOf(gallery.staged()), fresh);
    QVERIFY(gallery.withText<QCheckBox>("Enabled")->isChecked());
    QCOMPARE(gallery.editor("alarm")->value().toInt(), 1);
}

void GalleryTest::widgetDeletedByTheApplication()
{
    Gallery gallery(QStringLiteral("MetroSysIcon"));
    delete gallery.staged();
    QVERIFY(!gallery.handle(QPoint(1, 1))->isVisible());
    edit(gallery.editor("border"));
    edit(gallery.editor("alarm"));
    gallery.stage->resizeStaged(QSize(50, 50));
    gallery.withText<QCheckBox>("Enabled")->click();
    gallery.window.resize(900, 600);
    deliverAll();
    gallery.show(QStringLiteral("AeroButton"));
    QVERIFY(gallery.staged());
}

void GalleryTest::smallestWindowShowsEverything()
{
    Gallery gallery;
    for (const QString &name : widgetClasses()) {
        gallery.window.resize(GalleryWindow::smallestSize);
        gallery.show(name);
        QCOMPARE(gallery.window.size(), GalleryWindow::smallestSize);
        const QSize needed = gallery.window.layout()->minimumSize();
        QCOMPARE(needed.boundedTo(GalleryWindow::smallestSize), needed);
        // The list of properties scrolls downwards only.
        QVERIFY2(gallery.properties->widget()->width() <= gallery.properties->viewport()->width(),
                 qPrintable(name));
    }
}

void GalleryTest::screenshots()
{
    QTemporaryDir directory;
    GalleryOptions options;
    options.directory = directory.filePath(QStringLiteral("new/images"));
    GalleryWindow window;
    window.resize(900, 600);
    QString error;
    QVERIFY2(takeGalleryScreenshots(window, options, &error), qPrintable(error));
    QStringList expected;
    for (const QString &name : widgetClasses())
        expected.append(name.toLower() + QStringLiteral(".png"));
    expected.sort();
    QCOMPARE(QDir(options.directory).entryList(QDir::Files, QDir::Name), expected);
    QList<QImage> images;
    for (const QString &file : std::as_const(expected)) {
        const QImage image(QDir(options.directory).filePath(file));
        QCOMPARE(image.size(), QSize(900, 600));
        QVERIFY2(colorsIn(image) > 100, qPrintable(file));
        // The stage shows this widget and no other.
        const QRect middle(300, 100, 250, 400);
        QVERIFY2(colorsIn(image.copy(middle)) > 2, qPrintable(file));
        for (const QImage &other : std::as_const(images))
            QVERIFY2(other.copy(middle) != image.copy(middle), qPrintable(file));
        images.append(image);
    }
}

void GalleryTest::oneScreenshot()
{
    QTemporaryDir directory;
    GalleryOptions options;
    options.directory = directory.path();
    options.widget = QStringLiteral("MetroXbar");
    GalleryWindow window;
    window.setDarkTheme(true);
    QString error;
    QVERIFY2(takeGalleryScreenshots(window, options, &error), qPrintable(error));
    QCOMPARE(QDir(options.directory).entryList(QDir::Files),
             QStringList(QStringLiteral("metroxbar.png")));
    const QImage image(directory.filePath(QStringLiteral("metroxbar.png")));
    QVERIFY(image.pixelColor(2, 2).lightness() < 60);
}

void GalleryTest::screenshotsNeedADirectory()
{
    QTemporaryDir directory;
    QFile file(directory.filePath(QStringLiteral("file")));
    QVERIFY(file.open(QIODevice::WriteOnly));
    GalleryOptions options;
    options.directory = file.fileName() + QStringLiteral("/images");
    GalleryWindow window;
    QString error;
    QVERIFY(!takeGalleryScreenshots(window, options, &error));
    QVERIFY2(error.contains(options.directory), qPrintable(error));
}

void GalleryTest::options()
{
    const auto parse = [](const char *arguments) {
        return parseGalleryOptions(
            QStringList(QStringLiteral("kivgallery")) +
            QString::fromLatin1(arguments).split(QLatin1Char(' '), Qt::SkipEmptyParts));
    };
    QCOMPARE(int(parse("").task), int(GalleryOptions::Task::ShowWindow));
    QCOMPARE(parse("").widget, QString());
    QCOMPARE(parse("--widget metroxbar").widget, QStringLiteral("MetroXbar"));
    QCOMPARE(parse("--size 1000x640").size, QSize(1000, 640));
    QVERIFY(parse("--dark").dark);
    const GalleryOptions shots = parse("--screenshot dir --widget AeroButton");
    QCOMPARE(int(shots.task), int(GalleryOptions::Task::TakeScreenshots));
    QCOMPARE(shots.directory, QStringLiteral("dir"));
    QCOMPARE(shots.widget, QStringLiteral("AeroButton"));
}

void GalleryTest::wrongOptions_data()
{
    QTest::addColumn<QString>("arguments");
    QTest::addColumn<QString>("part");
    const auto row = [](const char *arguments, const char *part) {
        QTest::newRow(arguments) << QString::fromLatin1(arguments) << QString::fromLatin1(part);
    };
    row("--unknown", "unknown");
    row("stray", "'stray'");
    row("--widget NoSuchWidget", "'NoSuchWidget'");
    row("--widget", "widget");
    row("--screenshot", "screenshot");
    row("--size large", "'large'");
    row("--size 100x100", "840x480");
    row("--size 99999x600", "'99999x600'");
    row("--size 1000x640x2", "'1000x640x2'");
    row("--widget Nothing --screenshot dir", "'Nothing'");
}

void GalleryTest::wrongOptions()
{
    QFETCH(QString, arguments);
    QFETCH(QString, part);
    const ProgramRun refused = run(arguments.split(QLatin1Char(' ')));
    QVERIFY(refused.ended);
    QCOMPARE(refused.status, 2);
    QCOMPARE(refused.output, QString());
    QVERIFY2(refused.errors.startsWith(QStringLiteral("kivgallery: ")), qPrintable(refused.errors));
    QVERIFY2(refused.errors.contains(part), qPrintable(refused.errors));
    QCOMPARE(refused.errors.count(QLatin1Char('\n')), 1);
}

void GalleryTest::program()
{
    const ProgramRun version = run({QStringLiteral("--version")});
    QCOMPARE(version.status, 0);
    QVERIFY2(version.output.startsWith(QStringLiteral("kivgallery ")), qPrintable(version.output));
    const ProgramRun help = run({QStringLiteral("--help")});
    QVERIFY(help.ended);
    QCOMPARE(help.status, 0);
    for (const char *option : {"--widget", "--screenshot", "--dark", "--size", "--version"})
        QVERIFY2(help.output.contains(QLatin1String(option)), option);
    // Without a display.
    const ProgramRun window = run({});
    QCOMPARE(window.status, 1);
    QVERIFY2(window.errors.contains(QStringLiteral("no usable display")),
             qPrintable(window.errors));
    QTemporaryDir directory;
    const ProgramRun shots = run({QStringLiteral("--screenshot"), directory.path(),
                                  QStringLiteral("--widget"), QStringLiteral("AeroSwitch")});
    QCOMPARE(shots.status, 0);
    const QString file = directory.filePath(QStringLiteral("aeroswitch.png"));
    QCOMPARE(shots.output, file + QLatin1Char('\n'));
    QVERIFY(colorsIn(QImage(file)) > 100);
}

KIV_TEST_MAIN(GalleryTest)

#include "tst_gallery.moc"
