// SPDX-License-Identifier: LicenseRef-all-rights-reserved

#include "boxinterfaces.h"

#include <metronavdrawer.h>
#include <rotatestackedwidget.h>

#include <QtCore/QCoreApplication>
#include <QtGui/QMouseEvent>
#include <QtWidgets/QGroupBox>

namespace {

QString titleOf(const QGroupBox *box)
{
    return box ? withoutMnemonic(box->title()) : QString();
}

/// A press of the left button, on which the library's boxes act by themselves.
void pressOn(QWidget *box)
{
    if (!box)
        return;
    const QPoint place = box->rect().center();
    QMouseEvent press(QEvent::MouseButtonPress, place, box->mapToGlobal(place), Qt::LeftButton,
                      Qt::LeftButton, Qt::NoModifier);
    QCoreApplication::sendEvent(box, &press);
}

QString pageName(const QWidget *page)
{
    for (const QString &name : {page->accessibleName(), page->windowTitle()}) {
        if (!name.isEmpty())
            return name;
    }
    return page->objectName();
}

} // namespace

StripInterface::StripInterface(QWidget *widget)
    : WidgetInterface(widget, QAccessible::StatusBar)
{}

bool StripInterface::needsName() const
{
    return false;
}

GroupInterface::GroupInterface(QWidget *widget)
    : WidgetInterface(widget, QAccessible::Grouping)
{}

QAccessible::Role GroupInterface::role() const
{
    const auto *box = as<QGroupBox>();
    return box && box->isCheckable() ? QAccessible::CheckBox : QAccessible::Grouping;
}

QAccessible::State GroupInterface::state() const
{
    QAccessible::State state = WidgetInterface::state();
    if (const auto *box = as<QGroupBox>()) {
        state.checkable = box->isCheckable();
        state.checked = box->isChecked();
    }
    return state;
}

QString GroupInterface::label() const
{
    return titleOf(as<QGroupBox>());
}

bool GroupInterface::needsName() const
{
    return role() == QAccessible::CheckBox;
}

QString GroupInterface::ownAction() const
{
    return role() == QAccessible::CheckBox ? toggleAction() : QString();
}

void GroupInterface::act()
{
    pressOn(as<QGroupBox>());
}

DrawerInterface::DrawerInterface(QWidget *widget)
    : WidgetInterface(widget, QAccessible::Grouping)
{}

QAccessible::State DrawerInterface::state() const
{
    QAccessible::State state = WidgetInterface::state();
    if (const auto *drawer = as<MetroNavdrawer>()) {
        state.expandable = true;
        state.expanded = drawer->getState() == MetroNavdrawer::open;
        state.collapsed = drawer->getState() == MetroNavdrawer::close;
    }
    return state;
}

Announcement DrawerInterface::announcement() const
{
    const QAccessible::State now = state();
    Announcement announced = WidgetInterface::announcement();
    announced.state.expanded = now.expanded;
    announced.state.collapsed = now.collapsed;
    return announced;
}

QString DrawerInterface::label() const
{
    return titleOf(as<QGroupBox>());
}

QString DrawerInterface::ownAction() const
{
    const auto *drawer = as<MetroNavdrawer>();
    return drawer && drawer->isCheckable() ? toggleAction() : pressAction();
}

void DrawerInterface::act()
{
    pressOn(as<MetroNavdrawer>());
}

StackInterface::StackInterface(QWidget *widget)
    : WidgetInterface(widget, QAccessible::LayeredPane)
{}

QAccessibleInterface *StackInterface::child(int index) const
{
    const auto *stack = as<QStackedWidget>();
    return stack ? QAccessible::queryAccessibleInterface(stack->widget(index)) : nullptr;
}

QAccessibleInterface *StackInterface::childAt(int x, int y) const
{
    // The pages are hidden while a change runs.
    const auto *stack = as<QStackedWidget>();
    const QPoint place(x, y);
    if (!stack || !stack->isVisible() || !stack->rect().contains(stack->mapFromGlobal(place)))
        return nullptr;
    return child(stack->currentIndex());
}

int StackInterface::childCount() const
{
    const auto *stack = as<QStackedWidget>();
    return stack ? stack->count() : 0;
}

int StackInterface::indexOfChild(const QAccessibleInterface *child) const
{
    const auto *stack = as<QStackedWidget>();
    return stack && child ? stack->indexOf(qobject_cast<QWidget *>(child->object())) : -1;
}

QString StackInterface::status() const
{
    const auto *stack = as<QStackedWidget>();
    const QWidget *page = stack ? stack->currentWidget() : nullptr;
    if (!page)
        return QString();
    const QString place = QCoreApplication::translate("RotateStackedWidget", "page %1 of %2")
                              .arg(stack->currentIndex() + 1)
                              .arg(stack->count());
    const QString name = pageName(page);
    return name.isEmpty() ? place : name + QStringLiteral(", ") + place;
}

bool StackInterface::needsName() const
{
    return false;
}
