#include "gaugelayers_p.h"

#include "iconpainting_p.h"

#include <QtGui/QFontMetrics>

namespace KivPrivate {

namespace {

/// Free columns between a bar and its text.
constexpr int textGap = 2;

} // namespace

void composeLayers(QPainter *painter, QRect area, const QImage &background, const QImage &value,
                   const QImage &mask)
{
    painter->setCompositionMode(QPainter::CompositionMode_Source);
    painter->fillRect(area, Qt::transparent);
    painter->setCompositionMode(QPainter::CompositionMode_SourceOver);
    painter->drawImage(0, 0, background);
    painter->drawImage(0, 0, value);
    painter->setCompositionMode(QPainter::CompositionMode_DestinationOut);
    painter->drawImage(0, 0, mask);
    painter->setCompositionMode(QPainter::CompositionMode_SourceOver);
}

int barWidthBeside(int width, const QFont &font, const QString &widestText)
{
    return width - singleLineSize(QFontMetrics(font), widestText).width();
}

void fillBar(QPainter *painter, const QColor &color, int left, int top, int right, int bottom)
{
    painter->setBrush(QBrush(color, Qt::SolidPattern));
    painter->setPen(QPen(color));
    const QRect bar(QPoint(left, top), QPoint(right, bottom));
    painter->drawRects(&bar, 1);
}

void beginScale(QPainter *painter)
{
    painter->setBrush(QBrush(Qt::black, Qt::SolidPattern));
    painter->setPen(QPen(QBrush(Qt::black, Qt::SolidPattern), 1.0));
}

int scaleColumn(int barWidth, int i)
{
    return int(qint64(barWidth) * i / 10) + 1;
}

void drawScaleLine(QPainter *painter, int x1, int y1, int x2, int y2)
{
    const QLine line(x1, y1, x2, y2);
    painter->drawLines(&line, 1);
}

void drawBarFrame(QPainter *painter, int barWidth, int height)
{
    const int bottom = height - 1;
    drawScaleLine(painter, 1, 1, barWidth, 1);
    drawScaleLine(painter, 1, bottom, barWidth, bottom);
    drawScaleLine(painter, 1, 1, 1, bottom);
    drawScaleLine(painter, barWidth, 1, barWidth, bottom);
}

void drawBarText(QPainter *painter, const QFont &font, int barWidth, int height,
                 const QString &text)
{
    painter->setFont(font);
    painter->drawText(QPointF(barWidth + textGap, centredBaseline(QFontMetrics(font), height)),
                      text);
}

} // namespace KivPrivate
