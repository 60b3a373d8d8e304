// SPDX-License-Identifier: LicenseRef-all-rights-reserved

#include "chart.h"

#include "display.h"
#include "model/values.h"
#include "qtversion_p.h"
#include "theme.h"

#include <QtGui/QKeyEvent>
#include <QtGui/QPainter>
#include <QtGui/QWheelEvent>
#include <QtWidgets/QGestureEvent>

#include <algorithm>
#include <cmath>

namespace {

constexpr int gapUnits = 6;
constexpr int leastPlot = 18;
constexpr qint64 shortestSpan = minuteMsecs;
constexpr qint64 longestSpan = 3660 * dayMsecs;
constexpr double wheelStep = 120.0;
constexpr double zoomStep = 0.8;
constexpr int bandAlpha = 70;
constexpr int batteryAlpha = 60;
constexpr double largestValue = 1e9;

/// Lines at midnight stand out, but less than the curves.
QColor dayLineColor(const QPalette &palette)
{
    constexpr int mixed = 40;
    const QColor &ink = palette.color(QPalette::Mid);
    const QColor &base = palette.color(QPalette::Base);
    const auto mix = [](int a, int b) { return (a * mixed + b * (100 - mixed)) / 100; };
    return {mix(ink.red(), base.red()), mix(ink.green(), base.green()),
            mix(ink.blue(), base.blue())};
}

QColor batteryColor()
{
    return {255, 176, 46, batteryAlpha};
}

} // namespace

Chart::Chart(QWidget *parent)
    : QWidget(parent)
    , zone(QTimeZone::systemTimeZone())
{
    setAccessibleName(tr("Chart"));
    setFocusPolicy(Qt::StrongFocus);
    setMouseTracking(true);
    grabGesture(Qt::PinchGesture);
    setCursor(Qt::CrossCursor);
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Expanding);
}

QSize Chart::minimumSizeHint() const
{
    const int text = QFontMetrics(Theme::font(Theme::Small)).height();
    const int count = std::max(int(shown.size()), 1);
    return {Theme::px(160), count * (text + leastPlot + Theme::px(gapUnits)) + 2 * text};
}

QSize Chart::sizeHint() const
{
    return minimumSizeHint();
}

void Chart::setLanes(const QVector<ChartLane> &lanes, const QVector<TimeSpan> &battery)
{
    const bool sameCount = lanes.size() == shown.size();
    shown = lanes;
    onBattery = battery;
    if (!sameCount)
        updateGeometry();
    arrange();
    redraw();
}

const QVector<ChartLane> &Chart::lanes() const
{
    return shown;
}

void Chart::setSpan(TimeSpan span)
{
    if (span.from == shownSpan.from && span.to == shownSpan.to)
        return;
    shownSpan = span;
    arrange();
    redraw();
}

TimeSpan Chart::span() const
{
    return shownSpan;
}

void Chart::setZone(const QTimeZone &newZone)
{
    zone = newZone;
    arrange();
    redraw();
}

void Chart::setNotice(const QString &newNotice)
{
    if (notice == newNotice)
        return;
    notice = newNotice;
    setAccessibleDescription(notice);
    update();
}

std::optional<qint64> Chart::cursor() const
{
    return cursorAt;
}

void Chart::setCursorTime(std::optional<qint64> at)
{
    if (cursorAt == at)
        return;
    cursorAt = at;
    QStringList readings;
    if (cursorAt) {
        for (const ChartLane &lane : std::as_const(shown))
            readings.append(readingOf(lane));
    }
    setAccessibleDescription(readings.join(QStringLiteral(", ")));
    // The names of the lanes say what is read.
    frame = QPixmap();
    update();
}

int Chart::columns() const
{
    return std::max(int(plotRect().width() * devicePixelRatioF()), 1);
}

QRect Chart::plotRect() const
{
    return QRect(labelWidth, 0, width() - labelWidth - Theme::px(gapUnits),
                 height() - textHeight - 4);
}

QRect Chart::laneRect(int lane) const
{
    const QRect plot = plotRect();
    const int count = std::max(int(shown.size()), 1);
    const int top = plot.height() * lane / count;
    const int bottom = plot.height() * (lane + 1) / count;
    return QRect(plot.left(), top + textHeight + 2, plot.width(),
                 std::max(bottom - top - textHeight - 2 - (lane + 1 < count ? 2 : 0), 1));
}

void Chart::arrange()
{
    const QFontMetrics metrics(Theme::font(Theme::Small));
    textHeight = metrics.height(); // asked for with every point
    axes.clear();
    int widest = 0;
    for (int i = 0; i < shown.size(); ++i) {
        const ChartLane &lane = shown.at(i);
        std::optional<double> low;
        std::optional<double> high;
        for (const TrendPoint &point : lane.points) {
            low = std::min(low.value_or(double(point.low)), double(point.low));
            high = std::max(high.value_or(double(point.high)), double(point.high));
        }
        const int most = std::clamp(laneRect(i).height() / metrics.height(), 1, 6);
        const ValueAxis axis = valueAxis(lane.quantity, lane.measure, low, high, most);
        axes.append(axis);
        // Without values there is nothing to read at an axis.
        const QVector<double> places = lane.points.isEmpty() ? QVector<double>() : axis.ticks();
        for (const double value : places)
            widest =
                std::max(widest, metrics.horizontalAdvance(axisLabel(lane.quantity, value, axis)));
    }
    labelWidth = std::min(widest, width() / 4) + Theme::px(gapUnits);
    const int room = metrics.horizontalAdvance(QStringLiteral("00:00:00")) * 3 / 2;
    ticks = timeTicks(shownSpan, zone, std::max(plotRect().width() / room, 1));
}

double Chart::xOf(qint64 at) const
{
    const QRect plot = plotRect();
    const auto length = double(std::max<qint64>(shownSpan.to - shownSpan.from, 1));
    return plot.left() + double(at - shownSpan.from) / length * plot.width();
}

qint64 Chart::timeAt(double x) const
{
    const QRect plot = plotRect();
    const double share = (x - plot.left()) / std::max(plot.width(), 1);
    return shownSpan.from + qint64(share * double(shownSpan.to - shownSpan.from));
}

void Chart::redraw()
{
    frame = QPixmap();
    curves = QPixmap();
    update();
}

void Chart::paintAxis(QPainter *painter) const
{
    const QRect plot = plotRect();
    const QFontMetrics metrics(painter->font());
    const QColor line = palette().color(QPalette::Window);
    int right = -1;
    for (const TimeTick &tick : ticks) {
        const double x = std::floor(xOf(tick.at)) + 0.5;
        painter->setPen(QPen(tick.isDay ? dayLineColor(palette()) : line, 0));
        for (int i = 0; i < shown.size(); ++i) {
            const QRect room = laneRect(i);
            painter->drawLine(QPointF(x, room.top()), QPointF(x, room.bottom() + 1));
        }
        const int width = metrics.horizontalAdvance(tick.label);
        const int left = std::clamp(int(x) - width / 2, plot.left(), this->width() - width);
        if (left <= right + metrics.averageCharWidth())
            continue;
        right = left + width;
        painter->setPen(palette().color(tick.isDay ? QPalette::WindowText : QPalette::Mid));
        painter->drawText(left, height() - metrics.descent() - 1, tick.label);
    }
}

void Chart::paintScale(QPainter *painter, int index) const
{
    const ChartLane &lane = shown.at(index);
    const ValueAxis &axis = axes.at(index);
    const QRect room = laneRect(index);
    const QFontMetrics metrics(painter->font());
    const auto yOf = [&](double value) {
        return room.bottom() + 1 - (value - axis.low) / (axis.high - axis.low) * room.height();
    };
    // Whole steps, with a number where there is room for it.
    double lastLabel = room.bottom() + metrics.height();
    const QVector<double> places = lane.points.isEmpty() ? QVector<double>() : axis.ticks();
    for (const double value : places) {
        const double y = std::floor(yOf(value)) + 0.5;
        painter->setPen(QPen(palette().color(QPalette::Window), 0));
        painter->drawLine(QPointF(room.left(), y), QPointF(room.right() + 1, y));
        const QString label = axisLabel(lane.quantity, value, axis);
        if (lastLabel - y < metrics.height() * 0.9)
            continue;
        lastLabel = y;
        painter->setPen(palette().color(QPalette::Mid));
        painter->drawText(QRectF(0, y - metrics.height() / 2.0, labelWidth - 4, metrics.height()),
                          Qt::AlignRight | Qt::AlignVCenter, label);
    }
    painter->setPen(palette().color(QPalette::WindowText));
    painter->drawText(
        QRect(room.left(), room.top() - metrics.height() - 1, room.width(), metrics.height()),
        Qt::AlignLeft | Qt::AlignVCenter,
        metrics.elidedText(readingOf(lane), Qt::ElideRight, room.width()));
}

double Chart::Place::x(qint64 at) const
{
    return left + double(at - from) * perMsec;
}

double Chart::Place::y(float value) const
{
    return bottom - (std::clamp(double(value), -largestValue, largestValue) - low) * perUnit;
}

Chart::Place Chart::placeOf(int lane) const
{
    const QRect room = laneRect(lane);
    const ValueAxis &axis = axes.at(lane);
    Place place;
    place.from = shownSpan.from;
    place.left = room.left();
    place.perMsec = room.width() / double(std::max<qint64>(shownSpan.to - shownSpan.from, 1));
    place.low = axis.low;
    place.bottom = room.bottom() + 1;
    place.perUnit = room.height() / (axis.high - axis.low);
    return place;
}

/// From the lowest to the highest: a column for each point where they are close, else a surface
/// between them. Time on battery is shaded over it.
void Chart::paintBand(QPainter *painter, int index) const
{
    const ChartLane &lane = shown.at(index);
    const QRect room = laneRect(index);
    const Place place = placeOf(index);
    painter->setClipRect(room);
    const double pixel = 1.0 / painter->device()->devicePixelRatioF();
    const QColor ink = Theme::gaugeColors(Theme::isDark()).fill;
    const QColor base = palette().color(QPalette::Base);
    // Opaque, which is much faster.
    const auto mixed = [](int a, int b) { return (a * bandAlpha + b * (255 - bandAlpha)) / 255; };
    const QColor shade(mixed(ink.red(), base.red()), mixed(ink.green(), base.green()),
                       mixed(ink.blue(), base.blue()));
    const double spacing = room.width() / double(std::max(int(lane.points.size()), 1));
    if (spacing < 1.5 * pixel) {
        QVector<QLineF> columns;
        columns.reserve(lane.points.size());
        for (const TrendPoint &point : lane.points) {
            if (point.high <= point.low)
                continue;
            const double x = (std::floor(place.x(point.at) / pixel) + 0.5) * pixel;
            columns.append(QLineF(x, place.y(point.high), x, place.y(point.low)));
        }
        painter->setPen(QPen(shade, 0));
        painter->drawLines(columns);
    } else {
        painter->setPen(Qt::NoPen);
        painter->setBrush(shade);
        QPolygonF upper;
        QPolygonF lower;
        const auto flush = [&] {
            std::reverse(lower.begin(), lower.end());
            if (lower.size() > 1)
                painter->drawPolygon(upper + lower);
            upper.clear();
            lower.clear();
        };
        for (const TrendPoint &point : lane.points) {
            if (!point.joined)
                flush();
            const double x = place.x(point.at);
            upper.append(QPointF(x, place.y(point.high)));
            lower.append(QPointF(x, place.y(point.low)));
        }
        flush();
    }
    for (const TimeSpan &battery : onBattery) {
        const double from = std::max(xOf(battery.from), double(room.left()));
        const double to = std::min(xOf(battery.to), double(room.right() + 1));
        if (to > from)
            painter->fillRect(QRectF(from, room.top(), std::max(to - from, 1.0), room.height()),
                              batteryColor());
    }
    painter->setClipping(false);
}

void Chart::paintLimits(QPainter *painter, int index) const
{
    const ChartLane &lane = shown.at(index);
    const ValueAxis &axis = axes.at(index);
    const QRect room = laneRect(index);
    if (lane.points.isEmpty())
        return;
    QPen limit(Theme::gaugeColors(Theme::isDark()).outOfLimits, 0, Qt::CustomDashLine);
    limit.setDashPattern({6, 4});
    painter->setPen(limit);
    for (const std::optional<double> &value : {lane.measure.low, lane.measure.high}) {
        if (!value || *value < axis.low || *value > axis.high)
            continue;
        const double y = std::floor(placeOf(index).y(float(*value))) + 0.5;
        painter->drawLine(QPointF(room.left(), y), QPointF(room.right() + 1, y));
    }
}

void Chart::paintLine(QPainter *painter, int index) const
{
    const ChartLane &lane = shown.at(index);
    const QRect room = laneRect(index);
    const Place place = placeOf(index);
    if (lane.points.isEmpty()) {
        painter->setPen(palette().color(QPalette::Mid));
        painter->drawText(room, Qt::AlignCenter, tr("No data in this time"));
        return;
    }
    painter->save();
    painter->setClipRect(room);
    painter->setRenderHint(QPainter::Antialiasing);
    painter->setPen(QPen(Theme::gaugeColors(Theme::isDark()).fill, 0));
    painter->setBrush(Qt::NoBrush);
    const double pixel = 1.0 / painter->device()->devicePixelRatioF();
    QPolygonF line;
    const auto flush = [&] {
        if (line.isEmpty())
            return;
        if (line.size() == 1)
            line.append(line.first() + QPointF(std::max(pixel, 1.0), 0));
        // A wide pen takes a hundred times as long: on dense screens the thin line is drawn more
        // than once.
        const int times = std::clamp(int(std::lround(1.0 / pixel)), 1, 4);
        for (int i = 0; i < times; ++i) {
            painter->drawPolyline(line);
            line.translate(pixel / 2, pixel);
        }
        line.clear();
    };
    for (const TrendPoint &point : lane.points) {
        if (!point.joined)
            flush();
        line.append(QPointF(place.x(point.at), place.y(point.mean)));
    }
    flush();
    painter->restore();
}

void Chart::paint(QPainter *painter) const
{
    paintFrame(painter);
    paintCurves(painter);
}

void Chart::paintFrame(QPainter *painter) const
{
    painter->setFont(Theme::font(Theme::Small));
    paintAxis(painter);
    for (int i = 0; i < shown.size(); ++i)
        paintScale(painter, i);
}

void Chart::paintCurves(QPainter *painter) const
{
    for (int i = 0; i < shown.size(); ++i) {
        paintBand(painter, i);
        paintLimits(painter, i);
        paintLine(painter, i);
    }
}

void Chart::paintCursor(QPainter *painter) const
{
    if (!cursorAt || *cursorAt < shownSpan.from || *cursorAt > shownSpan.to)
        return;
    const double x = std::floor(xOf(*cursorAt)) + 0.5;
    const QColor ink = palette().color(QPalette::WindowText);
    painter->setPen(QPen(ink, 0));
    for (int i = 0; i < shown.size(); ++i) {
        const QRect room = laneRect(i);
        painter->drawLine(QPointF(x, room.top()), QPointF(x, room.bottom() + 1));
        const TrendPoint *point = pointAt(shown.at(i), *cursorAt);
        if (!point)
            continue;
        const ValueAxis &axis = axes.at(i);
        const double y = room.bottom() + 1 -
                         (double(point->mean) - axis.low) / (axis.high - axis.low) * room.height();
        painter->setRenderHint(QPainter::Antialiasing);
        painter->setBrush(Theme::accent());
        const double radius = std::max(Theme::px(3), 3);
        painter->drawEllipse(QPointF(x, std::clamp(y, double(room.top()), double(room.bottom()))),
                             radius, radius);
        painter->setRenderHint(QPainter::Antialiasing, false);
    }
    const QFontMetrics metrics(painter->font());
    const QString text = QLocale::c().toString(QDateTime::fromMSecsSinceEpoch(*cursorAt, zone),
                                               shownSpan.to - shownSpan.from > 2 * hourMsecs
                                                   ? QStringLiteral("d MMM HH:mm")
                                                   : QStringLiteral("d MMM HH:mm:ss"));
    const int wide = metrics.horizontalAdvance(text) + 2 * Theme::px(gapUnits);
    const QRect plate(std::clamp(int(x) - wide / 2, 0, std::max(width() - wide, 0)),
                      height() - metrics.height() - 1, wide, metrics.height() + 1);
    painter->fillRect(plate, ink);
    painter->setPen(palette().color(QPalette::Base));
    painter->drawText(plate, Qt::AlignCenter, text);
}

void Chart::paintEvent(QPaintEvent *)
{
    const double ratio = devicePixelRatioF();
    const auto fresh = [&](QPixmap *layer, void (Chart::*paintLayer)(QPainter *) const) {
        if (!layer->isNull() && layer->devicePixelRatio() == ratio)
            return;
        *layer = QPixmap(int(std::ceil(width() * ratio)), int(std::ceil(height() * ratio)));
        layer->setDevicePixelRatio(ratio);
        layer->fill(Qt::transparent);
        QPainter painter(layer);
        (this->*paintLayer)(&painter);
    };
    fresh(&frame, &Chart::paintFrame);
    fresh(&curves, &Chart::paintCurves);
    QPainter painter(this);
    painter.drawPixmap(0, 0, frame);
    painter.drawPixmap(0, 0, curves);
    painter.setFont(Theme::font(Theme::Small));
    paintCursor(&painter);
    if (notice.isEmpty())
        return;
    const QFontMetrics metrics(painter.font());
    const int pad = Theme::px(gapUnits);
    const QString text = metrics.elidedText(notice, Qt::ElideMiddle, width() - 4 * pad);
    QRect plate(0, 0, metrics.horizontalAdvance(text) + 2 * pad, metrics.height() + pad);
    plate.moveCenter(rect().center());
    // A plate keeps it readable above curves.
    if (shown.isEmpty()) {
        painter.setPen(palette().color(QPalette::WindowText));
    } else {
        painter.fillRect(plate, palette().color(QPalette::WindowText));
        painter.setPen(palette().color(QPalette::Base));
    }
    painter.drawText(plate, Qt::AlignCenter, text);
}

const TrendPoint *Chart::pointAt(const ChartLane &lane, qint64 at) const
{
    const auto &points = lane.points;
    if (points.isEmpty())
        return nullptr;
    const auto after =
        std::lower_bound(points.cbegin(), points.cend(), at,
                         [](const TrendPoint &point, qint64 time) { return point.at < time; });
    // In a gap there is nothing to read, but for a pixel's breadth.
    const qint64 near =
        std::max<qint64>((shownSpan.to - shownSpan.from) / std::max(plotRect().width(), 1) * 2, 1);
    const TrendPoint *next = after == points.cend() ? nullptr : &*after;
    const TrendPoint *before = after == points.cbegin() ? nullptr : &*std::prev(after);
    if (next && next->at == at)
        return next;
    if (next && before && next->joined)
        return at - before->at <= next->at - at ? before : next;
    if (before && at - before->at <= near)
        return before;
    return next && next->at - at <= near ? next : nullptr;
}

QString Chart::readingOf(const ChartLane &lane) const
{
    const QString name = nameOf(lane.quantity) + QStringLiteral("  ");
    const auto range = [&](double low, double high) {
        const QString from = Values::text(lane.quantity, low);
        const QString to = Values::text(lane.quantity, high);
        return from == to ? to : from + QStringLiteral(" … ") + to;
    };
    if (cursorAt) {
        const TrendPoint *point = pointAt(lane, *cursorAt);
        if (!point)
            return name + Values::noData();
        const QString mean = Values::text(lane.quantity, double(point->mean));
        const QString around = range(double(point->low), double(point->high));
        return name + (around == mean ? mean : mean + QStringLiteral("  (%1)").arg(around));
    }
    if (lane.points.isEmpty())
        return name.trimmed();
    auto low = double(lane.points.first().low);
    auto high = double(lane.points.first().high);
    for (const TrendPoint &point : lane.points) {
        low = std::min(low, double(point.low));
        high = std::max(high, double(point.high));
    }
    return name + range(low, high);
}

void Chart::zoom(double factor, double x)
{
    const QRect plot = plotRect();
    const double share = std::clamp((x - plot.left()) / std::max(plot.width(), 1), 0.0, 1.0);
    const qint64 length = shownSpan.to - shownSpan.from;
    const qint64 wanted = std::clamp(qint64(double(length) * factor), shortestSpan, longestSpan);
    const qint64 fixed = shownSpan.from + qint64(share * double(length));
    TimeSpan span;
    span.from = fixed - qint64(share * double(wanted));
    span.to = span.from + wanted;
    if (wanted != length)
        Q_EMIT spanChosen(span);
}

void Chart::moveBy(qint64 msecs)
{
    Q_EMIT spanChosen({shownSpan.from + msecs, shownSpan.to + msecs});
}

bool Chart::event(QEvent *event)
{
    if (event->type() == QEvent::Gesture) {
        auto *gestures = static_cast<QGestureEvent *>(event);
        if (auto *pinch = static_cast<QPinchGesture *>(gestures->gesture(Qt::PinchGesture))) {
            dragFrom.reset(); // the first finger is no drag
            const double factor = pinch->scaleFactor();
            if (pinch->changeFlags().testFlag(QPinchGesture::ScaleFactorChanged) && factor > 0.0)
                zoom(1.0 / std::clamp(factor, 0.1, 10.0),
                     mapFromGlobal(pinch->centerPoint().toPoint()).x());
            gestures->accept(pinch);
            return true;
        }
    }
    return QWidget::event(event);
}

void Chart::resizeEvent(QResizeEvent *event)
{
    QWidget::resizeEvent(event);
    arrange();
    redraw();
}

void Chart::changeEvent(QEvent *event)
{
    QWidget::changeEvent(event);
    if (event->type() == QEvent::PaletteChange ||
        event->type() == QEvent::ApplicationPaletteChange || event->type() == QEvent::FontChange) {
        arrange();
        redraw();
    }
}

void Chart::mousePressEvent(QMouseEvent *event)
{
    if (event->button() != Qt::LeftButton)
        return;
    dragFrom = KivPrivate::pointerPosition(event).x();
    dragSpan = shownSpan;
    setCursorTime(timeAt(KivPrivate::pointerPosition(event).x()));
}

void Chart::mouseMoveEvent(QMouseEvent *event)
{
    const double x = KivPrivate::pointerPosition(event).x();
    if (dragFrom && event->buttons().testFlag(Qt::LeftButton)) {
        constexpr double least = 5.0;
        const double share = (*dragFrom - x) / std::max(plotRect().width(), 1);
        const auto by = qint64(share * double(dragSpan.to - dragSpan.from));
        if (std::abs(*dragFrom - x) >= least)
            Q_EMIT spanChosen({dragSpan.from + by, dragSpan.to + by});
    }
    const QRect plot = plotRect();
    setCursorTime(x >= plot.left() && x <= plot.right() + 1 ? std::optional<qint64>(timeAt(x))
                                                            : std::nullopt);
}

void Chart::mouseReleaseEvent(QMouseEvent *)
{
    dragFrom.reset();
}

void Chart::leaveEvent(QEvent *)
{
    setCursorTime(std::nullopt);
}

void Chart::wheelEvent(QWheelEvent *event)
{
    const double steps = event->angleDelta().y() / wheelStep;
    if (steps != 0.0)
        zoom(std::pow(zoomStep, steps), event->position().x());
    event->accept();
}

void Chart::keyPressEvent(QKeyEvent *event)
{
    const qint64 length = shownSpan.to - shownSpan.from;
    const bool far = event->modifiers().testFlag(Qt::ControlModifier);
    constexpr int steps = 100;
    constexpr int farSteps = 10;
    const qint64 step = std::max<qint64>(length / (far ? farSteps : steps), 1);
    const qint64 place = cursorAt.value_or(shownSpan.to);
    const double x = xOf(cursorAt.value_or(shownSpan.from + length / 2));
    const auto bounded = [this](qint64 at) { return std::clamp(at, shownSpan.from, shownSpan.to); };
    switch (event->key()) {
    case Qt::Key_Left:
        setCursorTime(bounded(place - step));
        break;
    case Qt::Key_Right:
        setCursorTime(bounded(place + step));
        break;
    case Qt::Key_Home:
        setCursorTime(shownSpan.from);
        break;
    case Qt::Key_End:
        setCursorTime(shownSpan.to);
        break;
    case Qt::Key_PageUp:
        moveBy(-length / 2);
        break;
    case Qt::Key_PageDown:
        moveBy(length / 2);
        break;
    case Qt::Key_Plus:
    case Qt::Key_Equal:
        zoom(zoomStep, x);
        break;
    case Qt::Key_Minus:
        zoom(1.0 / zoomStep, x);
        break;
    default:
        QWidget::keyPressEvent(event);
    }
}
