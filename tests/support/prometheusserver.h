// SPDX-License-Identifier: LicenseRef-all-rights-reserved

#pragma once

#include "prometheus.h"

#include <QtCore/QProcess>
#include <QtCore/QTemporaryDir>

/// Debian's Prometheus with an exporter of the tests' own, which has the UPSes "a" and "b" of
/// "nut0:3493". Functions return false with problem().
class PrometheusServer
{
public:
    PrometheusServer();
    ~PrometheusServer();
    PrometheusServer(const PrometheusServer &) = delete;
    PrometheusServer &operator=(const PrometheusServer &) = delete;

    /// A sample of @p metric, at @p at seconds since the epoch, for load().
    static QByteArray sample(const char *metric, const char *ups, double value, qint64 at,
                             const char *moreLabels = "");
    /// Gives the server a past, before it starts: samples of one metric.
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
    bool run(QProcess *process, const QString &program, const QStringList &arguments);

    QTemporaryDir directory;
    quint16 webPort;
    quint16 exporterPort;
    QString failed;
    QStringList more; // arguments
    bool secure = false;
    int loads = 0;
    QProcess exporter;
    QProcess prometheus;
};
