// SPDX-License-Identifier: LicenseRef-all-rights-reserved

#pragma once

#include <QtGui/QIcon>
#include <QtGui/QPixmap>

class QAbstractButton;
class QPainter;
class QWidget;

/// The icon of a button, and the disabled look of the Metro icons.
namespace KivPrivate {

/// The pixmap of the button's icon at its icon size: in disabled mode while the button is disabled,
/// else in @p enabledMode. It has the logical size that the icon has at a ratio of 1, and the
/// pixels for the screen of the button, if the icon has them.
QPixmap iconPixmap(const QAbstractButton *button, QIcon::Mode enabledMode, QIcon::State state);
/// The same in the state On while the button is checked, else Off.
QPixmap iconPixmap(const QAbstractButton *button, QIcon::Mode enabledMode = QIcon::Normal);

/// Takes the first size that the button's icon has for Normal and Off as the icon size.
/// @return whether that is another size than before; an icon that offers no sizes changes nothing.
bool followIconSize(QAbstractButton *button);

/// Makes a button that is smaller than its icon plus one pixel on every side large enough, with its
/// size limits: the width if that is too small, else the height. One dimension per call.
/// @return whether the button has grown.
bool growToIcon(QAbstractButton *button);

/// Draws @p pixmap unscaled with its corner at (@p x, @p y), as long as both are above zero; with a
/// zero or negative offset nothing shows.
void drawAtNaturalSize(QPainter *painter, int x, int y, const QPixmap &pixmap);

/// Draws the button's icon, if it has one, in the middle of the button at natural size.
void drawCentredIcon(QPainter *painter, const QAbstractButton *button, QIcon::Mode enabledMode);

/// The look of a disabled Metro icon: a light grey hard-light wash over all but the outermost
/// pixels.
void drawDisabledWash(QPainter *painter, const QWidget *widget);

} // namespace KivPrivate
