// SPDX-License-Identifier: LicenseRef-all-rights-reserved

#include "display.h"

#include <QtCore/QLocale>

#include <algorithm>

elemDesc_t shownState(ElementState state)
{
    return {quint8(state.alarm), quint8(state.operating)};
}

QString sentence(QString text)
{
    if (!text.isEmpty())
        text[0] = text.at(0).toUpper();
    return text;
}

QString noHistoryText()
{
    return QStringLiteral("Screenshots show no history");
}

QString momentText(qint64 at, const QDateTime &now)
{
    const QDateTime local = QDateTime::fromMSecsSinceEpoch(at);
    if (local.date() == now.date())
        return local.toString(QStringLiteral("HH:mm:ss"));
    const QLocale words = QLocale::c();
    return words.toString(local, local.date().year() == now.date().year()
                                     ? QStringLiteral("d MMM HH:mm")
                                     : QStringLiteral("d MMM yyyy HH:mm"));
}

QString lengthText(qint64 msecs)
{
    constexpr qint64 second = 1000;
    constexpr qint64 minute = 60;
    constexpr qint64 hour = 60 * minute;
    constexpr qint64 day = 24 * hour;
    const qint64 seconds = std::max<qint64>(msecs, 0) / second;
    if (seconds < minute)
        return QStringLiteral("%1 s").arg(seconds);
    if (seconds < hour)
        return QStringLiteral("%1 min").arg(seconds / minute);
    if (seconds < day)
        return QStringLiteral("%1 h %2 min")
            .arg(seconds / hour)
            .arg(seconds % hour / minute, 2, 10, QLatin1Char('0'));
    return QStringLiteral("%1 d %2 h").arg(seconds / day).arg(seconds % day / hour);
}
