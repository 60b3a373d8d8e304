// SPDX-License-Identifier: LicenseRef-all-rights-reserved

#include "statesheet.h"

#include "widgetcatalogue.h"

#include <QtCore/QCoreApplication>
#include <QtGui/QGuiApplication>
#include <QtGui/QMouseEvent>
#include <QtGui/QPainter>

#include <algorithm>

namespace {

void disable(QWidget *widget)
{
    widget->setEnabled(false);
}

void press(QWidget *widget)
{
    const QPointF middle = QRectF(widget->rect()).center();
    QMouseEvent event(QEvent::MouseButtonPress, middle, middle, middle, Qt::LeftButton,
                      Qt::LeftButton, Qt::NoModifier);
    QCoreApplication::sendEvent(widget, &event);
}

/// Around a widget that writes in black, where the background is dark.
const QColor plate(0xd6, 0xdc, 0xe1);
constexpr int plateMargin = 5;
constexpr int darkLightness = 128;

void focus(QWidget *widget)
{
    widget->window()->activateWindow();
    widget->setFocus(Qt::TabFocusReason);
}

/// Windows get the focus here without a window manager, and without disturbing anybody.
bool canFocus()
{
    return QGuiApplication::platformName() == QLatin1String("offscreen");
}

void deliver()
{
    for (int i = 0; i < 4; ++i) {
        QCoreApplication::sendPostedEvents();
        // The focus comes this way.
        if (canFocus())
            QCoreApplication::processEvents(QEventLoop::ExcludeUserInputEvents);
    }
}

/// What @p state looks like after @p change; null if it does not take the focus that it was given.
QImage lookOf(const WidgetState &state, void (*change)(QWidget *widget))
{
    QWidget window;
    if (!canFocus())
        window.setAttribute(Qt::WA_DontShowOnScreen);
    QWidget *widget = state.create(&window);
    window.resize(widget->size() + QSize(200, 100));
    window.show();
    deliver();
    if (change)
        change(widget);
    deliver();
    if (change == focus && !widget->hasFocus())
        return QImage();
    return widget->grab().toImage();
}

/// A state's look as an image, for what only one widget at a time can be.
class Still : public QWidget
{
public:
    Still(const QImage &shown, QWidget *parent)
        : QWidget(parent)
        , image(shown)
    {
        resize(image.size());
    }

protected:
    void paintEvent(QPaintEvent *) override
    {
        QPainter(this).drawImage(0, 0, image);
    }

private:
    QImage image;
};

QString sentence(const QStringList &names)
{
    QString list = names.last();
    if (names.size() > 1)
        list = StateSheet::tr("%1 and %2")
                   .arg(names.mid(0, names.size() - 1).join(QStringLiteral(", ")), list);
    list.replace(0, 1, list.at(0).toUpper());
    return names.size() == 1 ? StateSheet::tr("%1 looks the same.").arg(list)
                             : StateSheet::tr("%1 look the same.").arg(list);
}

} // namespace

StateSheet::StateSheet(const WidgetDescription &description, QWidget *parent)
    : QWidget(parent)
    , needsLight(description.needsLightBackground)
{
    std::vector<WidgetState> states = widgetStates(QString::fromLatin1(description.className));
    if (states.empty())
        return;
    const struct
    {
        QString name;
        void (*change)(QWidget *widget);
    } changes[] = {{tr("disabled"), disable}, {tr("pressed"), press}, {tr("focused"), focus}};
    const WidgetState first = states.front();
    const QImage plain = lookOf(first, nullptr);
    QStringList alike;
    for (const auto &[name, change] : changes) {
        if (change == focus && !canFocus())
            continue;
        const bool isThere =
            std::any_of(states.begin(), states.end(), [&name = name](const WidgetState &state) {
                return state.caption.contains(name);
            });
        if (isThere)
            continue;
        const QImage look = lookOf(first, change);
        if (look == plain)
            alike.append(name);
        else if (change == focus)
            states.push_back({name, [look](QWidget *sheet) { return new Still(look, sheet); }});
        else
            states.push_back({name, [first, change = change](QWidget *sheet) {
                                  QWidget *widget = first.create(sheet);
                                  change(widget);
                                  return widget;
                              }});
    }
    if (!alike.isEmpty())
        foot = sentence(alike);
    for (const WidgetState &state : states) {
        QWidget *widget = state.create(this);
        widget->installEventFilter(this);
        cells.push_back({state.caption, widget, state.beginsRow});
    }
    QSizePolicy policy(QSizePolicy::Preferred, QSizePolicy::Preferred);
    policy.setHeightForWidth(true);
    setSizePolicy(policy);
}

QStringList StateSheet::captions() const
{
    QStringList captions;
    for (const Cell &cell : cells)
        captions.append(cell.caption);
    return captions;
}

QString StateSheet::remark() const
{
    return foot;
}

bool StateSheet::hasHeightForWidth() const
{
    return true;
}

int StateSheet::heightForWidth(int width) const
{
    return layOut(width, false);
}

bool StateSheet::eventFilter(QObject *watched, QEvent *event)
{
    // Some widgets find their size only when they are shown.
    if (event->type() == QEvent::Resize) {
        QMetaObject::invokeMethod(
            this,
            [this] {
                layOut(width(), true);
                updateGeometry();
                update();
            },
            Qt::QueuedConnection);
    }
    return QWidget::eventFilter(watched, event);
}

void StateSheet::paintEvent(QPaintEvent *)
{
    QPainter painter(this);
    const int descent = fontMetrics().descent();
    const bool hasPlates =
        needsLight && palette().color(QPalette::Window).lightness() < darkLightness;
    for (const Cell &cell : cells) {
        if (hasPlates) {
            painter.fillRect(
                cell.widget->geometry().adjusted(-plateMargin, -1, plateMargin, plateMargin),
                plate);
        }
        painter.drawText(cell.widget->pos() - QPoint(0, descent + 2), cell.caption);
    }
    painter.drawText(gap, height() - gap - descent, foot);
}

void StateSheet::resizeEvent(QResizeEvent *)
{
    layOut(width(), true);
}

int StateSheet::captionHeight() const
{
    return fontMetrics().height() + 4;
}

QSize StateSheet::minimumSizeHint() const
{
    int width = 0;
    for (const Cell &cell : cells)
        width = qMax(width, cell.widget->width());
    return {width + 2 * gap, 0};
}

/// Fills rows of @p width with the cells; returns the height that they take.
int StateSheet::layOut(int width, bool move) const
{
    int x = gap;
    int y = gap;
    int rowHeight = 0;
    for (const Cell &cell : cells) {
        const int cellWidth =
            qMax(cell.widget->width(), fontMetrics().horizontalAdvance(cell.caption));
        if (x > gap && (cell.beginsRow || x + cellWidth + gap > width)) {
            x = gap;
            y += rowHeight + gap;
            rowHeight = 0;
        }
        if (move)
            cell.widget->move(x, y + captionHeight());
        x += cellWidth + gap;
        rowHeight = qMax(rowHeight, captionHeight() + cell.widget->height());
    }
    y += rowHeight + gap;
    return foot.isEmpty() ? y : y + captionHeight() + gap;
}
