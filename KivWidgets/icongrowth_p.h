#pragma once

class QAbstractButton;

namespace KivPrivate {

/// Makes a button that is smaller than its icon plus one pixel on every side large enough, with its
/// size limits: the width if that is too small, else the height. One dimension per call.
/// @return whether the button has grown.
bool growToIcon(QAbstractButton *button);

} // namespace KivPrivate
