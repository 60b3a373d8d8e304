// SPDX-License-Identifier: LicenseRef-all-rights-reserved

#pragma once

#include <QtCore/QString>
#include <QtCore/QTemporaryDir>

/// An authority of the test's own and certificates for "localhost" and 127.0.0.1, made by openssl.
class Certificates
{
public:
    Certificates();

    /// What did not work; empty when all is there.
    QString problem() const;
    QString path(const QString &name) const;
    /// Of the authority, and of another one that signed nothing.
    QString authority() const;
    QString otherAuthority() const;
    /// Certificate and key, NAME.pem and NAME.key, for a kind of server: "right", "wrong" for
    /// another host's name, "expired", "unknown" by an authority of its own, "commonname" for
    /// another host's name beside "localhost" as the common name, "onlycommonname" with that alone.
    QString certificate(const QString &kind) const;
    QString key(const QString &kind) const;
    /// Both, with the authority's, in PKCS#12 form, under the name "upsd" and the password "p12".
    QString bundle(const QString &kind);

private:
    void run(const QString &program, const QStringList &arguments);
    void makeAuthority(const QString &name);
    void sign(const QString &kind, const QString &by, const QByteArray &names, bool expired,
              const QString &commonName = QString());

    QTemporaryDir directory;
    QString failed;
};
