#include "nutfeed.h"

#include "nutmapping.h"

#include <QtNetwork/QNetworkProxy>

#include <algorithm>

namespace {

/// Bytes that Qt may read ahead; the rest waits with the sender.
constexpr int readAhead = 16 * 1024;

QString wordsForError(const QString &code)
{
    if (code == QLatin1String("DATA-STALE"))
        return QStringLiteral("the UPS's driver gives no fresh data");
    if (code == QLatin1String("DRIVER-NOT-CONNECTED"))
        return QStringLiteral("the UPS's driver is not running");
    if (code == QLatin1String("UNKNOWN-UPS"))
        return QStringLiteral("the server knows no such UPS");
    return QStringLiteral("the server answers \"%1\"").arg(code.left(40));
}

QString wordsForFailure(const QTcpSocket &socket)
{
    switch (socket.error()) {
    case QAbstractSocket::ConnectionRefusedError:
        return QStringLiteral("connection refused");
    case QAbstractSocket::RemoteHostClosedError:
        return QStringLiteral("the server closed the connection");
    case QAbstractSocket::HostNotFoundError:
        return QStringLiteral("host not found");
    default:
        return socket.errorString();
    }
}

} // namespace

NutFeed::NutFeed(const NutAddress &address, const NutTimes &wantedTimes, QObject *parent)
    : UpsFeed(parent)
    , server(address)
    , times(wantedTimes)
    , retryRest(wantedTimes.firstRetry)
    , reader(address.upsName)
{
    socket.setProxy(QNetworkProxy::NoProxy);
    socket.setReadBufferSize(readAhead);
    for (QTimer *timer : {&deadline, &next, &delivery})
        timer->setSingleShot(true);
    delivery.setInterval(0);

    connect(&socket, &QTcpSocket::connected, this, &NutFeed::ask);
    connect(&socket, &QTcpSocket::readyRead, this, &NutFeed::takeBytes);
    connect(&socket, &QTcpSocket::errorOccurred, this, &NutFeed::socketFailed);
    connect(&deadline, &QTimer::timeout, this,
            [this] { giveUp(QStringLiteral("no answer for %1 s").arg(times.answer / 1000.0)); });
    connect(&next, &QTimer::timeout, this, [this] {
        if (phase == Phase::Resting)
            ask();
        else
            connectToServer();
    });
    connect(&delivery, &QTimer::timeout, this, [this] { Q_EMIT snapshotReady(pending); });
}

NutFeed::~NutFeed()
{
    NutFeed::stop();
    socket.flush();
    socket.disconnect(this);
}

void NutFeed::start()
{
    if (phase != Phase::Idle)
        return;
    retryRest = times.firstRetry;
    deliver(
        Snapshot::lost(server.upsName, QStringLiteral("connecting to %1").arg(server.toString())));
    connectToServer();
}

void NutFeed::stop()
{
    if (phase == Phase::Idle)
        return;
    phase = Phase::Idle;
    for (QTimer *timer : {&deadline, &next, &delivery})
        timer->stop();
    if (socket.state() == QAbstractSocket::ConnectedState) {
        socket.write("LOGOUT\n");
        socket.disconnectFromHost();
    } else {
        socket.abort();
    }
}

void NutFeed::connectToServer()
{
    // What is left of an earlier connection must not be heard in the new one.
    phase = Phase::Idle;
    socket.abort();
    phase = Phase::Connecting;
    deadline.start(times.answer);
    socket.connectToHost(server.host, server.port);
}

void NutFeed::ask()
{
    phase = Phase::Asking;
    reader = NutListReader(server.upsName);
    socket.write("LIST VAR " + server.upsName.toLatin1() + '\n');
}

void NutFeed::takeBytes()
{
    if (phase == Phase::Idle || phase == Phase::Retrying) {
        socket.readAll(); // the server's farewell
        return;
    }
    if (socket.bytesAvailable() == 0)
        return;
    // After an answer the reader is not in its reading state, so that unasked bytes break it.
    while (socket.bytesAvailable() > 0 && reader.state() != NutListReader::State::Broken)
        reader.take(socket.read(NutListReader::maxLine));
    if (reader.state() != NutListReader::State::Reading)
        takeAnswer();
}

void NutFeed::takeAnswer()
{
    if (reader.state() == NutListReader::State::Broken) {
        giveUp(QStringLiteral("the server does not answer as it should: %1").arg(reader.problem()));
        return;
    }
    phase = Phase::Resting;
    deadline.start(times.answer);
    next.start(times.poll);
    if (reader.state() == NutListReader::State::Complete) {
        retryRest = times.firstRetry;
        deliver(snapshotOf(server.upsName, reader.variables()));
    } else {
        deliver(Snapshot::lost(server.upsName, wordsForError(reader.problem())));
    }
}

void NutFeed::socketFailed()
{
    if (phase != Phase::Idle && phase != Phase::Retrying)
        giveUp(wordsForFailure(socket));
}

void NutFeed::giveUp(const QString &reason)
{
    phase = Phase::Retrying;
    socket.abort();
    deadline.stop();
    next.start(retryRest);
    retryRest = std::min(2 * retryRest, times.longestRetry);
    deliver(Snapshot::lost(server.upsName, reason));
}

void NutFeed::deliver(const Snapshot &snapshot)
{
    pending = snapshot;
    delivery.start();
}
