// SPDX-License-Identifier: LicenseRef-all-rights-reserved

#pragma once

#include "nutaddress.h"

#include <QtCore/QVector>

#include <optional>

/// A file that the configuration or the command line names.
struct NamedFile
{
    QString path;  ///< empty: none
    QString place; ///< "file:line" of what names it; empty on the command line
};

/// A UPS of a server, and how it is called here.
struct UpsEntry
{
    QString upsName; ///< on the server; on a Prometheus server also "NAME@INSTANCE"
    QString name;    ///< a custom one; empty: the server's
    QString site;    ///< the group; empty: that of the server
    QString place;   ///< "file:line", or the option, that names it; may be empty
};

/// Whether two names are of the same UPS for a server of Network UPS Tools, which does not
/// distinguish upper and lower case.
bool isSameUps(const QString &a, const QString &b);

/// A server of Network UPS Tools.
struct ServerEntry
{
    /// Its name for the screen, with its address.
    QString title() const;

    NutHost host;
    QString name;            ///< of its section; may be empty
    QString site;            ///< the group of its UPSes; empty: the server's address
    std::optional<bool> tls; ///< whether TLS is required; absent: as the password asks for it
    NamedFile authorities;   ///< empty: the system's
    bool all = false;        ///< every UPS that the server has
    QVector<UpsEntry> upses; ///< those named
    QString place;           ///< "file:line" of its section; may be empty
};

/// A Prometheus-compatible server.
struct PromEntry
{
    QString name; ///< of its section; may be empty
    QString url;
    NamedFile auth; ///< its user or token
    NamedFile authorities;
    QString job = QStringLiteral("nut");
    QString dialect = QStringLiteral("network_ups_tools");
    QString label;           ///< names the UPSes; empty: that of the dialect
    QString site;            ///< the group of its UPSes; empty: the instance of each
    QVector<UpsEntry> upses; ///< those with a custom name or group
    // "file:line" of a key, or of the section; may be empty.
    QString place; ///< of the job
    QString dialectPlace;
    QString labelPlace;
};

/// A user of one server. Never print it.
struct Credentials
{
    NutHost host;
    QString user;
    QString password;
};

/// What the console follows.
struct SiteEntries
{
    QVector<ServerEntry> servers;
    QVector<PromEntry> prometheus;
    NamedFile credentials;

    ServerEntry *find(const NutHost &host);
};

/// Bounds of the files.
constexpr int mostSiteBytes = 4 * 1024 * 1024;
constexpr int mostServers = 1000;
constexpr int mostEntries = 20000; ///< UPSes

/// Reads the configuration @p text of the file @p fileName. Nothing where something is wrong: the
/// reason is in @p error, in one line that begins with the file's name and the line's number.
std::optional<SiteEntries> parseSiteFile(const QByteArray &text, const QString &fileName,
                                         QString *error);

/// The same for the file of users and passwords. The reason never quotes it.
std::optional<QVector<Credentials>> parseCredentials(const QByteArray &text,
                                                     const QString &fileName, QString *error);
/// The file's @p text with @p user in place of its server's present one, or added; everything else
/// stays as it is. Nothing, with the reason in @p error, where the text is not understood, or the
/// file cannot hold the user.
std::optional<QByteArray> withCredentials(const QByteArray &text, const Credentials &user,
                                          const QString &fileName, QString *error);
