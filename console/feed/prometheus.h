// SPDX-License-Identifier: LicenseRef-all-rights-reserved

#pragma once

#include "promanswer.h"
#include "promdialect.h"
#include "upsfeed.h"

#include <QtCore/QTimer>
#include <QtCore/QUrl>
#include <QtNetwork/QNetworkAccessManager>
#include <QtNetwork/QSslCertificate>

#include <functional>
#include <memory>
#include <vector>

/// A Prometheus-compatible server that scrapes exporters of UPSes. Never print the password.
struct PromServer
{
    /// Reads http(s)://HOST[:PORT][/PREFIX]; a user in it is refused, since command lines are
    /// public. Where @p text is none, @p error says why.
    static std::optional<QUrl> parseUrl(const QString &text, QString *error);
    /// Reads "user" and "password", or "token", each "key = value" on a line.
    /// @return false with the reason, which never quotes the text, in @p error.
    bool takeSecrets(const QByteArray &text, const QString &fileName, QString *error);
    /// Whether secrets would leave this machine in the clear.
    bool wouldLeak() const;

    QUrl url;
    QString job = QStringLiteral("nut");
    QString dialect = QStringLiteral("network_ups_tools");
    QList<QSslCertificate> authorities; ///< empty: the system's
    QString user;
    QString password;
    QString token;
};

/// How patient a PromSource is; in milliseconds.
struct PromTimes
{
    int refresh = 10000;
    int answer = 8000;
    int stale = 150000; ///< a status that was scraped longer ago is none
};

class PromFeed;

/// Follows the UPSes that a Prometheus-compatible server knows. A refresh asks for the set status
/// flags with their age, for what is not reached, and for the loads; and for all values of the
/// UPSes that are followed.
class PromSource : public QObject
{
    Q_OBJECT

public:
    using Answer = std::function<void(const PromAnswer &)>;

    explicit PromSource(const PromServer &server, const PromTimes &times = PromTimes(),
                        QObject *parent = nullptr);
    ~PromSource() override;

    void start();
    /// Asks a query of one's own; @p answer comes once, unless this ends before.
    void query(const QString &text, const Answer &answer);
    /// The same over a time, with a step in seconds; both ends in seconds since the epoch.
    /// @return what can be aborted as long as there is no answer; null where nothing is sent.
    QNetworkReply *queryRange(const QString &text, double from, double to, double step,
                              const Answer &answer);

Q_SIGNALS:
    /// A UPS that was not known. The feed is this object's.
    void found(PromFeed *feed);
    /// What keeps the server from being read, or makes its answers incomplete; no text: nothing.
    void problemChanged(const QString &text);

private:
    friend class PromFeed;

    struct Status
    {
        QStringList flags;
        double scraped = 0.0;
        bool down = false;
    };

    void refresh();
    void takeStatuses(const PromAnswer &answer);
    void takeLoads(const PromAnswer &answer);
    void askForValues(PromFeed *feed);
    void takeValues(PromFeed *feed, const PromAnswer &answer);
    void loseAll(const QString &reason);
    QNetworkReply *get(const QString &path, QList<QPair<QString, QString>> items,
                       const Answer &answer);
    PromFeed *feedOf(const PromSeries &series);
    void report(const QString &problem);

    const PromServer server;
    const PromTimes times;
    const PromDialect *dialect;
    QNetworkAccessManager network;
    QTimer timer;
    QString problem;
    std::vector<std::unique_ptr<PromFeed>> feeds;
    QHash<QString, PromFeed *> byKey;
};

/// One UPS of a PromSource.
class PromFeed : public UpsFeed
{
    Q_OBJECT

public:
    /// "ups@instance (job)": unique on the server.
    const QString &key() const;
    const QString &upsName() const;
    const QString &instance() const;

    void start() override;
    void stop() override;
    void setFollowed(bool followed) override;
    bool isKeptElsewhere() const override;
    /// Where it comes from.
    PromSource &server() const;
    const PromDialect &dialect() const;
    /// Its labels as a query has them in braces.
    QString selector() const;

private:
    friend class PromSource;

    PromFeed(PromSource *source, const QString &job, const QString &instance, const QString &ups);
    void deliver();
    void lose(const QString &reason);

    PromSource *source;
    QString job;
    QString place;
    QString ups;
    QString id;
    bool running = false;
    bool followed = false;
    bool heard = false;     // in the present refresh
    bool isPending = false; // to be delivered with the load
    QString status;
    QHash<QString, QString> values;    // by variable
    QHash<QString, QString> delivered; // with the status, as the latest snapshot has them
    Snapshot latest;
};
