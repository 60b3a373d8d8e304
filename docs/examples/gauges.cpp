// SPDX-License-Identifier: LicenseRef-all-rights-reserved

#include "examples.h"

#include <KivWidgets/MetroCirclerate>
#include <KivWidgets/MetroLinerate>
#include <KivWidgets/MetroXbar>

void showGauges(QWidget *page)
{
    // A dial computes its size from its arc; set only its position.
    auto *load = new MetroCirclerate(page);
    load->setRadius(70);
    load->setTickness(20);
    load->setArcSize(240);
    load->setMinAngle(210);
    load->setLabel("Load");
    load->setFormat("%.1f %%");
    load->setValue(62.5);
    load->move(20, 20);

    auto *battery = new MetroLinerate(page);
    battery->setGeometry(190, 30, 280, 36);
    battery->setValue(112);

    auto *voltage = new MetroXbar(page);
    voltage->setGeometry(190, 90, 280, 36);
    voltage->setMinValue(180);
    voltage->setMaxValue(260);
    voltage->setMeasure(" V "); // the last space keeps the unit away from the edge
    voltage->setValue(231);
}
