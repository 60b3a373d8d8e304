// SPDX-License-Identifier: LicenseRef-all-rights-reserved

#pragma once

class QObject;

/// The numbers that the gallery offers for a property. A widget takes more than these; they keep to
/// what can be looked at, since some properties decide how large an image is.
struct PropertyBounds
{
    double least;
    double most;
    double step;
};

PropertyBounds boundsOf(const QObject *object, const char *property);
