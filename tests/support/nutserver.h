// SPDX-License-Identifier: LicenseRef-all-rights-reserved

#pragma once

#include <QtCore/QProcess>
#include <QtCore/QString>
#include <QtCore/QTemporaryDir>

#include <memory>

/// A server of Network UPS Tools for one test, with a dummy UPS "demo" whose variables the test
/// writes. It lives in a temporary directory on a free port of the loopback, and its processes end
/// with it, also when a test fails; should the test program itself be killed, the kernel ends them.
///
/// Every function returns false, or leaves problem() filled, when something did not work in time.
class NutServer
{
public:
    /// @p maxAge seconds without a sign from the driver until the server calls its data stale.
    explicit NutServer(int maxAge = 15);
    ~NutServer();
    NutServer(const NutServer &) = delete;
    NutServer &operator=(const NutServer &) = delete;

    /// Writes the UPS's variables: lines "name: value". A running driver takes them up within about
    /// a second. Every variable that was there once must be written again: write "name: \"\"" to
    /// delete it.
    bool writeVariables(const QByteArray &lines);

    /// Before start(): lines of the file of users; lines for the server's configuration; and a
    /// program that plays the driver of "demo" when it is started with the directory of the
    /// sockets and that name.
    bool writeUsers(const QByteArray &lines);
    bool configureServer(const QByteArray &lines);
    void useDriver(const QString &program);
    /// Lets the server offer TLS with a certificate in PKCS#12 form of the name "upsd" and the
    /// password "p12", that of @p authority.
    bool useTls(const QString &bundle, const QString &authority);
    /// What useDriver()'s program was handed, a line each.
    QByteArrayList handed() const;
    /// Lets a running server read its users again.
    bool rereadUsers();

    /// Start what writeVariables() has prepared, and wait until it can be talked to (not until the
    /// driver has its first data: until then the status is WAIT). start() waits until the commands
    /// of useDriver()'s program are known.
    bool startDriver();
    bool startServer();
    bool start();

    /// End by a signal to the process, as by "kill", and wait until it is gone.
    bool killDriver();
    bool killServer();
    /// Halt the driver without ending it, and let it go on.
    bool haltDriver();
    bool continueDriver();

    /// The place of the UPS, as the console's option --ups takes it.
    QString address() const;
    quint16 port() const;
    /// What did not work.
    QString problem() const;

private:
    bool writeFile(const QString &name, const QByteArray &text);
    bool prepare();
    bool run(const QString &program, const QStringList &arguments);
    bool launch(std::unique_ptr<QProcess> *process, const QString &program,
                const QStringList &arguments);
    bool kill(std::unique_ptr<QProcess> *process);
    bool signalDriver(int signal);
    bool waitForCommands();
    bool fail(const QString &what);

    QTemporaryDir directory;
    std::unique_ptr<QProcess> driver;
    std::unique_ptr<QProcess> server;
    QString lastProblem;
    QString ownDriver;
    QByteArray serverLines;
    qint64 lastWritten = 0; ///< seconds since the epoch, as the file of the variables has it
    int maxAge;
    quint16 freePort = 0;
};
