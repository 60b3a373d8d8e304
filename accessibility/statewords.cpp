// SPDX-License-Identifier: LicenseRef-all-rights-reserved

#include "statewords.h"

#include "elementstate.h"

namespace {

bool isAlarm(elemDesc_t state, AlarmState alarm)
{
    return state.alarmSt == quint8(alarm);
}

QString alarmName(elemDesc_t state)
{
    const QString name = nameOf(AlarmState(state.alarmSt));
    return name.isEmpty() ? QStringLiteral("Unknown alarm") : name;
}

QString operatingName(elemDesc_t state)
{
    const QString name = nameOf(OperatingState(state.elemSt));
    return name.isEmpty() ? nameOf(OperatingState::Unknown) : name;
}

/// Both in one sentence, the more urgent one first.
QString joined(const QString &first, QString second)
{
    second[0] = second.at(0).toLower();
    return first + QStringLiteral(", ") + second;
}

} // namespace

QString stateWords(elemDesc_t state)
{
    if (isAlarm(state, AlarmState::None))
        return joined(operatingName(state), alarmName(state));
    // What an element did before its communication was lost is no longer known.
    const bool operatingCounts = !isAlarm(state, AlarmState::CommunicationLost) &&
                                 state.elemSt != quint8(OperatingState::Unknown) &&
                                 !nameOf(OperatingState(state.elemSt)).isEmpty();
    return operatingCounts ? joined(alarmName(state), operatingName(state)) : alarmName(state);
}

QString alarmWords(elemDesc_t state)
{
    return isAlarm(state, AlarmState::None) ? QString() : alarmName(state);
}
