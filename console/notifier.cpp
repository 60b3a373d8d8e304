// SPDX-License-Identifier: LicenseRef-all-rights-reserved

#include "notifier.h"

#include "banner.h"

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

Notifier::Notifier(SiteModel *site, QObject *parent)
    : QObject(parent)
{
    connect(site, &SiteModel::changed, this, &Notifier::look);
}

void Notifier::setEnabled(bool enabled)
{
    on = enabled;
}

bool Notifier::isEnabled() const
{
    return on;
}

void Notifier::look(UpsModel *ups)
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
    if (on && !(first && calm))
        announce(ups, &before);
}

void Notifier::announce(UpsModel *ups, Announced *lastAnnounced)
{
    QDBusConnection bus = QDBusConnection::sessionBus();
    if (!bus.isConnected())
        return;
    QDBusMessage call = QDBusMessage::createMethodCall(
        QStringLiteral("org.freedesktop.Notifications"),
        QStringLiteral("/org/freedesktop/Notifications"),
        QStringLiteral("org.freedesktop.Notifications"), QStringLiteral("Notify"));
    // Texts of the UPS are plain, the service may take them for markup.
    QStringList body(conditionText(*ups));
    if (!ups->timeLeft().isEmpty())
        body.append(tr("Time left: %1").arg(ups->timeLeft()));
    body.removeAll(QString());
    const QString name = ups->title();
    const QVariantMap hints = {
        {QStringLiteral("urgency"),
         QVariant::fromValue(uchar(urgencyFor(lastAnnounced->severity)))},
        {QStringLiteral("desktop-entry"), QCoreApplication::applicationName()},
    };
    constexpr int asTheServiceLikes = -1;
    call.setArguments(
        {QCoreApplication::applicationName(), lastAnnounced->id, iconFor(lastAnnounced->severity),
         name + QStringLiteral(": ") + lastAnnounced->text,
         body.join(QLatin1Char('\n')).toHtmlEscaped(), QStringList(), hints, asTheServiceLikes});
    auto *watcher = new QDBusPendingCallWatcher(bus.asyncCall(call), this);
    const QString id = ups->id();
    connect(watcher, &QDBusPendingCallWatcher::finished, this,
            [this, id](QDBusPendingCallWatcher *answer) { remember(id, answer); });
}

void Notifier::remember(const QString &ups, QDBusPendingCallWatcher *answer)
{
    const QDBusPendingReply<quint32> reply = *answer;
    // The next announcement of this UPS takes the place of this one.
    if (!reply.isError() && last.contains(ups))
        last[ups].id = reply.value();
    answer->deleteLater();
}
