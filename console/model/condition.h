// SPDX-License-Identifier: LicenseRef-all-rights-reserved

#pragma once

#include "severity.h"
#include "snapshot.h"

#include <QtCore/QDateTime>
#include <QtCore/QString>
#include <QtCore/QVector>

/// Something about a UPS that is not as it should be, or worth knowing, for as long as it lasts.
struct Condition
{
    QString id; ///< the same for the same cause, such as "on-battery"
    Severity severity = Severity::Unknown;
    QString text;      ///< plain text, may come from the UPS
    QString valueText; ///< the measured value that belongs to it, such as "187 V"; may be empty
    QDateTime since;   ///< UTC
};
bool operator==(const Condition &a, const Condition &b);
bool operator!=(const Condition &a, const Condition &b);

/// The conditions that @p snapshot shows, the worst first, without their begin. A value beyond a
/// limit that was already beyond it @p before counts until it is back by 1 % of the limit, so that
/// one that hovers there does not come and go.
QVector<Condition> conditionsOf(const Snapshot &snapshot, const QVector<Condition> &before = {});
