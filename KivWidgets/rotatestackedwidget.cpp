// SPDX-License-Identifier: LicenseRef-all-rights-reserved

#include "rotatestackedwidget.h"

#include "cachedimage_p.h"
#include "pixmaps_p.h"

#include <QtCore/QEvent>
#include <QtCore/QPointer>
#include <QtCore/QPropertyAnimation>
#include <QtCore/QSequentialAnimationGroup>
#include <QtCore/QVector>
#include <QtGui/QPainter>
#include <QtGui/QTransform>

#include <algorithm>
#include <cmath>

namespace {

enum Phase { Shrinking = 0, Turning = 1, Growing = 2 };

constexpr double edgeOn = 90.0;
constexpr int halfTurn = 180;
/// Qt steps through a source in 16 binary places and as many before, which a smaller card
/// overflows: its painter then reads outside the image. No pixel is that small.
constexpr double smallestScale = 1.0 / 32768;

/// The groups whose change is ending right now, one entry for every end that runs. Qt goes on with
/// a group when the slot returns, so a stack that is deleted meanwhile must leave it to the last
/// end; an event loop of the application may have run inside the slot, so the group cannot just be
/// deleted later by the destructor.
QVector<const QSequentialAnimationGroup *> &endingGroups()
{
    static QVector<const QSequentialAnimationGroup *> groups;
    return groups;
}

/// Watches a stack for resizes during a change, beside its fields: it belongs to the group that
/// runs the change.
class ResizeWatch : public QObject
{
public:
    ResizeWatch(QWidget *stack, QSequentialAnimationGroup *group)
        : QObject(group)
    {
        stack->installEventFilter(this);
    }
    /// Ends the watch that belongs to @p group. @return whether its stack was resized meanwhile.
    static bool ended(const QSequentialAnimationGroup *group)
    {
        bool resized = false;
        for (QObject *child : group->children()) {
            if (auto *watch = dynamic_cast<ResizeWatch *>(child)) {
                resized = watch->seen;
                delete watch;
                break;
            }
        }
        return resized;
    }
    bool eventFilter(QObject *, QEvent *event) override
    {
        seen = seen || event->type() == QEvent::Resize;
        return false;
    }

private:
    bool seen = false;
};

void setUp(QPropertyAnimation *animation, int msecs, const QVariant &from, const QVariant &to)
{
    animation->setEasingCurve(QEasingCurve::Linear);
    animation->setDuration(std::max(msecs, 0));
    animation->setStartValue(from);
    animation->setEndValue(to);
}

/// The image of @p page on a pixmap of @p size; what the page does not cover is in @p background,
/// since a transparent background would blend the card's edges.
QPixmap grabbed(QWidget *page, QSize size, const QColor &background)
{
    const double ratio = page->devicePixelRatioF();
    const bool fits = KivPrivate::isAllocatable(size, ratio);
    QPixmap pixmap(fits ? KivPrivate::pixelSize(size, ratio) : QSize());
    if (!pixmap.isNull()) {
        pixmap.setDevicePixelRatio(ratio);
        pixmap.fill(background);
        page->render(&pixmap, QPoint(0, 0), QRegion(),
                     QWidget::DrawWindowBackground | QWidget::DrawChildren);
    }
    return pixmap;
}

} // namespace

RotateStackedWidget::RotateStackedWidget(QWidget *parent)
    : QStackedWidget(parent)
    , rotate(0.0)
    , scale(0.0)
    , animPhase(Shrinking)
    , endPositionAnimate(0.2)
    , timePositionAnimate(2000)
    , timeRotationAnimate(1000)
    , animationEnabled(false)
    , animating(false)
    , nextIndex(currentIndex())
    , group(new QSequentialAnimationGroup)
    , shrinkAnimation(new QPropertyAnimation(this, QByteArrayLiteral("scale")))
    , turnAnimation(new QPropertyAnimation(this, QByteArrayLiteral("rotate")))
    , growAnimation(new QPropertyAnimation(this, QByteArrayLiteral("scale")))
{
    initAnimation();
    using Stack = RotateStackedWidget;
    connect(shrinkAnimation, &QVariantAnimation::valueChanged, this, &Stack::valChanged);
    connect(shrinkAnimation, &QAbstractAnimation::finished, this, &Stack::animPositionDone);
    connect(turnAnimation, &QVariantAnimation::valueChanged, this, &Stack::valChanged);
    connect(turnAnimation, &QAbstractAnimation::finished, this, &Stack::animDone);
    connect(growAnimation, &QVariantAnimation::valueChanged, this, &Stack::valChanged);
    connect(growAnimation, &QAbstractAnimation::finished, this, &Stack::animPositionRestoreDone);
    group->addAnimation(shrinkAnimation);
    group->addAnimation(turnAnimation);
    group->addAnimation(growAnimation);
}

RotateStackedWidget::~RotateStackedWidget()
{
    for (QPropertyAnimation *animation : {shrinkAnimation, turnAnimation, growAnimation})
        animation->disconnect(this);
    // The end that runs still needs the group, and deletes it together with the three animations.
    if (endingGroups().contains(group))
        return;
    delete shrinkAnimation;
    delete turnAnimation;
    delete growAnimation;
    delete group;
}

double RotateStackedWidget::getRotate() const
{
    return rotate;
}

void RotateStackedWidget::rotateTo(double degrees)
{
    rotate = degrees;
}

double RotateStackedWidget::getScale() const
{
    return scale;
}

void RotateStackedWidget::scaleTo(double factor)
{
    scale = factor;
}

double RotateStackedWidget::getEndPositionAnimate() const
{
    return endPositionAnimate;
}

void RotateStackedWidget::changeEndPosition(double factor)
{
    endPositionAnimate = factor;
    initAnimation();
}

int RotateStackedWidget::getTimeRotationAnimate() const
{
    return timeRotationAnimate;
}

void RotateStackedWidget::changeTimeRotation(int msecs)
{
    timeRotationAnimate = msecs;
    initAnimation();
}

int RotateStackedWidget::getTimePositionAnimate() const
{
    return timePositionAnimate;
}

void RotateStackedWidget::changeTimePosition(int msecs)
{
    timePositionAnimate = msecs;
    initAnimation();
}

void RotateStackedWidget::setAnimationEnabled(bool enabled)
{
    animationEnabled = enabled;
}

void RotateStackedWidget::initAnimation()
{
    setUp(shrinkAnimation, timePositionAnimate, 1.0, endPositionAnimate);
    setUp(turnAnimation, timeRotationAnimate, 0, halfTurn);
    setUp(growAnimation, timePositionAnimate, endPositionAnimate, 1.0);
}

void RotateStackedWidget::setCurrentIndex(int index)
{
    if (!animationEnabled) {
        QStackedWidget::setCurrentIndex(index);
        return;
    }
    if (index == currentIndex())
        return;
    nextIndex = index;
    if (animating)
        return;
    if (QWidget *page = currentWidget())
        page->hide();
    animating = true;
    animPhase = Shrinking;
    new ResizeWatch(this, group);
    // Asked for by a slot at the end of a change, the group still counts as running.
    if (group->state() != QAbstractAnimation::Stopped)
        group->stop();
    group->start(QAbstractAnimation::KeepWhenStopped);
}

void RotateStackedWidget::paintEvent(QPaintEvent *event)
{
    if (!animating) {
        QFrame::paintEvent(event);
        return;
    }
    const bool showsNext = animPhase == Growing || (animPhase == Turning && rotate > edgeOn);
    QWidget *page = showsNext ? widget(nextIndex) : currentWidget();
    if (!page || animPhase < Shrinking || animPhase > Growing)
        return;

    QSize size = page->size();
    QTransform card;
    if (animPhase == Turning) {
        card.translate(width() / 2, height() * 0.5);
        card.scale(scale, scale);
        // The new page is on the card's back, so it is drawn half a turn further.
        card.rotate(showsNext ? rotate + halfTurn : rotate, Qt::YAxis);
        if (showsNext) {
            size = this->size();
            page->setGeometry(QRect(0, 0, width(), height()));
        }
    } else {
        card.translate(width() * 0.5, height() * 0.5);
        card.scale(scale, scale);
    }
    if (!(std::abs(scale) >= smallestScale))
        return;
    const QPixmap image = grabbed(page, size, palette().color(QPalette::Window));
    QPainter painter(this);
    painter.setTransform(card);
    painter.drawPixmap(QPointF(-(width() / 2), -(height() / 2)), image);
}

// NOLINTNEXTLINE(performance-unnecessary-value-param): a slot is found by its signature.
void RotateStackedWidget::valChanged(QVariant)
{
    // Qt shows another page when the current one is removed.
    if (animating && currentWidget() && currentWidget()->isVisible())
        currentWidget()->hide();
    repaint();
}

void RotateStackedWidget::animPositionDone()
{
    animPhase = Turning;
    repaint();
}

void RotateStackedWidget::animDone()
{
    animPhase = Growing;
    repaint();
}

void RotateStackedWidget::animPositionRestoreDone()
{
    rotate = 0.0;
    animating = false;
    const bool resized = ResizeWatch::ended(group);
    const int target = nextIndex;

    // Page and slots on currentChanged() may delete the page or the stack.
    const QPointer<RotateStackedWidget> self(this);
    QSequentialAnimationGroup *const endingGroup = group;
    endingGroups().append(endingGroup);
    // Without a page of that index the old one comes back.
    QWidget *next = widget(nextIndex);
    const QPointer<QWidget> page(next ? next : currentWidget());
    // The layout resizes the current page alone.
    if (page && resized)
        page->setGeometry(contentsRect());
    if (self && page)
        page->show();
    if (self && !animating && nextIndex != target) {
        // The page has asked for a change that took no time.
        if (page && page != currentWidget())
            page->hide();
    } else {
        if (self && page)
            page->raise();
        if (self && page)
            setCurrentWidget(page);
        // The page, or a slot, has asked for the next change already.
        if (self && animating && currentWidget())
            currentWidget()->hide();
    }
    endingGroups().removeOne(endingGroup);
    if (!self) {
        if (!endingGroups().contains(endingGroup))
            endingGroup->deleteLater();
        return;
    }
    // A change that a slot has asked for may already be turning, when shrinking takes no time.
    if (!animating)
        animPhase = Shrinking;
    repaint();
}
