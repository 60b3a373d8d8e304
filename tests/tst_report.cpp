// SPDX-License-Identifier: LicenseRef-all-rights-reserved

#include "journal.h"
#include "report.h"
#include "reportfile.h"

#include "programrun.h"
#include "testmain.h"
#include "widgetprobe.h"

#include <QtCore/QFile>
#include <QtCore/QTemporaryDir>
#include <QtCore/QTimeZone>

#include <cmath>

namespace {

/// A Sunday, 2026-11-22 10:00 UTC.
constexpr qint64 start = 1795341600LL * 1000;
const QString ups = QStringLiteral("demo@host:3493");

EventChange change(EventChange::What what, const char *condition, qint64 at)
{
    EventChange one;
    one.what = what;
    one.ups = ups;
    one.condition = QLatin1String(condition);
    one.text = one.condition;
    one.severity = Severity::Warning;
    one.at = at;
    return one;
}

/// A day before @p end: a steady load of 1200 W and 40 %, with a peak, an outage of 10 minutes in
/// which the charge fell to 61 %, and half an hour with the output off.
bool fill(Store *store, qint64 end)
{
    const qint64 begin = end - dayMsecs;
    QVector<UpsSample> samples;
    for (qint64 at = begin; at < end; at += minuteMsecs) {
        const qint64 minute = (at - begin) / minuteMsecs;
        const bool out = minute >= 600 && minute < 610;
        samples.append({ups, {at, Quantity::OutputPower, 1200.0F}});
        samples.append({ups, {at, Quantity::Load, minute == 900 ? 97.0F : 40.0F}});
        samples.append({ups,
                        {at, Quantity::BatteryCharge,
                         out ? 100.0F - 4.0F * float(minute - 599) + 1 : 100.0F}});
    }
    using What = EventChange::What;
    return store->addSamples(samples) && store->rollUpHours(end) &&
           Journal::apply(store, {change(What::Begin, "on-battery", begin + 600 * minuteMsecs),
                                  change(What::End, "on-battery", begin + 610 * minuteMsecs),
                                  change(What::Begin, "output-off", begin + 1000 * minuteMsecs),
                                  change(What::End, "output-off", begin + 1030 * minuteMsecs)});
}

} // namespace

class ReportTest : public WidgetTest
{
    Q_OBJECT

private Q_SLOTS:
    void aDay();
    void nothingKnown();
    void whatIsNotOver();
    void afterTheMinutesAreGone();
    void onlyWatchedTimeCounts();
    void spans();
    void pageIsPlain();
    void linesAreComplete();
    void programNeedsNoDisplay();
    void programSaysWhatIsWrong();
};

void ReportTest::aDay()
{
    Store store;
    QVERIFY(store.openInMemory());
    QVERIFY(fill(&store, start));
    const Report report = reportOf(&store, {}, {start - dayMsecs, start});
    QCOMPARE(report.upses.size(), 1);
    const UpsReport &one = report.upses.first();
    QCOMPARE(one.ups, ups);
    QCOMPARE(one.outages.size(), 1);
    QCOMPARE(one.outages.first().begin, start - dayMsecs + 600 * minuteMsecs);
    QCOMPARE(one.outages.first().length, 10 * minuteMsecs);
    QCOMPARE(*one.outages.first().lowestCharge, 61.0);
    QCOMPARE(one.watched, dayMsecs);
    QVERIFY(std::abs(*one.mains - (1.0 - 10.0 / 1440)) < 1e-9);
    QVERIFY(std::abs(*one.available - (1.0 - 30.0 / 1440)) < 1e-9);
    QCOMPARE(*one.peakLoad, 97.0);
    QCOMPARE(one.peakAt, start - dayMsecs + 900 * minuteMsecs);
    QVERIFY2(std::abs(*one.energy - 28800.0) < 1e-6, qPrintable(QString::number(*one.energy)));
}

void ReportTest::nothingKnown()
{
    Store store;
    QVERIFY(store.openInMemory());
    QCOMPARE(reportOf(&store, {}, {start - dayMsecs, start}).upses.size(), 0);
    const Report report = reportOf(&store, {ups}, {start - dayMsecs, start});
    const UpsReport &one = report.upses.first();
    QVERIFY(!one.available && !one.mains && !one.peakLoad && !one.energy);
    QVERIFY(htmlOf(report, QTimeZone("UTC")).contains(QLatin1String("no data")));
}

void ReportTest::whatIsNotOver()
{
    Store store;
    QVERIFY(store.openInMemory());
    QVERIFY(Journal::apply(
        &store, {change(EventChange::What::Begin, "on-battery", start - 5 * minuteMsecs)}));
    const Report report = reportOf(&store, {}, {start - dayMsecs, start});
    QCOMPARE(report.upses.first().outages.first().length, 5 * minuteMsecs);
    QVERIFY(htmlOf(report, QTimeZone("UTC")).contains(QLatin1String("00:05:00, not over")));
    // One that was over before is not in it.
    const Report later = reportOf(&store, {}, {start - 3 * dayMsecs, start - 2 * dayMsecs});
    QCOMPARE(later.upses.first().outages.size(), 0);
}

void ReportTest::afterTheMinutesAreGone()
{
    Store store;
    QVERIFY(store.openInMemory());
    QVERIFY(fill(&store, start));
    QVERIFY(store.prune({1, 1, 0}, start + 10 * dayMsecs));
    const UpsReport one = reportOf(&store, {}, {start - dayMsecs, start}).upses.first();
    QVERIFY2(std::abs(*one.energy - 28800.0) < 1e-6, qPrintable(QString::number(*one.energy)));
    QCOMPARE(*one.peakLoad, 97.0);
    QCOMPARE(one.watched, dayMsecs);
}

/// An outage that went on while the console was off says nothing of that time.
void ReportTest::onlyWatchedTimeCounts()
{
    Store store;
    QVERIFY(store.openInMemory());
    const qint64 begin = start - dayMsecs;
    QVector<UpsSample> samples;
    for (int minute = 0; minute < 60; ++minute)
        samples.append({ups, {begin + minute * minuteMsecs, Quantity::Load, 40.0F}});
    QVERIFY(store.addSamples(samples));
    using What = EventChange::What;
    QVERIFY(Journal::apply(&store, {change(What::Begin, "on-battery", begin + 45 * minuteMsecs),
                                    change(What::End, "on-battery", begin + 10 * hourMsecs)}));
    const UpsReport one = reportOf(&store, {}, {begin, start}).upses.first();
    QCOMPARE(one.watched, hourMsecs);
    QVERIFY2(std::abs(*one.mains - 0.75) < 1e-9, qPrintable(QString::number(*one.mains)));
    QCOMPARE(*one.available, 1.0);
    QCOMPARE(one.outages.first().length, 10 * hourMsecs - 45 * minuteMsecs);
}

void ReportTest::spans()
{
    const QTimeZone berlin("Europe/Berlin");
    QCOMPARE(spanOf(ReportPeriod::Day, start, berlin).from, start - dayMsecs);
    QCOMPARE(spanOf(ReportPeriod::Week, start, berlin).from, start - 7 * dayMsecs);
    // The clocks changed meanwhile, and the time of the day is the same.
    QCOMPARE(spanOf(ReportPeriod::Month, start, berlin).from,
             QDateTime(QDate(2026, 10, 22), QTime(9, 0), Qt::UTC).toMSecsSinceEpoch());
}

void ReportTest::pageIsPlain()
{
    Report report;
    report.span = {start - dayMsecs, start};
    UpsReport one;
    one.ups = QStringLiteral("<script>alert(1)</script>&\"'@host");
    report.upses.append(one);
    const QString page = htmlOf(report, QTimeZone("UTC"));
    QVERIFY(!page.contains(QLatin1String("<script")));
    QVERIFY(page.contains(QLatin1String("&lt;script&gt;alert(1)&lt;/script&gt;&amp;")));
}

void ReportTest::linesAreComplete()
{
    Store store;
    QVERIFY(store.openInMemory());
    QVERIFY(fill(&store, start));
    const QString lines = csvOf(reportOf(&store, {}, {start - dayMsecs, start}));
    for (const char *line :
         {"demo@host:3493,\"outage, lowest charge\",2026-11-21 20:00:00,600,61.0,%\r\n",
          "demo@host:3493,watched,2026-11-21 10:00:00,86400,,\r\n",
          "demo@host:3493,not on battery,2026-11-21 10:00:00,,99.3056,%\r\n",
          "demo@host:3493,output available,2026-11-21 10:00:00,,97.9167,%\r\n",
          "demo@host:3493,peak load,2026-11-22 01:00:00,,97.0,%\r\n",
          "demo@host:3493,energy,2026-11-21 10:00:00,,28800.0,Wh\r\n"})
        QVERIFY2(lines.contains(QLatin1String(line)), qPrintable(lines));
}

void ReportTest::programNeedsNoDisplay()
{
    const QTemporaryDir place;
    const QString data = place.filePath(QStringLiteral("kivconsole"));
    const QMap<QString, QString> environment = {{QStringLiteral("XDG_DATA_HOME"), place.path()}};
    {
        Store store;
        QVERIFY(store.open(data, Store::Mode::Writing, QDateTime::currentDateTimeUtc()));
        QVERIFY(fill(&store, QDateTime::currentMSecsSinceEpoch()));
    }
    for (const char *ending : {"html", "csv"}) {
        const QString file = place.filePath(QStringLiteral("report.") + QLatin1String(ending));
        const ProgramRun run(QStringLiteral(KIV_CONSOLE_PROGRAM),
                             {QStringLiteral("--report"), QStringLiteral("week"),
                              QStringLiteral("--output"), file, QStringLiteral("--ups"), ups},
                             environment);
        QVERIFY(run.ended);
        QCOMPARE(run.errors, QString());
        QCOMPARE(run.status, 0);
        QFile in(file);
        QVERIFY(in.open(QIODevice::ReadOnly));
        QVERIFY(in.readAll().contains(ups.toUtf8()));
    }
}

void ReportTest::programSaysWhatIsWrong()
{
    const QTemporaryDir place;
    const QMap<QString, QString> environment = {{QStringLiteral("XDG_DATA_HOME"), place.path()}};
    const auto run = [&](const QStringList &more) {
        return ProgramRun(QStringLiteral(KIV_CONSOLE_PROGRAM),
                          QStringList{QStringLiteral("--report"), QStringLiteral("day"),
                                      QStringLiteral("--output"),
                                      place.filePath(QStringLiteral("r.html"))} +
                              more,
                          environment);
    };
    const ProgramRun without = run({});
    QCOMPARE(without.status, 1);
    QVERIFY2(without.errors.contains(QLatin1String("no history")), qPrintable(without.errors));
    QCOMPARE(without.errors.count(QLatin1Char('\n')), 1);
    {
        Store store;
        QVERIFY(store.open(place.filePath(QStringLiteral("kivconsole")), Store::Mode::Writing,
                           QDateTime::currentDateTimeUtc()));
    }
    const ProgramRun unknown = run({QStringLiteral("--ups"), QStringLiteral("no@host")});
    QCOMPARE(unknown.status, 1);
    QVERIFY2(unknown.errors.contains(QLatin1String("no@host:3493")), qPrintable(unknown.errors));
    QVERIFY(!QFile::exists(place.filePath(QStringLiteral("r.html"))));
}

KIV_TEST_MAIN(ReportTest)

#include "tst_report.moc"
