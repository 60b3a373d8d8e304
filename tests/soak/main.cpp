// SPDX-License-Identifier: LicenseRef-all-rights-reserved

#include "consolewindow.h"
#include "errorlines.h"
#include "feed/nutfeed.h"
#include "feed/scenario.h"
#include "feed/simulatorfeed.h"
#include "nutserver.h"
#include "program.h"

#include <metronavdrawer.h>

#include <QtCore/QElapsedTimer>
#include <QtCore/QEvent>
#include <QtCore/QEventLoop>
#include <QtCore/QFile>
#include <QtCore/QTimer>
#include <QtGui/QPixmapCache>
#include <QtWidgets/QApplication>

#include <malloc.h>
#include <unistd.h>

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <cstring>
#include <ctime>
#include <functional>
#include <vector>

// Lets the console run for long and watches its memory: fed by the simulator at high speed, or by a
// server of Network UPS Tools that is killed and started again.

namespace {

/// What more than this grows is a leak; the library's caches, which take 4 MB at most, are not
/// full in a short run.
constexpr double allowedGrowth = 512.0; // KB

/// Qt's own cache of pixmaps is full soon.
constexpr int pixmapCache = 1024; // KB

/// For each page: both themes come in turn.
constexpr int stepsUntilAllIsShown = 10;

struct Sample
{
    double seconds;
    double resident; // KB
    double heap;     // KB in use
};

double residentKilobytes()
{
    QFile file(QStringLiteral("/proc/self/statm"));
    if (!file.open(QIODevice::ReadOnly))
        return 0.0;
    return file.readAll().split(' ').value(1).toDouble() * double(sysconf(_SC_PAGESIZE)) / 1024.0;
}

double heapKilobytes()
{
    const struct mallinfo2 info = mallinfo2();
    return double(info.uordblks + info.hblkhd) / 1024.0;
}

double cpuSeconds()
{
    timespec now{};
    clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &now);
    return double(now.tv_sec) + double(now.tv_nsec) / 1e9;
}

/// Takes samples of the memory and judges them at the end.
class Watch
{
public:
    Watch()
        : cpuBefore(cpuSeconds())
    {
        clock.start();
    }
    double seconds() const
    {
        return double(clock.elapsed()) / 1000.0;
    }
    void sample()
    {
        samples.push_back({seconds(), residentKilobytes(), heapKilobytes()});
    }
    /// Compares the calmest moments of the last two quarters: by then everything has been shown,
    /// and the caches are full.
    /// @return the program's exit status.
    int judge(const QList<ErrorLine> &lines)
    {
        const double third = leastHeap(2);
        const double last = leastHeap(3);
        double most = 0.0;
        for (const Sample &taken : samples)
            most = std::max(most, taken.resident);
        std::printf("heap in use, the least of each quarter: %.0f, %.0f, %.0f, %.0f KB\n",
                    leastHeap(0), leastHeap(1), third, last);
        std::printf("resident: %.0f KB at most, %.0f KB at the end\n", most,
                    samples.back().resident);
        std::printf("processor: %.2f s in %.1f s\n", cpuSeconds() - cpuBefore, seconds());
        std::printf("error lines: %d\n", int(lines.size()));
        for (const ErrorLine &line : lines)
            std::printf("  %s %s: %s\n", qPrintable(line.file), qPrintable(line.function),
                        qPrintable(line.message));
        const bool flat = last - third < allowedGrowth;
        std::printf("%s\n", flat && lines.isEmpty() ? "flat and silent" : "NOT flat and silent");
        return flat && lines.isEmpty() ? 0 : 1;
    }

private:
    double leastHeap(std::size_t quarter) const
    {
        const std::size_t length = std::max<std::size_t>(samples.size() / 4, 1);
        const std::size_t begin = std::min(quarter * length, samples.size() - length);
        double least = samples[begin].heap;
        for (std::size_t i = begin; i < begin + length; ++i)
            least = std::min(least, samples[i].heap);
        return least;
    }

    QElapsedTimer clock;
    double cpuBefore;
    std::vector<Sample> samples;
};

/// Lets the event loop run until @p done or for @p seconds.
bool runUntil(double seconds, const std::function<bool()> &done)
{
    QElapsedTimer timer;
    timer.start();
    while (double(timer.elapsed()) < seconds * 1000.0) {
        if (done())
            return true;
        QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents, 20);
    }
    return done();
}

/// Uses the console as an operator does in an hour: pages, both themes, the drawer.
void operate(ConsoleWindow &window, int step)
{
    window.showPage(step % int(window.pageNames().size()));
    constexpr int stepsOfATheme = stepsUntilAllIsShown / 2;
    if (step % stepsOfATheme == 0)
        window.chooseDarkTheme(step % stepsUntilAllIsShown == 0);
    if (auto *drawer = window.findChild<MetroNavdrawer *>(); drawer && step % 3 == 0) {
        const bool open = drawer->getState() == MetroNavdrawer::open;
        drawer->setState(open ? MetroNavdrawer::close : MetroNavdrawer::open);
    }
}

int soakOnSimulator(double seconds, double speed)
{
    ErrorCapture capture;
    SimulatorFeed feed(speed);
    SiteModel site;
    site.add(QStringLiteral("soak"))->setFeed(&feed);
    ConsoleWindow window(&site);
    window.show();
    feed.start();
    // Each quarter shows every page in both themes, however busy the machine is: what is shown for
    // the first time fills caches.
    const int fewest = 4 * stepsUntilAllIsShown * int(window.pageNames().size());
    const double pause = std::min(0.25, seconds / fewest);
    Watch watch;
    for (int step = 0; step < fewest || watch.seconds() < seconds; ++step) {
        operate(window, step);
        runUntil(pause, [] { return false; });
        watch.sample();
    }
    std::printf("simulator: %.0f s at %.0f times the speed, %.0f minutes of the scenario\n",
                seconds, speed, feed.position() / 60.0);
    return watch.judge(capture.takeLines());
}

/// Counts what is painted apart from the clock.
class PaintCounter : public QObject
{
public:
    explicit PaintCounter(const QWidget *console)
        : window(console)
        , clockStrip(console->findChild<QWidget *>(QStringLiteral("strip")))
    {
        qApp->installEventFilter(this);
    }
    int count() const
    {
        return painted;
    }

protected:
    bool eventFilter(QObject *object, QEvent *event) override
    {
        const auto *widget = qobject_cast<const QWidget *>(object);
        // The strip has the clock on it, and lies on the window.
        const bool clock = widget && (widget == window || widget == clockStrip ||
                                      clockStrip->isAncestorOf(widget));
        if (event->type() == QEvent::Paint && widget && !clock) {
            ++painted;
            if (painted <= 5)
                std::printf("painted: %s %s\n", widget->metaObject()->className(),
                            qPrintable(widget->objectName()));
        }
        return false;
    }

private:
    const QWidget *window;
    const QWidget *clockStrip;
    int painted = 0;
};

/// The console while nothing changes: the same state is heard every second, on every page.
int soakIdle(double seconds)
{
    ErrorCapture capture;
    SiteModel site;
    UpsModel *ups = site.add(QStringLiteral("still"));
    ConsoleWindow window(&site);
    const Snapshot snapshot =
        Scenario::snapshotAt(Scenario::startOf(Scenario::Phase::OnBattery) + 5);
    ups->take(snapshot);
    window.show();
    int painted = 0;
    double processor = 0.0;
    const int pages = int(window.pageNames().size());
    for (int page = 0; page < pages; ++page) {
        window.showPage(page);
        runUntil(1.0, [] { return false; });
        const PaintCounter counter(&window);
        const double before = cpuSeconds();
        QTimer timer;
        QObject::connect(&timer, &QTimer::timeout, ups, [&] { ups->take(snapshot); });
        constexpr int asTheServerIsAsked = 1000;
        timer.start(asTheServerIsAsked);
        QEventLoop loop;
        QTimer::singleShot(int(seconds / pages * 1000.0), &loop, &QEventLoop::quit);
        loop.exec();
        processor += cpuSeconds() - before;
        painted += counter.count();
    }
    std::printf(
        "idle: %.0f s on %d pages, %d paint events but for the clock, %.3f %% of a processor\n",
        seconds, pages, painted, 100.0 * processor / seconds);
    const QList<ErrorLine> lines = capture.takeLines();
    std::printf("%s\n",
                painted == 0 && lines.isEmpty() ? "still and silent" : "NOT still and silent");
    return painted == 0 && lines.isEmpty() ? 0 : 1;
}

int soakOnServer(int rounds)
{
    const auto failed = [](const QString &what) {
        std::fprintf(stderr, "kivsoak: %s\n", qPrintable(what));
        return 1;
    };
    NutServer server;
    const QByteArray rest = "\nups.load: 42\nbattery.charge: 90\ninput.voltage: 230\n";
    if (!server.writeVariables("ups.status: OL" + rest) || !server.start())
        return failed(server.problem());
    QString error;
    const std::optional<NutAddress> address = NutAddress::parse(server.address(), &error);
    if (!address)
        return failed(error);
    ErrorCapture capture;
    NutFeed feed(*address);
    Snapshot latest;
    QObject::connect(&feed, &UpsFeed::snapshotReady, &feed,
                     [&latest](const Snapshot &snapshot) { latest = snapshot; });
    SiteModel site;
    site.add(QStringLiteral("soak"))->setFeed(&feed);
    ConsoleWindow window(&site);
    window.show();
    feed.start();
    constexpr double patience = 40.0;
    const auto linked = [&latest] { return !latest.isLost(); };
    const auto lost = [&latest] { return latest.isLost(); };
    Watch watch;
    for (int round = 0; round < rounds; ++round) {
        if (!runUntil(patience, linked))
            return failed(QStringLiteral("round %1: no link").arg(round));
        const char *const status = round % 2 == 0 ? "OB DISCHRG" : "OL CHRG";
        if (!server.writeVariables(QByteArray("ups.status: ") + status + rest))
            return failed(server.problem());
        operate(window, round);
        runUntil(2.0, [] { return false; });
        watch.sample();
        if (!server.killServer())
            return failed(server.problem());
        if (!runUntil(patience, lost))
            return failed(QStringLiteral("round %1: the loss is not seen").arg(round));
        watch.sample();
        if (!server.startServer())
            return failed(server.problem());
    }
    std::printf("server: killed and started again %d times\n", rounds);
    return watch.judge(capture.takeLines());
}

} // namespace

int main(int argc, char **argv)
{
    if (!qEnvironmentVariableIsSet("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    const QApplication application(argc, argv);
    Program::styleApplication();
    QPixmapCache::setCacheLimit(pixmapCache);
    const QString task = argc > 1 ? QString::fromLocal8Bit(argv[1]) : QString();
    const auto number = [argc, argv](int index) {
        bool ok = false;
        const double value = index < argc ? QByteArray(argv[index]).toDouble(&ok) : 0.0;
        return ok && std::isfinite(value) ? value : 0.0;
    };
    if (task == QLatin1String("simulator") && argc == 4 && number(2) > 0.0 && number(3) > 0.0)
        return soakOnSimulator(number(2), number(3));
    if (task == QLatin1String("server") && argc == 3 && number(2) >= 1.0 && number(2) <= 1e6)
        return soakOnServer(int(number(2)));
    if (task == QLatin1String("idle") && argc == 3 && number(2) >= 1.0)
        return soakIdle(number(2));
    std::fprintf(stderr, "usage: kivsoak simulator SECONDS SPEED | server ROUNDS | idle SECONDS\n");
    return 2;
}
