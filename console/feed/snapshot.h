// SPDX-License-Identifier: LicenseRef-all-rights-reserved

#pragma once

#include "elementstate.h"
#include "statustoken.h"

#include <QtCore/QHash>
#include <QtCore/QMetaType>
#include <QtCore/QString>
#include <QtCore/QStringList>
#include <QtCore/QVector>

#include <array>
#include <optional>

/// The supervised elements of a UPS.
enum class Element { Rectifier, Inverter, Battery, Bypass, Load };
constexpr int elementCount = 5;

/// What is measured; unitOf() returns the unit.
enum class Quantity {
    Load,            ///< share of the rated load, percent
    BatteryCharge,   ///< percent
    BatteryVoltage,  ///< volt
    BatteryRuntime,  ///< time left on battery, seconds
    InputVoltage,    ///< volt
    InputFrequency,  ///< hertz
    BypassVoltage,   ///< volt
    BypassFrequency, ///< hertz
    OutputVoltage,   ///< volt
    OutputFrequency, ///< hertz
    OutputCurrent,   ///< ampere
    OutputPower,     ///< real power, watt
    Temperature,     ///< degrees Celsius
};
constexpr int quantityCount = 13;

/// The value of one phase, or between two.
struct PhaseValue
{
    QString name; ///< "L1" to "L3", or "L1-L2", "L2-L3", "L3-L1"
    double value = 0.0;

    bool operator==(const PhaseValue &other) const;
};

/// A measured value with what is known about its range. Each number is finite; an absent one is
/// "no data", which is not 0. The value is the true one, also outside its range.
struct Measure
{
    std::optional<double> value;
    std::optional<double> minimum; ///< lower end of the scale
    std::optional<double> maximum; ///< upper end of the scale
    std::optional<double> nominal; ///< what the UPS is made for
    std::optional<double> low;     ///< a value below is too low
    std::optional<double> high;    ///< a value above is too high
    QString phase;                 ///< the phase that value is of, where it is the worst one's
    QVector<PhaseValue> phases;    ///< the worst first; empty where the UPS gives none

    bool operator==(const Measure &other) const;
};

/// Who a UPS is. All texts may be empty.
struct Identity
{
    QString manufacturer;
    QString model;
    QString serial;
    QString firmware;
    QString batteryDate;                    ///< as the UPS writes it
    std::optional<double> nominalPower;     ///< volt-ampere
    std::optional<double> nominalRealPower; ///< watt

    bool operator==(const Identity &other) const;
};

/// What is known about a UPS at one instant. A new snapshot has no communication and no data.
///
/// All texts come from the UPS as they are: show them as plain text.
struct Snapshot
{
    enum class Link { Ok, CommunicationLost };

    /// A snapshot without communication: nothing known but whose it is and why.
    static Snapshot lost(const QString &name, const QString &reason);

    bool isLost() const;
    bool operator==(const Snapshot &other) const;
    bool operator!=(const Snapshot &other) const;
    const ElementState &element(Element which) const;
    ElementState &element(Element which);
    const Measure &measure(Quantity which) const;
    Measure &measure(Quantity which);
    /// The value alone; absent when there is no data.
    std::optional<double> value(Quantity which) const;

    Link link = Link::CommunicationLost;
    QString reason; ///< why communication is lost; empty otherwise
    QString server; ///< whose loss is one event for all of its UPSes; empty: there is none
    bool isServerLost = false; ///< communication is lost with the server
    ElementState system;       ///< the UPS as a whole
    std::array<ElementState, elementCount> elements;
    std::array<Measure, quantityCount> measures;
    QString name; ///< how the UPS is called by its host
    Identity identity;
    StatusTokens tokens;               ///< what the UPS says of itself
    QStringList otherTokens;           ///< what it says that this program does not know
    QStringList status;                ///< all of that in words
    QStringList alarms;                ///< the alarms among them, and the UPS's own alarm texts
    QStringList alarmTexts;            ///< the UPS's own alarm texts
    QHash<QString, QString> variables; ///< all that the UPS gives, by name
    std::optional<bool> beeperEnabled; ///< absent when not known
    bool simulated = false;            ///< not from a real UPS: to be marked on screen
};
Q_DECLARE_METATYPE(Snapshot)

/// The reason with what it is about behind it.
QString reasonAt(const QString &reason, const QString &place);

/// Short English names for the screen, such as "Battery charge".
QString nameOf(Element element);
QString nameOf(Quantity quantity);
/// The unit's symbol, such as "V".
QString unitOf(Quantity quantity);
