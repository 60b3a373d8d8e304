// SPDX-License-Identifier: LicenseRef-all-rights-reserved

#include "severity.h"

int urgencyOf(Severity severity)
{
    switch (severity) {
    case Severity::Normal:
        return 0;
    case Severity::Information:
        return 1;
    case Severity::Warning:
        return 2;
    case Severity::Unknown:
        return 3;
    case Severity::Critical:
        return 4;
    }
    return 0;
}

Severity worseOf(Severity a, Severity b)
{
    return urgencyOf(b) > urgencyOf(a) ? b : a;
}

Severity severityOf(AlarmState alarm)
{
    switch (alarm) {
    case AlarmState::CommunicationLost:
        return Severity::Unknown;
    case AlarmState::None:
        return Severity::Normal;
    case AlarmState::Warning:
    case AlarmState::Anomaly:
        return Severity::Warning;
    case AlarmState::Fault:
    case AlarmState::Locked:
        return Severity::Critical;
    }
    return Severity::Unknown;
}

QString nameOf(Severity severity)
{
    switch (severity) {
    case Severity::Normal:
        return QStringLiteral("Normal");
    case Severity::Information:
        return QStringLiteral("Information");
    case Severity::Warning:
        return QStringLiteral("Warning");
    case Severity::Critical:
        return QStringLiteral("Critical");
    case Severity::Unknown:
        return QStringLiteral("No communication");
    }
    return QString();
}
