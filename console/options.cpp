// SPDX-License-Identifier: LicenseRef-all-rights-reserved

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

bool Options::simulates() const
{
    return upses.isEmpty() && servers.isEmpty() && config.isEmpty() && prometheus.isEmpty();
}

Options parseOptions(const QStringList &arguments)
{
    CommandLine line(QStringLiteral("kivconsole"),
                     QStringLiteral("Monitoring console for uninterruptible power supplies. "
                                    "Without --ups, --server, --prometheus and --config it "
                                    "shows a simulated one."),
                     QStringLiteral("each page"));
    const QCommandLineOption ups(QStringLiteral("ups"),
                                 QStringLiteral("Follow a UPS of a Network UPS Tools server; the "
                                                "default port is 3493. Can be given "
                                                "several times."),
                                 QStringLiteral("NAME@HOST[:PORT]"));
    const QCommandLineOption server(QStringLiteral("server"),
                                    QStringLiteral("Follow all UPSes of a server. Can be given "
                                                   "several times."),
                                    QStringLiteral("HOST[:PORT]"));
    const QCommandLineOption prometheus(
        QStringLiteral("prometheus"),
        QStringLiteral("Follow the UPSes that a Prometheus-compatible server scrapes."),
        QStringLiteral("URL"));
    const QCommandLineOption prometheusAuth(
        QStringLiteral("prometheus-auth"),
        QStringLiteral("User and password, or token, for --prometheus; only the file's owner may "
                       "read it."),
        QStringLiteral("FILE"));
    const QCommandLineOption config(QStringLiteral("config"),
                                    QStringLiteral("Follow the UPSes that a configuration "
                                                   "file names."),
                                    QStringLiteral("FILE"));
    const QCommandLineOption credentials(
        QStringLiteral("credentials"),
        QStringLiteral("Users and passwords for commands; only the file's owner may read it."),
        QStringLiteral("FILE"));
    const QCommandLineOption tls(
        QStringLiteral("tls"),
        QStringLiteral("Whether the servers of --ups and --server must offer TLS: off or "
                       "required. By default TLS is required for a server that has a user in "
                       "--credentials, except on this machine."),
        QStringLiteral("off|required"));
    const QCommandLineOption ca(QStringLiteral("ca"),
                                QStringLiteral("Trust the authorities of a PEM file for TLS with "
                                               "the servers of --ups, --server and --prometheus, "
                                               "instead of the system's."),
                                QStringLiteral("FILE"));
    const QCommandLineOption speed(QStringLiteral("speed"),
                                   QStringLiteral("Run the simulated scenario this many times as "
                                                  "fast, from 0.01 to 1000 (default: 1)."),
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
                                        QStringLiteral("Start in full screen; F11 toggles it."));
    const QCommandLineOption fresh(
        QStringLiteral("fresh"),
        QStringLiteral("Forget the size, the page, the theme and the settings of earlier runs, but "
                       "not how long the history is kept."));
    const QCommandLineOption notify(
        QStringLiteral("notify"),
        QStringLiteral("Announce changes of state on the desktop: on or off."),
        QStringLiteral("on|off"));
    const QCommandLineOption report(
        QStringLiteral("report"),
        QStringLiteral("Write a report of the past day, week or month to the file of --output, "
                       "for the UPSes of --ups, or for all UPSes in the console's history, and "
                       "exit; needs no display. Not for --prometheus."),
        QStringLiteral("day|week|month"));
    const QCommandLineOption output(QStringLiteral("output"),
                                    QStringLiteral("With --report: the file, whose name ends with "
                                                   ".html or .csv."),
                                    QStringLiteral("FILE"));
    for (const QCommandLineOption &option : {ups, server})
        line.add(option, CommandLine::Times::Several);
    for (const QCommandLineOption &option :
         {prometheus, prometheusAuth, config, credentials, tls, ca, speed, at, size, fullScreen,
          fresh, notify, report, output})
        line.add(option);

    Options options;
    if (!line.read(arguments, &options))
        return options;
    const auto refused = [&options](const QString &reason) {
        options.refuse(reason);
        return options;
    };

    options.upses = line.values(ups);
    if (options.upses.contains(QString()))
        return refused(QStringLiteral("--ups needs NAME@HOST[:PORT]"));
    options.servers = line.values(server);
    if (options.servers.contains(QString()))
        return refused(QStringLiteral("--server needs HOST[:PORT]"));
    options.config = line.value(config);
    options.credentials = line.value(credentials);
    options.authorities = line.value(ca);
    options.prometheus = line.value(prometheus);
    options.prometheusAuth = line.value(prometheusAuth);
    if (line.isSet(prometheus) && options.prometheus.isEmpty())
        return refused(QStringLiteral("--prometheus needs an address"));
    if (line.isSet(prometheusAuth) && options.prometheus.isEmpty())
        return refused(QStringLiteral("--prometheus-auth goes with --prometheus"));
    for (const QCommandLineOption &file : {config, credentials, ca, prometheusAuth}) {
        if (line.isSet(file) && line.value(file).isEmpty())
            return refused(QStringLiteral("--%1 needs a file").arg(file.names().constFirst()));
    }
    if (line.isSet(tls)) {
        const QString answer = line.value(tls);
        if (answer != QLatin1String("off") && answer != QLatin1String("required"))
            return refused(QStringLiteral("--tls takes off or required, not '%1'").arg(answer));
        options.tls = answer == QLatin1String("required");
    }
    if (!options.simulates() && (line.isSet(speed) || line.isSet(at)))
        return refused(QStringLiteral("--speed and --at are for the simulated UPS, not for --ups, "
                                      "--server, --prometheus and --config"));
    const bool anyServer = !options.upses.isEmpty() || !options.servers.isEmpty();
    if (line.isSet(tls) && !anyServer)
        return refused(QStringLiteral("--tls goes with --ups and --server; for --prometheus, the "
                                      "address says http or https"));
    const bool securesServers = anyServer && options.tls.value_or(true);
    const bool securesPrometheus =
        options.prometheus.startsWith(QLatin1String("https:"), Qt::CaseInsensitive);
    if (line.isSet(ca) && !securesServers && !securesPrometheus)
        return refused(QStringLiteral("--ca is for TLS: it goes with --ups and --server unless "
                                      "--tls is off, and with an https address of --prometheus"));
    if (!anyServer && options.config.isEmpty() && line.isSet(credentials))
        return refused(QStringLiteral("--credentials goes with --ups, --server or --config"));
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

    if (line.isSet(report)) {
        const QStringList names = {QStringLiteral("day"), QStringLiteral("week"),
                                   QStringLiteral("month")};
        const int period = int(names.indexOf(line.value(report)));
        if (period < 0)
            return refused(QStringLiteral("--report takes day, week or month, not '%1'")
                               .arg(line.value(report)));
        options.report = ReportPeriod(period);
        options.output = line.value(output);
        const bool known = options.output.endsWith(QLatin1String(".html"), Qt::CaseInsensitive) ||
                           options.output.endsWith(QLatin1String(".csv"), Qt::CaseInsensitive);
        if (!known)
            return refused(QStringLiteral("--report needs --output with a file that ends with "
                                          ".html or .csv"));
        if (!options.prometheus.isEmpty())
            return refused(QStringLiteral("--report is written from the console's own history, "
                                          "which has nothing of --prometheus"));
        if (options.task == Options::Task::TakeScreenshots || !options.servers.isEmpty() ||
            !options.config.isEmpty())
            return refused(QStringLiteral("--report goes with --ups and --output alone"));
    } else if (line.isSet(output)) {
        return refused(QStringLiteral("--output goes with --report"));
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
