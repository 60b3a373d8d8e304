// SPDX-License-Identifier: LicenseRef-all-rights-reserved

#include "httppost.h"

#include "nutmapping.h"
#include "tlscheck.h"

#include <QtNetwork/QNetworkProxy>
#include <QtNetwork/QSslSocket>

#include <algorithm>
#include <limits>

namespace {

/// Bytes that Qt may read ahead; the rest waits with the server.
constexpr int readAhead = 64 * 1024;
constexpr int longestChunkLine = 1024;

QString notHttp()
{
    return QStringLiteral("it does not answer as an HTTP server");
}

QString tooLong()
{
    return QStringLiteral("its answer is too long");
}

/// A number without a sign; nothing where it is none, or has more digits than any answer is long.
std::optional<qint64> sizeOf(const QByteArray &text, int base)
{
    constexpr int mostDigits = 15;
    bool good = false;
    const qint64 size = text.toLongLong(&good, base);
    const bool isPlain = !text.isEmpty() && text.size() <= mostDigits &&
                         std::all_of(text.cbegin(), text.cend(), [](char c) {
                             const int small = c | 0x20;
                             return (c >= '0' && c <= '9') || (small >= 'a' && small <= 'f');
                         });
    return good && isPlain ? std::optional<qint64>(size) : std::nullopt;
}

} // namespace

HttpPost::HttpPost(const HttpRequest &wanted, int msecs, int mostBodyBytes, QObject *parent)
    : QObject(parent)
    , request(wanted)
    , host(wanted.url.host())
    , mostBytes(mostBodyBytes)
{
    socket = newSocket();
    socket->setProxy(QNetworkProxy::NoProxy);
    socket->setReadBufferSize(readAhead);
    connect(socket, &QTcpSocket::readyRead, this, &HttpPost::take);
    connect(socket, &QTcpSocket::errorOccurred, this, &HttpPost::takeError);
    // Of the whole answer: a server that sends it byte by byte is as good as silent.
    deadline.setSingleShot(true);
    connect(&deadline, &QTimer::timeout, this,
            [this] { fail(QStringLiteral("it gives no whole answer in time")); });
    deadline.start(msecs);
    const QString name = request.url.host(QUrl::FullyEncoded);
    constexpr int plainPort = 80;
    constexpr int securePort = 443;
    if (auto *secure = qobject_cast<QSslSocket *>(socket))
        secure->connectToHostEncrypted(name, quint16(request.url.port(securePort)), host);
    else
        socket->connectToHost(name, quint16(request.url.port(plainPort)));
}

HttpPost::~HttpPost() = default;

QTcpSocket *HttpPost::newSocket()
{
    if (request.url.scheme() == QLatin1String("https"))
        return newSecureSocket();
    auto *plain = new QTcpSocket(this);
    connect(plain, &QTcpSocket::connected, this, &HttpPost::send);
    isSecured = true;
    return plain;
}

QSslSocket *HttpPost::newSecureSocket()
{
    auto *secure = new QSslSocket(this);
    secure->setSslConfiguration(TlsCheck::configuration(request.authorities));
    connect(secure, QOverload<const QList<QSslError> &>::of(&QSslSocket::sslErrors), this,
            [this](const QList<QSslError> &errors) {
                tlsProblem = TlsCheck::words(errors.constFirst(), host);
            });
    connect(secure, &QSslSocket::encrypted, this, [this, secure] {
        isSecured = TlsCheck::isFor(secure->peerCertificate(), host);
        if (isSecured)
            send();
        else
            fail(TlsCheck::wordsForName(host));
    });
    return secure;
}

void HttpPost::abort()
{
    close();
    isAborted = true;
    deleteLater();
}

void HttpPost::close()
{
    isEnded = true;
    deadline.stop();
    socket->disconnect(this);
    socket->abort();
}

void HttpPost::send()
{
    const QUrl &url = request.url;
    QByteArray name = url.host(QUrl::FullyEncoded).toLatin1();
    if (name.contains(':'))
        name = '[' + name + ']';
    if (url.port() > 0)
        name += ':' + QByteArray::number(url.port());
    const QByteArray path = url.path(QUrl::FullyEncoded).toLatin1();
    QByteArray head = "POST " + (path.isEmpty() ? QByteArray("/") : path) +
                      " HTTP/1.1\r\nHost: " + name +
                      "\r\nContent-Type: application/x-www-form-urlencoded\r\nContent-Length: " +
                      QByteArray::number(request.form.size()) +
                      "\r\nAccept-Encoding: identity\r\nConnection: close\r\n";
    if (!request.authorization.isEmpty())
        head += "Authorization: " + request.authorization + "\r\n";
    socket->write(head + "\r\n" + request.form);
}

void HttpPost::take()
{
    while (isSecured && !isEnded && socket->bytesAvailable() > 0) {
        pending += socket->read(readAhead);
        bool more = true;
        while (!isEnded && more) {
            switch (part) {
            case Part::Head:
                more = takeHead();
                break;
            case Part::Body:
                more = takeBytes(length.value_or(std::numeric_limits<int>::max()) - body.size());
                if (!isEnded && length && body.size() >= *length)
                    succeed();
                break;
            case Part::ChunkSize:
                more = takeChunkSize();
                break;
            case Part::Chunk: {
                const auto before = body.size();
                more = takeBytes(chunkRest);
                chunkRest -= body.size() - before;
                if (chunkRest == 0)
                    part = Part::ChunkEnd;
                more = more || chunkRest == 0;
                break;
            }
            case Part::ChunkEnd:
                more = pending.size() >= 2;
                if (more && !pending.startsWith("\r\n"))
                    return fail(notHttp());
                if (more) {
                    pending.remove(0, 2);
                    part = Part::ChunkSize;
                }
                break;
            }
        }
    }
}

/// @return whether something may follow in the bytes that are there.
bool HttpPost::takeHead()
{
    const int end = int(pending.indexOf("\r\n\r\n"));
    if (headBytes + (end < 0 ? int(pending.size()) : end) > mostHeadBytes) {
        fail(QStringLiteral("its answer has too long a head"));
        return false;
    }
    if (end < 0)
        return false;
    constexpr int lineEnd = 4;
    headBytes += end + lineEnd;
    const QList<QByteArray> lines = pending.left(end).split('\n');
    pending.remove(0, end + lineEnd);
    // Such as "HTTP/1.1 200 OK".
    const QList<QByteArray> words = lines.constFirst().trimmed().split(' ');
    const std::optional<qint64> status = sizeOf(words.value(1), 10);
    constexpr int lowest = 100;
    constexpr int highest = 999;
    if (!words.constFirst().startsWith("HTTP/1.") || !status || *status < lowest ||
        *status > highest) {
        fail(notHttp());
        return false;
    }
    code = int(*status);
    // What comes before the answer.
    constexpr int final = 200;
    if (code < final)
        return true;
    for (int i = 1; i < lines.size(); ++i) {
        const QString reason = takeHeader(lines.at(i).trimmed());
        if (!reason.isEmpty()) {
            fail(reason);
            return false;
        }
    }
    constexpr int noContent = 204;
    constexpr int notModified = 304;
    part = isChunked ? Part::ChunkSize : Part::Body;
    if (code == noContent || code == notModified || (!isChunked && length == 0))
        succeed();
    return !isEnded;
}

/// @return why the answer cannot be read then, or nothing.
QString HttpPost::takeHeader(const QByteArray &line)
{
    const int colon = int(line.indexOf(':'));
    const QByteArray name = line.left(std::max(colon, 0)).trimmed().toLower();
    const QByteArray value = line.mid(colon + 1).trimmed().toLower();
    if (name == "transfer-encoding") {
        isChunked = true;
        return value == "chunked" ? QString() : notHttp();
    }
    if (name == "content-encoding" && value != "identity")
        return QStringLiteral("its answer is compressed, though nobody asked for that");
    if (name == "content-length") {
        length = sizeOf(value, 10);
        if (!length)
            return notHttp();
        if (*length > mostBytes)
            return tooLong();
    }
    return {};
}

bool HttpPost::takeChunkSize()
{
    const int end = int(pending.indexOf("\r\n"));
    if ((end < 0 ? int(pending.size()) : end) > longestChunkLine) {
        fail(notHttp());
        return false;
    }
    if (end < 0)
        return false;
    const std::optional<qint64> size =
        sizeOf(pending.left(end).split(';').constFirst().trimmed(), 16);
    pending.remove(0, end + 2);
    if (!size) {
        fail(notHttp());
    } else if (*size == 0) {
        succeed();
    } else if (*size > mostBytes) {
        fail(tooLong());
    } else {
        chunkRest = *size;
        part = Part::Chunk;
    }
    return !isEnded;
}

/// Takes @p most bytes of the body, or what is there.
bool HttpPost::takeBytes(qint64 most)
{
    const int count = int(std::min(most, qint64(pending.size())));
    if (body.size() + count > mostBytes) {
        fail(tooLong());
        return false;
    }
    body += pending.left(count);
    pending.remove(0, count);
    return !pending.isEmpty();
}

void HttpPost::takeError()
{
    take();
    if (isEnded)
        return;
    if (!tlsProblem.isEmpty())
        return fail(tlsProblem);
    switch (socket->error()) {
    case QAbstractSocket::ConnectionRefusedError:
        return fail(QStringLiteral("connection refused"));
    case QAbstractSocket::HostNotFoundError:
        return fail(QStringLiteral("host not found"));
    case QAbstractSocket::SslHandshakeFailedError:
        return fail(QStringLiteral("no TLS connection; does the server speak https?"));
    case QAbstractSocket::RemoteHostClosedError:
        if (part == Part::Body && !length)
            return succeed();
        if (!isSecured)
            return fail(QStringLiteral("no TLS connection; does the server speak https?"));
        return fail(part == Part::Head && pending.isEmpty()
                        ? QStringLiteral("it closes the connection without an answer")
                        : QStringLiteral("it closes the connection within its answer"));
    default:
        return fail(plainText(socket->errorString(), 200));
    }
}

void HttpPost::succeed()
{
    end(QString());
}

void HttpPost::fail(const QString &reason)
{
    if (!isEnded) {
        body.clear();
        code = 0;
    }
    end(reason);
}

void HttpPost::end(const QString &reason)
{
    if (isEnded)
        return;
    close();
    // Later: a receiver may delete the parent of this, which is not done with its bytes yet.
    QMetaObject::invokeMethod(
        this,
        [this, reason] {
            deleteLater();
            if (!isAborted)
                Q_EMIT finished(code, body, reason);
        },
        Qt::QueuedConnection);
}
