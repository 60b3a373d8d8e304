// SPDX-License-Identifier: LicenseRef-all-rights-reserved

#include "chart.h"
#include "consolewindow.h"
#include "gaugeroom.h"
#include "history/recorder.h"
#include "promtrends.h"
#include "theme.h"
#include "trendspage.h"

#include "fakeweb.h"
#include "prometheusserver.h"
#include "testmain.h"
#include "widgetprobe.h"

#include <QtCore/QDir>
#include <QtCore/QUrlQuery>
#include <QtWidgets/QApplication>
#include <QtWidgets/QPushButton>

#include <cmath>
#include <limits>

namespace {

constexpr int patience = 30000;
constexpr double none = std::numeric_limits<double>::quiet_NaN();

QString text(const char *latin)
{
    return QString::fromLatin1(latin);
}

QByteArray statusOf(const char *flag)
{
    return QByteArray("{\"status\":\"success\",\"data\":{\"resultType\":\"vector\",\"result\":[{"
                      "\"metric\":{"
                      "\"job\":\"nut\",\"instance\":\"i\",\"ups\":\"a\",\"flag\":\"") +
           flag + "\"},\"value\":[1," + "\"" +
           QByteArray::number(double(QDateTime::currentSecsSinceEpoch()), 'f', 0) + "\"]}]}}";
}

QByteArray matrixOf(const QByteArrayList &series, const QByteArray &more = QByteArray())
{
    return "{\"status\":\"success\",\"data\":{\"resultType\":\"matrix\",\"result\":[" +
           series.join(',') + "]}" + more + "}";
}

/// A series of an answer from (seconds, value) pairs.
QByteArray curve(const char *name, const QVector<QPair<qint64, double>> &values)
{
    QByteArrayList pairs;
    for (const auto &[at, value] : values)
        pairs += '[' + QByteArray::number(at) + ",\"" +
                 (std::isnan(value)   ? QByteArray("NaN")
                  : std::isinf(value) ? QByteArray("+Inf")
                                      : QByteArray::number(value)) +
                 "\"]";
    return QByteArray("{\"metric\":{\"curve\":\"") + name + "\"},\"values\":[" + pairs.join(',') +
           "]}";
}

/// What was asked of a range.
struct Asked
{
    QString query;
    double start = 0.0;
    double end = 0.0;
    double step = 0.0;
};

Asked askedOf(const QByteArray &form)
{
    // The query is the first field, and may have any character.
    Asked asked;
    const QString all = QString::fromUtf8(form);
    const int begin = int(all.indexOf(QLatin1String("&start=")));
    asked.query = all.mid(6, begin - 6);
    const QUrlQuery rest(all.mid(begin + 1));
    asked.start = rest.queryItemValue(text("start")).toDouble();
    asked.end = rest.queryItemValue(text("end")).toDouble();
    asked.step = rest.queryItemValue(text("step")).toDouble();
    return asked;
}

/// A console on one UPS of a server that the test writes.
struct Fleet
{
    explicit Fleet(const PromServer &server, const PromTimes &times)
        : source(server, times)
        , trends([this](const QString &ups) { return feed && ups == feed->key() ? feed : nullptr; },
                 &history)
        , recorder(&site, &history)
    {
        QObject::connect(&source, &PromSource::found, &source, [this](PromFeed *found) {
            if (!found->key().startsWith(QLatin1Char('a')))
                return;
            feed = found;
            site.add(found->key())->setFeed(found);
            found->start();
        });
        site.setGrowing(true);
        source.start();
    }
    UpsModel *ups() const
    {
        return feed ? site.find(feed->key()) : nullptr;
    }
    void show()
    {
        QApplication::setPalette(Theme::palette(false));
        window = std::make_unique<ConsoleWindow>(&site);
        window->setHistory(&history, &trends);
        window->show();
        showPage("trends");
    }
    void showPage(const char *name)
    {
        window->showPage(int(window->pageNames().indexOf(QLatin1String(name))));
        deliverAll();
    }
    Chart *chart() const
    {
        return window->findChild<Chart *>();
    }
    QString notice() const
    {
        return chart()->accessibleDescription();
    }
    ~Fleet()
    {
        window.reset();
        prepareTestApplication();
    }
    Fleet(const Fleet &) = delete;
    Fleet &operator=(const Fleet &) = delete;

    SiteModel site;
    PromSource source;
    PromFeed *feed = nullptr;
    History history{QString()};
    PromTrends trends;
    Recorder recorder;
    std::unique_ptr<ConsoleWindow> window;
};

PromTimes shortTimes()
{
    PromTimes times;
    times.refresh = 100;
    times.answer = 5000;
    return times;
}

/// Asks once and returns what came.
Trend trendOf(TrendSource *source, const QString &ups, const QVector<Quantity> &quantities,
              TimeSpan span, int columns)
{
    Trend result;
    bool arrived = false;
    const int number = source->readTrend(ups, quantities, span, columns);
    const auto connection =
        QObject::connect(source, &TrendSource::trendRead, [&](int answered, const Trend &trend) {
            if (answered != number)
                return;
            arrived = true;
            result = trend;
        });
    const bool inTime = QTest::qWaitFor([&] { return arrived; }, patience);
    QObject::disconnect(connection);
    if (!inTime)
        result.problem = text("no answer came");
    return result;
}

bool isRange(const QByteArray &form)
{
    return form.contains("&start=");
}

} // namespace

class PromTrendsTest : public WidgetTest
{
    Q_OBJECT

private Q_SLOTS:
    void stepsFitThePixels();
    void asksForInstants();
    void asksForAllBetweenWideSteps();
    void namesAreNoPlaceholders();
    void gaps();
    void wrongAnswers_data();
    void wrongAnswers();
    void unknownMetrics();
    void problems_data();
    void problems();
    void loadingIsSaid();
    void oneQuestionAtATime();
    void nothingIsRecorded();
    void othersAreAskedForTheRest();
    void realServer_data();
    void realServer();
};

void PromTrendsTest::stepsFitThePixels()
{
    const auto step = [](qint64 seconds, int columns) {
        return PromTrends::stepFor({5000, 5000 + seconds * 1000}, columns);
    };
    QCOMPARE(step(600, 700), 5);
    QCOMPARE(step(3600, 700), 10);
    QCOMPARE(step(3600, 60), 120);
    QCOMPARE(step(86400, 720), 120);
    QCOMPARE(step(86400, 350), 300);
    QCOMPARE(step(7 * 86400, 700), 900);
    QCOMPARE(step(30 * 86400, 700), 7200);
    QCOMPARE(step(3650LL * 86400, 700), 6 * 86400);
    // No screen and no span makes a step of nothing, or of more than can be counted.
    QCOMPARE(step(3600, 0), 3600);
    QCOMPARE(step(0, 700), 5);
    QVERIFY(step(4000LL * 365 * 86400, 1) > 0);
    for (int columns = 100; columns < 8000; columns += 117) {
        for (qint64 seconds = 60; seconds < 400LL * 86400; seconds = seconds * 3 / 2)
            QVERIFY(seconds / step(seconds, columns) <= columns);
    }
}

void PromTrendsTest::asksForInstants()
{
    FakeWeb web;
    Asked asked;
    web.onQuery = [&](const QByteArray &form) {
        if (!isRange(form))
            return qMakePair(200, statusOf("OL"));
        asked = askedOf(form);
        return qMakePair(
            200,
            matrixOf({curve("ups.load mean", {{1200, 40}, {1210, 41}, {1220, 50}}),
                      curve("ups.load low", {{1200, 40}, {1210, 41}, {1220, 50}}),
                      curve("ups.load high", {{1200, 40}, {1210, 41}, {1220, 50}}),
                      curve("battery", {{1200, 0}, {1210, 1}, {1220, 1}, {1230, 0}, {1250, 1}})}));
    };
    Fleet fleet(web.server(), shortTimes());
    QTRY_VERIFY(fleet.feed);
    const Trend trend =
        trendOf(&fleet.trends, fleet.feed->key(), {Quantity::Load}, {1203000, 4803000}, 400);
    QCOMPARE(asked.step, 10.0);
    // Whole steps, none of them in the future.
    QCOMPARE(asked.start, 1200.0);
    QCOMPARE(asked.end, 4800.0);
    QVERIFY2(asked.query.contains(
                 text(R"(avg(network_ups_tools_ups_load{job="nut",instance="i",ups="a"})*1)")),
             qPrintable(asked.query));
    QVERIFY(!asked.query.contains(text("over_time")));
    QCOMPARE(trend.problem, QString());
    QCOMPARE(trend.curves.size(), 1);
    const QVector<TrendPoint> &points = trend.curves.first().points;
    QCOMPARE(points.size(), 3);
    QCOMPARE(points.at(1).at, qint64(1210000));
    QCOMPARE(points.at(1).mean, 41.0F);
    QVERIFY(!points.at(0).joined && points.at(1).joined && points.at(2).joined);
    QCOMPARE(trend.onBattery.size(), 2);
    QCOMPARE(trend.onBattery.at(0).from, qint64(1210000));
    QCOMPARE(trend.onBattery.at(0).to, qint64(1230000));
    QCOMPARE(trend.onBattery.at(1).to, qint64(1260000));
}

/// No peak is lost between two points.
void PromTrendsTest::asksForAllBetweenWideSteps()
{
    FakeWeb web;
    Asked asked;
    const qint64 day = 86400;
    web.onQuery = [&](const QByteArray &form) {
        if (!isRange(form))
            return qMakePair(200, statusOf("OL"));
        asked = askedOf(form);
        return qMakePair(
            200, matrixOf({curve("input.voltage mean", {{900, 230}, {1800, 231}, {day + 900, 229}}),
                           curve("input.voltage low", {{900, 0}, {1800, 228}, {day + 900, 228}}),
                           curve("input.voltage high", {{900, 240}, {1800, 233}, {day + 900, 230}}),
                           curve("battery", {{900, 1}, {day + 900, 1}})}));
    };
    Fleet fleet(web.server(), shortTimes());
    QTRY_VERIFY(fleet.feed);
    const Trend trend = trendOf(&fleet.trends, fleet.feed->key(), {Quantity::InputVoltage},
                                {100000, (day + 100) * 1000}, 100);
    QCOMPARE(asked.step, 900.0);
    QCOMPARE(asked.start, 0.0);
    QCOMPARE(asked.end, double(day + 900)); // with the step that is not over
    for (
        const char *part :
        {"min(min_over_time(network_ups_tools_input_voltage{", "}[900s]))*1", "avg(avg_over_time(",
         "max(max_over_time(",
         R"(max_over_time(network_ups_tools_ups_status{job="nut",instance="i",ups="a",flag="OB"}[900s])"})
        QVERIFY2(asked.query.contains(text(part)), qPrintable(asked.query));
    const QVector<TrendPoint> &points = trend.curves.first().points;
    QCOMPARE(points.size(), 3);
    QCOMPARE(points.at(0).at, qint64(450000));
    QCOMPARE(points.at(0).low, 0.0F);
    QCOMPARE(points.at(0).high, 240.0F);
    QVERIFY(points.at(1).joined);
    // The last step has begun only.
    QCOMPARE(points.at(2).at, (day + 50) * 1000);
    QVERIFY(!points.at(2).joined);
    QCOMPARE(trend.onBattery.size(), 2);
    QCOMPARE(trend.onBattery.at(0).from, qint64(0));
    QCOMPARE(trend.onBattery.at(0).to, qint64(900000));
    QCOMPARE(trend.onBattery.at(1).to, (day + 100) * 1000);
}

/// A name with what looks like a place for an argument is asked for as it is.
void PromTrendsTest::namesAreNoPlaceholders()
{
    FakeWeb web;
    Asked asked;
    web.onQuery = [&](const QByteArray &form) {
        if (!isRange(form))
            return qMakePair(200, statusOf("OL").replace("\"ups\":\"a\"", "\"ups\":\"a%1%3\""));
        asked = askedOf(form);
        return qMakePair(200, matrixOf({}));
    };
    Fleet fleet(web.server(), shortTimes());
    QTRY_VERIFY(fleet.feed);
    trendOf(&fleet.trends, fleet.feed->key(), {Quantity::Load}, {0, 86400000}, 300);
    const QString selector =
        text(R"(network_ups_tools_ups_load{job="nut",instance="i",ups="a%1%3"})");
    QVERIFY2(asked.query.contains(selector + text("[300s]")), qPrintable(asked.query));
}

void PromTrendsTest::gaps()
{
    FakeWeb web;
    web.onQuery = [&](const QByteArray &form) {
        if (!isRange(form))
            return qMakePair(200, statusOf("OL"));
        const double infinite = std::numeric_limits<double>::infinity();
        return qMakePair(200, matrixOf({curve("ups.load mean", {{10, 1},
                                                                {20, none},
                                                                {30, 3},
                                                                {40, infinite},
                                                                {50, 1e300},
                                                                {60, 6},
                                                                {80, 8},
                                                                {90, 9}})}));
    };
    Fleet fleet(web.server(), shortTimes());
    QTRY_VERIFY(fleet.feed);
    const Trend trend = trendOf(&fleet.trends, fleet.feed->key(),
                                {Quantity::Load, Quantity::Temperature}, {0, 3600000}, 400);
    QStringList points;
    for (const TrendPoint &point : trend.curves.first().points)
        points += QStringLiteral("%1%2")
                      .arg(point.joined ? text("-") : text("|"))
                      .arg(double(point.mean));
    QCOMPARE(points.join(QLatin1Char(' ')), text("|1 |3 |6 |8 -9"));
    QVERIFY(trend.curves.last().points.isEmpty());
    QCOMPARE(trend.problem, QString());
}

void PromTrendsTest::wrongAnswers_data()
{
    QTest::addColumn<QByteArray>("body");
    const auto row = [](const char *name, const QByteArray &body) { QTest::newRow(name) << body; };
    row("times that are none",
        matrixOf({"{\"metric\":{\"curve\":\"ups.load mean\"},\"values\":[[1e300,"
                  "\"1\"],[-1e300,\"2\"],[1e18,\"3\"]]}"}));
    row("twice the same",
        matrixOf({curve("ups.load mean", {{10, 1}, {10, 2}}), curve("ups.load mean", {{10, 3}})}));
    row("another order", matrixOf({curve("ups.load mean", {{30, 1}, {10, 2}, {20, 3}})}));
    row("low above high",
        matrixOf({curve("ups.load mean", {{10, 5}}), curve("ups.load low", {{10, 9}}),
                  curve("ups.load high", {{10, 1}})}));
    row("a curve that nobody asked for", matrixOf({curve("x", {{10, 5}})}));
    row("no labels", matrixOf({"{\"metric\":{},\"values\":[[1,\"1\"]]}"}));
}

/// What is drawn is in order and finite, whatever a server sends.
void PromTrendsTest::wrongAnswers()
{
    QFETCH(QByteArray, body);
    FakeWeb web;
    web.onQuery = [&](const QByteArray &form) {
        return qMakePair(200, isRange(form) ? body : statusOf("OL"));
    };
    Fleet fleet(web.server(), shortTimes());
    QTRY_VERIFY(fleet.feed);
    const Trend trend =
        trendOf(&fleet.trends, fleet.feed->key(), {Quantity::Load}, {0, 3600000}, 400);
    QCOMPARE(trend.curves.size(), 1);
    qint64 before = std::numeric_limits<qint64>::min();
    for (const TrendPoint &point : trend.curves.first().points) {
        QVERIFY(point.at > before);
        QVERIFY(point.low <= point.mean && point.mean <= point.high);
        before = point.at;
    }
    QVERIFY(trend.curves.first().points.size() <= 3);
}

/// A dialect without values has the time on battery alone.
void PromTrendsTest::unknownMetrics()
{
    FakeWeb web;
    QString query;
    web.onQuery = [&](const QByteArray &form) {
        if (!isRange(form))
            return qMakePair(200, statusOf("OL")
                                      .replace("\"ups\"", "\"device\"")
                                      .replace("flag", "status\":\"OL\",\"x"));
        query = askedOf(form).query;
        return qMakePair(200, matrixOf({curve("battery", {{10, 1}})}));
    };
    PromServer server = web.server();
    server.dialect = text("nutwg");
    Fleet fleet(server, shortTimes());
    QTRY_VERIFY(fleet.feed);
    const Trend trend =
        trendOf(&fleet.trends, fleet.feed->key(), {Quantity::Load}, {0, 3600000}, 400);
    QVERIFY2(query.startsWith(text("label_replace(max(nutwg_ups_status{")), qPrintable(query));
    QCOMPARE(trend.onBattery.size(), 1);
    QCOMPARE(trend.problem, text("Prometheus has no values of this time"));
}

void PromTrendsTest::problems_data()
{
    QTest::addColumn<QString>("what");
    QTest::addColumn<QString>("notice");
    QTest::newRow("refused")
        << "code 401"
        << "The Prometheus server cannot be read: it wants a user or a token (HTTP 401): give it "
           "with --prometheus-auth";
    QTest::newRow("silence")
        << "silence"
        << "The Prometheus server cannot be read: it gives no whole answer in time";
    QTest::newRow("gone") << "gone"
                          << "The Prometheus server cannot be read: connection refused";
    QTest::newRow("empty") << "empty"
                           << "Prometheus has no values of this time";
    QTest::newRow("query")
        << "query"
        << "The Prometheus server cannot be read: it refuses the query: too many samples";
    QTest::newRow("warning") << "warning"
                             << "What Prometheus has may be incomplete: half is missing";
}

/// What the page says; afterwards it shows the curves again by itself.
void PromTrendsTest::problems()
{
    QFETCH(QString, what);
    QFETCH(QString, notice);
    FakeWeb web;
    bool works = true;
    web.onQuery = [&](const QByteArray &form) {
        if (!isRange(form))
            return qMakePair(200, statusOf("OL"));
        const Asked asked = askedOf(form);
        const QByteArrayList all = {curve(
            "ups.load mean", {{qint64(asked.end - asked.step), 40}, {qint64(asked.end), 42}})};
        if (works)
            return qMakePair(200, matrixOf(all));
        if (what.startsWith(text("code")))
            return qMakePair(QStringView(what).right(3).toInt(), QByteArray("no"));
        if (what == text("query"))
            return qMakePair(422, QByteArray(R"({"status":"error","error":"too many samples"})"));
        return qMakePair(200, what == text("warning")
                                  ? matrixOf(all, ",\"warnings\":[\"half is missing\"]")
                                  : matrixOf({}));
    };
    PromTimes times = shortTimes();
    times.answer = 1000;
    Fleet fleet(web.server(), times);
    fleet.show();
    const auto points = [&fleet] {
        return fleet.chart()->lanes().isEmpty() ? 0
                                                : int(fleet.chart()->lanes().first().points.size());
    };
    QTRY_COMPARE(points(), 2);
    QCOMPARE(fleet.notice(), QString());
    works = false;
    web.answers = what != text("silence");
    if (what == text("gone"))
        web.vanish();
    QTest::mouseClick(fleet.window->findChild<QPushButton *>(text("24 h")), Qt::LeftButton);
    QTRY_COMPARE(fleet.notice(), notice);
    QCOMPARE(points(), what == text("warning") ? 2 : 0);
    if (what == text("gone"))
        return;
    works = true;
    web.answers = true;
    QTest::mouseClick(fleet.window->findChild<QPushButton *>(text("10 min")), Qt::LeftButton);
    QTRY_COMPARE(fleet.notice(), QString());
    QTRY_COMPARE(points(), 2);
}

void PromTrendsTest::loadingIsSaid()
{
    FakeWeb web;
    web.onQuery = [&](const QByteArray &form) {
        if (!isRange(form))
            return qMakePair(200, statusOf("OL"));
        return qMakePair(200,
                         matrixOf({curve("ups.load mean", {{qint64(askedOf(form).end), 42}})}));
    };
    PromTimes times = shortTimes();
    times.answer = patience;
    Fleet fleet(web.server(), times);
    QTRY_VERIFY(fleet.feed);
    web.answers = false;
    fleet.show();
    QTRY_COMPARE(fleet.notice(), QString::fromUtf8("Loading …"));
    web.answers = true;
    QTest::mouseClick(fleet.window->findChild<QPushButton *>(text("10 min")), Qt::LeftButton);
    QTRY_COMPARE(fleet.notice(), QString());
    QCOMPARE(fleet.chart()->lanes().first().points.size(), 1);
}

/// Who pages fast leaves no heap of questions behind: each one ends that before.
void PromTrendsTest::oneQuestionAtATime()
{
    FakeWeb web;
    web.onQuery = [&](const QByteArray &form) {
        return qMakePair(200, isRange(form) ? matrixOf({}) : statusOf("OL"));
    };
    PromTimes times = shortTimes();
    times.answer = patience;
    times.refresh = 1000000;
    Fleet fleet(web.server(), times);
    QTRY_VERIFY(fleet.feed);
    QTRY_COMPARE(web.waiting(), 0);
    web.answers = false;
    int answered = 0;
    connect(&fleet.trends, &TrendSource::trendRead, this, [&](int, const Trend &) { ++answered; });
    const auto heads = web.heads.size();
    int number = 0;
    for (int i = 0; i < 50; ++i) {
        fleet.trends.drop(number);
        number = fleet.trends.readTrend(fleet.feed->key(), {Quantity::Load}, {i, 3600000 + i}, 400);
        QTest::qWait(2);
    }
    QTRY_VERIFY(web.heads.size() > heads);
    // Six at once are what Qt has open, and the rest waits; one that ended may be among them.
    QTRY_VERIFY2(web.waiting() > 0 && web.waiting() < 4,
                 qPrintable(QString::number(web.waiting())));
    QCOMPARE(answered, 0);
    // The last one is answered.
    web.answers = true;
    const Trend trend =
        trendOf(&fleet.trends, fleet.feed->key(), {Quantity::Load}, {0, 3600000}, 400);
    QCOMPARE(trend.problem, text("Prometheus has no values of this time"));
}

/// The server is the store: the console keeps events of its UPSes, and no value.
void PromTrendsTest::nothingIsRecorded()
{
    FakeWeb web;
    QByteArray flag = "OL";
    web.onQuery = [&](const QByteArray &form) {
        if (FakeWeb::asksForStatuses(form))
            return qMakePair(200, statusOf(flag.constData()));
        return qMakePair(
            200,
            QByteArray(R"({"status":"success","data":{"resultType":"vector","result":[{"metric":{)"
                       R"("job":"nut","instance":"i","ups":"a"},"value":[1,"42"]}]}})"));
    };
    Fleet fleet(web.server(), shortTimes());
    QTRY_VERIFY(fleet.ups() && fleet.ups()->snapshot().value(Quantity::Load));
    flag = "OB";
    QTRY_VERIFY(fleet.ups()->snapshot().tokens.testFlag(StatusToken::OnBattery));
    int events = 0;
    connect(&fleet.history, &History::eventsRead, this,
            [&events](int, const QVector<Event> &all, bool) { events = int(all.size()); });
    QTRY_VERIFY((fleet.history.readEvents({}, 10), events > 0));
    const qint64 now = QDateTime::currentMSecsSinceEpoch();
    const Trend trend = trendOf(&fleet.history, fleet.ups()->id(), {Quantity::Load},
                                {now - hourMsecs, now + hourMsecs}, 400);
    QCOMPARE(trend.curves.size(), 1);
    QVERIFY(trend.curves.first().points.isEmpty());
}

void PromTrendsTest::othersAreAskedForTheRest()
{
    FakeWeb web;
    web.onQuery = [&](const QByteArray &form) {
        return qMakePair(200, isRange(form) ? matrixOf({}) : statusOf("OL"));
    };
    Fleet fleet(web.server(), shortTimes());
    UpsModel *local = fleet.site.add(text("demo@host"));
    Snapshot snapshot;
    snapshot.link = Snapshot::Link::Ok;
    snapshot.tokens = StatusToken::OnLine;
    snapshot.measure(Quantity::Load).value = 42.0;
    local->take(snapshot);
    const qint64 now = QDateTime::currentMSecsSinceEpoch();
    const TimeSpan span = {now - hourMsecs, now + hourMsecs};
    QTRY_COMPARE(trendOf(&fleet.trends, text("demo@host"), {Quantity::Load}, span, 400)
                     .curves.first()
                     .points.size(),
                 1);
    for (const QByteArray &head : std::as_const(web.heads))
        QVERIFY2(!head.contains("query_range"), head.constData());
    // Nobody else to ask is an answer too.
    PromTrends alone([](const QString &) { return nullptr; });
    QVERIFY(trendOf(&alone, text("demo@host"), {Quantity::Load}, span, 400).curves.isEmpty());
}

void PromTrendsTest::realServer_data()
{
    PrometheusServer::addRows();
}

/// Debian's servers with a past: what was measured is on the page, with its gap and its outage.
void PromTrendsTest::realServer()
{
    QFETCH(PrometheusServer::Program, program);
    PrometheusServer prometheus(program);
    const qint64 now = QDateTime::currentSecsSinceEpoch();
    QByteArray loads;
    QByteArray charges;
    QByteArray voltages;
    QByteArray flags;
    constexpr int minutes = 24 * 60;
    for (int i = minutes; i > 2; --i) {
        const qint64 at = now - i * 60;
        // Nothing is scraped for two hours; on battery for 40 minutes, five hours ago.
        if (i > 10 * 60 && i < 12 * 60)
            continue;
        const bool out = i > 5 * 60 && i <= 5 * 60 + 40;
        loads += PrometheusServer::sample("ups_load", "a",
                                          i == 600 ? 97 : 40 + 10 * std::sin(i / 100.0), at);
        charges += PrometheusServer::sample("battery_charge", "a",
                                            out        ? 60 + (i - 300)
                                            : i <= 300 ? std::min(100, 60 + (300 - i) / 3)
                                                       : 100,
                                            at);
        voltages += PrometheusServer::sample("input_voltage", "a", out ? 0 : 230 + i % 5, at);
        flags += PrometheusServer::sample("ups_status", "a", out ? 1 : 0, at, ",flag=\"OB\"");
    }
    QVERIFY2(prometheus.load("ups_load", loads) && prometheus.load("battery_charge", charges) &&
                 prometheus.load("input_voltage", voltages) &&
                 prometheus.load("ups_status", flags) && prometheus.start(),
             qPrintable(prometheus.problem()));
    PromTimes times;
    times.refresh = 500;
    Fleet fleet(prometheus.server(), times);
    QTRY_VERIFY(fleet.ups() && !fleet.ups()->snapshot().isLost());
    const TimeSpan span = {(now - minutes * 60) * 1000, now * 1000};
    const Trend trend = trendOf(&fleet.trends, fleet.feed->key(),
                                {Quantity::Load, Quantity::OutputVoltage}, span, 720);
    QCOMPARE(trend.problem, QString());
    QVERIFY(trend.curves.at(1).points.isEmpty());
    const QVector<TrendPoint> &points = trend.curves.at(0).points;
    QVERIFY2(points.size() > 600 && points.size() <= 722,
             qPrintable(QString::number(points.size())));
    // The peak of a single minute is in the band, and the hole is a hole of two hours.
    float highest = 0;
    QVector<qint64> holes;
    for (int i = 0; i < points.size(); ++i) {
        highest = std::max(highest, points.at(i).high);
        if (!points.at(i).joined && i > 0)
            holes += (points.at(i).at - points.at(i - 1).at) / 1000;
    }
    QCOMPARE(highest, 97.0F);
    QVERIFY(!holes.isEmpty());
    QVERIFY2(std::abs(holes.first() - 7200) <= 300, qPrintable(QString::number(holes.first())));
    QCOMPARE(trend.onBattery.size(), 1);
    QVERIFY(std::abs((trend.onBattery.first().to - trend.onBattery.first().from) / 1000 - 2400) <=
            240);
    // The page, and the curves beside the dials.
    fleet.show();
    QTest::mouseClick(fleet.window->findChild<QPushButton *>(text("24 h")), Qt::LeftButton);
    const auto shown = [&fleet](int lane) {
        return lane < fleet.chart()->lanes().size()
                   ? int(fleet.chart()->lanes().at(lane).points.size())
                   : 0;
    };
    QTRY_VERIFY(shown(0) > 100 && shown(1) > 100 && shown(2) > 100);
    QCOMPARE(fleet.notice(), QString());
    const QString place = qEnvironmentVariable("KIV_PAGE_IMAGES");
    if (place.isEmpty())
        return;
    for (const bool dark : {false, true}) {
        for (const QSize size : {QSize(480, 320), QSize(800, 480), QSize(1280, 800)}) {
            fleet.window->chooseDarkTheme(dark);
            fleet.window->resize(size);
            for (const char *page : {"trends", "overview", "events", "fleet"}) {
                fleet.showPage(page);
                QTest::qWait(700);
                fleet.window->grab().save(QStringLiteral("%1/prom-%2-%3-%4.png")
                                              .arg(place, text(page))
                                              .arg(size.width())
                                              .arg(dark ? text("dark") : text("light")));
            }
        }
    }
}

KIV_TEST_MAIN(PromTrendsTest)

#include "tst_promtrends.moc"
