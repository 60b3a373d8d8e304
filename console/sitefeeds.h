// SPDX-License-Identifier: LicenseRef-all-rights-reserved

#pragma once

#include "feed/nutfeed.h"
#include "feed/prometheus.h"
#include "feed/sitefile.h"
#include "model/sitemodel.h"

#include <memory>
#include <vector>

struct Options;

/// The servers and UPSes that the command line and its configuration file name, and the users in
/// its file of credentials, or, where none is named, in the file @p kept if it is there.
/// @return false with the reason in @p error, in one line.
bool readSite(const Options &options, const QString &kept, SiteEntries *entries,
              QVector<Credentials> *users, QString *error);

/// Fills a site with all UPSes of its servers: those that are named, and those that the servers
/// say they have.
class SiteFeeds : public QObject
{
    Q_OBJECT

public:
    /// Feeds @p site, which must live as long. More than mostEntries UPSes are left out.
    explicit SiteFeeds(SiteModel *site, QObject *parent = nullptr);
    ~SiteFeeds() override;

    /// Adds what @p entries name. TLS is required where the entry says so, or, where it says
    /// nothing, for a server that has a user among @p users and is not on this machine.
    /// @return false with the reason in @p error when a file of authorities cannot be used.
    bool add(const SiteEntries &entries, const QVector<Credentials> &users, QString *error,
             const NutTimes &times = NutTimes(), const PromTimes &promTimes = PromTimes());
    void start();
    /// The feed of a UPS that a Prometheus server knows; null for any other.
    PromFeed *promFeed(const QString &upsId) const;
    /// Adds a user of the server of @p upsId to those in the file @p path, or replaces the server's
    /// user there; the rest of the file stays as it is.
    /// @return false with the reason in @p error.
    bool keepUser(const QString &path, const QString &upsId, const QString &user,
                  const QString &password, QString *error);

Q_SIGNALS:
    /// A server does not have a UPS that the file or an option names: a line with its place, which
    /// comes once for each place.
    void nameMissed(const QString &line);

private:
    struct Server
    {
        ServerEntry entry;
        QString unseenPlace; // where the shown one of the names is that the server does not have
        QSet<QString> names; // of its UPSes, in lower case
        int losses = 0;
        std::unique_ptr<NutServerFeed> link;
    };

    struct Source
    {
        PromEntry entry;
        QString title; // for the screen
        bool isFirst = false;
        bool hasUpses = false;
        int losses = 0;
        QHash<QString, int> named;  // names in the entry, and their index
        QHash<QString, int> unseen; // those that no UPS has
        QString unseenPlace;        // where the shown one of them is named
        std::unique_ptr<PromSource> link;
    };

    bool addServer(const ServerEntry &entry, const QVector<Credentials> &users,
                   const NutTimes &times, QString *error);
    void follow(Server *server);
    bool addPrometheus(const PromEntry &entry, const PromTimes &times, QString *error);
    void addUps(Server *server, const UpsEntry &ups, bool begin);
    void takeUser(const QString &server, const QString &user, const QString &problem);
    void addPromFeed(Source *source, PromFeed *feed);
    void showUnseen(Source *source);
    void showUnseen(Server *server);
    void showUnseen(const QString &server, const UpsEntry *first, int count, QString *shownPlace);
    void takeFound(Server *server, const QVector<NutUps> &all);

    SiteModel *site;
    std::vector<std::unique_ptr<Server>> servers;
    std::vector<std::unique_ptr<NutFeed>> feeds;
    std::vector<std::unique_ptr<Source>> sources;
    QHash<QString, PromFeed *> promFeeds; // the sources' own, by id
    QHash<QString, QString> refusedUsers; // as problems of the site, by server
    QSet<QString> misnamed;               // places of names that were reported
};
