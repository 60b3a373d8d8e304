// SPDX-License-Identifier: LicenseRef-all-rights-reserved

#include "metroStyle.h"

#include "assign_p.h"
#include "cachedimage_p.h"
#include "elementstate_p.h"
#include "errorline_p.h"
#include "events_p.h"

#include <iterator>

using namespace KivPrivate;

static_assert(sizeof(elemDesc_t) == 2, "the element state is a record of two bytes");

const QColor MetroStyle::COLORTAB[7] = {
    QColor(darkGrey),  QColor(lightBlue), QColor(orange), QColor(darkBlue),
    QColor(lightGrey), QColor(orange),    QColor(red),
};

namespace {

/// For an element without an alarm.
constexpr Keyed<OperatingState, ColorIndex> colorWithoutAlarm[] = {
    {OperatingState::Unknown, LightGreyIndex},
    {OperatingState::StandBy, LightBlueIndex},
    {OperatingState::Precharge, LightBlueIndex},
    {OperatingState::Calibration, LightBlueIndex},
    {OperatingState::WaitBatteryVoltage, LightBlueIndex},
    {OperatingState::On, LightBlueIndex},
    {OperatingState::OnBattery, OnBatteryIndex},
    {OperatingState::OnBypass, DarkBlueIndex},
};
static_assert(isComplete(colorWithoutAlarm, operatingStateCount), "one colour for each state");

} // namespace

bool operator==(elemDesc_t a, elemDesc_t b)
{
    return a.alarmSt == b.alarmSt && a.elemSt == b.elemSt;
}

bool operator!=(elemDesc_t a, elemDesc_t b)
{
    return !(a == b);
}

MetroStyle::MetroStyle(QObject *ownerWidget)
    : state{quint8(AlarmState::None), quint8(OperatingState::Unknown)}
    , dirty(true)
    , owner(ownerWidget)
{}

MetroStyle::~MetroStyle() = default;

void MetroStyle::setState(elemDesc_t st)
{
    if (assignIfChanged(state, st))
        postUpdateRequest(owner);
}

elemDesc_t MetroStyle::getElementState() const
{
    return state;
}

int MetroStyle::getColorIdx()
{
    switch (AlarmState(state.alarmSt)) {
    case AlarmState::CommunicationLost:
        return LightGreyIndex;
    case AlarmState::None:
        if (state.elemSt < std::size(colorWithoutAlarm))
            return colorWithoutAlarm[state.elemSt].value;
        writeErrorLine(KIV_HERE, "Caso elemSt non previsto:0x%02X\n", unsigned(state.elemSt));
        return DarkGreyIndex;
    case AlarmState::Warning:
    case AlarmState::Anomaly:
        return WarningIndex;
    case AlarmState::Fault:
    case AlarmState::Locked:
        return RedIndex;
    }
    writeErrorLine(KIV_HERE, "Caso alarmSt non previsto:0x%02X\n", asWord(state));
    return DarkGreyIndex;
}

void MetroStyle::repaintSchedule(QImage **image)
{
    dropImage(lock, dirty, image);
}
