// SPDX-License-Identifier: LicenseRef-all-rights-reserved

#pragma once

#include "commandresult.h"

#include <QtCore/QDateTime>

/// A command that was given to a UPS of the site, with its outcome.
struct CommandRecord : CommandResult
{
    QString ups;    ///< UpsModel::id()
    QDateTime time; ///< of the outcome, UTC
};
Q_DECLARE_METATYPE(CommandRecord)
