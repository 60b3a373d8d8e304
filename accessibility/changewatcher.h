// SPDX-License-Identifier: LicenseRef-all-rights-reserved

#pragma once

#include "announcement.h"

#include <QtCore/QObject>

#include <functional>

/// Announces changes of what a widget says. The widgets send no such notes, but whatever they show
/// anew they paint, so what they say is compared after each paint.
class ChangeWatcher : public QObject
{
public:
    /// Watches @p widget, about which @p announcement is asked from now on: what it says, or
    /// nothing while it is being deleted.
    using Source = std::function<std::optional<Announcement>()>;
    ChangeWatcher(QObject *widget, Source announcement);

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    /// Compares once the events under way are done with: no event may be sent during a paint event.
    void compareLater();
    void compare();

    QObject *widget;
    Source announcement;
    Announcement last;
    bool waiting = false;
};
