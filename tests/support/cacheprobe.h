// SPDX-License-Identifier: LicenseRef-all-rights-reserved

#pragma once

#include "widgetprobe.h"

#include <functional>
#include <utility>
#include <vector>

class QImage;

/// Watches the cached images of a shown widget, to find what a change drops.
class CacheProbe
{
public:
    using Cache = std::pair<const char *, QImage *const *>;
    CacheProbe(QWidget *widget, std::vector<Cache> caches);

    /// What @p action does to the widget whose images are all there: "drops A,B" at once, "posts,
    /// drops A,B" when a posted update request has been delivered, "updates" when only a paint
    /// event follows, else "nothing". A drop that no paint event follows is reported as such.
    QString effectOf(const std::function<void()> &action);
    /// Likewise for a property that is written.
    QString effectOf(const char *property, const QVariant &value);
    /// Likewise for an event that is sent.
    QString effectOf(QEvent::Type type);
    /// The names of the images that are missing now.
    QString dropped() const;

private:
    QWidget *widget;
    std::vector<Cache> caches;
};

/// Sends a paint event to a widget that Qt would not paint.
void sendPaint(QWidget *widget);

/// Sends an event of a type without data.
void sendPlain(QWidget *widget, QEvent::Type type);
