#pragma once

#include <QtCore/QSize>
#include <QtGui/QFont>

class QFontMetrics;
class QString;

/// Measuring of texts, and fonts made from a widget's font. A repaint asks for the same ones as the
/// last, and both are slow in Qt, so the latest are remembered. GUI thread only.
namespace KivPrivate {

/// @p font in bold weight, or in normal weight.
QFont withWeight(const QFont &font, bool bold);

/// @p font in normal weight at @p percent of its point size. Qt refuses a size that is not above
/// zero, as it comes out for a font sized in pixels, and keeps the old one.
QFont smallerFont(const QFont &font, int percent);

/// The size of @p text on one line.
QSize singleLineSize(const QFont &font, const QString &text);

/// The baseline of one line of text that stands in the middle of @p height pixels.
int centredBaseline(const QFontMetrics &metrics, int height);

} // namespace KivPrivate
