// SPDX-License-Identifier: LicenseRef-all-rights-reserved

#pragma once

#include <QtCore/QMutex>
#include <QtCore/QSize>
#include <QtGui/QPainter>

class QImage;
class QWidget;

/// The functions that all widgets with cached images use. The code uses three terms: a *drop*
/// deletes an image and marks the widget dirty, a *schedule* drops an image and requests an update,
/// and a *creation* allocates and paints the missing images at the next paint.
namespace KivPrivate {

/// Deletes *@p image if there is one, nulls it and sets @p dirty, all under @p lock. Any thread.
void dropImage(QMutex &lock, bool &dirty, QImage **image);

// An image has the widget's size times the ratio of the screen that the widget is on, and carries
// that ratio, so that whatever paints on it or shows it counts in logical pixels.

/// Whether an image of @p size at @p ratio is within the bound of 2^26 pixels. Larger ones are not
/// allocated.
bool isAllocatable(QSize size, double ratio);

/// An image of @p size logical pixels at @p ratio in the format of all cached images, its pixels
/// not set; a null image when the size is empty or beyond the bound.
QImage newImage(QSize size, double ratio);

/// The size of @p image in whole logical pixels.
QSize logicalSize(const QImage &image);

/// Makes a new image of @p size for the screen of @p widget where *@p image is missing.
/// @return true when it did, so that the caller paints the new image.
bool createIfMissing(QImage **image, const QWidget *widget, QSize size);

/// The same with the size of the widget.
bool createIfMissing(QImage **image, const QWidget *widget);

/// Whether @p image is for another ratio than that of the screen that @p widget is on now. Missing
/// and null images never are.
bool isOutdated(const QImage *image, const QWidget *widget);

/// Drops those of @p images that are outdated, at the beginning of a paint event.
template <typename Images>
void dropOutdated(const QWidget *widget, QMutex &lock, bool &dirty, const Images &images)
{
    for (QImage **image : images) {
        if (isOutdated(*image, widget))
            dropImage(lock, dirty, image);
    }
}

/// Whether @p image cannot be painted on, because it does not exist or is a null image. An
/// application may call a public painting step at any time.
bool isMissing(const QImage *image);

/// A painter on a cached image. Its constructor clears the image to transparent.
class ImagePainter : public QPainter
{
public:
    enum Edges { Plain, Antialiased };
    explicit ImagePainter(QImage *image, Edges edges = Antialiased);
};

/// Draws the whole of @p image into @p target, pixel by pixel where the sizes allow it; nothing
/// when Qt cannot.
void drawInto(QPainter *painter, const QRectF &target, const QImage &image);

/// Draws @p image in its logical size with its corner at @p place.
void drawAt(QPainter *painter, QPointF place, const QImage &image);

/// Draws the part @p source of @p image with its corner at @p target, both in logical pixels. An
/// extent of 0 or less stands for all that is left of the image.
void drawPart(QPainter *painter, QPointF target, const QImage &image, const QRectF &source);

/// Draws the whole of @p image into the whole rectangle of @p widget; nothing when Qt cannot.
void drawWhole(QPainter *painter, const QWidget *widget, const QImage &image);

/// The same, in the paint event of @p widget.
void showImage(QWidget *widget, const QImage &image);

} // namespace KivPrivate
