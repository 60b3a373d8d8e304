// SPDX-License-Identifier: LicenseRef-all-rights-reserved

#pragma once

#include "commandline.h"
#include "history/report.h"

#include <QtCore/QStringList>
#include <QtCore/QVector>

#include <optional>

/// What the command line asks for.
struct Options : CommonOptions
{
    QStringList upses;        ///< NAME@HOST[:PORT] each
    QStringList servers;      ///< HOST[:PORT] each: all of their UPSes
    QString prometheus;       ///< address of a Prometheus server; may be empty
    QString prometheusAuth;   ///< file with its user or token; may be empty
    QString config;           ///< file that names servers and UPSes; may be empty
    QString credentials;      ///< file with users and passwords; may be empty
    std::optional<bool> tls;  ///< whether TLS is required for these servers
    QString authorities;      ///< file of the certificates to trust; empty: the system's
    double speed = 1.0;       ///< of the simulated scenario
    QVector<double> instants; ///< scenario instants of the screenshots, in seconds
    QSize size;               ///< of the window; invalid when not given
    bool fullScreen = false;
    bool fresh = false;                 ///< forget what earlier runs remembered
    std::optional<bool> notify;         ///< desktop notifications; absent: as remembered
    std::optional<ReportPeriod> report; ///< write a report instead of showing a window
    QString output;                     ///< the report's file

    /// Whether the console shows the simulator: nothing else was named.
    bool simulates() const;
};

/// Reads the command line @p arguments, the program's name first.
Options parseOptions(const QStringList &arguments);
