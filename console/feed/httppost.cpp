// SPDX-License-Identifier: LicenseRef-all-rights-reserved

#include "httppost.h"

#include "plaintext.h"
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

HttpPool::HttpPool(const HttpPoolTimes &usedTimes, QObject *parent)
    : QObject(parent)
    , times(usedTimes)
{
    patience.setSingleShot(true);
    patience.setInterval(times.idle);
    connect(&patience, &QTimer::timeout, this, [this] {
        while (!idle.empty())
            drop(idle.back().socket);
    });
}

HttpPool::~HttpPool() = default;

HttpPool::Connection HttpPool::take()
{
    while (!idle.empty() && idle.front().rest.elapsed() >= times.settle) {
        const Connection first = idle.front();
        const bool isGood = first.socket->state() == QAbstractSocket::ConnectedState &&
                            first.socket->bytesAvailable() == 0 && first.age.elapsed() < times.age;
        if (!isGood) {
            drop(first.socket);
            continue;
        }
        idle.erase(idle.begin());
        first.socket->disconnect(this);
        first.socket->setParent(nullptr);
        return first;
    }
    return {};
}

void HttpPool::give(const Connection &connection)
{
    QTcpSocket *socket = connection.socket;
    socket->setParent(this);
    idle.push_back(connection);
    idle.back().rest.start();
    if (idle.size() > std::size_t(mostIdle) || socket->state() != QAbstractSocket::ConnectedState ||
        socket->bytesAvailable() > 0) {
        drop(socket);
        return;
    }
    // Nobody has asked, so that whatever comes is no answer.
    connect(socket, &QTcpSocket::readyRead, this, [this, socket] { drop(socket); });
    connect(socket, &QTcpSocket::disconnected, this, [this, socket] { drop(socket); });
    patience.start();
}

int HttpPool::count() const
{
    return int(idle.size());
}

void HttpPool::drop(QTcpSocket *socket)
{
    idle.erase(std::remove_if(idle.begin(), idle.end(),
                              [socket](const Connection &one) { return one.socket == socket; }),
               idle.end());
    socket->disconnect(this);
    socket->abort();
    socket->deleteLater();
}

HttpPost::HttpPost(const HttpRequest &wantedRequest, int msecs, int mostBodyBytes, QObject *parent,
                   HttpPool *usedPool)
    : QObject(parent)
    , request(wantedRequest)
    , host(wantedRequest.url.host())
    , mostBytes(mostBodyBytes)
    , pool(usedPool)
{
    // Of the whole answer: a server that sends it byte by byte is as good as silent.
    deadline.setSingleShot(true);
    connect(&deadline, &QTimer::timeout, this,
            [this] { fail(QStringLiteral("it gives no whole answer in time")); });
    deadline.start(msecs);
    if (pool) {
        const HttpPool::Connection connection = pool->take();
        socket = connection.socket;
        age = connection.age;
    }
    if (!socket) {
        open();
        return;
    }
    isReused = true;
    isSecured = true;
    socket->setParent(this);
    follow();
    send();
}

HttpPost::~HttpPost() = default;

void HttpPost::follow()
{
    connect(socket, &QTcpSocket::readyRead, this, &HttpPost::take);
    connect(socket, &QTcpSocket::errorOccurred, this, &HttpPost::takeError);
}

void HttpPost::open()
{
    isSecured = false;
    age.start();
    socket = newSocket();
    socket->setProxy(QNetworkProxy::NoProxy);
    socket->setReadBufferSize(readAhead);
    follow();
    const QString name = request.url.host(QUrl::FullyEncoded);
    constexpr int plainPort = 80;
    constexpr int securePort = 443;
    if (auto *secure = qobject_cast<QSslSocket *>(socket))
        secure->connectToHostEncrypted(name, quint16(request.url.port(securePort)), host);
    else
        socket->connectToHost(name, quint16(request.url.port(plainPort)));
}

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
    if (!socket)
        return;
    socket->disconnect(this);
    socket->abort();
}

/// Leaves the connection to the next question, if this answer has surely ended.
void HttpPost::release()
{
    const bool isClean = isKept && (isChunked || length) && pending.isEmpty();
    if (!pool || !isClean)
        return;
    socket->disconnect(this);
    pool->give({socket, age, {}});
    socket = nullptr;
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
    QByteArray head =
        "POST " + (path.isEmpty() ? QByteArray("/") : path) + " HTTP/1.1\r\nHost: " + name +
        "\r\nContent-Type: application/x-www-form-urlencoded\r\nContent-Length: " +
        QByteArray::number(request.form.size()) +
        "\r\nAccept-Encoding: identity\r\nConnection: " + (pool ? "keep-alive" : "close") + "\r\n";
    if (!request.authorization.isEmpty())
        head += "Authorization: " + request.authorization + "\r\n";
    socket->write(head + "\r\n" + request.form);
}

void HttpPost::take()
{
    while (isSecured && !isEnded && socket->bytesAvailable() > 0) {
        pending += socket->read(readAhead);
        bool more = true;
        while (!isEnded && more)
            more = takePart();
    }
}

/// @return whether something may follow in the bytes that are there, as those that it calls.
bool HttpPost::takePart()
{
    switch (part) {
    case Part::Head:
        return takeHead();
    case Part::Body:
        return takeBody();
    case Part::ChunkSize:
        return takeChunkSize();
    case Part::Chunk:
        return takeChunk();
    case Part::ChunkEnd:
        return takeChunkEnd();
    }
    return false;
}

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
    isKept = words.constFirst() == "HTTP/1.1";
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
    if (name == "connection") {
        isKept = isKept && value == "keep-alive";
        return {};
    }
    if (name == "transfer-encoding") {
        // With a length beside it, or twice, the end is in doubt.
        isKept = isKept && !isChunked && !length;
        isChunked = true;
        return value == "chunked" ? QString() : notHttp();
    }
    if (name == "content-encoding" && value != "identity")
        return QStringLiteral("its answer is compressed, though nobody asked for that");
    if (name == "content-length") {
        isKept = isKept && !isChunked && !length;
        length = sizeOf(value, 10);
        if (!length)
            return notHttp();
        if (*length > mostBytes)
            return tooLong();
    }
    return {};
}

bool HttpPost::takeBody()
{
    const bool more = takeBytes(length.value_or(std::numeric_limits<int>::max()) - body.size());
    if (!isEnded && length && body.size() >= *length)
        succeed();
    return more;
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
        // Others may have trailers, which nobody reads.
        if (pending == "\r\n")
            pending.clear();
        else
            isKept = false;
        succeed();
    } else if (*size > mostBytes) {
        fail(tooLong());
    } else {
        chunkRest = *size;
        part = Part::Chunk;
    }
    return !isEnded;
}

bool HttpPost::takeChunk()
{
    const auto before = body.size();
    const bool more = takeBytes(chunkRest);
    chunkRest -= body.size() - before;
    if (chunkRest > 0)
        return more;
    part = Part::ChunkEnd;
    return true;
}

bool HttpPost::takeChunkEnd()
{
    if (pending.size() < 2)
        return false;
    if (!pending.startsWith("\r\n")) {
        fail(notHttp());
        return false;
    }
    pending.remove(0, 2);
    part = Part::ChunkSize;
    return true;
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
    if (isReused && headBytes == 0 && pending.isEmpty()) {
        // Closed by the server before it had the question, which is asked once more.
        isReused = false;
        socket->disconnect(this);
        socket->deleteLater();
        return open();
    }
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
    if (!isEnded)
        release();
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
