#include "testmain.h"
#include "widgetprobe.h"

#include <aerobutton.h>
#include <aerogroupbox.h>
#include <aerolinebar.h>
#include <aerostatusbar.h>
#include <aeroswitch.h>
#include <metrobatticon.h>
#include <metrocirclerate.h>
#include <metrolinerate.h>
#include <metronavdrawer.h>
#include <metroshelter.h>
#include <metrostatusbar.h>
#include <metrosysicon.h>
#include <metrotabicon.h>
#include <metroxbar.h>

#include <memory>
#include <type_traits>

using Maker = QWidget *(*)();
using Restyler = void (*)(QWidget *);
Q_DECLARE_METATYPE(Maker)
Q_DECLARE_METATYPE(Restyler)

namespace {

template <typename Widget>
QWidget *make()
{
    return new Widget;
}

/// Changes what the style base holds, which posts an update request.
template <typename Widget>
void restyle(QWidget *widget)
{
    auto *own = static_cast<Widget *>(widget);
    if constexpr (std::is_base_of_v<AeroStyle, Widget>)
        own->setRoundness(own->getRoundness() + 1);
    else
        own->MetroStyle::setState({4, 5});
}

} // namespace

/// Widgets that are windows themselves: Qt sends its own update requests to those.
class WindowsTest : public WidgetTest
{
    Q_OBJECT

private Q_SLOTS:
    void restsAfterAnUpdateRequest_data();
    void restsAfterAnUpdateRequest();
    void hiddenWindowShowsTheLastChange();
};

void WindowsTest::restsAfterAnUpdateRequest_data()
{
    QTest::addColumn<Maker>("maker");
    QTest::addColumn<Restyler>("restyler");
    const auto row = [](const char *name, Maker maker, Restyler restyler) {
        QTest::newRow(name) << maker << restyler;
    };
    row("AeroButton", make<AeroButton>, restyle<AeroButton>);
    row("AeroGroupbox", make<AeroGroupbox>, restyle<AeroGroupbox>);
    row("AeroLinebar", make<AeroLinebar>, restyle<AeroLinebar>);
    row("AeroStatusbar", make<AeroStatusbar>, restyle<AeroStatusbar>);
    row("AeroSwitch", make<AeroSwitch>, restyle<AeroSwitch>);
    row("MetroBattIcon", make<MetroBattIcon>, restyle<MetroBattIcon>);
    row("MetroCirclerate", make<MetroCirclerate>, restyle<MetroCirclerate>);
    row("MetroLinerate", make<MetroLinerate>, restyle<MetroLinerate>);
    row("MetroNavdrawer", make<MetroNavdrawer>, restyle<MetroNavdrawer>);
    row("MetroShelter", make<MetroShelter>, restyle<MetroShelter>);
    row("MetroStatusbar", make<MetroStatusbar>, restyle<MetroStatusbar>);
    row("MetroSysIcon", make<MetroSysIcon>, restyle<MetroSysIcon>);
    row("MetroTabicon", make<MetroTabicon>, restyle<MetroTabicon>);
    row("MetroXbar", make<MetroXbar>, restyle<MetroXbar>);
}

void WindowsTest::restsAfterAnUpdateRequest()
{
    QFETCH(Maker, maker);
    QFETCH(Restyler, restyler);
    const std::unique_ptr<QWidget> window(maker());
    window->show();
    deliverAll();
    deliverAll();

    EventCounter events(window.get());
    restyler(window.get());
    deliverAll();
    QVERIFY(events.count(QEvent::Paint) >= 1);
    events.reset();
    deliverAll();
    QCOMPARE(events.count(QEvent::UpdateRequest), 0);
    QCOMPARE(events.count(QEvent::Paint), 0);

    // An ordinary update still arrives afterwards.
    window->update();
    deliverAll();
    QCOMPARE(events.count(QEvent::Paint), 1);
}

void WindowsTest::hiddenWindowShowsTheLastChange()
{
    AeroButton window;
    window.show();
    deliverAll();
    window.hide();
    window.setColor(Qt::red);
    deliverAll();
    EventCounter events(&window);
    window.show();
    deliverAll();
    QVERIFY(events.count(QEvent::Paint) >= 1);
    events.reset();
    window.setUpdatesEnabled(false);
    window.setColor(Qt::blue);
    deliverAll();
    QCOMPARE(events.count(QEvent::Paint), 0);
    window.setUpdatesEnabled(true);
    deliverAll();
    QVERIFY(events.count(QEvent::Paint) >= 1);
    events.reset();
    window.update();
    deliverAll();
    QCOMPARE(events.count(QEvent::Paint), 1);
}

KIV_TEST_MAIN(WindowsTest)

#include "tst_windows.moc"
