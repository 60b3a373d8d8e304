#pragma once

#include "commandline.h"

#include <QtCore/QStringList>
#include <QtCore/QVector>

#include <optional>

/// What the command line asks for.
struct Options : CommonOptions
{
    QString ups;              ///< NAME@HOST[:PORT]; empty for the simulator
    double speed = 1.0;       ///< of the simulated scenario
    QVector<double> instants; ///< scenario instants of the screenshots, in seconds
    QSize size;               ///< of the window; invalid when not given
    bool fullScreen = false;
    bool fresh = false;         ///< forget what earlier runs remembered
    std::optional<bool> notify; ///< desktop notifications; absent: as remembered
};

/// Reads the command line @p arguments, the program's name first.
Options parseOptions(const QStringList &arguments);
