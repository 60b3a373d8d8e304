// SPDX-License-Identifier: LicenseRef-all-rights-reserved

#pragma once

#include "snapshot.h"

/// The simulator's story: an on-line UPS starts up, loses the mains, runs its battery low,
/// recharges, is overloaded, fails over to bypass, locks, falls silent and recovers. Then it begins
/// again.
///
/// Everything here is a pure function of its arguments: the same instant gives the same snapshot.
namespace Scenario {

/// The story's phases, in their order.
enum class Phase {
    StandBy,
    Precharge,
    WaitBatteryVoltage,
    Calibration,
    Normal,
    MainsOutOfTolerance,
    OnBattery,
    LowBattery,
    Recharging,
    Overload,
    OnBypass,
    InverterFault,
    Locked,
    CommunicationLost,
    Recovery,
};
constexpr int phaseCount = 15;

enum class Mains { Good, Low, Absent };

/// Time that the whole story takes, in seconds.
double length();
/// Instant at which a phase begins, in seconds.
double startOf(Phase phase);
/// The phase at an instant; any instant is taken, since the story repeats.
Phase phaseAt(double seconds);
/// The mains at an instant.
Mains mainsAt(double seconds);
/// An instant of normal running at which the battery is being charged and has @p charge percent,
/// or as near to it as there is.
double chargingAt(double charge);

/// The UPS at an instant of the story.
Snapshot snapshotAt(double seconds);
/// The UPS in @p phase with a load and a charge (percent) of the caller's choice; @p seconds only
/// moves the small swing of the measured values. The mains are the phase's, unless others are
/// given.
Snapshot snapshotIn(Phase phase, double load, double charge, double seconds,
                    std::optional<Mains> mains = std::nullopt);

} // namespace Scenario
