// SPDX-License-Identifier: LicenseRef-all-rights-reserved

#pragma once

#include "nutlistreader.h"
#include "snapshot.h"

#include <string_view>

/// What the variables of a UPS say, as a snapshot of an unbroken link.
///
/// A variable that is missing or not a number is "no data". Unknown status tokens are shown as they
/// stand and change no state. While the server waits for its driver's first data (WAIT), and where
/// there is no status at all, the link counts as unbroken, but every state is unknown; a WAIT
/// leaves no values either.
Snapshot snapshotOf(const QString &upsName, const NutVariables &variables);

/// A number as the server writes it, with a decimal point whatever the locale; nothing for anything
/// else, for infinities and for "nan".
std::optional<double> nutNumber(const QString &text);
std::optional<double> nutNumber(std::string_view text);

/// The variable that gives @p quantity, such as "battery.charge".
QString nutVariableOf(Quantity quantity);
