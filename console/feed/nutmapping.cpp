// SPDX-License-Identifier: LicenseRef-all-rights-reserved

#include "nutmapping.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <unordered_map>
#include <vector>

namespace {

using Alarm = AlarmState;
using Op = OperatingState;

/// What a status token says of one element: what it is doing, how it is doing, both or nothing.
struct Effect
{
    Op operating = Op::Unknown; // says nothing
    Alarm alarm = Alarm::None;  // likewise
};

constexpr Effect nothing = {};

constexpr Effect is(Op operating, Alarm alarm = Alarm::None)
{
    return {operating, alarm};
}

constexpr Effect has(Alarm alarm)
{
    return {Op::Unknown, alarm};
}

struct StatusRow
{
    const char *tokens; // all of them must be there
    const char *words;  // for the screen; none where the tokens' own rows say it
    Effect system, rectifier, inverter, battery, bypass, load;
};

// What the tokens of ups.status mean, for a UPS that works by double conversion. From top to bottom
// a later row overrides what an element is doing; the worst of all alarms counts, and the UPS as a
// whole is never better than its worst element.
// clang-format off
constexpr StatusRow statusTable[] = {
    //           words                  system                           rectifier                        inverter                         battery              bypass            load
    {"OL",      "On line",             is(Op::On),                      is(Op::On),                      is(Op::On),                      is(Op::StandBy),     nothing,          is(Op::On)},
    {"CHRG",    "Battery charging",    nothing,                         nothing,                         nothing,                         is(Op::On),          nothing,          nothing},
    {"DISCHRG", "Battery discharging", nothing,                         nothing,                         nothing,                         is(Op::OnBattery),   nothing,          nothing},
    {"CAL",     "Calibration",         is(Op::Calibration),             nothing,                         nothing,                         is(Op::Calibration), nothing,          nothing},
    {"OB",      "On battery",          is(Op::OnBattery),               is(Op::StandBy, Alarm::Warning), is(Op::OnBattery),               is(Op::OnBattery),   nothing,          is(Op::OnBattery)},
    {"OFF",     "Output off",          is(Op::StandBy),                 nothing,                         is(Op::StandBy),                 nothing,             nothing,          is(Op::StandBy)},
    {"BYPASS",  "On bypass",           is(Op::OnBypass, Alarm::Warning), nothing,                        is(Op::StandBy, Alarm::Warning), nothing,             is(Op::OnBypass), is(Op::OnBypass, Alarm::Warning)},
    {"TRIM",    "Input voltage high",  nothing,                         has(Alarm::Warning),             nothing,                         nothing,             nothing,          nothing},
    {"BOOST",   "Input voltage low",   nothing,                         has(Alarm::Warning),             nothing,                         nothing,             nothing,          nothing},
    {"HB",      "Battery high",        nothing,                         nothing,                         nothing,                         has(Alarm::Warning), nothing,          nothing},
    {"LB",      "Battery low",         nothing,                         nothing,                         nothing,                         has(Alarm::Anomaly), nothing,          nothing},
    {"RB",      "Replace the battery", nothing,                         nothing,                         nothing,                         has(Alarm::Anomaly), nothing,          nothing},
    {"OB LB",   "",                    has(Alarm::Fault),               nothing,                         nothing,                         has(Alarm::Fault),   nothing,          has(Alarm::Warning)},
    {"OVER",    "Overload",            nothing,                         nothing,                         has(Alarm::Warning),             nothing,             nothing,          has(Alarm::Anomaly)},
    {"ALARM",   "Alarm",               has(Alarm::Fault),               nothing,                         nothing,                         nothing,             nothing,          nothing},
    {"FSD",     "Forced shutdown",     has(Alarm::Fault),               nothing,                         nothing,                         nothing,             nothing,          has(Alarm::Fault)},
};

// Where values and ranges come from: the first of the variables, separated by '|', that has a
// number. A number in the place of a variable stands for itself.
struct ValueRow
{
    Quantity quantity;
    const char *value, *minimum, *maximum, *nominal, *low, *high;
};

constexpr ValueRow valueTable[] = {
    {Quantity::Load,            "ups.load", "0", "100", "", "", "ups.load.high"},
    {Quantity::BatteryCharge,   "battery.charge", "0", "100", "", "battery.charge.low|battery.charge.warning", ""},
    {Quantity::BatteryVoltage,  "battery.voltage", "battery.voltage.low", "battery.voltage.high", "battery.voltage.nominal", "", ""},
    {Quantity::BatteryRuntime,  "battery.runtime", "0", "", "", "battery.runtime.low", ""},
    {Quantity::InputVoltage,    "input.voltage",
        "input.transfer.low|input.voltage.low.critical|input.voltage.low.warning",
        "input.transfer.high|input.voltage.high.critical|input.voltage.high.warning",
        "input.voltage.nominal",
        "input.voltage.low.warning|input.voltage.low.critical|input.transfer.low",
        "input.voltage.high.warning|input.voltage.high.critical|input.transfer.high"},
    {Quantity::InputFrequency,  "input.frequency", "input.frequency.low", "input.frequency.high", "input.frequency.nominal", "", ""},
    {Quantity::BypassVoltage,   "input.bypass.voltage", "", "", "input.bypass.voltage.nominal", "", ""},
    {Quantity::BypassFrequency, "input.bypass.frequency", "", "", "input.bypass.frequency.nominal", "", ""},
    {Quantity::OutputVoltage,   "output.voltage", "", "", "output.voltage.nominal", "", ""},
    {Quantity::OutputFrequency, "output.frequency", "", "", "output.frequency.nominal", "", ""},
    {Quantity::OutputCurrent,   "output.current", "0", "output.current.nominal", "output.current.nominal", "", ""},
    {Quantity::OutputPower,     "ups.realpower", "0", "ups.realpower.nominal", "ups.realpower.nominal", "", ""},
    {Quantity::Temperature,     "ups.temperature", "", "", "", "", ""},
};
// clang-format on

// Where the values of phases come from, if not from "output.L1.current" and the like: '*' stands
// for L1, L2, L3, and '#' for L1-L2, L2-L3, L3-L1. The first alternative that gives any counts.
struct PhaseRow
{
    Quantity quantity;
    const char *names;
};

constexpr PhaseRow phaseTable[] = {
    {Quantity::Load, "ups.*.load|output.*.power.percent|output.*.realpower.percent"},
    {Quantity::InputVoltage, "input.*-N.voltage|input.*.voltage|input.#.voltage"},
    {Quantity::BypassVoltage,
     "input.bypass.*-N.voltage|input.bypass.*.voltage|input.bypass.#.voltage"},
    {Quantity::OutputVoltage, "output.*-N.voltage|output.*.voltage|output.#.voltage"},
    {Quantity::OutputCurrent, "output.*.current"},
    {Quantity::OutputPower, "ups.*.realpower|output.*.realpower"},
};

constexpr int phaseCount = 3;
constexpr std::array<const char *, phaseCount> singlePhases = {"L1", "L2", "L3"};
constexpr std::array<const char *, phaseCount> phasePairs = {"L1-L2", "L2-L3", "L3-L1"};

/// What @p make makes of a text of the tables, once for each text and thread.
template <typename Made>
const Made &madeOnce(const char *text, Made (*make)(const QString &text))
{
    thread_local std::unordered_map<const char *, Made> known;
    auto found = known.find(text);
    if (found == known.end())
        found = known.emplace(text, make(QString::fromLatin1(text))).first;
    return found->second;
}

/// One of several variables to take a number from, or a number that stands for itself.
struct Alternative
{
    QString variable;
    std::optional<double> literal;
};

const std::vector<Alternative> &alternativesOf(const char *text)
{
    return madeOnce<std::vector<Alternative>>(text, [](const QString &all) {
        std::vector<Alternative> alternatives;
        const QStringList names = all.split(QLatin1Char('|'), Qt::SkipEmptyParts);
        for (const QString &name : names)
            alternatives.push_back({name, nutNumber(name)});
        return alternatives;
    });
}

QString firstText(const NutVariables &variables, const char *alternatives)
{
    for (const Alternative &alternative : alternativesOf(alternatives)) {
        QString text = plainText(variables.value(alternative.variable));
        if (!text.isEmpty())
            return text;
    }
    return QString();
}

std::optional<double> firstNumber(const NutVariables &variables, const char *alternatives)
{
    for (const Alternative &alternative : alternativesOf(alternatives)) {
        const std::optional<double> number = alternative.literal
                                                 ? alternative.literal
                                                 : nutNumber(variables.value(alternative.variable));
        if (number)
            return number;
    }
    return std::nullopt;
}

Measure measureOf(const NutVariables &variables, const ValueRow &row)
{
    Measure measure;
    measure.value = firstNumber(variables, row.value);
    measure.minimum = firstNumber(variables, row.minimum);
    measure.maximum = firstNumber(variables, row.maximum);
    measure.nominal = firstNumber(variables, row.nominal);
    measure.low = firstNumber(variables, row.low);
    measure.high = firstNumber(variables, row.high);
    // A range that is none counts as unknown.
    if (measure.minimum && measure.maximum && *measure.minimum >= *measure.maximum)
        measure.minimum = measure.maximum = std::nullopt;
    return measure;
}

/// The variables of the phases, as one alternative gives them.
using PhaseVariables = QVector<QPair<QString, QString>>; // phase and variable

const std::vector<PhaseVariables> &phaseVariablesOf(const char *text)
{
    return madeOnce<std::vector<PhaseVariables>>(text, [](const QString &all) {
        std::vector<PhaseVariables> alternatives;
        const QStringList names = all.split(QLatin1Char('|'), Qt::SkipEmptyParts);
        for (const QString &name : names) {
            const bool single = name.contains(QLatin1Char('*'));
            PhaseVariables variables;
            for (const char *phase : single ? singlePhases : phasePairs) {
                QString variable = name;
                variable.replace(QLatin1Char(single ? '*' : '#'), QLatin1String(phase));
                variables.append({QString::fromLatin1(phase), variable});
            }
            alternatives.push_back(variables);
        }
        return alternatives;
    });
}

QVector<PhaseValue> phasesOf(const NutVariables &variables, const char *alternatives)
{
    QVector<PhaseValue> phases;
    for (const PhaseVariables &names : phaseVariablesOf(alternatives)) {
        for (const auto &[phase, variable] : names) {
            if (const std::optional<double> number = nutNumber(variables.value(variable)))
                phases.append({phase, *number});
        }
        if (!phases.isEmpty())
            break;
    }
    return phases;
}

double sumOf(const QVector<PhaseValue> &phases)
{
    double sum = 0.0;
    for (const PhaseValue &phase : phases)
        sum += phase.value;
    return sum;
}

bool isVoltage(Quantity quantity)
{
    return unitOf(quantity) == QLatin1String("V");
}

/// The nominal value and the limits may be those between two phases while the values are those to
/// neutral, or the other way round.
void fitToPhases(Measure *measure, double mean)
{
    if (!measure->nominal || *measure->nominal <= 0.0 || mean <= 0.0)
        return;
    const double chained = std::sqrt(3.0);
    double best = 1.0;
    for (const double factor : {chained, 1.0 / chained}) {
        if (std::abs(std::log(mean / (*measure->nominal * factor))) <
            std::abs(std::log(mean / (*measure->nominal * best))))
            best = factor;
    }
    for (std::optional<double> *number :
         {&measure->nominal, &measure->minimum, &measure->maximum, &measure->low, &measure->high}) {
        if (*number)
            **number *= best;
    }
}

/// Takes the phases in, the worst first: of voltages the one furthest from the nominal value, or
/// from the others; else the highest.
void takePhases(Measure *measure, Quantity quantity, const NutVariables &variables,
                const char *names)
{
    measure->phases = phasesOf(variables, names);
    if (measure->phases.isEmpty())
        return;
    const double mean = sumOf(measure->phases) / double(measure->phases.size());
    const bool voltage = isVoltage(quantity);
    if (voltage && !measure->value)
        fitToPhases(measure, mean);
    const double middle = measure->nominal.value_or(mean);
    std::stable_sort(measure->phases.begin(), measure->phases.end(),
                     [=](const PhaseValue &a, const PhaseValue &b) {
                         if (voltage)
                             return std::abs(a.value - middle) > std::abs(b.value - middle);
                         return a.value > b.value;
                     });
    if (measure->value)
        return;
    if (quantity == Quantity::OutputPower) {
        // Powers add up, but a part of them is not the whole.
        const double sum = sumOf(measure->phases);
        if (measure->phases.size() == phaseCount && std::isfinite(sum))
            measure->value = sum;
        return;
    }
    measure->value = measure->phases.first().value;
    measure->phase = measure->phases.first().name;
}

Identity identityOf(const NutVariables &variables)
{
    Identity identity;
    identity.manufacturer = firstText(variables, "ups.mfr|device.mfr");
    identity.model = firstText(variables, "ups.model|device.model");
    identity.serial = firstText(variables, "ups.serial|device.serial");
    identity.firmware = firstText(variables, "ups.firmware|ups.firmware.aux");
    identity.batteryDate = firstText(variables, "battery.date|battery.mfr.date");
    identity.nominalPower = firstNumber(variables, "ups.power.nominal");
    identity.nominalRealPower = firstNumber(variables, "ups.realpower.nominal");
    return identity;
}

/// The UPS's alarms one by one, as far as they end with "!".
QStringList alarmTextsOf(const QString &text)
{
    constexpr int most = 16;
    QStringList texts;
    decltype(text.size()) begin = 0;
    while (begin < text.size()) {
        const auto mark = text.indexOf(QLatin1String("! "), begin);
        const bool last = mark < 0 || texts.size() == most - 1;
        const auto end = last ? text.size() : mark + 1;
        const QString one = text.mid(begin, end - begin).trimmed();
        if (!one.isEmpty())
            texts.append(one);
        begin = end;
    }
    texts.removeDuplicates();
    return texts;
}

void apply(ElementState *state, const Effect &effect)
{
    if (effect.operating != Op::Unknown)
        state->operating = effect.operating;
    state->alarm = std::max(state->alarm, effect.alarm);
}

void apply(Snapshot *snapshot, const StatusRow &row)
{
    apply(&snapshot->system, row.system);
    apply(&snapshot->element(Element::Rectifier), row.rectifier);
    apply(&snapshot->element(Element::Inverter), row.inverter);
    apply(&snapshot->element(Element::Battery), row.battery);
    apply(&snapshot->element(Element::Bypass), row.bypass);
    apply(&snapshot->element(Element::Load), row.load);
}

bool raisesAlarm(const StatusRow &row)
{
    for (const Effect &effect :
         {row.system, row.rectifier, row.inverter, row.battery, row.bypass, row.load}) {
        if (effect.alarm != Alarm::None)
            return true;
    }
    return false;
}

void setUnknown(Snapshot *snapshot)
{
    const ElementState unknown = {Alarm::None, Op::Unknown};
    snapshot->system = unknown;
    snapshot->elements.fill(unknown);
}

void takeStatus(Snapshot *snapshot, const QStringList &tokens)
{
    QStringList untold = tokens;
    for (const StatusRow &row : statusTable) {
        const QStringList &needed = madeOnce<QStringList>(
            row.tokens, [](const QString &all) { return all.split(QLatin1Char(' ')); });
        const bool holds = std::all_of(needed.begin(), needed.end(), [&](const QString &token) {
            return tokens.contains(token);
        });
        if (!holds)
            continue;
        apply(snapshot, row);
        const QString words = QString::fromLatin1(row.words);
        if (words.isEmpty())
            continue;
        snapshot->status += words;
        untold.removeAll(needed.first());
        if (raisesAlarm(row))
            snapshot->alarms += words;
    }
    snapshot->status += untold;
}

/// The UPS's own words instead of the plain "Alarm".
void takeAlarmText(Snapshot *snapshot, const QString &text)
{
    snapshot->alarmTexts = alarmTextsOf(text);
    if (snapshot->alarmTexts.isEmpty())
        return;
    snapshot->alarms.removeAll(QStringLiteral("Alarm"));
    snapshot->alarms = snapshot->alarmTexts + snapshot->alarms;
}

/// The whole is as bad as its worst element; and since an alarm is only shown together with what an
/// element is doing, one that raises an alarm and does not say is taken to be on.
void roundOff(Snapshot *snapshot)
{
    const auto showAlarm = [](ElementState *state) {
        if (state->alarm != Alarm::None && state->operating == Op::Unknown)
            state->operating = Op::On;
    };
    for (ElementState &element : snapshot->elements) {
        snapshot->system.alarm = std::max(snapshot->system.alarm, element.alarm);
        showAlarm(&element);
    }
    showAlarm(&snapshot->system);
}

/// Whether plainText() would change nothing; false where that is not seen at once.
bool isPlain(const QString &text)
{
    ushort before = ' ';
    for (const QChar c : text) {
        const ushort code = c.unicode();
        if (code < 0x20 || code >= 0x7f || (code == ' ' && before == ' '))
            return false;
        before = code;
    }
    return before != ' ' || text.isEmpty();
}

/// Shares the texts, and where all of them are plain the whole.
NutVariables plainVariables(const NutVariables &variables)
{
    bool plain = true;
    for (auto one = variables.cbegin(); plain && one != variables.cend(); ++one)
        plain = isPlain(one.key()) && isPlain(one.value());
    if (plain)
        return variables;
    NutVariables texts;
    for (auto one = variables.cbegin(); one != variables.cend(); ++one)
        texts.insert(plainText(one.key()), plainText(one.value()));
    return texts;
}

std::optional<bool> beeperOf(const NutVariables &variables)
{
    const QString text = variables.value(QStringLiteral("ups.beeper.status"));
    if (text == QLatin1String("enabled"))
        return true;
    if (text == QLatin1String("disabled") || text == QLatin1String("muted"))
        return false;
    return std::nullopt;
}

} // namespace

QString plainText(const QString &text)
{
    // Most texts are plain already, and stay shared.
    if (isPlain(text))
        return text;
    QString plain;
    plain.reserve(text.size());
    for (const QChar c : text) {
        switch (c.category()) {
        case QChar::Other_Control:
        case QChar::Separator_Line:
        case QChar::Separator_Paragraph:
            plain += QLatin1Char(' ');
            break;
        case QChar::Other_Format:
            break;
        default:
            plain += c;
        }
    }
    return plain.simplified();
}

std::optional<double> nutNumber(const QString &text)
{
    if (text.isEmpty())
        return std::nullopt;
    const QByteArray digits = text.trimmed().toLatin1();
    bool ok = false;
    const double number = digits.toDouble(&ok);
    // Qt takes blanks for 0.
    if (!ok || digits.isEmpty() || !std::isfinite(number))
        return std::nullopt;
    return number;
}

QString nutVariableOf(Quantity quantity)
{
    for (const ValueRow &row : valueTable) {
        if (row.quantity == quantity)
            return QString::fromLatin1(row.value);
    }
    return QString();
}

Snapshot snapshotOf(const QString &upsName, const NutVariables &variables)
{
    Snapshot snapshot;
    snapshot.link = Snapshot::Link::Ok;
    snapshot.name = upsName;
    setUnknown(&snapshot);

    const QString alarmText = firstText(variables, "ups.alarm");
    QStringList tokens =
        firstText(variables, "ups.status").split(QLatin1Char(' '), Qt::SkipEmptyParts);
    tokens.removeDuplicates();
    snapshot.variables = plainVariables(variables);
    snapshot.tokens = tokensOf(tokens, &snapshot.otherTokens);
    if (snapshot.tokens.testFlag(StatusToken::Waiting)) {
        snapshot.status += QStringLiteral("Waiting for the first data");
        return snapshot;
    }
    // Drivers that give an alarm's text do not always set its token.
    if (!alarmText.isEmpty() && !snapshot.tokens.testFlag(StatusToken::Alarm)) {
        tokens += wordOf(StatusToken::Alarm);
        snapshot.tokens |= StatusToken::Alarm;
    }

    snapshot.identity = identityOf(variables);
    snapshot.beeperEnabled = beeperOf(variables);
    for (const ValueRow &row : valueTable)
        snapshot.measure(row.quantity) = measureOf(variables, row);
    // Some drivers give -1 for a time that they do not know.
    std::optional<double> &runtime = snapshot.measure(Quantity::BatteryRuntime).value;
    if (runtime && *runtime < 0.0)
        runtime.reset();
    for (const PhaseRow &row : phaseTable)
        takePhases(&snapshot.measure(row.quantity), row.quantity, variables, row.names);

    takeStatus(&snapshot, tokens);
    takeAlarmText(&snapshot, alarmText);
    // Only a UPS that measures its bypass is known to have one.
    ElementState &bypass = snapshot.element(Element::Bypass);
    if (bypass.operating == Op::Unknown && snapshot.system.operating != Op::Unknown &&
        snapshot.value(Quantity::BypassVoltage))
        bypass.operating = Op::StandBy;
    roundOff(&snapshot);
    return snapshot;
}
