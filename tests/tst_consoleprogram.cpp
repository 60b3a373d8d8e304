// SPDX-License-Identifier: LicenseRef-all-rights-reserved

#include "programrun.h"

#include "testmain.h"
#include "widgetprobe.h"

#include <QtCore/QDir>
#include <QtCore/QTemporaryDir>
#include <QtGui/QImage>

namespace {

ProgramRun run(const QStringList &arguments, const QMap<QString, QString> &variables = {})
{
    return ProgramRun(QStringLiteral(KIV_CONSOLE_PROGRAM), arguments, variables);
}

int linesOf(const QString &text)
{
    return int(text.count(QLatin1Char('\n')));
}

} // namespace

/// The program from outside: what it prints and how it ends.
class ConsoleProgramTest : public WidgetTest
{
    Q_OBJECT

private Q_SLOTS:
    void needsNoDisplay_data();
    void needsNoDisplay();
    void saysThatThereIsNoDisplay_data();
    void saysThatThereIsNoDisplay();
    void refusesQtOptions_data();
    void refusesQtOptions();
    void writesAFileForEachInstant();
    void takesTheSizeAskedFor();
    void saysThatTheUpsIsNotReached();
};

static void addEnvironments()
{
    using Variables = QMap<QString, QString>;
    QTest::addColumn<Variables>("variables");
    const QString display = QStringLiteral("DISPLAY");
    const QString wayland = QStringLiteral("WAYLAND_DISPLAY");
    const QString platform = QStringLiteral("QT_QPA_PLATFORM");
    QTest::newRow("nothing set") << Variables();
    QTest::newRow("dead DISPLAY") << Variables{{display, QStringLiteral(":4711")}};
    QTest::newRow("Wayland only") << Variables{{wayland, QStringLiteral("wayland-4711")}};
    QTest::newRow("empty platform") << Variables{{platform, QString()}};
    QTest::newRow("platform that cannot be had")
        << Variables{{platform, QStringLiteral("xcb")}, {display, QStringLiteral(":4711")}};
}

void ConsoleProgramTest::needsNoDisplay_data()
{
    addEnvironments();
}

void ConsoleProgramTest::needsNoDisplay()
{
    using Variables = QMap<QString, QString>;
    QFETCH(Variables, variables);
    const ProgramRun help = run({QStringLiteral("--help")}, variables);
    QVERIFY(help.ended);
    QCOMPARE(help.status, 0);
    for (const char *option : {"--ups", "--at", "--size", "--fullscreen", "--fresh", "--notify"})
        QVERIFY2(help.output.contains(QLatin1String(option)), option);
    QTemporaryDir directory;
    const ProgramRun shots = run({QStringLiteral("--screenshot"), directory.path(),
                                  QStringLiteral("--at"), QStringLiteral("60")},
                                 variables);
    QVERIFY2(shots.ended, qPrintable(shots.errors));
    QCOMPARE(shots.status, 0);
    QCOMPARE(shots.errors, QString());
    const QImage overview(directory.filePath(QStringLiteral("overview-60s.png")));
    QCOMPARE(overview.size(), QSize(800, 480));
}

void ConsoleProgramTest::saysThatThereIsNoDisplay_data()
{
    addEnvironments();
}

void ConsoleProgramTest::saysThatThereIsNoDisplay()
{
    using Variables = QMap<QString, QString>;
    QFETCH(Variables, variables);
    const ProgramRun window = run({}, variables);
    QVERIFY2(window.ended, qPrintable(window.errors));
    QCOMPARE(window.status, 1);
    QVERIFY2(window.errors.startsWith(QStringLiteral("kivconsole: no usable display")),
             qPrintable(window.errors));
    QCOMPARE(linesOf(window.errors), 1);
}

void ConsoleProgramTest::refusesQtOptions_data()
{
    QTest::addColumn<QStringList>("arguments");
    QTest::addColumn<QString>("part");
    QTest::newRow("platform") << QStringList{QStringLiteral("-platform"), QStringLiteral("xcb")}
                              << QStringLiteral("QT_QPA_PLATFORM");
    QTest::newRow("style") << QStringList{QStringLiteral("-style"), QStringLiteral("windows")}
                           << QStringLiteral("'-style'");
}

void ConsoleProgramTest::refusesQtOptions()
{
    QFETCH(QStringList, arguments);
    QFETCH(QString, part);
    const ProgramRun refused = run(arguments);
    QVERIFY(refused.ended);
    QCOMPARE(refused.status, 2);
    QCOMPARE(linesOf(refused.errors), 1);
    QVERIFY2(refused.errors.contains(part), qPrintable(refused.errors));
}

void ConsoleProgramTest::writesAFileForEachInstant()
{
    QTemporaryDir directory;
    const ProgramRun shots = run({QStringLiteral("--screenshot"), directory.path(),
                                  QStringLiteral("--at"), QStringLiteral("10.1,10.2,11")});
    QCOMPARE(shots.status, 0);
    for (const char *name : {"overview-10.1s.png", "overview-10.2s.png", "overview-11s.png"})
        QVERIFY2(QFile::exists(directory.filePath(QLatin1String(name))), name);
    QCOMPARE(QDir(directory.path()).entryList(QDir::Files).size(), linesOf(shots.output));
}

void ConsoleProgramTest::takesTheSizeAskedFor()
{
    QTemporaryDir directory;
    const ProgramRun shots =
        run({QStringLiteral("--screenshot"), directory.path(), QStringLiteral("--at"),
             QStringLiteral("60"), QStringLiteral("--size"), QStringLiteral("1280x720")});
    QCOMPARE(shots.status, 0);
    const QImage overview(directory.filePath(QStringLiteral("overview-60s.png")));
    QCOMPARE(overview.size(), QSize(1280, 720));
}

void ConsoleProgramTest::saysThatTheUpsIsNotReached()
{
    QTemporaryDir directory;
    // Nobody listens on the port of the discard service of this machine.
    const ProgramRun shots = run({QStringLiteral("--screenshot"), directory.path(),
                                  QStringLiteral("--ups"), QStringLiteral("none@127.0.0.1:9")});
    QVERIFY(shots.ended);
    QCOMPARE(shots.status, 3);
    QCOMPARE(linesOf(shots.errors), 1);
    QVERIFY2(shots.errors.contains(QStringLiteral("no UPS is reached")), qPrintable(shots.errors));
    QVERIFY(QFile::exists(directory.filePath(QStringLiteral("overview.png"))));
}

KIV_TEST_MAIN(ConsoleProgramTest)

#include "tst_consoleprogram.moc"
