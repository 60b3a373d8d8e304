// SPDX-License-Identifier: LicenseRef-all-rights-reserved

#pragma once

#include <QtCore/QRectF>
#include <QtCore/QSize>
#include <QtGui/QPainter>

class QImage;
class QPixmap;
class QString;

/// The library's own images, those of the application, and how both are drawn at any pixel ratio.
namespace KivPrivate {

/// What is left of a pixel by the rounding of a size times a ratio.
constexpr double ratioTolerance = 1.0 / 4096;

/// The pixels that @p size logical ones take at @p ratio; a part of one counts whole.
QSize pixelSize(QSize size, double ratio);

/// The whole logical pixels of @p pixels at @p ratio.
QSize logicalSize(QSize pixels, double ratio);
QSize logicalSize(const QPixmap &pixmap);

/// The image of the collection with this name, such as "batt_ok". While it is in use it is not
/// decoded again. GUI thread only.
QPixmap libraryImage(const QString &name);

/// @p pixmap as it is, or, if it came from libraryImage() and @p ratio is above 1, the same drawn
/// at 2 or 3 times the size. Layouts count with the one that libraryImage() gives.
QPixmap atRatio(const QPixmap &pixmap, double ratio);

/// Whether Qt can draw an image of size @p from into a rectangle of size @p to. Shrunk by more than
/// 32767, its steps through the image overflow, and it reads outside of it.
bool canStretch(QSizeF from, QSizeF to);

/// Prepares @p painter for an image of ratio @p sourceRatio in its logical size: smooth where its
/// pixels do not become whole pixels. At a ratio of 1 the painter stays as it is.
void useSmoothness(QPainter *painter, double sourceRatio);

/// Draws the whole of @p pixmap into @p target, in the sharpest version available; nothing when Qt
/// cannot.
void drawStretched(QPainter *painter, const QRectF &target, const QPixmap &pixmap);

/// Paints the whole of @p pixmap into @p size at the origin of *@p image as on a cleared one; the
/// same for an image like it is painted once.
void paintStretched(QImage *image, QSize size, const QPixmap &pixmap);

/// A painter on an image that paintStretched() has filled, with the render hints that it sets.
class StretchedPainter : public QPainter
{
public:
    StretchedPainter(QImage *image, QSize size, const QPixmap &pixmap);
};

/// Draws the part @p source of @p pixmap into @p target, both in logical pixels. An empty source
/// stands for all that is right of and below its corner.
void drawPart(QPainter *painter, const QRectF &target, const QPixmap &pixmap, const QRectF &source);

/// Draws @p pixmap in its logical size with its corner at @p place, in the sharpest version
/// available.
void drawAt(QPainter *painter, QPointF place, const QPixmap &pixmap);

} // namespace KivPrivate
