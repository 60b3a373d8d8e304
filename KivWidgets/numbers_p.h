// SPDX-License-Identifier: LicenseRef-all-rights-reserved

#pragma once

class QPoint;
class QPointF;

namespace KivPrivate {

/// @p number truncated towards zero, limited to the range of int; a NaN gives 0.
int truncatedToInt(double number);

/// @p dividend / @p divisor by IEEE rules, which the language leaves open for a zero divisor.
double quotient(double dividend, double divisor);

/// A pointer position as whole pixels: each axis rounded to the nearest, halves away from zero.
QPoint roundedPosition(const QPointF &position);

} // namespace KivPrivate
