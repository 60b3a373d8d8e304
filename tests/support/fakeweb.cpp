// SPDX-License-Identifier: LicenseRef-all-rights-reserved

#include "fakeweb.h"

#include <QtCore/QFile>
#include <QtNetwork/QSslKey>
#include <QtNetwork/QSslSocket>

#include <algorithm>

FakeWeb::FakeWeb()
{
    if (!listen(QHostAddress::LocalHost))
        qFatal("the server cannot listen");
}

bool FakeWeb::asksForStatuses(const QByteArray &query)
{
    return query.contains(" == 1) or ");
}

void FakeWeb::useTls(const QString &certificate, const QString &key)
{
    QFile keyFile(key);
    const QList<QSslCertificate> chain = QSslCertificate::fromPath(certificate);
    if (chain.isEmpty() || !keyFile.open(QIODevice::ReadOnly))
        qFatal("the server has no certificate");
    tls.setLocalCertificateChain(chain);
    tls.setPrivateKey(QSslKey(&keyFile, QSsl::Rsa));
    tls.setPeerVerifyMode(QSslSocket::VerifyNone);
    usesTls = true;
}

PromServer FakeWeb::server(const char *prefix) const
{
    PromServer server;
    server.url = QUrl(
        QStringLiteral("http://127.0.0.1:%1%2").arg(serverPort()).arg(QString::fromLatin1(prefix)));
    return server;
}

void FakeWeb::vanish()
{
    close();
    for (QTcpSocket *socket : clients())
        socket->abort();
}

QList<QTcpSocket *> FakeWeb::clients() const
{
    // A socket for TLS has another one in it.
    return findChildren<QTcpSocket *>(QString(), Qt::FindDirectChildrenOnly);
}

int FakeWeb::waiting() const
{
    const QList<QTcpSocket *> sockets = clients();
    return int(std::count_if(sockets.cbegin(), sockets.cend(), [](const QTcpSocket *socket) {
        return socket->state() == QAbstractSocket::ConnectedState &&
               socket->property("waits").toBool();
    }));
}

void FakeWeb::incomingConnection(qintptr descriptor)
{
    auto *socket = new QSslSocket(this);
    socket->setSocketDescriptor(descriptor);
    connect(socket, &QTcpSocket::readyRead, this, [this, socket] { take(socket); });
    if (!usesTls)
        return;
    socket->setSslConfiguration(tls);
    socket->startServerEncryption();
}

void FakeWeb::take(QTcpSocket *socket)
{
    const QByteArray all = socket->property("all").toByteArray() + socket->readAll();
    socket->setProperty("all", all);
    if (!QByteArray("POST ").startsWith(all.left(5))) {
        // Such as the first bytes of TLS.
        socket->write("HTTP/1.1 400 Bad Request\r\nContent-Length: 0\r\n\r\n");
        socket->disconnectFromHost();
        return;
    }
    const int end = int(all.indexOf("\r\n\r\n"));
    if (end < 0)
        return;
    const QByteArray head = all.left(end);
    const int mark = int(head.toLower().indexOf("content-length: "));
    const int length = mark < 0 ? 0 : head.mid(mark + 16).split('\r').first().toInt();
    if (all.size() < end + 4 + length)
        return;
    socket->setProperty("all", QByteArray());
    heads += head;
    socket->setProperty("waits", !answers);
    if (!answers)
        return;
    if (onRaw) {
        onRaw(socket);
        return;
    }
    const auto [code, body] = onQuery(QByteArray::fromPercentEncoding(all.mid(end + 4, length)));
    if (code == 0) {
        socket->disconnectFromHost();
        return;
    }
    socket->write("HTTP/1.1 " + QByteArray::number(code) +
                  " X\r\nContent-Type: application/json\r\nContent-Length: " +
                  QByteArray::number(body.size()) + "\r\n\r\n" + body);
}
