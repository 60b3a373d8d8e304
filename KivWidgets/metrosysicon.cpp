// SPDX-License-Identifier: LicenseRef-all-rights-reserved

#include "metrosysicon.h"

#include "assign_p.h"
#include "cachedimage_p.h"
#include "errorline_p.h"
#include "events_p.h"
#include "iconpainting_p.h"
#include "imagememory_p.h"
#include "ownsize_p.h"

#include <QtCore/QPointer>
#include <QtGui/QIcon>
#include <QtGui/QImage>
#include <QtGui/QPainterPath>

#include <algorithm>
#include <array>

using namespace KivPrivate;

namespace {

/// An icon's extent with the border on both sides, limited to that of a widget.
int framedExtent(int iconExtent, int border)
{
    return int(std::clamp<qint64>(iconExtent + 2 * qint64(border), 0, QWIDGETSIZE_MAX));
}

void usePlateColor(QPainter *painter, const QColor &color, int border)
{
    painter->setBrush(QBrush(color, Qt::SolidPattern));
    painter->setPen(QPen(QBrush(color), border, Qt::SolidLine, Qt::SquareCap, Qt::MiterJoin));
}

void drawPlate(QPainter *painter, QSize iconSize, int border, int roundness)
{
    const qint64 w = qint64(iconSize.width()) + border;
    const qint64 h = qint64(iconSize.height()) + border;
    const auto radius = double(((std::min(w, h) / 2) * roundness) / 100);
    QPainterPath plate;
    plate.addRoundedRect(QRectF(border / 2, border / 2, double(w), double(h)), radius, radius,
                         Qt::AbsoluteSize);
    painter->drawPath(plate);
}

} // namespace

MetroSysIcon::MetroSysIcon(QWidget *parent)
    : QAbstractButton(parent)
    , MetroStyle(this)
    , image(nullptr)
    , hover(false)
    , border(10)
    , roundness(50)
{
    fitToIcon();
    repaintSchedule(&image);
}

MetroSysIcon::~MetroSysIcon()
{
    MetroStyle::repaintSchedule(&image);
}

int MetroSysIcon::getBorder() const
{
    return border;
}

void MetroSysIcon::setBorder(int newBorder)
{
    if (assignIfChanged(border, newBorder))
        postUpdateRequest(owner);
}

int MetroSysIcon::getRoundness() const
{
    return roundness;
}

void MetroSysIcon::setRoundness(int newRoundness)
{
    if (assignIfChanged(roundness, newRoundness))
        postUpdateRequest(owner);
}

void MetroSysIcon::setIcon(const QIcon &newIcon)
{
    postUpdateRequest(this);
    QAbstractButton::setIcon(newIcon);
}

void MetroSysIcon::paintBase(QPainter *painter)
{
    usePlateColor(painter, COLORTAB[getColorIdx()], border);
    drawPlate(painter, iconSize(), border, roundness);
}

void MetroSysIcon::paintImage()
{
    if (isMissing(image)) {
        reportNullImage(KIV_HERE, this, "Image");
        return;
    }
    const QColor color = COLORTAB[getColorIdx()];
    const ImageKey key(ImageKey::IconPlate, size(), iconSize(), border, roundness, color,
                       int(isEnabled()));
    paintOnce(image, key, ImagePainter::Antialiased, [&](QPainter *painter) {
        usePlateColor(painter, color, border);
        drawPlate(painter, iconSize(), border, roundness);
        if (!isEnabled())
            drawDisabledWash(painter, this);
    });
    QPainter painter(image);
    painter.setRenderHint(QPainter::Antialiasing);
    usePlateColor(&painter, color, border);
    paintIcon(&painter);
}

void MetroSysIcon::paintIcon(QPainter *painter)
{
    drawCentredIcon(painter, this, hover ? QIcon::Active : QIcon::Normal);
}

void MetroSysIcon::repaintSchedule(QImage **cached)
{
    MetroStyle::repaintSchedule(cached);
    update();
}

void MetroSysIcon::createImages()
{
    if (createIfMissing(&image, this))
        paintImage();
}

void MetroSysIcon::paintEvent(QPaintEvent *)
{
    dropOutdated(this, lock, dirty, std::array{&image});
    if (dirty) {
        createImages();
        dirty = false;
    }
    showImage(this, *image);
}

bool MetroSysIcon::event(QEvent *event)
{
    if (isOneOf(event, sizedDropEvents)) {
        fitToIcon();
        repaintSchedule(&image);
        absorbUpdateRequests(this, event);
    } else if (event->type() == QEvent::Paint) {
        if (followIconSize(this)) {
            fitToIcon();
            repaintSchedule(&image);
        }
    } else if (isOneOf(event, hoverEvents)) {
        hover = event->type() == QEvent::Enter;
        repaintSchedule(&image);
        // A slot on the signals may delete the button.
        const QPointer<MetroSysIcon> self(this);
        if (hover)
            Q_EMIT mouseEnter();
        else
            Q_EMIT mouseLeave();
        if (!self)
            return true;
    }
    return QAbstractButton::event(event);
}

void MetroSysIcon::fitToIcon()
{
    resizeToOwn(this, QSize(framedExtent(iconSize().width(), border),
                            framedExtent(iconSize().height(), border)));
}
