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
/// settings as its own Qt properties. A setter stores a changed value and posts a
/// QEvent::UpdateRequest to the owner. The owner drops its images when it gets the event, and
/// paints them again at the next paint event. An equal value does nothing. Any thread may call the
/// setters, because they only store and post; the stored values are not locked.
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
    /// Width of the outer outline in pixels, any int. All insets of the panel depend on it.
    /// Default: 2.
    int getWidthPen() const;
    void setWidthPen(int widthPen);
    /// Opacity of the finished image, 0.0 to 1.0. A value outside this range acts as the nearer
    /// limit. Outline and body are also painted with it, so that it acts on them twice. The
    /// highlight is painted with 0.3 times the alpha of `color`. Default: 1.0.
    double getOpacity() const;
    void setOpacity(double opacity);
    /// Corner radius in percent of half the panel's shorter side. It should be in the range 0 to
    /// 100, but is not clamped. Default: 25.
    int getRoundness() const;
    void setRoundness(int roundness);

    /// Sets both colours with one update request. A null pointer leaves its colour unchanged. If
    /// nothing changes, no request is posted.
    void setAeroProperty(QColor *color, QColor *shadow);

    /// Paints the glass panel at the painter's origin, in the size of @p rect, whose position is
    /// ignored. Afterwards the painter has the pen, the brush and the opacity of the last step.
    void paintBase(QPainter *painter, QColor color1, QColor color2, QColor colorOutline,
                   QRect rect);

    /// Takes the lock, deletes *@p image if it exists, and marks the widget dirty. Any thread may
    /// call it. Painting does not take the lock, so the application must not call it while the same
    /// image is being painted.
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
