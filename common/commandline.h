// SPDX-License-Identifier: LicenseRef-all-rights-reserved

#pragma once

#include <QtCore/QCommandLineParser>
#include <QtCore/QSize>
#include <QtCore/QString>

/// What every program's command line can ask for.
struct CommonOptions
{
    enum class Task { ShowWindow, TakeScreenshots, PrintText, Refuse };

    /// Turns this into a refusal for @p reason.
    void refuse(const QString &reason);

    Task task = Task::ShowWindow;
    QString text;      ///< for PrintText the text, for Refuse the reason in one line
    bool dark = false; ///< begin with the dark theme
    QString directory; ///< where the screenshots go
};

/// The command line of a program: the options that all have, and its own.
class CommandLine
{
public:
    /// @p shown is what a screenshot shows, as in "each page".
    CommandLine(const QString &program, const QString &description, const QString &shown);

    enum class Times { Once, Several };
    void add(const QCommandLineOption &option, Times times = Times::Once);

    /// Reads @p arguments, the program's name first.
    /// @return false when @p options say all already: a text to print, or a refusal.
    bool read(const QStringList &arguments, CommonOptions *options);

    bool isSet(const QCommandLineOption &option) const;
    QString value(const QCommandLineOption &option) const;
    /// All values of an option that may come several times.
    QStringList values(const QCommandLineOption &option) const;

private:
    QString givenTwice() const;

    QString program;
    QCommandLineParser parser;
    QCommandLineOption help;
    QCommandLineOption version;
    QCommandLineOption dark;
    QCommandLineOption screenshot;
    QList<QCommandLineOption> single; // those that may come once
};

/// The size that @p text, WIDTHxHEIGHT, names; invalid outside of @p least to @p most.
QSize readSize(const QString &text, QSize least, QSize most);
/// @p size as WIDTHxHEIGHT.
QString sizeText(QSize size);
