// SPDX-License-Identifier: LicenseRef-all-rights-reserved

#include "consolewindow.h"
#include "elidedlabel.h"
#include "feed/scenario.h"
#include "feed/simulatorfeed.h"
#include "nutmapping.h"
#include "plaintext.h"
#include "program.h"
#include "scrollroom.h"

#include "testmain.h"
#include "watchedsite.h"
#include "widgetprobe.h"

#include <aerobutton.h>
#include <aeroswitch.h>
#include <metrobatticon.h>
#include <metrocirclerate.h>
#include <metronavdrawer.h>
#include <metroshelter.h>
#include <metrosysicon.h>
#include <metrotabicon.h>
#include <rotatestackedwidget.h>
#include <transpbutton.h>

#include <QtCore/QTemporaryDir>
#include <QtGui/QFontMetrics>
#include <QtWidgets/QComboBox>
#include <QtWidgets/QFocusFrame>
#include <QtWidgets/QLineEdit>
#include <QtWidgets/QScrollArea>
#include <QtWidgets/QScrollBar>
#include <QtWidgets/QStyleOptionComboBox>

namespace {

const QSize sizes[] = {{480, 320},  {480, 800},   {640, 360},   {800, 480},
                       {1024, 600}, {1280, 1024}, {1920, 1080}, {3840, 2160}};

/// Every phase of the scenario, and what a careless UPS may send.
QVector<QPair<QString, Snapshot>> states()
{
    QVector<QPair<QString, Snapshot>> all;
    for (int phase = 0; phase < Scenario::phaseCount; ++phase)
        all.append({QStringLiteral("phase %1").arg(phase),
                    Scenario::snapshotAt(Scenario::startOf(Scenario::Phase(phase)) + 2.0)});
    Snapshot wordy = Scenario::snapshotAt(Scenario::startOf(Scenario::Phase::LowBattery) + 5.0);
    wordy.name = QString(300, QLatin1Char('W'));
    for (QStringList *texts : {&wordy.status, &wordy.alarms, &wordy.alarmTexts}) {
        for (int i = 0; i < 12; ++i)
            texts->append(QStringLiteral("Condition %1 that takes many words to tell").arg(i));
    }
    all.append({QStringLiteral("wordy"), wordy});
    Snapshot huge = wordy;
    for (Measure &measure : huge.measures)
        measure.value = 99999999999.0;
    all.append({QStringLiteral("huge numbers"), huge});
    for (Measure &measure : huge.measures)
        measure.value = -99999999999.0;
    all.append({QStringLiteral("negative numbers"), huge});
    Snapshot empty = Scenario::snapshotAt(60);
    empty.measures = {};
    all.append({QStringLiteral("no data"), empty});
    all.append(
        {QStringLiteral("lost"), Snapshot::lost(wordy.name, QString(400, QLatin1Char('r')))});
    return all;
}

QString nameOf(const QWidget *widget)
{
    QStringList names;
    for (; widget && !widget->isWindow(); widget = widget->parentWidget()) {
        const QString name = widget->objectName();
        names.prepend(QLatin1String(widget->metaObject()->className()) +
                      (name.isEmpty() ? QString() : QLatin1Char('#') + name.left(20)));
    }
    return names.mid(std::max(0, int(names.size()) - 3)).join(QLatin1Char('/'));
}

QString textOf(const QRect &rect)
{
    return QStringLiteral("(%1 %2 %3x%4)")
        .arg(rect.x())
        .arg(rect.y())
        .arg(rect.width())
        .arg(rect.height());
}

/// The inner widgets of which only the whole counts.
bool isOpaque(const QWidget *widget)
{
    return qobject_cast<const QScrollBar *>(widget) || qobject_cast<const MetroNavdrawer *>(widget);
}

/// Which text of @p widget does not fit, if one does not.
QString cutText(const QWidget *widget)
{
    const auto tooNarrow = [&](const QString &text, const QFont &font, double room) {
        const double wanted = QFontMetricsF(font).horizontalAdvance(text);
        return wanted <= room + 1.0 ? QString()
                                    : QStringLiteral("'%1' needs %2, has %3")
                                          .arg(text.left(40))
                                          .arg(wanted, 0, 'f', 0)
                                          .arg(room, 0, 'f', 0);
    };
    if (const auto *label = qobject_cast<const QLabel *>(widget)) {
        if (label->text().isEmpty())
            return {};
        // An elided one may lack width, since its whole text is in reach, but not height.
        const bool elides = qobject_cast<const ElidedLabel *>(label);
        const QSize wanted = elides              ? QSize(0, label->minimumSizeHint().height())
                             : label->wordWrap() ? QSize(0, label->heightForWidth(label->width()))
                                                 : label->sizeHint();
        if (wanted.width() > label->width() + 1 || wanted.height() > label->height() + 1)
            return QStringLiteral("'%1' needs %2x%3, has %4x%5")
                .arg(label->text().left(40))
                .arg(wanted.width())
                .arg(wanted.height())
                .arg(label->width())
                .arg(label->height());
        constexpr int readable = 30;
        if (elides && label->width() < readable)
            return QStringLiteral("'%1' has no room").arg(label->text().left(40));
        return {};
    }
    if (const auto *tile = qobject_cast<const MetroShelter *>(widget)) {
        const int led = tile->height() >= 26 ? 21 : 10;
        return tooNarrow(tile->text(), tile->font(), tile->width() - tile->getXLabel() - led);
    }
    if (const auto *dial = qobject_cast<const MetroCirclerate *>(widget)) {
        QString text = dial->getFormatStr();
        text.replace(QStringLiteral("%%"), QStringLiteral("%"));
        const double room = 2.0 * (dial->getRadius() - dial->getTickness());
        QFont small = dial->font();
        small.setPointSizeF(small.pointSizeF() * 0.7);
        const QString value = tooNarrow(text, dial->font(), room);
        return value.isEmpty() ? tooNarrow(dial->getLabel(), small, room) : value;
    }
    const auto *button = qobject_cast<const QAbstractButton *>(widget);
    if (button && !qobject_cast<const MetroTabicon *>(widget) && !button->text().isEmpty())
        return tooNarrow(button->text(), button->font(), button->width() - 4);
    return {};
}

/// A control that a finger cannot hit.
QString smallTarget(const QWidget *widget)
{
    constexpr int least = 44;
    const auto *button = qobject_cast<const QAbstractButton *>(widget);
    if (!button || button->focusPolicy() == Qt::NoFocus)
        return {};
    // A switch made of images has their size; its row takes touches for it.
    if (widget->inherits("SimpleSlideSwitch"))
        return {};
    return widget->width() >= least && widget->height() >= least
               ? QString()
               : QStringLiteral("is only %1x%2").arg(widget->width()).arg(widget->height());
}

/// All that is wrong below @p parent.
void check(const QWidget *parent, QStringList *problems)
{
    QVector<const QWidget *> children;
    for (QObject *object : parent->children()) {
        const auto *child = qobject_cast<const QWidget *>(object);
        if (child && child->isVisible() && !qobject_cast<const QFocusFrame *>(child))
            children.append(child);
    }
    // What a scroll area shows may be larger than its room.
    const bool scrolls = qobject_cast<const QAbstractScrollArea *>(parent->parentWidget());
    for (int i = 0; i < children.size(); ++i) {
        const QWidget *child = children.at(i);
        // These write a number that they clamp; the console covers it and writes the true one.
        const bool covered = child->inherits("MetroLinerate") || child->inherits("MetroXbar");
        if (!scrolls && !covered && !parent->rect().contains(child->geometry()))
            problems->append(nameOf(child) + textOf(child->geometry()) +
                             QStringLiteral(" outside ") + textOf(parent->rect()));
        for (int j = 0; j < i; ++j) {
            if (child->geometry().intersects(children.at(j)->geometry()))
                problems->append(nameOf(child) + textOf(child->geometry()) +
                                 QStringLiteral(" overlaps ") + nameOf(children.at(j)) +
                                 textOf(children.at(j)->geometry()));
        }
        for (const QString &problem : {cutText(child), smallTarget(child)}) {
            if (!problem.isEmpty())
                problems->append(nameOf(child) + QStringLiteral(": ") + problem);
        }
        if (!isOpaque(child))
            check(child, problems);
    }
}

} // namespace

/// All pages in all states and sizes, at the font resolution and the scale factor that the
/// environment names: nothing is cut, nothing overlaps.
class ConsoleLayoutTest : public WidgetTest
{
    Q_OBJECT

private Q_SLOTS:
    // First, as in a new process: no window has set another scale yet.
    void eventsOfASiteFit();
    void everythingHasItsRoom_data();
    void everythingHasItsRoom();
    void statesAreReadWhole();
    void countsAreNeverCut_data();
    void countsAreNeverCut();
    void imagesOfAWindowThatIsNotShown();
};

void ConsoleLayoutTest::everythingHasItsRoom_data()
{
    QTest::addColumn<QSize>("size");
    for (const QSize size : sizes)
        QTest::addRow("%dx%d", size.width(), size.height()) << size;
}

void ConsoleLayoutTest::everythingHasItsRoom()
{
    QFETCH(QSize, size);
    // With a history that has something to show.
    WatchedSite watched;
    for (int i = 0; i < 120; i += 5)
        watched.pass(Scenario::snapshotAt(i));
    UpsModel *ups = watched.ups;
    // And with all commands of a UPS; the states come from here.
    SimulatorFeed feed(1.0);
    ups->setFeed(&feed);
    ConsoleWindow window(&watched.site);
    window.setHistory(watched.history.get());
    QCOMPARE(watched.events().isEmpty(), false);
    // Only the geometry counts; painting 8 million pixels takes its time.
    window.setUpdatesEnabled(false);
    window.resize(size);
    window.show();
    deliverAll();
    QCOMPARE(window.size(), size);
    auto *stack = window.findChild<RotateStackedWidget *>(QStringLiteral("pages"));
    QStringList problems;
    for (const auto &[name, snapshot] : states()) {
        ups->take(snapshot);
        for (int page = 0; page < stack->count(); ++page) {
            window.showPage(page);
            deliverAll();
            QStringList found;
            check(&window, &found);
            const auto *room = qobject_cast<const QScrollArea *>(stack->currentWidget());
            QVERIFY(room);
            // The overview is to be seen at a glance, and a usual panel has room for all pages.
            const bool fits = !room->verticalScrollBar()->isVisible() &&
                              !room->horizontalScrollBar()->isVisible();
            const bool panel = size.width() >= 800 && size.height() >= 480;
            if (!fits && (page == 0 || panel))
                found.append(
                    QStringLiteral("the page scrolls: it needs %1, has %2")
                        .arg(textOf(room->widget()->rect()), textOf(room->viewport()->rect())));
            // So has a page that scrolls by itself, if it is one of the simulated UPS.
            const QList<ScrollRoom *> inside = room->widget()->findChildren<ScrollRoom *>();
            for (const ScrollRoom *own : inside) {
                const QSize content = own->widget()->size();
                if (own->isVisible() && panel && own->verticalScrollBar()->isVisible())
                    found.append(QStringLiteral("the page scrolls inside: %1 in %2")
                                     .arg(content.height())
                                     .arg(own->viewport()->height()));
                if (content.width() > own->viewport()->width())
                    found.append(QStringLiteral("the content is too wide"));
            }
            if (!fits && room->horizontalScrollBar()->isVisible())
                found.append(QStringLiteral("the page is too wide"));
            for (const QString &problem : found) {
                const QString line = window.pageNames().at(page) + QStringLiteral(": ") + problem;
                if (!problems.contains(line) && problems.size() < 40)
                    problems.append(line + QStringLiteral(" [") + name + QLatin1Char(']'));
            }
            if (problems.size() >= 40)
                break;
        }
    }
    QVERIFY2(problems.isEmpty(), qPrintable(QLatin1Char('\n') + problems.join(QLatin1Char('\n'))));
}

/// All filters and actions, on the smallest panel too.
void ConsoleLayoutTest::eventsOfASiteFit()
{
    WatchedSite watched;
    watched.site.add(QStringLiteral("Server room, left"));
    ConsoleWindow window(&watched.site);
    window.setHistory(watched.history.get());
    window.showPage(int(window.pageNames().indexOf(QLatin1String("events"))));
    window.show();
    // Also after it was larger.
    for (const QSize size : {ConsoleWindow::leastSize, QSize(3840, 2160), QSize(1920, 1080),
                             ConsoleWindow::leastSize}) {
        window.resize(size);
        deliverAll();
    }
    const auto *stack = window.findChild<RotateStackedWidget *>(QStringLiteral("pages"));
    const auto *room = qobject_cast<const QScrollArea *>(stack->currentWidget());
    QVERIFY(room);
    QVERIFY(!room->verticalScrollBar()->isVisible());
    QVERIFY2(!room->horizontalScrollBar()->isVisible(),
             qPrintable(textOf(room->widget()->rect()) + textOf(room->viewport()->rect())));
    const auto *ups = window.findChild<QWidget *>(QStringLiteral("ups filter"));
    QVERIFY(ups->isVisible());
    // Their words are to be read.
    for (const char *name : {"severity filter", "ups filter", "period filter"}) {
        const auto *box = window.findChild<QComboBox *>(QLatin1String(name));
        QStyleOptionComboBox option;
        option.initFrom(box);
        const int space =
            box->style()
                ->subControlRect(QStyle::CC_ComboBox, &option, QStyle::SC_ComboBoxEditField, box)
                .width();
        const int words = box->fontMetrics().horizontalAdvance(box->currentText());
        QVERIFY2(
            space >= words,
            qPrintable(
                QStringLiteral("%1: %2 for %3").arg(box->currentText()).arg(space).arg(words)));
    }
    const auto *search = window.findChild<QLineEdit *>(QStringLiteral("text filter"));
    const QMargins inside = search->textMargins();
    QVERIFY2(search->width() - inside.left() - inside.right() >
                 search->fontMetrics().horizontalAdvance(search->placeholderText()),
             qPrintable(textOf(search->geometry())));
}

/// What a UPS does is read without the tool tip, on the smallest panels too.
void ConsoleLayoutTest::statesAreReadWhole()
{
    QVector<QPair<QString, Snapshot>> all;
    for (int phase = 0; phase < Scenario::phaseCount; ++phase)
        all.append({QStringLiteral("phase %1").arg(phase),
                    Scenario::snapshotAt(Scenario::startOf(Scenario::Phase(phase)) + 2.0)});
    for (
        const char *status :
        {"OL",        "OL CHRG",        "OB DISCHRG", "OB LB DISCHRG", "OL OVER", "OB OVER DISCHRG",
         "OL BYPASS", "OL BYPASS OVER", "OL RB",      "OL CHRG RB",    "OL LB",   "OL HB",
         "OL TRIM",   "OL BOOST CHRG",  "OL CAL",     "OB CAL",        "OFF",     "OL OFF",
         "OL ALARM",  "OB ALARM",       "OL FSD",     "OVER",          ""}) {
        for (const char *volts : {"231", "0", "160", ""}) {
            NutVariables variables;
            variables.insert(QStringLiteral("ups.status"), QLatin1String(status));
            variables.insert(QStringLiteral("input.voltage"), QLatin1String(volts));
            variables.insert(QStringLiteral("input.voltage.nominal"), QStringLiteral("230"));
            variables.insert(QStringLiteral("input.frequency"), QStringLiteral("50"));
            variables.insert(QStringLiteral("output.voltage"), QStringLiteral("230"));
            variables.insert(QStringLiteral("output.frequency"), QStringLiteral("50"));
            variables.insert(QStringLiteral("ups.load"), QStringLiteral("100"));
            variables.insert(QStringLiteral("ups.realpower"), QStringLiteral("19600"));
            variables.insert(QStringLiteral("battery.charge"), QStringLiteral("100"));
            variables.insert(QStringLiteral("battery.voltage"), QStringLiteral("409.6"));
            variables.insert(QStringLiteral("battery.runtime"), QStringLiteral("182"));
            all.append({QLatin1String(status) + QLatin1Char(' ') + QLatin1String(volts),
                        snapshotOf(QStringLiteral("demo"), variables)});
        }
    }
    SiteModel site;
    UpsModel *ups = site.add(QStringLiteral("demo"));
    ConsoleWindow window(&site);
    QStringList problems;
    for (const QSize size : {QSize(480, 320), QSize(640, 360), QSize(800, 480), QSize(1280, 800)}) {
        window.resize(size);
        window.show();
        for (const auto &[name, snapshot] : std::as_const(all)) {
            ups->take(snapshot);
            deliverAll();
            const auto *diagram = window.findChild<QWidget *>(QStringLiteral("diagram"));
            QList<ElidedLabel *> labels = diagram->findChildren<ElidedLabel *>();
            labels += window.findChild<ElidedLabel *>(QStringLiteral("headline"));
            // Of several conditions the worst comes first.
            if (name.startsWith(QStringLiteral("phase")) && ups->conditions().size() == 1)
                labels += window.findChild<ElidedLabel *>(QStringLiteral("condition"));
            for (const ElidedLabel *label : std::as_const(labels)) {
                if (label->isVisible() && label->isElided())
                    problems += QStringLiteral("%1 at %2 [%3]")
                                    .arg(label->text(), textOf(window.rect()), name);
            }
        }
    }
    problems.removeDuplicates();
    QVERIFY2(problems.isEmpty(), qPrintable(problems.join(QLatin1Char('\n'))));
}

void ConsoleLayoutTest::countsAreNeverCut_data()
{
    QTest::addColumn<QSize>("size");
    QTest::addColumn<int>("times");
    QTest::newRow("480x320") << QSize(480, 320) << 1;
    QTest::newRow("480x320, long numbers") << QSize(480, 320) << 31;
    QTest::newRow("800x480, long numbers") << QSize(800, 480) << 31;
}

/// The banner of a site has all counts by severity, in words or as signs.
void ConsoleLayoutTest::countsAreNeverCut()
{
    QFETCH(QSize, size);
    QFETCH(int, times);
    SiteModel site;
    const auto add = [&](const QString &status) {
        const QString name = QString::number(site.count());
        NutVariables variables;
        variables.insert(QStringLiteral("ups.status"), status);
        site.add(name)->take(status.isEmpty() ? Snapshot::lost(name, QStringLiteral("gone"))
                                              : snapshotOf(name, variables));
    };
    const QString statuses[] = {QStringLiteral("OB LB"), QString(), QStringLiteral("OB"),
                                QStringLiteral("OL OFF"), QStringLiteral("OL")};
    for (const QString &status : statuses) {
        for (int i = 0; i < 38 * times; ++i)
            add(status);
    }
    for (int i = 0; i < 12; ++i)
        site.setProblem(QStringLiteral("server %1").arg(i), QStringLiteral("connection refused"));
    ConsoleWindow window(&site);
    window.resize(size);
    window.show();
    auto *headline = window.findChild<QLabel *>(QStringLiteral("headline"));
    for (const bool dark : {false, true}) {
        window.chooseDarkTheme(dark);
        deliverAll();
        const auto look = [&] {
            window.showPage(0); // counts at once
            return headline->grab().toImage();
        };
        QImage before = look();
        for (const QString &status : statuses) {
            add(status);
            const QImage after = look();
            QVERIFY2(after != before, qPrintable(headline->text()));
            before = after;
        }
        // Nor is the last digit.
        const int right = before.width() - 1;
        for (int y = 0; y < before.height(); ++y)
            QCOMPARE(before.pixelColor(right, y), before.pixelColor(right, 0));
    }
    prepareTestApplication();
}

/// They have the layout of one that is shown: no scroll bar where everything has room.
void ConsoleLayoutTest::imagesOfAWindowThatIsNotShown()
{
    const QTemporaryDir directory;
    SiteModel site;
    SimulatorFeed feed(1.0);
    UpsModel *ups = site.add(QStringLiteral("simulator"));
    ups->setFeed(&feed);
    ConsoleWindow window(&site);
    window.resize(1920, 1080);
    ups->take(Scenario::snapshotAt(30));
    const int last = int(window.pageNames().indexOf(QStringLiteral("control")));
    for (int index = 0; index <= last; ++index) {
        window.showPage(index);
        QString error;
        QVERIFY2(
            Program::takeScreenshot(window, directory.path(), window.pageNames().at(index), &error),
            qPrintable(error));
    }
    const auto *page = window.findChild<QWidget *>(QStringLiteral("control"));
    const auto *room = page->findChild<ScrollRoom *>();
    QVERIFY(!room->verticalScrollBar()->isVisibleTo(&window));
    QVERIFY(room->widget()->height() <= room->height());
    QCOMPARE(room->widget()->width(), room->width());
}

KIV_TEST_MAIN(ConsoleLayoutTest)

#include "tst_consolelayout.moc"
