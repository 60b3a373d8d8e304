// SPDX-License-Identifier: LicenseRef-all-rights-reserved

#include "aeropanel_p.h"

#include "imagememory_p.h"

#include <QtGui/QLinearGradient>
#include <QtGui/QPainterPath>
#include <QtGui/QTransform>
#include <QtWidgets/QWidget>

#include <algorithm>

namespace KivPrivate {

namespace {

/// Where the glass gradient changes from the panel's colour to the band's and back.
constexpr double bandBegins = 0.4;
constexpr double bandEnds = 0.6;
/// Share of the panel colour's alpha at which the highlight is drawn.
constexpr double highlightStrength = 0.3;

/// The measures of a glass panel of a given size.
struct PanelGeometry
{
    double pen;         ///< width of the outer outline
    QRectF outline;     ///< the outer outline
    double outerRadius; ///< corner radius of the outer outline
    QRectF body;        ///< the glass body
    double innerRadius; ///< corner radius of the body
};

PanelGeometry panelGeometry(QSize size, int widthPen, int roundness)
{
    const double wp = widthPen;
    PanelGeometry panel{};
    panel.pen = wp;
    panel.outline = QRectF(wp * 0.5, wp * 0.5, size.width() - wp, size.height() - wp);
    panel.outerRadius = double(cornerRadius(size, widthPen, roundness));
    const double inset = wp * 5.0 * 0.25;
    panel.body = QRectF(inset, inset, size.width() - 2 * inset, size.height() - 2 * inset);
    panel.innerRadius = panel.outerRadius - wp * 3.0 * 0.25;
    return panel;
}

QPainterPath roundedRect(const QRectF &rect, double radius)
{
    QPainterPath path;
    path.addRoundedRect(rect, radius, radius, Qt::AbsoluteSize);
    return path;
}

/// The upper half of the body, rounded at its two upper corners.
QPainterPath highlightPath(const PanelGeometry &panel, QSize size)
{
    const double inset = panel.body.x();
    const double diameter = 2 * panel.innerRadius;
    const int middle = size.height() / 2;
    const double rightArc = size.width() - panel.pen * 0.5 - panel.outerRadius - panel.innerRadius;
    QPainterPath path;
    path.moveTo(inset, middle);
    path.arcTo(QRectF(inset, inset, diameter, diameter), -180, -90);
    path.arcTo(QRectF(rightArc, inset, diameter, diameter), -270, -90);
    path.lineTo(size.width() - inset, middle);
    path.closeSubpath();
    return path;
}

QLinearGradient glass(const QColor &edge, const QColor &band, QSize size, int widthPen)
{
    QLinearGradient gradient(widthPen, widthPen, widthPen, double(size.height()) - widthPen);
    gradient.setSpread(QGradient::ReflectSpread);
    gradient.setColorAt(0.0, edge);
    gradient.setColorAt(bandBegins, band);
    gradient.setColorAt(bandEnds, band);
    gradient.setColorAt(1.0, edge);
    return gradient;
}

void useHighlight(QPainter *painter, const PanelColors &colors)
{
    painter->setBrush(QBrush(Qt::white));
    painter->setPen(QPen(QBrush(Qt::white), 0.01));
    painter->setOpacity(colors.panel.alpha() * highlightStrength / 255.0);
}

} // namespace

QColor washedOut(const QColor &color)
{
    int h = 0;
    int s = 0;
    int v = 0;
    int a = 0;
    color.getHsv(&h, &s, &v, &a);
    return QColor::fromHsv(h, s / 2, v + (255 - v) / 2, a);
}

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

void drawGlassPanel(QPainter *painter, QSize size, const PanelShape &shape,
                    const PanelColors &colors)
{
    const PanelGeometry panel = panelGeometry(size, shape.widthPen, shape.roundness);

    painter->setPen(QPen(QBrush(colors.outline), panel.pen));
    painter->setOpacity(shape.opacity);
    painter->drawPath(roundedRect(panel.outline, panel.outerRadius));

    painter->setBrush(glass(colors.panel, colors.band, size, shape.widthPen));
    painter->setPen(QPen(QBrush(colors.panel), panel.pen * 0.5));
    painter->drawPath(roundedRect(panel.body, panel.innerRadius));

    useHighlight(painter, colors);
    painter->drawPath(highlightPath(panel, size));
}

void paintGlassPanel(QImage *image, QSize size, const PanelShape &shape, const PanelColors &colors)
{
    const ImageKey key(ImageKey::GlassPanel, size, shape.widthPen, shape.roundness, shape.opacity,
                       colors.panel, colors.band, colors.outline);
    paintOnce(image, key, ImagePainter::Antialiased,
              [&](QPainter *painter) { drawGlassPanel(painter, size, shape, colors); });
}

PanelPainter::PanelPainter(QImage *image, const PanelColors &colors)
    : QPainter(image)
{
    setRenderHint(QPainter::Antialiasing);
    useHighlight(this, colors);
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
