// SPDX-License-Identifier: LicenseRef-all-rights-reserved

#pragma once

#include "prometheus.h"

#include <QtNetwork/QSslConfiguration>
#include <QtNetwork/QTcpServer>

#include <functional>

class QTcpSocket;

/// A web server that answers as the test says, also under TLS.
class FakeWeb : public QTcpServer
{
    Q_OBJECT

public:
    FakeWeb();

    /// Whether a query asks for the statuses of all UPSes.
    static bool asksForStatuses(const QByteArray &query);

    /// Speaks TLS from now on.
    void useTls(const QString &certificate, const QString &key);
    /// Its address, with @p prefix as the path.
    PromServer server(const char *prefix = "") const;
    /// Closes all connections, and takes none any more.
    void vanish();

    /// All that have come, also those that are gone; the first one first.
    QList<QTcpSocket *> clients() const;
    /// How many clients wait for an answer.
    int waiting() const;

    /// The code and the body for a query, which is the decoded form. With the code 0 the connection
    /// is closed instead.
    std::function<QPair<int, QByteArray>(const QByteArray &query)> onQuery;
    /// Where it is set, it answers a query instead, with any bytes.
    std::function<void(QTcpSocket *socket)> onRaw;
    bool answers = true;
    QByteArrayList heads; ///< what came before the forms

protected:
    void incomingConnection(qintptr descriptor) override;

private:
    void take(QTcpSocket *socket);

    QSslConfiguration tls;
    bool usesTls = false;
};
