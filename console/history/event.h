// SPDX-License-Identifier: LicenseRef-all-rights-reserved

#pragma once

#include "severity.h"

#include <QtCore/QDateTime>
#include <QtCore/QString>
#include <QtCore/QVector>

#include <optional>

/// What an event is about.
enum class EventKind { State, Alarm, Communication, Limit, Command };
constexpr int eventKindCount = 5;

/// Something that happened to a UPS, from its begin to its end. Times are in milliseconds since
/// 1970, UTC.
struct Event
{
    /// The condition of a server that cannot be read. With its length, which Clang does not compute
    /// as a constant in Qt 5.
    static constexpr QLatin1String serverSilence{"no-communication-with-server", 28};

    qint64 id = 0; ///< the store's; above 0
    QString ups;   ///< the id of its UpsModel, or the name of a server of the SiteModel
    EventKind kind = EventKind::State;
    QString condition; ///< the same for the same cause
    Severity severity = Severity::Information;
    QString text;  ///< plain text, may come from the UPS
    QString value; ///< what was measured at its begin; may be empty
    qint64 begin = 0;
    std::optional<qint64> end; ///< absent while it lasts
    bool endSeen = true;       ///< false: it ended at some time after end, while nobody watched
    qint64 lasted = 0;         ///< milliseconds that it was present, without the present stretch
    qint64 resumed = 0;        ///< when the present or the last stretch began
    int count = 1;             ///< how many times it began, one soon after the other
    QString user;              ///< who gave the command; else empty
    std::optional<qint64> acknowledgedAt;
    QString acknowledgedBy;

    bool isOfServer() const;
    bool isPresent() const;
    bool isAcknowledged() const;
    /// How long it was, or has been by @p now, present, in milliseconds.
    qint64 length(qint64 now) const;
};
bool operator==(const Event &a, const Event &b);

/// Which events are asked for.
struct EventFilter
{
    std::optional<Severity> least; ///< that one and all that matter more
    QString ups;                   ///< empty: all
    std::optional<qint64> from;    ///< those that lasted at least until then
    QString text;                  ///< part of any of their texts, in upper or lower case

    bool matches(const Event &event) const;
};

/// The order in which events are listed: what is present and not acknowledged first, then the
/// later ones first.
bool comesBefore(const Event &a, const Event &b);

/// A short English name, such as "Alarm".
QString nameOf(EventKind kind);
/// A short English name of how much @p event matters, such as "Critical".
QString severityNameOf(const Event &event);

/// @p cell as a cell of a CSV file: quoted where needed, and with an apostrophe in front where a
/// spreadsheet would take it for a formula.
QString csvCell(QString cell);
/// One line of a CSV file, with its end.
QString csvLine(const QStringList &cells);
/// The events with a line of headings; times are UTC.
QString csvOf(const QVector<Event> &events);
/// An instant as CSV files have it, "2026-11-22 14:03:22", UTC.
QString csvTime(qint64 at);
