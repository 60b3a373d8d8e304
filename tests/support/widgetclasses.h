// SPDX-License-Identifier: LicenseRef-all-rights-reserved

#pragma once

#include "widgetcatalogue.h"

#include <QtCore/QStringList>

/// The names of all widgets, in the catalogue's order.
inline QStringList widgetClasses()
{
    QStringList names;
    for (const WidgetDescription &description : widgetCatalogue())
        names.append(QString::fromLatin1(description.className));
    return names;
}
