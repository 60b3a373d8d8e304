// SPDX-License-Identifier: LicenseRef-all-rights-reserved

#include "promtrends.h"

#include "feed/httppost.h"
#include "feed/nutmapping.h"

#include <algorithm>
#include <cmath>

namespace {

/// Up to this step, in seconds, a point is the latest value; beyond, it stands for all values since
/// the point before, of which there may be none where a server scrapes more slowly.
constexpr int longestInstant = 30;
constexpr int steps[] = {5,    10,   15,   30,   120,   180,   300,   600,  900,
                         1200, 1800, 3600, 7200, 10800, 21600, 43200, 86400};
constexpr int mostColumns = 5000;

/// The label that distinguishes the series of an answer.
const QLatin1String curveLabel("curve");
const QLatin1String batteryCurve("battery");

QString named(const QString &query, const QString &curve)
{
    return QStringLiteral("label_replace(%1,\"%2\",\"%3\",\"\",\"\")")
        .arg(query, curveLabel, curve);
}

/// What is asked of a metric: its lowest, mean and highest values.
struct Part
{
    const char *name;
    const char *operation;
};
constexpr Part parts[] = {{"low", "min"}, {"mean", "avg"}, {"high", "max"}};

QString curveName(Quantity quantity, const Part &part)
{
    return nutVariableOf(quantity) + QLatin1Char(' ') + QLatin1String(part.name);
}

/// One query for all curves, each a series of its own whatever labels the metrics have.
QString queryFor(const PromFeed &feed, const QVector<Quantity> &quantities, int step)
{
    const auto over = [step](const char *operation, const QString &series) {
        // All at once: the series has names that are not ours.
        const QLatin1String name(operation);
        return step <= longestInstant ? QStringLiteral("%1(%2)").arg(name, series)
                                      : QStringLiteral("%1(%1_over_time(%2[%3s]))")
                                            .arg(name, series, QString::number(step));
    };
    QStringList queries;
    for (const Quantity quantity : quantities) {
        const PromValue *value = feed.dialect().valueOf(nutVariableOf(quantity));
        if (!value)
            continue;
        const QString series = QStringLiteral("%1{%2}").arg(value->metric, feed.selector());
        for (const Part &part : parts)
            queries +=
                named(over(part.operation, series) + QStringLiteral("*%1").arg(value->factor),
                      curveName(quantity, part));
    }
    const QString onBattery =
        QStringLiteral("%1{%2,%3=\"OB\"}")
            .arg(feed.dialect().statusMetric, feed.selector(), feed.dialect().flagLabel);
    queries += named(over("max", onBattery), batteryCurve);
    return queries.join(QStringLiteral(" or "));
}

/// The values of the series @p curve by the number of their step; nothing where the times are not
/// those of whole steps.
QHash<qint64, double> valuesOf(const PromAnswer &answer, const QString &curve, int step)
{
    QHash<qint64, double> values;
    for (const PromSeries &series : answer.series) {
        if (series.labels.at(0) != curve)
            continue;
        for (const QPointF &sample : series.samples) {
            const double number = sample.x() / step;
            constexpr double most = 1e12;
            if (std::abs(number) < most && std::isfinite(float(sample.y())))
                values.insert(std::llround(number), sample.y());
        }
    }
    return values;
}

} // namespace

PromTrends::PromTrends(const Find &findFeed, TrendSource *newOthers, QObject *parent)
    : TrendSource(parent)
    , find(findFeed)
    , others(newOthers)
{
    if (!others)
        return;
    connect(others, &TrendSource::replaced, this, &TrendSource::replaced);
    connect(others, &TrendSource::statusChanged, this, &TrendSource::statusChanged);
    connect(others, &TrendSource::trendRead, this, [this](int number, const Trend &trend) {
        const auto mine = passedOn.constFind(number);
        if (mine == passedOn.constEnd())
            return;
        const int asked = *mine;
        passedOn.erase(mine);
        Q_EMIT trendRead(asked, trend);
    });
}

int PromTrends::stepFor(TimeSpan span, int columns)
{
    const double seconds = double(span.to - span.from) / double(secondMsecs);
    const double wanted = seconds / std::clamp(columns, 1, mostColumns);
    const auto *step = std::lower_bound(std::begin(steps), std::end(steps), wanted);
    if (step != std::end(steps))
        return *step;
    const int day = *std::prev(std::end(steps));
    return day * int(std::ceil(std::min(wanted / day, 1000.0)));
}

int PromTrends::readTrend(const QString &ups, const QVector<Quantity> &quantities, TimeSpan span,
                          int columns)
{
    const int number = ++lastNumber;
    PromFeed *feed = find(ups);
    if (!feed) {
        if (others) {
            passedOn.insert(others->readTrend(ups, quantities, span, columns), number);
        } else {
            Trend none;
            none.ups = ups;
            none.span = span;
            QMetaObject::invokeMethod(
                this, [this, number, none] { Q_EMIT trendRead(number, none); },
                Qt::QueuedConnection);
        }
        return number;
    }
    Question question;
    question.trend.ups = ups;
    question.trend.span = span;
    for (const Quantity quantity : quantities)
        question.trend.curves.append({quantity, {}});
    question.step = stepFor(span, columns);
    const qint64 step = question.step * secondMsecs;
    // At whole steps, so that curves do not change as time goes on. The last one may not be over.
    const qint64 from = floorTo(span.from, step);
    const qint64 last = floorTo(span.to, step);
    const qint64 to = question.step <= longestInstant ? last : last + step;
    questions.insert(number, question);
    const QPointer<PromTrends> guard(this);
    questions[number].reply = feed->server().queryRange(
        queryFor(*feed, quantities, question.step), {QString(curveLabel)},
        double(from) / double(secondMsecs), double(to) / double(secondMsecs), question.step,
        [guard, number](const PromAnswer &answer) {
            if (guard)
                guard->take(number, answer);
        });
    return number;
}

void PromTrends::drop(int number)
{
    const auto dropped = questions.constFind(number);
    if (dropped == questions.constEnd())
        return;
    const QPointer<HttpPost> reply = dropped->reply;
    questions.erase(dropped);
    if (reply)
        reply->abort();
}

void PromTrends::take(int number, const PromAnswer &answer)
{
    if (!questions.contains(number))
        return;
    const Question question = questions.take(number);
    Trend trend = question.trend;
    const int step = question.step;
    const bool isInstant = step <= longestInstant;
    // What stands for all values since the step before is in the middle between them.
    const auto timeOf = [&](qint64 index) {
        const qint64 at = index * step * secondMsecs;
        return isInstant ? at : (at - step * secondMsecs + std::min(at, trend.span.to)) / 2;
    };
    bool any = false;
    for (Trend::Curve &curve : trend.curves) {
        const auto low = valuesOf(answer, curveName(curve.quantity, parts[0]), step);
        const auto mean = valuesOf(answer, curveName(curve.quantity, parts[1]), step);
        const auto high = valuesOf(answer, curveName(curve.quantity, parts[2]), step);
        QList<qint64> indices = mean.keys();
        std::sort(indices.begin(), indices.end());
        qint64 before = 0;
        for (const qint64 index : std::as_const(indices)) {
            TrendPoint point;
            point.at = timeOf(index);
            point.mean = float(mean.value(index));
            point.low = std::min(float(low.value(index, mean.value(index))), point.mean);
            point.high = std::max(float(high.value(index, mean.value(index))), point.mean);
            point.joined = !curve.points.isEmpty() && index == before + 1;
            curve.points.append(point);
            before = index;
            any = true;
        }
    }
    const auto battery = valuesOf(answer, batteryCurve, step);
    QList<qint64> indices = battery.keys();
    std::sort(indices.begin(), indices.end());
    for (const qint64 index : std::as_const(indices)) {
        if (battery.value(index) != 1.0)
            continue;
        const qint64 at = index * step * secondMsecs;
        const qint64 length = step * secondMsecs;
        const TimeSpan part = {isInstant ? at : at - length,
                               std::min(isInstant ? at + length : at, trend.span.to)};
        if (!trend.onBattery.isEmpty() && trend.onBattery.last().to == part.from)
            trend.onBattery.last().to = part.to;
        else
            trend.onBattery.append(part);
    }
    if (!answer.succeeded)
        trend.problem = tr("The Prometheus server cannot be read: %1").arg(answer.problem);
    else if (!answer.warnings.isEmpty())
        trend.problem = tr("What Prometheus has may be incomplete: %1").arg(answer.warnings);
    else if (!any && !trend.curves.isEmpty())
        trend.problem = tr("Prometheus has no values of this time");
    Q_EMIT trendRead(number, trend);
}

QString PromTrends::whyNotKept(const QString &ups) const
{
    return others && !find(ups) ? others->whyNotKept(ups) : QString();
}
