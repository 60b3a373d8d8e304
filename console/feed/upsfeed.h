#pragma once

#include "snapshot.h"

#include <QtCore/QObject>

/// What a host may ask of a UPS, where the feed can pass it on.
enum class Command {
    SwitchOn,
    SwitchOff,     ///< to stand-by: the load is off
    ForceBattery,  ///< run on battery though the mains are there
    GoToBypass,    ///< feed the load straight from the mains
    ReturnToMains, ///< end running on battery or on bypass
    Lock,          ///< switch off and refuse to switch on
    ClearAlarm,    ///< acknowledge alarms; ends a lock
    BeeperOn,
    BeeperOff,
    LoseCommunication,    ///< act as if the link were cut
    RestoreCommunication, ///< end that
    FollowScenario,       ///< forget all commands given to a simulation
};

/// A source of snapshots of one UPS: where they come from is the subclasses' affair.
///
/// It lives in the thread of its event loop, never blocks it and throws nothing: what goes wrong is
/// a snapshot without communication. A receiver of snapshotReady() may stop or delete the feed.
class UpsFeed : public QObject
{
    Q_OBJECT

public:
    explicit UpsFeed(QObject *parent = nullptr);
    ~UpsFeed() override;

    /// Begins to deliver snapshots; does nothing on a feed that runs.
    virtual void start() = 0;
    /// Ends it: no snapshot comes after this returned.
    virtual void stop() = 0;

    /// Whether this kind of feed can pass on @p command at all. Here: none.
    virtual bool supports(Command command) const;
    /// Gives the command. Returns false when it is not supported, or refused in the present state.
    virtual bool command(Command command);

Q_SIGNALS:
    /// The UPS as it is now; comes repeatedly, changed or not.
    void snapshotReady(const Snapshot &snapshot);
};
