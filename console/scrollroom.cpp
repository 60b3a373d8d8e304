#include "scrollroom.h"

#include <QtWidgets/QScrollBar>
#include <QtWidgets/QScroller>

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
    QScroller::grabGesture(viewport(), QScroller::TouchGesture);
}

QWidget *ScrollRoom::content() const
{
    return widget();
}

QSize ScrollRoom::minimumSizeHint() const
{
    return {content()->minimumSizeHint().width() + verticalScrollBar()->sizeHint().width(), 0};
}
