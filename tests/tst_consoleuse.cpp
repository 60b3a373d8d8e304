#include "consolewindow.h"
#include "feed/simulatorfeed.h"

#include "testmain.h"
#include "widgetprobe.h"

#include <aeroswitch.h>
#include <metronavdrawer.h>
#include <metrotabicon.h>
#include <rotatestackedwidget.h>

#include <QtGui/QScreen>
#include <QtGui/QWindow>

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
    touch(find<AeroSwitch>("Bypass"));
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
    key(Qt::Key_Space);
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
