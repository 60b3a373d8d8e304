// SPDX-License-Identifier: LicenseRef-all-rights-reserved

#pragma once

#include "nutaddress.h"

#include <QtCore/QElapsedTimer>
#include <QtCore/QPointer>
#include <QtNetwork/QTcpServer>
#include <QtNetwork/QTcpSocket>

#include <functional>

/// A server that answers as the test says, and remembers what it was asked.
class FakeNutServer : public QTcpServer
{
    Q_OBJECT

public:
    FakeNutServer();

    void open(quint16 port);
    /// The UPS "demo" of this server.
    NutAddress address() const;

    /// What to do on a line of the client. Its line end is taken off.
    std::function<void(QTcpSocket *, const QByteArray &)> onLine;
    /// What to do as soon as a client comes.
    std::function<void(QTcpSocket *)> onClient;

    QByteArrayList asked;
    QList<qint64> arrivals; // milliseconds since the clock was started
    QList<QPointer<QTcpSocket>> clients;
    QElapsedTimer clock;

    QTcpSocket *client() const;

private:
    void greet();
};
