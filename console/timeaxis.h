// SPDX-License-Identifier: LicenseRef-all-rights-reserved

#pragma once

#include "history/store.h"
#include "model/scale.h"

#include <QtCore/QTimeZone>

/// A mark on the time axis, at a whole local time.
struct TimeTick
{
    qint64 at = 0;
    QString label;
    bool isDay = false; ///< a day begins
};
/// At most @p most marks in @p span, as close as they may be: whole minutes, hours or days of local
/// time, also where the clocks change.
QVector<TimeTick> timeTicks(TimeSpan span, const QTimeZone &zone, int most);

/// A scale for values, with marks at whole steps.
struct ValueAxis
{
    double low = 0.0;
    double high = 100.0;
    double step = 50.0;

    QVector<double> ticks() const; ///< the marks
};
/// The axis for values of @p quantity from @p low to @p high, and for its limits on @p measure,
/// with about @p most marks. Shares begin at 0 and go to 100 at least.
ValueAxis valueAxis(Quantity quantity, const Measure &measure, std::optional<double> low,
                    std::optional<double> high, int most);
/// A value on @p axis without its unit.
QString axisLabel(Quantity quantity, double value, const ValueAxis &axis);
