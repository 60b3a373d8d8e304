// SPDX-License-Identifier: LicenseRef-all-rights-reserved

#include "testmain.h"
#include "widgetcatalogue.h"
#include "widgetprobe.h"

#include <aerobutton.h>
#include <metroStyle.h>

#include <memory>

namespace {

/// Changes what the style base stores, which posts an update request; false without a style base.
bool restyle(QWidget *widget)
{
    if (auto *aero = dynamic_cast<AeroStyle *>(widget))
        aero->setRoundness(aero->getRoundness() + 1);
    else if (auto *metro = dynamic_cast<MetroStyle *>(widget))
        metro->setState({4, 5});
    else
        return false;
    return true;
}

} // namespace

/// Widgets that are windows themselves: Qt sends its own update requests to those.
class WindowsTest : public WidgetTest
{
    Q_OBJECT

private Q_SLOTS:
    void becomesIdleAfterAnUpdateRequest_data();
    void becomesIdleAfterAnUpdateRequest();
    void hiddenWindowShowsTheLastChange();
};

void WindowsTest::becomesIdleAfterAnUpdateRequest_data()
{
    QTest::addColumn<QString>("name");
    for (const WidgetDescription &description : widgetCatalogue()) {
        const std::unique_ptr<QWidget> widget(description.create(nullptr));
        if (restyle(widget.get()))
            QTest::newRow(description.className) << QString::fromLatin1(description.className);
    }
}

void WindowsTest::becomesIdleAfterAnUpdateRequest()
{
    QFETCH(QString, name);
    const std::unique_ptr<QWidget> window(findWidget(name)->create(nullptr));
    window->show();
    deliverAll();
    deliverAll();

    EventCounter events(window.get());
    QVERIFY(restyle(window.get()));
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
