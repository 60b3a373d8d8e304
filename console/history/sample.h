// SPDX-License-Identifier: LicenseRef-all-rights-reserved

#pragma once

#include "snapshot.h"

#include <QtCore/QByteArray>
#include <QtCore/QVector>

#include <optional>

constexpr qint64 secondMsecs = 1000;
constexpr qint64 minuteMsecs = 60 * secondMsecs;
constexpr qint64 hourMsecs = 60 * minuteMsecs;
constexpr qint64 dayMsecs = 24 * hourMsecs;
/// Values are recorded at least each minute: after this time without one, nothing was measured.
constexpr qint64 longestHold = minuteMsecs * 5 / 2;

/// The begin of the @p step that @p at is in, also for instants before 1970.
qint64 floorTo(qint64 at, qint64 step);

/// A value from an instant on, until the next one of its quantity. Not a number: there is none.
struct Sample
{
    qint64 at = 0; ///< milliseconds since 1970, UTC
    Quantity quantity = Quantity::Load;
    float value = 0.0F;

    bool isGap() const;
};
/// Bit by bit, so that gaps equal each other.
bool operator==(const Sample &a, const Sample &b);

/// Sorts @p samples by time, and takes out what is there twice: whatever order they came in, the
/// result is the same.
void putInOrder(QVector<Sample> *samples);

/// The samples of one minute as bytes, and back; what is garbled is left out.
QByteArray packed(const QVector<Sample> &samples, qint64 minute);
QVector<Sample> unpacked(const QByteArray &bytes, qint64 minute);

/// What a stretch of time comes to.
struct Rollup
{
    double low = 0.0;
    double high = 0.0;
    double mean = 0.0;  ///< weighted with how long each value was there
    qint64 covered = 0; ///< milliseconds in which there was a value
};
bool operator==(const Rollup &a, const Rollup &b);

/// The roll-up of one quantity's samples, in order, of which the last counts until @p end; absent
/// where no value was measured.
std::optional<Rollup> rollUp(const QVector<Sample> &samples, qint64 end);
/// The roll-up of several; absent for none.
std::optional<Rollup> rollUp(const QVector<Rollup> &parts);
