// SPDX-License-Identifier: LicenseRef-all-rights-reserved

#pragma once

#include "model/severity.h"

#include <QtGui/QColor>
#include <QtGui/QPixmap>

/// How a severity looks: grey is normal, colour is for what is not, and each has a shape of its
/// own.
struct SeverityLook
{
    QColor plate; ///< what the words stand on
    QColor ink;   ///< the words, at least 4.5:1 on the plate
};
SeverityLook lookOf(Severity severity, bool dark);

/// The sign of @p severity in @p color: a check mark in a disc, an i in a disc, a triangle, an
/// octagon, a question mark in a diamond. @p side in pixels, drawn at @p ratio device pixels each.
QPixmap severitySign(Severity severity, int side, const QColor &color, const QColor &ink,
                     double ratio = 1.0);

/// The sign of @p severity in colours of its own, the same wherever it stands on a plain @p dark or
/// light background.
QPixmap severityBadge(Severity severity, int side, bool dark, double ratio = 1.0);
