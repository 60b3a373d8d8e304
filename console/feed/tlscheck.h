// SPDX-License-Identifier: LicenseRef-all-rights-reserved

#pragma once

#include <QtCore/QList>
#include <QtCore/QString>
#include <QtNetwork/QSslCertificate>
#include <QtNetwork/QSslConfiguration>
#include <QtNetwork/QSslError>

/// What all connections under TLS ask for and check.
namespace TlsCheck {

/// TLS 1.2 or newer, with a verified certificate of @p authorities; empty: the system's.
QSslConfiguration configuration(const QList<QSslCertificate> &authorities);

/// Whether a certificate that names @p host anywhere is for that host: where it has alternative
/// names, its common name does not count.
bool isFor(const QSslCertificate &certificate, const QString &host);

/// What is wrong, in one line.
QString words(const QSslError &error, const QString &host);
QString wordsForName(const QString &host);

} // namespace TlsCheck
