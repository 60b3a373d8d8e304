// SPDX-License-Identifier: LicenseRef-all-rights-reserved

#include "commandname.h"

#include <QtCore/QStringList>

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

QString wordsOf(const QString &name)
{
    QStringList words = name.split(QLatin1Char('.'));
    for (QString &word : words) {
        if (word == QLatin1String("ups"))
            word = QStringLiteral("UPS");
    }
    QString text = words.join(QLatin1Char(' '));
    if (!text.isEmpty())
        text[0] = text.at(0).toUpper();
    return text;
}
