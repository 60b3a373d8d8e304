// SPDX-License-Identifier: LicenseRef-all-rights-reserved

#include "screenshots.h"

#include "gallerywindow.h"
#include "options.h"
#include "program.h"

bool takeGalleryScreenshots(GalleryWindow &window, const GalleryOptions &options, QString *error)
{
    if (!Program::makeDirectory(options.directory, error))
        return false;
    // Shown windows alone lay everything out; this one stays off the screen.
    window.setAttribute(Qt::WA_DontShowOnScreen);
    window.show();
    const QStringList names =
        options.widget.isEmpty() ? GalleryWindow::widgetNames() : QStringList(options.widget);
    for (const QString &name : names) {
        window.showWidget(name);
        if (!Program::takeScreenshot(window, options.directory, name.toLower(), error))
            return false;
    }
    return true;
}
