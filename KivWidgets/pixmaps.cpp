// SPDX-License-Identifier: LicenseRef-all-rights-reserved

#include "pixmaps_p.h"

#include "applicationmemory_p.h"
#include "imagememory_p.h"
#include "numbers_p.h"

#include <QtCore/QHash>
#include <QtCore/QResource>
#include <QtCore/QString>
#include <QtGui/QPixmap>

#include <array>
#include <cmath>

namespace KivPrivate {

namespace {

/// The ratios that the images are drawn for beside 1.
constexpr std::array<int, 2> drawnRatios = {2, 3};

/// Shrunk by more than this, an image loses pixels even where it is drawn smoothly.
constexpr double mostShrinking = 2.2;

struct Image
{
    const uchar *data = nullptr; ///< of the collection that it was read from
    QPixmap plain;
    std::array<QPixmap, drawnRatios.size()> larger;
};

/// By name: at most the images of the collection.
using Images = QHash<QString, Image>;

double deviceRatio(const QPainter *painter)
{
    return painter->device()->devicePixelRatioF();
}

QPixmap largerImage(const QString &name, int ratio)
{
    QPixmap pixmap(QStringLiteral(":/KivWidgets/private/Images%1x/%2.png").arg(ratio).arg(name));
    pixmap.setDevicePixelRatio(ratio);
    return pixmap;
}

/// Smooth where one pixel does not become a whole number of them.
void useSmoothnessFor(QPainter *painter, double scale)
{
    painter->setRenderHint(QPainter::SmoothPixmapTransform,
                           std::abs(scale - std::round(scale)) > ratioTolerance || scale < 0.5);
}

/// @p pixmap for @p target on a device of @p ratio, in the sharpest version available; null when Qt
/// cannot draw it there.
QPixmap sharpFor(const QRectF &target, const QPixmap &pixmap, double ratio)
{
    QPixmap sharp = atRatio(pixmap, ratio);
    if (sharp.width() > mostShrinking * target.width() * ratio)
        sharp = pixmap;
    return canStretch(sharp.size(), target.size()) ? sharp : QPixmap();
}

/// At a ratio of 1 the painter stays as it is.
void useStretching(QPainter *painter, const QRectF &target, const QPixmap &sharp)
{
    const double ratio = deviceRatio(painter);
    if (ratio == 1.0 || sharp.isNull())
        return;
    const double across = target.width() * ratio / sharp.width();
    const double down = target.height() * ratio / sharp.height();
    useSmoothnessFor(painter, across == down ? across : 0.0);
}

void drawSharp(QPainter *painter, const QRectF &target, const QPixmap &sharp)
{
    if (sharp.isNull())
        return;
    useStretching(painter, target, sharp);
    painter->drawPixmap(target, sharp, QRectF());
}

} // namespace

QSize pixelSize(QSize size, double ratio)
{
    if (ratio == 1.0)
        return size;
    const auto pixels = [ratio](int extent) {
        return truncatedToInt(std::ceil(extent * ratio - ratioTolerance));
    };
    return {pixels(size.width()), pixels(size.height())};
}

QSize logicalSize(QSize pixels, double ratio)
{
    if (ratio == 1.0)
        return pixels;
    return {int(std::floor(pixels.width() / ratio + ratioTolerance)),
            int(std::floor(pixels.height() / ratio + ratioTolerance))};
}

QSize logicalSize(const QPixmap &pixmap)
{
    return logicalSize(pixmap.size(), pixmap.devicePixelRatio());
}

QPixmap libraryImage(const QString &name)
{
    // An application may release the collection and register it again.
    const QString path = QStringLiteral(":/Images/%1.png").arg(name);
    const uchar *const data = QResource(path).data();
    auto &images = applicationMemory<Images>();
    const auto known = images.constFind(name);
    if (known != images.cend() && known->data == data)
        return known->plain;
    const QPixmap pixmap(path);
    if (pixmap.isNull())
        images.remove(name);
    else
        images.insert(name, {data, pixmap, {}});
    return pixmap;
}

QPixmap atRatio(const QPixmap &pixmap, double ratio)
{
    if (ratio <= 1.0 || pixmap.devicePixelRatio() != 1.0)
        return pixmap;
    auto &images = applicationMemory<Images>();
    for (auto it = images.begin(); it != images.end(); ++it) {
        if (it->plain.cacheKey() != pixmap.cacheKey())
            continue;
        const std::size_t step = ratio <= drawnRatios[0] ? 0 : 1;
        QPixmap &larger = it->larger[step];
        if (larger.isNull())
            larger = largerImage(it.key(), drawnRatios[step]);
        return larger.isNull() ? pixmap : larger;
    }
    return pixmap;
}

bool canStretch(QSizeF from, QSizeF to)
{
    constexpr double largestStep = 32767;
    return from.width() <= largestStep * to.width() && from.height() <= largestStep * to.height();
}

void useSmoothness(QPainter *painter, double sourceRatio)
{
    const double ratio = deviceRatio(painter);
    if (ratio != 1.0 || sourceRatio != 1.0)
        useSmoothnessFor(painter, ratio / sourceRatio);
}

void drawStretched(QPainter *painter, const QRectF &target, const QPixmap &pixmap)
{
    drawSharp(painter, target, sharpFor(target, pixmap, deviceRatio(painter)));
}

void paintStretched(QImage *image, QSize size, const QPixmap &pixmap)
{
    const QRectF target(QPointF(), size);
    const QPixmap sharp = sharpFor(target, pixmap, image->devicePixelRatio());
    const ImageKey key(ImageKey::StretchedBackground, size, sharp.cacheKey());
    paintOnce(image, key, ImagePainter::Antialiased,
              [&](QPainter *painter) { drawSharp(painter, target, sharp); });
}

StretchedPainter::StretchedPainter(QImage *image, QSize size, const QPixmap &pixmap)
    : QPainter(image)
{
    setRenderHint(QPainter::Antialiasing);
    const QRectF target(QPointF(), size);
    useStretching(this, target, sharpFor(target, pixmap, image->devicePixelRatio()));
}

void drawPart(QPainter *painter, const QRectF &target, const QPixmap &pixmap, const QRectF &source)
{
    const double ratio = deviceRatio(painter);
    const QPixmap sharp = atRatio(pixmap, ratio);
    if (ratio != 1.0)
        useSmoothness(painter, sharp.devicePixelRatio());
    const double sourceRatio = sharp.devicePixelRatio();
    painter->drawPixmap(target, sharp,
                        QRectF(source.topLeft() * sourceRatio, source.size() * sourceRatio));
}

void drawAt(QPainter *painter, QPointF place, const QPixmap &pixmap)
{
    const double ratio = deviceRatio(painter);
    const QPixmap sharp = atRatio(pixmap, ratio);
    if (ratio != 1.0)
        useSmoothness(painter, sharp.devicePixelRatio());
    painter->drawPixmap(place, sharp);
}

} // namespace KivPrivate
