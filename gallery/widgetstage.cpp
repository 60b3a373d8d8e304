// SPDX-License-Identifier: LicenseRef-all-rights-reserved

#include "widgetstage.h"

#include "magnifier.h"
#include "sizehandle.h"
#include "slimscrollbars.h"
#include "theme.h"

#include <QtCore/QEvent>
#include <QtGui/QPainter>
#include <QtWidgets/QScrollBar>

namespace {

/// Free space around a widget that is larger than the stage.
constexpr int margin = 24;

/// Light enough for black text beside a dark window.
const QColor softLight(0xd6, 0xdc, 0xe1);

} // namespace

WidgetStage::WidgetStage(QWidget *parent)
    : QScrollArea(parent)
{
    auto *plain = new QWidget;
    plain->setAutoFillBackground(true);
    setWidget(plain);
    setFrameShape(QFrame::NoFrame);
    viewport()->setAutoFillBackground(true);
    useSlimScrollBars(this);
    for (int y = -1; y <= 1; ++y) {
        for (int x = -1; x <= 1; ++x) {
            const QPoint role(x, y);
            if (role.isNull())
                continue;
            auto *handle = new SizeHandle(role, plain);
            handle->hide();
            connect(handle, &SizeHandle::pressed, this, [this] {
                dragging = true;
                geometryBeforeDrag = widgetShown ? widgetShown->geometry() : QRect();
            });
            connect(handle, &SizeHandle::dragged, this,
                    [this, role](QPoint offset) { dragHandle(role, offset); });
            connect(handle, &SizeHandle::released, this, [this] {
                dragging = false;
                placeSoon();
            });
            handles.push_back(handle);
        }
    }
    magnifier = new Magnifier(viewport());
    magnifier->hide();
    setDark(false);
}

QWidget *WidgetStage::canvas() const
{
    return widget();
}

void WidgetStage::present(QWidget *newWidget, bool resizable)
{
    delete widgetShown;
    widgetShown = newWidget;
    dragging = false;
    newWidget->installEventFilter(this);
    newWidget->show();
    naturalSize = newWidget->size();
    // What a widget does while it is set up is no move of its own.
    movedItself = false;
    showHandles(resizable);
    place();
    horizontalScrollBar()->setValue((canvas()->width() - viewport()->width()) / 2);
    verticalScrollBar()->setValue((canvas()->height() - viewport()->height()) / 2);
    applyZoom();
}

QWidget *WidgetStage::staged() const
{
    return widgetShown;
}

void WidgetStage::resizeStaged(QSize size)
{
    if (!widgetShown)
        return;
    widgetShown->resize(size.expandedTo(QSize(smallestSide, smallestSide))
                            .boundedTo(QSize(largestSide, largestSide)));
    placeSoon();
}

void WidgetStage::takeNaturalSize()
{
    resizeStaged(naturalSize);
}

void WidgetStage::setDark(bool newDark)
{
    dark = newDark;
    applyColors();
}

void WidgetStage::setAlwaysLight(bool always)
{
    alwaysLight = always;
    applyColors();
}

QPalette WidgetStage::canvasPalette() const
{
    QPalette palette = Theme::palette(dark && !alwaysLight);
    QColor background(Qt::white);
    if (dark)
        background = alwaysLight ? softLight : QColor(21, 24, 27);
    palette.setColor(QPalette::Window, background);
    return palette;
}

void WidgetStage::setZoom(int factor)
{
    zoom = qBound(1, factor, largestZoom);
    applyZoom();
}

bool WidgetStage::eventFilter(QObject *watched, QEvent *event)
{
    if (watched == widgetShown) {
        if (event->type() == QEvent::Move || event->type() == QEvent::Resize) {
            if (event->type() == QEvent::Move && !placing && !dragging)
                movedItself = true;
            attachHandles();
            placeSoon();
        } else if (event->type() == QEvent::Destroy || event->type() == QEvent::Hide) {
            showHandles(false);
        }
    }
    return QScrollArea::eventFilter(watched, event);
}

void WidgetStage::resizeEvent(QResizeEvent *event)
{
    QScrollArea::resizeEvent(event);
    movedItself = false;
    place();
    applyZoom();
}

void WidgetStage::dragHandle(QPoint role, QPoint offset)
{
    if (!widgetShown)
        return;
    const QRect &before = geometryBeforeDrag;
    resizeStaged(before.size() + QSize(role.x() * offset.x(), role.y() * offset.y()));
    // The widget may keep a size of its own; the edges opposite to the handle stay.
    const QSize now = widgetShown->size();
    widgetShown->move(role.x() < 0 ? before.right() + 1 - now.width() : before.left(),
                      role.y() < 0 ? before.bottom() + 1 - now.height() : before.top());
}

void WidgetStage::placeSoon()
{
    if (dragging || placing || placeIsDue)
        return;
    placeIsDue = true;
    QMetaObject::invokeMethod(
        this, [this] { place(); }, Qt::QueuedConnection);
}

/// Fits the canvas to its widget and puts the widget in the middle, but for one that moved by
/// itself to a place on the canvas.
void WidgetStage::place()
{
    placeIsDue = false;
    if (!widgetShown || dragging)
        return;
    const QSize wanted = widgetShown->size() + 2 * QSize(margin, margin);
    canvas()->resize(wanted.expandedTo(viewport()->size()));
    if (!movedItself || !canvas()->rect().contains(widgetShown->geometry())) {
        placing = true;
        widgetShown->move((canvas()->width() - widgetShown->width()) / 2,
                          (canvas()->height() - widgetShown->height()) / 2);
        placing = false;
        movedItself = false;
    }
    attachHandles();
    Q_EMIT placed();
}

void WidgetStage::showHandles(bool shown)
{
    for (SizeHandle *handle : handles) {
        handle->setVisible(shown);
        handle->raise();
    }
}

void WidgetStage::applyColors()
{
    canvas()->setPalette(canvasPalette());
    viewport()->setPalette(canvasPalette());
}

void WidgetStage::applyZoom()
{
    magnifier->setGeometry(viewport()->rect());
    magnifier->raise();
    magnifier->setVisible(zoom > 1);
    magnifier->magnify(widgetShown, zoom);
}

void WidgetStage::attachHandles()
{
    for (SizeHandle *handle : handles)
        handle->attachTo(widgetShown->geometry());
}
