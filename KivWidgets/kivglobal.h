#pragma once

#include <QtCore/qglobal.h>

// Everything that a host may use carries this mark; all else stays hidden in the library.
#if defined(KIVWIDGETS_LIBRARY)
#define KIVWIDGETS_EXPORT Q_DECL_EXPORT
#else
#define KIVWIDGETS_EXPORT Q_DECL_IMPORT
#endif
