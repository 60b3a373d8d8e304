// SPDX-License-Identifier: LicenseRef-all-rights-reserved

#include "nutlink.h"

#include "certificates.h"
#include "fakenutserver.h"
#include "testmain.h"
#include "widgetprobe.h"

#include <QtCore/QElapsedTimer>
#include <QtCore/QFile>
#include <QtNetwork/QSslConfiguration>
#include <QtNetwork/QSslKey>
#include <QtNetwork/QSslSocket>

#include <memory>

namespace {

/// A server whose side of the handshake the test plays.
class TlsServer : public QTcpServer
{
    Q_OBJECT

public:
    TlsServer()
    {
        if (!listen(QHostAddress::LocalHost))
            qFatal("the server cannot listen");
    }

    NutHost host(const char *name = "localhost") const
    {
        return {QString::fromLatin1(name), serverPort()};
    }

    QSslConfiguration configuration;
    QByteArray greeting = "OK STARTTLS\n"; ///< the answer to STARTTLS
    bool shakesHands = true;
    bool closes = false;
    QByteArrayList inTheClear;
    QByteArrayList underTls;
    int connections = 0;

    void use(const Certificates &certificates, const QString &kind)
    {
        const auto read = [](const QString &path) {
            QFile file(path);
            return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
        };
        configuration = QSslConfiguration::defaultConfiguration();
        configuration.setLocalCertificate(
            QSslCertificate(read(certificates.certificate(kind)), QSsl::Pem));
        configuration.setPrivateKey(QSslKey(read(certificates.key(kind)), QSsl::Rsa, QSsl::Pem));
        configuration.setPeerVerifyMode(QSslSocket::VerifyNone);
    }

protected:
    void incomingConnection(qintptr descriptor) override
    {
        ++connections;
        auto *socket = new QSslSocket(this);
        socket->setSocketDescriptor(descriptor);
        socket->setSslConfiguration(configuration);
        connect(socket, &QSslSocket::readyRead, this, [this, socket] { take(socket); });
    }

private:
    void take(QSslSocket *socket)
    {
        while (socket->canReadLine()) {
            const QByteArray line = socket->readLine().trimmed();
            if (socket->isEncrypted()) {
                underTls += line;
                socket->write("OK " + line + '\n');
                continue;
            }
            if (inTheClear.contains("STARTTLS"))
                continue; // what a client still sends after an invalid answer
            inTheClear += line;
            if (line != "STARTTLS") {
                socket->write("OK " + line + '\n');
                continue;
            }
            socket->write(greeting);
            socket->flush();
            if (closes)
                socket->disconnectFromHost();
            else if (shakesHands)
                socket->startServerEncryption();
        }
    }
};

/// What came of a link.
struct Outcome
{
    explicit Outcome(NutLink *link)
    {
        QObject::connect(link, &NutLink::opened, link, [this] { ++opened; });
        QObject::connect(link, &NutLink::failed, link, [this](const QString &why) {
            ++failed;
            reason = why;
        });
    }
    int opened = 0;
    int failed = 0;
    QString reason;
};

NutTls required(const QString &authorities)
{
    QFile file(authorities);
    NutTls tls;
    tls.required = true;
    if (file.open(QIODevice::ReadOnly))
        tls.authorities = QSslCertificate::fromData(file.readAll(), QSsl::Pem);
    return tls;
}

constexpr int patience = 30000;

} // namespace

class NutLinkTest : public WidgetTest
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void answersInOrder();
    void refusedQuestionsGoOn();
    void closesInAnAnswer_data();
    void closesInAnAnswer();
    void encrypted_data();
    void encrypted();
    void notEncrypted_data();
    void notEncrypted();
    void theSystemKnowsNoAuthorityOfOurs();
    void oldVersionsAreRefused();
    void stalls_data();
    void stalls();
    void cutAmidTheHandshake();

private:
    std::unique_ptr<Certificates> certificates;
};

void NutLinkTest::initTestCase()
{
    QVERIFY2(QSslSocket::supportsSsl(), "Qt finds no OpenSSL");
    certificates = std::make_unique<Certificates>();
    QVERIFY2(certificates->problem().isEmpty(), qPrintable(certificates->problem()));
}

void NutLinkTest::answersInOrder()
{
    FakeNutServer server;
    server.onLine = [](QTcpSocket *socket, const QByteArray &line) {
        socket->write("OK " + line + '\n');
    };
    NutLink link(server.address().server());
    Outcome outcome(&link);
    link.open(patience);
    QTRY_COMPARE(outcome.opened, 1);
    QByteArrayList heard;
    for (int i = 0; i < 300; ++i)
        link.ask("N " + QByteArray::number(i),
                 [&heard](const NutReader &answer) { heard += answer.rows().first().last(); });
    QTRY_COMPARE(heard.size(), 300);
    for (int i = 0; i < 300; ++i)
        QCOMPARE(heard.at(i).toInt(), i);
    QCOMPARE(link.pending(), 0);
}

void NutLinkTest::refusedQuestionsGoOn()
{
    FakeNutServer server;
    server.onLine = [](QTcpSocket *socket, const QByteArray &line) {
        socket->write(line == "A" ? "ERR ACCESS-DENIED\n" : "OK\n");
    };
    NutLink link(server.address().server());
    Outcome outcome(&link);
    link.open(patience);
    QTRY_COMPARE(outcome.opened, 1);
    QStringList heard;
    link.ask("A", [&](const NutReader &answer) { heard += answer.problem(); });
    link.ask("B", [&](const NutReader &answer) { heard += answer.firstWord(); });
    QTRY_COMPARE(heard, (QStringList{QStringLiteral("ACCESS-DENIED"), QStringLiteral("OK")}));
    QCOMPARE(outcome.failed, 0);
}

void NutLinkTest::closesInAnAnswer_data()
{
    QTest::addColumn<int>("how");
    QTest::newRow("close") << 0;
    QTest::newRow("open again") << 1;
    QTest::newRow("delete") << 2;
}

void NutLinkTest::closesInAnAnswer()
{
    QFETCH(int, how);
    FakeNutServer server;
    server.onLine = [](QTcpSocket *socket, const QByteArray &) { socket->write("OK\n"); };
    auto link = std::make_unique<NutLink>(server.address().server());
    Outcome outcome(link.get());
    link->open(patience);
    QTRY_COMPARE(outcome.opened, 1);
    int later = 0;
    bool done = false;
    link->ask("A", [&](const NutReader &) {
        done = true;
        if (how == 0)
            link->close();
        else if (how == 1)
            link->open(patience);
        else
            link.reset();
    });
    link->ask("B", [&](const NutReader &) { ++later; });
    QTRY_VERIFY(done);
    if (how == 1)
        QTRY_COMPARE(outcome.opened, 2);
    else
        QTRY_COMPARE(server.client()->state(), QAbstractSocket::UnconnectedState);
    QCOMPARE(later, 0);
    QCOMPARE(outcome.failed, 0);
}

void NutLinkTest::encrypted_data()
{
    QTest::addColumn<QByteArray>("host");
    QTest::addColumn<QString>("kind");
    QTest::newRow("by name") << QByteArray("localhost") << QStringLiteral("right");
    QTest::newRow("by address") << QByteArray("127.0.0.1") << QStringLiteral("right");
    QTest::newRow("by common name for want of another")
        << QByteArray("localhost") << QStringLiteral("onlycommonname");
}

/// Nothing but STARTTLS is readable on the way.
void NutLinkTest::encrypted()
{
    QFETCH(QByteArray, host);
    QFETCH(QString, kind);
    TlsServer server;
    server.use(*certificates, kind);
    NutLink link(server.host(host.constData()), required(certificates->authority()));
    Outcome outcome(&link);
    link.open(patience);
    QTRY_VERIFY2(outcome.opened == 1 || outcome.failed > 0, qPrintable(outcome.reason));
    QVERIFY2(outcome.failed == 0, qPrintable(outcome.reason));
    QString heard;
    link.ask("PASSWORD x", [&](const NutReader &answer) { heard = answer.firstWord(); });
    QTRY_COMPARE(heard, QStringLiteral("OK"));
    QCOMPARE(server.inTheClear, QByteArrayList{"STARTTLS"});
    QCOMPARE(server.underTls, QByteArrayList{"PASSWORD x"});
}

void NutLinkTest::notEncrypted_data()
{
    QTest::addColumn<QString>("kind");
    QTest::addColumn<QByteArray>("greeting");
    QTest::addColumn<QString>("reason");
    const QByteArray ok = "OK STARTTLS\n";
    const auto row = [](const char *name, const char *kind, const QByteArray &greeting,
                        const char *reason) {
        QTest::newRow(name) << QString::fromLatin1(kind) << greeting << QString::fromLatin1(reason);
    };
    row("another name", "wrong", ok, "the server's certificate is not for localhost");
    row("common name beside others", "commonname", ok,
        "the server's certificate is not for localhost");
    row("expired", "expired", ok, "the server's certificate has expired");
    row("unknown authority", "unknown", ok, "an authority that is not trusted");
    row("no TLS", "right", "ERR FEATURE-NOT-CONFIGURED\n",
        "TLS is required, and the server offers none (FEATURE-NOT-CONFIGURED)");
    row("another answer", "right", "220 hello\n",
        "the server does not answer STARTTLS as it should");
    row("no line", "right", QByteArray(100000, 'x'),
        "the server does not answer STARTTLS as it should");
    row("smuggled answer", "right", "OK STARTTLS\nOK\n", "the server sent data before TLS began");
    row("smuggled bytes", "right", "OK STARTTLS\nx", "the server sent data before TLS began");
}

/// Each failure has its line, nothing else is sent, and no second try follows in the clear.
void NutLinkTest::notEncrypted()
{
    QFETCH(QString, kind);
    QFETCH(QByteArray, greeting);
    QFETCH(QString, reason);
    TlsServer server;
    server.use(*certificates, kind);
    server.greeting = greeting;
    server.shakesHands = greeting == "OK STARTTLS\n";
    NutLink link(server.host(), required(certificates->authority()));
    Outcome outcome(&link);
    link.open(patience);
    QTRY_COMPARE(outcome.failed, 1);
    QVERIFY2(outcome.reason.contains(reason), qPrintable(outcome.reason));
    QVERIFY(!outcome.reason.contains(QLatin1Char('\n')));
    QCOMPARE(outcome.opened, 0);
    QVERIFY(!link.isOpen());
    link.ask("PASSWORD x", [](const NutReader &) {});
    QCOMPARE(link.pending(), 0);
    QTest::qWait(50);
    QCOMPARE(server.connections, 1);
    QCOMPARE(server.inTheClear, QByteArrayList{"STARTTLS"});
    QVERIFY(server.underTls.isEmpty());
}

void NutLinkTest::theSystemKnowsNoAuthorityOfOurs()
{
    TlsServer server;
    server.use(*certificates, QStringLiteral("right"));
    NutTls tls;
    tls.required = true;
    NutLink link(server.host(), tls);
    Outcome outcome(&link);
    link.open(patience);
    QTRY_COMPARE(outcome.failed, 1);
    QVERIFY2(outcome.reason.contains(QStringLiteral("not trusted")), qPrintable(outcome.reason));
}

void NutLinkTest::oldVersionsAreRefused()
{
    TlsServer server;
    server.use(*certificates, QStringLiteral("right"));
    QT_WARNING_PUSH
    QT_WARNING_DISABLE_DEPRECATED
    server.configuration.setProtocol(QSsl::TlsV1_1);
    QT_WARNING_POP
    NutLink link(server.host(), required(certificates->authority()));
    Outcome outcome(&link);
    link.open(patience);
    QTRY_COMPARE(outcome.failed, 1);
    QCOMPARE(outcome.opened, 0);
}

void NutLinkTest::stalls_data()
{
    QTest::addColumn<QByteArray>("greeting");
    QTest::newRow("no answer") << QByteArray();
    QTest::newRow("half a line") << QByteArray("OK START");
    QTest::newRow("no handshake") << QByteArray("OK STARTTLS\n");
}

void NutLinkTest::stalls()
{
    QFETCH(QByteArray, greeting);
    TlsServer server;
    server.greeting = greeting;
    server.shakesHands = false;
    NutLink link(server.host(), required(certificates->authority()));
    Outcome outcome(&link);
    QElapsedTimer clock;
    clock.start();
    link.open(300);
    QTRY_COMPARE(outcome.failed, 1);
    QCOMPARE(outcome.reason, QStringLiteral("no TLS within 0.3 s"));
    QVERIFY(clock.elapsed() >= 280);
}

void NutLinkTest::cutAmidTheHandshake()
{
    TlsServer server;
    server.closes = true;
    NutLink link(server.host(), required(certificates->authority()));
    Outcome outcome(&link);
    link.open(patience);
    QTRY_COMPARE(outcome.failed, 1);
    QVERIFY2(outcome.reason.contains(QStringLiteral("before TLS began")),
             qPrintable(outcome.reason));
}

KIV_TEST_MAIN(NutLinkTest)

#include "tst_nutlink.moc"
