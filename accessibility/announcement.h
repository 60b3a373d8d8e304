// SPDX-License-Identifier: LicenseRef-all-rights-reserved

#pragma once

#include <QtCore/QString>
#include <QtGui/QAccessible>

#include <optional>

/// What a widget says that can change without a word from Qt.
struct Announcement
{
    QString label;               ///< a name that the widget itself shows
    QString status;              ///< what it shows in words
    std::optional<double> value; ///< of a gauge
    QAccessible::State state;    ///< only the bits that Qt does not announce
};
