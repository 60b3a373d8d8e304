// SPDX-License-Identifier: LicenseRef-all-rights-reserved

#pragma once

#include "store.h"

/// Something that happened, on its way into the list of events.
struct EventChange
{
    enum class What {
        Begin,   ///< a condition began, or is worse than before
        End,     ///< it is over
        Present, ///< all that is present, seen for the first time after a while
        Moment,  ///< something without a length
    };

    What what = What::Begin;
    QString ups;
    EventKind kind = EventKind::State;
    QString condition;
    Severity severity = Severity::Information;
    QString text;
    QString value;
    QString user;
    qint64 at = 0;
    QVector<EventChange> present; ///< for Present: the begin of each condition
};

/// Turns what happens into events: one for each condition, from its begin to its end. A condition
/// that begins again soon after its end continues its event, and counts.
namespace Journal {

/// Conditions that begin again within this time, in milliseconds, are the same event.
constexpr qint64 settleTime = minuteMsecs;

/// Writes @p changes in one go, and returns the events that they made or changed; nothing where the
/// store fails.
std::optional<QVector<Event>> apply(Store *store, const QVector<EventChange> &changes);

/// Marks events as acknowledged; those that are already, stay as they are.
std::optional<QVector<Event>> acknowledge(Store *store, const QVector<qint64> &ids,
                                          const QString &who, qint64 at);

/// Ends what is present of UPSes that are not among @p watched any more.
std::optional<QVector<Event>> leave(Store *store, const QStringList &watched);

} // namespace Journal
