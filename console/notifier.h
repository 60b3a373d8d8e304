// SPDX-License-Identifier: LicenseRef-all-rights-reserved

#pragma once

#include "model/sitemodel.h"

#include <QtCore/QHash>
#include <QtCore/QObject>

class QDBusPendingCallWatcher;

/// Announces changes of state on the desktop, through org.freedesktop.Notifications over the
/// session's D-Bus. Without a bus or a service it does nothing.
class Notifier : public QObject
{
    Q_OBJECT

public:
    /// Watches @p site, which must live as long.
    explicit Notifier(SiteModel *site, QObject *parent = nullptr);

    /// On unless switched off; what happens meanwhile is not announced later.
    void setEnabled(bool enabled);
    bool isEnabled() const;

private:
    /// What the last announcement of a UPS was.
    struct Announced
    {
        QString text;
        Severity severity = Severity::Normal;
        quint32 id = 0;
    };

    void look(UpsModel *ups);
    void announce(UpsModel *ups, Announced *last);
    void remember(const QString &ups, QDBusPendingCallWatcher *answer);

    bool on = true;
    QHash<QString, Announced> last; // by the UPS's id
};
