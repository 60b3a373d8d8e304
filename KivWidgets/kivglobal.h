// SPDX-License-Identifier: LicenseRef-all-rights-reserved

#pragma once

#include <QtCore/qglobal.h>

// The version of these headers; the build takes it from here. KIVWIDGETS_VERSION compares with
// QT_VERSION_CHECK(major, minor, patch).
#define KIVWIDGETS_VERSION_MAJOR 1
#define KIVWIDGETS_VERSION_MINOR 0
#define KIVWIDGETS_VERSION_PATCH 0
#define KIVWIDGETS_VERSION                                                                         \
    QT_VERSION_CHECK(KIVWIDGETS_VERSION_MAJOR, KIVWIDGETS_VERSION_MINOR, KIVWIDGETS_VERSION_PATCH)

// The library's resource collection has the name of its file, images.qrc. If a shared library of
// an application has its own images.qrc and is linked after this library, its resources are lost:
// give that file another name.

// Exports a class or a function. Everything else is hidden.
#if defined(KIVWIDGETS_LIBRARY)
#define KIVWIDGETS_EXPORT Q_DECL_EXPORT
#else
#define KIVWIDGETS_EXPORT Q_DECL_IMPORT
#endif

/// The KIVWIDGETS_VERSION of the library that the program runs with. Any thread.
KIVWIDGETS_EXPORT int kivWidgetsVersion();

// A condition for a property: Qt Designer shows the property while the named function of the widget
// returns true. The moc of Qt 6 does not support such functions.
#if QT_VERSION >= QT_VERSION_CHECK(6, 0, 0)
#define KIVWIDGETS_DESIGNABLE(condition)
#else
#define KIVWIDGETS_DESIGNABLE(condition) DESIGNABLE condition
#endif
