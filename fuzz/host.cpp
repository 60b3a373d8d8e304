// SPDX-License-Identifier: LicenseRef-all-rights-reserved

#include "host.h"

#include "images.h"
#include "qtversion_p.h"
#include "values.h"

#include <metroStyle.h>
#include <metrosysicon.h>
#include <rotatestackedwidget.h>
#include <simpleslideswitch.h>
#include <transpbutton.h>

#include <QAction>
#include <QtCore/QCoreApplication>
#include <QtCore/QMetaProperty>
#include <QtGui/QPainter>
#include <QtGui/QWindow>
#include <QtGui/QtEvents>
#include <QtWidgets/QAbstractButton>
#include <QtWidgets/QGroupBox>
#include <QtWidgets/QLabel>
#include <QtWidgets/QStackedWidget>
#include <QtWidgets/QStyle>
#include <QtWidgets/QStyleFactory>
#include <QtWidgets/QVBoxLayout>

#include <algorithm>
#include <cstdarg>
#include <cstdio>
#include <cstdlib>
#include <utility>

using namespace Values;

namespace {

constexpr QSize windowSize(640, 480);

/// Counts up while it lives. On Host::keepers: the widget must not be deleted, since the code of Qt
/// that runs needs it.
class Keeper
{
public:
    explicit Keeper(int &counter)
        : count(counter)
    {
        ++count;
    }
    ~Keeper()
    {
        --count;
    }
    Keeper(const Keeper &) = delete;
    Keeper &operator=(const Keeper &) = delete;

private:
    int &count;
};

/// A child that answers to a new size by deleting one of its siblings, as long as the library gives
/// it. Qt itself, showing or laying out children, needs them all.
class DeletingChild : public QWidget
{
public:
    using QWidget::QWidget;
    static int awake;

protected:
    void resizeEvent(QResizeEvent *) override
    {
        if (awake == 0 || !parentWidget() || qobject_cast<QStackedWidget *>(parentWidget()))
            return;
        for (QObject *sibling : parentWidget()->children()) {
            if (sibling != this && sibling->isWidgetType()) {
                delete sibling;
                return;
            }
        }
    }
};

int DeletingChild::awake = 0;

[[gnu::format(printf, 1, 2)]] void trace(const char *format, ...)
{
    if (!Host::traces)
        return;
    va_list arguments;
    va_start(arguments, format);
    std::vprintf(format, arguments);
    va_end(arguments);
    std::putchar('\n');
    std::fflush(stdout);
}

/// Ends the process with a message that libFuzzer and the replay report as a finding.
[[noreturn]] void complain(const char *name, const char *what)
{
    std::printf("%s: %s\n", name, what);
    std::fflush(stdout);
    std::abort();
}

QImage rendered(QWidget *widget)
{
    QImage image(128, 96, QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    widget->render(&image, QPoint(), QRegion(0, 0, 128, 96), QWidget::RenderFlags());
    return image;
}

} // namespace

bool Host::traces = false;

Host::Host(const Subject &subjectClass, Bytes input)
    : subject(subjectClass)
    , bytes(input)
{
    build();
}

Host::~Host()
{
    reactions = 0;
    if (widget && widget->window() != window)
        delete widget;
    delete window;
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
}

void Host::run()
{
    while (!bytes.atEnd() && actionsLeft > 0)
        act();
    reactions = 0;
    settle();
}

bool Host::eventFilter(QObject *, QEvent *event)
{
    if (event->type() == QEvent::Paint) {
        ++paints;
        if (static_cast<QPaintEvent *>(event)->region().boundingRect().contains(widget->rect()))
            paintedAside = false;
    }
    return false;
}

void Host::build()
{
    if (!window) {
        window = new QWidget;
        window->resize(windowSize);
    }
    // Qt leaves standing what a widget covered that went while its updates were off.
    window->update();
    const int kind = bytes.byte();
    // Most inputs begin as most applications do: with a shown widget inside a window.
    const bool shown = kind < 224;
    const bool inside = kind % 16 != 15;
    trace("build %s %s", inside ? "inside a window" : "on its own", shown ? "shown" : "hidden");
    widget = subject.make(inside ? window.data() : nullptr);
    paintedAside = false;
    wasWindow = !inside;
    widget->installEventFilter(this);
    if (auto *stack = qobject_cast<QStackedWidget *>(widget)) {
        for (int page = 0; page < 3; ++page)
            stack->addWidget(new QLabel(QString::number(page)));
    }
    connectSlots();
    if (!shown)
        return;
    window->show();
    if (!inside)
        widget->show();
    else
        widget->setVisible(true);
    // Half of the inputs paint it before anything else.
    if (kind < 128)
        QCoreApplication::processEvents();
}

void Host::connectSlots()
{
    const auto onSignal = [this](Slot slot) { return [this, slot] { react(slot); }; };
    if (auto *button = qobject_cast<QAbstractButton *>(widget)) {
        connect(button, &QAbstractButton::clicked, this, onSignal(Slot::MayDelete));
        // The base class itself goes on with the button afterwards.
        connect(button, &QAbstractButton::toggled, this, onSignal(Slot::MustKeep));
        connect(button, &QAbstractButton::pressed, this, onSignal(Slot::MustKeep));
        connect(button, &QAbstractButton::released, this, onSignal(Slot::MustKeep));
    }
    if (auto *button = qobject_cast<TranspButton *>(widget)) {
        connect(button, &TranspButton::mouseEnter, this, onSignal(Slot::MayDelete));
        connect(button, &TranspButton::mouseLeave, this, onSignal(Slot::MayDelete));
    }
    if (auto *icon = qobject_cast<MetroSysIcon *>(widget)) {
        connect(icon, &MetroSysIcon::mouseEnter, this, onSignal(Slot::MayDelete));
        connect(icon, &MetroSysIcon::mouseLeave, this, onSignal(Slot::MayDelete));
    }
    if (auto *box = qobject_cast<QGroupBox *>(widget)) {
        connect(box, &QGroupBox::clicked, this, onSignal(Slot::MayDelete));
        connect(box, &QGroupBox::toggled, this, onSignal(Slot::MayDelete));
    }
    if (auto *stack = qobject_cast<QStackedWidget *>(widget)) {
        connect(stack, &QStackedWidget::currentChanged, this, onSignal(Slot::MayDelete));
        connect(stack, &QStackedWidget::widgetRemoved, this, onSignal(Slot::MustKeep));
    }
}

/// The slot on any signal: continues with the input's actions, if the input asked for that.
void Host::react(Slot slot)
{
    if (reactions == 0 || depth > 3)
        return;
    --reactions;
    trace("in a slot:");
    ++depth;
    const bool mustKeep = slot == Slot::MustKeep;
    keepers += mustKeep;
    for (int count = 1 + bytes.below(3); count > 0 && actionsLeft > 0; --count)
        act();
    keepers -= mustKeep;
    --depth;
    trace("end of the slot");
}

void Host::act()
{
    --actionsLeft;
    if (!widget) {
        if (depth > 0)
            return;
        build();
    }
    const int action = bytes.below(32);
    if (action < 10)
        writeProperty();
    else if (action < 13)
        callMethod();
    else if (action < 15)
        resizeWidget();
    else if (action < 17)
        sendPlainEvent();
    else if (action < 19)
        sendDataEvent();
    else if (action < 21)
        useMouse();
    else if (action < 22)
        useKeys();
    else if (action < 23)
        changeChildren();
    else if (action < 24)
        paint();
    else if (action < 25)
        deliver();
    else if (action < 26)
        changeSurroundings();
    else if (action < 27)
        changeParent();
    else if (action < 28)
        passTime();
    else if (action < 29)
        changeState();
    else if (action < 30)
        destroy();
    else if (action < 31)
        addSibling();
    else
        reactions = 1 + bytes.below(4);
}

void Host::writeProperty()
{
    const QMetaObject *meta = widget->metaObject();
    // The class's own properties come last; they get most of the writes.
    const int own = meta->propertyCount() - meta->propertyOffset();
    const std::uint8_t choice = bytes.byte();
    const int index = choice < 176 && own > 0 ? meta->propertyOffset() + choice % own
                                              : choice % meta->propertyCount();
    const QMetaProperty property = meta->property(index);
    if (!property.isWritable())
        return;
    const QVariant value = someValue(property, bytes);
    if (!value.isValid())
        return;
    trace("write %s = %s", property.name(), qPrintable(value.toString()));
    {
        int others = 0;
        const Keeper awake(index >= meta->propertyOffset() ? DeletingChild::awake : others);
        property.write(widget, value);
    }
    if (widget && !value.isNull())
        property.read(widget);
}

void Host::callMethod()
{
    trace("call a method");
    paintedAside = true;
    const Keeper awake(DeletingChild::awake);
    subject.call(widget, bytes);
}

void Host::resizeWidget()
{
    const QSize size = someWidgetSize(bytes);
    trace("resize to %dx%d", size.width(), size.height());
    switch (bytes.below(4)) {
    case 0:
        widget->setFixedSize(size);
        break;
    case 1:
        widget->setGeometry(QRect(QPoint(someInt(bytes) % 1000, 3), size));
        break;
    default:
        widget->resize(size);
        break;
    }
}

void Host::send(QEvent *event)
{
    trace("send event %d", int(event->type()));
    QCoreApplication::sendEvent(widget, event);
}

void Host::sendPlainEvent()
{
    static const QEvent::Type types[] = {
        QEvent::EnabledChange,
        QEvent::PolishRequest,
        QEvent::UpdateRequest,
        QEvent::ContentsRectChange,
        QEvent::StyleChange,
        QEvent::FontChange,
        QEvent::PaletteChange,
        QEvent::LayoutDirectionChange,
        QEvent::ParentAboutToChange,
        QEvent::ParentChange,
        QEvent::LanguageChange,
        QEvent::LocaleChange,
        QEvent::ActivationChange,
        QEvent::WindowActivate,
        QEvent::WindowDeactivate,
        QEvent::Polish,
        QEvent::LayoutRequest,
        QEvent::ApplicationFontChange,
        QEvent::ApplicationPaletteChange,
        QEvent::ModifiedChange,
        QEvent::MouseTrackingChange,
        QEvent::ReadOnlyChange,
        QEvent::ToolTipChange,
        QEvent::WindowTitleChange,
        QEvent::WindowIconChange,
        QEvent::IconTextChange,
        QEvent::ShowToParent,
        QEvent::HideToParent,
        QEvent::ZOrderChange,
        QEvent::CursorChange,
        QEvent::Leave,
        QEvent::Leave,
        QEvent::AcceptDropsChange,
        // Not ThreadChange: no widget leaves its thread, and Qt starts timers again for it, which
        // then outlive a pressed button.
        QEvent::EnterWhatsThisMode,
        QEvent::WinIdChange,
        QEvent::ScreenChangeInternal,
        QEvent::ContentsRectChange,
        QEvent::None,
        QEvent::User,
        QEvent::MaxUser,
    };
    QEvent event(bytes.oneOf(types));
    if (bytes.flag()) {
        trace("post event %d", int(event.type()));
        QCoreApplication::postEvent(widget, new QEvent(event.type()));
        return;
    }
    send(&event);
}

void Host::sendDataEvent()
{
    switch (bytes.below(20)) {
    case 0: {
        QResizeEvent event(someWidgetSize(bytes), someWidgetSize(bytes));
        send(&event);
        break;
    }
    case 1: {
        QMoveEvent event(somePoint(bytes), QPoint());
        send(&event);
        break;
    }
    case 2: {
        QShowEvent event;
        send(&event);
        break;
    }
    case 3: {
        QHideEvent event;
        send(&event);
        break;
    }
    case 4:
    case 5: {
        const QPointF place = somePlace(bytes, widget->size());
        QEnterEvent event(place, place, place);
        send(&event);
        break;
    }
    case 6: {
        QFocusEvent event(bytes.flag() ? QEvent::FocusIn : QEvent::FocusOut,
                          static_cast<Qt::FocusReason>(bytes.below(8)));
        send(&event);
        break;
    }
    case 7: {
        QObject child;
        QChildEvent event(bytes.flag() ? QEvent::ChildRemoved : QEvent::ChildAdded, &child);
        send(&event);
        break;
    }
    case 8: {
        QWidget child;
        QChildEvent event(bytes.flag() ? QEvent::ChildRemoved : QEvent::ChildPolished, &child);
        send(&event);
        break;
    }
    case 9:
        trace("dynamic property");
        widget->setProperty("fuzzed", bytes.byte());
        break;
    case 10: {
        QTimerEvent event(someInt(bytes));
        send(&event);
        break;
    }
    case 11: {
        const QPointF place = somePlace(bytes, widget->size());
        QWheelEvent event(place, place, QPoint(), QPoint(0, someInt(bytes) % 10000), held,
                          Qt::NoModifier, Qt::NoScrollPhase, false);
        send(&event);
        break;
    }
    case 12: {
        const QEvent::Type type = bytes.flag() ? QEvent::HoverEnter : QEvent::HoverLeave;
        QHoverEvent event = KivPrivate::hoverEvent(type, somePlace(bytes, widget->size()));
        send(&event);
        break;
    }
    case 13: {
        QHoverEvent event =
            KivPrivate::hoverEvent(QEvent::HoverMove, somePlace(bytes, widget->size()));
        send(&event);
        break;
    }
    case 14: {
        QWindowStateChangeEvent event(Qt::WindowMaximized);
        send(&event);
        break;
    }
    case 15: {
        QCloseEvent event;
        send(&event);
        break;
    }
    case 16: {
        const Keeper keeper(keepers);
        QShortcutEvent event(QKeySequence(Qt::Key_F1), someInt(bytes), bytes.flag());
        send(&event);
        break;
    }
    case 17: {
        QPaintEvent event(QRect(QPoint(), widget->size()));
        send(&event);
        break;
    }
    case 18: {
        QInputMethodEvent event;
        send(&event);
        break;
    }
    default: {
        const QPoint place(bytes.byte(), bytes.byte());
        QContextMenuEvent event(QContextMenuEvent::Keyboard, place, widget->mapToGlobal(place));
        send(&event);
        break;
    }
    }
}

void Host::useMouse()
{
    static const QEvent::Type types[] = {QEvent::MouseButtonPress,    QEvent::MouseMove,
                                         QEvent::MouseMove,           QEvent::MouseButtonRelease,
                                         QEvent::MouseButtonDblClick, QEvent::MouseMove};
    static const Qt::MouseButton buttons[] = {Qt::LeftButton,  Qt::LeftButton,   Qt::LeftButton,
                                              Qt::RightButton, Qt::MiddleButton, Qt::NoButton};
    const QEvent::Type only = bytes.oneOf(types);
    const Qt::MouseButton button = bytes.oneOf(buttons);
    // Half of the actions are whole strokes, since few single events do anything.
    const bool stroke = bytes.flag();
    const int moves = stroke ? bytes.below(4) : 0;
    const auto mouse = [this, button](QEvent::Type type) {
        if (!widget)
            return;
        const QPointF place = somePlace(bytes, widget->size());
        if (type == QEvent::MouseButtonPress || type == QEvent::MouseButtonDblClick)
            held |= button;
        else if (type == QEvent::MouseButtonRelease)
            held &= ~Qt::MouseButtons(button);
        trace("mouse %d at %g,%g button %d", int(type), place.x(), place.y(), int(button));
        QMouseEvent event(type, place, place, place,
                          type == QEvent::MouseMove ? Qt::NoButton : button, held, Qt::NoModifier);
        QCoreApplication::sendEvent(widget, &event);
    };
    if (!stroke) {
        mouse(only);
        return;
    }
    mouse(QEvent::MouseButtonPress);
    for (int i = 0; i < moves; ++i)
        mouse(QEvent::MouseMove);
    mouse(QEvent::MouseButtonRelease);
}

void Host::useKeys()
{
    static const int keys[] = {Qt::Key_Space, Qt::Key_Space,  Qt::Key_Return, Qt::Key_Escape,
                               Qt::Key_Left,  Qt::Key_Down,   Qt::Key_Tab,    Qt::Key_Select,
                               Qt::Key_A,     Qt::Key_unknown};
    const int key = bytes.oneOf(keys);
    const std::uint8_t kind = bytes.byte();
    // Moving the focus in an exclusive group, the base class goes on with the button.
    const Keeper keeper(keepers);
    trace("key %x", unsigned(key));
    if (kind & 1) {
        QKeyEvent press(QEvent::KeyPress, key, Qt::NoModifier, QString(), kind & 4);
        QCoreApplication::sendEvent(widget, &press);
    }
    if (widget && kind & 2) {
        QKeyEvent release(QEvent::KeyRelease, key, Qt::NoModifier);
        QCoreApplication::sendEvent(widget, &release);
    }
}

void Host::changeChildren()
{
    // Qt's layouts go on with the widget after such signals.
    const Keeper keeper(keepers);
    auto *stack = qobject_cast<QStackedWidget *>(widget);
    const int kind = bytes.below(8);
    trace("children %d", kind);
    switch (kind) {
    case 0:
    case 1:
    case 2:
    case 3: {
        // A DeletingChild may delete it right away.
        QPointer<QWidget> child;
        if (kind == 0)
            child = new QLabel(someString(bytes));
        else
            child = kind == 1 ? new DeletingChild : new QWidget;
        if (stack)
            stack->insertWidget(bytes.below(6) - 1, child);
        else
            child->setParent(widget);
        const QSize size = someWidgetSize(bytes);
        // Some are much larger than any screen.
        if (child)
            child->resize(size.width() > 250 && size.width() < 256 ? 100 * size : size);
        if (child)
            child->setVisible(bytes.flag());
        break;
    }
    case 4:
    case 5: {
        const QObjectList children = widget->children();
        QObject *child = children.isEmpty() ? nullptr : children.at(bytes.byte() % children.size());
        if (child && child->isWidgetType())
            delete child;
        break;
    }
    case 6:
        if (!stack && !widget->layout())
            new QVBoxLayout(widget);
        else if (stack)
            stack->removeWidget(stack->widget(bytes.below(3)));
        break;
    default: {
        auto *action = new QAction(widget);
        widget->addAction(action);
        if (bytes.flag())
            widget->removeAction(action);
        break;
    }
    }
}

void Host::paint()
{
    const int kind = bytes.below(4);
    trace("paint %d", kind);
    switch (kind) {
    case 0:
        widget->repaint();
        break;
    case 1:
        widget->update();
        break;
    default:
        rendered(widget);
        break;
    }
}

void Host::deliver()
{
    // What was deleted later is then deleted now.
    if (keepers > 0)
        return;
    const int kind = bytes.below(3);
    trace("deliver %d", kind);
    switch (kind) {
    case 0:
        QCoreApplication::sendPostedEvents();
        break;
    case 1:
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        break;
    default:
        QCoreApplication::processEvents();
        break;
    }
}

void Host::changeSurroundings()
{
    static const char *const styleSheets[] = {"", "* { border: 3px solid red }",
                                              "* { padding: 10px; font-size: 30px }", "* {"};
    const int kind = bytes.below(10);
    trace("surroundings %d", kind);
    const Keeper keeper(keepers);
    QWidget *target = bytes.flag() && window ? window.data() : widget.data();
    switch (kind) {
    case 0:
        target->setEnabled(bytes.flag());
        break;
    case 1:
        target->setFont(someFont(bytes));
        break;
    case 2:
        target->setPalette(somePalette(bytes));
        break;
    case 3: {
        static QStyle *const styles[] = {
            QStyleFactory::create(QStringLiteral("Fusion")),
            QStyleFactory::create(QStringLiteral("Windows")),
        };
        target->setStyle(bytes.flag() ? styles[bytes.below(2)] : nullptr);
        break;
    }
    case 4:
        target->setStyleSheet(QString::fromLatin1(bytes.oneOf(styleSheets)));
        break;
    case 5:
        target->setLayoutDirection(bytes.flag() ? Qt::RightToLeft : Qt::LeftToRight);
        break;
    case 6:
        target->setVisible(bytes.flag());
        break;
    case 7:
        widget->setFocusPolicy(Qt::StrongFocus);
        if (bytes.flag())
            widget->setFocus();
        else
            widget->clearFocus();
        break;
    case 8:
        widget->setContentsMargins(someInt(bytes) % 500, 0, bytes.byte(), bytes.byte());
        break;
    default:
        widget->setObjectName(someString(bytes));
        break;
    }
}

void Host::changeParent()
{
    // Qt cannot move a widget from a slot that its own move calls.
    if (parentChanges > 0)
        return;
    // Nor from one that its hiding calls, and a window without a size hides: a press ends then.
    if (depth > 0 && widget->isWindow() && widget->size().isEmpty())
        return;
    const Keeper keeper(keepers);
    const Keeper move(parentChanges);
    const bool inside = bytes.flag();
    wasWindow = wasWindow || !inside;
    trace("parent %d", inside);
    widget->setParent(inside ? window.data() : nullptr);
    if (bytes.flag())
        widget->show();
}

void Host::passTime()
{
    static const int times[] = {0, 1, 16, 500, 1000, 2000, 100000};
    const int msecs = bytes.oneOf(times);
    // A started animation takes part from the next round of the event loop.
    if (keepers == 0)
        QCoreApplication::processEvents();
    trace("%d ms pass", msecs);
    driver.step(msecs);
}

void Host::changeState()
{
    const std::uint8_t alarm = bytes.byte();
    const std::uint8_t element = bytes.byte();
    // The first states are those of the tables.
    const elemDesc_t state{alarm < 192 ? std::uint8_t(alarm % 7) : alarm,
                           element < 192 ? std::uint8_t(element % 9) : element};
    if (auto *metro = dynamic_cast<MetroStyle *>(widget.data())) {
        trace("state %d %d", int(state.alarmSt), int(state.elemSt));
        metro->setState(state);
    }
}

void Host::destroy()
{
    if (keepers > 0)
        return;
    const int kind = bytes.below(4);
    trace("destroy %d", kind);
    switch (kind) {
    case 0:
        delete widget;
        break;
    case 1:
        widget->deleteLater();
        break;
    case 2:
        // Slots meanwhile add nothing to the window.
        if (widget->window() == window)
            delete std::exchange(window, nullptr);
        break;
    default:
        delete widget;
        if (depth == 0)
            build();
        break;
    }
}

void Host::addSibling()
{
    trace("sibling");
    if (!window || window->children().size() > 4)
        return;
    QWidget *sibling = subject.make(window);
    sibling->move(100, 100);
    sibling->setVisible(bytes.flag());
}

bool Host::showsAllOnTheScreen() const
{
    // These store some things for the next paint, whenever that comes.
    if (qobject_cast<SimpleSlideSwitch *>(widget) || qobject_cast<RotateStackedWidget *>(widget))
        return false;
    const QWidget *top = widget->window();
    const QWindow *surface = top->windowHandle();
    if (paintedAside || !widget->isVisible() || !surface || !surface->isExposed())
        return false;
    // The offscreen platform cannot make a window a child again.
    if (wasWindow && !widget->isWindow())
        return false;
    for (const QWidget *part = widget; part; part = part->parentWidget()) {
        if (!part->updatesEnabled())
            return false;
    }
    // A background that can be seen through lies over what was there before.
    return top->palette().color(QPalette::Window).alpha() == 255 &&
           top->width() <= windowSize.width() && top->height() <= windowSize.height();
}

int Host::busyRounds()
{
    constexpr int rounds = 40;
    constexpr int lastRounds = 10;
    int busy = 0;
    for (int round = 0; round < rounds && widget; ++round) {
        paints = 0;
        QCoreApplication::processEvents();
        QCoreApplication::sendPostedEvents();
        if (paints == 0)
            return 0;
        if (round >= rounds - lastRounds)
            ++busy;
    }
    return busy == lastRounds ? busy : 0;
}

void Host::settle()
{
    // Before anything else repaints it.
    if (widget && busyRounds() == 0 && widget && showsAllOnTheScreen()) {
        QWidget *const top = widget->window();
        const QImage screen = screenOf(top);
        if (repaintedScreenOf(top) != screen)
            complain(subject.name.constData(),
                     "shows something else on the screen than painted from scratch");
    }
    if (!widget)
        return;
    if (auto *button = qobject_cast<QAbstractButton *>(widget)) {
        button->setAutoRepeat(false);
        button->setDown(false);
    }
    if (busyRounds() > 0)
        complain(subject.name.constData(), "repaints for ever");
    if (!widget || widget->width() > 600 || widget->height() > 600)
        return;
    rendered(widget);
    if (!widget)
        return;
    const QImage first = rendered(widget);
    if (widget && rendered(widget) != first)
        complain(subject.name.constData(), "shows two images of one state");
}
