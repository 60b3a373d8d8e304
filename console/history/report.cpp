// SPDX-License-Identifier: LicenseRef-all-rights-reserved

#include "report.h"

#include "values.h"

#include <QtCore/QLocale>
#include <QtCore/QMap>
#include <QtCore/QTimeZone>

#include <algorithm>
#include <cmath>

namespace {

constexpr double msecsOfHour = 3600.0 * 1000.0;
const char *const offConditions[] = {"output-off", "locked", "starting"};

struct Piece
{
    qint64 at = 0;
    qint64 step = 0;
    Rollup sum;
};

/// The roll-ups in @p span: minutes, and hours where the minutes are not kept any more.
QVector<Piece> piecesOf(Store *store, const QString &ups, Quantity quantity, TimeSpan span)
{
    QVector<Piece> pieces;
    const auto minutes = store->rollups(ups, quantity, minuteMsecs, span.from, span.to);
    const qint64 first = floorTo(minutes.isEmpty() ? span.to : minutes.first().first, hourMsecs);
    const auto hours = store->rollups(ups, quantity, hourMsecs, span.from, first);
    for (const auto &[at, sum] : hours)
        pieces.append({at, hourMsecs, sum});
    for (const auto &[at, sum] : minutes)
        pieces.append({at, minuteMsecs, sum});
    return pieces;
}

/// How long something was measured in the minutes and hours, by their begin.
struct WatchedPiece
{
    qint64 step = 0;
    qint64 covered = 0;
};
using WatchedTime = QMap<qint64, WatchedPiece>;

WatchedTime watchedOf(Store *store, const QString &ups, TimeSpan span)
{
    WatchedTime watched;
    for (int i = 0; i < quantityCount; ++i) {
        const QVector<Piece> pieces = piecesOf(store, ups, Quantity(i), span);
        for (const Piece &piece : pieces) {
            WatchedPiece &most = watched[piece.at];
            most.step = std::max(most.step, piece.step);
            most.covered = std::max(most.covered, piece.sum.covered);
        }
    }
    return watched;
}

/// For how much of the watched time at least one of the conditions was there. What happened while
/// nobody watched counts neither way.
qint64 lengthOf(Store *store, const QString &ups, const QStringList &conditions, TimeSpan span,
                const WatchedTime &watched)
{
    QVector<TimeSpan> all;
    for (const QString &condition : conditions)
        all += store->spans(ups, condition, span);
    std::sort(all.begin(), all.end(),
              [](const TimeSpan &a, const TimeSpan &b) { return a.from < b.from; });
    QMap<qint64, qint64> lengths; // in each piece
    qint64 until = span.from;
    for (const TimeSpan &one : std::as_const(all)) {
        const qint64 from = std::max(one.from, until);
        until = std::max(until, one.to);
        for (auto piece = watched.lowerBound(floorTo(from, hourMsecs));
             piece != watched.cend() && piece.key() < one.to; ++piece)
            lengths[piece.key()] += std::max<qint64>(
                std::min(one.to, piece.key() + piece->step) - std::max(from, piece.key()), 0);
    }
    qint64 length = 0;
    for (auto piece = lengths.cbegin(); piece != lengths.cend(); ++piece)
        length += std::min(piece.value(), watched.value(piece.key()).covered);
    return length;
}

UpsReport upsReportOf(Store *store, const QString &ups, TimeSpan span)
{
    UpsReport report;
    report.ups = ups;
    EventFilter filter;
    filter.ups = ups;
    filter.from = span.from;
    constexpr int most = 100000;
    const QVector<Event> events = store->events(filter, most);
    for (const Event &event : events) {
        if (event.condition != QLatin1String("on-battery") || event.begin >= span.to)
            continue;
        UpsReport::Outage outage;
        outage.begin = event.begin;
        outage.length = event.length(span.to);
        outage.count = event.count;
        outage.isOver = !event.isPresent();
        outage.endSeen = event.endSeen;
        const TimeSpan lasted{event.begin, std::max(event.end.value_or(span.to), event.begin + 1)};
        // The raw values where they are kept, else what contains them.
        const QVector<TrendPoint> charges =
            store->curve(ups, Quantity::BatteryCharge, lasted, int(minuteMsecs));
        for (const TrendPoint &point : charges)
            outage.lowestCharge =
                std::min(outage.lowestCharge.value_or(double(point.low)), double(point.low));
        report.outages.append(outage);
    }
    std::sort(report.outages.begin(), report.outages.end(),
              [](const auto &a, const auto &b) { return a.begin < b.begin; });

    const WatchedTime watched = watchedOf(store, ups, span);
    for (const WatchedPiece &piece : watched)
        report.watched += piece.covered;
    report.watched = std::min(report.watched, span.to - span.from);
    if (report.watched > 0) {
        const auto shareWithout = [&](const QStringList &conditions) {
            const auto without = double(lengthOf(store, ups, conditions, span, watched));
            return std::clamp(1.0 - without / double(report.watched), 0.0, 1.0);
        };
        QStringList off;
        for (const char *condition : offConditions)
            off.append(QLatin1String(condition));
        report.available = shareWithout(off);
        report.mains = shareWithout({QStringLiteral("on-battery")});
    }
    const QVector<Piece> loads = piecesOf(store, ups, Quantity::Load, span);
    for (const Piece &piece : loads) {
        if (piece.sum.high > report.peakLoad.value_or(-1.0)) {
            report.peakLoad = piece.sum.high;
            report.peakAt = piece.at;
        }
    }
    const QVector<Piece> powers = piecesOf(store, ups, Quantity::OutputPower, span);
    for (const Piece &piece : powers)
        report.energy =
            report.energy.value_or(0.0) + piece.sum.mean * double(piece.sum.covered) / msecsOfHour;
    return report;
}

QString percent(std::optional<double> share)
{
    constexpr double hundred = 100.0;
    // Rounded down: what was not always there does not read 100 %.
    constexpr double places = 1000.0;
    return share ? Values::number(std::floor(*share * hundred * places) / places, 3) +
                       QStringLiteral(" %")
                 : Values::noData();
}

QString duration(qint64 msecs)
{
    const qint64 seconds = msecs / secondMsecs;
    const auto two = [](qint64 number) {
        return QStringLiteral("%1").arg(number, 2, 10, QLatin1Char('0'));
    };
    constexpr int minute = 60;
    constexpr int hour = 3600;
    return QStringLiteral("%1:%2:%3")
        .arg(two(seconds / hour), two(seconds % hour / minute), two(seconds % minute));
}

QString outageLength(const UpsReport::Outage &outage)
{
    QString text = duration(outage.length);
    if (!outage.isOver)
        text += QStringLiteral(", not over");
    else if (!outage.endSeen)
        text.prepend(QStringLiteral("at least "));
    if (outage.count > 1)
        text += QStringLiteral(" in %1 pieces").arg(outage.count);
    return text;
}

QString energyText(std::optional<double> wattHours)
{
    constexpr double kilo = 1000.0;
    return wattHours ? Values::number(*wattHours / kilo, 3) + QStringLiteral(" kWh")
                     : Values::noData();
}

QString cell(const char *tag, const QString &text)
{
    const QString name = QLatin1String(tag);
    return QLatin1Char('<') + name + QLatin1Char('>') + text.toHtmlEscaped() +
           QStringLiteral("</") + name + QLatin1Char('>');
}

QString row(const char *tag, const QStringList &cells)
{
    QString line = QStringLiteral("<tr>");
    for (const QString &text : cells)
        line += cell(tag, text);
    return line + QStringLiteral("</tr>\n");
}

} // namespace

TimeSpan spanOf(ReportPeriod period, qint64 now, const QTimeZone &zone)
{
    switch (period) {
    case ReportPeriod::Day:
        return {now - dayMsecs, now};
    case ReportPeriod::Week:
        return {now - 7 * dayMsecs, now};
    case ReportPeriod::Month:
        break;
    }
    return {QDateTime::fromMSecsSinceEpoch(now, zone).addMonths(-1).toMSecsSinceEpoch(), now};
}

Report reportOf(Store *store, const QStringList &upses, TimeSpan span)
{
    Report report;
    report.span = span;
    const QStringList all = upses.isEmpty() ? store->upsNames() : upses;
    for (const QString &ups : all)
        report.upses.append(upsReportOf(store, ups, span));
    return report;
}

QString htmlOf(const Report &report, const QTimeZone &zone)
{
    const auto time = [&zone](qint64 at) {
        return QLocale::c().toString(QDateTime::fromMSecsSinceEpoch(at, zone),
                                     QStringLiteral("d MMM yyyy HH:mm:ss"));
    };
    QString page = QStringLiteral(
        "<!DOCTYPE html>\n<html lang=\"en\"><head><meta charset=\"utf-8\">\n"
        "<title>UPS report</title>\n<style>\n"
        "body{font:15px/1.5 sans-serif;color:#2a2f34;background:#fff;max-width:60em;margin:2em "
        "auto;padding:0 1em}\n"
        "h1{font-size:1.6em;margin-bottom:0}h2{font-size:1.2em;margin:1.8em 0 .3em}\n"
        "p{color:#535d66;margin:.2em 0}table{border-collapse:collapse;width:100%}\n"
        "th,td{text-align:left;padding:.3em .8em .3em 0;border-bottom:1px solid #d3d9de}\n"
        "td+td{font-variant-numeric:tabular-nums}\n</style></head><body>\n");
    page += cell("h1", QStringLiteral("UPS report")) + QLatin1Char('\n');
    page += cell("p", time(report.span.from) + QStringLiteral(" – ") + time(report.span.to) +
                          QStringLiteral(", ") + QString::fromLatin1(zone.id())) +
            QLatin1Char('\n');
    if (report.upses.isEmpty())
        page += cell("p", QStringLiteral("The history knows no UPS.")) + QLatin1Char('\n');
    for (const UpsReport &ups : report.upses) {
        page += cell("h2", ups.ups) + QStringLiteral("\n<table>\n");
        const QString peak = ups.peakLoad ? Values::text(Quantity::Load, ups.peakLoad) +
                                                QStringLiteral(", ") + time(ups.peakAt)
                                          : Values::noData();
        const auto length = double(report.span.to - report.span.from);
        page += row("td", {QStringLiteral("Outages"), QString::number(ups.outages.size())});
        page += row("td", {QStringLiteral("Output available"), percent(ups.available)});
        page += row("td", {QStringLiteral("Not on battery"), percent(ups.mains)});
        page += row("td", {QStringLiteral("Watched"), percent(double(ups.watched) / length)});
        page += row("td", {QStringLiteral("Peak load"), peak});
        page += row("td", {QStringLiteral("Energy"), energyText(ups.energy)});
        page += QStringLiteral("</table>\n");
        if (ups.outages.isEmpty())
            continue;
        page += QStringLiteral("<table>\n") +
                row("th", {QStringLiteral("Outage"), QStringLiteral("Length"),
                           QStringLiteral("Lowest charge")});
        for (const UpsReport::Outage &outage : ups.outages)
            page += row("td", {time(outage.begin), outageLength(outage),
                               Values::text(Quantity::BatteryCharge, outage.lowestCharge)});
        page += QStringLiteral("</table>\n");
    }
    return page + QStringLiteral("</body></html>\n");
}

QString csvOf(const Report &report)
{
    QString lines =
        csvLine({QStringLiteral("UPS"), QStringLiteral("Item"), QStringLiteral("Begin (UTC)"),
                 QStringLiteral("Seconds"), QStringLiteral("Value"), QStringLiteral("Unit")});
    const auto number = [](std::optional<double> value, double factor, int decimals) {
        return value ? Values::number(*value * factor, decimals) : QString();
    };
    const auto line = [&lines](const QString &ups, const char *item, const QString &begin,
                               const QString &seconds, const QString &value, const char *unit) {
        lines += csvLine({ups, QLatin1String(item), begin, seconds, value, QLatin1String(unit)});
    };
    const QString begin = csvTime(report.span.from);
    constexpr double hundred = 100.0;
    for (const UpsReport &ups : report.upses) {
        for (const UpsReport::Outage &outage : ups.outages)
            line(ups.ups, "outage, lowest charge", csvTime(outage.begin),
                 QString::number(outage.length / secondMsecs), number(outage.lowestCharge, 1.0, 1),
                 "%");
        line(ups.ups, "watched", begin, QString::number(ups.watched / secondMsecs), QString(), "");
        line(ups.ups, "output available", begin, QString(), number(ups.available, hundred, 4), "%");
        line(ups.ups, "not on battery", begin, QString(), number(ups.mains, hundred, 4), "%");
        line(ups.ups, "peak load", ups.peakLoad ? csvTime(ups.peakAt) : QString(), QString(),
             number(ups.peakLoad, 1.0, 1), "%");
        line(ups.ups, "energy", begin, QString(), number(ups.energy, 1.0, 1), "Wh");
    }
    return lines;
}
