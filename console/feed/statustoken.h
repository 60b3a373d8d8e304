// SPDX-License-Identifier: LicenseRef-all-rights-reserved

#pragma once

#include <QtCore/QFlags>
#include <QtCore/QString>
#include <QtCore/QStringList>

/// What a UPS says of itself in one word each: the tokens of ups.status, and what only the
/// simulation knows.
enum class StatusToken : quint32 {
    OnLine = 1U << 0,          ///< OL
    OnBattery = 1U << 1,       ///< OB
    LowBattery = 1U << 2,      ///< LB
    HighBattery = 1U << 3,     ///< HB
    ReplaceBattery = 1U << 4,  ///< RB
    Charging = 1U << 5,        ///< CHRG
    Discharging = 1U << 6,     ///< DISCHRG
    Bypass = 1U << 7,          ///< BYPASS
    Calibrating = 1U << 8,     ///< CAL
    Off = 1U << 9,             ///< OFF
    Overload = 1U << 10,       ///< OVER
    Trimming = 1U << 11,       ///< TRIM: lowers a high input voltage
    Boosting = 1U << 12,       ///< BOOST: raises a low input voltage
    ForcedShutdown = 1U << 13, ///< FSD
    Alarm = 1U << 14,          ///< ALARM
    Waiting = 1U << 15,        ///< WAIT: the driver has no data yet
    Locked = 1U << 16,         ///< switched off and not to be switched on; simulation only
    Starting = 1U << 17,       ///< on the way from stand-by to on; simulation only
};
Q_DECLARE_FLAGS(StatusTokens, StatusToken)
Q_DECLARE_OPERATORS_FOR_FLAGS(StatusTokens)

constexpr int nutTokenCount = 16; ///< tokens that a server sends, from the lowest bit

/// The word that the server sends for @p token, such as "OB"; empty for the simulation's own.
QString wordOf(StatusToken token);
/// The tokens among @p words; the words that are none are appended to @p others.
StatusTokens tokensOf(const QStringList &words, QStringList *others = nullptr);
