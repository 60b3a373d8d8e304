// SPDX-License-Identifier: LicenseRef-all-rights-reserved

#include "scale.h"

#include <algorithm>
#include <cmath>
#include <initializer_list>
#include <tuple>
#include <vector>

namespace {

constexpr double minute = 60.0;

enum class Kind {
    Percent,
    MainsVoltage,
    Frequency,
    BatteryVoltage,
    FromZero,
    Runtime,
    Temperature
};

Kind kindOf(Quantity quantity)
{
    switch (quantity) {
    case Quantity::Load:
    case Quantity::BatteryCharge:
        return Kind::Percent;
    case Quantity::InputVoltage:
    case Quantity::BypassVoltage:
    case Quantity::OutputVoltage:
        return Kind::MainsVoltage;
    case Quantity::InputFrequency:
    case Quantity::BypassFrequency:
    case Quantity::OutputFrequency:
        return Kind::Frequency;
    case Quantity::BatteryVoltage:
        return Kind::BatteryVoltage;
    case Quantity::BatteryRuntime:
        return Kind::Runtime;
    case Quantity::OutputCurrent:
    case Quantity::OutputPower:
        return Kind::FromZero;
    case Quantity::Temperature:
        return Kind::Temperature;
    }
    return Kind::Percent;
}

bool hasNominal(Kind kind)
{
    return kind == Kind::MainsVoltage || kind == Kind::Frequency || kind == Kind::BatteryVoltage;
}

struct NominalRules
{
    double least, most;           // what counts as a nominal value
    double below, above;          // the scale's ends, as shares of it
    std::vector<double> standard; // stands in, ascending
    double usual;                 // while nothing at all is known
};

const NominalRules &rulesOf(Kind kind)
{
    static const NominalRules mains = {20, 1000, 0.75, 1.25, {100, 120, 230, 400, 480, 690}, 230};
    static const NominalRules frequency = {10, 1000, 0.9, 1.1, {50, 60, 400}, 50};
    static const NominalRules battery = {
        2, 2000, 0.8, 1.25, {12, 24, 36, 48, 72, 96, 120, 144, 192, 240, 288, 384, 480}, 48};
    switch (kind) {
    case Kind::Frequency:
        return frequency;
    case Kind::BatteryVoltage:
        return battery;
    default:
        return mains;
    }
}

/// The standard value that @p value is nearest to in ratio; none for a dead line.
std::optional<double> standardNear(const NominalRules &rules, double value)
{
    const double lowest = rules.standard.front();
    const double highest = rules.standard.back();
    if (!(value > lowest * 0.6) || value > highest * 1.4)
        return std::nullopt;
    return *std::min_element(
        rules.standard.begin(), rules.standard.end(), [value](double a, double b) {
            return std::abs(std::log(value / a)) < std::abs(std::log(value / b));
        });
}

/// Ends on whole numbers, or on fives where the scale is long.
Scale rounded(Scale scale)
{
    constexpr double longScale = 60.0;
    const double step = scale.maximum - scale.minimum >= longScale ? 5.0 : 1.0;
    constexpr double inexact = 1e-6; // 1.1 times 50 is a little more than 55
    scale.minimum = std::floor(scale.minimum / step + inexact) * step;
    scale.maximum =
        std::max(std::ceil(scale.maximum / step - inexact) * step, scale.minimum + step);
    return scale;
}

/// Keeps what lies on the scale alone.
Scale marked(Scale scale, const Measure &measure)
{
    const auto inside = [&scale](std::optional<double> mark) {
        return mark && *mark >= scale.minimum && *mark <= scale.maximum ? mark : std::nullopt;
    };
    scale.low = inside(measure.low);
    scale.high = inside(measure.high);
    if (scale.low && scale.high && *scale.low >= *scale.high)
        scale.low = scale.high = std::nullopt;
    scale.nominal = inside(scale.nominal);
    return scale;
}

Scale aroundNominal(double nominal, const NominalRules &rules, const Measure &measure)
{
    Scale scale;
    scale.nominal = nominal;
    scale.minimum = nominal * rules.below;
    scale.maximum = nominal * rules.above;
    // Limits widen the scale, unless they are no limits of such a nominal value.
    const double widest = nominal * 0.5;
    for (const std::optional<double> &end : {measure.low, measure.minimum}) {
        if (end && *end < nominal && *end >= nominal - widest)
            scale.minimum = std::min(scale.minimum, *end);
    }
    for (const std::optional<double> &end : {measure.high, measure.maximum}) {
        if (end && *end > nominal && *end <= nominal + widest)
            scale.maximum = std::max(scale.maximum, *end);
    }
    return rounded(scale);
}

/// The first of 1, 2, 5, 10, 20 … that is not below @p value.
double roundEnd(double value)
{
    constexpr double largest = 1e9;
    double end = 1.0;
    while (end < value && end < largest) {
        const double leading = end / std::pow(10.0, std::floor(std::log10(end) + 1e-9));
        end *= leading > 1.5 && leading < 2.5 ? 2.5 : 2.0;
    }
    return end;
}

double runtimeEnd(double seconds)
{
    for (const double end : {30 * minute, 60 * minute, 120 * minute, 240 * minute, 480 * minute}) {
        if (seconds <= end)
            return end;
    }
    return 24 * 60 * minute;
}

/// Quantities that share their nominal value, where the UPS gives but one.
const std::vector<Quantity> &relativesOf(Kind kind)
{
    static const std::vector<Quantity> voltages = {Quantity::InputVoltage, Quantity::OutputVoltage,
                                                   Quantity::BypassVoltage};
    static const std::vector<Quantity> frequencies = {
        Quantity::InputFrequency, Quantity::OutputFrequency, Quantity::BypassFrequency};
    static const std::vector<Quantity> battery = {Quantity::BatteryVoltage};
    if (kind == Kind::BatteryVoltage)
        return battery;
    return kind == Kind::Frequency ? frequencies : voltages;
}

std::size_t at(Quantity quantity)
{
    return std::size_t(quantity);
}

} // namespace

QVector<ScaleArc> Scale::limitArcs() const
{
    QVector<ScaleArc> arcs;
    if (low && *low > minimum)
        arcs.append({minimum, *low});
    if (high && *high < maximum)
        arcs.append({*high, maximum});
    return arcs;
}

double Scale::shareOf(double value) const
{
    return std::clamp((value - minimum) / (maximum - minimum), 0.0, 1.0);
}

bool operator==(const Scale &a, const Scale &b)
{
    return std::tie(a.minimum, a.maximum, a.nominal, a.low, a.high, a.isKnown) ==
           std::tie(b.minimum, b.maximum, b.nominal, b.low, b.high, b.isKnown);
}

bool operator!=(const Scale &a, const Scale &b)
{
    return !(a == b);
}

ScaleBook::ScaleBook()
{
    const Snapshot nothing;
    for (int i = 0; i < quantityCount; ++i)
        scales.at(std::size_t(i)) = scaleOf(nothing, Quantity(i));
}

void ScaleBook::take(const Snapshot &snapshot, const Snapshot &before)
{
    const auto saysNothing = [](const Snapshot &one) {
        return one.isLost() || one.tokens.testFlag(StatusToken::Waiting);
    };
    if (saysNothing(snapshot))
        return;
    // Quantities with nominal values take those of others.
    bool all = saysNothing(before);
    std::array<bool, quantityCount> differs = {};
    for (int i = 0; i < quantityCount; ++i) {
        differs.at(std::size_t(i)) =
            all || !(snapshot.measure(Quantity(i)) == before.measure(Quantity(i)));
        all = all || (differs.at(std::size_t(i)) && hasNominal(kindOf(Quantity(i))));
    }
    for (int i = 0; all && i < quantityCount; ++i)
        learnStandIn(snapshot, Quantity(i));
    for (int i = 0; i < quantityCount; ++i) {
        if (all || differs.at(std::size_t(i)))
            scales.at(std::size_t(i)) = scaleOf(snapshot, Quantity(i));
    }
}

void ScaleBook::learnStandIn(const Snapshot &snapshot, Quantity quantity)
{
    const std::optional<double> value = snapshot.value(quantity);
    if (!value || !hasNominal(kindOf(quantity)))
        return;
    const NominalRules &rules = rulesOf(kindOf(quantity));
    std::optional<double> &standIn = standIns.at(at(quantity));
    if (standIn && *value <= *standIn * rules.above)
        return;
    if (const std::optional<double> near = standardNear(rules, *value))
        standIn = near;
}

Scale ScaleBook::scale(Quantity quantity) const
{
    return scales.at(at(quantity));
}

std::optional<double> ScaleBook::nominalOf(const Snapshot &snapshot, Quantity quantity) const
{
    const Kind kind = kindOf(quantity);
    const NominalRules &rules = rulesOf(kind);
    const auto given = [&](Quantity which) -> std::optional<double> {
        const std::optional<double> nominal = snapshot.measure(which).nominal;
        return nominal && *nominal >= rules.least && *nominal <= rules.most ? nominal
                                                                            : std::nullopt;
    };
    if (const std::optional<double> own = given(quantity))
        return own;
    // What it measures itself counts more than what others are made for.
    const std::optional<double> &standIn = standIns.at(at(quantity));
    for (const Quantity relative : relativesOf(kind)) {
        const std::optional<double> nominal = given(relative);
        const bool fits = nominal && (!standIn || (*standIn >= *nominal * rules.below &&
                                                   *standIn <= *nominal * rules.above));
        if (fits)
            return nominal;
    }
    if (standIn)
        return standIn;
    for (const Quantity relative : relativesOf(kind)) {
        if (standIns.at(at(relative)))
            return standIns.at(at(relative));
    }
    return std::nullopt;
}

Scale ScaleBook::scaleOf(const Snapshot &snapshot, Quantity quantity)
{
    const Measure &measure = snapshot.measure(quantity);
    double &end = ends.at(at(quantity));
    Scale scale;
    // What was known once stays known.
    scale.isKnown = scales.at(at(quantity)).isKnown || measure.value || measure.minimum ||
                    measure.maximum || measure.low || measure.high;
    switch (kindOf(quantity)) {
    case Kind::Percent:
        scale.isKnown = true;
        break;
    case Kind::Temperature:
        scale.maximum = std::max(60.0, std::min(measure.high.value_or(0.0) * 1.2, 150.0));
        scale = rounded(scale);
        break;
    case Kind::Runtime:
        end = std::max(end, runtimeEnd(measure.value.value_or(0.0)));
        scale.maximum = end;
        break;
    case Kind::FromZero:
        if (measure.nominal && *measure.nominal > 0.0 && *measure.nominal <= 1e8) {
            scale.isKnown = true;
            scale.nominal = measure.nominal;
            scale.maximum = *measure.nominal * 1.25;
            scale = rounded(scale);
        } else {
            end = std::max(end, roundEnd(measure.value.value_or(0.0)));
            scale.maximum = std::max(end, 10.0);
        }
        break;
    case Kind::MainsVoltage:
    case Kind::Frequency:
    case Kind::BatteryVoltage: {
        const NominalRules &rules = rulesOf(kindOf(quantity));
        const std::optional<double> nominal = nominalOf(snapshot, quantity);
        const bool isKnown = scale.isKnown || nominal;
        scale = aroundNominal(nominal.value_or(rules.usual), rules, measure);
        // A guess makes a scale, but no mark.
        scale.nominal = nominal;
        scale.isKnown = isKnown;
        break;
    }
    }
    return marked(scale, measure);
}
