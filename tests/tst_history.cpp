// SPDX-License-Identifier: LicenseRef-all-rights-reserved

#include "nutfeed.h"

#include "nutserver.h"
#include "testmain.h"
#include "watchedsite.h"
#include "widgetprobe.h"

#include <QtCore/QDir>
#include <QtCore/QProcess>
#include <QtCore/QRandomGenerator>
#include <QtCore/QTemporaryDir>
#include <QtSql/QSqlDatabase>
#include <QtSql/QSqlQuery>

#include <algorithm>
#include <cmath>

namespace {

constexpr qint64 start = WatchedSite::start;

Snapshot snapshotWith(StatusTokens tokens, double load = 40.0)
{
    Snapshot snapshot;
    snapshot.link = Snapshot::Link::Ok;
    snapshot.name = QStringLiteral("demo");
    snapshot.tokens = tokens;
    snapshot.measure(Quantity::Load).value = load;
    snapshot.measure(Quantity::InputVoltage).value = tokens & StatusToken::OnBattery ? 0.0 : 230.0;
    return snapshot;
}

/// Events as "severity kind text value xcount present|ended", the earliest first.
QStringList linesOf(QVector<Event> events)
{
    std::sort(events.begin(), events.end(),
              [](const Event &a, const Event &b) { return a.id < b.id; });
    QStringList lines;
    for (const Event &event : events)
        lines.append(QStringLiteral("%1 %2 %3 [%4] x%5 %6")
                         .arg(severityNameOf(event), nameOf(event.kind), event.text, event.value)
                         .arg(event.count)
                         .arg(event.isPresent() ? QStringLiteral("present")
                              : event.endSeen   ? QStringLiteral("ended")
                                                : QStringLiteral("ended unseen")));
    return lines;
}

/// A site with the events of its history in lines.
struct Watch : WatchedSite
{
    using WatchedSite::WatchedSite;

    QStringList lines()
    {
        return linesOf(events());
    }
};

} // namespace

#define VERIFY_SERVER(step) QVERIFY2(server.step, qPrintable(server.problem()))

class HistoryTest : public WidgetTest
{
    Q_OBJECT

private Q_SLOTS:
    void anOutage();
    void nothingHappensAtTheStart();
    void silenceAtTheStart();
    void lostCommunicationEndsNothing();
    void lostServerIsOneEvent();
    void missedServer();
    void lostServerOfEarlier();
    void whatStandsAtTheStartContinues();
    void whatEndedUnseen();
    void flickerIsOneEvent();
    void alarmsThatCountAreOneEvent();
    void whatContinuesKeepsItsText();
    void everNewAlarmsHaveABound();
    void flickeringAlarmsAreNotLeftOut();
    void severityGrows();
    void unknownState();
    void unwatchedUpsIsLeft();
    void commandsAreEvents_data();
    void commandsAreEvents();
    void acknowledging();
    void samplesOnChangeAndEachMinute();
    void gapsWhenNothingIsHeard();
    void clockJumps();
    void secondWindowReadsAndTakesOver();
    void goesOnWithoutAPlace();
    void movesIntoTheFileWhenItCan();
    void goesOnInMemoryAndBack();
    void saysThatItSetAFileAside();
    void damageInUseBeginsAnew();
    void exportsAndWrites();
    void killedFiftyTimes();
    void realOutage();
};

void HistoryTest::anOutage()
{
    Watch watch;
    watch.pass(snapshotWith(StatusToken::OnLine), 60);
    watch.pass(snapshotWith(StatusToken::OnBattery | StatusToken::Discharging), 60);
    const qint64 began = start + 65 * secondMsecs;
    watch.pass(snapshotWith(StatusToken::OnBattery | StatusToken::LowBattery), 30);
    QCOMPARE(watch.lines(),
             (QStringList{QStringLiteral("Warning State On battery [0 V] x1 present"),
                          QStringLiteral("Critical State Battery low [] x1 present")}));
    watch.pass(snapshotWith(StatusToken::OnLine | StatusToken::Charging), 60);
    const QVector<Event> events = watch.events();
    QCOMPARE(linesOf(events),
             (QStringList{QStringLiteral("Warning State On battery [0 V] x1 ended"),
                          QStringLiteral("Critical State Battery low [] x1 ended")}));
    const Event &outage =
        events.first().condition == QLatin1String("on-battery") ? events.first() : events.last();
    QCOMPARE(outage.begin, began);
    QCOMPARE(*outage.end, start + 155 * secondMsecs);
    QCOMPARE(outage.lasted, 90 * secondMsecs);
    const Trend trend = watch.trend({Quantity::InputVoltage}, {start, start + hourMsecs});
    QCOMPARE(trend.onBattery.size(), 1);
    QCOMPARE(trend.onBattery.first().from, began);
    QCOMPARE(trend.onBattery.first().to, start + 155 * secondMsecs);
}

void HistoryTest::nothingHappensAtTheStart()
{
    Watch watch;
    // Not reached yet, the driver not ready, then in order.
    watch.pass(Snapshot::lost(QStringLiteral("demo"), QStringLiteral("connecting")), 5);
    watch.pass(snapshotWith(StatusToken::Waiting), 5);
    watch.pass(snapshotWith(StatusToken::OnLine), 120);
    QCOMPARE(watch.lines(), QStringList());
}

void HistoryTest::silenceAtTheStart()
{
    Watch watch;
    watch.pass(Snapshot::lost(QStringLiteral("demo"), QStringLiteral("refused")), 60);
    QCOMPARE(
        watch.lines(),
        QStringList(
            QStringLiteral("No communication Communication No communication: refused [] x1 present")
                .replace(QLatin1String("Unknown"), nameOf(Severity::Unknown))));
    QCOMPARE(watch.events().first().begin, start + 5 * secondMsecs);
    watch.pass(snapshotWith(StatusToken::OnLine));
    QCOMPARE(watch.lines().size(), 1);
    QVERIFY(watch.lines().first().endsWith(QLatin1String("x1 ended")));
}

void HistoryTest::lostCommunicationEndsNothing()
{
    Watch watch;
    watch.pass(snapshotWith(StatusToken::OnLine | StatusToken::ReplaceBattery), 30);
    for (int i = 0; i < 3; ++i) {
        watch.pass(Snapshot::lost(QStringLiteral("demo"), QStringLiteral("stale")), 30);
        watch.pass(snapshotWith(StatusToken::Waiting), 5);
        watch.pass(snapshotWith(StatusToken::OnLine | StatusToken::ReplaceBattery), 300);
    }
    const QStringList lines = watch.lines();
    QCOMPARE(lines.size(), 4);
    QCOMPARE(lines.first(), QStringLiteral("Warning State Replace the battery [] x1 present"));
    for (int i = 1; i < 4; ++i)
        QVERIFY2(lines.at(i).contains(QLatin1String("Communication No communication: stale [] x1 "
                                                    "ended")),
                 qPrintable(lines.at(i)));
    // What is over after the silence is over.
    watch.pass(Snapshot::lost(QStringLiteral("demo"), QStringLiteral("stale")), 300);
    watch.pass(snapshotWith(StatusToken::OnLine), 5);
    QCOMPARE(watch.lines().first(),
             QStringLiteral("Warning State Replace the battery [] x1 ended"));
}

/// UPSes that are lost with their server make one event, which says how many they are.
void HistoryTest::lostServerIsOneEvent()
{
    Watch watch;
    QVector<UpsModel *> all{watch.ups};
    for (int i = 1; i < 20; ++i)
        all.append(watch.site.add(QStringLiteral("ups%1").arg(i)));
    const auto hear = [&](Snapshot snapshot, const QVector<UpsModel *> &upses,
                          bool isLost = false) {
        snapshot.server = QStringLiteral("Prometheus hall");
        snapshot.isServerLost = isLost;
        for (UpsModel *ups : upses)
            ups->take(snapshot);
        watch.time += 5 * secondMsecs;
    };
    const Snapshot refused = Snapshot::lost(QStringLiteral("demo"), QStringLiteral("refused"));
    hear(snapshotWith(StatusToken::OnLine), all);
    // One has an event of its own before.
    hear(Snapshot::lost(QStringLiteral("demo"), QStringLiteral("no exporter")), {all.first()});
    const qint64 began = watch.time;
    hear(refused, all, true);
    const QString own =
        QStringLiteral("No communication Communication No communication: no exporter [] x1 ");
    const QString server = QStringLiteral(
        "No communication Communication 20 UPSes without communication: refused [] x1 ");
    const QString present = QStringLiteral("present");
    const QString ended = QStringLiteral("ended");
    QCOMPARE(watch.lines(), QStringList({own + present, server + present}));
    hear(refused, all, true);
    QCOMPARE(watch.lines().size(), 2);
    // It ends as soon as all of them are heard; what happened meanwhile is theirs.
    hear(snapshotWith(StatusToken::OnLine), all.mid(1, 9));
    QCOMPARE(watch.lines(), QStringList({own + present, server + present}));
    hear(snapshotWith(StatusToken::OnBattery), all.mid(10));
    hear(snapshotWith(StatusToken::OnLine), {all.first()});
    const QVector<Event> events = watch.events();
    QCOMPARE(events.size(), 12);
    const QStringList lines = linesOf(events);
    // Nobody saw when, unless the history was open before.
    QVERIFY2(lines.at(0).startsWith(own + ended), qPrintable(lines.at(0)));
    QCOMPARE(lines.at(1), server + ended);
    for (const Event &event : events) {
        if (event.ups == QLatin1String("Prometheus hall"))
            QCOMPARE(event.begin, began);
        else if (event.condition != QLatin1String("no-communication"))
            QCOMPARE(event.text, QStringLiteral("On battery"));
    }
}

/// A server that is not reached from the start makes one event, which ends when it is.
void HistoryTest::missedServer()
{
    const QTemporaryDir directory;
    const QString name = QStringLiteral("Prometheus hall");
    const QString missed =
        QStringLiteral("No communication Communication Not reached: refused [] x1 ");
    {
        Watch watch(directory.path());
        QVERIFY(watch.waitFor(HistoryStatus::State::Kept));
        watch.site.meetServer(QStringLiteral("another:3493"));
        QVERIFY(watch.lines().isEmpty());
        const qint64 began = watch.time;
        watch.site.missServer(name, QStringLiteral("refused"));
        watch.site.missServer(name, QStringLiteral("again"));
        QCOMPARE(watch.lines(), QStringList(missed + QStringLiteral("present")));
        QCOMPARE(watch.events().first().begin, began);
        QCOMPARE(watch.events().first().ups, name);
        watch.time += minuteMsecs;
        watch.site.meetServer(name);
        watch.site.missServer(name, QStringLiteral("too late"));
        QCOMPARE(watch.lines(), QStringList(missed + QStringLiteral("ended")));
        QCOMPARE(watch.events().first().end, std::optional<qint64>(watch.time));
    }
    // In a later run it is another event; what it left present ends when the server answers at
    // once.
    {
        Watch watch(directory.path());
        QVERIFY(watch.waitFor(HistoryStatus::State::Kept));
        watch.time += hourMsecs;
        watch.site.missServer(name, QStringLiteral("refused"));
        QCOMPARE(watch.lines().last(), missed + QStringLiteral("present"));
    }
    Watch watch(directory.path());
    QVERIFY(watch.waitFor(HistoryStatus::State::Kept));
    watch.time += 2 * hourMsecs;
    watch.site.meetServer(name);
    QCOMPARE(watch.lines(), QStringList({missed + QStringLiteral("ended"),
                                         missed + QStringLiteral("ended unseen")}));
}

/// An event of a server from an earlier run ends when the server answers, or is not watched.
void HistoryTest::lostServerOfEarlier()
{
    const QTemporaryDir directory;
    Snapshot good = snapshotWith(StatusToken::OnLine);
    good.server = QStringLiteral("Prometheus hall");
    Snapshot lost = Snapshot::lost(QStringLiteral("demo"), QStringLiteral("refused"));
    lost.server = good.server;
    lost.isServerLost = true;
    {
        Watch watch(directory.path());
        QVERIFY(watch.waitFor(HistoryStatus::State::Kept));
        watch.pass(good);
        watch.pass(lost);
        QCOMPARE(watch.lines().size(), 1);
    }
    Watch watch(directory.path());
    QVERIFY(watch.waitFor(HistoryStatus::State::Kept));
    watch.time += 10 * minuteMsecs;
    QCOMPARE(watch.lines().value(0).section(QLatin1Char(' '), -1), QStringLiteral("present"));
    watch.pass(good);
    QCOMPARE(watch.lines(), QStringList(QStringLiteral(
                                "No communication Communication 1 UPS without communication: "
                                "refused [] x1 ended unseen")));
}

void HistoryTest::whatStandsAtTheStartContinues()
{
    const QTemporaryDir place;
    const QString directory = place.filePath(QStringLiteral("kivconsole"));
    {
        Watch watch(directory);
        watch.pass(snapshotWith(StatusToken::OnLine), 60);
        watch.pass(snapshotWith(StatusToken::OnBattery), 60);
        QCOMPARE(watch.lines().size(), 1);
    }
    Watch watch(directory);
    watch.time = start + hourMsecs;
    watch.pass(snapshotWith(StatusToken::OnBattery), 60);
    QCOMPARE(watch.lines(),
             QStringList(QStringLiteral("Warning State On battery [0 V] x1 present")));
    QCOMPARE(watch.events().first().begin, start + 65 * secondMsecs);
}

void HistoryTest::whatEndedUnseen()
{
    const QTemporaryDir place;
    const QString directory = place.filePath(QStringLiteral("kivconsole"));
    {
        Watch watch(directory);
        watch.pass(snapshotWith(StatusToken::OnBattery), 120);
    }
    Watch watch(directory);
    watch.time = start + dayMsecs;
    watch.pass(snapshotWith(StatusToken::OnLine), 60);
    QCOMPARE(watch.lines(),
             QStringList(QStringLiteral("Warning State On battery [0 V] x1 ended unseen")));
    // It lasted at least until the UPS was heard for the last time.
    QCOMPARE(*watch.events().first().end, start + 120 * secondMsecs);
}

void HistoryTest::flickerIsOneEvent()
{
    Watch watch;
    for (int i = 0; i < 40; ++i) {
        watch.pass(snapshotWith(StatusToken::OnLine), 10);
        watch.pass(snapshotWith(StatusToken::OnLine | StatusToken::Boosting), 10);
    }
    QCOMPARE(watch.lines(),
             QStringList(QStringLiteral("Warning State Input voltage low [230 V] x40 present")));
}

void HistoryTest::alarmsThatCountAreOneEvent()
{
    Watch watch;
    for (int left = 30; left > 0; --left) {
        Snapshot snapshot = snapshotWith(StatusToken::OnLine | StatusToken::Alarm);
        snapshot.alarmTexts =
            QStringList{QStringLiteral("Battery ends in %1 s").arg(left), QStringLiteral("Fan")};
        watch.pass(snapshot);
    }
    QCOMPARE(watch.lines(),
             (QStringList{QStringLiteral("Critical Alarm Battery ends in 30 s [] x1 present"),
                          QStringLiteral("Critical Alarm Fan [] x1 present")}));
}

void HistoryTest::whatContinuesKeepsItsText()
{
    const QTemporaryDir place;
    Snapshot snapshot = snapshotWith(StatusToken::OnLine | StatusToken::Alarm);
    const QString line = QStringLiteral("Critical Alarm Battery ends in 30 s [] x1 present");
    for (const char *text : {"Battery ends in 30 s", "Battery ends in 5 s"}) {
        Watch watch(place.filePath(QStringLiteral("kivconsole")));
        snapshot.alarmTexts = QStringList(QString::fromLatin1(text));
        watch.pass(snapshot);
        QCOMPARE(watch.lines(), QStringList(line));
    }
}

/// Texts of alarms are a server's to choose. Whatever it does, states are listed.
void HistoryTest::everNewAlarmsHaveABound()
{
    Watch watch;
    QVERIFY(watch.waitFor(HistoryStatus::State::Temporary));
    watch.pass(snapshotWith(StatusToken::OnLine));
    const auto alarms = [](int number, StatusTokens tokens) {
        Snapshot snapshot = snapshotWith(tokens | StatusToken::Alarm);
        // Numbers would be taken for one text that counts.
        for (int i = 0; i < 3; ++i) {
            QString text = QStringLiteral("Word ");
            for (int left = number * 3 + i + 1; left > 0; left /= 10)
                text += QLatin1Char(char('a' + left % 10));
            snapshot.alarmTexts += text;
        }
        return snapshot;
    };
    // Three new ones every five seconds, for 31 minutes: 1,110.
    int number = 0;
    for (; number < 360; ++number)
        watch.pass(alarms(number, StatusToken::OnLine));
    for (; number < 370; ++number)
        watch.pass(alarms(number, StatusToken::OnBattery));
    QVector<Event> events = watch.events();
    const auto listed = [&events](const QString &part) {
        return std::count_if(events.cbegin(), events.cend(),
                             [&part](const Event &event) { return event.text.contains(part); });
    };
    // 50 at once and 10 an hour, of which half an hour has passed.
    QCOMPARE(listed(QStringLiteral("Word")), 55);
    QCOMPARE(listed(QStringLiteral("not listed")), 1);
    QCOMPARE(listed(QStringLiteral("On battery")), 1);
    // Quiet again: the event says how many there were, and ends.
    watch.pass(snapshotWith(StatusToken::OnLine), 900);
    events = watch.events();
    const auto left = std::find_if(events.cbegin(), events.cend(), [](const Event &event) {
        return event.text.contains(QLatin1String("not listed"));
    });
    QVERIFY(left != events.cend());
    QVERIFY(!left->isPresent());
    QCOMPARE(left->text, QStringLiteral("1055 more alarms are not listed"));
    QCOMPARE(left->count, 1);
    for (const Event &event : std::as_const(events))
        QVERIFY2(!event.isPresent(), qPrintable(event.text));
    // Later ones are listed again.
    watch.pass(snapshotWith(StatusToken::OnLine), 3600, 60);
    Snapshot fan = snapshotWith(StatusToken::OnLine | StatusToken::Alarm);
    fan.alarmTexts = QStringList{QStringLiteral("Fan")};
    watch.pass(fan);
    QVERIFY(watch.lines().contains(QStringLiteral("Critical Alarm Fan [] x1 present")));
}

void HistoryTest::flickeringAlarmsAreNotLeftOut()
{
    Watch watch;
    QVERIFY(watch.waitFor(HistoryStatus::State::Temporary));
    Snapshot fan = snapshotWith(StatusToken::OnLine | StatusToken::Alarm);
    fan.alarmTexts = QStringList{QStringLiteral("Fan")};
    for (int i = 0; i < 100; ++i) {
        watch.pass(snapshotWith(StatusToken::OnLine));
        watch.pass(fan);
    }
    QCOMPARE(watch.lines(), QStringList(QStringLiteral("Critical Alarm Fan [] x100 present")));
}

void HistoryTest::severityGrows()
{
    Watch watch;
    watch.pass(snapshotWith(StatusToken::OnLine | StatusToken::LowBattery), 30);
    QCOMPARE(watch.lines(), QStringList(QStringLiteral("Warning State Battery low [] x1 present")));
    watch.pass(snapshotWith(StatusToken::OnBattery | StatusToken::LowBattery), 30);
    QVERIFY(watch.lines().contains(QStringLiteral("Critical State Battery low [] x1 present")));
    QCOMPARE(watch.lines().size(), 2);
}

void HistoryTest::unknownState()
{
    Watch watch;
    watch.pass(snapshotWith(StatusToken::OnLine), 30);
    watch.pass(snapshotWith(StatusToken::Charging), 30);
    QCOMPARE(watch.lines().size(), 1);
    QVERIFY(watch.lines().first().endsWith(QLatin1String("State State unknown [] x1 present")));
    watch.pass(snapshotWith(StatusToken::OnLine), 30);
    QVERIFY(watch.lines().first().endsWith(QLatin1String("ended")));
}

void HistoryTest::unwatchedUpsIsLeft()
{
    const QTemporaryDir place;
    const QString directory = place.filePath(QStringLiteral("kivconsole"));
    {
        Watch watch(directory);
        watch.pass(snapshotWith(StatusToken::OnBattery), 60);
        QCOMPARE(watch.lines().size(), 1);
    }
    History history(directory);
    history.leaveOthers({QStringLiteral("another")});
    QVector<Event> changed;
    connect(&history, &History::eventsChanged, this,
            [&](const QVector<Event> &events) { changed = events; });
    QTRY_COMPARE(changed.size(), 1);
    QVERIFY(!changed.first().isPresent());
    QVERIFY(!changed.first().endSeen);
}

void HistoryTest::commandsAreEvents_data()
{
    QTest::addColumn<int>("outcome");
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("line");
    QTest::newRow("done") << int(CommandOutcome::Done) << QString()
                          << "Information Command Load off: done [3] x1 ended";
    QTest::newRow("refused") << int(CommandOutcome::Refused) << "no right"
                             << "Warning Command Load off: refused, no right [3] x1 ended";
    QTest::newRow("failed") << int(CommandOutcome::Failed) << "it could not"
                            << "Critical Command Load off: failed, it could not [3] x1 ended";
    QTest::newRow("not confirmed")
        << int(CommandOutcome::Unconfirmed) << "silence"
        << "Not confirmed Command Load off: not confirmed, silence [3] x1 ended";
}

/// With who gave them and what became of them.
void HistoryTest::commandsAreEvents()
{
    QFETCH(int, outcome);
    QFETCH(QString, text);
    QFETCH(QString, line);
    Watch watch;
    watch.pass(snapshotWith(StatusToken::OnLine), 60);
    watch.ups->finishCommand({QStringLiteral("load.off"), QStringLiteral("3"),
                              QStringLiteral("oper"), CommandOutcome(outcome), text});
    const QVector<Event> events = watch.events();
    QCOMPARE(linesOf(events), QStringList{line});
    QCOMPARE(events.first().user, QStringLiteral("oper"));
    QCOMPARE(events.first().ups, watch.ups->id());
    QCOMPARE(events.first().begin, watch.time);
}

void HistoryTest::acknowledging()
{
    Watch watch;
    watch.pass(snapshotWith(StatusToken::OnBattery | StatusToken::ReplaceBattery |
                            StatusToken::Calibrating),
               30);
    QCOMPARE(watch.events().size(), 3);
    const auto counted = [&](Severity severity) {
        return watch.history->unacknowledged().at(std::size_t(severity));
    };
    QTRY_COMPARE(counted(Severity::Warning), 2);
    QCOMPARE(counted(Severity::Information), 1);
    qint64 id = 0;
    for (const Event &event : watch.events())
        id = event.condition == QLatin1String("on-battery") ? event.id : id;
    watch.history->acknowledge({id}, QStringLiteral("Ann"), watch.time);
    QTRY_COMPARE(counted(Severity::Warning), 1);
    watch.history->acknowledgeAll(QStringLiteral("Bob"), watch.time + 1);
    QTRY_COMPARE(counted(Severity::Warning), 0);
    QCOMPARE(counted(Severity::Information), 0);
    for (const Event &event : watch.events())
        QCOMPARE(event.acknowledgedBy,
                 event.id == id ? QStringLiteral("Ann") : QStringLiteral("Bob"));
}

void HistoryTest::samplesOnChangeAndEachMinute()
{
    const QTemporaryDir place;
    const QString directory = place.filePath(QStringLiteral("kivconsole"));
    {
        Watch watch(directory);
        QVERIFY(watch.waitFor(HistoryStatus::State::Kept));
        watch.pass(snapshotWith(StatusToken::OnLine, 40.0), 90);
        watch.pass(snapshotWith(StatusToken::OnLine, 41.0), 90);
        QCoreApplication::processEvents();
    }
    Store store;
    QVERIFY(store.open(directory, Store::Mode::Reading, QDateTime::currentDateTimeUtc()));
    QStringList load;
    for (const Sample &sample : store.samples(QStringLiteral("demo"), start, start + hourMsecs)) {
        if (sample.quantity == Quantity::Load)
            load.append(QStringLiteral("%1:%2")
                            .arg((sample.at - start) / secondMsecs)
                            .arg(double(sample.value)));
    }
    QCOMPARE(load, (QStringList{QStringLiteral("5:40"), QStringLiteral("60:40"),
                                QStringLiteral("95:41"), QStringLiteral("120:41"),
                                QStringLiteral("180:41"), QStringLiteral("180:nan")}));
    const auto minutes = store.rollups(QStringLiteral("demo"), Quantity::Load, minuteMsecs, start,
                                       start + hourMsecs);
    QCOMPARE(minutes.at(1).second.covered, minuteMsecs);
    QVERIFY(std::abs(minutes.at(1).second.mean - (40.0 * 35 + 41.0 * 25) / 60) < 1e-6);
}

void HistoryTest::gapsWhenNothingIsHeard()
{
    Watch watch;
    watch.pass(snapshotWith(StatusToken::OnLine), 60);
    // The machine sleeps for an hour.
    watch.time += hourMsecs;
    watch.pass(snapshotWith(StatusToken::OnLine), 60);
    // The link is cut, the UPS does not give the value any more.
    watch.pass(Snapshot::lost(QStringLiteral("demo"), QStringLiteral("stale")), 60);
    watch.pass(snapshotWith(StatusToken::OnLine), 60);
    const Trend trend =
        watch.trend({Quantity::Load, Quantity::Temperature}, {start, start + 2 * hourMsecs});
    int begins = 0;
    for (const TrendPoint &point : trend.curves.at(0).points)
        begins += point.joined ? 0 : 1;
    QCOMPARE(begins, 3);
    QVERIFY(trend.curves.at(1).points.isEmpty());
}

void HistoryTest::clockJumps()
{
    Watch watch;
    watch.pass(snapshotWith(StatusToken::OnLine), 120);
    watch.pass(snapshotWith(StatusToken::OnBattery), 30);
    watch.time -= hourMsecs;
    watch.pass(snapshotWith(StatusToken::OnBattery), 60);
    watch.pass(snapshotWith(StatusToken::OnLine), 60);
    watch.time += 3 * hourMsecs;
    watch.pass(snapshotWith(StatusToken::OnLine), 60);
    const QVector<Event> events = watch.events();
    QCOMPARE(events.size(), 1);
    QVERIFY(*events.first().end >= events.first().begin);
    QVERIFY(events.first().lasted >= 0);
    const Trend trend =
        watch.trend({Quantity::Load}, {start - 2 * hourMsecs, start + 4 * hourMsecs});
    for (int i = 1; i < trend.curves.at(0).points.size(); ++i)
        QVERIFY(trend.curves.at(0).points.at(i).at >= trend.curves.at(0).points.at(i - 1).at);
}

void HistoryTest::secondWindowReadsAndTakesOver()
{
    const QTemporaryDir place;
    const QString directory = place.filePath(QStringLiteral("kivconsole"));
    auto first = std::make_unique<Watch>(directory);
    QVERIFY(first->waitFor(HistoryStatus::State::Kept));
    first->pass(snapshotWith(StatusToken::OnBattery), 60);
    QCOMPARE(first->events().size(), 1);
    Watch second(directory);
    QVERIFY(second.waitFor(HistoryStatus::State::Read));
    QVERIFY(!second.history->status().canAcknowledge());
    QVERIFY(!second.history->status().line.isEmpty());
    second.time = first->time;
    second.pass(snapshotWith(StatusToken::OnBattery), 60);
    QCOMPARE(linesOf(second.events()), linesOf(first->events()));
    // It follows what the first one writes.
    int replaced = 0;
    connect(second.history.get(), &History::replaced, this, [&] { ++replaced; });
    first->pass(snapshotWith(StatusToken::OnLine), 5);
    QCOMPARE(first->lines().first(), QStringLiteral("Warning State On battery [0 V] x1 ended"));
    second.history->lookAgain();
    QTRY_VERIFY(replaced > 0);
    QCOMPARE(linesOf(second.events()), linesOf(first->events()));
    first.reset();
    second.history->lookAgain();
    QVERIFY(second.waitFor(HistoryStatus::State::Kept));
    second.pass(snapshotWith(StatusToken::OnLine | StatusToken::ReplaceBattery), 5);
    QCOMPARE(second.lines().last(),
             QStringLiteral("Warning State Replace the battery [] x1 present"));
}

void HistoryTest::goesOnWithoutAPlace()
{
    Watch watch(QStringLiteral("/proc/self/kivconsole"));
    QVERIFY(watch.waitFor(HistoryStatus::State::NotKept));
    const QString line = watch.history->status().line;
    QVERIFY2(line.contains(QLatin1String("/proc/self/kivconsole")), qPrintable(line));
    QVERIFY(!line.contains(QLatin1Char('\n')));
    watch.pass(snapshotWith(StatusToken::OnBattery), 60);
    QCOMPARE(watch.lines().size(), 1);
    watch.history->acknowledgeAll(QStringLiteral("Ann"), watch.time);
    QVERIFY(watch.events().first().isAcknowledged());
    QVERIFY(
        !watch.trend({Quantity::Load}, {start, start + hourMsecs}).curves.first().points.isEmpty());
}

void HistoryTest::movesIntoTheFileWhenItCan()
{
    const QTemporaryDir place;
    const QString directory = place.filePath(QStringLiteral("share/kivconsole"));
    QFile inTheWay(place.filePath(QStringLiteral("share")));
    QVERIFY(inTheWay.open(QIODevice::WriteOnly));
    inTheWay.close();
    Watch watch(directory);
    watch.time = QDateTime::currentMSecsSinceEpoch();
    QVERIFY(watch.waitFor(HistoryStatus::State::NotKept));
    watch.pass(snapshotWith(StatusToken::OnBattery), 60);
    watch.pass(snapshotWith(StatusToken::OnLine | StatusToken::ReplaceBattery), 10);
    const QStringList before = watch.lines();
    QCOMPARE(before.size(), 2);
    watch.history->acknowledgeAll(QStringLiteral("Ann"), watch.time);
    QVERIFY(inTheWay.remove());
    watch.history->lookAgain();
    QVERIFY(watch.waitFor(HistoryStatus::State::Kept));
    QCOMPARE(watch.lines(), before);
    QVERIFY(QFile::exists(directory + QStringLiteral("/history.db")));
    for (const Event &event : watch.events())
        QCOMPARE(event.acknowledgedBy, QStringLiteral("Ann"));
}

/// Another program locks the file for a while: what was present goes on, ends in memory, and is in
/// the file afterwards with what was known of it.
void HistoryTest::goesOnInMemoryAndBack()
{
    const QTemporaryDir place;
    const QString directory = place.filePath(QStringLiteral("kivconsole"));
    Watch watch(directory);
    watch.time = QDateTime::currentMSecsSinceEpoch();
    QVERIFY(watch.waitFor(HistoryStatus::State::Kept));
    watch.pass(snapshotWith(StatusToken::OnLine));
    const qint64 begin = watch.time + 5 * secondMsecs;
    watch.pass(snapshotWith(StatusToken::OnBattery), 60);
    QCOMPARE(watch.events().size(), 1);
    watch.history->acknowledgeAll(QStringLiteral("Ann"), watch.time);
    const QVector<Event> before = watch.events();
    QVERIFY(before.size() == 1 && before.first().isAcknowledged());
    const QString name = QStringLiteral("locks the file");
    {
        QSqlDatabase other = QSqlDatabase::addDatabase(QStringLiteral("QSQLITE"), name);
        other.setDatabaseName(directory + QStringLiteral("/history.db"));
        QVERIFY(other.open());
        QSqlQuery lock(other);
        QVERIFY(lock.exec(QStringLiteral("BEGIN IMMEDIATE")));
        watch.pass(snapshotWith(StatusToken::OnLine), 5);
        QVERIFY(watch.waitFor(HistoryStatus::State::NotKept));
        const QVector<Event> meanwhile = watch.events();
        QCOMPARE(meanwhile.size(), 1);
        QCOMPARE(meanwhile.first().begin, begin);
        QCOMPARE(meanwhile.first().end.value_or(0), watch.time);
        QCOMPARE(meanwhile.first().acknowledgedBy, QStringLiteral("Ann"));
        QVERIFY(lock.exec(QStringLiteral("ROLLBACK")));
    }
    QSqlDatabase::removeDatabase(name);
    const qint64 end = watch.time;
    watch.pass(snapshotWith(StatusToken::OnLine), 600);
    watch.history->lookAgain();
    QVERIFY(watch.waitFor(HistoryStatus::State::Kept));
    const QVector<Event> after = watch.events();
    QCOMPARE(after.size(), 1);
    QCOMPARE(after.first().begin, begin);
    QCOMPARE(after.first().end.value_or(0), end);
    QVERIFY(after.first().endSeen);
    QCOMPARE(after.first().lasted, end - begin);
    QCOMPARE(after.first().acknowledgedBy, QStringLiteral("Ann"));
}

void HistoryTest::saysThatItSetAFileAside()
{
    const QTemporaryDir place;
    const QString directory = place.filePath(QStringLiteral("share/kivconsole"));
    QFile inTheWay(place.filePath(QStringLiteral("share")));
    QVERIFY(inTheWay.open(QIODevice::WriteOnly));
    inTheWay.close();
    Watch watch(directory);
    QVERIFY(watch.waitFor(HistoryStatus::State::NotKept));
    QVERIFY(inTheWay.remove());
    QVERIFY(QDir().mkpath(directory));
    QFile garbage(directory + QStringLiteral("/history.db"));
    QVERIFY(garbage.open(QIODevice::WriteOnly));
    QCOMPARE(garbage.write(QByteArray(8192, 'x')), 8192);
    garbage.close();
    watch.history->lookAgain();
    QVERIFY(watch.waitFor(HistoryStatus::State::Kept));
    const QString line = watch.history->status().line;
    QVERIFY2(line.contains(QLatin1String("history.db.damaged-")), qPrintable(line));
    // The new one stays where it is when it is read.
    watch.pass(snapshotWith(StatusToken::OnBattery), 60);
    QCOMPARE(watch.events().size(), 1);
    QCOMPARE(watch.events().size(), 1);
    QCOMPARE(watch.history->status().line, line);
    const QStringList aside =
        QDir(directory).entryList({QStringLiteral("history.db.damaged-*")}, QDir::Files);
    QVERIFY2(aside.size() == 1, qPrintable(aside.join(QLatin1Char(' '))));
}

void HistoryTest::damageInUseBeginsAnew()
{
    const QTemporaryDir place;
    const QString directory = place.filePath(QStringLiteral("kivconsole"));
    // Too large to be checked when it is opened, and garbled deep inside.
    {
        Store store;
        QVERIFY(store.open(directory, Store::Mode::Writing, QDateTime::currentDateTimeUtc()));
        QVERIFY(store.begin());
        for (int i = 0; i < 45000; ++i) {
            Event event;
            event.ups = QStringLiteral("demo");
            event.condition = QStringLiteral("on-battery");
            event.text = QString(450, QLatin1Char('x'));
            event.user = QString(450, QLatin1Char('y'));
            event.begin = start - i * minuteMsecs;
            event.end = event.begin;
            QVERIFY(store.write(&event));
        }
        QVERIFY(store.commit());
    }
    QFile file(directory + QStringLiteral("/history.db"));
    QVERIFY2(file.size() > 33 * 1024 * 1024, qPrintable(QString::number(file.size())));
    QVERIFY(file.open(QIODevice::ReadWrite));
    QVERIFY(file.seek(16 * 4096));
    QVERIFY(file.write(QByteArray(int(file.size() - 16 * 4096), '\x5a')) > 0);
    file.close();
    Watch watch(directory);
    QVERIFY(watch.waitFor(HistoryStatus::State::Kept));
    watch.pass(snapshotWith(StatusToken::OnBattery), 5);
    QTRY_VERIFY(watch.history->status().line.contains(QLatin1String("damaged")));
    watch.pass(snapshotWith(StatusToken::OnBattery), 60);
    QCOMPARE(watch.lines(),
             QStringList(QStringLiteral("Warning State On battery [0 V] x1 present")));
    QCOMPARE(QDir(directory).entryList({QStringLiteral("history.db.damaged-*")}).size() > 0, true);
}

void HistoryTest::exportsAndWrites()
{
    const QTemporaryDir place;
    Watch watch;
    watch.pass(snapshotWith(StatusToken::OnBattery), 60);
    QCOMPARE(watch.events().size(), 1);
    QStringList problems;
    connect(watch.history.get(), &History::fileWritten, this,
            [&](int, const QString &, const QString &problem) { problems.append(problem); });
    const QString file = place.filePath(QStringLiteral("events.csv"));
    watch.history->exportEvents({}, file);
    QTRY_COMPARE(problems.size(), 1);
    QCOMPARE(problems.first(), QString());
    QFile in(file);
    QVERIFY(in.open(QIODevice::ReadOnly));
    const QString text = QString::fromUtf8(in.readAll());
    QVERIFY2(text.contains(
                 QLatin1String("2026-11-22 10:00:05,,,1,demo,State,Warning,On battery,0 V,,,\r\n")),
             qPrintable(text));
    watch.history->writeFile(place.filePath(QStringLiteral("no/such/place")), "x");
    QTRY_COMPARE(problems.size(), 2);
    QVERIFY(!problems.last().isEmpty());
}

void HistoryTest::killedFiftyTimes()
{
    const QTemporaryDir place;
    const QString directory = place.filePath(QStringLiteral("kivconsole"));
    QRandomGenerator random(7);
    QVector<qint64> acknowledged;
    for (int round = 0; round < 50; ++round) {
        QProcess writer;
        writer.start(QStringLiteral(KIV_HISTORY_WRITER), {directory});
        QVERIFY2(writer.waitForStarted(), qPrintable(writer.errorString()));
        const int wanted = random.bounded(1, 12);
        QByteArray output;
        while (output.count('\n') < wanted && writer.waitForReadyRead(30000))
            output += writer.readAllStandardOutput();
        writer.kill();
        QVERIFY(writer.waitForFinished());
        output += writer.readAllStandardOutput();
        QVERIFY2(output.count('\n') >= wanted, writer.readAllStandardError().constData());
        const QByteArray whole = output.left(output.lastIndexOf('\n'));
        for (const QByteArray &line : whole.split('\n'))
            acknowledged.append(line.toLongLong());
        Store store;
        QVERIFY2(store.open(directory, Store::Mode::Writing, QDateTime::currentDateTimeUtc()),
                 qPrintable(store.problemText()));
        QCOMPARE(store.setAsideAs(), QString());
        for (const qint64 id : std::as_const(acknowledged)) {
            const std::optional<Event> event = store.event(id);
            QVERIFY2(event && event->acknowledgedBy == QLatin1String("operator"),
                     qPrintable(QStringLiteral("event %1 in round %2").arg(id).arg(round)));
        }
    }
    QVERIFY(acknowledged.size() >= 50);
}

/// A real server and driver through an outage, with a stale driver and a reconnection in it.
void HistoryTest::realOutage()
{
    NutServer server;
    const auto variables = [](const char *status, int charge, const char *voltage,
                              const char *alarm = "\"\"") {
        return QByteArray("ups.status: ") + status +
               "\nbattery.charge: " + QByteArray::number(charge) + "\ninput.voltage: " + voltage +
               "\ninput.voltage.nominal: 230\ninput.transfer.low: 180\nups.load: 42\nups.alarm: " +
               alarm + "\n";
    };
    VERIFY_SERVER(writeVariables(variables("OL", 100, "231")));
    VERIFY_SERVER(start());
    QString error;
    NutTimes times;
    times.poll = 50;
    NutFeed feed(*NutAddress::parse(server.address(), &error), times);
    SiteModel site;
    UpsModel *ups = site.add(QStringLiteral("demo"));
    History history((QString()));
    const Recorder recorder(&site, &history);
    ups->setFeed(&feed);
    feed.start();
    const auto isNow = [&](const char *status, const char *alarm = "") {
        const QHash<QString, QString> &given = ups->snapshot().variables;
        return given.value(QStringLiteral("ups.status")) == QLatin1String(status) &&
               given.value(QStringLiteral("ups.alarm")) == QLatin1String(alarm);
    };
    const auto become = [&](const char *status, int charge, const char *voltage,
                            const char *alarm = "") {
        return server.writeVariables(variables(status, charge, voltage, *alarm ? alarm : "\"\"")) &&
               QTest::qWaitFor([&] { return isNow(status, alarm); }, 20000);
    };
    QTRY_VERIFY(isNow("OL"));
    QVERIFY(become("OB DISCHRG", 98, "0"));
    QVERIFY(become("OB DISCHRG", 60, "0", "Fan failure"));
    // The server restarts in the middle of it, which neither ends nor repeats what is present.
    VERIFY_SERVER(killServer());
    QTRY_VERIFY(ups->snapshot().isLost());
    VERIFY_SERVER(startServer());
    QTRY_VERIFY(isNow("OB DISCHRG", "Fan failure"));
    QVERIFY(become("OB DISCHRG LB", 15, "0"));
    QVERIFY(become("OL CHRG", 20, "231"));
    QVERIFY(become("OL", 100, "231"));
    feed.stop();
    QCoreApplication::processEvents();

    QStringList found;
    bool arrived = false;
    connect(&history, &History::eventsRead, this, [&](int, const QVector<Event> &events, bool) {
        arrived = true;
        found = linesOf(events);
    });
    history.readEvents({}, 1000);
    QTRY_VERIFY(arrived);
    QCOMPARE(found.size(), 4);
    QCOMPARE(found.at(0), QStringLiteral("Warning State On battery [0 V] x1 ended"));
    QCOMPARE(found.at(1), QStringLiteral("Critical Alarm Fan failure [] x1 ended"));
    QVERIFY2(found.at(2).startsWith(nameOf(Severity::Unknown) +
                                    QStringLiteral(" Communication No communication")) &&
                 found.at(2).endsWith(QLatin1String("x1 ended")),
             qPrintable(found.at(2)));
    QCOMPARE(found.at(3), QStringLiteral("Critical State Battery low [15 %] x1 ended"));
}

KIV_TEST_MAIN(HistoryTest)

#include "tst_history.moc"
