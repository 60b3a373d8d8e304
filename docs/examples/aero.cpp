// SPDX-License-Identifier: LicenseRef-all-rights-reserved

#include "examples.h"

#include <KivWidgets/AeroButton>
#include <KivWidgets/AeroGroupbox>
#include <KivWidgets/AeroLinebar>
#include <KivWidgets/AeroStatusbar>
#include <KivWidgets/AeroSwitch>
#include <KivWidgets/TranspButton>

#include <QtGui/QPainter>
#include <QtWidgets/QBoxLayout>

namespace {

QIcon lamp()
{
    QPixmap pixmap(24, 24);
    pixmap.fill(Qt::transparent);
    QPainter painter(&pixmap);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(QPen(QColor(0, 174, 240), 4));
    painter.drawEllipse(5, 5, 14, 14);
    return QIcon(pixmap);
}

} // namespace

void showAero(QWidget *page)
{
    auto *column = new QVBoxLayout(page);

    auto *box = new AeroGroupbox(page);
    box->setTitle("Output");
    column->addWidget(box, 1);

    auto *bar = new AeroLinebar(box);
    bar->setValuePosition(AeroLinebar::CenterVal);
    bar->setValueFormat("%.1f V");
    bar->setMaxValue(300.0);
    bar->setTickStep(50.0);
    bar->setColorText(Qt::white);
    bar->setValue(230.4);
    bar->setAccessibleName(QObject::tr("Output voltage"));
    auto *inside = new QVBoxLayout(box);
    inside->setContentsMargins(20, 24, 20, 12);
    inside->addWidget(bar);

    auto *strip = new AeroStatusbar(page);
    strip->setFixedHeight(60);
    column->addWidget(strip);
    auto *row = new QHBoxLayout(strip);

    auto *start = new AeroButton(strip);
    start->setText("Start");
    start->setColor(QColor(0, 174, 240));
    start->setShadow(QColor(0, 40, 60));
    start->setMinimumSize(110, 36);
    row->addWidget(start);

    auto *beeper = new AeroSwitch(strip);
    beeper->setText("Beeper");
    beeper->setCheckable(true);
    beeper->setChecked(true);
    beeper->setMinimumSize(110, 36);
    row->addWidget(beeper);

    auto *help = new TranspButton(strip);
    help->setIcon(lamp());
    help->setIconSize(QSize(24, 24));
    help->setMinimumSize(36, 36);
    row->addWidget(help);
}
