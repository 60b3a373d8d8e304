// SPDX-License-Identifier: LicenseRef-all-rights-reserved

#include "mouse.h"
#include "testmain.h"
#include "widgetprobe.h"

#include <aerogroupbox.h>
#include <metronavdrawer.h>

#include <QtTest/QSignalSpy>
#include <QtTest/qtesttouch.h>
#include <QtWidgets/QProxyStyle>
#include <QtWidgets/QStyleFactory>
#include <QtWidgets/QStyleOption>

#include <memory>

namespace {

constexpr QSize boxSize(120, 90);
/// Fine enough to meet every check box and title, whatever the style.
constexpr int gridStep = 6;

/// Takes every point of a box for its check box.
class CheckBoxEverywhere : public QProxyStyle
{
public:
    SubControl hitTestComplexControl(ComplexControl control, const QStyleOptionComplex *option,
                                     const QPoint &place, const QWidget *widget) const override
    {
        if (control != CC_GroupBox)
            return QProxyStyle::hitTestComplexControl(control, option, place, widget);
        return option->rect.contains(place) ? SC_GroupBoxCheckBox : SC_None;
    }
};

QStyle *newStyle(const QString &name)
{
    if (name == QLatin1String("check box everywhere"))
        return new CheckBoxEverywhere;
    return QStyleFactory::create(name);
}

QGroupBox *addBox(const QString &className, QWidget *parent)
{
    if (className == QLatin1String("MetroNavdrawer"))
        return new MetroNavdrawer(parent);
    return new AeroGroupbox(parent);
}

/// A checkable box of either class in a shown window.
struct BoxStage
{
    BoxStage(const QString &className, const QString &styleName, const QString &title,
             bool tracking)
        : style(newStyle(styleName))
        , box(addBox(className, &window))
    {
        box->setStyle(style.get());
        box->setTitle(title);
        box->setCheckable(true);
        box->setMouseTracking(tracking);
        window.resize(300, 200);
        box->setGeometry(QRect(QPoint(20, 20), boxSize));
        window.show();
        deliverAll();
    }

    QWidget window;
    const std::unique_ptr<QStyle> style;
    QGroupBox *const box;
};

} // namespace

/// What the group boxes of the library make of a click, wherever the base class believes its check
/// box and its title to be.
class BoxToggleTest : public WidgetTest
{
    Q_OBJECT

private Q_SLOTS:
    void oneToggleForEachPress_data();
    void oneToggleForEachPress();
    void oneToggleForEachTouch_data();
    void oneToggleForEachTouch();
    void spaceKeyToggles_data();
    void spaceKeyToggles();

private:
    void addBoxes();
    static std::unique_ptr<BoxStage> fetchedStage();
};

void BoxToggleTest::addBoxes()
{
    QTest::addColumn<QString>("className");
    QTest::addColumn<QString>("style");
    QTest::addColumn<QString>("title");
    QTest::addColumn<bool>("tracking");
    const QStringList styles =
        QStyleFactory::keys() + QStringList(QStringLiteral("check box everywhere"));
    for (const char *className : {"AeroGroupbox", "MetroNavdrawer"}) {
        for (const QString &style : styles) {
            for (const char *title : {"", "Output"}) {
                for (const bool tracking : {false, true}) {
                    QTest::addRow("%s, %s, %s, %s", className, qPrintable(style),
                                  *title ? "titled" : "untitled",
                                  tracking ? "tracked" : "not tracked")
                        << className << style << title << tracking;
                }
            }
        }
    }
}

std::unique_ptr<BoxStage> BoxToggleTest::fetchedStage()
{
    QFETCH(QString, className);
    QFETCH(QString, style);
    QFETCH(QString, title);
    QFETCH(bool, tracking);
    return std::make_unique<BoxStage>(className, style, title, tracking);
}

void BoxToggleTest::oneToggleForEachPress_data()
{
    addBoxes();
}

void BoxToggleTest::oneToggleForEachPress()
{
    const std::unique_ptr<BoxStage> stage = fetchedStage();
    QGroupBox *const box = stage->box;
    const QSignalSpy clicked(box, &QGroupBox::clicked);
    const QSignalSpy toggled(box, &QGroupBox::toggled);
    // From a press to a release on the same point, a pixel further, and far away.
    const QPoint jitters[] = {{0, 0}, {1, 0}, {0, -1}, {boxSize.width() / 2, 3}};
    for (int y = 0; y < boxSize.height(); y += gridStep) {
        for (int x = 0; x < boxSize.width(); x += gridStep) {
            for (const QPoint &jitter : jitters) {
                const QPoint from(x, y);
                const QPoint to = from + jitter;
                const auto before = clicked.count();
                const bool checked = box->isChecked();
                if (box->hasMouseTracking())
                    Mouse::hover(box, from);
                Mouse::press(box, from);
                QCOMPARE(clicked.count(), before + 1);
                Mouse::drag(box, to);
                Mouse::release(box, to);
                QCOMPARE(clicked.count(), before + 1);
                QCOMPARE(toggled.count(), before + 1);
                QCOMPARE(box->isChecked(), !checked);
            }
        }
    }
}

void BoxToggleTest::oneToggleForEachTouch_data()
{
    addBoxes();
}

void BoxToggleTest::oneToggleForEachTouch()
{
    const std::unique_ptr<BoxStage> stage = fetchedStage();
    QGroupBox *const box = stage->box;
    static auto *const panel = QTest::createTouchDevice();
    const QSignalSpy clicked(box, &QGroupBox::clicked);
    int presses = 0;
    for (int y = 1; y < boxSize.height(); y += gridStep) {
        for (int x = 1; x < boxSize.width(); x += 4 * gridStep) {
            const QPoint from(x, y);
            // Qt makes mouse events of the touch, since nothing takes it.
            QWindow *const window = stage->window.windowHandle();
            const QPoint place = box->mapTo(&stage->window, from);
            QTest::touchEvent(window, panel).press(0, place, window);
            QTest::touchEvent(window, panel).move(0, place + QPoint(1, 0), window);
            QTest::touchEvent(window, panel).release(0, place + QPoint(1, 0), window);
            deliverAll();
            ++presses;
            QCOMPARE(clicked.count(), presses);
            QCOMPARE(box->isChecked(), presses % 2 == 0);
        }
    }
}

void BoxToggleTest::spaceKeyToggles_data()
{
    addBoxes();
}

void BoxToggleTest::spaceKeyToggles()
{
    const std::unique_ptr<BoxStage> stage = fetchedStage();
    QGroupBox *const box = stage->box;
    const QSignalSpy clicked(box, &QGroupBox::clicked);
    QTest::keyClick(box, Qt::Key_Space);
    QCOMPARE(clicked.count(), 1);
    QVERIFY(!box->isChecked());
    // A click while the key is down toggles once, and so does the key.
    QTest::keyPress(box, Qt::Key_Space);
    Mouse::press(box, QPoint(12, 8));
    Mouse::drag(box, QPoint(13, 8));
    Mouse::release(box, QPoint(13, 8));
    QCOMPARE(clicked.count(), 2);
    QTest::keyRelease(box, Qt::Key_Space);
    QCOMPARE(clicked.count(), 3);
    QVERIFY(!box->isChecked());
}

KIV_TEST_MAIN(BoxToggleTest)

#include "tst_boxtoggle.moc"
