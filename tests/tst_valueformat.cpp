// SPDX-License-Identifier: LicenseRef-all-rights-reserved

#include "valueformat_p.h"

#include <QtTest/QTest>

#include <cmath>
#include <limits>

/// The texts that gauges make of their values with a format that the application sets.
class ValueFormatTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void text_data();
    void text();
};

void ValueFormatTest::text_data()
{
    QTest::addColumn<QString>("format");
    QTest::addColumn<double>("value");
    QTest::addColumn<QString>("text");
    const auto row = [](const char *name, const char *format, double value, const char *text) {
        QTest::newRow(name) << QString::fromUtf8(format) << value << QString::fromUtf8(text);
    };
    const double nan = std::nan("");
    const double infinity = std::numeric_limits<double>::infinity();
    row("integer with a percent sign", "%d%%", 35.0, "35%");
    row("integer truncates", "%d%%", 99.9, "99%");
    row("integer truncates towards zero", "%d", -99.9, "-99");
    row("one digit and a unit", "%.1f V", 12.34, "12.3 V");
    row("two digits", "%.02f%%", 50.004, "50.00%");
    row("unsigned", "%u", 7.8, "7");
    row("long", "%ld V", 230.7, "230 V");
    row("long unsigned", "%lu V", 230.7, "230 V");
    row("long long", "%lld", 230.7, "230");
    row("size", "%zu", 230.7, "230");
    row("zero padded", "%03d", 7.9, "007");
    row("left aligned", "%-5d|", 7.9, "7    |");
    row("signed", "%+d", 7.9, "+7");
    row("hexadecimal", "%x", 255.9, "ff");
    row("hexadecimal with its prefix", "%#x", 255.0, "0xff");
    row("octal", "%o", 8.0, "10");
    row("scientific", "%.2e", 12345.0, "1.23e+04");
    row("general", "%g", 0.5, "0.5");
    row("long double", "%.1Lf", 2.5, "2.5");
    row("long real", "%.1lf", 2.75, "2.8");
    row("real with a percent sign and a u", "%.1f%%u", 2.75, "2.8%u");
    row("width", "%8.3f|", 3.14159, "   3.142|");
    row("no conversion", "ready", 1.0, "ready");
    row("percent signs alone", "100%%", 1.0, "100%");
    row("empty", "", 1.0, "");
    row("degrees",
        "%.1f \xC2\xB0"
        "C",
        21.5,
        "21.5 \xC2\xB0"
        "C");
    row("micro",
        "%d \xC2\xB5"
        "A",
        5.0,
        "5 \xC2\xB5"
        "A");
    row("squared, plus or minus, e with an accent", "\xC2\xB1%d m\xC2\xB2 \xC3\xA9", 5.0,
        "\xC2\xB1"
        "5 m\xC2\xB2 \xC3\xA9");
    row("around the conversion", "\xC3\xA8 %d\xC2\xB0 %%", 5.0, "\xC3\xA8 5\xC2\xB0 %");
    row("degrees and a character beyond Latin-1", "%d \xC2\xB0/\xE2\x82\xAC", 5.0, "5 \xC2\xB0/?");
    row("degrees without a conversion",
        "\xC2\xB0"
        "C",
        5.0,
        "\xC2\xB0"
        "C");
    row("degrees in a format that is refused", "%s \xC2\xB0", 5.0, "%s \xC2\xB0");
    row("beyond Latin-1 in a format that is refused", "%s \xE2\x82\xAC", 5.0, "%s ?");
    row("bytes that are UTF-8", "%d \xC3\x82\xC2\xB0", 5.0, "5 \xC2\xB0");
    row("bytes that are UTF-8 in a format that is refused", "%s \xC3\x82\xC2\xB0", 5.0,
        "%s \xC2\xB0");
    row("bytes that are three bytes of UTF-8", "%d \xC3\xA2\xC2\x82\xC2\xAC", 5.0,
        "5 \xE2\x82\xAC");
    row("bytes that begin UTF-8", "%d \xC3\xA2\xC2\x82", 5.0, "5 \xC3\xA2\xC2\x82");
    row("bytes of UTF-8 and degrees", "%d \xC3\x82\xC2\xB0\xC2\xB0", 5.0,
        "5 \xC3\x82\xC2\xB0\xC2\xB0");
    row("bytes of a surrogate", "%d \xC3\xAD\xC2\xA0\xC2\x80", 5.0, "5 \xC3\xAD\xC2\xA0\xC2\x80");
    row("bytes of a character written too long", "%d \xC3\x80\xC2\xAF", 5.0, "5 \xC3\x80\xC2\xAF");
    row("bytes of the replacement character", "%d \xC3\xAF\xC2\xBF\xC2\xBD", 5.0, "5 \xEF\xBF\xBD");
    row("not Latin-1", "%d \xE2\x82\xAC", 5.0, "5 ?");
    row("two conversions", "%d of %d", 5.0, "%d of %d");
    row("real and integer", "%f %d", 5.0, "%f %d");
    row("string", "%s", 5.0, "%s");
    row("string after a number", "%d%s", 5.0, "%d%s");
    row("counter", "%n", 5.0, "%n");
    row("character", "%c", 65.0, "%c");
    row("pointer", "%p", 5.0, "%p");
    row("width as an argument", "%*d", 5.0, "%*d");
    row("precision as an argument", "%.*f", 5.0, "%.*f");
    row("unknown conversion", "%y", 5.0, "%y");
    row("percent sign at the end", "5 %", 5.0, "5 %");
    row("real before a percent sign at the end", "%.1f %", 12.34, "12.3 %");
    row("integer before a percent sign at the end", "%d%", 35.0, "35%");
    row("integer before an unknown conversion", "%d %y", 35.0, "35 %y");
    row("integer after an unknown conversion", "%lv %d", 35.0, "%lv 35");
    row("integer after a percent sign in a text", "50% %d V", 230.0, "50% 230 V");
    row("real before flags at the end", "%.1f %-5.2", 12.34, "12.3 %-5.2");
    row("real before modifiers at the end", "%.1f %ll", 12.34, "12.3 %ll");
    row("string after an unknown conversion", "%y %s", 5.0, "%y %s");
    row("counter after modifiers", "%ln", 5.0, "%ln");
    row("wide unknown conversion", "%999999999y", 5.0, "%999999999y");
    row("wide as no screen", "%999999999d", 5.0, "%999999999d");
    row("precise as no screen", "%.999999999f", 5.0, "%.999999999f");
    row("integer beyond its range", "%d", 1e300, "2147483647");
    row("integer below its range", "%d", -1e300, "-2147483648");
    row("integer of no number", "%d", nan, "0");
    row("integer of infinity", "%d", infinity, "2147483647");
    row("real of infinity", "%f", infinity, "inf");
    row("real of no number", "%.1f", nan, "nan");
}

void ValueFormatTest::text()
{
    QFETCH(QString, format);
    QFETCH(double, value);
    QFETCH(QString, text);
    QCOMPARE(KivPrivate::formatValue(format, value), text);
}

QTEST_GUILESS_MAIN(ValueFormatTest)

#include "tst_valueformat.moc"
