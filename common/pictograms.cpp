// SPDX-License-Identifier: LicenseRef-all-rights-reserved

#include "pictograms.h"

#include <QtGui/QPainter>
#include <QtGui/QPainterPath>

#include <cmath>

namespace {

/// All drawings stand on a grid of this many units, with a margin of two.
constexpr double grid = 24;
constexpr double lineWidth = 2;

QPainterPath line(std::initializer_list<QPointF> points)
{
    QPainterPath path(*points.begin());
    for (const auto *point = points.begin() + 1; point != points.end(); ++point)
        path.lineTo(*point);
    return path;
}

QPainterPath roundedBox(double x, double y, double w, double h)
{
    QPainterPath path;
    path.addRoundedRect(QRectF(x, y, w, h), 1.5, 1.5);
    return path;
}

QPainterPath circle(double x, double y, double radius)
{
    QPainterPath path;
    path.addEllipse(QPointF(x, y), radius, radius);
    return path;
}

QPainterPath arc(double x, double y, double radius, double from, double span)
{
    const QRectF box(x - radius, y - radius, 2 * radius, 2 * radius);
    QPainterPath path;
    path.arcMoveTo(box, from);
    path.arcTo(box, from, span);
    return path;
}

QPainterPath ups()
{
    QPainterPath path = roundedBox(5, 3, 14, 18);
    path.addPath(line({{13, 6.5}, {9.5, 12}, {14.5, 12}, {11, 17.5}}));
    return path;
}

QPainterPath overview()
{
    QPainterPath path;
    for (const QPointF corner : {QPointF(3, 3), QPointF(14, 3), QPointF(3, 14), QPointF(14, 14)})
        path.addPath(roundedBox(corner.x(), corner.y(), 7, 7));
    return path;
}

QPainterPath power()
{
    QPainterPath path(QPointF(2.5, 12));
    path.cubicTo(5.5, 1, 9, 1, 12, 12);
    path.cubicTo(15, 23, 18.5, 23, 21.5, 12);
    return path;
}

QPainterPath control()
{
    QPainterPath path;
    const double knobs[] = {15, 8, 13};
    for (int i = 0; i < 3; ++i) {
        const double x = 5 + 7 * i;
        path.addPath(line({{x, 3}, {x, knobs[i] - 2.5}}));
        path.addPath(circle(x, knobs[i], 2.5));
        path.addPath(line({{x, knobs[i] + 2.5}, {x, 21}}));
    }
    return path;
}

QPainterPath settings()
{
    constexpr int teeth = 8;
    QPainterPath path = circle(12, 12, 3);
    path.addPath(circle(12, 12, 7));
    for (int i = 0; i < teeth; ++i) {
        const double angle = i * 2 * M_PI / teeth;
        const QPointF direction(std::cos(angle), std::sin(angle));
        path.addPath(line({QPointF(12, 12) + 7 * direction, QPointF(12, 12) + 9.7 * direction}));
    }
    return path;
}

QPainterPath alarm()
{
    QPainterPath path = line({{12, 3}, {22, 20.5}, {2, 20.5}, {12, 3}});
    path.addPath(line({{12, 9.5}, {12, 14}}));
    path.addPath(line({{12, 17.2}, {12, 17.3}}));
    return path;
}

QPainterPath check()
{
    QPainterPath path = circle(12, 12, 9.5);
    path.addPath(line({{7.5, 12.5}, {10.8, 15.8}, {16.5, 8.8}}));
    return path;
}

QPainterPath restart()
{
    QPainterPath path = arc(12, 12, 8.5, 60, 300);
    path.addPath(line({{16.2, 0.9}, {16.2, 5}, {20.5, 5}}));
    return path;
}

QPainterPath link()
{
    QPainterPath path = line({{3, 12}, {8, 12}});
    path.addPath(line({{16, 12}, {21, 12}}));
    path.addPath(line({{8, 7.5}, {8, 16.5}}));
    path.addPath(line({{16, 7.5}, {16, 16.5}}));
    path.addPath(line({{10.7, 14.5}, {13.3, 9.5}}));
    return path;
}

QPainterPath help()
{
    QPainterPath path = circle(12, 12, 9.5);
    path.addPath(line({{12, 11}, {12, 17}}));
    path.addPath(line({{12, 7.3}, {12, 7.4}}));
    return path;
}

QPainterPath events()
{
    QPainterPath path;
    for (const double y : {5.0, 12.0, 19.0}) {
        path.addPath(circle(4.5, y, 1.5));
        path.addPath(line({{9.5, y}, {21, y}}));
    }
    return path;
}

QPainterPath trends()
{
    QPainterPath path = line({{3, 3}, {3, 21}, {21, 21}});
    path.addPath(line({{6.5, 15.5}, {10.5, 10.5}, {14, 13.5}, {20.5, 5}}));
    return path;
}

QPainterPath pathOf(Pictogram which)
{
    switch (which) {
    case Pictogram::Ups:
        return ups();
    case Pictogram::Overview:
        return overview();
    case Pictogram::Power:
        return power();
    case Pictogram::Control:
        return control();
    case Pictogram::Settings:
        return settings();
    case Pictogram::Alarm:
        return alarm();
    case Pictogram::Check:
        return check();
    case Pictogram::Restart:
        return restart();
    case Pictogram::Link:
        return link();
    case Pictogram::Help:
        return help();
    case Pictogram::Events:
        return events();
    case Pictogram::Trends:
        return trends();
    }
    return {};
}

} // namespace

QPixmap transparentPixmap(QSize size, qreal ratio)
{
    QPixmap pixmap(int(std::ceil(size.width() * ratio)), int(std::ceil(size.height() * ratio)));
    pixmap.setDevicePixelRatio(ratio);
    pixmap.fill(Qt::transparent);
    return pixmap;
}

QPixmap pictogram(Pictogram which, int side, const QColor &color, qreal ratio)
{
    QPixmap pixmap = transparentPixmap({side, side}, ratio);
    QPainter painter(&pixmap);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.scale(side / grid, side / grid);
    painter.setPen(QPen(color, lineWidth, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
    painter.drawPath(pathOf(which));
    return pixmap;
}

void addPictogram(QIcon *icon, Pictogram which, int side, const QColor &color, QIcon::Mode mode,
                  QIcon::State state)
{
    icon->addPixmap(pictogram(which, side, color), mode, state);
    if (const qreal ratio = qGuiApp->devicePixelRatio(); ratio > 1)
        icon->addPixmap(pictogram(which, side, color, ratio), mode, state);
}
