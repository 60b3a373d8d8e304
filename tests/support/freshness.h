// SPDX-License-Identifier: LicenseRef-all-rights-reserved

#pragma once

#include "images.h"
#include "widgetprobe.h"

#include <QtCore/QVariant>

#include <functional>

/// Writes @p property of a shown widget whose images are cached, and of one of the same @p
/// populate that was not shown yet. Empty when both then look alike and not as before; else what is
/// wrong.
template <typename W>
QString freshnessProblem(const std::function<void(W *)> &populate, const char *property,
                         const QVariant &value)
{
    Stage<W> mutated;
    populate(mutated.widget);
    deliverAll();
    const QImage before = imageOf(mutated.widget);
    mutated->setProperty(property, value);
    deliverAll();

    QWidget window;
    window.resize(900, 600);
    auto *fresh = new W(&window);
    fresh->resize(100, 40);
    populate(fresh);
    fresh->setProperty(property, value);
    window.show();
    deliverAll();

    const QString difference = differenceOf(imageOf(mutated.widget), imageOf(fresh));
    if (difference.isEmpty() && differenceOf(imageOf(mutated.widget), before).isEmpty())
        return QStringLiteral("looks as before");
    return difference;
}
