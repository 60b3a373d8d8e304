// SPDX-License-Identifier: LicenseRef-all-rights-reserved

#include "nutmapping.h"
#include "plaintext.h"

#include "snapshots.h"
#include "testmain.h"
#include "widgetprobe.h"

#include <QtCore/QLocale>

#include <algorithm>
#include <cmath>

namespace {

/// An element's two bytes.
using State = QPair<int, int>;

struct Expected
{
    State system, rectifier, inverter, battery, bypass, load;
};

const State unknown{1, 0};

State stateOf(const ElementState &state)
{
    return {int(state.alarm), int(state.operating)};
}

Snapshot withStatus(const QString &status)
{
    return snapshotOf(QStringLiteral("demo"), {{QStringLiteral("ups.status"), status}});
}

Snapshot withVariable(const QString &name, const QString &value)
{
    return snapshotOf(QStringLiteral("demo"), {{name, value}});
}

QList<QStringList> permutations(QStringList tokens)
{
    QList<QStringList> all;
    std::sort(tokens.begin(), tokens.end());
    do
        all += tokens;
    while (std::next_permutation(tokens.begin(), tokens.end()));
    return all;
}

} // namespace

Q_DECLARE_METATYPE(Expected)

class TestUpsFeedMapping : public WidgetTest
{
    Q_OBJECT

private Q_SLOTS:
    void states_data();
    void states();
    void words_data();
    void words();
    void noAlarmOfTheUpsIsOk_data();
    void noAlarmOfTheUpsIsOk();
    void everyAlarmIsShown();
    void waiting();
    void noStatus();
    void alarmTextWithoutToken();
    void emptyAlarmText();
    void bypassIsKnownByItsVoltage();
    void numbers_data();
    void numbers();
    void numbersInAnyLocale();
    void values_data();
    void values();
    void nothingIsInvented();
    void ranges_data();
    void ranges();
    void beyondTheRange();
    void nonsenseRange();
    void names();
    void textsAreOneLine();
    void identity();
    void allVariables();
    void longTexts_data();
    void longTexts();
    void phases_data();
    void phases();
    void unknownRuntime();
    void beeper_data();
    void beeper();
};

void TestUpsFeedMapping::states_data()
{
    QTest::addColumn<QString>("status");
    QTest::addColumn<Expected>("expected");
    const auto row = [](const char *status, const Expected &expected) {
        QTest::newRow(status) << status << expected;
    };
    //                    system   rectifier inverter battery  bypass   load
    row("OL", {{1, 5}, {1, 5}, {1, 5}, {1, 1}, unknown, {1, 5}});
    row("OL CHRG", {{1, 5}, {1, 5}, {1, 5}, {1, 5}, unknown, {1, 5}});
    row("OL DISCHRG", {{1, 5}, {1, 5}, {1, 5}, {1, 6}, unknown, {1, 5}});
    row("OL CAL DISCHRG", {{1, 3}, {1, 5}, {1, 5}, {1, 3}, unknown, {1, 5}});
    row("OB", {{2, 6}, {2, 1}, {1, 6}, {1, 6}, unknown, {1, 6}});
    row("OB DISCHRG", {{2, 6}, {2, 1}, {1, 6}, {1, 6}, unknown, {1, 6}});
    row("OB LB DISCHRG", {{4, 6}, {2, 1}, {1, 6}, {4, 6}, unknown, {2, 6}});
    row("OB CAL", {{2, 6}, {2, 1}, {1, 6}, {1, 6}, unknown, {1, 6}});
    row("OL LB CHRG", {{3, 5}, {1, 5}, {1, 5}, {3, 5}, unknown, {1, 5}});
    row("OL HB", {{2, 5}, {1, 5}, {1, 5}, {2, 1}, unknown, {1, 5}});
    row("OL RB", {{3, 5}, {1, 5}, {1, 5}, {3, 1}, unknown, {1, 5}});
    row("OL BYPASS", {{2, 7}, {1, 5}, {2, 1}, {1, 1}, {1, 7}, {2, 7}});
    row("BYPASS", {{2, 7}, unknown, {2, 1}, unknown, {1, 7}, {2, 7}});
    row("OL OFF BYPASS", {{2, 7}, {1, 5}, {2, 1}, {1, 1}, {1, 7}, {2, 7}});
    row("OL OFF", {{1, 1}, {1, 5}, {1, 1}, {1, 1}, unknown, {1, 1}});
    row("OFF", {{1, 1}, unknown, {1, 1}, unknown, unknown, {1, 1}});
    row("OL OVER", {{3, 5}, {1, 5}, {2, 5}, {1, 1}, unknown, {3, 5}});
    row("OL TRIM", {{2, 5}, {2, 5}, {1, 5}, {1, 1}, unknown, {1, 5}});
    row("OL BOOST", {{2, 5}, {2, 5}, {1, 5}, {1, 1}, unknown, {1, 5}});
    row("OL ALARM", {{4, 5}, {1, 5}, {1, 5}, {1, 1}, unknown, {1, 5}});
    row("OL ALARM RB", {{4, 5}, {1, 5}, {1, 5}, {3, 1}, unknown, {1, 5}});
    row("OB LB FSD", {{4, 6}, {2, 1}, {1, 6}, {4, 6}, unknown, {4, 6}});
    row("OL FSD", {{4, 5}, {1, 5}, {1, 5}, {1, 1}, unknown, {4, 5}});
    // An alarm without a word on what the UPS is doing.
    row("ALARM", {{4, 5}, unknown, unknown, unknown, unknown, unknown});
    row("RB", {{3, 5}, unknown, unknown, {3, 5}, unknown, unknown});
    row("LB", {{3, 5}, unknown, unknown, {3, 5}, unknown, unknown});
    row("CHRG", {unknown, unknown, unknown, {1, 5}, unknown, unknown});
    row("DISCHRG", {unknown, unknown, unknown, {1, 6}, unknown, unknown});
    // Whole tokens only, as they are written.
    row("OL SOMETHING", {{1, 5}, {1, 5}, {1, 5}, {1, 1}, unknown, {1, 5}});
    row("SOMETHING", {unknown, unknown, unknown, unknown, unknown, unknown});
    row("OLD OBSERVED", {unknown, unknown, unknown, unknown, unknown, unknown});
    row("ol", {unknown, unknown, unknown, unknown, unknown, unknown});
    row("OL  OL ", {{1, 5}, {1, 5}, {1, 5}, {1, 1}, unknown, {1, 5}});
    row("", {unknown, unknown, unknown, unknown, unknown, unknown});
}

void TestUpsFeedMapping::states()
{
    QFETCH(QString, status);
    QFETCH(Expected, expected);
    for (const QStringList &tokens : permutations(status.split(QLatin1Char(' ')))) {
        const Snapshot snapshot = withStatus(tokens.join(QLatin1Char(' ')));
        QVERIFY(!snapshot.isLost());
        QCOMPARE(stateOf(snapshot.system), expected.system);
        QCOMPARE(stateOf(snapshot.element(Element::Rectifier)), expected.rectifier);
        QCOMPARE(stateOf(snapshot.element(Element::Inverter)), expected.inverter);
        QCOMPARE(stateOf(snapshot.element(Element::Battery)), expected.battery);
        QCOMPARE(stateOf(snapshot.element(Element::Bypass)), expected.bypass);
        QCOMPARE(stateOf(snapshot.element(Element::Load)), expected.load);
    }
}

void TestUpsFeedMapping::words_data()
{
    QTest::addColumn<QString>("status");
    QTest::addColumn<QString>("words");
    QTest::addColumn<QString>("alarms");
    const auto row = [](const char *status, const char *words, const char *alarms) {
        QTest::newRow(status) << status << words << alarms;
    };
    row("OL", "On line", "");
    row("CHRG OL", "On line|Battery charging", "");
    row("OB DISCHRG LB", "Battery discharging|On battery|Battery low", "On battery|Battery low");
    row("CAL", "Calibration", "");
    row("OFF", "Output off", "");
    row("BYPASS", "On bypass", "On bypass");
    row("TRIM", "Input voltage high", "Input voltage high");
    row("BOOST", "Input voltage low", "Input voltage low");
    row("HB", "Battery high", "Battery high");
    row("RB", "Replace the battery", "Replace the battery");
    row("OVER", "Overload", "Overload");
    row("ALARM OL", "On line|Alarm", "Alarm");
    row("FSD", "Forced shutdown", "Forced shutdown");
    row("OL ECO XYZ", "On line|ECO|XYZ", "");
}

void TestUpsFeedMapping::words()
{
    QFETCH(QString, status);
    QFETCH(QString, words);
    QFETCH(QString, alarms);
    const Snapshot snapshot = withStatus(status);
    QCOMPARE(snapshot.status.join(QLatin1Char('|')), words);
    QCOMPARE(snapshot.alarms.join(QLatin1Char('|')), alarms);
}

void TestUpsFeedMapping::noAlarmOfTheUpsIsOk_data()
{
    QTest::addColumn<QString>("token");
    for (const char *token :
         {"ALARM", "OB", "LB", "HB", "RB", "BYPASS", "OVER", "TRIM", "BOOST", "FSD"})
        QTest::newRow(token) << token;
}

/// Whatever else the UPS says, such a token never leaves it looking well.
void TestUpsFeedMapping::noAlarmOfTheUpsIsOk()
{
    QFETCH(QString, token);
    for (const char *other : {"OL", "OB", "CHRG", "DISCHRG", "CAL", "OFF", "OL CHRG", "XYZ"}) {
        for (const QString &status : {token + QLatin1Char(' ') + QLatin1String(other),
                                      QLatin1String(other) + QLatin1Char(' ') + token}) {
            const Snapshot snapshot = withStatus(status);
            QVERIFY2(snapshot.system.alarm >= AlarmState::Warning, qPrintable(status));
            QVERIFY2(!snapshot.alarms.isEmpty(), qPrintable(status));
        }
    }
}

/// The tiles show an alarm only with an operating state, and the whole no better than its elements.
void TestUpsFeedMapping::everyAlarmIsShown()
{
    const QStringList tokens =
        QStringLiteral("OL OB LB HB RB CHRG DISCHRG BYPASS CAL OFF OVER TRIM BOOST FSD ALARM")
            .split(QLatin1Char(' '));
    const int count = 1 << tokens.size();
    for (int choice = 0; choice < count; ++choice) {
        QStringList chosen;
        for (int i = 0; i < tokens.size(); ++i) {
            if (choice & (1 << i))
                chosen += tokens.at(i);
        }
        const Snapshot snapshot = withStatus(chosen.join(QLatin1Char(' ')));
        for (const ElementState &state : snapshot.elements) {
            QVERIFY(state.alarm == AlarmState::None || state.operating != OperatingState::Unknown);
            QVERIFY(snapshot.system.alarm >= state.alarm);
        }
        QVERIFY(snapshot.system.alarm == AlarmState::None ||
                snapshot.system.operating != OperatingState::Unknown);
    }
}

void TestUpsFeedMapping::waiting()
{
    const Snapshot snapshot =
        snapshotOf(QStringLiteral("demo"), {{QStringLiteral("ups.status"), QStringLiteral("WAIT")},
                                            {QStringLiteral("ups.load"), QStringLiteral("50")}});
    QVERIFY(!snapshot.isLost());
    QCOMPARE(stateOf(snapshot.system), unknown);
    for (const ElementState &state : snapshot.elements)
        QCOMPARE(stateOf(state), unknown);
    for (const Measure &measure : snapshot.measures)
        QVERIFY(!measure.value);
    QCOMPARE(snapshot.status, QStringList{QStringLiteral("Waiting for the first data")});
}

void TestUpsFeedMapping::noStatus()
{
    const Snapshot snapshot = withVariable(QStringLiteral("ups.load"), QStringLiteral("12.5"));
    QVERIFY(!snapshot.isLost());
    QCOMPARE(stateOf(snapshot.system), unknown);
    for (const ElementState &state : snapshot.elements)
        QCOMPARE(stateOf(state), unknown);
    QCOMPARE(snapshot.value(Quantity::Load), std::optional<double>(12.5));
    QVERIFY(snapshot.status.isEmpty());
}

void TestUpsFeedMapping::alarmTextWithoutToken()
{
    const Snapshot snapshot = snapshotOf(
        QStringLiteral("demo"), {{QStringLiteral("ups.status"), QStringLiteral("OL RB")},
                                 {QStringLiteral("ups.alarm"), QStringLiteral("Fan failure!")}});
    QCOMPARE(stateOf(snapshot.system), (State{4, 5}));
    QCOMPARE(snapshot.alarms,
             (QStringList{QStringLiteral("Fan failure!"), QStringLiteral("Replace the battery")}));
}

void TestUpsFeedMapping::emptyAlarmText()
{
    const Snapshot snapshot =
        snapshotOf(QStringLiteral("demo"), {{QStringLiteral("ups.status"), QStringLiteral("OL")},
                                            {QStringLiteral("ups.alarm"), QStringLiteral(" ")}});
    QCOMPARE(stateOf(snapshot.system), (State{1, 5}));
    QVERIFY(snapshot.alarms.isEmpty());
}

void TestUpsFeedMapping::bypassIsKnownByItsVoltage()
{
    NutVariables variables{{QStringLiteral("ups.status"), QStringLiteral("OL")},
                           {QStringLiteral("input.bypass.voltage"), QStringLiteral("229.5")}};
    QCOMPARE(stateOf(snapshotOf(QString(), variables).element(Element::Bypass)), (State{1, 1}));
    variables.insert(QStringLiteral("ups.status"), QStringLiteral("OL BYPASS"));
    QCOMPARE(stateOf(snapshotOf(QString(), variables).element(Element::Bypass)), (State{1, 7}));
    variables.remove(QStringLiteral("ups.status"));
    QCOMPARE(stateOf(snapshotOf(QString(), variables).element(Element::Bypass)), unknown);
}

void TestUpsFeedMapping::numbers_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<bool>("isNumber");
    QTest::addColumn<double>("number");
    const auto number = [](const char *text, double value) {
        QTest::newRow(text) << text << true << value;
    };
    const auto none = [](const char *text) {
        QTest::addRow("not \"%s\"", text) << QString::fromUtf8(text) << false << 0.0;
    };
    number("60", 60.0);
    number("1200.20", 1200.20);
    number("0", 0.0);
    number("-12.5", -12.5);
    number("+5", 5.0);
    number("1e3", 1000.0);
    number(" 7 ", 7.0);
    number("007", 7.0);
    none("");
    none(" ");
    none("nan");
    none("NaN");
    none("inf");
    none("-infinity");
    none("1e999");
    none("12,5");
    none("1,200");
    none("60 %");
    none("60V");
    none("0x10");
    none("--5");
    none("N/A");
    none("1 2");
    none("٦");
}

void TestUpsFeedMapping::numbers()
{
    QFETCH(QString, text);
    QFETCH(bool, isNumber);
    QFETCH(double, number);
    QCOMPARE(bool(nutNumber(text)), isNumber);
    if (isNumber)
        QCOMPARE(*nutNumber(text), number);
    QCOMPARE(withVariable(QStringLiteral("ups.load"), text).value(Quantity::Load), nutNumber(text));
}

void TestUpsFeedMapping::numbersInAnyLocale()
{
    const QLocale before;
    QLocale::setDefault(QLocale(QLocale::Italian));
    const std::optional<double> point = nutNumber(QStringLiteral("1200.20"));
    const std::optional<double> comma = nutNumber(QStringLiteral("1200,20"));
    QLocale::setDefault(before);
    QCOMPARE(point, std::optional<double>(1200.20));
    QVERIFY(!comma);
}

void TestUpsFeedMapping::values_data()
{
    QTest::addColumn<QString>("variable");
    QTest::addColumn<int>("quantity");
    const auto row = [](const char *variable, Quantity quantity) {
        QTest::newRow(variable) << variable << int(quantity);
    };
    row("ups.load", Quantity::Load);
    row("battery.charge", Quantity::BatteryCharge);
    row("battery.voltage", Quantity::BatteryVoltage);
    row("battery.runtime", Quantity::BatteryRuntime);
    row("input.voltage", Quantity::InputVoltage);
    row("input.frequency", Quantity::InputFrequency);
    row("input.bypass.voltage", Quantity::BypassVoltage);
    row("input.bypass.frequency", Quantity::BypassFrequency);
    row("output.voltage", Quantity::OutputVoltage);
    row("output.frequency", Quantity::OutputFrequency);
    row("output.current", Quantity::OutputCurrent);
    row("ups.realpower", Quantity::OutputPower);
    row("ups.temperature", Quantity::Temperature);
}

void TestUpsFeedMapping::values()
{
    QFETCH(QString, variable);
    QFETCH(int, quantity);
    const Snapshot snapshot = withVariable(variable, QStringLiteral("47.25"));
    for (int i = 0; i < quantityCount; ++i) {
        const std::optional<double> expected =
            i == quantity ? std::optional<double>(47.25) : std::nullopt;
        QVERIFY2(snapshot.value(Quantity(i)) == expected, qPrintable(nameOf(Quantity(i))));
    }
    QCOMPARE(withVariable(variable, QStringLiteral("0")).value(Quantity(quantity)),
             std::optional<double>(0.0));
    QVERIFY(!withVariable(variable, QStringLiteral("n/a")).value(Quantity(quantity)));
}

void TestUpsFeedMapping::nothingIsInvented()
{
    const Snapshot snapshot = withStatus(QStringLiteral("OL"));
    for (const Measure &measure : snapshot.measures)
        QVERIFY(!measure.value && !measure.nominal && !measure.low && !measure.high);
    // Only limits that are fixed: percentages go from 0 to 100.
    for (int i = 0; i < quantityCount; ++i) {
        const bool percent = unitOf(Quantity(i)) == QLatin1String("%");
        QCOMPARE(snapshot.measure(Quantity(i)).maximum,
                 percent ? std::optional<double>(100.0) : std::nullopt);
    }
    QVERIFY(!snapshot.beeperEnabled);
    QVERIFY(!snapshot.simulated);
    QVERIFY(snapshot.identity.manufacturer.isEmpty());
    QVERIFY(snapshot.identity.model.isEmpty());
}

void TestUpsFeedMapping::ranges_data()
{
    QTest::addColumn<int>("quantity");
    QTest::addColumn<QString>("variables"); // name=value, separated by spaces
    QTest::addColumn<QString>("range");     // minimum maximum nominal low high
    const auto row = [](const char *name, Quantity quantity, const char *variables,
                        const char *range) {
        QTest::newRow(name) << int(quantity) << variables << range;
    };
    row("load", Quantity::Load, "ups.load.high=90", "0 100 - - 90");
    row("charge", Quantity::BatteryCharge, "battery.charge.low=20 battery.charge.warning=50",
        "0 100 - 20 -");
    row("charge with a warning only", Quantity::BatteryCharge, "battery.charge.warning=50",
        "0 100 - 50 -");
    row("battery voltage", Quantity::BatteryVoltage,
        "battery.voltage.low=20.8 battery.voltage.high=26 battery.voltage.nominal=24",
        "20.8 26 24 - -");
    row("runtime", Quantity::BatteryRuntime, "battery.runtime.low=120", "0 - - 120 -");
    row("input by transfer", Quantity::InputVoltage,
        "input.transfer.low=170 input.transfer.high=270 input.voltage.nominal=230",
        "170 270 230 170 270");
    row("input by everything", Quantity::InputVoltage,
        "input.transfer.low=170 input.transfer.high=270 input.voltage.low.warning=200 "
        "input.voltage.low.critical=190 input.voltage.high.warning=250 "
        "input.voltage.high.critical=260",
        "170 270 - 200 250");
    row("input by critical", Quantity::InputVoltage,
        "input.voltage.low.critical=190 input.voltage.high.critical=260", "190 260 - 190 260");
    row("input by a broken number", Quantity::InputVoltage,
        "input.transfer.low=n/a input.voltage.low.warning=200", "200 - - 200 -");
    row("input frequency", Quantity::InputFrequency,
        "input.frequency.low=47 input.frequency.high=53 input.frequency.nominal=50",
        "47 53 50 - -");
    row("bypass voltage", Quantity::BypassVoltage, "input.bypass.voltage.nominal=230",
        "- - 230 - -");
    row("bypass frequency", Quantity::BypassFrequency, "input.bypass.frequency.nominal=60",
        "- - 60 - -");
    row("output voltage", Quantity::OutputVoltage, "output.voltage.nominal=230", "- - 230 - -");
    row("output frequency", Quantity::OutputFrequency, "output.frequency.nominal=50", "- - 50 - -");
    row("current", Quantity::OutputCurrent, "output.current.nominal=13", "0 13 13 - -");
    row("power", Quantity::OutputPower, "ups.realpower.nominal=2700", "0 2700 2700 - -");
}

void TestUpsFeedMapping::ranges()
{
    QFETCH(int, quantity);
    QFETCH(QString, variables);
    QFETCH(QString, range);
    NutVariables given;
    for (const QString &pair : variables.split(QLatin1Char(' ')))
        given.insert(pair.section(QLatin1Char('='), 0, 0), pair.section(QLatin1Char('='), 1));
    const Measure measure = snapshotOf(QString(), given).measure(Quantity(quantity));
    QStringList texts;
    for (const std::optional<double> &number :
         {measure.minimum, measure.maximum, measure.nominal, measure.low, measure.high})
        texts += number ? QString::number(*number) : QStringLiteral("-");
    QCOMPARE(texts.join(QLatin1Char(' ')), range);
    QVERIFY(!measure.value);
}

void TestUpsFeedMapping::beyondTheRange()
{
    QCOMPARE(withVariable(QStringLiteral("ups.load"), QStringLiteral("137")).value(Quantity::Load),
             std::optional<double>(137.0));
    QCOMPARE(withVariable(QStringLiteral("battery.charge"), QStringLiteral("-3"))
                 .value(Quantity::BatteryCharge),
             std::optional<double>(-3.0));
}

void TestUpsFeedMapping::nonsenseRange()
{
    for (const char *high : {"170", "100", "-1"}) {
        const Measure measure =
            snapshotOf(QString(),
                       {{QStringLiteral("input.transfer.low"), QStringLiteral("170")},
                        {QStringLiteral("input.transfer.high"), QString::fromLatin1(high)}})
                .measure(Quantity::InputVoltage);
        QVERIFY(!measure.minimum);
        QVERIFY(!measure.maximum);
    }
}

void TestUpsFeedMapping::names()
{
    NutVariables variables{{QStringLiteral("device.mfr"), QStringLiteral("Maker")},
                           {QStringLiteral("device.model"), QStringLiteral("Model 7")}};
    Snapshot snapshot = snapshotOf(QStringLiteral("demo"), variables);
    QCOMPARE(snapshot.name, QStringLiteral("demo"));
    QCOMPARE(snapshot.identity.manufacturer, QStringLiteral("Maker"));
    QCOMPARE(snapshot.identity.model, QStringLiteral("Model 7"));
    variables.insert(QStringLiteral("ups.mfr"), QStringLiteral("Another"));
    variables.insert(QStringLiteral("ups.model"), QStringLiteral("Model 8"));
    snapshot = snapshotOf(QStringLiteral("demo"), variables);
    QCOMPARE(snapshot.identity.manufacturer, QStringLiteral("Another"));
    QCOMPARE(snapshot.identity.model, QStringLiteral("Model 8"));
}

void TestUpsFeedMapping::textsAreOneLine()
{
    const Snapshot snapshot =
        withVariable(QStringLiteral("ups.model"), QString::fromUtf8(" A\nB\x1b[1m\x07 \xc2\x85"
                                                                    "C "));
    QCOMPARE(snapshot.identity.model, QStringLiteral("A B [1m C"));
}

void TestUpsFeedMapping::identity()
{
    const Identity identity =
        snapshotOf(QStringLiteral("demo"),
                   {{QStringLiteral("ups.serial"), QStringLiteral("S 1")},
                    {QStringLiteral("ups.firmware"), QStringLiteral("2.3\n")},
                    {QStringLiteral("battery.date"), QStringLiteral("05/17/24")},
                    {QStringLiteral("ups.power.nominal"), QStringLiteral("3000")},
                    {QStringLiteral("ups.realpower.nominal"), QStringLiteral("2700 W")}})
            .identity;
    QCOMPARE(identity.serial, QStringLiteral("S 1"));
    QCOMPARE(identity.firmware, QStringLiteral("2.3"));
    QCOMPARE(identity.batteryDate, QStringLiteral("05/17/24"));
    QCOMPARE(identity.nominalPower, std::optional<double>(3000.0));
    QVERIFY(!identity.nominalRealPower);
}

void TestUpsFeedMapping::allVariables()
{
    // Left-to-right and right-to-left marks could make one text look like another.
    const Snapshot snapshot = snapshotOf(
        QStringLiteral("demo"), {{QStringLiteral("ups.status"), QStringLiteral("OL")},
                                 {QStringLiteral("ups.id"), QString::fromUtf8("a\xe2\x80\xae"
                                                                              "b\xe2\x80\xa8"
                                                                              "c")},
                                 {QStringLiteral("driver.version"), QStringLiteral("2.8.0")}});
    const QHash<QString, QString> expected{
        {QStringLiteral("driver.version"), QStringLiteral("2.8.0")},
        {QStringLiteral("ups.id"), QStringLiteral("ab c")},
        {QStringLiteral("ups.status"), QStringLiteral("OL")}};
    QCOMPARE(snapshot.variables, expected);
}

void TestUpsFeedMapping::longTexts_data()
{
    QTest::addColumn<QString>("given");
    QTest::addColumn<QString>("shown");
    const auto row = [](const char *name, const char *given, const char *shown) {
        QTest::newRow(name) << QString::fromUtf8(given) << QString::fromUtf8(shown);
    };
    row("empty", "", "");
    row("short", "rack", "rack");
    row("as long", "rack 123", "rack 123");
    row("one more", "rack 1234", "rack 12…");
    row("what is not shown takes no room",
        "ra\xe2\x80\xae\xe2\x80\xae\xe2\x80\xae\xe2\x80\xae ck  12", "ra ck 12");
    row("half a character", "rack 1\xf0\x9f\x94\x8b\xf0\x9f\x94\x8b", "rack 1…");
    row("far more", "0123456789012345678901234567890123456789", "0123456…");
    row("far more that is not seen", "rack                                     1", "rack…");
}

/// A text that is cut says so, within its limit.
void TestUpsFeedMapping::longTexts()
{
    QFETCH(QString, given);
    QFETCH(QString, shown);
    constexpr int longest = 8;
    QCOMPARE(plainText(given, longest), shown);
    QVERIFY(shown.size() <= longest);
}

void TestUpsFeedMapping::phases_data()
{
    QTest::addColumn<QString>("variables");
    QTest::addColumn<int>("quantity");
    QTest::addColumn<QString>("phases"); // the worst first
    QTest::addColumn<QString>("value");  // with its phase
    const auto row = [](const char *name, Quantity quantity, const char *variables,
                        const char *phases, const char *value) {
        QTest::newRow(name) << variables << int(quantity) << phases << value;
    };
    row("none", Quantity::Load, "ups.load=40", "", "40");
    row("load", Quantity::Load, "ups.L1.load=30 ups.L2.load=80 ups.L3.load=50", "L2=80 L3=50 L1=30",
        "L2 80");
    row("load with its total", Quantity::Load, "ups.load=53 ups.L1.load=30 ups.L2.load=80",
        "L2=80 L1=30", "53");
    row("load by power", Quantity::Load, "output.L1.power.percent=12 output.L2.power.percent=11",
        "L1=12 L2=11", "L1 12");
    row("one broken", Quantity::Load, "ups.L1.load=n/a ups.L2.load=20", "L2=20", "L2 20");
    row("to neutral", Quantity::OutputVoltage,
        "output.L1-N.voltage=230 output.L2-N.voltage=214 output.L3-N.voltage=236 "
        "output.voltage.nominal=230",
        "L2=214 L3=236 L1=230", "L2 214");
    row("to neutral without nominal", Quantity::OutputVoltage,
        "output.L1-N.voltage=230 output.L2-N.voltage=231 output.L3-N.voltage=0",
        "L3=0 L2=231 L1=230", "L3 0");
    row("between phases", Quantity::InputVoltage,
        "input.L1-L2.voltage=400 input.L2-L3.voltage=371 input.L3-L1.voltage=402 "
        "input.voltage.nominal=400",
        "L2-L3=371 L3-L1=402 L1-L2=400", "L2-L3 371");
    row("to neutral rather than between", Quantity::InputVoltage,
        "input.L1-L2.voltage=400 input.L1-N.voltage=231 input.L2-N.voltage=229 "
        "input.voltage.nominal=400",
        "L2=229 L1=231", "L2 229");
    row("bypass", Quantity::BypassVoltage, "input.bypass.L1-N.voltage=228", "L1=228", "L1 228");
    row("current", Quantity::OutputCurrent, "output.L1.current=3 output.L3.current=9", "L3=9 L1=3",
        "L3 9");
    row("power is the sum", Quantity::OutputPower,
        "ups.L1.realpower=100 ups.L2.realpower=300 ups.L3.realpower=200", "L2=300 L3=200 L1=100",
        "600");
    row("no sum of a part", Quantity::OutputPower, "ups.L1.realpower=100 ups.L2.realpower=300",
        "L2=300 L1=100", "-");
    row("no fourth phase", Quantity::Load, "ups.L4.load=20 ups.L0.load=20", "", "-");
}

void TestUpsFeedMapping::phases()
{
    QFETCH(QString, variables);
    QFETCH(int, quantity);
    QFETCH(QString, phases);
    QFETCH(QString, value);
    NutVariables given;
    for (const QString &pair : variables.split(QLatin1Char(' ')))
        given.insert(pair.section(QLatin1Char('='), 0, 0), pair.section(QLatin1Char('='), 1));
    const Measure measure = snapshotOf(QString(), given).measure(Quantity(quantity));
    QStringList texts;
    for (const PhaseValue &phase : measure.phases)
        texts += QStringLiteral("%1=%2").arg(phase.name).arg(phase.value);
    QCOMPARE(texts.join(QLatin1Char(' ')), phases);
    const QString shown = measure.value ? QString::number(*measure.value) : QStringLiteral("-");
    QCOMPARE((measure.phase + QLatin1Char(' ') + shown).trimmed(), value);
    // The nominal value is of the kind that is shown.
    if (measure.nominal && measure.value)
        QVERIFY(std::abs(*measure.value - *measure.nominal) < 0.1 * *measure.nominal);
}

void TestUpsFeedMapping::unknownRuntime()
{
    const QString runtime = QStringLiteral("battery.runtime");
    QVERIFY(!withVariable(runtime, QStringLiteral("-1")).value(Quantity::BatteryRuntime));
    QCOMPARE(withVariable(runtime, QStringLiteral("0")).value(Quantity::BatteryRuntime),
             std::optional<double>(0.0));
}

void TestUpsFeedMapping::beeper_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<int>("state"); // -1 when not known
    QTest::newRow("enabled") << "enabled" << 1;
    QTest::newRow("disabled") << "disabled" << 0;
    QTest::newRow("muted") << "muted" << 0;
    QTest::newRow("empty") << "" << -1;
    QTest::newRow("other") << "perhaps" << -1;
}

void TestUpsFeedMapping::beeper()
{
    QFETCH(QString, text);
    QFETCH(int, state);
    const Snapshot snapshot = withVariable(QStringLiteral("ups.beeper.status"), text);
    QCOMPARE(snapshot.beeperEnabled ? int(*snapshot.beeperEnabled) : -1, state);
}

KIV_TEST_MAIN(TestUpsFeedMapping)
#include "tst_upsfeedmapping.moc"
