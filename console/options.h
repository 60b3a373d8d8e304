#pragma once

#include <QtCore/QString>
#include <QtCore/QVector>

class QStringList;

/// What the command line asks for.
struct Options
{
    enum class Task { ShowWindow, TakeScreenshots, PrintText, Refuse };

    Task task = Task::ShowWindow;
    QString text;             ///< for PrintText the text, for Refuse the reason in one line
    QString ups;              ///< NAME@HOST[:PORT]; empty for the simulator
    bool night = false;       ///< begin with the night look
    double speed = 1.0;       ///< of the simulated scenario
    QString directory;        ///< where the screenshots go
    QVector<double> instants; ///< scenario instants of the screenshots, in seconds
};

/// Reads the command line @p arguments, the program's name first.
Options parseOptions(const QStringList &arguments);
