// SPDX-License-Identifier: LicenseRef-all-rights-reserved

#include "nutlink.h"

#include "plaintext.h"
#include "tlscheck.h"

#include <QtCore/QPointer>
#include <QtNetwork/QNetworkProxy>
#include <QtNetwork/QSslSocket>

#include <utility>

namespace {

/// Bytes that Qt may read ahead; the rest waits with the sender.
constexpr int readAhead = 16 * 1024;

} // namespace

NutTls NutTls::withPassword(const NutHost &host) const
{
    NutTls tls = *this;
    tls.required = required || (requiredForPasswords && !host.isLoopback());
    return tls;
}

NutLink::NutLink(const NutHost &host, const NutTls &usedTls, QObject *parent)
    : QObject(parent)
    , server(host)
    , tls(usedTls)
{
    for (QTimer *timer : {&patience, &sending})
        timer->setSingleShot(true);
    sending.setInterval(0);
    connect(&patience, &QTimer::timeout, this, [this] {
        const QString step = phase == Phase::Connecting ? QStringLiteral("no answer for %1 s")
                                                        : QStringLiteral("no TLS within %1 s");
        fail(step.arg(patience.interval() / 1000.0));
    });
    connect(&sending, &QTimer::timeout, this, [this] {
        socket->write(outgoing);
        outgoing.clear();
    });
}

NutLink::~NutLink()
{
    close();
}

void NutLink::open(int patienceMsecs)
{
    drop();
    if (tls.required && !QSslSocket::supportsSsl()) {
        phase = Phase::Connecting;
        fail(QStringLiteral("TLS is required, and this machine's Qt has none"));
        return;
    }
    socket = tls.required ? new QSslSocket(this) : new QTcpSocket(this);
    socket->setProxy(QNetworkProxy::NoProxy);
    socket->setReadBufferSize(readAhead);
    connect(socket, &QTcpSocket::connected, this, &NutLink::connected);
    connect(socket, &QTcpSocket::readyRead, this, &NutLink::takeBytes);
    connect(socket, &QTcpSocket::errorOccurred, this, [this] { fail(wordsForFailure()); });
    if (auto *secure = qobject_cast<QSslSocket *>(socket)) {
        connect(secure, &QSslSocket::encrypted, this, &NutLink::secured);
        connect(secure, QOverload<const QList<QSslError> &>::of(&QSslSocket::sslErrors), this,
                [this](const QList<QSslError> &errors) {
                    tlsProblem = TlsCheck::words(errors.constFirst(), server.host);
                });
    }
    phase = Phase::Connecting;
    tlsProblem.clear();
    patience.start(patienceMsecs);
    socket->connectToHost(server.host, server.port);
}

void NutLink::close()
{
    if (phase == Phase::Open) {
        socket->disconnect(this);
        socket->write(outgoing + "LOGOUT\n");
        socket->flush();
    }
    drop();
}

bool NutLink::isOpen() const
{
    return phase == Phase::Open;
}

bool NutLink::isTlsRequired() const
{
    return tls.required;
}

int NutLink::pending() const
{
    return int(questions.size());
}

void NutLink::ask(std::unique_ptr<NutReader> reader, Answer answer)
{
    if (phase != Phase::Open)
        return;
    outgoing += reader->question() + '\n';
    questions.push_back({std::move(reader), std::move(answer)});
    sending.start();
}

void NutLink::ask(const QByteArray &question, Answer answer)
{
    ask(std::make_unique<NutReader>(question), std::move(answer));
}

void NutLink::connected()
{
    if (!tls.required) {
        patience.stop();
        phase = Phase::Open;
        Q_EMIT opened();
        return;
    }
    phase = Phase::Greeting;
    socket->write("STARTTLS\n");
}

void NutLink::takeBytes()
{
    if (phase == Phase::Greeting)
        takeGreeting();
    else if (phase == Phase::Open)
        takeAnswers();
}

/// The answer to STARTTLS is the only line that counts before the handshake, which follows in the
/// same turn of the event loop: a server that waits for it serves nobody else.
void NutLink::takeGreeting()
{
    constexpr int longest = 200;
    if (!socket->canReadLine()) {
        if (socket->bytesAvailable() > longest)
            fail(QStringLiteral("the server does not answer STARTTLS as it should"));
        return;
    }
    const QByteArray line = socket->readLine(longest).trimmed();
    if (line.startsWith("ERR "))
        fail(QStringLiteral("TLS is required, and the server offers none (%1)")
                 .arg(plainText(QString::fromLatin1(line.mid(4)), 40)));
    else if (line != "OK STARTTLS")
        fail(QStringLiteral("the server does not answer STARTTLS as it should"));
    else if (socket->bytesAvailable() > 0)
        fail(QStringLiteral("the server sent data before TLS began"));
    else
        startTls();
}

void NutLink::startTls()
{
    auto *secure = static_cast<QSslSocket *>(socket);
    phase = Phase::Securing;
    tlsProblem.clear();
    secure->setSslConfiguration(TlsCheck::configuration(tls.authorities));
    secure->setPeerVerifyName(server.host);
    secure->startClientEncryption();
}

void NutLink::secured()
{
    const auto *secure = static_cast<const QSslSocket *>(socket);
    if (!TlsCheck::isFor(secure->peerCertificate(), server.host)) {
        fail(TlsCheck::wordsForName(server.host));
        return;
    }
    patience.stop();
    phase = Phase::Open;
    Q_EMIT opened();
}

void NutLink::takeAnswers()
{
    const QPointer<NutLink> guard(this);
    QPointer<QTcpSocket> heard(socket);
    while (heard && heard == socket && socket->bytesAvailable() > 0) {
        const QByteArray bytes = socket->read(readAhead);
        int position = 0;
        while (position < bytes.size()) {
            if (questions.empty()) {
                fail(QStringLiteral(
                    "the server does not answer as it should: more than was asked for"));
                return;
            }
            NutReader &reader = *questions.front().reader;
            position = reader.takeFrom(bytes, position);
            if (reader.state() == NutReader::State::Reading)
                continue;
            if (reader.state() == NutReader::State::Broken) {
                fail(QStringLiteral("the server does not answer as it should: %1")
                         .arg(reader.problem()));
                return;
            }
            const Question question = std::move(questions.front());
            questions.pop_front();
            question.answer(*question.reader);
            // It may have closed the connection, opened another, or deleted this.
            if (!guard || heard != socket)
                return;
        }
    }
}

void NutLink::fail(const QString &reason)
{
    if (phase == Phase::Closed)
        return;
    drop();
    Q_EMIT failed(reason);
}

void NutLink::drop()
{
    phase = Phase::Closed;
    patience.stop();
    sending.stop();
    outgoing.clear();
    questions.clear();
    if (!socket)
        return;
    // Perhaps from within one of its signals, which it must outlive, and this need not.
    socket->disconnect(this);
    socket->abort();
    socket->setParent(nullptr);
    socket->deleteLater();
    socket = nullptr;
}

QString NutLink::wordsForFailure() const
{
    if (!tlsProblem.isEmpty())
        return tlsProblem;
    switch (socket->error()) {
    case QAbstractSocket::ConnectionRefusedError:
        return QStringLiteral("connection refused");
    case QAbstractSocket::RemoteHostClosedError:
        return phase == Phase::Open || phase == Phase::Connecting
                   ? QStringLiteral("the server closed the connection")
                   : QStringLiteral("the server closed the connection before TLS began");
    case QAbstractSocket::HostNotFoundError:
        return QStringLiteral("host not found");
    case QAbstractSocket::SslHandshakeFailedError:
        return QStringLiteral("no TLS connection: ") + socket->errorString();
    default:
        return socket->errorString();
    }
}
