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

QPoint roundedPosition(const QPointF &position)
{
    return {truncatedToInt(std::round(position.x())), truncatedToInt(std::round(position.y()))};
}

} // namespace KivPrivate
