// SPDX-License-Identifier: LicenseRef-all-rights-reserved

#include "scenario.h"

#include "nutmapping.h"

#include <algorithm>
#include <cmath>

namespace Scenario {

namespace {

constexpr ElementState standBy = {AlarmState::None, OperatingState::StandBy};
constexpr ElementState precharge = {AlarmState::None, OperatingState::Precharge};
constexpr ElementState calibration = {AlarmState::None, OperatingState::Calibration};
constexpr ElementState waiting = {AlarmState::None, OperatingState::WaitBatteryVoltage};
constexpr ElementState on = {AlarmState::None, OperatingState::On};
constexpr ElementState onBattery = {AlarmState::None, OperatingState::OnBattery};
constexpr ElementState onBypass = {AlarmState::None, OperatingState::OnBypass};
constexpr ElementState lost = {AlarmState::CommunicationLost, OperatingState::Unknown};

constexpr ElementState warning(ElementState state)
{
    return {AlarmState::Warning, state.operating};
}

constexpr ElementState anomaly(ElementState state)
{
    return {AlarmState::Anomaly, state.operating};
}

constexpr ElementState fault(ElementState state)
{
    return {AlarmState::Fault, state.operating};
}

constexpr ElementState locked(ElementState state)
{
    return {AlarmState::Locked, state.operating};
}

enum class Source { None, Inverter, Battery, Bypass }; // what feeds the output

struct Ramp
{
    double from;
    double to;
};

using Token = StatusToken;

template <typename... Tokens>
constexpr quint32 says(Tokens... tokens)
{
    return (0U | ... | quint32(tokens));
}

struct Step
{
    Phase phase;
    double seconds;
    quint32 tokens;
    const char *status; // in words, separated by '|'
    const char *alarms; // likewise
    Mains mains;
    Source source;
    Ramp load;   // percent
    Ramp charge; // percent
    ElementState system, rectifier, inverter, battery, bypass, connectedLoad;
};

// clang-format off
constexpr std::array<Step, phaseCount> story = {{
    {Phase::StandBy, 8, says(Token::Off), "Stand-by", "", Mains::Good, Source::None, {0, 0}, {96, 96},
     standBy, standBy, standBy, standBy, standBy, standBy},
    {Phase::Precharge, 8, says(Token::Starting), "Starting|Precharging the DC link", "", Mains::Good, Source::None, {0, 0}, {96, 96},
     precharge, precharge, standBy, standBy, standBy, standBy},
    {Phase::WaitBatteryVoltage, 8, says(Token::Starting), "Starting|Waiting for the battery voltage", "", Mains::Good, Source::None, {0, 0}, {96, 96},
     waiting, on, standBy, waiting, standBy, standBy},
    {Phase::Calibration, 12, says(Token::Starting, Token::Calibrating), "Starting|Calibrating the battery", "", Mains::Good, Source::None, {0, 0}, {96, 92},
     calibration, on, calibration, calibration, standBy, standBy},
    {Phase::Normal, 24, says(Token::OnLine, Token::Charging), "On line|Battery charging", "", Mains::Good, Source::Inverter, {5, 62}, {92, 98},
     on, on, on, on, standBy, on},
    {Phase::MainsOutOfTolerance, 12, says(Token::OnLine), "On line", "Input voltage too low", Mains::Low, Source::Inverter, {62, 58}, {98, 98},
     anomaly(on), anomaly(on), on, standBy, anomaly(standBy), on},
    {Phase::OnBattery, 36, says(Token::OnBattery, Token::Discharging), "On battery|Battery discharging", "Mains failure", Mains::Absent, Source::Battery, {58, 64}, {98, 20},
     warning(onBattery), warning(standBy), onBattery, onBattery, warning(standBy), onBattery},
    {Phase::LowBattery, 14, says(Token::OnBattery, Token::Discharging, Token::LowBattery), "On battery|Battery low", "Mains failure|Battery low", Mains::Absent, Source::Battery, {64, 64}, {20, 6},
     fault(onBattery), warning(standBy), onBattery, fault(onBattery), warning(standBy), warning(onBattery)},
    {Phase::Recharging, 28, says(Token::OnLine, Token::Charging), "On line|Battery charging", "", Mains::Good, Source::Inverter, {64, 60}, {6, 92},
     on, on, on, on, standBy, on},
    {Phase::Overload, 14, says(Token::OnLine, Token::Overload), "On line|Overload", "Output overload", Mains::Good, Source::Inverter, {60, 131}, {92, 94},
     anomaly(on), on, warning(on), on, standBy, anomaly(on)},
    {Phase::OnBypass, 14, says(Token::Bypass), "On bypass", "Load not protected", Mains::Good, Source::Bypass, {131, 78}, {94, 96},
     warning(onBypass), on, warning(standBy), on, onBypass, warning(onBypass)},
    {Phase::InverterFault, 12, says(Token::Bypass, Token::Alarm), "On bypass|Inverter fault", "Inverter fault|Load not protected", Mains::Good, Source::Bypass, {78, 74}, {96, 96},
     fault(onBypass), on, fault(standBy), standBy, onBypass, warning(onBypass)},
    {Phase::Locked, 10, says(Token::Locked, Token::Alarm), "Locked", "Locked after a fault", Mains::Good, Source::None, {0, 0}, {96, 96},
     locked(standBy), standBy, locked(standBy), standBy, locked(standBy), fault(standBy)},
    {Phase::CommunicationLost, 12, says(), "", "", Mains::Good, Source::None, {0, 0}, {96, 96},
     lost, lost, lost, lost, lost, lost},
    {Phase::Recovery, 20, says(Token::OnLine), "On line", "", Mains::Good, Source::Inverter, {20, 48}, {96, 96},
     on, on, on, standBy, standBy, on},
}};
// clang-format on

const Step &stepOf(Phase phase)
{
    return story.at(std::size_t(phase));
}

double between(Ramp ramp, double share)
{
    return ramp.from + (ramp.to - ramp.from) * share;
}

/// Between -1 and 1, so that no measured value stands quite still.
double swing(double seconds, double period)
{
    if (!std::isfinite(seconds))
        return 0.0;
    return std::sin(std::fmod(seconds, period) / period * 2.0 * 3.14159265358979);
}

QStringList texts(const char *joined)
{
    return QString::fromUtf8(joined).split(QLatin1Char('|'), Qt::SkipEmptyParts);
}

constexpr double ratedPower = 2700.0; // watt
constexpr double powerFactor = 0.9;

Measure percentage(double value)
{
    Measure measure;
    measure.value = value;
    measure.minimum = 0.0;
    measure.maximum = 100.0;
    return measure;
}

Measure within(std::optional<double> value, double minimum, double maximum)
{
    Measure measure;
    measure.value = value;
    measure.minimum = minimum;
    measure.maximum = maximum;
    return measure;
}

Measure mainsVoltage(double value)
{
    Measure measure = within(value, 180.0, 280.0);
    measure.nominal = 230.0;
    measure.low = 196.0;
    measure.high = 264.0;
    return measure;
}

Measure frequency(std::optional<double> value)
{
    Measure measure = within(value, 45.0, 55.0);
    measure.nominal = 50.0;
    return measure;
}

double lineVoltage(Mains mains, double seconds)
{
    switch (mains) {
    case Mains::Good:
        return 231.0 + 1.4 * swing(seconds, 11.0);
    case Mains::Low:
        return 187.0 + 2.2 * swing(seconds, 7.0);
    case Mains::Absent:
        break;
    }
    return 0.0;
}

void measureMains(Snapshot *snapshot, Mains mains, double seconds)
{
    const double voltage = lineVoltage(mains, seconds);
    snapshot->measure(Quantity::InputVoltage) = mainsVoltage(voltage);
    snapshot->measure(Quantity::BypassVoltage) = mainsVoltage(voltage);
    std::optional<double> hertz; // a dead line has no frequency
    if (mains != Mains::Absent)
        hertz = 50.0 + 0.03 * swing(seconds, 13.0);
    snapshot->measure(Quantity::InputFrequency) = frequency(hertz);
    snapshot->measure(Quantity::BypassFrequency) = frequency(hertz);
}

void measureOutput(Snapshot *snapshot, const Step &step, Mains mains, double load, double seconds)
{
    double voltage = 0.0;
    std::optional<double> hertz;
    if (step.source == Source::Bypass) {
        voltage = lineVoltage(mains, seconds);
        hertz = snapshot->value(Quantity::BypassFrequency);
    } else if (step.source != Source::None) {
        voltage = 230.0 + 0.3 * swing(seconds, 5.0);
        hertz = 50.0;
    }
    const double power = load / 100.0 * ratedPower;
    const double current = voltage > 0.0 ? power / (voltage * powerFactor) : 0.0;

    snapshot->measure(Quantity::Load) = percentage(load);
    snapshot->measure(Quantity::Load).high = 100.0;
    snapshot->measure(Quantity::OutputVoltage) = mainsVoltage(voltage);
    snapshot->measure(Quantity::OutputVoltage).low = 207.0;
    snapshot->measure(Quantity::OutputVoltage).high = 253.0;
    snapshot->measure(Quantity::OutputFrequency) = frequency(hertz);
    snapshot->measure(Quantity::OutputCurrent) = within(current, 0.0, 13.0);
    snapshot->measure(Quantity::OutputCurrent).nominal = 13.0;
    snapshot->measure(Quantity::OutputPower) = within(power, 0.0, ratedPower);
    snapshot->measure(Quantity::OutputPower).nominal = ratedPower;
    snapshot->measure(Quantity::Temperature) =
        within(25.0 + 0.12 * load + 0.4 * swing(seconds, 29.0), 0.0, 60.0);
    snapshot->measure(Quantity::Temperature).high = 50.0;
}

void measureBattery(Snapshot *snapshot, const Step &step, double load, double charge)
{
    const double drop = step.source == Source::Battery ? 0.025 * load : 0.0;
    std::optional<double> runtime; // without a load none can be foretold
    if (load > 0.0)
        runtime = std::min(5400.0, 1800.0 * (charge / 100.0) * (50.0 / load));

    snapshot->measure(Quantity::BatteryCharge) = percentage(charge);
    snapshot->measure(Quantity::BatteryCharge).low = 20.0;
    snapshot->measure(Quantity::BatteryVoltage) =
        within(66.0 + 16.0 * charge / 100.0 - drop, 60.0, 84.0);
    snapshot->measure(Quantity::BatteryVoltage).nominal = 72.0;
    snapshot->measure(Quantity::BatteryVoltage).low = 67.0;
    snapshot->measure(Quantity::BatteryRuntime) = within(runtime, 0.0, 5400.0);
    snapshot->measure(Quantity::BatteryRuntime).low = 180.0;
}

AlarmState alarmOf(Mains mains)
{
    switch (mains) {
    case Mains::Good:
        return AlarmState::None;
    case Mains::Low:
        return AlarmState::Anomaly;
    case Mains::Absent:
        break;
    }
    return AlarmState::Warning;
}

/// Shows mains that are not those of the snapshot's phase.
void showMains(Snapshot *snapshot, Mains mains)
{
    const QString failure = QStringLiteral("Mains failure");
    const QString low = QStringLiteral("Input voltage too low");
    for (const Element which : {Element::Rectifier, Element::Bypass}) {
        AlarmState &alarm = snapshot->element(which).alarm;
        if (alarm < AlarmState::Fault) // faults and locks have other causes
            alarm = alarmOf(mains);
    }
    snapshot->system.alarm = std::max(snapshot->system.alarm, alarmOf(mains));
    snapshot->alarms.removeAll(failure);
    snapshot->alarms.removeAll(low);
    if (mains == Mains::Absent)
        snapshot->alarms.prepend(failure);
    else if (mains == Mains::Low)
        snapshot->alarms.prepend(low);
    else if (snapshot->tokens.testFlag(Token::OnBattery))
        snapshot->alarms.prepend(QStringLiteral("Battery run by command"));
}

Identity simulatedIdentity()
{
    Identity identity;
    identity.manufacturer = QStringLiteral("KivWidgets");
    identity.model = QStringLiteral("On-line 3 kVA");
    identity.serial = QStringLiteral("SIM-0001");
    identity.firmware = QStringLiteral("1.0");
    identity.batteryDate = QStringLiteral("2024-05-17");
    identity.nominalPower = ratedPower / powerFactor;
    identity.nominalRealPower = ratedPower;
    return identity;
}

/// What a server would give for @p snapshot.
QHash<QString, QString> variablesOf(const Snapshot &snapshot)
{
    QHash<QString, QString> variables;
    variables.insert(QStringLiteral("ups.mfr"), snapshot.identity.manufacturer);
    variables.insert(QStringLiteral("ups.model"), snapshot.identity.model);
    variables.insert(QStringLiteral("ups.serial"), snapshot.identity.serial);
    variables.insert(QStringLiteral("ups.firmware"), snapshot.identity.firmware);
    variables.insert(QStringLiteral("battery.date"), snapshot.identity.batteryDate);
    variables.insert(QStringLiteral("ups.power.nominal"),
                     QString::number(*snapshot.identity.nominalPower));
    variables.insert(QStringLiteral("ups.realpower.nominal"),
                     QString::number(*snapshot.identity.nominalRealPower));
    QStringList words;
    for (int i = 0; i < nutTokenCount; ++i) {
        const auto token = Token(1U << i);
        if (snapshot.tokens.testFlag(token))
            words += wordOf(token);
    }
    variables.insert(QStringLiteral("ups.status"), words.join(QLatin1Char(' ')));
    for (int i = 0; i < quantityCount; ++i) {
        if (const std::optional<double> value = snapshot.value(Quantity(i)))
            variables.insert(nutVariableOf(Quantity(i)), QString::number(*value, 'f', 1));
    }
    return variables;
}

/// A place in the story: the phase and how much of it has passed, from 0 to 1.
struct Place
{
    const Step *step;
    double share;
};

Place placeAt(double seconds)
{
    double rest = std::isfinite(seconds) ? std::fmod(seconds, length()) : 0.0;
    if (rest < 0.0)
        rest += length();
    for (const Step &step : story) {
        if (rest < step.seconds)
            return {&step, rest / step.seconds};
        rest -= step.seconds;
    }
    return {&story.back(), 1.0};
}

} // namespace

double length()
{
    double sum = 0.0;
    for (const Step &step : story)
        sum += step.seconds;
    return sum;
}

double startOf(Phase phase)
{
    double sum = 0.0;
    for (const Step &step : story) {
        if (step.phase == phase)
            break;
        sum += step.seconds;
    }
    return sum;
}

Phase phaseAt(double seconds)
{
    return placeAt(seconds).step->phase;
}

Mains mainsAt(double seconds)
{
    return placeAt(seconds).step->mains;
}

double chargingAt(double charge)
{
    const bool low = charge < stepOf(Phase::Recharging).charge.to;
    const Step &step = stepOf(low ? Phase::Recharging : Phase::Normal);
    const double share = (charge - step.charge.from) / (step.charge.to - step.charge.from);
    // Stay clear of the end, where the next phase begins.
    return startOf(step.phase) + step.seconds * std::clamp(share, 0.0, 0.99);
}

Snapshot snapshotAt(double seconds)
{
    const Place place = placeAt(seconds);
    return snapshotIn(place.step->phase, between(place.step->load, place.share),
                      between(place.step->charge, place.share), seconds);
}

Snapshot snapshotIn(Phase phase, double load, double charge, double seconds,
                    std::optional<Mains> otherMains)
{
    const QString name = QStringLiteral("Simulated UPS");
    if (phase == Phase::CommunicationLost) {
        Snapshot silent = Snapshot::lost(name, QStringLiteral("simulated loss of communication"));
        silent.simulated = true;
        return silent;
    }

    const Step &step = stepOf(phase);
    Snapshot snapshot;
    snapshot.link = Snapshot::Link::Ok;
    snapshot.simulated = true;
    snapshot.name = name;
    if (snapshot.tokens.testFlag(Token::Alarm))
        snapshot.alarmTexts = snapshot.alarms.mid(0, 1); // the rest follows from the tokens
    snapshot.identity = simulatedIdentity();
    snapshot.tokens = StatusTokens(QFlag(int(step.tokens)));
    snapshot.status = texts(step.status);
    snapshot.alarms = texts(step.alarms);
    snapshot.beeperEnabled = true;
    snapshot.system = step.system;
    snapshot.element(Element::Rectifier) = step.rectifier;
    snapshot.element(Element::Inverter) = step.inverter;
    snapshot.element(Element::Battery) = step.battery;
    snapshot.element(Element::Bypass) = step.bypass;
    snapshot.element(Element::Load) = step.connectedLoad;
    const Mains mains = otherMains.value_or(step.mains);
    if (mains != step.mains)
        showMains(&snapshot, mains);
    measureMains(&snapshot, mains, seconds);
    measureOutput(&snapshot, step, mains, load, seconds);
    measureBattery(&snapshot, step, load, charge);
    snapshot.variables = variablesOf(snapshot);
    return snapshot;
}

} // namespace Scenario
