#pragma once

#include <QtGui/QMouseEvent>

class QGroupBox;

namespace KivPrivate {

/// What the library's boxes do on a press: the left button toggles the box, if it is checkable, and
/// emits clicked() in any case; another button is ignored. A slot may delete the box.
void toggleOnLeftPress(QGroupBox *box, QMouseEvent *event);

/// A movement far outside of any box. QGroupBox toggles on a release when the movement before it
/// was over its check box or title; a box whose press has toggled it already passes this one to the
/// base class's mouseMoveEvent() before each release.
class MoveOutside : public QMouseEvent
{
public:
    MoveOutside();
};

} // namespace KivPrivate
