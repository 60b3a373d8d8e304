// SPDX-License-Identifier: LicenseRef-all-rights-reserved

#include "nutfeed.h"

#include "certificates.h"
#include "fakenutserver.h"
#include "nutserver.h"
#include "snapshots.h"
#include "testmain.h"
#include "widgetprobe.h"

#include <QtCore/QElapsedTimer>
#include <QtCore/QFile>

#include <memory>

namespace {

const QByteArray users = "[oper]\n  password = \"pass \\\"word\"\n  actions = SET\n"
                         "  instcmds = ALL\n"
                         "[beeper]\n  password = b\n  actions = SET\n"
                         "  instcmds = beeper.enable\n";

QString text(const char *utf8)
{
    return QString::fromUtf8(utf8);
}

/// A real server with the test's own driver, and a session with it.
struct Site
{
    explicit Site(const char *user = "oper", const char *password = "pass \"word",
                  const NutSessionTimes &times = NutSessionTimes())
    {
        server.useDriver(QStringLiteral(KIV_UPS_DRIVER));
        ready = server.writeUsers(users) && server.start();
        session = std::make_unique<NutSession>(NutHost{QStringLiteral("127.0.0.1"), server.port()},
                                               NutTls(), times);
        session->setUser(text(user), text(password));
    }

    NutServer server;
    std::unique_ptr<NutSession> session;
    bool ready = false;
};

/// How something ended; counts, since it must end once.
struct Ending
{
    NutSession::Done done()
    {
        return [this](CommandOutcome how, const QString &why) {
            ++count;
            outcome = how;
            text = why;
        };
    }
    int count = 0;
    CommandOutcome outcome = CommandOutcome::Unconfirmed;
    QString text;
};

} // namespace

Q_DECLARE_METATYPE(CommandOutcome)

class NutSessionTest : public WidgetTest
{
    Q_OBJECT

private Q_SLOTS:
    void outcomes_data();
    void outcomes();
    void settings_data();
    void settings();
    void users_data();
    void users();
    void aRightMayBeMissing();
    void noUser();
    void noConfirmation();
    void hostileTexts_data();
    void hostileTexts();
    void neverForcesAShutdown();
    void driverGone();
    void serverGone();
    void oldServerTracksNothing();
    void takesLeaveWhenIdle();
    void anotherUser();
    void refusedUserGivesWayToTheFormer();
    void offersWhatTheUpsHas();
    void offerComesBackWithTheUps();
    void overTls_data();
    void overTls();
    void passwordsNeedTls();
    void passwordInNoText();
};

void NutSessionTest::outcomes_data()
{
    QTest::addColumn<QString>("command");
    QTest::addColumn<QString>("value");
    QTest::addColumn<CommandOutcome>("outcome");
    QTest::addColumn<QString>("words");
    QTest::addColumn<QByteArray>("handed");
    const auto row = [](const char *command, const char *value, CommandOutcome outcome,
                        const char *words, const char *handed) {
        QTest::newRow(command) << text(command) << text(value) << outcome << text(words)
                               << QByteArray(handed);
    };
    row("beeper.disable", "", CommandOutcome::Done, "", "demo INSTCMD beeper.disable TRACKING");
    row("load.off", "3", CommandOutcome::Done, "", "demo INSTCMD load.off 3 TRACKING");
    row("test.failure.start", "", CommandOutcome::Failed, "tried and could not",
        "demo INSTCMD test.failure.start TRACKING");
    row("shutdown.return", "", CommandOutcome::Failed, "the argument is invalid",
        "demo INSTCMD shutdown.return TRACKING");
    row("reset.watchdog", "", CommandOutcome::Failed, "does not know it",
        "demo INSTCMD reset.watchdog TRACKING");
    row("no.such", "", CommandOutcome::Refused, "no such command", "");
}

void NutSessionTest::outcomes()
{
    QFETCH(QString, command);
    QFETCH(QString, value);
    QFETCH(CommandOutcome, outcome);
    QFETCH(QString, words);
    QFETCH(QByteArray, handed);
    Site site;
    QVERIFY2(site.ready, qPrintable(site.server.problem()));
    Ending ending;
    site.session->run(text("demo"), command, value, ending.done());
    QTRY_COMPARE(ending.count, 1);
    QCOMPARE(ending.outcome, outcome);
    QVERIFY2(words.isEmpty() ? ending.text.isEmpty() : ending.text.contains(words),
             qPrintable(ending.text));
    const QByteArrayList lines = site.server.handed();
    QCOMPARE(lines.size(), handed.isEmpty() ? 0 : 1);
    QVERIFY2(lines.value(0).startsWith(handed), lines.value(0).constData());
}

void NutSessionTest::settings_data()
{
    QTest::addColumn<QString>("variable");
    QTest::addColumn<QString>("value");
    QTest::addColumn<CommandOutcome>("outcome");
    QTest::addColumn<QString>("words");
    const auto row = [](const char *variable, const char *value, CommandOutcome outcome,
                        const char *words) {
        QTest::addRow("%s to '%s'", variable, value)
            << text(variable) << text(value) << outcome << text(words);
    };
    row("ups.id", "a \"b\\", CommandOutcome::Done, "");
    row("ups.delay.shutdown", "600", CommandOutcome::Done, "");
    row("input.sensitivity", "high", CommandOutcome::Done, "");
    row("ups.delay.shutdown", "9", CommandOutcome::Refused, "does not take this value");
    row("ups.delay.shutdown", "soon", CommandOutcome::Refused, "does not take this value");
    row("input.sensitivity", "much", CommandOutcome::Refused, "does not take this value");
    row("ups.id", "much too long", CommandOutcome::Refused, "too long");
    row("ups.load", "1", CommandOutcome::Refused, "does not let this be set");
    row("no.such", "1", CommandOutcome::Refused, "no such setting");
    row("ups.id", "", CommandOutcome::Refused, "cannot be asked");
}

void NutSessionTest::settings()
{
    QFETCH(QString, variable);
    QFETCH(QString, value);
    QFETCH(CommandOutcome, outcome);
    QFETCH(QString, words);
    Site site;
    QVERIFY2(site.ready, qPrintable(site.server.problem()));
    Ending ending;
    site.session->set(text("demo"), variable, value, ending.done());
    QTRY_COMPARE(ending.count, 1);
    QCOMPARE(ending.outcome, outcome);
    QVERIFY2(words.isEmpty() ? ending.text.isEmpty() : ending.text.contains(words),
             qPrintable(ending.text));
    QCOMPARE(site.server.handed().size(), outcome == CommandOutcome::Done ? 1 : 0);
}

void NutSessionTest::users_data()
{
    QTest::addColumn<QString>("user");
    QTest::addColumn<QString>("password");
    QTest::addColumn<CommandOutcome>("outcome");
    QTest::newRow("right") << "oper"
                           << "pass \"word" << CommandOutcome::Done;
    QTest::newRow("wrong password") << "oper"
                                    << "x" << CommandOutcome::Refused;
    QTest::newRow("wrong user") << "nobody"
                                << "x" << CommandOutcome::Refused;
}

/// The probe gives the answer at once, and has no effect.
void NutSessionTest::users()
{
    QFETCH(QString, user);
    QFETCH(QString, password);
    QFETCH(CommandOutcome, outcome);
    Site site(user.toUtf8().constData(), password.toUtf8().constData());
    QVERIFY2(site.ready, qPrintable(site.server.problem()));
    Ending probe;
    site.session->probe(text("demo"), probe.done());
    QTRY_COMPARE(probe.count, 1);
    QCOMPARE(probe.outcome, outcome);
    QVERIFY(site.server.handed().isEmpty());
    Ending command;
    site.session->run(text("demo"), text("beeper.enable"), QString(), command.done());
    QTRY_COMPARE(command.count, 1);
    QCOMPARE(command.outcome, outcome);
    if (outcome == CommandOutcome::Refused)
        QVERIFY2(command.text.contains(text("password or rights are wrong")),
                 qPrintable(command.text));
}

void NutSessionTest::aRightMayBeMissing()
{
    Site site("beeper", "b");
    QVERIFY2(site.ready, qPrintable(site.server.problem()));
    Ending allowed;
    Ending denied;
    site.session->run(text("demo"), text("beeper.enable"), QString(), allowed.done());
    site.session->run(text("demo"), text("load.off"), QString(), denied.done());
    QTRY_VERIFY(allowed.count == 1 && denied.count == 1);
    QCOMPARE(allowed.outcome, CommandOutcome::Done);
    QCOMPARE(denied.outcome, CommandOutcome::Refused);
    QCOMPARE(site.server.handed().size(), 1);
}

void NutSessionTest::noUser()
{
    NutSession session({text("127.0.0.1"), 9}, NutTls());
    Ending ending;
    session.run(text("demo"), text("load.off"), QString(), ending.done());
    QCOMPARE(ending.count, 0); // never from within
    QTRY_COMPARE(ending.count, 1);
    QCOMPARE(ending.outcome, CommandOutcome::Refused);
    QVERIFY(!session.setUser(text("oper"), text("a\nFSD demo")));
    QVERIFY(!session.setUser(QString(), text("x")));
    QVERIFY(!session.hasUser());
}

void NutSessionTest::noConfirmation()
{
    NutSessionTimes times;
    times.confirmation = 1500;
    Site site("oper", "pass \"word", times);
    QVERIFY2(site.ready, qPrintable(site.server.problem()));
    Ending ending;
    QElapsedTimer clock;
    clock.start();
    site.session->run(text("demo"), text("calibrate.start"), QString(), ending.done());
    QTRY_COMPARE(ending.count, 1);
    QVERIFY(clock.elapsed() >= 1400);
    QCOMPARE(ending.outcome, CommandOutcome::Unconfirmed);
    QCOMPARE(ending.text, text("the UPS has not answered within 1.5 s"));
    QCOMPARE(NutSessionTimes().confirmation, 10000);
}

void NutSessionTest::hostileTexts_data()
{
    QTest::addColumn<QString>("command");
    QTest::addColumn<QString>("value");
    QTest::newRow("a second line") << "load.off\nFSD demo"
                                   << "";
    QTest::newRow("a second word") << "load.off demo"
                                   << "";
    QTest::newRow("a line in the value") << "load.off"
                                         << "1\nFSD demo";
    QTest::newRow("empty") << ""
                           << "";
    QTest::newRow("long") << QString(200, QLatin1Char('x')) << "";
}

void NutSessionTest::hostileTexts()
{
    QFETCH(QString, command);
    QFETCH(QString, value);
    FakeNutServer server;
    NutSession session(server.address().server(), NutTls());
    QVERIFY(session.setUser(text("u"), text("p")));
    Ending ending;
    session.run(text("demo"), command, value, ending.done());
    QTRY_COMPARE(ending.count, 1);
    QCOMPARE(ending.outcome, CommandOutcome::Refused);
    QVERIFY(server.asked.isEmpty());
}

/// Whatever is asked for, the word never goes out.
void NutSessionTest::neverForcesAShutdown()
{
    FakeNutServer server;
    server.onLine = [](QTcpSocket *socket, const QByteArray &) { socket->write("OK\n"); };
    NutSession session(server.address().server(), NutTls());
    QVERIFY(session.setUser(text("u"), text("p")));
    Ending ending;
    session.run(text("demo"), text("FSD"), QString(), ending.done());
    QTRY_COMPARE(ending.count, 1);
    for (const QByteArray &line : std::as_const(server.asked))
        QVERIFY(!line.startsWith("FSD"));
}

void NutSessionTest::driverGone()
{
    Site site;
    QVERIFY2(site.ready, qPrintable(site.server.problem()));
    QVERIFY(site.server.killDriver());
    Ending ending;
    site.session->run(text("demo"), text("beeper.enable"), QString(), ending.done());
    QTRY_COMPARE(ending.count, 1);
    QCOMPARE(ending.outcome, CommandOutcome::Refused);
    QVERIFY2(ending.text.contains(text("not running")), qPrintable(ending.text));
}

void NutSessionTest::serverGone()
{
    Site site;
    QVERIFY2(site.ready, qPrintable(site.server.problem()));
    Ending waiting;
    site.session->run(text("demo"), text("calibrate.start"), QString(), waiting.done());
    QTRY_COMPARE(site.server.handed().size(), 1);
    QVERIFY(site.server.killServer());
    QTRY_COMPARE(waiting.count, 1);
    QCOMPARE(waiting.outcome, CommandOutcome::Unconfirmed);
    Ending late;
    site.session->run(text("demo"), text("beeper.enable"), QString(), late.done());
    QTRY_COMPARE(late.count, 1);
    QCOMPARE(late.outcome, CommandOutcome::Refused);
    QCOMPARE(late.text, text("not sent: connection refused"));
}

void NutSessionTest::oldServerTracksNothing()
{
    FakeNutServer server;
    server.onLine = [](QTcpSocket *socket, const QByteArray &line) {
        socket->write(line == "SET TRACKING ON" ? "ERR UNKNOWN-COMMAND\n" : "OK\n");
    };
    NutSession session(server.address().server(), NutTls());
    QVERIFY(session.setUser(text("u"), text("p")));
    Ending ending;
    session.run(text("demo"), text("load.off"), QString(), ending.done());
    QTRY_COMPARE(ending.count, 1);
    QCOMPARE(ending.outcome, CommandOutcome::Unconfirmed);
    QCOMPARE(server.asked, (QByteArrayList{"USERNAME \"u\"", "PASSWORD \"p\"", "SET TRACKING ON",
                                           "INSTCMD demo load.off"}));
}

void NutSessionTest::takesLeaveWhenIdle()
{
    NutSessionTimes times;
    times.idle = 50;
    Site site("oper", "pass \"word", times);
    QVERIFY2(site.ready, qPrintable(site.server.problem()));
    for (int round = 0; round < 2; ++round) {
        Ending ending;
        site.session->probe(text("demo"), ending.done());
        QTRY_COMPARE(ending.count, 1);
        QCOMPARE(ending.outcome, CommandOutcome::Done);
        QTest::qWait(150);
    }
}

void NutSessionTest::anotherUser()
{
    Site site("oper", "wrong");
    QVERIFY2(site.ready, qPrintable(site.server.problem()));
    Ending wrong;
    site.session->probe(text("demo"), wrong.done());
    QTRY_COMPARE(wrong.count, 1);
    QCOMPARE(wrong.outcome, CommandOutcome::Refused);
    QVERIFY(site.session->setUser(text("oper"), text("pass \"word")));
    Ending right;
    site.session->probe(text("demo"), right.done());
    QTRY_COMPARE(right.count, 1);
    QCOMPARE(right.outcome, CommandOutcome::Done);
}

void NutSessionTest::refusedUserGivesWayToTheFormer()
{
    Site site;
    QVERIFY2(site.ready, qPrintable(site.server.problem()));
    NutFeed feed({text("demo"), text("127.0.0.1"), site.server.port()});
    feed.start();
    QVector<CommandOutcome> checked;
    connect(&feed, &UpsFeed::userChecked, this,
            [&](CommandOutcome outcome) { checked.append(outcome); });
    const auto logsIn = [&](const char *user, const char *password) {
        const auto before = checked.size();
        feed.logIn(text(user), text(password));
        return QTest::qWaitFor([&] { return checked.size() > before; }, 30000);
    };
    // There is none at first.
    QVERIFY(logsIn("oper", "x"));
    QCOMPARE(checked.last(), CommandOutcome::Refused);
    QVERIFY(feed.user().isEmpty());
    QVERIFY(logsIn("oper", "pass \"word"));
    QCOMPARE(checked.last(), CommandOutcome::Done);
    QCOMPARE(feed.user(), text("oper"));
    for (const char *user : {"oper", "other"}) {
        QVERIFY(logsIn(user, "x"));
        QCOMPARE(checked.last(), CommandOutcome::Refused);
        QCOMPARE(feed.user(), text("oper"));
    }
    // Of two that are tried at once neither is kept.
    feed.logIn(text("first"), text("x"));
    QVERIFY(logsIn("second", "x"));
    QTRY_COMPARE(feed.user(), text("oper"));
    QVector<CommandResult> ended;
    connect(&feed, &UpsFeed::commandFinished, this,
            [&](const CommandResult &result) { ended.append(result); });
    feed.run(text("beeper.disable"), QString());
    QTRY_COMPARE(ended.size(), 1);
    QCOMPARE(ended.last().user, text("oper"));
    QCOMPARE(ended.last().outcome, CommandOutcome::Done);
    feed.logOut();
    QVERIFY(feed.user().isEmpty());
    QVERIFY(logsIn("other", "x"));
    QVERIFY(feed.user().isEmpty());
}

void NutSessionTest::offersWhatTheUpsHas()
{
    Site site;
    QVERIFY2(site.ready, qPrintable(site.server.problem()));
    NutFeed feed({text("demo"), text("127.0.0.1"), site.server.port()});
    Offer offer;
    int offers = 0;
    connect(&feed, &UpsFeed::offerReady, this, [&](const Offer &one) {
        offer = one;
        ++offers;
    });
    feed.askForOffer();
    feed.start();
    QTRY_COMPARE(offers, 1);
    QStringList names;
    for (const OfferedCommand &command : std::as_const(offer.commands)) {
        names += command.name;
        if (command.name == text("load.off"))
            QCOMPARE(command.description, text("Turn off the load immediately"));
    }
    QCOMPARE(names.size(), 12);
    QVERIFY(names.contains(text("beeper.disable")));
    QCOMPARE(offer.settings.size(), 5);
    for (const OfferedSetting &setting : std::as_const(offer.settings)) {
        if (setting.name == text("ups.delay.shutdown")) {
            QVERIFY(setting.isNumber);
            QCOMPARE(setting.ranges.size(), 1);
            QCOMPARE(setting.ranges.first().from, 10.0);
            QCOMPARE(setting.ranges.first().to, 600.0);
            QCOMPARE(setting.value, text("20"));
            QVERIFY(!setting.description.isEmpty());
        } else if (setting.name == text("input.sensitivity")) {
            QCOMPARE(setting.choices, (QStringList{text("low"), text("medium"), text("high")}));
        } else if (setting.name == text("ups.id")) {
            QCOMPARE(setting.longest, 8);
            QVERIFY(!setting.isNumber);
        }
    }
    // A command shows in the feed.
    SnapshotLog log(&feed);
    feed.logIn(text("oper"), text("pass \"word"));
    CommandResult result;
    int results = 0;
    connect(&feed, &UpsFeed::commandFinished, this, [&](const CommandResult &one) {
        result = one;
        ++results;
    });
    feed.run(text("load.off"), QString());
    QTRY_COMPARE(results, 1);
    QCOMPARE(result.outcome, CommandOutcome::Done);
    QCOMPARE(result.user, text("oper"));
    QCOMPARE(result.name, text("load.off"));
    QTRY_VERIFY(log.last().tokens.testFlag(StatusToken::Off));
}

void NutSessionTest::offerComesBackWithTheUps()
{
    Site site;
    QVERIFY2(site.ready, qPrintable(site.server.problem()));
    NutFeed feed({text("demo"), text("127.0.0.1"), site.server.port()});
    int offers = 0;
    connect(&feed, &UpsFeed::offerReady, this, [&](const Offer &one) {
        QCOMPARE(one.commands.size(), 12);
        ++offers;
    });
    SnapshotLog log(&feed);
    feed.start();
    QTRY_VERIFY(!log.last().isLost() && !log.isEmpty());
    feed.askForOffer();
    QTRY_COMPARE(offers, 1);
    QVERIFY(site.server.killServer());
    QTRY_VERIFY(log.last().isLost());
    QVERIFY(site.server.startServer());
    QTRY_COMPARE(offers, 2);
}

void NutSessionTest::overTls_data()
{
    QTest::addColumn<QString>("kind");
    QTest::addColumn<bool>("trusted");
    QTest::addColumn<QString>("reason");
    QTest::newRow("right") << "right" << true << "";
    QTest::newRow("another name") << "wrong" << true << "is not for localhost";
    QTest::newRow("expired") << "expired" << true << "has expired";
    QTest::newRow("another authority") << "right" << false << "not trusted";
    QTest::newRow("no TLS") << "" << true << "offers none";
}

/// The real server with its certificates in a database of its own.
void NutSessionTest::overTls()
{
    QFETCH(QString, kind);
    QFETCH(bool, trusted);
    QFETCH(QString, reason);
    static Certificates certificates;
    QVERIFY2(certificates.problem().isEmpty(), qPrintable(certificates.problem()));
    NutServer server;
    server.useDriver(QStringLiteral(KIV_UPS_DRIVER));
    QVERIFY(server.writeUsers(::users));
    if (!kind.isEmpty())
        QVERIFY2(server.useTls(certificates.bundle(kind), certificates.authority()),
                 qPrintable(server.problem()));
    QVERIFY2(server.start(), qPrintable(server.problem()));
    QFile authority(trusted ? certificates.authority() : certificates.otherAuthority());
    QVERIFY(authority.open(QIODevice::ReadOnly));
    NutTls tls;
    tls.required = true;
    tls.authorities = QSslCertificate::fromData(authority.readAll(), QSsl::Pem);
    NutServerFeed link({text("localhost"), server.port()}, tls);
    NutFeed feed(&link, text("demo"));
    SnapshotLog log(&feed);
    feed.start();
    feed.logIn(text("oper"), text("pass \"word"));
    CommandResult result;
    int results = 0;
    connect(&feed, &UpsFeed::commandFinished, this, [&](const CommandResult &one) {
        result = one;
        ++results;
    });
    feed.run(text("beeper.disable"), QString());
    QTRY_COMPARE(results, 1);
    if (reason.isEmpty()) {
        QVERIFY2(result.outcome == CommandOutcome::Done, qPrintable(result.text));
        QTRY_VERIFY(log.last().beeperEnabled == std::optional<bool>(false));
        return;
    }
    QCOMPARE(result.outcome, CommandOutcome::Refused);
    QVERIFY2(result.text.contains(reason), qPrintable(result.text));
    QTRY_VERIFY(log.last().reason.contains(reason));
    QVERIFY(server.handed().isEmpty());
    // No second try in the clear.
    for (int i = 0; i < log.count(); ++i)
        QVERIFY(log.at(i).isLost());
}

/// Off this machine a password goes out under TLS alone, whatever reads in the clear.
void NutSessionTest::passwordsNeedTls()
{
    NutTls tls;
    QVERIFY(!tls.withPassword({text("127.0.0.1"), 1}).required);
    QVERIFY(!tls.withPassword({text("::1"), 1}).required);
    QVERIFY(!tls.withPassword({text("localhost"), 1}).required);
    QVERIFY(tls.withPassword({text("192.0.2.1"), 1}).required);
    QVERIFY(tls.withPassword({text("localhost.example"), 1}).required);
    tls.requiredForPasswords = false;
    QVERIFY(!tls.withPassword({text("192.0.2.1"), 1}).required);
    tls.required = true;
    QVERIFY(tls.withPassword({text("127.0.0.1"), 1}).required);
}

void NutSessionTest::passwordInNoText()
{
    FakeNutServer server;
    // One that throws everything back.
    server.onLine = [](QTcpSocket *socket, const QByteArray &line) {
        socket->write("ERR " + line.split(' ').last() + '\n');
    };
    NutSession session(server.address().server(), NutTls());
    QVERIFY(session.setUser(text("u"), text("hunter2")));
    Ending ending;
    session.run(text("demo"), text("load.off"), QString(), ending.done());
    QTRY_COMPARE(ending.count, 1);
    QVERIFY2(!ending.text.contains(text("hunter2")), qPrintable(ending.text));
    server.onLine = [](QTcpSocket *socket, const QByteArray &line) {
        socket->write(line.startsWith("PASSWORD") ? "ERR \"hunter2\"\n" : "OK\n");
    };
    session.run(text("demo"), text("load.off"), QString(), ending.done());
    QTRY_COMPARE(ending.count, 2);
    QVERIFY2(!ending.text.contains(text("hunter2")), qPrintable(ending.text));
}

KIV_TEST_MAIN(NutSessionTest)

#include "tst_nutsession.moc"
