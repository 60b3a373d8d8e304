// SPDX-License-Identifier: LicenseRef-all-rights-reserved

#pragma once

#include "scenario.h"
#include "upsfeed.h"

#include <QtCore/QElapsedTimer>
#include <QtCore/QTimer>

/// Plays the scenario in real time or faster, again and again.
///
/// What a command brings about takes the place of the scenario, which stands still meanwhile. A
/// command that ends it, or ends what the scenario itself brought about, lets the scenario go on
/// from a fitting place. Commands are refused as a UPS would: a locked one does not switch on until
/// its alarm is cleared (then it is in stand-by), one that is off does not go to battery or bypass,
/// a bypass without good mains is not entered, there is no return to mains that are absent, an
/// alarm whose cause stands is not cleared, and one that cannot be reached hears nothing but
/// RestoreCommunication and FollowScenario.
class SimulatorFeed : public UpsFeed
{
    Q_OBJECT

public:
    /// @p speed scenario seconds pass in a second; not a number above 0 counts as 1, and more than
    /// 1000 as 1000.
    explicit SimulatorFeed(double speed = 1.0, QObject *parent = nullptr);
    ~SimulatorFeed() override;

    void start() override;
    void stop() override;
    bool supports(Command command) const override;
    bool command(Command command) override;

    /// Goes to an instant of the scenario (seconds; it repeats), forgets all commands, and delivers
    /// that instant's snapshot.
    void seekTo(double seconds);
    /// Lets @p milliseconds of the clock pass, at the feed's speed, and delivers a snapshot. A
    /// started feed does this by itself.
    void advance(qint64 milliseconds);

    /// Instant of the scenario, in seconds from its start; not wrapped.
    double position() const;
    /// The UPS as it is now.
    Snapshot current() const;

private:
    /// What a command has put in the scenario's place.
    enum class Forced { Nothing, StandBy, Battery, Bypass, Locked };

    Snapshot behindTheLink() const;
    double chargeNow() const;
    Scenario::Mains mainsNow() const;
    bool obey(Command command);
    bool obeyReachable(Command command);
    bool returnToMains(const Snapshot &now);
    bool clearAlarm(const Snapshot &now);
    void force(Forced state);
    void moveOnTo(double seconds);

    double speed;
    QTimer timer;
    QElapsedTimer clock;
    double storyTime = 0.0;  // milliseconds
    double forcedTime = 0.0; // milliseconds since the command
    Forced forced = Forced::Nothing;
    Scenario::Mains mainsThen = Scenario::Mains::Good; // at the command; they stay so
    double loadThen = 0.0;                             // percent, at the command
    double chargeThen = 0.0;                           // percent, at the command
    bool silent = false;
    bool beeper = true;
};
