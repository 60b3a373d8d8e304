// SPDX-License-Identifier: LicenseRef-all-rights-reserved

#pragma once

#include "recorder.h"

#include <QtTest/QTest>

#include <algorithm>
#include <memory>

/// A site with one UPS, its history, and a clock that the test moves.
struct WatchedSite
{
    /// A Sunday, 2026-11-22 10:00 UTC.
    static constexpr qint64 start = 1795341600LL * 1000;

    /// Keeps the history in @p directory; in memory without one.
    explicit WatchedSite(const QString &directory = QString())
        : history(std::make_unique<History>(directory))
        , site(clock())
        , ups(site.add(QStringLiteral("demo")))
        , recorder(std::make_unique<Recorder>(&site, history.get(), clock()))
    {}

    Clock clock()
    {
        return [this] { return QDateTime::fromMSecsSinceEpoch(time, Qt::UTC); };
    }

    /// Lets @p seconds pass, with the UPS as it is at the end, heard every @p step seconds.
    void pass(const Snapshot &snapshot, int seconds = 5, int step = 5)
    {
        for (int i = 0; i < seconds; i += step) {
            time += step * secondMsecs;
            ups->take(snapshot);
        }
    }

    QVector<Event> events()
    {
        // What is under way is sent first.
        QCoreApplication::processEvents();
        QVector<Event> result;
        bool arrived = false;
        constexpr int most = 100000;
        const int number = history->readEvents({}, most);
        const auto connection =
            QObject::connect(history.get(), &History::eventsRead,
                             [&](int answered, const QVector<Event> &events, bool all) {
                                 if (answered != number)
                                     return;
                                 arrived = all;
                                 result = events;
                             });
        const bool inTime = QTest::qWaitFor([&] { return arrived; }, patience);
        QObject::disconnect(connection);
        return inTime ? result : QVector<Event>{Event()};
    }

    Trend trend(const QVector<Quantity> &quantities, TimeSpan span)
    {
        QCoreApplication::processEvents();
        Trend result;
        bool arrived = false;
        constexpr int columns = 1000;
        const int number = history->readTrend(ups->id(), quantities, span, columns);
        const auto connection = QObject::connect(history.get(), &History::trendRead,
                                                 [&](int answered, const Trend &trend) {
                                                     arrived = answered == number;
                                                     result = trend;
                                                 });
        const bool inTime = QTest::qWaitFor([&] { return arrived; }, patience);
        QObject::disconnect(connection);
        return inTime ? result : Trend();
    }

    bool waitFor(HistoryStatus::State state)
    {
        return QTest::qWaitFor([&] { return history->status().state == state; }, patience);
    }

    static constexpr int patience = 30000;
    qint64 time = start;
    std::unique_ptr<History> history;
    SiteModel site;
    UpsModel *ups;
    std::unique_ptr<Recorder> recorder;
};
