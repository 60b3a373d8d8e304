// SPDX-License-Identifier: LicenseRef-all-rights-reserved

#pragma once

#include <QtCore/QSize>

class QWidget;

/// What the widgets share that answer a resize with a resize of their own.
namespace KivPrivate {

/// Whether the size of @p widget is decided by the window manager: a maximised or full-screen
/// window. A widget that insisted on its own would be resized for ever.
bool isSizeEnforced(const QWidget *widget);

/// One answer of a widget to a resize, as long as it lives. A container that takes the answer back
/// at once, such as a resizable scroll area, makes the widget answer again inside of its own
/// answer: the second of those gives up, and the widget keeps the container's size. GUI thread
/// only.
class ResizeAnswer
{
public:
    explicit ResizeAnswer(const QWidget *widget);
    ~ResizeAnswer();
    ResizeAnswer(const ResizeAnswer &) = delete;
    ResizeAnswer &operator=(const ResizeAnswer &) = delete;

    /// Whether the widget may resize itself; else it keeps the size that it has.
    bool isAllowed() const;

private:
    const ResizeAnswer *outer;
    const QWidget *answering;
    bool allowed;
};

/// Resizes @p widget to its own @p size, unless another size is enforced.
void resizeToOwn(QWidget *widget, QSize size);

} // namespace KivPrivate
