#include "changewatcher.h"

#include "widgetinterface.h"

#include <QtCore/QEvent>
#include <QtCore/QMetaObject>
#include <QtCore/QPointer>
#include <QtWidgets/QStackedWidget>

#include <cmath>

namespace {

bool differ(std::optional<double> before, std::optional<double> now)
{
    // A value that is not a number equals nothing, itself included.
    const bool bothUndefined = before && now && std::isnan(*before) && std::isnan(*now);
    return before != now && !bothUndefined;
}

} // namespace

ChangeWatcher::ChangeWatcher(WidgetInterface *watched)
    : interface(watched)
    , last(watched->announcement())
{
    interface->object()->installEventFilter(this);
    // A stack whose page covers it is not painted for another page.
    if (auto *stack = qobject_cast<QStackedWidget *>(interface->object()))
        connect(stack, &QStackedWidget::currentChanged, this, &ChangeWatcher::compareLater);
}

void ChangeWatcher::compareLater()
{
    if (waiting)
        return;
    waiting = true;
    QMetaObject::invokeMethod(
        this, [this] { compare(); }, Qt::QueuedConnection);
}

bool ChangeWatcher::eventFilter(QObject *, QEvent *event)
{
    if (event->type() == QEvent::Paint)
        compareLater();
    return false;
}

void ChangeWatcher::compare()
{
    waiting = false;
    if (!interface->isValid())
        return;
    QObject *widget = interface->object();
    const Announcement before = last;
    const Announcement now = interface->announcement();
    last = now;

    QAccessible::State changed;
    changed.selected = now.state.selected != before.state.selected;
    changed.checkStateMixed = now.state.checkStateMixed != before.state.checkStateMixed;
    changed.expanded = now.state.expanded != before.state.expanded;
    changed.collapsed = now.state.collapsed != before.state.collapsed;

    // Who is told may delete the widget, and this watcher with it.
    const QPointer<QObject> alive(widget);
    const auto announce = [&alive](QAccessibleEvent &&event) {
        QAccessible::updateAccessibility(&event);
        return !alive.isNull();
    };
    if (now.label != before.label && !announce({widget, QAccessible::NameChanged}))
        return;
    if (now.status != before.status && !announce({widget, QAccessible::DescriptionChanged}))
        return;
    if (differ(before.value, now.value) &&
        !announce(QAccessibleValueChangeEvent(widget, now.value.value_or(0.0))))
        return;
    const bool anyState =
        changed.selected || changed.checkStateMixed || changed.expanded || changed.collapsed;
    if (anyState && !announce(QAccessibleStateChangeEvent(widget, changed)))
        return;
    if (changed.selected && now.state.selected)
        announce({widget, QAccessible::Selection});
}
