// SPDX-License-Identifier: LicenseRef-all-rights-reserved

#pragma once

#include <QtCore/QString>
#include <QtGui/QColor>

class AeroGroupbox;
class AeroStyle;
class QLabel;
class QWidget;

/// The appearance that all glass of the control page shares: buttons and strips of dark glass, in
/// boxes that follow the theme.
namespace Glass {

const QColor textColor(232, 238, 243); ///< on glass
const QColor outline(16, 21, 26);

/// What a text beside the glass is.
enum class Ink { Text, Faint, Danger };
/// In the present theme.
QColor colorOf(Ink ink);
/// Gives the text of @p label a colour that follows the theme.
void setInk(QWidget *label, Ink ink);
/// Gives the text of @p label, which is on glass, @p color.
void setTextColor(QWidget *label, const QColor &color);
void apply(AeroStyle *style, int roundness);
AeroGroupbox *box(QWidget *parent, const QString &title);
/// What a layout of a box leaves free below the title.
int titleRoom();
/// What a control that must be held will do, beside it: always there, and always as a whole.
QLabel *warning(QWidget *parent, const QString &consequence, const QString &description = {});
/// Brings all boxes and inks below @p root to the present theme.
void followTheme(QWidget *root);

} // namespace Glass
