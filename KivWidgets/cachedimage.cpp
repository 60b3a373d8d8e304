// SPDX-License-Identifier: LicenseRef-all-rights-reserved

#include "cachedimage_p.h"

#include "pixmaps_p.h"

#include <QtGui/QImage>
#include <QtWidgets/QWidget>

#include <cmath>

namespace KivPrivate {

namespace {

/// 64 Mi pixels take 256 MiB; what asks for more is a mistake.
constexpr double mostPixels = 1 << 26;

/// By the image itself, since a painter leaves out what lies beyond its columns and rows.
QImage *cleared(QImage *image)
{
    image->fill(Qt::transparent);
    return image;
}

/// Copies @p part of @p image, in its pixels, to @p place as it is, which Qt does only at ratios of
/// 1 and 2. @return whether that is possible: the painter has the image's ratio and does not
/// stretch.
bool copyPixels(QPainter *painter, QPointF place, const QImage &image, const QRectF &part)
{
    const double ratio = image.devicePixelRatio();
    const QTransform transform = painter->worldTransform();
    if (image.isNull() || painter->device()->devicePixelRatioF() != ratio ||
        transform.type() > QTransform::TxTranslate) {
        return false;
    }
    const QImage pixels(image.constBits(), image.width(), image.height(), image.bytesPerLine(),
                        image.format());
    painter->scale(1.0 / ratio, 1.0 / ratio);
    painter->drawImage(place * ratio, pixels, part);
    painter->setWorldTransform(transform);
    return true;
}

} // namespace

void dropImage(QMutex &lock, bool &dirty, QImage **image)
{
    const QMutexLocker locker(&lock);
    delete *image;
    *image = nullptr;
    dirty = true;
}

bool isAllocatable(QSize size, double ratio)
{
    const QSize pixels = pixelSize(size, ratio);
    return double(pixels.width()) * pixels.height() <= mostPixels;
}

QImage newImage(QSize size, double ratio)
{
    if (!isAllocatable(size, ratio))
        return QImage();
    QImage image(pixelSize(size, ratio), QImage::Format_ARGB32_Premultiplied);
    image.setDevicePixelRatio(ratio);
    return image;
}

QSize logicalSize(const QImage &image)
{
    return logicalSize(image.size(), image.devicePixelRatio());
}

bool createIfMissing(QImage **image, const QWidget *widget, QSize size)
{
    if (*image)
        return false;
    *image = new QImage(newImage(size, widget->devicePixelRatioF()));
    return true;
}

bool createIfMissing(QImage **image, const QWidget *widget)
{
    return createIfMissing(image, widget, widget->size());
}

bool isOutdated(const QImage *image, const QWidget *widget)
{
    return !isMissing(image) && image->devicePixelRatio() != widget->devicePixelRatioF();
}

bool isMissing(const QImage *image)
{
    return !image || image->isNull();
}

ImagePainter::ImagePainter(QImage *image, Edges edges)
    : QPainter(cleared(image))
{
    setRenderHint(QPainter::Antialiasing, edges == Antialiased);
}

void drawInto(QPainter *painter, const QRectF &target, const QImage &image)
{
    if (!canStretch(image.size(), target.size()))
        return;
    const double ratio = image.devicePixelRatio();
    if (ratio == 1.0) {
        painter->drawImage(target, image, QRectF(image.rect()));
        return;
    }
    // The last row and column may lie beyond the target in part.
    if (logicalSize(image) == target.size()) {
        drawAt(painter, target.topLeft(), image);
        return;
    }
    useSmoothness(painter, ratio);
    painter->drawImage(target, image, QRectF(image.rect()));
}

void drawAt(QPainter *painter, QPointF place, const QImage &image)
{
    if (image.devicePixelRatio() != 1.0 && copyPixels(painter, place, image, image.rect()))
        return;
    useSmoothness(painter, image.devicePixelRatio());
    painter->drawImage(place, image);
}

void drawPart(QPainter *painter, QPointF target, const QImage &image, const QRectF &source)
{
    const double ratio = image.devicePixelRatio();
    if (ratio == 1.0) {
        painter->drawImage(QRectF(target, source.size()), image, source);
        return;
    }
    // Parts end between pixels of the image, so that neighbours meet without a seam.
    const auto onPixel = [ratio](double place) { return std::round(place * ratio); };
    const QPointF corner(onPixel(source.left()), onPixel(source.top()));
    const QRectF part(corner, QPointF(onPixel(source.right()), onPixel(source.bottom())));
    const QPointF place(onPixel(target.x()) / ratio, onPixel(target.y()) / ratio);
    if (part.width() > 0.0 && part.height() > 0.0 && copyPixels(painter, place, image, part))
        return;
    useSmoothness(painter, ratio);
    painter->drawImage(QRectF(place, part.size() / ratio), image, part);
}

void drawWhole(QPainter *painter, const QWidget *widget, const QImage &image)
{
    drawInto(painter, QRectF(0, 0, widget->width(), widget->height()), image);
}

void showImage(QWidget *widget, const QImage &image)
{
    QPainter painter(widget);
    painter.setRenderHint(QPainter::Antialiasing);
    drawWhole(&painter, widget, image);
}

} // namespace KivPrivate
