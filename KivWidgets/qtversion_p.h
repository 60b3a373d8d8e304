// SPDX-License-Identifier: LicenseRef-all-rights-reserved

#pragma once

#include <QtCore/QCoreApplication>
#include <QtCore/QMetaProperty>
#include <QtCore/QVariant>
#include <QtCore/QtGlobal>
#include <QtGui/QFont>
#include <QtGui/QIcon>
#include <QtGui/QMouseEvent>
#include <QtGui/QPixmap>

// What Qt 5 and Qt 6 name differently. No other source of the library asks which Qt it is built
// with; tests and plugins use this one, too.

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

/// The same on the screen, in whole pixels.
inline QPoint globalPointerPosition(const QMouseEvent *event)
{
#if QT_VERSION >= QT_VERSION_CHECK(6, 0, 0)
    return event->globalPosition().toPoint();
#else
    return event->globalPos();
#endif
}

/// A hover event at @p place of a widget, which came from its upper left corner.
inline QHoverEvent hoverEvent(QEvent::Type type, const QPointF &place)
{
#if QT_VERSION >= QT_VERSION_CHECK(6, 0, 0)
    return {type, place, place, QPointF()};
#else
    return {type, place, QPointF()};
#endif
}

/// A copy of the value of type @p type that lies at @p data.
inline QVariant variantOf(int type, const void *data)
{
#if QT_VERSION >= QT_VERSION_CHECK(6, 0, 0)
    return QVariant(QMetaType(type), data);
#else
    return QVariant(type, data);
#endif
}

/// Whether @p property of @p object is for an editor: in its present state, where the class can say
/// so.
inline bool isDesignable(const QMetaProperty &property, [[maybe_unused]] const QObject *object)
{
#if QT_VERSION >= QT_VERSION_CHECK(6, 0, 0)
    return property.isDesignable();
#else
    return property.isDesignable(object);
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

/// Makes icons give pixmaps for the ratio of the screens by themselves, which Qt 6 leaves to who
/// asks.
/// @return whether they did before.
inline bool setHighDpiPixmaps([[maybe_unused]] bool on)
{
#if QT_VERSION >= QT_VERSION_CHECK(6, 0, 0)
    return false;
#else
    const bool before = QCoreApplication::testAttribute(Qt::AA_UseHighDpiPixmaps);
    QCoreApplication::setAttribute(Qt::AA_UseHighDpiPixmaps, on);
    return before;
#endif
}

/// The pixmap of @p icon for @p size real pixels, whatever the ratios of the screens are.
inline QPixmap unscaledPixmap(const QIcon &icon, QSize size, QIcon::Mode mode, QIcon::State state)
{
#if QT_VERSION >= QT_VERSION_CHECK(6, 0, 0)
    QPixmap pixmap = icon.pixmap(size, 1.0, mode, state);
#else
    const bool multiplies = setHighDpiPixmaps(false);
    QPixmap pixmap = icon.pixmap(size, mode, state);
    setHighDpiPixmaps(multiplies);
#endif
    pixmap.setDevicePixelRatio(1.0);
    return pixmap;
}

} // namespace KivPrivate
