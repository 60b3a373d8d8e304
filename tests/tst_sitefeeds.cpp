// SPDX-License-Identifier: LicenseRef-all-rights-reserved

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
