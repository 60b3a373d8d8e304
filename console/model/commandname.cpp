// SPDX-License-Identifier: LicenseRef-all-rights-reserved

#include "commandname.h"

QString nameOf(Command command)
{
    switch (command) {
    case Command::SwitchOn:
        return QStringLiteral("Switch on");
    case Command::SwitchOff:
        return QStringLiteral("Switch off");
    case Command::ForceBattery:
        return QStringLiteral("Run on battery");
    case Command::GoToBypass:
        return QStringLiteral("Bypass");
    case Command::ReturnToMains:
        return QStringLiteral("Return to mains");
    case Command::Lock:
        return QStringLiteral("Lock");
    case Command::ClearAlarm:
        return QStringLiteral("Clear alarm");
    case Command::BeeperOn:
        return QStringLiteral("Beeper on");
    case Command::BeeperOff:
        return QStringLiteral("Beeper off");
    case Command::LoseCommunication:
        return QStringLiteral("Simulator: cut the link");
    case Command::RestoreCommunication:
        return QStringLiteral("Simulator: restore the link");
    case Command::FollowScenario:
        return QStringLiteral("Simulator: resume the scenario");
    }
    return {};
}
