// SPDX-License-Identifier: LicenseRef-all-rights-reserved

#include "consolesettings.h"
#include "consolewindow.h"
#include "elidedlabel.h"
#include "feed/scenario.h"
#include "feed/simulatorfeed.h"
#include "options.h"
#include "screenshots.h"
#include "singlelinediagram.h"
#include "theme.h"

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
#include <QtCore/QHash>
#include <QtCore/QSet>
#include <QtCore/QSettings>
#include <QtCore/QTemporaryDir>
#include <QtTest/QSignalSpy>
#include <QtWidgets/QLabel>

#include <algorithm>
#include <cmath>

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
    void key(Qt::Key key, Qt::KeyboardModifiers modifiers = Qt::NoModifier)
    {
        QTest::keyClick(window.windowHandle(), key, modifiers);
        deliverAll();
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

double luminance(const QColor &color)
{
    const auto part = [](double value) {
        return value <= 0.04045 ? value / 12.92 : std::pow((value + 0.055) / 1.055, 2.4);
    };
    return 0.2126 * part(color.redF()) + 0.7152 * part(color.greenF()) +
           0.0722 * part(color.blueF());
}

double contrast(const QColor &a, const QColor &b)
{
    const double first = luminance(a) + 0.05;
    const double second = luminance(b) + 0.05;
    return std::max(first, second) / std::min(first, second);
}

/// The contrast between what is written in @p area of @p image and what it stands on: the colour
/// that most pixels have against the one that differs most from it.
double textContrast(const QImage &image, const QRect &area)
{
    QHash<QRgb, int> counts;
    for (int y = area.top(); y <= area.bottom(); ++y) {
        for (int x = area.left(); x <= area.right(); ++x)
            ++counts[image.pixel(x, y)];
    }
    QRgb background = 0;
    for (auto count = counts.cbegin(); count != counts.cend(); ++count) {
        if (count.value() > counts.value(background))
            background = count.key();
    }
    double best = 1.0;
    for (auto count = counts.cbegin(); count != counts.cend(); ++count)
        best = std::max(best, contrast(QColor(background), QColor(count.key())));
    return best;
}

/// Where the text of @p bar is: around the end of its fill, but inside, above the ticks.
QRect textArea(const AeroLinebar *bar)
{
    const double range = bar->getMaxValueF() - bar->getMinValueF();
    const int end = int(bar->width() * (bar->getValueF() - bar->getMinValueF()) / range);
    const int middle = (bar->height() - bar->height() * bar->getTickSize() / 100) / 2;
    QRect area(QPoint(), QFontMetrics(bar->font()).size(0, bar->getText()));
    area.moveCenter(QPoint(end, middle));
    area.moveLeft(std::max(area.left(), 0));
    area.moveRight(std::min(area.right(), bar->width() - 1));
    return area;
}

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
    void freshKeepsTheLimitsOfTheHistory();
    void followsTheScenario_data();
    void followsTheScenario();
    void tabsShowAlarms();
    void headerIsOneBar();
    void bannerSaysItOnce();
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
    void firstStartIsByDay();
    void drawerOpensBesideTheBanner();
    void keysReachEverything();
    void onlyControlsTakeTheFocus();
    void bannerStandsOnEveryPage();
    void diagramShowsTheFlow();
    void gaugesTellWhatTheyShow();
    void textsAreReadable_data();
    void textsAreReadable();
    void headlineIsWhole();
    void remembersWhatWasChosen();
    void textsFromTheUpsStayPlain();
    void screenshots();
    void screenshotsNeedADirectory();
};

/// What a run remembers is forgotten, but how long the history is kept is not: shorter limits would
/// delete what is there.
void ConsoleTest::freshKeepsTheLimitsOfTheHistory()
{
    const QTemporaryDir place;
    const QString file = place.filePath(QStringLiteral("console.ini"));
    const auto write = [&file](const QByteArray &text) {
        QFile out(file);
        return out.open(QIODevice::WriteOnly) && out.write(text) == text.size();
    };
    QVERIFY(write("dark=true\n[history]\nrawDays=14\nhourDays=x\n[window]\nsize=3\n"));
    QCOMPARE(ConsoleSettings::keptTimes(file).rawDays, 14);
    ConsoleSettings::forget(file);
    QCOMPARE(ConsoleSettings::keptTimes(file).rawDays, 14);
    QCOMPARE(ConsoleSettings::keptTimes(file).minuteDays, Retention().minuteDays);
    QCOMPARE(ConsoleSettings::keptTimes(file).hourDays, Retention().hourDays);
    QCOMPARE(QSettings(file, QSettings::IniFormat).childGroups(),
             QStringList{QStringLiteral("history")});
    QVERIFY(!QSettings(file, QSettings::IniFormat).contains(QStringLiteral("dark")));
    // Nothing to keep, or nothing that can be read: nothing stays.
    QVERIFY(write("dark=true\n"));
    ConsoleSettings::forget(file);
    QVERIFY(!QFile::exists(file));
    ConsoleSettings::forget(file);
    QVERIFY(!QFile::exists(file));
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
    const auto markOf = [&](const char *tab) {
        return console.find<MetroTabicon>(tab)->accessibleDescription().section(QLatin1Char('.'), 0,
                                                                                0);
    };
    const auto wordsOf = [](AlarmState alarm) {
        return alarm == AlarmState::None ? QString() : nameOf(alarm);
    };
    QCOMPARE(markOf("Overview"), wordsOf(now.system.alarm));
    // No fault may hide behind the tab of the elements.
    for (const ElementState &state : now.elements) {
        if (state.alarm == AlarmState::Fault)
            QCOMPARE(markOf("Power"), wordsOf(AlarmState::Fault));
    }
}

/// By the sign of its severity, which looks the same on tabs of all sizes.
void ConsoleTest::tabsShowAlarms()
{
    QHash<int, QSet<QRgb>> plates;
    for (const QSize size :
         {QSize(480, 320), QSize(800, 480), QSize(1280, 800), QSize(1920, 1080)}) {
        Console console;
        console.window.resize(size);
        const auto look = [&](Scenario::Phase phase) {
            console.seek(phase);
            deliverAll();
            return console.find<MetroTabicon>("Power")->grab().toImage();
        };
        const QImage normal = look(Scenario::Phase::Normal);
        // The colour that most of the sign has.
        const auto plateOf = [&](Scenario::Phase phase) {
            const QImage image = look(phase);
            QHash<QRgb, int> counts;
            for (int y = 0; y < image.height(); ++y) {
                for (int x = 0; x < image.width(); ++x) {
                    if (image.pixel(x, y) != normal.pixel(x, y))
                        ++counts[image.pixel(x, y)];
                }
            }
            QRgb most = 0;
            for (auto one = counts.cbegin(); one != counts.cend(); ++one)
                most = counts.value(most) < one.value() ? one.key() : most;
            return most;
        };
        for (const Scenario::Phase phase :
             {Scenario::Phase::OnBattery, Scenario::Phase::InverterFault,
              Scenario::Phase::CommunicationLost})
            plates[int(phase)].insert(plateOf(phase));
        QCOMPARE(look(Scenario::Phase::Normal), normal);
    }
    QSet<QRgb> all;
    for (const QSet<QRgb> &ofOne : std::as_const(plates)) {
        QCOMPARE(ofOne.size(), 1);
        all += ofOne;
    }
    QCOMPARE(all.size(), 3);
}

/// Also beside the drawer, by day and by night.
void ConsoleTest::headerIsOneBar()
{
    Console console;
    console.window.resize(480, 320);
    console.seek(Scenario::Phase::Normal);
    const auto *drawer = console.find<MetroNavdrawer>("drawer");
    QVERIFY(drawer->isVisible());
    for (const bool dark : {false, true}) {
        console.window.chooseDarkTheme(dark);
        deliverAll();
        const QImage image = console.window.grab().toImage();
        const QColor rail(36, 41, 46);
        QCOMPARE(image.pixelColor(drawer->x() + 1, 1), rail);
        QCOMPARE(image.pixelColor(drawer->x() + 1, drawer->height() - 2), rail);
    }
    console.window.chooseDarkTheme(false);
}

/// A load without protection is in the headline; what else is wrong is below.
void ConsoleTest::bannerSaysItOnce()
{
    Console console;
    Snapshot snapshot = Scenario::snapshotAt(Scenario::startOf(Scenario::Phase::Normal) + 10);
    snapshot.tokens = StatusToken::Bypass | StatusToken::ReplaceBattery;
    console.ups->take(snapshot);
    QCOMPARE(console.find<QLabel>("headline")->text(),
             QStringLiteral("Bypass – load NOT protected"));
    const QString below = console.find<QLabel>("condition")->text();
    QVERIFY2(!below.contains(QStringLiteral("not protected")), qPrintable(below));
    QVERIFY2(below.contains(QStringLiteral("Replace the battery")), qPrintable(below));
    QVERIFY2(below.contains(QStringLiteral("since ")), qPrintable(below));
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
    // The dial stands in its room whole.
    QVERIFY(dial("Load")->width() > 60);
    QVERIFY(dial("Load")->parentWidget()->rect().contains(dial("Load")->geometry()));
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
    QVERIFY(console.visibleTexts().contains(QStringLiteral("No communication")));
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
    // Beyond what the load's bar can show another one takes its place.
    Snapshot snapshot = console.simulator.current();
    snapshot.measure(Quantity::Load).value = 300.0;
    snapshot.measure(Quantity::InputVoltage).value = 1e18;
    console.ups->take(snapshot);
    QVERIFY(console.find<MetroLinerate>("loadBar")->isHidden());
    QCOMPARE(console.find<MetroXbar>("Load")->getValue(), 300);
    snapshot.measure(Quantity::Load).value = -20.0;
    console.ups->take(snapshot);
    QVERIFY(console.find<MetroLinerate>("loadBar")->isHidden());
    QCOMPARE(console.find<MetroXbar>("Load")->getValue(), -20);
    deliverAll();
}

void ConsoleTest::actionsReachTheUps()
{
    Console console;
    console.seek(Scenario::Phase::Normal, 10);
    auto *control = console.find<AeroSwitch>("Run on battery");
    auto *message = console.find<QLabel>("message");
    QVERIFY(message->isHidden());
    // What is dangerous takes two acts.
    control->click();
    QVERIFY(!control->isChecked());
    QVERIFY2(message->text().contains(QStringLiteral("Press again")), qPrintable(message->text()));
    QCOMPARE(console.simulator.current().system.operating, OperatingState::On);
    control->click();
    console.simulator.advance(500);
    QCOMPARE(console.simulator.current().system.operating, OperatingState::OnBattery);
    // What became of it is said.
    QVERIFY(!message->isHidden());
    QVERIFY2(message->text().contains(QStringLiteral("Run on battery")),
             qPrintable(message->text()));
    control->click();
    console.simulator.advance(500);
    QCOMPARE(console.simulator.current().system.operating, OperatingState::On);
    // So is a refusal.
    console.seek(Scenario::Phase::StandBy);
    console.ups->command(Command::GoToBypass);
    QVERIFY2(message->text().contains(QStringLiteral("refused")), qPrintable(message->text()));
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
    console.window.showPage(4);
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
    const QStringList names = {QStringLiteral("Overview"), QStringLiteral("Power"),
                               QStringLiteral("Control"),  QStringLiteral("Events"),
                               QStringLiteral("Trends"),   QStringLiteral("Information"),
                               QStringLiteral("Settings")};
    QStringList files;
    for (const QString &name : names)
        files.append(name.toLower());
    QCOMPARE(console.window.pageNames(), files);
    for (const int index : {2, 1, 3, 6, 4, 5, 0}) {
        auto *tab = console.window.findChild<MetroTabicon *>(names.at(index));
        QTest::mouseClick(tab, Qt::LeftButton);
        QCOMPARE(stack->currentIndex(), index);
        QVERIFY(tab->isChecked());
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
    const auto background = [&] { return console.window.palette().color(QPalette::Window); };
    const QColor day = background();
    auto *control = console.find<SimpleSlideSwitch>("Dark theme");
    // Qt 6 hands a new palette on when events are delivered.
    console.window.chooseDarkTheme(true);
    deliverAll();
    QVERIFY(control->isChecked());
    QVERIFY(background().lightness() < day.lightness());
    Mouse::press(control, QPoint(40, 13));
    Mouse::release(control, QPoint(40, 13));
    deliverAll();
    QVERIFY(!control->isChecked());
    QVERIFY(background().lightness() > 128);
    prepareTestApplication();
}

/// Without a choice that was kept, the console has its own palette and not the desktop's.
void ConsoleTest::firstStartIsByDay()
{
    const QTemporaryDir directory;
    QPalette other = Theme::palette(false);
    other.setColor(QPalette::Window, QColor(120, 30, 30));
    for (const QPalette &desktop : {other, Theme::palette(true)}) {
        QApplication::setPalette(desktop);
        Console console;
        console.window.remember(directory.filePath(QStringLiteral("console.ini")));
        deliverAll();
        QCOMPARE(console.window.palette().color(QPalette::Window),
                 Theme::palette(false).color(QPalette::Window));
    }
    prepareTestApplication();
}

void ConsoleTest::drawerOpensBesideTheBanner()
{
    Console console;
    console.seek(Scenario::Phase::Normal, 10);
    auto *drawer = console.find<MetroNavdrawer>("drawer");
    const auto coversNothing = [&] {
        for (const char *name : {"strip", "banner", "pages"}) {
            const QWidget *other = console.find<QWidget>(name);
            QVERIFY2(!drawer->geometry().intersects(other->geometry()), name);
            QVERIFY2(other->width() > 100, name);
        }
    };
    const QSize closed = drawer->size();
    const int rightEdge = drawer->geometry().right();
    QCOMPARE(rightEdge, console.window.width() - 1);
    coversNothing();
    console.window.grab();
    QTest::mouseClick(drawer, Qt::LeftButton, Qt::NoModifier, QPoint(40, 40));
    QCOMPARE(drawer->getState(), MetroNavdrawer::open);
    QVERIFY(drawer->width() > 200);
    QCOMPARE(drawer->geometry().right(), rightEdge);
    coversNothing();
    const auto entries = drawer->findChildren<TranspButton *>();
    QVERIFY(entries.size() >= 3);
    for (const TranspButton *entry : entries) {
        QVERIFY(drawer->rect().contains(entry->geometry()));
        QVERIFY(entry->isEnabled());
        QVERIFY(entry->width() >= 44 && entry->height() >= 44);
    }
    // An entry acts on the UPS.
    console.simulator.command(Command::LoseCommunication);
    QTest::mouseClick(console.find<TranspButton>("Relink"), Qt::LeftButton);
    console.simulator.advance(100);
    QVERIFY(!console.simulator.current().isLost());

    const auto isClosed = [&] {
        QCOMPARE(drawer->getState(), MetroNavdrawer::close);
        QCOMPARE(drawer->size(), closed);
        QCOMPARE(drawer->geometry().right(), rightEdge);
        coversNothing();
        // Nothing of the entries is in reach of the closed drawer.
        for (const TranspButton *entry : entries)
            QVERIFY(!drawer->rect().intersects(entry->geometry()));
    };
    deliverAll();
    QTest::mouseClick(drawer, Qt::LeftButton, Qt::NoModifier, QPoint(20, 40));
    isClosed();
    // The escape key closes it, and so does another size of the window.
    console.window.grab();
    QTest::mouseClick(drawer, Qt::LeftButton, Qt::NoModifier, QPoint(40, 40));
    QCOMPARE(drawer->getState(), MetroNavdrawer::open);
    console.key(Qt::Key_Escape);
    isClosed();
    console.window.grab();
    QTest::mouseClick(drawer, Qt::LeftButton, Qt::NoModifier, QPoint(40, 40));
    console.window.resize(1000, 600);
    deliverAll();
    QCOMPARE(drawer->getState(), MetroNavdrawer::close);
    QCOMPARE(drawer->geometry().right(), 999);
    coversNothing();
}

void ConsoleTest::keysReachEverything()
{
    Console console;
    auto *stack = console.find<RotateStackedWidget>("pages");
    const int pages = int(console.window.pageNames().size());
    for (int page = pages - 1; page >= 0; --page) {
        console.key(Qt::Key(int(Qt::Key_1) + page), Qt::AltModifier);
        QCOMPARE(stack->currentIndex(), page);
    }
    auto *help = console.find<QWidget>("keyHelp");
    QVERIFY(!help->isVisible());
    console.key(Qt::Key_F1);
    QVERIFY(help->isVisible());
    QVERIFY(console.window.rect().contains(help->geometry()));
    console.key(Qt::Key_Escape);
    QVERIFY(!help->isVisible());
    console.key(Qt::Key_F11);
    QVERIFY(console.window.isFullScreen());
    console.key(Qt::Key_F11);
    QVERIFY(!console.window.isFullScreen());
}

void ConsoleTest::onlyControlsTakeTheFocus()
{
    Console console;
    console.seek(Scenario::Phase::Normal, 10);
    const auto *frame = console.find<QWidget>("focusFrame");
    QApplication::setActiveWindow(&console.window);
    for (int page = 0; page < console.window.pageNames().size(); ++page) {
        console.window.showPage(page);
        deliverAll();
        QSet<const QWidget *> seen;
        for (int i = 0; i < 60; ++i) {
            console.key(Qt::Key_Tab);
            const QWidget *focused = QApplication::focusWidget();
            QVERIFY(focused);
            if (seen.contains(focused))
                break;
            seen.insert(focused);
            // An indicator does nothing, so it has no use for the focus.
            for (const char *indicator : {"MetroShelter", "MetroBattIcon", "MetroSysIcon",
                                          "MetroCirclerate", "QScrollArea"})
                QVERIFY2(!focused->inherits(indicator), indicator);
            QVERIFY(frame->isVisible());
            const QRect framed(frame->mapTo(&console.window, QPoint()), frame->size());
            const QRect control(focused->mapTo(&console.window, QPoint()), focused->size());
            QVERIFY2(framed.contains(control), focused->metaObject()->className());
        }
        // At least the shown tab and the drawer.
        QVERIFY(seen.size() >= 2);
    }
    // The first press of the space key after the start only shows a page.
    Console fresh;
    QApplication::setActiveWindow(&fresh.window);
    fresh.seek(Scenario::Phase::Normal, 10);
    const Snapshot before = fresh.simulator.current();
    fresh.key(Qt::Key_Space);
    QVERIFY(fresh.simulator.current() == before);
    fresh.key(Qt::Key_Tab);
    fresh.key(Qt::Key_Space);
    QVERIFY(fresh.simulator.current() == before);
}

void ConsoleTest::bannerStandsOnEveryPage()
{
    Console console;
    auto *banner = console.find<QWidget>("banner");
    const auto *headline = console.find<QLabel>("headline");
    const auto *time = console.find<QLabel>("timeLeft");
    const auto plate = [&] { return banner->palette().color(QPalette::Window); };
    console.seek(Scenario::Phase::Normal, 10);
    const QColor calm = plate();
    QCOMPARE(headline->text(), console.ups->headline().text);
    QVERIFY(!console.window.windowTitle().startsWith(QLatin1Char('!')));
    const QImage calmIcon = console.window.windowIcon().pixmap(32).toImage();

    console.seek(Scenario::Phase::OnBattery, 10);
    for (int page = 0; page < console.window.pageNames().size(); ++page) {
        console.window.showPage(page);
        QVERIFY(banner->isVisible());
        QCOMPARE(headline->text(), console.ups->headline().text);
    }
    const QColor warning = plate();
    QVERIFY(warning != calm);
    QVERIFY(time->isVisible());
    QCOMPARE(time->text(), console.ups->timeLeft());
    QVERIFY(time->fontInfo().pixelSize() >= 32);
    QVERIFY(console.window.windowTitle().contains(headline->text()));
    QVERIFY(console.window.windowTitle().startsWith(QLatin1Char('!')));
    QVERIFY(console.window.windowIcon().pixmap(32).toImage() != calmIcon);

    console.seek(Scenario::Phase::Locked);
    QVERIFY(plate() != warning);
    QVERIFY(!time->isVisible());
    console.seek(Scenario::Phase::CommunicationLost);
    QVERIFY(plate() != warning && plate() != calm);
    QVERIFY(!time->isVisible());
}

void ConsoleTest::diagramShowsTheFlow()
{
    Console console;
    const auto tile = [&](const char *name) {
        return console.find<MetroShelter>(name)->isVisibleTo(&console.window);
    };
    auto *diagram = console.find<SingleLineDiagram>("diagram");
    const auto flows = [&] { return diagram->shown().flowText(); };
    console.seek(Scenario::Phase::Normal, 10);
    QVERIFY2(flows().contains(QStringLiteral("Mains to Rectifier, Rectifier to Inverter, "
                                             "Inverter to Load")),
             qPrintable(flows()));
    QCOMPARE(diagram->accessibleDescription(), flows());
    console.seek(Scenario::Phase::OnBattery, 10);
    QCOMPARE(flows(), QStringLiteral("Inverter to Load, Battery to Inverter"));
    QCOMPARE(diagram->shown().node(Node::Rectifier).caption, QStringLiteral("Off · mains failed"));
    console.seek(Scenario::Phase::OnBypass, 10);
    QVERIFY2(flows().contains(QStringLiteral("Mains to Bypass, Bypass to Load")),
             qPrintable(flows()));
    QVERIFY(!flows().contains(QStringLiteral("Inverter to Load")));
    console.seek(Scenario::Phase::StandBy, 2);
    QVERIFY(!flows().contains(QStringLiteral("to Load")));
    QVERIFY(tile("Bypass"));
    console.seek(Scenario::Phase::CommunicationLost);
    QCOMPARE(flows(), QStringLiteral("No energy flows"));

    // What a UPS does not have is not there, also while it is silent.
    Snapshot snapshot = Scenario::snapshotAt(Scenario::startOf(Scenario::Phase::Normal) + 10);
    snapshot.element(Element::Bypass) = {AlarmState::None, OperatingState::Unknown};
    console.ups->take(snapshot);
    QVERIFY(!tile("Bypass") && tile("Mains") && tile("Load"));
    console.ups->take(Snapshot::lost(snapshot.name, QStringLiteral("no answer")));
    QVERIFY(!tile("Bypass") && tile("Mains") && tile("Load"));
}

void ConsoleTest::gaugesTellWhatTheyShow()
{
    // Missing and 0 look different, and a fill stands out from its track.
    Console console;
    auto *dial = console.withText<MetroCirclerate>(QStringLiteral("Input"));
    for (const bool dark : {false, true}) {
        console.window.chooseDarkTheme(dark);
        deliverAll();
        Snapshot snapshot = Scenario::snapshotAt(Scenario::startOf(Scenario::Phase::Normal) + 10);
        console.ups->take(snapshot);
        const QColor track = dial->getBackground();
        QVERIFY(contrast(dial->getCursor(), track) >= 3.0);
        snapshot.measure(Quantity::InputVoltage).value = 400.0;
        snapshot.measure(Quantity::InputVoltage).high = 250.0;
        console.ups->take(snapshot);
        QVERIFY(contrast(dial->getCursor(), track) >= 3.0);
        snapshot.measure(Quantity::InputVoltage).value = 0.0;
        console.ups->take(snapshot);
        QCOMPARE(dial->getFormatStr(), QStringLiteral("0 V"));
        QCOMPARE(dial->getBackground(), track);
        snapshot.measure(Quantity::InputVoltage).value.reset();
        console.ups->take(snapshot);
        QCOMPARE(dial->getFormatStr(), QStringLiteral("no data"));
        QVERIFY(dial->getBackground() != track);
    }
    console.window.chooseDarkTheme(false);
    // The highest and the lowest value are kept, until a double click.
    console.seek(Scenario::Phase::Normal, 10);
    QWidget *room = dial->parentWidget();
    QVERIFY2(room->toolTip().contains(QStringLiteral("Highest seen: 400 V")),
             qPrintable(room->toolTip()));
    QTest::mouseDClick(room, Qt::LeftButton);
    QVERIFY(!room->toolTip().contains(QStringLiteral("400 V")));
}

void ConsoleTest::textsAreReadable_data()
{
    QTest::addColumn<bool>("dark");
    QTest::addColumn<int>("phase");
    for (const bool dark : {false, true}) {
        for (const Scenario::Phase phase :
             {Scenario::Phase::Normal, Scenario::Phase::OnBattery, Scenario::Phase::LowBattery,
              Scenario::Phase::Locked, Scenario::Phase::CommunicationLost})
            QTest::addRow("%s, phase %d", dark ? "dark" : "light", int(phase))
                << dark << int(phase);
    }
}

void ConsoleTest::textsAreReadable()
{
    QFETCH(bool, dark);
    QFETCH(int, phase);
    Console console;
    console.window.chooseDarkTheme(dark);
    console.seek(Scenario::Phase(phase), 4);
    for (int page = 0; page < console.window.pageNames().size(); ++page) {
        console.window.showPage(page);
        deliverAll();
        const QImage image = console.window.grab().toImage();
        int texts = 0;
        for (const QWidget *widget : console.window.findChildren<QWidget *>()) {
            QString text = widget->property("text").toString();
            QRect area = widget->rect();
            const auto *tab = qobject_cast<const MetroTabicon *>(widget);
            const auto *charge = qobject_cast<const AeroLinebar *>(widget);
            if (const auto *tile = qobject_cast<const MetroShelter *>(widget))
                area.setRight(tile->width() - 30);
            else if (tab) {
                // Its name is drawn at the foot.
                text = tab->objectName();
                area.setTop(tab->height() - QFontMetrics(Theme::font(Theme::Small)).height());
                area.adjust(4, 0, -8, -2);
            } else if (charge) {
                text = charge->getText();
                area = textArea(charge);
            } else if (const auto *dial = qobject_cast<const MetroCirclerate *>(widget)) {
                // The middle of the inner disc.
                text = dial->getFormatStr();
                const int half = (dial->getRadius() - dial->getTickness()) * 7 / 10;
                area =
                    QRect(dial->getRadius() - half, dial->getRadius() - half / 3, 2 * half, half);
            }
            const bool written = qobject_cast<const QLabel *>(widget) ||
                                 qobject_cast<const MetroShelter *>(widget) ||
                                 qobject_cast<const MetroCirclerate *>(widget) ||
                                 qobject_cast<const QAbstractButton *>(widget) || charge;
            // A disabled control may be faint.
            if (!written || text.isEmpty() || !widget->isVisible() || !widget->isEnabled() ||
                widget->visibleRegion().isEmpty())
                continue;
            area = area.intersected(widget->visibleRegion().boundingRect())
                       .translated(widget->mapTo(&console.window, QPoint()));
            constexpr double ofText = 4.5;
            constexpr double ofLargeText = 3.0;
            constexpr int large = 24;
            constexpr int largeBold = 19;
            const QFontInfo font(widget->font());
            const bool isLarge = font.pixelSize() >= (widget->font().bold() ? largeBold : large);
            const double measured = textContrast(image, area);
            QVERIFY2(measured >= (isLarge ? ofLargeText : ofText),
                     qPrintable(QStringLiteral("%1: '%2' has %3")
                                    .arg(console.window.pageNames().at(page), text.left(40),
                                         QString::number(measured, 'f', 2))));
            ++texts;
        }
        QVERIFY(texts > 4);
    }
    console.window.chooseDarkTheme(false);
    prepareTestApplication();
}

/// On the smallest screen, beside the drawer and the time left, other things give way.
void ConsoleTest::headlineIsWhole()
{
    Console console;
    console.window.resize(ConsoleWindow::leastSize);
    auto *headline = console.find<ElidedLabel>("headline");
    for (const auto phase : {Scenario::Phase::Normal, Scenario::Phase::OnBattery}) {
        console.seek(phase, 10);
        QVERIFY(console.find<MetroNavdrawer>("drawer")->isVisible());
        QVERIFY2(!headline->isElided(), qPrintable(headline->text()));
    }
}

void ConsoleTest::remembersWhatWasChosen()
{
    QTemporaryDir directory;
    const QString file = directory.filePath(QStringLiteral("console.ini"));
    {
        Console console;
        QSignalSpy notify(&console.window, &ConsoleWindow::notifyChosen);
        console.window.remember(file);
        QCOMPARE(notify.takeLast().at(0).toBool(), true);
        QCOMPARE(console.window.size(), ConsoleWindow::usualSize);
        console.window.resize(1000, 640);
        console.window.showPage(2);
        console.window.chooseDarkTheme(true);
        console.window.chooseNotify(false);
        console.window.close();
    }
    Console console;
    QSignalSpy notify(&console.window, &ConsoleWindow::notifyChosen);
    console.window.remember(file);
    QCOMPARE(console.window.size(), QSize(1000, 640));
    QCOMPARE(console.find<RotateStackedWidget>("pages")->currentIndex(), 2);
    QVERIFY(console.find<MetroTabicon>("Control")->isChecked());
    QVERIFY(console.find<SimpleSlideSwitch>("Dark theme")->isChecked());
    QVERIFY(!console.find<SimpleSlideSwitch>("Notifications")->isChecked());
    QCOMPARE(notify.takeLast().at(0).toBool(), false);
    console.window.chooseDarkTheme(false);

    // What another program wrote does no harm.
    QFile garbage(file);
    QVERIFY(garbage.open(QIODevice::WriteOnly));
    garbage.write("[General]\nsize=@Size(-5 999999999)\npage=nonsense\nnotify=17\n\xff\xfe");
    garbage.close();
    Console other;
    other.window.remember(file);
    QVERIFY(other.window.width() >= ConsoleWindow::leastSize.width());
    QVERIFY(other.window.height() <= 16384);
    prepareTestApplication();
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
    QCOMPARE(files.size(), 2 * window.pageNames().size());
    for (const QString &file : files) {
        const QImage image(QDir(options.directory).filePath(file));
        QCOMPARE(image.size(), QSize(800, 480));
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
