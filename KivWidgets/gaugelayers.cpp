#include "gaugelayers_p.h"

#include "text_p.h"

#include <QtGui/QFontMetrics>

#include <algorithm>
#include <limits>

#ifdef __SSE2__
#include <emmintrin.h>
#endif

namespace KivPrivate {

namespace {

/// Free columns between a bar and its text.
constexpr int textGap = 2;

/// @p pixel times @p factor / 255, each channel rounded as the raster paint engine does it.
QRgb scaled(QRgb pixel, quint32 factor)
{
    quint32 even = (pixel & 0xff00ff) * factor;
    even = ((even + ((even >> 8) & 0xff00ff) + 0x800080) >> 8) & 0xff00ff;
    quint32 odd = ((pixel >> 8) & 0xff00ff) * factor;
    odd = (odd + ((odd >> 8) & 0xff00ff) + 0x800080) & 0xff00ff00;
    return odd | even;
}

#ifdef __SSE2__
/// Four pixels from @p out on, each times what the pixel of @p ink over it leaves.
void scaleFour(QRgb *out, const QRgb *ink)
{
    const __m128i mask = _mm_loadu_si128(reinterpret_cast<const __m128i *>(ink));
    if (_mm_movemask_epi8(_mm_cmpeq_epi32(mask, _mm_setzero_si128())) == 0xffff)
        return;
    auto *const place = reinterpret_cast<__m128i *>(out);
    const __m128i pixels = _mm_loadu_si128(place);
    __m128i factor = _mm_sub_epi32(_mm_set1_epi32(255), _mm_srli_epi32(mask, 24));
    factor = _mm_or_si128(factor, _mm_slli_epi32(factor, 16));
    // The arithmetic of scaled(), in lanes of 16 bits.
    const auto scaledLanes = [factor](__m128i channels) {
        const __m128i product = _mm_mullo_epi16(channels, factor);
        return _mm_add_epi16(_mm_add_epi16(product, _mm_srli_epi16(product, 8)),
                             _mm_set1_epi16(0x80));
    };
    const __m128i even = scaledLanes(_mm_and_si128(pixels, _mm_set1_epi16(0xff)));
    const __m128i odd = scaledLanes(_mm_srli_epi16(pixels, 8));
    _mm_storeu_si128(
        place, _mm_or_si128(_mm_srli_epi16(even, 8), _mm_andnot_si128(_mm_set1_epi16(0xff), odd)));
}
#endif

/// Whether @p layer is like those that the gauges make for @p image; a class derived from one may
/// bring others.
bool fits(const QImage &layer, const QImage &image)
{
    return layer.format() == QImage::Format_ARGB32_Premultiplied &&
           layer.devicePixelRatio() == image.devicePixelRatio();
}

/// The pixels of @p image without their ratio, for as long as it lives.
QImage pixelsOf(const QImage &image)
{
    return QImage(image.constBits(), image.width(), image.height(), image.bytesPerLine(),
                  image.format());
}

/// The same to paint on.
QImage pixelsOf(QImage &image)
{
    return QImage(image.bits(), image.width(), image.height(), image.bytesPerLine(),
                  image.format());
}

/// Takes the ink of @p mask out of @p image: DestinationOut, for which the paint engine has no fast
/// way. Both are in the format of cached images.
void cutOut(QImage &image, const QImage &mask)
{
    const QSize common = image.size().boundedTo(mask.size());
    for (int y = 0; y < common.height(); ++y) {
        auto *out = reinterpret_cast<QRgb *>(image.scanLine(y));
        const auto *ink = reinterpret_cast<const QRgb *>(mask.constScanLine(y));
        int x = 0;
#ifdef __SSE2__
        for (; x + 4 <= common.width(); x += 4)
            scaleFour(out + x, ink + x);
#endif
        for (; x < common.width(); ++x)
            out[x] = scaled(out[x], 255 - quint32(qAlpha(ink[x])));
    }
}

} // namespace

void composeLayers(QImage &image, const QImage &background, const QImage &value, const QImage &mask)
{
    image.fill(Qt::transparent);
    if (fits(image, image) && fits(background, image) && fits(value, image) && fits(mask, image)) {
        // Pixel by pixel, which is fast at every ratio.
        QImage pixels = pixelsOf(image);
        QPainter painter(&pixels);
        painter.drawImage(0, 0, pixelsOf(background));
        painter.drawImage(0, 0, pixelsOf(value));
        painter.end();
        cutOut(image, mask);
        return;
    }
    QPainter painter(&image);
    painter.drawImage(0, 0, background);
    painter.drawImage(0, 0, value);
    painter.setCompositionMode(QPainter::CompositionMode_DestinationOut);
    painter.drawImage(0, 0, mask);
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

void drawBarText(QPainter *painter, const QFont &font, int barWidth, int height,
                 const QString &text)
{
    painter->setFont(font);
    painter->drawText(QPointF(barWidth + textGap, centredBaseline(QFontMetrics(font), height)),
                      text);
}

} // namespace KivPrivate
