// SPDX-License-Identifier: LicenseRef-all-rights-reserved

#include "options.h"

#include "testmain.h"
#include "widgetprobe.h"

namespace {

Options optionsOf(const QStringList &arguments)
{
    return parseOptions(QStringList(QStringLiteral("kivconsole")) + arguments);
}

} // namespace

/// The command line of the console.
class ConsoleOptionsTest : public WidgetTest
{
    Q_OBJECT

private Q_SLOTS:
    void taken_data();
    void taken();
    void report_data();
    void report();
    void refused_data();
    void refused();
};

void ConsoleOptionsTest::taken_data()
{
    QTest::addColumn<QStringList>("arguments");
    QTest::addColumn<int>("task");
    QTest::newRow("none") << QStringList() << int(Options::Task::ShowWindow);
    QTest::newRow("help") << QStringList{QStringLiteral("--help")} << int(Options::Task::PrintText);
    QTest::newRow("version") << QStringList{QStringLiteral("--version")}
                             << int(Options::Task::PrintText);
    QTest::newRow("screenshot") << QStringList{QStringLiteral("--screenshot"),
                                               QStringLiteral("dir")}
                                << int(Options::Task::TakeScreenshots);
    for (const char *trusted :
         {"--ca f --ups demo@host", "--ca f --server host --tls required",
          "--ca f --prometheus HTTPS://host", "--ca f --ups demo@host --prometheus http://host",
          "--ca f --server host --tls off --prometheus https://host",
          "--credentials f --prometheus https://host --server host"})
        QTest::newRow(trusted) << QString::fromLatin1(trusted).split(QLatin1Char(' '))
                               << int(Options::Task::ShowWindow);
    QTest::newRow("several")
        << QStringList{QStringLiteral("--ups"),    QStringLiteral("demo@host"),
                       QStringLiteral("--ups"),    QStringLiteral("other@host"),
                       QStringLiteral("--server"), QStringLiteral("one"),
                       QStringLiteral("--server"), QStringLiteral("two")}
        << int(Options::Task::ShowWindow);
    QTest::newRow("a UPS") << QStringList{QStringLiteral("--ups"), QStringLiteral("demo@host")}
                           << int(Options::Task::ShowWindow);
}

void ConsoleOptionsTest::taken()
{
    QFETCH(QStringList, arguments);
    QFETCH(int, task);
    const Options options = optionsOf(arguments);
    QCOMPARE(int(options.task), task);
    QCOMPARE(options.speed, 1.0);
    if (task == int(Options::Task::PrintText))
        QVERIFY(options.text.contains(QStringLiteral("kivconsole ")) ||
                options.text.contains(QStringLiteral("--screenshot")));
}

void ConsoleOptionsTest::report_data()
{
    QTest::addColumn<QString>("arguments");
    QTest::addColumn<int>("period");
    const auto row = [](const char *arguments, ReportPeriod period) {
        QTest::newRow(arguments) << QString::fromLatin1(arguments) << int(period);
    };
    row("--report day --output r.html", ReportPeriod::Day);
    row("--report week --output r.csv --ups demo@host", ReportPeriod::Week);
    row("--report month --output R.HTML", ReportPeriod::Month);
}

void ConsoleOptionsTest::report()
{
    QFETCH(QString, arguments);
    QFETCH(int, period);
    const QStringList words = arguments.split(QLatin1Char(' '));
    const Options options = optionsOf(words);
    QVERIFY2(options.task != Options::Task::Refuse, qPrintable(options.text));
    QVERIFY(options.report.has_value());
    QCOMPARE(int(*options.report), period);
    QCOMPARE(options.output, words.at(3));
}

void ConsoleOptionsTest::refused_data()
{
    QTest::addColumn<QString>("arguments");
    QTest::addColumn<QString>("part");
    const auto row = [](const char *arguments, const char *part) {
        QTest::newRow(arguments) << QString::fromLatin1(arguments) << QString::fromLatin1(part);
    };
    row("--unknown", "unknown");
    row("stray", "'stray'");
    row("--speed fast", "'fast'");
    row("--speed 0", "'0'");
    row("--speed -1", "'-1'");
    row("--speed nan", "'nan'");
    row("--speed 1e9", "'1e9'");
    row("--speed", "speed");
    row("--ups demo@host --speed 2", "--ups");
    row("--server host --speed 2", "--server");
    row("--config file --at 2", "--config");
    row("--server host --tls maybe", "'maybe'");
    row("--prometheus http://host --speed 2", "--prometheus");
    row("--tls off", "--ups");
    row("--prometheus https://host --tls required", "the address says http or https");
    row("--ca file", "--ups");
    row("--prometheus http://host --ca file", "an https address of --prometheus");
    row("--ups demo@host --tls off --ca file", "unless --tls is off");
    row("--credentials file", "--config");
    row("--prometheus https://host --credentials file", "--config");
    row("--prometheus-auth file", "goes with --prometheus");
    row("--prometheus=", "needs an address");
    row("--config=", "needs a file");
    row("--at 3", "--screenshot");
    row("--screenshot dir --at 3,x", "'x'");
    row("--screenshot dir --at -3", "'-3'");
    row("--ups demo@host --screenshot dir --at 3", "--at");
    row("--report year --output r.html", "'year'");
    row("--report day", "--output");
    row("--report day --output r.pdf", ".csv");
    row("--output r.html", "--report");
    row("--report day --output r.html --screenshot dir", "--report");
    row("--report day --output r.html --server host", "--report");
    row("--report day --output r.html --prometheus http://host", "the console's own history");
    row("--server host --tls off --tls required", "--tls is given more than once");
    row("--config a --config=b", "--config is given more than once");
    row("--prometheus http://a --prometheus http://b", "--prometheus is given more than once");
    row("--screenshot a --screenshot b", "--screenshot is given more than once");
    row("--dark --dark", "--dark is given more than once");
}

void ConsoleOptionsTest::refused()
{
    QFETCH(QString, arguments);
    QFETCH(QString, part);
    const Options options = optionsOf(arguments.split(QLatin1Char(' ')));
    QCOMPARE(int(options.task), int(Options::Task::Refuse));
    QVERIFY2(options.text.contains(part), qPrintable(options.text));
    QVERIFY(!options.text.contains(QLatin1Char('\n')));
}

KIV_TEST_MAIN(ConsoleOptionsTest)

#include "tst_consoleoptions.moc"
