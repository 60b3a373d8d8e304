// SPDX-License-Identifier: LicenseRef-all-rights-reserved

#pragma once

#include <QtCore/QMetaType>
#include <QtCore/QString>

/// How a command, or the setting of a variable, ended.
enum class CommandOutcome {
    Done,        ///< the UPS confirmed it
    Refused,     ///< nobody tried: no right, not supported, or no fit value
    Failed,      ///< the UPS tried and could not
    Unconfirmed, ///< handed to the UPS, which has not said how it ended
};

/// What became of one command. Never contains a password.
struct CommandResult
{
    QString name;  ///< of the command, such as "load.off", or of the variable that was set
    QString value; ///< the variable's new value, or the command's; may be empty
    QString user;  ///< as the server knows them; empty where there is no login
    CommandOutcome outcome = CommandOutcome::Unconfirmed;
    QString text; ///< plain text: why, in one line; may be empty
};
Q_DECLARE_METATYPE(CommandResult)
