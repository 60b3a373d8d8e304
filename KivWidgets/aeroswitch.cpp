// SPDX-License-Identifier: LicenseRef-all-rights-reserved

#include "aeroswitch.h"

#include "aeropanel_p.h"
#include "assign_p.h"
#include "cachedimage_p.h"
#include "errorline_p.h"
#include "events_p.h"

#include <QtCore/QPointer>
#include <QtGui/QImage>

#include <array>

using namespace KivPrivate;

AeroSwitch::AeroSwitch(QWidget *parent)
    : AeroButton(parent)
    , highlight(Qt::lightGray)
    , imagePressed(nullptr)
{
    // A new button is unchecked.
    setCheckable(true);
    repaintSchedule(&imagePressed);
}

AeroSwitch::~AeroSwitch()
{
    // No update is needed.
    AeroStyle::repaintSchedule(&imagePressed); // clazy:exclude=skipped-base-method
}

QColor AeroSwitch::getHighlight() const
{
    return highlight;
}

void AeroSwitch::setHighlight(const QColor &newHighlight)
{
    if (assignIfChanged(highlight, newHighlight))
        repaintSchedule(&imagePressed);
}

void AeroSwitch::selectSwitch()
{
    if (!isChecked())
        clickedSwitch();
}

void AeroSwitch::unselectSwitch()
{
    if (isChecked())
        clickedSwitch();
}

void AeroSwitch::clickedSwitch()
{
    // A slot on toggled() may delete the switch.
    const QPointer<AeroSwitch> self(this);
    setChecked(!isChecked());
    if (!self)
        return; // GCOVR_EXCL_LINE: Qt 5.15 needs the button until toggled() returns
    repaintSchedule(&image);
    repaintSchedule(&imagePressed);
    repaint();
}

bool AeroSwitch::event(QEvent *event)
{
    if (isOneOf(event, sizedDropEvents))
        repaintSchedule(&imagePressed);
    return AeroButton::event(event);
}

void AeroSwitch::paintEvent(QPaintEvent *)
{
    dropOutdated(this, lock, dirty, std::array{&image, &imagePressed});
    if (dirty) {
        createImages();
        dirty = false;
    }
    showAeroImage(this, isChecked() ? *imagePressed : *image, opacity, rotate);
}

void AeroSwitch::createImages()
{
    AeroButton::createImages();
    if (createIfMissing(&imagePressed, this))
        paintImagePressed();
}

void AeroSwitch::paintImagePressed()
{
    if (imagePressed->isNull()) {
        reportNullImage(KIV_HERE, this, "ImagePressed");
        return;
    }
    const PanelColors colors = PanelColors{highlight, shadow, colorPen}.shownBy(this);
    paintGlassPanel(imagePressed, size(), {widthPen, roundness, opacity}, colors);
    PanelPainter painter(imagePressed, colors);
    paintText(&painter);
}
