// SPDX-License-Identifier: LicenseRef-all-rights-reserved

#pragma once

#include "model/sitemodel.h"

#include <QtCore/QHash>
#include <QtCore/QObject>
#include <QtCore/QSet>
#include <QtCore/QTimer>

class QDBusPendingCallWatcher;

/// Announces changes of state on the desktop, through org.freedesktop.Notifications over the
/// session's D-Bus. Without a bus or a service it does nothing. UPSes that are lost with their
/// server are announced once, for all of them, and so is a server that cannot be read from the
/// start.
class Notifier : public QObject
{
    Q_OBJECT

public:
    /// Watches @p site, which must live as long.
    explicit Notifier(SiteModel *site, QObject *parent = nullptr);

    /// On unless switched off; what happens meanwhile is not announced later.
    void setEnabled(bool enabled);
    bool isEnabled() const;
    /// How long a UPS may be silent at the start before that is announced, in milliseconds; at
    /// first UpsModel::patienceMsecs.
    void setPatience(int msecs);

private:
    /// What the last announcement of a UPS or a server was.
    struct Announced
    {
        QString text;
        Severity severity = Severity::Normal;
        quint32 id = 0;
    };
    struct Server
    {
        QSet<QString> lost; ///< ids of the UPSes that were lost with it
        QString reason;
        bool isMissed = false; ///< it was never read
        bool isAnnounced = false;
    };

    void look(UpsModel *ups);
    void announceUnheard();
    void announceState(UpsModel *ups);
    void followServer(UpsModel *ups);
    void announceServers();
    /// Announces what @p key has in the list of the last ones.
    void announce(const QString &key, const QString &name, QStringList body);
    void remember(const QString &key, QDBusPendingCallWatcher *answer);

    SiteModel *site;
    bool on = true;
    QHash<QString, Announced> last; // by the UPS's id, or the server's name
    QHash<QString, Server> servers; // by name
    QTimer soon;                    // all UPSes of a server are lost in one go
    QSet<QString> unheard;          // ids of the UPSes that were never heard
    QTimer patience;                // with them
};
