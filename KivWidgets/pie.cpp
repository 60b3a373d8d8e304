// SPDX-License-Identifier: LicenseRef-all-rights-reserved

#include "pie_p.h"

#include "imagememory_p.h"
#include "pathfill_p.h"

#include <QtCore/QRect>
#include <QtGui/QColor>
#include <QtGui/QImage>
#include <QtGui/QPainter>
#include <QtGui/QPainterPath>
#include <QtGui/QPen>
#include <QtGui/QRegion>

#include <cmath>

namespace KivPrivate {

namespace {

/// QPainter counts angles in these parts of a degree.
constexpr double angleParts = 16.0;
/// How far the stroke of an edge reaches to either side, with a pixel or two to spare.
constexpr int strokeReach = 3;
/// Of a circle that leaves these bounds, the quadrants would take too many bytes.
constexpr QRect largestBounds(-512, -512, 1024, 1024);
/// The smallest circle whose arcs fillTransparent() fills, and the least distance of their ends.
constexpr int smallestDiameter = 16;
constexpr double shortestChord = 1.0;

bool isWhole(double number)
{
    return number == std::floor(number);
}

/// A pie in two parts: the quadrants of its circle that it has passed, from the start's on, and the
/// one in which it ends.
///
/// The paint engine sums up exactly how much of each pixel the edges cover. The parts meet at an
/// axis of the circle, between pixels, so filling one after the other gives the same bits as
/// filling the whole. The stroke is drawn edge by edge, so a part of it can be left out by
/// clipping.
class DividedPie
{
public:
    DividedPie(const QRect &circle, int start, int span);

    /// Whether the pie can be painted in parts.
    bool isDivided() const
    {
        return divided;
    }
    /// Which quadrant the pie ends in, counted from the start's.
    int quadrant() const
    {
        return curves;
    }
    /// Paints what all pies share that end in this quadrant, on an image that is cleared before.
    void paintPassed(QImage *layer, const QColor &color) const;
    /// Paints the rest.
    void paintLast(QImage *layer, const QColor &color) const;

private:
    QPainterPath path; ///< as drawPie() makes it
    int curves = 0;
    int lastCurve = 0; ///< where the last one begins among the elements of the path
    bool divided = false;
    bool filledTransparent = false; ///< whether fillTransparent() can fill the rest
    QRect reach;                    ///< where the edges of the last quadrant show
};

DividedPie::DividedPie(const QRect &circle, int start, int span)
{
    const QRectF box(circle);
    const QPointF center = box.center();
    path.moveTo(center);
    // One curve for each quadrant.
    path.arcTo(box, start / angleParts, span / angleParts);
    path.closeSubpath();
    for (int i = 0; i < path.elementCount(); ++i) {
        if (path.elementAt(i).isCurveTo()) {
            ++curves;
            lastCurve = i;
        }
    }
    // With five, it ends in the quadrant in which it started.
    if (curves < 2 || curves > 4 || lastCurve != 3 * curves - 1 || !isWhole(center.x()) ||
        !isWhole(center.y()))
        return;
    const QPointF axis = QPointF(path.elementAt(lastCurve - 1)) - center;
    if (axis.x() != 0 && axis.y() != 0)
        return;
    divided = true;
    const QPointF chord = QPointF(path.elementAt(lastCurve + 2)) - path.elementAt(lastCurve - 1);
    filledTransparent = circle.width() == circle.height() && circle.width() >= smallestDiameter &&
                        chord.manhattanLength() > shortestChord;
    const QPointF tangent = QPointF(path.elementAt(lastCurve)) - center - axis;
    const bool isRight = axis.x() + (axis.x() == 0 ? tangent.x() : 0) > 0;
    const bool isLower = axis.y() + (axis.y() == 0 ? tangent.y() : 0) > 0;
    const int x = int(center.x());
    const int y = int(center.y());
    reach = QRect(QPoint(isRight ? x : circle.left(), isLower ? y : circle.top()),
                  QPoint(isRight ? circle.right() : x - 1, isLower ? circle.bottom() : y - 1))
                .adjusted(-strokeReach, -strokeReach, strokeReach, strokeReach);
}

void DividedPie::paintPassed(QImage *layer, const QColor &color) const
{
    QPainterPath passed(path.elementAt(0));
    passed.lineTo(path.elementAt(1));
    for (int i = 2; i < lastCurve; i += 3)
        passed.cubicTo(path.elementAt(i), path.elementAt(i + 1), path.elementAt(i + 2));
    passed.closeSubpath();
    ImagePainter painter(layer);
    painter.fillPath(passed, color);
    painter.setClipRegion(QRegion(layer->rect()) - reach);
    painter.strokePath(path, QPen(color));
}

void DividedPie::paintLast(QImage *layer, const QColor &color) const
{
    const QRect shown = reach & layer->rect();
    if (shown.isEmpty())
        return;
    QPainterPath last(path.elementAt(0));
    last.lineTo(path.elementAt(lastCurve - 1));
    last.cubicTo(path.elementAt(lastCurve), path.elementAt(lastCurve + 1),
                 path.elementAt(lastCurve + 2));
    last.closeSubpath();
    QPainter painter(layer);
    painter.setRenderHint(QPainter::Antialiasing);
    if (filledTransparent)
        fillTransparent(layer, last, color);
    else
        painter.fillPath(last, color);
    painter.setClipRect(shown);
    painter.strokePath(path, QPen(color));
}

/// Paints a pie that is not remembered.
void paintNew(QImage *layer, const QColor &color, const QRect &circle, int start, int span)
{
    // At other ratios the center may lie within a pixel, and the stroke has another width.
    if (layer->devicePixelRatio() == 1.0 && isPackable(*layer) && largestBounds.contains(circle)) {
        const DividedPie pie(circle, start, span);
        ImageKey key(ImageKey::PassedQuadrants, color, circle.topLeft(), circle.size(), start,
                     pie.quadrant(), int(span < 0));
        key.appendDevice(*layer);
        bool isReady = pie.isDivided() && unpackRemembered(layer, key);
        if (pie.isDivided() && !isReady && isWorthPacking(key)) {
            pie.paintPassed(layer, color);
            rememberPacked(key, *layer);
            isReady = true;
        }
        if (isReady) {
            pie.paintLast(layer, color);
            return;
        }
    }
    ImagePainter painter(layer);
    painter.setBrush(QBrush(color, Qt::SolidPattern));
    painter.setPen(QPen(color));
    painter.drawPie(QRectF(circle), start, span);
}

} // namespace

void paintPie(QImage *layer, const QColor &color, const QRect &circle, int start, int span)
{
    const ImageKey key(ImageKey::Pie, color, circle.topLeft(), circle.size(), start, span);
    paintPacked(layer, key, [&] { paintNew(layer, color, circle, start, span); });
}

} // namespace KivPrivate
