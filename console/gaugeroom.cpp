// SPDX-License-Identifier: LicenseRef-all-rights-reserved

#include "gaugeroom.h"

#include "display.h"
#include "theme.h"

#include <metrocirclerate.h>

#include <QtCore/QEvent>
#include <QtGui/QPainter>
#include <QtGui/QPainterPath>

#include <algorithm>
#include <cmath>

namespace {

constexpr int startAngle = 225;
constexpr int sweep = 270;
constexpr int segments = 27;
/// A dial cannot have a shorter scale.
constexpr double shortestScale = 1.0;
constexpr int smallestRadius = 26;
constexpr int largestRadius = 400;
/// Height of the dial's arc above and below its centre, in radii: its ends are at 225 degrees.
constexpr double below = 0.7072;
/// Thickness of the ring in radii, 1 over it.
constexpr int ringShare = 6;
constexpr int thickestRing = 200;
/// Width of the room around the ring, for limits and marks.
constexpr int marginUnits = 9;
constexpr double limitWidth = 3.0;
constexpr double degree = M_PI / 180.0;
constexpr int sixteenths = 16;

/// @p text as a format that prints it.
QString asFormat(QString text)
{
    return text.replace(QLatin1Char('%'), QStringLiteral("%%"));
}

} // namespace

GaugeRoom::GaugeRoom(Quantity newQuantity, const QString &label, QWidget *parent)
    : QWidget(parent)
    , quantity(newQuantity)
    , dial(new MetroCirclerate(this))
{
    setObjectName(label + QStringLiteral("Room"));
    dial->setObjectName(label);
    dial->setAttribute(Qt::WA_TransparentForMouseEvents);
    dial->setMinAngle(startAngle);
    dial->setArcSize(sweep);
    dial->setNumTick(segments);
    dial->setLabel(label);
    dial->setFormat(Values::noData());
    QSizePolicy policy(QSizePolicy::Expanding, QSizePolicy::Expanding);
    setSizePolicy(policy);
    applyColors();
}

QSize GaugeRoom::minimumSizeHint() const
{
    const int margin = 2 * Theme::px(marginUnits) + 2;
    const int numbers = QFontMetrics(Theme::font(Theme::Small)).height();
    const int least = std::max(smallestRadius, Theme::px(38));
    return {2 * least + margin, int((1 + below) * least) + margin + numbers / 2};
}

QSize GaugeRoom::sizeHint() const
{
    return minimumSizeHint();
}

void GaugeRoom::showUps(const UpsModel &ups)
{
    const Scale newScale = ups.scale(quantity);
    const Reading newReading = ups.reading(quantity);
    const bool known = newReading.state != Reading::State::Missing;
    const bool scaleChanged = newScale != scale;
    const bool textChanged = newReading.text != reading.text || newReading.phase != reading.phase;
    const bool stateChanged = newReading.state != reading.state;
    const bool isOther = ups.id() != upsId;
    scale = newScale;
    reading = newReading;
    if (isOther) {
        upsId = ups.id();
        highest.reset();
        lowest.reset();
    }
    if (known) {
        highest = std::max(highest.value_or(reading.value), reading.value);
        lowest = std::min(lowest.value_or(reading.value), reading.value);
    }
    applyScale(scale.minimum, scale.maximum);
    const QString text =
        reading.phase.isEmpty() ? reading.text : reading.phase + QLatin1Char(' ') + reading.text;
    dial->setFormat(asFormat(text));
    // What nobody sees repaints nothing.
    const double value = known ? reading.value : scale.minimum;
    if (textChanged || stateChanged || scaleChanged || isSeen(dial->getValue(), value))
        dial->setValue(value);
    applyColors();
    if (textChanged)
        fitTexts();
    const auto markMoved = [this](const std::optional<double> &drawn,
                                  const std::optional<double> &now) {
        return now && (!drawn || isSeen(*drawn, *now));
    };
    if (isOther || scaleChanged || markMoved(drawnHighest, highest) ||
        markMoved(drawnLowest, lowest)) {
        explain();
        redraw();
    }
}

bool GaugeRoom::isSeen(double before, double now) const
{
    // Half a pixel along the arc.
    constexpr double least = 0.5;
    const double arc = sweep * degree * radius * devicePixelRatioF();
    return std::abs(scale.shareOf(now) - scale.shareOf(before)) * arc >= least;
}

bool GaugeRoom::event(QEvent *event)
{
    if (event->type() == QEvent::ToolTip)
        explain();
    return QWidget::event(event);
}

void GaugeRoom::forgetPeaks()
{
    highest.reset();
    lowest.reset();
    if (reading.state != Reading::State::Missing)
        highest = lowest = reading.value;
    explain();
    redraw();
}

void GaugeRoom::explain()
{
    QStringList lines(nameOf(quantity));
    const auto add = [&](const QString &name, const std::optional<double> &value) {
        if (value)
            lines.append(name + QStringLiteral(": ") + Values::text(quantity, *value));
    };
    add(tr("Nominal"), scale.nominal);
    add(tr("Too low below"), scale.low);
    add(tr("Too high above"), scale.high);
    add(tr("Highest seen"), highest);
    add(tr("Lowest seen"), lowest);
    lines.append(tr("A double click forgets the highest and the lowest."));
    setToolTip(lines.join(QLatin1Char('\n')));
}

void GaugeRoom::applyScale(double minimum, double maximum)
{
    maximum = std::max(maximum, minimum + shortestScale);
    // The dial refuses a limit that crosses the other one, so the one that makes room goes first.
    if (minimum <= dial->getMaxValue() - shortestScale)
        dial->setMinValue(minimum);
    dial->setMaxValue(maximum);
    dial->setMinValue(minimum);
}

void GaugeRoom::applyColors()
{
    const Theme::GaugeColors colors = Theme::gaugeColors(Theme::isDark());
    const bool missing = reading.state == Reading::State::Missing;
    const QColor track = missing ? colors.noData : colors.track;
    dial->setBackground(track);
    dial->setCursor(missing ? track : reading.outsideLimits ? colors.outOfLimits : colors.fill);
}

void GaugeRoom::resizeEvent(QResizeEvent *event)
{
    QWidget::resizeEvent(event);
    arrange();
}

void GaugeRoom::changeEvent(QEvent *event)
{
    if (event->type() == QEvent::PaletteChange || event->type() == QEvent::ApplicationPaletteChange)
        applyColors();
    QWidget::changeEvent(event);
}

void GaugeRoom::arrange()
{
    const int margin = Theme::px(marginUnits) + 1;
    const int numbers = QFontMetrics(Theme::font(Theme::Small)).height();
    const int wide = width() / 2 - margin;
    const int high = int((height() - 2 * margin - numbers / 2) / (1 + below));
    radius = std::clamp(std::min(wide, high), 2, largestRadius);
    ring = std::clamp(radius / ringShare, 2, thickestRing);
    const int free = height() - int(radius * (1 + below)) - 2 * margin - numbers / 2;
    center = QPointF(width() / 2, margin + radius + std::max(free / 2, 0));
    dial->setRadius(radius);
    dial->setTickness(ring);
    // It takes the size of its arc with this.
    dial->resize(2 * radius + 2, int(std::ceil(radius * (1 + below))) + 2);
    dial->move(int(center.x()) - radius - 1, int(center.y()) - radius - 1);
    fitTexts();
    redraw();
}

void GaugeRoom::fitTexts()
{
    if (radius <= 2)
        return;
    // The value stands in the middle of the inner disc, the label above it at 70 % of its size.
    constexpr double labelShare = 0.7;
    const double inner = 2.0 * (radius - ring) * 0.92;
    QFont font = Theme::font(Theme::Large, true);
    const QString text = reading.text.isEmpty() ? Values::noData() : dial->getFormatStr();
    const QString shown = QString(text).replace(QStringLiteral("%%"), QStringLiteral("%"));
    const double wanted =
        std::max(QFontMetricsF(font).horizontalAdvance(shown),
                 QFontMetricsF(font).horizontalAdvance(dial->getLabel()) * labelShare * 1.1);
    // A large dial has large figures.
    constexpr double figureShare = 0.34;
    const double byHeight = radius * figureShare / QFontMetricsF(font).ascent();
    const double factor = std::min(inner / std::max(wanted, 1.0), byHeight);
    font.setPointSizeF(std::max(font.pointSizeF() * factor, 1.0));
    if (dial->font() != font)
        dial->setFont(font);
    // Offsets from where the dial puts its texts: the middle of its height, and under the ring.
    const QFontMetrics metrics(font);
    const int middle = dial->height() / 2;
    const int baseline = radius + metrics.ascent() / 2;
    QFont small = font;
    small.setPointSizeF(font.pointSizeF() * labelShare);
    const QFontMetrics smallMetrics(small);
    const int labelTop = radius - metrics.ascent() / 2 - smallMetrics.height();
    dial->setPosStr(QPoint(0, baseline - middle - metrics.ascent()));
    dial->setPosLabel(QPoint(0, std::max(labelTop, ring) - ring));
}

double GaugeRoom::angleOf(double value) const
{
    return startAngle - sweep * scale.shareOf(value);
}

void GaugeRoom::drawMark(QPainter *painter, double value, double from, double to) const
{
    const double angle = angleOf(value) * degree;
    const QPointF direction(std::cos(angle), -std::sin(angle));
    painter->drawLine(center + from * direction, center + to * direction);
}

void GaugeRoom::paintEvent(QPaintEvent *)
{
    // The dial repaints with every value, and what lies under it with it.
    const double ratio = devicePixelRatioF();
    if (surroundings.isNull() || surroundings.devicePixelRatio() != ratio) {
        surroundings = QPixmap(int(std::ceil(width() * ratio)), int(std::ceil(height() * ratio)));
        surroundings.setDevicePixelRatio(ratio);
        surroundings.fill(Qt::transparent);
        drawSurroundings();
    }
    QPainter(this).drawPixmap(0, 0, surroundings);
}

void GaugeRoom::redraw()
{
    surroundings = QPixmap();
    update();
}

Quantity GaugeRoom::shownQuantity() const
{
    return quantity;
}

void GaugeRoom::showTrend(const QVector<TrendPoint> &points, TimeSpan span)
{
    if (points.isEmpty() && trend.isEmpty())
        return;
    trend = points;
    trendSpan = span;
    redraw();
}

void GaugeRoom::drawTrend(QPainter *painter) const
{
    // Between the ends of the ring, under the figures.
    const QRectF room(center.x() - radius * 0.42, center.y() + radius * 0.4, radius * 0.84,
                      radius * 0.34);
    constexpr double leastRadius = 40.0;
    const qint64 length = trendSpan.to - trendSpan.from;
    if (radius < leastRadius || trend.isEmpty() || length <= 0)
        return;
    auto low = double(trend.first().low);
    auto high = double(trend.first().high);
    for (const TrendPoint &point : trend) {
        low = std::min(low, double(point.low));
        high = std::max(high, double(point.high));
    }
    // What hardly moves is a flat line: a tenth of the scale has the full height.
    const double least = (scale.maximum - scale.minimum) / 10.0;
    if (high - low < least) {
        const double middle = (low + high) / 2;
        low = middle - least / 2;
        high = middle + least / 2;
    }
    const auto placeOf = [&](qint64 at, float value) {
        return QPointF(room.left() + double(at - trendSpan.from) / double(length) * room.width(),
                       room.bottom() - (double(value) - low) / (high - low) * room.height());
    };
    painter->setPen(QPen(palette().color(QPalette::Mid), 0));
    painter->setBrush(Qt::NoBrush);
    QPolygonF line;
    for (const TrendPoint &point : trend) {
        if (!point.joined && !line.isEmpty()) {
            painter->drawPolyline(line);
            line.clear();
        }
        line.append(placeOf(std::max(point.at, trendSpan.from), point.mean));
    }
    painter->drawPolyline(line);
    painter->setPen(Qt::NoPen);
    painter->setBrush(palette().color(QPalette::WindowText));
    const double dot = std::max(1.6 * Theme::scale(), 1.6);
    painter->drawEllipse(line.last(), dot, dot);
}

void GaugeRoom::drawSurroundings()
{
    QPainter painter(&surroundings);
    painter.setRenderHint(QPainter::Antialiasing);
    const QColor text = palette().color(QPalette::WindowText);
    const QColor alarm = Theme::gaugeColors(Theme::isDark()).outOfLimits;
    const double gap = 2.0 * std::max(Theme::scale(), 1.0);
    const double outside = radius + gap;

    // Where a value is too low or too high.
    const double band = outside + limitWidth / 2;
    painter.setPen(
        QPen(alarm, limitWidth * std::max(Theme::scale(), 0.8), Qt::SolidLine, Qt::FlatCap));
    const QVector<ScaleArc> arcs = scale.limitArcs();
    for (const ScaleArc &arc : arcs) {
        const double from = angleOf(arc.from);
        painter.drawArc(QRectF(center.x() - band, center.y() - band, 2 * band, 2 * band),
                        int(std::lround(from * sixteenths)),
                        int(std::lround((angleOf(arc.to) - from) * sixteenths)));
    }

    // The nominal value: a triangle that points at the ring.
    if (scale.nominal) {
        const double side = std::max(Theme::px(6), 4);
        const double angle = angleOf(*scale.nominal);
        painter.save();
        painter.translate(center);
        painter.rotate(90 - angle);
        painter.setPen(Qt::NoPen);
        painter.setBrush(text);
        painter.drawPolygon(
            QPolygonF({{0, -outside}, {-side / 2, -outside - side}, {side / 2, -outside - side}}));
        painter.restore();
    }

    // The highest and the lowest value that were seen.
    const double reach = outside + Theme::px(5);
    painter.setPen(QPen(text, std::max(1.5, 1.5 * Theme::scale()), Qt::SolidLine, Qt::FlatCap));
    drawnHighest = highest;
    drawnLowest = lowest;
    if (highest)
        drawMark(&painter, *highest, radius - ring * 0.3, reach);
    if (lowest && *lowest != *highest)
        drawMark(&painter, *lowest, radius - ring * 0.3, reach);

    drawTrend(&painter);

    if (!scale.isKnown)
        return;
    // The ends of the scale, under the ends of the ring.
    painter.setPen(palette().color(QPalette::Mid));
    painter.setFont(Theme::font(Theme::Small));
    const QFontMetrics metrics(painter.font());
    const double x = radius * below;
    const int baseline = std::min(int(center.y() + radius * below) + metrics.ascent() + 2,
                                  height() - metrics.descent());
    const QString ends[] = {Values::number(scale.minimum, 0), Values::number(scale.maximum, 0)};
    painter.drawText(
        QPointF(std::max(center.x() - x - metrics.horizontalAdvance(ends[0]) * 0.7, 0.0), baseline),
        ends[0]);
    const double width1 = metrics.horizontalAdvance(ends[1]);
    painter.drawText(QPointF(std::min(center.x() + x - width1 * 0.3, width() - width1), baseline),
                     ends[1]);
}

void GaugeRoom::mouseDoubleClickEvent(QMouseEvent *)
{
    forgetPeaks();
}
