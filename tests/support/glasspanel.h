// SPDX-License-Identifier: LicenseRef-all-rights-reserved

#pragma once

#include <QtCore/QSize>
#include <QtGui/QColor>

class QPainter;

/// The glass panel drawn plainly, apart from the library, for expected images.
struct GlassPanel
{
    QColor color = QColor(Qt::gray);
    QColor shadow = QColor(Qt::black);
    QColor colorPen = QColor(Qt::black);
    int widthPen = 2;
    double opacity = 1.0;
    int roundness = 25;

    /// With the colours that a disabled widget shows.
    GlassPanel disabled() const;
    void draw(QPainter *painter, QSize size) const;
};

/// A colour with half its saturation and half way to full brightness, in integers.
QColor washedOutColor(const QColor &color);
