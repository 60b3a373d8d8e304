// SPDX-License-Identifier: LicenseRef-all-rights-reserved

#include "values.h"

#include <algorithm>
#include <array>
#include <cmath>

namespace {

struct Format
{
    int decimals;
    double most; // no UPS has more
};

// In the order of Quantity.
constexpr std::array<Format, quantityCount> formats = {{
    {0, 999},     // Load
    {0, 999},     // BatteryCharge
    {1, 9999},    // BatteryVoltage
    {0, 359999},  // BatteryRuntime: below 100 h
    {0, 9999},    // InputVoltage
    {1, 999},     // InputFrequency
    {0, 9999},    // BypassVoltage
    {1, 999},     // BypassFrequency
    {0, 9999},    // OutputVoltage
    {1, 999},     // OutputFrequency
    {1, 9999},    // OutputCurrent
    {0, 9999999}, // OutputPower
    {1, 999},     // Temperature
}};

constexpr double kilo = 1000.0;
constexpr double fewWatts = 10000.0; // below, in watts

const Format &formatOf(Quantity quantity)
{
    return formats.at(std::size_t(quantity));
}

/// A number that @p most bounds on both sides, in words.
QString bounded(double value, double most, int decimals, const QString &unit)
{
    QString text = Values::number(std::clamp(value, -most, most), decimals);
    if (value > most)
        text = QStringLiteral("> ") + Values::number(most, 0);
    else if (value < -most)
        text = QStringLiteral("< ") + Values::number(-most, 0);
    return text + QLatin1Char(' ') + unit;
}

Reading reading(const Measure &measure, Quantity quantity, std::optional<double> value)
{
    Reading result;
    result.text = Values::text(quantity, value);
    if (!value)
        return result;
    result.value = *value;
    result.state = *value == 0.0 ? Reading::State::Zero : Reading::State::Number;
    result.outsideLimits =
        (measure.low && *value < *measure.low) || (measure.high && *value > *measure.high);
    return result;
}

} // namespace

QString Values::noData()
{
    return QStringLiteral("no data");
}

int Values::decimalsOf(Quantity quantity)
{
    return formatOf(quantity).decimals;
}

QString Values::number(double value, int decimals)
{
    QString text = QString::number(value, 'f', std::clamp(decimals, 0, 6));
    const bool zero = std::none_of(text.cbegin(), text.cend(), [](QChar c) {
        return c >= QLatin1Char('1') && c <= QLatin1Char('9');
    });
    if (zero && text.startsWith(QLatin1Char('-')))
        text.remove(0, 1);
    return text;
}

QString Values::text(Quantity quantity, std::optional<double> value, int decimals)
{
    if (!value || !std::isfinite(*value))
        return noData();
    if (quantity == Quantity::BatteryRuntime)
        return timeLeft(value);
    const Format &format = formatOf(quantity);
    if (decimals < 0)
        decimals = format.decimals;
    if (quantity == Quantity::OutputPower && std::abs(*value) >= fewWatts)
        return bounded(*value / kilo, std::floor(format.most / kilo), 1, QStringLiteral("kW"));
    return bounded(*value, format.most, decimals, unitOf(quantity));
}

QString Values::timeLeft(std::optional<double> seconds)
{
    constexpr int minute = 60;
    constexpr int hour = 3600;
    if (!seconds || !std::isfinite(*seconds) || *seconds < 0.0)
        return noData();
    if (*seconds > formatOf(Quantity::BatteryRuntime).most)
        return QStringLiteral("> 99 h");
    // Rounded down: no time is promised that is not there.
    const int whole = int(*seconds);
    const auto twoDigits = [](int number) {
        return QStringLiteral("%1").arg(number, 2, 10, QLatin1Char('0'));
    };
    if (whole < 5 * minute)
        return QStringLiteral("%1:%2").arg(whole / minute).arg(twoDigits(whole % minute));
    if (whole < hour)
        return QStringLiteral("%1 min").arg(whole / minute);
    return QStringLiteral("%1 h %2 min").arg(whole / hour).arg(twoDigits(whole % hour / minute));
}

bool operator==(const Reading &a, const Reading &b)
{
    return a.state == b.state && a.value == b.value && a.text == b.text && a.phase == b.phase &&
           a.outsideLimits == b.outsideLimits;
}

Reading readingOf(const Snapshot &snapshot, Quantity quantity)
{
    const Measure &measure = snapshot.measure(quantity);
    Reading result = reading(measure, quantity, measure.value);
    result.phase = measure.phase;
    return result;
}

QVector<Reading> phaseReadingsOf(const Snapshot &snapshot, Quantity quantity)
{
    const Measure &measure = snapshot.measure(quantity);
    QVector<Reading> readings;
    for (const PhaseValue &phase : measure.phases) {
        Reading one = reading(measure, quantity, phase.value);
        one.phase = phase.name;
        readings.append(one);
    }
    return readings;
}
