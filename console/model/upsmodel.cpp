// SPDX-License-Identifier: LicenseRef-all-rights-reserved

#include "upsmodel.h"

#include <algorithm>
#include <utility>

namespace {

const Condition *find(const QVector<Condition> &conditions, const QString &id)
{
    // NOLINTNEXTLINE(readability-qualified-auto): the iterator is a pointer in Qt 5 alone.
    const auto found = std::find_if(conditions.cbegin(), conditions.cend(),
                                    [&id](const Condition &one) { return one.id == id; });
    return found == conditions.cend() ? nullptr : &*found;
}

/// Whether a snapshot says nothing about conditions.
bool isSilent(const Snapshot &snapshot)
{
    return snapshot.isLost() || snapshot.tokens.testFlag(StatusToken::Waiting);
}

} // namespace

Clock systemClock()
{
    return [] { return QDateTime::currentDateTimeUtc(); };
}

UpsModel::UpsModel(const QString &id, const Clock &usedClock, QObject *parent)
    : QObject(parent)
    , name(id)
    , clock(usedClock)
    , line(headlineOf(latest))
{
    updateConditions();
}

const QString &UpsModel::id() const
{
    return name;
}

void UpsModel::setNames(const QString &newName, const QString &newSite)
{
    if (ownName == newName && group == newSite)
        return;
    ownName = newName;
    group = newSite;
    Q_EMIT changed();
}

QString UpsModel::title() const
{
    if (!ownName.isEmpty())
        return ownName;
    return latest.name.isEmpty() ? name : latest.name;
}

const QString &UpsModel::site() const
{
    return group;
}

void UpsModel::setFeed(UpsFeed *newFeed)
{
    if (feed == newFeed)
        return;
    if (feed)
        feed->disconnect(this);
    feed = newFeed;
    if (feed) {
        connect(feed, &UpsFeed::snapshotReady, this, &UpsModel::take);
        connect(feed, &QObject::destroyed, this, &UpsModel::commandsChanged);
        connect(feed, &UpsFeed::offerReady, this, [this](const Offer &newOffer) {
            offered = newOffer;
            Q_EMIT offerChanged();
        });
        connect(feed, &UpsFeed::commandFinished, this, [this](const CommandResult &result) {
            underWay = std::max(underWay - 1, 0);
            finishCommand(result);
        });
        connect(feed, &UpsFeed::userChecked, this, &UpsModel::userChecked);
    }
    if (feed)
        feed->setFollowed(followed);
    offered = Offer();
    underWay = 0;
    Q_EMIT offerChanged();
    Q_EMIT commandsChanged();
}

void UpsModel::setFollowed(bool nowFollowed)
{
    followed = nowFollowed;
    if (feed)
        feed->setFollowed(followed);
}

bool UpsModel::isKeptElsewhere() const
{
    return feed && feed->isKeptElsewhere();
}

void UpsModel::take(const Snapshot &snapshot)
{
    const QPointer<UpsModel> guard(this);
    if (!snapshot.isLost())
        lastHeard = clock();
    const bool differs = snapshot != latest;
    if (differs) {
        if (snapshot.link != latest.link || snapshot.tokens != latest.tokens)
            line = headlineOf(snapshot);
        scales.take(snapshot, latest);
        latest = snapshot;
        updateConditions();
    }
    if (guard && differs)
        Q_EMIT changed();
    if (guard)
        Q_EMIT heard();
}

void UpsModel::updateConditions()
{
    const QVector<Condition> before = present;
    const QDateTime now = clock();
    QVector<Condition> next = conditionsOf(latest, before + beforeSilence);
    for (Condition &condition : next) {
        const Condition *old = find(before, condition.id);
        if (!old)
            old = find(beforeSilence, condition.id);
        condition.since = old ? old->since : now;
    }
    QVector<Condition> known = before; // whose begin was announced
    QVector<Condition> ended;
    if (isSilent(latest)) {
        for (const Condition &condition : before) {
            const bool ofTheUps = condition.id != QLatin1String("no-communication");
            if (ofTheUps)
                beforeSilence.append(condition);
            else if (!find(next, condition.id))
                ended.append(condition);
        }
    } else {
        known += beforeSilence;
        beforeSilence.clear();
        for (const Condition &condition : std::as_const(known)) {
            if (!find(next, condition.id))
                ended.append(condition);
        }
    }
    present = next;

    const QPointer<UpsModel> guard(this);
    for (const Condition &condition : std::as_const(ended)) {
        if (guard)
            Q_EMIT conditionEnded(condition);
    }
    for (const Condition &condition : std::as_const(next)) {
        if (guard && !find(known, condition.id))
            Q_EMIT conditionBegan(condition);
    }
}

const Snapshot &UpsModel::snapshot() const
{
    return latest;
}

const Headline &UpsModel::headline() const
{
    return line;
}

const QVector<Condition> &UpsModel::conditions() const
{
    return present;
}

const Condition *UpsModel::worst() const
{
    return present.isEmpty() ? nullptr : &present.first();
}

Severity UpsModel::severity() const
{
    return present.isEmpty() ? line.severity : worseOf(line.severity, present.first().severity);
}

QDateTime UpsModel::heardAt() const
{
    return lastHeard;
}

Scale UpsModel::scale(Quantity quantity) const
{
    return scales.scale(quantity);
}

Reading UpsModel::reading(Quantity quantity) const
{
    return readingOf(latest, quantity);
}

QString UpsModel::timeLeft() const
{
    const std::optional<double> seconds = latest.value(Quantity::BatteryRuntime);
    if (!line.showsTimeLeft || !seconds || *seconds < 0.0)
        return QString();
    return Values::timeLeft(seconds);
}

bool UpsModel::isTimeLeftLow() const
{
    const Measure &measure = latest.measure(Quantity::BatteryRuntime);
    return line.showsTimeLeft && measure.value && measure.low && *measure.value < *measure.low;
}

bool UpsModel::supports(Command command) const
{
    return feed && feed->supports(command);
}

bool UpsModel::command(Command command)
{
    const QPointer<UpsModel> guard(this);
    const bool taken = feed && feed->command(command);
    if (guard)
        Q_EMIT commandGiven(command, taken);
    return taken;
}

const Offer &UpsModel::offer() const
{
    return offered;
}

void UpsModel::askForOffer()
{
    if (feed)
        feed->askForOffer();
}

void UpsModel::run(const QString &commandName, const QString &value)
{
    if (!feed)
        return;
    ++underWay;
    Q_EMIT commandBegan(commandName, value);
    if (feed)
        feed->run(commandName, value);
}

void UpsModel::set(const QString &variableName, const QString &value)
{
    if (!feed)
        return;
    ++underWay;
    Q_EMIT commandBegan(variableName, value);
    if (feed)
        feed->set(variableName, value);
}

int UpsModel::commandsUnderWay() const
{
    return underWay;
}

bool UpsModel::needsUser() const
{
    return feed && feed->needsUser();
}

QString UpsModel::user() const
{
    return feed ? feed->user() : QString();
}

CommandServer UpsModel::commandServer() const
{
    return feed ? feed->commandServer() : CommandServer();
}

QString UpsModel::userProblem() const
{
    return feed ? feed->userProblem() : QString();
}

void UpsModel::logOut()
{
    if (feed)
        feed->logOut();
}

void UpsModel::logIn(const QString &newUser, const QString &password)
{
    if (feed)
        feed->logIn(newUser, password);
}

void UpsModel::finishCommand(const CommandResult &result)
{
    CommandRecord record;
    static_cast<CommandResult &>(record) = result;
    record.ups = name;
    record.time = clock();
    Q_EMIT commandFinished(record);
}
