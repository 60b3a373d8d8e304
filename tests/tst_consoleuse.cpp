// SPDX-License-Identifier: LicenseRef-all-rights-reserved

#include "consolewindow.h"
#include "feed/simulatorfeed.h"

#include "testmain.h"
#include "widgetprobe.h"

#include <aeroswitch.h>
#include <metronavdrawer.h>
#include <metrotabicon.h>
#include <rotatestackedwidget.h>
#include <simpleslideswitch.h>
#include <slideswitch.h>

#include <QtGui/QScreen>
#include <QtGui/QWindow>
#include <QtWidgets/QAbstractScrollArea>
#include <QtWidgets/QLabel>
#include <QtWidgets/QScrollBar>
#include <QtWidgets/QScroller>

namespace {

const QString longMessage(150, QLatin1Char('w'));

} // namespace

/// The pages as a user has them, through the window: by mouse, by keyboard and by touch. On a
/// display of its own it runs once more under a window manager.
class ConsoleUseTest : public WidgetTest
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup();
    void pagesByMouse();
    void pagesByKeyboard();
    void pagesByTouch();
    void switchByTouch();
    void switchByKeyboard();
    void drawerByTouch();
    void settingByTouchOfItsRow();
    void noticeTakesItsPresses_data();
    void noticeTakesItsPresses();
    void noticeGoes();
    void flickScrolls_data();
    void flickScrolls();
    void flickOverASwitchScrollsOnly();
    void fullScreenAndBack();

private:
    QPoint placeOf(const QWidget *widget) const
    {
        return widget->mapTo(window.get(), widget->rect().center());
    }
    template <typename W>
    W *find(const char *name) const
    {
        return window->findChild<W *>(QLatin1String(name));
    }
    int page() const
    {
        return find<RotateStackedWidget>("pages")->currentIndex();
    }
    void showPage(const QString &name)
    {
        window->showPage(int(window->pageNames().indexOf(name)));
    }
    void click(const QWidget *widget)
    {
        QTest::mouseClick(window->windowHandle(), Qt::LeftButton, Qt::NoModifier, placeOf(widget));
    }
    void touch(const QWidget *widget)
    {
        const QPoint place = placeOf(widget);
        QTest::touchEvent(window->windowHandle(), finger).press(0, place, window->windowHandle());
        QTest::touchEvent(window->windowHandle(), finger).release(0, place, window->windowHandle());
    }
    /// A finger that stays until @p done.
    template <typename Condition>
    void hold(const QWidget *widget, const Condition &done)
    {
        const QPoint place = placeOf(widget);
        QTest::touchEvent(window->windowHandle(), finger).press(0, place, window->windowHandle());
        QTRY_VERIFY(done());
        QTest::touchEvent(window->windowHandle(), finger).release(0, place, window->windowHandle());
    }
    /// A finger that goes from one place to another, and off.
    void drag(QPoint from, QPoint to)
    {
        QWindow *on = window->windowHandle();
        QTest::touchEvent(on, finger).press(0, from, on);
        constexpr int steps = 12;
        for (int i = 1; i <= steps; ++i) {
            // A gesture goes by the time between its events.
            QTest::qWait(10);
            QTest::touchEvent(on, finger).move(0, from + (to - from) * i / steps, on);
        }
        QTest::touchEvent(on, finger).release(0, to, on);
    }
    /// What scrolls on the present page, if anything.
    QAbstractScrollArea *scrolling() const
    {
        for (auto *area : find<RotateStackedWidget>("pages")
                              ->currentWidget()
                              ->parentWidget()
                              ->findChildren<QAbstractScrollArea *>()) {
            if (area->isVisible() && area->verticalScrollBar()->maximum() > 0)
                return area;
        }
        return nullptr;
    }
    void key(Qt::Key key, Qt::KeyboardModifiers modifiers = Qt::NoModifier)
    {
        QTest::keyClick(window->windowHandle(), key, modifiers);
    }

    SiteModel site;
    UpsModel *ups = site.add(QStringLiteral("simulator"));
    std::unique_ptr<SimulatorFeed> simulator;
    std::unique_ptr<ConsoleWindow> window;
    decltype(QTest::createTouchDevice()) finger = QTest::createTouchDevice();
};

void ConsoleUseTest::init()
{
    simulator = std::make_unique<SimulatorFeed>();
    ups->setFeed(simulator.get());
    window = std::make_unique<ConsoleWindow>(&site);
    window->show();
    QVERIFY(QTest::qWaitForWindowExposed(window.get()));
    window->activateWindow();
    QVERIFY(QTest::qWaitForWindowActive(window.get()));
    simulator->seekTo(Scenario::startOf(Scenario::Phase::Normal) + 10.0);
    deliverAll();
}

void ConsoleUseTest::cleanup()
{
    window.reset();
    simulator.reset();
}

void ConsoleUseTest::pagesByMouse()
{
    const auto tabs = window->findChildren<MetroTabicon *>();
    QVERIFY(tabs.size() >= 4);
    for (int i = int(tabs.size()) - 1; i >= 0; --i) {
        click(tabs.at(i));
        QTRY_COMPARE(page(), i);
        QVERIFY(tabs.at(i)->isChecked());
    }
}

void ConsoleUseTest::pagesByKeyboard()
{
    const int pages = int(window->pageNames().size());
    for (int i = pages - 1; i >= 0; --i) {
        key(Qt::Key(int(Qt::Key_1) + i), Qt::AltModifier);
        QTRY_COMPARE(page(), i);
    }
    // The arrow keys walk along the tabs.
    key(Qt::Key_Tab);
    for (int i = 0; i < 20 && !qobject_cast<MetroTabicon *>(QApplication::focusWidget()); ++i)
        key(Qt::Key_Tab);
    QVERIFY(qobject_cast<MetroTabicon *>(QApplication::focusWidget()));
    QVERIFY(find<QWidget>("focusFrame")->isVisible());
    key(Qt::Key_Down);
    QTRY_COMPARE(page(), 1);
}

void ConsoleUseTest::pagesByTouch()
{
    const auto tabs = window->findChildren<MetroTabicon *>();
    for (int i = int(tabs.size()) - 1; i >= 0; --i) {
        touch(tabs.at(i));
        QTRY_COMPARE(page(), i);
    }
}

void ConsoleUseTest::switchByTouch()
{
    touch(find<MetroTabicon>("Control"));
    QTRY_VERIFY(find<AeroSwitch>("Bypass")->isVisible());
    int given = 0;
    connect(ups, &UpsModel::commandGiven, window.get(), [&given] { ++given; });
    hold(find<AeroSwitch>("Bypass"), [&] { return given == 1; });
    simulator->advance(500);
    QTRY_COMPARE(ups->snapshot().system.operating, OperatingState::OnBypass);
    QTRY_VERIFY(find<AeroSwitch>("Bypass")->isChecked());
    QVERIFY(find<QWidget>("message")->isVisible());
}

void ConsoleUseTest::switchByKeyboard()
{
    key(Qt::Key_3, Qt::AltModifier);
    auto *control = find<AeroSwitch>("Run on battery");
    QTRY_VERIFY(control->isVisible());
    for (int i = 0; i < 40 && QApplication::focusWidget() != control; ++i)
        key(Qt::Key_Tab);
    QCOMPARE(QApplication::focusWidget(), control);
    QVERIFY(find<QWidget>("focusFrame")->isVisible());
    int given = 0;
    connect(ups, &UpsModel::commandGiven, window.get(), [&given] { ++given; });
    // A short press does nothing.
    key(Qt::Key_Space);
    QTest::keyPress(window->windowHandle(), Qt::Key_Space);
    QCOMPARE(given, 0);
    QTRY_COMPARE(given, 1);
    QTest::keyRelease(window->windowHandle(), Qt::Key_Space);
    simulator->advance(500);
    QTRY_COMPARE(ups->snapshot().system.operating, OperatingState::OnBattery);
}

void ConsoleUseTest::drawerByTouch()
{
    auto *drawer = find<MetroNavdrawer>("drawer");
    window->grab();
    touch(drawer);
    QTRY_COMPARE(drawer->getState(), MetroNavdrawer::open);
    key(Qt::Key_Escape);
    QTRY_COMPARE(drawer->getState(), MetroNavdrawer::close);
}

void ConsoleUseTest::noticeTakesItsPresses_data()
{
    QTest::addColumn<bool>("byTouch");
    QTest::newRow("mouse") << false;
    QTest::newRow("touch") << true;
}

/// A press on a message closes it, and reaches nothing below.
void ConsoleUseTest::noticeTakesItsPresses()
{
    QFETCH(bool, byTouch);
    showPage(QStringLiteral("settings"));
    deliverAll();
    auto *notice = find<QLabel>("notice");
    auto *button = find<SimpleSlideSwitch>("Page animation");
    QVERIFY(button && button->isVisible());
    int pressed = 0;
    connect(button, &QAbstractButton::toggled, window.get(), [&] { ++pressed; });
    const auto press = [&] {
        if (byTouch)
            touch(button);
        else
            click(button);
    };
    window->say(longMessage);
    QVERIFY(notice->isVisible());
    QCOMPARE(notice->cursor().shape(), Qt::PointingHandCursor);
    QVERIFY(!notice->accessibleDescription().isEmpty());
    // Wherever it is, here it is above a button.
    notice->move(notice->x(), placeOf(button).y() - notice->height() / 2);
    QVERIFY(notice->geometry().contains(placeOf(button)));
    press();
    QTRY_VERIFY(!notice->isVisible());
    QCOMPARE(pressed, 0);
    press();
    QTRY_COMPARE(pressed, 1);
}

/// By Esc, after what Esc closes otherwise; and by another page, except the end of a command.
void ConsoleUseTest::noticeGoes()
{
    const auto *notice = find<QLabel>("notice");
    auto *drawer = find<MetroNavdrawer>("drawer");
    window->grab();
    touch(drawer);
    QTRY_COMPARE(drawer->getState(), MetroNavdrawer::open);
    window->say(longMessage);
    QVERIFY(notice->isVisible());
    key(Qt::Key_Escape);
    QTRY_COMPARE(drawer->getState(), MetroNavdrawer::close);
    QVERIFY(notice->isVisible());
    key(Qt::Key_Escape);
    QTRY_VERIFY(!notice->isVisible());
    window->say(longMessage);
    showPage(QStringLiteral("events"));
    QVERIFY(!notice->isVisible());
    window->say(longMessage, 15000, Severity::Critical);
    showPage(QStringLiteral("control"));
    QVERIFY(notice->isVisible());
    // What fits into the strip covers nothing.
    window->say(QStringLiteral("short"));
    showPage(QStringLiteral("events"));
    QVERIFY(find<QLabel>("message")->isVisible());
}

/// The images of such a switch are lower than a finger needs.
void ConsoleUseTest::settingByTouchOfItsRow()
{
    const auto settings = window->pageNames().indexOf(QLatin1String("settings"));
    key(Qt::Key(int(Qt::Key_1) + int(settings)), Qt::AltModifier);
    auto *control = find<SimpleSlideSwitch>("Page animation");
    QTRY_VERIFY(control->isVisible());
    auto *row = find<QWidget>("Page animation row");
    QVERIFY(row->height() >= 44);
    const bool before = control->isChecked();
    const auto touchAt = [&](QPoint place) {
        QTest::touchEvent(window->windowHandle(), finger).press(0, place, window->windowHandle());
        QTest::touchEvent(window->windowHandle(), finger).release(0, place, window->windowHandle());
    };
    // At its name, at the very edge, and at the switch itself.
    touchAt(row->mapTo(window.get(), QPoint(20, row->height() / 2)));
    QTRY_COMPARE(control->isChecked(), !before);
    touchAt(row->mapTo(window.get(), QPoint(row->width() / 2, row->height() - 2)));
    QTRY_COMPARE(control->isChecked(), before);
    touch(control);
    QTRY_COMPARE(control->isChecked(), !before);
    // Off it nothing happens.
    QTest::touchEvent(window->windowHandle(), finger)
        .press(0, placeOf(row), window->windowHandle());
    QTest::touchEvent(window->windowHandle(), finger).move(0, QPoint(2, 2), window->windowHandle());
    QTest::touchEvent(window->windowHandle(), finger)
        .release(0, QPoint(2, 2), window->windowHandle());
    QCOMPARE(control->isChecked(), !before);
}

void ConsoleUseTest::flickScrolls_data()
{
    QTest::addColumn<QString>("page");
    for (const char *page : {"power", "control", "information", "settings"})
        QTest::newRow(page) << QString::fromLatin1(page);
}

void ConsoleUseTest::flickScrolls()
{
    QFETCH(QString, page);
    window->resize(480, 320);
    QTRY_COMPARE(window->size(), QSize(480, 320));
    showPage(page);
    deliverAll();
    QAbstractScrollArea *area = scrolling();
    QVERIFY(area);
    QCOMPARE(area->verticalScrollBar()->value(), 0);
    const QPoint from = area->viewport()->mapTo(
        window.get(), QPoint(area->viewport()->width() / 2, area->viewport()->height() - 12));
    drag(from, from - QPoint(0, area->viewport()->height() - 24));
    QTRY_VERIFY(area->verticalScrollBar()->value() > 0);
}

/// What a finger scrolls over is not switched.
void ConsoleUseTest::flickOverASwitchScrollsOnly()
{
    window->resize(480, 320);
    QTRY_COMPARE(window->size(), QSize(480, 320));
    showPage(QStringLiteral("control"));
    deliverAll();
    QAbstractScrollArea *area = scrolling();
    QVERIFY(area);
    auto *control = find<AeroSwitch>("Run on battery");
    int given = 0;
    const auto counted = connect(ups, &UpsModel::commandGiven, this, [&given] { ++given; });
    const QPoint from = placeOf(control);
    drag(from, from - QPoint(0, 60));
    QTRY_VERIFY(area->verticalScrollBar()->value() > 0);
    QCOMPARE(given, 0);
    QVERIFY(!control->isDown());
    // A touch afterwards does.
    QTRY_COMPARE(QScroller::scroller(area->viewport())->state(), QScroller::Inactive);
    area->verticalScrollBar()->setValue(0);
    hold(control, [&] { return given == 1; });
    // The settings alike.
    showPage(QStringLiteral("settings"));
    deliverAll();
    area = scrolling();
    QVERIFY(area);
    auto *setting = find<SimpleSlideSwitch>("Beeper");
    const bool before = setting->isChecked();
    const QPoint row = placeOf(find<QWidget>("Beeper row"));
    const QImage untouched = find<QWidget>("Beeper row")->grab().toImage();
    drag(row, row - QPoint(0, 60));
    QTRY_VERIFY(area->verticalScrollBar()->value() > 0);
    QCOMPARE(setting->isChecked(), before);
    // Nor does it look pressed any more; where the finger was last does not matter.
    find<QWidget>("Beeper row")->setAttribute(Qt::WA_UnderMouse, false);
    setting->setAttribute(Qt::WA_UnderMouse, false);
    QCOMPARE(find<QWidget>("Beeper row")->grab().toImage(), untouched);
    // And the one that switches the UPS off.
    QTRY_COMPARE(QScroller::scroller(area->viewport())->state(), QScroller::Inactive);
    area->verticalScrollBar()->setValue(0);
    const QPoint off = placeOf(find<SlideSwitch>("mainSwitch"));
    drag(off, off - QPoint(0, 50));
    QTRY_VERIFY(area->verticalScrollBar()->value() > 0);
    disconnect(counted);
    QCOMPARE(given, 1);
}

void ConsoleUseTest::fullScreenAndBack()
{
    const QSize before = window->size();
    key(Qt::Key_F11);
    QTRY_COMPARE(window->size(), window->screen()->size());
    QTRY_COMPARE(find<QWidget>("pages")->geometry().bottomRight(), window->rect().bottomRight());
    // The drawer hangs at the new edge.
    QTRY_COMPARE(find<QWidget>("drawer")->geometry().right(), window->rect().right());
    key(Qt::Key_F11);
    QTRY_COMPARE(window->size(), before);
    QTRY_COMPARE(find<QWidget>("pages")->geometry().bottomRight(), window->rect().bottomRight());
}

KIV_TEST_MAIN(ConsoleUseTest)

#include "tst_consoleuse.moc"
