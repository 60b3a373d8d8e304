// SPDX-License-Identifier: LicenseRef-all-rights-reserved

#pragma once

#include "snapshot.h"

#include <QtCore/QString>

#include <optional>

/// Values as text, for every page alike.
namespace Values {

/// What stands where nothing is measured.
QString noData();
/// The decimals that suit a quantity.
int decimalsOf(Quantity quantity);
/// A number without exponent and without "-0".
QString number(double value, int decimals);
/// A value with its unit: "230 V", "12.5 kW", "2:10", "no data". The number is the measured one;
/// beyond what any UPS can have it reads "> 9999 V". @p decimals below 0: those that suit.
QString text(Quantity quantity, std::optional<double> value, int decimals = -1);
/// Seconds as "2:10" below five minutes, else "12 min", "1 h 05 min", "> 99 h". Negative seconds,
/// which stand for "unknown" with some UPSes, are no data.
QString timeLeft(std::optional<double> seconds);

} // namespace Values

/// A quantity as it is shown: a number, which may be a measured 0, or "no data".
struct Reading
{
    enum class State { Missing, Zero, Number };

    State state = State::Missing;
    double value = 0.0; ///< the measured one
    QString text;       ///< with its unit
    QString phase;      ///< "L2" where it is that phase's, the worst; else empty
    bool outsideLimits = false;
};
bool operator==(const Reading &a, const Reading &b);
/// The reading of @p quantity in @p snapshot.
Reading readingOf(const Snapshot &snapshot, Quantity quantity);
/// The readings of its phases, the worst first; empty where the UPS has none.
QVector<Reading> phaseReadingsOf(const Snapshot &snapshot, Quantity quantity);
