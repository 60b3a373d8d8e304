// SPDX-License-Identifier: LicenseRef-all-rights-reserved

#include "cacheprobe.h"

#include "images.h"

#include <QtCore/QCoreApplication>
#include <QtCore/QVariant>
#include <QtGui/QPaintEvent>

CacheProbe::CacheProbe(QWidget *watched, std::vector<Cache> watchedCaches)
    : widget(watched)
    , caches(std::move(watchedCaches))
{}

QString CacheProbe::effectOf(const std::function<void()> &action)
{
    deliverAll();
    imageOf(widget);
    if (!dropped().isEmpty())
        return QStringLiteral("not painted: ") + dropped();

    std::vector<qint64> keys;
    for (const Cache &cache : caches)
        keys.push_back((*cache.second)->cacheKey());
    // An event that paints at once leaves new images instead of none.
    const auto lost = [&] {
        QStringList names;
        for (std::size_t i = 0; i < caches.size(); ++i) {
            const QImage *image = *caches[i].second;
            if (!image || image->cacheKey() != keys[i])
                names.append(QLatin1String(caches[i].first));
        }
        return names.join(QLatin1Char(','));
    };

    EventCounter events(widget);
    action();
    const QString atOnce = lost();
    const bool posted = takesUpdateRequest(widget);
    const QString later = lost();
    deliverAll();
    const bool painted = events.count(QEvent::Paint) > 0;
    const QString unseen = painted ? QString() : QStringLiteral(", without a paint");
    if (!atOnce.isEmpty())
        return QStringLiteral("drops ") + atOnce + unseen;
    if (posted)
        return QStringLiteral("posts, drops ") + later + unseen;
    return painted ? QStringLiteral("updates") : QStringLiteral("nothing");
}

QString CacheProbe::effectOf(const char *property, const QVariant &value)
{
    return effectOf([&] { widget->setProperty(property, value); });
}

QString CacheProbe::effectOf(QEvent::Type type)
{
    return effectOf([&] { sendPlain(widget, type); });
}

QString CacheProbe::dropped() const
{
    QStringList names;
    for (const auto &[name, image] : caches) {
        if (!*image)
            names.append(QLatin1String(name));
    }
    return names.join(QLatin1Char(','));
}

void sendPaint(QWidget *widget)
{
    QPaintEvent event(QRect(0, 0, 1, 1));
    QCoreApplication::sendEvent(widget, &event);
}

void sendPlain(QWidget *widget, QEvent::Type type)
{
    QEvent event(type);
    QCoreApplication::sendEvent(widget, &event);
}
