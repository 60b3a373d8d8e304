// SPDX-License-Identifier: LicenseRef-all-rights-reserved

#include "tlscheck.h"

#include <QtCore/QUrl>
#include <QtNetwork/QHostAddress>

#include <algorithm>

namespace {

/// A "*" stands for all of the first part of a name, and for no more.
bool isNamed(const QString &host, const QString &pattern)
{
    if (host.compare(pattern, Qt::CaseInsensitive) == 0)
        return true;
    const QString rest = pattern.mid(1);
    const int dot = int(host.indexOf(QLatin1Char('.')));
    return pattern.startsWith(QLatin1String("*.")) && rest.count(QLatin1Char('.')) > 1 && dot > 0 &&
           QStringView(host).mid(dot).compare(rest, Qt::CaseInsensitive) == 0;
}

} // namespace

QSslConfiguration TlsCheck::configuration(const QList<QSslCertificate> &authorities)
{
    QSslConfiguration configuration = QSslConfiguration::defaultConfiguration();
    configuration.setProtocol(QSsl::TlsV1_2OrLater);
    configuration.setPeerVerifyMode(QSslSocket::VerifyPeer);
    if (!authorities.isEmpty())
        configuration.setCaCertificates(authorities);
    return configuration;
}

bool TlsCheck::isFor(const QSslCertificate &certificate, const QString &host)
{
    const auto names = certificate.subjectAlternativeNames();
    const QStringList hosts = names.values(QSsl::DnsEntry);
    const QStringList addresses = names.values(QSsl::IpAddressEntry);
    if (hosts.isEmpty() && addresses.isEmpty())
        return true;
    const QHostAddress address(host);
    if (!address.isNull())
        return std::any_of(addresses.cbegin(), addresses.cend(),
                           [&address](const QString &one) { return QHostAddress(one) == address; });
    const QString name = QString::fromLatin1(QUrl::toAce(host));
    return std::any_of(hosts.cbegin(), hosts.cend(),
                       [&name](const QString &one) { return isNamed(name, one); });
}

QString TlsCheck::words(const QSslError &error, const QString &host)
{
    switch (error.error()) {
    case QSslError::HostNameMismatch:
        return wordsForName(host);
    case QSslError::CertificateExpired:
        return QStringLiteral("the server's certificate has expired");
    case QSslError::CertificateNotYetValid:
        return QStringLiteral("the server's certificate is not valid yet");
    case QSslError::SelfSignedCertificate:
    case QSslError::SelfSignedCertificateInChain:
    case QSslError::UnableToGetIssuerCertificate:
    case QSslError::UnableToGetLocalIssuerCertificate:
    case QSslError::UnableToVerifyFirstCertificate:
    case QSslError::CertificateUntrusted:
        return QStringLiteral("the server's certificate is of an authority that is not trusted");
    default:
        return QStringLiteral("the server's certificate is not accepted: ") + error.errorString();
    }
}

QString TlsCheck::wordsForName(const QString &host)
{
    return QStringLiteral("the server's certificate is not for %1").arg(host);
}
