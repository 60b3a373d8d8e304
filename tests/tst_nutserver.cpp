// SPDX-License-Identifier: LicenseRef-all-rights-reserved

#include "nutserver.h"

#include "nutfeed.h"
#include "snapshots.h"
#include "testmain.h"
#include "widgetprobe.h"

namespace {

/// What the dummy UPS says in the tests, with a status and a load of the test's choice.
QByteArray variables(const QByteArray &status, const QByteArray &load,
                     const QByteArray &more = QByteArray())
{
    return "ups.status: " + status + "\nups.load: " + load +
           "\n"
           "ups.mfr: Maker \\\"A\\\"\n"
           "ups.model: Model 7\n"
           "ups.realpower.nominal: 2700\n"
           "battery.charge: 95.5\n"
           "battery.charge.low: 20\n"
           "battery.runtime: 1200\n"
           "battery.voltage: 26.8\n"
           "battery.voltage.nominal: 24\n"
           "input.voltage: 231.4\n"
           "input.voltage.nominal: 230\n"
           "input.transfer.low: 170\n"
           "input.transfer.high: 270\n"
           "output.voltage: 230.0\n" +
           more;
}

/// A running feed of the UPS at an address, with all that it told.
struct Follower
{
    explicit Follower(const QString &address)
        : feed(*NutAddress::parse(address, &error))
        , log(&feed)
    {
        feed.start();
    }

    QString error;
    NutFeed feed;
    SnapshotLog log;
};

const ElementState on = {AlarmState::None, OperatingState::On};

} // namespace

#define VERIFY_SERVER(step) QVERIFY2(server.step, qPrintable(server.problem()))

class TestNutServer : public WidgetTest
{
    Q_OBJECT

private Q_SLOTS:
    void followsStatusAndValues();
    void writtenTwiceWithinASecond();
    void driverHaltedAndContinued();
    void driverKilledAndRestarted();
    void serverKilledAndRestarted();
    void unknownUps();
};

void TestNutServer::followsStatusAndValues()
{
    NutServer server;
    VERIFY_SERVER(writeVariables(variables("OL CHRG", "42.5")));
    VERIFY_SERVER(start());
    Follower follower(server.address());
    const SnapshotLog &log = follower.log;

    QTRY_COMPARE(log.last().system, on);
    const Snapshot first = log.last();
    QCOMPARE(first.name, QStringLiteral("demo"));
    QCOMPARE(first.identity.manufacturer, QStringLiteral("Maker \"A\""));
    QCOMPARE(first.identity.model, QStringLiteral("Model 7"));
    QCOMPARE(first.status,
             (QStringList{QStringLiteral("On line"), QStringLiteral("Battery charging")}));
    QVERIFY(first.alarms.isEmpty());
    QCOMPARE(first.element(Element::Battery), on);
    QCOMPARE(first.value(Quantity::Load), std::optional<double>(42.5));
    QCOMPARE(first.value(Quantity::BatteryCharge), std::optional<double>(95.5));
    QCOMPARE(first.value(Quantity::BatteryRuntime), std::optional<double>(1200.0));
    QCOMPARE(first.value(Quantity::InputVoltage), std::optional<double>(231.4));
    QCOMPARE(first.measure(Quantity::InputVoltage).minimum, std::optional<double>(170.0));
    QCOMPARE(first.measure(Quantity::InputVoltage).maximum, std::optional<double>(270.0));
    QCOMPARE(first.measure(Quantity::BatteryVoltage).nominal, std::optional<double>(24.0));
    QCOMPARE(first.measure(Quantity::BatteryCharge).low, std::optional<double>(20.0));
    QVERIFY(!first.value(Quantity::OutputCurrent));
    QVERIFY(!first.value(Quantity::Temperature));

    // On battery, overloaded, with the load beyond its range.
    VERIFY_SERVER(writeVariables(variables("OB DISCHRG OVER", "131")));
    QTRY_COMPARE(log.last().system.operating, OperatingState::OnBattery);
    QTRY_COMPARE(log.last().value(Quantity::Load), std::optional<double>(131.0));
    QTRY_COMPARE(log.last().element(Element::Load),
                 (ElementState{AlarmState::Anomaly, OperatingState::OnBattery}));

    VERIFY_SERVER(writeVariables(variables("OL BYPASS", "60")));
    QTRY_COMPARE(log.last().system, (ElementState{AlarmState::Warning, OperatingState::OnBypass}));

    VERIFY_SERVER(
        writeVariables(variables("OL", "60", "ups.alarm: Fan failure!\nups.temperature: 41\n")));
    QTRY_COMPARE(log.last().system, (ElementState{AlarmState::Fault, OperatingState::On}));
    QTRY_COMPARE(log.last().alarms, QStringList{QStringLiteral("Fan failure!")});
    QTRY_COMPARE(log.last().value(Quantity::Temperature), std::optional<double>(41.0));

    // A variable that the UPS no longer gives is no data, not its last value.
    VERIFY_SERVER(
        writeVariables(variables("OL", "60", "ups.alarm: \"\"\nups.temperature: \"\"\n")));
    QTRY_COMPARE(log.last().system, on);
    QTRY_VERIFY(!log.last().value(Quantity::Temperature));
    for (int i = 1; i < log.count(); ++i)
        QVERIFY2(!log.at(i).isLost(), qPrintable(log.at(i).reason));
}

void TestNutServer::writtenTwiceWithinASecond()
{
    NutServer server;
    VERIFY_SERVER(writeVariables(variables("OL", "1")));
    VERIFY_SERVER(start());
    Follower follower(server.address());
    const SnapshotLog &log = follower.log;
    QTRY_COMPARE(log.last().system, on);
    // Each value is written as soon as the one before it shows, often within the same second.
    for (int load = 2; load < 8; ++load) {
        VERIFY_SERVER(writeVariables(variables("OL", QByteArray::number(load))));
        QTRY_COMPARE(log.last().value(Quantity::Load), std::optional<double>(load));
        VERIFY_SERVER(writeVariables(variables("OL", QByteArray::number(load + 100))));
        VERIFY_SERVER(writeVariables(variables("OL", QByteArray::number(load + 200))));
        QTRY_COMPARE(log.last().value(Quantity::Load), std::optional<double>(load + 200));
    }
}

void TestNutServer::driverHaltedAndContinued()
{
    NutServer server(3);
    VERIFY_SERVER(writeVariables(variables("OL", "42")));
    VERIFY_SERVER(start());
    Follower follower(server.address());
    const SnapshotLog &log = follower.log;
    QTRY_COMPARE(log.last().system, on);

    VERIFY_SERVER(haltDriver());
    QTRY_VERIFY(log.last().isLost());
    QCOMPARE(log.last().reason, QStringLiteral("the UPS's driver gives no fresh data"));
    QVERIFY(!log.last().value(Quantity::Load));
    QCOMPARE(log.last().system, ElementState());

    VERIFY_SERVER(continueDriver());
    QTRY_COMPARE(log.last().system, on);
    QCOMPARE(log.last().value(Quantity::Load), std::optional<double>(42.0));
}

void TestNutServer::driverKilledAndRestarted()
{
    NutServer server;
    VERIFY_SERVER(writeVariables(variables("OL", "42")));
    VERIFY_SERVER(start());
    Follower follower(server.address());
    const SnapshotLog &log = follower.log;
    QTRY_COMPARE(log.last().system, on);

    VERIFY_SERVER(killDriver());
    QTRY_VERIFY(log.last().isLost());
    QCOMPARE(log.last().reason, QStringLiteral("the UPS's driver is not running"));
    QVERIFY(!log.last().value(Quantity::Load));

    VERIFY_SERVER(writeVariables(variables("OB", "43")));
    VERIFY_SERVER(startDriver());
    QTRY_COMPARE(log.last().value(Quantity::Load), std::optional<double>(43.0));
    QTRY_COMPARE(log.last().system.operating, OperatingState::OnBattery);
    // While the driver waited for its first data, nothing was known, and no value stood.
    for (int i = 0; i < log.count(); ++i) {
        if (log.at(i).system.operating == OperatingState::Unknown)
            QVERIFY(!log.at(i).value(Quantity::Load));
    }
}

void TestNutServer::serverKilledAndRestarted()
{
    NutServer server;
    VERIFY_SERVER(writeVariables(variables("OL", "42")));
    VERIFY_SERVER(start());
    Follower follower(server.address());
    const SnapshotLog &log = follower.log;
    QTRY_COMPARE(log.last().system, on);

    VERIFY_SERVER(killServer());
    QTRY_VERIFY(log.last().isLost());
    QVERIFY(!log.last().value(Quantity::Load));
    QTRY_VERIFY(log.last().reason.startsWith(QStringLiteral("connection refused (")));

    VERIFY_SERVER(writeVariables(variables("OL", "44")));
    VERIFY_SERVER(startServer());
    QTRY_COMPARE(log.last().value(Quantity::Load), std::optional<double>(44.0));
    QTRY_COMPARE(log.last().system, on);
}

void TestNutServer::unknownUps()
{
    NutServer server;
    VERIFY_SERVER(writeVariables(variables("OL", "42")));
    VERIFY_SERVER(start());
    Follower follower(QStringLiteral("other@127.0.0.1:%1").arg(server.port()));
    const SnapshotLog &log = follower.log;
    QTRY_COMPARE(log.last().reason, QStringLiteral("the server knows no such UPS"));
    QVERIFY(log.last().isLost());
    QCOMPARE(log.last().name, QStringLiteral("other"));
}

KIV_TEST_MAIN(TestNutServer)
#include "tst_nutserver.moc"
