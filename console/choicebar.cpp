// SPDX-License-Identifier: LicenseRef-all-rights-reserved

#include "choicebar.h"

#include "theme.h"

#include <QtGui/QPainter>

#include <algorithm>

void paintChoiceBar(QWidget *button)
{
    constexpr int sideUnits = 6;
    const int thick = std::max(Theme::px(3), 3);
    const int side = Theme::px(sideUnits);
    QPainter(button).fillRect(side, button->height() - thick - Theme::px(5),
                              button->width() - 2 * side, thick, Theme::accent());
}
