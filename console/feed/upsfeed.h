// SPDX-License-Identifier: LicenseRef-all-rights-reserved

#pragma once

#include "commandresult.h"
#include "offer.h"
#include "snapshot.h"

#include <QtCore/QObject>

/// What an application can ask of a UPS, if the feed supports it.
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

/// Where the commands to a UPS go.
struct CommandServer
{
    QString address;          ///< such as "host:3493"; empty where there is no server
    bool isEncrypted = false; ///< and its certificate is checked
    bool isLocal = false;     ///< on this machine
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

    /// Whether somebody looks at this UPS, who may get more of it than of others. Here: nothing.
    virtual void setFollowed(bool followed);

    /// Whether the server that this reads from keeps what the UPS measures, so that nobody else
    /// need do so. Here: no.
    virtual bool isKeptElsewhere() const;

    /// Asks what the UPS offers by name, now and whenever it was not reached for a time;
    /// offerReady() brings it. Here: nothing is offered.
    virtual void askForOffer();
    /// Gives an offered command, with a value where it is not empty; commandFinished() says how it
    /// ended, later. Here: it is refused.
    virtual void run(const QString &name, const QString &value);
    /// Likewise, sets an offered variable.
    virtual void set(const QString &name, const QString &value);
    /// Whether commands need a user, and who that is; empty while there is none. Here: no need.
    virtual bool needsUser() const;
    virtual QString user() const;
    /// The server that checks the user. Here: none.
    virtual CommandServer commandServer() const;
    /// Whom the server refused, and why, while there is no user for that reason; plain text, else
    /// empty.
    virtual QString userProblem() const;
    /// From now on there is no user.
    virtual void logOut();
    /// Sets the user for commands. The server checks it, and userChecked() reports the result. The
    /// user is kept in memory only.
    virtual void logIn(const QString &user, const QString &password);

Q_SIGNALS:
    /// The UPS as it is now; comes repeatedly, changed or not.
    void snapshotReady(const Snapshot &snapshot);
    void offerReady(const Offer &offer);
    void commandFinished(const CommandResult &result);
    /// What the server makes of a user: Done, Refused, or Failed when it could not be asked.
    void userChecked(CommandOutcome outcome, const QString &text);
};
