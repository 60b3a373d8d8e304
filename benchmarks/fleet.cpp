// SPDX-License-Identifier: LicenseRef-all-rights-reserved

// What a fleet costs: kivfleet COUNT [SECONDS [IMAGE]] shows a site of COUNT UPSes, changes one
// value a second of each, and prints the time of the first paint, the processor's share and the
// memory. An IMAGE of the window is written at the end.

#include "consolewindow.h"
#include "nutmapping.h"
#include "program.h"
#include "theme.h"

#include <QtCore/QElapsedTimer>
#include <QtCore/QFile>
#include <QtCore/QTimer>
#include <QtWidgets/QApplication>

#include <cstdio>
#include <ctime>
#include <unistd.h>

namespace {

double cpuMilliseconds()
{
    timespec now = {};
    clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &now);
    return double(now.tv_sec) * 1e3 + double(now.tv_nsec) / 1e6;
}

double residentMegabytes()
{
    QFile file(QStringLiteral("/proc/self/statm"));
    if (!file.open(QIODevice::ReadOnly))
        return 0.0;
    return double(file.readAll().split(' ').value(1).toLongLong() * sysconf(_SC_PAGESIZE)) / 1e6;
}

Snapshot snapshot(int number, int load)
{
    static const char *const states[] = {"OL",    "OL CHRG",  "OB DISCHRG",
                                         "OB LB", "OL ALARM", "OL OFF"};
    NutVariables variables;
    const int state = number % 50 == 7 ? 2 + number / 50 % 4 : number % 9 == 4 ? 1 : 0;
    variables.insert(QStringLiteral("ups.status"), QString::fromLatin1(states[state]));
    variables.insert(QStringLiteral("ups.load"), QString::number(load));
    variables.insert(QStringLiteral("battery.charge"), QStringLiteral("97"));
    variables.insert(QStringLiteral("battery.runtime"), QString::number(300 + number));
    variables.insert(QStringLiteral("input.voltage"), QStringLiteral("230"));
    constexpr int usual = 36;
    for (int i = 0; variables.size() < usual; ++i)
        variables.insert(QStringLiteral("some.other.variable.%1").arg(i), QString::number(i));
    return snapshotOf(QStringLiteral("ups%1").arg(number), variables);
}

} // namespace

int main(int argc, char **argv)
{
    qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication application(argc, argv);
    QCoreApplication::setApplicationName(QStringLiteral("kivfleet"));
    Program::styleApplication();
    const QStringList arguments = QCoreApplication::arguments();
    const int count = arguments.value(1, QStringLiteral("1000")).toInt();
    const int seconds = arguments.value(2, QStringLiteral("10")).toInt();
    if (count < 1 || seconds < 0)
        return Program::refuse(QStringLiteral("use kivfleet COUNT [SECONDS [IMAGE]]"),
                               Program::wrongOptions);
    QApplication::setPalette(Theme::palette(qEnvironmentVariableIsSet("KIV_DARK")));

    const double before = residentMegabytes();
    SiteModel site;
    site.setGrowing(true);
    for (int i = 0; i < count; ++i) {
        UpsModel *ups = site.add(QStringLiteral("ups%1@host:3493").arg(i));
        constexpr int perGroup = 40;
        ups->setNames(QString(), QStringLiteral("Hall %1").arg(i / perGroup + 1));
        ups->take(snapshot(i, 30 + i % 40));
    }
    const double model = residentMegabytes();
    QElapsedTimer clock;
    clock.start();
    ConsoleWindow window(&site);
    const QStringList size =
        qEnvironmentVariable("KIV_SIZE", QStringLiteral("1280x800")).split(QLatin1Char('x'));
    window.resize(size.value(0).toInt(), size.value(1).toInt());
    window.show();
    window.grab();
    std::printf("%d UPSes: first paint %lld ms, model %.1f MB, with the window %.1f MB\n", count,
                static_cast<long long>(clock.elapsed()), model - before,
                residentMegabytes() - before);

    // One value a second of each, spread over the second as several servers would.
    QTimer changes;
    int next = 0;
    int round = 0;
    double feeding = 0.0;
    constexpr int slices = 20;
    QObject::connect(&changes, &QTimer::timeout, &application, [&] {
        const double start = cpuMilliseconds();
        for (int i = 0; i < (count + slices - 1) / slices; ++i) {
            site.at(next)->take(snapshot(next, 30 + (next + round) % 40));
            if (++next == count) {
                next = 0;
                ++round;
            }
        }
        feeding += cpuMilliseconds() - start;
    });
    changes.start(1000 / slices);
    QTimer::singleShot(seconds * 1000, &application, &QCoreApplication::quit);
    const double start = cpuMilliseconds();
    clock.restart();
    if (seconds > 0)
        QApplication::exec();
    const double elapsed = double(clock.elapsed());
    const double used = cpuMilliseconds() - start;
    if (seconds > 0)
        std::printf("%.1f %% of a processor, of which %.1f %% make and take snapshots; %.1f MB\n",
                    100.0 * used / elapsed, 100.0 * feeding / elapsed,
                    residentMegabytes() - before);
    if (arguments.size() > 3 && !window.grab().save(arguments.at(3)))
        return Program::failed;
    return 0;
}
