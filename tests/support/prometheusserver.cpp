// SPDX-License-Identifier: LicenseRef-all-rights-reserved

#include "prometheusserver.h"

#include <QtCore/QDeadlineTimer>
#include <QtCore/QDir>
#include <QtCore/QFile>
#include <QtNetwork/QTcpServer>
#include <QtNetwork/QTcpSocket>
#include <QtTest/QTest>

namespace {

constexpr int patience = 30000;
/// The bcrypt hash of the password, of the least cost.
constexpr char userLine[] =
    "basic_auth_users: {viewer: '$2b$04$nxq8ibOT.E4LJ.mcsBgmheBLpxBmjxfTQuonYxMkoe5vfMg375iyy'}\n";

QString text(const char *latin)
{
    return QString::fromLatin1(latin);
}

quint16 freePort()
{
    QTcpServer probe;
    return probe.listen(QHostAddress::LocalHost) ? probe.serverPort() : quint16(0);
}

} // namespace

void PrometheusServer::addRows()
{
    QTest::addColumn<Program>("program");
    QTest::newRow("Prometheus") << Program::Prometheus;
    QTest::newRow("VictoriaMetrics") << Program::VictoriaMetrics;
}

PrometheusServer::PrometheusServer(Program usedProgram)
    : program(usedProgram)
    , directory(text("/tmp/kivprom-XXXXXX"))
    , webPort(freePort())
    , exporterPort(freePort())
{
    QDir(directory.path()).mkpath(text("ups"));
    write(text("prometheus.yml"),
          "global: {scrape_interval: 1s, scrape_timeout: 1s}\nscrape_configs:\n"
          "- job_name: nut\n  metrics_path: /ups_metrics\n  static_configs:\n"
          "  - {targets: ['nut0:3493'], labels: {ups: a}}\n"
          "  - {targets: ['nut0:3493'], labels: {ups: b}}\n  relabel_configs:\n"
          "  - {source_labels: [ups], target_label: __param_ups}\n"
          "  - {source_labels: [__address__], target_label: instance}\n"
          "  - {target_label: __address__, replacement: '127.0.0.1:" +
              QByteArray::number(exporterPort) + "'}\n");
}

PrometheusServer::~PrometheusServer()
{
    stop();
    exporter.kill();
    exporter.waitForFinished(patience);
}

QByteArray PrometheusServer::sample(const char *metric, const char *ups, double value, qint64 at,
                                    const char *moreLabels)
{
    return QByteArray("network_ups_tools_") + metric +
           "{job=\"nut\",instance=\"nut0:3493\",ups=\"" + ups + '"' + moreLabels + "} " +
           QByteArray::number(value) + ' ' + QByteArray::number(at) + '\n';
}

bool PrometheusServer::load(const char *metric, const QByteArray &samples)
{
    if (program == Program::VictoriaMetrics) {
        // It takes milliseconds, and only while it runs.
        past += QByteArray(samples).replace("\n", "000\n");
        return true;
    }
    const QString name = QStringLiteral("past%1").arg(++loads);
    QProcess tool;
    if (!write(name, QByteArray("# TYPE network_ups_tools_") + metric + " gauge\n" + samples +
                         "# EOF\n") ||
        !run(&tool, text("promtool"),
             {text("tsdb"), text("create-blocks-from"), text("openmetrics"), name, text("data")}))
        return false;
    if (tool.waitForFinished(patience) && tool.exitCode() == 0)
        return true;
    failed = text("promtool does not take the past");
    return false;
}

bool PrometheusServer::setUps(const char *ups, const QByteArray &says)
{
    return write(text("ups/") + text(ups), says);
}

bool PrometheusServer::useTls(const QString &certificate, const QString &key, bool users)
{
    secure = true;
    if (program == Program::VictoriaMetrics) {
        more = QStringList{text("-tls"), text("-tlsCertFile=") + certificate,
                           text("-tlsKeyFile=") + key};
        if (users)
            more += QStringList{text("-httpAuth.username=viewer"),
                                text("-httpAuth.password=secret word")};
        return true;
    }
    more = QStringList{text("--web.config.file=web.yml")};
    return write(text("web.yml"), "tls_server_config: {cert_file: '" + certificate.toUtf8() +
                                      "', key_file: '" + key.toUtf8() + "'}\n" +
                                      (users ? QByteArray(userLine) : QByteArray()));
}

bool PrometheusServer::start()
{
    if (!failed.isEmpty() || !run(&exporter, QStringLiteral(KIV_UPS_EXPORTER),
                                  {QString::number(exporterPort), directory.filePath(text("ups"))}))
        return false;
    return program == Program::Prometheus ? startPrometheus() : startVictoriaMetrics();
}

bool PrometheusServer::startPrometheus()
{
    return run(&process, text("prometheus"),
               QStringList{text("--config.file=prometheus.yml"), text("--storage.tsdb.path=data"),
                           text("--storage.tsdb.retention.time=1y"),
                           QStringLiteral("--web.listen-address=127.0.0.1:%1").arg(webPort),
                           text("--log.level=warn")} +
                   more);
}

bool PrometheusServer::startVictoriaMetrics()
{
    return run(&process, text("victoria-metrics"),
               QStringList{text("-promscrape.config=prometheus.yml"), text("-storageDataPath=data"),
                           text("-retentionPeriod=1y"),
                           QStringLiteral("-httpListenAddr=127.0.0.1:%1").arg(webPort),
                           text("-memory.allowedBytes=256MB"), text("-loggerLevel=WARN")} +
                   more) &&
           (past.isEmpty() || importPast());
}

/// As soon as the server listens.
bool PrometheusServer::importPast()
{
    const QByteArray request = "POST /api/v1/import/prometheus HTTP/1.0\r\nContent-Length: " +
                               QByteArray::number(past.size()) + "\r\n\r\n" + past;
    for (const QDeadlineTimer deadline(patience); !deadline.hasExpired();) {
        QTcpSocket socket;
        socket.connectToHost(QHostAddress::LocalHost, webPort);
        if (socket.waitForConnected(patience) && socket.write(request) == request.size() &&
            socket.waitForReadyRead(patience) && socket.readLine().contains(" 204 "))
            return true;
        QTest::qWait(50);
    }
    failed = text("the server does not take the past");
    return false;
}

void PrometheusServer::stop()
{
    process.kill();
    process.waitForFinished(patience);
}

PromServer PrometheusServer::server() const
{
    PromServer server;
    server.url = QUrl(QStringLiteral("%1://127.0.0.1:%2")
                          .arg(secure ? text("https") : text("http"))
                          .arg(webPort));
    return server;
}

QString PrometheusServer::problem() const
{
    return failed;
}

bool PrometheusServer::write(const QString &name, const QByteArray &content)
{
    QFile file(directory.filePath(name));
    if (file.open(QIODevice::WriteOnly) && file.write(content) == content.size())
        return true;
    failed = text("cannot write ") + file.fileName();
    return false;
}

bool PrometheusServer::run(QProcess *started, const QString &name, const QStringList &arguments)
{
    started->setWorkingDirectory(directory.path());
    started->setStandardOutputFile(directory.filePath(text("log")), QIODevice::Append);
    started->setStandardErrorFile(directory.filePath(text("log")), QIODevice::Append);
    started->start(text("setpriv"),
                   QStringList{text("--pdeathsig"), text("KILL"), name} + arguments);
    if (started->waitForStarted(patience))
        return true;
    failed = text("cannot start ") + name;
    return false;
}
