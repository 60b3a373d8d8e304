// SPDX-License-Identifier: LicenseRef-all-rights-reserved

#include "snapshot.h"

#include <tuple>

namespace {

constexpr std::array<const char *, elementCount> elementNames = {
    "Rectifier", "Inverter", "Battery", "Bypass", "Load",
};

struct QuantityText
{
    const char *name;
    const char *unit;
};

constexpr std::array<QuantityText, quantityCount> quantityTexts = {{
    {"Load", "%"},
    {"Battery charge", "%"},
    {"Battery voltage", "V"},
    {"Runtime", "s"},
    {"Input voltage", "V"},
    {"Input frequency", "Hz"},
    {"Bypass voltage", "V"},
    {"Bypass frequency", "Hz"},
    {"Output voltage", "V"},
    {"Output frequency", "Hz"},
    {"Output current", "A"},
    {"Output power", "W"},
    {"Temperature", "°C"},
}};

auto fields(const Measure &m)
{
    return std::tie(m.value, m.minimum, m.maximum, m.nominal, m.low, m.high, m.phase, m.phases);
}

auto fields(const Identity &i)
{
    return std::tie(i.manufacturer, i.model, i.serial, i.firmware, i.batteryDate, i.nominalPower,
                    i.nominalRealPower);
}

auto fields(const Snapshot &s)
{
    return std::tie(s.link, s.reason, s.server, s.isServerLost, s.system, s.elements, s.measures,
                    s.name, s.identity, s.tokens, s.otherTokens, s.status, s.alarms, s.alarmTexts,
                    s.variables, s.beeperEnabled, s.simulated);
}

} // namespace

bool PhaseValue::operator==(const PhaseValue &other) const
{
    return name == other.name && value == other.value;
}

bool Measure::operator==(const Measure &other) const
{
    return fields(*this) == fields(other);
}

bool Identity::operator==(const Identity &other) const
{
    return fields(*this) == fields(other);
}

bool Snapshot::operator==(const Snapshot &other) const
{
    return fields(*this) == fields(other);
}

bool Snapshot::operator!=(const Snapshot &other) const
{
    return !(*this == other);
}

Snapshot Snapshot::lost(const QString &name, const QString &reason)
{
    Snapshot snapshot;
    snapshot.name = name;
    snapshot.reason = reason;
    return snapshot;
}

bool Snapshot::isLost() const
{
    return link == Link::CommunicationLost;
}

const ElementState &Snapshot::element(Element which) const
{
    return elements.at(std::size_t(which));
}

ElementState &Snapshot::element(Element which)
{
    return elements.at(std::size_t(which));
}

const Measure &Snapshot::measure(Quantity which) const
{
    return measures.at(std::size_t(which));
}

Measure &Snapshot::measure(Quantity which)
{
    return measures.at(std::size_t(which));
}

std::optional<double> Snapshot::value(Quantity which) const
{
    return measure(which).value;
}

QString reasonAt(const QString &reason, const QString &place)
{
    // One pair of brackets is enough.
    return place.endsWith(QLatin1Char(')')) ? QStringLiteral("%1 – %2").arg(reason, place)
                                            : QStringLiteral("%1 (%2)").arg(reason, place);
}

QString nameOf(Element element)
{
    return QString::fromUtf8(elementNames.at(std::size_t(element)));
}

QString nameOf(Quantity quantity)
{
    return QString::fromUtf8(quantityTexts.at(std::size_t(quantity)).name);
}

QString unitOf(Quantity quantity)
{
    return QString::fromUtf8(quantityTexts.at(std::size_t(quantity)).unit);
}
