// SPDX-License-Identifier: LicenseRef-all-rights-reserved

#include "snapshots.h"

#include <QtTest/QTest>

namespace {

QString describe(const std::optional<double> &number)
{
    return number ? QString::number(*number, 'g', 17) : QStringLiteral("-");
}

QString describe(const Measure &measure)
{
    return QStringLiteral("%1 [%2 %3 %4 %5 %6]")
        .arg(describe(measure.value), describe(measure.minimum), describe(measure.maximum),
             describe(measure.nominal), describe(measure.low), describe(measure.high));
}

QString describe(const ElementState &state)
{
    return QStringLiteral("(%1, %2)").arg(int(state.alarm)).arg(int(state.operating));
}

} // namespace

QString describe(const Snapshot &snapshot)
{
    QStringList lines;
    lines += snapshot.isLost() ? QStringLiteral("lost: ") + snapshot.reason : QStringLiteral("ok");
    lines += snapshot.name + QLatin1Char('/') + snapshot.identity.manufacturer + QLatin1Char('/') +
             snapshot.identity.model;
    lines += snapshot.status.join(QLatin1Char('|'));
    lines += snapshot.alarms.join(QLatin1Char('|'));
    lines += snapshot.beeperEnabled ? QString::number(*snapshot.beeperEnabled) : QString();
    lines += QString::number(snapshot.simulated);
    lines += QStringLiteral("system ") + describe(snapshot.system);
    for (int i = 0; i < elementCount; ++i)
        lines += nameOf(Element(i)) + QLatin1Char(' ') + describe(snapshot.element(Element(i)));
    for (int i = 0; i < quantityCount; ++i)
        lines += nameOf(Quantity(i)) + QLatin1Char(' ') + describe(snapshot.measure(Quantity(i)));
    return lines.join(QLatin1Char('\n'));
}

char *toString(const ElementState &state)
{
    return QTest::toString(describe(state));
}

SnapshotLog::SnapshotLog(UpsFeed *feed)
{
    connect(feed, &UpsFeed::snapshotReady, this,
            [this](const Snapshot &snapshot) { snapshots += snapshot; });
}

bool SnapshotLog::isEmpty() const
{
    return snapshots.isEmpty();
}

int SnapshotLog::count() const
{
    return int(snapshots.count());
}

void SnapshotLog::clear()
{
    snapshots.clear();
}

const Snapshot &SnapshotLog::at(int index) const
{
    return snapshots.at(index);
}

Snapshot SnapshotLog::last() const
{
    return snapshots.isEmpty() ? Snapshot() : snapshots.last();
}
