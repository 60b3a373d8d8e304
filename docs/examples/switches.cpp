// SPDX-License-Identifier: LicenseRef-all-rights-reserved

#include "examples.h"

#include <KivWidgets/RotateStackedWidget>
#include <KivWidgets/SimpleSlideSwitch>
#include <KivWidgets/SlideSwitch>

#include <QtWidgets/QLabel>

void showSwitches(QWidget *page)
{
    auto *supply = new SlideSwitch(page);
    supply->setChecked(true);
    supply->move(20, 20);

    auto *locked = new SlideSwitch(page);
    locked->setLocked(true);
    locked->move(20, 95);

    auto *beeper = new SimpleSlideSwitch(page);
    beeper->setChecked(true);
    beeper->move(240, 36);

    auto *pages = new RotateStackedWidget(page);
    pages->setGeometry(240, 80, 180, 80);
    pages->addWidget(new QLabel("First page"));
    pages->addWidget(new QLabel("Second page"));
    pages->setAnimationEnabled(true);
    QObject::connect(beeper, &SimpleSlideSwitch::toggled, pages,
                     [pages](bool checked) { pages->setCurrentIndex(checked ? 0 : 1); });
}
