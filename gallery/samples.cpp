// SPDX-License-Identifier: LicenseRef-all-rights-reserved

#include "samples.h"

#include "elementstate_p.h"
#include "pictograms.h"
#include "theme.h"

#include <QtCore/QDir>
#include <QtGui/QPainter>

namespace {

constexpr int iconSide = 32;

/// A drawing that is seen on a light and on a dark background, and lit under the pointer.
QIcon drawnIcon(Pictogram which)
{
    QIcon icon;
    addPictogram(&icon, which, iconSide, QColor(110, 122, 133));
    addPictogram(&icon, which, iconSide, Theme::accent(), QIcon::Active);
    addPictogram(&icon, which, iconSide, Theme::accent(), QIcon::Normal, QIcon::On);
    addPictogram(&icon, which, iconSide, QColor(170, 176, 182), QIcon::Disabled);
    return icon;
}

QPixmap gradientBackground(const QColor &top, const QColor &bottom)
{
    QPixmap pixmap(240, 140);
    QPainter painter(&pixmap);
    QLinearGradient gradient(0, 0, 0, pixmap.height());
    gradient.setColorAt(0, top);
    gradient.setColorAt(1, bottom);
    painter.fillRect(pixmap.rect(), gradient);
    return pixmap;
}

std::vector<Sample<QPixmap>> libraryImages()
{
    std::vector<Sample<QPixmap>> images;
    const QDir directory(QStringLiteral(":/Images"));
    const QStringList files = directory.entryList(QDir::Files, QDir::Name);
    for (const QString &file : files)
        images.push_back({QFileInfo(file).baseName(), QPixmap(directory.filePath(file))});
    return images;
}

} // namespace

const std::vector<Sample<QIcon>> &sampleIcons()
{
    static const std::vector<Sample<QIcon>> samples = [] {
        std::vector<Sample<QIcon>> icons = {
            {QStringLiteral("UPS"), drawnIcon(Pictogram::Ups)},
            {QStringLiteral("Overview"), drawnIcon(Pictogram::Overview)},
            {QStringLiteral("Power"), drawnIcon(Pictogram::Power)},
            {QStringLiteral("Control"), drawnIcon(Pictogram::Control)},
            {QStringLiteral("Settings"), drawnIcon(Pictogram::Settings)},
            {QStringLiteral("Alarm"), drawnIcon(Pictogram::Alarm)},
            {QStringLiteral("Check"), drawnIcon(Pictogram::Check)},
            {QStringLiteral("Restart"), drawnIcon(Pictogram::Restart)},
            {QStringLiteral("UPS, white"), QIcon(pictogram(Pictogram::Ups, iconSide, Qt::white))},
        };
        for (const Sample<QPixmap> &image : libraryImages())
            icons.push_back({image.name, QIcon(image.image)});
        return icons;
    }();
    return samples;
}

const std::vector<Sample<QPixmap>> &samplePixmaps()
{
    static const std::vector<Sample<QPixmap>> samples = [] {
        std::vector<Sample<QPixmap>> pixmaps = {
            {QStringLiteral("Blue background"),
             gradientBackground(QColor(KivPrivate::darkBlue), Theme::accent())},
            {QStringLiteral("Slate background"),
             gradientBackground(QColor(84, 98, 112), QColor(36, 44, 52))},
        };
        const std::vector<Sample<QPixmap>> images = libraryImages();
        pixmaps.insert(pixmaps.end(), images.begin(), images.end());
        return pixmaps;
    }();
    return samples;
}
