// SPDX-License-Identifier: LicenseRef-all-rights-reserved

#pragma once

#include "metroStyle.h"

#include <QtGui/QRgb>

/// The states of an element and the colours that show them, each under one name.
namespace KivPrivate {

using AlarmState = MetroStyle::AlarmState;
using OperatingState = MetroStyle::OperatingState;

constexpr std::size_t alarmStateCount = std::size_t(AlarmState::Locked) + 1;
constexpr std::size_t operatingStateCount = std::size_t(OperatingState::OnBypass) + 1;

/// Indices into MetroStyle::COLORTAB. The two oranges are entries of their own.
enum ColorIndex : int {
    DarkGreyIndex = 0,
    LightBlueIndex = 1,
    OnBatteryIndex = 2,
    DarkBlueIndex = 3,
    LightGreyIndex = 4,
    WarningIndex = 5,
    RedIndex = 6,
};
constexpr std::size_t colorCount = std::size_t(RedIndex) + 1;

/// The values behind them.
constexpr QRgb darkGrey = qRgb(89, 89, 91);
constexpr QRgb lightBlue = qRgb(0, 174, 240);
constexpr QRgb deepBlue = qRgb(0, 108, 160); // a shade of it, for pages and the shadow of bars
constexpr QRgb orange = qRgb(247, 148, 50);
constexpr QRgb darkBlue = qRgb(0, 56, 117);
constexpr QRgb lightGrey = qRgb(167, 167, 167);
constexpr QRgb red = qRgb(238, 28, 37);

/// The state as error lines print it: one number with the alarm state in the low byte.
constexpr unsigned asWord(elemDesc_t state)
{
    return state.alarmSt + 256U * state.elemSt;
}

/// What a table has for a state or a colour.
template <typename Key, typename Value>
struct Keyed
{
    Key key;
    Value value;
};

/// Whether @p table has a row for each of the @p count first keys, in their order: then a key is
/// the index of its row.
template <typename Key, typename Value, std::size_t size>
constexpr bool isComplete(const Keyed<Key, Value> (&table)[size], std::size_t count)
{
    for (std::size_t i = 0; i < size; ++i) {
        if (std::size_t(table[i].key) != i)
            return false;
    }
    return size == count;
}

constexpr bool isState(quint8 number, OperatingState state)
{
    return number == quint8(state);
}

} // namespace KivPrivate
