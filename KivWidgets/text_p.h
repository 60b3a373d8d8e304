// SPDX-License-Identifier: LicenseRef-all-rights-reserved

#pragma once

#include <QtCore/QPointF>
#include <QtCore/QSize>
#include <QtGui/QFont>

class QFontMetrics;
class QPainter;
class QString;

/// Measuring and drawing of texts, and fonts made from a widget's font. Qt measures texts slowly,
/// and repaints measure the same texts; the latest results are cached.
namespace KivPrivate {

/// @p font in bold weight, or in normal weight.
QFont withWeight(const QFont &font, bool bold);

/// @p font in normal weight at @p percent of its point size. Qt refuses a size that is not above
/// zero, as it comes out for a font sized in pixels, and keeps the old one.
QFont smallerFont(const QFont &font, int percent);

/// Whether two fonts draw alike, also where a painter takes from its device what they do not set.
bool isSameFont(const QFont &one, const QFont &other);

/// The size of @p text on one line.
QSize singleLineSize(const QFont &font, const QString &text);

/// Draws @p text on one line that begins at @p place, in the painter's font, as
/// QPainter::drawText() does. Texts that are drawn again are not shaped again.
void drawLine(QPainter *painter, QPointF place, const QString &text);

/// The bytes that all shaped texts take at most, about.
constexpr int mostShapedBytes = 192 * 1024;

/// The baseline of one line of text that stands in the middle of @p height pixels.
int centredBaseline(const QFontMetrics &metrics, int height);

} // namespace KivPrivate
