// SPDX-License-Identifier: LicenseRef-all-rights-reserved

#include "nutserver.h"

#include <QtCore/QDateTime>
#include <QtCore/QDir>
#include <QtCore/QElapsedTimer>
#include <QtCore/QFile>
#include <QtCore/QProcessEnvironment>
#include <QtCore/QThread>
#include <QtNetwork/QTcpServer>
#include <QtNetwork/QTcpSocket>

#include <functional>

#include <csignal>
#include <unistd.h>

namespace {

constexpr int patience = 30000; // milliseconds

bool waitUntil(const std::function<bool()> &reached)
{
    QElapsedTimer clock;
    clock.start();
    while (!reached()) {
        if (clock.hasExpired(patience))
            return false;
        QThread::msleep(10);
    }
    return true;
}

quint16 findFreePort()
{
    QTcpServer probe;
    return probe.listen(QHostAddress::LocalHost) ? probe.serverPort() : quint16(0);
}

/// The programs change to a user of their own unless configured otherwise; a test has only its own
/// user.
QStringList asThisUser()
{
    return geteuid() == 0 ? QStringList{QStringLiteral("-u"), QStringLiteral("root")}
                          : QStringList();
}

} // namespace

NutServer::NutServer(int maximumAge)
    : directory(QStringLiteral("/tmp/kivnut-XXXXXX")) // a socket's path must be short
    , maxAge(maximumAge)
    , freePort(findFreePort())
{
    prepare();
}

NutServer::~NutServer()
{
    kill(&server);
    kill(&driver);
}

bool NutServer::prepare()
{
    if (!directory.isValid() || freePort == 0)
        return fail(QStringLiteral("no temporary directory or no free port"));
    const QFile::Permissions ownOnly = QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner;
    for (const char *name : {"conf", "state"}) {
        const QString path = directory.filePath(QString::fromLatin1(name));
        if (!QDir().mkdir(path) || !QFile::setPermissions(path, ownOnly))
            return fail(QStringLiteral("cannot make ") + path);
    }
    return writeFile(QStringLiteral("ups.conf"), "[demo]\n"
                                                 "  driver = dummy-ups\n"
                                                 "  port = demo.dev\n"
                                                 "  mode = dummy-once\n") &&
           configureServer(QByteArray()) && writeUsers(QByteArray());
}

bool NutServer::writeUsers(const QByteArray &lines)
{
    return writeFile(QStringLiteral("upsd.users"), lines);
}

bool NutServer::configureServer(const QByteArray &lines)
{
    serverLines += lines;
    return writeFile(QStringLiteral("upsd.conf"),
                     "LISTEN 127.0.0.1 " + QByteArray::number(freePort) + "\nMAXAGE " +
                         QByteArray::number(maxAge) + '\n' + serverLines);
}

void NutServer::useDriver(const QString &program)
{
    ownDriver = program;
}

bool NutServer::run(const QString &program, const QStringList &arguments)
{
    QProcess process;
    process.setWorkingDirectory(directory.path());
    process.setProcessChannelMode(QProcess::MergedChannels);
    process.start(program, arguments);
    return (process.waitForFinished(patience) && process.exitCode() == 0) ||
           fail(program + QStringLiteral(": ") + QString::fromLocal8Bit(process.readAll()));
}

bool NutServer::useTls(const QString &bundle, const QString &authority)
{
    const auto list = [](const char *words) {
        return QString::fromLatin1(words).split(QLatin1Char(' '));
    };
    const QString database = directory.filePath(QStringLiteral("db"));
    QFile password(directory.filePath(QStringLiteral("db.pw")));
    if (!QDir().mkdir(database) || !password.open(QIODevice::WriteOnly) ||
        password.write("dbpass\n") < 0)
        return fail(QStringLiteral("cannot make the database of certificates"));
    password.close();
    return run(QStringLiteral("certutil"), list("-N -d sql:db -f db.pw")) &&
           run(QStringLiteral("certutil"), list("-A -d sql:db -f db.pw -n authority -t C,, -i")
                                               << authority) &&
           run(QStringLiteral("pk12util"), list("-d sql:db -k db.pw -W p12 -i") << bundle) &&
           configureServer("CERTPATH " + database.toLocal8Bit() +
                           "\nCERTIDENT \"upsd\" \"dbpass\"\nDISABLE_WEAK_SSL true\n");
}

QByteArrayList NutServer::handed() const
{
    QFile log(directory.filePath(QStringLiteral("state/handed")));
    if (!log.open(QIODevice::ReadOnly))
        return {};
    QByteArrayList lines = log.readAll().split('\n');
    lines.removeAll(QByteArray());
    return lines;
}

bool NutServer::rereadUsers()
{
    return (server && ::kill(pid_t(server->processId()), SIGHUP) == 0) ||
           fail(QStringLiteral("no server to signal"));
}

bool NutServer::writeFile(const QString &name, const QByteArray &text)
{
    // Renamed into place, so that nobody reads half a file.
    const QString path = directory.filePath(QStringLiteral("conf/") + name);
    QFile file(path + QStringLiteral(".new"));
    // The driver compares the file's times in whole seconds and would not see a second change
    // within one.
    lastWritten = qMax(QDateTime::currentSecsSinceEpoch(), lastWritten + 1);
    const bool written =
        file.open(QIODevice::WriteOnly) && file.write(text) == text.size() && file.flush() &&
        file.setFileTime(QDateTime::fromSecsSinceEpoch(lastWritten), QFile::FileModificationTime);
    file.close();
    if (!written || ::rename(QFile::encodeName(file.fileName()).constData(),
                             QFile::encodeName(path).constData()) != 0)
        return fail(QStringLiteral("cannot write ") + path);
    return QFile::setPermissions(path, QFile::ReadOwner | QFile::WriteOwner);
}

bool NutServer::writeVariables(const QByteArray &lines)
{
    return writeFile(QStringLiteral("demo.dev"), lines);
}

bool NutServer::startDriver()
{
    const QString socket = directory.filePath(QStringLiteral("state/dummy-ups-demo"));
    QFile::remove(socket);
    const bool started =
        ownDriver.isEmpty()
            ? launch(&driver, QStringLiteral("/lib/nut/dummy-ups"),
                     QStringList{QStringLiteral("-a"), QStringLiteral("demo"), QStringLiteral("-F"),
                                 QStringLiteral("-i"), QStringLiteral("1")} +
                         asThisUser())
            : launch(&driver, ownDriver,
                     {directory.filePath(QStringLiteral("state")), QStringLiteral("demo")});
    if (!started)
        return false;
    return waitUntil([&] { return QFile::exists(socket); }) ||
           fail(QStringLiteral("the driver opens no socket"));
}

bool NutServer::startServer()
{
    if (!launch(&server, QStringLiteral("/lib/nut/upsd"),
                QStringList{QStringLiteral("-F")} + asThisUser()))
        return false;
    const auto listens = [this] {
        QTcpSocket socket;
        socket.connectToHost(QStringLiteral("127.0.0.1"), freePort);
        return socket.waitForConnected(patience);
    };
    return waitUntil(listens) || fail(QStringLiteral("the server does not listen"));
}

bool NutServer::start()
{
    return startDriver() && startServer() && (ownDriver.isEmpty() || waitForCommands());
}

bool NutServer::waitForCommands()
{
    const auto listsCommands = [this] {
        QTcpSocket socket;
        socket.connectToHost(QStringLiteral("127.0.0.1"), freePort);
        socket.write("LIST CMD demo\nLOGOUT\n");
        socket.waitForDisconnected(patience);
        return socket.readAll().contains("\nCMD demo ");
    };
    return waitUntil(listsCommands) || fail(QStringLiteral("the server lists no command"));
}

bool NutServer::launch(std::unique_ptr<QProcess> *process, const QString &program,
                       const QStringList &arguments)
{
    if (!lastProblem.isEmpty())
        return false;
    kill(process);
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert(QStringLiteral("NUT_CONFPATH"), directory.filePath(QStringLiteral("conf")));
    for (const char *name : {"NUT_STATEPATH", "NUT_ALTPIDPATH"})
        environment.insert(QString::fromLatin1(name), directory.filePath(QStringLiteral("state")));
    *process = std::make_unique<QProcess>();
    (*process)->setProcessEnvironment(environment);
    (*process)->setWorkingDirectory(directory.path());
    (*process)->setProcessChannelMode(QProcess::MergedChannels);
    (*process)->setStandardOutputFile(directory.filePath(QStringLiteral("log")), QIODevice::Append);
    // Bound to this program: it ends with it, however that ends.
    (*process)->start(QStringLiteral("setpriv"),
                      QStringList{QStringLiteral("--pdeathsig"), QStringLiteral("KILL"), program} +
                          arguments);
    return (*process)->waitForStarted(patience) || fail(QStringLiteral("cannot start ") + program);
}

bool NutServer::kill(std::unique_ptr<QProcess> *process)
{
    if (!*process)
        return true;
    (*process)->kill();
    const bool gone = (*process)->waitForFinished(patience);
    process->reset();
    return gone || fail(QStringLiteral("a process does not end"));
}

bool NutServer::killDriver()
{
    return kill(&driver);
}

bool NutServer::killServer()
{
    return kill(&server);
}

bool NutServer::signalDriver(int signal)
{
    return (driver && ::kill(pid_t(driver->processId()), signal) == 0) ||
           fail(QStringLiteral("no driver to signal"));
}

bool NutServer::haltDriver()
{
    return signalDriver(SIGSTOP);
}

bool NutServer::continueDriver()
{
    return signalDriver(SIGCONT);
}

QString NutServer::address() const
{
    return QStringLiteral("demo@127.0.0.1:%1").arg(freePort);
}

quint16 NutServer::port() const
{
    return freePort;
}

QString NutServer::problem() const
{
    QFile log(directory.filePath(QStringLiteral("log")));
    const QString said =
        log.open(QIODevice::ReadOnly) ? QString::fromUtf8(log.readAll().right(2000)) : QString();
    return lastProblem + QLatin1Char('\n') + said;
}

bool NutServer::fail(const QString &what)
{
    if (lastProblem.isEmpty())
        lastProblem = what;
    return false;
}
