// SPDX-License-Identifier: LicenseRef-all-rights-reserved

#pragma once

#include "commandresult.h"
#include "severity.h"

#include <QtCore/QDateTime>

/// A command that was given to a UPS of the site, with its outcome.
struct CommandRecord : CommandResult
{
    QString ups;    ///< UpsModel::id()
    QDateTime time; ///< of the outcome, UTC
};
Q_DECLARE_METATYPE(CommandRecord)

/// How much an outcome matters: information, warning, critical, unknown in the order of
/// CommandOutcome.
Severity severityOf(CommandOutcome outcome);
/// What became of a command in words: "Load off: refused, no right".
QString textOf(const CommandResult &result);
