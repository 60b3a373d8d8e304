// SPDX-License-Identifier: LicenseRef-all-rights-reserved

#include "options.h"

#include <cmath>

namespace {

constexpr double lowestSpeed = 0.01;
constexpr double highestSpeed = 1000.0;
constexpr double latestInstant = 24 * 3600.0;
constexpr int mostInstants = 100;
constexpr QSize smallestWindow(480, 320);
constexpr QSize largestWindow(8192, 8192);

/// Reads the command line: registers the options, in the order of the help, and checks them.
class OptionReader
{
public:
    Options read(const QStringList &arguments);

private:
    using Times = CommandLine::Times;

    /// An option of one value that the help calls @p value, or, without a value, a switch.
    QCommandLineOption add(const char *name, const char *value, const QString &description,
                           Times times = Times::Once);
    QCommandLineOption add(const char *name, const QString &description);

    // The steps of read(), in its order; false: refused.
    bool readServers();
    bool readFiles();
    bool readTls();
    bool checkSimulation();
    bool checkSecurity();
    bool readSpeed();
    bool readSize();
    bool readNotify();
    bool readReport();
    bool readInstants();

    bool refuse(const QString &reason);
    bool readWord(const QCommandLineOption &option, const QStringList &words, int *index);
    bool anyServer() const;
    bool takesScreenshots() const;

    CommandLine line{QStringLiteral("kivconsole"),
                     QStringLiteral("Monitoring console for uninterruptible power supplies. "
                                    "Without --ups, --server, --prometheus and --config it "
                                    "shows a simulated one."),
                     QStringLiteral("each page")};
    Options options;

    const QCommandLineOption ups =
        add("ups", "NAME@HOST[:PORT]",
            QStringLiteral("Follow a UPS of a Network UPS Tools server; the default port is 3493. "
                           "Can be given several times."),
            Times::Several);
    const QCommandLineOption server =
        add("server", "HOST[:PORT]",
            QStringLiteral("Follow all UPSes of a server. Can be given several times."),
            Times::Several);
    const QCommandLineOption prometheus =
        add("prometheus", "URL",
            QStringLiteral("Follow the UPSes that a Prometheus-compatible server scrapes."));
    const QCommandLineOption prometheusAuth =
        add("prometheus-auth", "FILE",
            QStringLiteral("User and password, or token, for --prometheus; only the file's owner "
                           "may read it."));
    const QCommandLineOption config =
        add("config", "FILE", QStringLiteral("Follow the UPSes that a configuration file names."));
    const QCommandLineOption credentials =
        add("credentials", "FILE",
            QStringLiteral("Users and passwords for commands; only the file's owner may read it."));
    const QCommandLineOption tls =
        add("tls", "off|required",
            QStringLiteral("Whether the servers of --ups and --server must offer TLS: off or "
                           "required. By default TLS is required for a server that has a user in "
                           "--credentials, except on this machine."));
    const QCommandLineOption ca =
        add("ca", "FILE",
            QStringLiteral("Trust the authorities of a PEM file for TLS with the servers of --ups, "
                           "--server and --prometheus, instead of the system's."));
    const QCommandLineOption speed =
        add("speed", "FACTOR",
            QStringLiteral("Run the simulated scenario this many times as fast, from 0.01 to 1000 "
                           "(default: 1)."));
    const QCommandLineOption at =
        add("at", "SECONDS",
            QStringLiteral("With --screenshot: up to 100 instants of the scenario, in seconds from "
                           "0 to 86400, separated by commas."));
    const QCommandLineOption size =
        add("size", "WIDTHxHEIGHT",
            QStringLiteral("Size of the window in pixels, from %1 to %2.")
                .arg(sizeText(smallestWindow), sizeText(largestWindow)));
    const QCommandLineOption fullScreen =
        add("fullscreen", QStringLiteral("Start in full screen; F11 toggles it."));
    const QCommandLineOption fresh =
        add("fresh",
            QStringLiteral("Forget the size, the page, the theme and the settings of earlier runs, "
                           "but not how long the history is kept."));
    const QCommandLineOption notify = add(
        "notify", "on|off", QStringLiteral("Announce changes of state on the desktop: on or off."));
    const QCommandLineOption report =
        add("report", "day|week|month",
            QStringLiteral("Write a report of the past day, week or month to the file of --output, "
                           "for the UPSes of --ups, or for all UPSes in the console's history, and "
                           "exit; needs no display. Not for --prometheus."));
    const QCommandLineOption output =
        add("output", "FILE",
            QStringLiteral("With --report: the file, whose name ends with .html or .csv."));
};

/// A number of the C locale within its bounds.
bool readNumber(const QString &text, double least, double most, double *number)
{
    bool ok = false;
    *number = text.toDouble(&ok);
    return ok && std::isfinite(*number) && *number >= least && *number <= most;
}

Options OptionReader::read(const QStringList &arguments)
{
    if (!line.read(arguments, &options))
        return options;
    options.fullScreen = line.isSet(fullScreen);
    options.fresh = line.isSet(fresh);
    // The first step that refuses gives the reason.
    if (readServers() && readFiles() && readTls() && checkSimulation() && checkSecurity() &&
        readSpeed() && readSize() && readNotify() && readReport())
        readInstants();
    return options;
}

QCommandLineOption OptionReader::add(const char *name, const char *value,
                                     const QString &description, Times times)
{
    const QCommandLineOption option(QLatin1String(name), description, QLatin1String(value));
    line.add(option, times);
    return option;
}

QCommandLineOption OptionReader::add(const char *name, const QString &description)
{
    return add(name, nullptr, description);
}

bool OptionReader::refuse(const QString &reason)
{
    options.refuse(reason);
    return false;
}

/// Finds out which of @p words the option's value is.
bool OptionReader::readWord(const QCommandLineOption &option, const QStringList &words, int *index)
{
    const QString value = line.value(option);
    *index = int(words.indexOf(value));
    if (*index >= 0)
        return true;
    QStringList first = words;
    const QString last = first.takeLast();
    return refuse(
        QStringLiteral("--%1 takes %2 or %3, not '%4'")
            .arg(option.names().constFirst(), first.join(QStringLiteral(", ")), last, value));
}

bool OptionReader::anyServer() const
{
    return !options.upses.isEmpty() || !options.servers.isEmpty();
}

bool OptionReader::takesScreenshots() const
{
    return options.task == Options::Task::TakeScreenshots;
}

bool OptionReader::readServers()
{
    options.upses = line.values(ups);
    if (options.upses.contains(QString()))
        return refuse(QStringLiteral("--ups needs NAME@HOST[:PORT]"));
    options.servers = line.values(server);
    if (options.servers.contains(QString()))
        return refuse(QStringLiteral("--server needs HOST[:PORT]"));
    options.prometheus = line.value(prometheus);
    if (line.isSet(prometheus) && options.prometheus.isEmpty())
        return refuse(QStringLiteral("--prometheus needs an address"));
    if (line.isSet(prometheusAuth) && options.prometheus.isEmpty())
        return refuse(QStringLiteral("--prometheus-auth goes with --prometheus"));
    return true;
}

bool OptionReader::readFiles()
{
    const struct
    {
        const QCommandLineOption &option;
        QString &path;
    } files[] = {{config, options.config},
                 {credentials, options.credentials},
                 {ca, options.authorities},
                 {prometheusAuth, options.prometheusAuth}};
    for (const auto &file : files) {
        file.path = line.value(file.option);
        if (line.isSet(file.option) && file.path.isEmpty())
            return refuse(
                QStringLiteral("--%1 needs a file").arg(file.option.names().constFirst()));
    }
    return true;
}

bool OptionReader::readTls()
{
    if (!line.isSet(tls))
        return true;
    int word = 0;
    if (!readWord(tls, {QStringLiteral("off"), QStringLiteral("required")}, &word))
        return false;
    options.tls = word == 1;
    return true;
}

bool OptionReader::checkSimulation()
{
    if (!options.simulates() && (line.isSet(speed) || line.isSet(at)))
        return refuse(QStringLiteral("--speed and --at are for the simulated UPS, not for --ups, "
                                     "--server, --prometheus and --config"));
    return true;
}

/// Refuses what secures a connection that there is not.
bool OptionReader::checkSecurity()
{
    if (line.isSet(tls) && !anyServer())
        return refuse(QStringLiteral("--tls goes with --ups and --server; for --prometheus, the "
                                     "address says http or https"));
    const bool securesServers = anyServer() && options.tls.value_or(true);
    const bool securesPrometheus =
        options.prometheus.startsWith(QLatin1String("https:"), Qt::CaseInsensitive);
    if (line.isSet(ca) && !securesServers && !securesPrometheus)
        return refuse(QStringLiteral("--ca is for TLS: it goes with --ups and --server unless "
                                     "--tls is off, and with an https address of --prometheus"));
    if (!anyServer() && options.config.isEmpty() && line.isSet(credentials))
        return refuse(QStringLiteral("--credentials goes with --ups, --server or --config"));
    return true;
}

bool OptionReader::readSpeed()
{
    if (!line.isSet(speed) ||
        readNumber(line.value(speed), lowestSpeed, highestSpeed, &options.speed))
        return true;
    return refuse(QStringLiteral("--speed takes a number from 0.01 to 1000, not '%1'")
                      .arg(line.value(speed)));
}

bool OptionReader::readSize()
{
    if (!line.isSet(size))
        return true;
    options.size = ::readSize(line.value(size), smallestWindow, largestWindow);
    return options.size.isValid() ||
           refuse(QStringLiteral("--size takes %1 to %2, not '%3'")
                      .arg(sizeText(smallestWindow), sizeText(largestWindow), line.value(size)));
}

bool OptionReader::readNotify()
{
    if (!line.isSet(notify))
        return true;
    int word = 0;
    if (!readWord(notify, {QStringLiteral("on"), QStringLiteral("off")}, &word))
        return false;
    options.notify = word == 0;
    return true;
}

bool OptionReader::readReport()
{
    if (!line.isSet(report))
        return !line.isSet(output) || refuse(QStringLiteral("--output goes with --report"));
    int period = 0;
    if (!readWord(report, {QStringLiteral("day"), QStringLiteral("week"), QStringLiteral("month")},
                  &period))
        return false;
    options.report = ReportPeriod(period);
    options.output = line.value(output);
    const bool known = options.output.endsWith(QLatin1String(".html"), Qt::CaseInsensitive) ||
                       options.output.endsWith(QLatin1String(".csv"), Qt::CaseInsensitive);
    if (!known)
        return refuse(QStringLiteral("--report needs --output with a file that ends with .html or "
                                     ".csv"));
    if (!options.prometheus.isEmpty())
        return refuse(QStringLiteral("--report is written from the console's own history, which "
                                     "has nothing of --prometheus"));
    if (takesScreenshots() || !options.servers.isEmpty() || !options.config.isEmpty())
        return refuse(QStringLiteral("--report goes with --ups and --output alone"));
    return true;
}

bool OptionReader::readInstants()
{
    if (!takesScreenshots())
        return !line.isSet(at) || refuse(QStringLiteral("--at goes with --screenshot"));
    const QStringList texts = line.value(at).split(QLatin1Char(','), Qt::SkipEmptyParts);
    for (const QString &text : texts) {
        double instant = 0;
        if (!readNumber(text, 0, latestInstant, &instant))
            return refuse(QStringLiteral("--at takes seconds from 0 to 86400, not '%1'").arg(text));
        options.instants.append(instant);
    }
    return options.instants.size() <= mostInstants ||
           refuse(QStringLiteral("--at takes at most %1 instants").arg(mostInstants));
}

} // namespace

bool Options::simulates() const
{
    return upses.isEmpty() && servers.isEmpty() && config.isEmpty() && prometheus.isEmpty();
}

Options parseOptions(const QStringList &arguments)
{
    return OptionReader().read(arguments);
}
