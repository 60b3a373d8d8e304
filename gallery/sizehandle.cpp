// SPDX-License-Identifier: LicenseRef-all-rights-reserved

#include "sizehandle.h"

#include "qtversion_p.h"

#include "theme.h"

#include <QtGui/QMouseEvent>
#include <QtGui/QPainter>

namespace {

Qt::CursorShape cursorFor(QPoint role)
{
    if (role.y() == 0)
        return Qt::SizeHorCursor;
    if (role.x() == 0)
        return Qt::SizeVerCursor;
    return role.x() == role.y() ? Qt::SizeFDiagCursor : Qt::SizeBDiagCursor;
}

/// Where a handle stands along an edge from @p first to @p last.
int placeAlong(int role, int first, int last)
{
    if (role < 0)
        return first - SizeHandle::side;
    if (role > 0)
        return last + 1;
    return (first + last + 1 - SizeHandle::side) / 2;
}

} // namespace

SizeHandle::SizeHandle(QPoint newRole, QWidget *parent)
    : QWidget(parent)
    , handleRole(newRole)
{
    setFixedSize(side, side);
    setCursor(cursorFor(newRole));
}

QPoint SizeHandle::role() const
{
    return handleRole;
}

void SizeHandle::attachTo(const QRect &target)
{
    move(placeAlong(handleRole.x(), target.left(), target.right()),
         placeAlong(handleRole.y(), target.top(), target.bottom()));
}

void SizeHandle::mousePressEvent(QMouseEvent *event)
{
    if (event->button() != Qt::LeftButton)
        return;
    dragging = true;
    pressedAt = KivPrivate::globalPointerPosition(event);
    Q_EMIT pressed();
}

void SizeHandle::mouseMoveEvent(QMouseEvent *event)
{
    if (dragging)
        Q_EMIT dragged(KivPrivate::globalPointerPosition(event) - pressedAt);
}

void SizeHandle::mouseReleaseEvent(QMouseEvent *event)
{
    if (!dragging || event->button() != Qt::LeftButton)
        return;
    dragging = false;
    Q_EMIT released();
}

void SizeHandle::paintEvent(QPaintEvent *)
{
    QPainter painter(this);
    painter.setPen(Theme::accent());
    painter.setBrush(palette().color(QPalette::Window));
    painter.drawRect(1, 1, side - 3, side - 3);
}
