// SPDX-License-Identifier: LicenseRef-all-rights-reserved

#include "consolesettings.h"

#include <QtCore/QFile>
#include <QtCore/QSettings>

namespace {

const QLatin1String historyGroup("history");

} // namespace

Retention ConsoleSettings::keptTimes(const QString &file)
{
    Retention kept;
    if (file.isEmpty())
        return kept;
    QSettings settings(file, QSettings::IniFormat);
    settings.beginGroup(historyGroup);
    const auto days = [&settings](const char *key, int usual) {
        bool isNumber = false;
        const int value = settings.value(QLatin1String(key)).toInt(&isNumber);
        constexpr int longest = 36500;
        return isNumber && value >= 0 && value <= longest ? value : usual;
    };
    kept.rawDays = days("rawDays", kept.rawDays);
    kept.minuteDays = days("minuteDays", kept.minuteDays);
    kept.hourDays = days("hourDays", kept.hourDays);
    return kept;
}

void ConsoleSettings::forget(const QString &file)
{
    {
        QSettings settings(file, QSettings::IniFormat);
        const QStringList groups = settings.childGroups();
        if (settings.status() == QSettings::NoError && groups.contains(historyGroup)) {
            const QStringList keys = settings.allKeys();
            for (const QString &key : keys) {
                if (!key.startsWith(historyGroup + QLatin1Char('/')))
                    settings.remove(key);
            }
            return;
        }
    }
    QFile::remove(file);
}
