// SPDX-License-Identifier: LicenseRef-all-rights-reserved

#include "minimal.h"

#include <QtGui/QPainter>

namespace {

QImage emptyLayer(QSize size)
{
    QImage layer(size, QImage::Format_ARGB32_Premultiplied);
    layer.fill(Qt::transparent);
    return layer;
}

} // namespace

MinimalImage::MinimalImage(const QImage &shown)
    : image(shown)
{
    resize(image.size());
}

void MinimalImage::paintEvent(QPaintEvent *)
{
    QPainter(this).drawImage(0, 0, image);
}

MinimalGauge::MinimalGauge(QWidget *parent)
    : QWidget(parent)
{}

void MinimalGauge::setValue(int percent)
{
    value = percent;
    paintRing(&ring, QColor(0, 174, 240), 2 * value);
    update();
}

void MinimalGauge::paintEvent(QPaintEvent *)
{
    QImage composed(size(), QImage::Format_ARGB32_Premultiplied);
    {
        QPainter painter(&composed);
        painter.setCompositionMode(QPainter::CompositionMode_Source);
        painter.fillRect(composed.rect(), Qt::transparent);
        painter.setCompositionMode(QPainter::CompositionMode_SourceOver);
        painter.drawImage(0, 0, background);
        painter.drawImage(0, 0, ring);
        painter.setCompositionMode(QPainter::CompositionMode_DestinationOut);
        painter.drawImage(0, 0, mask);
        painter.setCompositionMode(QPainter::CompositionMode_SourceOver);
        painter.drawText(QPointF(width() / 2 - 10, height() - 10), QString::number(value));
    }
    QPainter(this).drawImage(0, 0, composed);
}

void MinimalGauge::resizeEvent(QResizeEvent *)
{
    paintRing(&background, QColor(167, 167, 167), 200);
    paintRing(&mask, Qt::black, 50);
    setValue(value);
}

void MinimalGauge::paintRing(QImage *layer, const QColor &color, int degrees)
{
    *layer = emptyLayer(size());
    QPainter painter(layer);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setBrush(color);
    painter.setPen(color);
    painter.drawPie(QRectF(1, 1, width() - 4, width() - 4), 200 * 16, -degrees * 16);
}
