#pragma once

#include <QtGui/QColor>
#include <QtGui/QPixmap>

/// Line drawings for tabs, tiles and buttons, all on one grid with one line width.
enum class Pictogram { Ups, Overview, Power, Control, Settings, Alarm, Check, Restart, Link, Help };

/// @p which as a pixmap of @p side pixels in @p color on a transparent background.
QPixmap pictogram(Pictogram which, int side, const QColor &color);
