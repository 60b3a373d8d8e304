// SPDX-License-Identifier: LicenseRef-all-rights-reserved

#pragma once

#include "prometheus.h"

#include <QtCore/QProcess>
#include <QtCore/QTemporaryDir>

/// A server of Debian that scrapes an exporter of the tests' own, which has the UPSes "a" and "b"
/// of "nut0:3493". Functions return false with problem().
class PrometheusServer
{
public:
    enum class Program { Prometheus, VictoriaMetrics };

    /// A row of test data for each program, in the column "program".
    static void addRows();

    explicit PrometheusServer(Program program = Program::Prometheus);
    ~PrometheusServer();
    PrometheusServer(const PrometheusServer &) = delete;
    PrometheusServer &operator=(const PrometheusServer &) = delete;

    /// A sample of @p metric, at @p at seconds since the epoch, for load().
    static QByteArray sample(const char *metric, const char *ups, double value, qint64 at,
                             const char *moreLabels = "");
    /// Gives the server a past, which it has when it started: samples of one metric.
    bool load(const char *metric, const QByteArray &samples);
    /// What the exporter says of a UPS; see upsexporter.py.
    bool setUps(const char *ups, const QByteArray &says);
    /// Speaks TLS, and takes requests of the user "viewer" with the password "secret word" alone,
    /// or of anybody.
    bool useTls(const QString &certificate, const QString &key, bool users = false);
    bool start();
    void stop();

    PromServer server() const;
    QString problem() const;

private:
    bool write(const QString &name, const QByteArray &content);
    bool importPast();
    bool startPrometheus();
    bool startVictoriaMetrics();
    bool run(QProcess *started, const QString &name, const QStringList &arguments);

    const Program program;
    QTemporaryDir directory;
    quint16 webPort;
    quint16 exporterPort;
    QString failed;
    QStringList more; // arguments
    bool secure = false;
    int loads = 0;
    QByteArray past; // to be imported
    QProcess exporter;
    QProcess process;
};
Q_DECLARE_METATYPE(PrometheusServer::Program)
