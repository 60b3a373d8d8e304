// SPDX-License-Identifier: LicenseRef-all-rights-reserved

#include "examples.h"

#include <KivWidgets/MetroCirclerate>

#include <QtWidgets/QApplication>
#include <QtWidgets/QFocusFrame>
#include <QtWidgets/QVBoxLayout>

// What the page on using the widgets shows.

void addDial(QVBoxLayout *layout)
{
    auto *room = new QWidget; // the layout sizes the room, and the dial keeps its own size in it
    auto *dial = new MetroCirclerate(room);
    dial->setRadius(60);
    dial->grab(); // a dial that is not shown yet computes its size when it is painted
    room->setMinimumSize(dial->size());
    layout->addWidget(room);
}

void showMissingValue(MetroCirclerate *dial)
{
    dial->setFormat("no data"); // a format without a conversion shows its text
    dial->setValue(dial->getMinValue());
}

void showFocus(QWidget *window)
{
    auto *frame = new QFocusFrame(window);
    QObject::connect(qApp, &QApplication::focusChanged, frame,
                     [frame](QWidget *, QWidget *now) { frame->setWidget(now); });
}

// Qt 6 always scales, and warns of these.
#if QT_VERSION < QT_VERSION_CHECK(6, 0, 0)
void scaleOnDenseScreens()
{
    QCoreApplication::setAttribute(Qt::AA_EnableHighDpiScaling);
    QCoreApplication::setAttribute(Qt::AA_UseHighDpiPixmaps);
}
#endif
