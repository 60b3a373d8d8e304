// SPDX-License-Identifier: LicenseRef-all-rights-reserved

#include "scenes.h"

#include "elementstate.h"
#include "pictograms.h"
#include "samples.h"
#include "theme.h"
#include "widgetcatalogue.h"

#include <aerobutton.h>
#include <aerogroupbox.h>
#include <aerolinebar.h>
#include <aerostatusbar.h>
#include <aeroswitch.h>
#include <metrocirclerate.h>
#include <metronavdrawer.h>
#include <metroshelter.h>
#include <metrostatusbar.h>
#include <metrosysicon.h>
#include <metrotabicon.h>
#include <metroxbar.h>
#include <rotatestackedwidget.h>
#include <simpleslideswitch.h>
#include <transpbutton.h>

#include <QtWidgets/QHBoxLayout>
#include <QtWidgets/QLabel>

namespace {

const QColor slate(62, 78, 94);
const QColor slateShadow(27, 34, 42);
constexpr int drawerTabRoom = 62;
constexpr int drawerEntrySide = 64;
constexpr int drawerEntryGap = 5;

QLabel *whiteLabel(const QString &text, bool bold = false)
{
    QLabel *label = Theme::label(nullptr, Theme::Normal, bold, text);
    QPalette palette = label->palette();
    palette.setColor(QPalette::WindowText, Qt::white);
    label->setPalette(palette);
    return label;
}

template <typename W>
void makeGlass(W *widget)
{
    widget->setColor(slate);
    widget->setShadow(slateShadow);
}

void arrangeButton(QWidget *widget)
{
    makeGlass(static_cast<AeroButton *>(widget));
}

void arrangeSwitch(QWidget *widget)
{
    auto *control = static_cast<AeroSwitch *>(widget);
    makeGlass(control);
    control->setHighlight(Theme::accent());
    control->setChecked(true);
}

void arrangeTransparentButton(QWidget *widget)
{
    auto *button = static_cast<TranspButton *>(widget);
    button->setIconSize(QSize(24, 24));
    button->setIcon(sampleIcons().front().image);
    button->setPosLabel(QPoint(0, 22));
}

void arrangeStrip(QWidget *widget)
{
    auto *strip = static_cast<AeroStatusbar *>(widget);
    makeGlass(strip);
    auto *layout = new QHBoxLayout(strip);
    layout->addWidget(whiteLabel(QStringLiteral("Rack 3"), true));
    layout->addStretch();
    layout->addWidget(whiteLabel(QStringLiteral("On battery")));
}

void arrangeGroup(QWidget *widget)
{
    auto *group = static_cast<AeroGroupbox *>(widget);
    makeGlass(group);
    auto *layout = new QVBoxLayout(group);
    auto *row = new QHBoxLayout;
    layout->addStretch();
    layout->addLayout(row);
    layout->addStretch();
    row->setContentsMargins(Theme::margin, Theme::margin, Theme::margin, 0);
    row->addWidget(whiteLabel(QStringLiteral("Beeper")));
    row->addStretch();
    row->addWidget(new SimpleSlideSwitch);
}

void arrangeLinebar(QWidget *widget)
{
    auto *bar = static_cast<AeroLinebar *>(widget);
    bar->setColor(Theme::accent());
    bar->setShadow(Theme::deepAccent());
    bar->setColorText(Qt::white);
    bar->setValuePosition(AeroLinebar::leftVal);
    bar->setValue(65);
}

void arrangeSysIcon(QWidget *widget)
{
    QIcon icon;
    addPictogram(&icon, Pictogram::Ups, 48, Qt::white);
    static_cast<MetroSysIcon *>(widget)->setIcon(icon);
}

void arrangeTab(QWidget *widget)
{
    auto *tab = static_cast<MetroTabicon *>(widget);
    tab->setIconSize(QSize(32, 32));
    tab->setIcon(sampleIcons().front().image);
    tab->setChecked(true);
}

void arrangeTopStrip(QWidget *widget)
{
    auto *layout = new QHBoxLayout(widget);
    layout->setContentsMargins(Theme::margin, 0, Theme::margin, 0);
    layout->addStretch();
    layout->addWidget(whiteLabel(QStringLiteral("UPS console"), true));
    layout->addStretch();
}

void arrangeDrawer(QWidget *widget)
{
    auto *drawer = static_cast<MetroNavdrawer *>(widget);
    drawer->setBackground(QColor(58, 65, 72));
    drawer->setCheckable(true);
    int x = drawerTabRoom;
    for (const Pictogram glyph : {Pictogram::Check, Pictogram::Restart}) {
        auto *entry = new TranspButton(drawer);
        entry->setGeometry(x, 6, drawerEntrySide, drawerEntrySide);
        entry->setIconSize(QSize(28, 28));
        QIcon icon;
        addPictogram(&icon, glyph, 28, Qt::white);
        addPictogram(&icon, glyph, 28, Theme::accent(), QIcon::Active);
        entry->setIcon(icon);
        x += drawerEntrySide + drawerEntryGap;
    }
    // A press only toggles the box; opening is left to the application.
    QObject::connect(drawer, &QGroupBox::toggled, drawer, [drawer](bool checked) {
        drawer->setState(checked ? MetroNavdrawer::open : MetroNavdrawer::close);
    });
}

void arrangeDial(QWidget *widget)
{
    auto *dial = static_cast<MetroCirclerate *>(widget);
    dial->setRadius(80);
    dial->setTickness(20);
    dial->setValue(64);
    dial->setPosLabel(QPoint(0, 8));
}

void arrangeXbar(QWidget *widget)
{
    auto *bar = static_cast<MetroXbar *>(widget);
    bar->setValue(230);
}

void arrangeStack(QWidget *widget)
{
    auto *stack = static_cast<RotateStackedWidget *>(widget);
    stack->changeTimePosition(300);
    stack->changeTimeRotation(500);
    stack->setAnimationEnabled(true);
    const std::pair<const char *, QColor> pages[] = {{"Overview", Theme::deepAccent()},
                                                     {"Measurements", QColor(52, 110, 74)},
                                                     {"Settings", slate}};
    for (const auto &[title, color] : pages) {
        auto *page = new QWidget;
        page->setAutoFillBackground(true);
        QPalette palette = page->palette();
        palette.setColor(QPalette::Window, color);
        page->setPalette(palette);
        auto *layout = new QVBoxLayout(page);
        layout->addWidget(whiteLabel(QString::fromLatin1(title), true), 0, Qt::AlignCenter);
        auto *next = new AeroButton;
        next->setText(QStringLiteral("Next page"));
        next->setFixedSize(110, 36);
        makeGlass(next);
        layout->addWidget(next, 0, Qt::AlignCenter);
        QObject::connect(next, &AeroButton::clicked, stack, [stack] {
            stack->setCurrentIndex((stack->currentIndex() + 1) % stack->count());
        });
        stack->addWidget(page);
    }
}

/// What a class is set up with here; the others are populated as everywhere.
const struct
{
    const QMetaObject &widgetClass;
    void (*arrange)(QWidget *widget);
} scenes[] = {
    {AeroButton::staticMetaObject, arrangeButton},
    {AeroSwitch::staticMetaObject, arrangeSwitch},
    {TranspButton::staticMetaObject, arrangeTransparentButton},
    {AeroStatusbar::staticMetaObject, arrangeStrip},
    {AeroGroupbox::staticMetaObject, arrangeGroup},
    {AeroLinebar::staticMetaObject, arrangeLinebar},
    {MetroSysIcon::staticMetaObject, arrangeSysIcon},
    {MetroTabicon::staticMetaObject, arrangeTab},
    {MetroStatusbar::staticMetaObject, arrangeTopStrip},
    {MetroNavdrawer::staticMetaObject, arrangeDrawer},
    {MetroCirclerate::staticMetaObject, arrangeDial},
    {MetroXbar::staticMetaObject, arrangeXbar},
    {RotateStackedWidget::staticMetaObject, arrangeStack},
};

void arrange(const WidgetDescription &description, QWidget *widget)
{
    for (const auto &scene : scenes) {
        if (&scene.widgetClass == description.metaObject) {
            scene.arrange(widget);
            return;
        }
    }
    description.populate(widget);
}

} // namespace

QWidget *createOnStage(const WidgetDescription &description, QWidget *parent)
{
    QWidget *widget = description.create(parent);
    widget->resize(description.size);
    if (description.label.property)
        widget->setProperty(description.label.property, QLatin1String(description.label.text));
    arrange(description, widget);
    return widget;
}

elemDesc_t stateOnStage(const WidgetDescription &description)
{
    // A tab's LED shows only with an alarm.
    const bool isTab = description.metaObject == &MetroTabicon::staticMetaObject;
    return {quint8(isTab ? AlarmState::Warning : AlarmState::None), quint8(OperatingState::On)};
}
