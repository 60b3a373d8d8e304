// SPDX-License-Identifier: LicenseRef-all-rights-reserved

#include "simulatorfeed.h"

#include "snapshots.h"
#include "testmain.h"
#include "widgetprobe.h"

#include <QtCore/QPointer>
#include <QtCore/QSet>

#include <cmath>
#include <limits>
#include <memory>

using Scenario::Phase;

Q_DECLARE_METATYPE(Scenario::Phase)
Q_DECLARE_METATYPE(Command)

namespace {

/// Every element of a snapshot and the whole.
QList<ElementState> statesOf(const Snapshot &snapshot)
{
    QList<ElementState> states{snapshot.system};
    for (const ElementState &state : snapshot.elements)
        states += state;
    return states;
}

double middleOf(Phase phase)
{
    const double start = Scenario::startOf(phase);
    double end = start;
    while (Scenario::phaseAt(end) == phase)
        end += 0.25;
    return (start + end) / 2.0;
}

const ElementState on = {AlarmState::None, OperatingState::On};
const ElementState standBy = {AlarmState::None, OperatingState::StandBy};

} // namespace

class TestSimulator : public WidgetTest
{
    Q_OBJECT

private Q_SLOTS:
    void takesThreeToFourMinutes();
    void showsEveryState();
    void phasesFollowOneAnother_data();
    void phasesFollowOneAnother();
    void valuesArePlausible();
    void loadGoesBeyondItsRange();
    void chargeFallsOnBattery();
    void lostCommunicationLeavesNothing();
    void repeats();
    void takesAnyInstant();
    void playingEqualsSeeking_data();
    void playingEqualsSeeking();
    void speedFactor_data();
    void speedFactor();
    void startDeliversAtOnceAndThenRepeatedly();
    void stopEndsDelivery();
    void mayBeDeletedByItsReceiver();
    void forcedBattery();
    void forcedBatteryRunsLow();
    void forcedBatteryKeepsTheMains();
    void noReturnToAbsentMains();
    void offKeepsTheMains();
    void returnToMainsKeepsTheCharge_data();
    void returnToMainsKeepsTheCharge();
    void returnToMainsEndsTheScenariosBypass();
    void bypass();
    void switchingOffAndOn();
    void lockAndClear();
    void clearAlarm_data();
    void clearAlarm();
    void beeper();
    void communication();
    void refusals_data();
    void refusals();
    void followScenarioForgetsCommands();
    void seekForgetsCommands();
    void commandsDeliver();
};

void TestSimulator::takesThreeToFourMinutes()
{
    QVERIFY(Scenario::length() >= 180.0);
    QVERIFY(Scenario::length() <= 240.0);
}

void TestSimulator::showsEveryState()
{
    QSet<int> alarms, operatings;
    for (double t = 0.0; t < Scenario::length(); t += 0.5) {
        for (const ElementState &state : statesOf(Scenario::snapshotAt(t))) {
            alarms += int(state.alarm);
            operatings += int(state.operating);
            // The tiles show an alarm only together with an operating state.
            QVERIFY(state.alarm < AlarmState::Warning ||
                    state.operating != OperatingState::Unknown);
        }
    }
    QCOMPARE(alarms, (QSet<int>{0, 1, 2, 3, 4, 5}));
    QCOMPARE(operatings, (QSet<int>{0, 1, 2, 3, 4, 5, 6, 7}));
}

void TestSimulator::phasesFollowOneAnother_data()
{
    QTest::addColumn<Phase>("phase");
    QTest::addColumn<int>("alarm");
    QTest::addColumn<int>("operating");
    QTest::newRow("stand-by") << Phase::StandBy << 1 << 1;
    QTest::newRow("precharge") << Phase::Precharge << 1 << 2;
    QTest::newRow("waiting for battery voltage") << Phase::WaitBatteryVoltage << 1 << 4;
    QTest::newRow("calibration") << Phase::Calibration << 1 << 3;
    QTest::newRow("mains on") << Phase::Normal << 1 << 5;
    QTest::newRow("anomaly") << Phase::MainsOutOfTolerance << 3 << 5;
    QTest::newRow("on battery") << Phase::OnBattery << 2 << 6;
    QTest::newRow("low battery") << Phase::LowBattery << 4 << 6;
    QTest::newRow("recharging") << Phase::Recharging << 1 << 5;
    QTest::newRow("overload") << Phase::Overload << 3 << 5;
    QTest::newRow("bypass") << Phase::OnBypass << 2 << 7;
    QTest::newRow("fault") << Phase::InverterFault << 4 << 7;
    QTest::newRow("locked") << Phase::Locked << 5 << 1;
    QTest::newRow("communication lost") << Phase::CommunicationLost << 0 << 0;
    QTest::newRow("recovery") << Phase::Recovery << 1 << 5;
}

void TestSimulator::phasesFollowOneAnother()
{
    QFETCH(Phase, phase);
    QFETCH(int, alarm);
    QFETCH(int, operating);
    const double start = Scenario::startOf(phase);
    QCOMPARE(Scenario::phaseAt(start), phase);
    const Phase before = Phase((int(phase) + Scenario::phaseCount - 1) % Scenario::phaseCount);
    QCOMPARE(Scenario::phaseAt(start - 0.001), before);

    const Snapshot snapshot = Scenario::snapshotAt(middleOf(phase));
    QCOMPARE(snapshot.system, (ElementState{AlarmState(alarm), OperatingState(operating)}));
    QVERIFY(snapshot.simulated);
    QCOMPARE(snapshot.name, QStringLiteral("Simulated UPS"));
    QCOMPARE(snapshot.isLost(), phase == Phase::CommunicationLost);
    if (!snapshot.isLost())
        QVERIFY(!snapshot.status.isEmpty());
    // What alarms says why, and what says so alarms.
    QCOMPARE(snapshot.alarms.isEmpty(), alarm < 2);
}

void TestSimulator::valuesArePlausible()
{
    for (double t = 0.0; t < Scenario::length(); t += 0.5) {
        const Snapshot snapshot = Scenario::snapshotAt(t);
        if (snapshot.isLost())
            continue;
        for (int i = 0; i < quantityCount; ++i) {
            const Measure &measure = snapshot.measure(Quantity(i));
            QVERIFY(measure.minimum && measure.maximum && *measure.minimum < *measure.maximum);
            QVERIFY(!measure.value || std::isfinite(*measure.value));
        }
        const double load = *snapshot.value(Quantity::Load);
        const double charge = *snapshot.value(Quantity::BatteryCharge);
        const double battery = *snapshot.value(Quantity::BatteryVoltage);
        const double output = *snapshot.value(Quantity::OutputVoltage);
        const double current = *snapshot.value(Quantity::OutputCurrent);
        const double power = *snapshot.value(Quantity::OutputPower);
        QVERIFY(load >= 0.0 && load <= 131.0);
        QVERIFY(charge >= 0.0 && charge <= 100.0);
        QVERIFY(battery > 60.0 && battery < 84.0);
        // Power is what current, voltage and power factor make of it, and is the load's share.
        QVERIFY(std::abs(power - output * current * 0.9) < 0.001);
        QVERIFY(std::abs(power - load * 27.0) < 0.001);

        const bool off = snapshot.element(Element::Load).operating == OperatingState::StandBy;
        QCOMPARE(off, load == 0.0);
        QCOMPARE(off, output == 0.0);
        QCOMPARE(off, !snapshot.value(Quantity::OutputFrequency));
        QCOMPARE(off, !snapshot.value(Quantity::BatteryRuntime));
        const bool mains = snapshot.system.operating != OperatingState::OnBattery;
        QCOMPARE(mains, *snapshot.value(Quantity::InputVoltage) > 100.0);
        QCOMPARE(mains, bool(snapshot.value(Quantity::InputFrequency)));
    }
}

void TestSimulator::loadGoesBeyondItsRange()
{
    double greatest = 0.0;
    for (double t = 0.0; t < Scenario::length(); t += 0.1) {
        const std::optional<double> load = Scenario::snapshotAt(t).value(Quantity::Load);
        greatest = std::max(greatest, load.value_or(0.0));
    }
    QVERIFY(greatest > 129.0 && greatest < 132.0);
    QCOMPARE(*Scenario::snapshotAt(0.0).measure(Quantity::Load).maximum, 100.0);
}

void TestSimulator::chargeFallsOnBattery()
{
    double before = 101.0;
    const double end = Scenario::startOf(Phase::Recharging);
    for (double t = Scenario::startOf(Phase::OnBattery); t < end; t += 0.5) {
        const double charge = *Scenario::snapshotAt(t).value(Quantity::BatteryCharge);
        QVERIFY(charge < before);
        before = charge;
    }
    QVERIFY(before < 10.0);
    QVERIFY(*Scenario::snapshotAt(middleOf(Phase::Recharging)).value(Quantity::BatteryCharge) >
            before);
}

void TestSimulator::lostCommunicationLeavesNothing()
{
    const Snapshot snapshot = Scenario::snapshotAt(middleOf(Phase::CommunicationLost));
    for (const ElementState &state : statesOf(snapshot))
        QCOMPARE(state, ElementState());
    for (const Measure &measure : snapshot.measures)
        QVERIFY(!measure.value && !measure.minimum && !measure.maximum);
    QVERIFY(!snapshot.reason.isEmpty());
    QVERIFY(snapshot.status.isEmpty());
}

void TestSimulator::repeats()
{
    const QString first = describe(Scenario::snapshotAt(0.0));
    const Snapshot again = Scenario::snapshotAt(Scenario::length());
    QCOMPARE(Scenario::phaseAt(Scenario::length()), Phase::StandBy);
    QCOMPARE(again.system, Scenario::snapshotAt(0.0).system);
    QCOMPARE(describe(Scenario::snapshotAt(0.0)), first);
    QCOMPARE(Scenario::phaseAt(-0.5), Phase::Recovery);
}

void TestSimulator::takesAnyInstant()
{
    for (double t : {-1e9, 1e18, std::numeric_limits<double>::infinity(),
                     std::numeric_limits<double>::quiet_NaN(), 1e308}) {
        const Snapshot snapshot = Scenario::snapshotAt(t);
        QCOMPARE(snapshot.name, QStringLiteral("Simulated UPS"));
        for (const Measure &measure : snapshot.measures)
            QVERIFY(!measure.value || std::isfinite(*measure.value));
        SimulatorFeed feed;
        feed.seekTo(t);
        QVERIFY(std::isfinite(feed.position()));
    }
}

void TestSimulator::playingEqualsSeeking_data()
{
    QTest::addColumn<int>("step");
    QTest::newRow("in ticks of 200 ms") << 200;
    QTest::newRow("in one stride") << 100000;
    QTest::newRow("in uneven ticks") << 125;
}

void TestSimulator::playingEqualsSeeking()
{
    QFETCH(int, step);
    SimulatorFeed player, seeker;
    SnapshotLog played(&player), sought(&seeker);
    for (int time = step; time <= 100000; time += step) {
        player.advance(step);
        seeker.seekTo(time / 1000.0);
        QCOMPARE(describe(played.last()), describe(sought.last()));
        QCOMPARE(describe(played.last()), describe(Scenario::snapshotAt(time / 1000.0)));
    }
    QCOMPARE(player.position(), 100.0);
}

void TestSimulator::speedFactor_data()
{
    QTest::addColumn<double>("speed");
    QTest::addColumn<double>("position");
    QTest::newRow("real time") << 1.0 << 10.0;
    QTest::newRow("slow") << 0.5 << 5.0;
    QTest::newRow("fast") << 20.0 << 200.0;
    QTest::newRow("too fast") << 1e9 << 10000.0;
    QTest::newRow("endless") << std::numeric_limits<double>::infinity() << 10000.0;
    QTest::newRow("zero") << 0.0 << 10.0;
    QTest::newRow("backwards") << -3.0 << 10.0;
    QTest::newRow("no number") << std::numeric_limits<double>::quiet_NaN() << 10.0;
}

void TestSimulator::speedFactor()
{
    QFETCH(double, speed);
    QFETCH(double, position);
    SimulatorFeed feed(speed);
    feed.advance(10000);
    QCOMPARE(feed.position(), position);
    feed.advance(-5000);
    QCOMPARE(feed.position(), position);
}

void TestSimulator::startDeliversAtOnceAndThenRepeatedly()
{
    SimulatorFeed feed(100.0);
    SnapshotLog log(&feed);
    feed.start();
    QCOMPARE(log.count(), 1);
    QCOMPARE(describe(log.last()), describe(Scenario::snapshotAt(0.0)));
    feed.start();
    QCOMPARE(log.count(), 1);
    QTRY_VERIFY(log.count() >= 3);
    // The clock of the test, not only the count of ticks, has driven the story on.
    QVERIFY(feed.position() >= 0.3 * 100.0);
    QCOMPARE(describe(log.last()), describe(Scenario::snapshotAt(feed.position())));
}

void TestSimulator::stopEndsDelivery()
{
    SimulatorFeed feed;
    SimulatorFeed other;
    SnapshotLog log(&feed), otherLog(&other);
    feed.start();
    other.start();
    feed.stop();
    QTRY_VERIFY(otherLog.count() >= 3);
    QCOMPARE(log.count(), 1);
}

void TestSimulator::mayBeDeletedByItsReceiver()
{
    for (int way = 0; way < 4; ++way) {
        QPointer<SimulatorFeed> feed = new SimulatorFeed;
        connect(feed.data(), &UpsFeed::snapshotReady, this, [&feed] { delete feed.data(); });
        switch (way) {
        case 0:
            feed->start();
            break;
        case 1:
            feed->seekTo(3.0);
            break;
        case 2:
            feed->advance(10);
            break;
        case 3:
            QVERIFY(feed->command(Command::BeeperOff));
            break;
        }
        QVERIFY(feed.isNull());
    }
}

void TestSimulator::forcedBattery()
{
    SimulatorFeed feed;
    const double instant = middleOf(Phase::Normal);
    feed.seekTo(instant);
    const Snapshot before = feed.current();
    QCOMPARE(before.system, on);

    QVERIFY(feed.supports(Command::ForceBattery));
    QVERIFY(feed.command(Command::ForceBattery));
    const Snapshot after = feed.current();
    QCOMPARE(after.system.operating, OperatingState::OnBattery);
    QCOMPARE(after.element(Element::Battery).operating, OperatingState::OnBattery);
    QCOMPARE(after.element(Element::Load).operating, OperatingState::OnBattery);
    QCOMPARE(*after.value(Quantity::Load), *before.value(Quantity::Load));
    QCOMPARE(*after.value(Quantity::BatteryCharge), *before.value(Quantity::BatteryCharge));
    QVERIFY(*after.value(Quantity::InputVoltage) > 220.0);

    feed.advance(5000);
    QVERIFY(*feed.current().value(Quantity::BatteryCharge) <
            *before.value(Quantity::BatteryCharge) - 1.0);
    QCOMPARE(feed.position(), instant);
}

/// A run on battery by command is no mains failure.
void TestSimulator::forcedBatteryKeepsTheMains()
{
    SimulatorFeed feed;
    feed.seekTo(middleOf(Phase::Normal));
    QVERIFY(feed.command(Command::ForceBattery));
    for (int second = 0; second < 60; ++second) {
        const Snapshot now = feed.current();
        QVERIFY(now.tokens.testFlag(StatusToken::OnBattery));
        QVERIFY(*now.value(Quantity::InputVoltage) > 220.0);
        QVERIFY(now.value(Quantity::InputFrequency));
        QCOMPARE(now.element(Element::Rectifier),
                 (ElementState{AlarmState::None, OperatingState::StandBy}));
        QCOMPARE(now.element(Element::Bypass),
                 (ElementState{AlarmState::None, OperatingState::StandBy}));
        QVERIFY(!now.alarms.contains(QStringLiteral("Mains failure")));
        QVERIFY(now.alarms.contains(QStringLiteral("Battery run by command")));
        feed.advance(1000);
    }
    QVERIFY(feed.command(Command::ReturnToMains));
    QCOMPARE(feed.current().system.operating, OperatingState::On);

    // Mains that were out of tolerance are so afterwards.
    feed.seekTo(middleOf(Phase::MainsOutOfTolerance));
    QVERIFY(feed.command(Command::ForceBattery));
    QVERIFY(*feed.current().value(Quantity::InputVoltage) < 196.0);
    QVERIFY(*feed.current().value(Quantity::InputVoltage) > 100.0);
    QVERIFY(feed.command(Command::ReturnToMains));
    QCOMPARE(Scenario::phaseAt(feed.position()), Phase::MainsOutOfTolerance);
}

void TestSimulator::noReturnToAbsentMains()
{
    for (const Phase phase : {Phase::OnBattery, Phase::LowBattery}) {
        SimulatorFeed feed;
        feed.seekTo(middleOf(phase));
        const QString before = describe(feed.current());
        QVERIFY(!feed.command(Command::ReturnToMains));
        QCOMPARE(describe(feed.current()), before);
        QCOMPARE(*feed.current().value(Quantity::InputVoltage), 0.0);
    }
}

/// Switching off or locking does not bring the mains back.
void TestSimulator::offKeepsTheMains()
{
    for (const Command command : {Command::SwitchOff, Command::Lock}) {
        SimulatorFeed feed;
        feed.seekTo(middleOf(Phase::OnBattery));
        QVERIFY(feed.command(command));
        const Snapshot off = feed.current();
        QCOMPARE(*off.value(Quantity::InputVoltage), 0.0);
        QCOMPARE(*off.value(Quantity::OutputVoltage), 0.0);
        QVERIFY(off.system.alarm >= AlarmState::Warning);
        QVERIFY(off.alarms.contains(QStringLiteral("Mains failure")));
        QCOMPARE(off.element(Element::Rectifier).alarm, AlarmState::Warning);
        if (command == Command::Lock)
            QVERIFY(feed.command(Command::ClearAlarm));
        QCOMPARE(*feed.current().value(Quantity::InputVoltage), 0.0);
        // It starts on battery, since there is nothing else.
        QVERIFY(feed.command(Command::SwitchOn));
        QCOMPARE(feed.current().system.operating, OperatingState::OnBattery);
    }
}

void TestSimulator::forcedBatteryRunsLow()
{
    SimulatorFeed feed;
    feed.seekTo(middleOf(Phase::Normal));
    QVERIFY(feed.command(Command::ForceBattery));
    int lowSince = 0;
    for (int second = 1; second <= 120; ++second) {
        feed.advance(1000);
        const Snapshot now = feed.current();
        const double charge = *now.value(Quantity::BatteryCharge);
        QVERIFY(charge > 0.0);
        QCOMPARE(now.element(Element::Battery).alarm,
                 charge > 20.0 ? AlarmState::None : AlarmState::Fault);
        if (!lowSince && charge <= 20.0)
            lowSince = second;
    }
    QVERIFY(lowSince > 10 && lowSince < 60);
    QCOMPARE(*feed.current().value(Quantity::BatteryCharge), 1.0);
}

void TestSimulator::returnToMainsKeepsTheCharge_data()
{
    QTest::addColumn<int>("drain");
    QTest::newRow("nearly full") << 1000;
    QTest::newRow("half full") << 20000;
    QTest::newRow("low") << 40000;
    QTest::newRow("empty") << 100000;
}

void TestSimulator::returnToMainsKeepsTheCharge()
{
    QFETCH(int, drain);
    SimulatorFeed feed;
    feed.seekTo(middleOf(Phase::Normal));
    QVERIFY(feed.command(Command::ForceBattery));
    feed.advance(drain);
    const double charge = *feed.current().value(Quantity::BatteryCharge);
    QVERIFY(feed.command(Command::ReturnToMains));
    QCOMPARE(feed.current().system, on);
    const double then = *feed.current().value(Quantity::BatteryCharge);
    QVERIFY2(std::abs(then - std::max(charge, 6.0)) < 0.001, qPrintable(QString::number(then)));
    feed.advance(200);
    QCOMPARE(feed.current().system, on);
    QVERIFY(*feed.current().value(Quantity::BatteryCharge) > then);
}

void TestSimulator::returnToMainsEndsTheScenariosBypass()
{
    SimulatorFeed feed;
    // The overload must be over first.
    feed.seekTo(Scenario::startOf(Phase::OnBypass) + 1.0);
    QVERIFY(*feed.current().value(Quantity::Load) > 100.0);
    QVERIFY(!feed.command(Command::ReturnToMains));
    feed.seekTo(Scenario::startOf(Phase::InverterFault) - 1.0);
    QVERIFY(feed.command(Command::ReturnToMains));
    QCOMPARE(feed.current().system, on);
}

void TestSimulator::bypass()
{
    SimulatorFeed feed;
    const double instant = middleOf(Phase::Recharging);
    feed.seekTo(instant);
    const QString before = describe(feed.current());
    const double load = *feed.current().value(Quantity::Load);
    QVERIFY(feed.command(Command::GoToBypass));
    feed.advance(30000);
    const Snapshot now = feed.current();
    QCOMPARE(now.system, (ElementState{AlarmState::Warning, OperatingState::OnBypass}));
    QCOMPARE(now.element(Element::Bypass).operating, OperatingState::OnBypass);
    QCOMPARE(*now.value(Quantity::Load), load);
    QCOMPARE(*now.value(Quantity::OutputVoltage), *now.value(Quantity::BypassVoltage));
    // Without a mains failure nothing but the way of the load has changed.
    QVERIFY(feed.command(Command::ReturnToMains));
    QCOMPARE(describe(feed.current()), before);
}

void TestSimulator::switchingOffAndOn()
{
    SimulatorFeed feed;
    feed.seekTo(middleOf(Phase::Normal));
    QVERIFY(feed.command(Command::SwitchOn)); // it is on
    QCOMPARE(feed.current().system, on);
    QVERIFY(feed.command(Command::SwitchOff));
    feed.advance(60000);
    QCOMPARE(feed.current().system, standBy);
    QCOMPARE(feed.current().element(Element::Load), standBy);
    QCOMPARE(*feed.current().value(Quantity::OutputVoltage), 0.0);
    QVERIFY(feed.command(Command::SwitchOn));
    QCOMPARE(feed.current().system.operating, OperatingState::Precharge);
    feed.advance(30000);
    QCOMPARE(feed.current().system, on);
}

void TestSimulator::lockAndClear()
{
    SimulatorFeed feed;
    feed.seekTo(middleOf(Phase::Normal));
    QVERIFY(feed.command(Command::Lock));
    feed.advance(60000);
    QCOMPARE(feed.current().system, (ElementState{AlarmState::Locked, OperatingState::StandBy}));
    QVERIFY(!feed.command(Command::SwitchOn));
    QVERIFY(!feed.command(Command::SwitchOff));
    QCOMPARE(feed.current().system.alarm, AlarmState::Locked);
    QVERIFY(feed.command(Command::ClearAlarm));
    QCOMPARE(feed.current().system, standBy);
    QVERIFY(feed.command(Command::SwitchOn));
    QCOMPARE(feed.current().system.operating, OperatingState::Precharge);
}

void TestSimulator::clearAlarm_data()
{
    QTest::addColumn<Phase>("phase");
    QTest::addColumn<bool>("cleared");
    QTest::newRow("no alarm") << Phase::Normal << true;
    QTest::newRow("fault") << Phase::InverterFault << true;
    QTest::newRow("locked") << Phase::Locked << true;
    QTest::newRow("mains still out of tolerance") << Phase::MainsOutOfTolerance << false;
    QTest::newRow("battery still low") << Phase::LowBattery << false;
    QTest::newRow("load still too great") << Phase::Overload << false;
}

void TestSimulator::clearAlarm()
{
    QFETCH(Phase, phase);
    QFETCH(bool, cleared);
    SimulatorFeed feed;
    feed.seekTo(middleOf(phase));
    const AlarmState before = feed.current().system.alarm;
    QCOMPARE(feed.command(Command::ClearAlarm), cleared);
    QCOMPARE(feed.current().system.alarm, cleared ? AlarmState::None : before);
}

void TestSimulator::beeper()
{
    SimulatorFeed feed;
    QCOMPARE(feed.current().beeperEnabled, std::optional<bool>(true));
    QVERIFY(feed.command(Command::BeeperOff));
    QCOMPARE(feed.current().beeperEnabled, std::optional<bool>(false));
    feed.advance(20000);
    QCOMPARE(feed.current().beeperEnabled, std::optional<bool>(false));
    QVERIFY(feed.command(Command::BeeperOn));
    QCOMPARE(feed.current().beeperEnabled, std::optional<bool>(true));
    feed.seekTo(middleOf(Phase::CommunicationLost));
    QVERIFY(!feed.current().beeperEnabled);
}

void TestSimulator::communication()
{
    SimulatorFeed feed;
    feed.seekTo(60.0);
    QVERIFY(feed.command(Command::LoseCommunication));
    QVERIFY(feed.current().isLost());
    QVERIFY(feed.current().simulated);
    QVERIFY(!feed.current().value(Quantity::Load));
    feed.advance(1000);
    QVERIFY(feed.current().isLost());
    QVERIFY(feed.command(Command::RestoreCommunication));
    // The UPS went on unseen.
    QCOMPARE(describe(feed.current()), describe(Scenario::snapshotAt(61.0)));

    feed.seekTo(middleOf(Phase::CommunicationLost));
    QVERIFY(feed.command(Command::RestoreCommunication));
    QCOMPARE(feed.current().system, on);
}

void TestSimulator::refusals_data()
{
    QTest::addColumn<Phase>("phase");
    QTest::addColumn<Command>("command");
    QTest::newRow("battery while off") << Phase::StandBy << Command::ForceBattery;
    QTest::newRow("bypass while off") << Phase::StandBy << Command::GoToBypass;
    QTest::newRow("mains while off") << Phase::StandBy << Command::ReturnToMains;
    QTest::newRow("battery while starting") << Phase::Precharge << Command::ForceBattery;
    QTest::newRow("bypass without mains") << Phase::OnBattery << Command::GoToBypass;
    QTest::newRow("bypass with bad mains") << Phase::MainsOutOfTolerance << Command::GoToBypass;
    QTest::newRow("battery with inverter fault") << Phase::InverterFault << Command::ForceBattery;
    QTest::newRow("mains with inverter fault") << Phase::InverterFault << Command::ReturnToMains;
    QTest::newRow("on while locked") << Phase::Locked << Command::SwitchOn;
    QTest::newRow("bypass while locked") << Phase::Locked << Command::GoToBypass;
    QTest::newRow("off while unreachable") << Phase::CommunicationLost << Command::SwitchOff;
    QTest::newRow("lock while unreachable") << Phase::CommunicationLost << Command::Lock;
    QTest::newRow("beeper while unreachable") << Phase::CommunicationLost << Command::BeeperOff;
}

void TestSimulator::refusals()
{
    QFETCH(Phase, phase);
    QFETCH(Command, command);
    SimulatorFeed feed;
    feed.seekTo(middleOf(phase));
    const QString before = describe(feed.current());
    SnapshotLog log(&feed);
    QVERIFY(!feed.command(command));
    QVERIFY(log.isEmpty());
    QCOMPARE(describe(feed.current()), before);
}

void TestSimulator::followScenarioForgetsCommands()
{
    for (Command given : {Command::SwitchOff, Command::ForceBattery, Command::GoToBypass,
                          Command::Lock, Command::BeeperOff, Command::LoseCommunication}) {
        SimulatorFeed feed;
        feed.seekTo(50.0);
        const QString before = describe(feed.current());
        QVERIFY(feed.command(given));
        QVERIFY(describe(feed.current()) != before);
        QVERIFY(feed.command(Command::FollowScenario));
        QCOMPARE(describe(feed.current()), before);
    }
}

void TestSimulator::seekForgetsCommands()
{
    SimulatorFeed feed;
    feed.seekTo(50.0);
    QVERIFY(feed.command(Command::BeeperOff));
    QVERIFY(feed.command(Command::Lock));
    QVERIFY(feed.command(Command::LoseCommunication));
    feed.seekTo(51.0);
    QCOMPARE(describe(feed.current()), describe(Scenario::snapshotAt(51.0)));
}

void TestSimulator::commandsDeliver()
{
    SimulatorFeed feed;
    feed.seekTo(50.0);
    SnapshotLog log(&feed);
    QVERIFY(feed.command(Command::Lock));
    QCOMPARE(log.count(), 1);
    QCOMPARE(log.last().system.alarm, AlarmState::Locked);
}

KIV_TEST_MAIN(TestSimulator)
#include "tst_simulator.moc"
