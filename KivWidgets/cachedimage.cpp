#include "cachedimage_p.h"

#include "stretching_p.h"

#include <QtCore/QMutex>
#include <QtGui/QImage>
#include <QtWidgets/QWidget>

namespace KivPrivate {

namespace {

/// 64 Mi pixels take 256 MiB; what asks for more is a mistake.
constexpr qint64 mostPixels = qint64(1) << 26;

/// By the image itself, since a painter leaves out what lies beyond its columns and rows.
QImage *cleared(QImage *image)
{
    image->fill(Qt::transparent);
    return image;
}

} // namespace

void dropImage(QMutex &lock, bool &dirty, QImage **image)
{
    const QMutexLocker locker(&lock);
    delete *image;
    *image = nullptr;
    dirty = true;
}

bool createIfMissing(QImage **image, QSize size)
{
    if (*image)
        return false;
    *image = new QImage(newImage(size));
    return true;
}

bool isAllocatable(QSize size)
{
    return qint64(size.width()) * size.height() <= mostPixels;
}

QImage newImage(QSize size)
{
    return isAllocatable(size) ? QImage(size, QImage::Format_ARGB32_Premultiplied) : QImage();
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

void drawWhole(QPainter *painter, const QWidget *widget, const QImage &image)
{
    if (canStretch(image.size(), widget->size())) {
        painter->drawImage(QRectF(0, 0, widget->width(), widget->height()), image,
                           QRectF(image.rect()));
    }
}

void showImage(QWidget *widget, const QImage &image)
{
    QPainter painter(widget);
    painter.setRenderHint(QPainter::Antialiasing);
    drawWhole(&painter, widget, image);
}

} // namespace KivPrivate
