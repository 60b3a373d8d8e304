// SPDX-License-Identifier: LicenseRef-all-rights-reserved

#include "consolesettings.h"
#include "consolewindow.h"
#include "feed/simulatorfeed.h"
#include "history/recorder.h"
#include "notifier.h"
#include "options.h"
#include "program.h"
#include "promtrends.h"
#include "reportfile.h"
#include "screenshots.h"
#include "sitefeeds.h"

#include <QtWidgets/QApplication>

#include <memory>
#include <optional>
#include <utility>

namespace {

/// The status when screenshots are there but of a UPS that cannot be reached.
constexpr int notReached = 3;

/// The UPSes that the console shows, and what brings their data: the simulator, or the servers.
class Watch
{
public:
    explicit Watch(const Options &options)
        : simulator(options.speed)
        , feeds(&site)
        , isSimulated(options.simulates())
    {}

    bool add(const SiteEntries &entries, const QVector<Credentials> &users, QString *error)
    {
        if (!isSimulated)
            return feeds.add(entries, users, error);
        site.add(QStringLiteral("simulator"))->setFeed(&simulator);
        return true;
    }

    void start()
    {
        if (isSimulated)
            simulator.start();
        else
            feeds.start();
    }

    SiteModel site;
    SimulatorFeed simulator;
    SiteFeeds feeds;
    const bool isSimulated;
};

int writeTheReport(int &argc, char **argv, const Options &options)
{
    const QCoreApplication application(argc, argv);
    QString error;
    return writeReport(options, Program::dataDirectory(), &error)
               ? 0
               : Program::refuse(error, Program::failed);
}

int takeScreenshots(ConsoleWindow &window, Watch &watch, const Options &options)
{
    if (options.size.isValid())
        window.resize(options.size);
    if (watch.isSimulated) {
        QString error;
        return takeScenarioScreenshots(window, *watch.site.at(0), options, &error)
                   ? 0
                   : Program::refuse(error, Program::failed);
    }
    watch.start();
    QStringList lines;
    const LiveScreenshots end = takeLiveScreenshots(window, watch.site, options, &lines);
    for (const QString &line : std::as_const(lines))
        Program::say(line);
    switch (end) {
    case LiveScreenshots::Taken:
        return 0;
    case LiveScreenshots::OfNoUps:
        return notReached;
    case LiveScreenshots::Failed:
        break;
    }
    return Program::failed;
}

/// Gives the window what earlier runs saved in the file @p settings.
void restore(ConsoleWindow &window, const QString &settings, const Options &options)
{
    if (!settings.isEmpty()) {
        if (options.fresh)
            ConsoleSettings::forget(settings);
        window.remember(settings);
    }
    // The command line overrides saved settings.
    if (options.dark)
        window.chooseDarkTheme(true);
    if (options.size.isValid())
        window.resize(options.size);
    if (options.notify)
        window.chooseNotify(*options.notify);
}

/// Shows the console until it is closed. Users that it is to keep go to @p credentialsFile.
int show(ConsoleWindow &window, Watch &watch, const Options &options, bool isKept,
         const QString &credentialsFile)
{
    const QString settings = Program::settingsFile(QStringLiteral("console.ini"));
    History history(!isKept ? QString() : Program::dataDirectory(),
                    ConsoleSettings::keptTimes(settings));
    const Recorder recorder(&watch.site, &history);
    SiteFeeds &feeds = watch.feeds;
    PromTrends trends([&feeds](const QString &ups) { return feeds.promFeed(ups); }, &history);
    window.setHistory(&history, &trends);
    window.setCredentialsFile(credentialsFile);
    QObject::connect(&window, &ConsoleWindow::keepUser, &window,
                     [&](const QString &ups, const QString &user, const QString &password) {
                         QString reason;
                         if (!feeds.keepUser(credentialsFile, ups, user, password, &reason))
                             window.say(reason);
                     });
    Notifier notifier(&watch.site);
    QObject::connect(&window, &ConsoleWindow::notifyChosen, &notifier, &Notifier::setEnabled);
    restore(window, settings, options);
    QObject::connect(&feeds, &SiteFeeds::nameMissed, &window, &Program::say);
    if (options.fullScreen)
        window.setFilled(true);
    else
        window.show();
    watch.start();
    return QApplication::exec();
}

} // namespace

int main(int argc, char **argv)
{
    const Options options =
        Program::readOptions(argc, argv, QStringLiteral("kivconsole"), parseOptions);
    SiteEntries entries;
    QVector<Credentials> users;
    QString error;
    // Users whom earlier runs were asked to keep.
    const QString kept = Program::settingsFile(QStringLiteral("credentials"));
    if (options.task != Options::Task::Refuse && options.task != Options::Task::PrintText &&
        !readSite(options, kept, &entries, &users, &error))
        return Program::refuse(error, Program::wrongOptions);
    if (const std::optional<int> status = Program::begin(options))
        return *status;
    if (options.report)
        return writeTheReport(argc, argv, options);

    const std::unique_ptr<QApplication> application = Program::makeApplication(argc, argv);
    Watch watch(options);
    if (!watch.add(entries, users, &error))
        return Program::refuse(error, Program::wrongOptions);
    ConsoleWindow window(&watch.site);
    // Also by day: the desktop's palette is not the console's.
    window.chooseDarkTheme(options.dark);
    if (options.task == Options::Task::TakeScreenshots)
        return takeScreenshots(window, watch, options);
    // What a simulation does is not to be mixed with what happened: it is forgotten with it.
    // Prometheus keeps its own.
    const bool isKept = !watch.isSimulated && !entries.servers.isEmpty();
    return show(window, watch, options, isKept,
                entries.credentials.path.isEmpty() ? kept : entries.credentials.path);
}
