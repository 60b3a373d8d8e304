// SPDX-License-Identifier: LicenseRef-all-rights-reserved

#pragma once

#include "commandrecord.h"
#include "condition.h"
#include "headline.h"
#include "scale.h"
#include "upsfeed.h"
#include "values.h"

#include <QtCore/QObject>
#include <QtCore/QPointer>

#include <functional>

/// The time of day for the model: UTC.
using Clock = std::function<QDateTime()>;
/// The system's time.
Clock systemClock();

/// One UPS of the site: what is known of it now, and the way for commands.
///
/// Pages, history and notices observe it and never a feed. It lives in the thread of its feed.
class UpsModel : public QObject
{
    Q_OBJECT

public:
    /// @p id names the UPS within the site, such as "demo@host:3493", and does not change.
    explicit UpsModel(const QString &id, const Clock &clock = systemClock(),
                      QObject *parent = nullptr);

    const QString &id() const;
    /// Custom names for it and its group; empty: what it says itself, and none.
    void setNames(const QString &name, const QString &site);
    /// How it is called on screen: by its custom name, by that of its host, or by its id.
    QString title() const;
    /// The group that it belongs to; may be empty.
    const QString &site() const;
    /// Follows @p feed, which stays the caller's and may be deleted at any time; or none, when
    /// null.
    void setFeed(UpsFeed *feed);
    /// Whether somebody looks at this UPS, who gets all of its values.
    void setFollowed(bool followed);
    /// Whether the server of its feed keeps what it measures; see UpsFeed.
    bool isKeptElsewhere() const;
    /// Takes the UPS's state from elsewhere.
    void take(const Snapshot &snapshot);

    const Snapshot &snapshot() const;
    const Headline &headline() const;
    /// The present conditions, the worst first.
    const QVector<Condition> &conditions() const;
    /// The worst condition; null when there is none.
    const Condition *worst() const;
    /// The worst of the headline and all conditions.
    Severity severity() const;
    /// How long a UPS may be silent at the start, in milliseconds, before it counts as lost.
    static constexpr int patienceMsecs = 15000;
    /// When the UPS was last heard, in UTC; invalid before the first time.
    QDateTime heardAt() const;
    Scale scale(Quantity quantity) const;
    Reading reading(Quantity quantity) const;
    /// "2:10", "12 min" …; empty where it would mislead: the battery cannot feed the load, or no
    /// time is known.
    QString timeLeft() const;
    /// Whether the time left is below what the UPS calls low.
    bool isTimeLeftLow() const;

    /// Whether @p command can be given to this kind of UPS at all.
    bool supports(Command command) const;
    /// Gives it. Returns false when it is not supported, or refused in the present state.
    bool command(Command command);
    /// What the UPS offers by name, as far as it is known; see UpsFeed.
    const Offer &offer() const;
    void askForOffer();
    /// Gives an offered command, or sets an offered variable; commandFinished() says how it ended.
    void run(const QString &name, const QString &value = QString());
    void set(const QString &name, const QString &value);
    /// Commands and settings that have not ended.
    int commandsUnderWay() const;
    /// Whether commands need a user, and who that is; empty while there is none.
    bool needsUser() const;
    QString user() const;
    /// The server that checks them, why there is no user though there was one, and the end of their
    /// commands; see UpsFeed.
    CommandServer commandServer() const;
    QString userProblem() const;
    void logOut();
    void logIn(const QString &user, const QString &password);
    /// Announces how a command ended: commandFinished() with this UPS's id and the present time.
    void finishCommand(const CommandResult &result);

Q_SIGNALS:
    /// Something was heard, be it the same as before.
    void heard();
    /// The snapshot, and with it perhaps headline and conditions, differs from before.
    void changed();
    /// A condition that was not there, and one that is over (as it was).
    void conditionBegan(const Condition &condition);
    void conditionEnded(const Condition &condition);
    /// What supports() answers may have changed.
    void commandsChanged();
    /// The outcome of command().
    void commandGiven(Command command, bool taken);
    void offerChanged();
    void userChecked(CommandOutcome outcome, const QString &text);
    /// A command or a setting was given by run() or set().
    void commandBegan(const QString &name, const QString &value);
    /// A command or a setting ended, well or not.
    void commandFinished(const CommandRecord &record);

private:
    void updateConditions();

    const QString name;
    QString ownName;
    QString group;
    const Clock clock;
    QPointer<UpsFeed> feed;
    Offer offered;
    int underWay = 0;
    bool followed = false;
    Snapshot latest;
    Headline line;
    QVector<Condition> present;
    // Those before communication was lost: what is still there afterwards did not begin anew.
    QVector<Condition> beforeSilence;
    QDateTime lastHeard;
    ScaleBook scales;
};
