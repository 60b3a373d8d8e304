#include "metroStyle.h"

#include "cachedimage_p.h"
#include "elementstate_p.h"
#include "errorline_p.h"

#include <iterator>

using namespace KivPrivate;

static_assert(sizeof(elemDesc_t) == 2, "the element state is a record of two bytes");

const QColor MetroStyle::COLORTAB[7] = {
    QColor(89, 89, 91),    // dark grey
    QColor(0, 174, 240),   // light blue
    QColor(247, 148, 50),  // orange, on battery
    QColor(0, 56, 117),    // dark blue
    QColor(167, 167, 167), // light grey
    QColor(247, 148, 50),  // orange, warning: an entry of its own
    QColor(238, 28, 37),   // red
};

namespace {

/// Index into COLORTAB by operating state, for an element without an alarm.
constexpr int colorWithoutAlarm[] = {4, 1, 1, 1, 1, 1, 2, 3};

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
    : state{AlarmNone, ElementUnknown}
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
    switch (state.alarmSt) {
    case AlarmCommLost:
        return 4;
    case AlarmNone:
        if (state.elemSt < std::size(colorWithoutAlarm))
            return colorWithoutAlarm[state.elemSt];
        writeErrorLine(KIV_HERE, "Caso elemSt non previsto:0x%02X\n", unsigned(state.elemSt));
        return 0;
    case AlarmWarning:
    case AlarmAnomaly:
        return 5;
    case AlarmFault:
    case AlarmLocked:
        return 6;
    default:
        writeErrorLine(KIV_HERE, "Caso alarmSt non previsto:0x%02X\n", asWord(state));
        return 0;
    }
}

void MetroStyle::repaintSchedule(QImage **image)
{
    dropImage(lock, dirty, image);
}
