// SPDX-License-Identifier: LicenseRef-all-rights-reserved

#include "nutmapping.h"

#include "plaintext.h"

#include <QtCore/QVarLengthArray>

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <system_error>
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

/// Numbers all variables that the tables name, so that a list of variables is looked up once.
class VariableNames
{
public:
    int numberOf(const QString &name)
    {
        const auto known = numbers.constFind(name);
        if (known != numbers.constEnd())
            return *known;
        const int number = int(numbers.size());
        numbers.insert(name, number);
        return number;
    }

    /// -1 for a variable that no table names.
    int find(const QString &name) const
    {
        return numbers.value(name, -1);
    }

    int count() const
    {
        return int(numbers.size());
    }

private:
    QHash<QString, int> numbers;
};

/// One of several variables to take a number or a text from, or a number that stands for itself.
struct Alternative
{
    int variable = 0;
    std::optional<double> literal;
};
using Alternatives = std::vector<Alternative>;

Alternatives alternativesOf(const char *text, VariableNames *names)
{
    Alternatives alternatives;
    const QStringList all = QString::fromLatin1(text).split(QLatin1Char('|'), Qt::SkipEmptyParts);
    for (const QString &name : all) {
        const std::optional<double> literal = nutNumber(name);
        alternatives.push_back({literal ? -1 : names->numberOf(name), literal});
    }
    return alternatives;
}

/// The variables of the phases, as one alternative gives them.
struct PhaseVariable
{
    QString phase;
    int variable;
};
using PhaseVariables = std::vector<PhaseVariable>;

std::vector<PhaseVariables> phaseVariablesOf(const char *text, VariableNames *names)
{
    std::vector<PhaseVariables> alternatives;
    const QStringList all = QString::fromLatin1(text).split(QLatin1Char('|'), Qt::SkipEmptyParts);
    for (const QString &name : all) {
        const bool single = name.contains(QLatin1Char('*'));
        PhaseVariables variables;
        for (const char *phase : single ? singlePhases : phasePairs) {
            QString variable = name;
            variable.replace(QLatin1Char(single ? '*' : '#'), QLatin1String(phase));
            variables.push_back({QString::fromLatin1(phase), names->numberOf(variable)});
        }
        alternatives.push_back(variables);
    }
    return alternatives;
}

struct StatusRule
{
    const StatusRow *row;
    StatusTokens needed;
    QString firstWord; // of the tokens
    QString words;
    bool raisesAlarm;
};

StatusRule ruleOf(const StatusRow &row)
{
    const QStringList needed = QString::fromLatin1(row.tokens).split(QLatin1Char(' '));
    const auto effects = {row.system,  row.rectifier, row.inverter,
                          row.battery, row.bypass,    row.load};
    return {&row, tokensOf(needed), needed.first(), QString::fromLatin1(row.words),
            std::any_of(effects.begin(), effects.end(),
                        [](const Effect &effect) { return effect.alarm != Alarm::None; })};
}

/// The tables above, prepared once.
struct Tables
{
    struct Value
    {
        Quantity quantity;
        Alternatives value, minimum, maximum, nominal, low, high;
    };
    struct Phases
    {
        Quantity quantity;
        std::vector<PhaseVariables> alternatives;
    };

    Tables();
    static std::vector<Value> valuesOf(VariableNames *names);
    static std::vector<Phases> phasesOf(VariableNames *names);
    static std::vector<StatusRule> rules();

    // In the order in which their names get numbers.
    VariableNames names;
    std::vector<Value> values;
    std::vector<Phases> phases;
    std::vector<StatusRule> statuses;
    Alternatives nominalPower, nominalRealPower;
    int numbers; // the variables from here on are texts
    Alternatives alarm, status;
    Alternatives manufacturer, model, serial, firmware, batteryDate;
};

std::vector<Tables::Value> Tables::valuesOf(VariableNames *names)
{
    const auto of = [names](const char *text) { return alternativesOf(text, names); };
    std::vector<Value> values;
    for (const ValueRow &row : valueTable)
        values.push_back({row.quantity, of(row.value), of(row.minimum), of(row.maximum),
                          of(row.nominal), of(row.low), of(row.high)});
    return values;
}

std::vector<Tables::Phases> Tables::phasesOf(VariableNames *names)
{
    std::vector<Phases> phases;
    for (const PhaseRow &row : phaseTable)
        phases.push_back({row.quantity, phaseVariablesOf(row.names, names)});
    return phases;
}

std::vector<StatusRule> Tables::rules()
{
    std::vector<StatusRule> rules;
    for (const StatusRow &row : statusTable)
        rules.push_back(ruleOf(row));
    return rules;
}

Tables::Tables()
    : values(valuesOf(&names))
    , phases(phasesOf(&names))
    , statuses(rules())
    , nominalPower(alternativesOf("ups.power.nominal", &names))
    , nominalRealPower(alternativesOf("ups.realpower.nominal", &names))
    , numbers(names.count())
    , alarm(alternativesOf("ups.alarm", &names))
    , status(alternativesOf("ups.status", &names))
    , manufacturer(alternativesOf("ups.mfr|device.mfr", &names))
    , model(alternativesOf("ups.model|device.model", &names))
    , serial(alternativesOf("ups.serial|device.serial", &names))
    , firmware(alternativesOf("ups.firmware|ups.firmware.aux", &names))
    , batteryDate(alternativesOf("battery.date|battery.mfr.date", &names))
{}

const Tables &tables()
{
    static const Tables prepared;
    return prepared;
}

/// What a list of variables says of those that the tables name. It must not outlive the list.
class KnownVariables
{
public:
    explicit KnownVariables(const NutVariables &variables)
        : texts(std::size_t(tables().names.count()))
        , numbers(std::size_t(tables().numbers))
    {
        for (auto one = variables.cbegin(); one != variables.cend(); ++one) {
            const int number = tables().names.find(one.key());
            if (number < 0)
                continue;
            texts[std::size_t(number)] = &*one;
            if (number < tables().numbers)
                numbers[std::size_t(number)] = nutNumber(*one);
        }
    }

    std::optional<double> number(int variable) const
    {
        return numbers[std::size_t(variable)];
    }

    std::optional<double> firstNumber(const Alternatives &alternatives) const
    {
        for (const Alternative &alternative : alternatives) {
            const std::optional<double> found =
                alternative.literal ? alternative.literal : number(alternative.variable);
            if (found)
                return found;
        }
        return std::nullopt;
    }

    QString firstText(const Alternatives &alternatives) const
    {
        for (const Alternative &alternative : alternatives) {
            const QString *text = texts[std::size_t(alternative.variable)];
            QString plain = text ? plainText(*text) : QString();
            if (!plain.isEmpty())
                return plain;
        }
        return QString();
    }

private:
    std::vector<const QString *> texts;
    std::vector<std::optional<double>> numbers;
};

Measure measureOf(const KnownVariables &known, const Tables::Value &row)
{
    Measure measure;
    measure.value = known.firstNumber(row.value);
    measure.minimum = known.firstNumber(row.minimum);
    measure.maximum = known.firstNumber(row.maximum);
    measure.nominal = known.firstNumber(row.nominal);
    measure.low = known.firstNumber(row.low);
    measure.high = known.firstNumber(row.high);
    // A range that is none counts as unknown.
    if (measure.minimum && measure.maximum && *measure.minimum >= *measure.maximum)
        measure.minimum = measure.maximum = std::nullopt;
    return measure;
}

QVector<PhaseValue> phasesOf(const KnownVariables &known,
                             const std::vector<PhaseVariables> &alternatives)
{
    QVector<PhaseValue> phases;
    for (const PhaseVariables &variables : alternatives) {
        for (const auto &[phase, variable] : variables) {
            if (const std::optional<double> number = known.number(variable))
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
void takePhases(Measure *measure, const KnownVariables &known, const Tables::Phases &row)
{
    measure->phases = phasesOf(known, row.alternatives);
    if (measure->phases.isEmpty())
        return;
    const double mean = sumOf(measure->phases) / double(measure->phases.size());
    const bool voltage = isVoltage(row.quantity);
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
    if (row.quantity == Quantity::OutputPower) {
        // Powers add up, but a part of them is not the whole.
        const double sum = sumOf(measure->phases);
        if (measure->phases.size() == phaseCount && std::isfinite(sum))
            measure->value = sum;
        return;
    }
    measure->value = measure->phases.first().value;
    measure->phase = measure->phases.first().name;
}

Identity identityOf(const KnownVariables &known)
{
    Identity identity;
    identity.manufacturer = known.firstText(tables().manufacturer);
    identity.model = known.firstText(tables().model);
    identity.serial = known.firstText(tables().serial);
    identity.firmware = known.firstText(tables().firmware);
    identity.batteryDate = known.firstText(tables().batteryDate);
    identity.nominalPower = known.firstNumber(tables().nominalPower);
    identity.nominalRealPower = known.firstNumber(tables().nominalRealPower);
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

void setUnknown(Snapshot *snapshot)
{
    const ElementState unknown = {Alarm::None, Op::Unknown};
    snapshot->system = unknown;
    snapshot->elements.fill(unknown);
}

void takeStatus(Snapshot *snapshot, const QStringList &tokens)
{
    QStringList untold = tokens;
    for (const StatusRule &rule : tables().statuses) {
        if ((snapshot->tokens & rule.needed) != rule.needed)
            continue;
        apply(snapshot, *rule.row);
        if (rule.words.isEmpty())
            continue;
        snapshot->status += rule.words;
        untold.removeAll(rule.firstWord);
        if (rule.raisesAlarm)
            snapshot->alarms += rule.words;
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

/// Shares the texts, and where all of them are plain the whole.
NutVariables plainVariables(const NutVariables &variables)
{
    bool plain = true;
    for (auto one = variables.cbegin(); plain && one != variables.cend(); ++one)
        plain = isPlainAscii(one.key()) && isPlainAscii(one.value());
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

std::optional<double> nutNumber(const QString &text)
{
    const QString trimmed = text.trimmed();
    QVarLengthArray<char, 32> digits;
    for (const QChar c : trimmed)
        digits.append(c.toLatin1());
    return nutNumber(std::string_view(digits.constData(), std::size_t(digits.size())));
}

std::optional<double> nutNumber(std::string_view text)
{
    // It would take two signs as well.
    if (text.size() > 1 && text[0] == '+' && text[1] != '-')
        text.remove_prefix(1);
    double number = 0.0;
    const char *end = text.data() + text.size();
    const auto [rest, error] = std::from_chars(text.data(), end, number);
    if (error != std::errc() || rest != end || !std::isfinite(number))
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

    const KnownVariables known(variables);
    const QString alarmText = known.firstText(tables().alarm);
    QStringList tokens =
        known.firstText(tables().status).split(QLatin1Char(' '), Qt::SkipEmptyParts);
    if (tokens.size() > 1)
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

    snapshot.identity = identityOf(known);
    snapshot.beeperEnabled = beeperOf(variables);
    for (const Tables::Value &row : tables().values)
        snapshot.measure(row.quantity) = measureOf(known, row);
    // Some drivers give -1 for a time that they do not know.
    std::optional<double> &runtime = snapshot.measure(Quantity::BatteryRuntime).value;
    if (runtime && *runtime < 0.0)
        runtime.reset();
    for (const Tables::Phases &row : tables().phases)
        takePhases(&snapshot.measure(row.quantity), known, row);

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
