// SPDX-License-Identifier: LicenseRef-all-rights-reserved

#include "chart.h"
#include "consolewindow.h"
#include "elidedlabel.h"
#include "eventlist.h"
#include "eventspage.h"
#include "feed/scenario.h"
#include "gaugeroom.h"
#include "severitylook.h"
#include "theme.h"
#include "trendspage.h"

#include "testmain.h"
#include "watchedsite.h"
#include "widgetprobe.h"

#include <metrotabicon.h>

#include <QtCore/QDir>
#include <QtCore/QElapsedTimer>
#include <QtCore/QTemporaryDir>
#include <QtWidgets/QApplication>
#include <QtWidgets/QComboBox>
#include <QtWidgets/QLineEdit>
#include <QtWidgets/QListView>
#include <QtWidgets/QPushButton>
#include <QtWidgets/QScrollBar>

namespace {

constexpr qint64 start = WatchedSite::start;

/// A site on which the scenario was played, and the console's window on it.
struct PlayedSite : WatchedSite
{
    explicit PlayedSite(int seconds = 0, int step = 5)
    {
        QApplication::setPalette(Theme::palette(false));
        time = QDateTime::currentMSecsSinceEpoch() - seconds * secondMsecs;
        for (int i = 0; i < seconds; i += step)
            pass(Scenario::snapshotAt(i), step, step);
        if (seconds == 0)
            ups->take(Scenario::snapshotAt(Scenario::startOf(Scenario::Phase::Normal) + 5));
        window = std::make_unique<ConsoleWindow>(&site);
        window->setHistory(history.get());
        window->show();
        deliverAll();
    }
    ~PlayedSite()
    {
        window.reset();
        prepareTestApplication();
    }
    PlayedSite(const PlayedSite &) = delete;
    PlayedSite &operator=(const PlayedSite &) = delete;

    template <typename W>
    W *find(const char *name) const
    {
        return window->findChild<W *>(QLatin1String(name));
    }
    void showPage(const char *name)
    {
        window->showPage(int(window->pageNames().indexOf(QLatin1String(name))));
        deliverAll();
    }
    EventList *list() const
    {
        return window->findChild<EventList *>();
    }
    /// Adds an event that is over.
    void happen(const QString &text, Severity severity, qint64 at)
    {
        EventChange change;
        change.what = EventChange::What::Moment;
        change.ups = ups->id();
        change.condition = text;
        change.text = text;
        change.severity = severity;
        change.at = at;
        history->addEvents({change});
    }

    std::unique_ptr<ConsoleWindow> window;
};

QStringList textsOf(const EventList *list)
{
    QStringList texts;
    for (int row = 0; row < list->rowCount(); ++row)
        texts.append(list->at(row).text);
    return texts;
}

} // namespace

class HistoryPagesTest : public WidgetTest
{
    Q_OBJECT

private Q_SLOTS:
    void presentOnTopUntilAcknowledged();
    void worstOfASecondFirst();
    void leftUpsesAreNotPresent();
    void serversArePresent();
    void leftServersAreNoUpses();
    void outcomesLookDifferent();
    void acknowledgesOne();
    void acknowledgesAll();
    void needsAName();
    void filters();
    void countsOnTheTab();
    void exportsWhatIsListed();
    void readerCannotAcknowledge();
    void withoutHistory();
    void noticeLeavesTheButtons();
    void statusIsWhole_data();
    void statusIsWhole();
    void tenThousandEventsScroll();
    void hostileTexts();
    void trendsFollowThePeriod();
    void trendsShowWhatIsChosen();
    void trendsAreExported();
    void curvesBesideTheDials();
    void images();
};

void HistoryPagesTest::presentOnTopUntilAcknowledged()
{
    PlayedSite played;
    const qint64 now = QDateTime::currentMSecsSinceEpoch();
    played.happen(QStringLiteral("later"), Severity::Warning, now + hourMsecs);
    Snapshot snapshot = played.ups->snapshot();
    snapshot.tokens |= StatusToken::ReplaceBattery;
    played.time = now;
    played.ups->take(snapshot);
    played.happen(QStringLiteral("earlier"), Severity::Warning, now - hourMsecs);
    QTRY_COMPARE(played.list()->rowCount(), 3);
    QCOMPARE(textsOf(played.list()),
             (QStringList{QStringLiteral("Replace the battery"), QStringLiteral("later"),
                          QStringLiteral("earlier")}));
    played.history->acknowledge({played.list()->at(0).id}, QStringLiteral("Ann"), now);
    QTRY_COMPARE(textsOf(played.list()),
                 (QStringList{QStringLiteral("later"), QStringLiteral("Replace the battery"),
                              QStringLiteral("earlier")}));
}

/// What begins within one second is read with the worst first, in whatever order it came: a file
/// that is read, and the list that follows.
void HistoryPagesTest::worstOfASecondFirst()
{
    PlayedSite played;
    played.showPage("events");
    const auto add = [&](const char *text, Severity severity, qint64 at) {
        played.happen(QLatin1String(text), severity, start + at);
    };
    add("critical first", Severity::Critical, 5000);
    add("warning after it", Severity::Warning, 5400);
    add("note after it", Severity::Information, 5900);
    add("next second", Severity::Information, 6000);
    add("warning before", Severity::Warning, 4000);
    add("critical after it", Severity::Critical, 4800);
    add("equal", Severity::Critical, 5300);
    const QString wanted = QStringLiteral("next second|equal|critical first|warning after it|"
                                          "note after it|critical after it|warning before");
    QTRY_COMPARE(textsOf(played.list()).join(QLatin1Char('|')), wanted);
    // Read again.
    auto *filter = played.find<QLineEdit>("text filter");
    filter->setText(QStringLiteral("nothing like it"));
    QTRY_COMPARE(played.list()->rowCount(), 0);
    filter->clear();
    QTRY_COMPARE(textsOf(played.list()).join(QLatin1Char('|')), wanted);
}

/// Of a UPS that the console does not follow any more, nobody knows whether its events last.
void HistoryPagesTest::leftUpsesAreNotPresent()
{
    PlayedSite played;
    played.showPage("events");
    EventChange change;
    change.ups = QStringLiteral("old@host:3493");
    change.condition = change.text = QStringLiteral("On battery");
    change.severity = Severity::Warning;
    change.at = start;
    played.history->addEvents({change});
    QTRY_COMPARE(played.list()->rowCount(), 1);
    const auto line = [&] { return played.list()->data(played.list()->index(0)).toString(); };
    QVERIFY2(line().contains(QStringLiteral("not followed")), qPrintable(line()));
    QVERIFY(!line().contains(QStringLiteral("since")));
    auto *view = played.find<QListView>("events list");
    const QColor plate = lookOf(Severity::Warning, Theme::isDark()).plate;
    const auto plateOf = [&] {
        // At the right end of the first line.
        const QRect row = view->visualRect(view->model()->index(0, 0));
        const QImage image = view->viewport()->grab().toImage();
        int count = 0;
        for (int x = row.right() - row.width() / 4; x < row.right(); ++x)
            count += image.pixelColor(x, row.top() + row.height() / 4) == plate ? 1 : 0;
        return count;
    };
    QCOMPARE(plateOf(), 0);
    // Its server names it after all.
    played.site.add(change.ups);
    QTRY_VERIFY(line().contains(QStringLiteral("since")));
    QVERIFY(plateOf() > 10);
}

/// A server that is lost with its UPSes is followed as they are.
void HistoryPagesTest::serversArePresent()
{
    PlayedSite played;
    played.showPage("events");
    EventChange change;
    change.ups = QStringLiteral("Prometheus hall");
    change.kind = EventKind::Communication;
    change.condition = Event::serverSilence;
    change.text = QStringLiteral("20 UPSes without communication: connection refused");
    change.at = start;
    played.site.addServer(change.ups);
    played.history->addEvents({change});
    QTRY_COMPARE(played.list()->rowCount(), 1);
    const QString line = played.list()->data(played.list()->index(0)).toString();
    QVERIFY2(line.contains(change.text) && line.contains(change.ups), qPrintable(line));
    QVERIFY2(line.contains(QStringLiteral("since")), qPrintable(line));
}

/// An event of a server is none of a UPS, also where the console follows another one.
void HistoryPagesTest::leftServersAreNoUpses()
{
    PlayedSite played;
    SiteModel elsewhere;
    const Recorder recorder(&elsewhere, played.history.get());
    elsewhere.missServer(QStringLiteral("other:3493"), QStringLiteral("refused"));
    played.showPage("events");
    QTRY_COMPARE(played.list()->rowCount(), 1);
    const auto line = [&] { return played.list()->data(played.list()->index(0)).toString(); };
    QVERIFY2(line().contains(QStringLiteral("the server is not followed here, other:3493")),
             qPrintable(line()));
    played.site.addServer(QStringLiteral("other:3493"), QStringLiteral("rack-a (other:3493)"));
    QVERIFY2(!line().contains(QStringLiteral("not followed")), qPrintable(line()));
    QVERIFY2(line().contains(QStringLiteral("since")), qPrintable(line()));
    QVERIFY2(line().contains(QStringLiteral(", rack-a (other:3493), ")), qPrintable(line()));
}

/// How a command ended is seen without reading, by day and by night.
void HistoryPagesTest::outcomesLookDifferent()
{
    PlayedSite played;
    played.showPage("events");
    for (const CommandOutcome outcome : {CommandOutcome::Done, CommandOutcome::Refused,
                                         CommandOutcome::Failed, CommandOutcome::Unconfirmed})
        played.ups->finishCommand(
            {QStringLiteral("load.off"), QString(), QStringLiteral("oper"), outcome, QString()});
    QTRY_COMPARE(played.list()->rowCount(), 4);
    auto *view = played.find<QListView>("events list");
    for (const bool dark : {false, true}) {
        played.window->chooseDarkTheme(dark);
        deliverAll();
        const QImage image = view->viewport()->grab().toImage();
        QVector<QImage> signs;
        for (int row = 0; row < 4; ++row) {
            const QRect place = view->visualRect(view->model()->index(row, 0));
            signs.append(
                image.copy(QRect(place.topLeft(), QSize(place.height(), place.height() - 2))));
        }
        for (int i = 0; i < 4; ++i) {
            for (int k = 0; k < i; ++k)
                QVERIFY(signs.at(i) != signs.at(k));
        }
    }
    // A screen reader says it too.
    QStringList names;
    for (int row = 0; row < 4; ++row)
        names += played.list()
                     ->data(played.list()->index(row))
                     .toString()
                     .section(QLatin1Char(','), 0, 0);
    names.sort();
    QCOMPARE(names.join(QLatin1Char('|')),
             QStringLiteral("Critical|Information|Not confirmed|Warning"));
}

void HistoryPagesTest::acknowledgesOne()
{
    PlayedSite played;
    played.showPage("events");
    played.happen(QStringLiteral("one"), Severity::Warning, start);
    played.happen(QStringLiteral("two"), Severity::Warning, start + 1);
    QTRY_COMPARE(played.list()->rowCount(), 2);
    auto *button = played.find<QPushButton>("acknowledge");
    QVERIFY(!button->isEnabled()); // nothing is chosen
    auto *view = played.find<QListView>("events list");
    played.find<QLineEdit>("user")->setText(QStringLiteral("Ann"));
    QTest::mouseClick(view->viewport(), Qt::LeftButton, Qt::NoModifier,
                      view->visualRect(view->model()->index(1, 0)).center());
    QVERIFY(button->isEnabled());
    QTest::mouseClick(button, Qt::LeftButton);
    // Only what is on the disk is shown as acknowledged.
    QVERIFY(!played.list()->at(1).isAcknowledged());
    QTRY_VERIFY(played.list()->at(1).isAcknowledged());
    QCOMPARE(played.list()->at(1).acknowledgedBy, QStringLiteral("Ann"));
    QVERIFY(!played.list()->at(0).isAcknowledged());
    QVERIFY(!button->isEnabled());
    // By keyboard.
    view->setFocus();
    QTest::keyClick(view, Qt::Key_Up);
    QTest::keyClick(view, Qt::Key_Return);
    QTRY_VERIFY(played.list()->at(0).isAcknowledged());
}

void HistoryPagesTest::acknowledgesAll()
{
    PlayedSite played;
    played.showPage("events");
    auto *button = played.find<QPushButton>("acknowledge all");
    QVERIFY(!button->isEnabled());
    for (int i = 0; i < 5; ++i)
        played.happen(QString::number(i), Severity::Information, start + i);
    QTRY_COMPARE(played.list()->rowCount(), 5);
    QTRY_VERIFY(button->isEnabled());
    // Also what the filter hides.
    played.find<QLineEdit>("text filter")->setText(QStringLiteral("3"));
    QTRY_COMPARE(played.list()->rowCount(), 1);
    QTest::mouseClick(button, Qt::LeftButton);
    QTRY_VERIFY(!button->isEnabled());
    for (const Event &event : played.events())
        QVERIFY(event.isAcknowledged());
}

void HistoryPagesTest::needsAName()
{
    PlayedSite played;
    played.showPage("events");
    played.happen(QStringLiteral("one"), Severity::Warning, start);
    auto *button = played.find<QPushButton>("acknowledge all");
    QTRY_VERIFY(button->isEnabled() || played.find<QLineEdit>("user")->text().isEmpty());
    played.find<QLineEdit>("user")->setText(QStringLiteral("  "));
    QVERIFY(!button->isEnabled());
    played.find<QLineEdit>("user")->setText(QStringLiteral("Ann"));
    QVERIFY(button->isEnabled());
}

void HistoryPagesTest::filters()
{
    PlayedSite played;
    played.showPage("events");
    const qint64 now = QDateTime::currentMSecsSinceEpoch();
    played.happen(QStringLiteral("calm"), Severity::Information, now);
    played.happen(QStringLiteral("warm"), Severity::Warning, now - 2 * hourMsecs);
    played.happen(QStringLiteral("hot"), Severity::Critical, now - 3 * dayMsecs);
    QTRY_COMPARE(played.list()->rowCount(), 3);
    const auto listed = [&] { return textsOf(played.list()).join(QLatin1Char(' ')); };
    auto *severity = played.find<QComboBox>("severity filter");
    severity->setCurrentIndex(1);
    QTRY_COMPARE(listed(), QStringLiteral("warm hot"));
    severity->setCurrentIndex(2);
    QTRY_COMPARE(listed(), QStringLiteral("hot"));
    severity->setCurrentIndex(0);
    auto *period = played.find<QComboBox>("period filter");
    period->setCurrentIndex(1);
    QTRY_COMPARE(listed(), QStringLiteral("calm"));
    period->setCurrentIndex(2);
    QTRY_COMPARE(listed(), QStringLiteral("calm warm"));
    period->setCurrentIndex(0);
    auto *search = played.find<QLineEdit>("text filter");
    search->setText(QStringLiteral("ALM"));
    QTRY_COMPARE(listed(), QStringLiteral("calm"));
    // What happens now is filtered, too.
    played.happen(QStringLiteral("another"), Severity::Critical, now);
    played.happen(QStringLiteral("almost"), Severity::Critical, now + 1);
    QTRY_COMPARE(listed(), QStringLiteral("almost calm"));
    search->clear();
    QTRY_COMPARE(played.list()->rowCount(), 5);
    // With one UPS there is nothing to choose.
    auto *ups = played.find<QComboBox>("ups filter");
    QVERIFY(!ups->isVisible());
    played.site.add(QStringLiteral("second"));
    QTRY_VERIFY(ups->isVisible());
    ups->setCurrentIndex(2);
    QTRY_COMPARE(played.list()->rowCount(), 0);
}

void HistoryPagesTest::countsOnTheTab()
{
    PlayedSite played;
    auto *tab = played.find<MetroTabicon>("Events");
    const QImage calm = tab->grab().toImage();
    QCOMPARE(tab->accessibleName(), QStringLiteral("Events"));
    played.happen(QStringLiteral("calm"), Severity::Information, start);
    played.happen(QStringLiteral("warm"), Severity::Warning, start);
    played.happen(QStringLiteral("hot"), Severity::Critical, start);
    QTRY_COMPARE(tab->accessibleName(), QStringLiteral("Events, 2 not acknowledged"));
    deliverAll();
    QVERIFY(tab->grab().toImage() != calm);
    played.history->acknowledgeAll(QStringLiteral("Ann"), start);
    QTRY_COMPARE(tab->accessibleName(), QStringLiteral("Events"));
    deliverAll();
    QVERIFY(tab->grab().toImage() == calm);
}

void HistoryPagesTest::exportsWhatIsListed()
{
    const QTemporaryDir place;
    PlayedSite played;
    played.showPage("events");
    played.happen(QStringLiteral("one"), Severity::Warning, start);
    played.happen(QStringLiteral("two"), Severity::Critical, start);
    played.find<QComboBox>("severity filter")->setCurrentIndex(2);
    QTRY_COMPARE(played.list()->rowCount(), 1);
    const QString file = place.filePath(QStringLiteral("events.csv"));
    played.window->findChild<EventsPage *>()->exportTo(file);
    QTRY_VERIFY(played.find<QLabel>("events status")->text().contains(QLatin1String("Written")));
    QFile in(file);
    QVERIFY(in.open(QIODevice::ReadOnly));
    const QByteArray text = in.readAll();
    QVERIFY(text.contains("two"));
    QVERIFY(!text.contains("one"));
}

void HistoryPagesTest::readerCannotAcknowledge()
{
    const QTemporaryDir place;
    const QString directory = place.filePath(QStringLiteral("kivconsole"));
    WatchedSite first(directory);
    QVERIFY(first.waitFor(HistoryStatus::State::Kept));
    first.pass(Scenario::snapshotAt(Scenario::startOf(Scenario::Phase::OnBattery) + 3));
    QCOMPARE(first.events().size() > 0, true);
    WatchedSite second(directory);
    ConsoleWindow window(&second.site);
    window.setHistory(second.history.get());
    QVERIFY(second.waitFor(HistoryStatus::State::Read));
    QTRY_VERIFY(window.findChild<EventList *>()->rowCount() > 0);
    QVERIFY(!window.findChild<QPushButton *>(QStringLiteral("acknowledge all"))->isEnabled());
    QVERIFY(window.findChild<QLabel *>(QStringLiteral("events status"))
                ->text()
                .contains(QLatin1String("Another console")));
}

void HistoryPagesTest::withoutHistory()
{
    PlayedSite played;
    played.happen(QStringLiteral("one"), Severity::Warning, start);
    QTRY_COMPARE(played.list()->rowCount(), 1);
    played.window->setHistory(nullptr);
    QCOMPARE(played.list()->rowCount(), 0);
    QVERIFY(!played.find<QPushButton>("acknowledge all")->isEnabled());
    QVERIFY(!played.find<QPushButton>("export events")->isEnabled());
    // The list says so, and nothing else.
    QCOMPARE(played.find<QListView>("events list")->accessibleDescription(),
             QStringLiteral("Screenshots show no history"));
    QCOMPARE(played.find<QLabel>("events status")->text(), QString());
    QCOMPARE(played.find<MetroTabicon>("Events")->accessibleName(), QStringLiteral("Events"));
}

/// A long message is above the page, and its buttons and filters are still to be pressed.
void HistoryPagesTest::noticeLeavesTheButtons()
{
    PlayedSite played;
    played.happen(QStringLiteral("one"), Severity::Warning, start);
    QTRY_COMPARE(played.list()->rowCount(), 1);
    played.window->resize(800, 480);
    played.showPage("events");
    played.find<QListView>("events list")->setCurrentIndex(played.list()->index(0));
    played.window->say(QString(150, QLatin1Char('w')));
    const auto *notice = played.find<QLabel>("notice");
    QVERIFY(notice->isVisible());
    for (const char *name : {"acknowledge", "acknowledge all", "export events", "user",
                             "severity filter", "period filter", "text filter"}) {
        const auto *control = played.find<QWidget>(name);
        QVERIFY2(control->isVisible() && control->isEnabled(), name);
        const QRect place(control->mapTo(played.window.get(), QPoint()), control->size());
        QVERIFY2(!place.intersects(notice->geometry()), name);
    }
    // Nor the latest events.
    const auto *view = played.find<QListView>("events list");
    QVERIFY(notice->y() > view->mapTo(played.window.get(), view->rect().center()).y());
}

void HistoryPagesTest::statusIsWhole_data()
{
    QTest::addColumn<QSize>("size");
    for (const QSize size : {QSize(480, 320), QSize(640, 480), QSize(800, 480), QSize(1280, 800)})
        QTest::addRow("%dx%d", size.width(), size.height()) << size;
}

/// What the page says of its history is to be read, also on the smallest window.
void HistoryPagesTest::statusIsWhole()
{
    QFETCH(QSize, size);
    const QTemporaryDir place;
    History writer(place.path());
    QTRY_COMPARE(int(writer.status().state), int(HistoryStatus::State::Kept));
    History reader(place.path());
    QTRY_COMPARE(int(reader.status().state), int(HistoryStatus::State::Read));
    PlayedSite played;
    played.happen(QStringLiteral("one"), Severity::Warning, start);
    QTRY_COMPARE(played.list()->rowCount(), 1);
    played.window->resize(size);
    played.showPage("events");
    auto *status = played.find<ElidedLabel>("events status");
    QVERIFY2(status->text().startsWith(QLatin1String("1 event ")) &&
                 status->text().endsWith(QLatin1String(" until the console ends")),
             qPrintable(status->text()));
    QVERIFY2(!status->isElided(), qPrintable(QString::number(status->width())));
    played.window->setHistory(&reader);
    deliverAll();
    QVERIFY2(status->text().contains(QLatin1String("Another console")), qPrintable(status->text()));
    QVERIFY2(!status->isElided(), qPrintable(QString::number(status->width())));
    QVERIFY(status->height() >= status->minimumSizeHint().height());
    // Wide again, it is beside the buttons again.
    played.window->resize(1000, 700);
    deliverAll();
    QCOMPARE(status->parentWidget(), played.find<QPushButton>("acknowledge")->parentWidget());
    played.window->setHistory(nullptr);
}

void HistoryPagesTest::tenThousandEventsScroll()
{
    PlayedSite played;
    played.showPage("events");
    QVector<EventChange> changes;
    for (int i = 0; i < 10000; ++i) {
        EventChange change;
        change.what = EventChange::What::Moment;
        change.ups = played.ups->id();
        change.text = QStringLiteral("event %1").arg(i);
        change.at = start + i;
        changes.append(change);
    }
    played.window->setHistory(nullptr);
    played.history->addEvents(changes);
    played.window->setHistory(played.history.get());
    QTRY_COMPARE_WITH_TIMEOUT(played.list()->rowCount(), 10000, 60000);
    auto *view = played.find<QListView>("events list");
    // No widgets, and only the rows that are seen are painted.
    const int children = int(view->findChildren<QWidget *>().size());
    QTRY_VERIFY2(view->verticalScrollBar()->maximum() > 10000 * 40,
                 qPrintable(QString::number(view->verticalScrollBar()->maximum())));
    view->scrollToBottom();
    deliverAll();
    QCOMPARE(int(view->findChildren<QWidget *>().size()), children);
    QCOMPARE(played.list()->at(9999).text, QStringLiteral("event 0"));
    // One more is put into its place without a reset.
    int resets = 0;
    connect(played.list(), &QAbstractItemModel::modelReset, this, [&] { ++resets; });
    played.happen(QStringLiteral("newest"), Severity::Warning, start + dayMsecs);
    QTRY_COMPARE(played.list()->rowCount(), 10001);
    QCOMPARE(played.list()->at(0).text, QStringLiteral("newest"));
    QCOMPARE(resets, 0);
    // All of them at once are read anew.
    played.history->acknowledgeAll(QStringLiteral("Ann"), start + dayMsecs);
    QTRY_VERIFY_WITH_TIMEOUT(played.list()->at(10000).isAcknowledged(), 60000);
    QVERIFY(played.list()->at(0).isAcknowledged());
    QCOMPARE(resets, 1);
}

void HistoryPagesTest::hostileTexts()
{
    PlayedSite played;
    played.showPage("events");
    played.happen(QStringLiteral("<b>bold</b>\n%1 & =1+1") + QString(2000, QLatin1Char('W')),
                  Severity::Critical, start);
    QTRY_COMPARE(played.list()->rowCount(), 1);
    deliverAll();
    QVERIFY(played.list()->at(0).text.size() <= 500);
    QCOMPARE(played.window->grab().isNull(), false);
}

void HistoryPagesTest::trendsFollowThePeriod()
{
    PlayedSite played(300);
    played.showPage("trends");
    auto *chart = played.window->findChild<Chart *>();
    const struct
    {
        const char *name;
        qint64 length;
    } periods[] = {{"10 min", 10 * minuteMsecs},
                   {"1 h", hourMsecs},
                   {"24 h", dayMsecs},
                   {"7 d", 7 * dayMsecs},
                   {"30 d", 30 * dayMsecs}};
    for (const auto &period : periods) {
        auto *button = played.find<QPushButton>(period.name);
        QTest::mouseClick(button, Qt::LeftButton);
        QTRY_COMPARE(chart->span().to - chart->span().from, period.length);
        QVERIFY(button->isChecked());
        QVERIFY(std::abs(chart->span().to - QDateTime::currentMSecsSinceEpoch()) < minuteMsecs);
        QTRY_VERIFY(!chart->lanes().isEmpty() && !chart->lanes().first().points.isEmpty());
    }
    // Into the past, and not into the future.
    const TimeSpan before = chart->span();
    QTest::keyClick(chart, Qt::Key_PageUp);
    QCOMPARE(chart->span().to, before.to - 15 * dayMsecs);
    QVERIFY(!played.find<QPushButton>("30 d")->isChecked());
    for (int i = 0; i < 5; ++i)
        QTest::keyClick(chart, Qt::Key_PageDown);
    QVERIFY(chart->span().to <= QDateTime::currentMSecsSinceEpoch());
}

void HistoryPagesTest::trendsShowWhatIsChosen()
{
    PlayedSite played(300);
    played.showPage("trends");
    auto *chart = played.window->findChild<Chart *>();
    const auto shown = [&] {
        QStringList names;
        for (const ChartLane &lane : chart->lanes())
            names.append(nameOf(lane.quantity));
        return names.join(QLatin1Char(','));
    };
    QTRY_COMPARE(shown(), QStringLiteral("Load,Battery charge,Input voltage,Output voltage"));
    for (const char *name : {"Load choice", "Battery charge choice", "Input voltage choice",
                             "Temperature choice", "Input frequency choice", "Runtime choice"})
        QTest::mouseClick(played.find<QPushButton>(name), Qt::LeftButton);
    QTRY_COMPARE(shown(), QStringLiteral("Runtime,Output voltage,Temperature,Input frequency"));
    QTRY_VERIFY(!chart->lanes().at(2).points.isEmpty());
    // Without a history there is a word of it.
    played.window->setHistory(nullptr);
    QVERIFY(chart->lanes().isEmpty());
    QVERIFY(chart->accessibleDescription().contains(QLatin1String("Screenshots show no history")));
    QVERIFY(!played.find<QPushButton>("export csv")->isEnabled());
}

void HistoryPagesTest::trendsAreExported()
{
    const QTemporaryDir place;
    PlayedSite played(300);
    played.showPage("trends");
    auto *chart = played.window->findChild<Chart *>();
    QTRY_VERIFY(!chart->lanes().isEmpty() && !chart->lanes().first().points.isEmpty());
    // The chart goes on while the files are written.
    auto *page = played.window->findChild<TrendsPage *>();
    int points = 0;
    for (const ChartLane &lane : chart->lanes())
        points += int(lane.points.size());
    const QString first = csvTime(chart->lanes().first().points.first().at);
    const QString image = place.filePath(QStringLiteral("trend.png"));
    const QString values = place.filePath(QStringLiteral("trend.csv"));
    page->exportImage(image);
    page->exportValues(values);
    QTRY_VERIFY(QFile::exists(values) && QFile::exists(image));
    QCOMPARE(QImage(image).size(), chart->size());
    QFile in(values);
    QVERIFY(in.open(QIODevice::ReadOnly));
    const QStringList lines =
        QString::fromUtf8(in.readAll()).split(QStringLiteral("\r\n"), Qt::SkipEmptyParts);
    QCOMPARE(lines.size(), points + 1);
    QVERIFY2(lines.at(1).startsWith(first + QStringLiteral(",demo,Load,%,")),
             qPrintable(lines.at(1)));
    page->exportValues(place.filePath(QStringLiteral("no/such/place")));
    QTRY_VERIFY(chart->accessibleDescription().contains(QLatin1String("Not written")));
}

void HistoryPagesTest::curvesBesideTheDials()
{
    PlayedSite played(1200, 30);
    played.window->resize(1280, 800);
    played.showPage("overview");
    auto *dial = played.find<GaugeRoom>("LoadRoom");
    QVERIFY(dial);
    dial->showTrend({}, {});
    deliverAll();
    const QImage without = dial->grab().toImage();
    played.window->setHistory(played.history.get());
    const auto differs = [&] {
        const QImage with = dial->grab().toImage();
        int pixels = 0;
        for (int y = 0; y < with.height(); ++y) {
            for (int x = 0; x < with.width(); ++x)
                pixels += with.pixel(x, y) != without.pixel(x, y) ? 1 : 0;
        }
        return pixels;
    };
    QTRY_VERIFY(differs() > 50);
}

/// For looking at them: the pages are written where KIV_PAGE_IMAGES says, if anywhere.
void HistoryPagesTest::images()
{
    const QString directory = qEnvironmentVariable("KIV_PAGE_IMAGES");
    PlayedSite played(directory.isEmpty() ? 60 : int(15 * Scenario::length()),
                      directory.isEmpty() ? 5 : 2);
    const QSize sizes[] = {{480, 320}, {800, 480}, {1280, 800}, {1920, 1080}};
    QTRY_VERIFY(played.list()->rowCount() > 0 || directory.isEmpty());
    for (const char *page : {"trends", "events", "overview"}) {
        if (!played.window->pageNames().contains(QLatin1String(page)))
            continue;
        for (const bool dark : {false, true}) {
            played.window->setDarkTheme(dark);
            for (const QSize &size : sizes) {
                played.window->resize(size);
                played.showPage(page);
                for (int i = 0; i < 5; ++i) {
                    QTest::qWait(directory.isEmpty() ? 0 : 50);
                    deliverAll();
                }
                const QPixmap image = played.window->grab();
                QVERIFY(!image.isNull());
                if (!directory.isEmpty())
                    QVERIFY(image.save(QStringLiteral("%1/%2-%3%4.png")
                                           .arg(directory, QLatin1String(page))
                                           .arg(size.width())
                                           .arg(dark ? QStringLiteral("-dark") : QString())));
            }
        }
    }
}

KIV_TEST_MAIN(HistoryPagesTest)

#include "tst_historypages.moc"
