// SPDX-License-Identifier: LicenseRef-all-rights-reserved

#include "metronavdrawer.h"

#include "cachedimage_p.h"
#include "elementstate_p.h"
#include "errorline_p.h"
#include "events_p.h"
#include "ownsize_p.h"
#include "pixmaps_p.h"

#include <QtCore/QPointer>
#include <QtGui/QImage>
#include <QtGui/QMoveEvent>
#include <QtGui/QPainterPath>

#include <algorithm>
#include <array>
#include <functional>
#include <utility>

using namespace KivPrivate;

namespace {

/// Free pixels beside the tab and above it.
constexpr int tabMargin = 12;
/// Free pixels after each child.
constexpr int childGap = 5;
constexpr int cornerDiameter = 24;
/// A rectangle further off than this could not represent its right and lower edges.
constexpr int farthestPlace = 1 << 30;

/// Sets the minimum size of each visible child of @p drawer to what @p wanted makes of its width.
/// @return the room that the children take side by side.
int sizeVisibleChildren(QObject *drawer, const std::function<QSize(int)> &wanted)
{
    // A child's answer to its new size may delete its siblings.
    QList<QPointer<QObject>> children;
    for (QObject *child : drawer->children())
        children.append(child);
    qint64 sum = 0;
    for (const QPointer<QObject> &child : std::as_const(children)) {
        if (!child || !child->property("visible").toBool())
            continue;
        const int width = child->property("width").toInt();
        child->setProperty("minimumSize", wanted(width));
        sum += qint64(width) + childGap;
    }
    return int(std::clamp<qint64>(sum, -QWIDGETSIZE_MAX, QWIDGETSIZE_MAX));
}

} // namespace

MetroNavdrawer::MetroNavdrawer(QWidget *parent)
    : QGroupBox(parent)
    , MetroStyle(this)
    , state(open)
    , image(nullptr)
{
    setState(open);
    ImageTab = libraryImage(QStringLiteral("linguetta-navdrawer"));
    background = QColor(lightGrey);
    repaintSchedule(&image);
}

MetroNavdrawer::~MetroNavdrawer()
{
    MetroStyle::repaintSchedule(&image);
}

MetroNavdrawer::state_E MetroNavdrawer::getState() const
{
    return state;
}

void MetroNavdrawer::setState(state_E s)
{
    state = s;
    switch (s) {
    case open:
        openUp();
        break;
    case close:
        closeDown();
        break;
    }
}

QPixmap MetroNavdrawer::getImageTab() const
{
    return ImageTab;
}

void MetroNavdrawer::setImageTab(const QPixmap &newTab)
{
    ImageTab = newTab;
    repaintSchedule(&image);
}

QColor MetroNavdrawer::getBackground() const
{
    return background;
}

void MetroNavdrawer::setBackground(const QColor &newBackground)
{
    background = newBackground;
    repaintSchedule(&image);
}

void MetroNavdrawer::setGeometry(QRect r)
{
    if (state == open)
        openGeometry = r;
    QWidget::setGeometry(r);
}

void MetroNavdrawer::move(QPoint p)
{
    const QPoint place(std::clamp(p.x(), -farthestPlace, farthestPlace),
                       std::clamp(p.y(), -farthestPlace, farthestPlace));
    if (state == open)
        openGeometry.setTopLeft(place);
    QWidget::setGeometry(QRect(place, size()));
}

void MetroNavdrawer::mousePressEvent(QMouseEvent *event)
{
    toggleOnLeftPress(this, event);
}

void MetroNavdrawer::repaintSchedule(QImage **cached)
{
    MetroStyle::repaintSchedule(cached);
    update();
}

void MetroNavdrawer::createImages()
{
    if (createIfMissing(&image, this))
        paintImage();
}

void MetroNavdrawer::paintEvent(QPaintEvent *)
{
    dropOutdated(this, lock, dirty, std::array{&image});
    if (dirty) {
        createImages();
        dirty = false;
    }
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    drawInto(&painter, QRectF(QPointF(), logicalSize(*image)), *image);
}

bool MetroNavdrawer::event(QEvent *event)
{
    if (isOneOf(event, unsizedBoxDropEvents)) {
        repaintSchedule(&image);
        absorbUpdateRequests(this, event);
    }
    if (event->type() == QEvent::Resize)
        keepSize();
    if (event->type() == QEvent::Move) {
        const QPoint place = static_cast<QMoveEvent *>(event)->pos();
        // A window gets an event each time it is placed, with its frame taken into account, so that
        // placing it again here would never end.
        if (!isWindow())
            move(place);
        else if (state == open)
            openGeometry.setTopLeft(place);
        repaintSchedule(&image);
    }
    if (event->type() == QEvent::MouseButtonRelease) {
        MoveOutside move;
        QGroupBox::mouseMoveEvent(&move);
    }
    return QGroupBox::event(event);
}

void MetroNavdrawer::paintImage()
{
    if (image->isNull()) {
        reportNullImage(KIV_HERE, this, "Image");
        return;
    }
    ImagePainter painter(image);
    const QSize tab = logicalSize(ImageTab);
    const int tabWidth = tab.width();
    const int tabHeight = tab.height();
    if (state == open) {
        QPainterPath panel;
        panel.moveTo(width(), 0);
        panel.arcTo(QRectF(tabWidth, 0, cornerDiameter, cornerDiameter), 90, 90);
        panel.arcTo(QRectF(tabWidth, height() - cornerDiameter, cornerDiameter, cornerDiameter),
                    180, 90);
        panel.lineTo(width(), height());
        panel.closeSubpath();
        painter.setBrush(QBrush(background, Qt::SolidPattern));
        painter.setPen(QPen(background));
        painter.setOpacity(1.0);
        painter.drawPath(panel);
        drawStretched(&painter, QRectF(0, tabMargin, tabWidth, tabHeight), ImageTab);
    } else if (state == close) {
        drawStretched(&painter, QRectF(width() - tabWidth, tabMargin, tabWidth, tabHeight),
                      ImageTab);
    }
}

void MetroNavdrawer::openUp()
{
    const QPointer<MetroNavdrawer> self(this);
    if (image) {
        const int room = sizeVisibleChildren(this, [](int width) { return QSize(width, width); });
        if (!self)
            return;
        const QRect opened(x() - room, y(), room + logicalSize(ImageTab).width() + tabMargin,
                           height());
        openGeometry = opened;
        setGeometry(opened);
    }
    if (self)
        repaintSchedule(&image);
}

void MetroNavdrawer::closeDown()
{
    const QPointer<MetroNavdrawer> self(this);
    const int closedWidth = logicalSize(ImageTab).width() + tabMargin;
    setGeometry(
        QRect(geometry().right() + 1 - closedWidth, geometry().top(), closedWidth, height()));
    if (self)
        sizeVisibleChildren(this, [](int width) { return QSize(width, 0); });
    if (self)
        repaintSchedule(&image);
}

/// Keeps the drawer at its closed size, or while open at least at that.
void MetroNavdrawer::keepSize()
{
    const QSize closedSize = logicalSize(ImageTab) + QSize(tabMargin, 2 * tabMargin);
    const ResizeAnswer answer(this);
    if (state == close) {
        if (answer.isAllowed())
            setGeometry(QRect(geometry().topLeft(), closedSize));
        return;
    }
    if (state != open)
        return;
    if (!answer.isAllowed()) {
        openGeometry = geometry();
        repaintSchedule(&image);
        return;
    }
    if (closedSize.width() > width())
        setGeometry(QRect(geometry().topLeft(), QSize(closedSize.width(), height())));
    if (closedSize.height() > height())
        setGeometry(QRect(geometry().topLeft(), QSize(width(), closedSize.height())));
    setGeometry(geometry());
    repaintSchedule(&image);
}
