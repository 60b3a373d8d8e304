#pragma once

#include "nutaddress.h"
#include "nutlistreader.h"
#include "upsfeed.h"

#include <QtCore/QTimer>
#include <QtNetwork/QTcpSocket>

/// How patient a NutFeed is; all in milliseconds.
struct NutTimes
{
    int poll = 1000;          ///< rest between an answer and the next question
    int answer = 3500;        ///< from one whole answer (or the try to connect) to the next
    int firstRetry = 500;     ///< rest before the first reconnection; doubles from try to try
    int longestRetry = 10000; ///< but not beyond this
};

/// Follows a UPS through a server of Network UPS Tools: asks for all its variables again and again.
///
/// It only reads and never logs in, so that it does not count as a machine that the UPS feeds.
/// Where the server refuses, closes, falls silent, talks anything but the protocol or says that its
/// data are stale, a snapshot without communication comes at once, or for silence after
/// NutTimes::answer; then the feed reconnects by itself. A snapshot is never older than
/// NutTimes::answer as far as the server tells; how soon it notices a dead driver is its own
/// affair.
class NutFeed : public UpsFeed
{
    Q_OBJECT

public:
    explicit NutFeed(const NutAddress &address, const NutTimes &times = NutTimes(),
                     QObject *parent = nullptr);
    ~NutFeed() override;

    void start() override;
    /// Takes leave of the server and closes; needs the event loop to do so in the background.
    void stop() override;

private:
    enum class Phase {
        Idle,       // not started
        Connecting, //
        Asking,     // the answer is awaited
        Resting,    // until the next question
        Retrying,   // without a connection, until the next try
    };

    void connectToServer();
    void ask();
    void takeBytes();
    void takeAnswer();
    void socketFailed();
    void giveUp(const QString &reason);
    void deliver(const Snapshot &snapshot);

    const NutAddress server;
    const NutTimes times;
    Phase phase = Phase::Idle;
    int retryRest;
    NutListReader reader;
    Snapshot pending;
    QTcpSocket socket;
    QTimer deadline; // of the next whole answer
    QTimer next;     // question or try
    // Snapshots leave from here, never from within the socket's signals: a receiver may delete us.
    QTimer delivery;
};
