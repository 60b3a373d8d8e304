// SPDX-License-Identifier: LicenseRef-all-rights-reserved

#pragma once

#include <metroStyle.h>

#include <QtCore/QString>

using AlarmState = MetroStyle::AlarmState;
using OperatingState = MetroStyle::OperatingState;

/// The two bytes that a tile or an icon shows: {quint8(alarm), quint8(operating)}.
struct ElementState
{
    AlarmState alarm = AlarmState::CommunicationLost;
    OperatingState operating = OperatingState::Unknown;

    bool operator==(const ElementState &other) const;
    bool operator!=(const ElementState &other) const;
};

/// Short English names for the screen, such as "On battery"; empty for a number that is no state.
QString nameOf(AlarmState alarm);
QString nameOf(OperatingState operating);
