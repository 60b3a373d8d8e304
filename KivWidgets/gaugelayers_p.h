#pragma once

#include "cachedimage_p.h"

#include <QtCore/QString>
#include <QtGui/QImage>
#include <QtWidgets/QWidget>

class QFont;
class QRect;

/// The three-layer scheme of the Metro gauges: a background, a value layer over it, and a mask
/// whose ink is cut out of both. The layers are cached; composition and texts are done on every
/// paint.
namespace KivPrivate {

/// Paints the three layers over each other into @p image, cleared before. No painter is open on it.
void composeLayers(QImage &image, const QImage &background, const QImage &value,
                   const QImage &mask);

/// Shows on @p widget what @p build draws into a temporary image of the widget's size.
template <typename Build>
void showComposed(QWidget *widget, Build build);

/// What the two bar gauges share. Columns and rows are in pixels; @p barWidth is the bar's last
/// column.

/// The room that is left of @p width for a bar beside its widest text.
int barWidthBeside(int width, const QFont &font, const QString &widestText);

/// Sets pen and brush to @p color and fills the rectangle with these inclusive corners. Corners in
/// the wrong order are exchanged by the painter.
void fillBar(QPainter *painter, const QColor &color, int left, int top, int right, int bottom);

/// The column of the scale's division @p i of ten.
int scaleColumn(int barWidth, int i);
/// A black line of one pixel's width, along a row or a column, with both its ends.
void drawScaleLine(QPainter *painter, int x1, int y1, int x2, int y2);
/// The frame around a bar on a gauge of @p height.
void drawBarFrame(QPainter *painter, int barWidth, int height);

/// Writes @p text beside the bar, in the painter's pen.
void drawBarText(QPainter *painter, const QFont &font, int barWidth, int height,
                 const QString &text);

template <typename Build>
void showComposed(QWidget *widget, Build build)
{
    QPainter painter(widget);
    QImage composed = newImage(widget->size(), widget->devicePixelRatioF());
    if (composed.isNull())
        return;
    build(composed);
    drawAt(&painter, QPointF(0, 0), composed);
}

} // namespace KivPrivate
