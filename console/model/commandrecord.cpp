// SPDX-License-Identifier: LicenseRef-all-rights-reserved

#include "commandrecord.h"

#include "commandname.h"

Severity severityOf(CommandOutcome outcome)
{
    switch (outcome) {
    case CommandOutcome::Done:
        return Severity::Information;
    case CommandOutcome::Refused:
        return Severity::Warning;
    case CommandOutcome::Failed:
        return Severity::Critical;
    case CommandOutcome::Unconfirmed:
        break;
    }
    return Severity::Unknown;
}

QString textOf(const CommandResult &result)
{
    const auto word = [&] {
        switch (result.outcome) {
        case CommandOutcome::Done:
            return QStringLiteral("done");
        case CommandOutcome::Refused:
            return QStringLiteral("refused");
        case CommandOutcome::Failed:
            return QStringLiteral("failed");
        case CommandOutcome::Unconfirmed:
            break;
        }
        return QStringLiteral("not confirmed");
    };
    QString text = wordsOf(result.name) + QStringLiteral(": ") + word();
    if (!result.text.isEmpty())
        text += QStringLiteral(", ") + result.text;
    return text;
}
