// SPDX-License-Identifier: LicenseRef-all-rights-reserved

#pragma once

#include <QtGui/QColor>
#include <QtGui/QGuiApplication>
#include <QtGui/QIcon>
#include <QtGui/QPixmap>

/// Line drawings for tabs, tiles and buttons, all on one grid with one line width.
enum class Pictogram {
    Ups,
    Overview,
    Power,
    Control,
    Settings,
    Alarm,
    Check,
    Restart,
    Link,
    Help,
    Events,
    Trends
};

/// A transparent pixmap of @p size with @p ratio pixels a unit of length, rounded up. Without a
/// ratio it has that of the densest screen.
QPixmap transparentPixmap(QSize size, qreal ratio = qGuiApp->devicePixelRatio());

/// @p which as a pixmap of @p side units of length in @p color on a transparent background.
QPixmap pictogram(Pictogram which, int side, const QColor &color, qreal ratio = 1);

/// Adds @p which to @p icon, for usual screens and for the densest one. Qt counts an icon's sizes
/// in pixels, so the usual one comes first.
void addPictogram(QIcon *icon, Pictogram which, int side, const QColor &color,
                  QIcon::Mode mode = QIcon::Normal, QIcon::State state = QIcon::Off);
