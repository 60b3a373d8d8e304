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

    NutAddress address;
    if (!options.ups.isEmpty()) {
        QString error;
        if (!NutAddress::parse(options.ups, &address, &error))
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
    QApplication::setPalette(Look::palette(false));

    std::unique_ptr<UpsFeed> feed;
    SimulatorFeed *simulator = nullptr;
    if (options.ups.isEmpty()) {
        simulator = new SimulatorFeed;
        simulator->setSpeed(options.speed);
        feed.reset(simulator);
    } else {
        feed = std::make_unique<NutFeed>(address);
    }

    ConsoleWindow window;
    window.setFeed(feed.get());
    if (takesScreenshots) {
        QString error;
        const bool taken = simulator ? takeScenarioScreenshots(window, *simulator, options, &error)
                                     : takeLiveScreenshots(window, *feed, options, &error);
        return taken ? 0 : refuse(error, 1);
    }
    window.show();
    feed->start();
    return QApplication::exec();
}
