// SPDX-License-Identifier: LicenseRef-all-rights-reserved

#pragma once

#include "nutaddress.h"
#include "nutreader.h"

#include <QtCore/QObject>
#include <QtCore/QTimer>
#include <QtNetwork/QSslCertificate>

#include <deque>
#include <functional>
#include <memory>

class QTcpSocket;
class QSslError;

/// Whether and how a connection is encrypted. There is no "if available": what is required and
/// fails leaves no connection.
struct NutTls
{
    bool required = false;
    bool requiredForPasswords = true; ///< of connections that carry one, off this machine
    /// The authorities to trust; empty: the system's.
    QList<QSslCertificate> authorities;

    /// What counts for a connection to @p host that carries a password.
    NutTls withPassword(const NutHost &host) const;
};

/// One connection to a server of Network UPS Tools: questions go out in order, all that are asked
/// in one turn of the event loop in one go, and the answers are read as they come.
///
/// With TLS nothing but STARTTLS goes out in the clear, and nothing is taken that came before the
/// handshake.
class NutLink : public QObject
{
    Q_OBJECT

public:
    using Answer = std::function<void(const NutReader &)>;

    explicit NutLink(const NutHost &host, const NutTls &tls = NutTls(), QObject *parent = nullptr);
    /// Takes leave of the server.
    ~NutLink() override;

    /// Connects anew; opened() or failed() comes, at the latest after @p patience milliseconds.
    void open(int patience);
    /// Takes leave of the server and closes; no signal and no answer comes any more.
    void close();
    /// The same without a word, for a server that does not listen.
    void drop();
    bool isOpen() const;
    bool isTlsRequired() const;

    /// Asks what @p reader reads, on an open connection; @p answer gets it when it is complete or
    /// refused. A broken answer ends the connection.
    void ask(std::unique_ptr<NutReader> reader, Answer answer);
    void ask(const QByteArray &question, Answer answer);
    /// Questions without an answer so far.
    int pending() const;

Q_SIGNALS:
    void opened();
    /// There is no connection, or no more; @p reason is plain text.
    void failed(const QString &reason);

private:
    enum class Phase { Closed, Connecting, Greeting, Securing, Open };

    struct Question
    {
        std::unique_ptr<NutReader> reader;
        Answer answer;
    };

    void connected();
    void takeBytes();
    void takeGreeting();
    void takeAnswers();
    void startTls();
    void secured();
    void fail(const QString &reason);
    QString wordsForFailure() const;

    const NutHost server;
    const NutTls tls;
    Phase phase = Phase::Closed;
    QTcpSocket *socket = nullptr;
    QString tlsProblem;
    std::deque<Question> questions;
    QByteArray outgoing;
    QTimer patience;
    QTimer sending;
};
