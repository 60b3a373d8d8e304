// SPDX-License-Identifier: LicenseRef-all-rights-reserved

#include "scrollroom.h"

#include <QtCore/QEvent>
#include <QtWidgets/QAbstractButton>
#include <QtWidgets/QApplication>
#include <QtWidgets/QScrollBar>
#include <QtWidgets/QScroller>

namespace {

/// Keeps a finger that scrolls from using what it began on: the button under it, which follows the
/// finger with the page, would take the end of the gesture for a click.
class FingerGuard : public QObject
{
public:
    FingerGuard(QAbstractScrollArea *guarded, QScroller *scroller)
        : QObject(guarded)
        , area(guarded)
    {
        connect(scroller, &QScroller::stateChanged, this, [this](QScroller::State state) {
            if (state == QScroller::Dragging)
                begin();
        });
    }

protected:
    bool eventFilter(QObject *watched, QEvent *event) override
    {
        const bool ofWidget = watched->isWidgetType();
        switch (event->type()) {
        case QEvent::TouchBegin:
        case QEvent::MouseButtonPress:
            qApp->removeEventFilter(this);
            return false;
        case QEvent::MouseMove:
            return ofWidget;
        case QEvent::MouseButtonRelease:
            if (ofWidget)
                qApp->removeEventFilter(this);
            return ofWidget;
        default:
            return false;
        }
    }

private:
    void begin()
    {
        const QList<QAbstractButton *> buttons = area->findChildren<QAbstractButton *>();
        for (QAbstractButton *button : buttons) {
            if (button->isDown())
                button->setDown(false);
        }
        // Others that show a press are let go.
        const QList<QWidget *> widgets = area->viewport()->findChildren<QWidget *>();
        for (QWidget *widget : widgets) {
            QEvent letGo(QEvent::UngrabMouse);
            QCoreApplication::sendEvent(widget, &letGo);
        }
        qApp->installEventFilter(this);
    }

    QAbstractScrollArea *area;
};

} // namespace

void scrollByFinger(QAbstractScrollArea *area)
{
    QScroller::grabGesture(area->viewport(), QScroller::TouchGesture);
    QScroller *scroller = QScroller::scroller(area->viewport());
    QScrollerProperties properties = scroller->scrollerProperties();
    // A page ends where it ends: nothing is drawn beyond.
    const QVariant never = QVariant::fromValue(QScrollerProperties::OvershootAlwaysOff);
    properties.setScrollMetric(QScrollerProperties::HorizontalOvershootPolicy, never);
    properties.setScrollMetric(QScrollerProperties::VerticalOvershootPolicy, never);
    scroller->setScrollerProperties(properties);
    new FingerGuard(area, scroller);
}

ScrollRoom::ScrollRoom(QWidget *parent)
    : QScrollArea(parent)
{
    setFrameShape(QFrame::NoFrame);
    setWidgetResizable(true);
    setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    setFocusPolicy(Qt::NoFocus);
    setWidget(new QWidget);
    // The page is the background.
    viewport()->setAutoFillBackground(false);
    content()->setAutoFillBackground(false);
    scrollByFinger(this);
}

QWidget *ScrollRoom::content() const
{
    return widget();
}

QSize ScrollRoom::minimumSizeHint() const
{
    return {content()->minimumSizeHint().width() + verticalScrollBar()->sizeHint().width(), 0};
}
