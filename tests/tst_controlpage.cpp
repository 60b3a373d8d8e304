// SPDX-License-Identifier: LicenseRef-all-rights-reserved

#include "consolewindow.h"
#include "controlpage.h"
#include "danger.h"
#include "elidedlabel.h"
#include "feed/nutfeed.h"
#include "holdguard.h"
#include "logindialog.h"
#include "severitylook.h"
#include "sitefeeds.h"

#include "mouse.h"
#include "nutserver.h"
#include "testmain.h"
#include "widgetprobe.h"

#include <aerobutton.h>
#include <aerogroupbox.h>
#include <aeroswitch.h>

#include <QtCore/QElapsedTimer>
#include <QtCore/QPointer>
#include <QtWidgets/QAbstractSpinBox>
#include <QtWidgets/QCheckBox>
#include <QtWidgets/QComboBox>
#include <QtWidgets/QDialogButtonBox>
#include <QtWidgets/QLabel>
#include <QtWidgets/QLineEdit>
#include <QtWidgets/QPushButton>
#include <QtWidgets/QScrollArea>
#include <QtWidgets/QScrollBar>

#include <memory>

namespace {

QString text(const char *utf8)
{
    return QString::fromUtf8(utf8);
}

/// A UPS whose server offers what the test says.
class OfferingFeed : public UpsFeed
{
public:
    void start() override
    {}
    void stop() override
    {}
    void askForOffer() override
    {
        ++asked;
        Q_EMIT offerReady(offer);
    }
    void run(const QString &name, const QString &value) override
    {
        given += name + QLatin1Char(' ') + value;
    }
    void set(const QString &name, const QString &value) override
    {
        given += name + QLatin1Char('=') + value;
    }
    bool needsUser() const override
    {
        return true;
    }
    QString user() const override
    {
        return who;
    }
    CommandServer commandServer() const override
    {
        return server;
    }
    QString userProblem() const override
    {
        return problem;
    }
    void logOut() override
    {
        who.clear();
    }
    void logIn(const QString &user, const QString &password) override
    {
        const bool right = password == QLatin1String("right");
        who = right ? user : QString();
        Q_EMIT userChecked(right ? CommandOutcome::Done : CommandOutcome::Refused,
                           right ? QString() : text("the server refuses this user"));
    }

    Offer offer;
    CommandServer server = {text("nut1.example:3493"), true, false};
    QString problem;
    QString who = text("oper");
    QStringList given;
    int asked = 0;
};

Offer fullOffer()
{
    Offer offer;
    offer.commands = {{text("beeper.disable"), text("Disable the <b>beeper</b>")},
                      {text("load.off"), text("Turn off the load immediately")},
                      {text("test.battery.start"), QString()},
                      {text("shutdown.stop"), text("Stop a shutdown in progress")},
                      {text("FSD"), QString()}};
    OfferedSetting delay;
    delay.name = text("ups.delay.shutdown");
    delay.description = text("Interval to wait after shutdown");
    delay.value = text("20");
    delay.ranges = {{10, 600}};
    OfferedSetting sensitivity;
    sensitivity.name = text("input.sensitivity");
    sensitivity.value = text("medium");
    sensitivity.choices = QStringList{text("low"), text("medium"), text("high")};
    OfferedSetting start;
    start.name = text("ups.start.auto");
    start.value = text("yes");
    start.choices = QStringList{text("no"), text("yes")};
    OfferedSetting id;
    id.name = text("ups.id");
    id.value = text("rack1");
    id.longest = 8;
    OfferedSetting outlet;
    outlet.name = text("outlet.1.switch");
    outlet.value = text("on");
    outlet.choices = QStringList{text("on"), text("off")};
    offer.settings = {delay, sensitivity, start, id, outlet};
    return offer;
}

int pixelsOf(const QImage &image, const QColor &color)
{
    int count = 0;
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x)
            count += image.pixelColor(x, y) == color ? 1 : 0;
    }
    return count;
}

Snapshot online()
{
    Snapshot snapshot;
    snapshot.link = Snapshot::Link::Ok;
    snapshot.name = text("demo");
    snapshot.tokens = StatusToken::OnLine;
    return snapshot;
}

} // namespace

class ControlPageTest : public WidgetTest
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup();
    void offersWhatThereIs();
    void nothingOffered();
    void consequences_data();
    void consequences();
    void harmlessAtOnce();
    void dangerousHeld_data();
    void dangerousHeld();
    void dangerIsReadWhole_data();
    void dangerIsReadWhole();
    void warnedBeforehand_data();
    void warnedBeforehand();
    void fitsAfterAWiderWindow();
    void namesInWords();
    void boxesFollowTheTheme();
    void letGoTooEarly_data();
    void letGoTooEarly();
    void twoPresses();
    void editors();
    void settingsNameTheirVariables();
    void valueThatIsNotPermitted_data();
    void valueThatIsNotPermitted();
    void typedNumberStays_data();
    void typedNumberStays();
    void numberSteps();
    void numberWithoutARange_data();
    void numberWithoutARange();
    void dangerousSetting();
    void editedValueStays();
    void asksForAUser();
    void dangerousAgainAfterTheLogin();
    void dialogSaysWhereThePasswordGoes_data();
    void dialogSaysWhereThePasswordGoes();
    void dialogNamesTheFile();
    void dialogNamesItsFields();
    void logsOut();
    void refusedUserShows();
    void keepsAUserOnlyWhenAsked();
    void outcomesAreSaid_data();
    void outcomesAreSaid();
    void simulatorHasItsOwnGroup();
    void realServer();
    void usersOfAFileAreChecked_data();
    void usersOfAFileAreChecked();

private:
    template <typename T>
    T *find(const char *name) const
    {
        return window->findChild<T *>(QLatin1String(name));
    }
    QString message() const
    {
        return find<QLabel>("message")->text();
    }
    QString note(const char *name) const
    {
        return find<QLabel>((QByteArray("note ") + name).constData())->text();
    }
    /// Replaces the text of an editor, key by key.
    void type(const char *name, const char *keys) const
    {
        auto *editor = find<QWidget>(name);
        QTest::keyClick(editor, Qt::Key_A, Qt::ControlModifier);
        QTest::keyClick(editor, Qt::Key_Delete);
        QTest::keyClicks(editor, text(keys));
    }
    void logIn();
    void show(UpsFeed *shown)
    {
        ups->setFeed(shown);
        ups->take(online());
        window->showPage(int(window->pageNames().indexOf(text("control"))));
        window->show();
        QVERIFY(QTest::qWaitForWindowExposed(window.get()));
        deliverAll();
    }

    std::unique_ptr<SiteModel> site;
    UpsModel *ups = nullptr;
    std::unique_ptr<ConsoleWindow> window;
    std::unique_ptr<OfferingFeed> feed;
    decltype(QTest::createTouchDevice()) finger = QTest::createTouchDevice();
};

void ControlPageTest::init()
{
    site = std::make_unique<SiteModel>();
    ups = site->add(text("demo@host:3493"));
    window = std::make_unique<ConsoleWindow>(site.get());
    window->resize(1000, 900);
    feed = std::make_unique<OfferingFeed>();
    feed->offer = fullOffer();
}

void ControlPageTest::cleanup()
{
    window.reset();
    site.reset();
    feed.reset();
}

void ControlPageTest::offersWhatThereIs()
{
    show(feed.get());
    QVERIFY(feed->asked > 0);
    for (const char *name : {"beeper.disable", "load.off", "test.battery.start", "shutdown.stop"})
        QVERIFY2(find<AeroButton>(name) && find<AeroButton>(name)->isVisible(), name);
    // Never the order to all machines to shut down.
    QVERIFY(!find<QWidget>("FSD"));
    QVERIFY(!find<QWidget>("bypass.start"));
    // The server's words are no markup.
    bool described = false;
    for (const QLabel *label : window->findChildren<QLabel *>()) {
        if (label->text() != text("Disable the <b>beeper</b>"))
            continue;
        described = true;
        QCOMPARE(label->textFormat(), Qt::PlainText);
    }
    QVERIFY(described);
    // What a simulator can do is not offered here.
    QVERIFY(!find<QWidget>("Cut the link")->isVisible());
    QVERIFY(!find<QWidget>("Run on battery")->isVisible());
    // Another UPS has other commands.
    feed->offer = Offer();
    feed->offer.commands = {{text("bypass.start"), QString()}};
    feed->askForOffer();
    deliverAll();
    QVERIFY(find<AeroButton>("bypass.start")->isVisible());
    QTRY_VERIFY(!find<QWidget>("load.off"));
}

void ControlPageTest::nothingOffered()
{
    feed->offer = Offer();
    show(feed.get());
    QVERIFY(find<QLabel>("noCommands")->isVisible());
    for (const AeroButton *button : window->findChildren<AeroButton *>())
        QVERIFY(!button->isVisible());
}

void ControlPageTest::consequences_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QString>("part");
    const auto row = [](const char *name, const char *part) {
        QTest::newRow(name) << text(name) << text(part);
    };
    row("load.off", "output off");
    row("load.off.delay", "output off");
    row("shutdown.return", "UPS down");
    row("shutdown.stayoff", "UPS down");
    row("shutdown.reboot.graceful", "UPS down");
    row("driver.killpower", "UPS down");
    row("outlet.1.load.off", "outlet off");
    row("outlet.2.shutdown.return", "outlet off");
    row("outlet.group.1.load.cycle", "outlet off");
    row("bypass.start", "not protected");
    row("test.battery.start.deep", "on battery");
    row("test.failure.start", "on battery");
    row("calibrate.start", "on battery");
    row("experimental.power_off", "switch off");
    row("shutdown.stop", "");
    row("load.on", "");
    row("bypass.stop", "");
    row("beeper.disable", "");
    row("beeper.off", "");
    row("test.battery.stop", "");
    row("test.panel.start", "");
    row("reset.watchdog", "");
}

void ControlPageTest::consequences()
{
    QFETCH(QString, name);
    QFETCH(QString, part);
    const QString consequence = consequenceOf(name);
    QCOMPARE(consequence.isEmpty(), part.isEmpty());
    QVERIFY2(consequence.contains(part), qPrintable(consequence));
}

void ControlPageTest::harmlessAtOnce()
{
    show(feed.get());
    QTest::mouseClick(find<AeroButton>("beeper.disable"), Qt::LeftButton);
    QCOMPARE(feed->given, QStringList{text("beeper.disable ")});
    QTest::mouseClick(find<AeroButton>("shutdown.stop"), Qt::LeftButton);
    QCOMPARE(feed->given.size(), 2);
}

void ControlPageTest::dangerousHeld_data()
{
    QTest::addColumn<QString>("by");
    for (const char *by : {"mouse", "key", "finger"})
        QTest::newRow(by) << text(by);
}

void ControlPageTest::dangerousHeld()
{
    QFETCH(QString, by);
    show(feed.get());
    auto *button = find<AeroButton>("load.off");
    const QPoint place = button->mapTo(window.get(), button->rect().center());
    QElapsedTimer clock;
    clock.start();
    if (by == QLatin1String("mouse")) {
        QTest::mousePress(button, Qt::LeftButton);
    } else if (by == QLatin1String("key")) {
        button->setFocus();
        QTest::keyPress(button, Qt::Key_Space);
    } else {
        QTest::touchEvent(window->windowHandle(), finger).press(0, place, window->windowHandle());
    }
    QTRY_VERIFY(message().contains(text("loses power")));
    QVERIFY(feed->given.isEmpty());
    QTRY_COMPARE(feed->given, QStringList{text("load.off ")});
    QVERIFY2(clock.elapsed() >= HoldGuard::holdMsecs - 100,
             qPrintable(QString::number(clock.elapsed())));
    // Once, however long it is held; then again.
    if (by == QLatin1String("mouse"))
        QTest::mouseRelease(button, Qt::LeftButton);
    else if (by == QLatin1String("key"))
        QTest::keyRelease(button, Qt::Key_Space);
    else
        QTest::touchEvent(window->windowHandle(), finger).release(0, place, window->windowHandle());
    deliverAll();
    QCOMPARE(feed->given.size(), 1);
}

void ControlPageTest::dangerIsReadWhole_data()
{
    QTest::addColumn<QSize>("size");
    QTest::addColumn<QString>("command");
    QTest::addColumn<QString>("danger");
    const struct
    {
        const char *command;
        const char *danger;
    } rows[] = {
        {"load.off", "Switches the output off: everything that the UPS feeds loses power."},
        {"test.battery.start", "Runs the load on battery: a weak battery drops it."},
        {"set outlet.1.switch", "Switches the outlet: what it feeds may lose power."},
    };
    for (const QSize size : {QSize(480, 320), QSize(800, 480), QSize(1024, 768)}) {
        for (const auto &row : rows)
            QTest::addRow("%s at %dx%d", row.command, size.width(), size.height())
                << size << text(row.command) << text(row.danger);
    }
}

/// Also in a small window, while it is held: and nothing covers the button.
void ControlPageTest::dangerIsReadWhole()
{
    QFETCH(QSize, size);
    QFETCH(QString, command);
    QFETCH(QString, danger);
    window->resize(size);
    show(feed.get());
    find<QCheckBox>("outlet.1.switch")->click();
    auto *button = window->findChild<AeroButton *>(command);
    auto *room = find<QWidget>("control")->findChild<QScrollArea *>();
    for (const bool atTheEnd : {false, true}) {
        // At the upper edge, and as far down as it goes.
        QScrollBar *bar = room->verticalScrollBar();
        const int y = button->mapTo(room->widget(), QPoint()).y();
        bar->setValue(atTheEnd ? y + button->height() - room->viewport()->height() : y);
        deliverAll();
        QTest::mousePress(button, Qt::LeftButton);
        auto *strip = find<ElidedLabel>("message");
        auto *notice = find<ElidedLabel>("notice");
        QVERIFY(strip->isVisible() != notice->isVisible());
        const ElidedLabel *shown = strip->isVisible() ? strip : notice;
        QCOMPARE(shown->text(), text("Keep holding. ") + danger);
        QVERIFY(!shown->isElided());
        QVERIFY2(shown->height() >= shown->minimumSizeHint().height() &&
                     shown->width() >= shown->fontMetrics().averageCharWidth() * 20,
                 qPrintable(QString::number(shown->height())));
        const QRect place(shown->mapTo(window.get(), QPoint()), shown->size());
        QVERIFY(window->rect().contains(place));
        QVERIFY(!place.intersects(QRect(button->mapTo(window.get(), QPoint()), button->size())));
        QTest::mouseRelease(button, Qt::LeftButton);
        QVERIFY(feed->given.isEmpty());
    }
}

void ControlPageTest::warnedBeforehand_data()
{
    QTest::addColumn<QSize>("size");
    for (const QSize size : {QSize(480, 320), QSize(800, 480), QSize(1920, 1080)})
        QTest::addRow("%dx%d", size.width(), size.height()) << size;
}

/// Whatever must be held says beside itself what it will do, before it is pressed.
void ControlPageTest::warnedBeforehand()
{
    QFETCH(QSize, size);
    window->resize(size);
    const auto check = [this](const char *name, const char *danger) {
        const auto *warning = find<QLabel>((QByteArray("warning ") + name).constData());
        QVERIFY2(warning && warning->isVisible(), name);
        QVERIFY2(warning->text().contains(text(danger)), qPrintable(warning->text()));
        QVERIFY(warning->text().contains(text("Hold for two seconds.")));
        QVERIFY(warning->height() >= warning->heightForWidth(warning->width()));
        QCOMPARE(warning->textFormat(), Qt::PlainText);
    };
    show(feed.get());
    check("outlet.1.switch", "Switches the outlet: what it feeds may lose power.");
    QVERIFY(find<AeroButton>("set outlet.1.switch")
                ->accessibleDescription()
                .contains(text("may lose power")));
    QVERIFY(!find<QLabel>("warning ups.start.auto"));

    class SwitchingFeed : public OfferingFeed
    {
    public:
        bool supports(Command) const override
        {
            return true;
        }
    };
    SwitchingFeed switching;
    show(&switching);
    check("Run on battery", "a weak battery drops it");
    check("Bypass", "it is not protected");
    check("Lock", "everything that the UPS feeds loses power");
    QVERIFY(!find<QLabel>("warning Cut the link"));
    ups->setFeed(nullptr);
}

/// A window that becomes small again cuts nothing off at the right, whatever the server offers.
void ControlPageTest::fitsAfterAWiderWindow()
{
    OfferedSetting method;
    method.name = text("battery.charger.method");
    method.value = text("as the maker delivers it");
    method.choices = QStringList{method.value, text("off"), text("economy")};
    feed->offer.settings += method;
    feed->offer.commands += OfferedCommand{text("test.battery.start.deep"), text("Deep test")};
    show(feed.get());
    const auto *room = find<QWidget>("control")->findChild<QScrollArea *>();
    for (const QSize size : {QSize(480, 320), QSize(800, 480), QSize(640, 360), QSize(1920, 1080),
                             QSize(480, 800), QSize(1024, 768)}) {
        window->resize(size);
        deliverAll();
        QCOMPARE(window->size(), size);
        QVERIFY2(room->widget()->width() <= room->viewport()->width(),
                 qPrintable(QStringLiteral("%1 in %2, at %3")
                                .arg(room->widget()->width())
                                .arg(room->viewport()->width())
                                .arg(size.width())));
        const QList<QLabel *> labels = room->widget()->findChildren<QLabel *>();
        for (const QLabel *label : labels) {
            const QRect place(label->mapTo(room->widget(), QPoint()), label->size());
            QVERIFY2(!label->isVisible() || room->widget()->rect().contains(place),
                     qPrintable(label->text()));
        }
    }
}

/// What happens to a command or a setting is told in the words of its label.
void ControlPageTest::namesInWords()
{
    show(feed.get());
    type("ups.delay.shutdown", "30");
    QTest::mouseClick(find<AeroButton>("set ups.delay.shutdown"), Qt::LeftButton);
    QCOMPARE(feed->given, QStringList{text("ups.delay.shutdown=30")});
    QCOMPARE(message(), text("UPS delay shutdown to 30: asked …"));
    CommandResult done;
    done.name = text("ups.delay.shutdown");
    done.value = text("30");
    done.outcome = CommandOutcome::Done;
    Q_EMIT feed->commandFinished(done);
    QCOMPARE(message(), text("UPS delay shutdown: done"));
    QCOMPARE(find<QAbstractSpinBox>("ups.delay.shutdown")->accessibleName(),
             text("UPS delay shutdown"));
    // Its variable stands beside it.
    QCOMPARE(note("ups.delay.shutdown"), text("ups.delay.shutdown  ·  10 to 600"));
}

/// The boxes are light by day and dark at night, and so is what is written in them.
void ControlPageTest::boxesFollowTheTheme()
{
    show(feed.get());
    for (const bool dark : {false, true, false}) {
        window->chooseDarkTheme(dark);
        deliverAll();
        const auto *page = find<QWidget>("control");
        const QImage image = window->grab().toImage();
        const double ratio = image.devicePixelRatio();
        int boxes = 0;
        for (const AeroGroupbox *box : page->findChildren<AeroGroupbox *>()) {
            if (!box->isVisible())
                continue;
            ++boxes;
            const QPoint corner = box->mapTo(window.get(), QPoint(0, 0));
            // Inside, near the left edge, above and below the middle of what is visible.
            for (const int y : {20, 40}) {
                const QColor inside = image.pixelColor(
                    QPoint(int((corner.x() + 8) * ratio), int((corner.y() + y) * ratio)));
                QVERIFY2(dark ? inside.lightness() < 90 : inside.lightness() > 225,
                         qPrintable(inside.name()));
            }
            QCOMPARE(box->getColorTitle().lightness() > 128, dark);
        }
        QVERIFY(boxes >= 2);
        for (const char *name : {"note ups.id", "warning outlet.1.switch", "commandUser"})
            QCOMPARE(find<QLabel>(name)->palette().color(QPalette::WindowText).lightness() > 115,
                     dark);
    }
}

void ControlPageTest::letGoTooEarly_data()
{
    QTest::addColumn<QString>("by");
    for (const char *by : {"release", "leaving", "key", "focus", "disabling", "hiding"})
        QTest::newRow(by) << text(by);
}

void ControlPageTest::letGoTooEarly()
{
    QFETCH(QString, by);
    show(feed.get());
    auto *button = find<AeroButton>("load.off");
    auto *guard = button->findChild<HoldGuard *>();
    int broken = 0;
    connect(guard, &HoldGuard::broken, this, [&broken] { ++broken; });
    button->setFocus();
    if (by == QLatin1String("key"))
        QTest::keyPress(button, Qt::Key_Space);
    else
        QTest::mousePress(button, Qt::LeftButton);
    QTest::qWait(HoldGuard::holdMsecs / 4);
    if (by == QLatin1String("release")) {
        QTest::mouseRelease(button, Qt::LeftButton);
    } else if (by == QLatin1String("leaving")) {
        Mouse::drag(button, {-30, 5});
    } else if (by == QLatin1String("key")) {
        QTest::keyRelease(button, Qt::Key_Space);
    } else if (by == QLatin1String("focus")) {
        QFocusEvent out(QEvent::FocusOut);
        QCoreApplication::sendEvent(button, &out);
    } else if (by == QLatin1String("disabling")) {
        button->setEnabled(false);
    } else {
        button->hide();
    }
    QCOMPARE(broken, 1);
    QTest::qWait(HoldGuard::holdMsecs + 200);
    QVERIFY(feed->given.isEmpty());
}

/// A program that acts for its user cannot hold.
void ControlPageTest::twoPresses()
{
    show(feed.get());
    auto *button = find<AeroButton>("load.off");
    QVERIFY(button->accessibleDescription().contains(text("loses power")));
    button->click();
    QVERIFY(feed->given.isEmpty());
    QVERIFY2(message().contains(text("Press again")), qPrintable(message()));
    button->click();
    QCOMPARE(feed->given, QStringList{text("load.off ")});
    button->click();
    QCOMPARE(feed->given.size(), 1);
}

void ControlPageTest::editors()
{
    show(feed.get());
    auto *delay = find<QAbstractSpinBox>("ups.delay.shutdown");
    auto *set = find<AeroButton>("set ups.delay.shutdown");
    QCOMPARE(delay->text(), text("20"));
    // As a screen reader has them.
    QCOMPARE(delay->property("value").toDouble(), 20.0);
    QCOMPARE(delay->property("minimum").toDouble(), 10.0);
    QCOMPARE(delay->property("maximum").toDouble(), 600.0);
    QVERIFY(!set->isEnabled());
    type("ups.delay.shutdown", "60");
    QVERIFY(set->isEnabled());
    QTest::mouseClick(set, Qt::LeftButton);
    QCOMPARE(feed->given.last(), text("ups.delay.shutdown=60"));
    auto *sensitivity = find<QComboBox>("input.sensitivity");
    QCOMPARE(sensitivity->count(), 3);
    QCOMPARE(sensitivity->currentText(), text("medium"));
    sensitivity->setCurrentText(text("high"));
    QTest::mouseClick(find<AeroButton>("set input.sensitivity"), Qt::LeftButton);
    QCOMPARE(feed->given.last(), text("input.sensitivity=high"));
    auto *start = find<QCheckBox>("ups.start.auto");
    QVERIFY(start->isChecked());
    start->click();
    QTest::mouseClick(find<AeroButton>("set ups.start.auto"), Qt::LeftButton);
    QCOMPARE(feed->given.last(), text("ups.start.auto=no"));
    auto *id = find<QLineEdit>("ups.id");
    QCOMPARE(id->maxLength(), 8);
    id->setText(QString());
    QVERIFY(!find<AeroButton>("set ups.id")->isEnabled());
    id->setText(text("rack 22 and more").left(id->maxLength()));
    QTest::mouseClick(find<AeroButton>("set ups.id"), Qt::LeftButton);
    QCOMPARE(feed->given.last(), text("ups.id=rack 22 "));
    // What is pasted beyond the limit is left out, which the page says.
    QStringList said;
    connect(find<ControlPage>("control"), &ControlPage::said, this,
            [&said](const QString &line) { said += line; });
    id->selectAll();
    id->insert(text("rack 22 and more"));
    QCOMPARE(id->text(), text("rack 22 "));
    QCOMPARE(said.size(), 1);
    QVERIFY2(said.first().endsWith(text(": at most 8 characters")), qPrintable(said.first()));
}

/// A server describes all outlets with the same words.
void ControlPageTest::settingsNameTheirVariables()
{
    feed->offer.settings.clear();
    OfferedSetting outlet;
    outlet.description = text("Outlet <b>switch</b> control");
    outlet.value = text("on");
    outlet.choices = QStringList{text("on"), text("off")};
    const char *names[] = {"outlet.1.switch", "outlet.2.switch"};
    for (const char *name : names) {
        outlet.name = text(name);
        feed->offer.settings += outlet;
    }
    show(feed.get());
    for (const char *name : names) {
        QLabel *named = nullptr;
        QLabel *described = nullptr;
        const auto *editor = find<QCheckBox>(name);
        const int middle = editor->mapTo(window.get(), editor->rect().center()).y();
        for (QLabel *label : window->findChildren<QLabel *>()) {
            if (label->text() == text(name))
                named = label;
            const QWidget *around = label->parentWidget();
            const int above = around->mapTo(window.get(), QPoint(0, 0)).y();
            if (label->text() == outlet.description && above <= middle &&
                middle < above + around->height())
                described = label;
        }
        QVERIFY(named && described);
        // One block, beside the editor.
        QCOMPARE(named->parentWidget(), described->parentWidget());
        QVERIFY(named->isVisible());
        QCOMPARE(named->textFormat(), Qt::PlainText);
        QCOMPARE(described->textFormat(), Qt::PlainText);
    }
}

void ControlPageTest::valueThatIsNotPermitted_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QString>("value");
    QTest::newRow("choice") << "input.sensitivity"
                            << "a & b";
    QTest::newRow("no choice") << "input.sensitivity"
                               << "";
    QTest::newRow("switch") << "ups.start.auto"
                            << "maybe";
    QTest::newRow("below the range") << "ups.delay.shutdown"
                                     << "5";
    QTest::newRow("above the range") << "ups.delay.shutdown"
                                     << "1800";
    QTest::newRow("fraction") << "ups.delay.shutdown"
                              << "20.5";
    QTest::newRow("no number") << "ups.delay.shutdown"
                               << "never";
    QTest::newRow("too long") << "ups.id"
                              << "rack 22 and more";
}

/// The UPS's own value shows as it is, and cannot be set; a permitted one can.
void ControlPageTest::valueThatIsNotPermitted()
{
    QFETCH(QString, name);
    QFETCH(QString, value);
    // When it is asked, and later.
    for (const bool atFirst : {true, false}) {
        feed->offer = fullOffer();
        for (OfferedSetting &setting : feed->offer.settings) {
            if (setting.name == name && atFirst)
                setting.value = value;
        }
        feed->given.clear();
        const QByteArray key = name.toLatin1();
        // Once the editors of the offer before are gone.
        show(feed.get());
        const QPointer<QWidget> before = find<QWidget>(key.constData());
        QVERIFY(before);
        feed->askForOffer();
        QTRY_VERIFY(!before);
        deliverAll();
        if (!atFirst) {
            Snapshot changed = online();
            changed.variables.insert(name, value);
            ups->take(changed);
        }
        auto *set = find<AeroButton>(("set " + key).constData());
        QVERIFY(!set->isEnabled());
        QString wanted;
        if (auto *combo = find<QComboBox>(key.constData())) {
            QCOMPARE(combo->currentText(), value);
            wanted = text("low");
            combo->setCurrentText(wanted);
            QVERIFY(set->isEnabled());
            combo->setCurrentText(value);
            QVERIFY(!set->isEnabled());
            combo->setCurrentText(wanted);
        } else if (auto *check = find<QCheckBox>(key.constData())) {
            QCOMPARE(check->text(), value);
            QCOMPARE(check->checkState(), Qt::PartiallyChecked);
            wanted = text("yes");
            check->click();
            QCOMPARE(check->text(), wanted);
        } else {
            auto *edit = find<QLineEdit>(key.constData());
            if (!edit)
                edit = find<QWidget>(key.constData())->findChild<QLineEdit *>();
            QCOMPARE(edit->text(), value);
            wanted = text("30");
            type(key.constData(), "30");
        }
        QVERIFY(set->isEnabled());
        set->click();
        QCOMPARE(feed->given, QStringList{name + QLatin1Char('=') + wanted});
        // Once the UPS has a permitted value, the other is no choice any more.
        Snapshot set30 = online();
        set30.variables.insert(name, wanted);
        ups->take(set30);
        QVERIFY(!set->isEnabled());
        if (auto *combo = find<QComboBox>(key.constData()))
            QCOMPARE(combo->count(), 3);
    }
}

void ControlPageTest::typedNumberStays_data()
{
    QTest::addColumn<QString>("typed");
    QTest::addColumn<bool>("permitted");
    const auto row = [](const char *typed, bool permitted) {
        QTest::newRow(typed) << text(typed) << permitted;
    };
    row("10", true);
    row("600", true);
    row("9", false);
    row("601", false);
    row("700", false);
    row("-20", false);
    row("99999999999999999999", false);
    row("1e2", false);
    row("nan", false);
    row("3 0", false);
    row("030", false);
    row("", false);
}

void ControlPageTest::typedNumberStays()
{
    QFETCH(QString, typed);
    QFETCH(bool, permitted);
    show(feed.get());
    QVERIFY2(note("ups.delay.shutdown").contains(text("10 to 600")),
             qPrintable(note("ups.delay.shutdown")));
    const auto *delay = find<QAbstractSpinBox>("ups.delay.shutdown");
    auto *set = find<AeroButton>("set ups.delay.shutdown");
    type("ups.delay.shutdown", typed.toLatin1().constData());
    QCOMPARE(delay->text(), typed);
    QCOMPARE(set->isEnabled(), permitted);
    QCOMPARE(note("ups.delay.shutdown").contains(text("only 10 to 600")),
             !permitted && !typed.isEmpty());
    QCOMPARE(delay->accessibleDescription(), note("ups.delay.shutdown"));
    // Nor when it is left.
    find<QLineEdit>("ups.id")->setFocus();
    deliverAll();
    QCOMPARE(delay->text(), typed);
    QTest::mouseClick(set, Qt::LeftButton);
    QCOMPARE(feed->given,
             permitted ? QStringList{text("ups.delay.shutdown=") + typed} : QStringList());
}

void ControlPageTest::numberWithoutARange_data()
{
    QTest::addColumn<QString>("typed");
    QTest::addColumn<bool>("isNumber");
    const auto row = [](const char *typed, bool isNumber) {
        QTest::newRow(typed) << text(typed) << isNumber;
    };
    row("30", true);
    row("030", true);
    row("-2.5", true);
    row("abc", false);
    row("3 0", false);
    row("1e2", false);
    row("nan", false);
    row("2.", false);
    row("0x10", false);
}

/// What a server declares as a number takes nothing else, and a text takes everything.
void ControlPageTest::numberWithoutARange()
{
    QFETCH(QString, typed);
    QFETCH(bool, isNumber);
    OfferedSetting delay;
    delay.name = text("ups.delay.start");
    delay.value = text("5");
    delay.isNumber = true;
    feed->offer.settings += delay;
    show(feed.get());
    QVERIFY2(note("ups.delay.start").endsWith(text("a number")),
             qPrintable(note("ups.delay.start")));
    type("ups.delay.start", typed.toLatin1().constData());
    QCOMPARE(find<QLineEdit>("ups.delay.start")->text(), typed);
    QCOMPARE(find<AeroButton>("set ups.delay.start")->isEnabled(), isNumber);
    QCOMPARE(note("ups.delay.start").endsWith(text("only a number")), !isNumber);
    QCOMPARE(find<QLineEdit>("ups.delay.start")->accessibleDescription(), note("ups.delay.start"));
    type("ups.id", typed.toLatin1().constData());
    QVERIFY(find<AeroButton>("set ups.id")->isEnabled());
    QCOMPARE(note("ups.id"), text("ups.id"));
}

/// Steps stay in the range.
void ControlPageTest::numberSteps()
{
    show(feed.get());
    auto *delay = find<QAbstractSpinBox>("ups.delay.shutdown");
    const auto stepFrom = [&](const char *typed, Qt::Key key) {
        type("ups.delay.shutdown", typed);
        QTest::keyClick(delay, key);
        return delay->text();
    };
    QCOMPARE(stepFrom("20", Qt::Key_Up), text("21"));
    QCOMPARE(stepFrom("20", Qt::Key_Down), text("19"));
    QCOMPARE(stepFrom("20.5", Qt::Key_Up), text("21"));
    QCOMPARE(stepFrom("20.5", Qt::Key_Down), text("20"));
    QCOMPARE(stepFrom("600", Qt::Key_Up), text("600"));
    QCOMPARE(stepFrom("700", Qt::Key_Down), text("600"));
    QCOMPARE(stepFrom("5", Qt::Key_Up), text("10"));
    QCOMPARE(stepFrom("5", Qt::Key_Down), text("5"));
    QCOMPARE(stepFrom("nan", Qt::Key_Up), text("11"));
}

void ControlPageTest::dangerousSetting()
{
    show(feed.get());
    find<QCheckBox>("outlet.1.switch")->click();
    auto *set = find<AeroButton>("set outlet.1.switch");
    QVERIFY(set->isEnabled());
    QTest::mouseClick(set, Qt::LeftButton);
    QVERIFY(feed->given.isEmpty());
    QTest::mousePress(set, Qt::LeftButton);
    QTRY_COMPARE(feed->given, QStringList{text("outlet.1.switch=off")});
}

void ControlPageTest::editedValueStays()
{
    show(feed.get());
    auto *delay = find<QAbstractSpinBox>("ups.delay.shutdown");
    auto *id = find<QLineEdit>("ups.id");
    type("ups.delay.shutdown", "60");
    Snapshot changed = online();
    changed.variables.insert(text("ups.delay.shutdown"), text("30"));
    changed.variables.insert(text("ups.id"), text("other"));
    ups->take(changed);
    QCOMPARE(delay->text(), text("60"));
    QCOMPARE(id->text(), text("other"));
    QVERIFY(!find<AeroButton>("set ups.id")->isEnabled());
    type("ups.delay.shutdown", "30");
    QVERIFY(!find<AeroButton>("set ups.delay.shutdown")->isEnabled());
}

void ControlPageTest::asksForAUser()
{
    feed->who.clear();
    show(feed.get());
    QTest::mouseClick(find<AeroButton>("beeper.disable"), Qt::LeftButton);
    QVERIFY(feed->given.isEmpty());
    auto *dialog = find<LoginDialog>("login");
    QVERIFY(dialog);
    QCOMPARE(dialog->findChild<QLineEdit *>(text("password"))->echoMode(), QLineEdit::Password);
    dialog->findChild<QLineEdit *>(text("user"))->setText(text("oper"));
    auto *password = dialog->findChild<QLineEdit *>(text("password"));
    auto *ok = dialog->findChild<QDialogButtonBox *>()->button(QDialogButtonBox::Ok);
    password->setText(text("wrong"));
    ok->click();
    // It stays, and says why.
    QVERIFY(dialog->isVisible());
    const QString answer = dialog->findChild<QLabel *>(text("answer"))->text();
    QVERIFY2(answer.contains(text("refuses this user")), qPrintable(answer));
    password->setText(text("right"));
    ok->click();
    QTRY_VERIFY(!find<LoginDialog>("login"));
    QVERIFY(find<QLabel>("commandUser")->text().contains(text("oper")));
    // The harmless command that asked for the user goes on.
    QCOMPARE(feed->given, QStringList{text("beeper.disable ")});
    QTest::mouseClick(find<AeroButton>("beeper.disable"), Qt::LeftButton);
    QCOMPARE(feed->given.size(), 2);
}

void ControlPageTest::logIn()
{
    auto *dialog = find<LoginDialog>("login");
    QVERIFY(dialog);
    dialog->findChild<QLineEdit *>(text("user"))->setText(text("oper"));
    dialog->findChild<QLineEdit *>(text("password"))->setText(text("right"));
    dialog->findChild<QDialogButtonBox *>()->button(QDialogButtonBox::Ok)->click();
    QTRY_VERIFY(!find<LoginDialog>("login"));
}

/// A dangerous command is not given some time after its press: its operator presses again.
void ControlPageTest::dangerousAgainAfterTheLogin()
{
    feed->who.clear();
    show(feed.get());
    QTest::mousePress(find<AeroButton>("load.off"), Qt::LeftButton);
    QTRY_VERIFY(find<LoginDialog>("login"));
    QTest::mouseRelease(find<AeroButton>("load.off"), Qt::LeftButton);
    logIn();
    QVERIFY(feed->given.isEmpty());
    QCOMPARE(message(), text("Load off: not given yet. Hold it for two seconds again."));
    QTest::mousePress(find<AeroButton>("load.off"), Qt::LeftButton);
    QTRY_COMPARE(feed->given, QStringList{text("load.off ")});
}

void ControlPageTest::dialogSaysWhereThePasswordGoes_data()
{
    QTest::addColumn<bool>("encrypted");
    QTest::addColumn<bool>("local");
    QTest::addColumn<QString>("words");
    QTest::newRow("encrypted") << true << false << "is encrypted, and its certificate is checked";
    QTest::newRow("open") << false << false << "NOT encrypted";
    QTest::newRow("local") << false << true << "stays on this machine";
}

void ControlPageTest::dialogSaysWhereThePasswordGoes()
{
    QFETCH(bool, encrypted);
    QFETCH(bool, local);
    QFETCH(QString, words);
    feed->server = {text("nut1.example:3493"), encrypted, local};
    show(feed.get());
    QTest::mouseClick(find<AeroButton>("logIn"), Qt::LeftButton);
    const auto *dialog = find<LoginDialog>("login");
    QVERIFY(dialog);
    QCOMPARE(dialog->findChild<QLabel *>(text("place"))->text(),
             text("User for nut1.example:3493"));
    const auto *way = dialog->findChild<QLabel *>(text("way"));
    QVERIFY(way->isVisible());
    QVERIFY2(way->text().contains(words), qPrintable(way->text()));
}

/// The dialog says where a password that is kept will lie.
void ControlPageTest::dialogNamesTheFile()
{
    // Long, and with what would be markup.
    const QString path = text("/home/operator/<b>configuration</b>/of/a/very/long/name/") +
                         QString(80, QLatin1Char('d')) + text("/kivconsole/credentials");
    for (const QString &file : {QString(), path}) {
        window->setCredentialsFile(file);
        show(feed.get());
        QTest::mouseClick(find<AeroButton>("logIn"), Qt::LeftButton);
        auto *dialog = find<LoginDialog>("login");
        const auto *keeps = dialog->findChild<QCheckBox *>(text("keep"));
        QCOMPARE(keeps->isVisible(), !file.isEmpty());
        const auto *place = dialog->findChild<ElidedLabel *>(text("file"));
        QCOMPARE(place != nullptr, !file.isEmpty());
        if (place) {
            QVERIFY(place->isVisible());
            QCOMPARE(place->text(), path);
            QVERIFY(place->isElided());
            QVERIFY(place->toolTip().contains(path.toHtmlEscaped()));
            QVERIFY2(keeps->accessibleDescription().contains(path) &&
                         keeps->accessibleDescription().contains(text("owner")),
                     qPrintable(keeps->accessibleDescription()));
            QVERIFY2(dialog->width() < 700, qPrintable(QString::number(dialog->width())));
        }
        dialog->reject();
        QTRY_VERIFY(!find<LoginDialog>("login"));
    }
}

/// By labels beside them, also for screen readers.
void ControlPageTest::dialogNamesItsFields()
{
    show(feed.get());
    QTest::mouseClick(find<AeroButton>("logIn"), Qt::LeftButton);
    auto *dialog = find<LoginDialog>("login");
    deliverAll();
    for (const char *name : {"user", "password"}) {
        auto *edit = dialog->findChild<QLineEdit *>(QLatin1String(name));
        const QList<QLabel *> labels = dialog->findChildren<QLabel *>();
        const auto label = std::find_if(labels.cbegin(), labels.cend(),
                                        [edit](const QLabel *one) { return one->buddy() == edit; });
        QVERIFY(label != labels.cend());
        QCOMPARE((*label)->text().toLower(), QLatin1String(name));
        const int off = (*label)->geometry().center().y() - edit->geometry().center().y();
        QVERIFY2(std::abs(off) <= 2, qPrintable(QString::number(off)));
    }
    dialog->reject();
}

void ControlPageTest::logsOut()
{
    feed->who.clear();
    show(feed.get());
    auto *out = find<AeroButton>("logOut");
    QVERIFY(!out->isVisible());
    QTest::mouseClick(find<AeroButton>("logIn"), Qt::LeftButton);
    logIn();
    QCOMPARE(message(), text("Logged in as oper."));
    QVERIFY(out->isVisible());
    QCOMPARE(find<QLabel>("commandUser")->text(),
             text("Commands are given as oper to nut1.example:3493."));
    QTest::mouseClick(out, Qt::LeftButton);
    QCOMPARE(message(), text("oper is logged out."));
    QVERIFY(!out->isVisible());
    QVERIFY(find<QLabel>("commandUser")->text().contains(text("Nobody is logged in")));
    QTest::mouseClick(find<AeroButton>("beeper.disable"), Qt::LeftButton);
    QVERIFY(find<LoginDialog>("login"));
    QVERIFY(feed->given.isEmpty());
}

/// A user from a file whom the server refuses shows before anybody gives a command.
void ControlPageTest::refusedUserShows()
{
    show(feed.get());
    feed->who.clear();
    feed->problem = text("oper: the user's password is <b>wrong</b>");
    Q_EMIT feed->userChecked(CommandOutcome::Refused, QString());
    const auto *label = find<QLabel>("commandUser");
    QVERIFY2(label->text().contains(feed->problem), qPrintable(label->text()));
    QCOMPARE(label->textFormat(), Qt::PlainText);
    QTest::mouseClick(find<AeroButton>("logIn"), Qt::LeftButton);
    logIn();
    feed->problem.clear();
    QVERIFY(!label->text().contains(text("wrong")));
}

void ControlPageTest::keepsAUserOnlyWhenAsked()
{
    feed->who.clear();
    show(feed.get());
    QStringList kept;
    connect(window.get(), &ConsoleWindow::keepUser, this,
            [&](const QString &id, const QString &user, const QString &password) {
                kept += id + QLatin1Char('/') + user + QLatin1Char('/') + password;
            });
    for (const bool keep : {false, true}) {
        QTest::mouseClick(find<AeroButton>("logIn"), Qt::LeftButton);
        auto *dialog = find<LoginDialog>("login");
        dialog->findChild<QLineEdit *>(text("user"))->setText(text("oper"));
        dialog->findChild<QLineEdit *>(text("password"))->setText(text("right"));
        auto *keeps = dialog->findChild<QCheckBox *>(text("keep"));
        QVERIFY(!keeps->isChecked());
        keeps->setChecked(keep);
        dialog->findChild<QDialogButtonBox *>()->button(QDialogButtonBox::Ok)->click();
        QTRY_VERIFY(!find<LoginDialog>("login"));
        QCOMPARE(kept.size(), keep ? 1 : 0);
    }
    QCOMPARE(kept.constFirst(), text("demo@host:3493/oper/right"));
}

void ControlPageTest::outcomesAreSaid_data()
{
    QTest::addColumn<int>("outcome");
    QTest::addColumn<QString>("words");
    QTest::addColumn<int>("severity");
    QTest::newRow("done") << int(CommandOutcome::Done) << "Load off: done"
                          << int(Severity::Information);
    QTest::newRow("refused") << int(CommandOutcome::Refused) << "Load off: refused, <i>why</i>"
                             << int(Severity::Warning);
    QTest::newRow("failed") << int(CommandOutcome::Failed) << "Load off: failed, <i>why</i>"
                            << int(Severity::Critical);
    QTest::newRow("unconfirmed") << int(CommandOutcome::Unconfirmed)
                                 << "Load off: not confirmed, <i>why</i>" << int(Severity::Unknown);
}

void ControlPageTest::outcomesAreSaid()
{
    QFETCH(int, outcome);
    QFETCH(QString, words);
    QFETCH(int, severity);
    show(feed.get());
    QVector<CommandRecord> records;
    connect(site.get(), &SiteModel::commandFinished, this,
            [&](UpsModel *, const CommandRecord &record) { records += record; });
    ups->run(text("load.off"));
    QCOMPARE(message(), text("Load off: asked …"));
    QCOMPARE(ups->commandsUnderWay(), 1);
    const auto *strip = find<QWidget>("message");
    const auto *notice = find<QWidget>("notice");
    const auto imageOf = [](const QWidget *label) {
        return const_cast<QWidget *>(label)->grab().toImage();
    };
    const SeverityLook look = lookOf(Severity(severity), true);
    QCOMPARE(pixelsOf(imageOf(strip), look.plate), 0);
    const bool done = outcome == int(CommandOutcome::Done);
    const CommandResult result = {text("load.off"), QString(), text("oper"),
                                  CommandOutcome(outcome), done ? QString() : text("<i>why</i>")};
    Q_EMIT feed->commandFinished(result);
    // In the colours of its severity, and with its sign: on the strip, and where that has too
    // little room.
    const QSize usual = window->size();
    for (const bool dark : {false, true}) {
        window->chooseDarkTheme(dark);
        for (const QSize size : {QSize(1280, 800), QSize(480, 320)}) {
            window->resize(size);
            deliverAll();
            const QWidget *shown = strip->isVisible() ? strip : notice;
            QVERIFY(shown->isVisible());
            const QImage image = imageOf(shown);
            QVERIFY(pixelsOf(image, look.plate) > 300);
            QVERIFY(pixelsOf(image, look.ink) > 10);
        }
    }
    window->resize(usual);
    deliverAll();
    QCOMPARE(message(), words);
    QCOMPARE(find<QLabel>("message")->textFormat(), Qt::PlainText);
    QCOMPARE(ups->commandsUnderWay(), 0);
    QCOMPARE(records.size(), 1);
    QCOMPARE(records.first().user, text("oper"));
    QCOMPARE(records.first().ups, ups->id());
}

void ControlPageTest::simulatorHasItsOwnGroup()
{
    class SwitchingFeed : public OfferingFeed
    {
    public:
        bool supports(Command command) const override
        {
            return command == Command::GoToBypass || command == Command::ReturnToMains;
        }
        bool needsUser() const override
        {
            return false;
        }
    };
    SwitchingFeed switching;
    show(&switching);
    QVERIFY(find<AeroSwitch>("Bypass")->isVisible());
    QVERIFY(!find<AeroSwitch>("Cut the link")->isVisible());
    QVERIFY(find<AeroSwitch>("Cut the link")->parentWidget() !=
            find<AeroSwitch>("Bypass")->parentWidget());
    ups->setFeed(nullptr);
}

/// From the button to the UPS and back to the screen.
void ControlPageTest::realServer()
{
    NutServer server;
    server.useDriver(QStringLiteral(KIV_UPS_DRIVER));
    QVERIFY(server.writeUsers("[oper]\n  password = secret\n  actions = SET\n  instcmds = ALL\n"));
    QVERIFY2(server.start(), qPrintable(server.problem()));
    NutFeed real({text("demo"), text("127.0.0.1"), server.port()});
    ups->setFeed(&real);
    real.start();
    window->showPage(int(window->pageNames().indexOf(text("control"))));
    window->show();
    QVERIFY(QTest::qWaitForWindowExposed(window.get()));
    QTRY_VERIFY(find<AeroButton>("load.off"));
    ups->logIn(text("oper"), text("secret"));
    deliverAll();
    QTest::mousePress(find<AeroButton>("load.off"), Qt::LeftButton);
    QTRY_COMPARE(message(), text("Load off: done"));
    QTRY_COMPARE(ups->headline().state, text("Output off"));
    ups->run(text("test.failure.start"));
    QTRY_VERIFY(message().contains(text("failed")));
    ups->setFeed(nullptr);
}

void ControlPageTest::usersOfAFileAreChecked_data()
{
    QTest::addColumn<QString>("password");
    QTest::addColumn<bool>("right");
    QTest::newRow("right") << "secret" << true;
    QTest::newRow("wrong") << "other" << false;
}

/// At the connection, without a command; the values are read whatever comes of it.
void ControlPageTest::usersOfAFileAreChecked()
{
    QFETCH(QString, password);
    QFETCH(bool, right);
    NutServer server;
    server.useDriver(QStringLiteral(KIV_UPS_DRIVER));
    QVERIFY(server.writeUsers("[oper]\n  password = secret\n  actions = SET\n  instcmds = ALL\n"));
    QVERIFY2(server.start(), qPrintable(server.problem()));
    ServerEntry entry;
    entry.host = {text("127.0.0.1"), server.port()};
    entry.upses.append({text("demo"), {}, {}, {}});
    SiteEntries entries;
    entries.servers.append(entry);
    SiteModel real;
    SiteFeeds feeds(&real);
    QString error;
    QVERIFY2(feeds.add(entries, {{entry.host, text("oper"), password}}, &error), qPrintable(error));
    window = std::make_unique<ConsoleWindow>(&real);
    window->showPage(int(window->pageNames().indexOf(text("control"))));
    window->show();
    int checked = 0;
    connect(real.at(0), &UpsModel::userChecked, this, [&checked] { ++checked; });
    feeds.start();
    QTRY_COMPARE(checked, 1);
    QTRY_COMPARE(real.at(0)->headline().state, text("On line"));
    QTRY_VERIFY(find<QLabel>("commandUser"));
    const QString shown = find<QLabel>("commandUser")->text();
    const QString why = text("the user's name, password or rights are wrong");
    if (right) {
        QVERIFY2(shown.contains(text("given as oper")), qPrintable(shown));
        QVERIFY(real.problems().isEmpty());
    } else {
        QVERIFY2(shown.contains(why), qPrintable(shown));
        QVERIFY(real.at(0)->user().isEmpty());
        QCOMPARE(real.problems().value(text("oper@") + entry.host.toString()).text, why);
        QVERIFY2(message().contains(why), qPrintable(message()));
        real.at(0)->logIn(text("oper"), text("secret"));
        QTRY_COMPARE(checked, 2);
        QVERIFY(real.problems().isEmpty());
    }
    // Whoever tries another user in vain changes nothing.
    const int before = checked;
    real.at(0)->logIn(text("other"), text("guessed"));
    QTRY_COMPARE(checked, before + 1);
    QCOMPARE(real.at(0)->user(), text("oper"));
    QVERIFY(real.problems().isEmpty());
    // Nothing came to the driver.
    QCOMPARE(server.handed(), QByteArrayList());
    window.reset();
}

KIV_TEST_MAIN(ControlPageTest)

#include "tst_controlpage.moc"
