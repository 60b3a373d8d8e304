// SPDX-License-Identifier: LicenseRef-all-rights-reserved

#include "chart.h"
#include "theme.h"
#include "timeaxis.h"

#include "testmain.h"
#include "widgetprobe.h"

#include <QtGui/QPainter>
#include <QtGui/QWheelEvent>

#include <cmath>
#include <ctime>

namespace {

/// A Sunday, 2026-11-22 10:00 UTC.
constexpr qint64 start = 1795341600LL * 1000;

qint64 utc(int year, int month, int day, int hour, int minute = 0)
{
    return QDateTime(QDate(year, month, day), QTime(hour, minute), Qt::UTC).toMSecsSinceEpoch();
}

QStringList labelsOf(TimeSpan span, const char *zone, int most)
{
    QStringList labels;
    for (const TimeTick &tick : timeTicks(span, QTimeZone(zone), most))
        labels.append(tick.label);
    return labels;
}

ChartLane laneOf(Quantity quantity, TimeSpan span, int count, double low, double high)
{
    ChartLane lane;
    lane.quantity = quantity;
    for (int i = 0; i < count; ++i) {
        TrendPoint point;
        point.at = span.from + (span.to - span.from) * (2 * i + 1) / (2 * count);
        point.mean = float(low + (high - low) * (0.5 + 0.5 * std::sin(i / 20.0)));
        point.low = point.mean - 1.0F;
        point.high = point.mean + 1.0F;
        point.joined = i > 0;
        lane.points.append(point);
    }
    return lane;
}

/// A chart of a day, shown in the middle of a window.
struct Shown
{
    explicit Shown(QSize size = QSize(600, 300))
        : stage(size)
    {
        const TimeSpan span{start, start + dayMsecs};
        stage->setZone(QTimeZone("UTC"));
        stage->setSpan(span);
        stage->setLanes({laneOf(Quantity::Load, span, 1440, 20, 60),
                         laneOf(Quantity::InputVoltage, span, 1440, 228, 234)},
                        {});
        QObject::connect(stage.widget, &Chart::spanChosen, stage.widget,
                         [this](const TimeSpan &wanted) {
                             chosen.append(wanted);
                             stage->setSpan(wanted);
                         });
        deliverAll();
    }
    Chart *operator->() const
    {
        return stage.widget;
    }
    void wheel(int steps, QPointF place)
    {
        QWheelEvent event(place, stage->mapToGlobal(place.toPoint()), QPoint(),
                          QPoint(0, 120 * steps), Qt::NoButton, Qt::NoModifier, Qt::NoScrollPhase,
                          false);
        QCoreApplication::sendEvent(stage.widget, &event);
    }

    Stage<Chart> stage;
    QVector<TimeSpan> chosen;
};

} // namespace

class ChartTest : public WidgetTest
{
    Q_OBJECT

private Q_SLOTS:
    void ticksAreWhole_data();
    void ticksAreWhole();
    void daylightSavingBegins();
    void daylightSavingEnds();
    void dayWithoutMidnight();
    void halfHourZones();
    void ticksAreBounded();
    void ticksOfYears();
    void valueAxes_data();
    void valueAxes();
    void readsAtTheCursor();
    void readsNothingInAGap();
    void gapsAreNotDrawn();
    void batteryIsShaded();
    void limitsAreDrawn();
    void noAxisWithoutValues();
    void noticeWithAndWithoutCurves();
    void peaksAreSeen();
    void zoomsByWheel();
    void zoomsByPinch();
    void keyboard();
    void drags();
    void hostileValues();
    void isCrisp_data();
    void isCrisp();
};

void ChartTest::ticksAreWhole_data()
{
    QTest::addColumn<qint64>("length");
    QTest::addColumn<QStringList>("labels");
    const auto row = [](const char *name, qint64 length, const char *labels) {
        QTest::newRow(name) << length << QString::fromLatin1(labels).split(QLatin1Char(','));
    };
    row("10 min", 10 * minuteMsecs, "10:05,10:07,10:09,10:11,10:13");
    row("1 h", hourMsecs, "10:05,10:20,10:35,10:50");
    QTest::newRow("24 h") << dayMsecs
                          << QStringList{QStringLiteral("12:00"), QStringLiteral("18:00"),
                                         QStringLiteral("23 Nov"), QStringLiteral("06:00")};
    row("7 d", 7 * dayMsecs, "23 Nov,25 Nov,27 Nov,29 Nov");
    row("30 d", 30 * dayMsecs, "1 Dec,11 Dec,21 Dec");
}

void ChartTest::ticksAreWhole()
{
    QFETCH(qint64, length);
    QFETCH(QStringList, labels);
    const TimeSpan span{start + 4 * minuteMsecs + 30000, start + 4 * minuteMsecs + 30000 + length};
    const QVector<TimeTick> ticks = timeTicks(span, QTimeZone("UTC"), 5);
    QVERIFY(ticks.size() <= 6);
    QVERIFY(ticks.size() >= 2);
    for (const TimeTick &tick : ticks) {
        QVERIFY(tick.at >= span.from && tick.at <= span.to);
        QCOMPARE(tick.at % minuteMsecs, 0);
    }
    for (int i = 2; i < ticks.size() && length < 30 * dayMsecs; ++i)
        QCOMPARE(ticks.at(i).at - ticks.at(i - 1).at, ticks.at(1).at - ticks.at(0).at);
    if (length >= dayMsecs)
        QCOMPARE(labelsOf(span, "UTC", 5), labels);
}

/// 2026-03-29 in Berlin: after 01:59 comes 03:00.
void ChartTest::daylightSavingBegins()
{
    const TimeSpan span{utc(2026, 3, 28, 22), utc(2026, 3, 29, 5)};
    QCOMPARE(
        labelsOf(span, "Europe/Berlin", 10),
        (QStringList{QStringLiteral("23:00"), QStringLiteral("29 Mar"), QStringLiteral("01:00"),
                     QStringLiteral("03:00"), QStringLiteral("04:00"), QStringLiteral("05:00"),
                     QStringLiteral("06:00"), QStringLiteral("07:00")}));
    const QVector<TimeTick> ticks = timeTicks(span, QTimeZone("Europe/Berlin"), 10);
    for (int i = 1; i < ticks.size(); ++i)
        QCOMPARE(ticks.at(i).at - ticks.at(i - 1).at, hourMsecs);
    // Days stay days.
    const TimeSpan week{utc(2026, 3, 25, 12), utc(2026, 4, 1, 12)};
    const QVector<TimeTick> days = timeTicks(week, QTimeZone("Europe/Berlin"), 8);
    QCOMPARE(days.size(), 7);
    for (int i = 1; i < days.size(); ++i)
        QCOMPARE(days.at(i).at - days.at(i - 1).at,
                 days.at(i).label == QLatin1String("30 Mar") ? 23 * hourMsecs : dayMsecs);
}

/// 2026-10-25 in Berlin: the hour from 02:00 is there twice.
void ChartTest::daylightSavingEnds()
{
    const TimeSpan span{utc(2026, 10, 24, 22), utc(2026, 10, 25, 3)};
    QCOMPARE(
        labelsOf(span, "Europe/Berlin", 6),
        (QStringList{QStringLiteral("25 Oct"), QStringLiteral("01:00"), QStringLiteral("02:00"),
                     QStringLiteral("02:00"), QStringLiteral("03:00"), QStringLiteral("04:00")}));
}

/// 2024-04-26 in Cairo began at 01:00.
void ChartTest::dayWithoutMidnight()
{
    const TimeSpan span{utc(2024, 4, 24, 12), utc(2024, 4, 28, 12)};
    QCOMPARE(labelsOf(span, "Africa/Cairo", 6),
             (QStringList{QStringLiteral("25 Apr"), QStringLiteral("26 Apr"),
                          QStringLiteral("27 Apr"), QStringLiteral("28 Apr")}));
}

/// Years are as quick to mark as hours, for each turn of the wheel marks them.
void ChartTest::ticksOfYears()
{
    const TimeSpan span{utc(2016, 11, 22, 10), utc(2026, 11, 22, 10)};
    const std::clock_t before = std::clock();
    QStringList labels;
    constexpr int times = 50;
    for (int i = 0; i < times; ++i)
        labels = labelsOf(span, "Europe/Berlin", 12);
    const double milliseconds =
        double(std::clock() - before) * 1000.0 / double(CLOCKS_PER_SEC) / times;
    QVERIFY2(milliseconds < 100.0, qPrintable(QString::number(milliseconds)));
    QCOMPARE(labels.size(), 10);
    QCOMPARE(labels.first(), QStringLiteral("Jan 2017"));
    QCOMPARE(labels.last(), QStringLiteral("Jan 2026"));
    // The last day of 2011's December but one was left out there.
    QCOMPARE(labelsOf({utc(2011, 12, 28, 12), utc(2012, 1, 2, 0)}, "Pacific/Apia", 6),
             (QStringList{QStringLiteral("29 Dec"), QStringLiteral("31 Dec"),
                          QStringLiteral("1 Jan"), QStringLiteral("2 Jan")}));
}

void ChartTest::halfHourZones()
{
    // Kathmandu is 5:45 ahead.
    for (const TimeTick &tick :
         timeTicks({start, start + 6 * hourMsecs}, QTimeZone("Asia/Kathmandu"), 8))
        QVERIFY2(tick.label.endsWith(QLatin1String(":00")), qPrintable(tick.label));
    // Lord Howe changes by half an hour.
    for (const TimeTick &tick :
         timeTicks({utc(2026, 4, 4, 12), utc(2026, 4, 4, 18)}, QTimeZone("Australia/Lord_Howe"), 8))
        QVERIFY2(tick.label.endsWith(QLatin1String(":00")) || tick.isDay, qPrintable(tick.label));
}

void ChartTest::ticksAreBounded()
{
    const QTimeZone zone("UTC");
    QVERIFY(timeTicks({start, start}, zone, 10).isEmpty());
    QVERIFY(timeTicks({start, start - 1}, zone, 10).isEmpty());
    QVERIFY(timeTicks({start, start + dayMsecs}, zone, 0).isEmpty());
    QVERIFY(timeTicks({0, std::numeric_limits<qint64>::max() / 2}, zone, 10).isEmpty());
    for (qint64 length = minuteMsecs; length < 3000 * dayMsecs; length = length * 3 / 2) {
        const int count = int(timeTicks({start, start + length}, zone, 8).size());
        QVERIFY2(count >= 1 && count <= 11, qPrintable(QString::number(length)));
    }
}

void ChartTest::valueAxes_data()
{
    QTest::addColumn<int>("quantity");
    QTest::addColumn<double>("low");
    QTest::addColumn<double>("high");
    QTest::addColumn<QString>("labels");
    const auto row = [](Quantity quantity, double low, double high, const char *labels) {
        QTest::addRow("%s %g to %g", qPrintable(nameOf(quantity)), low, high)
            << int(quantity) << low << high << QString::fromLatin1(labels);
    };
    row(Quantity::Load, 20, 40, "0 50 100");
    row(Quantity::Load, 20, 127, "0 50 100");
    row(Quantity::InputVoltage, 229.2, 233.9, "230 232 234");
    row(Quantity::InputFrequency, 49.9, 50.1, "49.5 50.0 50.5");
    row(Quantity::BatteryRuntime, 130, 1900, "10 min 20 min 30 min");
}

void ChartTest::valueAxes()
{
    QFETCH(int, quantity);
    QFETCH(double, low);
    QFETCH(double, high);
    QFETCH(QString, labels);
    const ValueAxis axis = valueAxis(Quantity(quantity), {}, low, high, 4);
    QVERIFY(axis.low <= low && axis.high >= high);
    QStringList found;
    for (const double value : axis.ticks())
        found.append(axisLabel(Quantity(quantity), value, axis));
    QCOMPARE(found.join(QLatin1Char(' ')), labels);
}

void ChartTest::readsAtTheCursor()
{
    Shown chart;
    const QRect plot = chart->plotRect();
    const ChartLane lane = chart->lanes().first();
    const QString whole = chart->readingOf(lane);
    QVERIFY2(whole.startsWith(QLatin1String("Load")) && whole.contains(QChar(0x2026)),
             qPrintable(whole));
    QTest::mouseMove(chart.stage.widget, QPoint(plot.left() + plot.width() / 2, 100));
    QVERIFY(chart->cursor().has_value());
    const qint64 noon = start + dayMsecs / 2;
    QVERIFY(std::abs(*chart->cursor() - noon) < 5 * minuteMsecs);
    chart->setCursorTime(noon);
    const TrendPoint expected = lane.points.at(720);
    QVERIFY2(chart->readingOf(lane).startsWith(
                 QStringLiteral("Load  %1 %").arg(std::lround(expected.mean))),
             qPrintable(chart->readingOf(lane)));
    QVERIFY(chart->accessibleDescription().contains(chart->readingOf(lane)));
}

void ChartTest::readsNothingInAGap()
{
    Shown chart;
    ChartLane lane = chart->lanes().first();
    lane.points.remove(200, 400);
    std::next(lane.points.begin(), 200)->joined = false;
    chart->setLanes({lane}, {});
    chart->setCursorTime(start + 400 * minuteMsecs);
    QCOMPARE(chart->readingOf(lane), QStringLiteral("Load  no data"));
    chart->setCursorTime(start + 100 * minuteMsecs);
    QVERIFY(!chart->readingOf(lane).contains(QLatin1String("no data")));
}

namespace {

/// How many pixels in a column of the plot are not those of the empty chart.
int inkAt(const QImage &image, const QImage &empty, int x, const QRect &plot)
{
    int ink = 0;
    for (int y = plot.top(); y < plot.bottom(); ++y)
        ink += image.pixel(x, y) != empty.pixel(x, y) ? 1 : 0;
    return ink;
}

QImage imageOf(const Chart *chart)
{
    QImage image(chart->size(), QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::white);
    QPainter painter(&image);
    chart->paint(&painter);
    return image;
}

} // namespace

void ChartTest::gapsAreNotDrawn()
{
    Shown chart;
    ChartLane lane = chart->lanes().first();
    const QVector<TrendPoint> all = lane.points;
    // All but one point that keeps the axis and the name as they are.
    lane.points = {all.first()};
    lane.points.remove(0);
    ChartLane with = lane;
    with.points = all;
    with.points.remove(500, 300);
    std::next(with.points.begin(), 500)->joined = false;
    chart->setLanes({with}, {});
    const QImage image = imageOf(chart.stage.widget);
    ChartLane apart = with;
    apart.points = {with.points.first(), with.points.last()};
    std::next(apart.points.begin())->joined = false;
    chart->setLanes({apart}, {});
    QImage empty = imageOf(chart.stage.widget);
    const QRect plot = chart->plotRect().adjusted(0, 30, 0, -4);
    const auto columnOf = [&](int minute) { return plot.left() + plot.width() * minute / 1440; };
    QVERIFY(inkAt(image, empty, columnOf(300), plot) > 0);
    QVERIFY(inkAt(image, empty, columnOf(1200), plot) > 0);
    for (int minute = 520; minute < 780; minute += 20)
        QCOMPARE(inkAt(image, empty, columnOf(minute), plot), 0);
}

void ChartTest::batteryIsShaded()
{
    Shown chart;
    const QVector<ChartLane> lanes = chart->lanes();
    const QImage without = imageOf(chart.stage.widget);
    chart->setLanes(lanes, {{start + 6 * hourMsecs, start + 12 * hourMsecs}});
    const QImage with = imageOf(chart.stage.widget);
    const QRect plot = chart->plotRect().adjusted(0, 30, 0, -4);
    const auto columnOf = [&](int hour) { return plot.left() + plot.width() * hour / 24; };
    QVERIFY(inkAt(with, without, columnOf(9), plot) > plot.height() * 2 / 3);
    QCOMPARE(inkAt(with, without, columnOf(3), plot), 0);
    QCOMPARE(inkAt(with, without, columnOf(15), plot), 0);
}

void ChartTest::limitsAreDrawn()
{
    Shown chart;
    ChartLane limited = chart->lanes().first();
    limited.measure.high = 80.0;
    chart->setLanes({limited, chart->lanes().last()}, {});
    const QImage image = imageOf(chart.stage.widget);
    const QRgb alarm = Theme::gaugeColors(false).outOfLimits.rgb();
    QMap<int, int> rows;
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x) {
            if (image.pixel(x, y) == alarm)
                ++rows[y];
        }
    }
    QCOMPARE(rows.size(), 1);
    // Dashes along the whole lane.
    QVERIFY(rows.first() > chart->plotRect().width() / 2);
    QVERIFY(rows.first() < chart->plotRect().width());
}

/// Numbers beside an empty curve would be made up; a word stands in its place.
void ChartTest::noAxisWithoutValues()
{
    Stage<Chart> stage(QSize(600, 200));
    const TimeSpan span{start, start + dayMsecs};
    stage->setZone(QTimeZone("UTC"));
    stage->setSpan(span);
    ChartLane lane;
    lane.quantity = Quantity::InputVoltage;
    lane.measure.low = 170.0;
    lane.measure.high = 270.0;
    // The rows that a line crosses; the marks of times are columns.
    const auto lines = [&] {
        const QImage image = imageOf(stage.widget);
        int count = 0;
        for (int y = 0; y < image.height(); ++y) {
            int inked = 0;
            for (int x = 100; x < image.width() - 20; ++x)
                inked += image.pixel(x, y) != image.pixel(x, y + (y > 100 ? -1 : 1)) ? 1 : 0;
            count += inked > (image.width() - 120) / 2 ? 1 : 0;
        }
        return count;
    };
    stage->setLanes({lane}, {});
    deliverAll();
    QCOMPARE(lines(), 0);
    lane.points = laneOf(Quantity::InputVoltage, span, 1440, 228, 234).points;
    stage->setLanes({lane}, {});
    deliverAll();
    QVERIFY2(lines() >= 4, qPrintable(QString::number(lines())));
}

/// A notice stands out from curves, and is plain text where there are none.
void ChartTest::noticeWithAndWithoutCurves()
{
    Shown curves;
    curves->setNotice(QStringLiteral("Nothing to see here"));
    deliverAll();
    const auto darkShare = [&curves] {
        const QRect middle(curves->rect().center() - QPoint(40, 4), QSize(80, 8));
        const QImage image = curves->grab().toImage().copy(middle);
        int count = 0;
        for (int y = 0; y < image.height(); ++y) {
            for (int x = 0; x < image.width(); ++x)
                count += image.pixelColor(x, y).lightness() < 128 ? 1 : 0;
        }
        return double(count) / (image.width() * image.height());
    };
    QVERIFY2(darkShare() > 0.5, qPrintable(QString::number(darkShare())));
    curves->setLanes({}, {});
    deliverAll();
    QVERIFY2(darkShare() > 0.01 && darkShare() < 0.4, qPrintable(QString::number(darkShare())));
}

void ChartTest::peaksAreSeen()
{
    Shown chart;
    const QImage without = imageOf(chart.stage.widget);
    ChartLane peaked = chart->lanes().first();
    std::next(peaked.points.begin(), 700)->high = 95.0F;
    chart->setLanes({peaked, chart->lanes().last()}, {});
    const QImage with = imageOf(chart.stage.widget);
    const QRect plot = chart->plotRect().adjusted(0, 30, 0, -4);
    const int column = plot.left() + plot.width() * 700 / 1440;
    int ink = 0;
    for (int x = column - 1; x <= column + 2; ++x)
        ink = std::max(ink, inkAt(with, without, x, plot));
    QVERIFY2(ink > 10, qPrintable(QString::number(ink)));
}

void ChartTest::zoomsByWheel()
{
    Shown chart;
    const QRect plot = chart->plotRect();
    const double middle = plot.left() + plot.width() / 2.0;
    chart.wheel(1, QPointF(middle, 100));
    QCOMPARE(chart.chosen.size(), 1);
    TimeSpan span = chart.chosen.last();
    QCOMPARE(span.to - span.from, qint64(double(dayMsecs) * 0.8));
    // What is under the pointer stays there.
    QVERIFY(std::abs((span.from + span.to) / 2 - (start + dayMsecs / 2)) < minuteMsecs);
    chart.wheel(-1, QPointF(plot.left(), 100));
    span = chart.chosen.last();
    QVERIFY(std::abs(span.to - span.from - dayMsecs) < 10);
    for (int i = 0; i < 100; ++i)
        chart.wheel(5, QPointF(middle, 100));
    span = chart.chosen.last();
    QCOMPARE(span.to - span.from, minuteMsecs);
    for (int i = 0; i < 100; ++i)
        chart.wheel(-5, QPointF(middle, 100));
    span = chart.chosen.last();
    QVERIFY(span.to - span.from <= 3660 * dayMsecs);
    QVERIFY(!imageOf(chart.stage.widget).isNull());
}

void ChartTest::zoomsByPinch()
{
    Shown chart;
    auto *device = QTest::createTouchDevice();
    QWindow *window = chart.stage.window.windowHandle();
    const QRect plot = chart->plotRect();
    const QPoint middle =
        chart->mapTo(&chart.stage.window, QPoint(plot.left() + plot.width() / 2, 100));
    const QPoint apart(40, 0);
    QTest::touchEvent(window, device)
        .press(0, middle - apart, window)
        .press(1, middle + apart, window);
    for (int i = 1; i <= 10; ++i)
        QTest::touchEvent(window, device)
            .move(0, middle - apart - QPoint(8 * i, 0), window)
            .move(1, middle + apart + QPoint(8 * i, 0), window);
    QTest::touchEvent(window, device)
        .release(0, middle - apart - QPoint(80, 0), window)
        .release(1, middle + apart + QPoint(80, 0), window);
    QVERIFY(!chart.chosen.isEmpty());
    const TimeSpan span = chart.chosen.last();
    QVERIFY2(span.to - span.from < dayMsecs * 2 / 3,
             qPrintable(QString::number((span.to - span.from) / minuteMsecs)));
}

void ChartTest::keyboard()
{
    Shown chart;
    const auto press = [&](Qt::Key key) { QTest::keyClick(chart.stage.widget, key); };
    press(Qt::Key_Home);
    QCOMPARE(*chart->cursor(), start);
    press(Qt::Key_Right);
    QCOMPARE(*chart->cursor(), start + dayMsecs / 100);
    press(Qt::Key_End);
    QCOMPARE(*chart->cursor(), start + dayMsecs);
    press(Qt::Key_Right);
    QCOMPARE(*chart->cursor(), start + dayMsecs);
    press(Qt::Key_Plus);
    QCOMPARE(chart.chosen.size(), 1);
    QCOMPARE(chart.chosen.last().to, start + dayMsecs);
    press(Qt::Key_PageUp);
    QVERIFY(chart.chosen.last().to < start + dayMsecs);
    press(Qt::Key_Minus);
    QCOMPARE(chart.chosen.size(), 3);
}

void ChartTest::drags()
{
    Shown chart;
    const QRect plot = chart->plotRect();
    const QPoint from(plot.left() + plot.width() / 2, 100);
    QTest::mousePress(chart.stage.widget, Qt::LeftButton, Qt::NoModifier, from);
    QMouseEvent move(QEvent::MouseMove, QPointF(from + QPoint(plot.width() / 4, 0)),
                     chart->mapToGlobal(from), Qt::NoButton, Qt::LeftButton, Qt::NoModifier);
    QCoreApplication::sendEvent(chart.stage.widget, &move);
    QTest::mouseRelease(chart.stage.widget, Qt::LeftButton, Qt::NoModifier, from);
    QVERIFY(!chart.chosen.isEmpty());
    QVERIFY(std::abs(chart.chosen.last().from - (start - 6 * hourMsecs)) < 10 * minuteMsecs);
}

void ChartTest::hostileValues()
{
    Shown chart;
    const TimeSpan span = chart->span();
    QVector<ChartLane> lanes;
    for (const double value : {1e30, -1e30, 0.0, 1e-30}) {
        ChartLane lane = laneOf(Quantity::InputVoltage, span, 10, value, value * 2);
        lane.measure.low = -value;
        lane.measure.high = value;
        lanes.append(lane);
    }
    chart->setLanes(lanes, {{0, std::numeric_limits<qint64>::max() / 4}});
    QVERIFY(!imageOf(chart.stage.widget).isNull());
    QVERIFY(chart->plotRect().width() > 300);
    chart->setLanes({}, {});
    QVERIFY(!imageOf(chart.stage.widget).isNull());
    chart->resize(3, 3);
    deliverAll();
    chart->grab();
}

void ChartTest::isCrisp_data()
{
    QTest::addColumn<double>("ratio");
    for (const double ratio : {1.0, 1.5, 2.0, 3.0})
        QTest::addRow("%g", ratio) << ratio;
}

/// Lines of the axis are one sharp line of pixels at each ratio.
void ChartTest::isCrisp()
{
    QFETCH(double, ratio);
    Shown chart;
    const TimeSpan span = chart->span();
    ChartLane lane;
    lane.quantity = Quantity::Load;
    lane.measure.high = 80.0;
    lane.points = {{span.from, 40.0F, 40.0F, 40.0F, false}, {span.to, 40.0F, 40.0F, 40.0F, true}};
    chart->setLanes({lane}, {});
    QImage image(chart->size() * ratio, QImage::Format_ARGB32_Premultiplied);
    image.setDevicePixelRatio(ratio);
    image.fill(Qt::white);
    QPainter painter(&image);
    chart->paint(&painter);
    painter.end();
    const QRgb alarm = Theme::gaugeColors(false).outOfLimits.rgb();
    int rows = 0;
    for (int y = 0; y < image.height(); ++y) {
        int count = 0;
        for (int x = 0; x < image.width(); ++x)
            count += image.pixel(x, y) == alarm ? 1 : 0;
        rows += count > image.width() / 3 ? 1 : 0;
    }
    QCOMPARE(rows, 1);
}

KIV_TEST_MAIN(ChartTest)

#include "tst_chart.moc"
