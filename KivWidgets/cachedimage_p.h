#pragma once

#include <QtCore/QEvent>
#include <QtCore/QSize>
#include <QtGui/QPainter>

#include <algorithm>
#include <initializer_list>

class QImage;
class QMutex;
class QObject;
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

/// Asks @p receiver through Qt's event loop to drop its images. Any thread.
void postUpdateRequest(QObject *receiver);

/// Takes back what a schedule in the handler of an update request has posted to a @p widget that is
/// a window: the base class paints on this very request, and another one would schedule again, for
/// ever. Stands between the schedule and the base class's handler.
void absorbUpdateRequests(QWidget *widget, const QEvent *event);

/// Stores @p value in @p field if it differs; the comparison is exact, for doubles too.
/// @return whether the field changed.
template <typename Field, typename Value>
bool assignIfChanged(Field &field, const Value &value)
{
    if (field == value)
        return false;
    field = value;
    return true;
}

/// Whether the type of @p event is in a widget's own list of event types.
inline bool isOneOf(const QEvent *event, std::initializer_list<QEvent::Type> types)
{
    return std::find(types.begin(), types.end(), event->type()) != types.end();
}

/// A painter on a cached image that begins with the image cleared to transparent and SourceOver
/// set.
class ImagePainter : public QPainter
{
public:
    enum Edges { Plain, Antialiased };
    explicit ImagePainter(QImage *image, Edges edges = Antialiased);
};

/// Whether Qt can draw a picture of size @p from into a rectangle of size @p to. Shrunk by more
/// than 32767, its steps through the picture overflow, and it reads outside of it.
bool canStretch(QSizeF from, QSizeF to);

/// Draws the whole of @p picture into @p target; nothing when Qt cannot.
void drawStretched(QPainter *painter, const QRectF &target, const QPixmap &picture);

/// Draws the whole of @p image into the whole rectangle of @p widget; nothing when Qt cannot.
void drawWhole(QPainter *painter, const QWidget *widget, const QImage &image);

/// The same, in the paint event of @p widget.
void showImage(QWidget *widget, const QImage &image);

} // namespace KivPrivate
