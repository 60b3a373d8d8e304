// SPDX-License-Identifier: LicenseRef-all-rights-reserved

#pragma once

#include "httppost.h"
#include "nutlistreader.h"
#include "promanswer.h"
#include "promdialect.h"
#include "upsfeed.h"

#include <QtCore/QTimer>
#include <QtCore/QUrl>
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
    bool hasSecrets() const;
    /// Whether secrets would leave this machine in the clear.
    bool wouldLeak() const;
    /// Why not.
    static QString leakWords();

    QUrl url;
    QString name; ///< for the screen; empty: the address
    QString job = QStringLiteral("nut");
    QString dialect = QStringLiteral("network_ups_tools");
    QString upsLabel; ///< names the UPS; empty: as the dialect does
    // Files and lines that name them, or the server; may be empty.
    QString place; ///< of the job
    QString dialectPlace;
    QString labelPlace;
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
    HttpPoolTimes connections;
};

class PromFeed;

/// Follows the UPSes that a Prometheus-compatible server knows. A refresh asks for the set status
/// flags with their age, for what is not reached, and for the loads; and for all values of the
/// UPSes that are followed. Where nothing matches, it asks what there is instead.
class PromSource : public QObject
{
    Q_OBJECT

public:
    using Answer = std::function<void(const PromAnswer &)>;

    explicit PromSource(const PromServer &server, const PromTimes &times = PromTimes(),
                        QObject *parent = nullptr);
    ~PromSource() override;

    void start();
    /// The server's name for the screen.
    const QString &name() const;
    /// Asks a custom query, and for @p labels of its series; @p answer comes once, unless
    /// this ends before.
    void query(const QString &text, const QStringList &labels, const Answer &answer);
    /// The same over a time, with a step in seconds; both ends in seconds since the epoch.
    /// @return what can be aborted as long as there is no answer; null where nothing is sent.
    HttpPost *queryRange(const QString &text, const QStringList &labels, double from, double to,
                         double step, const Answer &answer);

Q_SIGNALS:
    /// A UPS that was not known. The feed is this object's.
    void found(PromFeed *feed);
    /// What keeps the server from being read (@p isLost), or is wrong with what it answers; no
    /// text: nothing.
    void problemChanged(const QString &text, bool isLost);
    /// The server cannot be read; comes with each refresh that fails.
    void lost(const QString &reason);
    /// The statuses of all UPSes that match were taken.
    void refreshed();

private:
    friend class PromFeed;
    using Key = QPair<QString, QString>; // instance and UPS

    /// What a refresh finds of the job.
    enum class Match {
        Nothing,
        Unscraped, ///< exporters that cannot be scraped, and nothing else
        Statuses,
    };

    void refresh();
    void takeStatuses(const PromAnswer &answer);
    void takeStatus(PromFeed *feed);
    void askForLoads();
    void takeLoads(const PromAnswer &answer);
    void explainNothing();
    void takeJobs(const PromAnswer &answer);
    void takeMetrics(const PromAnswer &answer);
    void lookForLabels();
    void reportNothing(const QString &why, const QString &place);
    void askForValues(PromFeed *feed);
    void takeValues(PromFeed *feed, const PromAnswer &answer);
    void loseAll(const QString &reason);
    HttpPost *get(const QString &path, QList<QPair<QString, QString>> items,
                  const QStringList &labels, const Answer &answer);
    QString wordsForRefusal(int code) const;
    PromFeed *feedOf(const PromSeries &series);
    void report(const QString &problem, bool isLost = false);
    void reportPresent();
    QString status() const;

    const PromServer server;
    const PromTimes times;
    const PromDialect *dialect;
    const PromValue *load; // null where the dialect has none
    const QString shownName;
    const QString upsLabel;
    HttpPool pool;
    QTimer timer;
    QString problem;
    // What is wrong though the server answers: each a line, or nothing.
    QString warnings;
    QString nothing;    // matches, and why
    QString unlabelled; // UPSes that are not told apart
    QString loadProblem;
    Match match = Match::Nothing;
    int round = 0;
    int explainedAt = 0; // round
    int losses = 0;      // of the server
    std::vector<std::unique_ptr<PromFeed>> feeds;
    QHash<Key, PromFeed *> byKey;
};

/// One UPS of a PromSource.
class PromFeed : public UpsFeed
{
    Q_OBJECT

public:
    /// "ups@instance (job)": unique on the server.
    const QString &key() const;
    /// As its label says; the instance where it has none.
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

    PromFeed(PromSource *source, const QString &instance, const QString &ups);
    void takeNumber(const QString &variable, double number);
    void deliver();
    void lose(const QString &reason, bool withServer = false);

    PromSource *source;
    QString place;
    QString ups;
    QString id;
    bool running = false;
    bool followed = false;
    bool heard = false;     // in the present refresh
    bool isPending = false; // to be delivered with the load
    bool changed = false;   // the latest snapshot is old
    // What the present refresh says.
    int round = 0;
    int loadRound = 0;
    QStringList flags;
    double scraped = 0.0;
    QStringList status;             // those flags that the variables have
    QHash<QString, double> numbers; // by variable; finite
    NutVariables variables;         // the same as texts, and the status
    Snapshot latest;
};
