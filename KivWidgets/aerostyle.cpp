// SPDX-License-Identifier: LicenseRef-all-rights-reserved

#include "aerostyle.h"

#include "aeropanel_p.h"
#include "assign_p.h"
#include "cachedimage_p.h"
#include "events_p.h"

using namespace KivPrivate;

AeroStyle::AeroStyle(QObject *ownerWidget)
    : color(Qt::gray)
    , shadow(Qt::black)
    , colorPen(Qt::black)
    , widthPen(2)
    , opacity(1.0)
    , roundness(25)
    , dirty(true)
    , owner(ownerWidget)
{}

AeroStyle::~AeroStyle() = default;

QColor AeroStyle::getColor() const
{
    return color;
}

void AeroStyle::setColor(const QColor &newColor)
{
    if (assignIfChanged(color, newColor))
        postUpdateRequest(owner);
}

QColor AeroStyle::getShadow() const
{
    return shadow;
}

void AeroStyle::setShadow(const QColor &newShadow)
{
    if (assignIfChanged(shadow, newShadow))
        postUpdateRequest(owner);
}

QColor AeroStyle::getColorPen() const
{
    return colorPen;
}

void AeroStyle::setColorPen(const QColor &newColorPen)
{
    if (assignIfChanged(colorPen, newColorPen))
        postUpdateRequest(owner);
}

int AeroStyle::getWidthPen() const
{
    return widthPen;
}

void AeroStyle::setWidthPen(int newWidthPen)
{
    if (assignIfChanged(widthPen, newWidthPen))
        postUpdateRequest(owner);
}

double AeroStyle::getOpacity() const
{
    return opacity;
}

void AeroStyle::setOpacity(double newOpacity)
{
    if (assignIfChanged(opacity, newOpacity))
        postUpdateRequest(owner);
}

int AeroStyle::getRoundness() const
{
    return roundness;
}

void AeroStyle::setRoundness(int newRoundness)
{
    if (assignIfChanged(roundness, newRoundness))
        postUpdateRequest(owner);
}

void AeroStyle::setAeroProperty(QColor *newColor, QColor *newShadow)
{
    const bool colorChanged = newColor && assignIfChanged(color, *newColor);
    const bool shadowChanged = newShadow && assignIfChanged(shadow, *newShadow);
    if (colorChanged || shadowChanged)
        postUpdateRequest(owner);
}

// NOLINTBEGIN(performance-unnecessary-value-param, readability-make-member-function-const): the
// public interface.
void AeroStyle::paintBase(QPainter *painter, QColor color1, QColor color2, QColor colorOutline,
                          QRect rect)
{
    drawGlassPanel(painter, rect.size(), {widthPen, roundness, opacity},
                   {color1, color2, colorOutline});
}
// NOLINTEND(performance-unnecessary-value-param, readability-make-member-function-const)

void AeroStyle::repaintSchedule(QImage **image)
{
    dropImage(lock, dirty, image);
}
