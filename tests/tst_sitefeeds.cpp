// SPDX-License-Identifier: LicenseRef-all-rights-reserved

#include "consolewindow.h"
#include "eventlist.h"
#include "feed/privatefile.h"
#include "options.h"
#include "screenshots.h"
#include "sitefeeds.h"

#include "certificates.h"
#include "fakenutserver.h"
#include "fakeweb.h"
#include "testmain.h"
#include "widgetprobe.h"

#include <QtCore/QTemporaryDir>

namespace {

NutTimes shortTimes()
{
    NutTimes times;
    times.poll = 20;
    times.firstRetry = 10;
    times.longestRetry = 40;
    return times;
}

void serve(FakeNutServer *server, const QByteArrayList &names)
{
    server->onLine = [names](QTcpSocket *socket, const QByteArray &line) {
        if (line == "LIST UPS") {
            QByteArray list = "BEGIN LIST UPS\n";
            for (const QByteArray &name : names)
                list +=
                    "UPS " + name + " \"" +
                    (name == "plain" ? QByteArray("Description unavailable") : "Room of " + name) +
                    "\"\n";
            socket->write(list + "END LIST UPS\n");
            return;
        }
        const QByteArray name = line.split(' ').value(2);
        if (!names.contains(name.toLower()))
            socket->write("ERR UNKNOWN-UPS\n");
        else if (line.startsWith("GET"))
            socket->write("VAR " + name + " ups.status \"OL\"\n");
        else if (!line.startsWith("LIST VAR "))
            socket->write("ERR INVALID-ARGUMENT\n");
        else
            socket->write("BEGIN LIST VAR " + name + "\nVAR " + name +
                          " ups.status \"OL\"\nEND LIST VAR " + name + '\n');
    };
}

/// Answers with statuses of the UPSes @p names, "UPS@INSTANCE" each.
void publish(FakeWeb *web, const QByteArrayList &names)
{
    web->onQuery = [names](const QByteArray &query) {
        QByteArrayList rows;
        for (const QByteArray &name : names) {
            const bool statuses = FakeWeb::asksForStatuses(query);
            if (!statuses && !query.contains("ups_load"))
                break;
            rows += R"({"metric":{"ups":")" + name.split('@').value(0) + R"(","instance":")" +
                    name.split('@').value(1) + R"(")" + (statuses ? R"(,"flag":"OL")" : "") +
                    R"(},"value":[1,")" +
                    (statuses ? QByteArray::number(QDateTime::currentSecsSinceEpoch()) : "42") +
                    R"("]})";
        }
        return qMakePair(200, R"({"status":"success","data":{"resultType":"vector","result":[)" +
                                  rows.join(',') + "]}}");
    };
}

QByteArray urlOf(const FakeWeb &web, const char *prefix = "")
{
    return web.server(prefix).url.toEncoded();
}

/// How the server of the section @p name is called on screen.
QString titleOf(const char *name, const FakeWeb &web)
{
    return QStringLiteral("Prometheus %1 (%2)")
        .arg(QLatin1String(name), web.server().url.authority());
}

PromTimes shortPromTimes()
{
    PromTimes times;
    times.refresh = 50;
    return times;
}

/// A site that a configuration file fills; fed at once.
struct FedSite
{
    explicit FedSite(const QByteArray &text, const QVector<Credentials> &users = {})
        : feeds(&site)
    {
        const std::optional<SiteEntries> file =
            parseSiteFile(text, QStringLiteral("site.ini"), &error);
        if (file && feeds.add(*file, users, &error, shortTimes(), shortPromTimes()))
            feeds.start();
    }

    SiteModel site;
    SiteFeeds feeds;
    QString error;
};

/// A section of @p server, with @p lines.
QByteArray section(const FakeNutServer &server, const QByteArray &lines)
{
    return "[server s]\naddress = " + server.address().server().toString().toLatin1() + '\n' +
           lines + '\n';
}

/// How the screen names the server of that section.
QString shownName(const NutHost &host)
{
    return QStringLiteral("s (%1)").arg(host.toString());
}

/// A server of the UPS "a" that is gone when a site with @p lines in its section looks for it.
struct GoneServer : FakeNutServer
{
    explicit GoneServer(const QByteArray &lines)
        : host(address().server())
        , config(section(*this, lines))
    {
        serve(this, {"a"});
        close();
    }

    const NutHost host;
    const QByteArray config;
};

/// What a site says of a server that is not reached from the start.
struct ServerNews
{
    explicit ServerNews(SiteModel *site)
    {
        QObject::connect(site, &SiteModel::serverMissed, site,
                         [this](const QString &name, const QString &reason) {
                             all += QStringLiteral("missed %1: %2").arg(name, reason);
                         });
        QObject::connect(site, &SiteModel::serverMet, site,
                         [this](const QString &name) { all += QStringLiteral("met ") + name; });
    }

    QStringList all;
};

Options optionsFor(const QStringList &arguments)
{
    return parseOptions(QStringList(QStringLiteral("kivconsole")) + arguments);
}

LiveScreenshots takeImages(SiteModel *site, QStringList *lines)
{
    ConsoleWindow window(site);
    const QTemporaryDir directory;
    Options options;
    options.directory = directory.path();
    return takeLiveScreenshots(window, *site, options, lines);
}

} // namespace

class SiteFeedsTest : public WidgetTest
{
    Q_OBJECT

private Q_SLOTS:
    void severalServers();
    void allOfAServer();
    void unreachableServer();
    void unreachableServerOfNamedUpses();
    void nameThatAServerLacks();
    void serversHaveTheNameOfTheirSection();
    void causeBesideTheImages();
    void problemsBesideTheImages();
    void serversOfNamedUpsesAreFollowed();
    void serverWithoutTlsOfNamedUpses();
    void singleUpsOfAnUnreachableServer();
    void argumentsAddToTheFile();
    void filesThatNameNothing_data();
    void filesThatNameNothing();
    void wrongSites_data();
    void wrongSites();
    void keepsAUserInTheFile();
    void checksTheUserOnceTheDriverRuns();
    void refusedUser();
    void filesMustBeThere_data();
    void filesMustBeThere();
    void filesOfTheCommandLineMustBeThere();
    void serverMissedFromTheStart();
    void serverMetAtOnce();
    void prometheusMissedFromTheStart();
    void authoritiesRequireTls();
    void namesForPrometheus();
    void nameThatPrometheusLacks();
    void twoPrometheusOnOneHost();
};

void SiteFeedsTest::severalServers()
{
    FakeNutServer one;
    FakeNutServer two;
    serve(&one, {"a", "b"});
    serve(&two, {"a"});
    const QString first = one.address().server().toString();
    const QString second = two.address().server().toString();
    const Options options = optionsFor({QStringLiteral("--ups"), QStringLiteral("a@") + first,
                                        QStringLiteral("--ups"), QStringLiteral("b@") + first,
                                        QStringLiteral("--ups"), QStringLiteral("a@") + second,
                                        QStringLiteral("--ups"), QStringLiteral("A@") + first});
    SiteEntries entries;
    QVector<Credentials> users;
    QString error;
    QVERIFY2(readSite(options, QString(), &entries, &users, &error), qPrintable(error));
    SiteModel site;
    SiteFeeds feeds(&site);
    QVERIFY2(feeds.add(entries, users, &error, shortTimes()), qPrintable(error));
    QCOMPARE(site.count(), 3);
    feeds.start();
    for (int i = 0; i < 3; ++i)
        QTRY_COMPARE(site.at(i)->severity(), Severity::Normal);
    QCOMPARE(one.clients.count(), 1);
    QCOMPARE(two.clients.count(), 1);
    QCOMPARE(site.at(1)->id(), QStringLiteral("b@") + first);
    QCOMPARE(site.at(1)->title(), QStringLiteral("b"));
    QCOMPARE(site.at(2)->site(), second);
}

void SiteFeedsTest::allOfAServer()
{
    FakeNutServer server;
    serve(&server, {"a", "b", "c", "plain"});
    const QString host = server.address().server().toString();
    // Two have a custom name.
    FedSite fed(section(server, "ups = all\n[ups b@s]\nname = Mine\n[ups C@s]\nname = Too"));
    QVERIFY2(fed.error.isEmpty(), qPrintable(fed.error));
    SiteModel &site = fed.site;
    QTRY_COMPARE(site.count(), 4);
    QVERIFY(site.problems().isEmpty());
    for (int i = 0; i < 4; ++i)
        QTRY_COMPARE(site.at(i)->severity(), Severity::Normal);
    const auto titleOf = [&](const char *name) {
        return site.find(QLatin1String(name) + QLatin1Char('@') + host)->title();
    };
    QCOMPARE(titleOf("a"), QStringLiteral("Room of a"));
    QCOMPARE(titleOf("b"), QStringLiteral("Mine"));
    QCOMPARE(titleOf("C"), QStringLiteral("Too"));
    QCOMPARE(titleOf("plain"), QStringLiteral("plain"));
    QCOMPARE(server.clients.count(), 1);
}

void SiteFeedsTest::unreachableServer()
{
    GoneServer server("ups = all");
    FedSite fed(server.config);
    QVERIFY2(fed.error.isEmpty(), qPrintable(fed.error));
    SiteModel &site = fed.site;
    const QString title = shownName(server.host);
    // One that has not answered yet is no problem so far.
    QCOMPARE(site.problems().value(title).text, QStringLiteral("connecting"));
    QCOMPARE(site.problemCount(), 0);
    QTRY_COMPARE(site.problems().value(title).text, QStringLiteral("connection refused"));
    QCOMPARE(site.problemCount(), 1);
    QCOMPARE(site.severity(), Severity::Unknown);
    QCOMPARE(site.count(), 0);
    server.open(server.host.port);
    QTRY_COMPARE(site.count(), 1);
    QVERIFY(site.problems().isEmpty());
}

/// Each server that is not reached is a problem, also where its UPSes are named.
void SiteFeedsTest::unreachableServerOfNamedUpses()
{
    FakeNutServer up;
    FakeNutServer down;
    serve(&up, {"a"});
    serve(&down, {"b"});
    const NutHost host = down.address().server();
    down.close();
    FedSite fed("[server u]\naddress = " + up.address().server().toString().toLatin1() +
                "\nups = a\n[server d]\naddress = " + host.toString().toLatin1() +
                "\nups = b, gone\n");
    QVERIFY2(fed.error.isEmpty(), qPrintable(fed.error));
    SiteModel &site = fed.site;
    QCOMPARE(site.count(), 3);
    const QString title = QStringLiteral("d (%1)").arg(host.toString());
    QTRY_COMPARE(site.problems().value(title).text, QStringLiteral("connection refused"));
    QTRY_COMPARE(site.at(0)->severity(), Severity::Normal);
    QCOMPARE(site.problems().keys(), QStringList(title));
    QCOMPARE(site.problemCount(), 1);
    // A UPS that the server does not have is no problem of the server.
    down.open(host.port);
    const QString place = QStringLiteral("site.ini:6");
    QTRY_COMPARE(site.problems().keys(), QStringList(place));
    QTRY_COMPARE(site.at(1)->severity(), Severity::Normal);
    QCOMPARE(site.problems().keys(), QStringList(place));
    down.close();
    down.client()->abort();
    QTRY_COMPARE(site.problems().keys(), QStringList({title, place}));
}

/// A name that the server does not have is a problem at its place, said once, also where it is the
/// only one.
void SiteFeedsTest::nameThatAServerLacks()
{
    FakeNutServer server;
    serve(&server, {"a"});
    const QString host = server.address().server().toString();
    const QTemporaryDir directory;
    const QString path = directory.filePath(QStringLiteral("site.ini"));
    QFile file(path);
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.write(section(server, "ups = a, x\n[ups y@s]\nname = Mine"));
    file.close();
    const auto linesFor = [&](const QStringList &arguments, SiteModel *site) {
        SiteEntries entries;
        QVector<Credentials> users;
        QString error;
        auto feeds = std::make_unique<SiteFeeds>(site);
        QStringList lines;
        const auto take = connect(feeds.get(), &SiteFeeds::nameMissed, this,
                                  [&lines](const QString &line) { lines += line; });
        if (!readSite(optionsFor(arguments), QString(), &entries, &users, &error) ||
            !feeds->add(entries, users, &error, shortTimes()))
            return std::make_pair(std::move(feeds), QStringList(error));
        feeds->start();
        // Also some rounds later it is said once.
        int rest = 40;
        const bool isSaid = QTest::qWaitFor([&] {
            rest -= lines.isEmpty() ? 0 : 1;
            return rest == 0;
        });
        if (!isSaid)
            lines += QStringLiteral("nothing more");
        disconnect(take);
        return std::make_pair(std::move(feeds), lines);
    };
    const QString names = QStringLiteral(" has no UPS 'x'");
    {
        SiteModel site;
        const auto [feeds, lines] = linesFor({QStringLiteral("--config"), path,
                                              QStringLiteral("--ups"), QStringLiteral("z@") + host},
                                             &site);
        const QString place = path + QStringLiteral(":3");
        QCOMPARE(site.problems().keys(), QStringList(place));
        QCOMPARE(site.problems().value(place).severity, Severity::Warning);
        QCOMPARE(
            lines,
            QStringList(
                QStringLiteral("%1: s (%2)%3 and 2 more that are named").arg(place, host, names)));
        QCOMPARE(site.find(QStringLiteral("y@") + host)->snapshot().reason,
                 QStringLiteral("the server knows no such UPS (%1:4)").arg(path));
        // The server gets it.
        serve(&server, {"a", "x"});
        QTRY_COMPARE(site.problems().keys(), QStringList(path + QStringLiteral(":4")));
        serve(&server, {"a", "x", "y", "z"});
        QTRY_VERIFY(site.problems().isEmpty());
        serve(&server, {"a"});
    }
    // Of an option, where there is no file.
    SiteModel site;
    const QString option = QStringLiteral("x@") + host;
    const auto [feeds, lines] = linesFor({QStringLiteral("--ups"), option}, &site);
    QCOMPARE(lines, QStringList(QStringLiteral("--ups %1: %2%3").arg(option, host, names)));
    QCOMPARE(site.worstProblem(), lines.first());
}

/// Servers with a name of their own have it wherever they fail; events keep the address.
void SiteFeedsTest::serversHaveTheNameOfTheirSection()
{
    const auto titleOf = [](const QByteArray &name) {
        QString error;
        const auto entries = parseSiteFile("[server " + name + "]\naddress = host\nups = a\n",
                                           QStringLiteral("site.ini"), &error);
        return entries ? entries->servers.first().title() : error;
    };
    QCOMPARE(titleOf("rack-a"), QStringLiteral("rack-a (host:3493)"));
    QCOMPARE(titleOf("HOST"), QStringLiteral("host:3493"));
    QCOMPARE(titleOf("host:3493"), QStringLiteral("host:3493"));
    QCOMPARE(ServerEntry().title(), NutHost().toString());

    GoneServer server("ups = all");
    const QString address = server.host.toString();
    FedSite fed(server.config);
    QVERIFY2(fed.error.isEmpty(), qPrintable(fed.error));
    const ServerNews news(&fed.site);
    QTRY_COMPARE(news.all,
                 QStringList(QStringLiteral("missed %1: connection refused").arg(address)));
    QCOMPARE(fed.site.serverTitle(address), shownName(server.host));
    // A later name changes neither the list of events nor what ends there.
    EventList list(&fed.site);
    Event event;
    event.ups = address;
    QCOMPARE(list.upsOf(event), shownName(server.host));
    event.ups = QStringLiteral("elsewhere:3493");
    QCOMPARE(list.upsOf(event), event.ups);
}

/// Images of a site without any UPS that is reached come with the cause, also where a UPS has
/// another reason of its own.
void SiteFeedsTest::causeBesideTheImages()
{
    FakeWeb web;
    web.onQuery = [](const QByteArray &query) {
        QByteArrayList rows;
        // One of two exporters is down.
        if (FakeWeb::asksForStatuses(query))
            rows = QByteArrayList{R"({"metric":{"ups":"u","instance":"i"},"value":[1,"0"]})"};
        else if (query.contains("count by (job, __name__)"))
            rows = QByteArrayList{
                R"({"metric":{"job":"nut","__name__":"up"},"value":[1,"2"]})",
                R"({"metric":{"job":"nut","__name__":"nut_ups_status"},"value":[1,"9"]})",
                R"({"metric":{"job":"nut","part":"unscraped"},"value":[1,"1"]})"};
        return qMakePair(200, R"({"status":"success","data":{"resultType":"vector","result":[)" +
                                  rows.join(',') + "]}}");
    };
    FedSite fed("[prometheus p]\nurl = " + urlOf(web) + '\n');
    QVERIFY2(fed.error.isEmpty(), qPrintable(fed.error));
    QStringList lines;
    QVERIFY(takeImages(&fed.site, &lines) == LiveScreenshots::OfNoUps);
    QCOMPARE(lines,
             QStringList(QStringLiteral("no UPS is reached: %1: nothing matches "
                                        "network_ups_tools_ups_status{job=\"nut\"} (site.ini:1): "
                                        "the job has nut_ups_status, which is the dialect nut")
                             .arg(titleOf("p", web))));
    QCOMPARE(fed.site.at(0)->snapshot().reason, QStringLiteral("its exporter cannot be scraped"));
}

/// Where some UPSes are reached, what is wrong beside them has a line.
void SiteFeedsTest::problemsBesideTheImages()
{
    FakeNutServer server;
    serve(&server, {"a"});
    FedSite fed(section(server, "ups = a, x"));
    QVERIFY2(fed.error.isEmpty(), qPrintable(fed.error));
    QStringList lines;
    QVERIFY(takeImages(&fed.site, &lines) == LiveScreenshots::Taken);
    QCOMPARE(lines, QStringList(QStringLiteral("site.ini:3: %1 has no UPS 'x'")
                                    .arg(shownName(server.address().server()))));
}

/// The servers of named UPSes are followed like others.
void SiteFeedsTest::serversOfNamedUpsesAreFollowed()
{
    FakeNutServer server;
    serve(&server, {"a"});
    const QString address = server.address().server().toString();
    FedSite fed(section(server, "ups = a"));
    QVERIFY2(fed.error.isEmpty(), qPrintable(fed.error));
    QVERIFY(fed.site.hasServer(address));
    QVERIFY(!fed.site.isComplete());
    const ServerNews news(&fed.site);
    QTRY_COMPARE(news.all, QStringList(QStringLiteral("met ") + address));
    QVERIFY(fed.site.isComplete());
}

void SiteFeedsTest::serverWithoutTlsOfNamedUpses()
{
    FakeNutServer server;
    server.onLine = [](QTcpSocket *socket, const QByteArray &) {
        socket->write("ERR FEATURE-NOT-CONFIGURED\n");
    };
    const QString host = shownName(server.address().server());
    FedSite fed(section(server, "ups = a, b\ntls = required"));
    QVERIFY2(fed.error.isEmpty(), qPrintable(fed.error));
    SiteModel &site = fed.site;
    QTRY_COMPARE(site.problemCount(), 1);
    QVERIFY2(site.problems().value(host).text.contains(QStringLiteral("TLS")),
             qPrintable(site.worstProblem()));
}

/// Its own headline has the reason: the site does not repeat it.
void SiteFeedsTest::singleUpsOfAnUnreachableServer()
{
    const GoneServer server("ups = a");
    FedSite fed(server.config);
    QVERIFY2(fed.error.isEmpty(), qPrintable(fed.error));
    SiteModel &site = fed.site;
    QTRY_COMPARE(site.at(0)->snapshot().reason,
                 QStringLiteral("connection refused – ") + shownName(server.host));
    // A problem of the site would be there before the UPS's own loss.
    QVERIFY(site.problems().isEmpty());
}

void SiteFeedsTest::argumentsAddToTheFile()
{
    const QTemporaryDir directory;
    const QString path = directory.filePath(QStringLiteral("site.ini"));
    QFile file(path);
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.write("[server s]\naddress = host\nups = a\ntls = required\n");
    file.close();
    SiteEntries entries;
    QVector<Credentials> users;
    QString error;
    const Options options =
        optionsFor({QStringLiteral("--config"), path, QStringLiteral("--ups"),
                    QStringLiteral("b@host"), QStringLiteral("--server"), QStringLiteral("other")});
    QVERIFY2(readSite(options, QString(), &entries, &users, &error), qPrintable(error));
    QCOMPARE(entries.servers.size(), 2);
    QCOMPARE(entries.servers.at(0).upses.size(), 2);
    QCOMPARE(entries.servers.at(0).tls, std::optional<bool>(true));
    QVERIFY(entries.servers.at(1).all);
}

void SiteFeedsTest::wrongSites_data()
{
    QTest::addColumn<QStringList>("arguments");
    QTest::addColumn<QString>("part");
    QTest::newRow("address") << QStringList{QStringLiteral("--ups"), QStringLiteral("demo")}
                             << "NAME@HOST";
    QTest::newRow("server") << QStringList{QStringLiteral("--server"), QStringLiteral("a b")}
                            << "host";
    QTest::newRow("no file") << QStringList{QStringLiteral("--config"), QStringLiteral("/no/file")}
                             << "/no/file";
    QTest::newRow("no credentials")
        << QStringList{QStringLiteral("--server"), QStringLiteral("host"),
                       QStringLiteral("--credentials"), QStringLiteral("/no/file")}
        << "/no/file";
}

/// What a file lacks, where neither it nor the command line names a UPS.
void SiteFeedsTest::filesThatNameNothing()
{
    QFETCH(QByteArray, text);
    QFETCH(QStringList, more);
    QFETCH(QString, problem);
    const QTemporaryDir directory;
    const QString path = directory.filePath(QStringLiteral("site.ini"));
    QFile file(path);
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.write(text);
    file.close();
    SiteEntries entries;
    QVector<Credentials> users;
    QString error;
    const bool read = readSite(optionsFor(QStringList{QStringLiteral("--config"), path} + more),
                               QString(), &entries, &users, &error);
    QCOMPARE(read, problem.isEmpty());
    QCOMPARE(error, problem.isEmpty() ? QString() : path + problem);
}

void SiteFeedsTest::filesThatNameNothing_data()
{
    QTest::addColumn<QByteArray>("text");
    QTest::addColumn<QStringList>("more");
    QTest::addColumn<QString>("problem");
    const QString nothing = QStringLiteral(":1: the file has no [server] and no [prometheus]");
    const QStringList ups{QStringLiteral("--ups"), QStringLiteral("a@host")};
    QTest::newRow("empty") << QByteArray() << QStringList() << nothing;
    QTest::newRow("comments") << QByteArray("# nothing\n\n") << QStringList() << nothing;
    QTest::newRow("console alone") << QByteArray("[console]\n") << QStringList() << nothing;
    QTest::newRow("a UPS beside it") << QByteArray("# nothing\n") << ups << QString();
    const QByteArray server = "\n[server s]\naddress = host\n";
    QTest::newRow("no ups") << server << QStringList()
                            << ":2: the server has no ups; give 'ups = all', or names";
    QTest::newRow("ups of another")
        << server << QStringList{QStringLiteral("--ups"), QStringLiteral("a@x")}
        << ":2: the server has no ups; give 'ups = all', or names";
    QTest::newRow("ups beside it") << server << ups << QString();
    QTest::newRow("ups in a section") << server + "[ups a@s]\n" << QStringList() << QString();
    QTest::newRow("Prometheus") << QByteArray("[prometheus p]\nurl = http://host\n")
                                << QStringList() << QString();
}

void SiteFeedsTest::wrongSites()
{
    QFETCH(QStringList, arguments);
    QFETCH(QString, part);
    SiteEntries entries;
    QVector<Credentials> users;
    QString error;
    QVERIFY(!readSite(optionsFor(arguments), QString(), &entries, &users, &error));
    QVERIFY2(error.contains(part), qPrintable(error));
    QVERIFY(!error.contains(QLatin1Char('\n')));
}

/// The file of credentials is the operator's own.
void SiteFeedsTest::keepsAUserInTheFile()
{
    const QTemporaryDir directory;
    const QString path = directory.filePath(QStringLiteral("credentials"));
    const QByteArray before = "# The night shift's.\n[other]\nuser = a\npassword = b\n";
    QString error;
    QVERIFY2(writePrivateFile(path, before, &error), qPrintable(error));
    SiteModel site;
    SiteFeeds feeds(&site);
    const QString ups = QStringLiteral("rack1@host:3493");
    const QString user = QStringLiteral("oper");
    QVERIFY2(feeds.keepUser(path, ups, user, QStringLiteral("p"), &error), qPrintable(error));
    const QByteArray kept = before + "\n[host:3493]\nuser = oper\npassword = p\n";
    QCOMPARE(*readPrivateFile(path, mostSiteBytes, &error), kept);
    QCOMPARE(QFile::permissions(path) &
                 (QFile::ReadGroup | QFile::WriteGroup | QFile::ReadOther | QFile::WriteOther),
             QFile::Permissions());
    // A file that others can read is left alone, and so is one that is not understood.
    QVERIFY(QFile::setPermissions(path, QFile::ReadOwner | QFile::WriteOwner | QFile::ReadOther));
    QVERIFY(!feeds.keepUser(path, ups, user, QStringLiteral("q"), &error));
    QCOMPARE(*readSmallFile(path, mostSiteBytes, &error), kept);
    QVERIFY2(writePrivateFile(path, "what is this\n", &error), qPrintable(error));
    QVERIFY(!feeds.keepUser(path, ups, user, QStringLiteral("q"), &error));
    QVERIFY2(error.contains(path), qPrintable(error));
    QCOMPARE(*readPrivateFile(path, mostSiteBytes, &error), QByteArray("what is this\n"));
    // The first one of all.
    const QString fresh = directory.filePath(QStringLiteral("fresh"));
    QVERIFY2(feeds.keepUser(fresh, ups, user, QStringLiteral("p"), &error), qPrintable(error));
    QVERIFY(readPrivateFile(fresh, mostSiteBytes, &error)->endsWith(kept.mid(before.size() + 1)));
}

/// A UPS whose driver does not run says nothing about the user.
void SiteFeedsTest::checksTheUserOnceTheDriverRuns()
{
    FakeNutServer server;
    serve(&server, {"a"});
    const auto reading = server.onLine;
    int probes = 0;
    server.onLine = [&](QTcpSocket *socket, const QByteArray &line) {
        if (line.startsWith("USERNAME") || line.startsWith("PASSWORD") || line == "SET TRACKING ON")
            socket->write("OK\n");
        else if (line.startsWith("SET VAR a no.such "))
            socket->write(++probes == 1 ? "ERR DRIVER-NOT-CONNECTED\n" : "ERR VAR-NOT-SUPPORTED\n");
        else
            reading(socket, line);
    };
    const QString oper = QStringLiteral("oper");
    FedSite fed(section(server, "ups = a"),
                {{server.address().server(), oper, QStringLiteral("p")}});
    QVERIFY2(fed.error.isEmpty(), qPrintable(fed.error));
    SiteModel &site = fed.site;
    int checked = 0;
    connect(site.at(0), &UpsModel::userChecked, this, [&checked] { ++checked; });
    QTRY_COMPARE(checked, 1);
    QCOMPARE(probes, 2);
    QCOMPARE(site.at(0)->user(), oper);
    QVERIFY(site.problems().isEmpty());
    // Once is enough.
    server.client()->abort();
    const auto rounds = server.asked.count();
    QTRY_VERIFY(server.asked.count() > rounds + 20);
    QCOMPARE(probes, 2);
}

/// A refused user is a problem of the site, until another one is taken; the values come all the
/// same.
void SiteFeedsTest::refusedUser()
{
    FakeNutServer server;
    serve(&server, {"a"});
    const auto reading = server.onLine;
    QByteArray right = "\"right\"";
    server.onLine = [&, password = QByteArray()](QTcpSocket *socket,
                                                 const QByteArray &line) mutable {
        if (line.startsWith("PASSWORD "))
            password = line.mid(9);
        if (line.startsWith("USERNAME") || line.startsWith("PASSWORD") || line == "SET TRACKING ON")
            socket->write("OK\n");
        else if (line.startsWith("SET VAR "))
            socket->write(password == right ? "ERR VAR-NOT-SUPPORTED\n" : "ERR ACCESS-DENIED\n");
        else
            reading(socket, line);
    };
    const NutHost host = server.address().server();
    const QString oper = QStringLiteral("oper");
    FedSite fed(section(server, "ups = all"), {{host, oper, QStringLiteral("hunter2")}});
    QVERIFY2(fed.error.isEmpty(), qPrintable(fed.error));
    SiteModel &site = fed.site;
    const QString source = QStringLiteral("oper@") + shownName(host);
    QTRY_VERIFY(site.problems().contains(source));
    QCOMPARE(site.problems().value(source).severity, Severity::Warning);
    QVERIFY(!site.problems().value(source).text.contains(QStringLiteral("hunter2")));
    QCOMPARE(site.problemCount(), 1);
    UpsModel *ups = site.at(0);
    QTRY_COMPARE(ups->headline().severity, Severity::Normal);
    QVERIFY(ups->user().isEmpty());
    QVERIFY2(ups->userProblem().startsWith(QStringLiteral("oper is refused: ")),
             qPrintable(ups->userProblem()));
    ups->logIn(oper, QStringLiteral("right"));
    QTRY_VERIFY(site.problems().isEmpty());
    QCOMPARE(ups->user(), oper);
    QVERIFY(ups->userProblem().isEmpty());
    ups->logOut();
    QVERIFY(ups->user().isEmpty());
    QVERIFY(ups->userProblem().isEmpty());
}

void SiteFeedsTest::filesMustBeThere_data()
{
    QTest::addColumn<QByteArray>("config");
    QTest::addColumn<QString>("problem");
    const QByteArray server = "[server s]\naddress = host\nups = a\n";
    const QByteArray prometheus = "[prometheus p]\nurl = https://host\n";
    const QString missing = QStringLiteral("cannot use /no/file: No such file or directory");
    QTest::newRow("authorities") << server + "ca = /no/file\n" << QStringLiteral(":4: ") + missing;
    QTest::newRow("no certificate")
        << server + "ca = /etc/hostname\n"
        << QStringLiteral(":4: /etc/hostname has no certificate in PEM form");
    QTest::newRow("directory") << server + "ca = /etc\n" << QStringLiteral(":4: cannot use /etc: ");
    QTest::newRow("authorities of Prometheus") << prometheus + "ca = /no/file\n"
                                               << QStringLiteral(":3: ") + missing;
    QTest::newRow("user of Prometheus") << prometheus + "\nauth = /no/file\n"
                                        << QStringLiteral(":4: ") + missing;
    QTest::newRow("public user of Prometheus")
        << prometheus + "auth = /etc/hostname\n"
        << QStringLiteral(
               ":3: cannot use /etc/hostname: others may read it: change its mode to 600");
    QTest::newRow("user of Prometheus in the clear")
        << QByteArray("[prometheus p]\nauth = SECRETS\nurl = http://host\n")
        << QStringLiteral(":2: a password or token needs https, except on this machine");
    QTest::newRow("credentials") << "[console]\n# Ours.\ncredentials = /no/file\n" + server
                                 << QStringLiteral(":3: ") + missing;
}

/// A file that the configuration names and that cannot be used is reported with the line that names
/// it.
void SiteFeedsTest::filesMustBeThere()
{
    QFETCH(QByteArray, config);
    QFETCH(QString, problem);
    const QTemporaryDir directory;
    const QString path = directory.filePath(QStringLiteral("site.ini"));
    QFile secrets(directory.filePath(QStringLiteral("secrets")));
    QVERIFY(secrets.open(QIODevice::WriteOnly));
    QVERIFY(secrets.setPermissions(QFile::ReadOwner | QFile::WriteOwner));
    secrets.write("user = u\npassword = p\n");
    secrets.close();
    QFile file(path);
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.write(config.replace("SECRETS", secrets.fileName().toUtf8()));
    file.close();
    SiteEntries entries;
    QVector<Credentials> users;
    QString error;
    SiteModel site;
    SiteFeeds feeds(&site);
    QVERIFY(!readSite(optionsFor({QStringLiteral("--config"), path}), QString(), &entries, &users,
                      &error) ||
            !feeds.add(entries, users, &error));
    QVERIFY2(error.startsWith(path + problem), qPrintable(error));
    QVERIFY(!error.contains(QLatin1Char('\n')));
}

/// Those of the command line have no line.
void SiteFeedsTest::filesOfTheCommandLineMustBeThere()
{
    const Options options = optionsFor({QStringLiteral("--server"), QStringLiteral("host"),
                                        QStringLiteral("--ca"), QStringLiteral("/no/file")});
    SiteEntries entries;
    QVector<Credentials> users;
    QString error;
    QVERIFY2(readSite(options, QString(), &entries, &users, &error), qPrintable(error));
    SiteModel site;
    SiteFeeds feeds(&site);
    QVERIFY(!feeds.add(entries, users, &error));
    QCOMPARE(error, QStringLiteral("cannot use /no/file: No such file or directory"));
}

/// A server that is not reached from the start is news, once; that it is reached then, too.
void SiteFeedsTest::serverMissedFromTheStart()
{
    GoneServer server("ups = all");
    const NutHost &host = server.host;
    FedSite fed(server.config);
    QVERIFY2(fed.error.isEmpty(), qPrintable(fed.error));
    const ServerNews news(&fed.site);
    const QString missed = QStringLiteral("missed %1: connection refused").arg(host.toString());
    QTRY_COMPARE(news.all, QStringList(missed));
    QVERIFY(fed.site.hasServer(host.toString()));
    server.open(host.port);
    QTRY_COMPARE(news.all, QStringList({missed, QStringLiteral("met ") + host.toString()}));
    QTRY_COMPARE(fed.site.count(), 1);
    // From now on the UPSes say so.
    server.close();
    server.client()->abort();
    QTRY_VERIFY(fed.site.at(0)->snapshot().isLost());
    server.open(host.port);
    QTRY_VERIFY(!fed.site.at(0)->snapshot().isLost());
    QCOMPARE(news.all.size(), 2);
}

/// One that answers at once, or after a second try, is none.
void SiteFeedsTest::serverMetAtOnce()
{
    FakeNutServer one;
    FakeNutServer two;
    FakeWeb web;
    serve(&one, {"a"});
    serve(&two, {"a"});
    publish(&web, {"u@i"});
    int failures = 1;
    const auto reading = two.onLine;
    two.onLine = [&](QTcpSocket *socket, const QByteArray &line) {
        if (failures-- > 0)
            socket->abort();
        else
            reading(socket, line);
    };
    const auto addressOf = [](const FakeNutServer &server) {
        return server.address().server().toString();
    };
    FedSite fed("[server one]\naddress = " + addressOf(one).toLatin1() +
                "\nups = all\n[server two]\naddress = " + addressOf(two).toLatin1() +
                "\nups = all\n[prometheus p]\nurl = " + urlOf(web) + '\n');
    QVERIFY2(fed.error.isEmpty(), qPrintable(fed.error));
    const ServerNews news(&fed.site);
    QTRY_COMPARE(news.all.size(), 3);
    QCOMPARE(QSet<QString>(news.all.cbegin(), news.all.cend()),
             QSet<QString>({QStringLiteral("met ") + addressOf(one),
                            QStringLiteral("met ") + addressOf(two),
                            QStringLiteral("met Prometheus p")}));
}

/// Whatever keeps Prometheus from being read.
void SiteFeedsTest::prometheusMissedFromTheStart()
{
    FakeWeb web;
    web.onQuery = [](const QByteArray &) { return qMakePair(401, QByteArray("no")); };
    FedSite fed("[prometheus p]\nurl = " + urlOf(web) + '\n');
    QVERIFY2(fed.error.isEmpty(), qPrintable(fed.error));
    const ServerNews news(&fed.site);
    const QString missed =
        QStringLiteral("missed Prometheus p: it wants a user or a token (HTTP 401): set 'auth' in "
                       "its section (site.ini:1)");
    QTRY_COMPARE(news.all, QStringList(missed));
    const auto asked = web.heads.size();
    QTRY_VERIFY(web.heads.size() > asked + 10);
    QCOMPARE(news.all.size(), 1);
    publish(&web, {"u@i"});
    QTRY_COMPARE(news.all, QStringList({missed, QStringLiteral("met Prometheus p")}));
}

void SiteFeedsTest::authoritiesRequireTls()
{
    const Certificates certificates;
    QVERIFY2(certificates.problem().isEmpty(), qPrintable(certificates.problem()));
    FakeNutServer server;
    serve(&server, {"a"});
    const FedSite fed(section(server, "ups = a\nca = " + certificates.authority().toUtf8()));
    QVERIFY2(fed.error.isEmpty(), qPrintable(fed.error));
    QTRY_VERIFY(!server.asked.isEmpty());
    QCOMPARE(server.asked.first(), QByteArray("STARTTLS"));
}

/// UPSes of a Prometheus server have custom names and groups, like others.
void SiteFeedsTest::namesForPrometheus()
{
    FakeWeb web;
    publish(&web, {"u1@nut0:3493", "u1@nut1:3493", "u2@nut1:3493", "@nut2:3493"});
    FedSite fed(
        "[prometheus p]\nurl = " + urlOf(web) +
        "\n[ups u1@p]\nname = Any u1\nsite = Group\n[ups u1@nut1:3493@p]\nname = Second u1\n"
        "[ups nut2:3493@p]\nname = <b>Nameless</b>\n");
    QVERIFY2(fed.error.isEmpty(), qPrintable(fed.error));
    SiteModel &site = fed.site;
    QTRY_COMPARE(site.count(), 4);
    QStringList shown;
    for (int i = 0; i < site.count(); ++i) {
        QTRY_COMPARE(site.at(i)->severity(), Severity::Normal);
        shown += site.at(i)->id() + QStringLiteral(": ") + site.at(i)->title() +
                 QStringLiteral(", ") + site.at(i)->site();
    }
    shown.sort();
    QCOMPARE(shown, QStringList({QStringLiteral("nut2:3493 (nut): <b>Nameless</b>, nut2:3493"),
                                 QStringLiteral("u1@nut0:3493 (nut): Any u1, Group"),
                                 QStringLiteral("u1@nut1:3493 (nut): Second u1, Group"),
                                 QStringLiteral("u2@nut1:3493 (nut): u2, nut1:3493")}));
    QVERIFY(site.problems().isEmpty());
    QVERIFY(fed.feeds.promFeed(QStringLiteral("u2@nut1:3493 (nut)")));
}

/// A name in the file that no UPS has is a problem at its line, until the UPS comes.
void SiteFeedsTest::nameThatPrometheusLacks()
{
    FakeWeb web;
    publish(&web, {"u1@i"});
    FedSite fed("[prometheus p]\nurl = " + urlOf(web) +
                "\nsite = Hall\n[ups u2@p]\nname = Two\n[ups u3@p]\nname = Three\n");
    QVERIFY2(fed.error.isEmpty(), qPrintable(fed.error));
    SiteModel &site = fed.site;
    const QString line = titleOf("p", web) + QStringLiteral(" has no UPS '%1'%2");
    QTRY_COMPARE(site.problems().value(QStringLiteral("site.ini:4")).text,
                 line.arg(QStringLiteral("u2"), QStringLiteral(" and 1 more that are named")));
    QCOMPARE(site.problems().size(), 1);
    QCOMPARE(site.at(0)->site(), QStringLiteral("Hall"));
    publish(&web, {"u1@i", "u2@i"});
    QTRY_COMPARE(site.problems().value(QStringLiteral("site.ini:6")).text,
                 line.arg(QStringLiteral("u3"), QString()));
    QCOMPARE(site.problems().size(), 1);
    publish(&web, {"u1@i", "u2@i", "u3@i"});
    QTRY_VERIFY(site.problems().isEmpty());
}

/// Each has its own problem, and its own UPSes, also where those have the same labels.
void SiteFeedsTest::twoPrometheusOnOneHost()
{
    FakeWeb one;
    FakeWeb two;
    publish(&one, {"u@i"});
    publish(&two, {"u@i", "v@i"});
    const QString titleOfOne = titleOf("a", one);
    const QString titleOfTwo = titleOf("b", two);
    FedSite fed("[prometheus a]\nurl = " + urlOf(one, "/a") +
                "\n[prometheus b]\nurl = " + urlOf(two) + "\n");
    QVERIFY2(fed.error.isEmpty(), qPrintable(fed.error));
    SiteModel &site = fed.site;
    QTRY_COMPARE(site.count(), 3);
    UpsModel *first = site.find(QStringLiteral("u@i (nut)"));
    UpsModel *second = site.find(QStringLiteral("u@i (nut), Prometheus b"));
    QVERIFY(first && second);
    QVERIFY(fed.feeds.promFeed(first->id()) != fed.feeds.promFeed(second->id()));
    QTRY_VERIFY(!first->snapshot().isLost() && !second->snapshot().isLost());
    one.vanish();
    QTRY_COMPARE(site.problems().value(titleOfOne).text, QStringLiteral("connection refused"));
    QTRY_VERIFY(first->snapshot().isServerLost);
    QVERIFY(!second->snapshot().isLost());
    QVERIFY(site.hasServer(first->snapshot().server));
    two.onQuery = [](const QByteArray &) { return qMakePair(401, QByteArray("no")); };
    QTRY_COMPARE(site.problems().value(titleOfTwo).text,
                 QStringLiteral("it wants a user or a token (HTTP 401): set 'auth' in its section "
                                "(site.ini:3)"));
    QCOMPARE(site.problems().value(titleOfOne).text, QStringLiteral("connection refused"));
    publish(&two, {"u@i", "v@i"});
    QTRY_COMPARE(site.problems().keys(), QStringList(titleOfOne));
}

KIV_TEST_MAIN(SiteFeedsTest)

#include "tst_sitefeeds.moc"
