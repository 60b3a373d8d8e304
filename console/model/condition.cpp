// SPDX-License-Identifier: LicenseRef-all-rights-reserved

#include "condition.h"

#include "values.h"

#include <algorithm>
#include <cmath>
#include <tuple>

namespace {

using Token = StatusToken;

struct TokenRow
{
    Token token;
    const char *id;
    const char *text;
    Severity severity;
    std::optional<Quantity> value; // the one that shows it
};

// clang-format off
const TokenRow tokenTable[] = {
    {Token::Locked,         "locked",          "Locked",               Severity::Critical,    std::nullopt},
    {Token::ForcedShutdown, "forced-shutdown", "Forced shutdown",      Severity::Critical,    std::nullopt},
    {Token::Bypass,         "bypass",          "On bypass, load not protected", Severity::Warning, std::nullopt},
    {Token::OnBattery,      "on-battery",      "On battery",           Severity::Warning,     Quantity::InputVoltage},
    {Token::LowBattery,     "low-battery",     "Battery low",          Severity::Warning,     Quantity::BatteryCharge},
    {Token::Overload,       "overload",        "Overload",             Severity::Warning,     Quantity::Load},
    {Token::ReplaceBattery, "replace-battery", "Replace the battery",  Severity::Warning,     std::nullopt},
    {Token::HighBattery,    "high-battery",    "Battery voltage high", Severity::Warning,     Quantity::BatteryVoltage},
    {Token::Trimming,       "trim",            "Input voltage high",   Severity::Warning,     Quantity::InputVoltage},
    {Token::Boosting,       "boost",           "Input voltage low",    Severity::Warning,     Quantity::InputVoltage},
    {Token::Off,            "output-off",      "Output off",           Severity::Information, std::nullopt},
    {Token::Starting,       "starting",        "Starting",             Severity::Information, std::nullopt},
    {Token::Calibrating,    "calibrating",     "Calibrating",          Severity::Information, std::nullopt},
};
// clang-format on

struct LimitRow
{
    Quantity quantity;
    const char *id;
    StatusTokens saidBy; // the UPS itself says what the value shows
};

const LimitRow limitTable[] = {
    {Quantity::Load, "load", Token::Overload},
    {Quantity::BatteryCharge, "charge", Token::LowBattery},
    {Quantity::BatteryVoltage, "battery-voltage", Token::LowBattery | Token::HighBattery},
    {Quantity::BatteryRuntime, "runtime", Token::LowBattery},
    {Quantity::InputVoltage, "input-voltage", Token::OnBattery | Token::Trimming | Token::Boosting},
    {Quantity::InputFrequency, "input-frequency", Token::OnBattery},
    {Quantity::OutputVoltage, "output-voltage", Token::Off | Token::Locked | Token::Starting},
    {Quantity::OutputFrequency, "output-frequency", Token::Off | Token::Locked | Token::Starting},
    {Quantity::Temperature, "temperature", {}},
};

void addTokens(QVector<Condition> *conditions, const Snapshot &snapshot)
{
    for (const TokenRow &row : tokenTable) {
        if (!snapshot.tokens.testFlag(row.token))
            continue;
        Condition condition;
        condition.id = QString::fromLatin1(row.id);
        condition.text = QString::fromLatin1(row.text);
        condition.severity = row.severity;
        const bool empties =
            row.token == Token::LowBattery && snapshot.tokens.testFlag(Token::OnBattery);
        if (empties)
            condition.severity = Severity::Critical;
        if (row.value && snapshot.value(*row.value))
            condition.valueText = Values::text(*row.value, snapshot.value(*row.value));
        conditions->append(condition);
    }
}

/// What the UPS words itself; the bare token where it does not.
void addAlarms(QVector<Condition> *conditions, const Snapshot &snapshot)
{
    if (!snapshot.tokens.testFlag(Token::Alarm))
        return;
    Condition condition;
    condition.severity = Severity::Critical;
    for (const QString &text : snapshot.alarmTexts) {
        condition.id = QStringLiteral("alarm:") + text;
        condition.text = text;
        conditions->append(condition);
    }
    if (snapshot.alarmTexts.isEmpty()) {
        condition.id = QStringLiteral("alarm");
        condition.text = QStringLiteral("Alarm");
        conditions->append(condition);
    }
}

/// A value that is too low (-1) or too high (1), or is hardly back from where it was (@p before).
int sideOf(const Measure &measure, double value, int before)
{
    constexpr double share = 0.01;
    const auto backBy = [before](double limit, int side) {
        return before == side ? std::abs(limit) * share : 0.0;
    };
    if (measure.low && value < *measure.low + backBy(*measure.low, -1))
        return -1;
    return measure.high && value > *measure.high - backBy(*measure.high, 1) ? 1 : 0;
}

QString idOf(const LimitRow &row, int side)
{
    return QLatin1String(row.id) +
           (side < 0 ? QStringLiteral("-too-low") : QStringLiteral("-too-high"));
}

void addLimits(QVector<Condition> *conditions, const Snapshot &snapshot,
               const QVector<Condition> &before)
{
    const auto stood = [&before](const QString &id) {
        return std::any_of(before.cbegin(), before.cend(),
                           [&id](const Condition &one) { return one.id == id; });
    };
    for (const LimitRow &row : limitTable) {
        Measure measure = snapshot.measure(row.quantity);
        // More than all is too much, also for a UPS that gives no limit and has no word for it.
        constexpr double fullLoad = 100.0;
        if (row.quantity == Quantity::Load && !measure.high)
            measure.high = fullLoad;
        if (!measure.value || (snapshot.tokens & row.saidBy))
            continue;
        // Most values are in order; no text is made of those.
        const int earlier = before.isEmpty()       ? 0
                            : stood(idOf(row, -1)) ? -1
                            : stood(idOf(row, 1))  ? 1
                                                   : 0;
        QString phase;
        double value = *measure.value;
        int side = sideOf(measure, value, earlier);
        if (side == 0 && !measure.phases.isEmpty()) {
            const PhaseValue &worst = measure.phases.first();
            value = worst.value;
            side = sideOf(measure, value, earlier);
            phase = worst.name + QLatin1Char(' ');
        }
        if (side == 0)
            continue;
        Condition condition;
        condition.id = idOf(row, side);
        condition.text = nameOf(row.quantity) +
                         (side < 0 ? QStringLiteral(" too low") : QStringLiteral(" too high"));
        condition.severity = Severity::Warning;
        condition.valueText = phase + Values::text(row.quantity, value);
        conditions->append(condition);
    }
}

} // namespace

bool operator==(const Condition &a, const Condition &b)
{
    return std::tie(a.id, a.severity, a.text, a.valueText, a.since) ==
           std::tie(b.id, b.severity, b.text, b.valueText, b.since);
}

bool operator!=(const Condition &a, const Condition &b)
{
    return !(a == b);
}

QVector<Condition> conditionsOf(const Snapshot &snapshot, const QVector<Condition> &before)
{
    QVector<Condition> conditions;
    if (snapshot.isLost()) {
        Condition lost;
        lost.id = QStringLiteral("no-communication");
        lost.text = QStringLiteral("No communication");
        if (!snapshot.reason.isEmpty())
            lost.text += QStringLiteral(": ") + snapshot.reason;
        conditions.append(lost);
        return conditions;
    }
    if (snapshot.tokens.testFlag(Token::Waiting))
        return conditions;
    addTokens(&conditions, snapshot);
    addAlarms(&conditions, snapshot);
    addLimits(&conditions, snapshot, before);
    std::stable_sort(conditions.begin(), conditions.end(),
                     [](const Condition &a, const Condition &b) {
                         return urgencyOf(a.severity) > urgencyOf(b.severity);
                     });
    return conditions;
}
