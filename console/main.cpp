#include "consolewindow.h"
#include "feed/nutfeed.h"
#include "feed/simulatorfeed.h"
#include "options.h"
#include "program.h"
#include "screenshots.h"

#include <QtWidgets/QApplication>

#include <memory>
#include <optional>

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

    QApplication application(argc, argv);
    Program::styleApplication();

    std::unique_ptr<UpsFeed> feed;
    if (address)
        feed = std::make_unique<NutFeed>(*address);
    else
        feed = std::make_unique<SimulatorFeed>(options.speed);

    ConsoleWindow window;
    window.chooseDarkTheme(options.dark);
    window.setFeed(feed.get());
    if (options.task == Options::Task::TakeScreenshots) {
        QString error;
        const bool taken = address ? takeLiveScreenshots(window, *feed, options, &error)
                                   : takeScenarioScreenshots(window, options, &error);
        return taken ? 0 : Program::refuse(error, Program::failed);
    }
    window.show();
    feed->start();
    return QApplication::exec();
}
