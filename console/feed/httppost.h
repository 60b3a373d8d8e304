// SPDX-License-Identifier: LicenseRef-all-rights-reserved

#pragma once

#include <QtCore/QByteArray>
#include <QtCore/QElapsedTimer>
#include <QtCore/QObject>
#include <QtCore/QPointer>
#include <QtCore/QTimer>
#include <QtCore/QUrl>
#include <QtNetwork/QSslCertificate>

#include <optional>
#include <vector>

class QSslSocket;
class QTcpSocket;

/// What an HttpPost sends, and to where.
struct HttpRequest
{
    QUrl url; ///< http or https
    QByteArray form;
    QByteArray authorization;           ///< the value of the header; empty: none
    QList<QSslCertificate> authorities; ///< of https; empty: the system's
};

/// How long an HttpPool keeps a connection; in milliseconds.
struct HttpPoolTimes
{
    /// So long nothing may come behind an answer. Before, what comes late could be taken for the
    /// answer to the next question.
    int settle = 1000;
    int idle = 30000; ///< all are closed after so long without a question
    int age = 300000; ///< of a connection, so that a certificate is checked again now and then
};

/// Connections to one server that wait for the next question, since a TLS handshake costs more than
/// a small answer. One on which anything comes meanwhile is closed.
class HttpPool : public QObject
{
    Q_OBJECT

public:
    static constexpr int mostIdle = 4;

    explicit HttpPool(const HttpPoolTimes &times = HttpPoolTimes(), QObject *parent = nullptr);
    ~HttpPool() override;

    struct Connection
    {
        QTcpSocket *socket = nullptr; ///< null: none
        QElapsedTimer age;            ///< since it was opened
        QElapsedTimer rest;           ///< since its last answer
    };

    /// A connection that is open, checked and settled; the caller's from now on.
    Connection take();
    /// Takes over @p connection, whose answer was read to its end, or closes it.
    void give(const Connection &connection);
    /// How many wait.
    int count() const;

private:
    void drop(QTcpSocket *socket);

    const HttpPoolTimes times;
    std::vector<Connection> idle; // the longest first; the sockets are children
    QTimer patience;
};

/// Posts a form over a connection of its own, or one of an HttpPool, and reads the answer in
/// bounded time and memory, whatever the server sends. It follows no redirection, keeps no cookie
/// and wants nothing compressed. It deletes itself at the end.
class HttpPost : public QObject
{
    Q_OBJECT

public:
    /// Of the status and the headers, those before the answer's own included.
    static constexpr int mostHeadBytes = 64 * 1024;

    /// Begins; finished() comes at the latest after @p msecs, in a later turn of the event loop. A
    /// @p pool has connections to the same server alone.
    HttpPost(const HttpRequest &request, int msecs, int mostBodyBytes, QObject *parent,
             HttpPool *pool = nullptr);
    ~HttpPost() override;

    /// Closes the connection; finished() does not come any more.
    void abort();

Q_SIGNALS:
    /// Either the HTTP status @p code with the body, or why there is none in @p problem: plain
    /// text.
    void finished(int code, const QByteArray &body, const QString &problem);

private:
    enum class Part {
        Head,
        Body,      // of a length that is known, or to the end
        ChunkSize, //
        Chunk,     //
        ChunkEnd,  // the line's end behind a chunk
    };

    void open();
    void follow();
    QTcpSocket *newSocket();
    QSslSocket *newSecureSocket();
    void send();
    void take();
    bool takePart();
    bool takeHead();
    QString takeHeader(const QByteArray &line);
    bool takeBody();
    bool takeChunkSize();
    bool takeChunk();
    bool takeChunkEnd();
    bool takeBytes(qint64 most);
    void takeError();
    void succeed();
    void fail(const QString &reason);
    void end(const QString &reason);
    void close();
    void release();

    const HttpRequest request;
    const QString host;
    const int mostBytes;
    QPointer<HttpPool> pool;
    QTcpSocket *socket = nullptr; // null: it went back to the pool
    QElapsedTimer age;            // of the connection
    bool isReused = false;
    bool isKept = false; // as far as the answer's head says
    QTimer deadline;
    QString tlsProblem;
    bool isEnded = false;
    bool isAborted = false;
    bool isSecured = false; // where it must be
    Part part = Part::Head;
    QByteArray pending; // bytes of the present part
    int headBytes = 0;  // of all heads
    int code = 0;
    bool isChunked = false;
    std::optional<qint64> length; // of the body; absent: to the end
    qint64 chunkRest = 0;
    QByteArray body;
};
