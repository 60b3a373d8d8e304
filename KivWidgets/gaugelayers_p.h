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
/// whose ink is cut out of both. The layers are cached. If anything has changed since the last
/// paint, the next paint composes them and draws the texts again.
namespace KivPrivate {

/// Clears @p image, and paints the three layers over each other into it. No painter may be active
/// on it.
void composeLayers(QImage &image, const QImage &background, const QImage &value,
                   const QImage &mask);

/// What the image of a gauge is composed from. For one widget, equal values give equal pixels.
struct GaugeLook
{
    /// How two values compare their layers: by the images, or only by the settings that they were
    /// painted from. A gauge that drops its layers at each paint always has new images.
    enum Identity { OfImages, OfSettings };

    /// Takes the layers in their order, and the gauge's own settings: those of its texts, and those
    /// that its layers were painted from. Size, font and screen are taken from @p widget.
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

/// The image that @p widget showed last. A null image if it had another look or is no longer
/// remembered.
QImage composedBefore(const QWidget *widget, const GaugeLook &look);
/// An image to compose @p look on. It reuses the pixels of the last image if possible.
QImage imageToCompose(const QWidget *widget, const GaugeLook &look);
/// Remembers the image that @p widget shows now. Call forgetComposed() before the widget is
/// destroyed.
void rememberComposed(const QWidget *widget, const GaugeLook &look, const QImage &image);
void forgetComposed(const QWidget *widget);
/// The maximum size of all remembered images in bytes.
constexpr int mostComposedBytes = 768 * 1024;

/// Shows on @p widget what @p build draws into an image of the widget's size. The same look is not
/// built again.
template <typename Build>
void showComposed(QWidget *widget, const GaugeLook &look, Build build);

// The functions that the two bar gauges share. Columns and rows are in pixels; barWidth is the
// bar's last column.

/// The part of @p width that remains for a bar beside its widest text.
int barWidthBeside(int width, const QFont &font, const QString &widestText);

/// Sets pen and brush to @p color and fills the rectangle with these inclusive corners. Corners in
/// the wrong order are exchanged by the painter.
void fillBar(QPainter *painter, const QColor &color, int left, int top, int right, int bottom);

/// The column of the scale's division @p i of ten.
int scaleColumn(int barWidth, int i);
/// Draws a black line along a row or a column, one pixel wide, including both ends.
void drawScaleLine(QPainter *painter, int x1, int y1, int x2, int y2);
/// Draws the frame around a bar on a gauge of @p height.
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
