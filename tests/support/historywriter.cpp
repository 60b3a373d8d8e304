// SPDX-License-Identifier: LicenseRef-all-rights-reserved

// Writes events into a history and says which are acknowledged, until somebody ends it.
//
// Usage: kivhistorywriter DIRECTORY

#include "history.h"

#include <QtCore/QCoreApplication>

#include <cstdio>

int main(int argc, char **argv)
{
    const QCoreApplication application(argc, argv);
    if (argc != 2)
        return 2;
    History history(QString::fromLocal8Bit(argv[1]));
    qint64 at = QDateTime::currentMSecsSinceEpoch();
    const auto happen = [&] {
        at += 2 * Journal::settleTime;
        EventChange change;
        change.ups = QStringLiteral("demo");
        change.condition = QStringLiteral("on-battery");
        change.text = QStringLiteral("On battery");
        change.severity = Severity::Warning;
        change.at = at;
        EventChange end = change;
        end.what = EventChange::What::End;
        end.at = at + secondMsecs;
        history.addEvents({change, end});
        QVector<UpsSample> samples;
        for (int i = 0; i < quantityCount; ++i)
            samples.append({change.ups, {at, Quantity(i), float(i)}});
        history.addSamples(samples, at);
    };
    QObject::connect(&history, &History::eventsChanged, [&](const QVector<Event> &events) {
        for (const Event &event : events) {
            if (event.isAcknowledged()) {
                std::printf("%lld\n", static_cast<long long>(event.id));
                std::fflush(stdout);
                happen();
            } else {
                history.acknowledge({event.id}, QStringLiteral("operator"), at + 2 * secondMsecs);
            }
        }
    });
    happen();
    return QCoreApplication::exec();
}
