// SPDX-License-Identifier: LicenseRef-all-rights-reserved

#include "aerostatusbar.h"

#include "aeropanel_p.h"
#include "assign_p.h"
#include "cachedimage_p.h"
#include "errorline_p.h"
#include "events_p.h"

#include <QtGui/QImage>

#include <array>

using namespace KivPrivate;

AeroStatusbar::AeroStatusbar(QWidget *parent)
    : QFrame(parent)
    , AeroStyle(this)
    , bold(false)
    , image(nullptr)
{
    repaintSchedule(&image);
}

AeroStatusbar::~AeroStatusbar()
{
    AeroStyle::repaintSchedule(&image);
}

QColor AeroStatusbar::getColorText() const
{
    return colorText;
}

void AeroStatusbar::setColorText(const QColor &newColorText)
{
    if (assignIfChanged(colorText, newColorText))
        repaintSchedule(&image);
}

bool AeroStatusbar::getBold() const
{
    return bold;
}

void AeroStatusbar::setTextBold(bool newBold)
{
    if (assignIfChanged(bold, newBold))
        repaintSchedule(&image);
}

bool AeroStatusbar::event(QEvent *event)
{
    if (isOneOf(event, sizedDropEvents)) {
        repaintSchedule(&image);
        absorbUpdateRequests(this, event);
    }
    return QFrame::event(event);
}

void AeroStatusbar::paintEvent(QPaintEvent *)
{
    dropOutdated(this, lock, dirty, std::array{&image});
    if (dirty) {
        createImages();
        dirty = false;
    }
    showAeroImage(this, *image, opacity);
}

void AeroStatusbar::createImages()
{
    if (createIfMissing(&image, this))
        paintImage();
}

void AeroStatusbar::paintImage()
{
    if (image->isNull()) {
        reportNullImage(KIV_HERE, this, "Image");
        return;
    }
    paintGlassPanel(image, size(), {widthPen, roundness, opacity},
                    PanelColors{color, shadow, colorPen}.shownBy(this));
}

void AeroStatusbar::repaintSchedule(QImage **cached)
{
    AeroStyle::repaintSchedule(cached);
    update();
}
