// SPDX-License-Identifier: LicenseRef-all-rights-reserved

#include "simulatorfeed.h"

#include <algorithm>
#include <cmath>

using Scenario::Phase;

namespace {

constexpr int tick = 200;           // milliseconds
constexpr double dischargeRate = 2; // percent per second
constexpr double lowCharge = 20.0;  // percent
constexpr double emptyCharge = 1.0; // percent: a forced discharge stops here

bool feedsLoad(const Snapshot &snapshot)
{
    return snapshot.element(Element::Load).operating != OperatingState::StandBy;
}

bool isLocked(const Snapshot &snapshot)
{
    return snapshot.system.alarm == AlarmState::Locked;
}

bool hasInverterFault(const Snapshot &snapshot)
{
    return snapshot.element(Element::Inverter).alarm == AlarmState::Fault;
}

} // namespace

SimulatorFeed::SimulatorFeed(double wantedSpeed, QObject *parent)
    : UpsFeed(parent)
    , speed(wantedSpeed > 0.0 ? std::min(wantedSpeed, 1000.0) : 1.0)
{
    timer.setInterval(tick);
    connect(&timer, &QTimer::timeout, this, [this] { advance(clock.restart()); });
}

SimulatorFeed::~SimulatorFeed() = default;

void SimulatorFeed::start()
{
    if (timer.isActive())
        return;
    clock.start();
    timer.start();
    Q_EMIT snapshotReady(current());
}

void SimulatorFeed::stop()
{
    timer.stop();
}

bool SimulatorFeed::supports(Command) const
{
    return true;
}

bool SimulatorFeed::command(Command command)
{
    const bool taken = obey(command);
    if (taken)
        Q_EMIT snapshotReady(current());
    return taken;
}

void SimulatorFeed::seekTo(double seconds)
{
    storyTime = std::isfinite(seconds * 1000.0) ? seconds * 1000.0 : 0.0;
    forced = Forced::Nothing;
    silent = false;
    beeper = true;
    Q_EMIT snapshotReady(current());
}

void SimulatorFeed::advance(qint64 milliseconds)
{
    double &time = forced == Forced::Nothing ? storyTime : forcedTime;
    time += double(std::max<qint64>(milliseconds, 0)) * speed;
    Q_EMIT snapshotReady(current());
}

double SimulatorFeed::position() const
{
    return storyTime / 1000.0;
}

Snapshot SimulatorFeed::current() const
{
    Snapshot snapshot =
        silent ? Scenario::snapshotIn(Phase::CommunicationLost, 0.0, 0.0, 0.0) : behindTheLink();
    if (!snapshot.isLost())
        snapshot.beeperEnabled = beeper;
    return snapshot;
}

/// The UPS as it is, whether or not a command has cut the link.
Snapshot SimulatorFeed::behindTheLink() const
{
    const double seconds = (storyTime + forcedTime) / 1000.0;
    switch (forced) {
    case Forced::Nothing:
        break;
    case Forced::StandBy:
        return Scenario::snapshotIn(Phase::StandBy, 0.0, chargeThen, seconds, mainsThen);
    case Forced::Bypass:
        return Scenario::snapshotIn(Phase::OnBypass, loadThen, chargeThen, seconds, mainsThen);
    case Forced::Locked:
        return Scenario::snapshotIn(Phase::Locked, 0.0, chargeThen, seconds, mainsThen);
    case Forced::Battery:
        return Scenario::snapshotIn(chargeNow() > lowCharge ? Phase::OnBattery : Phase::LowBattery,
                                    loadThen, chargeNow(), seconds, mainsThen);
    }
    return Scenario::snapshotAt(position());
}

double SimulatorFeed::chargeNow() const
{
    const double spent = forced == Forced::Battery ? dischargeRate * forcedTime / 1000.0 : 0.0;
    return std::max(std::min(emptyCharge, chargeThen), chargeThen - spent);
}

Scenario::Mains SimulatorFeed::mainsNow() const
{
    return forced == Forced::Nothing ? Scenario::mainsAt(position()) : mainsThen;
}

bool SimulatorFeed::obey(Command command)
{
    switch (command) {
    case Command::FollowScenario:
        forced = Forced::Nothing;
        silent = false;
        beeper = true;
        return true;
    case Command::LoseCommunication:
        silent = true;
        return true;
    case Command::RestoreCommunication:
        silent = false;
        if (behindTheLink().isLost())
            moveOnTo(Scenario::startOf(Phase::Recovery));
        return true;
    default:
        return !current().isLost() && obeyReachable(command);
    }
}

bool SimulatorFeed::obeyReachable(Command command)
{
    const Snapshot now = behindTheLink();
    const OperatingState operating = now.system.operating;
    switch (command) {
    case Command::SwitchOff:
        if (isLocked(now))
            return false;
        force(Forced::StandBy);
        return true;
    case Command::SwitchOn:
        if (isLocked(now))
            return false;
        // Without good mains it comes back to where the story left it: on battery, or nearly so.
        if (operating == OperatingState::StandBy)
            moveOnTo(mainsNow() == Scenario::Mains::Good ? Scenario::startOf(Phase::Precharge)
                                                         : position());
        return true;
    case Command::ForceBattery:
        if (!feedsLoad(now) || hasInverterFault(now))
            return false;
        if (operating != OperatingState::OnBattery)
            force(Forced::Battery);
        return true;
    case Command::GoToBypass:
        if (!feedsLoad(now) || now.element(Element::Bypass).alarm != AlarmState::None)
            return false;
        if (operating != OperatingState::OnBypass)
            force(Forced::Bypass);
        return true;
    case Command::ReturnToMains:
        return returnToMains(now);
    case Command::Lock:
        if (!isLocked(now))
            force(Forced::Locked);
        return true;
    case Command::ClearAlarm:
        return clearAlarm(now);
    case Command::BeeperOn:
        beeper = true;
        return true;
    case Command::BeeperOff:
        beeper = false;
        return true;
    case Command::LoseCommunication:
    case Command::RestoreCommunication:
    case Command::FollowScenario:
        break;
    }
    return false;
}

bool SimulatorFeed::returnToMains(const Snapshot &now)
{
    if (!feedsLoad(now))
        return false;
    if (now.system.operating == OperatingState::OnBattery) {
        if (mainsNow() == Scenario::Mains::Absent)
            return false;
        moveOnTo(mainsNow() == Scenario::Mains::Good
                     ? Scenario::chargingAt(*now.value(Quantity::BatteryCharge))
                     : position());
    } else if (now.system.operating == OperatingState::OnBypass) {
        if (hasInverterFault(now) || *now.value(Quantity::Load) > 100.0)
            return false;
        moveOnTo(forced == Forced::Bypass ? position() : Scenario::startOf(Phase::Recovery));
    }
    return true;
}

bool SimulatorFeed::clearAlarm(const Snapshot &now)
{
    if (now.system.alarm == AlarmState::None)
        return true;
    if (isLocked(now)) {
        force(Forced::StandBy);
        return true;
    }
    if (hasInverterFault(now)) {
        moveOnTo(Scenario::startOf(Phase::Recovery));
        return true;
    }
    return false;
}

void SimulatorFeed::force(Forced state)
{
    const Snapshot now = behindTheLink();
    loadThen = now.value(Quantity::Load).value_or(0.0);
    chargeThen = now.value(Quantity::BatteryCharge).value_or(0.0);
    mainsThen = mainsNow();
    forced = state;
    forcedTime = 0.0;
}

void SimulatorFeed::moveOnTo(double seconds)
{
    storyTime = seconds * 1000.0;
    forced = Forced::Nothing;
}
