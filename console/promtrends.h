// SPDX-License-Identifier: LicenseRef-all-rights-reserved

#pragma once

#include "feed/prometheus.h"
#include "history/trendsource.h"

#include <QtCore/QHash>
#include <QtCore/QPointer>

#include <functional>

/// Where a site's curves come from: for UPSes that a Prometheus-compatible server knows, from that
/// server, and for all others from elsewhere, such as the history.
class PromTrends : public TrendSource
{
    Q_OBJECT

public:
    using Find = std::function<PromFeed *(const QString &ups)>;

    /// Asks the servers of the feeds that @p find returns for a UPS, and @p others, which may be
    /// null, where it returns null.
    explicit PromTrends(const Find &find, TrendSource *others = nullptr, QObject *parent = nullptr);

    int readTrend(const QString &ups, const QVector<Quantity> &quantities, TimeSpan span,
                  int columns) override;
    void drop(int number) override;
    QString whyNotKept(const QString &ups) const override;

    /// The distance of points in seconds that fits @p span in @p columns columns: a round one that
    /// is not much shorter than what servers scrape in.
    static int stepFor(TimeSpan span, int columns);

private:
    struct Question
    {
        Trend trend;
        int step = 0;
        QPointer<HttpPost> reply;
    };

    void take(int number, const PromAnswer &answer);

    const Find find;
    const QPointer<TrendSource> others;
    int lastNumber = 0;
    QHash<int, Question> questions;
    QHash<int, int> passedOn; // by the others' number
};
