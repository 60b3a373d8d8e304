// SPDX-License-Identifier: LicenseRef-all-rights-reserved

#include "buttoninterfaces.h"

#include "statewords.h"

#include <metrotabicon.h>
#include <simpleslideswitch.h>
#include <slideswitch.h>

#include <QtCore/QCoreApplication>
#include <QtGui/QKeySequence>
#include <QtWidgets/QAbstractButton>

QAccessible::State ButtonInterface::state() const
{
    QAccessible::State state = WidgetInterface::state();
    if (const auto *button = as<QAbstractButton>()) {
        state.checkable = button->isCheckable();
        state.checked = button->isChecked();
        state.pressed = button->isDown();
    }
    return state;
}

QString ButtonInterface::label() const
{
    const auto *button = as<QAbstractButton>();
    return button ? withoutMnemonic(button->text()) : QString();
}

QString ButtonInterface::ownAction() const
{
    const auto *button = as<QAbstractButton>();
    return button && button->isCheckable() ? toggleAction() : pressAction();
}

void ButtonInterface::act()
{
    if (auto *button = as<QAbstractButton>())
        button->click();
}

QString ButtonInterface::ownShortcut() const
{
    const auto *button = as<QAbstractButton>();
    return button ? button->shortcut().toString(QKeySequence::NativeText) : QString();
}

StateButtonInterface::StateButtonInterface(QWidget *widget)
    : ButtonInterface(widget, QAccessible::Button)
{}

QString StateButtonInterface::status() const
{
    const auto *metro = dynamic_cast<MetroStyle *>(as<QAbstractButton>());
    return metro ? stateWords(metro->getElementState()) : QString();
}

TabInterface::TabInterface(QWidget *widget)
    : ButtonInterface(widget, QAccessible::PageTab)
{}

QAccessible::State TabInterface::state() const
{
    QAccessible::State state = ButtonInterface::state();
    state.selectable = state.checkable;
    state.selected = state.checked;
    state.checkable = false;
    state.checked = false;
    return state;
}

Announcement TabInterface::announcement() const
{
    Announcement now = ButtonInterface::announcement();
    now.state.selected = state().selected;
    return now;
}

QString TabInterface::status() const
{
    const auto *tab = as<MetroTabicon>();
    return tab ? alarmWords(tab->getElementState()) : QString();
}

QString TabInterface::ownAction() const
{
    return pressAction();
}

SlideSwitchInterface::SlideSwitchInterface(QWidget *widget)
    : ButtonInterface(widget, QAccessible::CheckBox)
{}

QAccessible::State SlideSwitchInterface::state() const
{
    QAccessible::State state = ButtonInterface::state();
    if (const auto *shown = as<SlideSwitch>())
        state.checkStateMixed = shown->getPartialON();
    return state;
}

Announcement SlideSwitchInterface::announcement() const
{
    Announcement now = ButtonInterface::announcement();
    now.state.checkStateMixed = state().checkStateMixed;
    return now;
}

QString SlideSwitchInterface::status() const
{
    const auto *shown = as<SlideSwitch>();
    if (!shown)
        return QString();
    if (shown->getLocked())
        return QCoreApplication::translate("SlideSwitch", "Locked");
    if (shown->getPartialON())
        return QCoreApplication::translate("SlideSwitch", "Partly on");
    return QString();
}

SimpleSlideSwitchInterface::SimpleSlideSwitchInterface(QWidget *widget)
    : ButtonInterface(widget, QAccessible::CheckBox)
{}

void SimpleSlideSwitchInterface::act()
{
    // As by a release of the mouse: no clicked() follows.
    if (auto *shown = as<SimpleSlideSwitch>())
        shown->setChecked(!shown->isChecked());
}
