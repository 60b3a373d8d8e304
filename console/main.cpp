#include "consolewindow.h"
#include "feed/nutfeed.h"
#include "feed/simulatorfeed.h"
#include "look.h"
#include "options.h"
#include "screenshots.h"

#include <QtCore/QCoreApplication>
#include <QtWidgets/QApplication>
#include <QtWidgets/QStyleFactory>

#include <cstdio>
#include <memory>
#include <optional>

namespace {

constexpr int wrongOptions = 2;

Options readOptions(int argc, char **argv)
{
    const QCoreApplication application(argc, argv);
    QCoreApplication::setApplicationName(QStringLiteral("kivconsole"));
    return parseOptions(QCoreApplication::arguments());
}

bool hasDisplay()
{
    return qEnvironmentVariableIsSet("QT_QPA_PLATFORM") ||
           !qEnvironmentVariableIsEmpty("DISPLAY") ||
           !qEnvironmentVariableIsEmpty("WAYLAND_DISPLAY");
}

int refuse(const QString &reason, int status)
{
    std::fprintf(stderr, "kivconsole: %s\n", qPrintable(reason));
    return status;
}

} // namespace

int main(int argc, char **argv)
{
    const Options options = readOptions(argc, argv);
    if (options.task == Options::Task::Refuse)
        return refuse(options.text, wrongOptions);
    if (options.task == Options::Task::PrintText) {
        std::fputs(qPrintable(options.text), stdout);
        return 0;
    }

    std::optional<NutAddress> address;
    if (!options.ups.isEmpty()) {
        QString error;
        address = NutAddress::parse(options.ups, &error);
        if (!address)
            return refuse(error, wrongOptions);
    }

    const bool takesScreenshots = options.task == Options::Task::TakeScreenshots;
    if (takesScreenshots && !hasDisplay())
        qputenv("QT_QPA_PLATFORM", "offscreen");
    else if (!hasDisplay())
        return refuse(QStringLiteral("no display; --screenshot DIR needs none"), 1);

    QApplication application(argc, argv);
    QApplication::setStyle(QStyleFactory::create(QStringLiteral("Fusion")));
    QApplication::setFont(Look::font(Look::Normal));

    std::unique_ptr<UpsFeed> feed;
    if (address)
        feed = std::make_unique<NutFeed>(*address);
    else
        feed = std::make_unique<SimulatorFeed>(options.speed);

    ConsoleWindow window;
    window.chooseNightLook(options.night);
    window.setFeed(feed.get());
    if (takesScreenshots) {
        QString error;
        const bool taken = address ? takeLiveScreenshots(window, *feed, options, &error)
                                   : takeScenarioScreenshots(window, options, &error);
        return taken ? 0 : refuse(error, 1);
    }
    window.show();
    feed->start();
    return QApplication::exec();
}
