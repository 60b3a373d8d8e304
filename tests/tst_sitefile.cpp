// SPDX-License-Identifier: LicenseRef-all-rights-reserved

#include "nutreader.h"
#include "privatefile.h"
#include "sitefile.h"

#include "testmain.h"
#include "widgetprobe.h"

#include <QtCore/QTemporaryDir>

#include <sys/stat.h>

class SiteFileTest : public WidgetTest
{
    Q_OBJECT

private Q_SLOTS:
    void wholeFile();
    void prometheus();
    void upperAndLowerCase();
    void documentedFiles();
    void wrongFiles_data();
    void wrongFiles();
    void anyBytes();
    void credentials();
    void wrongCredentials_data();
    void wrongCredentials();
    void credentialsRoundTrip();
    void keptUserChangesNothingElse_data();
    void keptUserChangesNothingElse();
    void unfitUsersAreNotKept_data();
    void unfitUsersAreNotKept();
    void secretsOfOthersAreRefused_data();
    void secretsOfOthersAreRefused();
    void secretsAreWrittenForTheOwner();
    void onlyFilesAreRead();
    void quotedTexts_data();
    void quotedTexts();
};

void SiteFileTest::wholeFile()
{
    const QByteArray text = "\xef\xbb\xbf# The halls\r\n"
                            "\r\n"
                            "[console]\n"
                            "credentials = secrets\n"
                            "[server hall-1]\n"
                            "  address = nut1.example.org\n"
                            "site=Hall 1\n"
                            "tls = required\n"
                            "ca = /etc/ssl/site.pem\n"
                            "ups = all\n"
                            "; another\n"
                            "[server hall-2]\n"
                            "address = [fe80::1]:4000\n"
                            "ups = rack1, rack2\n"
                            "tls = off\n"
                            "[ups rack2@hall-2]\n"
                            "name = Rack = 2 \xc3\xa9\n"
                            "[ups rack3@hall-2]\n"
                            "site = Cellar\n";
    QString error;
    const std::optional<SiteEntries> site =
        parseSiteFile(text, QStringLiteral("/etc/kiv/site.ini"), &error);
    QVERIFY2(site, qPrintable(error));
    QCOMPARE(site->credentials.path, QStringLiteral("/etc/kiv/secrets"));
    QCOMPARE(site->servers.size(), 2);
    const ServerEntry &one = site->servers.at(0);
    QCOMPARE(one.host.toString(), QStringLiteral("nut1.example.org:3493"));
    QCOMPARE(one.site, QStringLiteral("Hall 1"));
    QVERIFY(one.all);
    QCOMPARE(one.tls, std::optional<bool>(true));
    QCOMPARE(one.authorities.path, QStringLiteral("/etc/ssl/site.pem"));
    const ServerEntry &two = site->servers.at(1);
    QCOMPARE(two.host.toString(), QStringLiteral("[fe80::1]:4000"));
    QCOMPARE(two.site, QStringLiteral("hall-2"));
    QVERIFY(!two.all);
    QCOMPARE(two.tls, std::optional<bool>(false));
    QCOMPARE(two.upses.size(), 3);
    QCOMPARE(two.upses.at(0).upsName, QStringLiteral("rack1"));
    QCOMPARE(two.upses.at(1).name, QStringLiteral("Rack = 2 é"));
    QCOMPARE(two.upses.at(2).upsName, QStringLiteral("rack3"));
    QCOMPARE(two.upses.at(2).site, QStringLiteral("Cellar"));
}

void SiteFileTest::prometheus()
{
    QString error;
    const std::optional<SiteEntries> site =
        parseSiteFile("[prometheus p]\nurl = https://host/x\nlabel = rack_1\nsite = Hall\n"
                      "job = ups\n[ups u1@p]\nname = Left\n[ups u1@nut0:3493@p]\nsite = Cellar\n"
                      "[prometheus q]\nurl = http://other\n",
                      QStringLiteral("f.ini"), &error);
    QVERIFY2(site, qPrintable(error));
    QCOMPARE(site->prometheus.size(), 2);
    const PromEntry &one = site->prometheus.at(0);
    QCOMPARE(one.name, QStringLiteral("p"));
    QCOMPARE(one.label, QStringLiteral("rack_1"));
    QCOMPARE(one.site, QStringLiteral("Hall"));
    QCOMPARE(one.place, QStringLiteral("f.ini:5")); // the job's
    QCOMPARE(one.labelPlace, QStringLiteral("f.ini:3"));
    QCOMPARE(one.dialectPlace, QStringLiteral("f.ini:1")); // the section's
    QCOMPARE(one.upses.size(), 2);
    QCOMPARE(one.upses.at(0).upsName, QStringLiteral("u1"));
    QCOMPARE(one.upses.at(0).name, QStringLiteral("Left"));
    QCOMPARE(one.upses.at(0).place, QStringLiteral("f.ini:6"));
    QCOMPARE(one.upses.at(1).upsName, QStringLiteral("u1@nut0:3493"));
    QCOMPARE(one.upses.at(1).site, QStringLiteral("Cellar"));
    QCOMPARE(site->prometheus.at(1).place, QStringLiteral("f.ini:10"));
}

/// Labels of Prometheus, and custom names, may differ in nothing but their case, or not at all.
/// Names of servers do not distinguish it.
void SiteFileTest::upperAndLowerCase()
{
    QString error;
    const std::optional<SiteEntries> site =
        parseSiteFile("[prometheus Hall]\nurl = http://host\n[ups u1@hall]\nname = Rack 1\n"
                      "[ups U1@HALL]\nname = RACK 1\n[server cellar]\naddress = host\n"
                      "[ups a@Cellar]\nname = Rack 1\n[ups b@cellar]\nname = Rack 1\n",
                      QStringLiteral("f.ini"), &error);
    QVERIFY2(site, qPrintable(error));
    const QVector<UpsEntry> &labels = site->prometheus.at(0).upses;
    QCOMPARE(labels.size(), 2);
    QCOMPARE(labels.at(0).upsName, QStringLiteral("u1"));
    QCOMPARE(labels.at(1).upsName, QStringLiteral("U1"));
    QCOMPARE(labels.at(1).name, QStringLiteral("RACK 1"));
    QCOMPARE(site->servers.at(0).upses.size(), 2);
}

/// The files that the documentation shows are read as they stand there.
void SiteFileTest::documentedFiles()
{
    QFile page(QStringLiteral(KIV_SOURCE_DIRECTORY "/docs/fleet.md"));
    QVERIFY(page.open(QIODevice::ReadOnly));
    const QList<QByteArray> lines = page.readAll().split('\n');
    QList<QByteArray> blocks;
    bool inside = false;
    for (const QByteArray &line : lines) {
        if (line == "```ini")
            blocks.append(QByteArray());
        else if (inside && line != "```")
            blocks.last() += line + '\n';
        inside = line == "```ini" || (inside && line != "```");
    }
    QCOMPARE(blocks.size(), 2);
    QString error;
    const auto site = parseSiteFile(blocks.at(0), QStringLiteral("site.ini"), &error);
    QVERIFY2(site, qPrintable(error));
    QCOMPARE(site->servers.size(), 2);
    QCOMPARE(site->servers.at(1).upses.size(), 2);
    QCOMPARE(site->prometheus.size(), 1);
    QCOMPARE(site->prometheus.at(0).upses.size(), 1);
    QVERIFY2(parseCredentials(blocks.at(1), QStringLiteral("credentials"), &error),
             qPrintable(error));
}

void SiteFileTest::wrongFiles_data()
{
    QTest::addColumn<QByteArray>("text");
    QTest::addColumn<QString>("error");
    const auto row = [](const char *name, const QByteArray &text, const char *error) {
        QTest::newRow(name) << text << QString::fromUtf8(error);
    };
    const QByteArray server = "[server a]\naddress = host\n";
    row("no section", "\nkey = value\n", ":2: a [section] must come first");
    row("unknown section", "[what ever]\n", ":1: unknown section");
    row("unknown key", server + "adress = host\n", ":3: unknown key 'adress'");
    row("no value", "[server a]\naddress =\n", ":2: 'address' has no value");
    row("no key", "[server a]\n= host\n", ":2: neither");
    row("no line at all", "[server a]\naddress\n", ":2: neither");
    row("twice the key", server + "address = other\n", ":3: 'address' is there twice");
    row("twice the section", server + server, ":3: the section [server a] is there twice");
    row("twice the section, other case", server + "[server A]\n",
        ":3: the section [server A] is there twice");
    row("twice the section of a UPS, other case",
        server + "[ups x@a]\nname = X\n[ups x@A]\nname = Y\n",
        ":5: the section [ups x@A] is there twice");
    row("twice the UPS, other case", server + "[ups rack1@a]\nname = X\n[ups RACK1@a]\n",
        ":5: the UPS 'RACK1' is there as 'rack1': upper and lower case do not distinguish UPSes");
    row("custom name of a UPS, other case", server + "ups = rack1\n[ups RACK1@a]\nname = X\n",
        ":4: the UPS 'RACK1' is there as 'rack1'");
    row("twice the address", server + "\n[server b]\naddress = host:3493\n", ":5: another section");
    row("twice the address, other case",
        "[server a]\naddress = localhost\n[server b]\naddress = LOCALHOST\n",
        ":4: another section has this address");
    row("no address", "#\n[server a]\nups = all\n\n[console]\n", ":2: [server a] has no address");
    row("no address at the end", "[server a]\n", ":1: [server a] has no address");
    row("wrong address", "[server a]\naddress = a b\n", ":2: the host must be");
    row("wrong port", "[server a]\naddress = a:0\n", ":2: the port must be");
    row("wrong tls", server + "tls = maybe\n", ":3: tls is off or required");
    row("wrong ups", server + "ups = a b\n", ":3: ups is 'all'");
    row("all beside a name", server + "ups = rack1, all\n", ":3: ups is 'all'");
    row("twice the ups", server + "ups = rack1,rack2, rack1\n",
        ":3: the UPS 'rack1' is there twice");
    row("twice the ups, other case", server + "ups = rack1,RACK1\n",
        ":3: the UPS 'RACK1' is there twice");
    row("empty ups", server + "ups = a,,b\n", ":3: ups is 'all'");
    row("ups of no server", server + "[ups x@b]\n",
        ":3: there is no [server b] or [prometheus b] above");
    row("ups without server", server + "[ups x]\n", ":3: a UPS is named as [ups UPS@NAME]");
    const QByteArray prom = "[prometheus p]\nurl = http://host\n";
    row("ups of Prometheus without a name", prom + "[ups @p]\n",
        ":3: a UPS of Prometheus is named");
    row("wrong key of it", prom + "[ups x@p]\nups = y\n", ":4: unknown key 'ups'");
    row("ups above its Prometheus", "[ups x@p]\n" + prom, ":1: there is no [server p]");
    row("server called as a Prometheus", prom + "[server p]\n", ":3: another server has this name");
    row("Prometheus called as a server", server + "[prometheus A]\n",
        ":3: another server has this name");
    row("Prometheus with @", "[prometheus a@b]\n", ":1: a server's name has no '@'");
    row("wrong label", prom + "label = 1x\n", ":3: label has letters");
    row("query for a label", prom + "label = x) or (y\n", ":3: label has letters");
    row("long site", prom + "site = " + QByteArray(201, 'x'), ":3: the text has more than 200");
    row("wrong name", server + "[ups x y@a]\n", ":3: a UPS is named");
    row("long text", server + "site = " + QByteArray(201, 'x'), ":3: the text has more than 200");
    row("long line", "# " + QByteArray(5000, 'x'), ":1: the line has more than 4096 bytes");
    row("ca for plain http", "[prometheus p]\nurl = http://host\nca = f\n",
        ":1: [prometheus p] has a ca, but its url is not https");
    row("ca without TLS", server + "tls = off\nca = f\n",
        ":1: [server a] has a ca, but tls is off");
    row("no url", "[prometheus p]\njob = x\n", ":1: [prometheus p] has no url");
    row("wrong url", "[prometheus p]\nurl = http://u:p@host\n",
        ":2: the address must have no user");
    row("wrong dialect", "[prometheus p]\ndialect = x\n", ":2: dialect is one of");
    row("binary", QByteArray("[server a]\n\0\n", 13), ":2: the line is no text");
}

void SiteFileTest::wrongFiles()
{
    QFETCH(QByteArray, text);
    QFETCH(QString, error);
    QString reason;
    QVERIFY(!parseSiteFile(text, QStringLiteral("site.ini"), &reason));
    QVERIFY2(reason.startsWith(QStringLiteral("site.ini") + error), qPrintable(reason));
    QVERIFY(!reason.contains(QLatin1Char('\n')));
}

/// Damaged files: each gets an answer.
void SiteFileTest::anyBytes()
{
    const QByteArray good = "[console]\ncredentials = x\n[server a]\naddress = host:1\nups = x,y\n"
                            "tls = off\n[ups x@a]\nname = N\nsite = S\n";
    quint32 seed = 20;
    const auto random = [&seed](int below) {
        seed = seed * 1664525U + 1013904223U;
        return int((seed >> 8) % quint32(below));
    };
    int refused = 0;
    for (int round = 0; round < 3000; ++round) {
        QByteArray text = good;
        for (int change = 0; change <= random(6); ++change) {
            const int at = random(int(text.size()));
            switch (random(3)) {
            case 0:
                text[at] = char(random(256));
                break;
            case 1:
                text.remove(at, random(20));
                break;
            default:
                text.insert(at, text.mid(random(int(text.size())), random(30)));
            }
            if (text.isEmpty())
                text = "x";
        }
        QString reason;
        if (!parseSiteFile(text, QStringLiteral("f"), &reason)) {
            ++refused;
            QVERIFY(reason.startsWith(QStringLiteral("f:")));
        }
        parseCredentials(text, QStringLiteral("f"), &reason);
    }
    QVERIFY(refused > 1000);
}

void SiteFileTest::credentials()
{
    QString error;
    const auto users = parseCredentials("# mine\n[localhost:3493]\nuser = oper\n"
                                        "password = pa ss = \"word\"\n[other]\npassword=x\nuser=y",
                                        QStringLiteral("secrets"), &error);
    QVERIFY2(users, qPrintable(error));
    QCOMPARE(users->size(), 2);
    QCOMPARE(users->at(0).user, QStringLiteral("oper"));
    QCOMPARE(users->at(0).password, QStringLiteral("pa ss = \"word\""));
    QCOMPARE(users->at(1).host.toString(), QStringLiteral("other:3493"));
}

void SiteFileTest::wrongCredentials_data()
{
    QTest::addColumn<QByteArray>("text");
    QTest::addColumn<QString>("error");
    QTest::newRow("no user") << QByteArray("[a]\npassword = hunter2\n") << ":1: the section needs";
    QTest::newRow("no password") << QByteArray("\n[a]\nuser = x\n[b]\n") << ":2: the section needs";
    QTest::newRow("other key") << QByteArray("[a]\nhunter2 = x\n") << ":2: a key that is neither";
    QTest::newRow("no section") << QByteArray("[hunter2 x]\n") << ":1: a section is named";
    QTest::newRow("no line") << QByteArray("[a]\nhunter2\n") << ":2: neither";
    QTest::newRow("twice") << QByteArray("[a]\nuser=x\npassword=hunter2\n[a:3493]\n")
                           << ":4: the server is there twice";
    QTest::newRow("other case") << QByteArray("[a]\nuser=x\npassword=hunter2\n[A]\n")
                                << ":4: the server is there twice";
}

/// What stands in the file never gets into the message.
void SiteFileTest::wrongCredentials()
{
    QFETCH(QByteArray, text);
    QFETCH(QString, error);
    QString reason;
    QVERIFY(!parseCredentials(text, QStringLiteral("secrets"), &reason));
    QVERIFY2(reason.startsWith(QStringLiteral("secrets") + error), qPrintable(reason));
    QVERIFY(!reason.contains(QStringLiteral("hunter2")));
}

void SiteFileTest::credentialsRoundTrip()
{
    const QVector<Credentials> all = {
        {{QStringLiteral("::1"), 4000}, QStringLiteral("a b"), QStringLiteral("\"x=[y]#;é")},
        {{QStringLiteral("host"), 3493}, QStringLiteral("u"), QStringLiteral("[p]")}};
    QString error;
    QByteArray text;
    for (const Credentials &one : all) {
        const auto next = withCredentials(text, one, QStringLiteral("f"), &error);
        QVERIFY2(next, qPrintable(error));
        text = *next;
    }
    const auto read = parseCredentials(text, QStringLiteral("f"), &error);
    QVERIFY2(read, qPrintable(error));
    QCOMPARE(read->size(), 2);
    for (int i = 0; i < 2; ++i) {
        QVERIFY(read->at(i).host == all.at(i).host);
        QCOMPARE(read->at(i).user, all.at(i).user);
        QCOMPARE(read->at(i).password, all.at(i).password);
    }
}

void SiteFileTest::keptUserChangesNothingElse_data()
{
    QTest::addColumn<QByteArray>("before");
    QTest::addColumn<QByteArray>("after");
    const QByteArray notes =
        "# Ours. Ask Kim.\n\n[a]\n; the night shift\nuser=x\npassword =  y z\n";
    QTest::newRow("added") << notes << notes + "\n[host:3493]\nuser = u\npassword = p\n";
    QTest::newRow("last line open")
        << QByteArray("[a]\nuser=x\npassword=y")
        << QByteArray("[a]\nuser=x\npassword=y\n\n[host:3493]\nuser = u\npassword = p\n");
    QTest::newRow("replaced") << "[host]\n# day\n password=old\n# and\nuser=me\n\n" + notes
                              << "[host]\n# day\npassword = p\n# and\nuser = u\n\n" + notes;
    QTest::newRow("replaced, last") << notes + "[host:3493]\nuser=me\npassword=old"
                                    << notes + "[host:3493]\nuser = u\npassword = p";
    QTest::newRow("other line ends")
        << QByteArray("\xef\xbb\xbf[host]\r\nuser=me\r\npassword=old\r\n")
        << QByteArray("\xef\xbb\xbf[host]\r\nuser = u\r\npassword = p\r\n");
}

/// The file is its owner's, with their comments and other servers.
void SiteFileTest::keptUserChangesNothingElse()
{
    QFETCH(QByteArray, before);
    QFETCH(QByteArray, after);
    QString error;
    const Credentials user = {
        {QStringLiteral("host"), 3493}, QStringLiteral("u"), QStringLiteral("p")};
    const auto text = withCredentials(before, user, QStringLiteral("f"), &error);
    QVERIFY2(text, qPrintable(error));
    QCOMPARE(*text, after);
}

void SiteFileTest::unfitUsersAreNotKept_data()
{
    QTest::addColumn<QByteArray>("before");
    QTest::addColumn<QString>("password");
    QTest::newRow("space before") << QByteArray() << " hunter2";
    QTest::newRow("space after") << QByteArray("[host]\nuser=a\npassword=b\n") << "hunter2 ";
    QTest::newRow("line end") << QByteArray() << "hunter2\n[other]\nuser = x\npassword = hunter2";
    QTest::newRow("no text") << QByteArray("neither\n") << "hunter2";
}

void SiteFileTest::unfitUsersAreNotKept()
{
    QFETCH(QByteArray, before);
    QFETCH(QString, password);
    QString error;
    QVERIFY(!withCredentials(before,
                             {{QStringLiteral("host"), 3493}, QStringLiteral("u"), password},
                             QStringLiteral("secrets"), &error));
    QVERIFY2(error.startsWith(QStringLiteral("secrets")), qPrintable(error));
    QVERIFY(!error.contains(QStringLiteral("hunter2")));
}

void SiteFileTest::secretsOfOthersAreRefused_data()
{
    QTest::addColumn<int>("mode");
    QTest::addColumn<bool>("accepted");
    QTest::newRow("600") << 0600 << true;
    QTest::newRow("400") << 0400 << true;
    QTest::newRow("640") << 0640 << false;
    QTest::newRow("604") << 0604 << false;
    QTest::newRow("620") << 0620 << false;
    QTest::newRow("777") << 0777 << false;
}

void SiteFileTest::secretsOfOthersAreRefused()
{
    QFETCH(int, mode);
    QFETCH(bool, accepted);
    const QTemporaryDir directory;
    const QString path = directory.filePath(QStringLiteral("secrets"));
    QString error;
    QVERIFY(writePrivateFile(path, "secret", &error));
    QCOMPARE(::chmod(QFile::encodeName(path).constData(), mode_t(mode)), 0);
    const auto content = readPrivateFile(path, 100, &error);
    QCOMPARE(content.has_value(), accepted);
    if (!accepted)
        QVERIFY2(error.contains(QStringLiteral("mode to 600")), qPrintable(error));
    // A link leads to the same file.
    const QString link = directory.filePath(QStringLiteral("link"));
    QVERIFY(QFile::link(path, link));
    QCOMPARE(readPrivateFile(link, 100, &error).has_value(), accepted);
    QVERIFY(readSmallFile(path, 100, &error));
}

void SiteFileTest::secretsAreWrittenForTheOwner()
{
    const QTemporaryDir directory;
    const QString path = directory.filePath(QStringLiteral("secrets"));
    QFile open(path);
    QVERIFY(open.open(QIODevice::WriteOnly));
    open.setPermissions(QFile::ReadOwner | QFile::WriteOwner | QFile::ReadOther);
    QString error;
    QVERIFY2(writePrivateFile(path, "secret", &error), qPrintable(error));
    struct stat written = {};
    QCOMPARE(::stat(QFile::encodeName(path).constData(), &written), 0);
    QCOMPARE(int(written.st_mode & 0777), 0600);
    QCOMPARE(*readPrivateFile(path, 6, &error), QByteArray("secret"));
    QVERIFY(!readPrivateFile(path, 5, &error));
    QVERIFY2(error.contains(QStringLiteral("more than 5 bytes")), qPrintable(error));
    QVERIFY(!writePrivateFile(directory.filePath(QStringLiteral("no/such")), "x", &error));
    // A link stays one, and nothing else is left behind.
    const QString link = directory.filePath(QStringLiteral("link"));
    QVERIFY(QFile::link(path, link));
    QVERIFY2(writePrivateFile(link, "other", &error), qPrintable(error));
    QVERIFY(QFileInfo(link).isSymLink());
    QCOMPARE(*readPrivateFile(path, 6, &error), QByteArray("other"));
    QCOMPARE(QDir(directory.path()).entryList(QDir::Files | QDir::Hidden).size(), 2);
}

void SiteFileTest::onlyFilesAreRead()
{
    const QTemporaryDir directory;
    QString error;
    QVERIFY(!readSmallFile(directory.path(), 100, &error));
    QVERIFY(!readSmallFile(QStringLiteral("/dev/zero"), 100, &error));
    QVERIFY2(error.contains(QStringLiteral("/dev/zero")), qPrintable(error));
    const QString pipe = directory.filePath(QStringLiteral("pipe"));
    QCOMPARE(::mkfifo(QFile::encodeName(pipe).constData(), 0600), 0);
    QVERIFY(!readPrivateFile(pipe, 100, &error));
    QVERIFY(!readSmallFile(directory.filePath(QStringLiteral("none")), 100, &error));
}

void SiteFileTest::quotedTexts_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<QByteArray>("quoted");
    QTest::newRow("plain") << "x" << QByteArray("\"x\"");
    QTest::newRow("empty") << "" << QByteArray("\"\"");
    QTest::newRow("escapes") << "a\"b\\c" << QByteArray("\"a\\\"b\\\\c\"");
    QTest::newRow("umlaut") << QStringLiteral("ä") << QByteArray("\"\xc3\xa4\"");
    QTest::newRow("line end") << "x\nFSD demo" << QByteArray();
    QTest::newRow("tab") << "x\ty" << QByteArray();
    QTest::newRow("too long") << QString(500, QLatin1Char('x')) << QByteArray();
}

void SiteFileTest::quotedTexts()
{
    QFETCH(QString, text);
    QFETCH(QByteArray, quoted);
    const std::optional<QByteArray> result = quotedForNut(text);
    QCOMPARE(result.has_value(), !quoted.isNull());
    if (!result)
        return;
    QCOMPARE(*result, quoted);
    // The protocol's own reader gets the text back.
    QCOMPARE(splitNutLine(*result).value(), QVector<QByteArray>{text.toUtf8()});
}

KIV_TEST_MAIN(SiteFileTest)

#include "tst_sitefile.moc"
