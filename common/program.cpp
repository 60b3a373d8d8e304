// SPDX-License-Identifier: LicenseRef-all-rights-reserved

#include "program.h"

#include "commandline.h"
#include "theme.h"

#include <QtCore/QDir>
#include <QtCore/QStandardPaths>
#include <QtGui/QIcon>
#include <QtGui/QPixmap>
#include <QtWidgets/QApplication>
#include <QtWidgets/QStyleFactory>

#include <cstdio>
#include <cstdlib>

static constexpr int settlingRounds = 5;

namespace {

/// Messages from the time in which Qt looks for a display. Static, since Qt's handler is a
/// function.
struct StartMessages
{
    static QStringList &kept()
    {
        static QStringList messages;
        return messages;
    }
    static void keep(QtMsgType type, const QMessageLogContext &, const QString &text)
    {
        if (type == QtFatalMsg) {
            // Qt would abort after several lines about plugins.
            Program::refuse(
                QStringLiteral("no usable display: start it in a graphical session, or "
                               "take screenshots with --screenshot DIR, which needs none"),
                Program::failed);
            std::_Exit(Program::failed);
        }
        kept().append(text);
    }
};

} // namespace

void Program::say(const QString &line)
{
    std::fprintf(stderr, "%s: %s\n", qPrintable(QCoreApplication::applicationName()),
                 qPrintable(line));
}

int Program::refuse(const QString &reason, int status)
{
    say(reason);
    return status;
}

std::optional<int> Program::begin(const CommonOptions &options)
{
    if (options.task == CommonOptions::Task::Refuse)
        return refuse(options.text, wrongOptions);
    if (options.task == CommonOptions::Task::PrintText) {
        std::fputs(qPrintable(options.text), stdout);
        return 0;
    }
    if (options.task == CommonOptions::Task::TakeScreenshots) {
        qputenv("QT_QPA_PLATFORM", "offscreen");
        // A desktop's own theme may want its display.
        qunsetenv("QT_QPA_PLATFORMTHEME");
    }
    return {};
}

std::unique_ptr<QApplication> Program::makeApplication(int &argc, char **argv)
{
#if QT_VERSION < QT_VERSION_CHECK(6, 0, 0)
    // Icons with all pixels of a dense screen, as Qt 6 shows them by itself.
    QCoreApplication::setAttribute(Qt::AA_UseHighDpiPixmaps);
#endif
    const QtMessageHandler previous = qInstallMessageHandler(StartMessages::keep);
    auto application = std::make_unique<QApplication>(argc, argv);
    qInstallMessageHandler(previous);
    for (const QString &message : std::as_const(StartMessages::kept()))
        std::fprintf(stderr, "%s\n", qPrintable(message));
    StartMessages::kept().clear();
    styleApplication();
    return application;
}

void Program::styleApplication()
{
    QApplication::setStyle(QStyleFactory::create(QStringLiteral("Fusion")));
    // The entry in the menu of the program's name, and its icon, are those of the windows, too.
    const QString name = QCoreApplication::applicationName();
    QGuiApplication::setDesktopFileName(name);
    QApplication::setWindowIcon(QIcon::fromTheme(name));
    QApplication::setFont(Theme::font(Theme::Normal));
}

QString Program::settingsFile(const QString &name)
{
    const QString directory = QStandardPaths::writableLocation(QStandardPaths::AppConfigLocation);
    if (!QDir::isAbsolutePath(directory) || !QDir().mkpath(directory))
        return {};
    return QDir(directory).filePath(name);
}

QString Program::dataDirectory()
{
    const QString directory = QStandardPaths::writableLocation(QStandardPaths::AppDataLocation);
    return directory.isEmpty() ? QStringLiteral(".") : directory;
}

bool Program::makeDirectory(const QString &directory, QString *error)
{
    if (QDir().mkpath(directory))
        return true;
    *error = QStringLiteral("cannot make the directory %1").arg(directory);
    return false;
}

bool Program::takeScreenshot(QWidget &window, const QString &directory, const QString &name,
                             QString *error)
{
    // A window that is not shown lays out its contents when it is rendered, and scroll areas decide
    // on their bars after that.
    window.grab();
    // New states reach the widgets' images through the event loop, layouts after a few rounds.
    for (int round = 0; round < settlingRounds; ++round) {
        QCoreApplication::sendPostedEvents();
        QCoreApplication::processEvents();
    }
    const QString file = QDir(directory).filePath(name + QStringLiteral(".png"));
    if (!window.grab().save(file)) {
        *error = QStringLiteral("cannot write %1").arg(file);
        return false;
    }
    std::puts(qPrintable(file));
    return true;
}
