#include "boxtoggle_p.h"

#include <QtCore/QPointer>
#include <QtGui/QMouseEvent>
#include <QtWidgets/QGroupBox>

namespace KivPrivate {

void toggleOnLeftPress(QGroupBox *box, QMouseEvent *event)
{
    if (event->button() != Qt::LeftButton) {
        event->ignore();
        return;
    }
    const QPointer<QGroupBox> guard(box);
    box->setChecked(!box->isChecked());
    if (guard)
        Q_EMIT box->clicked(box->isChecked());
}

} // namespace KivPrivate
