// SPDX-License-Identifier: LicenseRef-all-rights-reserved

#include "slideswitch.h"

#include "images.h"
#include "layout.h"
#include "mouse.h"
#include "testmain.h"
#include "widgetprobe.h"

#include <QtCore/QPointer>
#include <QtGui/QPainter>
#include <QtGui/QResizeEvent>
#include <QtTest/QSignalSpy>

Q_DECLARE_METATYPE(Qt::MouseButton)

namespace {

constexpr QSize faceSize(190, 60);

QPixmap face(const char *name)
{
    return QPixmap(QStringLiteral(":/Images/SlideSwitch-%1.png").arg(QLatin1String(name)));
}

/// A face with the knob from column @p left to @p right, or without one.
QImage switchImage(const char *name, int left, int right = -1)
{
    return drawnImage(faceSize, [&](QPainter *painter) {
        painter->drawPixmap(0, 0, face(name));
        if (left < 0)
            return;
        painter->setPen(QColor(65, 64, 66));
        painter->setBrush(QColor(65, 64, 66));
        painter->drawEllipse(QRect(QPoint(left, 10), QPoint(right, 49)));
    });
}

const int offKnob[2] = {36, 75};
const int onKnob[2] = {114, 153};
const int middleKnob[2] = {75, 114};

QImage atRest(const char *name, const int (&knob)[2])
{
    return switchImage(name, knob[0], knob[1]);
}

} // namespace

class SlideSwitchTest : public WidgetTest
{
    Q_OBJECT

private Q_SLOTS:
    void metaObject();
    void layout();
    void defaults();
    void keepsItsSize_data();
    void keepsItsSize();
    void looks_data();
    void looks();
    void text();
    void settersRepaintOnAChange_data();
    void settersRepaintOnAChange();
    void dragFromOneEnd_data();
    void dragFromOneEnd();
    void dragFromTheMiddle_data();
    void dragFromTheMiddle();
    void knobAlongADrag_data();
    void knobAlongADrag();
    void faceAlongADrag_data();
    void faceAlongADrag();
    void shortDragLeavesTheButtonPressed();
    void swallowedPressIsAccepted();
    void movesRepaintAtOnce();
    void placesAreRounded();
    void clickInMiddleStillSeesTheLock();
    void dragSurvivesDisabling();
    void dragFromTheEndAndTheMiddleAtOnce();
    void anotherButton();
    void screenFollowsEveryButton_data();
    void screenFollowsEveryButton();
    void keysAndClicksOfTheBaseClass();
    void deletedInASlot_data();
    void deletedInASlot();
};

void SlideSwitchTest::metaObject()
{
    const QMetaObject &meta = SlideSwitch::staticMetaObject;
    QCOMPARE(meta.superClass()->className(), "QAbstractButton");
    QCOMPARE(declaredProperties(meta),
             QStringList({QStringLiteral("locked bool"), QStringLiteral("partialON bool")}));
    QCOMPARE(declaredMethods(meta), QStringList());
}

void SlideSwitchTest::defaults()
{
    const SlideSwitch knob(nullptr);
    QCOMPARE(knob.size(), faceSize);
    QCOMPARE(knob.iconSize(), faceSize);
    QCOMPARE(knob.minimumSize(), QSize(0, 0));
    QCOMPARE(knob.maximumSize(), QSize(QWIDGETSIZE_MAX, QWIDGETSIZE_MAX));
    QVERIFY(knob.isCheckable());
    QVERIFY(!knob.isChecked());
    QVERIFY(!knob.property("locked").toBool());
    QVERIFY(!knob.property("partialON").toBool());
    QVERIFY(knob.hasMouseTracking());
}

void SlideSwitchTest::keepsItsSize_data()
{
    QTest::addColumn<QSize>("size");
    QTest::newRow("larger") << QSize(400, 300);
    QTest::newRow("smaller") << QSize(20, 10);
    QTest::newRow("nothing") << QSize(0, 0);
    QTest::newRow("one side") << QSize(190, 61);
}

void SlideSwitchTest::keepsItsSize()
{
    QFETCH(QSize, size);
    Stage<SlideSwitch> knob;
    QCOMPARE(knob->size(), faceSize);
    knob->resize(size);
    QCOMPARE(knob->size(), faceSize);
    // The resize is the switch's own affair and goes no further.
    QResizeEvent event(size, faceSize);
    QVERIFY(QCoreApplication::sendEvent(knob.widget, &event));
}

void SlideSwitchTest::looks_data()
{
    QTest::addColumn<bool>("checked");
    QTest::addColumn<bool>("locked");
    QTest::addColumn<bool>("partial");
    QTest::addColumn<bool>("enabled");
    QTest::addColumn<QImage>("expected");
    const auto row = [](const char *name, bool checked, bool locked, bool partial, bool enabled,
                        const QImage &expected) {
        QTest::newRow(name) << checked << locked << partial << enabled << expected;
    };
    row("off", false, false, false, true, atRest("OFF", offKnob));
    row("on", true, false, false, true, atRest("ON", onKnob));
    row("locked off", false, true, false, true, atRest("LOCKED-OFF", middleKnob));
    row("locked on", true, true, false, true, atRest("LOCKED-ON", middleKnob));
    row("partly on", true, false, true, true, atRest("ON", middleKnob));
    row("partly on, unchecked", false, false, true, true, atRest("OFF", middleKnob));
    row("locked and partly on", false, true, true, true, atRest("LOCKED-OFF", middleKnob));
    row("disabled off", false, false, false, false, switchImage("DISABLED", -1));
    row("disabled on", true, false, false, false, switchImage("DISABLED", -1));
    row("disabled locked", true, true, false, false, switchImage("DISABLED", -1));
}

void SlideSwitchTest::looks()
{
    QFETCH(bool, checked);
    QFETCH(bool, locked);
    QFETCH(bool, partial);
    QFETCH(bool, enabled);
    QFETCH(QImage, expected);
    Stage<SlideSwitch> knob;
    knob->setChecked(checked);
    knob->setProperty("locked", locked);
    knob->setProperty("partialON", partial);
    knob->setEnabled(enabled);
    COMPARE_IMAGES(imageOf(knob.widget), expected);
}

void SlideSwitchTest::text()
{
    Stage<SlideSwitch> knob;
    const QString text = QStringLiteral("UPS");
    knob->setText(text);
    const QImage expected = drawnImage(faceSize, [&](QPainter *painter) {
        painter->drawPixmap(0, 0, face("OFF"));
        const QFontMetrics metrics(knob->font());
        const int width = metrics.size(Qt::TextSingleLine, text).width();
        painter->setFont(knob->font());
        painter->setPen(knob->palette().color(QPalette::WindowText));
        painter->drawText(
            QPointF((190 - width) / 2 - 1, metrics.ascent() + (60 - metrics.height()) / 2), text);
        painter->setPen(QColor(65, 64, 66));
        painter->setBrush(QColor(65, 64, 66));
        painter->drawEllipse(QRect(36, 10, 40, 40));
    });
    COMPARE_IMAGES(imageOf(knob.widget), expected);
}

void SlideSwitchTest::settersRepaintOnAChange_data()
{
    QTest::addColumn<QByteArray>("property");
    QTest::newRow("locked") << QByteArray("locked");
    QTest::newRow("partialON") << QByteArray("partialON");
}

void SlideSwitchTest::settersRepaintOnAChange()
{
    QFETCH(QByteArray, property);
    Stage<SlideSwitch> knob;
    EventCounter events(knob.widget);
    knob->setProperty(property, true);
    QCOMPARE(knob->property(property).toBool(), true);
    QVERIFY(!takesUpdateRequest(knob.widget));
    deliverAll();
    QCOMPARE(events.count(QEvent::Paint), 1);
    knob->setProperty(property, true);
    deliverAll();
    QCOMPARE(events.count(QEvent::Paint), 1);
}

void SlideSwitchTest::dragFromOneEnd_data()
{
    QTest::addColumn<bool>("checked");
    QTest::addColumn<int>("from");
    QTest::addColumn<int>("to");
    QTest::addColumn<bool>("toggles");
    QTest::newRow("off, far enough") << false << 40 << 150 << true;
    QTest::newRow("off, just far enough") << false << 40 << 105 << true;
    QTest::newRow("off, not far enough") << false << 40 << 104 << false;
    QTest::newRow("off, short") << false << 40 << 100 << false;
    QTest::newRow("off, beyond the right edge") << false << 40 << 400 << true;
    QTest::newRow("off, from the last column of the knob's end") << false << 84 << 150 << true;
    QTest::newRow("off, beside the knob's end") << false << 85 << 150 << false;
    QTest::newRow("off, from the middle") << false << 90 << 150 << false;
    QTest::newRow("off, backwards") << false << 40 << -20 << false;
    QTest::newRow("on, far enough") << true << 150 << 40 << true;
    QTest::newRow("on, just far enough") << true << 150 << 84 << true;
    QTest::newRow("on, not far enough") << true << 150 << 85 << false;
    QTest::newRow("on, beyond the left edge") << true << 150 << -50 << true;
    QTest::newRow("on, from the first column of the knob's end") << true << 105 << 40 << true;
    QTest::newRow("on, beside the knob's end") << true << 104 << 40 << false;
}

void SlideSwitchTest::dragFromOneEnd()
{
    QFETCH(bool, checked);
    QFETCH(int, from);
    QFETCH(int, to);
    QFETCH(bool, toggles);
    Stage<SlideSwitch> knob;
    knob->setChecked(checked);
    const QSignalSpy clicks(knob.widget, &SlideSwitch::clicked);
    const QSignalSpy changes(knob.widget, &SlideSwitch::toggled);
    Mouse::press(knob.widget, QPoint(from, 30));
    Mouse::drag(knob.widget, QPoint((from + to) / 2, 30));
    Mouse::release(knob.widget, QPoint(to, 30));
    // Where the pointer leaves the switch, the base class's click does not follow.
    const bool inside = knob->rect().contains(QPoint(to, 30));
    const bool changed = toggles && inside;
    QCOMPARE(knob->isChecked(), checked != changed);
    QCOMPARE(clicks.count(), changed ? 1 : 0);
    QCOMPARE(changes.count(), changed ? 1 : 0);
    deliverAll();
    COMPARE_IMAGES(imageOf(knob.widget),
                   knob->isChecked() ? atRest("ON", onKnob) : atRest("OFF", offKnob));
}

void SlideSwitchTest::dragFromTheMiddle_data()
{
    QTest::addColumn<QByteArray>("property");
    QTest::addColumn<bool>("checked");
    QTest::addColumn<QPoint>("from");
    QTest::addColumn<QPoint>("to");
    QTest::addColumn<int>("result"); // 1 on, 0 off, -1 unchanged
    for (const char *property : {"locked", "partialON"}) {
        for (const bool checked : {false, true}) {
            const auto row = [&](const char *name, QPoint from, QPoint to, int result) {
                QTest::addRow("%s, %s, %s", property, checked ? "checked" : "unchecked", name)
                    << QByteArray(property) << checked << from << to << result;
            };
            row("to the right", {95, 30}, {150, 30}, 1);
            row("just to the right", {95, 30}, {105, 30}, 1);
            row("not enough to the right", {95, 30}, {104, 30}, -1);
            row("to the right end", {95, 30}, {188, 30}, 1);
            row("beyond the right end", {95, 30}, {189, 30}, -1);
            row("to the left", {95, 30}, {40, 30}, 0);
            row("just to the left", {95, 30}, {84, 30}, 0);
            row("not enough to the left", {95, 30}, {85, 30}, -1);
            row("to the left end", {95, 30}, {2, 30}, 0);
            row("beyond the left end", {95, 30}, {1, 30}, -1);
            row("at the top", {95, 30}, {150, 2}, 1);
            row("above", {95, 30}, {150, 1}, -1);
            row("at the bottom", {95, 30}, {150, 58}, 1);
            row("below", {95, 30}, {150, 59}, -1);
            row("below on the left", {95, 30}, {40, 59}, -1);
            row("from the zone's first column", {77, 30}, {150, 30}, 1);
            row("left of the zone", {76, 30}, {150, 30}, -1);
            row("from the zone's last column", {113, 30}, {40, 30}, 0);
            row("right of the zone", {114, 30}, {40, 30}, -1);
        }
    }
}

void SlideSwitchTest::dragFromTheMiddle()
{
    QFETCH(QByteArray, property);
    QFETCH(bool, checked);
    QFETCH(QPoint, from);
    QFETCH(QPoint, to);
    QFETCH(int, result);
    Stage<SlideSwitch> knob;
    knob->setChecked(checked);
    knob->setProperty(property, true);
    const QSignalSpy clicks(knob.widget, &SlideSwitch::clicked);
    const QSignalSpy changes(knob.widget, &SlideSwitch::toggled);
    Mouse::press(knob.widget, from);
    Mouse::release(knob.widget, to);
    QCOMPARE(knob->isChecked(), result < 0 ? checked : result == 1);
    QCOMPARE(knob->property(property).toBool(), result < 0);
    QCOMPARE(clicks.count(), result < 0 ? 0 : 1);
    // The opposite state comes first, unless the switch is in it already.
    const int before = result >= 0 && checked == (result == 1) ? 1 : 0;
    QCOMPARE(changes.count(), result < 0 ? 0 : before + 1);
    const bool locked = property == "locked" && result < 0;
    const char *name = locked ? (knob->isChecked() ? "LOCKED-ON" : "LOCKED-OFF")
                              : (knob->isChecked() ? "ON" : "OFF");
    COMPARE_IMAGES(imageOf(knob.widget), result < 0    ? atRest(name, middleKnob)
                                         : result == 1 ? atRest(name, onKnob)
                                                       : atRest(name, offKnob));
}

void SlideSwitchTest::knobAlongADrag_data()
{
    QTest::addColumn<int>("x");
    QTest::addColumn<int>("left");
    QTest::addColumn<int>("right");
    QTest::newRow("off the switch") << -10 << 36 << 75;
    QTest::newRow("before the knob follows") << 55 << 36 << 75;
    QTest::newRow("as it begins to follow") << 56 << 36 << 75;
    QTest::newRow("following") << 57 << 37 << 76;
    QTest::newRow("in the middle") << 100 << 80 << 119;
    QTest::newRow("at the last place") << 134 << 114 << 153;
    QTest::newRow("after that") << 135 << 114 << 153;
    QTest::newRow("far off") << 5000 << 114 << 153;
}

void SlideSwitchTest::knobAlongADrag()
{
    QFETCH(int, x);
    QFETCH(int, left);
    QFETCH(int, right);
    Stage<SlideSwitch> knob;
    Mouse::press(knob.widget, QPoint(50, 30));
    Mouse::drag(knob.widget, QPoint(x, 30));
    COMPARE_IMAGES(imageOf(knob.widget), switchImage(x > 104 ? "ON" : "OFF", left, right));
}

void SlideSwitchTest::faceAlongADrag_data()
{
    QTest::addColumn<bool>("checked");
    QTest::addColumn<bool>("locked");
    QTest::addColumn<int>("from");
    QTest::addColumn<int>("x");
    QTest::addColumn<QByteArray>("name");
    const auto row = [](const char *title, bool checked, bool locked, int from, int x,
                        const char *name) {
        QTest::newRow(title) << checked << locked << from << x << QByteArray(name);
    };
    row("from off, at the threshold", false, false, 50, 104, "OFF");
    row("from off, past it", false, false, 50, 105, "ON");
    row("from on, at the threshold", true, false, 140, 85, "ON");
    row("from on, past it", true, false, 140, 84, "OFF");
    row("locked, right threshold", false, true, 95, 104, "LOCKED-ON");
    row("locked, before it", false, true, 95, 103, "LOCKED-OFF");
    row("locked, checked, left threshold", true, true, 95, 85, "LOCKED-OFF");
    row("locked, checked, before it", true, true, 95, 86, "LOCKED-ON");
}

void SlideSwitchTest::faceAlongADrag()
{
    QFETCH(bool, checked);
    QFETCH(bool, locked);
    QFETCH(int, from);
    QFETCH(int, x);
    QFETCH(QByteArray, name);
    Stage<SlideSwitch> knob;
    knob->setChecked(checked);
    knob->setLocked(locked);
    Mouse::press(knob.widget, QPoint(from, 30));
    Mouse::drag(knob.widget, QPoint(x, 30));
    COMPARE_IMAGES(imageOf(knob.widget), switchImage(name, x - 20, x + 19));
}

void SlideSwitchTest::shortDragLeavesTheButtonPressed()
{
    Stage<SlideSwitch> knob;
    const QSignalSpy pressed(knob.widget, &SlideSwitch::pressed);
    const QSignalSpy released(knob.widget, &SlideSwitch::released);
    Mouse::press(knob.widget, QPoint(40, 30));
    QVERIFY(knob->isDown());
    Mouse::release(knob.widget, QPoint(100, 30));
    QVERIFY(knob->isDown());
    QCOMPARE(pressed.count(), 1);
    QCOMPARE(released.count(), 0);
    QVERIFY(!knob->isChecked());
}

void SlideSwitchTest::swallowedPressIsAccepted()
{
    Stage<SlideSwitch> knob;
    EventCounter parentEvents(&knob.window);
    const QSignalSpy pressed(knob.widget, &SlideSwitch::pressed);
    Mouse::press(knob.widget, QPoint(90, 30));
    QVERIFY(!knob->isDown());
    QCOMPARE(pressed.count(), 0);
    QCOMPARE(parentEvents.count(QEvent::MouseButtonPress), 0);
}

void SlideSwitchTest::movesRepaintAtOnce()
{
    Stage<SlideSwitch> knob;
    EventCounter events(knob.widget);
    Mouse::hover(knob.widget, QPoint(60, 30));
    QCOMPARE(events.count(QEvent::Paint), 0);
    Mouse::press(knob.widget, QPoint(40, 30));
    deliverAll();
    events.reset();
    Mouse::drag(knob.widget, QPoint(60, 30));
    QCOMPARE(events.count(QEvent::Paint), 1);
    Mouse::release(knob.widget, QPoint(60, 30));
    QCOMPARE(events.count(QEvent::Paint), 2);
}

void SlideSwitchTest::placesAreRounded()
{
    Stage<SlideSwitch> knob;
    Mouse::press(knob.widget, QPointF(50, 30));
    Mouse::drag(knob.widget, QPointF(99.5, 30));
    COMPARE_IMAGES(imageOf(knob.widget), switchImage("OFF", 80, 119));
    Mouse::drag(knob.widget, QPointF(99.49, 30));
    COMPARE_IMAGES(imageOf(knob.widget), switchImage("OFF", 79, 118));
    // 104.5 counts as 105, which is past the threshold.
    Mouse::release(knob.widget, QPointF(104.5, 30));
    QVERIFY(knob->isChecked());
}

void SlideSwitchTest::clickInMiddleStillSeesTheLock()
{
    Stage<SlideSwitch> knob;
    knob->setLocked(true);
    QList<bool> locks;
    connect(knob.widget, &SlideSwitch::toggled, this, [&] { locks.append(knob->getLocked()); });
    Mouse::press(knob.widget, QPoint(95, 30));
    Mouse::release(knob.widget, QPoint(40, 30));
    QCOMPARE(locks, QList<bool>({true, false}));
}

void SlideSwitchTest::dragSurvivesDisabling()
{
    Stage<SlideSwitch> knob;
    Mouse::press(knob.widget, QPoint(40, 30));
    knob->setEnabled(false);
    knob->setEnabled(true);
    Mouse::drag(knob.widget, QPoint(100, 30));
    COMPARE_IMAGES(imageOf(knob.widget), switchImage("OFF", 80, 119));
    Mouse::press(knob.widget, QPoint(100, 30));
    Mouse::drag(knob.widget, QPoint(110, 30));
    COMPARE_IMAGES(imageOf(knob.widget), switchImage("ON", 90, 129));
}

void SlideSwitchTest::dragFromTheEndAndTheMiddleAtOnce()
{
    // Locked in mid-drag and caught again in the middle, the switch carries both drags: below its
    // edge the one from the end still counts.
    Stage<SlideSwitch> knob;
    knob->setChecked(true);
    Mouse::press(knob.widget, QPoint(150, 30));
    knob->setLocked(true);
    Mouse::press(knob.widget, QPoint(95, 30));
    Mouse::release(knob.widget, QPoint(40, 59));
    QVERIFY(!knob->isChecked());
    QVERIFY(knob->getLocked());
    COMPARE_IMAGES(imageOf(knob.widget), atRest("LOCKED-OFF", middleKnob));
}

void SlideSwitchTest::anotherButton()
{
    Stage<SlideSwitch> knob;
    Mouse::press(knob.widget, QPoint(40, 30), Qt::RightButton);
    Mouse::drag(knob.widget, QPoint(100, 30));
    COMPARE_IMAGES(imageOf(knob.widget), switchImage("OFF", 80, 119));
    Mouse::release(knob.widget, QPoint(150, 30), Qt::RightButton);
    // The base class ignores it, so the drag ends without a change.
    QVERIFY(!knob->isChecked());
    COMPARE_IMAGES(imageOf(knob.widget), atRest("OFF", offKnob));
}

void SlideSwitchTest::screenFollowsEveryButton_data()
{
    QTest::addColumn<bool>("checked");
    QTest::addColumn<bool>("locked");
    QTest::addColumn<Qt::MouseButton>("pressed");
    QTest::addColumn<Qt::MouseButton>("released");
    for (const bool checked : {false, true}) {
        for (const bool locked : {false, true}) {
            for (const Qt::MouseButton pressed : {Qt::LeftButton, Qt::RightButton}) {
                for (const Qt::MouseButton released : {Qt::LeftButton, Qt::MiddleButton}) {
                    QTest::addRow("%s%s, button %d then %d", checked ? "on" : "off",
                                  locked ? " and locked" : "", int(pressed), int(released))
                        << checked << locked << pressed << released;
                }
            }
        }
    }
}

void SlideSwitchTest::screenFollowsEveryButton()
{
    QFETCH(bool, checked);
    QFETCH(bool, locked);
    QFETCH(Qt::MouseButton, pressed);
    QFETCH(Qt::MouseButton, released);
    const int from = locked ? 95 : checked ? 150 : 40;
    const QPoint places[] = {{40, 30}, {60, 30}, {95, 30}, {150, 30}, {40, 59}, {150, -1}, {-3, 5}};
    for (const int pressedRow : {30, 70}) {
        for (const QPoint &drag : places) {
            for (const QPoint &release : places) {
                Stage<SlideSwitch> knob;
                knob->setChecked(checked);
                knob->setLocked(locked);
                deliverAll();
                const auto isUpToDate = [&] {
                    deliverAll();
                    return differenceOf(screenOf(knob.widget), repaintedScreenOf(knob.widget));
                };
                Mouse::press(knob.widget, QPoint(from + 2, pressedRow), pressed);
                QCOMPARE(isUpToDate(), QString());
                Mouse::drag(knob.widget, drag);
                QCOMPARE(isUpToDate(), QString());
                Mouse::release(knob.widget, release, released);
                QCOMPARE(isUpToDate(), QString());
            }
        }
    }
}

void SlideSwitchTest::keysAndClicksOfTheBaseClass()
{
    Stage<SlideSwitch> knob;
    QTest::keyClick(knob.widget, Qt::Key_Space);
    QVERIFY(knob->isChecked());
    COMPARE_IMAGES(imageOf(knob.widget), atRest("ON", onKnob));
    knob->click();
    QVERIFY(!knob->isChecked());
    // A key in the middle of a drag toggles under it; the drag ends by the state it finds.
    Mouse::press(knob.widget, QPoint(40, 30));
    QTest::keyClick(knob.widget, Qt::Key_Space);
    Mouse::release(knob.widget, QPoint(60, 30));
    COMPARE_IMAGES(imageOf(knob.widget),
                   knob->isChecked() ? atRest("ON", onKnob) : atRest("OFF", offKnob));
}

void SlideSwitchTest::deletedInASlot_data()
{
    QTest::addColumn<bool>("locked");
    QTest::addColumn<int>("from");
    QTest::addColumn<int>("to");
    QTest::newRow("a drag from off") << false << 40 << 150;
    QTest::newRow("a drag from the middle to the left") << true << 95 << 40;
    QTest::newRow("a drag from the middle to the right") << true << 95 << 150;
}

void SlideSwitchTest::deletedInASlot()
{
    QFETCH(bool, locked);
    QFETCH(int, from);
    QFETCH(int, to);
    Stage<SlideSwitch> knob;
    knob->setLocked(locked);
    const QPointer<SlideSwitch> watched(knob.widget);
    // During toggled() the base class itself still needs the button; clicked() comes last.
    connect(knob.widget, &SlideSwitch::clicked, this, [&] { delete watched.data(); });
    Mouse::press(knob.widget, QPoint(from, 30));
    Mouse::release(knob.widget, QPoint(to, 30));
    QVERIFY(!watched);
}

KIV_LAYOUT(SlideSwitch, 0, KIV_BASE(QAbstractButton), KIV_FIELD(textOffset), KIV_FIELD(locked),
           KIV_FIELD(partialON), KIV_FIELD(dragFromOn), KIV_FIELD(dragFromOff),
           KIV_FIELD(dragFromMiddle), KIV_FIELD(pointerPos), KIV_FIELD(leftLimit),
           KIV_FIELD(rightLimit), KIV_FIELD(middleZone));

void SlideSwitchTest::layout()
{
    QCOMPARE(LayoutSlideSwitch::problem(), QString());
}

KIV_TEST_MAIN(SlideSwitchTest)

#include "tst_slideswitch.moc"
