// SPDX-License-Identifier: LicenseRef-all-rights-reserved

#include "feed/scenario.h"
#include "notifier.h"

#include "testmain.h"
#include "widgetprobe.h"

#include <QtCore/QProcess>
#include <QtDBus/QDBusConnection>
#include <QtDBus/QDBusMessage>
#include <QtDBus/QDBusPendingCall>

namespace {

/// A call of Notify as the service got it.
struct Announcement
{
    QString program;
    uint replaces;
    QString icon;
    QString summary;
    QString body;
    int urgency;
};

} // namespace

/// What a desktop has for org.freedesktop.Notifications.
class NotificationService : public QObject
{
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.freedesktop.Notifications")

public:
    QVector<Announcement> heard;

public Q_SLOTS:
    uint Notify(const QString &program, uint replaces, const QString &icon, const QString &summary,
                const QString &body, const QStringList &actions, const QVariantMap &hints,
                int timeout)
    {
        Q_UNUSED(actions)
        Q_UNUSED(timeout)
        heard.append({program, replaces, icon, summary, body,
                      hints.value(QStringLiteral("urgency"), -1).toInt()});
        return replaces ? replaces : 40 + uint(heard.size());
    }
    /// Answered after the calls before it; the bus's own questions are not.
    void Mark()
    {}
};

class NotifierTest : public WidgetTest
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void cleanupTestCase();
    void announcesChangesOnly();
    void replacesItsOwnAnnouncement();
    void canBeSwitchedOff();
    void textsArePlain();
    void textsOfTheUpsAreWhole();
    void lostServerIsOneAnnouncement();
    void missedServerIsAnnounced();
    void startIsNoNews();

private:
    /// Lets calls that are under way arrive.
    void settle() const;

    QProcess bus;
    NotificationService service;
};

static Snapshot during(Scenario::Phase phase, double secondsIn = 2.0)
{
    return Scenario::snapshotAt(Scenario::startOf(phase) + secondsIn);
}

void NotifierTest::initTestCase()
{
    // A bus of its own, before anything asks for the session's.
    bus.start(QStringLiteral("dbus-daemon"),
              {QStringLiteral("--session"), QStringLiteral("--nofork"),
               QStringLiteral("--print-address")});
    QVERIFY2(bus.waitForStarted(), qPrintable(bus.errorString()));
    QByteArray address;
    while (!address.contains('\n') && bus.waitForReadyRead(30000))
        address += bus.readAllStandardOutput();
    QVERIFY(address.contains('\n'));
    qputenv("DBUS_SESSION_BUS_ADDRESS", address.trimmed());
    QDBusConnection connection = QDBusConnection::connectToBus(
        QString::fromLatin1(address.trimmed()), QStringLiteral("service"));
    QVERIFY(connection.isConnected());
    QVERIFY(connection.registerObject(QStringLiteral("/org/freedesktop/Notifications"), &service,
                                      QDBusConnection::ExportAllSlots));
    QVERIFY(connection.registerService(QStringLiteral("org.freedesktop.Notifications")));
}

void NotifierTest::cleanupTestCase()
{
    QDBusConnection::disconnectFromBus(QStringLiteral("service"));
    bus.terminate();
    QVERIFY(bus.waitForFinished());
}

void NotifierTest::settle() const
{
    const QDBusMessage marker = QDBusMessage::createMethodCall(
        QStringLiteral("org.freedesktop.Notifications"),
        QStringLiteral("/org/freedesktop/Notifications"),
        QStringLiteral("org.freedesktop.Notifications"), QStringLiteral("Mark"));
    const QDBusPendingCall mark = QDBusConnection::sessionBus().asyncCall(marker);
    QTRY_VERIFY(mark.isFinished());
    QCoreApplication::processEvents();
}

void NotifierTest::announcesChangesOnly()
{
    service.heard.clear();
    SiteModel site;
    const Notifier notifier(&site);
    UpsModel *ups = site.add(QStringLiteral("demo"));
    // In order from the start: no news.
    ups->take(during(Scenario::Phase::Normal));
    settle();
    QCOMPARE(service.heard.size(), 0);
    ups->take(during(Scenario::Phase::OnBattery));
    settle();
    QCOMPARE(service.heard.size(), 1);
    const Announcement &first = service.heard.constFirst();
    QVERIFY2(first.summary.contains(ups->headline().text), qPrintable(first.summary));
    QVERIFY2(first.summary.startsWith(ups->snapshot().name), qPrintable(first.summary));
    QVERIFY2(first.body.contains(ups->timeLeft()), qPrintable(first.body));
    QCOMPARE(first.urgency, 1);
    QCOMPARE(first.icon, QStringLiteral("dialog-warning"));
    // The same state with other numbers is no change.
    for (int i = 0; i < 5; ++i)
        ups->take(during(Scenario::Phase::OnBattery, 3.0 + i));
    settle();
    QCOMPARE(service.heard.size(), 1);
    ups->take(during(Scenario::Phase::Normal));
    settle();
    QCOMPARE(service.heard.size(), 2);
    QCOMPARE(service.heard.constLast().urgency, 0);
    ups->take(Snapshot::lost(QStringLiteral("demo"), QStringLiteral("no answer")));
    settle();
    QCOMPARE(service.heard.size(), 3);
    QCOMPARE(service.heard.constLast().urgency, 2);
}

void NotifierTest::replacesItsOwnAnnouncement()
{
    service.heard.clear();
    SiteModel site;
    const Notifier notifier(&site);
    UpsModel *ups = site.add(QStringLiteral("demo"));
    ups->take(during(Scenario::Phase::OnBattery));
    settle();
    ups->take(during(Scenario::Phase::Locked));
    settle();
    QCOMPARE(service.heard.size(), 2);
    QCOMPARE(service.heard.at(0).replaces, 0U);
    QCOMPARE(service.heard.at(1).replaces, 41U);
}

void NotifierTest::canBeSwitchedOff()
{
    service.heard.clear();
    SiteModel site;
    Notifier notifier(&site);
    UpsModel *ups = site.add(QStringLiteral("demo"));
    notifier.setEnabled(false);
    ups->take(during(Scenario::Phase::OnBattery));
    settle();
    // What happened meanwhile is not announced later.
    notifier.setEnabled(true);
    ups->take(during(Scenario::Phase::OnBattery, 4.0));
    settle();
    QCOMPARE(service.heard.size(), 0);
    ups->take(during(Scenario::Phase::Locked));
    settle();
    QCOMPARE(service.heard.size(), 1);
}

void NotifierTest::textsArePlain()
{
    service.heard.clear();
    SiteModel site;
    const Notifier notifier(&site);
    UpsModel *ups = site.add(QStringLiteral("demo"));
    Snapshot snapshot = during(Scenario::Phase::OnBattery);
    snapshot.alarmTexts = QStringList(QStringLiteral("<b>fan</b> & filter"));
    snapshot.alarms = snapshot.alarmTexts;
    ups->take(snapshot);
    settle();
    QCOMPARE(service.heard.size(), 1);
    QVERIFY2(!service.heard.constFirst().body.contains(QLatin1Char('<')),
             qPrintable(service.heard.constFirst().body));
}

/// Each in a line of its own, whatever words and signs it has, and also if the headline has its
/// words by chance.
void NotifierTest::textsOfTheUpsAreWhole()
{
    const QStringList alarms = {
        QStringLiteral("Fan 2 failed since boot \u2014 check it since Monday!"),
        QStringLiteral("load"), QStringLiteral("On battery: since 12:00  \u00b7  test")};
    service.heard.clear();
    SiteModel site;
    const Notifier notifier(&site);
    UpsModel *ups = site.add(QStringLiteral("demo"));
    Snapshot snapshot = during(Scenario::Phase::OnBattery);
    snapshot.tokens |= StatusToken::Alarm;
    snapshot.alarmTexts = alarms;
    ups->take(snapshot);
    settle();
    QCOMPARE(service.heard.size(), 1);
    const QString body = service.heard.constFirst().body;
    const QStringList lines = body.split(QLatin1Char('\n'));
    for (const QString &alarm : alarms)
        QVERIFY2(lines.contains(alarm), qPrintable(body));
    // Since when is said once, in a line of its own.
    const QString begin = ups->worst()->since.toLocalTime().toString(QStringLiteral("HH:mm:ss"));
    QCOMPARE(lines.filter(begin), QStringList{QStringLiteral("Since ") + begin});
}

void NotifierTest::lostServerIsOneAnnouncement()
{
    service.heard.clear();
    SiteModel site;
    const Notifier notifier(&site);
    const auto hearAll = [&site](Snapshot snapshot, bool isLost) {
        snapshot.server = QStringLiteral("Prometheus hall");
        snapshot.isServerLost = isLost;
        for (int i = 0; i < site.count(); ++i)
            site.at(i)->take(snapshot);
    };
    for (int i = 0; i < 50; ++i)
        site.add(QStringLiteral("ups%1").arg(i));
    hearAll(during(Scenario::Phase::Normal), false);
    settle();
    QCOMPARE(service.heard.size(), 0);
    hearAll(Snapshot::lost(QString(), QStringLiteral("it is <b>gone</b>")), true);
    QTRY_COMPARE(service.heard.size(), 1);
    QCOMPARE(service.heard.at(0).summary, QStringLiteral("Prometheus hall: No communication"));
    QCOMPARE(service.heard.at(0).body, QStringLiteral("50 UPSes\nit is &lt;b&gt;gone&lt;/b&gt;"));
    QCOMPARE(service.heard.at(0).urgency, 2);
    settle();
    hearAll(during(Scenario::Phase::Normal), false);
    QTRY_COMPARE(service.heard.size(), 2);
    QCOMPARE(service.heard.at(1).summary, QStringLiteral("Prometheus hall: Communication is back"));
    QCOMPARE(service.heard.at(1).replaces, 41U);
    settle();
    QCOMPARE(service.heard.size(), 2);
}

/// A server that is not reached from the start, and then is.
void NotifierTest::missedServerIsAnnounced()
{
    service.heard.clear();
    SiteModel site;
    const Notifier notifier(&site);
    const QString name = QStringLiteral("host:3493");
    site.addServer(name, QStringLiteral("rack-a (host:3493)"));
    site.meetServer(QStringLiteral("other:3493"));
    settle();
    QCOMPARE(service.heard.size(), 0);
    site.missServer(name, QStringLiteral("it is <b>gone</b>"));
    QTRY_COMPARE(service.heard.size(), 1);
    QCOMPARE(service.heard.at(0).summary, QStringLiteral("rack-a (host:3493): No communication"));
    QCOMPARE(service.heard.at(0).body, QStringLiteral("it is &lt;b&gt;gone&lt;/b&gt;"));
    QCOMPARE(service.heard.at(0).urgency, 2);
    site.missServer(name, QStringLiteral("again"));
    settle();
    QCOMPARE(service.heard.size(), 1);
    site.meetServer(name);
    QTRY_COMPARE(service.heard.size(), 2);
    QCOMPARE(service.heard.at(1).summary,
             QStringLiteral("rack-a (host:3493): Communication is back"));
    QCOMPARE(service.heard.at(1).body, QString());
}

/// At the start nothing is known yet; a UPS that stays silent is announced after a while.
void NotifierTest::startIsNoNews()
{
    service.heard.clear();
    SiteModel site;
    Notifier notifier(&site);
    const auto connecting = Snapshot::lost(QString(), QStringLiteral("connecting"));
    for (int i = 0; i < 20; ++i)
        site.add(QStringLiteral("ups%1").arg(i))->take(connecting);
    settle();
    for (int i = 1; i < 20; ++i)
        site.at(i)->take(during(i == 1 ? Scenario::Phase::OnBattery : Scenario::Phase::Normal));
    settle();
    QCOMPARE(service.heard.size(), 1);
    QVERIFY2(service.heard.at(0).summary.contains(site.at(1)->headline().text),
             qPrintable(service.heard.at(0).summary));

    Notifier impatient(&site);
    impatient.setPatience(1);
    const Snapshot refused = Snapshot::lost(QString(), QStringLiteral("connection refused"));
    site.at(0)->take(refused);
    QTRY_COMPARE(service.heard.size(), 2);
    QCOMPARE(service.heard.at(1).urgency, 2);
    QVERIFY2(service.heard.at(1).body.contains(QStringLiteral("refused")),
             qPrintable(service.heard.at(1).body));
    // Once, however often it is tried.
    site.at(0)->take(connecting);
    site.at(0)->take(refused);
    settle();
    QCOMPARE(service.heard.size(), 2);
    site.at(0)->take(during(Scenario::Phase::Normal));
    QTRY_COMPARE(service.heard.size(), 3);
    QCOMPARE(service.heard.at(2).urgency, 0);
}

KIV_TEST_MAIN(NotifierTest)

#include "tst_notifier.moc"
