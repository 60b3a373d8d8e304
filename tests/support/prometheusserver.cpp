// SPDX-License-Identifier: LicenseRef-all-rights-reserved

#include "prometheusserver.h"

#include <QtCore/QDir>
#include <QtCore/QFile>
#include <QtNetwork/QTcpServer>

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

PrometheusServer::PrometheusServer()
    : directory(text("/tmp/kivprom-XXXXXX"))
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
    const QString name = QStringLiteral("past%1").arg(++loads);
    QProcess process;
    if (!write(name, QByteArray("# TYPE network_ups_tools_") + metric + " gauge\n" + samples +
                         "# EOF\n") ||
        !run(&process, text("promtool"),
             {text("tsdb"), text("create-blocks-from"), text("openmetrics"), name, text("data")}))
        return false;
    if (process.waitForFinished(patience) && process.exitCode() == 0)
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
    more = QStringList{text("--web.config.file=web.yml")};
    secure = true;
    return write(text("web.yml"), "tls_server_config: {cert_file: '" + certificate.toUtf8() +
                                      "', key_file: '" + key.toUtf8() + "'}\n" +
                                      (users ? QByteArray(userLine) : QByteArray()));
}

bool PrometheusServer::start()
{
    return failed.isEmpty() &&
           run(&exporter, QStringLiteral(KIV_UPS_EXPORTER),
               {QString::number(exporterPort), directory.filePath(text("ups"))}) &&
           run(&prometheus, text("prometheus"),
               QStringList{text("--config.file=prometheus.yml"), text("--storage.tsdb.path=data"),
                           text("--storage.tsdb.retention.time=1y"),
                           QStringLiteral("--web.listen-address=127.0.0.1:%1").arg(webPort),
                           text("--log.level=warn")} +
                   more);
}

void PrometheusServer::stop()
{
    prometheus.kill();
    prometheus.waitForFinished(patience);
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

bool PrometheusServer::run(QProcess *process, const QString &program, const QStringList &arguments)
{
    process->setWorkingDirectory(directory.path());
    process->setStandardOutputFile(directory.filePath(text("log")), QIODevice::Append);
    process->setStandardErrorFile(directory.filePath(text("log")), QIODevice::Append);
    process->start(text("setpriv"),
                   QStringList{text("--pdeathsig"), text("KILL"), program} + arguments);
    if (process->waitForStarted(patience))
        return true;
    failed = text("cannot start ") + program;
    return false;
}
