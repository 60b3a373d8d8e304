// SPDX-License-Identifier: LicenseRef-all-rights-reserved

#include "stepdriver.h"
#include "subject.h"

#include <rotatestackedwidget.h>

#include <QtGui/QPainter>
#include <QtWidgets/QApplication>
#include <QtWidgets/QGridLayout>
#include <QtWidgets/QLabel>

#include <valgrind/callgrind.h>

#include <malloc.h>

#include <algorithm>
#include <cstdio>
#include <ctime>
#include <functional>
#include <initializer_list>
#include <memory>
#include <numeric>
#include <vector>

// Measures what a console does all day: many widgets that change ten times a second, through the
// event loop and into a window; the same with peers; and a page change. With "scale", how time and
// memory grow with the number of widgets, with "peer-scale" of peers, and with "image-scale" of
// widgets that only show an image. With "own" or "peers" it only shows such a scene.

namespace {

constexpr int updatesPerSecond = 10;
constexpr int rounds = 400;
constexpr QSize cardSize(800, 480);

double cpuMilliseconds()
{
    timespec now{};
    clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &now);
    return double(now.tv_sec) * 1e3 + double(now.tv_nsec) / 1e6;
}

double millisecondsOf(const std::function<void()> &work)
{
    const double begin = cpuMilliseconds();
    work();
    return cpuMilliseconds() - begin;
}

double median(std::vector<double> values)
{
    std::sort(values.begin(), values.end());
    return values[values.size() / 2];
}

/// How many of a subject a scene has, and every how many updates they change.
struct Share
{
    const char *subject;
    int count;
    int interval;
};

/// The least that a widget with an image of its own does.
class ShownImage : public QWidget
{
public:
    ShownImage(QSize size, QWidget *parent)
        : QWidget(parent)
        , image(size, QImage::Format_ARGB32_Premultiplied)
    {
        image.fill(QColor(0, 174, 240, 128));
    }

protected:
    void paintEvent(QPaintEvent *) override
    {
        QPainter(this).drawImage(0, 0, image);
    }

private:
    QImage image;
};

enum class Contents { Subjects, ImagesOfTheirSize };

/// A window of widgets that change.
class Scene
{
public:
    explicit Scene(std::initializer_list<Share> shares, Contents contents = Contents::Subjects)
        : onlyUpdates(contents != Contents::Subjects)
    {
        constexpr int columns = 5;
        constexpr int cellWidth = 210;
        constexpr int cellHeight = 60;
        window.resize(columns * cellWidth, 12 * cellHeight);
        for (const Share &share : shares) {
            const Subject *subject = subjectNamed(share.subject);
            for (int i = 0; subject && i < share.count; ++i) {
                QWidget *widget =
                    onlyUpdates ? new ShownImage(subject->size, &window) : subject->create(&window);
                const int place = int(widgets.size());
                widget->setGeometry(
                    QRect(QPoint(place % columns * cellWidth, place / columns * cellHeight),
                          subject->size));
                widgets.push_back({subject, widget, share.interval});
            }
        }
        window.show();
        QCoreApplication::processEvents();
    }
    int count() const
    {
        return int(widgets.size());
    }
    /// Changes what changes with the next update.
    void change()
    {
        ++step;
        // Each widget has a value of its own.
        constexpr int distance = 7;
        int own = 0;
        for (const Placed &placed : widgets) {
            own += distance;
            if (step % placed.interval != 0)
                continue;
            if (onlyUpdates)
                placed.widget->update();
            else
                placed.subject->change(placed.widget, step / placed.interval + own);
        }
    }
    /// The milliseconds that the next update takes, until everything is in the window.
    double update()
    {
        return millisecondsOf([this] {
            change();
            QCoreApplication::processEvents();
        });
    }
    /// Of the window's own image.
    double windowBytes() const
    {
        return 4.0 * window.width() * window.height();
    }

private:
    struct Placed
    {
        const Subject *subject;
        QWidget *widget;
        int interval;
    };
    bool onlyUpdates;
    QWidget window;
    std::vector<Placed> widgets;
    int step = 0;
};

double mean(const std::vector<double> &values)
{
    return std::accumulate(values.begin(), values.end(), 0.0) / double(values.size());
}

constexpr int always = 1;
constexpr int eachSecond = updatesPerSecond;

/// Values come with every update; states and labels change once a second at most.
constexpr std::initializer_list<Share> ownShares = {
    {"MetroCirclerate", 12, always}, {"MetroLinerate", 12, always},
    {"AeroLinebar", 8, always},      {"MetroShelter", 14, eachSecond},
    {"MetroSysIcon", 6, eachSecond}, {"AeroButton", 8, eachSecond},
};
/// Qt's widgets that show the same.
constexpr std::initializer_list<Share> peerShares = {
    {"QDial", 12, always},          {"QProgressBar", 20, always},   {"QPushButton", 14, eachSecond},
    {"QToolButton", 6, eachSecond}, {"QPushButton", 8, eachSecond},
};

double usedBytes()
{
    const struct mallinfo2 info = mallinfo2();
    return double(info.uordblks) + double(info.hblkhd);
}

/// @p count times the same scene, each in its window: what a widget takes of time and memory, and
/// under callgrind (started with --instr-atstart=no) of instructions, in a dump of its own.
void measureScale(std::initializer_list<Share> shares, Contents contents, int count, int seconds)
{
    constexpr int warmUp = 2 * updatesPerSecond;
    const double before = usedBytes();
    std::vector<std::unique_ptr<Scene>> scenes;
    int widgets = 0;
    double windows = 0.0;
    for (int i = 0; i < count; ++i) {
        scenes.push_back(std::make_unique<Scene>(shares, contents));
        widgets += scenes.back()->count();
        windows += scenes.back()->windowBytes();
    }
    const auto update = [&] {
        return millisecondsOf([&] {
            for (const std::unique_ptr<Scene> &scene : scenes)
                scene->change();
            QCoreApplication::processEvents();
        });
    };
    for (int i = 0; i < warmUp; ++i)
        update();
    // The median of whole seconds, which all have the same changes.
    std::vector<double> times;
    CALLGRIND_START_INSTRUMENTATION;
    CALLGRIND_ZERO_STATS;
    for (int second = 0; second < seconds; ++second) {
        double time = 0.0;
        for (int i = 0; i < updatesPerSecond; ++i)
            time += update();
        times.push_back(time / updatesPerSecond);
    }
    CALLGRIND_DUMP_STATS_AT(QByteArray::number(widgets * seconds * updatesPerSecond).constData());
    CALLGRIND_STOP_INSTRUMENTATION;
    const double taken = usedBytes() - before - windows;
    scenes.clear();
    std::printf(
        "%d widgets: %.2f us of each update and %.1f KB a widget; %.2f MB stay when all are "
        "gone\n",
        widgets, median(times) * 1000.0 / widgets, taken / 1024.0 / widgets,
        (usedBytes() - before) / 1024.0 / 1024.0);
}

/// Shows a scene until it is in its window, for who watches that from outside.
void showOnce(std::initializer_list<Share> shares)
{
    const Scene scene(shares);
}

bool compareScenes()
{
    Scene own(ownShares);
    Scene peers(peerShares);
    if (own.count() != peers.count())
        return false;
    std::vector<double> ownTimes;
    std::vector<double> peerTimes;
    for (int i = 0; i < rounds; ++i) {
        ownTimes.push_back(own.update());
        peerTimes.push_back(peers.update());
    }
    const double ownTime = mean(ownTimes);
    const double peerTime = mean(peerTimes);
    std::printf("scene of %d widgets, an update: %.2f ms, with Qt's widgets %.2f ms, ratio %.2f\n",
                own.count(), ownTime, peerTime, ownTime / peerTime);
    std::printf("at %d updates a second: %.1f %% of a processor, with Qt's widgets %.1f %%\n",
                updatesPerSecond, ownTime * updatesPerSecond / 10.0,
                peerTime * updatesPerSecond / 10.0);
    return true;
}

/// Steps the animations by a frame, which the event loop then shows.
class FrameDriver : public StepDriver
{
public:
    void step(int msecs)
    {
        StepDriver::step(msecs);
        QCoreApplication::processEvents();
    }
};

QWidget *pageOfLabels()
{
    auto *page = new QWidget;
    auto *grid = new QGridLayout(page);
    for (int i = 0; i < 20; ++i)
        grid->addWidget(new QLabel(QStringLiteral("Value %1").arg(i)), i / 5, i % 5);
    return page;
}

void measureCard()
{
    FrameDriver time;
    RotateStackedWidget stack;
    stack.addWidget(pageOfLabels());
    stack.addWidget(pageOfLabels());
    stack.resize(cardSize);
    stack.show();
    QCoreApplication::processEvents();
    stack.setAnimationEnabled(true);
    stack.setCurrentIndex(1);
    // The animation takes part from the next round of the event loop.
    QCoreApplication::processEvents();

    QImage target(cardSize, QImage::Format_ARGB32_Premultiplied);
    QImage image = target;
    image.fill(QColor(0, 174, 240, 128));
    std::vector<double> frames[3];
    std::vector<double> copies;
    constexpr int frameTime = 20;
    constexpr int ends[] = {2000, 3000, 5000};
    for (int now = frameTime; now < ends[2]; now += frameTime) {
        const auto phase = std::size_t(std::upper_bound(ends, ends + 2, now) - ends);
        frames[phase].push_back(millisecondsOf([&] { time.step(frameTime); }));
        copies.push_back(millisecondsOf([&] {
            QPainter painter(&target);
            painter.drawImage(0, 0, image);
        }));
    }
    std::printf("card of %d x %d with 20 children, a frame: shrinking %.2f ms, turning %.2f ms, "
                "growing %.2f ms; a copy of its size %.2f ms\n",
                cardSize.width(), cardSize.height(), median(frames[0]), median(frames[1]),
                median(frames[2]), median(copies));
}

} // namespace

int main(int argc, char *argv[])
{
    const QByteArray task = argc > 1 ? argv[1] : "";
    const int seconds = argc > 2 ? QByteArray(argv[2]).toInt() : 5;
    const bool scales = task == "scale" || task == "peer-scale" || task == "image-scale";
    const bool isKnown = task.isEmpty() || scales || task == "own" || task == "peers";
    if (argc > 3 || !isKnown || seconds < 1 || seconds > 1000) {
        std::fprintf(stderr,
                     "usage: kivscene [scale|peer-scale|image-scale [SECONDS]]|[own|peers]\n");
        return 2;
    }
    if (!qEnvironmentVariableIsSet("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    const QApplication application(argc, argv);
    if (task == "own" || task == "peers") {
        showOnce(task == "own" ? ownShares : peerShares);
        return 0;
    }
    if (scales) {
        const Contents contents =
            task == "image-scale" ? Contents::ImagesOfTheirSize : Contents::Subjects;
        for (const int count : {1, 10, 100})
            measureScale(task == "peer-scale" ? peerShares : ownShares, contents, count, seconds);
        return 0;
    }
    if (!compareScenes())
        return 1;
    measureCard();
    return 0;
}
