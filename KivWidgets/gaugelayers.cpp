// SPDX-License-Identifier: LicenseRef-all-rights-reserved

#include "gaugelayers_p.h"

#include "applicationmemory_p.h"
#include "composition_p.h"
#include "imagememory_p.h"
#include "text_p.h"

#include <QtCore/QCache>
#include <QtGui/QFontMetrics>
#include <QtGui/QGuiApplication>
#include <QtGui/QScreen>

#include <algorithm>
#include <limits>
#include <memory>

namespace KivPrivate {

namespace {

/// Free columns between a bar and its text.
constexpr int textGap = 2;

/// Larger gauges would drive out too many others.
constexpr int mostBytesOfOne = mostComposedBytes / 4;

struct Composed
{
    GaugeLook look;
    QImage image;
};

using ComposedImages = QCache<const QWidget *, Composed>;

struct Memory
{
    std::unique_ptr<ComposedImages> images;
};

Memory &memory()
{
    return fontMemory<Memory>();
}

/// Whether @p layer is like those that the gauges make for @p image; a class derived from one may
/// bring others.
bool fits(const QImage &layer, const QImage &image)
{
    return layer.format() == QImage::Format_ARGB32_Premultiplied &&
           layer.devicePixelRatio() == image.devicePixelRatio();
}

/// @p layer as it lies on @p image, beyond its edges transparent.
QImage laidOn(const QImage &image, const QImage &layer)
{
    return layer.size() == image.size() ? layer : layer.copy(image.rect());
}

const quint32 *rowOf(const QImage &layer, int y)
{
    return reinterpret_cast<const quint32 *>(layer.constScanLine(y));
}

/// In one pass, since painting the layers one after the other takes its time for each.
void composePixels(QImage &image, const QImage &background, const QImage &value, const QImage &mask)
{
    const ComposePixels compose = fastestCompose();
    const bool hasGaps =
        !isGapless(image) || !isGapless(background) || !isGapless(value) || !isGapless(mask);
    const int count = hasGaps ? image.width() : image.width() * image.height();
    for (int y = 0; y < (hasGaps ? image.height() : 1); ++y) {
        compose(reinterpret_cast<quint32 *>(image.scanLine(y)), rowOf(background, y),
                rowOf(value, y), rowOf(mask, y), count);
    }
}

} // namespace

void composeLayers(QImage &image, const QImage &background, const QImage &value, const QImage &mask)
{
    if (fits(image, image) && fits(background, image) && fits(value, image) && fits(mask, image)) {
        composePixels(image, laidOn(image, background), laidOn(image, value), laidOn(image, mask));
        return;
    }
    image.fill(Qt::transparent);
    QPainter painter(&image);
    painter.drawImage(0, 0, background);
    painter.drawImage(0, 0, value);
    painter.setCompositionMode(QPainter::CompositionMode_DestinationOut);
    painter.drawImage(0, 0, mask);
}

GaugeLook::GaugeLook(const QWidget *widget, const std::array<QImage **, 3> &layers,
                     Identity identity, const QColor &ownColor,
                     const std::array<double, 6> &ownNumbers, const QString &ownText,
                     const QString &ownOtherText)
    : size(widget->size())
    , ratio(widget->devicePixelRatioF())
    , resolution(QGuiApplication::primaryScreen()->logicalDotsPerInch())
    , font(widget->font())
    , color(ownColor)
    , numbers(ownNumbers)
    , text(ownText)
    , otherText(ownOtherText)
{
    for (std::size_t i = 0; i < layers.size(); ++i) {
        const QImage *const layer = *layers[i];
        isComplete = isComplete && layer;
        if (layer && identity == OfImages)
            layerKeys[i] = layer->cacheKey();
    }
}

bool GaugeLook::operator==(const GaugeLook &other) const
{
    return layerKeys == other.layerKeys && numbers == other.numbers && size == other.size &&
           ratio == other.ratio && resolution == other.resolution && color == other.color &&
           text == other.text && otherText == other.otherText && isSameFont(font, other.font) &&
           isSameFont(deviceFont, other.deviceFont);
}

QImage composedBefore(const QWidget *widget, const GaugeLook &look)
{
    if (!mayRemember() || !look.isComplete)
        return QImage();
    const auto &images = memory().images;
    const Composed *const known = images ? images->object(widget) : nullptr;
    return known && known->look == look ? known->image : QImage();
}

QImage imageToCompose(const QWidget *widget, const GaugeLook &look)
{
    QImage image;
    if (mayRemember() && memory().images) {
        const std::unique_ptr<Composed> known(memory().images->take(widget));
        if (known && known->look.size == look.size && known->look.ratio == look.ratio &&
            known->look.resolution == look.resolution) {
            image = known->image;
        }
    }
    return image.isNull() ? newImage(look.size, look.ratio) : image;
}

void rememberComposed(const QWidget *widget, const GaugeLook &look, const QImage &image)
{
    const auto cost = image.sizeInBytes() + qsizetype(sizeof(Composed));
    if (!mayRemember() || !look.isComplete || cost > mostBytesOfOne)
        return;
    auto &images = memory().images;
    if (!images)
        images = std::make_unique<ComposedImages>(mostComposedBytes);
    images->insert(widget, new Composed{look, image}, int(cost));
}

void forgetComposed(const QWidget *widget)
{
    if (mayRemember() && memory().images)
        memory().images->remove(widget);
}

int barWidthBeside(int width, const QFont &font, const QString &widestText)
{
    return width - singleLineSize(font, widestText).width();
}

void fillBar(QPainter *painter, const QColor &color, int left, int top, int right, int bottom)
{
    const QRect bar(QPoint(left, top), QPoint(right, bottom));
    // The pen's own column is lost beyond the range of int.
    if (color.alpha() == 255 && bar.isValid() && right < std::numeric_limits<int>::max() - 1) {
        // What the brush and the pen show together: the pen adds a column and a row.
        painter->fillRect(bar.adjusted(0, 0, 1, 1), color);
        return;
    }
    painter->setBrush(QBrush(color, Qt::SolidPattern));
    painter->setPen(QPen(color));
    painter->drawRects(&bar, 1);
}

int scaleColumn(int barWidth, int i)
{
    return int(qint64(barWidth) * i / 10) + 1;
}

void drawScaleLine(QPainter *painter, int x1, int y1, int x2, int y2)
{
    // The paint engine fills the pixels of a line one by one, which takes many times longer.
    const auto [left, right] = std::minmax(x1, x2);
    const auto [top, bottom] = std::minmax(y1, y2);
    painter->fillRect(QRect(QPoint(left, top), QPoint(right, bottom)), Qt::black);
}

void drawBarFrame(QPainter *painter, int barWidth, int height)
{
    const int bottom = height - 1;
    drawScaleLine(painter, 1, 1, barWidth, 1);
    drawScaleLine(painter, 1, bottom, barWidth, bottom);
    drawScaleLine(painter, 1, 1, 1, bottom);
    drawScaleLine(painter, barWidth, 1, barWidth, bottom);
}

void paintBarBackground(QImage *layer, const QColor &color, int barWidth, int height)
{
    const ImageKey key(ImageKey::BarBackground, color, barWidth, height);
    paintOnce(layer, key, ImagePainter::Plain,
              [&](QPainter *painter) { fillBar(painter, color, 1, 1, barWidth, height - 2); });
}

void drawBarText(QPainter *painter, const QFont &font, int barWidth, int height,
                 const QString &text)
{
    painter->setFont(font);
    drawLine(painter, QPointF(barWidth + textGap, centredBaseline(QFontMetrics(font), height)),
             text);
}

} // namespace KivPrivate
