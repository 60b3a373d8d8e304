// SPDX-License-Identifier: LicenseRef-all-rights-reserved

#include "prometheus.h"

#include "nutaddress.h"
#include "nutmapping.h"
#include "tlscheck.h"

#include <QtCore/QDateTime>
#include <QtCore/QPointer>
#include <QtCore/QUrlQuery>
#include <QtNetwork/QNetworkProxy>
#include <QtNetwork/QNetworkReply>
#include <QtNetwork/QNetworkRequest>

#include <algorithm>
#include <cmath>
#include <utility>

namespace {

constexpr std::size_t mostUpses = 20000;

/// A text as a string of the query language.
QString quoted(QString text)
{
    text.replace(QLatin1Char('\\'), QLatin1String("\\\\"));
    text.replace(QLatin1Char('"'), QLatin1String("\\\""));
    return QLatin1Char('"') + text + QLatin1Char('"');
}

QString keyOf(const QString &job, const QString &instance, const QString &ups)
{
    return (ups.isEmpty() ? instance : ups + QLatin1Char('@') + instance) +
           QStringLiteral(" (%1)").arg(job);
}

} // namespace

std::optional<QUrl> PromServer::parseUrl(const QString &text, QString *error)
{
    const QUrl url(text, QUrl::StrictMode);
    const bool http =
        url.scheme() == QLatin1String("http") || url.scheme() == QLatin1String("https");
    if (!url.isValid() || !http || url.host().isEmpty() || url.hasQuery() || url.hasFragment())
        *error = QStringLiteral("the address must be given as http(s)://HOST[:PORT][/PREFIX]");
    else if (!url.userInfo().isEmpty())
        *error = QStringLiteral("the address must have no user: give it in a file of its own");
    else
        return url;
    return std::nullopt;
}

bool PromServer::takeSecrets(const QByteArray &text, const QString &fileName, QString *error)
{
    int number = 0;
    const QList<QByteArray> lines = text.split('\n');
    for (const QByteArray &bytes : lines) {
        ++number;
        const QString line = QString::fromUtf8(bytes).trimmed();
        if (line.isEmpty() || line.startsWith(QLatin1Char('#')))
            continue;
        const int equals = int(line.indexOf(QLatin1Char('=')));
        const QString key = line.left(std::max(equals, 0)).trimmed();
        const QString value = line.mid(equals + 1).trimmed();
        QString *place = key == QLatin1String("user")       ? &user
                         : key == QLatin1String("password") ? &password
                         : key == QLatin1String("token")    ? &token
                                                            : nullptr;
        const bool plain =
            std::all_of(value.cbegin(), value.cend(), [](QChar c) { return c.unicode() >= 0x20; });
        if (!place || value.isEmpty() || !plain) {
            *error = QStringLiteral("%1:%2: neither user, password nor token with a value")
                         .arg(fileName)
                         .arg(number);
            return false;
        }
        *place = value;
    }
    const bool basic = !user.isEmpty() && !password.isEmpty() && token.isEmpty();
    const bool bearer = user.isEmpty() && password.isEmpty() && !token.isEmpty();
    if (!basic && !bearer)
        *error =
            QStringLiteral("%1:1: a user with a password, or a token, must be there").arg(fileName);
    return basic || bearer;
}

bool PromServer::wouldLeak() const
{
    const bool secret = !password.isEmpty() || !token.isEmpty();
    return secret && url.scheme() != QLatin1String("https") && !NutHost{url.host(), 1}.isLoopback();
}

PromSource::PromSource(const PromServer &usedServer, const PromTimes &usedTimes, QObject *parent)
    : QObject(parent)
    , server(usedServer)
    , times(usedTimes)
    , dialect(PromDialect::find(usedServer.dialect))
{
    if (!dialect)
        dialect = PromDialect::find(PromServer().dialect);
    network.setProxy(QNetworkProxy::NoProxy);
    timer.setInterval(times.refresh);
    connect(&timer, &QTimer::timeout, this, &PromSource::refresh);
}

PromSource::~PromSource() = default;

void PromSource::start()
{
    if (timer.isActive())
        return;
    timer.start();
    refresh();
}

void PromSource::query(const QString &text, const Answer &answer)
{
    get(QStringLiteral("query"), {{QStringLiteral("query"), text}}, answer);
}

QNetworkReply *PromSource::queryRange(const QString &text, double from, double to, double step,
                                      const Answer &answer)
{
    const auto number = [](double value) { return QString::number(value, 'f', 3); };
    // The server refuses more points than this.
    const double least = (to - from) / (PromAnswer::maxSamples - 1);
    return get(QStringLiteral("query_range"),
               {{QStringLiteral("query"), text},
                {QStringLiteral("start"), number(from)},
                {QStringLiteral("end"), number(to)},
                {QStringLiteral("step"), number(std::max({step, least, 1.0}))}},
               answer);
}

QNetworkReply *PromSource::get(const QString &path, QList<QPair<QString, QString>> items,
                               const Answer &answer)
{
    if (server.wouldLeak()) {
        PromAnswer refused;
        refused.problem = QStringLiteral("a password needs https, except on this machine");
        QMetaObject::invokeMethod(
            this, [=] { answer(refused); }, Qt::QueuedConnection);
        return nullptr;
    }
    // Nobody waits longer, so the server need not go on either.
    items.append({QStringLiteral("timeout"), QString::number(times.answer / 1000.0)});
    QUrl url = server.url;
    QString base = url.path();
    while (base.endsWith(QLatin1Char('/')))
        base.chop(1);
    url.setPath(base + QStringLiteral("/api/v1/") + path);
    QUrlQuery form;
    for (const auto &[name, value] : items)
        form.addQueryItem(name, QString::fromLatin1(QUrl::toPercentEncoding(value)));
    QNetworkRequest request(url);
    request.setHeader(QNetworkRequest::ContentTypeHeader,
                      QByteArrayLiteral("application/x-www-form-urlencoded"));
    request.setTransferTimeout(times.answer);
    // Whoever answers elsewhere gets no secrets.
    request.setAttribute(QNetworkRequest::RedirectPolicyAttribute,
                         QNetworkRequest::ManualRedirectPolicy);
    request.setAttribute(QNetworkRequest::AuthenticationReuseAttribute, QNetworkRequest::Manual);
    request.setAttribute(QNetworkRequest::CookieLoadControlAttribute, QNetworkRequest::Manual);
    request.setAttribute(QNetworkRequest::CookieSaveControlAttribute, QNetworkRequest::Manual);
    QByteArray authorization;
    if (!server.token.isEmpty())
        authorization = "Bearer " + server.token.toUtf8();
    else if (!server.password.isEmpty())
        authorization =
            "Basic " + (server.user + QLatin1Char(':') + server.password).toUtf8().toBase64();
    if (!authorization.isEmpty())
        request.setRawHeader("Authorization", authorization);
    request.setSslConfiguration(TlsCheck::configuration(server.authorities));

    QNetworkReply *reply = network.post(request, form.toString(QUrl::FullyEncoded).toUtf8());
    reply->setReadBufferSize(PromAnswer::maxBytes);
    connect(reply, &QNetworkReply::readyRead, reply, [reply] {
        if (reply->bytesAvailable() >= PromAnswer::maxBytes)
            reply->abort();
    });
    // What is wrong with its certificate; the answer takes it along.
    const auto tlsProblem = std::make_shared<QString>();
    const QString host = server.url.host();
    connect(reply, &QNetworkReply::sslErrors, reply,
            [tlsProblem, host](const QList<QSslError> &errors) {
                *tlsProblem = TlsCheck::words(errors.constFirst(), host);
            });
    // Before anything is sent.
    connect(reply, &QNetworkReply::encrypted, reply, [reply, tlsProblem, host] {
        if (TlsCheck::isFor(reply->sslConfiguration().peerCertificate(), host))
            return;
        *tlsProblem = TlsCheck::wordsForName(host);
        reply->abort();
    });
    connect(reply, &QNetworkReply::finished, this, [reply, answer, tlsProblem] {
        reply->deleteLater();
        const int code = reply->attribute(QNetworkRequest::HttpStatusCodeAttribute).toInt();
        PromAnswer result;
        if (!tlsProblem->isEmpty())
            result.problem = *tlsProblem;
        else if (code > 0 && reply->error() != QNetworkReply::OperationCanceledError)
            result = PromAnswer::parse(code, reply->readAll());
        else if (reply->error() == QNetworkReply::OperationCanceledError)
            result.problem = QStringLiteral("it gives no whole answer in time");
        else if (reply->error() == QNetworkReply::ConnectionRefusedError)
            result.problem = QStringLiteral("connection refused");
        else if (reply->error() == QNetworkReply::HostNotFoundError)
            result.problem = QStringLiteral("host not found");
        else if (reply->error() == QNetworkReply::SslHandshakeFailedError)
            result.problem = QStringLiteral("no TLS connection; does the server speak https?");
        else
            result.problem = plainText(reply->errorString()).left(200);
        answer(result);
    });
    return reply;
}

void PromSource::refresh()
{
    const QString by = QStringLiteral("max by (job, instance, %1").arg(dialect->upsLabel);
    const QString job = QStringLiteral("{job=%1}").arg(quoted(server.job));
    const QString status = dialect->statusMetric + job;
    // The age of what was scraped, of the flags that are set; and what could not be scraped.
    query(QStringLiteral("%1, %2) (timestamp(%3) and %3 == 1) or %1) (up%4 == 0)")
              .arg(by, dialect->flagLabel, status, job),
          [this](const PromAnswer &answer) { takeStatuses(answer); });
}

PromFeed *PromSource::feedOf(const PromSeries &series)
{
    const QString job = series.labels.value(QStringLiteral("job"));
    const QString instance = series.labels.value(QStringLiteral("instance"));
    const QString ups = series.labels.value(dialect->upsLabel);
    const QString key = keyOf(job, instance, ups);
    if (PromFeed *known = byKey.value(key))
        return known;
    if (feeds.size() >= mostUpses)
        return nullptr;
    feeds.push_back(std::unique_ptr<PromFeed>(new PromFeed(this, job, instance, ups)));
    PromFeed *feed = feeds.back().get();
    byKey.insert(key, feed);
    Q_EMIT found(feed);
    return feed;
}

void PromSource::takeStatuses(const PromAnswer &answer)
{
    if (!answer.succeeded) {
        loseAll(answer.problem);
        return;
    }
    const QPointer<PromSource> guard(this);
    QHash<PromFeed *, Status> statuses;
    for (const PromSeries &series : answer.series) {
        PromFeed *feed = feedOf(series);
        if (!feed)
            continue;
        Status &status = statuses[feed];
        const QString flag = series.labels.value(dialect->flagLabel);
        if (flag.isEmpty()) {
            status.down = true;
        } else {
            status.flags += flag;
            status.scraped = std::max(status.scraped, series.samples.constFirst().y());
        }
    }
    report(answer.warnings.isEmpty()
               ? QString()
               : QStringLiteral("its answers may be incomplete: ") + answer.warnings);
    const PromValue *load = nullptr;
    for (const PromValue &value : dialect->values) {
        if (value.variable == QLatin1String("ups.load"))
            load = &value;
    }
    const double now = double(QDateTime::currentMSecsSinceEpoch()) / 1000.0;
    for (const auto &one : feeds) {
        PromFeed *feed = one.get();
        const auto status = statuses.constFind(feed);
        if (status == statuses.cend()) {
            feed->lose(QStringLiteral("not monitored any more"));
        } else if (status->flags.isEmpty()) {
            feed->lose(QStringLiteral("its exporter cannot be scraped"));
        } else if (now - status->scraped > times.stale / 1000.0) {
            feed->lose(QStringLiteral("no fresh data for %1 min")
                           .arg(int((now - status->scraped) / 60.0)));
        } else {
            QStringList flags = status->flags;
            std::sort(flags.begin(), flags.end());
            const QString words = flags.join(QLatin1Char(' '));
            // What is as before comes with the load, once.
            feed->isPending = load && feed->heard && feed->status == words;
            feed->status = words;
            feed->heard = true;
            if (!feed->isPending)
                feed->deliver();
            if (guard && feed->followed)
                askForValues(feed);
        }
        if (!guard)
            return;
    }
    if (load)
        query(QStringLiteral("max by (job, instance, %1) (%2{job=%3})")
                  .arg(dialect->upsLabel, load->metric, quoted(server.job)),
              [this](const PromAnswer &loads) { takeLoads(loads); });
}

void PromSource::takeLoads(const PromAnswer &answer)
{
    double factor = 1.0;
    for (const PromValue &value : dialect->values) {
        if (value.variable == QLatin1String("ups.load"))
            factor = value.factor;
    }
    const QPointer<PromSource> guard(this);
    for (const PromSeries &series : answer.series) {
        PromFeed *feed = byKey.value(keyOf(series.labels.value(QStringLiteral("job")),
                                           series.labels.value(QStringLiteral("instance")),
                                           series.labels.value(dialect->upsLabel)));
        if (!feed || !feed->heard)
            continue;
        const double load = series.samples.constFirst().y() * factor;
        // NaN is no data.
        const QString text = std::isfinite(load) ? QString::number(load, 'g', 12) : QString();
        if (feed->values.value(QStringLiteral("ups.load")) == text)
            continue;
        feed->values.insert(QStringLiteral("ups.load"), text);
        feed->deliver();
        if (!guard)
            return;
    }
    // The others, and all where there are no loads.
    for (std::size_t i = 0; guard && i < feeds.size(); ++i) {
        if (feeds[i]->isPending)
            feeds[i]->deliver();
    }
}

void PromSource::askForValues(PromFeed *feed)
{
    if (dialect->values.isEmpty())
        return;
    QStringList metrics;
    for (const PromValue &value : dialect->values)
        metrics += value.metric;
    const QPointer<PromFeed> asking(feed);
    query(QStringLiteral("{__name__=~%1,%2}")
              .arg(quoted(metrics.join(QLatin1Char('|'))), feed->selector()),
          [this, asking](const PromAnswer &answer) {
              if (asking)
                  takeValues(asking, answer);
          });
}

void PromSource::takeValues(PromFeed *feed, const PromAnswer &answer)
{
    if (!answer.succeeded || !feed->heard)
        return;
    feed->values.clear();
    for (const PromSeries &series : answer.series) {
        const QString metric = series.labels.value(QStringLiteral("__name__"));
        for (const PromValue &value : dialect->values) {
            const double number = series.samples.constFirst().y() * value.factor;
            if (value.metric == metric && std::isfinite(number))
                feed->values.insert(value.variable, QString::number(number, 'g', 12));
        }
    }
    feed->deliver();
}

void PromSource::loseAll(const QString &reason)
{
    const QPointer<PromSource> guard(this);
    report(reason);
    for (std::size_t i = 0; guard && i < feeds.size(); ++i)
        feeds[i]->lose(QStringLiteral("the Prometheus server cannot be read: ") + reason);
}

void PromSource::report(const QString &newProblem)
{
    if (problem == newProblem)
        return;
    problem = newProblem;
    Q_EMIT problemChanged(newProblem);
}

PromFeed::PromFeed(PromSource *usedSource, const QString &jobLabel, const QString &instanceLabel,
                   const QString &upsLabel)
    : source(usedSource)
    , job(jobLabel)
    , place(instanceLabel)
    , ups(upsLabel)
    , id(keyOf(jobLabel, instanceLabel, upsLabel))
{}

const QString &PromFeed::key() const
{
    return id;
}

const QString &PromFeed::upsName() const
{
    return ups.isEmpty() ? place : ups;
}

const QString &PromFeed::instance() const
{
    return place;
}

void PromFeed::start()
{
    running = true;
}

void PromFeed::stop()
{
    running = false;
}

void PromFeed::setFollowed(bool nowFollowed)
{
    followed = nowFollowed;
    if (followed && heard)
        source->askForValues(this);
}

QString PromFeed::selector() const
{
    return QStringLiteral("job=%1,instance=%2,%3=%4")
        .arg(quoted(job), quoted(place), source->dialect->upsLabel, quoted(ups));
}

bool PromFeed::isKeptElsewhere() const
{
    return true;
}

PromSource &PromFeed::server() const
{
    return *source;
}

const PromDialect &PromFeed::dialect() const
{
    return *source->dialect;
}

void PromFeed::deliver()
{
    isPending = false;
    if (!running)
        return;
    NutVariables variables = values;
    variables.insert(QStringLiteral("ups.status"), status);
    if (latest.isLost() || variables != delivered) {
        delivered = variables;
        latest = snapshotOf(upsName(), variables);
    }
    Q_EMIT snapshotReady(latest);
}

void PromFeed::lose(const QString &reason)
{
    heard = false;
    isPending = false;
    values.clear();
    if (running)
        Q_EMIT snapshotReady(Snapshot::lost(upsName(), reason));
}
