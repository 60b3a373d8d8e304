// SPDX-License-Identifier: LicenseRef-all-rights-reserved

#pragma once

#include <QtCore/QCoreApplication>
#include <QtCore/QString>
#include <QtCore/QStringList>

#include <memory>
#include <optional>

class QApplication;
class QWidget;
struct CommonOptions;

/// The course that every program takes.
namespace Program {

constexpr int failed = 1;
constexpr int wrongOptions = 2;

/// Names the program @p name and reads its command line by @p parse before there is an application
/// with windows: what it asks for decides the platform.
template <typename Options>
Options readOptions(int argc, char **argv, const QString &name,
                    Options (*parse)(const QStringList &arguments))
{
    const QCoreApplication application(argc, argv);
    QCoreApplication::setApplicationName(name);
    return parse(QCoreApplication::arguments());
}

/// Writes @p line to the standard error stream, with the program's name in front.
void say(const QString &line);

/// Writes @p reason as one line to the standard error stream and gives @p status back.
int refuse(const QString &reason, int status);

/// Does what is to be done before the application is made: prints, refuses, or chooses a platform
/// that needs no display for screenshots, whatever the environment names.
/// @return the status to end with, if the program ends here.
std::optional<int> begin(const CommonOptions &options);

/// Makes the application, styled. Without a usable display the program ends here, with one line and
/// the status `failed`.
std::unique_ptr<QApplication> makeApplication(int &argc, char **argv);

/// Sets the style and the font of the application.
void styleApplication();

/// The file @p name among the program's settings; empty where the environment names no usable
/// place.
QString settingsFile(const QString &name);

/// Where the program's data belong; not absolute where the environment names no usable place.
QString dataDirectory();

bool makeDirectory(const QString &directory, QString *error);
/// Writes what @p window shows to @p name.png in @p directory and prints the file's path.
bool takeScreenshot(QWidget &window, const QString &directory, const QString &name, QString *error);

} // namespace Program
