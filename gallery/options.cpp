// SPDX-License-Identifier: LicenseRef-all-rights-reserved

#include "options.h"

#include "gallerywindow.h"
#include "widgetcatalogue.h"

namespace {

constexpr QSize largestWindow(8192, 8192);

} // namespace

GalleryOptions parseGalleryOptions(const QStringList &arguments)
{
    CommandLine line(QStringLiteral("kivgallery"),
                     QStringLiteral("Shows every widget of KivWidgets with its properties."),
                     QStringLiteral("each widget"));
    const QCommandLineOption widget(QStringLiteral("widget"),
                                    QStringLiteral("Start with the widget of the class NAME; with "
                                                   "--screenshot, write only its image."),
                                    QStringLiteral("NAME"));
    const QCommandLineOption size(QStringLiteral("size"),
                                  QStringLiteral("Size of the window in pixels, from 840x480 to "
                                                 "8192x8192 (default: 1120x720)."),
                                  QStringLiteral("WIDTHxHEIGHT"));
    line.add(widget);
    line.add(size);

    GalleryOptions options;
    if (!line.read(arguments, &options))
        return options;
    if (line.isSet(widget)) {
        if (const WidgetDescription *found = findWidget(line.value(widget)))
            options.widget = QString::fromLatin1(found->className);
        else
            options.refuse(QStringLiteral("there is no widget '%1'").arg(line.value(widget)));
    }
    if (line.isSet(size)) {
        options.size = readSize(line.value(size), GalleryWindow::smallestSize, largestWindow);
        if (!options.size.isValid())
            options.refuse(QStringLiteral("--size takes %1 to %2, not '%3'")
                               .arg(sizeText(GalleryWindow::smallestSize), sizeText(largestWindow),
                                    line.value(size)));
    }
    return options;
}
