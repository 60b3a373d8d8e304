// SPDX-License-Identifier: LicenseRef-all-rights-reserved

#include "metrostatusbar.h"

#include "cachedimage_p.h"
#include "errorline_p.h"
#include "events_p.h"
#include "ownsize_p.h"
#include "pixmaps_p.h"

#include <QtGui/QImage>

#include <array>

using namespace KivPrivate;

MetroStatusbar::MetroStatusbar(QWidget *parent)
    : QFrame(parent)
    , MetroStyle(this)
    , background(libraryImage(QStringLiteral("fasciasuperiore")))
    , image(nullptr)
{
    repaintSchedule(&image);
}

MetroStatusbar::~MetroStatusbar()
{
    MetroStyle::repaintSchedule(&image);
}

QPixmap MetroStatusbar::getBackground() const
{
    return background;
}

void MetroStatusbar::setBackground(const QPixmap &newBackground)
{
    background = newBackground;
    repaintSchedule(&image);
}

void MetroStatusbar::repaintSchedule(QImage **cached)
{
    MetroStyle::repaintSchedule(cached);
    update();
}

void MetroStatusbar::createImages()
{
    if (createIfMissing(&image, this))
        paintImage();
}

void MetroStatusbar::paintEvent(QPaintEvent *)
{
    dropOutdated(this, lock, dirty, std::array{&image});
    if (dirty) {
        createImages();
        dirty = false;
    }
    showImage(this, *image);
}

bool MetroStatusbar::event(QEvent *event)
{
    if (event->type() == QEvent::Resize) {
        resizeToOwn(this, logicalSize(background));
        return true;
    }
    if (isOneOf(event, unsizedDropEvents)) {
        repaintSchedule(&image);
        absorbUpdateRequests(this, event);
    }
    return QFrame::event(event);
}

void MetroStatusbar::paintImage()
{
    if (image->isNull()) {
        reportNullImage(KIV_HERE, this, "Image");
        return;
    }
    ImagePainter painter(image);
    if (!background.isNull())
        drawAt(&painter, QPointF(0, 0), background);
}
