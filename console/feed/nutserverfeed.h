// SPDX-License-Identifier: LicenseRef-all-rights-reserved

#pragma once

#include "nutlink.h"
#include "nutsession.h"
#include "offer.h"
#include "snapshot.h"

#include <QtCore/QElapsedTimer>
#include <QtCore/QPointer>

#include <vector>

class NutFeed;

/// How patient a connection is; all in milliseconds but for the rounds.
struct NutTimes
{
    int poll = 1000;          ///< rest between the last answer of a round and the next round
    int answer = 3500;        ///< from one answer (or the try to connect) to the next
    int longestRound = 15000; ///< for all answers of a round
    int firstRetry = 500;     ///< rest before the first reconnection; doubles from try to try
    int longestRetry = 10000; ///< but not beyond this
    int secure = 5000;        ///< for the connection and the TLS handshake
    int rounds = 5;           ///< each UPS of several is asked for everything every so many rounds
};

/// A UPS that a server says it has.
struct NutUps
{
    QString name;        ///< fit for NutAddress
    QString description; ///< plain text in one line; may be empty
};

/// Follows the UPSes of one server of Network UPS Tools over one connection.
///
/// A round asks each UPS for its status, in one go, and some of them, in turn, for everything. A
/// UPS whose status changes, that was not reached or is the server's only one is asked for
/// everything at once. It only reads and never logs in, so that it does not count as a machine that
/// the UPSes feed. It reconnects for ever.
class NutServerFeed : public QObject
{
    Q_OBJECT

public:
    explicit NutServerFeed(const NutHost &host, const NutTls &tls = NutTls(),
                           const NutTimes &times = NutTimes(), QObject *parent = nullptr);
    ~NutServerFeed() override;

    const NutHost &host() const;
    /// Names the server where it is lost; at first its address does.
    void setTitle(const QString &title);
    /// Those of its feeds' UPSes that the server says it does not have, as of its last answers.
    QStringList unknownUpses() const;
    /// Asks the server for its UPSes too, once a connection and each minute: found() says which.
    void discover();
    /// The way for commands to its UPSes.
    NutSession &session();

Q_SIGNALS:
    /// All UPSes of the server, in its order.
    void found(const QVector<NutUps> &all);
    /// The server has answered everything that a round asks.
    void reached();
    /// The server cannot be reached, or no more; plain text.
    void lost(const QString &reason);
    /// What the server makes of the user whom session() got at first, or of one who logged in.
    void userChecked(const QString &user, CommandOutcome outcome, const QString &text);

private:
    friend class NutFeed;

    enum class Phase {
        Idle,       // nobody wants anything
        Connecting, //
        Asking,     // answers are awaited
        Resting,    // until the next round
        Retrying,   // without a connection, until the next try
    };

    void join(NutFeed *feed);
    void leave(NutFeed *feed);
    void deliverSoon();
    void deliver();
    void connectToServer();
    void askAll();
    void askForUpses();
    void askForStatus(NutFeed *feed);
    void askForEverything(NutFeed *feed);
    void takeUpses(const NutReader &answer);
    void askForOffer(NutFeed *feed);
    void takeOffer(NutFeed *feed, const Offer &offer);
    void checkUser(const NutFeed *feed);
    void takeCheck(const QString &user, CommandOutcome outcome, const QString &text);
    /// Counts an answer; the last one ends the round.
    void answered();
    void takeLoss(const QString &reason);

    const NutHost server;
    QString shownName;
    const NutTimes times;
    NutLink link;
    NutSession commands;
    Phase phase = Phase::Idle;
    bool discovers = false;
    bool askedForUpses = false;
    int retryRest;
    int round = 0;
    int lastSlot = 0;
    bool userIsChecked = false;
    bool checksUser = false;
    QElapsedTimer lastCheck;
    std::vector<QPointer<NutFeed>> feeds; // those that run
    QTimer deadline;                      // of the next answer
    QTimer roundDeadline;                 // of all of them
    QTimer next;                          // round or try
    // Snapshots leave from here, never from within the socket's signals: a receiver may delete
    // feeds.
    QTimer delivery;
};
