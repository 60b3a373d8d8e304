// SPDX-License-Identifier: LicenseRef-all-rights-reserved

#pragma once

#include "commandresult.h"
#include "nutlink.h"

#include <vector>

/// How long a session waits; all in milliseconds.
struct NutSessionTimes
{
    int open = 5000;          ///< for the connection, TLS and login, each
    int answer = 3500;        ///< for an answer
    int confirmation = 10000; ///< for the UPS's word on a command
    int poll = 250;           ///< between two questions for it
    int idle = 30000;         ///< without a command, until it takes leave
};

/// Gives commands to the UPSes of one server, as a user, over a connection of its own that is there
/// only while it is needed.
///
/// "OK" is no success: the server tracks what the UPS makes of a command, and the session asks for
/// it. The password leaves through the connection alone; no text that comes from here has it.
class NutSession : public QObject
{
    Q_OBJECT

public:
    using Done = std::function<void(CommandOutcome outcome, const QString &text)>;

    NutSession(const NutHost &host, const NutTls &tls,
               const NutSessionTimes &times = NutSessionTimes(), QObject *parent = nullptr);
    ~NutSession() override;

    /// Who gives the commands from now on. What another user began is reported as unconfirmed.
    /// @return false when the protocol cannot carry the texts.
    bool setUser(const QString &user, const QString &password);
    /// The server takes the user: the one before is forgotten.
    void acceptUser();
    /// The server refuses the user: the last one that it took gives the commands again, or nobody.
    void refuseUser();
    /// From now on nobody gives commands, because of @p reason where there is one. What was begun
    /// is reported as unconfirmed.
    void forgetUser(const QString &reason = QString());
    bool hasUser() const;
    const QString &user() const;
    /// Why the user was forgotten; empty while there is one.
    const QString &forgottenFor() const;
    /// Whether the connection is encrypted, and the server's certificate checked.
    bool isEncrypted() const;

    /// Finds out, without any effect on @p upsName, whether the server takes the user: Done when it
    /// does, Refused when not, Failed when that could not be found out.
    void probe(const QString &upsName, const Done &done);
    /// Gives a command; an empty @p value is none.
    void run(const QString &upsName, const QString &command, const QString &value,
             const Done &done);
    void set(const QString &upsName, const QString &variable, const QString &value,
             const Done &done);

private:
    enum class Phase { Closed, Opening, LoggingIn, Ready };

    struct Job
    {
        int id = 0;
        QByteArray line;
        bool probes = false;
        bool sent = false;
        QByteArray tracking; // empty until the server gives it
        qint64 deadline = 0; // of the confirmation, by clock
        Done done;
    };

    void addJob(const QByteArray &line, bool probes, const Done &done);
    void refuseLater(const QString &reason, const Done &done);
    void logIn();
    void expectOk(const char *line, const QByteArray &argument, void (NutSession::*next)());
    void sendPassword();
    void switchTrackingOn();
    void ready();
    void send(Job *job);
    void takeAnswer(int id, const NutReader &answer);
    void takeTracking(int id, const NutReader &answer);
    void askForTracking();
    void lose(const QString &reason);
    void finish(int id, CommandOutcome outcome, const QString &text);
    Job *find(int id);
    static void wipe(QByteArray *text);

    const NutSessionTimes times;
    NutLink link;
    Phase phase = Phase::Closed;
    bool tracks = false;
    QString userName;
    QString forgotten; // why there is no user
    QByteArray secret; // quoted
    QByteArray quotedUser;
    QString formerName; // of the last one that was accepted, while another is tried
    QByteArray formerSecret;
    std::vector<Job> jobs;
    int lastId = 0;
    QTimer deadline;
    QTimer tracking;
    QTimer idle;
};
