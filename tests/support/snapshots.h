// SPDX-License-Identifier: LicenseRef-all-rights-reserved

#pragma once

#include "upsfeed.h"

#include <QtCore/QList>

/// Every field of a snapshot in one text, numbers to their last digit, for comparing and reporting.
QString describe(const Snapshot &snapshot);

/// For QCOMPARE's report.
char *toString(const ElementState &state);

/// Keeps what a feed delivers.
class SnapshotLog : public QObject
{
    Q_OBJECT

public:
    explicit SnapshotLog(UpsFeed *feed);

    bool isEmpty() const;
    int count() const;
    void clear();
    const Snapshot &at(int index) const;
    /// The latest one; a new snapshot when there is none.
    Snapshot last() const;

private:
    QList<Snapshot> snapshots;
};
