#include "stretching_p.h"

#include <QtGui/QPainter>

namespace KivPrivate {

bool canStretch(QSizeF from, QSizeF to)
{
    constexpr double largestStep = 32767;
    return from.width() <= largestStep * to.width() && from.height() <= largestStep * to.height();
}

void drawStretched(QPainter *painter, const QRectF &target, const QPixmap &pixmap)
{
    if (canStretch(pixmap.size(), target.size()))
        painter->drawPixmap(target, pixmap, QRectF());
}

} // namespace KivPrivate
