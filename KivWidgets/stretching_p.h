#pragma once

#include <QtCore/QSizeF>

class QPainter;
class QPixmap;
class QRectF;

namespace KivPrivate {

/// Whether Qt can draw an image of size @p from into a rectangle of size @p to. Shrunk by more than
/// 32767, its steps through the image overflow, and it reads outside of it.
bool canStretch(QSizeF from, QSizeF to);

/// Draws the whole of @p pixmap into @p target; nothing when Qt cannot.
void drawStretched(QPainter *painter, const QRectF &target, const QPixmap &pixmap);

} // namespace KivPrivate
