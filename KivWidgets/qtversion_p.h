#pragma once

#include <QtCore/QtGlobal>
#include <QtGui/QFont>
#include <QtGui/QMouseEvent>

// What Qt 5 and Qt 6 name differently. No other source of the library asks which Qt it is built with; tests
// and plugins use this one, too.

/// QIconEngine::availableSizes() is const in Qt 5 alone.
#if QT_VERSION >= QT_VERSION_CHECK(6, 0, 0)
#define KIV_CONST_IN_QT5
#else
#define KIV_CONST_IN_QT5 const
#endif

namespace KivPrivate {

/// Where the pointer is, in the widget's coordinates, with fractions of a pixel.
inline QPointF pointerPosition(const QMouseEvent *event)
{
#if QT_VERSION >= QT_VERSION_CHECK(6, 0, 0)
    return event->position();
#else
    return event->localPos();
#endif
}

/// Which of the font's attributes were set on it itself, as bits.
inline uint resolveMask(const QFont &font)
{
#if QT_VERSION >= QT_VERSION_CHECK(6, 0, 0)
    return font.resolveMask();
#else
    return font.resolve();
#endif
}

} // namespace KivPrivate
