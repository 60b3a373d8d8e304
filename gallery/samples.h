// SPDX-License-Identifier: LicenseRef-all-rights-reserved

#pragma once

#include <QtCore/QString>
#include <QtGui/QIcon>
#include <QtGui/QPixmap>

#include <vector>

/// An image that can be chosen for a property.
template <typename Image>
struct Sample
{
    QString name;
    Image image;
};

/// Line drawings, and the library's own images.
const std::vector<Sample<QIcon>> &sampleIcons();
/// The library's own images, and backgrounds for a panel.
const std::vector<Sample<QPixmap>> &samplePixmaps();
