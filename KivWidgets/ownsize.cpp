// SPDX-License-Identifier: LicenseRef-all-rights-reserved

#include "ownsize_p.h"

#include <QtWidgets/QWidget>

namespace KivPrivate {

namespace {

/// Undisturbed, an answer meets at most one nested answer that resizes anything: a widget that
/// changes width and height one by one.
constexpr int deepestAnswer = 1;

/// The answers under way, from the innermost on.
const ResizeAnswer *innermost = nullptr;

} // namespace

bool isSizeEnforced(const QWidget *widget)
{
    return widget->isWindow() &&
           (widget->windowState() & (Qt::WindowMaximized | Qt::WindowFullScreen));
}

ResizeAnswer::ResizeAnswer(const QWidget *widget)
    : outer(innermost)
    , answering(widget)
{
    int depth = 0;
    for (const ResizeAnswer *answer = outer; answer; answer = answer->outer)
        depth += answer->answering == widget;
    allowed = depth <= deepestAnswer && !isSizeEnforced(widget);
    innermost = this;
}

ResizeAnswer::~ResizeAnswer()
{
    innermost = outer;
}

bool ResizeAnswer::isAllowed() const
{
    return allowed;
}

void resizeToOwn(QWidget *widget, QSize size)
{
    const ResizeAnswer answer(widget);
    if (answer.isAllowed())
        widget->resize(size);
}

} // namespace KivPrivate
