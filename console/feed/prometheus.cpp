// SPDX-License-Identifier: LicenseRef-all-rights-reserved

#include "prometheus.h"

#include "nutaddress.h"
#include "nutmapping.h"

#include <QtCore/QDateTime>
#include <QtCore/QPointer>
#include <QtCore/QUrlQuery>

#include <algorithm>
#include <cmath>
#include <limits>
#include <utility>

namespace {

constexpr std::size_t mostUpses = 20000;
// HTTP statuses.
constexpr int unauthorized = 401;
constexpr int forbidden = 403;

/// A text as a string of the query language.
QString quoted(QString text)
{
    text.replace(QLatin1Char('\\'), QLatin1String("\\\\"));
    text.replace(QLatin1Char('"'), QLatin1String("\\\""));
    return QLatin1Char('"') + text + QLatin1Char('"');
}

constexpr int explainEvery = 6; // refreshes
/// Of a UPS; a real one has a few.
constexpr int mostFlags = 50;

/// A few of many, for a line on the screen.
QString fewOf(QStringList all)
{
    constexpr int most = 4;
    std::sort(all.begin(), all.end());
    const int more = int(all.size()) - most;
    const QString few = QStringList(all.mid(0, most)).join(QStringLiteral(", "));
    return more > 0 ? few + QStringLiteral(" and %1 more").arg(more) : few;
}

/// Equal texts for equal numbers, without the effort where it is not needed.
QString textOf(double number)
{
    constexpr int digits = 12;
    constexpr double shortest = 1e9;
    const bool whole = std::abs(number) < shortest && number == std::trunc(number);
    return whole ? QString::number(int(number)) : QString::number(number, 'g', digits);
}

/// The values of @p selector that were scraped at @p since, in seconds since the epoch, or later.
/// Some servers drop a value that is not a number, and answer with the one before.
QString freshOf(const QString &selector, double since)
{
    return QStringLiteral("(%1 and timestamp(%1) >= %2)")
        .arg(selector, QString::number(since, 'f', 3));
}

/// Names what the series of a part of a query stand for, where they would be alike.
const QLatin1String partLabel("part");
const QLatin1String unscrapedPart("unscraped");

// Labels of series, in the order in which queries ask for them.
constexpr int instanceLabel = 0;
constexpr int upsNameLabel = 1;
constexpr int flagLabel = 2;

const PromDialect *dialectOf(const QString &name)
{
    const PromDialect *dialect = PromDialect::find(name);
    return dialect ? dialect : PromDialect::find(PromServer().dialect);
}

/// What there is instead of the job; @p statuses are the metrics of UPSes in each job.
QString wordsForNoJob(const QHash<QString, QStringList> &statuses)
{
    QStringList withUpses;
    for (auto one = statuses.cbegin(); one != statuses.cend(); ++one) {
        if (!one->isEmpty())
            withUpses += one.key();
    }
    if (!withUpses.isEmpty())
        return QStringLiteral("there is no such job, but UPSes in the job ") + fewOf(withUpses);
    return statuses.isEmpty()
               ? QStringLiteral("the server has no targets")
               : QStringLiteral("there is no such job; the jobs are ") + fewOf(statuses.keys());
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
        QString *field = key == QLatin1String("user")       ? &user
                         : key == QLatin1String("password") ? &password
                         : key == QLatin1String("token")    ? &token
                                                            : nullptr;
        const bool plain =
            std::all_of(value.cbegin(), value.cend(), [](QChar c) { return c.unicode() >= 0x20; });
        if (!field || value.isEmpty() || !plain) {
            *error = QStringLiteral("%1:%2: neither user, password nor token with a value")
                         .arg(fileName)
                         .arg(number);
            return false;
        }
        *field = value;
    }
    const bool basic = !user.isEmpty() && !password.isEmpty() && token.isEmpty();
    const bool bearer = user.isEmpty() && password.isEmpty() && !token.isEmpty();
    if (!basic && !bearer) {
        const QString what = token.isEmpty()
                                 ? QStringLiteral("a user with a password, or a token, is missing")
                                 : QStringLiteral("a user and a token exclude each other");
        *error = QStringLiteral("%1:%2: %3").arg(fileName).arg(number).arg(what);
    }
    return basic || bearer;
}

bool PromServer::hasSecrets() const
{
    return !password.isEmpty() || !token.isEmpty();
}

bool PromServer::wouldLeak() const
{
    return hasSecrets() && url.scheme() != QLatin1String("https") &&
           !NutHost{url.host(), 1}.isLoopback();
}

QString PromServer::leakWords()
{
    return QStringLiteral("a password or token needs https, except on this machine");
}

PromSource::PromSource(const PromServer &usedServer, const PromTimes &usedTimes, QObject *parent)
    : QObject(parent)
    , server(usedServer)
    , times(usedTimes)
    , dialect(dialectOf(usedServer.dialect))
    , load(dialect->valueOf(QStringLiteral("ups.load")))
    , shownName(usedServer.name.isEmpty() ? usedServer.url.toString(QUrl::StripTrailingSlash)
                                          : usedServer.name)
    , upsLabel(usedServer.upsLabel.isEmpty() ? dialect->upsLabel : usedServer.upsLabel)
    , pool(usedTimes.connections)
{
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

const QString &PromSource::name() const
{
    return shownName;
}

void PromSource::query(const QString &text, const QStringList &labels, const Answer &answer)
{
    get(QStringLiteral("query"), {{QStringLiteral("query"), text}}, labels, answer);
}

HttpPost *PromSource::queryRange(const QString &text, const QStringList &labels, double from,
                                 double to, double step, const Answer &answer)
{
    const auto number = [](double value) { return QString::number(value, 'f', 3); };
    // The server refuses more points than this.
    const double least = (to - from) / (PromAnswer::maxSamples - 1);
    return get(QStringLiteral("query_range"),
               {{QStringLiteral("query"), text},
                {QStringLiteral("start"), number(from)},
                {QStringLiteral("end"), number(to)},
                {QStringLiteral("step"), number(std::max({step, least, 1.0}))}},
               labels, answer);
}

HttpPost *PromSource::get(const QString &path, QList<QPair<QString, QString>> items,
                          const QStringList &labels, const Answer &answer)
{
    if (server.wouldLeak()) {
        PromAnswer refused;
        refused.problem = PromServer::leakWords();
        QMetaObject::invokeMethod(
            this, [=] { answer(refused); }, Qt::QueuedConnection);
        return nullptr;
    }
    // Nobody waits longer, so the server need not go on either.
    items.append({QStringLiteral("timeout"), QString::number(times.answer / 1000.0)});
    // Others than Prometheus may answer from a cache, or leave out the latest 30 s.
    items.append({QStringLiteral("nocache"), QStringLiteral("1")});
    QUrl url = server.url;
    QString base = url.path();
    while (base.endsWith(QLatin1Char('/')))
        base.chop(1);
    url.setPath(base + QStringLiteral("/api/v1/") + path);
    QUrlQuery form;
    for (const auto &[name, value] : items)
        form.addQueryItem(name, QString::fromLatin1(QUrl::toPercentEncoding(value)));
    HttpRequest request{url, form.toString(QUrl::FullyEncoded).toUtf8(), {}, server.authorities};
    if (!server.token.isEmpty())
        request.authorization = "Bearer " + server.token.toUtf8();
    else if (!server.password.isEmpty())
        request.authorization =
            "Basic " + (server.user + QLatin1Char(':') + server.password).toUtf8().toBase64();
    auto *post = new HttpPost(request, times.answer, PromAnswer::maxBytes, this, &pool);
    connect(post, &HttpPost::finished, this,
            [this, labels, answer](int code, const QByteArray &body, const QString &why) {
                PromAnswer result;
                if (!why.isEmpty())
                    result.problem = why;
                else if (code == unauthorized || code == forbidden)
                    result.problem = wordsForRefusal(code);
                else
                    result = PromAnswer::parse(code, body, labels);
                answer(result);
            });
    return post;
}

QString PromSource::wordsForRefusal(int code) const
{
    const QString http = QStringLiteral(" (HTTP %1)").arg(code);
    if (!server.token.isEmpty())
        return QStringLiteral("it refuses this token") + http;
    if (server.hasSecrets())
        return QStringLiteral("it refuses this user") + http;
    if (code == forbidden)
        return QStringLiteral("it refuses access") + http;
    return QStringLiteral("it wants a user or a token") + http +
           (server.place.isEmpty()
                ? QStringLiteral(": give it with --prometheus-auth")
                : QStringLiteral(": set 'auth' in its section (%1)").arg(server.place));
}

/// The metric of the statuses, of this job.
QString PromSource::status() const
{
    return QStringLiteral("%1{job=%2}").arg(dialect->statusMetric, quoted(server.job));
}

void PromSource::refresh()
{
    const QString by = QStringLiteral("max by (instance, ") + upsLabel;
    // The age of what was scraped, of the flags that are set; and what could not be scraped.
    query(QStringLiteral("%1, %2) (timestamp(%3) and %3 == 1) or %1) (up{job=%4} == 0)")
              .arg(by, dialect->flagLabel, status(), quoted(server.job)),
          {QStringLiteral("instance"), upsLabel, dialect->flagLabel},
          [this](const PromAnswer &answer) { takeStatuses(answer); });
}

PromFeed *PromSource::feedOf(const PromSeries &series)
{
    const Key key(series.labels.at(instanceLabel), series.labels.at(upsNameLabel));
    if (PromFeed *known = byKey.value(key))
        return known;
    if (feeds.size() >= mostUpses)
        return nullptr;
    feeds.push_back(std::unique_ptr<PromFeed>(new PromFeed(this, key.first, key.second)));
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
    ++round;
    Match found = answer.series.isEmpty() ? Match::Nothing : Match::Unscraped;
    for (const PromSeries &series : answer.series) {
        // Without a flag it says that the exporter cannot be scraped.
        const QString &flag = series.labels.at(flagLabel);
        if (!flag.isEmpty())
            found = Match::Statuses;
        PromFeed *feed = feedOf(series);
        if (!guard)
            return;
        if (!feed)
            continue;
        if (feed->round != round) {
            feed->round = round;
            feed->flags.clear();
            feed->scraped = 0.0;
        }
        if (flag.isEmpty() || feed->flags.size() >= mostFlags)
            continue;
        feed->flags += flag;
        feed->scraped = std::max(feed->scraped, series.samples.constFirst().y());
    }
    if (match != found) {
        match = found;
        explainedAt = 0;
    }
    if (match == Match::Statuses)
        lookForLabels();
    else
        explainNothing();
    warnings = answer.warnings.isEmpty()
                   ? QString()
                   : QStringLiteral("its answers may be incomplete: ") + answer.warnings;
    reportPresent();
    for (std::size_t i = 0; guard && i < feeds.size(); ++i)
        takeStatus(feeds[i].get());
    if (!guard)
        return;
    Q_EMIT refreshed();
    if (guard && load && match == Match::Statuses)
        askForLoads();
}

void PromSource::askForLoads()
{
    // A load that is older than all statuses was not scraped with any of them.
    double since = std::numeric_limits<double>::infinity();
    for (const auto &feed : feeds) {
        if (feed->heard)
            since = std::min(since, feed->scraped);
    }
    if (!std::isfinite(since))
        return;
    const QString selector = QStringLiteral("%1{job=%2}").arg(load->metric, quoted(server.job));
    query(QStringLiteral("max by (instance, %1) %2").arg(upsLabel, freshOf(selector, since)),
          {QStringLiteral("instance"), upsLabel}, [this, before = losses](const PromAnswer &loads) {
              // Not where the server was lost meanwhile.
              if (before == losses)
                  takeLoads(loads);
          });
}

void PromSource::takeStatus(PromFeed *feed)
{
    const double age = double(QDateTime::currentMSecsSinceEpoch()) / 1000.0 - feed->scraped;
    if (feed->round != round) {
        feed->lose(QStringLiteral("not monitored any more"));
    } else if (feed->flags.isEmpty()) {
        feed->lose(QStringLiteral("its exporter cannot be scraped"));
    } else if (age > times.stale / 1000.0) {
        constexpr double most = 1e6;
        feed->lose(QStringLiteral("no fresh data for %1 min").arg(int(std::min(age / 60.0, most))));
    } else {
        std::sort(feed->flags.begin(), feed->flags.end());
        const bool same = feed->heard && feed->flags == feed->status;
        if (!same) {
            feed->status = feed->flags;
            feed->variables.insert(QStringLiteral("ups.status"),
                                   feed->flags.join(QLatin1Char(' ')));
            feed->changed = true;
        }
        feed->heard = true;
        // What is as before comes with the load, once.
        feed->isPending = load && same;
        const bool wantsValues = feed->followed;
        const QPointer<PromFeed> guard(feed);
        if (!feed->isPending)
            feed->deliver();
        if (guard && wantsValues)
            askForValues(feed);
    }
}

void PromSource::takeLoads(const PromAnswer &answer)
{
    loadProblem = answer.succeeded ? QString()
                                   : QStringLiteral("the loads cannot be read: ") + answer.problem;
    for (const PromSeries &series : answer.series) {
        PromFeed *feed =
            byKey.value({series.labels.at(instanceLabel), series.labels.at(upsNameLabel)});
        if (!feed || !feed->heard)
            continue;
        feed->loadRound = round;
        feed->takeNumber(load->variable, series.samples.constFirst().y() * load->factor);
    }
    const QPointer<PromSource> guard(this);
    reportPresent();
    for (std::size_t i = 0; guard && i < feeds.size(); ++i) {
        PromFeed *feed = feeds[i].get();
        // What is not there any more is no data.
        if (feed->heard && feed->loadRound != round)
            feed->takeNumber(load->variable, std::numeric_limits<double>::quiet_NaN());
        if (feed->isPending || feed->changed)
            feed->deliver();
    }
}

/// Asks which jobs there are, and which of them have UPSes.
void PromSource::explainNothing()
{
    unlabelled.clear();
    if (explainedAt > 0 && round - explainedAt < explainEvery)
        return;
    explainedAt = round;
    QStringList metrics{QStringLiteral("up")};
    const QStringList dialects = PromDialect::names();
    for (const QString &name : dialects)
        metrics += PromDialect::find(name)->statusMetric;
    query(QStringLiteral("count by (job, __name__) ({__name__=~%1}) or "
                         "label_replace(count by (job) (up{job=%2} == 0),\"%3\",\"%4\",\"\",\"\")")
              .arg(quoted(metrics.join(QLatin1Char('|'))), quoted(server.job), partLabel,
                   unscrapedPart),
          {QStringLiteral("job"), QStringLiteral("__name__"), partLabel},
          [this](const PromAnswer &answer) { takeJobs(answer); });
}

void PromSource::takeJobs(const PromAnswer &answer)
{
    // By now something may match.
    if (match == Match::Statuses)
        return;
    QHash<QString, QStringList> statuses; // by job
    double exporters = 0;                 // of the job
    double unscraped = 0;
    for (const PromSeries &series : answer.series) {
        const QString &job = series.labels.at(0);
        const QString &metric = series.labels.at(1);
        const double count = series.samples.constFirst().y();
        if (series.labels.at(2) == unscrapedPart) {
            unscraped = count;
            continue;
        }
        QStringList &metrics = statuses[job];
        if (metric != QLatin1String("up"))
            metrics += metric;
        else if (job == server.job)
            exporters = count;
    }
    if (match == Match::Unscraped && (!answer.succeeded || unscraped >= exporters)) {
        // Each UPS says so itself, and nobody knows what their exporters would say.
        nothing.clear();
        return reportPresent();
    }
    if (!answer.succeeded)
        return reportNothing(QString(), server.place);
    const auto job = statuses.constFind(server.job);
    if (job == statuses.constEnd())
        return reportNothing(wordsForNoJob(statuses), server.place);
    if (job->contains(dialect->statusMetric))
        return reportNothing(QStringLiteral("no status flag is set"), server.place);
    if (!job->isEmpty()) {
        QStringList dialects = PromDialect::names();
        const auto isUnused = [&job](const QString &name) {
            return !job->contains(PromDialect::find(name)->statusMetric);
        };
        dialects.erase(std::remove_if(dialects.begin(), dialects.end(), isUnused), dialects.end());
        return reportNothing(QStringLiteral("the job has %1, which is the dialect %2")
                                 .arg(fewOf(*job), fewOf(dialects)),
                             server.dialectPlace);
    }
    // Perhaps a dialect that is not known here.
    query(QStringLiteral("count by (__name__) ({job=%1,__name__=~%2})")
              .arg(quoted(server.job), quoted(QStringLiteral("(?i).*(ups|nut|battery).*"))),
          {QStringLiteral("__name__")},
          [this](const PromAnswer &metrics) { takeMetrics(metrics); });
}

void PromSource::takeMetrics(const PromAnswer &answer)
{
    QStringList names;
    for (const PromSeries &series : answer.series)
        names += series.labels.at(0);
    const QString known = QStringLiteral("the job has no status of the known dialects (%1); ")
                              .arg(PromDialect::names().join(QStringLiteral(", ")));
    if (!answer.succeeded)
        return reportNothing(known + QStringLiteral("what it has cannot be read"),
                             server.dialectPlace);
    if (names.isEmpty())
        return reportNothing(known + QStringLiteral("none of its metrics is named after a UPS"),
                             server.place);
    // Those that look like a status say most.
    QStringList statuses = names.filter(QStringLiteral("status"), Qt::CaseInsensitive);
    reportNothing(known + QStringLiteral("it has ") + fewOf(statuses.isEmpty() ? names : statuses),
                  server.dialectPlace);
}

/// @p place is of what does not fit.
void PromSource::reportNothing(const QString &why, const QString &place)
{
    QString text = QStringLiteral("nothing matches ") + status();
    if (!place.isEmpty())
        text = reasonAt(text, place);
    // By now something may match.
    if (match != Match::Statuses)
        nothing = why.isEmpty() ? text : text + QStringLiteral(": ") + why;
    reportPresent();
}

/// UPSes that no label tells apart would be shown as one.
void PromSource::lookForLabels()
{
    nothing.clear();
    const bool nameless = std::any_of(feeds.cbegin(), feeds.cend(), [this](const auto &feed) {
        return feed->ups.isEmpty() && feed->round == round;
    });
    if (!nameless)
        unlabelled.clear();
    if (!nameless || (explainedAt > 0 && round - explainedAt < explainEvery))
        return;
    explainedAt = round;
    query(QStringLiteral("count by (instance, %1) (%2{job=%3,%4=\"\"} == 1) > 1")
              .arg(dialect->flagLabel, dialect->statusMetric, quoted(server.job), upsLabel),
          {QStringLiteral("instance")}, [this](const PromAnswer &answer) {
              QStringList instances;
              for (const PromSeries &series : answer.series)
                  instances += series.labels.at(0);
              instances.removeDuplicates();
              unlabelled.clear();
              if (!instances.isEmpty() && match == Match::Statuses) {
                  unlabelled = QStringLiteral("several UPSes have no label '%1' and are shown as "
                                              "one, at %2")
                                   .arg(upsLabel, fewOf(instances));
                  if (!server.labelPlace.isEmpty())
                      unlabelled = reasonAt(unlabelled, server.labelPlace);
              }
              reportPresent();
          });
}

void PromSource::askForValues(PromFeed *feed)
{
    if (dialect->values.isEmpty())
        return;
    QStringList parts;
    for (const PromValue &value : dialect->values) {
        const QString selector = QStringLiteral("%1{%2}").arg(value.metric, feed->selector());
        parts += QStringLiteral("label_replace(%1,\"%2\",\"%3\",\"\",\"\")")
                     .arg(freshOf(selector, feed->scraped), partLabel, value.metric);
    }
    const QPointer<PromFeed> asking(feed);
    query(parts.join(QStringLiteral(" or ")), {partLabel},
          [this, asking](const PromAnswer &answer) {
              if (asking)
                  takeValues(asking, answer);
          });
}

void PromSource::takeValues(PromFeed *feed, const PromAnswer &answer)
{
    if (!answer.succeeded || !feed->heard)
        return;
    QHash<QString, double> numbers;
    for (const PromSeries &series : answer.series)
        numbers.insert(series.labels.at(0), series.samples.constFirst().y());
    for (const PromValue &value : dialect->values)
        feed->takeNumber(value.variable,
                         numbers.value(value.metric, std::numeric_limits<double>::quiet_NaN()) *
                             value.factor);
    feed->deliver();
}

void PromSource::loseAll(const QString &reason)
{
    const QPointer<PromSource> guard(this);
    ++losses;
    loadProblem.clear();
    report(reason, true);
    if (guard)
        Q_EMIT lost(reason);
    for (std::size_t i = 0; guard && i < feeds.size(); ++i)
        feeds[i]->lose(QStringLiteral("the Prometheus server cannot be read: ") + reason, true);
}

void PromSource::reportPresent()
{
    for (const QString *line : {&warnings, &nothing, &unlabelled}) {
        if (!line->isEmpty())
            return report(*line);
    }
    report(loadProblem);
}

void PromSource::report(const QString &newProblem, bool isLost)
{
    if (problem == newProblem)
        return;
    problem = newProblem;
    Q_EMIT problemChanged(newProblem, isLost);
}

PromFeed::PromFeed(PromSource *usedSource, const QString &instance, const QString &upsLabel)
    : source(usedSource)
    , place(instance)
    , ups(upsLabel)
    , id((upsLabel.isEmpty() ? instance : upsLabel + QLatin1Char('@') + instance) +
         QStringLiteral(" (%1)").arg(usedSource->server.job))
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
        .arg(quoted(source->server.job), quoted(place), source->upsLabel, quoted(ups));
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

/// NaN is no data.
void PromFeed::takeNumber(const QString &variable, double number)
{
    const auto known = numbers.constFind(variable);
    if (!std::isfinite(number)) {
        if (known == numbers.constEnd())
            return;
        numbers.erase(known);
        variables.remove(variable);
    } else {
        if (known != numbers.constEnd() && *known == number)
            return;
        numbers.insert(variable, number);
        variables.insert(variable, textOf(number));
    }
    changed = true;
}

void PromFeed::deliver()
{
    isPending = false;
    if (!running || !heard)
        return;
    if (changed) {
        changed = false;
        latest = snapshotOf(upsName(), variables);
        latest.server = source->name();
    }
    Q_EMIT snapshotReady(latest);
}

void PromFeed::lose(const QString &reason, bool withServer)
{
    heard = false;
    isPending = false;
    changed = true;
    numbers.clear();
    variables.clear();
    if (!running)
        return;
    Snapshot lost = Snapshot::lost(upsName(), reason);
    lost.server = source->name();
    lost.isServerLost = withServer;
    Q_EMIT snapshotReady(lost);
}
