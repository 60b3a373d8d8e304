// SPDX-License-Identifier: LicenseRef-all-rights-reserved

#include "commandline.h"

#include <QtCore/QRegularExpression>

namespace {

/// The first argument of one dash and a word, as Qt's own options are; the parser takes such for a
/// row of letters and complains about each.
QString qtOption(const QStringList &arguments)
{
    static const QRegularExpression form(QStringLiteral("^-[A-Za-z]{2,40}$"));
    const auto index = arguments.indexOf(form);
    return index < 0 ? QString() : arguments.at(index);
}

} // namespace

QSize readSize(const QString &text, QSize least, QSize most)
{
    static const QRegularExpression form(QStringLiteral("^([0-9]{1,5})x([0-9]{1,5})$"));
    const QRegularExpressionMatch match = form.match(text);
    const QSize size(match.captured(1).toInt(), match.captured(2).toInt());
    const bool fits = size.expandedTo(least) == size && size.boundedTo(most) == size;
    return match.hasMatch() && fits ? size : QSize();
}

QString sizeText(QSize size)
{
    return QString::number(size.width()) + QLatin1Char('x') + QString::number(size.height());
}

void CommonOptions::refuse(const QString &reason)
{
    task = Task::Refuse;
    text = reason;
}

CommandLine::CommandLine(const QString &programName, const QString &description,
                         const QString &shown)
    : program(programName)
    , help({QStringLiteral("h"), QStringLiteral("help")}, QStringLiteral("Print this help."))
    , version({QStringLiteral("v"), QStringLiteral("version")},
              QStringLiteral("Print the version."))
    , dark(QStringLiteral("dark"), QStringLiteral("Start with the dark theme."))
    , screenshot(
          QStringLiteral("screenshot"),
          QStringLiteral("Write an image of %1 to DIR and exit; needs no display.").arg(shown),
          QStringLiteral("DIR"))
{
    parser.setApplicationDescription(description);
    parser.addOptions({help, version, dark, screenshot});
    single = {dark, screenshot};
}

void CommandLine::add(const QCommandLineOption &option, Times times)
{
    parser.addOption(option);
    if (times == Times::Once)
        single.append(option);
}

/// The name of an option that is there more often than it may; of two values, one would be lost.
QString CommandLine::givenTwice() const
{
    const QStringList given = parser.optionNames();
    for (const QCommandLineOption &option : single) {
        QString name = option.names().constLast();
        if (given.count(name) > 1)
            return name;
    }
    return {};
}

bool CommandLine::read(const QStringList &arguments, CommonOptions *options)
{
    if (!parser.parse(arguments)) {
        QString reason = parser.errorText();
        while (reason.endsWith(QLatin1Char('.')))
            reason.chop(1);
        const QString word = qtOption(arguments);
        if (word == QLatin1String("-platform"))
            reason = QStringLiteral("unknown option '-platform'; the environment variable "
                                    "QT_QPA_PLATFORM names a platform");
        else if (!word.isEmpty())
            reason = QStringLiteral("unknown option '%1'").arg(word);
        options->refuse(reason);
        return false;
    }
    if (parser.isSet(help) || parser.isSet(version)) {
        options->task = CommonOptions::Task::PrintText;
        options->text = parser.isSet(help)
                            ? parser.helpText()
                            : QStringLiteral("%1 %2\n").arg(program, QStringLiteral(KIV_VERSION));
        return false;
    }
    if (!parser.positionalArguments().isEmpty()) {
        options->refuse(QStringLiteral("unexpected argument '%1'")
                            .arg(parser.positionalArguments().constFirst()));
        return false;
    }
    const QString twice = givenTwice();
    if (!twice.isEmpty()) {
        options->refuse(QStringLiteral("--%1 is given more than once").arg(twice));
        return false;
    }
    options->dark = parser.isSet(dark);
    if (parser.isSet(screenshot)) {
        options->task = CommonOptions::Task::TakeScreenshots;
        options->directory = parser.value(screenshot);
        if (options->directory.isEmpty()) {
            options->refuse(QStringLiteral("--screenshot needs a directory"));
            return false;
        }
    }
    return true;
}

bool CommandLine::isSet(const QCommandLineOption &option) const
{
    return parser.isSet(option);
}

QString CommandLine::value(const QCommandLineOption &option) const
{
    return parser.value(option);
}

QStringList CommandLine::values(const QCommandLineOption &option) const
{
    return parser.values(option);
}
