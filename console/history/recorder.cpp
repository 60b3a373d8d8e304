// SPDX-License-Identifier: LicenseRef-all-rights-reserved

#include "recorder.h"

#include "commandname.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace {

/// After this time the UPSes that are watched are known: servers have said which they have.
constexpr int leaveAfterMsecs = 600000;
constexpr float none = std::numeric_limits<float>::quiet_NaN();

const QLatin1String silence("no-communication");
const QLatin1String alarmPrefix("alarm");

// A UPS can have so many new alarms at once, and so many an hour after that.
constexpr double mostAlarms = 50.0;
constexpr double alarmsAnHour = 10.0;
/// Alarms that were left out are over after so long without another.
constexpr qint64 leftOutMsecs = 10 * minuteMsecs;
const QLatin1String leftOutCondition("alarms-left-out");

bool isSame(float a, float b)
{
    return a == b || (std::isnan(a) && std::isnan(b));
}

EventKind kindOf(const Condition &condition)
{
    if (condition.id == silence)
        return EventKind::Communication;
    if (condition.id.startsWith(alarmPrefix))
        return EventKind::Alarm;
    return condition.id.endsWith(QLatin1String("-too-low")) ||
                   condition.id.endsWith(QLatin1String("-too-high"))
               ? EventKind::Limit
               : EventKind::State;
}

/// The condition's name in the history: an alarm text that counts ("21 % left", "20 % left") is one
/// event.
QString keyOf(const Condition &condition)
{
    QString key = condition.id;
    if (kindOf(condition) != EventKind::Alarm)
        return key;
    QString result;
    for (const QChar c : std::as_const(key)) {
        if (!c.isDigit())
            result += c;
        else if (!result.endsWith(QLatin1Char('#')))
            result += QLatin1Char('#');
    }
    return result;
}

/// The present conditions, and a state that is none: one that the UPS does not say.
QVector<Condition> conditionsOf(const UpsModel &ups)
{
    QVector<Condition> all = ups.conditions();
    const Snapshot &snapshot = ups.snapshot();
    if (!snapshot.isLost() && !snapshot.tokens.testFlag(StatusToken::Waiting) &&
        ups.headline().severity == Severity::Unknown) {
        Condition unknown;
        unknown.id = QStringLiteral("state-unknown");
        unknown.severity = Severity::Unknown;
        unknown.text = ups.headline().text;
        all.append(unknown);
    }
    return all;
}

bool isSilent(const UpsModel &ups)
{
    return ups.snapshot().isLost() || ups.snapshot().tokens.testFlag(StatusToken::Waiting);
}

EventChange beginOf(const UpsModel &ups, const Condition &condition, qint64 at)
{
    EventChange change;
    change.what = EventChange::What::Begin;
    change.ups = ups.id();
    change.kind = kindOf(condition);
    change.condition = keyOf(condition);
    change.severity = condition.severity;
    change.text = condition.text;
    change.value = condition.valueText;
    change.at = at;
    return change;
}

EventChange endOf(const QString &ups, const QString &key, qint64 at)
{
    EventChange change;
    change.what = EventChange::What::End;
    change.ups = ups;
    change.condition = key;
    change.at = at;
    return change;
}

} // namespace

Recorder::Recorder(SiteModel *watchedSite, History *usedHistory, const Clock &usedClock,
                   QObject *parent)
    : QObject(parent)
    , site(watchedSite)
    , history(usedHistory)
    , clock(usedClock)
{
    for (int i = 0; i < site->count(); ++i)
        watch(site->at(i));
    connect(site, &SiteModel::added, this, &Recorder::watch);
    connect(site, &SiteModel::commandFinished, this,
            [this](UpsModel *, const CommandRecord &record) { addCommand(record); });
    connect(site, &SiteModel::serverMissed, this, &Recorder::missServer);
    connect(site, &SiteModel::serverMet, this, &Recorder::meetServer);
    connect(history, &History::presentWanted, this, &Recorder::meetAgain);
    sending.setSingleShot(true);
    connect(&sending, &QTimer::timeout, this, &Recorder::send);
    leaving.setSingleShot(true);
    connect(&leaving, &QTimer::timeout, this,
            [this] { history->leaveOthers(all.keys() + servers.keys() + site->servers()); });
    leaving.start(leaveAfterMsecs);
}

Recorder::~Recorder()
{
    for (auto watched = all.begin(); watched != all.end(); ++watched) {
        for (int i = 0; i < quantityCount; ++i) {
            if (!std::isnan(watched->values.at(std::size_t(i))))
                addSample(watched.key(), i, std::max(now(), watched->heardAt), none);
        }
    }
    send();
}

qint64 Recorder::now() const
{
    return clock().toMSecsSinceEpoch();
}

void Recorder::watch(UpsModel *ups)
{
    Watched watched;
    watched.values.fill(none);
    all.insert(ups->id(), watched);
    connect(ups, &UpsModel::heard, this, [this, ups] { heard(ups); });
    // A simulated UPS has done at once what it was asked for.
    connect(ups, &UpsModel::commandGiven, this, [this, ups](Command command, bool taken) {
        if (!ups->snapshot().simulated)
            return;
        CommandRecord record;
        record.ups = ups->id();
        record.name = nameOf(command);
        record.outcome = taken ? CommandOutcome::Done : CommandOutcome::Refused;
        addCommand(record);
    });
}

void Recorder::meetAgain()
{
    for (Watched &watched : all) {
        watched.met = false;
        watched.present.clear();
        watched.silenceNoted = false;
    }
    for (auto server = servers.cbegin(); server != servers.cend(); ++server) {
        add(server->missed ? lossOf(server.key(), *server) : presentOf(server.key(), *server));
    }
    for (int i = 0; i < site->count(); ++i) {
        // Those that are not asked yet are not silent either.
        if (site->at(i)->heardAt().isValid() || all[site->at(i)->id()].silentSince)
            heard(site->at(i));
    }
}

void Recorder::heard(UpsModel *ups)
{
    Watched &watched = all[ups->id()];
    followServer(ups->snapshot(), &watched);
    if (ups->snapshot().isServerLost) {
        // The server's event stands for it.
    } else if (watched.met) {
        followConditions(ups, &watched);
    } else if (!isSilent(*ups)) {
        meet(ups, &watched);
    } else if (ups->snapshot().isLost()) {
        // At the start nothing is known yet, which is not a lost communication.
        const qint64 at = now();
        if (!watched.silentSince)
            watched.silentSince = at;
        if (!watched.silenceNoted &&
            (ups->heardAt().isValid() || at - *watched.silentSince >= UpsModel::patienceMsecs)) {
            watched.silenceNoted = true;
            for (const Condition &condition : ups->conditions())
                add(beginOf(*ups, condition,
                            ups->heardAt().isValid() ? condition.since.toMSecsSinceEpoch()
                                                     : *watched.silentSince));
        }
    }
    if (!ups->isKeptElsewhere())
        recordValues(*ups, &watched);
}

void Recorder::missServer(const QString &name, const QString &reason)
{
    Server &server = servers[name];
    if (server.met || server.missed)
        return;
    server.missed = true;
    server.since = now();
    server.reason = reason;
    add(lossOf(name, server));
}

void Recorder::meetServer(const QString &name)
{
    Server &server = servers[name];
    if (server.met)
        return;
    // This was seen; what the history has as present beside it is over.
    if (server.missed)
        add(endOf(name, Event::serverSilence, now()));
    server.missed = false;
    server.met = true;
    add(presentOf(name, server));
}

void Recorder::followServer(const Snapshot &snapshot, Watched *watched)
{
    if (snapshot.server.isEmpty())
        return;
    Server &server = servers[snapshot.server];
    if (!snapshot.isServerLost)
        meetServer(snapshot.server);
    if (snapshot.isServerLost == watched->isLostWithServer)
        return;
    watched->isLostWithServer = snapshot.isServerLost;
    if (snapshot.isServerLost) {
        if (server.lost++ == 0)
            server.since = now();
        server.reason = snapshot.reason;
        // How many there are is known when all of them were heard.
        if (!sending.isActive())
            sending.start(0);
    } else if (--server.lost == 0 && server.noted > 0) {
        server.noted = 0;
        add(endOf(snapshot.server, Event::serverSilence, now()));
    }
}

EventChange Recorder::lossOf(const QString &name, const Server &server)
{
    EventChange change;
    change.ups = name;
    change.kind = EventKind::Communication;
    change.condition = Event::serverSilence;
    change.severity = Severity::Unknown;
    change.text = server.missed ? QStringLiteral("Not reached: ")
                  : server.noted == 1
                      ? QStringLiteral("1 UPS without communication: ")
                      : QStringLiteral("%1 UPSes without communication: ").arg(server.noted);
    change.text += server.reason;
    change.at = server.since;
    return change;
}

EventChange Recorder::presentOf(const QString &name, const Server &server) const
{
    EventChange change;
    change.what = EventChange::What::Present;
    change.ups = name;
    change.at = now();
    if (server.noted > 0)
        change.present.append(lossOf(name, server));
    return change;
}

void Recorder::noteServers()
{
    for (auto server = servers.begin(); server != servers.end(); ++server) {
        if (server->lost <= server->noted)
            continue;
        server->noted = server->lost;
        changes.append(lossOf(server.key(), *server));
    }
}

void Recorder::meet(UpsModel *ups, Watched *watched)
{
    watched->met = true;
    watched->alarmsLeft = mostAlarms;
    watched->alarmsLeftAt = now();
    EventChange change;
    change.what = EventChange::What::Present;
    change.ups = ups->id();
    change.at = now();
    // What had not been heard is now, which was seen.
    if (watched->silenceNoted)
        add(endOf(ups->id(), silence, change.at));
    const QVector<Condition> conditions = conditionsOf(*ups);
    for (const Condition &condition : conditions) {
        if (kindOf(condition) == EventKind::Alarm && !allowAlarm(keyOf(condition), watched)) {
            watched->leftOut.insert(keyOf(condition));
            continue;
        }
        const qint64 since =
            condition.since.isValid() ? condition.since.toMSecsSinceEpoch() : change.at;
        change.present.append(beginOf(*ups, condition, since));
        watched->present.insert(keyOf(condition), condition.severity);
    }
    add(change);
    noteLeftOut(ups->id(), watched);
}

bool Recorder::allowAlarm(const QString &key, Watched *watched)
{
    const qint64 at = now();
    // One that flickers makes no other event.
    for (auto over = watched->overAt.begin(); over != watched->overAt.end();)
        over = std::abs(at - *over) < Journal::settleTime ? std::next(over)
                                                          : watched->overAt.erase(over);
    if (watched->overAt.remove(key) > 0)
        return true;
    const double hours = double(std::max(at - watched->alarmsLeftAt, qint64(0))) / hourMsecs;
    watched->alarmsLeft = std::min(watched->alarmsLeft + hours * alarmsAnHour, mostAlarms);
    watched->alarmsLeftAt = at;
    if (watched->alarmsLeft >= 1.0) {
        watched->alarmsLeft -= 1.0;
        return true;
    }
    ++watched->leftOutCount;
    watched->leftOutAt = at;
    return false;
}

/// One event stands for all alarms that were left out; what it says follows within a minute.
void Recorder::noteLeftOut(const QString &ups, Watched *watched)
{
    if (watched->leftOutCount == 0)
        return;
    const qint64 at = now();
    const bool over = std::abs(at - watched->leftOutAt) >= leftOutMsecs;
    const bool isNew = watched->leftOutNoted == 0;
    const bool isDue = over || std::abs(at - watched->leftOutNotedAt) >= minuteMsecs;
    if (isNew || (watched->leftOutNoted != watched->leftOutCount && isDue)) {
        EventChange change;
        change.ups = ups;
        change.kind = EventKind::Alarm;
        change.condition = leftOutCondition;
        change.severity = Severity::Critical; // as they are
        change.text =
            watched->leftOutCount == 1
                ? QStringLiteral("1 more alarm is not listed")
                : QStringLiteral("%1 more alarms are not listed").arg(watched->leftOutCount);
        change.at = at;
        add(change);
        watched->leftOutNoted = watched->leftOutCount;
        watched->leftOutNotedAt = at;
    }
    if (over) {
        add(endOf(ups, leftOutCondition, at));
        watched->leftOutCount = watched->leftOutNoted = 0;
    }
}

void Recorder::followConditions(UpsModel *ups, Watched *watched)
{
    const QVector<Condition> conditions = conditionsOf(*ups);
    const qint64 at = now();
    endConditions(*ups, conditions, at, watched);
    beginConditions(*ups, conditions, at, watched);
    noteLeftOut(ups->id(), watched);
}

void Recorder::endConditions(const UpsModel &ups, const QVector<Condition> &conditions, qint64 at,
                             Watched *watched)
{
    QSet<QString> present;
    for (const Condition &condition : conditions)
        present.insert(keyOf(condition));
    // A UPS that is silent says nothing of its conditions: they are neither over nor new.
    const bool silent = isSilent(ups);
    for (auto key = watched->leftOut.begin(); key != watched->leftOut.end();)
        key = present.contains(*key) || silent ? std::next(key) : watched->leftOut.erase(key);
    for (auto known = watched->present.begin(); known != watched->present.end();) {
        if (present.contains(known.key()) || (silent && known.key() != silence)) {
            ++known;
        } else {
            add(endOf(ups.id(), known.key(), at));
            if (known.key().startsWith(alarmPrefix))
                watched->overAt.insert(known.key(), at);
            known = watched->present.erase(known);
        }
    }
}

void Recorder::beginConditions(const UpsModel &ups, const QVector<Condition> &conditions, qint64 at,
                               Watched *watched)
{
    for (const Condition &condition : conditions) {
        const QString key = keyOf(condition);
        const auto known = watched->present.constFind(key);
        const bool isNew = known == watched->present.constEnd();
        if (!isNew && urgencyOf(condition.severity) <= urgencyOf(*known))
            continue;
        if (isNew && kindOf(condition) == EventKind::Alarm && leavesOut(key, watched))
            continue;
        add(beginOf(ups, condition, at));
        watched->present.insert(key, condition.severity);
    }
}

bool Recorder::leavesOut(const QString &key, Watched *watched)
{
    if (watched->leftOut.contains(key))
        return true;
    if (allowAlarm(key, watched))
        return false;
    watched->leftOut.insert(key);
    return true;
}

void Recorder::recordValues(const UpsModel &ups, Watched *watched)
{
    const qint64 at = now();
    const qint64 minute = floorTo(at, minuteMsecs);
    const bool nextMinute = minute != floorTo(watched->heardAt, minuteMsecs);
    const bool wentOn =
        watched->heardAt > 0 && at >= watched->heardAt && at - watched->heardAt <= longestHold;
    const Snapshot &snapshot = ups.snapshot();
    for (int i = 0; i < quantityCount; ++i) {
        float &last = watched->values.at(std::size_t(i));
        const std::optional<double> value = snapshot.value(Quantity(i));
        const float measured = value && std::isfinite(float(*value)) ? float(*value) : none;
        if (!std::isnan(last) && !wentOn) {
            addSample(ups.id(), i, watched->heardAt + 1, none);
            last = none;
        }
        // Each minute stands for itself: it begins with what the last one ended with.
        if (nextMinute && !std::isnan(last))
            addSample(ups.id(), i, minute, last);
        if (!isSame(measured, last))
            addSample(ups.id(), i, at, measured);
        last = measured;
    }
    watched->heardAt = at;
    if (nextMinute)
        sending.start(0);
}

void Recorder::addCommand(const CommandRecord &record)
{
    EventChange change;
    change.what = EventChange::What::Moment;
    change.kind = EventKind::Command;
    change.ups = record.ups;
    change.condition = QStringLiteral("command");
    change.severity = severityOf(record.outcome);
    change.text = textOf(record);
    change.value = record.value;
    change.user = record.user;
    change.at = record.time.isValid() ? record.time.toMSecsSinceEpoch() : now();
    add(change);
}

void Recorder::add(const EventChange &change)
{
    changes.append(change);
    if (!sending.isActive())
        sending.start(0);
}

void Recorder::addSample(const QString &ups, int quantity, qint64 at, float value)
{
    samples.append({ups, {at, Quantity(quantity), value}});
    if (!sending.isActive())
        sending.start(0);
}

void Recorder::send()
{
    sending.stop();
    noteServers();
    // Events first: what ended unseen ended before these samples.
    if (!changes.isEmpty())
        history->addEvents(changes);
    changes.clear();
    if (!samples.isEmpty())
        history->addSamples(samples, now());
    samples.clear();
}
