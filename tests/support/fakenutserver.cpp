// SPDX-License-Identifier: LicenseRef-all-rights-reserved

#include "fakenutserver.h"

FakeNutServer::FakeNutServer()
{
    open(0);
    connect(this, &QTcpServer::newConnection, this, &FakeNutServer::greet);
}

void FakeNutServer::open(quint16 port)
{
    if (!listen(QHostAddress::LocalHost, port))
        qFatal("the fake server cannot listen");
}

NutAddress FakeNutServer::address() const
{
    return {QStringLiteral("demo"), QStringLiteral("127.0.0.1"), serverPort()};
}

QTcpSocket *FakeNutServer::client() const
{
    return clients.isEmpty() ? nullptr : clients.last().data();
}

void FakeNutServer::greet()
{
    while (QTcpSocket *socket = nextPendingConnection()) {
        clients += socket;
        arrivals += clock.isValid() ? clock.elapsed() : 0;
        connect(socket, &QTcpSocket::readyRead, this, [this, socket] {
            while (socket->canReadLine()) {
                const QByteArray line = socket->readLine();
                asked += line.chopped(1);
                if (onLine)
                    onLine(socket, line.chopped(1));
            }
        });
        if (onClient)
            onClient(socket);
    }
}
