// SPDX-License-Identifier: LicenseRef-all-rights-reserved

#pragma once

#include "store.h"

#include <QtCore/QObject>

/// The values of a UPS over some time.
struct Trend
{
    struct Curve
    {
        Quantity quantity = Quantity::Load;
        QVector<TrendPoint> points;
    };

    QString ups;
    TimeSpan span;
    QVector<Curve> curves;       ///< of the quantities that were asked for, in that order
    QVector<TimeSpan> onBattery; ///< when it ran on battery
    QString problem; ///< why curves are missing or incomplete, in one line; may be empty
};

/// Has what the UPSes measured: the console's own history, or a server that keeps it.
///
/// Calls return at once, and answers come as signals.
class TrendSource : public QObject
{
    Q_OBJECT

public:
    explicit TrendSource(QObject *parent = nullptr);
    ~TrendSource() override;

    /// Asks for what is known of @p quantities in @p span, with about as many points as @p columns.
    /// @return the number that comes with the answer; each question gets one, unless it is dropped.
    virtual int readTrend(const QString &ups, const QVector<Quantity> &quantities, TimeSpan span,
                          int columns) = 0;
    /// Says that nobody waits for the answer @p number any more, which may come nevertheless. Here:
    /// nothing.
    virtual void drop(int number);
    /// Why nothing of @p ups is kept now, in one line; empty: it is. Here: empty.
    virtual QString whyNotKept(const QString &ups) const;

Q_SIGNALS:
    void trendRead(int number, const Trend &trend);
    /// Anything may be different.
    void replaced();
    /// What whyNotKept() says may be different.
    void statusChanged();
};
