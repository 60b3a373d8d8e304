// SPDX-License-Identifier: LicenseRef-all-rights-reserved

#include "gallerywindow.h"
#include "options.h"
#include "program.h"
#include "screenshots.h"

#include <QtWidgets/QApplication>

int main(int argc, char **argv)
{
    const GalleryOptions options =
        Program::readOptions(argc, argv, QStringLiteral("kivgallery"), parseGalleryOptions);
    if (const std::optional<int> status = Program::begin(options))
        return *status;

    const std::unique_ptr<QApplication> application = Program::makeApplication(argc, argv);

    GalleryWindow window;
    window.resize(options.size);
    if (options.task == GalleryOptions::Task::TakeScreenshots) {
        window.setDarkTheme(options.dark);
        QString error;
        return takeGalleryScreenshots(window, options, &error)
                   ? 0
                   : Program::refuse(error, Program::failed);
    }
    const QString file = Program::settingsFile(QStringLiteral("gallery.ini"));
    if (!file.isEmpty())
        window.remember(file);
    // The command line overrides saved settings.
    if (options.dark)
        window.setDarkTheme(true);
    if (!options.widget.isEmpty())
        window.showWidget(options.widget);
    window.show();
    return QApplication::exec();
}
