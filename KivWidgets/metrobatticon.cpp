// SPDX-License-Identifier: LicenseRef-all-rights-reserved

#include "metrobatticon.h"

#include "cachedimage_p.h"
#include "errorline_p.h"
#include "events_p.h"
#include "iconpainting_p.h"
#include "ownsize_p.h"

#include <QtGui/QIcon>
#include <QtGui/QImage>

#include <array>

using namespace KivPrivate;

MetroBattIcon::MetroBattIcon(QWidget *parent)
    : QAbstractButton(parent)
    , MetroBattTemplate(this)
    , image(nullptr)
{
    resize(getBackGroundSize());
    repaintSchedule(&image);
}

MetroBattIcon::~MetroBattIcon()
{
    MetroStyle::repaintSchedule(&image);
}

void MetroBattIcon::setIcon(const QIcon &newIcon)
{
    postUpdateRequest(this);
    QAbstractButton::setIcon(newIcon);
}

void MetroBattIcon::repaintSchedule(QImage **cached)
{
    MetroStyle::repaintSchedule(cached);
    update();
}

void MetroBattIcon::createImages()
{
    if (createIfMissing(&image, this))
        paintImage();
}

void MetroBattIcon::paintImage()
{
    if (isMissing(image)) {
        reportNullImage(KIV_HERE, this, "Image");
        return;
    }
    ImagePainter painter(image);
    paintBase(&painter);
    if (!isEnabled())
        drawDisabledWash(&painter, this);
    paintIcon(&painter);
}

void MetroBattIcon::paintIcon(QPainter *painter)
{
    drawCentredIcon(painter, this, QIcon::Normal);
}

void MetroBattIcon::paintEvent(QPaintEvent *)
{
    dropOutdated(this, lock, dirty, std::array{&image});
    if (dirty) {
        createImages();
        dirty = false;
    }
    showImage(this, *image);
}

bool MetroBattIcon::event(QEvent *event)
{
    if (event->type() == QEvent::Resize) {
        resizeToOwn(this, getBackGroundSize());
        return true;
    }
    if (isOneOf(event, unsizedDropEvents)) {
        repaintSchedule(&image);
        absorbUpdateRequests(this, event);
    } else if (event->type() == QEvent::Paint && followIconSize(this)) {
        // A paint is under way already, so nothing is scheduled.
        delete image;
        image = nullptr;
        dirty = true;
    }
    return QAbstractButton::event(event);
}
