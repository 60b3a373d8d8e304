// SPDX-License-Identifier: LicenseRef-all-rights-reserved

#include "slimscrollbars.h"

#include <QtWidgets/QAbstractScrollArea>
#include <QtWidgets/QScrollBar>

void useSlimScrollBars(QAbstractScrollArea *area)
{
    // On the bars alone: the sheet must not reach the widgets inside the area.
    const QString sheet = QStringLiteral(
        "QScrollBar { background: transparent; border: none; }"
        "QScrollBar:vertical { width: 8px; }"
        "QScrollBar:horizontal { height: 8px; }"
        "QScrollBar::handle { background: rgba(128, 138, 148, 140); border-radius: 4px; }"
        "QScrollBar::handle:hover { background: rgba(128, 138, 148, 220); }"
        "QScrollBar::handle:vertical { min-height: 24px; }"
        "QScrollBar::handle:horizontal { min-width: 24px; }"
        "QScrollBar::add-line, QScrollBar::sub-line { width: 0; height: 0; }"
        "QScrollBar::add-page, QScrollBar::sub-page { background: transparent; }");
    area->verticalScrollBar()->setStyleSheet(sheet);
    area->horizontalScrollBar()->setStyleSheet(sheet);
}
