// SPDX-License-Identifier: LicenseRef-all-rights-reserved

#pragma once

#include "commandline.h"

#include <QtCore/QSize>
#include <QtCore/QStringList>

/// What the gallery's command line asks for.
struct GalleryOptions : CommonOptions
{
    QString widget; ///< class name of the widget to begin with, or to take alone; empty for none
    QSize size = QSize(1120, 720); ///< of the window, in pixels
};

/// Reads the command line @p arguments, the program's name first.
GalleryOptions parseGalleryOptions(const QStringList &arguments);
