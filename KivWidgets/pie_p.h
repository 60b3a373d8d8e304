// SPDX-License-Identifier: LicenseRef-all-rights-reserved

#pragma once

class QColor;
class QImage;
class QRect;

namespace KivPrivate {

/// Clears @p layer, and draws one pie in @p circle into it, filled and stroked in @p color. The
/// angles are those of QPainter::drawPie(), and so are the pixels. Pies are cached, because values
/// recur and other dials show them. Of a new one only the last quadrant is painted.
void paintPie(QImage *layer, const QColor &color, const QRect &circle, int start, int span);

} // namespace KivPrivate
