#pragma once

#include <QtCore/QString>

/// How an element is doing. The numbers are those of the widgets' alarm state.
enum class AlarmState : quint8 {
    CommunicationLost = 0,
    None = 1,
    Warning = 2,
    Anomaly = 3,
    Fault = 4,
    Locked = 5,
};

/// What an element is doing. The numbers are those of the widgets' element state.
enum class OperatingState : quint8 {
    Unknown = 0,
    StandBy = 1,
    Precharge = 2,
    Calibration = 3,
    WaitBatteryVoltage = 4,
    On = 5,
    OnBattery = 6,
    OnBypass = 7,
};

/// The two bytes that a tile or an icon shows: {quint8(alarm), quint8(operating)}.
struct ElementState
{
    AlarmState alarm = AlarmState::CommunicationLost;
    OperatingState operating = OperatingState::Unknown;

    bool operator==(const ElementState &other) const;
    bool operator!=(const ElementState &other) const;
};

constexpr int alarmStateCount = 6;
constexpr int operatingStateCount = 8;

/// Short English names for the screen, such as "On battery".
QString nameOf(AlarmState alarm);
QString nameOf(OperatingState operating);
