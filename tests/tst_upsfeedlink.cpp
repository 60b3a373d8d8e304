// SPDX-License-Identifier: LicenseRef-all-rights-reserved

#include "nutfeed.h"
#include "nutlistreader.h"

#include "fakenutserver.h"
#include "snapshots.h"
#include "testmain.h"
#include "widgetprobe.h"

#include <QtCore/QElapsedTimer>
#include <QtCore/QFile>
#include <QtCore/QPointer>

#include <memory>
#include <utility>

#include <unistd.h>

namespace {

QByteArray listWith(const QByteArray &lines)
{
    return "BEGIN LIST VAR demo\n" + lines + "END LIST VAR demo\n";
}

QByteArray goodList(int load = 42)
{
    return listWith("VAR demo ups.status \"OL\"\nVAR demo ups.load \"" + QByteArray::number(load) +
                    "\"\n");
}

/// Patience for tests: everything a tenth to a fiftieth of what a user gets.
NutTimes shortTimes()
{
    NutTimes times;
    times.poll = 20;
    times.answer = 250;
    times.firstRetry = 10;
    times.longestRetry = 80;
    return times;
}

/// Likewise, but what made the feed give up stays for the test to see.
NutTimes noRetry()
{
    NutTimes times = shortTimes();
    times.firstRetry = times.longestRetry = 60000;
    return times;
}

/// Nothing of the UPS is left in it, and it says why.
void verifyLost(const Snapshot &snapshot, const QString &reason)
{
    QVERIFY(snapshot.isLost());
    QVERIFY2(snapshot.reason.contains(reason), qPrintable(snapshot.reason));
    QCOMPARE(describe(snapshot), describe(Snapshot::lost(QStringLiteral("demo"), snapshot.reason)));
    QCOMPARE(snapshot.system, ElementState());
    for (const ElementState &state : snapshot.elements)
        QCOMPARE(state, ElementState());
    for (const Measure &measure : snapshot.measures)
        QVERIFY(!measure.value && !measure.minimum && !measure.maximum);
}

/// Resident memory of the process, in bytes.
qint64 residentMemory()
{
    QFile file(QStringLiteral("/proc/self/statm"));
    if (!file.open(QIODevice::ReadOnly))
        return 0;
    return file.readAll().split(' ').value(1).toLongLong() * sysconf(_SC_PAGESIZE);
}

} // namespace

class TestUpsFeedLink : public WidgetTest
{
    Q_OBJECT

private Q_SLOTS:
    void firstSnapshotIsWithoutData();
    void followsTheServer();
    void asksOneThingAtATime();
    void neverLogsIn();
    void takesLeave();
    void readsOnly();
    void answersInPieces();
    void refusedByCode_data();
    void refusedByCode();
    void brokenAnswer_data();
    void brokenAnswer();
    void silence();
    void silenceAfterData();
    void defaultPatience();
    void halfAnswer_data();
    void halfAnswer();
    void dripFeed();
    void closedWithoutAnswer();
    void closedAmidTheList();
    void closedAfterTheList();
    void unaskedBytes();
    void talksBeforeBeingAsked();
    void floodWithoutLineEnd();
    void floodWithoutEnd();
    void nobodyListens();
    void hostNotFound();
    void comesBack();
    void backsOff();
    void backOffStartsAgainAfterSuccess();
    void errorsDoNotReconnect();
    void oldConnectionIsNotHeard();
    void stopIsSilent();
    void startAgain();
    void startTwice();
    void mayBeStoppedByItsReceiver();
    void mayBeDeletedByItsReceiver_data();
    void mayBeDeletedByItsReceiver();
};

void TestUpsFeedLink::firstSnapshotIsWithoutData()
{
    FakeNutServer server;
    NutFeed feed(server.address(), shortTimes());
    SnapshotLog log(&feed);
    feed.start();
    QVERIFY(log.isEmpty()); // nothing comes from within start()
    QTRY_COMPARE(log.count(), 1);
    verifyLost(log.last(), QStringLiteral("connecting to demo@127.0.0.1:"));
}

void TestUpsFeedLink::followsTheServer()
{
    FakeNutServer server;
    int load = 10;
    server.onLine = [&](QTcpSocket *socket, const QByteArray &) {
        socket->write(goodList(load++));
    };
    NutFeed feed(server.address(), shortTimes());
    SnapshotLog log(&feed);
    feed.start();
    QTRY_VERIFY(log.count() >= 6);
    double expected = 10.0;
    for (int i = log.at(0).isLost() ? 1 : 0; i < log.count(); ++i) {
        QCOMPARE(log.at(i).value(Quantity::Load), std::optional<double>(expected));
        QCOMPARE(log.at(i).system, (ElementState{AlarmState::None, OperatingState::On}));
        QCOMPARE(log.at(i).name, QStringLiteral("demo"));
        QVERIFY(log.at(i).reason.isEmpty());
        expected += 1.0;
    }
    QCOMPARE(server.clients.count(), 1);
}

void TestUpsFeedLink::asksOneThingAtATime()
{
    FakeNutServer server; // answers nothing
    NutFeed feed(server.address(), noRetry());
    SnapshotLog log(&feed);
    feed.start();
    QTRY_VERIFY(log.last().reason.contains(QStringLiteral("no answer")));
    QCOMPARE(server.asked, QByteArrayList{"LIST VAR demo"});
}

void TestUpsFeedLink::neverLogsIn()
{
    FakeNutServer server;
    server.onLine = [](QTcpSocket *socket, const QByteArray &) {
        socket->write("ERR USERNAME-REQUIRED\n");
    };
    NutFeed feed(server.address(), shortTimes());
    SnapshotLog log(&feed);
    feed.start();
    QTRY_VERIFY(server.asked.count() >= 4);
    for (const QByteArray &line : std::as_const(server.asked))
        QCOMPARE(line, QByteArray("LIST VAR demo"));
    verifyLost(log.last(), QStringLiteral("USERNAME-REQUIRED"));
}

void TestUpsFeedLink::takesLeave()
{
    FakeNutServer server;
    server.onLine = [](QTcpSocket *socket, const QByteArray &line) {
        socket->write(line == "LOGOUT" ? QByteArray("OK Goodbye\n") : goodList());
    };
    NutFeed feed(server.address(), shortTimes());
    SnapshotLog log(&feed);
    feed.start();
    QTRY_VERIFY(!log.last().isLost() && !log.isEmpty());
    feed.stop();
    QTRY_COMPARE(server.asked.last(), QByteArray("LOGOUT"));
    QTRY_COMPARE(server.client()->state(), QAbstractSocket::UnconnectedState);

    auto second = std::make_unique<NutFeed>(server.address(), shortTimes());
    second->start();
    QTRY_COMPARE(server.asked.last(), QByteArray("LIST VAR demo"));
    second.reset();
    QTRY_COMPARE(server.asked.last(), QByteArray("LOGOUT"));
}

void TestUpsFeedLink::readsOnly()
{
    FakeNutServer server;
    server.onLine = [](QTcpSocket *socket, const QByteArray &) { socket->write(goodList()); };
    NutFeed feed(server.address(), shortTimes());
    SnapshotLog log(&feed);
    feed.start();
    QTRY_VERIFY(!log.last().isLost());
    for (int i = 0; i <= int(Command::FollowScenario); ++i) {
        QVERIFY(!feed.supports(Command(i)));
        QVERIFY(!feed.command(Command(i)));
    }
    const auto before = server.asked.count();
    QTRY_VERIFY(server.asked.count() >= before + 3);
    for (const QByteArray &line : std::as_const(server.asked))
        QCOMPARE(line, QByteArray("LIST VAR demo"));
}

void TestUpsFeedLink::answersInPieces()
{
    FakeNutServer server;
    server.onLine = [](QTcpSocket *socket, const QByteArray &) {
        const QByteArray answer = goodList();
        auto *timer = new QTimer(socket);
        auto sent = std::make_shared<int>(0);
        QObject::connect(timer, &QTimer::timeout, socket, [=] {
            socket->write(answer.mid(*sent, 7));
            *sent += 7;
            if (*sent >= answer.size())
                timer->stop();
        });
        timer->start(1);
    };
    NutFeed feed(server.address(), shortTimes());
    SnapshotLog log(&feed);
    feed.start();
    QTRY_COMPARE(log.last().value(Quantity::Load), std::optional<double>(42.0));
}

void TestUpsFeedLink::refusedByCode_data()
{
    QTest::addColumn<QByteArray>("answer");
    QTest::addColumn<QString>("reason");
    QTest::newRow("stale data") << QByteArray("ERR DATA-STALE\n") << "no fresh data";
    QTest::newRow("driver gone") << QByteArray("ERR DRIVER-NOT-CONNECTED\n") << "not running";
    QTest::newRow("unknown UPS") << QByteArray("ERR UNKNOWN-UPS\n") << "no such UPS";
    QTest::newRow("no access") << QByteArray("ERR ACCESS-DENIED\n") << "ACCESS-DENIED";
    QTest::newRow("other") << QByteArray("ERR WHATEVER\n") << "WHATEVER";
}

void TestUpsFeedLink::refusedByCode()
{
    QFETCH(QByteArray, answer);
    QFETCH(QString, reason);
    FakeNutServer server;
    QByteArray now = goodList();
    server.onLine = [&](QTcpSocket *socket, const QByteArray &) { socket->write(now); };
    NutFeed feed(server.address(), shortTimes());
    SnapshotLog log(&feed);
    feed.start();
    QTRY_VERIFY(!log.last().isLost());
    now = answer;
    QTRY_VERIFY(log.last().isLost());
    verifyLost(log.last(), reason);
    now = goodList(77);
    QTRY_VERIFY(!log.last().isLost());
    QCOMPARE(log.last().value(Quantity::Load), std::optional<double>(77.0));
}

void TestUpsFeedLink::brokenAnswer_data()
{
    QTest::addColumn<QByteArray>("answer");
    QTest::newRow("web server") << QByteArray("HTTP/1.1 400 Bad Request\r\n\r\n");
    QTest::newRow("binary") << QByteArray("\0\xff\x1b\n\n\n\0", 7);
    QTest::newRow("line ends alone") << QByteArray(10000, '\n');
    QTest::newRow("another UPS") << QByteArray("BEGIN LIST VAR other\nEND LIST VAR other\n");
    QTest::newRow("two lists") << goodList() + goodList();
    QTest::newRow("error amid the list")
        << QByteArray("BEGIN LIST VAR demo\nVAR demo ups.load \"1\"\nERR DATA-STALE\n");
    QTest::newRow("open quotes") << listWith("VAR demo ups.load \"1\n");
}

void TestUpsFeedLink::brokenAnswer()
{
    QFETCH(QByteArray, answer);
    FakeNutServer server;
    QByteArray now = goodList();
    server.onLine = [&](QTcpSocket *socket, const QByteArray &) { socket->write(now); };
    NutFeed feed(server.address(), shortTimes());
    SnapshotLog log(&feed);
    feed.start();
    QTRY_VERIFY(!log.last().isLost());
    now = answer;
    QTRY_VERIFY(log.last().isLost());
    verifyLost(log.last(), QStringLiteral("does not answer as it should"));
    now = goodList(77);
    QTRY_COMPARE(log.last().value(Quantity::Load), std::optional<double>(77.0));
    QVERIFY(server.clients.count() >= 2);
}

void TestUpsFeedLink::silence()
{
    FakeNutServer server;
    NutFeed feed(server.address(), shortTimes());
    SnapshotLog log(&feed);
    QElapsedTimer clock;
    clock.start();
    feed.start();
    QTRY_VERIFY(log.last().reason.contains(QStringLiteral("no answer")));
    QVERIFY(clock.elapsed() >= 240);
    verifyLost(log.last(), QStringLiteral("no answer for 0.25 s"));
    QTRY_VERIFY(server.clients.count() >= 3);
}

void TestUpsFeedLink::silenceAfterData()
{
    FakeNutServer server;
    bool talks = true;
    server.onLine = [&](QTcpSocket *socket, const QByteArray &) {
        if (talks)
            socket->write(goodList());
    };
    NutFeed feed(server.address(), shortTimes());
    SnapshotLog log(&feed);
    feed.start();
    QTRY_VERIFY(!log.last().isLost());
    talks = false;
    QTRY_VERIFY(log.last().isLost());
    verifyLost(log.last(), QStringLiteral("no answer"));
    talks = true;
    QTRY_VERIFY(!log.last().isLost());
}

/// With what a user gets, values stand for less than five seconds after the last answer.
void TestUpsFeedLink::defaultPatience()
{
    FakeNutServer server;
    QElapsedTimer sinceAnswer;
    server.onLine = [&](QTcpSocket *socket, const QByteArray &) {
        if (sinceAnswer.isValid())
            return;
        socket->write(goodList());
        sinceAnswer.start();
    };
    NutFeed feed(server.address());
    SnapshotLog log(&feed);
    feed.start();
    QTRY_VERIFY(!log.last().isLost());
    QTRY_VERIFY(log.last().isLost());
    QVERIFY2(sinceAnswer.elapsed() < 5000, qPrintable(QString::number(sinceAnswer.elapsed())));
    QVERIFY(server.asked.count() == 2);
}

void TestUpsFeedLink::halfAnswer_data()
{
    QTest::addColumn<QByteArray>("answer");
    QTest::newRow("half a line") << QByteArray("BEGIN LIST V");
    QTest::newRow("no END") << goodList().chopped(int(sizeof "END LIST VAR demo"));
    QTest::newRow("END without its line end") << goodList().chopped(1);
    QTest::newRow("error without its line end") << QByteArray("ERR DATA-STALE");
}

void TestUpsFeedLink::halfAnswer()
{
    QFETCH(QByteArray, answer);
    FakeNutServer server;
    server.onLine = [&](QTcpSocket *socket, const QByteArray &) { socket->write(answer); };
    NutFeed feed(server.address(), shortTimes());
    SnapshotLog log(&feed);
    feed.start();
    QTRY_VERIFY(log.last().reason.contains(QStringLiteral("no answer")));
    for (int i = 0; i < log.count(); ++i)
        QVERIFY(log.at(i).isLost());
}

/// A server that keeps the line busy, byte by byte, does not count as one that answers.
void TestUpsFeedLink::dripFeed()
{
    FakeNutServer server;
    server.onLine = [](QTcpSocket *socket, const QByteArray &) {
        socket->write("BEGIN LIST VAR demo\nVAR demo x \"");
        auto *timer = new QTimer(socket);
        QObject::connect(timer, &QTimer::timeout, socket, [=] { socket->write("x"); });
        timer->start(5);
    };
    NutFeed feed(server.address(), shortTimes());
    SnapshotLog log(&feed);
    feed.start();
    QTRY_VERIFY(log.last().reason.contains(QStringLiteral("no answer")));
}

void TestUpsFeedLink::closedWithoutAnswer()
{
    FakeNutServer server;
    server.onClient = [](QTcpSocket *socket) { socket->disconnectFromHost(); };
    NutFeed feed(server.address(), shortTimes());
    SnapshotLog log(&feed);
    feed.start();
    QTRY_VERIFY(server.clients.count() >= 3);
    verifyLost(log.last(), QStringLiteral("closed the connection"));
}

void TestUpsFeedLink::closedAmidTheList()
{
    FakeNutServer server;
    server.onLine = [](QTcpSocket *socket, const QByteArray &) {
        socket->write("BEGIN LIST VAR demo\nVAR demo ups.load \"42\"\nVAR de");
        socket->disconnectFromHost();
    };
    NutFeed feed(server.address(), shortTimes());
    SnapshotLog log(&feed);
    feed.start();
    QTRY_VERIFY(server.clients.count() >= 3);
    verifyLost(log.last(), QStringLiteral("closed the connection"));
    for (int i = 0; i < log.count(); ++i)
        QVERIFY(log.at(i).isLost());
}

void TestUpsFeedLink::closedAfterTheList()
{
    FakeNutServer server;
    bool leaves = false;
    server.onLine = [&](QTcpSocket *socket, const QByteArray &) {
        socket->write(goodList());
        if (leaves) {
            server.close();
            socket->disconnectFromHost();
        }
    };
    NutFeed feed(server.address(), shortTimes());
    SnapshotLog log(&feed);
    feed.start();
    QTRY_VERIFY(!log.last().isLost());
    leaves = true;
    QTRY_VERIFY(log.last().isLost());
    QTRY_VERIFY(log.last().reason.startsWith(QStringLiteral("connection refused (")));
    verifyLost(log.last(), QStringLiteral("refused"));
}

void TestUpsFeedLink::unaskedBytes()
{
    FakeNutServer server;
    server.onLine = [](QTcpSocket *socket, const QByteArray &) { socket->write(goodList()); };
    NutTimes times = noRetry();
    times.poll = 200;
    NutFeed feed(server.address(), times);
    SnapshotLog log(&feed);
    feed.start();
    QTRY_VERIFY(!log.last().isLost());
    server.client()->write(goodList());
    QTRY_VERIFY(log.last().isLost());
    verifyLost(log.last(), QStringLiteral("more than was asked for"));
}

void TestUpsFeedLink::talksBeforeBeingAsked()
{
    FakeNutServer server;
    server.onClient = [](QTcpSocket *socket) { socket->write("220 welcome\r\n"); };
    NutFeed feed(server.address(), shortTimes());
    SnapshotLog log(&feed);
    feed.start();
    QTRY_VERIFY(log.last().reason.contains(QStringLiteral("does not answer as it should")));
}

/// Floods the feed as fast as it takes the bytes; returns how many went out before it hung up.
static qint64 flood(FakeNutServer *server, SnapshotLog *log, const QByteArray &prologue,
                    const QByteArray &bytes)
{
    qint64 written = 0;
    server->onLine = [&](QTcpSocket *socket, const QByteArray &) {
        const auto pump = [&written, socket, bytes] {
            while (socket->state() == QAbstractSocket::ConnectedState &&
                   socket->bytesToWrite() < 65536)
                written += socket->write(bytes);
        };
        QObject::connect(socket, &QTcpSocket::bytesWritten, socket, pump);
        written += socket->write(prologue);
        pump();
    };
    [=] { QTRY_VERIFY(log->last().reason.contains(QStringLiteral("as it should"))); }();
    return written;
}

void TestUpsFeedLink::floodWithoutLineEnd()
{
    FakeNutServer server;
    NutFeed feed(server.address(), noRetry());
    SnapshotLog log(&feed);
    const qint64 before = residentMemory();
    QVERIFY(before > 0);
    feed.start();
    const qint64 written = flood(&server, &log, QByteArray(), QByteArray(32768, 'x'));
    QVERIFY(written > NutListReader::maxLine);
    // No more can have gone out than fits into the kernel's buffers of both ends.
    QVERIFY2(written < 16 * 1024 * 1024, qPrintable(QString::number(written)));
    const qint64 grown = residentMemory() - before;
    QVERIFY2(grown < 4 * 1024 * 1024, qPrintable(QString::number(grown)));
    QVERIFY2(log.last().reason.contains(QStringLiteral("too long a line")),
             qPrintable(log.last().reason));
}

void TestUpsFeedLink::floodWithoutEnd()
{
    FakeNutServer server;
    NutFeed feed(server.address(), noRetry());
    SnapshotLog log(&feed);
    const qint64 before = residentMemory();
    feed.start();
    const qint64 written = flood(&server, &log, "BEGIN LIST VAR demo\n",
                                 QByteArray("VAR demo ups.load \"42\"\n").repeated(1000));
    QVERIFY(written > 2000 * 20);
    QVERIFY2(written < 16 * 1024 * 1024, qPrintable(QString::number(written)));
    const qint64 grown = residentMemory() - before;
    QVERIFY2(grown < 4 * 1024 * 1024, qPrintable(QString::number(grown)));
    QVERIFY2(log.last().reason.contains(QStringLiteral("too many variables")),
             qPrintable(log.last().reason));
}

void TestUpsFeedLink::nobodyListens()
{
    FakeNutServer server;
    const NutAddress address = server.address();
    server.close();
    NutFeed feed(address, shortTimes());
    SnapshotLog log(&feed);
    feed.start();
    QTRY_VERIFY(log.count() >= 4);
    verifyLost(log.last(), QStringLiteral("connection refused"));
}

void TestUpsFeedLink::hostNotFound()
{
    NutTimes times = shortTimes();
    times.answer = 4000;
    NutFeed feed({QStringLiteral("demo"), QStringLiteral("no-such-host.invalid"), 3493}, times);
    SnapshotLog log(&feed);
    feed.start();
    QTRY_VERIFY(log.count() >= 2);
    // Where there is no name service at all, the look-up itself may take its time.
    QVERIFY2(log.last().reason.startsWith(QStringLiteral("host not found (")) ||
                 log.last().reason.contains(QStringLiteral("no answer")),
             qPrintable(log.last().reason));
}

void TestUpsFeedLink::comesBack()
{
    FakeNutServer server;
    server.onLine = [](QTcpSocket *socket, const QByteArray &) { socket->write(goodList()); };
    const NutAddress address = server.address();
    NutFeed feed(address, shortTimes());
    SnapshotLog log(&feed);
    feed.start();
    for (int round = 0; round < 3; ++round) {
        QTRY_VERIFY(!log.last().isLost());
        server.close();
        server.client()->abort();
        QTRY_VERIFY(log.last().reason.startsWith(QStringLiteral("connection refused (")));
        verifyLost(log.last(), QString());
        server.open(address.port);
    }
    QTRY_VERIFY(!log.last().isLost());
}

void TestUpsFeedLink::backsOff()
{
    FakeNutServer server;
    server.clock.start();
    server.onClient = [](QTcpSocket *socket) { socket->disconnectFromHost(); };
    NutTimes times = shortTimes();
    times.firstRetry = 40;
    times.longestRetry = 160;
    NutFeed feed(server.address(), times);
    feed.start();
    QTRY_VERIFY(server.arrivals.count() >= 7);
    const QList<int> rests = {40, 80, 160, 160, 160, 160};
    for (int i = 0; i < rests.count(); ++i) {
        const qint64 rest = server.arrivals.at(i + 1) - server.arrivals.at(i);
        // Qt's coarse timers may be 5 % early.
        QVERIFY2(rest >= rests.at(i) * 9 / 10,
                 qPrintable(QStringLiteral("%1: %2").arg(i).arg(rest)));
    }
    // Without its limit, doubling would have come to 1280 ms by now.
    QVERIFY(server.arrivals.at(6) - server.arrivals.at(5) < 1100);
}

void TestUpsFeedLink::backOffStartsAgainAfterSuccess()
{
    FakeNutServer server;
    server.clock.start();
    int client = 0;
    server.onClient = [&](QTcpSocket *socket) {
        if (++client != 6)
            socket->disconnectFromHost();
    };
    server.onLine = [](QTcpSocket *socket, const QByteArray &) {
        socket->write(goodList());
        socket->disconnectFromHost();
    };
    NutTimes times = shortTimes();
    times.firstRetry = 30;
    times.longestRetry = 10000;
    NutFeed feed(server.address(), times);
    feed.start();
    QTRY_VERIFY(server.arrivals.count() >= 7);
    const qint64 beforeSuccess = server.arrivals.at(5) - server.arrivals.at(4);
    const qint64 afterSuccess = server.arrivals.at(6) - server.arrivals.at(5);
    QVERIFY(beforeSuccess >= 16 * 30 * 9 / 10);
    QVERIFY2(afterSuccess < 16 * 30 * 9 / 10, qPrintable(QString::number(afterSuccess)));
}

void TestUpsFeedLink::errorsDoNotReconnect()
{
    FakeNutServer server;
    server.onLine = [](QTcpSocket *socket, const QByteArray &) {
        socket->write("ERR DATA-STALE\n");
    };
    NutFeed feed(server.address(), shortTimes());
    feed.start();
    QTRY_VERIFY(server.asked.count() >= 20); // longer than the patience for an answer
    QCOMPARE(server.clients.count(), 1);
}

/// What a server says late, after the feed has turned away, is not taken for the new server's word.
void TestUpsFeedLink::oldConnectionIsNotHeard()
{
    FakeNutServer server;
    NutFeed feed(server.address(), shortTimes());
    SnapshotLog log(&feed);
    feed.start();
    QTRY_COMPARE(server.clients.count(), 2);
    QTRY_COMPARE(server.asked.count(), 2);
    if (server.clients.first())
        server.clients.first()->write(goodList(1));
    server.clients.last()->write(goodList(2));
    QTRY_VERIFY(!log.last().isLost());
    QCOMPARE(log.last().value(Quantity::Load), std::optional<double>(2.0));
}

void TestUpsFeedLink::stopIsSilent()
{
    FakeNutServer server;
    server.onLine = [](QTcpSocket *socket, const QByteArray &) { socket->write(goodList()); };
    NutFeed stopped(server.address(), shortTimes());
    NutFeed running(server.address(), shortTimes());
    SnapshotLog log(&stopped), others(&running);
    stopped.start();
    running.start();
    QTRY_VERIFY(!log.last().isLost());
    stopped.stop();
    stopped.stop();
    log.clear();
    others.clear();
    QTRY_VERIFY(others.count() >= 5);
    QVERIFY(log.isEmpty());

    // Also before the first snapshot, and without a server.
    NutFeed never(server.address(), shortTimes());
    SnapshotLog nothing(&never);
    never.start();
    never.stop();
    others.clear();
    QTRY_VERIFY(others.count() >= 5);
    QVERIFY(nothing.isEmpty());
}

void TestUpsFeedLink::startAgain()
{
    FakeNutServer server;
    server.onLine = [](QTcpSocket *socket, const QByteArray &line) {
        socket->write(line == "LOGOUT" ? QByteArray("OK Goodbye\n") : goodList());
    };
    NutFeed feed(server.address(), shortTimes());
    SnapshotLog log(&feed);
    for (int round = 0; round < 3; ++round) {
        feed.start();
        QTRY_VERIFY(!log.last().isLost());
        feed.stop();
        log.clear();
    }
    // At once, while the old connection is still taking leave.
    feed.start();
    feed.stop();
    feed.start();
    QTRY_VERIFY(!log.last().isLost());
    for (int i = 1; i < log.count(); ++i)
        QVERIFY2(!log.at(i).isLost(), qPrintable(log.at(i).reason));
}

void TestUpsFeedLink::startTwice()
{
    FakeNutServer server;
    server.onLine = [](QTcpSocket *socket, const QByteArray &) { socket->write(goodList()); };
    NutFeed feed(server.address(), shortTimes());
    feed.start();
    feed.start();
    QTRY_VERIFY(server.asked.count() >= 3);
    QCOMPARE(server.clients.count(), 1);
}

void TestUpsFeedLink::mayBeStoppedByItsReceiver()
{
    FakeNutServer server;
    server.onLine = [](QTcpSocket *socket, const QByteArray &) { socket->write(goodList()); };
    NutFeed feed(server.address(), shortTimes());
    SnapshotLog log(&feed);
    connect(&feed, &UpsFeed::snapshotReady, this, [&feed](const Snapshot &snapshot) {
        if (!snapshot.isLost())
            feed.stop();
    });
    feed.start();
    QTRY_VERIFY(!log.last().isLost());
    QTRY_COMPARE(server.asked.last(), QByteArray("LOGOUT"));
    QVERIFY(!log.last().isLost());
}

void TestUpsFeedLink::mayBeDeletedByItsReceiver_data()
{
    QTest::addColumn<QByteArray>("answer");
    QTest::addColumn<QString>("reason");
    QTest::newRow("connecting") << QByteArray() << "connecting";
    QTest::newRow("data") << goodList() << "";
    QTest::newRow("error") << QByteArray("ERR DATA-STALE\n") << "fresh";
    QTest::newRow("garbage") << QByteArray("garbage\n") << "as it should";
    QTest::newRow("silence") << QByteArray() << "no answer";
}

void TestUpsFeedLink::mayBeDeletedByItsReceiver()
{
    QFETCH(QByteArray, answer);
    QFETCH(QString, reason);
    FakeNutServer server;
    server.onLine = [&](QTcpSocket *socket, const QByteArray &) { socket->write(answer); };
    QPointer<NutFeed> feed = new NutFeed(server.address(), shortTimes());
    connect(feed.data(), &UpsFeed::snapshotReady, this, [&](const Snapshot &snapshot) {
        if (reason.isEmpty() ? !snapshot.isLost() : snapshot.reason.contains(reason))
            delete feed.data();
    });
    feed->start();
    QTRY_VERIFY(feed.isNull());
}

KIV_TEST_MAIN(TestUpsFeedLink)
#include "tst_upsfeedlink.moc"
