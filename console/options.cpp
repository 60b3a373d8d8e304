#include "options.h"

#include <QtCore/QCommandLineParser>
#include <QtCore/QCoreApplication>

#include <cmath>

namespace {

constexpr double highestSpeed = 1000.0;
constexpr double latestInstant = 24 * 3600.0;
constexpr int mostInstants = 100;

Options refused(const QString &reason)
{
    Options options;
    options.task = Options::Task::Refuse;
    options.text = reason;
    return options;
}

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
    QCommandLineParser parser;
    parser.setApplicationDescription(
        QStringLiteral("Monitoring console for an uninterruptible power supply. Without --ups it "
                       "shows a simulated one."));
    const QCommandLineOption help({QStringLiteral("h"), QStringLiteral("help")},
                                  QStringLiteral("Print this help."));
    const QCommandLineOption version({QStringLiteral("v"), QStringLiteral("version")},
                                     QStringLiteral("Print the version."));
    const QCommandLineOption ups(QStringLiteral("ups"),
                                 QStringLiteral("Follow a UPS of a Network UPS Tools server; the "
                                                "port is 3493 unless given."),
                                 QStringLiteral("NAME@HOST[:PORT]"));
    const QCommandLineOption speed(QStringLiteral("speed"),
                                   QStringLiteral("Run the simulated scenario this many times as "
                                                  "fast, up to 1000."),
                                   QStringLiteral("FACTOR"));
    const QCommandLineOption screenshot(
        QStringLiteral("screenshot"),
        QStringLiteral("Write a picture of each page to DIR and end; needs no display."),
        QStringLiteral("DIR"));
    const QCommandLineOption at(QStringLiteral("at"),
                                QStringLiteral("Scenario instants of the screenshots, in seconds, "
                                               "separated by commas."),
                                QStringLiteral("SECONDS"));
    const QCommandLineOption night(QStringLiteral("night"),
                                   QStringLiteral("Begin with the night look, light on dark."));
    parser.addOptions({help, version, ups, speed, night, screenshot, at});

    if (!parser.parse(arguments)) {
        QString reason = parser.errorText();
        while (reason.endsWith(QLatin1Char('.')))
            reason.chop(1);
        return refused(reason);
    }
    Options options;
    if (parser.isSet(help) || parser.isSet(version)) {
        options.task = Options::Task::PrintText;
        options.text =
            parser.isSet(help)
                ? parser.helpText()
                : QStringLiteral("kivconsole %1\n").arg(QStringLiteral(KIVCONSOLE_VERSION));
        return options;
    }
    if (!parser.positionalArguments().isEmpty())
        return refused(
            QStringLiteral("unexpected argument '%1'").arg(parser.positionalArguments().first()));

    options.night = parser.isSet(night);
    options.ups = parser.value(ups);
    if (parser.isSet(ups) && options.ups.isEmpty())
        return refused(QStringLiteral("--ups needs NAME@HOST[:PORT]"));
    if (parser.isSet(ups) && (parser.isSet(speed) || parser.isSet(at)))
        return refused(QStringLiteral("--speed and --at are for the simulated UPS, not for --ups"));
    constexpr double lowestSpeed = 0.01;
    if (parser.isSet(speed) &&
        !readNumber(parser.value(speed), lowestSpeed, highestSpeed, &options.speed))
        return refused(QStringLiteral("--speed takes a number from 0.01 to 1000, not '%1'")
                           .arg(parser.value(speed)));

    if (parser.isSet(at) && !parser.isSet(screenshot))
        return refused(QStringLiteral("--at goes with --screenshot"));
    if (parser.isSet(screenshot)) {
        options.task = Options::Task::TakeScreenshots;
        options.directory = parser.value(screenshot);
        if (options.directory.isEmpty())
            return refused(QStringLiteral("--screenshot needs a directory"));
        const QStringList texts = parser.value(at).split(QLatin1Char(','), Qt::SkipEmptyParts);
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
