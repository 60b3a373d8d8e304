// SPDX-License-Identifier: LicenseRef-all-rights-reserved

#include "screenshots.h"

#include "consolewindow.h"
#include "feed/scenario.h"
#include "model/sitemodel.h"
#include "options.h"
#include "program.h"

#include <QtCore/QEventLoop>
#include <QtCore/QLocale>
#include <QtCore/QTimer>

namespace {

/// As long as a lost link may take to show.
constexpr int patienceMsecs = 6000;
/// Longer than pages gather what changes before they show it.
constexpr int settleMsecs = 600;
constexpr int mostProblems = 20;

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

bool isAnyReached(const SiteModel &site)
{
    for (int i = 0; i < site.count(); ++i) {
        if (!site.at(i)->snapshot().isLost())
            return true;
    }
    return false;
}

/// Lets the server say what can be asked of the UPS that is shown.
void waitForOffer(UpsModel *ups)
{
    if (!ups->needsUser() || ups->snapshot().isLost())
        return;
    QEventLoop loop;
    QObject::connect(ups, &UpsModel::offerChanged, &loop, &QEventLoop::quit);
    QTimer::singleShot(patienceMsecs, &loop, &QEventLoop::quit);
    ups->askForOffer();
    loop.exec();
}

} // namespace

bool takeScenarioScreenshots(ConsoleWindow &window, UpsModel &ups, const Options &options,
                             QString *error)
{
    if (!Program::makeDirectory(options.directory, error))
        return false;
    const QVector<double> instants =
        options.instants.isEmpty() ? notableInstants() : options.instants;
    for (const double instant : instants) {
        ups.take(Scenario::snapshotAt(instant));
        // As many digits as the instant has, so that each gets a file of its own.
        const QString suffix = QLatin1Char('-') +
                               QString::number(instant, 'f', QLocale::FloatingPointShortest) +
                               QLatin1Char('s');
        if (!takePages(window, options.directory, suffix, error))
            return false;
    }
    return true;
}

LiveScreenshots takeLiveScreenshots(ConsoleWindow &window, SiteModel &site, const Options &options,
                                    QStringList *lines)
{
    QString error;
    const auto fail = [&] {
        *lines = QStringList(error);
        return LiveScreenshots::Failed;
    };
    if (!Program::makeDirectory(options.directory, &error))
        return fail();
    QEventLoop loop;
    const auto check = [&] {
        bool all = site.count() > 0 && site.isComplete();
        for (int i = 0; i < site.count(); ++i) {
            // A driver that has just begun knows nothing yet.
            const Snapshot &snapshot = site.at(i)->snapshot();
            all = all && !snapshot.isLost() && snapshot.system.operating != OperatingState::Unknown;
        }
        if (all)
            loop.quit();
    };
    QObject context;
    QObject::connect(&site, &SiteModel::changed, &context, check);
    QObject::connect(&site, &SiteModel::serverMet, &context, check);
    QObject::connect(&site, &SiteModel::serverMissed, &context, check);
    QTimer::singleShot(patienceMsecs, &loop, &QEventLoop::quit);
    loop.exec();
    // What changes from now on does not cut the time short in which the pages settle.
    site.disconnect(&context);
    waitForOffer(window.shownUps());
    QTimer::singleShot(settleMsecs, &loop, &QEventLoop::quit);
    loop.exec();
    if (!takePages(window, options.directory, QString(), &error))
        return fail();
    *lines = site.problemLines(mostProblems);
    if (isAnyReached(site))
        return LiveScreenshots::Taken;
    // A problem of a server or of the file says more than a UPS.
    if (lines->isEmpty())
        *lines += site.count() > 0 ? site.at(0)->snapshot().reason : site.worstProblem();
    lines->first().prepend(QStringLiteral("no UPS is reached: "));
    return LiveScreenshots::OfNoUps;
}
