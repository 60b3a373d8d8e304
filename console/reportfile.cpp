// SPDX-License-Identifier: LicenseRef-all-rights-reserved

#include "reportfile.h"

#include "feed/nutaddress.h"
#include "options.h"

#include <QtCore/QSaveFile>
#include <QtCore/QTimeZone>

bool writeReport(const Options &options, const QString &directory, QString *error)
{
    QStringList upses;
    for (const QString &text : options.upses) {
        const std::optional<NutAddress> address = NutAddress::parse(text, error);
        if (!address)
            return false;
        upses.append(address->toString());
    }
    Store store;
    const QDateTime now = QDateTime::currentDateTimeUtc();
    if (!store.open(directory, Store::Mode::Reading, now)) {
        *error = QStringLiteral("no history: ") + store.problemText();
        return false;
    }
    const QStringList known = store.upsNames();
    for (const QString &ups : std::as_const(upses)) {
        if (!known.contains(ups)) {
            *error = QStringLiteral("the history knows no UPS %1").arg(ups);
            return false;
        }
    }
    const QTimeZone zone = QTimeZone::systemTimeZone();
    const Report report =
        reportOf(&store, upses, spanOf(*options.report, now.toMSecsSinceEpoch(), zone));
    if (store.problem() != Store::Problem::None) {
        *error = QStringLiteral("the history cannot be read: ") + store.problemText();
        return false;
    }
    const bool asPage = options.output.endsWith(QLatin1String(".html"), Qt::CaseInsensitive);
    const QByteArray bytes = asPage ? htmlOf(report, zone).toUtf8() : csvOf(report).toUtf8();
    QSaveFile file(options.output);
    if (file.open(QIODevice::WriteOnly) && file.write(bytes) == bytes.size() && file.commit())
        return true;
    *error = QStringLiteral("cannot write %1: %2").arg(options.output, file.errorString());
    return false;
}
