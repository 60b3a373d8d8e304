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

// The library's resource collection is named after its file, images.qrc. A shared library of an
// application that has an images.qrc of its own and is linked after this one loses its resources:
// give that file another name.

// Marks what the library exports; all else is hidden.
#if defined(KIVWIDGETS_LIBRARY)
#define KIVWIDGETS_EXPORT Q_DECL_EXPORT
#else
#define KIVWIDGETS_EXPORT Q_DECL_IMPORT
#endif

/// The KIVWIDGETS_VERSION of the library that the program runs with. Any thread.
KIVWIDGETS_EXPORT int kivWidgetsVersion();

// A property that Qt Designer shows while a function of the widget says so; moc of Qt 6 knows no
// such functions.
#if QT_VERSION >= QT_VERSION_CHECK(6, 0, 0)
#define KIVWIDGETS_DESIGNABLE(condition)
#else
#define KIVWIDGETS_DESIGNABLE(condition) DESIGNABLE condition
#endif
