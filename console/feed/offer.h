// SPDX-License-Identifier: LicenseRef-all-rights-reserved

#pragma once

#include <QtCore/QString>
#include <QtCore/QStringList>
#include <QtCore/QVector>

/// A command that a UPS offers by name.
struct OfferedCommand
{
    QString name;        ///< such as "beeper.disable"
    QString description; ///< the server's, plain text; may be empty
};

struct NumberRange
{
    double from = 0.0;
    double to = 0.0;
};

/// A variable of a UPS that can be set.
struct OfferedSetting
{
    QString name;                ///< such as "ups.delay.shutdown"
    QString description;         ///< the server's, plain text; may be empty
    QString value;               ///< when it was asked
    QStringList choices;         ///< the only values, where there are any
    QVector<NumberRange> ranges; ///< the only numbers, where there are any
    bool isNumber = false;
    int longest = 0; ///< characters; 0: not known
};

/// What can be asked of a UPS, as its server says.
struct Offer
{
    QVector<OfferedCommand> commands;
    QVector<OfferedSetting> settings;
};
