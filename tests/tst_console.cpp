#include "consolewindow.h"
#include "feed/scenario.h"
#include "feed/simulatorfeed.h"
#include "options.h"
#include "screenshots.h"

#include "mouse.h"
#include "testmain.h"
#include "widgetprobe.h"

#include <aerobutton.h>
#include <aerolinebar.h>
#include <aeroswitch.h>
#include <metrobatticon.h>
#include <metrocirclerate.h>
#include <metrolinerate.h>
#include <metronavdrawer.h>
#include <metroshelter.h>
#include <metrosysicon.h>
#include <metrotabicon.h>
#include <metroxbar.h>
#include <rotatestackedwidget.h>
#include <simpleslideswitch.h>
#include <slideswitch.h>
#include <transpbutton.h>

#include <QtCore/QDir>
#include <QtCore/QTemporaryDir>
#include <QtWidgets/QLabel>

namespace {

/// A window that follows a simulator which only moves when the test says so.
struct Console
{
    Console()
    {
        ups->setFeed(&simulator);
        window.show();
        deliverAll();
    }
    void seek(Scenario::Phase phase, double secondsIn = 2.0)
    {
        simulator.seekTo(Scenario::startOf(phase) + secondsIn);
        deliverAll();
    }
    template <typename W>
    W *find(const char *name = nullptr)
    {
        return window.findChild<W *>(name ? QLatin1String(name) : QLatin1String());
    }
    /// The widget of class @p W with this text or label.
    template <typename W>
    W *withText(const QString &text)
    {
        for (W *widget : window.findChildren<W *>()) {
            if (widget->property("text") == text || widget->property("label") == text)
                return widget;
        }
        return nullptr;
    }
    QStringList visibleTexts()
    {
        QStringList texts;
        for (const QLabel *label : window.findChildren<QLabel *>()) {
            if (!label->isHidden())
                texts.append(label->text());
        }
        return texts;
    }

    SimulatorFeed simulator;
    SiteModel site;
    UpsModel *ups = site.add(QStringLiteral("simulator"));
    ConsoleWindow window{&site};
};

template <typename W>
int colorIndexOf(W *widget)
{
    return widget->getColorIdx();
}

} // namespace

class ConsoleTest : public WidgetTest
{
    Q_OBJECT

private Q_SLOTS:
    void options_data();
    void options();
    void wrongOptions_data();
    void wrongOptions();
    void followsTheScenario_data();
    void followsTheScenario();
    void valuesFollow();
    void noDataIsNotZero();
    void lostCommunicationLeavesNothing();
    void overRangeShowsTheTrueNumber();
    void actionsReachTheUps();
    void switchesShowTheState();
    void readOnlyFeedOffersNothing();
    void mainSwitchFollows();
    void mainSwitchCommands();
    void beeper();
    void tabsChangePages();
    void pagesTurnWhenAnimated();
    void darkTheme();
    void drawerOpensOverThePage();
    void textsFromTheUpsStayPlain();
    void screenshots();
    void screenshotsNeedADirectory();
};

void ConsoleTest::options_data()
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
    QTest::newRow("a UPS") << QStringList{QStringLiteral("--ups"), QStringLiteral("demo@host")}
                           << int(Options::Task::ShowWindow);
}

void ConsoleTest::options()
{
    QFETCH(QStringList, arguments);
    QFETCH(int, task);
    const Options options = parseOptions(QStringList(QStringLiteral("kivconsole")) + arguments);
    QCOMPARE(int(options.task), task);
    QCOMPARE(options.speed, 1.0);
    if (task == int(Options::Task::PrintText))
        QVERIFY(options.text.contains(QStringLiteral("kivconsole ")) ||
                options.text.contains(QStringLiteral("--screenshot")));
}

void ConsoleTest::wrongOptions_data()
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
    row("--at 3", "--screenshot");
    row("--screenshot dir --at 3,x", "'x'");
    row("--screenshot dir --at -3", "'-3'");
    row("--ups demo@host --screenshot dir --at 3", "--at");
}

void ConsoleTest::wrongOptions()
{
    QFETCH(QString, arguments);
    QFETCH(QString, part);
    const Options options =
        parseOptions(QStringList(QStringLiteral("kivconsole")) + arguments.split(QLatin1Char(' ')));
    QCOMPARE(int(options.task), int(Options::Task::Refuse));
    QVERIFY2(options.text.contains(part), qPrintable(options.text));
    QVERIFY(!options.text.contains(QLatin1Char('\n')));
}

void ConsoleTest::followsTheScenario_data()
{
    QTest::addColumn<int>("phase");
    for (int phase = 0; phase < Scenario::phaseCount; ++phase)
        QTest::addRow("phase %d", phase) << phase;
}

void ConsoleTest::followsTheScenario()
{
    QFETCH(int, phase);
    Console console;
    console.seek(Scenario::Phase(phase));
    const Snapshot now = console.simulator.current();
    const auto shown = [](ElementState state) {
        return elemDesc_t{quint8(state.alarm), quint8(state.operating)};
    };
    for (int i = 0; i < elementCount; ++i) {
        auto *tile = console.withText<MetroShelter>(nameOf(Element(i)));
        QVERIFY(tile);
        QVERIFY(tile->getElementState() == shown(now.element(Element(i))));
    }
    auto *system = console.find<MetroSysIcon>("system");
    auto *battery = console.find<MetroBattIcon>("battery");
    QVERIFY(system->getElementState() == shown(now.system));
    QVERIFY(battery->getElementState() == shown(now.element(Element::Battery)));
    QVERIFY(console.find<MetroTabicon>("Overview")->getElementState() == shown(now.system));
    // No fault may hide behind the tab of the elements.
    int worst = 0;
    for (const ElementState &state : now.elements)
        worst = qMax(worst, state.alarm == AlarmState::Fault ? 4 : 0);
    if (worst) {
        QCOMPARE(int(console.find<MetroTabicon>("Power")->getElementState().alarmSt), worst);
    }
}

void ConsoleTest::valuesFollow()
{
    Console console;
    console.seek(Scenario::Phase::OnBattery, 10);
    const Snapshot now = console.simulator.current();
    const auto dial = [&](const char *label) {
        return console.withText<MetroCirclerate>(QString::fromLatin1(label));
    };
    QCOMPARE(dial("Load")->getValue(), *now.value(Quantity::Load));
    QCOMPARE(dial("Battery")->getValue(), *now.value(Quantity::BatteryCharge));
    QCOMPARE(dial("Output")->getValue(), *now.value(Quantity::OutputVoltage));
    QCOMPARE(console.find<AeroLinebar>("charge")->getValueF(), *now.value(Quantity::BatteryCharge));
    QCOMPARE(console.find<MetroLinerate>("loadBar")->getValue(),
             qRound(*now.value(Quantity::Load)));
    const QSize dialSize = dial("Load")->size();
    QCOMPARE(dialSize, dial("Load")->parentWidget()->size());
}

void ConsoleTest::noDataIsNotZero()
{
    Console console;
    Snapshot snapshot = Scenario::snapshotAt(Scenario::startOf(Scenario::Phase::Normal) + 10);
    snapshot.measure(Quantity::Load).value.reset();
    snapshot.measure(Quantity::InputVoltage).value.reset();
    snapshot.measure(Quantity::Temperature).value.reset();
    snapshot.measure(Quantity::BatteryCharge).value.reset();
    console.ups->take(snapshot);
    deliverAll();
    QCOMPARE(console.withText<MetroCirclerate>(QStringLiteral("Load"))->getFormatStr(),
             QStringLiteral("no data"));
    QVERIFY(console.find<MetroLinerate>("loadBar")->isHidden());
    QCOMPARE(console.find<AeroLinebar>("charge")->getValueFormat(), QStringLiteral("no data"));
    QCOMPARE(console.find<AeroLinebar>("charge")->getValueF(), 0.0);
    // The load bar, the input's bar and the temperature.
    QCOMPARE(console.visibleTexts().count(QStringLiteral("no data")), 3);

    // Data that come back are shown.
    console.seek(Scenario::Phase::Normal, 12);
    QVERIFY(!console.find<MetroLinerate>("loadBar")->isHidden());
    QCOMPARE(console.visibleTexts().count(QStringLiteral("no data")), 0);
    QCOMPARE(console.find<AeroLinebar>("charge")->getValueF(),
             *console.simulator.current().value(Quantity::BatteryCharge));
}

void ConsoleTest::lostCommunicationLeavesNothing()
{
    Console console;
    console.seek(Scenario::Phase::Normal, 10);
    console.seek(Scenario::Phase::CommunicationLost);
    for (MetroCirclerate *dial : console.window.findChildren<MetroCirclerate *>()) {
        QCOMPARE(dial->getFormatStr(), QStringLiteral("no data"));
        QCOMPARE(dial->getValue(), dial->getMinValue());
    }
    for (const MetroXbar *bar : console.window.findChildren<MetroXbar *>())
        QVERIFY(bar->isHidden());
    QVERIFY(console.find<MetroLinerate>("loadBar")->isHidden());
    QCOMPARE(console.find<AeroLinebar>("charge")->getValueF(), 0.0);
    QVERIFY(!console.find<SlideSwitch>("mainSwitch")->isEnabled());
    QVERIFY(console.visibleTexts().contains(QStringLiteral("Communication lost")));
    // A second snapshot of the same kind changes nothing.
    console.simulator.advance(1000);
    deliverAll();
    QCOMPARE(console.find<AeroLinebar>("charge")->getValueFormat(), QStringLiteral("no data"));
}

void ConsoleTest::overRangeShowsTheTrueNumber()
{
    Console console;
    console.seek(Scenario::Phase::Overload, 13);
    const double load = *console.simulator.current().value(Quantity::Load);
    QVERIFY(load > 120);
    QCOMPARE(console.withText<MetroCirclerate>(QStringLiteral("Load"))->getValue(), load);
    QCOMPARE(console.find<MetroLinerate>("loadBar")->getValue(), qRound(load));
    // Beyond what the bar can hold it stays at its end instead of starting anew.
    Snapshot snapshot = console.simulator.current();
    snapshot.measure(Quantity::Load).value = 300.0;
    snapshot.measure(Quantity::InputVoltage).value = 1e18;
    console.ups->take(snapshot);
    QCOMPARE(console.find<MetroLinerate>("loadBar")->getValue(), 255);
    snapshot.measure(Quantity::Load).value = -20.0;
    console.ups->take(snapshot);
    QCOMPARE(console.find<MetroLinerate>("loadBar")->getValue(), 0);
    deliverAll();
}

void ConsoleTest::actionsReachTheUps()
{
    Console console;
    console.seek(Scenario::Phase::Normal, 10);
    auto *button = console.withText<AeroButton>(QStringLiteral("Run on battery"));
    QVERIFY(button);
    button->click();
    console.simulator.advance(500);
    QCOMPARE(console.simulator.current().system.operating, OperatingState::OnBattery);
    console.withText<AeroButton>(QStringLiteral("Return to mains"))->click();
    console.simulator.advance(500);
    QCOMPARE(console.simulator.current().system.operating, OperatingState::On);
}

void ConsoleTest::switchesShowTheState()
{
    Console console;
    const auto lit = [&](const char *name) { return console.find<AeroSwitch>(name)->isChecked(); };
    console.seek(Scenario::Phase::Normal, 10);
    QVERIFY(!lit("Run on battery") && !lit("Bypass") && !lit("Lock") && !lit("Cut the link"));
    console.seek(Scenario::Phase::OnBattery);
    QVERIFY(lit("Run on battery"));
    console.seek(Scenario::Phase::OnBypass);
    QVERIFY(lit("Bypass") && !lit("Run on battery"));
    console.seek(Scenario::Phase::Locked);
    QVERIFY(lit("Lock") && !lit("Bypass"));
    console.seek(Scenario::Phase::CommunicationLost);
    QVERIFY(lit("Cut the link") && !lit("Lock"));

    // Pushed, they act; what the UPS refuses they do not show.
    console.seek(Scenario::Phase::Normal, 10);
    console.find<AeroSwitch>("Cut the link")->click();
    console.simulator.advance(500);
    QVERIFY(console.simulator.current().isLost());
    console.find<AeroSwitch>("Cut the link")->click();
    console.simulator.advance(500);
    QVERIFY(!console.simulator.current().isLost());
    console.seek(Scenario::Phase::StandBy);
    console.find<AeroSwitch>("Run on battery")->click();
    console.simulator.advance(500);
    QVERIFY(!lit("Run on battery"));
}

void ConsoleTest::readOnlyFeedOffersNothing()
{
    class ReadOnlyFeed : public UpsFeed
    {
    public:
        void start() override
        {}
        void stop() override
        {}
    };
    ReadOnlyFeed feed;
    SiteModel site;
    site.add(QStringLiteral("ups"))->setFeed(&feed);
    ConsoleWindow window(&site);
    Q_EMIT feed.snapshotReady(Scenario::snapshotAt(60));
    for (const AeroButton *button : window.findChildren<AeroButton *>())
        QVERIFY(!button->isEnabled());
    // Not in the open drawer either.
    window.findChild<MetroNavdrawer *>()->setChecked(true);
    for (const TranspButton *button : window.findChildren<TranspButton *>())
        QVERIFY(!button->isEnabled());
    QVERIFY(!window.findChild<SlideSwitch *>()->isEnabled());
    QVERIFY(window.findChild<SimpleSlideSwitch *>(QStringLiteral("Dark theme"))->isEnabled());
    QVERIFY(!window.findChild<SimpleSlideSwitch *>(QStringLiteral("Beeper"))->isEnabled());
}

void ConsoleTest::mainSwitchFollows()
{
    Console console;
    auto *control = console.find<SlideSwitch>("mainSwitch");
    console.seek(Scenario::Phase::StandBy);
    QVERIFY(!control->isChecked() && !control->getLocked() && !control->getPartialON());
    console.seek(Scenario::Phase::Precharge);
    QVERIFY(control->getPartialON());
    console.seek(Scenario::Phase::Normal);
    QVERIFY(control->isChecked() && !control->getPartialON());
    console.seek(Scenario::Phase::OnBypass);
    QVERIFY(control->isChecked());
    console.seek(Scenario::Phase::Locked);
    QVERIFY(control->getLocked());
    console.seek(Scenario::Phase::Recovery, 10);
    QVERIFY(control->isChecked() && !control->getLocked() && control->isEnabled());
}

void ConsoleTest::mainSwitchCommands()
{
    Console console;
    console.seek(Scenario::Phase::Normal, 10);
    console.window.showPage(3);
    auto *control = console.find<SlideSwitch>("mainSwitch");
    Mouse::press(control, QPoint(150, 30));
    Mouse::drag(control, QPoint(60, 30));
    Mouse::release(control, QPoint(40, 30));
    console.simulator.advance(500);
    QCOMPARE(console.simulator.current().system.operating, OperatingState::StandBy);
    QVERIFY(!control->isChecked());
}

void ConsoleTest::beeper()
{
    Console console;
    console.seek(Scenario::Phase::Normal, 10);
    auto *control = console.find<SimpleSlideSwitch>("Beeper");
    const bool before = *console.simulator.current().beeperEnabled;
    QCOMPARE(control->isChecked(), before);
    Mouse::press(control, QPoint(40, 13));
    Mouse::release(control, QPoint(40, 13));
    console.simulator.advance(500);
    QCOMPARE(*console.simulator.current().beeperEnabled, !before);
    QCOMPARE(control->isChecked(), !before);
}

void ConsoleTest::tabsChangePages()
{
    Console console;
    auto *stack = console.find<RotateStackedWidget>("pages");
    QCOMPARE(console.window.pageNames(),
             QStringList({QStringLiteral("overview"), QStringLiteral("power"),
                          QStringLiteral("control"), QStringLiteral("settings")}));
    const char *const names[] = {"Overview", "Power", "Control", "Settings"};
    for (const int index : {2, 1, 3, 0}) {
        QTest::mouseClick(console.find<MetroTabicon>(names[index]), Qt::LeftButton);
        QCOMPARE(stack->currentIndex(), index);
        QVERIFY(console.find<MetroTabicon>(names[index])->isChecked());
    }
}

void ConsoleTest::pagesTurnWhenAnimated()
{
    Console console;
    auto *stack = console.find<RotateStackedWidget>("pages");
    auto *control = console.find<SimpleSlideSwitch>("Page animation");
    Mouse::press(control, QPoint(40, 13));
    Mouse::release(control, QPoint(40, 13));
    QTest::mouseClick(console.find<MetroTabicon>("Power"), Qt::LeftButton);
    QCOMPARE(stack->currentIndex(), 0);
    QTRY_COMPARE(stack->currentIndex(), 1);
    // Switched off again, pages change at once.
    Mouse::press(control, QPoint(40, 13));
    Mouse::release(control, QPoint(40, 13));
    QTest::mouseClick(console.find<MetroTabicon>("Control"), Qt::LeftButton);
    QCOMPARE(stack->currentIndex(), 2);
}

void ConsoleTest::darkTheme()
{
    Console console;
    const auto ground = [&] { return console.window.palette().color(QPalette::Window); };
    const QColor day = ground();
    auto *control = console.find<SimpleSlideSwitch>("Dark theme");
    console.window.chooseDarkTheme(true);
    QVERIFY(control->isChecked());
    QVERIFY(ground().lightness() < day.lightness());
    Mouse::press(control, QPoint(40, 13));
    Mouse::release(control, QPoint(40, 13));
    QVERIFY(!control->isChecked());
    QVERIFY(ground().lightness() > 128);
    prepareTestApplication();
}

void ConsoleTest::drawerOpensOverThePage()
{
    Console console;
    console.seek(Scenario::Phase::Normal, 10);
    auto *drawer = console.find<MetroNavdrawer>("drawer");
    const int rightEdge = drawer->geometry().right();
    QCOMPARE(drawer->size(), QSize(62, 76));
    QCOMPARE(rightEdge, console.window.width() - 1);
    console.window.grab();
    QTest::mouseClick(drawer, Qt::LeftButton, Qt::NoModifier, QPoint(40, 40));
    QCOMPARE(drawer->getState(), MetroNavdrawer::open);
    QVERIFY(drawer->width() > 200);
    QCOMPARE(drawer->geometry().right(), rightEdge);
    const auto entries = drawer->findChildren<TranspButton *>();
    QVERIFY(entries.size() >= 3);
    for (const TranspButton *entry : entries) {
        QVERIFY(drawer->rect().contains(entry->geometry()));
        QVERIFY(entry->isEnabled());
    }
    // An entry acts on the UPS.
    console.simulator.command(Command::LoseCommunication);
    QTest::mouseClick(console.find<TranspButton>("Relink"), Qt::LeftButton);
    console.simulator.advance(100);
    QVERIFY(!console.simulator.current().isLost());

    deliverAll();
    QTest::mouseClick(drawer, Qt::LeftButton, Qt::NoModifier, QPoint(20, 40));
    QCOMPARE(drawer->getState(), MetroNavdrawer::close);
    QCOMPARE(drawer->size(), QSize(62, 76));
    QCOMPARE(drawer->geometry().right(), rightEdge);
    // Nothing of the entries is in reach of the closed drawer.
    for (const TranspButton *entry : entries)
        QVERIFY(!drawer->rect().intersects(entry->geometry()));
}

void ConsoleTest::textsFromTheUpsStayPlain()
{
    Console console;
    Snapshot snapshot = Scenario::snapshotAt(60);
    snapshot.name = QStringLiteral("<b>bold</b>") + QString(5000, QLatin1Char('x'));
    snapshot.status = QStringList(QStringLiteral("<img src=x>"));
    snapshot.alarms = QStringList(QString(100000, QLatin1Char('a')));
    console.ups->take(snapshot);
    deliverAll();
    QCOMPARE(console.window.size(), QSize(800, 480));
    for (const QLabel *label : console.window.findChildren<QLabel *>())
        QCOMPARE(label->textFormat(), Qt::PlainText);
    console.window.grab();
}

void ConsoleTest::screenshots()
{
    QTemporaryDir directory;
    Options options;
    options.task = Options::Task::TakeScreenshots;
    options.directory = directory.filePath(QStringLiteral("new/pages"));
    options.instants = {30, 90.4};
    SiteModel site;
    UpsModel *ups = site.add(QStringLiteral("simulator"));
    ConsoleWindow window(&site);
    QString error;
    QVERIFY2(takeScenarioScreenshots(window, *ups, options, &error), qPrintable(error));
    const QStringList files = QDir(options.directory).entryList(QDir::Files);
    QCOMPARE(files.size(), 8);
    for (const QString &file : files) {
        const QImage picture(QDir(options.directory).filePath(file));
        QCOMPARE(picture.size(), QSize(800, 480));
    }
    const QImage early(QDir(options.directory).filePath(QStringLiteral("overview-30s.png")));
    const QImage late(QDir(options.directory).filePath(QStringLiteral("overview-90.4s.png")));
    QVERIFY(early != late);
}

void ConsoleTest::screenshotsNeedADirectory()
{
    QTemporaryDir directory;
    QFile file(directory.filePath(QStringLiteral("file")));
    QVERIFY(file.open(QIODevice::WriteOnly));
    Options options;
    options.directory = file.fileName() + QStringLiteral("/pages");
    options.instants = {30};
    SiteModel site;
    UpsModel *ups = site.add(QStringLiteral("simulator"));
    ConsoleWindow window(&site);
    QString error;
    QVERIFY(!takeScenarioScreenshots(window, *ups, options, &error));
    QVERIFY2(error.contains(options.directory), qPrintable(error));
}

KIV_TEST_MAIN(ConsoleTest)

#include "tst_console.moc"
