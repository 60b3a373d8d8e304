// SPDX-License-Identifier: LicenseRef-all-rights-reserved

#include "icons.h"
#include "testmain.h"
#include "widgetprobe.h"

#include <metrobatticon.h>
#include <metrocirclerate.h>
#include <metronavdrawer.h>
#include <metrostatusbar.h>
#include <metrosysicon.h>
#include <metrotabicon.h>
#include <simpleslideswitch.h>
#include <slideswitch.h>
#include <transpbutton.h>

#include <QtWidgets/QDockWidget>
#include <QtWidgets/QFormLayout>
#include <QtWidgets/QGraphicsProxyWidget>
#include <QtWidgets/QGraphicsView>
#include <QtWidgets/QGridLayout>
#include <QtWidgets/QListWidget>
#include <QtWidgets/QMainWindow>
#include <QtWidgets/QMdiArea>
#include <QtWidgets/QMdiSubWindow>
#include <QtWidgets/QScrollArea>
#include <QtWidgets/QSplitter>
#include <QtWidgets/QStackedWidget>
#include <QtWidgets/QStatusBar>
#include <QtWidgets/QTableWidget>
#include <QtWidgets/QToolBar>
#include <QtWidgets/QToolBox>
#include <QtWidgets/QVBoxLayout>

#include <functional>
#include <memory>
#include <vector>

namespace {

/// More events than a change may cost; a fight over the size costs tens of thousands, or the stack.
constexpr int manyEvents = 200;

/// A class of widgets that size themselves.
struct Kind
{
    const char *name;
    QWidget *(*make)();
    /// Changes what the widget's own size depends on, by step 0, 1, 2, …
    void (*change)(QWidget *widget, int step);
    /// The size that the widget gives itself where nothing else decides; invalid if the last size
    /// from the container may stay.
    QSize (*ownSize)(const QWidget *widget);
};

template <typename Widget>
const Widget *as(const QWidget *widget)
{
    return static_cast<const Widget *>(widget);
}

template <typename Widget>
Widget *as(QWidget *widget)
{
    return static_cast<Widget *>(widget);
}

QSize noSize(const QWidget *)
{
    return {};
}

QSize closedDrawer(const QWidget *drawer)
{
    return as<MetroNavdrawer>(drawer)->getImageTab().size() + QSize(12, 24);
}

QPixmap image(int step)
{
    return plainPixmap(QSize(40 + 30 * step, 20 + 10 * step), Qt::red);
}

const std::vector<Kind> &kinds()
{
    static const std::vector<Kind> all = {
        {"MetroSysIcon", [] { return static_cast<QWidget *>(new MetroSysIcon); },
         [](QWidget *widget, int step) {
             as<MetroSysIcon>(widget)->setBorder(5 + 20 * step);
             as<MetroSysIcon>(widget)->setIcon(QIcon(image(step)));
         },
         [](const QWidget *widget) {
             const int border = 2 * as<MetroSysIcon>(widget)->getBorder();
             return as<MetroSysIcon>(widget)->iconSize() + QSize(border, border);
         }},
        {"MetroBattIcon", [] { return static_cast<QWidget *>(new MetroBattIcon); },
         [](QWidget *widget, int step) { as<MetroBattIcon>(widget)->setIcon(QIcon(image(step))); },
         [](const QWidget *) { return QSize(72, 72); }},
        {"MetroStatusbar", [] { return static_cast<QWidget *>(new MetroStatusbar); },
         [](QWidget *widget, int step) {
             as<MetroStatusbar>(widget)->setBackground(image(step));
             widget->resize(1, 1);
         },
         [](const QWidget *widget) { return as<MetroStatusbar>(widget)->getBackground().size(); }},
        {"MetroCirclerate", [] { return static_cast<QWidget *>(new MetroCirclerate); },
         [](QWidget *widget, int step) {
             as<MetroCirclerate>(widget)->setRadius(20 + 30 * step);
             as<MetroCirclerate>(widget)->setArcSize(100 + 50 * step);
             as<MetroCirclerate>(widget)->setMinAngle(90 + 30 * step);
         },
         noSize},
        {"MetroNavdrawer, closed",
         [] {
             auto *drawer = new MetroNavdrawer;
             drawer->setState(MetroNavdrawer::close);
             return static_cast<QWidget *>(drawer);
         },
         [](QWidget *widget, int step) {
             as<MetroNavdrawer>(widget)->setImageTab(image(step));
             widget->resize(1, 1);
         },
         closedDrawer},
        {"MetroNavdrawer, open", [] { return static_cast<QWidget *>(new MetroNavdrawer); },
         [](QWidget *widget, int step) {
             as<MetroNavdrawer>(widget)->setImageTab(image(3 * step));
             widget->resize(1, 1);
             as<MetroNavdrawer>(widget)->setState(MetroNavdrawer::open);
         },
         noSize},
        {"SlideSwitch", [] { return static_cast<QWidget *>(new SlideSwitch); },
         [](QWidget *widget, int step) {
             as<SlideSwitch>(widget)->setIconSize(QSize(60 + 50 * step, 30));
             widget->resize(1, 1);
         },
         [](const QWidget *widget) { return as<SlideSwitch>(widget)->iconSize(); }},
        {"SimpleSlideSwitch", [] { return static_cast<QWidget *>(new SimpleSlideSwitch); },
         [](QWidget *widget, int step) {
             as<SimpleSlideSwitch>(widget)->setUncheckedImg(image(step));
         },
         [](const QWidget *widget) { return as<SimpleSlideSwitch>(widget)->iconSize(); }},
        {"SimpleSlideSwitch, freed", [] { return static_cast<QWidget *>(new SimpleSlideSwitch); },
         [](QWidget *widget, int step) {
             widget->setMinimumSize(0, 0);
             widget->setMaximumSize(QWIDGETSIZE_MAX, QWIDGETSIZE_MAX);
             as<SimpleSlideSwitch>(widget)->setIconSize(QSize(60 + 50 * step, 30));
             widget->resize(1, 1);
         },
         [](const QWidget *widget) { return as<SimpleSlideSwitch>(widget)->iconSize(); }},
        {"TranspButton", [] { return static_cast<QWidget *>(new TranspButton); },
         [](QWidget *widget, int step) {
             as<TranspButton>(widget)->setIcon(QIcon(image(step)));
             as<TranspButton>(widget)->setIconSize(QSize(40 + 300 * step, 40 + 300 * step));
         },
         noSize},
        {"MetroTabicon", [] { return static_cast<QWidget *>(new MetroTabicon); },
         [](QWidget *widget, int step) {
             as<MetroTabicon>(widget)->setIcon(QIcon(image(step)));
             as<MetroTabicon>(widget)->setIconSize(QSize(40 + 300 * step, 40 + 300 * step));
         },
         noSize},
    };
    return all;
}

/// A container that Qt has. @p put makes it and puts the widget into it.
struct Container
{
    const char *name;
    QWidget *(*put)(QWidget *widget);
    /// Whether the container answers each resize of the widget with the size that it wants.
    bool enforcesTheSize;
};

template <typename Layout>
QWidget *inLayout(QWidget *widget)
{
    auto *page = new QWidget;
    auto *layout = new Layout(page);
    layout->addWidget(widget);
    return page;
}

QWidget *inFormLayout(QWidget *widget)
{
    auto *page = new QWidget;
    auto *layout = new QFormLayout(page);
    layout->addRow(QStringLiteral("Field"), widget);
    return page;
}

QWidget *inPlainScrollArea(QWidget *widget)
{
    auto *area = new QScrollArea;
    area->setWidget(widget);
    return area;
}

QWidget *inResizableScrollArea(QWidget *widget)
{
    auto *area = new QScrollArea;
    area->setWidgetResizable(true);
    area->setWidget(widget);
    return area;
}

QWidget *inMdiArea(QWidget *widget)
{
    auto *area = new QMdiArea;
    area->addSubWindow(widget);
    return area;
}

QWidget *maximisedInMdiArea(QWidget *widget)
{
    auto *area = new QMdiArea;
    area->addSubWindow(widget)->setWindowState(Qt::WindowMaximized);
    return area;
}

QWidget *inDock(QWidget *widget)
{
    auto *window = new QMainWindow;
    window->setCentralWidget(new QWidget);
    auto *dock = new QDockWidget;
    dock->setWidget(widget);
    window->addDockWidget(Qt::LeftDockWidgetArea, dock);
    return window;
}

QWidget *asCentralWidget(QWidget *widget)
{
    auto *window = new QMainWindow;
    window->setCentralWidget(widget);
    return window;
}

QWidget *inToolBar(QWidget *widget)
{
    auto *window = new QMainWindow;
    window->addToolBar(QStringLiteral("Bar"))->addWidget(widget);
    return window;
}

QWidget *inStatusBar(QWidget *widget)
{
    auto *window = new QMainWindow;
    window->statusBar()->addWidget(widget, 1);
    return window;
}

QWidget *inTab(QWidget *widget)
{
    auto *tabs = new QTabWidget;
    tabs->addTab(widget, QStringLiteral("Tab"));
    return tabs;
}

QWidget *inToolBox(QWidget *widget)
{
    auto *box = new QToolBox;
    box->addItem(widget, QStringLiteral("Item"));
    return box;
}

QWidget *inStack(QWidget *widget)
{
    auto *stack = new QStackedWidget;
    stack->addWidget(widget);
    return stack;
}

QWidget *inSplitter(QWidget *widget)
{
    auto *splitter = new QSplitter;
    splitter->addWidget(new QWidget);
    splitter->addWidget(widget);
    return splitter;
}

QWidget *inTable(QWidget *widget)
{
    auto *table = new QTableWidget(2, 2);
    table->setCellWidget(0, 1, widget);
    return table;
}

QWidget *inList(QWidget *widget)
{
    auto *list = new QListWidget;
    auto *item = new QListWidgetItem(list);
    item->setSizeHint(QSize(90, 60));
    list->setItemWidget(item, widget);
    return list;
}

QWidget *inGraphicsProxy(QWidget *widget)
{
    auto *view = new QGraphicsView;
    auto *scene = new QGraphicsScene(view);
    scene->addWidget(widget);
    view->setScene(scene);
    return view;
}

constexpr Container containers[] = {
    {"box layout", inLayout<QVBoxLayout>, false},
    {"grid layout", inLayout<QGridLayout>, false},
    {"form layout", inFormLayout, false},
    {"scroll area", inPlainScrollArea, false},
    {"resizable scroll area", inResizableScrollArea, true},
    {"MDI area", inMdiArea, false},
    {"maximised in an MDI area", maximisedInMdiArea, false},
    {"dock", inDock, false},
    {"central widget", asCentralWidget, false},
    {"tool bar", inToolBar, false},
    {"status bar", inStatusBar, false},
    {"tab", inTab, false},
    {"tool box", inToolBox, true},
    {"stack", inStack, false},
    {"splitter", inSplitter, false},
    {"table", inTable, false},
    {"list", inList, false},
    {"graphics proxy", inGraphicsProxy, false},
};

/// The size that a container of @p hostSize gives to a widget that leaves it alone, with the size
/// policy and the limits of @p like.
QSize sizeOfAPlainWidget(const Container &container, QSize hostSize, const QWidget *like)
{
    auto *plain = new QWidget;
    plain->setSizePolicy(like->sizePolicy());
    plain->setMinimumSize(like->minimumSize());
    plain->setMaximumSize(like->maximumSize());
    QWidget window;
    QWidget *const host = container.put(plain);
    host->setParent(&window);
    window.show();
    host->show();
    host->resize(hostSize);
    deliverAll();
    return plain->size();
}

/// What the events of a widget amount to.
int cost(const EventCounter &events)
{
    return events.count(QEvent::Resize) + events.count(QEvent::Paint);
}

} // namespace

/// The widgets that answer a resize with a resize of their own, in containers that set a size.
class ContainersTest : public WidgetTest
{
    Q_OBJECT

private Q_SLOTS:
    void sizeSettles_data();
    void sizeSettles();
    void windowKeepsItsSize_data();
    void windowKeepsItsSize();

private:
    void addStates();
    /// The platform for tests without a display warns of every window that has limits.
    QStringList otherWarnings();
};

QStringList ContainersTest::otherWarnings()
{
    QStringList warnings = takeWarnings();
    warnings.removeAll(QStringLiteral("This plugin does not support propagateSizeHints()"));
    return warnings;
}

void ContainersTest::sizeSettles_data()
{
    QTest::addColumn<int>("kind");
    QTest::addColumn<int>("container");
    for (std::size_t kind = 0; kind < kinds().size(); ++kind) {
        for (std::size_t container = 0; container < std::size(containers); ++container) {
            QTest::addRow("%s, %s", kinds()[kind].name, containers[container].name)
                << int(kind) << int(container);
        }
    }
}

void ContainersTest::sizeSettles()
{
    QFETCH(int, kind);
    QFETCH(int, container);
    const Kind &tested = kinds()[std::size_t(kind)];
    const Container &place = containers[container];
    QWidget *const widget = tested.make();
    EventCounter events(widget);
    // Inside another window, which has no size hints of its own.
    QWidget window;
    window.resize(1000, 700);
    QWidget *const host = place.put(widget);
    host->setParent(&window);

    const auto settles = [&](const char *after) {
        deliverAll();
        const int spent = cost(events);
        events.reset();
        deliverAll();
        const int later = cost(events);
        events.reset();
        if (spent > manyEvents || later > 0)
            qWarning("%d and then %d events after %s", spent, later, after);
    };
    // The size that the widget should have now.
    const auto expectedSize = [&] {
        if (place.enforcesTheSize)
            return sizeOfAPlainWidget(place, host->size(), widget);
        const QSize own = tested.ownSize(widget);
        return own.isValid() ? own : widget->size();
    };

    host->resize(400, 300);
    window.show();
    host->show();
    settles("showing");
    for (const QSize size : {QSize(500, 350), QSize(200, 150), QSize(900, 600)}) {
        host->resize(size);
        settles("a resize of the container");
        QCOMPARE(widget->size(), expectedSize());
    }
    for (int step = 0; step < 3; ++step) {
        tested.change(widget, step);
        settles("a change of the widget");
        widget->resize(33 + step, 77);
        settles("a resize of the widget");
        if (!place.enforcesTheSize)
            QCOMPARE(widget->size(), expectedSize());
        host->resize(400 + 50 * step, 300);
        settles("a resize of the container");
        QCOMPARE(widget->size(), expectedSize());
    }
    widget->setEnabled(false);
    settles("disabling");
    host->hide();
    host->resize(350, 250);
    host->show();
    settles("showing again");
    if (place.enforcesTheSize) {
        // Some widgets have no height left there.
        for (const ErrorLine &line : takeErrorLines())
            QCOMPARE(line.message, QStringLiteral("Nel controllo  Image e' NULL"));
    }
    QCOMPARE(otherWarnings(), QStringList());
}

void ContainersTest::addStates()
{
    QTest::addColumn<int>("kind");
    QTest::addColumn<int>("state");
    for (std::size_t kind = 0; kind < kinds().size(); ++kind) {
        QTest::addRow("%s, maximised", kinds()[kind].name) << int(kind) << int(Qt::WindowMaximized);
        QTest::addRow("%s, full screen", kinds()[kind].name)
            << int(kind) << int(Qt::WindowFullScreen);
    }
}

void ContainersTest::windowKeepsItsSize_data()
{
    addStates();
}

void ContainersTest::windowKeepsItsSize()
{
    QFETCH(int, kind);
    QFETCH(int, state);
    const Kind &tested = kinds()[std::size_t(kind)];
    const std::unique_ptr<QWidget> widget(tested.make());
    EventCounter events(widget.get());
    // What a window manager does is over when a window of its own kind is through it as well.
    const auto settle = [&] {
        deliverAll();
        QWidget other;
        other.show();
        QVERIFY(QTest::qWaitForWindowExposed(&other));
        deliverAll();
    };
    const auto settles = [&](const char *after) {
        settle();
        const int spent = cost(events);
        events.reset();
        settle();
        // The other window may lie over this one.
        const int later = events.count(QEvent::Resize);
        events.reset();
        if (spent > manyEvents || later > 0)
            qWarning("%d and then %d events after %s", spent, later, after);
    };

    widget->show();
    QVERIFY(QTest::qWaitForWindowExposed(widget.get()));
    settles("showing");
    const QSize normal = widget->size();
    widget->setWindowState(Qt::WindowState(state));
    QTRY_VERIFY(widget->size() != normal);
    settles("the new state");
    const QSize whole = widget->size();
    QVERIFY(whole.width() > 400 && whole.height() > 300);
    for (int step = 0; step < 2; ++step) {
        tested.change(widget.get(), step);
        settles("a change");
        widget->setEnabled(step == 1);
        settles("disabling");
    }
    widget->setWindowState(Qt::WindowNoState);
    settles("the normal state");
    const QSize own = tested.ownSize(widget.get());
    widget->resize(91, 93);
    settles("a resize");
    if (own.isValid())
        QTRY_COMPARE(widget->size(), own);
    QCOMPARE(otherWarnings(), QStringList());
}

KIV_TEST_MAIN(ContainersTest)

#include "tst_containers.moc"
