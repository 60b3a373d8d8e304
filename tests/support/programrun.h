// SPDX-License-Identifier: LicenseRef-all-rights-reserved

#pragma once

#include <QtCore/QMap>
#include <QtCore/QProcess>
#include <QtCore/QProcessEnvironment>

/// What a run of a program gave. It has no display but what @p variables name.
struct ProgramRun
{
    explicit ProgramRun(const QString &program, const QStringList &arguments,
                        const QMap<QString, QString> &variables = {})
    {
        QProcess process;
        QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
        for (const char *variable : {"QT_QPA_PLATFORM", "DISPLAY", "WAYLAND_DISPLAY"})
            environment.remove(QString::fromLatin1(variable));
        for (auto variable = variables.begin(); variable != variables.end(); ++variable)
            environment.insert(variable.key(), variable.value());
        process.setProcessEnvironment(environment);
        process.start(program, arguments);
        constexpr int patience = 60000;
        ended = process.waitForFinished(patience) && process.exitStatus() == QProcess::NormalExit;
        status = process.exitCode();
        output = QString::fromLocal8Bit(process.readAllStandardOutput());
        errors = QString::fromLocal8Bit(process.readAllStandardError());
    }

    bool ended;
    int status;
    QString output;
    QString errors;
};
