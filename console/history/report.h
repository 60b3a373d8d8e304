// SPDX-License-Identifier: LicenseRef-all-rights-reserved

#pragma once

#include "store.h"

class QTimeZone;

/// What became of a UPS in some time.
struct UpsReport
{
    struct Outage
    {
        qint64 begin = 0;
        qint64 length = 0; ///< milliseconds on battery
        int count = 1;     ///< how many times, one soon after the other
        bool isOver = true;
        bool endSeen = true; ///< false: it took at least so long
        std::optional<double> lowestCharge;
    };

    QString ups;
    QVector<Outage> outages;         ///< the earliest first
    qint64 watched = 0;              ///< milliseconds in which something was measured
    std::optional<double> available; ///< share of that in which the output was on, from 0 to 1
    std::optional<double> mains;     ///< share of that in which it did not run on battery
    std::optional<double> peakLoad;  ///< percent
    qint64 peakAt = 0;
    std::optional<double> energy; ///< watt-hours, from the measured real power
};

struct Report
{
    TimeSpan span;
    QVector<UpsReport> upses;
};

enum class ReportPeriod { Day, Week, Month };
/// The period that ends at @p now: 24 hours, 7 times 24 hours, or from the same day and time of
/// last month in @p zone.
TimeSpan spanOf(ReportPeriod period, qint64 now, const QTimeZone &zone);

/// What @p store knows of @p span, of all UPSes unless some are named.
Report reportOf(Store *store, const QStringList &upses, TimeSpan span);

/// The report as a page that stands for itself; texts in it are plain.
QString htmlOf(const Report &report, const QTimeZone &zone);
/// The report as lines, with UTC times.
QString csvOf(const Report &report);
