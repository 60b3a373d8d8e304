// SPDX-License-Identifier: LicenseRef-all-rights-reserved

// What the console spends on the data of a fleet: kivfeeds nut|everything|status|prometheus|https
// COUNT [ROUNDS] shows a site of COUNT UPSes on the fleet page, fed by a server in a process of its
// own, and prints the time and the processor's time of a round. "nut" asks some UPSes of each round
// for everything, as the console does, "everything" all of them, and "status" none after the first
// round. One value of each UPS changes every second.

#include "consolewindow.h"
#include "feed/sitefile.h"
#include "history/history.h"
#include "history/recorder.h"
#include "program.h"
#include "sitefeeds.h"
#include "theme.h"

#include "certificates.h"

#include <QtCore/QDateTime>
#include <QtCore/QFile>
#include <QtNetwork/QSslConfiguration>
#include <QtNetwork/QSslKey>
#include <QtNetwork/QSslSocket>
#include <QtNetwork/QTcpServer>
#include <QtNetwork/QTcpSocket>
#include <QtWidgets/QApplication>

#include <algorithm>
#include <atomic>
#include <cstdio>
#include <ctime>
#include <limits>
#include <memory>
#include <new>
#include <numeric>
#include <vector>

#include <csignal>
#include <cstdlib>
#include <sys/mman.h>
#include <sys/prctl.h>
#include <unistd.h>

namespace {

double milliseconds(clockid_t clock)
{
    timespec now = {};
    clock_gettime(clock, &now);
    return double(now.tv_sec) * 1e3 + double(now.tv_nsec) / 1e6;
}

/// What the server's process says to the console's.
struct Shared
{
    std::atomic<int> port{0};
    std::atomic<double> askedAt{0.0}; ///< when the first question after a silence came
    std::atomic<qint64> bytes{0};     ///< of the answers
};

/// Takes connections, under TLS where it has a key.
class Listener : public QTcpServer
{
public:
    explicit Listener(const QSslConfiguration &used)
        : tls(used)
    {}

protected:
    void incomingConnection(qintptr descriptor) override
    {
        if (tls.privateKey().isNull()) {
            QTcpServer::incomingConnection(descriptor);
            return;
        }
        auto *socket = new QSslSocket(this);
        if (!socket->setSocketDescriptor(descriptor)) {
            delete socket;
            return;
        }
        socket->setSslConfiguration(tls);
        socket->startServerEncryption();
        addPendingConnection(socket);
    }

private:
    const QSslConfiguration tls;
};

/// A server in a process of its own, which ends with this one.
class Server
{
public:
    explicit Server(int count)
        : upses(count)
    {}
    virtual ~Server() = default;

    /// Speaks TLS from now on.
    bool useTls(const Certificates &certificates)
    {
        const QString kind = QStringLiteral("right");
        QFile key(certificates.key(kind));
        tls = QSslConfiguration::defaultConfiguration();
        tls.setPeerVerifyMode(QSslSocket::VerifyNone);
        tls.setLocalCertificateChain(QSslCertificate::fromPath(certificates.certificate(kind)));
        if (key.open(QIODevice::ReadOnly))
            tls.setPrivateKey(QSslKey(key.readAll(), QSsl::Rsa));
        return !tls.privateKey().isNull();
    }

    /// To be called before there is an application.
    bool start()
    {
        void *memory = mmap(nullptr, sizeof(Shared), PROT_READ | PROT_WRITE,
                            MAP_SHARED | MAP_ANONYMOUS, -1, 0);
        if (memory == MAP_FAILED)
            return false;
        shared = new (memory) Shared;
        const pid_t parent = getpid();
        const pid_t child = fork();
        if (child < 0)
            return false;
        if (child == 0) {
            prctl(PR_SET_PDEATHSIG, SIGKILL);
            _exit(getppid() == parent ? serve() : 1);
        }
        while (shared->port == 0)
            usleep(1000);
        return true;
    }

    Shared *shared = nullptr;

protected:
    /// Takes what has come, leaves what is not whole, and returns the answers.
    virtual QByteArray answer(QByteArray *asked) = 0;

    int count() const
    {
        return upses;
    }

    /// Changes every second.
    static int load(int ups)
    {
        return 20 + int((ups + QDateTime::currentSecsSinceEpoch()) % 60);
    }

private:
    int serve()
    {
        int argc = 0;
        const QCoreApplication application(argc, nullptr);
        Listener server(tls);
        QObject::connect(&server, &QTcpServer::newConnection, &server, [this, &server] {
            QTcpSocket *socket = server.nextPendingConnection();
            const auto pending = std::make_shared<QByteArray>();
            QObject::connect(socket, &QTcpSocket::readyRead, socket, [this, socket, pending] {
                if (isSilent)
                    shared->askedAt = milliseconds(CLOCK_MONOTONIC);
                isSilent = false;
                *pending += socket->readAll();
                const QByteArray all = answer(pending.get());
                shared->bytes += all.size();
                socket->write(all);
                // The next question comes after all of this has been read.
                isSilent = pending->isEmpty();
            });
        });
        if (!server.listen(QHostAddress::LocalHost))
            return 1;
        shared->port = server.serverPort();
        return QCoreApplication::exec();
    }

    const int upses;
    QSslConfiguration tls;
    bool isSilent = true;
};

/// A server of Network UPS Tools, whose UPSes have 36 variables each.
class NutServer : public Server
{
public:
    using Server::Server;

protected:
    QByteArray answer(QByteArray *asked) override
    {
        const int end = int(asked->lastIndexOf('\n')) + 1;
        QByteArray all;
        for (const QByteArray &line : asked->left(end).split('\n')) {
            const QList<QByteArray> words = line.split(' ');
            if (line == "LIST UPS")
                all += upsList();
            else if (line.startsWith("GET VAR "))
                all += "VAR " + words.value(2) + " ups.status \"" + status(words.value(2)) + "\"\n";
            else if (line.startsWith("LIST VAR "))
                all += variables(words.value(2));
            else if (!line.isEmpty())
                all += "ERR UNKNOWN-COMMAND\n";
        }
        asked->remove(0, end);
        return all;
    }

private:
    static int numberOf(const QByteArray &ups)
    {
        return ups.mid(3).toInt();
    }

    QByteArray upsList() const
    {
        QByteArray all = "BEGIN LIST UPS\n";
        for (int i = 0; i < count(); ++i)
            all += "UPS ups" + QByteArray::number(i) + " \"Rack " + QByteArray::number(i) + "\"\n";
        return all + "END LIST UPS\n";
    }

    static const char *status(const QByteArray &ups)
    {
        static const char *const states[] = {"OL",    "OL CHRG",  "OB DISCHRG",
                                             "OB LB", "OL ALARM", "OL OFF"};
        const int number = numberOf(ups);
        return states[number % 50 == 7 ? 2 + number / 50 % 4 : number % 9 == 4 ? 1 : 0];
    }

    static QByteArray variables(const QByteArray &ups)
    {
        const QByteArray row = "VAR " + ups + ' ';
        QByteArray all = "BEGIN LIST VAR " + ups + '\n';
        const auto add = [&](const char *name, const QByteArray &value) {
            all += row + name + " \"" + value + "\"\n";
        };
        add("ups.status", status(ups));
        add("ups.load", QByteArray::number(load(numberOf(ups))));
        static const std::pair<const char *, const char *> others[] = {
            {"battery.charge", "97"},
            {"battery.charge.low", "10"},
            {"battery.charge.warning", "50"},
            {"battery.date", "2024/03/01"},
            {"battery.runtime", "2220"},
            {"battery.runtime.low", "120"},
            {"battery.type", "PbAc"},
            {"battery.voltage", "27.1"},
            {"battery.voltage.nominal", "24.0"},
            {"device.mfr", "Example Power"},
            {"device.model", "Online 3000"},
            {"device.serial", "X0123456"},
            {"device.type", "ups"},
            {"driver.name", "usbhid-ups"},
            {"driver.parameter.pollfreq", "30"},
            {"driver.parameter.pollinterval", "2"},
            {"driver.parameter.port", "auto"},
            {"driver.version", "2.8.0"},
            {"driver.version.data", "Example HID 0.98"},
            {"driver.version.internal", "0.47"},
            {"input.frequency", "50.0"},
            {"input.transfer.high", "280"},
            {"input.transfer.low", "180"},
            {"input.voltage", "231.0"},
            {"input.voltage.nominal", "230"},
            {"output.frequency", "50.0"},
            {"output.voltage", "230.0"},
            {"ups.beeper.status", "enabled"},
            {"ups.delay.shutdown", "20"},
            {"ups.delay.start", "30"},
            {"ups.firmware", "02.08"},
            {"ups.mfr", "Example Power"},
            {"ups.model", "Online 3000"},
            {"ups.serial", "X0123456"},
        };
        for (const auto &[name, value] : others)
            add(name, value);
        return all + "END LIST VAR " + ups + '\n';
    }
};

/// A Prometheus-compatible server with the answers that a refresh needs.
class PromFleet : public Server
{
public:
    using Server::Server;

protected:
    QByteArray answer(QByteArray *asked) override
    {
        const int end = int(asked->indexOf("\r\n\r\n"));
        const int mark = int(asked->toLower().indexOf("content-length: "));
        if (end < 0 || mark < 0 || mark > end)
            return {};
        const int length = asked->mid(mark + 16).split('\r').first().toInt();
        if (asked->size() < end + 4 + length)
            return {};
        const bool wantsStatuses = asked->indexOf("up%7Bjob", end) >= 0;
        // All values of the one UPS that the console follows.
        const bool wantsValues = asked->indexOf("label_replace", end) >= 0;
        asked->clear();
        QByteArrayList rows;
        const QByteArray now = QByteArray::number(QDateTime::currentSecsSinceEpoch());
        for (int i = 0; i < (wantsValues ? 1 : count()); ++i) {
            QByteArray row = "{\"metric\":{";
            if (wantsStatuses)
                row += i % 9 == 4 ? R"("flag":"CHRG",)" : R"("flag":"OL",)";
            if (wantsValues)
                row += R"("part":"network_ups_tools_ups_load",)";
            row += R"("instance":"nut)" + QByteArray::number(i / 20) + R"(:3493","ups":"u)" +
                   QByteArray::number(i) + R"("},"value":[)" + now + ".308,\"" +
                   (wantsStatuses ? now : QByteArray::number(load(i))) + "\"]}";
            rows += row;
        }
        const QByteArray body = R"({"status":"success","data":{"resultType":"vector","result":[)" +
                                rows.join(',') + "]}}";
        return "HTTP/1.1 200 OK\r\nContent-Type: application/json\r\nContent-Length: " +
               QByteArray::number(body.size()) + "\r\n\r\n" + body;
    }
};

double leastOf(const std::vector<double> &values)
{
    return *std::min_element(values.cbegin(), values.cend());
}

double middleOf(std::vector<double> values)
{
    std::sort(values.begin(), values.end());
    return values[values.size() / 2];
}

} // namespace

int main(int argc, char **argv)
{
    const QString mode = QString::fromLocal8Bit(argc > 1 ? argv[1] : "");
    const int count = argc > 2 ? std::atoi(argv[2]) : 1000;
    const int rounds = argc > 3 ? std::atoi(argv[3]) : 10;
    const bool secure = mode == QLatin1String("https");
    const bool prometheus = secure || mode == QLatin1String("prometheus");
    const bool known = prometheus || mode == QLatin1String("nut") ||
                       mode == QLatin1String("status") || mode == QLatin1String("everything");
    if (!known || count < 1 || rounds < 1)
        return Program::refuse(
            QStringLiteral("use kivfeeds nut|everything|status|prometheus|https COUNT [ROUNDS]"),
            Program::wrongOptions);
    std::unique_ptr<Server> server;
    if (prometheus)
        server = std::make_unique<PromFleet>(count);
    else
        server = std::make_unique<NutServer>(count);
    std::unique_ptr<Certificates> certificates;
    if (secure)
        certificates = std::make_unique<Certificates>();
    if (secure && (!certificates->problem().isEmpty() || !server->useTls(*certificates)))
        return Program::refuse(QStringLiteral("there are no certificates"), Program::failed);
    if (!server->start())
        return Program::refuse(QStringLiteral("the server does not start"), Program::failed);
    const auto port = quint16(server->shared->port);

    qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication application(argc, argv);
    QCoreApplication::setApplicationName(QStringLiteral("kivfeeds"));
    Program::styleApplication();
    QApplication::setPalette(Theme::palette(false));
    SiteEntries entries;
    if (prometheus) {
        PromEntry entry;
        entry.url = QStringLiteral("%1://127.0.0.1:%2")
                        .arg(QLatin1String(secure ? "https" : "http"))
                        .arg(port);
        if (secure)
            entry.authorities.path = certificates->authority();
        entries.prometheus.append(entry);
    } else {
        ServerEntry entry;
        entry.host = {QStringLiteral("127.0.0.1"), port};
        entry.all = true;
        entries.servers.append(entry);
    }
    NutTimes times;
    if (mode == QLatin1String("status"))
        times.rounds = std::numeric_limits<int>::max();
    else if (mode == QLatin1String("everything"))
        times.rounds = 1;

    SiteModel site;
    SiteFeeds feeds(&site);
    QString error;
    if (!feeds.add(entries, {}, &error, times))
        return Program::refuse(error, Program::failed);
    ConsoleWindow window(&site);
    History history((QString()));
    const Recorder recorder(&site, &history);
    window.setHistory(&history);
    window.resize(1280, 800);
    window.show();

    // All UPSes are heard once a round.
    std::vector<double> elapsed;
    int heard = 0;
    int round = -2; // the first ones make the models, and show them
    std::vector<double> cpu;
    std::vector<double> thread;
    double cpuBefore = 0.0;
    double threadBefore = 0.0;
    double startedAt = 0.0;
    qint64 bytesBefore = 0;
    const auto take = [&](UpsModel *ups) {
        if (ups->snapshot().isLost() || ++heard < count)
            return;
        heard = 0;
        const double now = milliseconds(CLOCK_MONOTONIC);
        if (round == -2)
            std::printf("%d UPSes, the first round: %.0f ms\n", count,
                        now - server->shared->askedAt);
        const double cpuNow = milliseconds(CLOCK_PROCESS_CPUTIME_ID);
        const double threadNow = milliseconds(CLOCK_THREAD_CPUTIME_ID);
        if (round >= 0) {
            elapsed.push_back(now - server->shared->askedAt);
            cpu.push_back(cpuNow - cpuBefore);
            thread.push_back(threadNow - threadBefore);
        }
        cpuBefore = cpuNow;
        threadBefore = threadNow;
        if (++round == 0) {
            startedAt = now;
            bytesBefore = server->shared->bytes;
        }
        if (round == rounds)
            QCoreApplication::quit();
    };
    QObject::connect(&site, &SiteModel::added, &window, [&](UpsModel *ups) {
        QObject::connect(ups, &UpsModel::heard, &window, [&take, ups] { take(ups); });
    });
    feeds.start();
    QApplication::exec();

    const double all = milliseconds(CLOCK_MONOTONIC) - startedAt;
    const double sum = std::accumulate(cpu.cbegin(), cpu.cend(), 0.0);
    std::printf("a round: %.0f ms (the shortest %.0f), %.1f KB\n", middleOf(elapsed),
                leastOf(elapsed), double(server->shared->bytes - bytesBefore) / rounds / 1e3);
    std::printf(
        "the console's processor time: %.1f ms a round (the least %.1f), of which %.1f ms in the "
        "GUI thread; %.1f %% of a processor\n",
        middleOf(cpu), leastOf(cpu), middleOf(thread), 100.0 * sum / all);
    return 0;
}
