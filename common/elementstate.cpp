// SPDX-License-Identifier: LicenseRef-all-rights-reserved

#include "elementstate.h"

bool ElementState::operator==(const ElementState &other) const
{
    return alarm == other.alarm && operating == other.operating;
}

bool ElementState::operator!=(const ElementState &other) const
{
    return !(*this == other);
}

QString nameOf(AlarmState alarm)
{
    switch (alarm) {
    case AlarmState::CommunicationLost:
        return QStringLiteral("Communication lost");
    case AlarmState::None:
        return QStringLiteral("No alarm");
    case AlarmState::Warning:
        return QStringLiteral("Warning");
    case AlarmState::Anomaly:
        return QStringLiteral("Anomaly");
    case AlarmState::Fault:
        return QStringLiteral("Fault");
    case AlarmState::Locked:
        return QStringLiteral("Locked");
    }
    return QString();
}

QString nameOf(OperatingState operating)
{
    switch (operating) {
    case OperatingState::Unknown:
        return QStringLiteral("Unknown");
    case OperatingState::StandBy:
        return QStringLiteral("Stand-by");
    case OperatingState::Precharge:
        return QStringLiteral("Precharge");
    case OperatingState::Calibration:
        return QStringLiteral("Calibration");
    case OperatingState::WaitBatteryVoltage:
        return QStringLiteral("Waiting for battery voltage");
    case OperatingState::On:
        return QStringLiteral("On");
    case OperatingState::OnBattery:
        return QStringLiteral("On battery");
    case OperatingState::OnBypass:
        return QStringLiteral("On bypass");
    }
    return QString();
}
