// SPDX-License-Identifier: LicenseRef-all-rights-reserved

#pragma once

#include <QtCore/QByteArray>
#include <QtCore/QObject>
#include <QtCore/QTimer>
#include <QtCore/QUrl>
#include <QtNetwork/QSslCertificate>

#include <optional>

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

/// Posts a form over a connection of its own, and reads the answer in bounded time and memory,
/// whatever the server sends. It follows no redirection, keeps no cookie and wants nothing
/// compressed. It deletes itself at the end.
class HttpPost : public QObject
{
    Q_OBJECT

public:
    /// Of the status and the headers, those before the answer's own included.
    static constexpr int mostHeadBytes = 64 * 1024;

    /// Begins; finished() comes at the latest after @p msecs, in a later turn of the event loop.
    HttpPost(const HttpRequest &request, int msecs, int mostBodyBytes, QObject *parent);
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

    QTcpSocket *newSocket();
    QSslSocket *newSecureSocket();
    void send();
    void take();
    bool takeHead();
    QString takeHeader(const QByteArray &line);
    bool takeChunkSize();
    bool takeBytes(qint64 most);
    void takeError();
    void succeed();
    void fail(const QString &reason);
    void end(const QString &reason);
    void close();

    const HttpRequest request;
    const QString host;
    const int mostBytes;
    QTcpSocket *socket = nullptr;
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
