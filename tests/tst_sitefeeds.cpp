// SPDX-License-Identifier: LicenseRef-all-rights-reserved

#include "feed/privatefile.h"
#include "options.h"
#include "sitefeeds.h"

#include "certificates.h"
#include "fakenutserver.h"
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
        if (!names.contains(name))
            socket->write("ERR UNKNOWN-UPS\n");
        else if (line.startsWith("GET"))
            socket->write("VAR " + name + " ups.status \"OL\"\n");
        else
            socket->write("BEGIN LIST VAR " + name + "\nVAR " + name +
                          " ups.status \"OL\"\nEND LIST VAR " + name + '\n');
    };
}

Options optionsFor(const QStringList &arguments)
{
    return parseOptions(QStringList(QStringLiteral("kivconsole")) + arguments);
}

} // namespace

class SiteFeedsTest : public WidgetTest
{
    Q_OBJECT

private Q_SLOTS:
    void severalServers();
    void allOfAServer();
    void unreachableServer();
    void argumentsAddToTheFile();
    void wrongSites_data();
    void wrongSites();
    void keepsAUserInTheFile();
    void checksTheUserOnceTheDriverRuns();
    void refusedUser();
    void authoritiesMustBeThere();
    void authoritiesRequireTls();
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
                                        QStringLiteral("--ups"), QStringLiteral("a@") + first});
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
    serve(&server, {"a", "b", "plain"});
    const QString host = server.address().server().toString();
    SiteEntries entries;
    QString error;
    // One has a name of one's own.
    const std::optional<SiteEntries> file = parseSiteFile(
        "[server s]\naddress = " + host.toLatin1() + "\nups = all\n[ups b@s]\nname = Mine\n",
        QStringLiteral("f"), &error);
    QVERIFY2(file, qPrintable(error));
    SiteModel site;
    SiteFeeds feeds(&site);
    QVERIFY(feeds.add(*file, {}, &error, shortTimes()));
    feeds.start();
    QTRY_COMPARE(site.count(), 3);
    QVERIFY(site.problems().isEmpty());
    for (int i = 0; i < 3; ++i)
        QTRY_COMPARE(site.at(i)->severity(), Severity::Normal);
    const auto titleOf = [&](const char *name) {
        return site.find(QLatin1String(name) + QLatin1Char('@') + host)->title();
    };
    QCOMPARE(titleOf("a"), QStringLiteral("Room of a"));
    QCOMPARE(titleOf("b"), QStringLiteral("Mine"));
    QCOMPARE(titleOf("plain"), QStringLiteral("plain"));
    QCOMPARE(server.clients.count(), 1);
}

void SiteFeedsTest::unreachableServer()
{
    FakeNutServer server;
    serve(&server, {"a"});
    const NutHost host = server.address().server();
    server.close();
    SiteEntries entries;
    ServerEntry entry;
    entry.host = host;
    entry.all = true;
    entries.servers.append(entry);
    SiteModel site;
    SiteFeeds feeds(&site);
    QString error;
    QVERIFY(feeds.add(entries, {}, &error, shortTimes()));
    feeds.start();
    // One that has not answered yet is no problem so far.
    QCOMPARE(site.problems().value(host.toString()).text, QStringLiteral("connecting"));
    QCOMPARE(site.problemCount(), 0);
    QTRY_COMPARE(site.problems().value(host.toString()).text, QStringLiteral("connection refused"));
    QCOMPARE(site.problemCount(), 1);
    QCOMPARE(site.severity(), Severity::Unknown);
    QCOMPARE(site.count(), 0);
    server.open(host.port);
    QTRY_COMPARE(site.count(), 1);
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
    SiteEntries entries;
    ServerEntry entry;
    entry.host = server.address().server();
    entry.upses.append({QStringLiteral("a"), {}, {}});
    entries.servers.append(entry);
    SiteModel site;
    SiteFeeds feeds(&site);
    QString error;
    const QString oper = QStringLiteral("oper");
    QVERIFY2(feeds.add(entries, {{entry.host, oper, QStringLiteral("p")}}, &error, shortTimes()),
             qPrintable(error));
    int checked = 0;
    connect(site.at(0), &UpsModel::userChecked, this, [&checked] { ++checked; });
    feeds.start();
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
    SiteEntries entries;
    ServerEntry entry;
    entry.host = server.address().server();
    entry.all = true;
    entries.servers.append(entry);
    SiteModel site;
    SiteFeeds feeds(&site);
    QString error;
    const QString oper = QStringLiteral("oper");
    QVERIFY2(
        feeds.add(entries, {{entry.host, oper, QStringLiteral("hunter2")}}, &error, shortTimes()),
        qPrintable(error));
    feeds.start();
    const QString source = QStringLiteral("oper@") + entry.host.toString();
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

void SiteFeedsTest::authoritiesMustBeThere()
{
    SiteEntries entries;
    ServerEntry entry;
    entry.host.host = QStringLiteral("host");
    entry.authorities = QStringLiteral("/etc/hostname");
    entries.servers.append(entry);
    SiteModel site;
    SiteFeeds feeds(&site);
    QString error;
    QVERIFY(!feeds.add(entries, {}, &error));
    QCOMPARE(error, QStringLiteral("/etc/hostname has no certificate in PEM form"));
}

void SiteFeedsTest::authoritiesRequireTls()
{
    const Certificates certificates;
    QVERIFY2(certificates.problem().isEmpty(), qPrintable(certificates.problem()));
    FakeNutServer server;
    serve(&server, {"a"});
    SiteEntries entries;
    ServerEntry entry;
    entry.host = server.address().server();
    entry.authorities = certificates.authority();
    entry.upses.append({QStringLiteral("a"), {}, {}});
    entries.servers.append(entry);
    SiteModel site;
    SiteFeeds feeds(&site);
    QString error;
    QVERIFY2(feeds.add(entries, {}, &error, shortTimes()), qPrintable(error));
    feeds.start();
    QTRY_VERIFY(!server.asked.isEmpty());
    QCOMPARE(server.asked.first(), QByteArray("STARTTLS"));
}

KIV_TEST_MAIN(SiteFeedsTest)

#include "tst_sitefeeds.moc"
