// SPDX-License-Identifier: LicenseRef-all-rights-reserved

#include "changewatcher.h"

#include <QtCore/QEvent>
#include <QtCore/QMetaObject>
#include <QtCore/QPointer>
#include <QtWidgets/QStackedWidget>

#include <cmath>
#include <utility>

namespace {

bool differ(std::optional<double> before, std::optional<double> now)
{
    // A value that is not a number equals nothing, itself included.
    const bool bothUndefined = before && now && std::isnan(*before) && std::isnan(*now);
    return before != now && !bothUndefined;
}

} // namespace

ChangeWatcher::ChangeWatcher(QObject *watchedWidget, Source newAnnouncement)
    : widget(watchedWidget)
    , announcement(std::move(newAnnouncement))
    , last(announcement().value_or(Announcement()))
{
    widget->installEventFilter(this);
    // A stack whose page covers it is not painted for another page.
    if (auto *stack = qobject_cast<QStackedWidget *>(widget))
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
    const std::optional<Announcement> current = announcement();
    if (!current)
        return;
    // This watcher may not live to the end.
    QObject *const changedWidget = widget;
    const Announcement before = last;
    const Announcement &now = *current;
    last = now;

    QAccessible::State changed;
    changed.selected = now.state.selected != before.state.selected;
    changed.checkStateMixed = now.state.checkStateMixed != before.state.checkStateMixed;
    changed.expanded = now.state.expanded != before.state.expanded;
    changed.collapsed = now.state.collapsed != before.state.collapsed;

    // A receiver may delete the widget, and this watcher with it.
    const QPointer<QObject> alive(changedWidget);
    const auto announce = [&alive](QAccessibleEvent &&event) {
        QAccessible::updateAccessibility(&event);
        return !alive.isNull();
    };
    if (now.label != before.label && !announce({changedWidget, QAccessible::NameChanged}))
        return;
    if (now.status != before.status && !announce({changedWidget, QAccessible::DescriptionChanged}))
        return;
    if (differ(before.value, now.value) &&
        !announce(QAccessibleValueChangeEvent(changedWidget, now.value.value_or(0.0))))
        return;
    const bool anyState =
        changed.selected || changed.checkStateMixed || changed.expanded || changed.collapsed;
    if (anyState && !announce(QAccessibleStateChangeEvent(changedWidget, changed)))
        return;
    if (changed.selected && now.state.selected)
        announce({changedWidget, QAccessible::Selection});
}
