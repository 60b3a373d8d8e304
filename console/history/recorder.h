// SPDX-License-Identifier: LicenseRef-all-rights-reserved

#pragma once

#include "history.h"
#include "sitemodel.h"

#include <QtCore/QHash>
#include <QtCore/QSet>
#include <QtCore/QTimer>

#include <array>

/// Watches the site for the history: what its UPSes measure becomes samples, and what begins and
/// ends becomes events. What a UPS shows when the console meets it is no news of that moment: it
/// continues what the history knows as present. Of a UPS whose server keeps what it measures, only
/// events are recorded. UPSes that are lost with their server make one event, the server's, and so
/// does a server that cannot be read from the start.
class Recorder : public QObject
{
    Q_OBJECT

public:
    /// Watches @p site for @p history; both must live as long. @p clock is the time of day, UTC.
    Recorder(SiteModel *site, History *history, const Clock &clock = systemClock(),
             QObject *parent = nullptr);
    /// Notes that nothing is measured from now on.
    ~Recorder() override;

private:
    /// What is known of a UPS.
    struct Watched
    {
        /// Its first data have come, and the history knows what is present.
        bool met = false;
        std::optional<qint64> silentSince; ///< while it was never heard
        bool silenceNoted = false;
        QHash<QString, Severity> present;             ///< conditions that the history knows
        std::array<float, quantityCount> values = {}; ///< last recorded; not a number: none
        qint64 heardAt = 0;
        bool isLostWithServer = false;
        // Texts of alarms are the server's: how many events they make has a bound.
        double alarmsLeft = 0.0; ///< so many may come at once
        qint64 alarmsLeftAt = 0;
        QHash<QString, qint64> overAt; ///< alarms that may begin again and be the same event
        QSet<QString> leftOut;         ///< present alarms that made no event
        int leftOutCount = 0;          ///< in the event that says so; 0: there is none
        int leftOutNoted = 0;          ///< as it says
        qint64 leftOutAt = 0;          ///< the last one
        qint64 leftOutNotedAt = 0;
    };

    /// A server that several UPSes are lost with, or that names its UPSes itself.
    struct Server
    {
        bool met = false;    ///< it answered, and the history knows that
        bool missed = false; ///< it never did, and there is an event for that
        int lost = 0;        ///< UPSes
        int noted = 0;       ///< of them in the event; 0: there is none
        qint64 since = 0;
        QString reason;
    };

    void watch(UpsModel *ups);
    void heard(UpsModel *ups);
    void missServer(const QString &name, const QString &reason);
    void meetServer(const QString &name);
    void followServer(const Snapshot &snapshot, Watched *watched);
    void noteServers();
    static EventChange lossOf(const QString &name, const Server &server);
    EventChange presentOf(const QString &name, const Server &server) const;
    void meet(UpsModel *ups, Watched *watched);
    void followConditions(UpsModel *ups, Watched *watched);
    void endConditions(const UpsModel &ups, const QVector<Condition> &conditions, qint64 at,
                       Watched *watched);
    void beginConditions(const UpsModel &ups, const QVector<Condition> &conditions, qint64 at,
                         Watched *watched);
    bool allowAlarm(const QString &key, Watched *watched);
    /// Whether an alarm that is present makes no event.
    bool leavesOut(const QString &key, Watched *watched);
    void noteLeftOut(const QString &ups, Watched *watched);
    void addCommand(const CommandRecord &record);
    void recordValues(const UpsModel &ups, Watched *watched);
    void add(const EventChange &change);
    void addSample(const QString &ups, int quantity, qint64 at, float value);
    void send();
    void meetAgain();
    qint64 now() const;

    SiteModel *const site;
    History *const history;
    const Clock clock;
    QHash<QString, Watched> all;    // by the UPS's id
    QHash<QString, Server> servers; // by name
    QVector<EventChange> changes;
    QVector<UpsSample> samples;
    QTimer sending; // once for all that happens in one turn of the event loop
    QTimer leaving;
};
