#include "options.h"

#include <cmath>

namespace {

constexpr double highestSpeed = 1000.0;
constexpr double latestInstant = 24 * 3600.0;
constexpr int mostInstants = 100;
constexpr QSize smallestWindow(480, 320);
constexpr QSize largestWindow(8192, 8192);

/// A number of the C locale within (or, with @p least 0, at) its bounds.
bool readNumber(const QString &text, double least, double most, double *number)
{
    bool ok = false;
    *number = text.toDouble(&ok);
    return ok && std::isfinite(*number) && *number >= least && *number <= most;
}

} // namespace

Options parseOptions(const QStringList &arguments)
{
    CommandLine line(QStringLiteral("kivconsole"),
                     QStringLiteral("Monitoring console for an uninterruptible power supply. "
                                    "Without --ups it shows a simulated one."),
                     QStringLiteral("each page"));
    const QCommandLineOption ups(QStringLiteral("ups"),
                                 QStringLiteral("Follow a UPS of a Network UPS Tools server; the "
                                                "port is 3493 unless given."),
                                 QStringLiteral("NAME@HOST[:PORT]"));
    const QCommandLineOption speed(QStringLiteral("speed"),
                                   QStringLiteral("Run the simulated scenario this many times as "
                                                  "fast, from 0.01 to 1000; 1 unless given."),
                                   QStringLiteral("FACTOR"));
    const QCommandLineOption at(QStringLiteral("at"),
                                QStringLiteral("With --screenshot: up to 100 instants of the "
                                               "scenario, in seconds from 0 to 86400, "
                                               "separated by commas."),
                                QStringLiteral("SECONDS"));
    const QCommandLineOption size(QStringLiteral("size"),
                                  QStringLiteral("Size of the window in pixels, from %1 to %2.")
                                      .arg(sizeText(smallestWindow), sizeText(largestWindow)),
                                  QStringLiteral("WIDTHxHEIGHT"));
    const QCommandLineOption fullScreen(QStringLiteral("fullscreen"),
                                        QStringLiteral("Fill the screen; F11 changes it, too."));
    const QCommandLineOption fresh(
        QStringLiteral("fresh"),
        QStringLiteral("Forget the size, the page and the settings of earlier runs."));
    const QCommandLineOption notify(QStringLiteral("notify"),
                                    QStringLiteral("Whether changes of state are announced on the "
                                                   "desktop: on or off."),
                                    QStringLiteral("on|off"));
    for (const QCommandLineOption &option : {ups, speed, at, size, fullScreen, fresh, notify})
        line.add(option);

    Options options;
    if (!line.read(arguments, &options))
        return options;
    const auto refused = [&options](const QString &reason) {
        options.refuse(reason);
        return options;
    };

    options.ups = line.value(ups);
    if (line.isSet(ups) && options.ups.isEmpty())
        return refused(QStringLiteral("--ups needs NAME@HOST[:PORT]"));
    if (line.isSet(ups) && (line.isSet(speed) || line.isSet(at)))
        return refused(QStringLiteral("--speed and --at are for the simulated UPS, not for --ups"));
    constexpr double lowestSpeed = 0.01;
    if (line.isSet(speed) &&
        !readNumber(line.value(speed), lowestSpeed, highestSpeed, &options.speed))
        return refused(QStringLiteral("--speed takes a number from 0.01 to 1000, not '%1'")
                           .arg(line.value(speed)));

    if (line.isSet(size)) {
        options.size = readSize(line.value(size), smallestWindow, largestWindow);
        if (!options.size.isValid())
            return refused(
                QStringLiteral("--size takes %1 to %2, not '%3'")
                    .arg(sizeText(smallestWindow), sizeText(largestWindow), line.value(size)));
    }
    options.fullScreen = line.isSet(fullScreen);
    options.fresh = line.isSet(fresh);
    if (line.isSet(notify)) {
        const QString answer = line.value(notify);
        if (answer != QLatin1String("on") && answer != QLatin1String("off"))
            return refused(QStringLiteral("--notify takes on or off, not '%1'").arg(answer));
        options.notify = answer == QLatin1String("on");
    }

    const bool takesScreenshots = options.task == Options::Task::TakeScreenshots;
    if (line.isSet(at) && !takesScreenshots)
        return refused(QStringLiteral("--at goes with --screenshot"));
    if (takesScreenshots) {
        const QStringList texts = line.value(at).split(QLatin1Char(','), Qt::SkipEmptyParts);
        for (const QString &text : texts) {
            double instant = 0;
            if (!readNumber(text, 0, latestInstant, &instant))
                return refused(
                    QStringLiteral("--at takes seconds from 0 to 86400, not '%1'").arg(text));
            options.instants.append(instant);
        }
        if (options.instants.size() > mostInstants)
            return refused(QStringLiteral("--at takes at most %1 instants").arg(mostInstants));
    }
    return options;
}
