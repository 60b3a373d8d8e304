// SPDX-License-Identifier: LicenseRef-all-rights-reserved

#include "nutlistreader.h"
#include "nutmapping.h"
#include "plaintext.h"
#include "promanswer.h"
#include "sitefile.h"

#include "testmain.h"
#include "widgetprobe.h"

#include <cmath>

namespace {

/// Numbers that are the same with each run.
class Chance
{
public:
    explicit Chance(quint32 start)
        : seed(start)
    {}
    int below(int end)
    {
        seed = seed * 1664525U + 1013904223U;
        return int((seed >> 8) % quint32(end));
    }

private:
    quint32 seed;
};

/// @p good with a few damages: other bytes, missing and repeated parts, and @p words in between.
QByteArray damaged(QByteArray good, Chance *chance, const QByteArrayList &words)
{
    const int damages = 1 + chance->below(6);
    for (int i = 0; i < damages; ++i) {
        const int at = chance->below(int(good.size()) + 1);
        switch (chance->below(5)) {
        case 0:
            if (at < good.size())
                good[at] = char(chance->below(256));
            break;
        case 1:
            good.remove(at, chance->below(40));
            break;
        case 2:
            good.insert(at, good.mid(chance->below(int(good.size()) + 1), chance->below(80)));
            break;
        case 3:
            good.insert(at, words.at(chance->below(int(words.size()))));
            break;
        default:
            good.insert(at, QByteArray(chance->below(6000), char(chance->below(256))));
        }
    }
    return good;
}

/// Whether a text could steer or reorder what is shown.
bool isPlain(const QString &text)
{
    return text == plainText(text);
}

} // namespace

/// What comes from servers, damaged in many ways: everything ends, in bounds, and leaves plain
/// texts. The sanitizers look for the rest.
class UntrustedTest : public WidgetTest
{
    Q_OBJECT

private Q_SLOTS:
    void lists();
    void questions_data();
    void questions();
    void variables();
    void json();
    void files();
};

void UntrustedTest::lists()
{
    const QByteArray good = "BEGIN LIST VAR demo\nVAR demo ups.status \"OL CHRG\"\n"
                            "VAR demo ups.load \"42.5\"\nVAR demo ups.alarm \"a \\\"b\\\\ c! d!\"\n"
                            "VAR demo input.voltage \"230.1\"\nEND LIST VAR demo\n";
    const QByteArrayList words = {"\n",
                                  "\"",
                                  "\\",
                                  "\r\n",
                                  "END LIST VAR demo\n",
                                  "ERR ",
                                  "ERR DATA-STALE\n",
                                  "VAR demo ",
                                  "BEGIN LIST VAR demo\n",
                                  "\xff\xfe",
                                  "%s%n",
                                  "<b>"};
    Chance chance(1);
    int complete = 0;
    int broken = 0;
    for (int round = 0; round < 20000; ++round) {
        const QByteArray bytes = damaged(good, &chance, words);
        NutListReader reader(QStringLiteral("demo"));
        int position = 0;
        // In pieces of any size.
        while (position < bytes.size() && reader.state() == NutReader::State::Reading) {
            const int length = 1 + chance.below(100);
            const QByteArray piece = bytes.mid(position, length);
            const int taken = reader.takeFrom(piece, 0);
            QVERIFY(taken > 0 && taken <= piece.size());
            QVERIFY(reader.heldBytes() <= NutReader::maxLine);
            position += taken;
        }
        if (reader.state() == NutReader::State::Complete) {
            ++complete;
            QVERIFY(reader.variables().size() <= NutListReader::maxVariables);
            const Snapshot snapshot = snapshotOf(QStringLiteral("demo"), reader.variables());
            for (auto one = snapshot.variables.cbegin(); one != snapshot.variables.cend(); ++one)
                QVERIFY(isPlain(one.key()) && isPlain(one.value()));
            for (const QString &alarm : snapshot.alarms)
                QVERIFY(isPlain(alarm));
        } else if (reader.state() != NutReader::State::Reading) {
            QVERIFY(reader.variables().isEmpty());
            broken += reader.state() == NutReader::State::Broken;
        }
    }
    QVERIFY2(complete > 500 && broken > 2000,
             qPrintable(QStringLiteral("%1 %2").arg(complete).arg(broken)));
}

void UntrustedTest::questions_data()
{
    QTest::addColumn<QByteArray>("question");
    QTest::addColumn<QByteArray>("answer");
    const auto row = [](const char *question, const char *answer) {
        QTest::newRow(question) << QByteArray(question) << QByteArray(answer);
    };
    row("LIST UPS", "BEGIN LIST UPS\nUPS a \"Room\"\nEND LIST UPS\n");
    row("LIST CMD demo", "BEGIN LIST CMD demo\nCMD demo load.off\nEND LIST CMD demo\n");
    row("LIST ENUM demo v", "BEGIN LIST ENUM demo v\nENUM demo v \"x\"\nEND LIST ENUM demo v\n");
    row("GET TYPE demo v", "TYPE demo v RW STRING:8\n");
    row("GET VAR demo ups.status", "VAR demo ups.status \"OL\"\n");
    row("GET TRACKING 1", "SUCCESS\n");
    row("INSTCMD demo load.off", "OK TRACKING 2DDC5036-F665\n");
}

void UntrustedTest::questions()
{
    QFETCH(QByteArray, question);
    QFETCH(QByteArray, answer);
    NutReader good(question);
    good.take(answer);
    QCOMPARE(int(good.state()), int(NutReader::State::Complete));
    const QByteArrayList words = {"\n", "\"", "\\", "ERR X\n", "BEGIN ", "END ", "OK ", answer};
    Chance chance(2);
    int refused = 0;
    for (int round = 0; round < 5000; ++round) {
        NutReader reader(question);
        const QByteArray bytes = damaged(answer, &chance, words);
        int position = 0;
        while (position < bytes.size() && reader.state() == NutReader::State::Reading)
            position = reader.takeFrom(bytes, position);
        QVERIFY(reader.rows().size() <= NutReader::maxRows);
        if (reader.state() != NutReader::State::Complete &&
            reader.state() != NutReader::State::Reading) {
            ++refused;
            QVERIFY(reader.rows().isEmpty());
        }
    }
    QVERIFY(refused > 500);
}

void UntrustedTest::variables()
{
    const QStringList names = {
        QStringLiteral("ups.status"),        QStringLiteral("ups.load"),
        QStringLiteral("ups.alarm"),         QStringLiteral("battery.runtime"),
        QStringLiteral("input.L1.voltage"),  QStringLiteral("input.voltage.nominal"),
        QStringLiteral("output.L2.current"), QStringLiteral("ups.beeper.status"),
        QStringLiteral("input.transfer.low")};
    const QStringList values = {QStringLiteral("OL OB LB WAIT FSD BYPASS"),
                                QStringLiteral("1e308"),
                                QStringLiteral("-1e308"),
                                QStringLiteral("nan"),
                                QStringLiteral("inf"),
                                QStringLiteral("0"),
                                QStringLiteral("-0"),
                                QStringLiteral("1e-320"),
                                QString(),
                                QString(4000, QLatin1Char('!')),
                                QStringLiteral("%n%s\u202e\u2028<img>"),
                                QStringLiteral("a! b! c! ").repeated(100)};
    Chance chance(3);
    for (int round = 0; round < 20000; ++round) {
        NutVariables variables;
        for (const QString &name : names)
            variables.insert(name, values.at(chance.below(int(values.size()))));
        const Snapshot snapshot = snapshotOf(QStringLiteral("demo"), variables);
        for (const Measure &measure : snapshot.measures) {
            QVERIFY(!measure.value || std::isfinite(*measure.value));
            QVERIFY(!measure.nominal || std::isfinite(*measure.nominal));
        }
        QVERIFY(snapshot.alarmTexts.size() <= 16);
        for (const QString &alarm : snapshot.alarms)
            QVERIFY(isPlain(alarm));
    }
}

void UntrustedTest::json()
{
    const QByteArray good =
        R"({"status":"success","warnings":["w"],"data":{"resultType":"vector","result":[)"
        R"({"metric":{"job":"nut","ups":"a","flag":"OL"},"value":[1795295353.308,"1"]},)"
        R"({"metric":{"job":"nut","ups":"b"},"value":[1795295353,"NaN"]}]}})";
    const QByteArrayList words = {"[",
                                  "{",
                                  "\"",
                                  "\\u202e",
                                  "1e999",
                                  "null",
                                  "]}",
                                  "{\"metric\":{",
                                  "\"values\":[[1,\"2\"]],"};
    Chance chance(4);
    int succeeded = 0;
    for (int round = 0; round < 20000; ++round) {
        const PromAnswer answer =
            PromAnswer::parse(chance.below(9) == 0 ? 500 : 200, damaged(good, &chance, words),
                              {QStringLiteral("job"), QStringLiteral("ups")});
        succeeded += answer.succeeded;
        QVERIFY(answer.succeeded == answer.problem.isEmpty());
        QVERIFY(isPlain(answer.problem) && answer.problem.size() < 300);
        for (const PromSeries &series : answer.series) {
            QVERIFY(!series.samples.isEmpty());
            QCOMPARE(series.labels.size(), 2);
            for (const QString &label : series.labels)
                QVERIFY(isPlain(label) && label.size() <= 200);
        }
    }
    QVERIFY(succeeded > 100);
    // Far too deep, and far too long.
    QVERIFY(!PromAnswer::parse(200, QByteArray(1000000, '[')).succeeded);
    QVERIFY(!PromAnswer::parse(200, QByteArray(PromAnswer::maxBytes + 1, ' ')).succeeded);
}

void UntrustedTest::files()
{
    const QByteArray good = "[console]\ncredentials = x\n[server a]\naddress = host:1\nups = x,y\n"
                            "tls = off\n[ups x@a]\nname = N\nsite = S\n[prometheus p]\n"
                            "url = http://host/\njob = j\n";
    const QByteArrayList words = {"[", "]", "=", "\n", "[server b]\n", "ups = all\n", "\xff", "@"};
    Chance chance(5);
    for (int round = 0; round < 5000; ++round) {
        QString error;
        const QByteArray text = damaged(good, &chance, words);
        if (!parseSiteFile(text, QStringLiteral("f"), &error))
            QVERIFY2(error.startsWith(QStringLiteral("f:")), qPrintable(error));
        parseCredentials(text, QStringLiteral("f"), &error);
    }
}

KIV_TEST_MAIN(UntrustedTest)

#include "tst_untrusted.moc"
