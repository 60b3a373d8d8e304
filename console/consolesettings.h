// SPDX-License-Identifier: LicenseRef-all-rights-reserved

#pragma once

#include "history/store.h"

/// The file of settings, console.ini: what runs remember, and what a user writes by hand.
namespace ConsoleSettings {

/// How long the history keeps what, as the group "history" of @p file says.
Retention keptTimes(const QString &file);

/// Deletes from @p file what earlier runs remembered. How long the history is kept is no choice of
/// a run, and forgetting it would delete history: it stays.
void forget(const QString &file);

} // namespace ConsoleSettings
