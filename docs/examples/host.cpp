#include "examples.h"

#include <metrocirclerate.h>
#include <metroshelter.h>

void showHost(QWidget *page)
{
    auto *tile = new MetroShelter(page); // a state tile
    tile->setText("Inverter");
    tile->setState({1, 6}); // no alarm, running on battery

    auto *dial = new MetroCirclerate(page); // a dial gauge, which sizes itself
    dial->setLabel("Load");
    dial->setRadius(60);
    dial->setValue(42.5);

    tile->setGeometry(20, 20, 150, 44);
    dial->move(200, 20);
}
