// SPDX-License-Identifier: LicenseRef-all-rights-reserved

#include "promdialect.h"

#include <QtCore/QStringList>

#include <algorithm>

namespace {

struct ValueRow
{
    const char *metric;
    const char *variable;
    double factor;
};

struct DialectRow
{
    const char *name, *statusMetric, *flagLabel, *upsLabel;
    const ValueRow *values; // ends with a null metric
};

// clang-format off
// Publishes each numeric variable under its own name.
constexpr ValueRow plainValues[] = {
    {"network_ups_tools_ups_load",             "ups.load", 1},
    {"network_ups_tools_battery_charge",       "battery.charge", 1},
    {"network_ups_tools_battery_charge_low",   "battery.charge.low", 1},
    {"network_ups_tools_battery_runtime",      "battery.runtime", 1},
    {"network_ups_tools_battery_runtime_low",  "battery.runtime.low", 1},
    {"network_ups_tools_battery_voltage",      "battery.voltage", 1},
    {"network_ups_tools_battery_voltage_nominal", "battery.voltage.nominal", 1},
    {"network_ups_tools_input_voltage",        "input.voltage", 1},
    {"network_ups_tools_input_voltage_nominal", "input.voltage.nominal", 1},
    {"network_ups_tools_input_transfer_low",   "input.transfer.low", 1},
    {"network_ups_tools_input_transfer_high",  "input.transfer.high", 1},
    {"network_ups_tools_input_frequency",      "input.frequency", 1},
    {"network_ups_tools_output_voltage",       "output.voltage", 1},
    {"network_ups_tools_output_frequency",     "output.frequency", 1},
    {"network_ups_tools_output_current",       "output.current", 1},
    {"network_ups_tools_ups_realpower",        "ups.realpower", 1},
    {"network_ups_tools_ups_temperature",      "ups.temperature", 1},
    {nullptr, nullptr, 0},
};
// Shares are from 0 to 1 here.
constexpr ValueRow shareValues[] = {
    {"nut_load",                    "ups.load", 100},
    {"nut_battery_charge",          "battery.charge", 100},
    {"nut_battery_runtime_seconds", "battery.runtime", 1},
    {nullptr, nullptr, 0},
};
constexpr ValueRow noValues[] = {{nullptr, nullptr, 0}};

constexpr DialectRow dialects[] = {
    {"network_ups_tools", "network_ups_tools_ups_status", "flag",   "ups",    plainValues},
    {"nut",               "nut_ups_status",               "status", "ups",    shareValues},
    {"nutwg",             "nutwg_ups_status",             "status", "device", noValues},
};
// clang-format on

QVector<PromDialect> readTable()
{
    QVector<PromDialect> all;
    for (const DialectRow &row : dialects) {
        PromDialect dialect;
        dialect.name = QString::fromLatin1(row.name);
        dialect.statusMetric = QString::fromLatin1(row.statusMetric);
        dialect.flagLabel = QString::fromLatin1(row.flagLabel);
        dialect.upsLabel = QString::fromLatin1(row.upsLabel);
        for (const ValueRow *value = row.values; value->metric; ++value)
            dialect.values.append({QString::fromLatin1(value->metric),
                                   QString::fromLatin1(value->variable), value->factor});
        all.append(dialect);
    }
    return all;
}

const QVector<PromDialect> &table()
{
    static const QVector<PromDialect> all = readTable();
    return all;
}

} // namespace

const PromValue *PromDialect::valueOf(const QString &variable) const
{
    const auto found =
        std::find_if(values.cbegin(), values.cend(),
                     [&variable](const PromValue &value) { return value.variable == variable; });
    return found == values.cend() ? nullptr : &*found;
}

const PromDialect *PromDialect::find(const QString &name)
{
    for (const PromDialect &dialect : table()) {
        if (dialect.name == name)
            return &dialect;
    }
    return nullptr;
}

QStringList PromDialect::names()
{
    QStringList all;
    for (const PromDialect &dialect : table())
        all += dialect.name;
    return all;
}
