// SPDX-License-Identifier: LicenseRef-all-rights-reserved

#include "nutmapping.h"
#include "scale.h"
#include "values.h"

#include "testmain.h"
#include "widgetprobe.h"

#include <cmath>
#include <limits>

namespace {

Snapshot ups(const NutVariables &more)
{
    NutVariables variables = more;
    if (!variables.contains(QStringLiteral("ups.status")))
        variables.insert(QStringLiteral("ups.status"), QStringLiteral("OL"));
    return snapshotOf(QStringLiteral("demo"), variables);
}

/// Variables from "name=value name=value".
NutVariables parse(const char *text)
{
    NutVariables variables;
    const QStringList pairs = QString::fromLatin1(text).split(QLatin1Char(' '), Qt::SkipEmptyParts);
    for (const QString &pair : pairs)
        variables.insert(pair.section(QLatin1Char('='), 0, 0), pair.section(QLatin1Char('='), 1));
    return variables;
}

QString arcsText(const Scale &scale)
{
    QStringList texts;
    for (const ScaleArc &arc : scale.limitArcs())
        texts += QStringLiteral("%1-%2").arg(arc.from).arg(arc.to);
    return texts.join(QLatin1Char(' '));
}

} // namespace

class ValuesTest : public WidgetTest
{
    Q_OBJECT

private Q_SLOTS:
    void texts_data();
    void texts();
    void timesLeft_data();
    void timesLeft();
    void everyTextIsWhole();
    void missingIsNotZero();
    void scales_data();
    void scales();
    void guessesAreNoMarks();
    void scalesStay();
    void everyScaleIsSound();
    void changesAloneMakeTheSameScales();
};

void ValuesTest::texts_data()
{
    QTest::addColumn<int>("quantity");
    QTest::addColumn<double>("value");
    QTest::addColumn<QString>("text");
    const auto row = [](Quantity quantity, double value, const char *text) {
        QTest::addRow("%s %g", qPrintable(nameOf(quantity)), value)
            << int(quantity) << value << QString::fromUtf8(text);
    };
    row(Quantity::Load, 42.4, "42 %");
    row(Quantity::Load, 300, "300 %");
    row(Quantity::Load, -5, "-5 %");
    row(Quantity::Load, -0.2, "0 %");
    row(Quantity::Load, 1e6, "> 999 %");
    row(Quantity::InputVoltage, 0, "0 V");
    row(Quantity::InputVoltage, 231.4, "231 V");
    row(Quantity::InputVoltage, 9999, "9999 V");
    row(Quantity::InputVoltage, 99999999999.0, "> 9999 V");
    row(Quantity::InputVoltage, -99999, "< -9999 V");
    row(Quantity::BatteryVoltage, 26.84, "26.8 V");
    row(Quantity::BatteryVoltage, -0.04, "0.0 V");
    row(Quantity::BatteryVoltage, 384.5, "384.5 V");
    row(Quantity::OutputFrequency, 400.2, "400.2 Hz");
    row(Quantity::OutputCurrent, 1e300, "> 9999 A");
    row(Quantity::OutputPower, 2700, "2700 W");
    row(Quantity::OutputPower, 12540, "12.5 kW");
    row(Quantity::OutputPower, 1e12, "> 9999 kW");
    row(Quantity::Temperature, -12.3, "-12.3 °C");
    row(Quantity::Load, std::numeric_limits<double>::quiet_NaN(), "no data");
    row(Quantity::Load, std::numeric_limits<double>::infinity(), "no data");
}

void ValuesTest::texts()
{
    QFETCH(int, quantity);
    QFETCH(double, value);
    QFETCH(QString, text);
    QCOMPARE(Values::text(Quantity(quantity), value), text);
    QCOMPARE(Values::text(Quantity(quantity), std::nullopt), QStringLiteral("no data"));
}

void ValuesTest::timesLeft_data()
{
    QTest::addColumn<double>("seconds");
    QTest::addColumn<QString>("text");
    QTest::newRow("none") << 0.0 << "0:00";
    QTest::newRow("negative zero") << -0.0 << "0:00";
    QTest::newRow("a part of a second") << 0.9 << "0:00";
    QTest::newRow("seconds") << 9.0 << "0:09";
    QTest::newRow("minutes and seconds") << 130.0 << "2:10";
    QTest::newRow("just below five minutes") << 299.9 << "4:59";
    QTest::newRow("five minutes") << 300.0 << "5 min";
    QTest::newRow("not rounded up") << 3599.0 << "59 min";
    QTest::newRow("an hour") << 3600.0 << "1 h 00 min";
    QTest::newRow("hours") << 11100.0 << "3 h 05 min";
    QTest::newRow("the longest") << 359999.0 << "99 h 59 min";
    QTest::newRow("absurd") << 1e12 << "> 99 h";
    QTest::newRow("-1 for unknown") << -1.0 << "no data";
    QTest::newRow("not a number") << std::numeric_limits<double>::quiet_NaN() << "no data";
}

void ValuesTest::timesLeft()
{
    QFETCH(double, seconds);
    QFETCH(QString, text);
    QCOMPARE(Values::timeLeft(seconds), text);
    QCOMPARE(Values::text(Quantity::BatteryRuntime, seconds), text);
}

/// Whatever is measured: a short text, with its unit, without "-0" and without exponent.
void ValuesTest::everyTextIsWhole()
{
    const double magnitudes[] = {0,   1e-300, 1e-9, 0.004, 0.049, 0.05,  0.5, 1,    9.95, 99.9,
                                 255, 1e3,    9999, 1e4,   1e6,   9.9e6, 1e9, 1e18, 1e300};
    for (int i = 0; i < quantityCount; ++i) {
        const Quantity quantity = Quantity(i);
        for (const double magnitude : magnitudes) {
            for (const double value : {magnitude, -magnitude}) {
                const QString text = Values::text(quantity, value);
                QVERIFY2(text.size() <= 11, qPrintable(text));
                if (quantity == Quantity::BatteryRuntime)
                    continue;
                const QString unit = text.section(QLatin1Char(' '), -1);
                QVERIFY2(unit == unitOf(quantity) || unit == QLatin1String("kW"), qPrintable(text));
                bool ok = false;
                QString digits = text.section(QLatin1Char(' '), -2, -2);
                const double shown = digits.toDouble(&ok);
                QVERIFY2(ok && !digits.contains(QLatin1Char('e')), qPrintable(text));
                QVERIFY2(shown != 0.0 || !digits.startsWith(QLatin1Char('-')), qPrintable(text));
                // A bound is marked as one; else the number is the measured one, rounded.
                const double factor = unit == QLatin1String("kW") ? 1000.0 : 1.0;
                if (text.startsWith(QLatin1String("> ")))
                    QVERIFY2(value > shown * factor, qPrintable(text));
                else if (text.startsWith(QLatin1String("< ")))
                    QVERIFY2(value < shown * factor, qPrintable(text));
                else
                    QVERIFY2(qAbs(shown * factor - value) <= 0.51 * factor, qPrintable(text));
            }
        }
    }
}

void ValuesTest::missingIsNotZero()
{
    const Snapshot snapshot = ups(parse("input.voltage=0 output.voltage=230 ups.load=none"));
    QCOMPARE(readingOf(snapshot, Quantity::InputVoltage).state, Reading::State::Zero);
    QCOMPARE(readingOf(snapshot, Quantity::InputVoltage).text, QStringLiteral("0 V"));
    QCOMPARE(readingOf(snapshot, Quantity::OutputVoltage).state, Reading::State::Number);
    QCOMPARE(readingOf(snapshot, Quantity::OutputVoltage).value, 230.0);
    QCOMPARE(readingOf(snapshot, Quantity::Load).state, Reading::State::Missing);
    QCOMPARE(readingOf(snapshot, Quantity::Load).text, QStringLiteral("no data"));
}

void ValuesTest::scales_data()
{
    QTest::addColumn<QString>("variables");
    QTest::addColumn<int>("quantity");
    QTest::addColumn<double>("minimum");
    QTest::addColumn<double>("maximum");
    QTest::addColumn<double>("nominal"); // 0: none
    QTest::addColumn<QString>("arcs");
    const auto row = [](const char *variables, Quantity quantity, double minimum, double maximum,
                        double nominal, const char *arcs = "") {
        QTest::addRow("%s: %s", qPrintable(nameOf(quantity)), variables)
            << variables << int(quantity) << minimum << maximum << nominal << arcs;
    };
    const Quantity input = Quantity::InputVoltage;
    const Quantity output = Quantity::OutputVoltage;
    // Nominal values.
    row("input.voltage.nominal=230 input.voltage=231", input, 170, 290, 230);
    row("input.voltage.nominal=208", input, 155, 260, 208);
    row("input.voltage.nominal=120 input.voltage=115", input, 90, 150, 120);
    row("input.voltage.nominal=100", input, 75, 125, 100);
    row("input.voltage.nominal=127", input, 95, 160, 127);
    row("input.voltage.nominal=400", input, 300, 500, 400);
    // One voltage's stands for the others.
    row("input.voltage.nominal=120 output.voltage=121", output, 90, 150, 120);
    row("output.voltage.nominal=120", input, 90, 150, 120);
    // But not where that cannot be.
    row("input.voltage.nominal=400 output.voltage=230", output, 170, 290, 230);
    // Limits, which may widen it.
    row("input.voltage.nominal=230 input.transfer.low=160 input.transfer.high=276", input, 160, 290,
        230, "276-290");
    row("input.voltage.nominal=230 input.transfer.low=196 input.transfer.high=300", input, 170, 300,
        230, "170-196");
    row("input.voltage=117 input.transfer.low=88 input.transfer.high=139", input, 85, 150, 120,
        "85-88 139-150");
    // Limits that are none.
    row("input.voltage.nominal=230 input.transfer.low=0 input.transfer.high=999999", input, 170,
        290, 230);
    row("input.voltage.nominal=230 input.transfer.low=250 input.transfer.high=200", input, 170, 290,
        230);
    // Nothing but a value.
    row("input.voltage=115.2", input, 90, 150, 120);
    row("input.voltage=101", input, 75, 125, 100);
    row("output.voltage=238", output, 170, 290, 230);
    row("output.voltage=397", output, 300, 500, 400);
    row("output.voltage=119", input, 90, 150, 120); // on battery, for instance
    row("input.voltage=0 output.voltage=119", input, 90, 150, 120);
    row("input.voltage=0", input, 170, 290, 0); // a dead line says nothing of it
    // Nonsense.
    row("input.voltage.nominal=0 input.voltage=230", input, 170, 290, 230);
    row("input.voltage.nominal=-230 input.voltage=1e18", input, 170, 290, 0);

    row("input.frequency=49.9", Quantity::InputFrequency, 45, 55, 50);
    row("input.frequency=60.1", Quantity::InputFrequency, 54, 66, 60);
    row("output.frequency=400", Quantity::OutputFrequency, 360, 440, 400);
    row("output.frequency=400", Quantity::BypassFrequency, 360, 440, 400);
    row("output.frequency.nominal=60", Quantity::InputFrequency, 54, 66, 60);

    const Quantity battery = Quantity::BatteryVoltage;
    row("battery.voltage=13.6", battery, 9, 15, 12);
    row("battery.voltage=27.2", battery, 19, 30, 24);
    row("battery.voltage.nominal=48 battery.voltage=54.6", battery, 38, 60, 48);
    row("battery.voltage.nominal=192", battery, 150, 240, 192);
    row("battery.voltage=400", battery, 305, 480, 384);
    row("battery.voltage.nominal=24 battery.voltage.low=18 battery.voltage.high=29", battery, 18,
        30, 24);

    row("ups.load=300", Quantity::Load, 0, 100, 0);
    row("ups.load.high=80", Quantity::Load, 0, 100, 0, "80-100");
    row("battery.charge.low=20", Quantity::BatteryCharge, 0, 100, 0, "0-20");
    row("ups.realpower.nominal=2700", Quantity::OutputPower, 0, 3375, 2700);
    row("ups.realpower=340", Quantity::OutputPower, 0, 500, 0);
    row("output.current=4", Quantity::OutputCurrent, 0, 10, 0);
    row("battery.runtime=1200 battery.runtime.low=120", Quantity::BatteryRuntime, 0, 1800, 0,
        "0-120");
    row("battery.runtime=1e12", Quantity::BatteryRuntime, 0, 86400, 0);
    row("ups.temperature=25", Quantity::Temperature, 0, 60, 0);
}

void ValuesTest::scales()
{
    QFETCH(QString, variables);
    QFETCH(int, quantity);
    QFETCH(double, minimum);
    QFETCH(double, maximum);
    QFETCH(double, nominal);
    QFETCH(QString, arcs);
    ScaleBook book;
    book.take(ups(parse(variables.toLatin1().constData())));
    const Scale scale = book.scale(Quantity(quantity));
    QCOMPARE(scale.minimum, minimum);
    QCOMPARE(scale.maximum, maximum);
    QCOMPARE(scale.nominal.value_or(0.0), nominal);
    QCOMPARE(arcsText(scale), arcs);
}

/// Of a UPS that was never reached nothing is known but what is the same for all.
void ValuesTest::guessesAreNoMarks()
{
    ScaleBook book;
    for (const Snapshot &silent :
         {Snapshot::lost(QString(), QString()), ups(parse("ups.status=WAIT"))}) {
        book.take(silent);
        for (int i = 0; i < quantityCount; ++i) {
            const Scale scale = book.scale(Quantity(i));
            const QByteArray name = nameOf(Quantity(i)).toUtf8();
            QVERIFY2(!scale.nominal && !scale.low && !scale.high, name.constData());
            const bool isShare =
                Quantity(i) == Quantity::Load || Quantity(i) == Quantity::BatteryCharge;
            QVERIFY2(scale.isKnown == isShare, name.constData());
            QVERIFY2(scale.maximum > scale.minimum, name.constData());
        }
    }
    book.take(ups(parse("ups.status=OL input.voltage=117 output.current=3")));
    QVERIFY(book.scale(Quantity::InputVoltage).isKnown);
    QCOMPARE(book.scale(Quantity::InputVoltage).nominal, std::optional<double>(120.0));
    // One voltage stands for the others.
    QVERIFY(book.scale(Quantity::OutputVoltage).isKnown);
    QVERIFY(book.scale(Quantity::OutputCurrent).isKnown);
    QVERIFY(!book.scale(Quantity::InputFrequency).isKnown);
    QVERIFY(!book.scale(Quantity::BatteryVoltage).isKnown);
    // What was known once stays known.
    book.take(Snapshot::lost(QString(), QString()));
    book.take(ups(parse("ups.status=OL")));
    QVERIFY(book.scale(Quantity::OutputCurrent).isKnown);
    QVERIFY(book.scale(Quantity::InputVoltage).nominal);
}

/// A scale follows the UPS, not the values that it measures.
void ValuesTest::scalesStay()
{
    ScaleBook book;
    book.take(ups(parse("input.voltage=117 output.voltage=120 battery.voltage=27")));
    const Scale input = book.scale(Quantity::InputVoltage);
    const Scale battery = book.scale(Quantity::BatteryVoltage);
    for (const char *later :
         {"input.voltage=0 output.voltage=120 battery.voltage=23",
          "input.voltage=95 output.voltage=120 battery.voltage=20", "battery.voltage=0", "",
          "input.voltage=131", "ups.status=WAIT", "input.voltage=117 battery.voltage=28"}) {
        book.take(ups(parse(later)));
        QVERIFY2(book.scale(Quantity::InputVoltage) == input, later);
        QVERIFY2(book.scale(Quantity::BatteryVoltage) == battery, later);
        book.take(Snapshot::lost(QString(), QString()));
        QVERIFY2(book.scale(Quantity::InputVoltage) == input, later);
    }
    // One that was taken too low grows.
    book.take(ups(parse("input.voltage=229")));
    QCOMPARE(book.scale(Quantity::InputVoltage).nominal, std::optional<double>(230.0));
}

void ValuesTest::everyScaleIsSound()
{
    const char *const numbers[] = {"-1e300", "-230", "-0",   "0",   "1e-300", "1",
                                   "50",     "230",  "1000", "1e5", "1e9",    "1e300"};
    const char *const names[] = {
        "input.voltage",           "input.voltage.nominal",  "input.transfer.low",
        "input.transfer.high",     "battery.voltage",        "battery.voltage.nominal",
        "battery.voltage.low",     "battery.voltage.high",   "input.frequency",
        "input.frequency.nominal", "ups.realpower",          "ups.realpower.nominal",
        "output.current",          "output.current.nominal", "battery.runtime",
        "battery.runtime.low",     "ups.load.high",          "ups.temperature",
        "input.L1-N.voltage",      "input.L2-N.voltage"};
    quint32 random = 1;
    for (int round = 0; round < 3000; ++round) {
        NutVariables variables;
        for (const char *name : names) {
            random = random * 1664525U + 1013904223U;
            if (random >> 31)
                variables.insert(QLatin1String(name), QLatin1String(numbers[(random >> 16) % 12]));
        }
        ScaleBook book;
        book.take(ups(variables));
        for (int i = 0; i < quantityCount; ++i) {
            const Scale scale = book.scale(Quantity(i));
            QVERIFY(scale.minimum < scale.maximum);
            QVERIFY(scale.minimum >= 0.0 && scale.maximum <= 2e9);
            QCOMPARE(scale.minimum, std::floor(scale.minimum));
            QCOMPARE(scale.maximum, std::floor(scale.maximum));
            for (const std::optional<double> &mark : {scale.nominal, scale.low, scale.high})
                QVERIFY(!mark || (*mark >= scale.minimum && *mark <= scale.maximum));
            for (const ScaleArc &arc : scale.limitArcs())
                QVERIFY(arc.from < arc.to);
            QCOMPARE(scale.shareOf(-1e300), 0.0);
            QCOMPARE(scale.shareOf(1e300), 1.0);
        }
    }
}

/// A book that is given what was before it has the scales of one that looks at everything.
void ValuesTest::changesAloneMakeTheSameScales()
{
    const char *const numbers[] = {"0", "12", "27", "50", "117", "150", "230", "277", "400"};
    const char *const names[] = {"input.voltage",          "output.voltage",
                                 "input.bypass.voltage",   "input.voltage.nominal",
                                 "output.voltage.nominal", "input.transfer.high",
                                 "battery.voltage",        "input.frequency",
                                 "output.frequency",       "ups.load",
                                 "ups.load.high",          "output.current",
                                 "output.current.nominal", "battery.runtime",
                                 "ups.temperature",        "battery.charge.low"};
    quint32 random = 1;
    const auto below = [&random](quint32 end) {
        random = random * 1664525U + 1013904223U;
        return (random >> 8) % end;
    };
    ScaleBook whole;
    ScaleBook changes;
    Snapshot before;
    NutVariables variables;
    for (int round = 0; round < 5000; ++round) {
        for (quint32 i = below(3); i > 0; --i) {
            const QString name = QLatin1String(names[below(16)]);
            if (below(4) == 0)
                variables.remove(name);
            else
                variables.insert(name, QLatin1String(numbers[below(9)]));
        }
        const Snapshot now = below(20) == 0 ? Snapshot::lost(QString(), QString()) : ups(variables);
        whole.take(now);
        changes.take(now, before);
        before = now;
        for (int i = 0; i < quantityCount; ++i)
            QVERIFY2(whole.scale(Quantity(i)) == changes.scale(Quantity(i)),
                     qPrintable(nameOf(Quantity(i)) + QString::number(round)));
    }
}

KIV_TEST_MAIN(ValuesTest)

#include "tst_values.moc"
