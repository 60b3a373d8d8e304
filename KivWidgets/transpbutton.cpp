// SPDX-License-Identifier: LicenseRef-all-rights-reserved

#include "transpbutton.h"

#include "assign_p.h"
#include "events_p.h"
#include "iconpainting_p.h"
#include "pixmaps_p.h"
#include "text_p.h"

#include <QtCore/QPointer>
#include <QtGui/QFontMetrics>
#include <QtGui/QPainter>

using namespace KivPrivate;

TranspButton::TranspButton(QWidget *parent)
    : QAbstractButton(parent)
    , posLabel(0, y())
    , hover(false)
{}

TranspButton::~TranspButton() = default;

QPoint TranspButton::getPosLabel() const
{
    return posLabel;
}

void TranspButton::setPosLabel(const QPoint &newPosLabel)
{
    if (assignIfChanged(posLabel, newPosLabel))
        update();
}

bool TranspButton::event(QEvent *event)
{
    if (isOneOf(event, growEvents) && growToIcon(this))
        return false;

    if (isOneOf(event, hoverEvents)) {
        // A slot on the signals may delete the button.
        const QPointer<TranspButton> self(this);
        hover = event->type() == QEvent::Enter;
        if (hover)
            Q_EMIT mouseEnter();
        else
            Q_EMIT mouseLeave();
        if (!self)
            return true;
        update();
    }
    return QAbstractButton::event(event);
}

void TranspButton::paintEvent(QPaintEvent *)
{
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);

    if (!icon().isNull()) {
        const QPixmap pixmap = iconPixmap(this, hover ? QIcon::Active : QIcon::Normal);
        const QSize extent = logicalSize(pixmap);
        const QPoint corner((width() - extent.width()) / 2, (height() - extent.height()) / 2);
        drawStretched(&painter, QRectF(QRect(corner, extent)), pixmap);
    }

    if (!text().isEmpty()) {
        const QFontMetrics metrics(font());
        // In doubles, since the offset may be any number.
        const double x =
            (width() - singleLineSize(font(), text()).width()) / 2 + double(posLabel.x()) - 1;
        const double y = centredBaseline(metrics, height()) + double(posLabel.y());
        painter.setFont(font());
        painter.setOpacity(1.0);
        drawLine(&painter, QPointF(x, y), text());
    }
}
