#pragma once

#include <QtCore/qglobal.h>

// The library's resource collection is named after its file, images.qrc. A shared library of a host
// that has an images.qrc of its own and is linked after this one loses its resources: give that
// file another name.

// Everything that a host may use carries this mark; all else stays hidden in the library.
#if defined(KIVWIDGETS_LIBRARY)
#define KIVWIDGETS_EXPORT Q_DECL_EXPORT
#else
#define KIVWIDGETS_EXPORT Q_DECL_IMPORT
#endif

// A property that Qt Designer shows while a function of the widget says so; moc of Qt 6 knows no
// such functions.
#if QT_VERSION >= QT_VERSION_CHECK(6, 0, 0)
#define KIVWIDGETS_DESIGNABLE(condition)
#else
#define KIVWIDGETS_DESIGNABLE(condition) DESIGNABLE condition
#endif
