// SPDX-License-Identifier: LicenseRef-all-rights-reserved

#include "magnifier.h"

#include "slimscrollbars.h"

#include "../KivWidgets/qtversion_p.h"

#include <QtCore/QCoreApplication>
#include <QtCore/QTimer>
#include <QtGui/QMouseEvent>
#include <QtGui/QPainter>

namespace {

constexpr int refreshInterval = 40;

} // namespace

Magnifier::Magnifier(QWidget *parent)
    : QScrollArea(parent)
    , canvas(new QWidget)
    , timer(new QTimer(this))
{
    setFrameShape(QFrame::NoFrame);
    setAlignment(Qt::AlignCenter);
    setWidget(canvas);
    viewport()->setAutoFillBackground(true);
    useSlimScrollBars(this);
    canvas->setMouseTracking(true);
    canvas->installEventFilter(this);
    // The widget lies under this one, so nothing reports that it changed.
    connect(timer, &QTimer::timeout, this, &Magnifier::refresh);
    timer->setInterval(refreshInterval);
}

void Magnifier::magnify(QWidget *widget, int newFactor)
{
    source = widget;
    factor = newFactor;
    image = QImage();
    refresh();
}

bool Magnifier::eventFilter(QObject *watched, QEvent *event)
{
    if (watched != canvas)
        return QScrollArea::eventFilter(watched, event);
    switch (event->type()) {
    case QEvent::Paint: {
        QPainter painter(canvas);
        painter.drawImage(canvas->rect(), image);
        return true;
    }
    case QEvent::MouseButtonPress:
    case QEvent::MouseButtonRelease:
    case QEvent::MouseButtonDblClick:
    case QEvent::MouseMove:
        passOn(static_cast<const QMouseEvent *>(event));
        return true;
    case QEvent::Leave:
        hover(nullptr);
        return false;
    default:
        return QScrollArea::eventFilter(watched, event);
    }
}

void Magnifier::showEvent(QShowEvent *event)
{
    QScrollArea::showEvent(event);
    refresh();
    timer->start();
}

void Magnifier::hideEvent(QHideEvent *event)
{
    timer->stop();
    QScrollArea::hideEvent(event);
}

void Magnifier::refresh()
{
    if (!source || !isVisible())
        return;
    QImage now(source->size() * source->devicePixelRatioF(), QImage::Format_ARGB32_Premultiplied);
    now.setDevicePixelRatio(source->devicePixelRatioF());
    now.fill(Qt::transparent);
    source->render(&now, QPoint(), QRegion(), QWidget::DrawChildren);
    if (!source || now == image)
        return;
    image = now;
    canvas->resize(source->size() * factor);
    canvas->update();
}

/// Sends @p event, which came to the canvas, to the part of the widget that is shown there.
void Magnifier::passOn(const QMouseEvent *event)
{
    if (!source)
        return;
    const QPointF place = KivPrivate::pointerPosition(event) / factor;
    QWidget *target = pressed;
    if (!target) {
        target = source->childAt(place.toPoint());
        target = target ? target : source.data();
    }
    hover(target);
    if (event->type() == QEvent::MouseButtonPress || event->type() == QEvent::MouseButtonDblClick)
        pressed = target;
    else if (event->type() == QEvent::MouseButtonRelease)
        pressed.clear();
    const QPointF local = place - QPointF(target->mapTo(source, QPoint()));
    const QPointF inWindow(target->mapTo(target->window(), local.toPoint()));
    QMouseEvent passed(event->type(), local, inWindow,
                       QPointF(target->mapToGlobal(local.toPoint())), event->button(),
                       event->buttons(), event->modifiers());
    QCoreApplication::sendEvent(target, &passed);
    refresh();
}

/// Lets the widget know that the pointer is over @p target, or over nothing of it.
void Magnifier::hover(QWidget *target)
{
    if (hovered == target)
        return;
    if (hovered) {
        QEvent leave(QEvent::Leave);
        QCoreApplication::sendEvent(hovered, &leave);
    }
    hovered = target;
    if (hovered) {
        const QPointF middle = QRectF(hovered->rect()).center();
        QEnterEvent enter(middle, middle, middle);
        QCoreApplication::sendEvent(hovered, &enter);
    }
}
