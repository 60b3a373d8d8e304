// SPDX-License-Identifier: LicenseRef-all-rights-reserved

#include "consolewindow.h"
#include "elidedlabel.h"
#include "fleetpage.h"
#include "gaugeroom.h"
#include "nutmapping.h"
#include "options.h"
#include "screenshots.h"
#include "severitylook.h"
#include "theme.h"

#include "testmain.h"
#include "widgetprobe.h"

#include <metroshelter.h>
#include <metrotabicon.h>
#include <rotatestackedwidget.h>

#include <QtCore/QTemporaryDir>
#include <QtCore/QTimer>
#include <QtWidgets/QApplication>
#include <QtWidgets/QLabel>
#include <QtWidgets/QLineEdit>
#include <QtWidgets/QScrollBar>
#include <QtWidgets/QToolButton>

#include <memory>

namespace {

Snapshot ups(const QString &name, const QByteArray &status, int load = 40)
{
    NutVariables variables;
    variables.insert(QStringLiteral("ups.status"), QString::fromLatin1(status));
    variables.insert(QStringLiteral("ups.load"), QString::number(load));
    return snapshotOf(name, variables);
}

/// A site of many UPSes in order, in groups of 100.
std::unique_ptr<SiteModel> siteOf(int count)
{
    auto site = std::make_unique<SiteModel>();
    for (int i = 0; i < count; ++i) {
        const QString name = QStringLiteral("u%1").arg(i, 5, 10, QLatin1Char('0'));
        UpsModel *model = site->add(name + QStringLiteral("@host:3493"));
        model->setNames(QString(), QStringLiteral("Hall %1").arg(i / 100));
        model->take(ups(name, "OL"));
    }
    return site;
}

/// The page inside a window.
class ShownPage : public QWidget
{
public:
    explicit ShownPage(SiteModel *site)
        : page(site, this)
    {
        resize(800, 480);
        page.resize(size());
        show();
    }

    FleetPage page;
};

} // namespace

class FleetTest : public WidgetTest
{
    Q_OBJECT

private Q_SLOTS:
    void tilesExistForWhatIsVisible();
    void worstFirst();
    void equalsByUrgencyAndName();
    void groupsWithTheWorstFirst();
    void equalGroupsByName();
    void bannerNamesTheFirstTile();
    void longNamesDiffer();
    void followsChanges();
    void searches();
    void filtersBySeverity();
    void countsInTheBanner();
    void pressOpensTheUps();
    void messageGoesWithItsUps();
    void badgeLeavesTheDrawing();
    void everyTileByKeyboard();
    void upsesFoundLater();
    void problemsOfServers();
    void problemsAreReadWhole_data();
    void problemsAreReadWhole();
    void unreachableServersCount();
    void firstUpsIsTheFirstByName();
    void firstUpsStays_data();
    void firstUpsStays();
    void serverWithoutAnyUps();
    void textsStayPlain();
    void oneUpsHasNoFleet();
    void signsFollowTheTheme();
    void screenshotsShowTheTiles();
    void shownAtOnceWithAllUpses();
    void nothingFitsOnlyWithAFilter();
    void marksBelongToTheUps();

private:
    /// The titles of the visible tiles, from top to bottom.
    static QStringList shown(const QWidget &page)
    {
        QVector<const MetroShelter *> tiles;
        for (const MetroShelter *tile : page.findChildren<MetroShelter *>()) {
            if (!tile->isHidden())
                tiles += tile;
        }
        std::sort(tiles.begin(), tiles.end(), [](const MetroShelter *a, const MetroShelter *b) {
            return a->y() != b->y() ? a->y() < b->y() : a->x() < b->x();
        });
        QStringList titles;
        for (const MetroShelter *tile : std::as_const(tiles))
            titles += tile->accessibleName();
        return titles;
    }
    static FleetView *viewOf(const QWidget &page)
    {
        return page.findChild<FleetView *>(QStringLiteral("fleet"));
    }
};

/// Ten thousand take no more tiles than a screen has, wherever one scrolls to.
void FleetTest::tilesExistForWhatIsVisible()
{
    const auto site = siteOf(10000);
    ShownPage host(site.get());
    FleetPage &page = host.page;
    QVERIFY(QTest::qWaitForWindowExposed(&host));
    FleetView *view = viewOf(page);
    QCOMPARE(view->shownCount(), 10000);
    QScrollBar *bar = view->verticalScrollBar();
    QVERIFY(bar->maximum() > 100000);
    QCOMPARE(shown(page).first(), QStringLiteral("u00000"));
    for (int i = 1; i <= 50; ++i)
        bar->setValue(int(qint64(bar->maximum()) * i / 50));
    QCOMPARE(shown(page).last(), QStringLiteral("u09999"));
    QVERIFY2(view->tileCount() < 100, qPrintable(QString::number(view->tileCount())));
    bar->setValue(0);
    QCOMPARE(shown(page).first(), QStringLiteral("u00000"));
}

void FleetTest::worstFirst()
{
    SiteModel site;
    const char *const states[] = {"OL", "OB", "OL", "OB LB", "OL OFF", "OL ALARM"};
    int number = 0;
    for (const char *state : states) {
        const QString name = QStringLiteral("ups%1").arg(number++);
        site.add(name)->take(ups(name, state));
    }
    site.at(2)->take(Snapshot::lost(QStringLiteral("ups2"), QStringLiteral("gone")));
    ShownPage host(&site);
    FleetPage &page = host.page;
    QVERIFY(QTest::qWaitForWindowExposed(&host));
    QCOMPARE(shown(page).join(QLatin1Char(' ')), QStringLiteral("ups3 ups5 ups2 ups1 ups4 ups0"));
}

/// What fails first stands before what can wait, whenever it came; equals are sorted by name.
void FleetTest::equalsByUrgencyAndName()
{
    SiteModel site;
    const struct
    {
        const char *name;
        const char *status;
    } all[] = {{"alarm", "OL ALARM"}, {"ups10", "OB"},     {"ups9", "OB"}, {"Ups1", "OB"},
               {"low", "OB LB"},      {"over", "OL OVER"}, {"fine", "OL"}, {"down", "OB LB FSD"}};
    for (const auto &one : all)
        site.add(QLatin1String(one.name))->take(ups(QLatin1String(one.name), one.status));
    ShownPage host(&site);
    QVERIFY(QTest::qWaitForWindowExposed(&host));
    QCOMPARE(shown(host.page).join(QLatin1Char(' ')),
             QStringLiteral("down low alarm over Ups1 ups9 ups10 fine"));
    QCOMPARE(site.worst()->id(), QStringLiteral("down"));
    // The order follows within one severity, too.
    site.find(QStringLiteral("down"))->take(ups(QStringLiteral("down"), "OL ALARM"));
    QTRY_COMPARE(shown(host.page).join(QLatin1Char(' ')),
                 QStringLiteral("low alarm down over Ups1 ups9 ups10 fine"));
    QCOMPARE(site.worst()->id(), QStringLiteral("low"));
    site.find(QStringLiteral("low"))->take(ups(QStringLiteral("low"), "OL"));
    QCOMPARE(site.worst()->id(), QStringLiteral("alarm"));
}

void FleetTest::groupsWithTheWorstFirst()
{
    const auto site = siteOf(250);
    site->at(220)->take(ups(QStringLiteral("u00220"), "OB"));
    ShownPage host(site.get());
    FleetPage &page = host.page;
    QVERIFY(QTest::qWaitForWindowExposed(&host));
    const QStringList titles = shown(page);
    QCOMPARE(titles.at(0), QStringLiteral("u00220"));
    QCOMPARE(titles.at(1), QStringLiteral("u00200"));
}

/// Whatever order their UPSes came in.
void FleetTest::equalGroupsByName()
{
    SiteModel site;
    for (const char *group : {"Hall 10", "cellar", "Hall 9", "Annex", "Hall 2"}) {
        const QString name = QLatin1String("in ") + QLatin1String(group);
        UpsModel *model = site.add(name);
        model->setNames(QString(), QLatin1String(group));
        model->take(ups(name, "OL"));
    }
    ShownPage host(&site);
    QVERIFY(QTest::qWaitForWindowExposed(&host));
    QCOMPARE(shown(host.page).join(QLatin1Char('|')),
             QStringLiteral("in Annex|in cellar|in Hall 2|in Hall 9|in Hall 10"));
    // The worst still come first, and equal ones by name.
    for (const char *name : {"in Hall 10", "in Hall 2"})
        site.find(QLatin1String(name))->take(ups(QLatin1String(name), "OB"));
    QTRY_COMPARE(shown(host.page).join(QLatin1Char('|')),
                 QStringLiteral("in Hall 2|in Hall 10|in Annex|in cellar|in Hall 9"));
}

/// Of equally bad UPSes in several groups, too, however their names are sorted.
void FleetTest::bannerNamesTheFirstTile()
{
    SiteModel site;
    const struct
    {
        const char *name;
        const char *group;
    } all[] = {{"a", "Hall 10"}, {"b", "hall 2"}, {"z", "Hall 2"}, {"y", "Annex"}, {"x", "Annex"}};
    for (const auto &one : all) {
        UpsModel *model = site.add(QLatin1String(one.name));
        model->setNames(QString(), QLatin1String(one.group));
        model->take(ups(QLatin1String(one.name), "OL"));
    }
    ConsoleWindow window(&site);
    window.show();
    QVERIFY(QTest::qWaitForWindowExposed(&window));
    auto *page = window.findChild<FleetPage *>();
    const auto *detail = window.findChild<QLabel *>(QStringLiteral("condition"));
    // All UPSes of more and more groups, in the order in which they then stand.
    const char *const steps[] = {"a", "b z", "x y"};
    const char *const first[] = {"a", "z", "x"};
    for (int i = 0; i < 3; ++i) {
        for (const QByteArray &name : QByteArray(steps[i]).split(' '))
            site.find(QLatin1String(name))->take(ups(QLatin1String(name), "OB"));
        QTRY_COMPARE(shown(*page).first(), QLatin1String(first[i]));
        QTRY_VERIFY2(detail->text().startsWith(QLatin1String(first[i]) + QStringLiteral(": ")),
                     qPrintable(detail->text()));
        QCOMPARE(site.worst()->id(), QLatin1String(first[i]));
    }
}

/// Names of one site differ at their ends, which a tile shows however long they are.
void FleetTest::longNamesDiffer()
{
    SiteModel site;
    for (const char *end : {"111", "112"}) {
        UpsModel *model = site.add(QLatin1String(end));
        model->setNames(QStringLiteral("Server room on the third floor, rack ") +
                            QLatin1String(end),
                        QString());
        model->take(ups(QLatin1String(end), "OL"));
    }
    ShownPage host(&site);
    host.resize(420, 300);
    host.page.resize(host.size());
    QVERIFY(QTest::qWaitForWindowExposed(&host));
    const FleetView *view = viewOf(host.page);
    const auto imageOf = [&](int index) { return view->tileOf(site.at(index))->grab().toImage(); };
    QVERIFY(imageOf(0) != imageOf(1));
}

void FleetTest::followsChanges()
{
    const auto site = siteOf(20);
    ShownPage host(site.get());
    FleetPage &page = host.page;
    QVERIFY(QTest::qWaitForWindowExposed(&host));
    auto *tile = qobject_cast<MetroShelter *>(viewOf(page)->tileOf(site->at(0)));
    QVERIFY(tile);
    QVERIFY2(tile->accessibleDescription().contains(QStringLiteral("40 %")),
             qPrintable(tile->accessibleDescription()));
    const QImage before = tile->grab().toImage();
    site->at(0)->take(ups(QStringLiteral("u00000"), "OL", 77));
    QTRY_VERIFY(tile->accessibleDescription().contains(QStringLiteral("77 %")));
    QVERIFY(tile->grab().toImage() != before);
    // Another order keeps the tile of a UPS.
    site->at(19)->take(ups(QStringLiteral("u00019"), "OB LB"));
    QTRY_COMPARE(shown(page).first(), QStringLiteral("u00019"));
    QCOMPARE(viewOf(page)->tileOf(site->at(0)), static_cast<QWidget *>(tile));
    const elemDesc_t state =
        qobject_cast<MetroShelter *>(viewOf(page)->tileOf(site->at(19)))->getElementState();
    QCOMPARE(int(state.elemSt), int(site->at(19)->snapshot().system.operating));
}

void FleetTest::searches()
{
    const auto site = siteOf(300);
    ShownPage host(site.get());
    FleetPage &page = host.page;
    QVERIFY(QTest::qWaitForWindowExposed(&host));
    auto *search = page.findChild<QLineEdit *>(QStringLiteral("search"));
    search->setText(QStringLiteral("u0012"));
    QCOMPARE(viewOf(page)->shownCount(), 10);
    search->setText(QStringLiteral("HALL 2"));
    QCOMPARE(viewOf(page)->shownCount(), 100 + 38);
    search->setText(QStringLiteral("u0025 hall"));
    QCOMPARE(viewOf(page)->shownCount(), 10);
    search->setText(QStringLiteral("nothing like it"));
    QCOMPARE(viewOf(page)->shownCount(), 0);
    QVERIFY(shown(page).isEmpty());
    // What comes to fit appears.
    search->setText(QStringLiteral("on battery"));
    QCOMPARE(viewOf(page)->shownCount(), 0);
    site->at(5)->take(ups(QStringLiteral("u00005"), "OB"));
    QTRY_COMPARE(viewOf(page)->shownCount(), 1);
    search->clear();
    QCOMPARE(viewOf(page)->shownCount(), 300);
}

void FleetTest::filtersBySeverity()
{
    const auto site = siteOf(10);
    site->at(3)->take(ups(QStringLiteral("u00003"), "OB"));
    site->at(4)->take(ups(QStringLiteral("u00004"), "OB LB"));
    ShownPage host(site.get());
    FleetPage &page = host.page;
    QVERIFY(QTest::qWaitForWindowExposed(&host));
    auto *critical = page.findChild<QToolButton *>(QStringLiteral("only Critical"));
    auto *warning = page.findChild<QToolButton *>(QStringLiteral("only Warning"));
    QCOMPARE(critical->text(), QStringLiteral("1"));
    const auto bar = [](QToolButton *button) {
        const QImage image = button->grab().toImage();
        int count = 0;
        for (int y = 0; y < image.height(); ++y)
            count += image.pixelColor(image.width() / 2, y) == Theme::accent() ? 1 : 0;
        return count;
    };
    QCOMPARE(bar(critical), 0);
    critical->click();
    QVERIFY(bar(critical) >= 3);
    QCOMPARE(bar(warning), 0);
    QCOMPARE(shown(page), QStringList{QStringLiteral("u00004")});
    warning->click();
    QCOMPARE(viewOf(page)->shownCount(), 2);
    critical->click();
    warning->click();
    QCOMPARE(viewOf(page)->shownCount(), 10);
}

void FleetTest::countsInTheBanner()
{
    const auto site = siteOf(10);
    site->at(3)->take(ups(QStringLiteral("u00003"), "OB"));
    site->at(4)->take(ups(QStringLiteral("u00004"), "OB LB"));
    site->at(5)->take(Snapshot::lost(QStringLiteral("u00005"), QStringLiteral("gone")));
    ConsoleWindow window(site.get());
    window.show();
    QVERIFY(QTest::qWaitForWindowExposed(&window));
    auto *headline = window.findChild<QLabel *>(QStringLiteral("headline"));
    QCOMPARE(headline->text(),
             QStringLiteral("1 critical  ·  1 no communication  ·  1 warning  ·  7 normal"));
    auto *tab = window.findChild<MetroTabicon *>(QStringLiteral("Fleet"));
    QVERIFY2(tab->accessibleName().contains(QStringLiteral("3 not in order")),
             qPrintable(tab->accessibleName()));
    // Also while another page is shown.
    window.showPage(1);
    QVERIFY(!headline->text().contains(QStringLiteral("normal")));
    site->at(4)->take(ups(QStringLiteral("u00004"), "OL"));
    QTRY_VERIFY(tab->accessibleName().contains(QStringLiteral("2 not in order")));
    window.showPage(0);
    QCOMPARE(headline->text(), QStringLiteral("1 no communication  ·  1 warning  ·  8 normal"));
}

void FleetTest::pressOpensTheUps()
{
    const auto site = siteOf(10);
    ConsoleWindow window(site.get());
    window.show();
    QVERIFY(QTest::qWaitForWindowExposed(&window));
    deliverAll();
    auto *view = window.findChild<FleetView *>(QStringLiteral("fleet"));
    QWidget *tile = view->tileOf(site->at(7));
    QVERIFY(tile);
    QTest::mouseClick(tile, Qt::LeftButton);
    auto *stack = window.findChild<RotateStackedWidget *>(QStringLiteral("pages"));
    QTRY_COMPARE(stack->currentIndex(),
                 int(window.pageNames().indexOf(QStringLiteral("overview"))));
    QCOMPARE(window.findChild<QLabel *>(QStringLiteral("upsName"))->text(),
             QStringLiteral("u00007"));
    site->at(7)->take(ups(QStringLiteral("u00007"), "OB"));
    QCOMPARE(window.findChild<QLabel *>(QStringLiteral("headline"))->text(),
             site->at(7)->headline().text);
    // What the others do does not show there.
    site->at(2)->take(ups(QStringLiteral("u00002"), "OB LB"));
    QCOMPARE(window.findChild<QLabel *>(QStringLiteral("headline"))->text(),
             site->at(7)->headline().text);
}

/// What was said of one UPS does not stand beside the name of the next.
void FleetTest::messageGoesWithItsUps()
{
    const auto site = siteOf(10);
    ConsoleWindow window(site.get());
    window.resize(800, 480);
    window.show();
    QVERIFY(QTest::qWaitForWindowExposed(&window));
    auto *view = window.findChild<FleetView *>(QStringLiteral("fleet"));
    const auto *message = window.findChild<QLabel *>(QStringLiteral("message"));
    const auto *notice = window.findChild<QLabel *>(QStringLiteral("notice"));
    const QString texts[] = {QStringLiteral("Load off: done"), QString(300, QLatin1Char('w'))};
    for (int i = 0; i < 2; ++i) {
        window.showPage(0);
        QTRY_VERIFY(view->tileOf(site->at(i + 3)));
        window.say(texts[i]);
        QCOMPARE(message->isVisible(), i == 0);
        QCOMPARE(notice->isVisible(), i == 1);
        QTest::mouseClick(view->tileOf(site->at(i + 3)), Qt::LeftButton);
        QVERIFY(!message->isVisible());
        QVERIFY(!notice->isVisible());
        QCOMPARE(window.findChild<QLabel *>(QStringLiteral("upsName"))->text(),
                 site->at(i + 3)->title());
    }
}

/// How many are not in order stands beside the tab's drawing, of which the most shows.
void FleetTest::badgeLeavesTheDrawing()
{
    for (const int bad : {17, 150}) {
        const auto site = siteOf(200);
        ConsoleWindow window(site.get());
        window.resize(ConsoleWindow::leastSize);
        window.showPage(1);
        window.show();
        QVERIFY(QTest::qWaitForWindowExposed(&window));
        auto *tab = window.findChild<MetroTabicon *>(QStringLiteral("Fleet"));
        const QColor plate = lookOf(Severity::Critical, true).plate;
        // The light pixels above the name, at the left of the plate.
        const auto drawn = [&] {
            const QImage image = tab->grab().toImage();
            const int above = image.height() - QFontMetrics(Theme::font(Theme::Small)).height() - 4;
            int count = 0;
            for (int x = 0; x < image.width(); ++x) {
                for (int y = 0; y < above; ++y) {
                    if (image.pixelColor(x, y) == plate)
                        return count;
                    count += image.pixelColor(x, y).green() > 120 ? 1 : 0;
                }
            }
            return count;
        };
        const int whole = drawn();
        QVERIFY(whole > 20);
        for (int i = 0; i < bad; ++i)
            site->at(i)->take(ups(site->at(i)->id(), "OB LB"));
        QTRY_VERIFY(tab->accessibleName().contains(QString::number(bad)));
        QVERIFY2(drawn() * 10 >= whole * 6,
                 qPrintable(QStringLiteral("%1 of %2").arg(drawn()).arg(whole)));
    }
}

void FleetTest::everyTileByKeyboard()
{
    const auto site = siteOf(250);
    ShownPage host(site.get());
    FleetPage &page = host.page;
    host.activateWindow();
    QVERIFY(QTest::qWaitForWindowActive(&host));
    FleetView *view = viewOf(page);
    view->tileOf(site->at(0))->setFocus();
    const auto focused = [] {
        return QApplication::focusWidget() ? QApplication::focusWidget()->accessibleName()
                                           : QString();
    };
    for (int i = 1; i < 250; ++i) {
        QTest::keyClick(QApplication::focusWidget(), Qt::Key_Right);
        QCOMPARE(focused(), QStringLiteral("u%1").arg(i, 5, 10, QLatin1Char('0')));
    }
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_Right);
    QCOMPARE(focused(), QStringLiteral("u00249"));
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_Home);
    QCOMPARE(focused(), QStringLiteral("u00000"));
    UpsModel *opened = nullptr;
    connect(&page, &FleetPage::chosen, this, [&opened](UpsModel *one) { opened = one; });
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_Return);
    QCOMPARE(opened, site->at(0));
}

void FleetTest::upsesFoundLater()
{
    SiteModel site;
    ConsoleWindow window(&site);
    window.show();
    QVERIFY(QTest::qWaitForWindowExposed(&window));
    auto *view = window.findChild<FleetView *>(QStringLiteral("fleet"));
    QVERIFY(view);
    QCOMPARE(view->shownCount(), 0);
    for (int i = 0; i < 3; ++i)
        site.add(QString::number(i))->take(ups(QString::number(i), "OL"));
    QTRY_COMPARE(view->shownCount(), 3);
    auto *headline = window.findChild<QLabel *>(QStringLiteral("headline"));
    QTRY_COMPARE(headline->text(), QStringLiteral("3 normal"));
}

void FleetTest::problemsOfServers()
{
    SiteModel site;
    FleetPage page(&site);
    auto *problems = page.findChild<QLabel *>(QStringLiteral("problems"));
    QVERIFY(problems->isHidden());
    site.setProblem(QStringLiteral("host:3493"), QStringLiteral("connection refused"));
    QVERIFY(!problems->isHidden());
    QCOMPARE(problems->text(), QStringLiteral("host:3493: connection refused"));
    site.setProblem(QStringLiteral("host:3493"), QString());
    QVERIFY(problems->isHidden());
}

void FleetTest::problemsAreReadWhole_data()
{
    QTest::addColumn<int>("servers");
    QTest::addColumn<bool>("fits");
    QTest::newRow("one") << 1 << true;
    QTest::newRow("two") << 2 << true;
    QTest::newRow("many") << 40 << false;
}

/// In lines of their own, or, where that takes too much room, in the tool tip.
void FleetTest::problemsAreReadWhole()
{
    QFETCH(int, servers);
    QFETCH(bool, fits);
    SiteModel site;
    site.add(QStringLiteral("rack1"))->take(ups(QStringLiteral("rack1"), "OL"));
    ShownPage host(&site);
    QVERIFY(QTest::qWaitForWindowExposed(&host));
    const QString reason = QStringLiteral("the certificate is not valid: it was issued for "
                                          "<b>another</b> server");
    for (int i = 0; i < servers; ++i)
        site.setProblem(QStringLiteral("nut%1.example:3493").arg(i), reason);
    deliverAll();
    const auto *problems = host.page.findChild<ElidedLabel *>(QStringLiteral("problems"));
    QVERIFY(problems->isVisible());
    QCOMPARE(!problems->isElided(), fits);
    QVERIFY(problems->height() >= problems->minimumSizeHint().height());
    QVERIFY(problems->height() <= 4 * problems->fontMetrics().lineSpacing());
    QCOMPARE(problems->text().count(reason), servers); // for screen readers
    const QString tip = problems->toolTip();
    QCOMPARE(tip.count(reason.toHtmlEscaped()), std::min(servers, 20));
    QCOMPARE(tip.contains(QStringLiteral("and 20 more")), servers == 40);
    QVERIFY(!tip.contains(QStringLiteral("<b>")));
    // What is solved gives its room back.
    for (int i = 0; i < servers; ++i)
        site.setProblem(QStringLiteral("nut%1.example:3493").arg(i), QString());
    QVERIFY(problems->isHidden());
}

/// A server that is not reached is as bad as a UPS that is not, and has its name in the banner.
void FleetTest::unreachableServersCount()
{
    const auto site = siteOf(3);
    const QString server = QStringLiteral("nut2.example:3493");
    ConsoleWindow window(site.get());
    window.show();
    QVERIFY(QTest::qWaitForWindowExposed(&window));
    const auto *headline = window.findChild<QLabel *>(QStringLiteral("headline"));
    const auto *detail = window.findChild<QLabel *>(QStringLiteral("condition"));
    const auto *sign = window.findChild<QLabel *>(QStringLiteral("severity"));
    const auto *tab = window.findChild<MetroTabicon *>(QStringLiteral("Fleet"));
    site->setProblem(server, QStringLiteral("connecting"), Severity::Normal);
    QTRY_COMPARE(detail->text(), server + QStringLiteral(": connecting"));
    QCOMPARE(headline->text(), QStringLiteral("3 normal"));
    QCOMPARE(tab->accessibleName(), QStringLiteral("Fleet"));

    site->setProblem(server, QStringLiteral("connection refused"));
    QTRY_COMPARE(headline->text(), QStringLiteral("1 server problem  ·  3 normal"));
    QCOMPARE(detail->text(), server + QStringLiteral(": connection refused"));
    QCOMPARE(sign->accessibleName(), nameOf(Severity::Unknown));
    QVERIFY2(tab->accessibleName().contains(QStringLiteral("1 not in order")),
             qPrintable(tab->accessibleName()));

    // What is worse comes first.
    site->at(1)->take(ups(QStringLiteral("u00001"), "OB LB"));
    site->setProblem(QStringLiteral("nut3.example:3493"), QStringLiteral("host not found"));
    QTRY_COMPARE(headline->text(), QStringLiteral("1 critical  ·  2 server problems  ·  2 normal"));
    QVERIFY2(detail->text().startsWith(QStringLiteral("u00001: ")), qPrintable(detail->text()));
    QVERIFY2(detail->text().contains(server), qPrintable(detail->text()));

    site->at(1)->take(ups(QStringLiteral("u00001"), "OL"));
    site->setProblem(server, QString());
    site->setProblem(QStringLiteral("nut3.example:3493"), QString());
    QTRY_COMPARE(headline->text(), QStringLiteral("3 normal"));
    QCOMPARE(detail->text(), QString());
}

/// Whatever comes first: by group and name, until all servers have answered or had their time.
void FleetTest::firstUpsIsTheFirstByName()
{
    SiteModel site;
    site.setGrowing(true);
    for (const char *server : {"quick:3493", "slow:3493", "dead:3493"})
        site.addServer(QLatin1String(server));
    ConsoleWindow window(&site);
    const auto add = [&site](const char *name, const char *group) {
        UpsModel *one = site.add(QLatin1String(name));
        one->setNames(QString(), QLatin1String(group));
        one->take(ups(QLatin1String(name), "OL"));
    };
    const auto shown = [&window] { return window.shownUps()->id(); };
    QCOMPARE(shown(), QString());
    add("ups10", "hall");
    add("ups2", "hall");
    add("ups1", "yard");
    site.meetServer(QStringLiteral("quick:3493"));
    QTRY_COMPARE(shown(), QStringLiteral("ups2"));
    site.missServer(QStringLiteral("dead:3493"), QStringLiteral("refused"));
    add("ups3", "cellar");
    site.find(QStringLiteral("ups10"))->take(ups(QStringLiteral("ups10"), "OB LB"));
    QTRY_COMPARE(shown(), QStringLiteral("ups3"));
    // The last server has it all. What comes now comes too late.
    add("ups4", "attic");
    site.meetServer(QStringLiteral("slow:3493"));
    QTRY_COMPARE(shown(), QStringLiteral("ups4"));
    add("ups0", "attic");
    deliverAll();
    QCOMPARE(shown(), QStringLiteral("ups4"));
}

/// A server that does not answer keeps nobody waiting, nor does it take what somebody chose or
/// gives commands to.
void FleetTest::firstUpsStays_data()
{
    QTest::addColumn<QString>("by");
    QTest::newRow("time") << QStringLiteral("time");
    QTest::newRow("choice") << QStringLiteral("choice");
    QTest::newRow("control page") << QStringLiteral("control");
    QTest::newRow("known before") << QStringLiteral("known");
}

void FleetTest::firstUpsStays()
{
    QFETCH(QString, by);
    SiteModel site;
    site.setGrowing(true);
    site.addServer(QStringLiteral("silent:3493"));
    const auto add = [&site](const char *name) {
        site.add(QLatin1String(name))->take(ups(QLatin1String(name), "OL"));
    };
    const bool known = by == QLatin1String("known");
    if (known)
        add("n");
    ConsoleWindow window(&site);
    auto *patience = window.findChild<QTimer *>(QStringLiteral("first patience"));
    QCOMPARE(patience != nullptr, !known);
    if (by == QLatin1String("time")) {
        // Longer than that without any UPS.
        patience->start(0);
        QTRY_VERIFY(!patience->isActive());
        QCOMPARE(window.shownUps()->id(), QString());
    }
    for (const char *name : {"o", "m"})
        add(name);
    QTRY_COMPARE(window.shownUps()->id(), known ? QStringLiteral("n") : QStringLiteral("m"));
    if (by == QLatin1String("choice"))
        Q_EMIT window.findChild<FleetPage *>()->chosen(site.find(QStringLiteral("o")));
    else if (by == QLatin1String("control"))
        window.showPage(int(window.pageNames().indexOf(QStringLiteral("control"))));
    const QString before = window.shownUps()->id();
    QCOMPARE(before == QLatin1String("o"), by == QLatin1String("choice"));
    add("a");
    deliverAll();
    QCOMPARE(window.shownUps()->id(), before);
    site.meetServer(QStringLiteral("silent:3493"));
    deliverAll();
    QCOMPARE(window.shownUps()->id(), before);
}

/// Without any UPS the other pages say why.
void FleetTest::serverWithoutAnyUps()
{
    SiteModel site;
    site.setGrowing(true);
    ConsoleWindow window(&site);
    window.show();
    window.showPage(1);
    site.setProblem(QStringLiteral("nut2.example:3493"), QStringLiteral("connection refused"));
    const QString text = window.findChild<QLabel *>(QStringLiteral("condition"))->text();
    QVERIFY2(text.startsWith(QStringLiteral("Connection refused (nut2.example:3493)")),
             qPrintable(text));
    window.showPage(0);
    QTRY_COMPARE(window.findChild<QLabel *>(QStringLiteral("headline"))->text(),
                 QStringLiteral("1 server problem"));
}

/// Names from a server are no markup, and no shortcut.
void FleetTest::textsStayPlain()
{
    SiteModel site;
    UpsModel *one = site.add(QStringLiteral("x"));
    one->setNames(QStringLiteral("<b>&Rack</b> %s"), QStringLiteral("<i>Hall</i>"));
    one->take(ups(QStringLiteral("x"), "OL"));
    site.add(QStringLiteral("y"));
    ShownPage host(&site);
    FleetPage &page = host.page;
    QVERIFY(QTest::qWaitForWindowExposed(&host));
    const auto *tile = qobject_cast<MetroShelter *>(viewOf(page)->tileOf(one));
    QCOMPARE(tile->accessibleName(), QStringLiteral("<b>&Rack</b> %s"));
    QVERIFY(tile->text().isEmpty());
    QVERIFY(tile->shortcut().isEmpty());
    QVERIFY(tile->toolTip().isEmpty());
}

void FleetTest::oneUpsHasNoFleet()
{
    const auto site = siteOf(1);
    const ConsoleWindow window(site.get());
    QVERIFY(!window.pageNames().contains(QStringLiteral("fleet")));
    site->setGrowing(true);
    const ConsoleWindow growing(site.get());
    QCOMPARE(growing.pageNames().first(), QStringLiteral("fleet"));
}

/// The signs of the filter are as readable on dark as if the page had begun there.
void FleetTest::signsFollowTheTheme()
{
    const auto site = siteOf(3);
    const auto signOf = [](const FleetPage &page) {
        const auto *button = page.findChild<QToolButton *>(QStringLiteral("only No communication"));
        return button ? button->icon().pixmap(button->iconSize()).toImage() : QImage();
    };
    QApplication::setPalette(Theme::palette(false));
    const FleetPage page(site.get());
    const QImage light = signOf(page);
    QVERIFY(!light.isNull());
    QApplication::setPalette(Theme::palette(true));
    deliverAll();
    const FleetPage dark(site.get());
    QVERIFY(signOf(dark) != light);
    QCOMPARE(signOf(page), signOf(dark));
    prepareTestApplication();
}

/// UPSes that a server names just before are on the image too.
void FleetTest::screenshotsShowTheTiles()
{
    const QTemporaryDir place;
    SiteModel site;
    site.setGrowing(true);
    ConsoleWindow window(&site);
    QTimer::singleShot(0, &site, [&site] {
        for (const char *name : {"a", "b", "c"})
            site.add(QLatin1String(name))->take(ups(QLatin1String(name), "OL"));
        // A change does not bring the image forward.
        QTimer::singleShot(0, &site, [&site] { site.at(0)->take(ups(site.at(0)->id(), "OB")); });
    });
    Options options;
    options.directory = place.path();
    QStringList lines;
    QVERIFY2(takeLiveScreenshots(window, site, options, &lines) == LiveScreenshots::Taken,
             qPrintable(lines.join(QLatin1Char('\n'))));
    const QImage image(place.filePath(QStringLiteral("fleet.png")));
    QCOMPARE(image.size(), window.size());
    window.showPage(0);
    const auto *page = window.findChild<FleetPage *>();
    QTRY_COMPARE(shown(*page).size(), 3);
    for (const MetroShelter *tile : page->findChildren<MetroShelter *>()) {
        if (tile->isHidden())
            continue;
        // A text on a plate has many colours, and the page behind it one.
        const QRect room(tile->mapTo(&window, QPoint()), tile->size());
        QSet<QRgb> colors;
        for (int y = room.top() + 1; y < room.bottom(); ++y) {
            for (int x = room.left() + 1; x < room.right(); ++x)
                colors.insert(image.pixel(x, y));
        }
        QVERIFY2(colors.size() > 5, qPrintable(QString::number(colors.size())));
    }
}

void FleetTest::shownAtOnceWithAllUpses()
{
    SiteModel site;
    site.setGrowing(true);
    ConsoleWindow window(&site);
    for (const char *name : {"a", "b", "c"})
        site.add(QLatin1String(name))->take(ups(QLatin1String(name), "OB"));
    window.showPage(0);
    const auto *page = window.findChild<FleetPage *>();
    QCOMPARE(viewOf(*page)->shownCount(), 3);
    QCOMPARE(page->findChild<QToolButton *>(QStringLiteral("only Warning"))->text(),
             QStringLiteral("3"));
}

/// UPSes that are not shown yet are not those that a filter leaves out.
void FleetTest::nothingFitsOnlyWithAFilter()
{
    SiteModel site;
    FleetView view;
    view.resize(400, 300);
    view.setSite(&site);
    const QImage unknown = view.viewport()->grab().toImage();
    site.add(QStringLiteral("a"))->take(ups(QStringLiteral("a"), "OL"));
    QCOMPARE(view.shownCount(), 0);
    QCOMPARE(view.viewport()->grab().toImage(), unknown);
    FleetFilter filter;
    filter.words = QStringLiteral("nobody");
    view.setFilter(filter);
    QCOMPARE(view.shownCount(), 0);
    QVERIFY(view.viewport()->grab().toImage() != unknown);
}

/// The highest and the lowest value that a dial marks are of the UPS that is shown.
void FleetTest::marksBelongToTheUps()
{
    SiteModel site;
    UpsModel *high = site.add(QStringLiteral("high"));
    high->take(ups(QStringLiteral("high"), "OL", 90));
    UpsModel *low = site.add(QStringLiteral("low"));
    low->take(ups(QStringLiteral("low"), "OL", 20));
    UpsModel *never = site.add(QStringLiteral("never"));
    never->take(Snapshot::lost(QStringLiteral("never"), QStringLiteral("no answer")));
    ConsoleWindow window(&site);
    auto *page = window.findChild<FleetPage *>();
    auto *room = window.findChild<GaugeRoom *>(QStringLiteral("LoadRoom"));
    QVERIFY(page && room);
    const auto imageOf = [](UpsModel *model) {
        GaugeRoom alone(Quantity::Load, QStringLiteral("Load"));
        alone.resize(240, 200);
        alone.showUps(*model);
        return alone.grab().toImage();
    };
    GaugeRoom shared(Quantity::Load, QStringLiteral("Load"));
    shared.resize(240, 200);
    for (UpsModel *model : {high, low, never, high}) {
        Q_EMIT page->chosen(model);
        const QString value = model == high ? QStringLiteral("90 %") : QStringLiteral("20 %");
        QCOMPARE(room->toolTip().contains(QStringLiteral("Highest seen: ") + value),
                 model != never);
        QCOMPARE(room->toolTip().contains(QStringLiteral("Lowest seen: ") + value), model != never);
        QCOMPARE(room->toolTip().contains(QStringLiteral("seen")), model != never);
        shared.showUps(*model);
        QCOMPARE(shared.grab().toImage(), imageOf(model));
    }
}

KIV_TEST_MAIN(FleetTest)

#include "tst_fleet.moc"
