// SPDX-License-Identifier: LicenseRef-all-rights-reserved

#include "glasspanel.h"

#include <QtGui/QPainter>
#include <QtGui/QPainterPath>

QColor washedOutColor(const QColor &color)
{
    QColor washed;
    washed.setHsv(color.hsvHue(), color.hsvSaturation() / 2,
                  color.value() + (255 - color.value()) / 2, color.alpha());
    return washed;
}

GlassPanel GlassPanel::disabled() const
{
    GlassPanel panel = *this;
    panel.color = washedOutColor(color);
    panel.shadow = washedOutColor(shadow);
    panel.colorPen = washedOutColor(colorPen);
    return panel;
}

void GlassPanel::draw(QPainter *painter, QSize size) const
{
    const int W = size.width();
    const int H = size.height();
    const double wp = widthPen;
    const int a = W - widthPen;
    const int b = H - widthPen;
    const int m = a < b ? a : b;
    const double r = (m / 2) * roundness / 100;
    const double r2 = r - 0.75 * wp;
    const double i = 1.25 * wp;

    painter->setPen(QPen(QBrush(colorPen), wp));
    painter->setBrush(Qt::NoBrush);
    painter->setOpacity(opacity);
    QPainterPath outline;
    outline.addRoundedRect(wp / 2, wp / 2, a, b, r, r);
    painter->drawPath(outline);

    QLinearGradient gradient(QPointF(wp, wp), QPointF(wp, H - widthPen));
    gradient.setSpread(QGradient::ReflectSpread);
    gradient.setStops({{0.0, color}, {0.4, shadow}, {0.6, shadow}, {1.0, color}});
    painter->setBrush(gradient);
    painter->setPen(QPen(QBrush(color), wp / 2));
    QPainterPath body;
    body.addRoundedRect(i, i, W - 2 * i, H - 2 * i, r2, r2);
    painter->drawPath(body);

    QPainterPath light(QPointF(i, H / 2));
    light.arcTo(i, i, 2 * r2, 2 * r2, -180, -90);
    light.arcTo(W - wp / 2 - r - r2, i, 2 * r2, 2 * r2, -270, -90);
    light.lineTo(W - i, H / 2);
    light.closeSubpath();
    painter->setBrush(Qt::white);
    painter->setPen(QPen(QBrush(Qt::white), 0.01));
    painter->setOpacity(color.alpha() * 0.3 / 255.0);
    painter->drawPath(light);
}
