// SPDX-License-Identifier: LicenseRef-all-rights-reserved

#pragma once

#include "kivglobal.h"

#include <QtCore/QMutex>
#include <QtCore/QRect>
#include <QtGui/QColor>

class QImage;
class QObject;
class QPainter;

/// The look that all Aero widgets share: a glass panel with a shaded band, an outline and rounded
/// corners.
///
/// A widget derives from its Qt class first and from this class second, and declares the six
/// settings as its own Qt properties. A setter that changes a setting stores it and posts a
/// QEvent::UpdateRequest to the owner, whose images are dropped when the event arrives and painted
/// again by the next paint event; an equal value does nothing. Setters only store and post, so they
/// may be called from any thread; the stored values themselves are not locked.
class KIVWIDGETS_EXPORT AeroStyle
{
public:
    /// @p owner is the widget that derives from this class; it gets the update requests.
    explicit AeroStyle(QObject *owner);
    virtual ~AeroStyle();

    /// Colour of the panel's upper and lower edge and of the inner outline. Default: Qt::gray.
    QColor getColor() const;
    void setColor(const QColor &color);
    /// Colour of the band across the panel's middle. Default: Qt::black.
    QColor getShadow() const;
    void setShadow(const QColor &shadow);
    /// Colour of the outer outline. Default: Qt::black.
    QColor getColorPen() const;
    void setColorPen(const QColor &colorPen);
    /// Width of the outer outline in pixels, from which all insets follow; any int. Default: 2.
    int getWidthPen() const;
    void setWidthPen(int widthPen);
    /// Opacity of the finished image, 0.0 to 1.0; the painter takes what lies beyond for the
    /// nearer end. Outline and body are painted with it too, so that it acts on them twice; the
    /// highlight is painted with 0.3 times the alpha of `color`. Default: 1.0.
    double getOpacity() const;
    void setOpacity(double opacity);
    /// Corner radius in percent of half the panel's shorter side, meant for 0 to 100 but not
    /// bounded. Default: 25.
    int getRoundness() const;
    void setRoundness(int roundness);

    /// Sets both colours with one update request. A null pointer leaves its colour alone; nothing
    /// is posted when nothing changes.
    void setAeroProperty(QColor *color, QColor *shadow);

    /// Paints the glass panel at the painter's origin; only the size of @p rect counts. The painter
    /// keeps the pen, the brush and the opacity of the last step.
    void paintBase(QPainter *painter, QColor color1, QColor color2, QColor colorOutline,
                   QRect rect);

    /// Deletes *@p image if there is one and marks the widget dirty, under the lock. Any thread; a
    /// paint of the same image does not take the lock, so the application must keep the two apart.
    void repaintSchedule(QImage **image);

protected:
    QMutex lock;
    QColor color;
    QColor shadow;
    QColor colorPen;
    int widthPen;
    double opacity;
    int roundness;
    bool dirty;
    QObject *owner;
};
