// SPDX-License-Identifier: LicenseRef-all-rights-reserved

#pragma once

#include "elementstate.h"

#include <QtCore/QString>

/// How much a state or a condition matters.
enum class Severity {
    Normal,      ///< nothing to do
    Information, ///< worth knowing
    Warning,     ///< needs attention
    Critical,    ///< needs action at once
    Unknown,     ///< there is no communication, or no state: nothing can be said
};
constexpr int severityCount = 5;

/// For "the worst of": normal, information, warning, unknown, critical.
int urgencyOf(Severity severity);
Severity worseOf(Severity a, Severity b);
Severity severityOf(AlarmState alarm);
/// A short English name for the screen, such as "Critical".
QString nameOf(Severity severity);
