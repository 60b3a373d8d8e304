// SPDX-License-Identifier: LicenseRef-all-rights-reserved

#include "mouse.h"

#include <QtCore/QCoreApplication>
#include <QtGui/QMouseEvent>
#include <QtWidgets/QWidget>

static void send(QWidget *widget, QEvent::Type type, QPointF place, Qt::MouseButton button,
                 Qt::MouseButtons held)
{
    QMouseEvent event(type, place, widget->mapToGlobal(QPoint()) + place, button, held,
                      Qt::NoModifier);
    QCoreApplication::sendEvent(widget, &event);
}

void Mouse::press(QWidget *widget, QPointF place, Qt::MouseButton button)
{
    send(widget, QEvent::MouseButtonPress, place, button, button);
}

void Mouse::drag(QWidget *widget, QPointF place)
{
    send(widget, QEvent::MouseMove, place, Qt::NoButton, Qt::LeftButton);
}

void Mouse::hover(QWidget *widget, QPointF place)
{
    send(widget, QEvent::MouseMove, place, Qt::NoButton, Qt::NoButton);
}

void Mouse::release(QWidget *widget, QPointF place, Qt::MouseButton button)
{
    send(widget, QEvent::MouseButtonRelease, place, button, Qt::NoButton);
}
