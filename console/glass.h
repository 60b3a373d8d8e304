// SPDX-License-Identifier: LicenseRef-all-rights-reserved

#pragma once

#include <QtGui/QColor>

class AeroGroupbox;
class AeroStyle;
class QString;
class QWidget;

/// The appearance that all glass of the control page shares.
namespace Glass {

const QColor textColor(232, 238, 243);
const QColor faintColor(150, 162, 173);
const QColor dangerColor(255, 176, 46);
const QColor outline(16, 21, 26);

void setTextColor(QWidget *label, const QColor &color);
void apply(AeroStyle *style, int roundness);
AeroGroupbox *box(QWidget *parent, const QString &title);

} // namespace Glass
