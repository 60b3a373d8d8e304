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

/// The status when screenshots are there but of a UPS that cannot be reached.
static constexpr int notReached = 3;

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

    if (options.report) {
        const QCoreApplication application(argc, argv);
        return writeReport(options, Program::dataDirectory(), &error)
                   ? 0
                   : Program::refuse(error, Program::failed);
    }
    const std::unique_ptr<QApplication> application = Program::makeApplication(argc, argv);

    SiteModel site;
    SimulatorFeed simulator(options.speed);
    SiteFeeds feeds(&site);
    if (options.simulates())
        site.add(QStringLiteral("simulator"))->setFeed(&simulator);
    else if (!feeds.add(entries, users, &error))
        return Program::refuse(error, Program::wrongOptions);
    const auto start = [&] {
        if (options.simulates())
            simulator.start();
        else
            feeds.start();
    };
    ConsoleWindow window(&site);
    // Also by day: the desktop's palette is not the console's.
    window.chooseDarkTheme(options.dark);
    if (options.task == Options::Task::TakeScreenshots) {
        if (options.size.isValid())
            window.resize(options.size);
        if (options.simulates())
            return takeScenarioScreenshots(window, *site.at(0), options, &error)
                       ? 0
                       : Program::refuse(error, Program::failed);
        start();
        QStringList lines;
        const LiveScreenshots end = takeLiveScreenshots(window, site, options, &lines);
        for (const QString &line : std::as_const(lines))
            Program::say(line);
        switch (end) {
        case LiveScreenshots::Taken:
            return 0;
        case LiveScreenshots::OfNoUps:
            return notReached;
        case LiveScreenshots::Failed:
            return Program::failed;
        }
    }
    // What a simulation does is not to be mixed with what happened: it is forgotten with it.
    // Prometheus keeps its own.
    const QString settings = Program::settingsFile(QStringLiteral("console.ini"));
    const bool isKept = !options.simulates() && !entries.servers.isEmpty();
    History history(!isKept ? QString() : Program::dataDirectory(),
                    ConsoleSettings::keptTimes(settings));
    const Recorder recorder(&site, &history);
    PromTrends trends([&feeds](const QString &ups) { return feeds.promFeed(ups); }, &history);
    window.setHistory(&history, &trends);
    const QString credentialsFile =
        entries.credentials.path.isEmpty() ? kept : entries.credentials.path;
    window.setCredentialsFile(credentialsFile);
    QObject::connect(&window, &ConsoleWindow::keepUser, &window,
                     [&](const QString &ups, const QString &user, const QString &password) {
                         QString reason;
                         if (!feeds.keepUser(credentialsFile, ups, user, password, &reason))
                             window.say(reason);
                     });
    Notifier notifier(&site);
    QObject::connect(&window, &ConsoleWindow::notifyChosen, &notifier, &Notifier::setEnabled);
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
    QObject::connect(&feeds, &SiteFeeds::nameMissed, &window, &Program::say);
    if (options.fullScreen)
        window.setFilled(true);
    else
        window.show();
    start();
    return QApplication::exec();
}
