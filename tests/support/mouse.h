// SPDX-License-Identifier: LicenseRef-all-rights-reserved

#pragma once

#include <QtCore/QEvent>
#include <QtCore/QPointF>

class QWidget;

/// Mouse events as Qt delivers them, at places that may lie between pixels or off the widget.
namespace Mouse {

void press(QWidget *widget, QPointF place, Qt::MouseButton button = Qt::LeftButton);
/// A movement while the left button is held.
void drag(QWidget *widget, QPointF place);
/// A movement while no button is held.
void hover(QWidget *widget, QPointF place);
void release(QWidget *widget, QPointF place, Qt::MouseButton button = Qt::LeftButton);

} // namespace Mouse
