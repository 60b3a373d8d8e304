// SPDX-License-Identifier: LicenseRef-all-rights-reserved

#include "examples.h"

#include <KivWidgets/MetroBattIcon>
#include <KivWidgets/MetroNavdrawer>
#include <KivWidgets/MetroShelter>
#include <KivWidgets/MetroStatusbar>
#include <KivWidgets/MetroSysIcon>
#include <KivWidgets/MetroTabicon>

#include <QtGui/QPainter>
#include <QtWidgets/QLabel>

namespace {

QIcon plug(const QColor &color)
{
    QPixmap pixmap(32, 32);
    pixmap.fill(Qt::transparent);
    QPainter painter(&pixmap);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(QPen(color, 3));
    painter.drawRoundedRect(8, 10, 16, 12, 3, 3);
    painter.drawLine(12, 4, 12, 10);
    painter.drawLine(20, 4, 20, 10);
    painter.drawLine(16, 22, 16, 28);
    return QIcon(pixmap);
}

} // namespace

void showMetro(QWidget *page)
{
    auto *top = new MetroStatusbar(page); // takes the size of its image
    top->move(0, 0);

    auto *inverter = new MetroShelter(page);
    inverter->setText("Inverter");
    inverter->setState({1, 5}); // no alarm, on
    inverter->setGeometry(20, 70, 160, 44);

    auto *charger = new MetroShelter(page);
    charger->setText("Charger");
    charger->setState({4, 1}); // fault, stand-by
    charger->setGeometry(20, 124, 160, 44);

    auto *mains = new MetroSysIcon(page); // grows to its icon
    mains->setIconSize(QSize(32, 32));
    mains->setIcon(plug(Qt::white));
    mains->setState({2, 5}); // warning, on
    mains->move(210, 70);

    auto *battery = new MetroBattIcon(page); // takes the size of its image
    battery->setState({1, 6});               // no alarm, on battery
    battery->move(280, 70);

    auto *tab = new MetroTabicon(page);
    tab->setIconSize(QSize(32, 32));
    tab->setIcon(plug(Qt::gray));
    tab->setState({4, 5}); // fault, on
    tab->setGeometry(204, 124, 64, 64);

    auto *drawer = new MetroNavdrawer(page);
    drawer->setGeometry(QRect(400, 70, 62, 76));
    drawer->setState(MetroNavdrawer::close);
    auto *entry = new QLabel("Settings", drawer);
    entry->setGeometry(66, 0, 76, 76);
    QObject::connect(drawer, &QGroupBox::clicked, drawer, [drawer] {
        const bool open = drawer->getState() == MetroNavdrawer::open;
        drawer->setState(open ? MetroNavdrawer::close : MetroNavdrawer::open);
    });
}
