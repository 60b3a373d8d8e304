// SPDX-License-Identifier: LicenseRef-all-rights-reserved

#pragma once

class GalleryWindow;
class QString;
struct GalleryOptions;

/// Writes an image of the gallery for every widget, or for the one that the options name, as a PNG
/// file with the class's name in lower case; the path of each is printed.
/// @return false with the reason in @p error when a file cannot be written.
bool takeGalleryScreenshots(GalleryWindow &window, const GalleryOptions &options, QString *error);
