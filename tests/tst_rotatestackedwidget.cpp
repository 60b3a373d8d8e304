// SPDX-License-Identifier: LicenseRef-all-rights-reserved

#include "rotatestackedwidget.h"

#include "images.h"
#include "layout.h"
#include "stepdriver.h"
#include "testmain.h"
#include "widgetprobe.h"

#include <QtCore/QEventLoop>
#include <QtCore/QPointer>
#include <QtCore/QPropertyAnimation>
#include <QtCore/QSequentialAnimationGroup>
#include <QtCore/QTimer>
#include <QtGui/QPainter>
#include <QtTest/QSignalSpy>

#include <limits>

namespace {

constexpr QSize stackSize(121, 81);

/// Steps the animations, and delivers the events before and after.
class AnimationClock : public StepDriver
{
public:
    void step(int msecs)
    {
        // An animation that was just started takes part from the next round of the event loop.
        deliverAll();
        StepDriver::step(msecs);
        QCoreApplication::processEvents();
    }
};

/// A page whose image is unlike its mirror image, and unlike that of other pages.
class PatternPage : public QWidget
{
public:
    explicit PatternPage(QColor pageColor)
        : color(pageColor)
    {}

protected:
    void paintEvent(QPaintEvent *) override
    {
        QPainter painter(this);
        painter.fillRect(rect(), color);
        painter.fillRect(QRect(5, 5, width() / 3, height() / 4), Qt::black);
        painter.fillRect(QRect(width() - 12, height() - 9, 12, 9), Qt::white);
    }

private:
    QColor color;
};

/// A page that goes on to another page as soon as it is shown.
class ForwardingPage : public QWidget
{
public:
    ForwardingPage(RotateStackedWidget *itsStack, int itsTarget)
        : stack(itsStack)
        , target(itsTarget)
    {}

protected:
    void showEvent(QShowEvent *) override
    {
        stack->setCurrentIndex(target);
    }

private:
    RotateStackedWidget *stack;
    int target;
};

QImage pageImage(QColor color, QSize size)
{
    QImage image(size, QImage::Format_RGB32);
    QPainter painter(&image);
    painter.fillRect(image.rect(), color);
    painter.fillRect(QRect(5, 5, size.width() / 3, size.height() / 4), Qt::black);
    painter.fillRect(QRect(size.width() - 12, size.height() - 9, 12, 9), Qt::white);
    return image;
}

class OpenStack : public RotateStackedWidget
{
public:
    using RotateStackedWidget::animating;
    using RotateStackedWidget::animPhase;
    using RotateStackedWidget::group;
    using RotateStackedWidget::nextIndex;
    using RotateStackedWidget::RotateStackedWidget;
};

/// A shown stack of three pages with the animation switched on.
struct StackStage : Stage<OpenStack>
{
    StackStage()
        : Stage<OpenStack>(stackSize)
    {
        for (const Qt::GlobalColor color : {Qt::red, Qt::green, Qt::blue})
            widget->addWidget(new PatternPage(color));
        widget->setAnimationEnabled(true);
        deliverAll();
    }
    /// The indices of the pages that are visible.
    QVector<int> visiblePages() const
    {
        QVector<int> pages;
        for (int i = 0; i < widget->count(); ++i) {
            if (widget->widget(i)->isVisible())
                pages.append(i);
        }
        return pages;
    }
    /// What the stack itself shows, with its pages as they are.
    QImage image() const
    {
        QImage shown = emptyImage(widget->size());
        widget->render(&shown, QPoint(), QRegion(), QWidget::DrawChildren);
        return shown;
    }
};

/// The card in the middle of the stack: @p page scaled and turned.
QImage cardImage(const QImage &page, double scale)
{
    QImage image = emptyImage(stackSize);
    QPainter painter(&image);
    QTransform card;
    card.translate(stackSize.width() * 0.5, stackSize.height() * 0.5);
    card.scale(scale, scale);
    painter.setTransform(card);
    painter.drawPixmap(QPointF(-(stackSize.width() / 2), -(stackSize.height() / 2)),
                       QPixmap::fromImage(page));
    return image;
}

QImage turnedImage(const QImage &page, double scale, double degrees)
{
    QImage image = emptyImage(stackSize);
    QPainter painter(&image);
    QTransform card;
    card.translate(stackSize.width() / 2, stackSize.height() * 0.5);
    card.scale(scale, scale);
    card.rotate(degrees, Qt::YAxis);
    painter.setTransform(card);
    painter.drawPixmap(QPointF(-(stackSize.width() / 2), -(stackSize.height() / 2)),
                       QPixmap::fromImage(page));
    return image;
}

} // namespace

class RotateStackedWidgetTest : public WidgetTest
{
    Q_OBJECT

private Q_SLOTS:
    void metaObject();
    void layout();
    void defaults();
    void plainWithoutAnimation();
    void currentPageDoesNothing();
    void wholeChange();
    void frames();
    void laterRequestWins();
    void oldPageDuringAChange();
    void baseSlotStaysPlain();
    void plainWritesOnlyStore();
    void everyStepRepaints();
    void durations_data();
    void durations();
    void switchedOffDuringAChange();
    void indexWithoutAPage();
    void emptyStack();
    void targetGoneDuringAChange_data();
    void targetGoneDuringAChange();
    void currentGoneDuringAChange();
    void deletedDuringAChange_data();
    void deletedDuringAChange();
    void deletedByItsSignal();
    void pageDeletedByItsSignal();
    void nextChangeAskedForByAPage();
    void nextChangeAskedForByAPageWithoutAnyTime();
    void currentPageRemovedDuringAChange();
    void resizedDuringAChange_data();
    void resizedDuringAChange();
    void deletedInAnEventLoopOfASlot();
    void nextChangeAskedForBySignal();
    void nextChangeWithoutShrinking();
    void nextChangeWithoutAnyTime();
    void timesWrittenDuringAChange();
    void stackInsideAStack();
    void framesOfOtherSizes_data();
    void framesOfOtherSizes();
    void sizesOfPagesAndStack_data();
    void sizesOfPagesAndStack();
    void extremeNumbersAreHarmless_data();
    void extremeNumbersAreHarmless();
    void vanishingCard_data();
    void vanishingCard();
    void animationsAreNoChildren();
};

void RotateStackedWidgetTest::metaObject()
{
    const QMetaObject &meta = RotateStackedWidget::staticMetaObject;
    QCOMPARE(meta.superClass()->className(), "QStackedWidget");
    QCOMPARE(declaredProperties(meta),
             QStringList({QStringLiteral("rotate double"), QStringLiteral("scale double"),
                          QStringLiteral("endPositionAnimate double"),
                          QStringLiteral("timeRotationAnimate int"),
                          QStringLiteral("timePositionAnimate int")}));
    QCOMPARE(declaredMethods(meta),
             QStringList({QStringLiteral("valChanged(QVariant)"), QStringLiteral("animDone()"),
                          QStringLiteral("animPositionDone()"),
                          QStringLiteral("animPositionRestoreDone()")}));
    for (int i = meta.methodOffset(); i < meta.methodCount(); ++i) {
        QCOMPARE(meta.method(i).methodType(), QMetaMethod::Slot);
        QCOMPARE(meta.method(i).access(), QMetaMethod::Private);
    }
}

void RotateStackedWidgetTest::defaults()
{
    const RotateStackedWidget stack(nullptr);
    QCOMPARE(stack.property("rotate").toDouble(), 0.0);
    QCOMPARE(stack.property("scale").toDouble(), 0.0);
    QCOMPARE(stack.property("endPositionAnimate").toDouble(), 0.2);
    QCOMPARE(stack.property("timeRotationAnimate").toInt(), 1000);
    QCOMPARE(stack.property("timePositionAnimate").toInt(), 2000);
}

void RotateStackedWidgetTest::plainWithoutAnimation()
{
    StackStage stack;
    stack->setAnimationEnabled(false);
    const QSignalSpy changes(stack.widget, &QStackedWidget::currentChanged);
    stack->setCurrentIndex(2);
    QCOMPARE(stack->currentIndex(), 2);
    QCOMPARE(changes.count(), 1);
    QVERIFY(stack->widget(2)->isVisible());
    QVERIFY(!stack->widget(0)->isVisible());
    stack->setCurrentIndex(7);
    stack->setCurrentIndex(-1);
    QCOMPARE(stack->currentIndex(), 2);
    COMPARE_IMAGES(
        stack.image(),
        pageImage(Qt::blue, stackSize).convertToFormat(QImage::Format_ARGB32_Premultiplied));
}

void RotateStackedWidgetTest::currentPageDoesNothing()
{
    StackStage stack;
    stack->setCurrentIndex(0);
    QVERIFY(!stack->animating);
    QVERIFY(stack->widget(0)->isVisible());
}

void RotateStackedWidgetTest::wholeChange()
{
    AnimationClock time;
    StackStage stack;
    const QSignalSpy changes(stack.widget, &QStackedWidget::currentChanged);
    stack->setCurrentIndex(1);
    QVERIFY(stack->animating);
    QVERIFY(!stack->widget(0)->isVisible());
    QVERIFY(!stack->widget(1)->isVisible());
    QCOMPARE(stack->currentIndex(), 0);

    time.step(1000);
    QCOMPARE(stack->animPhase, 0);
    QCOMPARE(stack->property("scale").toDouble(), 0.6);
    time.step(1000);
    QCOMPARE(stack->animPhase, 1);
    QCOMPARE(stack->property("scale").toDouble(), 0.2);
    time.step(250);
    QCOMPARE(stack->property("rotate").toDouble(), 45.0);
    time.step(750);
    QCOMPARE(stack->animPhase, 2);
    QCOMPARE(stack->property("rotate").toDouble(), 180.0);
    time.step(1000);
    QCOMPARE(stack->property("scale").toDouble(), 0.6);
    QCOMPARE(stack->currentIndex(), 0);
    QVERIFY(!stack->widget(1)->isVisible());
    time.step(999);
    QCOMPARE(stack->currentIndex(), 0);
    QCOMPARE(changes.count(), 0);

    time.step(1);
    QVERIFY(!stack->animating);
    QCOMPARE(stack->currentIndex(), 1);
    QCOMPARE(changes.count(), 1);
    QVERIFY(stack->widget(1)->isVisible());
    QVERIFY(!stack->widget(0)->isVisible());
    QCOMPARE(stack->animPhase, 0);
    QCOMPARE(stack->property("rotate").toDouble(), 0.0);
    QCOMPARE(stack->property("scale").toDouble(), 1.0);
}

void RotateStackedWidgetTest::frames()
{
    AnimationClock time;
    StackStage stack;
    const QImage oldPage = pageImage(Qt::red, stackSize);
    const QImage newPage = pageImage(Qt::green, stackSize);
    const auto scale = [&] { return stack->property("scale").toDouble(); };
    const auto rotate = [&] { return stack->property("rotate").toDouble(); };
    stack->setCurrentIndex(1);
    for (int frame = 0; frame < 9; ++frame) {
        time.step(200);
        COMPARE_IMAGES(stack.image(), cardImage(oldPage, scale()));
    }
    time.step(200);
    QCOMPARE(stack->animPhase, 1);
    for (int frame = 0; frame < 5; ++frame) {
        time.step(100);
        QVERIFY(rotate() <= 90.0);
        COMPARE_IMAGES(stack.image(), turnedImage(oldPage, 0.2, rotate()));
    }
    // Edge-on, the card is still the old page.
    QCOMPARE(rotate(), 90.0);
    for (int frame = 0; frame < 4; ++frame) {
        time.step(100);
        QVERIFY(rotate() > 90.0);
        COMPARE_IMAGES(stack.image(), turnedImage(newPage, 0.2, rotate() + 180.0));
    }
    QCOMPARE(stack->widget(1)->geometry(), QRect(QPoint(0, 0), stackSize));
    time.step(100);
    QCOMPARE(stack->animPhase, 2);
    for (int frame = 0; frame < 9; ++frame) {
        time.step(200);
        COMPARE_IMAGES(stack.image(), cardImage(newPage, scale()));
    }
    time.step(200);
    COMPARE_IMAGES(stack.image(), newPage.convertToFormat(QImage::Format_ARGB32_Premultiplied));
}

void RotateStackedWidgetTest::laterRequestWins()
{
    AnimationClock time;
    StackStage stack;
    const QSignalSpy changes(stack.widget, &QStackedWidget::currentChanged);
    stack->setCurrentIndex(1);
    time.step(1500);
    stack->setCurrentIndex(2);
    QCOMPARE(stack->property("scale").toDouble(), 0.4);
    time.step(3500);
    QVERIFY(!stack->animating);
    QCOMPARE(stack->currentIndex(), 2);
    QCOMPARE(changes.count(), 1);
    QCOMPARE(changes.at(0).at(0).toInt(), 2);
    QCOMPARE(stack->group->state(), QAbstractAnimation::Stopped);
}

void RotateStackedWidgetTest::oldPageDuringAChange()
{
    AnimationClock time;
    StackStage stack;
    stack->setCurrentIndex(1);
    time.step(1000);
    stack->setCurrentIndex(0);
    QCOMPARE(stack->nextIndex, 1);
    time.step(4000);
    QCOMPARE(stack->currentIndex(), 1);
}

void RotateStackedWidgetTest::baseSlotStaysPlain()
{
    StackStage stack;
    stack->setProperty("currentIndex", 2);
    QVERIFY(!stack->animating);
    QCOMPARE(stack->currentIndex(), 2);
    static_cast<QStackedWidget *>(stack.widget)->setCurrentIndex(1);
    QVERIFY(!stack->animating);
    QCOMPARE(stack->currentIndex(), 1);
}

void RotateStackedWidgetTest::plainWritesOnlyStore()
{
    StackStage stack;
    EventCounter events(stack.widget);
    stack->setProperty("rotate", 33.0);
    stack->setProperty("scale", 0.5);
    QCOMPARE(stack->property("rotate").toDouble(), 33.0);
    QCOMPARE(stack->property("scale").toDouble(), 0.5);
    deliverAll();
    QCOMPARE(events.count(QEvent::Paint), 0);
}

void RotateStackedWidgetTest::everyStepRepaints()
{
    AnimationClock time;
    StackStage stack;
    stack->setCurrentIndex(1);
    time.step(10);
    EventCounter events(stack.widget);
    time.step(10);
    QCOMPARE(events.count(QEvent::Paint), 1);
    time.step(10);
    QCOMPARE(events.count(QEvent::Paint), 2);
}

void RotateStackedWidgetTest::durations_data()
{
    QTest::addColumn<int>("position");
    QTest::addColumn<int>("rotation");
    QTest::newRow("short") << 20 << 10;
    QTest::newRow("no turn") << 20 << 0;
    QTest::newRow("turn alone") << 0 << 10;
    QTest::newRow("none at all") << 0 << 0;
    QTest::newRow("negative") << -5 << -7;
}

void RotateStackedWidgetTest::durations()
{
    QFETCH(int, position);
    QFETCH(int, rotation);
    AnimationClock time;
    StackStage stack;
    stack->setProperty("timePositionAnimate", position);
    stack->setProperty("timeRotationAnimate", rotation);
    QCOMPARE(stack->property("timePositionAnimate").toInt(), position);
    QCOMPARE(stack->property("timeRotationAnimate").toInt(), rotation);
    const int total = 2 * qMax(position, 0) + qMax(rotation, 0);
    stack->setCurrentIndex(1);
    if (total > 0) {
        time.step(total - 1);
        QCOMPARE(stack->currentIndex(), 0);
        time.step(1);
    }
    QVERIFY(!stack->animating);
    QCOMPARE(stack->currentIndex(), 1);
    QVERIFY(stack->widget(1)->isVisible());
}

void RotateStackedWidgetTest::switchedOffDuringAChange()
{
    AnimationClock time;
    StackStage stack;
    stack->setCurrentIndex(1);
    time.step(1000);
    stack->setAnimationEnabled(false);
    QVERIFY(stack->animating);
    time.step(4000);
    QVERIFY(!stack->animating);
    QCOMPARE(stack->currentIndex(), 1);
    stack->setCurrentIndex(2);
    QCOMPARE(stack->currentIndex(), 2);
    QVERIFY(!stack->animating);
}

void RotateStackedWidgetTest::indexWithoutAPage()
{
    for (const int index :
         {3, -1, std::numeric_limits<int>::max(), std::numeric_limits<int>::min()}) {
        AnimationClock time;
        StackStage stack;
        stack->setCurrentIndex(index);
        time.step(2600);
        // No new page: nothing is on the back of the card.
        COMPARE_IMAGES(stack.image(), emptyImage(stackSize));
        time.step(2400);
        QVERIFY(!stack->animating);
        QCOMPARE(stack->currentIndex(), 0);
        QVERIFY(stack->widget(0)->isVisible());
        stack->setCurrentIndex(1);
        time.step(5000);
        QCOMPARE(stack->currentIndex(), 1);
    }
}

void RotateStackedWidgetTest::emptyStack()
{
    AnimationClock time;
    Stage<OpenStack> stack(stackSize);
    stack->setAnimationEnabled(true);
    stack->setCurrentIndex(0);
    for (int frame = 0; frame < 10; ++frame) {
        time.step(500);
        COMPARE_IMAGES(imageOf(stack.widget), emptyImage(stackSize));
    }
    QVERIFY(!stack->animating);
    auto *page = new PatternPage(Qt::red);
    stack->addWidget(page);
    deliverAll();
    QVERIFY(page->isVisible());
}

void RotateStackedWidgetTest::targetGoneDuringAChange_data()
{
    QTest::addColumn<int>("msecs");
    QTest::addColumn<bool>("deleted");
    QTest::newRow("removed while shrinking") << 500 << false;
    QTest::newRow("deleted while shrinking") << 500 << true;
    QTest::newRow("removed while turning") << 2800 << false;
    QTest::newRow("deleted while turning") << 2800 << true;
    QTest::newRow("deleted while growing") << 4000 << true;
}

void RotateStackedWidgetTest::targetGoneDuringAChange()
{
    QFETCH(int, msecs);
    QFETCH(bool, deleted);
    AnimationClock time;
    StackStage stack;
    stack->setCurrentIndex(2);
    time.step(msecs);
    QWidget *target = stack->widget(2);
    stack->removeWidget(target);
    if (deleted)
        delete target;
    time.step(5000);
    QVERIFY(!stack->animating);
    QCOMPARE(stack->currentIndex(), 0);
    QVERIFY(stack->widget(0)->isVisible());
    stack->setCurrentIndex(1);
    time.step(5000);
    QCOMPARE(stack->currentIndex(), 1);
    if (!deleted)
        delete target;
}

void RotateStackedWidgetTest::currentGoneDuringAChange()
{
    for (const int msecs : {500, 2200, 2800, 4000}) {
        AnimationClock time;
        StackStage stack;
        QWidget *target = stack->widget(1);
        stack->setCurrentIndex(1);
        time.step(msecs);
        delete stack->widget(0);
        QCOMPARE(stack->count(), 2);
        time.step(5000);
        QVERIFY(!stack->animating);
        // What the index names by then is shown.
        QVERIFY(stack->currentWidget());
        QVERIFY(stack->currentWidget()->isVisible());
        QVERIFY(target);
    }
}

void RotateStackedWidgetTest::deletedDuringAChange_data()
{
    QTest::addColumn<int>("msecs");
    for (const int msecs : {0, 500, 2000, 2400, 2700, 3000, 4000})
        QTest::addRow("after %d ms", msecs) << msecs;
}

void RotateStackedWidgetTest::deletedDuringAChange()
{
    QFETCH(int, msecs);
    AnimationClock time;
    StackStage stack;
    stack->setCurrentIndex(1);
    time.step(msecs);
    delete stack.widget;
    stack.widget = nullptr;
    time.step(5000);
}

void RotateStackedWidgetTest::deletedByItsSignal()
{
    AnimationClock time;
    StackStage stack;
    const QPointer<OpenStack> watched(stack.widget);
    const QPointer<QSequentialAnimationGroup> group(stack->group);
    connect(stack.widget, &QStackedWidget::currentChanged, this, [&] { delete watched.data(); });
    stack->setCurrentIndex(1);
    time.step(5000);
    QVERIFY(!watched);
    // The group goes with the next round of the event loop.
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    QVERIFY(!group);
    time.step(1000);
}

void RotateStackedWidgetTest::pageDeletedByItsSignal()
{
    AnimationClock time;
    StackStage stack;
    const QPointer<QWidget> page(stack->widget(1));
    connect(stack.widget, &QStackedWidget::currentChanged, this, [&] { delete page.data(); });
    stack->setCurrentIndex(1);
    time.step(5000);
    QVERIFY(!page);
    QVERIFY(!stack->animating);
    stack->setCurrentIndex(0);
    time.step(5000);
    QCOMPARE(stack->count(), 2);
}

void RotateStackedWidgetTest::nextChangeAskedForBySignal()
{
    AnimationClock time;
    StackStage stack;
    int changes = 0;
    connect(stack.widget, &QStackedWidget::currentChanged, this, [&](int index) {
        ++changes;
        if (index == 1)
            stack->setCurrentIndex(2);
    });
    stack->setCurrentIndex(1);
    time.step(5000);
    QVERIFY(stack->animating);
    QCOMPARE(stack->currentIndex(), 1);
    for (int second = 0; second < 5; ++second) {
        QCOMPARE(stack.visiblePages(), QVector<int>());
        time.step(1000);
    }
    QVERIFY(!stack->animating);
    QCOMPARE(stack->currentIndex(), 2);
    QVERIFY(stack->widget(2)->isVisible());
    QCOMPARE(changes, 2);
}

void RotateStackedWidgetTest::nextChangeAskedForByAPage()
{
    AnimationClock time;
    StackStage stack;
    stack->insertWidget(1, new ForwardingPage(stack.widget, 2));
    const QSignalSpy changes(stack.widget, &QStackedWidget::currentChanged);
    stack->setCurrentIndex(1);
    time.step(5000);
    QVERIFY(stack->animating);
    QCOMPARE(stack->currentIndex(), 1);
    for (int second = 0; second < 5; ++second) {
        QCOMPARE(stack.visiblePages(), QVector<int>());
        time.step(1000);
    }
    QVERIFY(!stack->animating);
    QCOMPARE(stack->currentIndex(), 2);
    QCOMPARE(stack.visiblePages(), QVector<int>({2}));
    QCOMPARE(changes.count(), 2);
}

void RotateStackedWidgetTest::nextChangeAskedForByAPageWithoutAnyTime()
{
    // The next change is over before the page's own event is.
    AnimationClock time;
    StackStage stack;
    stack->changeTimePosition(0);
    stack->changeTimeRotation(0);
    stack->insertWidget(1, new ForwardingPage(stack.widget, 2));
    stack->setCurrentIndex(1);
    for (int step = 0; step < 8; ++step)
        time.step(10);
    QVERIFY(!stack->animating);
    QCOMPARE(stack->currentIndex(), 2);
    QCOMPARE(stack.visiblePages(), QVector<int>({2}));
}

void RotateStackedWidgetTest::currentPageRemovedDuringAChange()
{
    AnimationClock time;
    StackStage stack;
    stack->setCurrentIndex(1);
    time.step(500);
    delete stack->widget(0);
    time.step(500);
    QVERIFY(stack->animating);
    QCOMPARE(stack.visiblePages(), QVector<int>());
    time.step(4000);
    QCOMPARE(stack->currentIndex(), 1);
    QCOMPARE(stack.visiblePages(), QVector<int>({1}));
}

void RotateStackedWidgetTest::resizedDuringAChange_data()
{
    QTest::addColumn<int>("moment");
    QTest::addColumn<int>("frame");
    QTest::addColumn<bool>("andBack");
    const std::pair<const char *, int> moments[] = {
        {"shrinking", 1000}, {"before edge-on", 2300}, {"past edge-on", 2700}, {"growing", 4000}};
    for (const auto &[name, moment] : moments) {
        for (const int frame : {0, 4}) {
            QTest::addRow("%s, frame %d", name, frame) << moment << frame << false;
            QTest::addRow("%s, frame %d, and back", name, frame) << moment << frame << true;
        }
    }
}

void RotateStackedWidgetTest::resizedDuringAChange()
{
    QFETCH(int, moment);
    QFETCH(int, frame);
    QFETCH(bool, andBack);
    AnimationClock time;
    StackStage stack;
    if (frame > 0) {
        stack->setFrameStyle(QFrame::Box);
        stack->setLineWidth(frame);
    }
    deliverAll();
    stack->setCurrentIndex(1);
    int past = 0;
    const auto goTo = [&](int msecs) {
        for (; past < msecs; past += 100)
            time.step(100);
    };
    goTo(moment);
    stack->resize(200, 140);
    goTo(moment + 300);
    if (andBack)
        stack->resize(stackSize);
    goTo(5000);
    QVERIFY(!stack->animating);
    QCOMPARE(stack->widget(1)->geometry(),
             QRect(QPoint(), stack->size()).adjusted(frame, frame, -frame, -frame));
}

void RotateStackedWidgetTest::deletedInAnEventLoopOfASlot()
{
    // A slot that opens a dialogue runs an event loop, in which even deferred deletions happen.
    AnimationClock time;
    StackStage stack;
    const QPointer<OpenStack> watched(stack.widget);
    const QPointer<QSequentialAnimationGroup> group(stack->group);
    connect(stack.widget, &QStackedWidget::currentChanged, this, [&] {
        QEventLoop loop;
        QTimer::singleShot(0, &loop, [&] {
            delete watched.data();
            QTimer::singleShot(0, &loop, &QEventLoop::quit);
        });
        loop.exec();
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        QVERIFY(group);
    });
    stack->setCurrentIndex(1);
    time.step(5000);
    QVERIFY(!watched);
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    QVERIFY(!group);
    time.step(1000);
}

void RotateStackedWidgetTest::nextChangeWithoutShrinking()
{
    AnimationClock time;
    StackStage stack;
    connect(stack.widget, &QStackedWidget::currentChanged, this, [&](int index) {
        if (index == 1) {
            stack->changeTimePosition(0);
            stack->setCurrentIndex(2);
        }
    });
    stack->setCurrentIndex(1);
    time.step(5000);
    QVERIFY(stack->animating);
    QCOMPARE(stack->animPhase, 1);
    time.step(500);
    COMPARE_IMAGES(stack.image(),
                   turnedImage(pageImage(Qt::green, stackSize), 0.2, stack->getRotate()));
    time.step(500);
    QVERIFY(!stack->animating);
    QCOMPARE(stack->currentIndex(), 2);
}

void RotateStackedWidgetTest::nextChangeWithoutAnyTime()
{
    AnimationClock time;
    StackStage stack;
    stack->changeTimePosition(0);
    stack->changeTimeRotation(0);
    QVector<int> seen;
    connect(stack.widget, &QStackedWidget::currentChanged, this, [&](int index) {
        seen.append(index);
        if (seen.count() < 4)
            stack->setCurrentIndex((index + 1) % 3);
    });
    stack->setCurrentIndex(1);
    for (int step = 0; step < 8; ++step)
        time.step(10);
    QCOMPARE(seen, QVector<int>({1, 2, 0, 1}));
    QVERIFY(!stack->animating);
    QCOMPARE(stack->animPhase, 0);
    QVERIFY(stack->widget(1)->isVisible());
}

void RotateStackedWidgetTest::timesWrittenDuringAChange()
{
    AnimationClock time;
    StackStage stack;
    stack->setCurrentIndex(1);
    time.step(500);
    stack->changeTimePosition(1000);
    time.step(250);
    QCOMPARE(stack->getScale(), 0.4);
    stack->changeTimeRotation(500);
    stack->changeEndPosition(0.5);
    time.step(250);
    QCOMPARE(stack->animPhase, 1);
    QCOMPARE(stack->getScale(), 0.5);
    time.step(250);
    QCOMPARE(stack->getRotate(), 90.0);
    time.step(250);
    QCOMPARE(stack->animPhase, 2);
    time.step(1000);
    QVERIFY(!stack->animating);
    QCOMPARE(stack->currentIndex(), 1);
}

void RotateStackedWidgetTest::stackInsideAStack()
{
    // The outer card shows what the inner one shows at that moment.
    AnimationClock time;
    StackStage stack;
    auto *inner = new OpenStack;
    inner->addWidget(new PatternPage(Qt::cyan));
    inner->addWidget(new PatternPage(Qt::magenta));
    inner->setAnimationEnabled(true);
    stack->insertWidget(0, inner);
    stack->QStackedWidget::setCurrentIndex(0);
    deliverAll();
    QCOMPARE(inner->size(), stackSize);
    stack->setCurrentIndex(2);
    time.step(1000);
    COMPARE_IMAGES(stack.image(), cardImage(pageImage(Qt::cyan, stackSize), 0.6));
    time.step(4000);
    QCOMPARE(stack->currentIndex(), 2);
    inner->setCurrentIndex(1);
    time.step(5000);
    QCOMPARE(inner->currentIndex(), 1);
    stack->setCurrentIndex(0);
    time.step(4500);
    QCOMPARE(stack->getScale(), 0.8);
    COMPARE_IMAGES(stack.image(), cardImage(pageImage(Qt::magenta, stackSize), stack->getScale()));
}

void RotateStackedWidgetTest::framesOfOtherSizes_data()
{
    QTest::addColumn<QSize>("size");
    QTest::addColumn<QSize>("page");
    QTest::addColumn<int>("frame");
    QTest::newRow("odd") << QSize(121, 81) << QSize() << 0;
    QTest::newRow("even") << QSize(120, 80) << QSize() << 0;
    QTest::newRow("odd by even") << QSize(121, 80) << QSize() << 0;
    QTest::newRow("with a frame") << QSize(121, 81) << QSize() << 3;
    QTest::newRow("small pages") << QSize(120, 80) << QSize(60, 40) << 0;
    QTest::newRow("large pages") << QSize(120, 80) << QSize(200, 140) << 0;
}

void RotateStackedWidgetTest::framesOfOtherSizes()
{
    QFETCH(QSize, size);
    QFETCH(QSize, page);
    QFETCH(int, frame);
    AnimationClock time;
    StackStage stack;
    stack->setFrameStyle(frame > 0 ? int(QFrame::Box) : int(QFrame::NoFrame));
    stack->setLineWidth(frame);
    stack->resize(size);
    for (int i = 0; page.isValid() && i < 3; ++i)
        stack->widget(i)->setFixedSize(page);
    deliverAll();
    const QSize inside = page.isValid() ? page : size - QSize(2 * frame, 2 * frame);
    QCOMPARE(stack->widget(0)->size(), inside);
    const QPointF corner(-(size.width() / 2), -(size.height() / 2));
    const auto expected = [&](const QImage &image, QPointF centre, double scale, double degrees) {
        QImage shown = emptyImage(size);
        QPainter painter(&shown);
        painter.translate(centre);
        painter.scale(scale, scale);
        if (degrees != 0.0) {
            QTransform turn;
            turn.rotate(degrees, Qt::YAxis);
            painter.setTransform(turn, true);
        }
        painter.drawPixmap(corner, QPixmap::fromImage(image));
        return shown;
    };
    const QPointF middle(size.width() * 0.5, size.height() * 0.5);
    const QPointF hinge(size.width() / 2, size.height() * 0.5);

    stack->setCurrentIndex(1);
    time.step(1000);
    COMPARE_IMAGES(stack.image(), expected(pageImage(Qt::red, inside), middle, 0.6, 0.0));
    time.step(1250);
    COMPARE_IMAGES(stack.image(), expected(pageImage(Qt::red, inside), hinge, 0.2, 45.0));
    time.step(500);
    // On the card's back the page fills the stack, as far as its own limits let it.
    const QSize back = page.isValid() ? page : size;
    QImage backImage(size, QImage::Format_RGB32);
    backImage.fill(stack->palette().color(QPalette::Window));
    {
        QPainter painter(&backImage);
        painter.drawImage(0, 0, pageImage(Qt::green, back));
    }
    COMPARE_IMAGES(stack.image(), expected(backImage, hinge, 0.2, 315.0));
    QCOMPARE(stack->widget(1)->geometry(), QRect(QPoint(0, 0), back));
    time.step(1250);
    QCOMPARE(stack->getScale(), 0.6);
    COMPARE_IMAGES(stack.image(),
                   expected(pageImage(Qt::green, back), middle, stack->getScale(), 0.0));
}

void RotateStackedWidgetTest::sizesOfPagesAndStack_data()
{
    QTest::addColumn<QSize>("stack");
    QTest::addColumn<QSize>("page");
    QTest::newRow("nothing") << QSize(0, 0) << QSize();
    QTest::newRow("one pixel") << QSize(1, 1) << QSize();
    QTest::newRow("small pages") << stackSize << QSize(40, 30);
    QTest::newRow("large pages") << stackSize << QSize(300, 200);
    QTest::newRow("empty pages") << stackSize << QSize(0, 0);
}

void RotateStackedWidgetTest::sizesOfPagesAndStack()
{
    QFETCH(QSize, stack);
    QFETCH(QSize, page);
    AnimationClock time;
    StackStage stage;
    if (page.isValid()) {
        for (int i = 0; i < 3; ++i)
            stage->widget(i)->setFixedSize(page);
    }
    stage->setMinimumSize(0, 0);
    stage->resize(stack);
    deliverAll();
    stage->setCurrentIndex(1);
    for (int frame = 0; frame < 50; ++frame) {
        time.step(100);
        QCOMPARE(imageOf(stage.widget).size(), stage->size());
    }
    QVERIFY(!stage->animating);
    QCOMPARE(stage->currentIndex(), 1);
}

void RotateStackedWidgetTest::extremeNumbersAreHarmless_data()
{
    QTest::addColumn<double>("end");
    QTest::newRow("zero") << 0.0;
    QTest::newRow("negative") << -1.0;
    QTest::newRow("larger than the stack") << 3.0;
    QTest::newRow("huge") << 1e300;
    QTest::newRow("infinite") << std::numeric_limits<double>::infinity();
    QTest::newRow("no number") << std::numeric_limits<double>::quiet_NaN();
}

void RotateStackedWidgetTest::extremeNumbersAreHarmless()
{
    QFETCH(double, end);
    AnimationClock time;
    StackStage stack;
    stack->setProperty("endPositionAnimate", end);
    stack->setCurrentIndex(1);
    for (int frame = 0; frame < 50; ++frame) {
        time.step(100);
        QCOMPARE(stack.image().size(), stackSize);
    }
    QVERIFY(!stack->animating);
    QCOMPARE(stack->currentIndex(), 1);
    takeWarnings();
}

void RotateStackedWidgetTest::vanishingCard_data()
{
    QTest::addColumn<double>("scale");
    for (const double scale : {3e-5, 1e-5, 1e-9, 1e-12, -1e-10, -1e-12, 0.0})
        QTest::addRow("scale %g", scale) << scale;
    QTest::newRow("no number") << std::numeric_limits<double>::quiet_NaN();
}

void RotateStackedWidgetTest::vanishingCard()
{
    QFETCH(double, scale);
    // Translucent images are blended, and pages of other sizes stand beside the middle.
    for (const QSize size : {QSize(17, 17), QSize(17, 5), QSize(9, 17), QSize(121, 81)}) {
        StackStage stack;
        QPalette translucent = stack->palette();
        translucent.setColor(QPalette::Window, QColor(0, 0, 0, 100));
        stack->setPalette(translucent);
        stack->resize(size);
        deliverAll();
        stack->setCurrentIndex(1);
        QVERIFY(stack->animating);
        stack->scaleTo(scale);
        COMPARE_IMAGES(stack.image(), emptyImage(size));
    }
}

void RotateStackedWidgetTest::animationsAreNoChildren()
{
    StackStage stack;
    QVERIFY(stack->findChildren<QAbstractAnimation *>().isEmpty());
    QCOMPARE(stack->group->animationCount(), 3);
    const QByteArray properties[] = {"scale", "rotate", "scale"};
    for (int i = 0; i < 3; ++i) {
        auto *animation = qobject_cast<QPropertyAnimation *>(stack->group->animationAt(i));
        QVERIFY(animation);
        QCOMPARE(animation->targetObject(), stack.widget);
        QCOMPARE(animation->propertyName(), properties[i]);
        QCOMPARE(animation->easingCurve().type(), QEasingCurve::Linear);
    }
}

KIV_LAYOUT(RotateStackedWidget, 0, KIV_BASE(QStackedWidget), KIV_FIELD(rotate), KIV_FIELD(scale),
           KIV_FIELD(animPhase), KIV_FIELD(endPositionAnimate), KIV_FIELD(timePositionAnimate),
           KIV_FIELD(timeRotationAnimate), KIV_FIELD(animationEnabled), KIV_FIELD(animating),
           KIV_FIELD(nextIndex), KIV_FIELD(group), KIV_FIELD(shrinkAnimation),
           KIV_FIELD(turnAnimation), KIV_FIELD(growAnimation));

void RotateStackedWidgetTest::layout()
{
    QCOMPARE(LayoutRotateStackedWidget::problem(), QString());
}

KIV_TEST_MAIN(RotateStackedWidgetTest)

#include "tst_rotatestackedwidget.moc"
