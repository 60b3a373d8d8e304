// SPDX-License-Identifier: LicenseRef-all-rights-reserved

#pragma once

#include "bytes.h"

#include <QtCore/QMetaProperty>
#include <QtCore/QPointF>
#include <QtCore/QRect>
#include <QtCore/QSize>
#include <QtCore/QString>
#include <QtCore/QVariant>
#include <QtGui/QColor>
#include <QtGui/QFont>
#include <QtGui/QIcon>
#include <QtGui/QPalette>
#include <QtGui/QPixmap>

/// Values that a careless application may pass: ordinary ones, and those at and beyond every limit.
namespace Values {

int someInt(Bytes &bytes);
double someDouble(Bytes &bytes);
QString someString(Bytes &bytes);
QColor someColor(Bytes &bytes);
QPixmap somePixmap(Bytes &bytes);
QIcon someIcon(Bytes &bytes);
QFont someFont(Bytes &bytes);
QPalette somePalette(Bytes &bytes);
/// Any two numbers.
QSize someSize(Bytes &bytes);
QPoint somePoint(Bytes &bytes);
/// Any rectangle whose edges Qt can represent.
QRect someRect(Bytes &bytes);
/// A size that a widget can have: up to 4096 pixels on each axis, but of a bounded area, so that an
/// input stays quick.
QSize someWidgetSize(Bytes &bytes);
/// A pointer position in a widget of @p size, at its edges, or far off.
QPointF somePlace(Bytes &bytes, QSize size);

/// A value for @p property; an invalid one for a type without a choice of values.
QVariant someValue(const QMetaProperty &property, Bytes &bytes);

} // namespace Values
