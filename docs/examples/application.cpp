// SPDX-License-Identifier: LicenseRef-all-rights-reserved

#include "examples.h"

#include <KivWidgets/MetroCirclerate>
#include <KivWidgets/MetroShelter>

void showApplication(QWidget *page)
{
    auto *tile = new MetroShelter(page); // a state tile
    tile->setGeometry(20, 20, 150, 44);
    tile->setText("Inverter");
    tile->setState({1, 6}); // no alarm, running on battery

    auto *dial = new MetroCirclerate(page); // a dial gauge, which sizes itself
    dial->move(200, 20);
    dial->setLabel("Load");
    dial->setRadius(60);
    dial->setValue(42.5);
}
