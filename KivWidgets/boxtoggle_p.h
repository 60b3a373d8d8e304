#pragma once

class QGroupBox;
class QMouseEvent;

namespace KivPrivate {

/// What the library's boxes do on a press: the left button toggles the box, if it is checkable, and
/// emits clicked() in any case; another button is ignored. A slot may delete the box.
void toggleOnLeftPress(QGroupBox *box, QMouseEvent *event);

} // namespace KivPrivate
