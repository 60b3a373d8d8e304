// SPDX-License-Identifier: LicenseRef-all-rights-reserved

#include "severitylook.h"

#include "pictograms.h"

#include <QtGui/QPainter>
#include <QtGui/QPainterPath>
#include <QtGui/QPixmapCache>

#include <cmath>

namespace {

/// The signs are drawn on a grid of this many units.
constexpr double grid = 24;
constexpr double center = grid / 2;

QPainterPath octagon()
{
    constexpr int corners = 8;
    constexpr double radius = 12;
    QPainterPath path;
    for (int i = 0; i < corners; ++i) {
        const double angle = (2 * i + 1) * M_PI / corners;
        const QPointF corner(center + radius * std::cos(angle), center + radius * std::sin(angle));
        if (i == 0)
            path.moveTo(corner);
        else
            path.lineTo(corner);
    }
    path.closeSubpath();
    return path;
}

QPainterPath triangle()
{
    QPainterPath path(QPointF(12, 1.5));
    path.lineTo(23.5, 22);
    path.lineTo(0.5, 22);
    path.closeSubpath();
    return path;
}

void drawMark(QPainter *painter, double top, double bottom)
{
    painter->drawLine(QPointF(center, top), QPointF(center, bottom));
    painter->drawLine(QPointF(center, bottom + 4), QPointF(center, bottom + 4.2));
}

} // namespace

SeverityLook lookOf(Severity severity, bool dark)
{
    switch (severity) {
    case Severity::Normal:
        return dark ? SeverityLook{QColor(0xff39414a), QColor(0xffe3e8ec)}
                    : SeverityLook{QColor(0xffd3d9de), QColor(0xff23282d)};
    case Severity::Information:
        return {QColor(0xff1f4e79), QColor(0xffffffff)};
    case Severity::Warning:
        return {QColor(0xffffb02e), QColor(0xff1d1400)};
    case Severity::Critical:
        return {QColor(0xffb3131b), QColor(0xffffffff)};
    case Severity::Unknown:
        break;
    }
    return {QColor(0xff5b3a86), QColor(0xffffffff)};
}

QPixmap severitySign(Severity severity, int side, const QColor &color, const QColor &ink,
                     double ratio)
{
    // The tiles of a fleet draw few signs often.
    const QString key = QStringLiteral("kiv-severity-%1-%2-%3-%4-%5")
                            .arg(int(severity))
                            .arg(side)
                            .arg(color.rgba())
                            .arg(ink.rgba())
                            .arg(ratio);
    QPixmap sign;
    if (QPixmapCache::find(key, &sign))
        return sign;
    sign = transparentPixmap({side, side}, ratio);
    QPainter painter(&sign);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.scale(side / grid, side / grid);
    painter.setPen(Qt::NoPen);
    painter.setBrush(color);
    const QPen inkPen(ink, 2.6, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin);
    switch (severity) {
    case Severity::Normal:
        painter.drawEllipse(QRectF(1, 1, 22, 22));
        painter.setPen(inkPen);
        painter.drawPolyline(QPolygonF({{7, 12.5}, {10.7, 16.2}, {17, 8.5}}));
        break;
    case Severity::Information:
        painter.drawEllipse(QRectF(1, 1, 22, 22));
        painter.setPen(inkPen);
        painter.drawLine(QPointF(center, 11), QPointF(center, 17.5));
        painter.drawLine(QPointF(center, 6.5), QPointF(center, 6.7));
        break;
    case Severity::Warning:
        painter.drawPath(triangle());
        painter.setPen(inkPen);
        drawMark(&painter, 9, 14.2);
        break;
    case Severity::Critical:
        painter.drawPath(octagon());
        painter.setPen(inkPen);
        drawMark(&painter, 5.5, 13);
        break;
    case Severity::Unknown: {
        painter.drawPolygon(QPolygonF({{center, 0}, {grid, center}, {center, grid}, {0, center}}));
        painter.setPen(inkPen);
        painter.setBrush(Qt::NoBrush);
        QPainterPath question(QPointF(8.8, 9.2));
        question.cubicTo(9.2, 5.4, 15.4, 5.4, 15.2, 9.4);
        question.cubicTo(15, 11.6, 12, 11.6, 12, 14);
        painter.drawPath(question);
        painter.drawLine(QPointF(center, 17.6), QPointF(center, 17.8));
        break;
    }
    }
    painter.end();
    QPixmapCache::insert(key, sign);
    return sign;
}

QPixmap severityBadge(Severity severity, int side, bool dark, double ratio)
{
    SeverityLook look = lookOf(severity, dark);
    // Plates that would be lost on the background.
    if (severity == Severity::Normal)
        look = {QColor(0xff4a7d4a), QColor(0xffffffff)};
    else if (dark && severity == Severity::Information)
        look.plate = QColor(0xff2f7fc0);
    else if (dark && severity == Severity::Critical)
        look.plate = QColor(0xffe5383b);
    else if (dark && severity == Severity::Unknown)
        look.plate = QColor(0xff8e6cc4);
    return severitySign(severity, side, look.plate, look.ink, ratio);
}
