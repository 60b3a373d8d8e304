#pragma once

#include "metroStyle.h"

namespace KivPrivate {

/// Values of elemDesc_t::alarmSt.
enum AlarmState : quint8 {
    AlarmCommLost = 0,
    AlarmNone = 1,
    AlarmWarning = 2,
    AlarmAnomaly = 3,
    AlarmFault = 4,
    AlarmLocked = 5,
};

/// Values of elemDesc_t::elemSt.
enum ElementState : quint8 {
    ElementUnknown = 0,
    ElementStandBy = 1,
    ElementPrecharge = 2,
    ElementCalibration = 3,
    ElementWaitVbatReady = 4,
    ElementOn = 5,
    ElementBatteryWorking = 6,
    ElementOnBypass = 7,
};

/// The state as error lines print it: one number with the alarm state in the low byte.
constexpr unsigned asWord(elemDesc_t state)
{
    return state.alarmSt + 256U * state.elemSt;
}

} // namespace KivPrivate
