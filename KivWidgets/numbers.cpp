// SPDX-License-Identifier: LicenseRef-all-rights-reserved

#include "numbers_p.h"

#include <QtCore/QPoint>

#include <cmath>
#include <limits>

namespace KivPrivate {

int truncatedToInt(double number)
{
    using Limits = std::numeric_limits<int>;
    if (std::isnan(number))
        return 0;
    if (number <= Limits::min())
        return Limits::min();
    if (number >= Limits::max())
        return Limits::max();
    return static_cast<int>(number);
}

double quotient(double dividend, double divisor)
{
    if (divisor != 0.0)
        return dividend / divisor;
    if (dividend == 0.0 || std::isnan(dividend))
        return std::numeric_limits<double>::quiet_NaN();
    const bool negative = std::signbit(dividend) != std::signbit(divisor);
    const double infinity = std::numeric_limits<double>::infinity();
    return negative ? -infinity : infinity;
}

QPoint roundedPosition(const QPointF &position)
{
    return {truncatedToInt(std::round(position.x())), truncatedToInt(std::round(position.y()))};
}

} // namespace KivPrivate
