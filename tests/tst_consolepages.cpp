// SPDX-License-Identifier: LicenseRef-all-rights-reserved

#include "barroom.h"
#include "controlpage.h"
#include "elidedlabel.h"
#include "feed/scenario.h"
#include "informationpage.h"
#include "nutmapping.h"
#include "powerpage.h"
#include "settingspage.h"
#include "theme.h"

#include "testmain.h"
#include "widgetprobe.h"

#include <aerolinebar.h>
#include <metrolinerate.h>
#include <metroxbar.h>

#include <QtCore/QSortFilterProxyModel>
#include <QtGui/QClipboard>
#include <QtWidgets/QApplication>
#include <QtWidgets/QLineEdit>
#include <QtWidgets/QPushButton>
#include <QtWidgets/QScrollArea>
#include <QtWidgets/QTableView>

#include <memory>

namespace {

/// Variables from "name=value;name=value".
NutVariables parse(const QString &text)
{
    NutVariables variables;
    for (const QString &pair : text.split(QLatin1Char(';'), Qt::SkipEmptyParts))
        variables.insert(pair.section(QLatin1Char('='), 0, 0), pair.section(QLatin1Char('='), 1));
    return variables;
}

Snapshot ups(const char *variables)
{
    return snapshotOf(QStringLiteral("demo"), parse(QString::fromUtf8(variables)));
}

QString textOf(const QWidget &page, const char *name)
{
    const auto *label = page.findChild<QLabel *>(QString::fromUtf8(name));
    return label ? label->text() : QStringLiteral("(no such label)");
}

/// Shows @p page at @p size in pixels, as a window of that share of the smallest usual screen
/// would.
void showAt(Page *page, const QSize &size)
{
    Theme::setScale(std::min(size.width() / 700.0, size.height() / 400.0), 96);
    Theme::applyScale(page);
    page->applyScale();
    page->resize(size);
    page->show();
    deliverAll();
}

std::unique_ptr<Page> makePage(const QString &name)
{
    if (name == QLatin1String("power"))
        return std::make_unique<PowerPage>();
    if (name == QLatin1String("control"))
        return std::make_unique<ControlPage>();
    if (name == QLatin1String("information"))
        return std::make_unique<InformationPage>();
    return std::make_unique<SettingsPage>();
}

/// For looking at them: the pages are written where KIV_PAGE_IMAGES says, if anywhere.
void keepImage(QWidget *page, const QString &name)
{
    const QString directory = qEnvironmentVariable("KIV_PAGE_IMAGES");
    if (!directory.isEmpty())
        QVERIFY(page->grab().save(directory + QLatin1Char('/') + name + QStringLiteral(".png")));
}

/// The part of the bar's track that its fill covers, from 0 to 1, as it looks on screen.
double fillOf(const BarRoom *room)
{
    const auto *clip = room->findChild<MetroXbar *>()->parentWidget();
    const QImage image = const_cast<BarRoom *>(room)->grab().toImage();
    const int row = clip->y() + 8;
    int filled = 0;
    for (int x = 0; x < clip->width(); ++x) {
        const QColor color = image.pixelColor(clip->x() + x, row);
        if (color.blue() > 200 && color.red() < 60)
            ++filled;
    }
    return double(filled) / clip->width();
}

/// The room of the input voltage.
BarRoom *inputRoomOf(const PowerPage &page)
{
    for (BarRoom *each : page.findChildren<BarRoom *>()) {
        if (each->findChild<MetroXbar *>(QStringLiteral("Input voltage")))
            return each;
    }
    return nullptr;
}

/// The page "Power" of a UPS.
struct ShownPower
{
    ShownPower()
    {
        page.setModel(&model);
        showAt(&page, QSize(700, 400));
    }
    void take(const char *variables)
    {
        model.take(ups(variables));
        deliverAll();
    }
    BarRoom *inputRoom() const
    {
        return inputRoomOf(page);
    }

    UpsModel model{QStringLiteral("demo")};
    PowerPage page;
};

} // namespace

class ConsolePagesTest : public WidgetTest
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup();
    void numbersAreTrue_data();
    void numbersAreTrue();
    void zeroIsNotMissing();
    void barsUseTheModelsScale();
    void barsShowNoNumberOfTheirOwn();
    void loadFillsItsBar();
    void unknownScalesHaveNoMarks();
    void phases();
    void chargeIsTrue_data();
    void chargeIsTrue();
    void timeLeftOnlyWhereItMeansSomething();
    void everyTextHasRoom_data();
    void everyTextHasRoom();
    void information();
    void search();
    void copy();
    void selectionOutlivesNewValues();
    void hugeAndHostileTexts();
    void nothingRepaintsWithoutAChange();
};

void ConsolePagesTest::init()
{
    prepareTestApplication();
    QApplication::setPalette(Theme::palette(false));
}

void ConsolePagesTest::cleanup()
{
    Theme::setScale(1.0, 96);
    prepareTestApplication();
}

void ConsolePagesTest::numbersAreTrue_data()
{
    QTest::addColumn<QString>("variables");
    QTest::addColumn<QString>("label");
    QTest::addColumn<QString>("text");
    const auto row = [](const char *variables, const char *label, const char *text) {
        QTest::addRow("%s", variables) << variables << label << QString::fromUtf8(text);
    };
    row("ups.load=300", "Load value", "300 %");
    row("ups.load=-5", "Load value", "-5 %");
    row("ups.load=-0.3", "Load value", "0 %");
    row("ups.load=255.4", "Load value", "255 %");
    row("input.voltage=99999999999", "Input voltage value", "> 9999 V");
    row("input.voltage=115.4", "Input voltage value", "115 V");
    row("input.voltage=0", "Input voltage value", "0 V");
    row("output.voltage=", "Output voltage value", "no data");
    row("ups.temperature=-0.04", "Temperature value", "0.0 °C");
    row("ups.realpower=12540", "Output power value", "12.5 kW");
}

void ConsolePagesTest::numbersAreTrue()
{
    QFETCH(QString, variables);
    QFETCH(QString, label);
    QFETCH(QString, text);
    ShownPower shown;
    shown.model.take(ups((QStringLiteral("ups.status=OL;") + variables).toUtf8().constData()));
    QCOMPARE(textOf(shown.page, label.toUtf8().constData()), text);

    // The visible bar has no other number, not even for a screen reader.
    const QString quantity = label.left(label.size() - 6);
    const auto *bar = shown.page.findChild<MetroXbar *>(quantity);
    const auto *loadBar = shown.page.findChild<MetroLinerate *>();
    const bool missing = text == QLatin1String("no data");
    if (quantity == QLatin1String("Load")) {
        QVERIFY(bar->isVisible() != loadBar->isVisible());
        const int number = loadBar->isVisible() ? loadBar->getValue() : bar->getValue();
        QCOMPARE(QStringLiteral("%1 %").arg(number), text);
    } else if (bar) {
        QCOMPARE(bar->isVisible(), !missing);
        if (text == QLatin1String("> 9999 V"))
            QCOMPARE(QString::number(bar->getValue()) + bar->getMeasure(),
                     QStringLiteral("10000 V or more"));
        else if (!missing)
            QCOMPARE(QStringLiteral("%1 V").arg(bar->getValue()), text);
    }
}

/// A measured 0 V has a track; without data the room is tinted and hatched.
void ConsolePagesTest::zeroIsNotMissing()
{
    ShownPower shown;
    BarRoom *room = shown.inputRoom();
    QVERIFY(room);
    shown.take("ups.status=OB;input.voltage=0;input.voltage.nominal=230");
    const QImage zero = room->grab().toImage();
    shown.take("ups.status=OB;input.voltage.nominal=230");
    const QImage missing = room->grab().toImage();
    const QRect track = room->findChild<MetroXbar *>()->parentWidget()->geometry();
    const QPoint place(track.left() + 11, track.top() + 7);
    const Theme::GaugeColors colors = Theme::gaugeColors(false);
    QCOMPARE(zero.pixelColor(place), colors.track);
    int tinted = 0;
    for (int x = 0; x < 20; ++x)
        tinted += missing.pixelColor(place + QPoint(x, 0)) == colors.noData ? 1 : 0;
    QVERIFY(tinted > 5);
}

void ConsolePagesTest::barsUseTheModelsScale()
{
    ShownPower shown;
    shown.take("ups.status=OL;input.voltage=115;output.voltage=120;output.frequency=60");
    const auto *bar = shown.page.findChild<MetroXbar *>(QStringLiteral("Input voltage"));
    QCOMPARE(bar->getMinValue(), 90);
    QCOMPARE(bar->getMaxValue(), 150);
    const auto *room = qobject_cast<BarRoom *>(bar->parentWidget()->parentWidget());
    // Healthy mains fill about their share, and not nothing.
    QVERIFY2(std::abs(fillOf(room) - 25.0 / 60.0) < 0.04,
             qPrintable(QString::number(fillOf(room))));
    // The same scale as elsewhere.
    QCOMPARE(double(bar->getMaxValue()), shown.model.scale(Quantity::InputVoltage).maximum);
}

/// The library's bars write a number of their own beside them; the page's is the only one seen.
void ConsolePagesTest::barsShowNoNumberOfTheirOwn()
{
    ShownPower shown;
    for (const QSize size : {QSize(410, 230), QSize(700, 400), QSize(1700, 950)}) {
        showAt(&shown.page, size);
        shown.take("ups.status=OL;input.voltage=230;ups.load=40");
        for (const BarRoom *room : shown.page.findChildren<BarRoom *>()) {
            for (const QWidget *bar : room->findChildren<QWidget *>()) {
                if (!qobject_cast<const MetroXbar *>(bar) &&
                    !qobject_cast<const MetroLinerate *>(bar))
                    continue;
                const int text = bar->fontMetrics().horizontalAdvance(QStringLiteral("138"));
                QVERIFY(bar->width() >= bar->parentWidget()->width() + text - 2);
            }
        }
    }
}

/// The library's load bar has a strip for overload above its scale; without overload it would be an
/// empty bar.
void ConsolePagesTest::loadFillsItsBar()
{
    ShownPower shown;
    for (const QSize size : {QSize(410, 230), QSize(700, 400), QSize(1700, 950)}) {
        showAt(&shown.page, size);
        const auto *loadBar = shown.page.findChild<MetroLinerate *>();
        auto *room = qobject_cast<BarRoom *>(loadBar->parentWidget()->parentWidget());
        const QRect clip = loadBar->parentWidget()->geometry();
        const int below = clip.height() - (loadBar->geometry().bottom() + 1);
        const auto colorAt = [&](int fromTop) {
            // In the first tenth, beside the marks.
            return room->grab().toImage().pixelColor(clip.left() + clip.width() / 20,
                                                     clip.top() + fromTop);
        };
        const int height = clip.height() - below;
        shown.take("ups.status=OL;ups.load=60");
        const QColor fill = colorAt(height / 2);
        for (const int y : {2, height / 4, height - 4})
            QCOMPARE(colorAt(y), fill);
        QVERIFY(fill != Theme::gaugeColors(false).track);
        // Overload has both bars again, with the line between them.
        shown.take("ups.status=OL OVER;ups.load=120");
        QCOMPARE(loadBar->y(), 0);
        QCOMPARE(loadBar->height(), height);
        QVERIFY(colorAt(height / 2) != fill);
        shown.take("ups.status=OL;ups.load=60");
        QCOMPARE(colorAt(2), fill);
    }
}

/// A UPS that was never reached has no marks, as if its values were known.
void ConsolePagesTest::unknownScalesHaveNoMarks()
{
    ShownPower shown;
    BarRoom *room = shown.inputRoom();
    QVERIFY(room);
    const auto marks = [&] {
        // Below the track: the ends of the scale and the nominal value.
        const QRect track = room->findChild<MetroXbar *>()->parentWidget()->geometry();
        const QImage image = room->grab().toImage();
        const QColor background = image.pixelColor(track.left() + 2, room->height() - 1);
        int count = 0;
        for (int y = track.bottom() - QFontMetrics(Theme::font(Theme::Small)).height() + 1;
             y <= track.bottom(); ++y) {
            for (int x = track.left(); x <= track.right(); ++x)
                count += image.pixelColor(x, y) != background ? 1 : 0;
        }
        return count;
    };
    shown.model.take(Snapshot::lost(QStringLiteral("demo"), QStringLiteral("not reached")));
    deliverAll();
    QCOMPARE(marks(), 0);
    shown.take("ups.status=OL;input.voltage=231");
    QVERIFY(marks() > 20);
    // One that was reached keeps its scale.
    shown.model.take(Snapshot::lost(QStringLiteral("demo"), QStringLiteral("lost")));
    deliverAll();
    QVERIFY(marks() > 20);
}

void ConsolePagesTest::phases()
{
    ShownPower shown;
    shown.take("ups.status=OL;ups.L1.load=30;ups.L2.load=110;ups.L3.load=60;"
               "output.L1-N.voltage=231;output.L2-N.voltage=214;output.L3-N.voltage=229;"
               "output.voltage.nominal=230;output.L1.current=3;output.L2.current=8");
    keepImage(&shown.page, QStringLiteral("power-phases"));
    QCOMPARE(textOf(shown.page, "Load value"), QStringLiteral("110 %"));
    QCOMPARE(textOf(shown.page, "Output voltage value"), QStringLiteral("214 V"));
    QCOMPARE(textOf(shown.page, "Output current value"), QStringLiteral("8.0 A"));
    QStringList texts;
    for (const QLabel *label : shown.page.findChildren<QLabel *>()) {
        if (label->isVisible())
            texts += label->text();
    }
    QVERIFY(texts.contains(QStringLiteral("Load L2")));
    QVERIFY(texts.contains(QStringLiteral("Output voltage L2")));
    QVERIFY(texts.contains(QStringLiteral("Output current L2")));
    // A line may end between two phases only.
    QVERIFY(texts.contains(QStringLiteral("L2 110 %, L3 60 %, L1 30 %")
                               .replace(QLatin1Char(' '), QChar(QChar::Nbsp))
                               .replace(QStringLiteral(",\u00a0"), QStringLiteral(", "))));
}

void ConsolePagesTest::chargeIsTrue_data()
{
    QTest::addColumn<QString>("charge");
    QTest::addColumn<QString>("text");
    QTest::addColumn<double>("value");
    QTest::newRow("usual") << "92.4"
                           << "92 %" << 92.4;
    QTest::newRow("empty") << "0"
                           << "0 %" << 0.0;
    QTest::newRow("a little below 0") << "-0.4"
                                      << "0 %" << -0.4;
    QTest::newRow("below 0") << "-5"
                             << "-5 %" << -5.0;
    QTest::newRow("absurd") << "1e9"
                            << "> 999 %" << 1e9;
    QTest::newRow("missing") << ""
                             << "no data" << 0.0;
}

void ConsolePagesTest::chargeIsTrue()
{
    QFETCH(QString, charge);
    QFETCH(QString, text);
    QFETCH(double, value);
    UpsModel model(QStringLiteral("demo"));
    ControlPage page;
    page.setModel(&model);
    const auto *bar = page.findChild<AeroLinebar *>();
    // From another value and back again.
    for (const char *before : {"ups.status=OL;battery.charge=55", "ups.status=OL"}) {
        model.take(ups(before));
        model.take(
            ups((QStringLiteral("ups.status=OL;battery.charge=") + charge).toUtf8().constData()));
        QCOMPARE(bar->getText(), text);
        QCOMPARE(bar->getValueF(), value);
    }
}

void ConsolePagesTest::timeLeftOnlyWhereItMeansSomething()
{
    UpsModel model(QStringLiteral("demo"));
    ControlPage page;
    page.setModel(&model);
    const auto says = [&](const char *part) {
        for (const QLabel *label : page.findChildren<QLabel *>()) {
            if (label->text().contains(QString::fromUtf8(part)))
                return true;
        }
        return false;
    };
    model.take(ups("ups.status=OB;battery.voltage=26.4;battery.runtime=130"));
    QVERIFY(says("26.4 V  ·  time left 2:10"));
    model.take(ups("ups.status=OB;battery.voltage=26.4"));
    QVERIFY(says("26.4 V  ·  time left unknown"));
    // One phrase for what is missing, whatever it is.
    model.take(ups("ups.status=OB"));
    QVERIFY(says("Battery voltage and time left unknown"));
    model.take(ups("ups.status=OB;battery.runtime=130"));
    QVERIFY(says("Time left 2:10  ·  battery voltage unknown"));
    model.take(ups("ups.status=OFF"));
    QVERIFY(says("Battery voltage unknown"));
    for (const char *status : {"ups.status=OL BYPASS;battery.runtime=130",
                               "ups.status=OFF;battery.runtime=130", "battery.runtime=130"}) {
        model.take(ups(status));
        QVERIFY2(!says("ime left"), status);
    }
}

void ConsolePagesTest::everyTextHasRoom_data()
{
    QTest::addColumn<QString>("page");
    QTest::addColumn<QSize>("size");
    for (const QString &page : {QStringLiteral("power"), QStringLiteral("control"),
                                QStringLiteral("information"), QStringLiteral("settings")}) {
        for (const QSize size : {QSize(410, 230), QSize(640, 330), QSize(700, 400),
                                 QSize(1000, 500), QSize(1700, 950), QSize(3500, 1900)})
            QTest::newRow(qPrintable(
                QStringLiteral("%1 at %2 x %3").arg(page).arg(size.width()).arg(size.height())))
                << page << size;
    }
}

/// No text is cut but by dots with a tool tip; nothing lies outside its page or over a neighbour.
void ConsolePagesTest::everyTextHasRoom()
{
    QFETCH(QString, page);
    QFETCH(QSize, size);
    UpsModel model(QStringLiteral("demo"));
    const std::unique_ptr<Page> shown = makePage(page);
    shown->setModel(&model);
    const char *const states[] = {
        "", "ups.status=OL;ups.load=40;input.voltage=231;battery.charge=98;battery.voltage=27",
        "ups.status=OB LB DISCHRG OVER RB;ups.alarm=Fan failure! Battery "
        "disconnected!;ups.load=300;"
        "input.voltage=0;output.voltage=230;battery.charge=3;battery.runtime=130;"
        "battery.voltage=384.2;ups.realpower=123456;output.current=1234.5;ups.temperature=-12",
        "ups.status=OL;ups.load=-5;input.voltage=99999999999;output.voltage=-99999999;"
        "input.bypass.voltage=230;output.frequency=400;ups.temperature=1e9;output.current=1e9",
        "ups.status=OL;ups.L1.load=30;ups.L2.load=110;ups.L3.load=60;input.L1-L2.voltage=400;"
        "input.L2-L3.voltage=401;input.L3-L1.voltage=380;output.L1.current=1"};
    int state = 0;
    for (const char *variables : states) {
        model.take(*variables ? ups(variables)
                              : Snapshot::lost(QStringLiteral("demo"),
                                               QStringLiteral("connection refused")));
        showAt(shown.get(), size);
        keepImage(shown.get(), QStringLiteral("%1-%2-%3").arg(page).arg(size.width()).arg(++state));
        QCOMPARE(shown->size(), size);
        std::vector<QRect> rooms;
        for (const QLabel *label : shown->findChildren<QLabel *>()) {
            if (!label->isVisible() || label->text().isEmpty())
                continue;
            const QByteArray report = label->text().toUtf8();
            const auto *elided = qobject_cast<const ElidedLabel *>(label);
            if (!elided)
                QVERIFY2(label->width() >= label->fontMetrics().horizontalAdvance(label->text()),
                         report);
            QVERIFY2(label->height() >= label->fontMetrics().height() - 2, report);
            QVERIFY2(label->width() >= label->fontMetrics().averageCharWidth() * 3, report);
            const QRect place(label->mapTo(shown.get(), QPoint()), label->size());
            QVERIFY2(place.left() >= 0 && place.right() < shown->width(), report);
            const bool scrolls =
                shown->findChild<QScrollArea *>() && page != QLatin1String("power");
            QVERIFY2(scrolls || page == QLatin1String("information") ||
                         (place.top() >= 0 && place.bottom() < shown->height()),
                     report);
            for (const QRect &other : rooms)
                QVERIFY2(!place.adjusted(0, 1, 0, -1).intersects(other), report);
            rooms.push_back(place);
        }
        // A value's text and unit are never cut at all.
        for (const ElidedLabel *label : shown->findChildren<ElidedLabel *>()) {
            if (page == QLatin1String("power") && size.width() >= 640 &&
                !label->text().contains(QLatin1String(", ")))
                QVERIFY2(!label->isElided(), qPrintable(label->text()));
        }
    }
}

void ConsolePagesTest::information()
{
    UpsModel model(QStringLiteral("demo"));
    InformationPage page;
    page.setModel(&model);
    showAt(&page, QSize(700, 400));
    QCOMPARE(textOf(page, "Maker"), QStringLiteral("no data"));
    QVERIFY(!page.findChild<QPushButton *>()->isEnabled());
    model.take(ups("ups.status=OL;ups.mfr=Maker;ups.model=Model 7;ups.serial=S1;ups.firmware=2.3;"
                   "ups.power.nominal=3000;ups.realpower.nominal=2700;battery.date=2024/05"));
    QCOMPARE(textOf(page, "Maker"), QStringLiteral("Maker"));
    QCOMPARE(textOf(page, "Model"), QStringLiteral("Model 7"));
    QCOMPARE(textOf(page, "Serial number"), QStringLiteral("S1"));
    QCOMPARE(textOf(page, "Firmware"), QStringLiteral("2.3"));
    QCOMPARE(textOf(page, "Nominal power"), QStringLiteral("3000 VA / 2700 W"));
    QCOMPARE(textOf(page, "Battery date"), QStringLiteral("2024/05"));
    const QAbstractItemModel *rows = page.findChild<QTableView *>()->model();
    QCOMPARE(rows->rowCount(), 8);
    QCOMPARE(rows->index(0, 0).data().toString(), QStringLiteral("battery.date"));
    QCOMPARE(rows->index(0, 1).data().toString(), QStringLiteral("2024/05"));
    model.take(Snapshot::lost(QStringLiteral("demo"), QStringLiteral("refused")));
    QCOMPARE(rows->rowCount(), 0);
    QCOMPARE(textOf(page, "Maker"), QStringLiteral("no data"));
}

void ConsolePagesTest::search()
{
    UpsModel model(QStringLiteral("demo"));
    InformationPage page;
    page.setModel(&model);
    showAt(&page, QSize(700, 400));
    model.take(ups("ups.status=OL;ups.mfr=Maker;ups.load=40;battery.charge=95;driver.version=(x)"));
    const QAbstractItemModel *rows = page.findChild<QTableView *>()->model();
    auto *field = page.findChild<QLineEdit *>();
    QTest::keyClicks(field, QStringLiteral("MAKER")); // values too, in any case
    QCOMPARE(rows->rowCount(), 1);
    QCOMPARE(rows->index(0, 0).data().toString(), QStringLiteral("ups.mfr"));
    field->setText(QStringLiteral("ups."));
    QCOMPARE(rows->rowCount(), 3);
    field->setText(QStringLiteral("(x")); // no pattern
    QCOMPARE(rows->rowCount(), 1);
    field->setText(QStringLiteral("nothing like it"));
    QCOMPARE(rows->rowCount(), 0);
    QVERIFY(!page.findChild<QPushButton *>()->isEnabled());
    // New data are searched as well.
    field->setText(QStringLiteral("97"));
    QCOMPARE(rows->rowCount(), 0);
    model.take(ups("ups.status=OL;battery.charge=97"));
    QCOMPARE(rows->rowCount(), 1);
}

void ConsolePagesTest::copy()
{
    UpsModel model(QStringLiteral("demo"));
    InformationPage page;
    page.setModel(&model);
    showAt(&page, QSize(700, 400));
    model.take(ups("ups.status=OL;ups.mfr=Maker;ups.load=40"));
    auto *table = page.findChild<QTableView *>();
    QTest::mouseClick(page.findChild<QPushButton *>(), Qt::LeftButton);
    QCOMPARE(QGuiApplication::clipboard()->text(),
             QStringLiteral("ups.load: 40\nups.mfr: Maker\nups.status: OL\n"));
    table->selectRow(1);
    QTest::keyClick(table, Qt::Key_C, Qt::ControlModifier);
    QCOMPARE(QGuiApplication::clipboard()->text(), QStringLiteral("ups.mfr: Maker\n"));
}

void ConsolePagesTest::selectionOutlivesNewValues()
{
    UpsModel model(QStringLiteral("demo"));
    InformationPage page;
    page.setModel(&model);
    showAt(&page, QSize(700, 400));
    model.take(ups("ups.status=OL;ups.mfr=Maker;ups.load=40"));
    auto *table = page.findChild<QTableView *>();
    table->selectRow(1);
    model.take(ups("ups.status=OL;ups.mfr=Maker;ups.load=41;battery.charge=7;ups.alarm=x"));
    const QModelIndexList selected = table->selectionModel()->selectedRows();
    QCOMPARE(selected.size(), 1);
    QCOMPARE(selected.first().data().toString(), QStringLiteral("ups.mfr"));
    QCOMPARE(table->model()->rowCount(), 5);
    QCOMPARE(table->model()->index(2, 1).data().toString(), QStringLiteral("41"));
}

void ConsolePagesTest::hugeAndHostileTexts()
{
    NutVariables variables;
    for (int i = 0; i < NutListReader::maxVariables; ++i)
        variables.insert(QStringLiteral("var.%1").arg(i), QString(200, QLatin1Char('x')));
    for (const char *name : {"ups.mfr", "ups.model", "ups.serial", "ups.status", "ups.alarm"})
        variables.insert(QLatin1String(name),
                         QStringLiteral("<h1>%1</h1>").arg(QString(4000, QLatin1Char('W'))));
    UpsModel model(QStringLiteral("demo"));
    for (const char *name : {"power", "control", "information", "settings"}) {
        const std::unique_ptr<Page> page = makePage(QLatin1String(name));
        page->setModel(&model);
        showAt(page.get(), QSize(700, 400));
        model.take(snapshotOf(QStringLiteral("demo"), variables));
        deliverAll();
        QCOMPARE(page->size(), QSize(700, 400));
        for (const QLabel *label : page->findChildren<QLabel *>()) {
            QCOMPARE(label->textFormat(), Qt::PlainText);
            QVERIFY(label->mapTo(page.get(), QPoint(label->width(), 0)).x() <= page->width());
            QVERIFY(!label->toolTip().contains(QLatin1Char('<')));
        }
        if (auto *table = page->findChild<QTableView *>()) {
            for (int row = 0; row < table->model()->rowCount(); ++row)
                QVERIFY(!table->model()
                             ->index(row, 1)
                             .data(Qt::ToolTipRole)
                             .toString()
                             .contains(QLatin1Char('<')));
        }
        page->grab();
    }
}

void ConsolePagesTest::nothingRepaintsWithoutAChange()
{
    UpsModel model(QStringLiteral("demo"));
    for (const char *name : {"power", "control", "information", "settings"}) {
        const std::unique_ptr<Page> page = makePage(QLatin1String(name));
        page->setModel(&model);
        showAt(page.get(), QSize(700, 400));
        const Snapshot now = Scenario::snapshotAt(60);
        model.take(now);
        deliverAll();
        struct PaintCounter : QObject
        {
            bool eventFilter(QObject *, QEvent *event) override
            {
                if (event->type() == QEvent::Paint || event->type() == QEvent::UpdateRequest)
                    ++count;
                return false;
            }
            int count = 0;
        } counter;
        page->installEventFilter(&counter);
        for (QWidget *widget : page->findChildren<QWidget *>())
            widget->installEventFilter(&counter);
        for (int i = 0; i < 5; ++i) {
            model.take(now);
            deliverAll();
        }
        QCOMPARE(counter.count, 0);
        // A change is seen.
        Snapshot other = now;
        other.measure(Quantity::Load).value = 12.0;
        other.measure(Quantity::BatteryCharge).value = 12.0;
        other.variables.insert(QStringLiteral("ups.load"), QStringLiteral("12"));
        other.identity.model = QStringLiteral("other");
        other.tokens = StatusTokens(StatusToken::OnBattery);
        model.take(other);
        deliverAll();
        QVERIFY2(counter.count > 0, name);
    }
}

KIV_TEST_MAIN(ConsolePagesTest)

#include "tst_consolepages.moc"
