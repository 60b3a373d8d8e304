// SPDX-License-Identifier: LicenseRef-all-rights-reserved

#include "certificates.h"

#include <QtCore/QDateTime>
#include <QtCore/QDir>
#include <QtCore/QFile>
#include <QtCore/QProcess>

namespace {

QString text(const char *latin)
{
    return QString::fromLatin1(latin);
}

/// What "openssl ca" needs, which alone sets both ends of a certificate's life.
const char *const configuration =
    "[ca]\ndefault_ca = own\n[own]\nnew_certs_dir = .\n"
    "database = index\nserial = serial\ndefault_md = sha256\n"
    "policy = any\nunique_subject = no\n[any]\ncommonName = supplied\n";

} // namespace

Certificates::Certificates()
{
    if (!directory.isValid()) {
        failed = text("no temporary directory");
        return;
    }
    makeAuthority(text("ca"));
    makeAuthority(text("other"));
    const auto write = [this](const char *name, const QByteArray &content) {
        QFile file(path(text(name)));
        if (!file.open(QIODevice::WriteOnly) || file.write(content) != content.size())
            failed = text("cannot write ") + file.fileName();
    };
    write("ca.conf", configuration);
    write("index", QByteArray());
    write("serial", "01\n");
    sign(text("right"), text("ca"), "DNS:localhost,IP:127.0.0.1", false);
    sign(text("wrong"), text("ca"), "DNS:elsewhere.example,IP:127.0.0.9", false);
    sign(text("expired"), text("ca"), "DNS:localhost,IP:127.0.0.1", true);
    sign(text("commonname"), text("ca"), "DNS:elsewhere.example", false, text("localhost"));
    sign(text("onlycommonname"), text("ca"), QByteArray(), false, text("localhost"));
    sign(text("unknown"), text("other"), "DNS:localhost,IP:127.0.0.1", false);
}

QString Certificates::problem() const
{
    return failed;
}

QString Certificates::path(const QString &name) const
{
    return directory.filePath(name);
}

QString Certificates::authority() const
{
    return path(text("ca.pem"));
}

QString Certificates::otherAuthority() const
{
    return path(text("other.pem"));
}

QString Certificates::certificate(const QString &kind) const
{
    return path(kind + text(".pem"));
}

QString Certificates::key(const QString &kind) const
{
    return path(kind + text(".key"));
}

QString Certificates::bundle(const QString &kind)
{
    const QString file = kind + text(".p12");
    run(text("openssl"),
        {text("pkcs12"), text("-export"), text("-in"), kind + text(".pem"), text("-inkey"),
         kind + text(".key"), text("-certfile"), text("ca.pem"), text("-name"), text("upsd"),
         text("-passout"), text("pass:p12"), text("-out"), file});
    return path(file);
}

void Certificates::run(const QString &program, const QStringList &arguments)
{
    if (!failed.isEmpty())
        return;
    QProcess process;
    process.setWorkingDirectory(directory.path());
    process.setProcessChannelMode(QProcess::MergedChannels);
    process.start(program, arguments);
    if (!process.waitForFinished(60000) || process.exitStatus() != QProcess::NormalExit ||
        process.exitCode() != 0)
        failed = program + QLatin1Char(' ') + arguments.join(QLatin1Char(' ')) + text(": ") +
                 QString::fromLocal8Bit(process.readAll());
}

void Certificates::makeAuthority(const QString &name)
{
    run(text("openssl"),
        {text("req"), text("-x509"), text("-newkey"), text("rsa:2048"), text("-nodes"),
         text("-days"), text("3650"), text("-subj"), text("/CN=Test ") + name, text("-keyout"),
         name + text(".key"), text("-out"), name + text(".pem"), text("-addext"),
         text("basicConstraints=critical,CA:TRUE"), text("-addext"),
         text("keyUsage=critical,keyCertSign,cRLSign")});
}

void Certificates::sign(const QString &kind, const QString &by, const QByteArray &names,
                        bool expired, const QString &commonName)
{
    const QString subject = commonName.isEmpty() ? text("server ") + kind : commonName;
    QFile extensions(path(kind + text(".ext")));
    if (!extensions.open(QIODevice::WriteOnly) ||
        extensions.write((names.isEmpty() ? QByteArray() : "subjectAltName=" + names + '\n') +
                         "extendedKeyUsage=serverAuth\nbasicConstraints=CA:FALSE\n") < 0)
        failed = text("cannot write ") + extensions.fileName();
    extensions.close();
    run(text("openssl"), {text("req"), text("-newkey"), text("rsa:2048"), text("-nodes"),
                          text("-subj"), text("/CN=") + subject, text("-keyout"),
                          kind + text(".key"), text("-out"), kind + text(".csr")});
    const QDateTime now = QDateTime::currentDateTimeUtc();
    const QString form = QStringLiteral("yyyyMMddHHmmss'Z'");
    run(text("openssl"),
        {text("ca"), text("-batch"), text("-notext"), text("-config"), text("ca.conf"),
         text("-cert"), by + text(".pem"), text("-keyfile"), by + text(".key"), text("-in"),
         kind + text(".csr"), text("-out"), kind + text(".pem"), text("-extfile"),
         kind + text(".ext"), text("-startdate"), now.addDays(-30).toString(form), text("-enddate"),
         now.addDays(expired ? -1 : 300).toString(form)});
}
