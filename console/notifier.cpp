// SPDX-License-Identifier: LicenseRef-all-rights-reserved

#include "notifier.h"

#include "banner.h"
#include "display.h"

#include <QtCore/QCoreApplication>
#include <QtCore/QPointer>
#include <QtDBus/QDBusConnection>
#include <QtDBus/QDBusMessage>
#include <QtDBus/QDBusPendingCallWatcher>
#include <QtDBus/QDBusPendingReply>

namespace {

/// The urgency of a notification.
enum class Urgency : uchar { Low = 0, Normal = 1, Critical = 2 };

Urgency urgencyFor(Severity severity)
{
    switch (severity) {
    case Severity::Normal:
    case Severity::Information:
        return Urgency::Low;
    case Severity::Warning:
        return Urgency::Normal;
    case Severity::Critical:
    case Severity::Unknown:
        break;
    }
    return Urgency::Critical;
}

QString iconFor(Severity severity)
{
    switch (urgencyFor(severity)) {
    case Urgency::Low:
        return QStringLiteral("dialog-information");
    case Urgency::Normal:
        return QStringLiteral("dialog-warning");
    case Urgency::Critical:
        break;
    }
    return QStringLiteral("dialog-error");
}

} // namespace

Notifier::Notifier(SiteModel *watchedSite, QObject *parent)
    : QObject(parent)
    , site(watchedSite)
{
    connect(site, &SiteModel::changed, this, &Notifier::look);
    const auto noteServer = [this](const QString &name, const QString &reason, bool isMissed) {
        Server &server = servers[name];
        server.isMissed = isMissed;
        server.reason = reason;
        soon.start(0);
    };
    connect(site, &SiteModel::serverMissed, this,
            [=](const QString &name, const QString &reason) { noteServer(name, reason, true); });
    connect(site, &SiteModel::serverMet, this,
            [=](const QString &name) { noteServer(name, QString(), false); });
    soon.setSingleShot(true);
    connect(&soon, &QTimer::timeout, this, &Notifier::announceServers);
    patience.setSingleShot(true);
    patience.setInterval(UpsModel::patienceMsecs);
    connect(&patience, &QTimer::timeout, this, &Notifier::announceUnheard);
}

void Notifier::setEnabled(bool enabled)
{
    on = enabled;
}

bool Notifier::isEnabled() const
{
    return on;
}

void Notifier::setPatience(int msecs)
{
    patience.setInterval(msecs);
}

void Notifier::look(UpsModel *ups)
{
    if (!ups->snapshot().server.isEmpty())
        followServer(ups);
    if (ups->snapshot().isServerLost)
        return;
    if (ups->heardAt().isValid()) {
        unheard.remove(ups->id());
    } else if (!last.contains(ups->id())) {
        // At the start nothing is known yet, which is no news.
        if (!unheard.contains(ups->id()))
            patience.start();
        unheard.insert(ups->id());
        return;
    }
    announceState(ups);
}

void Notifier::announceUnheard()
{
    for (int i = 0; i < site->count(); ++i) {
        if (unheard.remove(site->at(i)->id()) && !site->at(i)->snapshot().isServerLost)
            announceState(site->at(i));
    }
    unheard.clear();
}

void Notifier::announceState(UpsModel *ups)
{
    const bool first = !last.contains(ups->id());
    Announced &before = last[ups->id()];
    const Severity severity = worseOf(ups->headline().severity, ups->severity());
    if (!first && before.text == ups->headline().text && before.severity == severity)
        return;
    before.text = ups->headline().text;
    before.severity = severity;
    // What is in order at the start is no news.
    const bool calm = urgencyFor(severity) == Urgency::Low;
    if (!on || (first && calm))
        return;
    // One below the other: texts of a UPS may have any words and signs in them.
    QStringList body = conditionTexts(*ups);
    body.prepend(sentence(sinceText(*ups)));
    if (!ups->timeLeft().isEmpty())
        body.append(tr("Time left: %1").arg(ups->timeLeft()));
    announce(ups->id(), ups->title(), body);
}

void Notifier::followServer(UpsModel *ups)
{
    Server &server = servers[ups->snapshot().server];
    const bool wasLost = server.lost.contains(ups->id());
    if (wasLost == ups->snapshot().isServerLost)
        return;
    if (wasLost)
        server.lost.remove(ups->id());
    else
        server.lost.insert(ups->id());
    server.reason = ups->snapshot().reason;
    soon.start(0);
}

void Notifier::announceServers()
{
    for (auto server = servers.begin(); server != servers.end(); ++server) {
        const bool isLost = server->isMissed || !server->lost.isEmpty();
        if (isLost == server->isAnnounced)
            continue;
        server->isAnnounced = isLost;
        Announced &now = last[server.key()];
        now.severity = isLost ? Severity::Unknown : Severity::Normal;
        now.text = isLost ? tr("No communication") : tr("Communication is back");
        if (!on)
            continue;
        QStringList body;
        const int count = int(server->lost.size());
        if (count > 0)
            body += count == 1 ? tr("1 UPS") : tr("%1 UPSes").arg(count);
        if (isLost)
            body += server->reason;
        announce(server.key(), site->serverTitle(server.key()), body);
    }
}

void Notifier::announce(const QString &key, const QString &name, QStringList body)
{
    const Announced &announced = last[key];
    QDBusConnection bus = QDBusConnection::sessionBus();
    if (!bus.isConnected())
        return;
    QDBusMessage call = QDBusMessage::createMethodCall(
        QStringLiteral("org.freedesktop.Notifications"),
        QStringLiteral("/org/freedesktop/Notifications"),
        QStringLiteral("org.freedesktop.Notifications"), QStringLiteral("Notify"));
    // Texts of the UPS are plain, the service may take them for markup.
    body.removeAll(QString());
    const QVariantMap hints = {
        {QStringLiteral("urgency"), QVariant::fromValue(uchar(urgencyFor(announced.severity)))},
        {QStringLiteral("desktop-entry"), QCoreApplication::applicationName()},
    };
    constexpr int asTheServiceLikes = -1;
    call.setArguments({QCoreApplication::applicationName(), announced.id,
                       iconFor(announced.severity), name + QStringLiteral(": ") + announced.text,
                       body.join(QLatin1Char('\n')).toHtmlEscaped(), QStringList(), hints,
                       asTheServiceLikes});
    auto *watcher = new QDBusPendingCallWatcher(bus.asyncCall(call), this);
    connect(watcher, &QDBusPendingCallWatcher::finished, this,
            [this, key](QDBusPendingCallWatcher *answer) { remember(key, answer); });
}

void Notifier::remember(const QString &key, QDBusPendingCallWatcher *answer)
{
    const QDBusPendingReply<quint32> reply = *answer;
    // The next announcement of this UPS or server takes the place of this one.
    if (!reply.isError() && last.contains(key))
        last[key].id = reply.value();
    answer->deleteLater();
}
