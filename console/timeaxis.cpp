// SPDX-License-Identifier: LicenseRef-all-rights-reserved

#include "timeaxis.h"

#include "model/values.h"

#include <algorithm>
#include <cmath>
#include <iterator>

namespace {

constexpr qint64 quarterMsecs = 15 * minuteMsecs;
constexpr int daySeconds = 24 * 3600;

/// Between two marks; days count from the begin of a month.
constexpr qint64 timeSteps[] = {
    secondMsecs,     5 * secondMsecs, 10 * secondMsecs, 30 * secondMsecs, minuteMsecs,
    2 * minuteMsecs, 5 * minuteMsecs, 10 * minuteMsecs, quarterMsecs,     30 * minuteMsecs,
    hourMsecs,       2 * hourMsecs,   3 * hourMsecs,    6 * hourMsecs,    12 * hourMsecs,
    dayMsecs,        2 * dayMsecs,    5 * dayMsecs,     10 * dayMsecs,    31 * dayMsecs,
    92 * dayMsecs,   366 * dayMsecs,
};

QString dayLabel(const QDate &date, bool withYear)
{
    return QLocale::c().toString(date,
                                 withYear ? QStringLiteral("MMM yyyy") : QStringLiteral("d MMM"));
}

/// Whether a mark stands at the beginning of @p date.
bool isMarked(const QDate &date, qint64 step)
{
    const int days = int(step / dayMsecs);
    if (days >= 366)
        return date.dayOfYear() == 1;
    if (days >= 31)
        return date.day() == 1 && (days < 92 || date.month() % 3 == 1);
    // The last piece of a month must not be a short one.
    return (date.day() - 1) % days == 0 && (days == 1 || date.day() + days / 2 <= 31);
}

/// From day to day: the axis may be many years long.
QVector<TimeTick> dayTicks(TimeSpan span, const QTimeZone &zone, qint64 step)
{
    const auto dateAt = [&zone](qint64 at) {
        return QDateTime::fromMSecsSinceEpoch(at, zone).date();
    };
    QVector<TimeTick> ticks;
    const QDate last = dateAt(span.to);
    for (QDate date = dateAt(span.from); date <= last; date = date.addDays(1)) {
        if (!isMarked(date, step))
            continue;
        TimeTick tick;
        tick.at = date.startOfDay(zone).toMSecsSinceEpoch();
        tick.isDay = true;
        tick.label = dayLabel(date, step >= 31 * dayMsecs);
        // A zone may leave out a whole day.
        if (tick.at >= span.from && tick.at <= span.to && dateAt(tick.at) == date)
            ticks.append(tick);
    }
    return ticks;
}

/// The next of 1, 2, 5, 10 … from @p least on.
double roundStep(double least)
{
    const double unit = std::pow(10.0, std::floor(std::log10(least)));
    for (const double factor : {1.0, 2.0, 5.0, 10.0}) {
        if (factor * unit >= least * (1 - 1e-9))
            return factor * unit;
    }
    return 10.0 * unit;
}

/// The same for times in seconds.
double roundTime(double least)
{
    for (const double step : {10.0, 30.0, 60.0, 120.0, 300.0, 600.0, 1200.0, 1800.0, 3600.0, 7200.0,
                              14400.0, 36000.0}) {
        if (step >= least)
            return step;
    }
    return roundStep(least / 3600) * 3600;
}

} // namespace

QVector<TimeTick> timeTicks(TimeSpan span, const QTimeZone &zone, int most)
{
    QVector<TimeTick> ticks;
    const qint64 length = span.to - span.from;
    if (length <= 0 || most < 1 || length > 4000 * dayMsecs)
        return ticks;
    const auto *const chosen = std::find_if(std::begin(timeSteps), std::end(timeSteps),
                                            [&](qint64 one) { return length / one <= most; });
    const qint64 step = chosen == std::end(timeSteps) ? *std::prev(chosen) : *chosen;
    if (step >= dayMsecs)
        return dayTicks(span, zone, step);
    // No clock is off by anything but quarters of an hour, so all whole times are met on the way.
    const qint64 pace = std::min(step, quarterMsecs);
    const auto localAt = [&zone](qint64 at) { return QDateTime::fromMSecsSinceEpoch(at, zone); };
    qint64 at = floorTo(span.from, pace);
    QDate before = localAt(at - pace).date();
    for (; at <= span.to; at += pace) {
        const QDateTime local = localAt(at);
        const bool isDay = local.date() != before; // at midnight, or later where that is left out
        before = local.date();
        const int second = QTime(0, 0).secsTo(local.time());
        const bool marked = isDay || second % daySeconds % (step / secondMsecs) == 0;
        if (!marked || at < span.from)
            continue;
        TimeTick tick;
        tick.at = at;
        tick.isDay = isDay;
        if (isDay)
            tick.label = dayLabel(local.date(), false);
        else
            tick.label = local.toString(step < minuteMsecs ? QStringLiteral("HH:mm:ss")
                                                           : QStringLiteral("HH:mm"));
        ticks.append(tick);
    }
    return ticks;
}

QVector<double> ValueAxis::ticks() const
{
    constexpr double inexact = 1e-9;
    QVector<double> all;
    const double first = std::ceil(low / step - inexact) * step;
    const int count = int(std::floor((high - first) / step + inexact));
    for (int i = 0; i <= count; ++i)
        all.append(first + i * step);
    return all;
}

ValueAxis valueAxis(Quantity quantity, const Measure &measure, std::optional<double> low,
                    std::optional<double> high, int most)
{
    // No UPS has more, and an axis must end.
    constexpr double largest = 1e8;
    const bool isShare = quantity == Quantity::Load || quantity == Quantity::BatteryCharge;
    double from = isShare ? 0.0 : largest;
    double to = isShare ? 100.0 : -largest;
    for (const std::optional<double> &value :
         {low, high, measure.low, measure.high, measure.nominal}) {
        if (!value || !std::isfinite(*value))
            continue;
        from = std::min(from, std::clamp(*value, -largest, largest));
        to = std::max(to, std::clamp(*value, -largest, largest));
    }
    if (from > to) {
        from = 0.0;
        to = 1.0;
    }
    // What hardly moves is no mountain range.
    constexpr double leastShare = 0.02;
    const double least =
        std::max(std::abs(to) * leastShare, quantity == Quantity::BatteryRuntime ? 60.0 : 1.0);
    if (to - from < least) {
        const double middle = (from + to) / 2;
        from = from >= 0.0 ? std::max(middle - least / 2, 0.0) : middle - least / 2;
        to = from + least;
    }
    // Nothing touches the edges; but a share ends at 0 and 100.
    constexpr double air = 0.06;
    ValueAxis axis;
    axis.low = isShare && from >= 0.0 ? from : from - (to - from) * air;
    axis.high = isShare && to <= 100.0 ? to : to + (to - from) * air;
    if (from >= 0.0)
        axis.low = std::max(axis.low, 0.0);
    const double rough = (axis.high - axis.low) / std::max(most, 1);
    axis.step = quantity == Quantity::BatteryRuntime ? roundTime(rough) : roundStep(rough);
    return axis;
}

QString axisLabel(Quantity quantity, double value, const ValueAxis &axis)
{
    if (quantity == Quantity::BatteryRuntime) {
        constexpr int minute = 60;
        constexpr int longMinutes = 180;
        const int minutes = int(std::lround(value / minute));
        if (axis.step < minute)
            return QStringLiteral("%1 s").arg(std::lround(value));
        return axis.high <= longMinutes * minute ? QStringLiteral("%1 min").arg(minutes)
                                                 : QStringLiteral("%1 h").arg(Values::number(
                                                       minutes / 60.0, minutes % 60 ? 1 : 0));
    }
    int decimals = 0;
    double step = axis.step;
    while (step < 0.999 && decimals < 3) {
        step *= 10;
        ++decimals;
    }
    return Values::number(value, decimals);
}
