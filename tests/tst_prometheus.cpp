// SPDX-License-Identifier: LicenseRef-all-rights-reserved

#include "httppost.h"
#include "prometheus.h"

#include "certificates.h"
#include "fakeweb.h"
#include "prometheusserver.h"
#include "testmain.h"
#include "widgetprobe.h"

#include <QtCore/QElapsedTimer>
#include <QtCore/QFile>
#include <QtCore/QProcess>
#include <QtCore/QSet>
#include <QtCore/QTemporaryDir>
#include <QtCore/QTimer>
#include <QtNetwork/QTcpSocket>

#include <cmath>
#include <ctime>
#include <functional>
#include <memory>

namespace {

QString text(const char *utf8)
{
    return QString::fromUtf8(utf8);
}

QByteArray vectorOf(const QByteArrayList &rows, const QByteArray &more = QByteArray())
{
    return "{\"status\":\"success\",\"data\":{\"resultType\":\"vector\",\"result\":[" +
           rows.join(',') + "]}" + more + "}";
}

QByteArray row(const QByteArray &labels, const QByteArray &value)
{
    return "{\"metric\":{\"job\":\"nut\"," + labels + "},\"value\":[1795295353.308,\"" + value +
           "\"]}";
}

QByteArray seconds(int ago = 0)
{
    return QByteArray::number(double(QDateTime::currentSecsSinceEpoch() - ago), 'f', 0);
}

PromTimes shortTimes()
{
    PromTimes times;
    times.refresh = 50;
    times.answer = 2000;
    times.connections.settle = 0;
    return times;
}

/// Asks a server, which answers "body", over connections that are kept.
struct Asker
{
    explicit Asker(int settle = 0, int idle = HttpPoolTimes().idle, int age = HttpPoolTimes().age)
        : pool(HttpPoolTimes{settle, idle, age})
    {
        web.onQuery = [](const QByteArray &) { return qMakePair(200, QByteArray("body")); };
    }

    void post(const std::function<void(const QString &)> &take)
    {
        constexpr int patience = 20000;
        constexpr int mostBytes = 1000;
        auto *question = new HttpPost({web.server("/x").url, "query=x", {}, {}}, patience,
                                      mostBytes, &pool, &pool);
        QObject::connect(question, &HttpPost::finished, &pool,
                         [take](int code, const QByteArray &body, const QString &problem) {
                             take(problem.isEmpty() ? QString::number(code) + QLatin1Char(' ') +
                                                          QString::fromLatin1(body)
                                                    : problem);
                         });
    }

    /// The code and the body, or the problem.
    QString ask()
    {
        QString answer;
        post([&answer](const QString &got) { answer = got; });
        return QTest::qWaitFor([&answer] { return !answer.isEmpty(); }) ? answer : QString();
    }

    int connections() const
    {
        return int(web.clients().size());
    }

    FakeWeb web;
    HttpPool pool;
};

/// What a source finds, and the latest of each UPS.
struct Watch
{
    explicit Watch(PromSource *source)
    {
        QObject::connect(source, &PromSource::found, source, [this](PromFeed *feed) {
            feeds.insert(feed->key(), feed);
            const QString key = feed->key();
            QObject::connect(feed, &UpsFeed::snapshotReady, feed,
                             [this, key](const Snapshot &snapshot) {
                                 latest[key] = snapshot;
                                 if (!snapshot.isLost())
                                     everHeard.insert(key);
                             });
            feed->start();
        });
        QObject::connect(source, &PromSource::problemChanged, source,
                         [this](const QString &what) { problem = what; });
    }
    Snapshot of(const char *key) const
    {
        return latest.value(text(key));
    }

    QHash<QString, PromFeed *> feeds;
    QHash<QString, Snapshot> latest;
    QSet<QString> everHeard;
    QString problem;
};

/// How much memory this process took at most since a moment.
class MemoryPeak
{
public:
    MemoryPeak()
        : before(kilobytes("VmRSS:"))
    {
        QFile reset(QStringLiteral("/proc/self/clear_refs"));
        if (!reset.open(QIODevice::WriteOnly) || reset.write("5") != 1)
            qFatal("the peak cannot be reset");
    }
    qint64 megabytes() const
    {
        return (kilobytes("VmHWM:") - before) / 1024;
    }

private:
    static qint64 kilobytes(const QByteArray &key)
    {
        QFile file(QStringLiteral("/proc/self/status"));
        if (!file.open(QIODevice::ReadOnly))
            qFatal("there is no account of this process");
        const QByteArray all = file.readAll();
        return all.mid(all.indexOf(key) + key.size())
            .trimmed()
            .split(' ')
            .constFirst()
            .toLongLong();
    }

    const qint64 before;
};

qint64 cpuMilliseconds()
{
    timespec now = {};
    clock_gettime(CLOCK_THREAD_CPUTIME_ID, &now);
    return qint64(now.tv_sec) * 1000 + now.tv_nsec / 1000000;
}

} // namespace

class PrometheusTest : public WidgetTest
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void answers_data();
    void answers();
    void values();
    void densestAnswers_data();
    void densestAnswers();
    void anyJson();
    void addresses_data();
    void addresses();
    void secrets();
    void dialects();
    void tellsStatesApart();
    void lostLoadsAreNoData();
    void nothingMatches_data();
    void nothingMatches();
    void exportersDown();
    void explanationsEnd();
    void missingLabels();
    void ownLabel();
    void lostServer();
    void problems_data();
    void problems();
    void refusals_data();
    void refusals();
    void hostileAnswers_data();
    void hostileAnswers();
    void formsOfAnswers_data();
    void formsOfAnswers();
    void cutAnswers();
    void keptConnections_data();
    void keptConnections();
    void keptConnectionsTakeNothing();
    void keptConnectionsSettle();
    void keptConnectionsEnd();
    void keptConnectionsAreBounded();
    void refreshesShareConnections();
    void redirections();
    void manyFlags();
    void sendsSecretsOnlyWhereTheyAreSafe();
    void labelsAreNoQueries();
    void overTls_data();
    void overTls();
    void plainWhereTlsIs_data();
    void plainWhereTlsIs();
    void realCredentials_data();
    void realCredentials();
    void realExplanations_data();
    void realExplanations();
    void thousandUpses();
    void documentedConfiguration();
    void realServer_data();
    void realServer();

private:
    std::unique_ptr<Certificates> certificates;
};

void PrometheusTest::initTestCase()
{
    certificates = std::make_unique<Certificates>();
    QVERIFY2(certificates->problem().isEmpty(), qPrintable(certificates->problem()));
}

void PrometheusTest::answers_data()
{
    QTest::addColumn<int>("code");
    QTest::addColumn<QByteArray>("body");
    QTest::addColumn<QString>("problem");
    const QByteArray error =
        R"({"status":"error","errorType":"bad_data","error":"<b>parse</b>\nerror"})";
    QTest::newRow("good") << 200 << vectorOf({row("\"ups\":\"a\"", "1")}) << "";
    QTest::newRow("empty") << 200 << vectorOf({}) << "";
    QTest::newRow("wrong user") << 401 << QByteArray("Unauthorized")
                                << "it answers HTTP 401: Unauthorized";
    QTest::newRow("query") << 400 << error << "it refuses the query: <b>parse</b> error";
    QTest::newRow("long") << 400 << R"({"status":"error","error":")" + QByteArray(300, 'x') + "\"}"
                          << QString(199, QLatin1Char('x')) + QString::fromUtf8("…");
    QTest::newRow("evaluation") << 422 << error << "it refuses the query";
    QTest::newRow("time") << 503 << error << "it refuses the query";
    QTest::newRow("http to https")
        << 400 << QByteArray("Client sent an HTTP request") << "it answers HTTP 400";
    QTest::newRow("no such page") << 404 << QByteArray("404 page not found")
                                  << "it answers HTTP 404";
    QTest::newRow("page") << 200 << QByteArray("<html>") << "not understood";
    QTest::newRow("nothing") << 200 << QByteArray() << "not understood";
    QTest::newRow("status") << 200 << error << "not understood";
    QTest::newRow("scalar")
        << 200
        << QByteArray(R"({"status":"success","data":{"resultType":"scalar","result":[1,"2"]}})")
        << "not understood";
    QTest::newRow("number for text")
        << 200 << vectorOf({R"({"metric":{},"value":[1,2]})"}) << "not understood";
    QTest::newRow("half a pair") << 200 << vectorOf({R"({"metric":{},"value":[1]})"})
                                 << "not understood";
    QTest::newRow("no value") << 200 << vectorOf({R"({"metric":{}})"}) << "not understood";
    QTest::newRow("deep") << 200 << QByteArray(100000, '[') << "not understood";
}

void PrometheusTest::answers()
{
    QFETCH(int, code);
    QFETCH(QByteArray, body);
    QFETCH(QString, problem);
    const PromAnswer answer = PromAnswer::parse(code, body);
    QCOMPARE(answer.succeeded, problem.isEmpty());
    QVERIFY2(answer.problem.contains(problem), qPrintable(answer.problem));
    QVERIFY(!answer.problem.contains(QLatin1Char('\n')));
    if (!answer.succeeded)
        QVERIFY(answer.series.isEmpty());
}

void PrometheusTest::values()
{
    const PromAnswer answer = PromAnswer::parse(
        200, R"({"status":"success","warnings":["remote_read: <i>refused</i>"],"data":{"resultType":
        "matrix","result":[{"metric":{"ups":"a\u202eb"},"values":[[1,"34.8"],[2.5,"NaN"],[3,"+Inf"],
        [4,"-Inf"],[5,"1e-7"]]}]}})",
        {text("job"), text("ups")});
    QVERIFY2(answer.succeeded, qPrintable(answer.problem));
    QCOMPARE(answer.warnings, text("remote_read: <i>refused</i>"));
    const PromSeries series = answer.series.constFirst();
    QCOMPARE(series.labels, QVector<QString>({QString(), text("ab")}));
    QCOMPARE(series.samples.at(0), QPointF(1, 34.8));
    QVERIFY(std::isnan(series.samples.at(1).y()));
    QVERIFY(std::isinf(series.samples.at(2).y()) && series.samples.at(2).y() > 0);
    QVERIFY(std::isinf(series.samples.at(3).y()) && series.samples.at(3).y() < 0);
    QCOMPARE(series.samples.at(4).y(), 1e-7);
}

/// Whatever an answer of the largest size has, it takes some times its size here.
void PrometheusTest::densestAnswers()
{
    QFETCH(QByteArray, part);
    QFETCH(int, most);
    QByteArray body = R"({"status":"success","data":{"resultType":"vector","result":[)";
    body.reserve(PromAnswer::maxBytes);
    for (int i = 0; i < most && body.size() + part.size() + 10 < PromAnswer::maxBytes; ++i)
        body += part;
    body += "[]]}}";
    const MemoryPeak peak;
    const PromAnswer answer = PromAnswer::parse(200, body);
    QVERIFY(!answer.succeeded);
    qInfo("%s: at most %lld MB more", qPrintable(answer.problem),
          static_cast<long long>(peak.megabytes()));
    QVERIFY2(peak.megabytes() < 150, qPrintable(QString::number(peak.megabytes())));
}

void PrometheusTest::densestAnswers_data()
{
    QTest::addColumn<QByteArray>("part");
    QTest::addColumn<int>("most");
    constexpr int all = PromAnswer::maxBytes;
    for (const char *part : {"[],", "{},", "[0],", "{\"\":{}},", "0,", "\"\",", "\"\xc3\xa9\",",
                             ":", "\"\"", "9", "a", "\xc3\xa9"})
        QTest::newRow(part) << QByteArray(part) << all;
    // As many as are read at all.
    constexpr int few = PromAnswer::maxParts / 4;
    for (const char *part : {"[],", "[0],", "{\"\":{}},", "[[1,\"2\"]],"})
        QTest::addRow("few %s", part) << QByteArray(part) << few;
}

/// Damaged answers: each gets one, in bounded memory.
void PrometheusTest::anyJson()
{
    const QByteArray good = vectorOf(
        {row("\"ups\":\"a\",\"flag\":\"OL\"", "1"), row("\"ups\":\"b\",\"flag\":\"OB\"", "NaN")},
        ",\"warnings\":[\"x\"]");
    quint32 seed = 7;
    const auto random = [&seed](int below) {
        seed = seed * 1664525U + 1013904223U;
        return int((seed >> 8) % quint32(below));
    };
    int refused = 0;
    for (int round = 0; round < 20000; ++round) {
        QByteArray body = good;
        for (int change = 0; change <= random(4); ++change) {
            const int at = random(int(body.size()));
            switch (random(4)) {
            case 0:
                body[at] = char(random(256));
                break;
            case 1:
                body.remove(at, random(30));
                break;
            case 2:
                body.insert(at, body.mid(random(int(body.size())), random(60)));
                break;
            default:
                body.insert(at, "{\"metric\":[");
            }
            if (body.isEmpty())
                body = "x";
        }
        const PromAnswer answer = PromAnswer::parse(random(8) == 0 ? 400 : 200, body);
        refused += !answer.succeeded;
        QVERIFY(answer.problem.size() < 500);
        QVERIFY(answer.series.size() < 1000);
    }
    QVERIFY(refused > 5000 && refused < 20000);
}

void PrometheusTest::addresses_data()
{
    QTest::addColumn<QString>("address");
    QTest::addColumn<bool>("good");
    for (const char *address : {"http://host", "https://host:9090", "https://host/prefix/to",
                                "http://[::1]:9090/", "https://10.0.0.1"})
        QTest::newRow(address) << text(address) << true;
    for (const char *address : {"", "host", "ftp://host", "http://", "http://u:p@host",
                                "http://host?query=1", "file:///etc/passwd", "http://host:x"})
        QTest::newRow(address) << text(address) << false;
}

void PrometheusTest::addresses()
{
    QFETCH(QString, address);
    QFETCH(bool, good);
    QString error;
    QCOMPARE(PromServer::parseUrl(address, &error).has_value(), good);
    QCOMPARE(error.isEmpty(), good);
}

void PrometheusTest::secrets()
{
    QString error;
    PromServer basic;
    QVERIFY(basic.takeSecrets("# me\nuser = viewer\npassword = a = b\n", text("f"), &error));
    QCOMPARE(basic.password, text("a = b"));
    PromServer bearer;
    QVERIFY(bearer.takeSecrets("token = hunter2\n", text("f"), &error));
    for (const char *wrong : {"", "user = x\n", "password = hunter2\n", "hunter2\n",
                              "token = hunter2\nuser = x\npassword = y\n", "secret = hunter2\n"}) {
        PromServer server;
        QVERIFY(!server.takeSecrets(wrong, text("f"), &error));
        QVERIFY2(error.startsWith(text("f:")) && !error.contains(text("hunter2")),
                 qPrintable(error));
    }
}

void PrometheusTest::dialects()
{
    for (const QString &name : PromDialect::names()) {
        FakeWeb web;
        const PromDialect *dialect = PromDialect::find(name);
        web.onQuery = [&](const QByteArray &query) {
            const QByteArray ups =
                '"' + dialect->upsLabel.toLatin1() + "\":\"a\",\"instance\":\"i\"";
            if (FakeWeb::asksForStatuses(query))
                return qMakePair(
                    200, vectorOf({row(ups + ",\"" + dialect->flagLabel.toLatin1() + "\":\"OB\"",
                                       seconds())}));
            return qMakePair(200, vectorOf({row(ups, name == text("nut") ? "0.42" : "42")}));
        };
        PromServer server = web.server();
        server.dialect = name;
        PromSource source(server, shortTimes());
        Watch watch(&source);
        source.start();
        QTRY_VERIFY(watch.of("a@i (nut)").tokens.testFlag(StatusToken::OnBattery));
        if (!dialect->values.isEmpty())
            QTRY_COMPARE(watch.of("a@i (nut)").value(Quantity::Load), std::optional<double>(42.0));
    }
    QVERIFY(!PromDialect::find(text("other")));
}

void PrometheusTest::tellsStatesApart()
{
    FakeWeb web;
    QByteArrayList statuses;
    QByteArray load = "33";
    const auto of = [](const char *ups, const char *flag, const QByteArray &value) {
        return row("\"instance\":\"i\",\"ups\":\"" + QByteArray(ups) + "\",\"flag\":\"" + flag +
                       '"',
                   value);
    };
    web.onQuery = [&](const QByteArray &query) {
        if (FakeWeb::asksForStatuses(query))
            return qMakePair(200, vectorOf(statuses));
        return qMakePair(200, vectorOf({row("\"instance\":\"i\",\"ups\":\"a\"", load)}));
    };
    PromSource source(web.server(), shortTimes());
    Watch watch(&source);
    statuses = {of("a", "OL", seconds()), of("a", "CHRG", seconds()), of("b", "OB", seconds(500)),
                row("\"instance\":\"i\",\"ups\":\"c\"", "0")};
    source.start();
    QTRY_VERIFY(watch.of("a@i (nut)").tokens.testFlag(StatusToken::Charging));
    QTRY_COMPARE(watch.of("a@i (nut)").value(Quantity::Load), std::optional<double>(33.0));
    QCOMPARE(watch.of("b@i (nut)").reason, text("no fresh data for 8 min"));
    QCOMPARE(watch.of("c@i (nut)").reason, text("its exporter cannot be scraped"));
    // What was lost stays lost when the loads come.
    for (const char *key : {"b@i (nut)", "c@i (nut)"})
        QVERIFY2(!watch.everHeard.contains(text(key)), key);
    // NaN is no data, and no zero.
    load = "NaN";
    QTRY_VERIFY(!watch.of("a@i (nut)").value(Quantity::Load));
    QVERIFY(!watch.of("a@i (nut)").isLost());
    // One that is gone is remembered.
    statuses = {of("b", "OL", seconds())};
    QTRY_COMPARE(watch.of("a@i (nut)").reason, text("not monitored any more"));
    QTRY_VERIFY(!watch.of("b@i (nut)").isLost());
    QCOMPARE(watch.feeds.size(), 3);
}

/// A load that is not there any more, or cannot be read, is no data.
void PrometheusTest::lostLoadsAreNoData()
{
    FakeWeb web;
    QPair<int, QByteArray> loads = {200,
                                    vectorOf({row("\"instance\":\"i\",\"ups\":\"a\"", "33"),
                                              row("\"instance\":\"i\",\"ups\":\"b\"", "0.125")})};
    web.onQuery = [&](const QByteArray &query) {
        if (FakeWeb::asksForStatuses(query))
            return qMakePair(
                200,
                vectorOf({row("\"instance\":\"i\",\"ups\":\"a\",\"flag\":\"OL\"", seconds()),
                          row("\"instance\":\"i\",\"ups\":\"b\",\"flag\":\"OL\"", seconds())}));
        return loads;
    };
    PromSource source(web.server(), shortTimes());
    Watch watch(&source);
    source.start();
    QTRY_COMPARE(watch.of("a@i (nut)").value(Quantity::Load), std::optional<double>(33.0));
    QTRY_COMPARE(watch.of("b@i (nut)").value(Quantity::Load), std::optional<double>(0.125));
    QCOMPARE(watch.of("b@i (nut)").variables.value(text("ups.load")), text("0.125"));
    loads.second = vectorOf({row("\"instance\":\"i\",\"ups\":\"b\"", "4")});
    QTRY_VERIFY(!watch.of("a@i (nut)").value(Quantity::Load));
    QTRY_COMPARE(watch.of("b@i (nut)").value(Quantity::Load), std::optional<double>(4.0));
    QVERIFY(watch.problem.isEmpty());
    loads = {422, R"({"status":"error","error":"too many samples"})"};
    QTRY_COMPARE(watch.problem,
                 text("the loads cannot be read: it refuses the query: too many samples"));
    QVERIFY(!watch.of("b@i (nut)").value(Quantity::Load));
    QVERIFY(!watch.of("b@i (nut)").isLost());
}

void PrometheusTest::nothingMatches_data()
{
    QTest::addColumn<QByteArrayList>("jobs"); // and metrics
    QTest::addColumn<QByteArrayList>("metrics");
    QTest::addColumn<QString>("why");
    QTest::addColumn<int>("line"); // of the job, or of the dialect
    const auto rows = [](const char *name, const QByteArrayList &jobs,
                         const QByteArrayList &metrics, const char *why, int line = 12) {
        QTest::newRow(name) << jobs << metrics << text(why) << line;
    };
    rows("no targets", {}, {}, ": the server has no targets");
    rows("other jobs", {"node up", "b up", "c up", "d up", "e up", "f up"}, {},
         ": there is no such job; the jobs are b, c, d, e and 2 more");
    rows("UPSes elsewhere", {"node up", "power up", "power network_ups_tools_ups_status"}, {},
         ": there is no such job, but UPSes in the job power");
    rows("no flag", {"nut up", "nut network_ups_tools_ups_status"}, {}, ": no status flag is set");
    rows("another dialect", {"nut up", "nut nut_ups_status"}, {},
         ": the job has nut_ups_status, which is the dialect nut", 13);
    rows("unknown dialect", {"nut up"}, {"apc_ups_load", "apc_ups_Status", "battery_charge"},
         ": the job has no status of the known dialects (network_ups_tools, nut, nutwg); it has "
         "apc_ups_Status",
         13);
    rows("no status", {"nut up"}, {"apc_ups_load", "battery_charge"},
         ": the job has no status of the known dialects (network_ups_tools, nut, nutwg); it has "
         "apc_ups_load, battery_charge",
         13);
    rows("no UPS", {"nut up"}, {},
         ": the job has no status of the known dialects (network_ups_tools, nut, nutwg); none of "
         "its metrics is named after a UPS");
    rows("refused", {"refused"}, {}, "");
}

/// The problem says what was asked, where that stands, and what there is instead.
void PrometheusTest::nothingMatches()
{
    QFETCH(QByteArrayList, jobs);
    QFETCH(QByteArrayList, metrics);
    QFETCH(QString, why);
    QFETCH(int, line);
    FakeWeb web;
    web.onQuery = [&](const QByteArray &query) {
        QByteArrayList rows;
        if (query.contains("count by (job, __name__)")) {
            if (jobs.value(0) == "refused")
                return qMakePair(422, QByteArray());
            for (const QByteArray &one : jobs)
                rows += R"({"metric":{"job":")" + one.split(' ').value(0) + R"(","__name__":")" +
                        one.split(' ').value(1) + R"("},"value":[1,"3"]})";
        } else if (query.contains("count by (__name__)")) {
            for (const QByteArray &metric : metrics)
                rows += R"({"metric":{"__name__":")" + metric + R"("},"value":[1,"3"]})";
        }
        return qMakePair(200, vectorOf(rows));
    };
    PromServer server = web.server();
    server.place = text("site.ini:12");
    server.dialectPlace = text("site.ini:13");
    PromSource source(server, shortTimes());
    Watch watch(&source);
    source.start();
    QTRY_COMPARE(
        watch.problem,
        text("nothing matches network_ups_tools_ups_status{job=\"nut\"} (site.ini:%1)").arg(line) +
            why);
    QVERIFY(watch.feeds.isEmpty());
}

/// Exporters that cannot be scraped neither are a match nor say that nothing matches.
void PrometheusTest::exportersDown()
{
    FakeWeb web;
    QByteArray exporters = "2";
    QByteArray unscraped = "1";
    bool works = false;
    web.onQuery = [&](const QByteArray &query) {
        QByteArrayList rows;
        if (query.contains("count by (job, __name__)")) {
            if (!query.contains("(up{job=\"nut\"} == 0)"))
                return qMakePair(400, QByteArray());
            rows = {row("\"__name__\":\"up\"", exporters)};
            if (unscraped != "0")
                rows += row("\"part\":\"unscraped\"", unscraped);
            if (unscraped != exporters)
                rows += row("\"__name__\":\"nut_ups_status\"", "8");
        } else if (FakeWeb::asksForStatuses(query)) {
            if (unscraped != "0")
                rows = {row("\"instance\":\"i\",\"ups\":\"a\"", "0")};
            if (works)
                rows += row("\"instance\":\"i\",\"ups\":\"b\",\"flag\":\"OL\"", seconds());
        }
        return qMakePair(200, vectorOf(rows));
    };
    PromSource source(web.server(), shortTimes());
    Watch watch(&source);
    source.start();
    const QString why = text("nothing matches network_ups_tools_ups_status{job=\"nut\"}: the job "
                             "has nut_ups_status, which is the dialect nut");
    QTRY_COMPARE(watch.of("a@i (nut)").reason, text("its exporter cannot be scraped"));
    QTRY_COMPARE(watch.problem, why);
    // Where none can be scraped, nobody knows what they would say.
    unscraped = "2";
    QTRY_VERIFY(watch.problem.isEmpty());
    QCOMPARE(watch.of("a@i (nut)").reason, text("its exporter cannot be scraped"));
    // Where all can, it is explained at once.
    unscraped = "0";
    QTRY_COMPARE(watch.problem, why);
    unscraped = "1";
    works = true;
    QTRY_VERIFY(watch.problem.isEmpty());
    QTRY_VERIFY(!watch.of("b@i (nut)").isLost());
}

/// What explained that nothing matches is gone as soon as something does.
void PrometheusTest::explanationsEnd()
{
    FakeWeb web;
    bool empty = true;
    web.onQuery = [&](const QByteArray &query) {
        const bool statuses = FakeWeb::asksForStatuses(query) && !empty;
        const QByteArray status =
            row("\"instance\":\"i\",\"ups\":\"a\",\"flag\":\"OL\"", seconds());
        return qMakePair(200, vectorOf(statuses ? QByteArrayList{status} : QByteArrayList{}));
    };
    PromSource source(web.server(), shortTimes());
    Watch watch(&source);
    source.start();
    QTRY_COMPARE(watch.problem, text("nothing matches network_ups_tools_ups_status{job=\"nut\"}: "
                                     "the server has no targets"));
    empty = false;
    QTRY_VERIFY(watch.problem.isEmpty());
    QTRY_VERIFY(!watch.of("a@i (nut)").isLost());
    empty = true;
    QTRY_VERIFY(watch.problem.startsWith(text("nothing matches")));
    QTRY_COMPARE(watch.of("a@i (nut)").reason, text("not monitored any more"));
}

/// UPSes that no label tells apart are shown as one, which is said.
void PrometheusTest::missingLabels()
{
    FakeWeb web;
    bool several = true;
    web.onQuery = [&](const QByteArray &query) {
        if (FakeWeb::asksForStatuses(query))
            return qMakePair(200, vectorOf({row("\"instance\":\"i\",\"flag\":\"OL\"", seconds())}));
        if (query.contains("count by (instance, flag)") && query.contains(",ups=\"\"} == 1) > 1"))
            return qMakePair(200, vectorOf(several ? QByteArrayList{row("\"instance\":\"i\"", "2")}
                                                   : QByteArrayList{}));
        return qMakePair(200, vectorOf({}));
    };
    PromServer server = web.server();
    server.labelPlace = text("site.ini:7");
    PromSource source(server, shortTimes());
    Watch watch(&source);
    source.start();
    QTRY_COMPARE(watch.problem,
                 text("several UPSes have no label 'ups' and are shown as one, at i (site.ini:7)"));
    QVERIFY(!watch.of("i (nut)").isLost());
    several = false;
    QTRY_VERIFY(watch.problem.isEmpty());
}

/// Another label can name the UPSes.
void PrometheusTest::ownLabel()
{
    FakeWeb web;
    QByteArrayList asked;
    web.onQuery = [&](const QByteArray &query) {
        asked += query;
        const QByteArray ups = "\"instance\":\"i\",\"rack\":\"r1\"";
        if (FakeWeb::asksForStatuses(query))
            return qMakePair(200, vectorOf({row(ups + ",\"flag\":\"OL\"", seconds())}));
        return qMakePair(200, vectorOf({row(ups, "42")}));
    };
    PromServer server = web.server();
    server.upsLabel = text("rack");
    PromSource source(server, shortTimes());
    Watch watch(&source);
    source.start();
    QTRY_COMPARE(watch.of("r1@i (nut)").value(Quantity::Load), std::optional<double>(42.0));
    QCOMPARE(watch.feeds.value(text("r1@i (nut)"))->selector(),
             text(R"(job="nut",instance="i",rack="r1")"));
    for (const QByteArray &query : std::as_const(asked))
        QVERIFY2(query.contains("rack") && !query.contains("ups,"), query.constData());
}

/// A server that is lost says so with each of its UPSes; one of them alone does not.
void PrometheusTest::lostServer()
{
    FakeWeb web;
    web.onQuery = [](const QByteArray &query) {
        QByteArrayList rows;
        if (FakeWeb::asksForStatuses(query))
            rows = {row("\"instance\":\"i\",\"ups\":\"a\",\"flag\":\"OL\"", seconds()),
                    row("\"instance\":\"i\",\"ups\":\"b\"", "0")};
        return qMakePair(200, vectorOf(rows));
    };
    PromServer server = web.server("/prefix/");
    PromSource source(server, shortTimes());
    QCOMPARE(source.name(), QStringLiteral("http://127.0.0.1:%1/prefix").arg(web.serverPort()));
    Watch watch(&source);
    source.start();
    QTRY_VERIFY(!watch.of("a@i (nut)").isLost());
    QTRY_COMPARE(watch.of("b@i (nut)").reason, text("its exporter cannot be scraped"));
    for (const char *key : {"a@i (nut)", "b@i (nut)"}) {
        QCOMPARE(watch.of(key).server, source.name());
        QVERIFY(!watch.of(key).isServerLost);
    }
    web.vanish();
    QTRY_VERIFY(watch.of("a@i (nut)").isServerLost);
    QVERIFY(watch.of("b@i (nut)").isServerLost);
    QCOMPARE(watch.of("a@i (nut)").server, source.name());
    QVERIFY(watch.of("a@i (nut)").isLost());
    server.name = text("Prometheus of the hall");
    QCOMPARE(PromSource(server).name(), server.name);
}

void PrometheusTest::problems_data()
{
    QTest::addColumn<QString>("what");
    QTest::addColumn<QString>("problem");
    QTest::newRow("refused") << "code 401"
                             << "it wants a user or a token (HTTP 401)";
    QTest::newRow("forbidden") << "code 403"
                               << "it refuses access (HTTP 403)";
    QTest::newRow("html") << "html"
                          << "not understood";
    QTest::newRow("silence") << "silence"
                             << "no whole answer in time";
    QTest::newRow("gone") << "gone"
                          << "connection refused";
    QTest::newRow("closed") << "code 000"
                            << "it closes the connection without an answer";
    QTest::newRow("redirect") << "code 302"
                              << "HTTP 302";
    QTest::newRow("warning") << "warning"
                             << "may be incomplete: half is missing";
}

void PrometheusTest::problems()
{
    QFETCH(QString, what);
    QFETCH(QString, problem);
    FakeWeb web;
    QPair<int, QByteArray> now;
    const QByteArray status = row("\"instance\":\"i\",\"ups\":\"a\",\"flag\":\"OL\"", seconds());
    const QPair<int, QByteArray> good = {200, vectorOf({status})};
    now = good;
    web.onQuery = [&](const QByteArray &) { return now; };
    PromTimes times = shortTimes();
    times.answer = 500;
    PromSource source(web.server(), times);
    Watch watch(&source);
    source.start();
    QTRY_VERIFY(!watch.of("a@i (nut)").isLost());
    if (what.startsWith(text("code")))
        now = {what.right(3).toInt(), "no"};
    else if (what == text("html"))
        now = {200, "<html>"};
    else if (what == text("silence"))
        web.answers = false;
    else if (what == text("warning"))
        now = {200, vectorOf({status}, ",\"warnings\":[\"half is missing\"]")};
    else
        web.vanish();
    QTRY_VERIFY2(watch.problem.contains(problem), qPrintable(watch.problem));
    if (what == text("warning")) {
        QVERIFY(!watch.of("a@i (nut)").isLost());
        return;
    }
    // No frozen values.
    QTRY_VERIFY(watch.of("a@i (nut)").isLost());
    if (what == text("gone"))
        return;
    web.answers = true;
    now = good;
    QTRY_VERIFY(!watch.of("a@i (nut)").isLost());
    QTRY_VERIFY(watch.problem.isEmpty());
}

void PrometheusTest::refusals_data()
{
    QTest::addColumn<QByteArray>("secrets");
    QTest::addColumn<QString>("place");
    QTest::addColumn<int>("code");
    QTest::addColumn<QString>("problem");
    const auto row = [](const char *name, const char *secrets, const char *place, int code,
                        const char *problem) {
        QTest::newRow(name) << QByteArray(secrets) << text(place) << code << text(problem);
    };
    row("user", "user = a\npassword = b\n", "f:1", 401, "it refuses this user (HTTP 401)");
    row("user's rights", "user = a\npassword = b\n", "", 403, "it refuses this user (HTTP 403)");
    row("token", "token = a\n", "", 401, "it refuses this token (HTTP 401)");
    row("nobody", "", "", 401,
        "it wants a user or a token (HTTP 401): give it with --prometheus-auth");
    row("nobody in the file", "", "site.ini:7", 401,
        "it wants a user or a token (HTTP 401): set 'auth' in its section (site.ini:7)");
    row("nobody may", "", "site.ini:7", 403, "it refuses access (HTTP 403)");
}

/// It says what was refused, or what is wanted and where to give it.
void PrometheusTest::refusals()
{
    QFETCH(QByteArray, secrets);
    QFETCH(QString, place);
    QFETCH(int, code);
    QFETCH(QString, problem);
    FakeWeb web;
    web.onQuery = [&](const QByteArray &) { return qMakePair(code, QByteArray("no")); };
    PromServer server = web.server();
    server.place = place;
    QString error;
    QVERIFY2(secrets.isEmpty() || server.takeSecrets(secrets, text("f"), &error),
             qPrintable(error));
    PromSource source(server, shortTimes());
    Watch watch(&source);
    source.start();
    QTRY_COMPARE(watch.problem, problem);
}

void PrometheusTest::hostileAnswers_data()
{
    QTest::addColumn<QByteArray>("begin");
    QTest::addColumn<QByteArray>("rest"); // for ever
    QTest::addColumn<int>("pause");       // in milliseconds
    QTest::addColumn<QString>("problem");
    const QByteArray ok = "HTTP/1.1 200 OK\r\n";
    const QByteArray chunks = ok + "Transfer-Encoding: chunked\r\n\r\n";
    const QByteArray json = R"({"status":"success","data":{"resultType":"vector","result":[)";
    const auto row = [](const char *name, const QByteArray &begin, const QByteArray &rest,
                        int pause, const char *problem) {
        QTest::newRow(name) << begin << rest << pause << text(problem);
    };
    const char *const longHead = "its answer has too long a head";
    const char *const noHttp = "it does not answer as an HTTP server";
    const char *const tooLong = "its answer is too long";
    row("no status", "", QByteArray(8192, 'H'), 0, longHead);
    row("another protocol", "220 mail\r\n\r\n", "x", 0, noHttp);
    row("no code", "HTTP/1.1 2x0 OK\r\n\r\n", "x", 0, noHttp);
    row("no end of a header", ok + "X: ", QByteArray(8192, 'x'), 0, longHead);
    row("no end of headers", ok, "X-Header: " + QByteArray(500, 'x') + "\r\n", 0, longHead);
    row("no end of answers", "", "HTTP/1.1 100 Continue\r\n\r\n", 0, longHead);
    row("no end", ok + "\r\n" + json, QByteArray(8192, ' '), 0, tooLong);
    row("long length", ok + "Content-Length: 99999999999\r\n\r\n", "x", 50, tooLong);
    row("length that is none", ok + "Content-Length: -1\r\n\r\n", "x", 50, noHttp);
    row("compressed", ok + "Content-Encoding: gzip\r\n\r\n", "x", 0,
        "its answer is compressed, though nobody asked for that");
    row("no end of chunks", chunks, "2000\r\n" + QByteArray(8192, ' ') + "\r\n", 0, tooLong);
    row("no end of a chunk's size", chunks, QByteArray(8192, '0'), 0, noHttp);
    row("long chunk", chunks + "7fffffff\r\n", "x", 50, tooLong);
    row("size of a chunk that is none", chunks + "-1\r\n", "x", 50, noHttp);
    row("no end of a chunk's line", chunks + "1\r\nx", "x", 50, noHttp);
    row("slow headers", ok, "X: y\r\n", 50, "it gives no whole answer in time");
    row("slow body", ok + "\r\n" + json, " ", 50, "it gives no whole answer in time");
    row("slow chunks", chunks, "1\r\n \r\n", 50, "it gives no whole answer in time");
}

/// A server that never ends ends nothing here: there is a reason, in bounded time and memory, and
/// the next answer counts.
void PrometheusTest::hostileAnswers()
{
    QFETCH(QByteArray, begin);
    QFETCH(QByteArray, rest);
    QFETCH(int, pause);
    QFETCH(QString, problem);
    FakeWeb web;
    const QByteArray status = row("\"instance\":\"i\",\"ups\":\"a\",\"flag\":\"OL\"", seconds());
    web.onQuery = [&](const QByteArray &) { return qMakePair(200, vectorOf({status})); };
    PromTimes times = shortTimes();
    times.refresh = 1000;
    times.answer = 800;
    PromSource source(web.server(), times);
    Watch watch(&source);
    source.start();
    QTRY_VERIFY(!watch.of("a@i (nut)").isLost());
    const MemoryPeak peak;
    web.onRaw = [&](QTcpSocket *socket) {
        socket->write(begin);
        const auto more = [=] {
            // No more than a client takes.
            if (socket->bytesToWrite() < rest.size())
                socket->write(rest);
        };
        if (pause == 0) {
            connect(socket, &QTcpSocket::bytesWritten, socket, more);
        } else {
            auto *timer = new QTimer(socket);
            connect(timer, &QTimer::timeout, socket, more);
            timer->start(pause);
        }
        more();
    };
    QTRY_VERIFY(watch.of("a@i (nut)").isLost());
    QVERIFY2(!watch.problem.isEmpty() && watch.problem.contains(problem),
             qPrintable(watch.problem));
    qInfo("%s: at most %lld MB more", qPrintable(watch.problem),
          static_cast<long long>(peak.megabytes()));
    QVERIFY2(peak.megabytes() < 60, qPrintable(QString::number(peak.megabytes())));
    web.onRaw = nullptr;
    QTRY_VERIFY(!watch.of("a@i (nut)").isLost());
    QTRY_VERIFY(watch.problem.isEmpty());
}

/// Answers in forms that servers may choose.
void PrometheusTest::formsOfAnswers()
{
    QFETCH(QByteArray, head);
    QFETCH(bool, chunked);
    FakeWeb web;
    const QByteArray body =
        vectorOf({row("\"instance\":\"i\",\"ups\":\"a\",\"flag\":\"OL\"", seconds())});
    QByteArray sent = body;
    if (chunked) {
        sent.clear();
        for (int i = 0; i < body.size(); i += 10) {
            const QByteArray part = body.mid(i, 10);
            sent += QByteArray::number(part.size(), 16).toUpper() + ";x=y\r\n" + part + "\r\n";
        }
        sent += "0\r\n\r\n";
    }
    web.onRaw = [&](QTcpSocket *socket) {
        const QByteArray length = QByteArray::number(body.size());
        // Byte by byte, as the network may deliver it.
        for (const char c : QByteArray(head).replace("LENGTH", length) + sent) {
            socket->write(&c, 1);
            socket->flush();
        }
        if (head.contains("lose"))
            socket->disconnectFromHost();
    };
    PromTimes times = shortTimes();
    times.refresh = 500;
    PromSource source(web.server(), times);
    Watch watch(&source);
    source.start();
    QTRY_VERIFY2(!watch.feeds.isEmpty(), qPrintable(watch.problem));
    QTRY_VERIFY(!watch.of("a@i (nut)").isLost());
    QVERIFY(web.heads.first().contains("Accept-Encoding: identity"));
    QVERIFY(web.heads.first().contains("Host: 127.0.0.1:"));
}

void PrometheusTest::formsOfAnswers_data()
{
    QTest::addColumn<QByteArray>("head");
    QTest::addColumn<bool>("chunked");
    QTest::newRow("length") << QByteArray("HTTP/1.1 200 OK\r\ncontent-length:LENGTH\r\n\r\n")
                            << false;
    QTest::newRow("to the end") << QByteArray("HTTP/1.0 200 OK\r\nConnection: Close\r\n\r\n")
                                << false;
    QTest::newRow("chunks") << QByteArray("HTTP/1.1 200 OK\r\nTRANSFER-ENCODING: Chunked\r\n\r\n")
                            << true;
    QTest::newRow("after others")
        << QByteArray(
               "HTTP/1.1 100 Continue\r\n\r\nHTTP/1.1 103 Early Hints\r\nX: y\r\n\r\n"
               "HTTP/1.1 200\r\nContent-Encoding: identity\r\nContent-Length: LENGTH\r\n\r\n")
        << false;
}

/// An answer that ends too early is none.
void PrometheusTest::cutAnswers()
{
    FakeWeb web;
    web.onRaw = [&](QTcpSocket *socket) {
        socket->write("HTTP/1.1 200 OK\r\nContent-Length: 100\r\n\r\n" + vectorOf({}));
        socket->disconnectFromHost();
    };
    PromSource source(web.server(), shortTimes());
    Watch watch(&source);
    source.start();
    QTRY_COMPARE(watch.problem, text("it closes the connection within its answer"));
}

/// The next question goes over the same connection only where an answer has surely ended, and each
/// gets its own answer.
void PrometheusTest::keptConnections()
{
    QFETCH(QByteArray, head);
    QFETCH(QByteArray, rest);
    QFETCH(bool, kept);
    Asker asker;
    asker.web.onRaw = [&](QTcpSocket *socket) {
        const QByteArray body = "answer " + QByteArray::number(asker.web.heads.size());
        QByteArray all = head + rest;
        all.replace("LENGTH", QByteArray::number(body.size()));
        all.replace("SIZE", QByteArray::number(body.size(), 16));
        socket->write(all.replace("BODY", body));
    };
    QCOMPARE(asker.ask(), text("200 answer 1"));
    QCOMPARE(asker.pool.count(), kept ? 1 : 0);
    QCOMPARE(asker.ask(), text("200 answer 2"));
    QCOMPARE(asker.connections(), kept ? 1 : 2);
}

void PrometheusTest::keptConnections_data()
{
    QTest::addColumn<QByteArray>("head");
    QTest::addColumn<QByteArray>("rest");
    QTest::addColumn<bool>("kept");
    const QByteArray ok = "HTTP/1.1 200 OK\r\n";
    const QByteArray length = "Content-Length: LENGTH\r\n";
    const QByteArray chunks = "Transfer-Encoding: chunked\r\n";
    const QByteArray body = "\r\nBODY";
    const QByteArray parts = "\r\nSIZE\r\nBODY\r\n0\r\n";
    const auto row = [](const char *name, const QByteArray &head, const QByteArray &rest,
                        bool kept) { QTest::newRow(name) << head << rest << kept; };
    row("length", ok + length, body, true);
    row("chunks", ok + chunks, parts + "\r\n", true);
    row("kept by name", ok + "Connection: Keep-Alive\r\n" + length, body, true);
    row("after others", "HTTP/1.1 100 Continue\r\n\r\n" + ok + length, body, true);
    row("closed by name", ok + "Connection: close\r\n" + length, body, false);
    row("closed among others", ok + "Connection: x, close\r\n" + length, body, false);
    row("old protocol", "HTTP/1.0 200 OK\r\n" + length, body, false);
    row("two lengths", ok + "Content-Length: 1\r\n" + length, body, false);
    row("length and chunks", ok + length + chunks, parts + "\r\n", false);
    row("chunks and length", ok + chunks + length, parts + "\r\n", false);
    row("chunks twice", ok + chunks + chunks, parts + "\r\n", false);
    row("trailer", ok + chunks, parts + "X: y\r\n\r\n", false);
    row("no end of chunks", ok + chunks, parts, false);
    const QByteArray other = ok + "Content-Length: 5\r\n\r\nother";
    row("another answer", ok + length, body + other, false);
    row("another behind chunks", ok + chunks, parts + "\r\n" + other, false);
}

/// What comes while nobody asks is no answer to the next question.
void PrometheusTest::keptConnectionsTakeNothing()
{
    Asker asker;
    QCOMPARE(asker.ask(), text("200 body"));
    QCOMPARE(asker.pool.count(), 1);
    asker.web.clients().first()->write("HTTP/1.1 200 OK\r\nContent-Length: 5\r\n\r\nother");
    QTRY_COMPARE(asker.pool.count(), 0);
    QCOMPARE(asker.ask(), text("200 body"));
    QCOMPARE(asker.connections(), 2);
}

/// What comes late must not meet the next question: a connection rests before it is used again.
void PrometheusTest::keptConnectionsSettle()
{
    constexpr int hour = 3600000;
    Asker asker(hour);
    QCOMPARE(asker.ask(), text("200 body"));
    QCOMPARE(asker.ask(), text("200 body"));
    QCOMPARE(asker.connections(), 2);
    QCOMPARE(asker.pool.count(), 2);
    asker.web.clients().first()->write("HTTP/1.1 200 OK\r\nContent-Length: 5\r\n\r\nother");
    QTRY_COMPARE(asker.pool.count(), 1);
    // Then it is as good as a new one.
    Asker brief(1);
    QTRY_VERIFY2(
        [&brief] {
            const int before = brief.connections();
            return brief.ask() == text("200 body") && brief.connections() == before;
        }(),
        qPrintable(QString::number(brief.connections())));
}

/// A connection that the server closes meanwhile costs nobody an answer; one that it closes in
/// earnest does.
void PrometheusTest::keptConnectionsEnd()
{
    Asker asker;
    const auto answering = asker.web.onQuery;
    const auto lose = [](const QByteArray &) { return qMakePair(0, QByteArray()); };
    QCOMPARE(asker.ask(), text("200 body"));
    asker.web.clients().first()->disconnectFromHost();
    QTRY_COMPARE(asker.pool.count(), 0);
    QCOMPARE(asker.ask(), text("200 body"));
    // Closed at the question: it is asked again, once.
    asker.web.onQuery = [&](const QByteArray &query) {
        asker.web.onQuery = answering;
        return lose(query);
    };
    QCOMPARE(asker.ask(), text("200 body"));
    QCOMPARE(asker.web.heads.size(), 4);
    QCOMPARE(asker.connections(), 3);
    asker.web.onQuery = lose;
    QCOMPARE(asker.ask(), text("it closes the connection without an answer"));
    QCOMPARE(asker.web.heads.size(), 6);
    QCOMPARE(asker.ask(), text("it closes the connection without an answer"));
    QCOMPARE(asker.web.heads.size(), 7);
    // What has begun is not asked for again.
    asker.web.onQuery = answering;
    QCOMPARE(asker.ask(), text("200 body"));
    asker.web.onRaw = [](QTcpSocket *socket) {
        socket->write("HTTP/1.1 200");
        socket->disconnectFromHost();
    };
    QCOMPARE(asker.ask(), text("it closes the connection within its answer"));
    QCOMPARE(asker.web.heads.size(), 9);
}

/// Few are kept, and none for ever.
void PrometheusTest::keptConnectionsAreBounded()
{
    Asker asker;
    asker.web.answers = false;
    int answers = 0;
    constexpr int many = HttpPool::mostIdle + 2;
    for (int i = 0; i < many; ++i)
        asker.post([&answers](const QString &) { ++answers; });
    QTRY_COMPARE(asker.web.waiting(), many);
    for (QTcpSocket *socket : asker.web.clients())
        socket->write("HTTP/1.1 200 OK\r\nContent-Length: 1\r\n\r\nx");
    QTRY_COMPARE(answers, many);
    QCOMPARE(asker.pool.count(), HttpPool::mostIdle);
    Asker brief(0, 1);
    QCOMPARE(brief.ask(), text("200 body"));
    QTRY_COMPARE(brief.pool.count(), 0);
    Asker old(0, HttpPoolTimes().idle, 0);
    QCOMPARE(old.ask(), text("200 body"));
    QCOMPARE(old.ask(), text("200 body"));
    QCOMPARE(old.connections(), 2);
}

/// Refreshes need no new handshakes.
void PrometheusTest::refreshesShareConnections()
{
    FakeWeb web;
    web.useTls(certificates->certificate(text("right")), certificates->key(text("right")));
    web.onQuery = [](const QByteArray &query) {
        return qMakePair(200, vectorOf({row(FakeWeb::asksForStatuses(query)
                                                ? "\"instance\":\"i\",\"ups\":\"a\",\"flag\":\"OL\""
                                                : "\"instance\":\"i\",\"ups\":\"a\"",
                                            seconds())}));
    };
    PromServer server = web.server();
    server.url.setScheme(text("https"));
    server.authorities = QSslCertificate::fromPath(certificates->authority());
    PromSource source(server, shortTimes());
    Watch watch(&source);
    source.start();
    QTRY_VERIFY(!watch.of("a@i (nut)").isLost());
    watch.feeds.constBegin().value()->setFollowed(true);
    QTRY_VERIFY2(web.heads.size() > 20, qPrintable(watch.problem));
    QVERIFY(web.clients().size() <= HttpPool::mostIdle + 1);
    // The server goes and comes back.
    const quint16 port = web.serverPort();
    web.vanish();
    QTRY_VERIFY(watch.of("a@i (nut)").isLost());
    QVERIFY(web.listen(QHostAddress::LocalHost, port));
    QTRY_VERIFY(!watch.of("a@i (nut)").isLost());
}

/// Nothing is sent to where an answer points.
void PrometheusTest::redirections()
{
    FakeWeb web;
    FakeWeb other;
    other.onQuery = [](const QByteArray &) { return qMakePair(200, vectorOf({})); };
    web.onRaw = [&](QTcpSocket *socket) {
        socket->write("HTTP/1.1 307 X\r\nLocation: " + other.server("/").url.toEncoded() +
                      "\r\nSet-Cookie: a=b\r\nContent-Length: 0\r\n\r\n");
    };
    PromServer server = web.server();
    server.token = text("hunter2");
    PromSource source(server, shortTimes());
    Watch watch(&source);
    source.start();
    QTRY_COMPARE(watch.problem, text("it answers HTTP 307"));
    QTRY_VERIFY(web.heads.size() > 5);
    QVERIFY(other.heads.isEmpty());
    QVERIFY(!web.heads.last().contains("Cookie"));
}

/// A UPS with more flags than there are, and with other ones each time.
void PrometheusTest::manyFlags()
{
    FakeWeb web;
    int round = 0;
    web.onQuery = [&](const QByteArray &query) {
        QByteArrayList rows;
        ++round;
        for (int i = 0; FakeWeb::asksForStatuses(query) && i < 5000; ++i)
            rows += row("\"instance\":\"i\",\"ups\":\"a\",\"flag\":\"" +
                            QByteArray(180, char('A' + round % 26)) + QByteArray::number(i) + '"',
                        seconds());
        return qMakePair(200, vectorOf(rows));
    };
    PromSource source(web.server(), shortTimes());
    Watch watch(&source);
    source.start();
    QTRY_VERIFY(!watch.of("a@i (nut)").isLost());
    const int before = round;
    QTRY_VERIFY(round > before + 4);
    const Snapshot snapshot = watch.of("a@i (nut)");
    QVERIFY2(snapshot.variables.value(text("ups.status")).size() < 20000,
             qPrintable(QString::number(snapshot.variables.value(text("ups.status")).size())));
    QVERIFY(snapshot.otherTokens.size() <= 50);
}

void PrometheusTest::sendsSecretsOnlyWhereTheyAreSafe()
{
    FakeWeb web;
    web.onQuery = [](const QByteArray &) { return qMakePair(200, vectorOf({})); };
    PromServer server = web.server("/some/prefix/");
    server.user = text("viewer");
    server.password = text("secret");
    QVERIFY(!server.wouldLeak());
    PromSource source(server, shortTimes());
    source.start();
    QTRY_VERIFY(!web.heads.isEmpty());
    QVERIFY2(web.heads.first().startsWith("POST /some/prefix/api/v1/query "),
             web.heads.first().constData());
    QVERIFY(web.heads.first().contains("Basic " + QByteArray("viewer:secret").toBase64()));
    server.url = QUrl(text("http://192.0.2.1:9090"));
    QVERIFY(server.wouldLeak());
    PromSource leaking(server, shortTimes());
    Watch watch(&leaking);
    leaking.start();
    QTRY_COMPARE(watch.problem, text("a password or token needs https, except on this machine"));
    server.url = QUrl(text("https://192.0.2.1:9090"));
    QVERIFY(!server.wouldLeak());
}

/// A label from the server ends in a query only as a quoted text.
void PrometheusTest::labelsAreNoQueries()
{
    FakeWeb web;
    QByteArray asked;
    web.onQuery = [&](const QByteArray &query) {
        if (FakeWeb::asksForStatuses(query))
            return qMakePair(
                200,
                vectorOf({row(R"("instance":"i","ups":"a\"} or {b\\","flag":"OL")", seconds())}));
        if (query.contains("\"part\""))
            asked = query;
        return qMakePair(200, vectorOf({}));
    };
    PromSource source(web.server(), shortTimes());
    Watch watch(&source);
    source.start();
    QTRY_COMPARE(watch.feeds.size(), 1);
    watch.feeds.cbegin().value()->setFollowed(true);
    QTRY_VERIFY(!asked.isEmpty());
    QVERIFY2(asked.contains(R"(ups="a\"} or {b\\")"), asked.constData());
}

void PrometheusTest::overTls_data()
{
    QTest::addColumn<QString>("kind");
    QTest::addColumn<bool>("trusted");
    QTest::addColumn<QString>("problem");
    QTest::newRow("right") << "right" << true << "";
    QTest::newRow("other authorities") << "right" << false << "an authority that is not trusted";
    QTest::newRow("of nobody") << "unknown" << true << "an authority that is not trusted";
    QTest::newRow("expired") << "expired" << true << "the server's certificate has expired";
    QTest::newRow("another name") << "wrong" << true
                                  << "the server's certificate is not for localhost";
    QTest::newRow("common name beside others")
        << "commonname" << true << "the server's certificate is not for localhost";
    QTest::newRow("plain http") << "" << true << "no TLS connection; does the server speak https?";
}

/// Each failure has its line, and no secret is sent then.
void PrometheusTest::overTls()
{
    QFETCH(QString, kind);
    QFETCH(bool, trusted);
    QFETCH(QString, problem);
    FakeWeb web;
    if (!kind.isEmpty())
        web.useTls(certificates->certificate(kind), certificates->key(kind));
    const QByteArray status = row("\"instance\":\"i\",\"ups\":\"a\",\"flag\":\"OL\"", seconds());
    web.onQuery = [&](const QByteArray &) { return qMakePair(200, vectorOf({status})); };
    PromServer server;
    server.url = QUrl(QStringLiteral("https://localhost:%1").arg(web.serverPort()));
    server.token = text("hunter2");
    server.authorities = QSslCertificate::fromPath(trusted ? certificates->authority()
                                                           : certificates->otherAuthority());
    QVERIFY(!server.authorities.isEmpty());
    PromSource source(server, shortTimes());
    Watch watch(&source);
    source.start();
    if (problem.isEmpty()) {
        QTRY_VERIFY(!watch.of("a@i (nut)").isLost());
        QVERIFY(web.heads.first().contains("Bearer hunter2"));
        return;
    }
    QTRY_VERIFY2(watch.problem.contains(problem), qPrintable(watch.problem));
    QVERIFY(!watch.problem.contains(QLatin1Char('\n')));
    QVERIFY(watch.feeds.isEmpty());
    QVERIFY2(web.heads.isEmpty(), web.heads.value(0).constData());
}

void PrometheusTest::plainWhereTlsIs_data()
{
    PrometheusServer::addRows();
}

/// The other way round, the server says what is wrong.
void PrometheusTest::plainWhereTlsIs()
{
    QFETCH(PrometheusServer::Program, program);
    PrometheusServer prometheus(program);
    QVERIFY2(prometheus.useTls(certificates->certificate(text("right")),
                               certificates->key(text("right"))),
             qPrintable(prometheus.problem()));
    QVERIFY2(prometheus.start(), qPrintable(prometheus.problem()));
    PromServer server = prometheus.server();
    QCOMPARE(server.url.scheme(), text("https"));
    server.authorities = QSslCertificate::fromPath(certificates->authority());
    PromTimes times;
    times.refresh = 300;
    PromSource source(server, times);
    Watch watch(&source);
    source.start();
    QTRY_VERIFY(!watch.of("a@nut0:3493 (nut)").isLost());
    server.url.setScheme(text("http"));
    PromSource plain(server, times);
    Watch wrong(&plain);
    plain.start();
    QTRY_COMPARE(wrong.problem,
                 program == PrometheusServer::Program::Prometheus
                     ? text("it answers HTTP 400: Client sent an HTTP request to an HTTPS server.")
                     : text("it closes the connection without an answer"));
}

void PrometheusTest::realCredentials_data()
{
    PrometheusServer::addRows();
}

/// Under TLS, with a user, as the servers themselves check both.
void PrometheusTest::realCredentials()
{
    QFETCH(PrometheusServer::Program, program);
    PrometheusServer prometheus(program);
    QVERIFY2(prometheus.useTls(certificates->certificate(text("right")),
                               certificates->key(text("right")), true),
             qPrintable(prometheus.problem()));
    QVERIFY2(prometheus.start(), qPrintable(prometheus.problem()));
    PromTimes times;
    times.refresh = 300;
    PromServer server = prometheus.server();
    server.authorities = QSslCertificate::fromPath(certificates->authority());
    QString error;
    QVERIFY2(server.takeSecrets("user = viewer\npassword = secret word\n", text("f"), &error),
             qPrintable(error));
    PromSource source(server, times);
    Watch watch(&source);
    source.start();
    QTRY_VERIFY(!watch.of("a@nut0:3493 (nut)").isLost());
    QVERIFY2(watch.problem.isEmpty(), qPrintable(watch.problem));
    server.password = text("another word");
    PromSource other(server, times);
    Watch wrong(&other);
    other.start();
    QTRY_COMPARE(wrong.problem, text("it refuses this user (HTTP 401)"));
    // It knows no tokens.
    server.user.clear();
    server.password.clear();
    server.token = text("token");
    PromSource bearer(server, times);
    Watch unknown(&bearer);
    bearer.start();
    QTRY_COMPARE(unknown.problem, text("it refuses this token (HTTP 401)"));
    server.token.clear();
    PromSource anonymous(server, times);
    Watch nobody(&anonymous);
    anonymous.start();
    QTRY_COMPARE(nobody.problem,
                 text("it wants a user or a token (HTTP 401): give it with --prometheus-auth"));
    QVERIFY(wrong.feeds.isEmpty() && unknown.feeds.isEmpty() && nobody.feeds.isEmpty());
}

void PrometheusTest::realExplanations_data()
{
    PrometheusServer::addRows();
}

/// The questions are such that the servers answer them.
void PrometheusTest::realExplanations()
{
    QFETCH(PrometheusServer::Program, program);
    PrometheusServer prometheus(program);
    QVERIFY2(prometheus.start(), qPrintable(prometheus.problem()));
    PromTimes times;
    times.refresh = 300;
    PromServer server = prometheus.server();
    PromSource source(server, times);
    Watch watch(&source);
    source.start();
    QTRY_VERIFY(!watch.of("b@nut0:3493 (nut)").isLost());
    server.job = text("power");
    PromSource otherJob(server, times);
    Watch jobs(&otherJob);
    otherJob.start();
    QTRY_COMPARE(
        jobs.problem,
        text("nothing matches network_ups_tools_ups_status{job=\"power\"}: there is no such job, "
             "but UPSes in the job nut"));
    server.job = text("nut");
    server.dialect = text("nutwg");
    PromSource otherDialect(server, times);
    Watch dialects(&otherDialect);
    otherDialect.start();
    const QString otherName =
        text("nothing matches nutwg_ups_status{job=\"nut\"}: the job has "
             "network_ups_tools_ups_status, which is the dialect network_ups_tools");
    QTRY_COMPARE(dialects.problem, otherName);
    server.dialect = text("network_ups_tools");
    server.upsLabel = text("rack");
    PromSource otherLabel(server, times);
    Watch labels(&otherLabel);
    otherLabel.start();
    QTRY_COMPARE(labels.problem,
                 text("several UPSes have no label 'rack' and are shown as one, at nut0:3493"));
    // An exporter that cannot be scraped hides nothing.
    QVERIFY(prometheus.setUps("b", "error\n"));
    QTRY_COMPARE(dialects.of("nut0:3493 (nut)").reason, text("its exporter cannot be scraped"));
    QTRY_COMPARE(dialects.problem, otherName);
    QVERIFY(prometheus.setUps("a", "error\n"));
    QTRY_COMPARE(dialects.problem, QString());
}

/// A refresh of a large fleet. What it costs is printed; its size is bounded. Each answer has the
/// labels that were asked for.
void PrometheusTest::thousandUpses()
{
    FakeWeb web;
    qint64 bytes = 0;
    int answers = 0;
    web.onQuery = [&](const QByteArray &query) {
        const QByteArray labels = query.mid(query.indexOf("max by (") + 8).split(')').constFirst();
        const bool statuses = labels == "instance, ups, flag";
        if (!statuses && labels != "instance, ups")
            return qMakePair(400, QByteArray("all labels are too many"));
        QByteArrayList rows;
        for (int i = 0; i < 1000; ++i)
            rows +=
                R"({"metric":{"instance":"nut)" + QByteArray::number(i / 20) +
                R"(:3493","ups":"u)" + QByteArray::number(i) +
                (statuses ? R"(","flag":"OL"},"value":[1795295353.308,")" + seconds() + ".125"
                          : R"("},"value":[1795295353.308,")" + QByteArray::number(20 + i % 60)) +
                R"("]})";
        const QByteArray body = vectorOf(rows);
        bytes += body.size();
        ++answers;
        return qMakePair(200, body);
    };
    PromTimes times = shortTimes();
    times.refresh = 100000;
    PromSource source(web.server(), times);
    Watch watch(&source);
    QElapsedTimer clock;
    clock.start();
    const qint64 cpu = cpuMilliseconds();
    source.start();
    QTRY_COMPARE(watch.of("u999@nut49:3493 (nut)").value(Quantity::Load),
                 std::optional<double>(20 + 999 % 60));
    qInfo("1000 UPSes: %d bytes, %lld ms, %lld ms CPU with the server's side", int(bytes),
          static_cast<long long>(clock.elapsed()), static_cast<long long>(cpuMilliseconds() - cpu));
    QCOMPARE(watch.feeds.size(), 1000);
    QCOMPARE(answers, 2);
    QVERIFY2(bytes < 400000, qPrintable(QString::number(bytes)));
}

/// The server takes the configuration that the documentation shows.
void PrometheusTest::documentedConfiguration()
{
    QFile page(QStringLiteral(KIV_SOURCE_DIRECTORY "/docs/fleet.md"));
    QVERIFY(page.open(QIODevice::ReadOnly));
    const QByteArray all = page.readAll();
    const int begin = int(all.indexOf("```yaml\n")) + 8;
    const int end = int(all.indexOf("```", begin));
    QVERIFY(begin > 8 && end > begin);
    const QTemporaryDir directory;
    QFile file(directory.filePath(text("prometheus.yml")));
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.write(all.mid(begin, end - begin));
    file.close();
    QProcess check;
    check.setProcessChannelMode(QProcess::MergedChannels);
    check.start(text("promtool"), {text("check"), text("config"), file.fileName()});
    QVERIFY(check.waitForFinished(30000));
    QVERIFY2(check.exitCode() == 0, check.readAll().constData());
}

void PrometheusTest::realServer_data()
{
    PrometheusServer::addRows();
}

/// Debian's servers, an exporter of the test's own, and a loaded past.
void PrometheusTest::realServer()
{
    QFETCH(PrometheusServer::Program, program);
    PrometheusServer prometheus(program);
    const qint64 now = QDateTime::currentSecsSinceEpoch();
    QByteArray past;
    constexpr int minutes = 120;
    for (int i = minutes; i > 60; --i)
        past += PrometheusServer::sample("ups_load", "a", i, now - i * 60);
    QVERIFY2(prometheus.load("ups_load", past), qPrintable(prometheus.problem()));
    QVERIFY2(prometheus.setUps("b", "flags OB DISCHRG\nload 61\n"),
             qPrintable(prometheus.problem()));
    QVERIFY2(prometheus.start(), qPrintable(prometheus.problem()));
    PromTimes times;
    times.refresh = 300;
    PromSource source(prometheus.server(), times);
    Watch watch(&source);
    source.start();
    const char *const a = "a@nut0:3493 (nut)";
    const char *const b = "b@nut0:3493 (nut)";
    QTRY_VERIFY(watch.of(a).tokens.testFlag(StatusToken::OnLine));
    QTRY_VERIFY(watch.of(b).tokens.testFlag(StatusToken::OnBattery));
    QTRY_COMPARE(watch.of(b).value(Quantity::Load), std::optional<double>(61.0));
    // All values of the one that is looked at.
    watch.feeds.value(text(b))->setFollowed(true);
    QTRY_COMPARE(watch.of(b).value(Quantity::BatteryRuntime), std::optional<double>(1200.0));
    QVERIFY(!watch.of(a).value(Quantity::BatteryRuntime));
    // What is not a number is no data, and not what was there before.
    QVERIFY(prometheus.setUps("a", "load NaN\n") &&
            prometheus.setUps("b", "flags OB DISCHRG\nload NaN\nruntime NaN\n"));
    QTRY_VERIFY(!watch.of(a).value(Quantity::Load));
    QTRY_VERIFY(!watch.of(b).value(Quantity::Load) && !watch.of(b).value(Quantity::BatteryRuntime));
    QCOMPARE(watch.of(b).value(Quantity::BatteryCharge), std::optional<double>(97.0));
    QVERIFY(!watch.of(a).isLost() && !watch.of(b).isLost());
    // A flag of another kind, and an exporter that fails.
    QVERIFY(prometheus.setUps("a", "flags ALARM OL\n"));
    QTRY_VERIFY(watch.of(a).tokens.testFlag(StatusToken::Alarm));
    QVERIFY(prometheus.setUps("a", "error\n"));
    QTRY_COMPARE(watch.of(a).reason, text("its exporter cannot be scraped"));
    // Statuses are those of the latest scrape.
    QVERIFY(prometheus.setUps("b", "flags OL\n"));
    const qint64 changed = QDateTime::currentMSecsSinceEpoch();
    QTRY_VERIFY(watch.of(b).tokens.testFlag(StatusToken::OnLine));
    qInfo("a change of status took %d ms", int(QDateTime::currentMSecsSinceEpoch() - changed));
    // The past, with a step that fits.
    PromAnswer trend;
    bool answered = false;
    source.queryRange(QStringLiteral("network_ups_tools_ups_load{%1}")
                          .arg(watch.feeds.value(text(a))->selector()),
                      {}, double(now - minutes * 60), double(now - 61 * 60), 60.0,
                      [&](const PromAnswer &answer) {
                          trend = answer;
                          answered = true;
                      });
    QTRY_VERIFY(answered);
    QVERIFY2(trend.succeeded, qPrintable(trend.problem));
    QCOMPARE(trend.series.size(), 1);
    QCOMPARE(trend.series.first().samples.size(), 60);
    QCOMPARE(trend.series.first().samples.first().y(), 120.0);
    QCOMPARE(trend.series.first().samples.last().y(), 61.0);
    // A query that is wrong is refused in one line.
    answered = false;
    source.query(text("sum by ("), {}, [&](const PromAnswer &answer) {
        trend = answer;
        answered = true;
    });
    QTRY_VERIFY(answered);
    QVERIFY2(trend.problem.contains(text("it refuses the query: ")), qPrintable(trend.problem));
    // Gone, it is one problem of all.
    prometheus.stop();
    QTRY_VERIFY(watch.problem.contains(text("connection refused")));
    QVERIFY(watch.of(b).isLost());
}

KIV_TEST_MAIN(PrometheusTest)

#include "tst_prometheus.moc"
