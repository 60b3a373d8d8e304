// SPDX-License-Identifier: LicenseRef-all-rights-reserved

#include "nutfeed.h"

#include "fakenutserver.h"
#include "snapshots.h"
#include "testmain.h"
#include "widgetprobe.h"

#include <QtCore/QMap>

#include <ctime>
#include <memory>
#include <vector>

namespace {

NutTimes shortTimes()
{
    NutTimes times;
    times.poll = 20;
    times.answer = 2000;
    times.firstRetry = 10;
    times.longestRetry = 80;
    return times;
}

/// Any number of UPSes "u0000" and so on behind one fake server; the test changes their status, or
/// gives an error in its place.
struct ManyUpses
{
    explicit ManyUpses(int count, int moreVariables = 0)
        : more(moreVariables)
    {
        for (int i = 0; i < count; ++i)
            names += QStringLiteral("u%1").arg(i, 4, 10, QLatin1Char('0')).toLatin1();
        server.onLine = [this](QTcpSocket *socket, const QByteArray &line) {
            socket->write(answerTo(line));
        };
    }

    QByteArray answerTo(const QByteArray &line)
    {
        const QByteArrayList words = line.split(' ');
        if (line == "LIST UPS") {
            QByteArray list = "BEGIN LIST UPS\n";
            for (const QByteArray &name : names)
                list += "UPS " + name + " \"Room of " + name + "\"\n";
            return list + "END LIST UPS\n";
        }
        if (line == "LOGOUT")
            return "OK Goodbye\n";
        const QByteArray name = words.value(2);
        if (errors.contains(name))
            return "ERR " + errors.value(name) + '\n';
        const QByteArray status = statuses.value(name, "OL");
        if (line == "VER")
            return "A server\n";
        if (line.startsWith("GET CMDDESC "))
            return "CMDDESC " + name + " load.off \"Off\"\n";
        if (line.startsWith("LIST CMD ") || line.startsWith("LIST RW ")) {
            // It knows the commands when the driver has handed over everything.
            const bool known = words.value(1) == "CMD" && status != "WAIT" && !commandsLate;
            commandsLate = false;
            return "BEGIN " + line + '\n' + (known ? "CMD " + name + " load.off\n" : "") + "END " +
                   line + '\n';
        }
        if (words.value(0) == "GET") {
            ++statusQuestions;
            return "VAR " + name + " ups.status \"" + status + "\"\n";
        }
        ++lists;
        const QByteArray row = "VAR " + name + ' ';
        QByteArray list = "BEGIN LIST VAR " + name + '\n' + row + "ups.status \"" + status +
                          "\"\n" + row + "ups.load \"42\"\n";
        for (int i = 0; i < more; ++i)
            list += row + "ups.something.else." + QByteArray::number(i) + " \"" +
                    QByteArray::number(i * 1.5) + "\"\n";
        return list + "END LIST VAR " + name + '\n';
    }

    NutHost host() const
    {
        return server.address().server();
    }

    FakeNutServer server;
    QByteArrayList names;
    QMap<QByteArray, QByteArray> statuses;
    QMap<QByteArray, QByteArray> errors;
    int more;
    int lists = 0;
    int statusQuestions = 0;
    bool commandsLate = false; // the next list lacks them
};

/// Feeds for all UPSes of a server, with what they deliver.
struct Followers
{
    Followers(NutServerFeed *server, const QByteArrayList &names)
    {
        for (const QByteArray &name : names) {
            feeds.push_back(std::make_unique<NutFeed>(server, QString::fromLatin1(name)));
            logs.push_back(std::make_unique<SnapshotLog>(feeds.back().get()));
        }
        for (const auto &feed : feeds)
            feed->start();
    }

    int reached() const
    {
        int count = 0;
        for (const auto &log : logs)
            count += !log->last().isLost();
        return count;
    }

    std::vector<std::unique_ptr<NutFeed>> feeds;
    std::vector<std::unique_ptr<SnapshotLog>> logs;
};

qint64 cpuMicroseconds()
{
    timespec now = {};
    clock_gettime(CLOCK_THREAD_CPUTIME_ID, &now);
    return qint64(now.tv_sec) * 1000000 + now.tv_nsec / 1000;
}

} // namespace

class NutServerFeedTest : public WidgetTest
{
    Q_OBJECT

private Q_SLOTS:
    void sharesOneConnection();
    void asksForStatusesMostOfTheTime();
    void aNewStatusBringsEverything();
    void oneOfManyIsStale();
    void losesAllTogether();
    void comesBackForAll();
    void leavesWithTheLast();
    void findsTheUpsesOfAServer();
    void takesOnlyUsableNames();
    void boundsTheNumberOfUpses();
    void upsesMayComeAndGo();
    void endsBeforeItsFeeds();
    void offersNothingBeforeTheDriverIsReady();
    void aThousandInOneGo();
};

void NutServerFeedTest::sharesOneConnection()
{
    ManyUpses many(20);
    NutServerFeed server(many.host(), NutTls(), shortTimes());
    Followers followers(&server, many.names);
    QTRY_COMPARE(followers.reached(), 20);
    QCOMPARE(many.server.clients.count(), 1);
    for (int i = 0; i < 20; ++i)
        QCOMPARE(followers.logs[std::size_t(i)]->last().name,
                 QString::fromLatin1(many.names.at(i)));
    // Nothing but reading.
    for (const QByteArray &line : std::as_const(many.server.asked))
        QVERIFY2(line.startsWith("LIST VAR ") || line.endsWith(" ups.status"), line.constData());
}

/// Of five rounds one asks a UPS for everything, the others for its status.
void NutServerFeedTest::asksForStatusesMostOfTheTime()
{
    ManyUpses many(10);
    NutServerFeed server(many.host(), NutTls(), shortTimes());
    Followers followers(&server, many.names);
    QTRY_COMPARE(followers.reached(), 10);
    many.lists = 0;
    many.statusQuestions = 0;
    QTRY_VERIFY(many.lists + many.statusQuestions >= 500);
    const double share = double(many.lists) / (many.lists + many.statusQuestions);
    QVERIFY2(share > 0.18 && share < 0.22, qPrintable(QString::number(share)));
    // Each of them is asked in turn.
    for (const QByteArray &name : std::as_const(many.names))
        QVERIFY(many.server.asked.count("LIST VAR " + name) >= 10);
}

void NutServerFeedTest::aNewStatusBringsEverything()
{
    ManyUpses many(4);
    NutTimes times = shortTimes();
    times.rounds = 1000000;
    NutServerFeed server(many.host(), NutTls(), times);
    Followers followers(&server, many.names);
    QTRY_COMPARE(followers.reached(), 4);
    // The first round of all, in which one turn may fall.
    QTRY_VERIFY(many.statusQuestions >= 8);
    many.lists = 0;
    many.statuses["u0002"] = "OB DISCHRG";
    SnapshotLog &log = *followers.logs[2];
    QTRY_VERIFY(log.last().tokens.testFlag(StatusToken::OnBattery));
    QCOMPARE(log.last().value(Quantity::Load), std::optional<double>(42.0));
    const int before = many.statusQuestions;
    QTRY_VERIFY(many.statusQuestions >= before + 8);
    QCOMPARE(many.lists, 1);
    QVERIFY(!followers.logs[1]->last().tokens.testFlag(StatusToken::OnBattery));
}

void NutServerFeedTest::oneOfManyIsStale()
{
    ManyUpses many(3);
    NutServerFeed server(many.host(), NutTls(), shortTimes());
    Followers followers(&server, many.names);
    QTRY_COMPARE(followers.reached(), 3);
    many.errors["u0001"] = "DATA-STALE";
    QTRY_COMPARE(followers.reached(), 2);
    QVERIFY(followers.logs[1]->last().isLost());
    QVERIFY(followers.logs[1]->last().reason.contains(QStringLiteral("no fresh data")));
    many.errors.clear();
    QTRY_COMPARE(followers.reached(), 3);
    QCOMPARE(many.server.clients.count(), 1);
}

void NutServerFeedTest::losesAllTogether()
{
    ManyUpses many(5);
    NutServerFeed server(many.host(), NutTls(), shortTimes());
    QStringList losses;
    connect(&server, &NutServerFeed::lost, this, [&](const QString &reason) { losses += reason; });
    Followers followers(&server, many.names);
    QTRY_COMPARE(followers.reached(), 5);
    const QString place = many.host().toString();
    many.server.close();
    many.server.client()->abort();
    QTRY_COMPARE(followers.reached(), 0);
    QTRY_VERIFY(losses.contains(QStringLiteral("connection refused")));
    // With many servers, which one.
    QTRY_COMPARE(followers.logs[4]->last().reason,
                 QStringLiteral("connection refused (%1)").arg(place));
}

void NutServerFeedTest::comesBackForAll()
{
    ManyUpses many(5);
    NutServerFeed server(many.host(), NutTls(), shortTimes());
    Followers followers(&server, many.names);
    int losses = 0;
    connect(&server, &NutServerFeed::lost, this, [&] { ++losses; });
    for (int turn = 1; turn <= 3; ++turn) {
        QTRY_COMPARE(followers.reached(), 5);
        many.server.client()->abort();
        QTRY_COMPARE(losses, turn);
    }
    QTRY_COMPARE(followers.reached(), 5);
}

void NutServerFeedTest::leavesWithTheLast()
{
    ManyUpses many(2);
    NutServerFeed server(many.host(), NutTls(), shortTimes());
    Followers followers(&server, many.names);
    QTRY_COMPARE(followers.reached(), 2);
    followers.feeds[0]->stop();
    followers.logs[0]->clear();
    followers.logs[1]->clear();
    QTRY_VERIFY(followers.logs[1]->count() >= 5);
    QVERIFY(followers.logs[0]->isEmpty());
    followers.feeds[1]->stop();
    QTRY_COMPARE(many.server.asked.last(), QByteArray("LOGOUT"));
    QTRY_COMPARE(many.server.client()->state(), QAbstractSocket::UnconnectedState);
}

void NutServerFeedTest::findsTheUpsesOfAServer()
{
    ManyUpses many(3);
    NutServerFeed server(many.host(), NutTls(), shortTimes());
    QVector<NutUps> all;
    connect(&server, &NutServerFeed::found, this, [&](const QVector<NutUps> &some) { all = some; });
    server.discover();
    QTRY_COMPARE(all.size(), 3);
    QCOMPARE(all.at(2).name, QStringLiteral("u0002"));
    QCOMPARE(all.at(2).description, QStringLiteral("Room of u0002"));
    // One that is added on the server is found later, here after a new connection.
    many.names += "another";
    many.server.client()->abort();
    QTRY_COMPARE(all.size(), 4);
}

void NutServerFeedTest::takesOnlyUsableNames()
{
    FakeNutServer server;
    server.onLine = [](QTcpSocket *socket, const QByteArray &) {
        socket->write("BEGIN LIST UPS\n"
                      "UPS good \"<b>plain</b>\xe2\x80\xae text\"\n"
                      "UPS \"two words\" \"x\"\n"
                      "UPS \"\" \"x\"\n"
                      "UPS \"a\\\"b\" \"x\"\n"
                      "UPS bare\n"
                      "UPS long \"" +
                      QByteArray(300, 'x') + "\"\nEND LIST UPS\n");
    };
    NutServerFeed feed(server.address().server(), NutTls(), shortTimes());
    QVector<NutUps> all;
    connect(&feed, &NutServerFeed::found, this, [&](const QVector<NutUps> &some) { all = some; });
    feed.discover();
    QTRY_COMPARE(all.size(), 3);
    QCOMPARE(all.at(0).name, QStringLiteral("good"));
    QCOMPARE(all.at(0).description, QStringLiteral("<b>plain</b> text"));
    QCOMPARE(all.at(1).name, QStringLiteral("bare"));
    QCOMPARE(all.at(2).description,
             QString(199, QLatin1Char('x')) + QString::fromUtf8("\xe2\x80\xa6"));
}

void NutServerFeedTest::boundsTheNumberOfUpses()
{
    ManyUpses many(NutReader::maxRows + 1);
    NutServerFeed server(many.host(), NutTls(), shortTimes());
    QString reason;
    connect(&server, &NutServerFeed::lost, this, [&](const QString &why) { reason = why; });
    int answers = 0;
    connect(&server, &NutServerFeed::found, this, [&] { ++answers; });
    server.discover();
    QTRY_VERIFY(reason.contains(QStringLiteral("too many")));
    QCOMPARE(answers, 0);
    many.names.removeLast();
    QTRY_COMPARE(answers, 1);
}

void NutServerFeedTest::upsesMayComeAndGo()
{
    ManyUpses many(6);
    NutServerFeed server(many.host(), NutTls(), shortTimes());
    Followers followers(&server, many.names);
    QTRY_COMPARE(followers.reached(), 6);
    // Deleted by a receiver, amid a round.
    connect(followers.feeds[0].get(), &UpsFeed::snapshotReady, this, [&] {
        followers.feeds[3].reset();
        followers.feeds[4].reset();
    });
    QTRY_VERIFY(!followers.feeds[4]);
    many.names += "late";
    Followers late(&server, {"late"});
    QTRY_COMPARE(late.reached(), 1);
    followers.logs[5]->clear();
    QTRY_VERIFY(followers.logs[5]->count() >= 3);
    QCOMPARE(many.server.clients.count(), 1);
}

void NutServerFeedTest::endsBeforeItsFeeds()
{
    ManyUpses many(2);
    auto server = std::make_unique<NutServerFeed>(many.host(), NutTls(), shortTimes());
    Followers followers(server.get(), many.names);
    QTRY_COMPARE(followers.reached(), 2);
    connect(followers.feeds[0].get(), &UpsFeed::snapshotReady, this, [&] { server.reset(); });
    QTRY_VERIFY(!server);
    followers.feeds[1]->stop();
    followers.feeds[1]->start();
}

void NutServerFeedTest::offersNothingBeforeTheDriverIsReady()
{
    ManyUpses many(1);
    many.statuses["u0000"] = "WAIT";
    NutServerFeed server(many.host(), NutTls(), shortTimes());
    NutFeed feed(&server, QStringLiteral("u0000"));
    SnapshotLog log(&feed);
    QVector<Offer> offers;
    connect(&feed, &UpsFeed::offerReady, this, [&](const Offer &offer) { offers.append(offer); });
    feed.askForOffer();
    feed.start();
    QTRY_VERIFY(log.count() > 0 && !log.last().isLost());
    feed.askForOffer();
    const auto rounds = log.count();
    QTRY_VERIFY(log.count() > rounds + 2);
    QVERIFY(offers.isEmpty());

    // The status may come before the commands do.
    many.commandsLate = true;
    many.statuses["u0000"] = "OL";
    QTRY_COMPARE(offers.size(), 1);
    QCOMPARE(offers.first().commands.size(), 1);
    QCOMPARE(offers.first().commands.first().name, QStringLiteral("load.off"));
}

/// The whole of a large site, with the variables that a UPS usually has. The fake server's own work
/// is in the time, which is the test program's; what this measures is printed, and the bounds are
/// wide enough for a busy machine.
void NutServerFeedTest::aThousandInOneGo()
{
    constexpr int count = 1000;
    ManyUpses many(count, 34);
    NutTimes times = shortTimes();
    times.poll = 300;
    times.answer = 20000;
    NutServerFeed server(many.host(), NutTls(), times);
    QElapsedTimer clock;
    clock.start();
    const qint64 cpu = cpuMicroseconds();
    Followers followers(&server, many.names);
    QTRY_COMPARE(followers.reached(), count);
    qInfo("everything of %d UPSes: %lld ms, %lld ms CPU of server and feed", count,
          static_cast<long long>(clock.elapsed()),
          static_cast<long long>((cpuMicroseconds() - cpu) / 1000));
    QCOMPARE(many.server.clients.count(), 1);
    QCOMPARE(many.lists, count);
    // What one round asks is there before its first answer goes out: in one go.
    many.server.asked.clear();
    many.lists = many.statusQuestions = 0;
    QTRY_VERIFY(many.lists + many.statusQuestions >= count);
    QCOMPARE(many.lists + many.statusQuestions, count);
    QCOMPARE(many.lists, count / 5);
}

KIV_TEST_MAIN(NutServerFeedTest)

#include "tst_nutserverfeed.moc"
