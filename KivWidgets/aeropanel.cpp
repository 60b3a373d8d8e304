#include "aeropanel_p.h"

#include "aerostyle.h"
#include "cachedimage_p.h"
#include "iconpainting_p.h"

#include <QtGui/QPainter>
#include <QtGui/QTransform>
#include <QtWidgets/QWidget>

#include <algorithm>

namespace KivPrivate {

PanelColors PanelColors::shownBy(const QWidget *widget) const
{
    if (widget->isEnabled())
        return *this;
    return {washedOut(panel), washedOut(band), washedOut(outline)};
}

qint64 cornerRadius(QSize size, int widthPen, int roundness)
{
    const qint64 a = qint64(size.width()) - widthPen;
    const qint64 b = qint64(size.height()) - widthPen;
    return (std::min(a, b) / 2) * roundness / 100;
}

void paintPanel(QPainter *painter, AeroStyle *style, const PanelColors &colors, const QRect &rect)
{
    style->paintBase(painter, colors.panel, colors.band, colors.outline, rect);
}

void showAeroImage(QWidget *widget, const QImage &image, double opacity, double rotate)
{
    QPainter painter(widget);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setOpacity(opacity);
    if (rotate != 0.0) {
        QTransform turn;
        turn.translate(widget->width() / 2, widget->height() / 2);
        turn.rotate(rotate, Qt::YAxis);
        turn.translate(-(widget->width() / 2), -(widget->height() / 2));
        painter.setTransform(turn);
    }
    drawWhole(&painter, widget, image);
}

} // namespace KivPrivate
