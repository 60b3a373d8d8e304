// SPDX-License-Identifier: LicenseRef-all-rights-reserved

#pragma once

#include <QtCore/QByteArray>
#include <QtCore/QPointF>
#include <QtCore/QString>
#include <QtCore/QStringList>
#include <QtCore/QVector>

#include <optional>

/// A series of an answer: labels, and its samples as (seconds, value). A value may be NaN.
struct PromSeries
{
    QVector<QString> labels; ///< those that parse() was asked for, in their order; plain text
    QVector<QPointF> samples;
};

/// What a Prometheus-compatible server answered to a query. Nothing in it is trusted: labels are
/// made plain, and everything has a bound.
struct PromAnswer
{
    static constexpr int maxBytes = 16 * 1024 * 1024;
    static constexpr int maxSeries = 60000;
    static constexpr int maxSamples = 11000; ///< of a series
    static constexpr int maxParts = 2000000; ///< values, lists and objects

    /// Reads the body of an answer with the HTTP status @p code, and of the series' labels those in
    /// @p labels; a label that a series lacks is empty.
    static PromAnswer parse(int code, const QByteArray &body, const QStringList &labels = {});

    bool succeeded = false;
    QString problem;  ///< why not, in one line
    QString warnings; ///< of a success that may be incomplete
    QVector<PromSeries> series;
};
