// SPDX-License-Identifier: LicenseRef-all-rights-reserved

#include "simpleslideswitch.h"

#include "icons.h"
#include "images.h"
#include "layout.h"
#include "mouse.h"
#include "testmain.h"
#include "widgetprobe.h"

#include <QtCore/QPointer>
#include <QtGui/QPainter>
#include <QtGui/QResizeEvent>
#include <QtTest/QSignalSpy>

#include <limits>

Q_DECLARE_METATYPE(Qt::MouseButton)

namespace {

constexpr QSize trackSize(78, 27);
constexpr int knobSide = 27;

QPixmap libraryImage(const char *name)
{
    return QPixmap(QStringLiteral(":/Images/%1.png").arg(QLatin1String(name)));
}

/// The library's images with the checked track revealed up to column @p revealed and the knob's
/// left edge at column @p knob.
QImage switchImage(int revealed, int knob, bool enabled = true)
{
    return drawnImage(trackSize, [&](QPainter *painter) {
        painter->drawPixmap(0, 0,
                            libraryImage(enabled ? "slide_unchecked" : "slide_unchecked_disabled"));
        if (revealed > 0) {
            painter->drawPixmap(0, 0,
                                libraryImage(enabled ? "slide_checked" : "slide_checked_disabled"),
                                0, 0, revealed, 27);
        }
        const QPixmap image = libraryImage(enabled ? "slide_button" : "button_slide_disabled");
        painter->drawPixmap(QRect(knob, 0, knobSide, knobSide), image);
    });
}

} // namespace

class SimpleSlideSwitchTest : public WidgetTest
{
    Q_OBJECT

private Q_SLOTS:
    void metaObject();
    void layout();
    void defaults();
    void keepsItsSize_data();
    void keepsItsSize();
    void atRest();
    void disabled();
    void baseClassLeavesTheTrack();
    void setCheckedRepaintsOnAChange();
    void text();
    void drag_data();
    void drag();
    void alongADrag_data();
    void alongADrag();
    void limitsFollowTheMargins_data();
    void limitsFollowTheMargins();
    void marginsMoveNothingAtOnce();
    void releaseWithoutMovement_data();
    void releaseWithoutMovement();
    void releaseWithoutAPress();
    void hoveringCountsAsMovement();
    void pressBesideTheKnobReveals();
    void movesOnlyUpdate();
    void trackSetsTheSize_data();
    void trackSetsTheSize();
    void knobImages();
    void imageWritesAlwaysRepaint_data();
    void imageWritesAlwaysRepaint();
    void placesAreRounded();
    void releaseWithoutAClick_data();
    void releaseWithoutAClick();
    void releaseLeavesTheButtonPressed();
    void clickLeavesTheButtonPressed();
    void extremeMarginsAreHarmless();
    void nullImagesAreHarmless();
    void disabledKnobFarWiderThanTheKnob();
    void switchedOffWithAMargin();
    void deletedInASlot();
};

void SimpleSlideSwitchTest::metaObject()
{
    const QMetaObject &meta = SimpleSlideSwitch::staticMetaObject;
    QCOMPARE(meta.superClass()->className(), "QAbstractButton");
    QCOMPARE(declaredProperties(meta),
             QStringList({QStringLiteral("uncheckedImg QPixmap"), QStringLiteral("marginLeft int"),
                          QStringLiteral("checkedImg QPixmap"), QStringLiteral("marginRight int"),
                          QStringLiteral("uncheckedDisImg QPixmap"),
                          QStringLiteral("checkedDisImg QPixmap"), QStringLiteral("btnImg QPixmap"),
                          QStringLiteral("btnDisImg QPixmap")}));
    QCOMPARE(declaredMethods(meta), QStringList());
}

void SimpleSlideSwitchTest::defaults()
{
    const SimpleSlideSwitch knob(nullptr);
    QCOMPARE(knob.size(), trackSize);
    QCOMPARE(knob.iconSize(), trackSize);
    QCOMPARE(knob.minimumSize(), trackSize);
    QCOMPARE(knob.maximumSize(), trackSize);
    QVERIFY(knob.isCheckable());
    QVERIFY(!knob.isChecked());
    QVERIFY(knob.hasMouseTracking());
    QCOMPARE(knob.property("marginLeft").toInt(), 0);
    QCOMPARE(knob.property("marginRight").toInt(), 0);
    const char *const images[][2] = {
        {"uncheckedImg", "slide_unchecked"},
        {"checkedImg", "slide_checked"},
        {"uncheckedDisImg", "slide_unchecked_disabled"},
        {"checkedDisImg", "slide_checked_disabled"},
        {"btnImg", "slide_button"},
        {"btnDisImg", "button_slide_disabled"},
    };
    for (const auto &[property, name] : images) {
        COMPARE_IMAGES(knob.property(property).value<QPixmap>().toImage(),
                       libraryImage(name).toImage());
    }
}

void SimpleSlideSwitchTest::keepsItsSize_data()
{
    QTest::addColumn<QSize>("size");
    QTest::newRow("larger") << QSize(400, 300);
    QTest::newRow("smaller") << QSize(20, 10);
    QTest::newRow("nothing") << QSize(0, 0);
}

void SimpleSlideSwitchTest::keepsItsSize()
{
    QFETCH(QSize, size);
    Stage<SimpleSlideSwitch> knob;
    QCOMPARE(knob->size(), trackSize);
    knob->resize(size);
    QCOMPARE(knob->size(), trackSize);
    // Also when an application loosens the limits.
    knob->setMinimumSize(0, 0);
    knob->setMaximumSize(1000, 1000);
    knob->resize(size);
    QCOMPARE(knob->size(), trackSize);
    // The resize is the switch's own affair and goes no further.
    QResizeEvent event(size, trackSize);
    QVERIFY(QCoreApplication::sendEvent(knob.widget, &event));
}

void SimpleSlideSwitchTest::atRest()
{
    Stage<SimpleSlideSwitch> knob;
    COMPARE_IMAGES(imageOf(knob.widget), switchImage(0, 0));
    knob->setChecked(true);
    COMPARE_IMAGES(imageOf(knob.widget), switchImage(51, 51));
    knob->setChecked(false);
    COMPARE_IMAGES(imageOf(knob.widget), switchImage(0, 0));
}

void SimpleSlideSwitchTest::disabled()
{
    Stage<SimpleSlideSwitch> knob;
    knob->setEnabled(false);
    COMPARE_IMAGES(imageOf(knob.widget), switchImage(0, 0, false));
    knob->setChecked(true);
    COMPARE_IMAGES(imageOf(knob.widget), switchImage(51, 51, false));
}

void SimpleSlideSwitchTest::baseClassLeavesTheTrack()
{
    Stage<SimpleSlideSwitch> knob;
    knob->click();
    QVERIFY(knob->isChecked());
    COMPARE_IMAGES(imageOf(knob.widget), switchImage(0, 51));
    knob->setChecked(true);
    knob->setProperty("checked", false);
    COMPARE_IMAGES(imageOf(knob.widget), switchImage(51, 0));
}

void SimpleSlideSwitchTest::setCheckedRepaintsOnAChange()
{
    Stage<SimpleSlideSwitch> knob;
    EventCounter events(knob.widget);
    knob->setChecked(false);
    deliverAll();
    QCOMPARE(events.count(QEvent::Paint), 0);
    knob->setChecked(true);
    deliverAll();
    QVERIFY(events.count(QEvent::Paint) > 0);
    events.reset();
    knob->setChecked(true);
    deliverAll();
    QCOMPARE(events.count(QEvent::Paint), 0);
}

void SimpleSlideSwitchTest::text()
{
    Stage<SimpleSlideSwitch> knob;
    const QString text = QStringLiteral("I/O");
    knob->setText(text);
    const QImage expected = drawnImage(trackSize, [&](QPainter *painter) {
        painter->drawPixmap(0, 0, libraryImage("slide_unchecked"));
        const QFontMetrics metrics(knob->font());
        const int width = metrics.size(Qt::TextSingleLine, text).width();
        painter->setFont(knob->font());
        painter->setPen(knob->palette().color(QPalette::WindowText));
        painter->drawText(
            QPointF((78 - width) / 2 - 1, (27 - metrics.height()) / 2 + metrics.ascent()), text);
        painter->drawPixmap(0, 0, libraryImage("slide_button"));
    });
    COMPARE_IMAGES(imageOf(knob.widget), expected);
}

void SimpleSlideSwitchTest::drag_data()
{
    QTest::addColumn<bool>("checked");
    QTest::addColumn<int>("from");
    QTest::addColumn<int>("to");
    QTest::addColumn<bool>("result");
    QTest::addColumn<int>("revealed");
    QTest::addColumn<int>("clicks");
    QTest::newRow("off, far enough") << false << 10 << 60 << true << 51 << 1;
    QTest::newRow("off, just far enough") << false << 10 << 43 << true << 51 << 1;
    QTest::newRow("off, at the threshold") << false << 10 << 42 << false << 0 << 0;
    QTest::newRow("off, short") << false << 10 << 40 << false << 0 << 0;
    QTest::newRow("off, at the last column") << false << 10 << 77 << true << 51 << 1;
    QTest::newRow("off, past the right edge") << false << 10 << 78 << false << 0 << 0;
    QTest::newRow("off, from the knob's last column") << false << 34 << 60 << true << 51 << 1;
    QTest::newRow("off, from beside the knob") << false << 35 << 60 << false << 0 << 0;
    QTest::newRow("off, from the first column") << false << 0 << 60 << false << 0 << 0;
    QTest::newRow("on, far enough") << true << 60 << 10 << false << 27 << 1;
    QTest::newRow("on, just far enough") << true << 60 << 34 << false << 27 << 1;
    QTest::newRow("on, at the threshold") << true << 60 << 35 << true << 51 << 0;
    QTest::newRow("on, at the first column but one") << true << 60 << 1 << false << 27 << 1;
    QTest::newRow("on, past the left edge") << true << 60 << 0 << true << 51 << 0;
    QTest::newRow("on, from beside the knob") << true << 42 << 10 << true << 51 << 0;
}

void SimpleSlideSwitchTest::drag()
{
    QFETCH(bool, checked);
    QFETCH(int, from);
    QFETCH(int, to);
    QFETCH(bool, result);
    QFETCH(int, revealed);
    QFETCH(int, clicks);
    Stage<SimpleSlideSwitch> knob;
    knob->setChecked(checked);
    const QSignalSpy clicked(knob.widget, &SimpleSlideSwitch::clicked);
    Mouse::press(knob.widget, QPoint(from, 13));
    Mouse::drag(knob.widget, QPoint((from + to) / 2, 13));
    Mouse::release(knob.widget, QPoint(to, 13));
    QCOMPARE(knob->isChecked(), result);
    QCOMPARE(clicked.count(), clicks);
    COMPARE_IMAGES(imageOf(knob.widget), switchImage(revealed, result ? 51 : 0));
}

void SimpleSlideSwitchTest::alongADrag_data()
{
    QTest::addColumn<int>("x");
    QTest::addColumn<int>("knob");
    QTest::newRow("off the switch") << -20 << 0;
    QTest::newRow("at the left end") << 12 << 0;
    QTest::newRow("held no longer") << 14 << 1;
    QTest::newRow("in the middle") << 39 << 26;
    QTest::newRow("before the right end") << 64 << 51;
    QTest::newRow("at the right end") << 66 << 51;
    QTest::newRow("past the right edge") << 200 << 51;
}

void SimpleSlideSwitchTest::alongADrag()
{
    QFETCH(int, x);
    QFETCH(int, knob);
    Stage<SimpleSlideSwitch> control;
    Mouse::press(control.widget, QPoint(10, 13));
    Mouse::drag(control.widget, QPoint(x, 13));
    COMPARE_IMAGES(imageOf(control.widget), switchImage(qBound(0, x, 78), knob));
}

void SimpleSlideSwitchTest::limitsFollowTheMargins_data()
{
    QTest::addColumn<int>("left");
    QTest::addColumn<int>("right");
    QTest::addColumn<int>("leftLimit");
    QTest::addColumn<int>("rightLimit");
    QTest::newRow("none") << 0 << 0 << 35 << 42;
    QTest::newRow("left") << 10 << 0 << 40 << 47;
    QTest::newRow("right") << 0 << 10 << 30 << 37;
    QTest::newRow("both") << 4 << 6 << 34 << 41;
}

void SimpleSlideSwitchTest::limitsFollowTheMargins()
{
    QFETCH(int, left);
    QFETCH(int, right);
    QFETCH(int, leftLimit);
    QFETCH(int, rightLimit);
    for (const int x : {rightLimit, rightLimit + 1}) {
        Stage<SimpleSlideSwitch> knob;
        knob->setProperty("marginLeft", left);
        knob->setProperty("marginRight", right);
        Mouse::press(knob.widget, QPoint(leftLimit - 1, 13));
        Mouse::drag(knob.widget, QPoint(x, 13));
        Mouse::release(knob.widget, QPoint(x, 13));
        QCOMPARE(knob->isChecked(), x > rightLimit);
    }
    for (const int x : {leftLimit, leftLimit - 1}) {
        Stage<SimpleSlideSwitch> knob;
        knob->setProperty("marginLeft", left);
        knob->setProperty("marginRight", right);
        knob->setChecked(true);
        Mouse::press(knob.widget, QPoint(rightLimit + 1, 13));
        Mouse::drag(knob.widget, QPoint(x, 13));
        Mouse::release(knob.widget, QPoint(x, 13));
        QCOMPARE(knob->isChecked(), x >= leftLimit);
    }
}

void SimpleSlideSwitchTest::marginsMoveNothingAtOnce()
{
    Stage<SimpleSlideSwitch> knob;
    knob->setChecked(true);
    deliverAll();
    EventCounter events(knob.widget);
    knob->setProperty("marginRight", 9);
    deliverAll();
    QCOMPARE(events.count(QEvent::Paint), 1);
    // The knob stands by the margin, the revealed part where it was.
    COMPARE_IMAGES(imageOf(knob.widget), switchImage(51, 42));
    knob->setChecked(true);
    COMPARE_IMAGES(imageOf(knob.widget), switchImage(42, 42));
    // An equal margin repaints too.
    deliverAll();
    events.reset();
    knob->setProperty("marginRight", 9);
    knob->setProperty("marginLeft", 0);
    deliverAll();
    QCOMPARE(events.count(QEvent::Paint), 1);
}

void SimpleSlideSwitchTest::releaseWithoutMovement_data()
{
    QTest::addColumn<bool>("checked");
    QTest::addColumn<int>("x");
    QTest::newRow("off, beside the knob") << false << 60;
    QTest::newRow("off, on the knob") << false << 10;
    QTest::newRow("off, in the first column") << false << 0;
    QTest::newRow("on, beside the knob") << true << 10;
    QTest::newRow("on, on the knob") << true << 60;
}

void SimpleSlideSwitchTest::releaseWithoutMovement()
{
    QFETCH(bool, checked);
    QFETCH(int, x);
    Stage<SimpleSlideSwitch> knob;
    knob->setChecked(checked);
    const QSignalSpy clicked(knob.widget, &SimpleSlideSwitch::clicked);
    const QSignalSpy toggled(knob.widget, &SimpleSlideSwitch::toggled);
    Mouse::press(knob.widget, QPoint(x, 13));
    Mouse::release(knob.widget, QPoint(x, 13));
    QCOMPARE(knob->isChecked(), !checked);
    QCOMPARE(toggled.count(), 1);
    QCOMPARE(clicked.count(), 0);
    COMPARE_IMAGES(imageOf(knob.widget), checked ? switchImage(0, 0) : switchImage(51, 51));
}

void SimpleSlideSwitchTest::releaseWithoutAPress()
{
    Stage<SimpleSlideSwitch> knob;
    Mouse::release(knob.widget, QPoint(60, 13));
    QVERIFY(knob->isChecked());
}

void SimpleSlideSwitchTest::hoveringCountsAsMovement()
{
    Stage<SimpleSlideSwitch> knob;
    // Before a press it is forgotten by the press.
    Mouse::hover(knob.widget, QPoint(20, 13));
    Mouse::press(knob.widget, QPoint(60, 13));
    Mouse::release(knob.widget, QPoint(60, 13));
    QVERIFY(knob->isChecked());
    // Between press and release it keeps the switch as it is, even off the knob.
    Mouse::press(knob.widget, QPoint(10, 13));
    Mouse::drag(knob.widget, QPoint(11, 13));
    Mouse::release(knob.widget, QPoint(10, 13));
    QVERIFY(knob->isChecked());
}

void SimpleSlideSwitchTest::pressBesideTheKnobReveals()
{
    Stage<SimpleSlideSwitch> knob;
    const QSignalSpy pressed(knob.widget, &SimpleSlideSwitch::pressed);
    EventCounter parentEvents(&knob.window);
    Mouse::press(knob.widget, QPoint(60, 13));
    QCOMPARE(pressed.count(), 0);
    QCOMPARE(parentEvents.count(QEvent::MouseButtonPress), 0);
    COMPARE_IMAGES(imageOf(knob.widget), switchImage(60, 0));
}

void SimpleSlideSwitchTest::movesOnlyUpdate()
{
    Stage<SimpleSlideSwitch> knob;
    EventCounter events(knob.widget);
    Mouse::hover(knob.widget, QPoint(20, 13));
    deliverAll();
    QCOMPARE(events.count(QEvent::Paint), 0);
    Mouse::press(knob.widget, QPoint(10, 13));
    deliverAll();
    events.reset();
    Mouse::drag(knob.widget, QPoint(20, 13));
    Mouse::drag(knob.widget, QPoint(30, 13));
    QCOMPARE(events.count(QEvent::Paint), 0);
    deliverAll();
    QCOMPARE(events.count(QEvent::Paint), 1);
}

void SimpleSlideSwitchTest::trackSetsTheSize_data()
{
    QTest::addColumn<QByteArray>("property");
    QTest::addColumn<QSize>("size");
    for (const char *property :
         {"uncheckedImg", "checkedImg", "uncheckedDisImg", "checkedDisImg"}) {
        QTest::addRow("%s, larger", property) << QByteArray(property) << QSize(120, 40);
        QTest::addRow("%s, smaller", property) << QByteArray(property) << QSize(50, 20);
        QTest::addRow("%s, equal", property) << QByteArray(property) << trackSize;
    }
}

void SimpleSlideSwitchTest::trackSetsTheSize()
{
    QFETCH(QByteArray, property);
    QFETCH(QSize, size);
    Stage<SimpleSlideSwitch> knob;
    knob->setProperty(property, plainPixmap(size, Qt::green));
    QCOMPARE(knob->size(), size);
    QCOMPARE(knob->iconSize(), size);
    QCOMPARE(knob->minimumSize(), size);
    QCOMPARE(knob->maximumSize(), size);
    COMPARE_IMAGES(knob->property(property).value<QPixmap>().toImage(),
                   plainPixmap(size, Qt::green).toImage());
    // The image is shown in its state.
    const bool isDisabled = property.contains("Dis");
    knob->setEnabled(!isDisabled);
    knob->setChecked(property.startsWith("checked"));
    const QPoint place(property.startsWith("checked") ? 4 : size.width() - 4, 3);
    QCOMPARE(imageOf(knob.widget).pixelColor(place), QColor(Qt::green));
}

void SimpleSlideSwitchTest::knobImages()
{
    Stage<SimpleSlideSwitch> knob;
    knob->setProperty("btnImg", plainPixmap(QSize(20, 10), Qt::red));
    knob->setProperty("btnDisImg", plainPixmap(QSize(40, 40), Qt::blue));
    QCOMPARE(knob->size(), trackSize);
    knob->setChecked(true);
    const auto column = [&](int x, int y) { return imageOf(knob.widget).pixelColor(x, y); };
    QCOMPARE(column(58, 0), QColor(Qt::red));
    QCOMPARE(column(77, 9), QColor(Qt::red));
    QVERIFY(column(57, 5) != QColor(Qt::red));
    QVERIFY(column(60, 10) != QColor(Qt::red));
    // The disabled knob takes the rectangle of the enabled one.
    knob->setEnabled(false);
    QCOMPARE(column(58, 0), QColor(Qt::blue));
    QCOMPARE(column(77, 9), QColor(Qt::blue));
    QVERIFY(column(57, 5) != QColor(Qt::blue));
    QVERIFY(column(60, 10) != QColor(Qt::blue));
}

void SimpleSlideSwitchTest::imageWritesAlwaysRepaint_data()
{
    QTest::addColumn<QByteArray>("property");
    for (const char *property :
         {"uncheckedImg", "checkedImg", "uncheckedDisImg", "checkedDisImg", "btnImg", "btnDisImg"})
        QTest::newRow(property) << QByteArray(property);
}

void SimpleSlideSwitchTest::imageWritesAlwaysRepaint()
{
    QFETCH(QByteArray, property);
    Stage<SimpleSlideSwitch> knob;
    EventCounter events(knob.widget);
    knob->setProperty(property, knob->property(property));
    deliverAll();
    QVERIFY(events.count(QEvent::Paint) > 0);
}

void SimpleSlideSwitchTest::placesAreRounded()
{
    Stage<SimpleSlideSwitch> knob;
    Mouse::press(knob.widget, QPointF(10, 13));
    Mouse::drag(knob.widget, QPointF(29.5, 13));
    COMPARE_IMAGES(imageOf(knob.widget), switchImage(30, 17));
    Mouse::drag(knob.widget, QPointF(29.4, 13));
    COMPARE_IMAGES(imageOf(knob.widget), switchImage(29, 16));
    Mouse::release(knob.widget, QPointF(42.5, 13));
    QVERIFY(knob->isChecked());
    // 0.5 counts as column 1, which is right of the margin.
    Mouse::press(knob.widget, QPointF(60, 13));
    Mouse::drag(knob.widget, QPointF(0.5, 13));
    Mouse::release(knob.widget, QPointF(0.5, 13));
    QVERIFY(!knob->isChecked());
}

void SimpleSlideSwitchTest::releaseWithoutAClick_data()
{
    QTest::addColumn<bool>("checked");
    QTest::addColumn<QPoint>("place");
    QTest::addColumn<Qt::MouseButton>("button");
    for (const bool checked : {false, true}) {
        const int x = checked ? 10 : 60;
        const char *state = checked ? "on" : "off";
        QTest::addRow("%s, above", state) << checked << QPoint(x, -1) << Qt::LeftButton;
        QTest::addRow("%s, below", state) << checked << QPoint(x, 27) << Qt::LeftButton;
        QTest::addRow("%s, right button", state) << checked << QPoint(x, 13) << Qt::RightButton;
    }
}

void SimpleSlideSwitchTest::releaseWithoutAClick()
{
    QFETCH(bool, checked);
    QFETCH(QPoint, place);
    QFETCH(Qt::MouseButton, button);
    Stage<SimpleSlideSwitch> knob;
    knob->setChecked(checked);
    deliverAll();
    const QSignalSpy clicked(knob.widget, &SimpleSlideSwitch::clicked);
    Mouse::press(knob.widget, QPoint(checked ? 60 : 10, 13));
    Mouse::drag(knob.widget, place);
    Mouse::release(knob.widget, place, button);
    QCOMPARE(clicked.count(), 0);
    QCOMPARE(knob->isChecked(), checked);
    deliverAll();
    const QImage rest = checked ? switchImage(51, 51) : switchImage(0, 0);
    COMPARE_IMAGES(imageOf(knob.widget), rest);
    COMPARE_IMAGES(screenOf(knob.widget), repaintedScreenOf(knob.widget));
}

/// The base class does not get the release of a click that toggles without a movement.
void SimpleSlideSwitchTest::clickLeavesTheButtonPressed()
{
    Stage<SimpleSlideSwitch> knob;
    const QSignalSpy pressed(knob.widget, &SimpleSlideSwitch::pressed);
    const QSignalSpy released(knob.widget, &SimpleSlideSwitch::released);
    Mouse::press(knob.widget, QPoint(10, 13));
    Mouse::release(knob.widget, QPoint(10, 13));
    QVERIFY(knob->isChecked());
    QVERIFY(knob->isDown());
    QCOMPARE(pressed.count(), 1);
    QCOMPARE(released.count(), 0);
    // The next release that reaches it ends that, and so does disabling.
    Mouse::press(knob.widget, QPoint(60, 13));
    Mouse::drag(knob.widget, QPoint(20, 13));
    Mouse::release(knob.widget, QPoint(10, 13));
    QVERIFY(!knob->isChecked());
    QVERIFY(!knob->isDown());
    QCOMPARE(released.count(), 1);
    Mouse::press(knob.widget, QPoint(10, 13));
    Mouse::release(knob.widget, QPoint(10, 13));
    QVERIFY(knob->isDown());
    knob->setEnabled(false);
    QVERIFY(!knob->isDown());
    QCOMPARE(released.count(), 2);
}

void SimpleSlideSwitchTest::releaseLeavesTheButtonPressed()
{
    Stage<SimpleSlideSwitch> knob;
    const QSignalSpy released(knob.widget, &SimpleSlideSwitch::released);
    Mouse::press(knob.widget, QPoint(10, 13));
    QVERIFY(knob->isDown());
    Mouse::drag(knob.widget, QPoint(20, 13));
    Mouse::release(knob.widget, QPoint(20, 13));
    QVERIFY(knob->isDown());
    QCOMPARE(released.count(), 0);
}

void SimpleSlideSwitchTest::extremeMarginsAreHarmless()
{
    using Limits = std::numeric_limits<int>;
    Stage<SimpleSlideSwitch> knob;
    for (const int left : {Limits::min(), -1000, 1000, Limits::max()}) {
        for (const int right : {Limits::min(), -1000, 1000, Limits::max()}) {
            knob->setMarginLeft(left);
            knob->setMarginRight(right);
            for (const bool checked : {true, false}) {
                knob->setChecked(checked);
                QCOMPARE(imageOf(knob.widget).size(), trackSize);
                Mouse::press(knob.widget, QPoint(39, 13));
                Mouse::drag(knob.widget, QPoint(20, 13));
                QCOMPARE(imageOf(knob.widget).size(), trackSize);
                Mouse::release(knob.widget, QPoint(20, 13));
            }
        }
    }
    knob->setMarginLeft(0);
    knob->setMarginRight(0);
    knob->setChecked(false);
    COMPARE_IMAGES(imageOf(knob.widget), switchImage(0, 0));
}

void SimpleSlideSwitchTest::nullImagesAreHarmless()
{
    Stage<SimpleSlideSwitch> knob;
    for (const char *property : {"btnImg", "btnDisImg", "checkedImg", "uncheckedImg"})
        knob->setProperty(property, QPixmap());
    QCOMPARE(knob->size(), QSize(0, 0));
    knob->setChecked(true);
    Mouse::press(knob.widget, QPoint(0, 0));
    Mouse::release(knob.widget, QPoint(0, 0));
    deliverAll();
    knob->setProperty("uncheckedImg", plainPixmap(QSize(30, 20), Qt::green));
    QCOMPARE(imageOf(knob.widget).pixelColor(3, 3), QColor(Qt::green));
}

void SimpleSlideSwitchTest::disabledKnobFarWiderThanTheKnob()
{
    // Shrunk so far, Qt would read outside of the image.
    QPixmap wide(65535, 10);
    wide.fill(QColor(255, 0, 0, 100));
    QPixmap small(1, 30);
    small.fill(Qt::green);
    Stage<SimpleSlideSwitch> knob;
    knob->setBtnImg(small);
    knob->setBtnDisImg(QPixmap());
    knob->setEnabled(false);
    const QImage without = imageOf(knob.widget);
    knob->setBtnDisImg(wide);
    COMPARE_IMAGES(imageOf(knob.widget), without);
}

void SimpleSlideSwitchTest::switchedOffWithAMargin()
{
    Stage<SimpleSlideSwitch> knob;
    knob->setProperty("marginLeft", 20);
    knob->setChecked(true);
    Mouse::press(knob.widget, QPoint(60, 13));
    Mouse::drag(knob.widget, QPoint(30, 13));
    Mouse::release(knob.widget, QPoint(30, 13));
    QVERIFY(!knob->isChecked());
    // The place kept is the knob's right edge.
    COMPARE_IMAGES(imageOf(knob.widget), switchImage(knobSide + 20, 20));
    // The movement is over: a release alone toggles again.
    Mouse::release(knob.widget, QPoint(30, 13));
    QVERIFY(knob->isChecked());
}

void SimpleSlideSwitchTest::deletedInASlot()
{
    Stage<SimpleSlideSwitch> knob;
    const QPointer<SimpleSlideSwitch> watched(knob.widget);
    // During toggled() the base class itself still needs the button; clicked() comes last.
    connect(knob.widget, &SimpleSlideSwitch::clicked, this, [&] { delete watched.data(); });
    Mouse::press(knob.widget, QPoint(10, 13));
    Mouse::drag(knob.widget, QPoint(60, 13));
    Mouse::release(knob.widget, QPoint(60, 13));
    QVERIFY(!watched);
}

KIV_LAYOUT(SimpleSlideSwitch, 0, KIV_BASE(QAbstractButton), KIV_FIELD(uncheckedImg),
           KIV_FIELD(marginLeft), KIV_FIELD(checkedImg), KIV_FIELD(marginRight),
           KIV_FIELD(checkedDisImg), KIV_FIELD(uncheckedDisImg), KIV_FIELD(btnImg),
           KIV_FIELD(btnDisImg), KIV_FIELD(dragFromOn), KIV_FIELD(dragFromOff), KIV_FIELD(moved),
           KIV_FIELD(pointerPos), KIV_FIELD(leftLimit), KIV_FIELD(rightLimit));

void SimpleSlideSwitchTest::layout()
{
    QCOMPARE(LayoutSimpleSlideSwitch::problem(), QString());
}

KIV_TEST_MAIN(SimpleSlideSwitchTest)

#include "tst_simpleslideswitch.moc"
