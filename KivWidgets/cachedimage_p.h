#pragma once

#include <QtCore/QSize>
#include <QtGui/QPainter>

class QImage;
class QMutex;
class QWidget;

/// The vocabulary of the cached-image discipline. Its three verbs are kept apart: a *drop* deletes
/// an image and marks the widget dirty, a *schedule* drops and asks for an update, a *creation*
/// allocates and paints what is missing at the next paint.
namespace KivPrivate {

/// Deletes *@p image if there is one, nulls it and sets @p dirty, all under @p lock. Any thread.
void dropImage(QMutex &lock, bool &dirty, QImage **image);

/// Whether an image of @p size is within the bound of 2^26 pixels. Larger ones are not allocated.
bool isAllocatable(QSize size);

/// An image of @p size in the format of all cached images, its pixels not set; a null image when
/// the size is empty or beyond the bound.
QImage newImage(QSize size);

/// Makes a new image of @p size where *@p image is missing.
/// @return true when it did, so that the caller paints the new image.
bool createIfMissing(QImage **image, QSize size);

/// Whether there is nothing to paint on: no image, since a host may call a public painting step at
/// any time, or a null image.
bool isMissing(const QImage *image);

/// A painter on a cached image that begins with the image cleared to transparent and SourceOver
/// set.
class ImagePainter : public QPainter
{
public:
    enum Edges { Plain, Antialiased };
    explicit ImagePainter(QImage *image, Edges edges = Antialiased);
};

/// Draws the whole of @p image into the whole rectangle of @p widget; nothing when Qt cannot.
void drawWhole(QPainter *painter, const QWidget *widget, const QImage &image);

/// The same, in the paint event of @p widget.
void showImage(QWidget *widget, const QImage &image);

} // namespace KivPrivate
