// SPDX-License-Identifier: LicenseRef-all-rights-reserved

#include "examples.h"

#include <KivWidgets/MetroShelter>
#include <KivWidgets/MetroSysIcon>

#include <QtWidgets/QGridLayout>

void showStates(QWidget *page)
{
    const char *const alarms[] = {"Lost", "No alarm", "Warning", "Anomaly", "Fault", "Locked"};
    const quint8 elements[] = {1, 5, 6, 7}; // stand-by, on, on battery, on bypass
    auto *grid = new QGridLayout(page);
    for (quint8 alarm = 0; alarm < 6; ++alarm) {
        for (int column = 0; column < 4; ++column) {
            auto *tile = new MetroShelter(page);
            tile->setMinimumSize(110, 36);
            tile->setText(alarms[alarm]);
            tile->setState({alarm, elements[column]});
            grid->addWidget(tile, alarm, 2 * column);

            auto *plate = new MetroSysIcon(page);
            plate->setState({alarm, elements[column]});
            grid->addWidget(plate, alarm, 2 * column + 1);
        }
    }
}
