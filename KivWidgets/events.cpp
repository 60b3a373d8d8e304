// SPDX-License-Identifier: LicenseRef-all-rights-reserved

#include "events_p.h"

#include <QtCore/QCoreApplication>
#include <QtCore/QPointer>
#include <QtWidgets/QGroupBox>

namespace KivPrivate {

namespace {

constexpr QPointF outside(-QWIDGETSIZE_MAX, -QWIDGETSIZE_MAX);

} // namespace

void postUpdateRequest(QObject *receiver)
{
    QCoreApplication::postEvent(receiver, new QEvent(QEvent::UpdateRequest));
}

void absorbUpdateRequests(QWidget *widget, const QEvent *event)
{
    if (event->type() == QEvent::UpdateRequest && widget->isWindow())
        QCoreApplication::removePostedEvents(widget, QEvent::UpdateRequest);
}

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

MoveOutside::MoveOutside()
    : QMouseEvent(QEvent::MouseMove, outside, outside, outside, Qt::NoButton, Qt::NoButton,
                  Qt::NoModifier)
{}

} // namespace KivPrivate
