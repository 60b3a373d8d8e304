#pragma once

#include <QtCore/QString>

/// What forms and their editor are told of a widget beyond what every list of widgets tells.
struct FormTraits
{
    const char *className;
    const char *use;      ///< how it is used, in a sentence or two
    const char *contents; ///< values and pages of a new one, as elements of a form's XML
    const char *hints;    ///< how the editor treats properties, as elements of a form's XML
};

/// The traits of class @p className; empty ones for an unknown class.
const FormTraits &formTraits(const QString &className);
