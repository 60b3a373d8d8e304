// SPDX-License-Identifier: LicenseRef-all-rights-reserved

#include "designable.h"

#include <aerogroupbox.h>

#include <QtCore/QByteArray>
#include <QtCore/QMetaProperty>

bool isDesignable(const QWidget &widget, const QMetaProperty &property)
{
    const auto *box = qobject_cast<const AeroGroupbox *>(&widget);
    const QByteArray name = property.name();
    if (box && name == "backgroundGroup")
        return box->getBackgroudType() == AeroGroupbox::ImageBG;
    if (box && (name == "color" || name == "shadow"))
        return box->getBackgroudType() == AeroGroupbox::AeroStyleBG;
    return property.isDesignable();
}
