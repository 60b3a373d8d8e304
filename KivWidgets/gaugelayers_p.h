// SPDX-License-Identifier: LicenseRef-all-rights-reserved

#pragma once

#include "cachedimage_p.h"

#include <QtCore/QString>
#include <QtGui/QColor>
#include <QtGui/QFont>
#include <QtGui/QImage>
#include <QtWidgets/QWidget>

#include <array>

class QRect;

/// The three-layer scheme of the Metro gauges: a background, a value layer over it, and a mask
/// whose ink is cut out of both. The layers are cached; composition and texts are done again by a
/// paint that finds anything changed since the last.
namespace KivPrivate {

/// Paints the three layers over each other into @p image, cleared before. No painter is open on it.
void composeLayers(QImage &image, const QImage &background, const QImage &value,
                   const QImage &mask);

/// What the image of a gauge is composed from. Equal ones stand for equal pixels of one widget.
struct GaugeLook
{
    /// How layers are known again: as the same images, or by the settings that they were just
    /// painted from, since a gauge that drops its layers with each paint has new images.
    enum Identity { OfImages, OfSettings };

    /// Of layers in their order, with the gauge's own settings: what its texts are drawn with and
    /// where, and what its layers were painted from. Size, font and screen are the widget's.
    GaugeLook(const QWidget *widget, const std::array<QImage **, 3> &layers, Identity identity,
              const QColor &color, const std::array<double, 6> &numbers, const QString &text,
              const QString &otherText = QString());
    bool operator==(const GaugeLook &other) const;

    bool isComplete = true; ///< whether all layers are there
    std::array<qint64, 3> layerKeys{};
    QSize size;
    double ratio;
    double resolution; ///< of the screen, from which an image takes the size of its texts
    QFont font;
    QFont deviceFont; ///< gives what @p font does not set itself
    QColor color;
    std::array<double, 6> numbers;
    QString text;
    QString otherText;
};

/// The image that @p widget showed last; a null image if that had another look, or is forgotten.
QImage composedBefore(const QWidget *widget, const GaugeLook &look);
/// An image to compose that look on: the pixels of the last one are used again where they can be.
QImage imageToCompose(const QWidget *widget, const GaugeLook &look);
/// Remembers what @p widget shows now. It must forget it before it ends.
void rememberComposed(const QWidget *widget, const GaugeLook &look, const QImage &image);
void forgetComposed(const QWidget *widget);
/// The bytes that they take at most.
constexpr int mostComposedBytes = 768 * 1024;

/// Shows on @p widget what @p build draws into an image of the widget's size. It is not built again
/// for the same look.
template <typename Build>
void showComposed(QWidget *widget, const GaugeLook &look, Build build);

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

/// Paints the background layer of a bar.
void paintBarBackground(QImage *layer, const QColor &color, int barWidth, int height);

/// Writes @p text beside the bar, in the painter's pen.
void drawBarText(QPainter *painter, const QFont &font, int barWidth, int height,
                 const QString &text);

template <typename Build>
void showComposed(QWidget *widget, const GaugeLook &look, Build build)
{
    QPainter painter(widget);
    QImage composed = composedBefore(widget, look);
    if (composed.isNull()) {
        composed = imageToCompose(widget, look);
        if (composed.isNull())
            return;
        build(composed);
        rememberComposed(widget, look, composed);
    }
    drawAt(&painter, QPointF(0, 0), composed);
}

} // namespace KivPrivate
