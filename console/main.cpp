#include "consolewindow.h"
#include "feed/nutfeed.h"
#include "feed/simulatorfeed.h"
#include "notifier.h"
#include "options.h"
#include "program.h"
#include "screenshots.h"

#include <QtCore/QFile>
#include <QtWidgets/QApplication>

#include <memory>
#include <optional>

/// The status when screenshots are there but of a UPS that cannot be reached.
static constexpr int notReached = 3;

int main(int argc, char **argv)
{
    const Options options =
        Program::readOptions(argc, argv, QStringLiteral("kivconsole"), parseOptions);
    std::optional<NutAddress> address;
    if (!options.ups.isEmpty()) {
        QString error;
        address = NutAddress::parse(options.ups, &error);
        if (!address)
            return Program::refuse(error, Program::wrongOptions);
    }
    if (const std::optional<int> status = Program::begin(options))
        return *status;

    const std::unique_ptr<QApplication> application = Program::makeApplication(argc, argv);

    std::unique_ptr<UpsFeed> feed;
    if (address)
        feed = std::make_unique<NutFeed>(*address);
    else
        feed = std::make_unique<SimulatorFeed>(options.speed);

    SiteModel site;
    UpsModel *ups = site.add(address ? address->toString() : QStringLiteral("simulator"));
    ConsoleWindow window(&site);
    if (options.task == Options::Task::TakeScreenshots) {
        window.chooseDarkTheme(options.dark);
        if (options.size.isValid())
            window.resize(options.size);
        QString error;
        // What the UPS can be asked to do is offered, as in use.
        ups->setFeed(feed.get());
        if (!address)
            return takeScenarioScreenshots(window, *ups, options, &error)
                       ? 0
                       : Program::refuse(error, Program::failed);
        feed->start();
        switch (takeLiveScreenshots(window, *ups, options, &error)) {
        case LiveScreenshots::Taken:
            return 0;
        case LiveScreenshots::OfNoUps:
            return Program::refuse(error, notReached);
        case LiveScreenshots::Failed:
            return Program::refuse(error, Program::failed);
        }
    }
    Notifier notifier(&site);
    QObject::connect(&window, &ConsoleWindow::notifyChosen, &notifier, &Notifier::setEnabled);
    if (const QString file = Program::settingsFile(QStringLiteral("console.ini"));
        !file.isEmpty()) {
        if (options.fresh)
            QFile::remove(file);
        window.remember(file);
    }
    // What the command line says goes before what was remembered.
    if (options.dark)
        window.chooseDarkTheme(true);
    if (options.size.isValid())
        window.resize(options.size);
    if (options.notify)
        window.chooseNotify(*options.notify);
    ups->setFeed(feed.get());
    if (options.fullScreen)
        window.setFilled(true);
    else
        window.show();
    feed->start();
    return QApplication::exec();
}
