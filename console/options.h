#pragma once

#include "commandline.h"

#include <QtCore/QVector>

class QStringList;

/// What the command line asks for.
struct Options : CommonOptions
{
    QString ups;              ///< NAME@HOST[:PORT]; empty for the simulator
    double speed = 1.0;       ///< of the simulated scenario
    QVector<double> instants; ///< scenario instants of the screenshots, in seconds
};

/// Reads the command line @p arguments, the program's name first.
Options parseOptions(const QStringList &arguments);
