// SPDX-License-Identifier: LicenseRef-all-rights-reserved

#pragma once

#include <QtGui/QIcon>
#include <QtGui/QPixmap>

/// A pixmap of one colour.
QPixmap plainPixmap(QSize size, const QColor &color);

/// The colour that a telltale icon shows in a mode and a state: another one in each.
QColor telltaleColor(QIcon::Mode mode, QIcon::State state);

/// An icon of one size whose colour shows in which mode and state it was requested.
QIcon telltaleIcon(QSize size);

/// An icon whose engine offers only an invalid size.
QIcon sizelessIcon();
