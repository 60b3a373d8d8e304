// SPDX-License-Identifier: LicenseRef-all-rights-reserved

#include "pathfill_p.h"

#include "composition_p.h"

#include <QtCore/QRect>
#include <QtCore/QVarLengthArray>
#include <QtCore/QVector>
#include <QtCore/QtAlgorithms>
#include <QtGui/QColor>
#include <QtGui/QImage>
#include <QtGui/QPainterPath>
#include <QtGui/QRgba64>
#include <QtGui/QTransform>

#include <algorithm>
#include <cstdlib>

namespace KivPrivate {

namespace {

/// Positions are in these parts of a pixel.
constexpr int pixel = 256;
/// The paint engine rounds the points of a path to these.
constexpr int pointParts = 64;
/// It divides curves into lines that are twice as close as those of QPainterPath.
constexpr int curveScale = 2;
constexpr int fullCoverage = 255;
/// From sums, which are in twice the square of a pixel's parts, to coverage in 256 parts.
constexpr int coverageShift = 9;
constexpr int wordBits = 64;

int floorOf(int position)
{
    return position >> 8;
}

/// @p numerator / @p denominator, which is positive, rounded down.
int quotientBelow(qint64 numerator, int denominator)
{
    const qint64 quotient = numerator / denominator;
    return int(quotient - (numerator % denominator < 0 ? 1 : 0));
}

/// A line of the outline, which is followed from row to row.
struct Edge
{
    QPoint from;
    QPoint to;
    bool isUpward;
    int bottom;
    QPoint at; ///< the upper end of what is left of it

    Edge(QPoint begin, QPoint end)
        : from(begin)
        , to(end)
        , isUpward(begin.y() > end.y())
        , bottom(std::max(begin.y(), end.y()))
        , at(isUpward ? end : begin)
    {}
    /// Where it crosses the height @p y. It is rounded down, seen from its beginning.
    QPoint crossing(int y) const
    {
        const qint64 height = std::abs(y - from.y());
        return {from.x() + quotientBelow(height * (to.x() - from.x()), std::abs(to.y() - from.y())),
                y};
    }
};

/// Sums up how much of each pixel in one row lies within the outline, exactly in the parts of a
/// pixel, as the paint engine does. Each line adds what lies to the right of it, with the sign of
/// its direction. The sums count from pixel to pixel, so that only pixels with a line change them.
class Row
{
public:
    explicit Row(int width)
        : changes(width + 1)
        , changed(width / wordBits + 1)
    {
        std::fill(changes.begin(), changes.end(), 0);
        std::fill(changed.begin(), changed.end(), 0);
    }
    /// Adds a line between two points within the row, @p left being its first pixel.
    void addLine(QPoint from, QPoint to, int left);
    /// Calls @p show(from, to, coverage) for the pixels that are partly or fully covered, and
    /// clears the row.
    template <typename Show>
    void take(Show show);

private:
    void addWithinPixel(int x, int doubledOffset, int height);
    void change(int x, int amount);

    QVarLengthArray<int, 256> changes;
    QVarLengthArray<quint64, 8> changed; ///< a bit for each pixel
};

void Row::addLine(QPoint from, QPoint to, int left)
{
    const int height = to.y() - from.y();
    const int width = to.x() - from.x();
    int x = floorOf(from.x());
    const int last = floorOf(to.x());
    QPoint at = from;
    while (x != last) {
        const int border = (width > 0 ? x + 1 : x) * pixel;
        const QPoint next(border,
                          from.y() + quotientBelow(qint64(std::abs(border - from.x())) * height,
                                                   std::abs(width)));
        addWithinPixel(x - left, at.x() + next.x() - 2 * x * pixel, next.y() - at.y());
        at = next;
        x += width > 0 ? 1 : -1;
    }
    addWithinPixel(x - left, at.x() + to.x() - 2 * x * pixel, to.y() - at.y());
}

void Row::addWithinPixel(int x, int doubledOffset, int height)
{
    if (height == 0)
        return;
    const int leftOfLine = doubledOffset * height;
    change(x, 2 * pixel * height - leftOfLine);
    change(x + 1, leftOfLine);
}

void Row::change(int x, int amount)
{
    changes[x] += amount;
    changed[x / wordBits] |= quint64(1) << (x % wordBits);
}

template <typename Show>
void Row::take(Show show)
{
    int sum = 0;
    int coverage = 0;
    int from = 0;
    for (int word = 0; word < changed.size(); ++word) {
        for (quint64 bits = changed[word]; bits != 0; bits &= bits - 1) {
            const int x = word * wordBits + int(qCountTrailingZeroBits(bits));
            if (coverage != 0)
                show(from, x, coverage);
            sum += changes[x];
            changes[x] = 0;
            // The shift rounds down, so the direction of the outline shows in the last bit.
            coverage = std::min(std::abs(sum >> coverageShift), fullCoverage);
            from = x;
        }
        changed[word] = 0;
    }
}

/// The edges of @p path, the highest first, without the level ones, which cover nothing.
QVector<Edge> edgesOf(const QPainterPath &path)
{
    QVector<Edge> edges;
    const auto polygons = path.toSubpathPolygons(QTransform::fromScale(curveScale, curveScale));
    for (const QPolygonF &polygon : polygons) {
        QPoint former;
        for (int i = 0; i <= polygon.size(); ++i) {
            const QPointF point = polygon[i % polygon.size()] / curveScale;
            const QPoint next =
                QPoint(qRound(point.x() * pointParts), qRound(point.y() * pointParts)) *
                (pixel / pointParts);
            if (i > 0 && next.y() != former.y())
                edges.append(Edge(former, next));
            former = next;
        }
    }
    std::sort(edges.begin(), edges.end(),
              [](const Edge &a, const Edge &b) { return a.at.y() < b.at.y(); });
    return edges;
}

/// Adds to @p row what lies above the height @p end of the edges that cross it, and removes those
/// that end there.
void addDownTo(int end, QVector<Edge> *crossed, int left, Row *row)
{
    for (int i = int(crossed->size()) - 1; i >= 0; --i) {
        Edge &edge = (*crossed)[i];
        const QPoint lower = edge.crossing(std::min(edge.bottom, end));
        if (edge.isUpward)
            row->addLine(lower, edge.at, left);
        else
            row->addLine(edge.at, lower, left);
        edge.at = lower;
        if (edge.bottom <= end)
            crossed->remove(i);
    }
}

} // namespace

void fillTransparent(QImage *layer, const QPainterPath &path, const QColor &color)
{
    const QVector<Edge> edges = edgesOf(path);
    if (edges.isEmpty())
        return;
    int leftmost = edges.first().from.x();
    int rightmost = leftmost;
    for (const Edge &edge : edges) {
        leftmost = std::min({leftmost, edge.from.x(), edge.to.x()});
        rightmost = std::max({rightmost, edge.from.x(), edge.to.x()});
    }
    const int left = floorOf(leftmost);
    const int width = layer->width();
    const quint32 full = color.rgba64().premultiplied().toArgb32();
    Row row(floorOf(rightmost) - left + 1);
    QVector<Edge> crossed;
    auto next = edges.cbegin();
    for (int y = floorOf(next->at.y()); y < layer->height(); ++y) {
        const int end = (y + 1) * pixel;
        while (next != edges.cend() && next->at.y() < end)
            crossed.append(*next++);
        if (crossed.isEmpty() && next == edges.cend())
            break;
        addDownTo(end, &crossed, left, &row);
        auto *const line = y < 0 ? nullptr : reinterpret_cast<quint32 *>(layer->scanLine(y));
        row.take([&](int from, int to, int coverage) {
            const int first = std::clamp(from + left, 0, width);
            const int last = std::clamp(to + left, 0, width);
            if (line && first < last)
                std::fill(line + first, line + last,
                          coverage == fullCoverage ? full : scaledPixel(full, quint32(coverage)));
        });
    }
}

} // namespace KivPrivate
