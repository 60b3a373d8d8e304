#include "screenshots.h"

#include "consolewindow.h"
#include "feed/scenario.h"
#include "feed/upsfeed.h"
#include "options.h"
#include "program.h"

#include <QtCore/QEventLoop>
#include <QtCore/QTimer>

namespace {

/// As long as a lost link may take to show.
constexpr int patienceMsecs = 6000;

/// Late in the phases that show the most.
QVector<double> notableInstants()
{
    using Scenario::Phase;
    QVector<double> instants;
    for (const Phase phase :
         {Phase::Calibration, Phase::Normal, Phase::OnBattery, Phase::LowBattery, Phase::Overload,
          Phase::InverterFault, Phase::Locked, Phase::CommunicationLost}) {
        const bool last = int(phase) == Scenario::phaseCount - 1;
        const double end = last ? Scenario::length() : Scenario::startOf(Phase(int(phase) + 1));
        instants.append(Scenario::startOf(phase) + 0.8 * (end - Scenario::startOf(phase)));
    }
    return instants;
}

bool takePages(ConsoleWindow &window, const QString &directory, const QString &suffix,
               QString *error)
{
    const QStringList names = window.pageNames();
    for (int i = 0; i < names.size(); ++i) {
        window.showPage(i);
        if (!Program::takeScreenshot(window, directory, names.at(i) + suffix, error))
            return false;
    }
    return true;
}

} // namespace

bool takeScenarioScreenshots(ConsoleWindow &window, const Options &options, QString *error)
{
    if (!Program::makeDirectory(options.directory, error))
        return false;
    const QVector<double> instants =
        options.instants.isEmpty() ? notableInstants() : options.instants;
    for (const double instant : instants) {
        window.showSnapshot(Scenario::snapshotAt(instant));
        const QString suffix = QStringLiteral("-%1s").arg(instant, 0, 'f', 0);
        if (!takePages(window, options.directory, suffix, error))
            return false;
    }
    return true;
}

bool takeLiveScreenshots(ConsoleWindow &window, UpsFeed &feed, const Options &options,
                         QString *error)
{
    if (!Program::makeDirectory(options.directory, error))
        return false;
    QEventLoop loop;
    QObject::connect(&feed, &UpsFeed::snapshotReady, &loop, [&](const Snapshot &snapshot) {
        // A driver that has just begun knows nothing yet.
        if (!snapshot.isLost() && snapshot.system.operating != OperatingState::Unknown)
            loop.quit();
    });
    QTimer::singleShot(patienceMsecs, &loop, &QEventLoop::quit);
    feed.start();
    loop.exec();
    return takePages(window, options.directory, QString(), error);
}
