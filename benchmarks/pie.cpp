// SPDX-License-Identifier: LicenseRef-all-rights-reserved

// Whether the arc of a dial can be had for less than a whole drawPie: kivpie [COUNT [SEED]] draws
// COUNT random pies, filled and stroked as the dial does, also in cheaper ways, and counts the
// pies that differ in any bit. Under callgrind (started with --instr-atstart=no), each way has a
// dump of its own.

#include <QtGui/QGuiApplication>
#include <QtGui/QImage>
#include <QtGui/QPainter>
#include <QtGui/QPainterPath>

#include <valgrind/callgrind.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <random>
#include <vector>

namespace {

constexpr int sixteenths = 16;
constexpr int quadrant = 90 * sixteenths;

struct Pie
{
    QSize size;
    QRect circle;
    int start; // in sixteenths of a degree, against the clock
    int before;
    int span;
    QColor color;
};

Pie randomPie(std::mt19937 *random)
{
    const auto from = [random](int least, int most) {
        return std::uniform_int_distribution<int>(least, most)(*random);
    };
    Pie pie;
    const int radius = from(0, 1) == 0 ? 40 : from(10, 150);
    pie.circle = QRect(from(-radius, 1), from(-radius, 1), 2 * radius - 2, 2 * radius - 2);
    pie.size = QSize(2 * radius + 2, 2 * radius + 2);
    pie.start = from(0, 360) * sixteenths;
    pie.before = -from(0, 360 * sixteenths);
    // As a rule, a value moves a little.
    pie.span = std::max(-360 * sixteenths, std::min(0, pie.before + from(-320, 320)));
    pie.color =
        QColor(from(0, 255), from(0, 255), from(0, 255), from(0, 3) == 0 ? from(1, 254) : 255);
    return pie;
}

QImage emptyImage(QSize size)
{
    QImage image(size, QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    return image;
}

void usePlainColor(QPainter *painter, const QColor &color)
{
    painter->setRenderHint(QPainter::Antialiasing);
    painter->setBrush(color);
    painter->setPen(QPen(color));
}

void drawWhole(const Pie &pie, int span, QImage *image)
{
    QPainter painter(image);
    usePlainColor(&painter, pie.color);
    painter.drawPie(QRectF(pie.circle), pie.start, span);
}

/// The quadrants of the circle, as rectangles of whole pixels with a pixel around, in which pies of
/// two spans can differ: those of the curves that change.
QRegion changedQuadrants(const Pie &pie)
{
    QRegion changed;
    const QRect around = pie.circle.adjusted(-2, -2, 3, 3);
    const QPoint middle = pie.circle.center();
    // A curve of the path is a quarter turn from the pie's start; the last is what remains.
    const int first = std::min(-pie.before, -pie.span) / quadrant * quadrant;
    const int last = std::max(-pie.before, -pie.span);
    for (int angle = first; angle <= last; angle += sixteenths) {
        const int at = ((pie.start - angle) % (360 * sixteenths) + 360 * sixteenths) / quadrant % 4;
        const bool left = at == 1 || at == 2;
        const bool lower = at >= 2;
        // The stroke of the edges through the middle reaches over.
        QRect rect(around);
        if (left)
            rect.setRight(middle.x() + 3);
        else
            rect.setLeft(middle.x() - 2);
        if (lower)
            rect.setTop(middle.y() - 2);
        else
            rect.setBottom(middle.y() + 3);
        changed += rect;
    }
    return changed & QRect(QPoint(0, 0), pie.size);
}

/// The former pie stays but for the quadrants that change, each painted by clipping.
void clip(const Pie &pie, QImage *image)
{
    drawWhole(pie, pie.before, image);
    const QRegion changed = changedQuadrants(pie);
    QPainter painter(image);
    painter.setClipRegion(changed);
    painter.setCompositionMode(QPainter::CompositionMode_Source);
    painter.fillRect(image->rect(), Qt::transparent);
    painter.setCompositionMode(QPainter::CompositionMode_SourceOver);
    usePlainColor(&painter, pie.color);
    painter.drawPie(QRectF(pie.circle), pie.start, pie.span);
}

/// The same, each rectangle as an image of its own that shares the pixels.
void view(const Pie &pie, QImage *image)
{
    drawWhole(pie, pie.before, image);
    const QRegion changed = changedQuadrants(pie);
    for (const QRect &rect : changed) {
        QImage part(image->scanLine(rect.y()) + rect.x() * 4, rect.width(), rect.height(),
                    int(image->bytesPerLine()), image->format());
        part.fill(Qt::transparent);
        QPainter painter(&part);
        painter.translate(-rect.topLeft());
        usePlainColor(&painter, pie.color);
        painter.drawPie(QRectF(pie.circle), pie.start, pie.span);
    }
}

/// Fill and stroke as one path.
void onePath(const Pie &pie, QImage *image)
{
    const QRectF circle(pie.circle);
    QPainterPath path(circle.center());
    path.arcTo(circle, pie.start / double(sixteenths), pie.span / double(sixteenths));
    path.closeSubpath();
    QPainterPath all = QPainterPathStroker(QPen(pie.color)).createStroke(path);
    all.setFillRule(Qt::WindingFill);
    all.addPath(path);
    QPainter painter(image);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.fillPath(all, pie.color);
}

void whole(const Pie &pie, QImage *image)
{
    drawWhole(pie, pie.span, image);
}

void formerOnly(const Pie &pie, QImage *image)
{
    drawWhole(pie, pie.before, image);
}

struct Way
{
    const char *name;
    void (*draw)(const Pie &pie, QImage *image);
};

// The second is what the ways with a former image spend on that before they begin.
constexpr Way ways[] = {
    {"the whole pie", whole},
    {"the former pie alone", formerOnly},
    {"the former pie, changed quadrants clipped", clip},
    {"the former pie, changed quadrants as images", view},
    {"fill and stroke as one path", onePath},
};

} // namespace

int main(int argc, char **argv)
{
    qputenv("QT_QPA_PLATFORM", "offscreen");
    const QGuiApplication application(argc, argv);
    const int count = argc > 1 ? std::atoi(argv[1]) : 20000;
    const unsigned seed = argc > 2 ? unsigned(std::atoi(argv[2])) : 1;
    for (const Way &way : ways) {
        std::mt19937 random(seed);
        int differing = 0;
        long long pixels = 0;
        int most = 0;
        for (int i = 0; i < count; ++i) {
            const Pie pie = randomPie(&random);
            QImage expected = emptyImage(pie.size);
            whole(pie, &expected);
            QImage image = emptyImage(pie.size);
            CALLGRIND_START_INSTRUMENTATION;
            way.draw(pie, &image);
            CALLGRIND_STOP_INSTRUMENTATION;
            if (image == expected)
                continue;
            ++differing;
            for (int y = 0; y < image.height(); ++y) {
                for (int x = 0; x < image.width(); ++x) {
                    const QRgb a = image.pixel(x, y);
                    const QRgb b = expected.pixel(x, y);
                    if (a == b)
                        continue;
                    ++pixels;
                    most = std::max({most, std::abs(qRed(a) - qRed(b)),
                                     std::abs(qGreen(a) - qGreen(b)), std::abs(qBlue(a) - qBlue(b)),
                                     std::abs(qAlpha(a) - qAlpha(b))});
                }
            }
        }
        CALLGRIND_DUMP_STATS_AT(way.name);
        std::printf("%s: %d of %d differ, in %lld pixels, by at most %d\n", way.name, differing,
                    count, pixels, most);
    }
    return 0;
}
