// SPDX-License-Identifier: LicenseRef-all-rights-reserved

#include "elementstate.h"

#include <array>

namespace {

constexpr std::array<const char *, alarmStateCount> alarmNames = {
    "Communication lost", "No alarm", "Warning", "Anomaly", "Fault", "Locked",
};

constexpr std::array<const char *, operatingStateCount> operatingNames = {
    "Unknown", "Stand-by",   "Precharge", "Calibration", "Waiting for battery voltage",
    "On",      "On battery", "On bypass",
};

} // namespace

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
    return QString::fromUtf8(alarmNames.at(std::size_t(alarm)));
}

QString nameOf(OperatingState operating)
{
    return QString::fromUtf8(operatingNames.at(std::size_t(operating)));
}
