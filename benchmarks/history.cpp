// SPDX-License-Identifier: LicenseRef-all-rights-reserved

#include "chart.h"
#include "recorder.h"

#include <QtCore/QDir>
#include <QtCore/QElapsedTimer>
#include <QtCore/QRandomGenerator>
#include <QtCore/QTemporaryDir>
#include <QtGui/QPainter>
#include <QtWidgets/QApplication>

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <ctime>
#include <functional>
#include <vector>

// Measures what the console's history costs: recording a day of one UPS that is asked every five
// seconds, its room on the disk, reading a day for a chart, and drawing it.

namespace {

constexpr int interval = 5;
constexpr int instants = 24 * 3600 / interval;
constexpr int rounds = 41;
constexpr QSize chartSize(800, 300);

double cpuMicroseconds()
{
    timespec now{};
    clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &now);
    return double(now.tv_sec) * 1e6 + double(now.tv_nsec) / 1e3;
}

double median(std::vector<double> values)
{
    std::sort(values.begin(), values.end());
    return values[values.size() / 2];
}

double medianMilliseconds(const std::function<void()> &work, bool byCpu)
{
    std::vector<double> times;
    for (int i = 0; i < rounds; ++i) {
        QElapsedTimer timer;
        timer.start();
        const double begin = cpuMicroseconds();
        work();
        times.push_back(byCpu ? (cpuMicroseconds() - begin) / 1e3
                              : double(timer.nsecsElapsed()) / 1e6);
    }
    return median(times);
}

/// A UPS that gives every quantity, with the noise and the decimals that such values have.
std::vector<Snapshot> dayOfSnapshots()
{
    QRandomGenerator random(1);
    const auto noise = [&random](double width) { return (random.generateDouble() - 0.5) * width; };
    const auto rounded = [](double value, double step) { return std::round(value / step) * step; };
    std::vector<Snapshot> all;
    for (int i = 0; i < instants; ++i) {
        const double day = std::sin(2 * M_PI * i / instants);
        const double load = 40 + 12 * day + noise(3);
        Snapshot snapshot;
        snapshot.link = Snapshot::Link::Ok;
        snapshot.name = QStringLiteral("demo");
        snapshot.tokens = StatusToken::OnLine;
        const auto set = [&](Quantity quantity, double value, double step) {
            snapshot.measure(quantity).value = rounded(value, step);
        };
        set(Quantity::Load, load, 1);
        set(Quantity::BatteryCharge, 100, 1);
        set(Quantity::BatteryVoltage, 54.2 + noise(0.15), 0.1);
        set(Quantity::BatteryRuntime, 1800 - 10 * load, 10);
        set(Quantity::InputVoltage, 231 + 2 * day + noise(1.5), 0.1);
        set(Quantity::InputFrequency, 50 + noise(0.15), 0.1);
        set(Quantity::BypassVoltage, 231 + 2 * day + noise(1.5), 0.1);
        set(Quantity::BypassFrequency, 50 + noise(0.15), 0.1);
        set(Quantity::OutputVoltage, 230 + noise(0.25), 0.1);
        set(Quantity::OutputFrequency, 50, 0.1);
        set(Quantity::OutputCurrent, load / 10, 0.1);
        set(Quantity::OutputPower, load * 27, 1);
        set(Quantity::Temperature, 27 + 2 * day, 0.1);
        all.push_back(snapshot);
    }
    return all;
}

/// Lets a UPS go through @p day, recorded in @p directory or not at all (null).
double playedMicroseconds(const std::vector<Snapshot> &day, qint64 begin, const QString *directory)
{
    qint64 time = begin;
    const Clock clock = [&time] { return QDateTime::fromMSecsSinceEpoch(time, Qt::UTC); };
    SiteModel site(clock);
    UpsModel *ups = site.add(QStringLiteral("demo"));
    std::unique_ptr<History> history;
    std::unique_ptr<Recorder> recorder;
    if (directory) {
        history = std::make_unique<History>(*directory);
        recorder = std::make_unique<Recorder>(&site, history.get(), clock);
    }
    const double before = cpuMicroseconds();
    for (const Snapshot &snapshot : day) {
        time += interval * secondMsecs;
        ups->take(snapshot);
        QCoreApplication::processEvents();
    }
    recorder.reset();
    history.reset(); // what is left is written
    return cpuMicroseconds() - before;
}

qint64 sizeOf(const QString &directory)
{
    qint64 size = 0;
    for (const QFileInfo &file : QDir(directory).entryInfoList(QDir::Files))
        size += file.size();
    return size;
}

} // namespace

int main(int argc, char **argv)
{
    if (!qEnvironmentVariableIsSet("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    const QApplication application(argc, argv);
    const QTemporaryDir place;
    const QString directory = place.filePath(QStringLiteral("history"));
    const qint64 begin = floorTo(QDateTime::currentMSecsSinceEpoch(), hourMsecs) - dayMsecs;
    const std::vector<Snapshot> day = dayOfSnapshots();
    const double without = playedMicroseconds(day, begin, nullptr);
    const double with = playedMicroseconds(day, begin, &directory);
    std::printf("recording   %6.1f us CPU a sample of 13 values (bound 30)\n",
                (with - without) / instants);
    std::printf("file        %6.2f MB a day of one UPS at 5 s (bound 2)\n",
                double(sizeOf(directory)) / 1e6);

    Store store;
    if (!store.open(directory, Store::Mode::Reading, QDateTime::currentDateTimeUtc())) {
        std::fprintf(stderr, "%s\n", qPrintable(store.problemText()));
        return 1;
    }
    Chart chart;
    chart.resize(chartSize);
    const TimeSpan span{begin, begin + dayMsecs};
    const Quantity quantities[] = {Quantity::Load, Quantity::BatteryCharge, Quantity::InputVoltage,
                                   Quantity::OutputVoltage};
    QVector<ChartLane> lanes;
    const double reading = medianMilliseconds(
        [&] {
            lanes.clear();
            for (const Quantity quantity : quantities) {
                ChartLane lane;
                lane.quantity = quantity;
                lane.points = store.curve(QStringLiteral("demo"), quantity, span, chart.columns());
                lanes.append(lane);
            }
        },
        true);
    std::printf("reading     %6.2f ms CPU for a day of four curves, %d points each (bound 10)\n",
                reading, int(lanes.first().points.size()));

    chart.setSpan(span);
    chart.setLanes(lanes, {{begin + 6 * hourMsecs, begin + 7 * hourMsecs}});
    for (const double ratio : {1.0, 2.0}) {
        QImage image(chartSize * ratio, QImage::Format_ARGB32_Premultiplied);
        image.setDevicePixelRatio(ratio);
        const double painting = medianMilliseconds(
            [&] {
                QPainter painter(&image);
                chart.paintCurves(&painter);
            },
            true);
        const double all = medianMilliseconds(
            [&] {
                QPainter painter(&image);
                chart.paint(&painter);
            },
            true);
        std::printf("painting    %6.2f ms CPU for them at 800 x 300, ratio %.0f%s; %.2f with the "
                    "texts\n",
                    painting, ratio, ratio > 1.0 ? "" : " (bound 1)", all);
    }
    return 0;
}
