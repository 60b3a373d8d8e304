#include "aeropanel_p.h"

#include "iconpainting_p.h"

#include <QtGui/QPainter>
#include <QtGui/QTransform>
#include <QtWidgets/QWidget>

namespace KivPrivate {

PanelColors PanelColors::shownBy(const QWidget *widget) const
{
    if (widget->isEnabled())
        return *this;
    return {washedOut(panel), washedOut(band), washedOut(outline)};
}

void beginAeroShow(QPainter *painter, const QWidget *widget, double opacity, double rotate)
{
    painter->setRenderHint(QPainter::Antialiasing);
    painter->setOpacity(opacity);
    if (rotate != 0.0) {
        QTransform turn;
        turn.translate(widget->width() / 2, widget->height() / 2);
        turn.rotate(rotate, Qt::YAxis);
        turn.translate(-(widget->width() / 2), -(widget->height() / 2));
        painter->setTransform(turn);
    }
}

} // namespace KivPrivate
