// SPDX-License-Identifier: LicenseRef-all-rights-reserved

#include "focusframe.h"

#include "theme.h"

#include <QtGui/QPainter>

#include <QtWidgets/QApplication>
#include <QtWidgets/QScrollArea>

FocusFrame::FocusFrame(QWidget *followedWindow)
    : QFocusFrame(followedWindow)
    , window(followedWindow)
{
    setObjectName(QStringLiteral("focusFrame"));
    setAttribute(Qt::WA_TransparentForMouseEvents);
    hide();
    connect(qApp, &QApplication::focusChanged, this,
            [this](QWidget *, QWidget *focused) { follow(focused); });
}

void FocusFrame::follow(QWidget *focused)
{
    const bool here = focused && window->isAncestorOf(focused) && focused != window &&
                      !qobject_cast<QScrollArea *>(focused);
    setWidget(here ? focused : nullptr);
}

void FocusFrame::paintEvent(QPaintEvent *)
{
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    // Two lines, one light and one dark: one of them stands out from any background.
    const double line = 1.5;
    const QRectF frame = QRectF(rect()).adjusted(line / 2, line / 2, -line / 2, -line / 2);
    constexpr double corner = 4.0;
    painter.setPen(QPen(Qt::white, line));
    painter.drawRoundedRect(frame, corner, corner);
    painter.setPen(QPen(QColor(0xff0b5cad), line));
    painter.drawRoundedRect(frame.adjusted(line, line, -line, -line), corner - 1, corner - 1);
}
