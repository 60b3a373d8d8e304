// SPDX-License-Identifier: LicenseRef-all-rights-reserved

#include "nutserverfeed.h"

#include "nutfeed.h"
#include "nutlistreader.h"
#include "nutmapping.h"
#include "nutoffer.h"
#include "plaintext.h"

#include <algorithm>
#include <memory>

namespace {

/// Rounds between two questions for the server's UPSes.
constexpr int discoveryRounds = 60;

const QLatin1String unknownUps("UNKNOWN-UPS");

/// @p place names the UPS here, and may be empty.
QString wordsForError(const QString &code, const QString &place)
{
    if (code == QLatin1String("DATA-STALE"))
        return QStringLiteral("the UPS's driver gives no fresh data");
    if (code == QLatin1String("DRIVER-NOT-CONNECTED"))
        return QStringLiteral("the UPS's driver is not running");
    if (code == unknownUps) {
        const QString words = QStringLiteral("the server knows no such UPS");
        return place.isEmpty() ? words : reasonAt(words, place);
    }
    return QStringLiteral("the server answers \"%1\"").arg(plainText(code, 40));
}

} // namespace

NutServerFeed::NutServerFeed(const NutHost &host, const NutTls &tls, const NutTimes &wantedTimes,
                             QObject *parent)
    : QObject(parent)
    , server(host)
    , shownName(host.toString())
    , times(wantedTimes)
    , link(host, tls)
    , commands(host, tls.withPassword(host))
    , retryRest(wantedTimes.firstRetry)
{
    for (QTimer *timer : {&deadline, &roundDeadline, &next, &delivery})
        timer->setSingleShot(true);
    delivery.setInterval(0);
    connect(&link, &NutLink::opened, this, [this] {
        askedForUpses = false;
        askAll();
    });
    connect(&link, &NutLink::failed, this, &NutServerFeed::takeLoss);
    for (QTimer *timer : {&deadline, &roundDeadline}) {
        connect(timer, &QTimer::timeout, this, [this, timer] {
            link.drop();
            takeLoss(QStringLiteral("no answer for %1 s").arg(timer->interval() / 1000.0));
        });
    }
    connect(&next, &QTimer::timeout, this, [this] {
        if (phase == Phase::Resting)
            askAll();
        else
            connectToServer();
    });
    connect(&delivery, &QTimer::timeout, this, &NutServerFeed::deliver);
}

NutServerFeed::~NutServerFeed() = default;

const NutHost &NutServerFeed::host() const
{
    return server;
}

void NutServerFeed::setTitle(const QString &title)
{
    shownName = title;
}

QStringList NutServerFeed::unknownUpses() const
{
    QStringList names;
    for (const QPointer<NutFeed> &feed : feeds) {
        if (feed && feed->isUnknown)
            names += feed->upsName;
    }
    return names;
}

void NutServerFeed::discover()
{
    discovers = true;
    if (phase == Phase::Idle)
        connectToServer();
}

NutSession &NutServerFeed::session()
{
    return commands;
}

void NutServerFeed::join(NutFeed *feed)
{
    feeds.emplace_back(feed);
    feed->slot = lastSlot++;
    if (phase == Phase::Idle) {
        retryRest = times.firstRetry;
        connectToServer();
    } else if (phase == Phase::Resting) {
        next.start(0);
    }
}

void NutServerFeed::leave(NutFeed *feed)
{
    feeds.erase(
        std::remove_if(feeds.begin(), feeds.end(),
                       [feed](const QPointer<NutFeed> &one) { return !one || one == feed; }),
        feeds.end());
    if (!feeds.empty() || discovers)
        return;
    phase = Phase::Idle;
    for (QTimer *timer : {&deadline, &roundDeadline, &next, &delivery})
        timer->stop();
    link.close();
}

void NutServerFeed::deliverSoon()
{
    if (!delivery.isActive())
        delivery.start();
}

void NutServerFeed::deliver()
{
    // Receivers start, stop and delete feeds, and the whole of this too.
    const QPointer<NutServerFeed> guard(this);
    const std::vector<QPointer<NutFeed>> present = feeds;
    for (const QPointer<NutFeed> &feed : present) {
        if (feed && feed->isPending) {
            feed->isPending = false;
            const Snapshot snapshot = feed->latest;
            Q_EMIT feed->snapshotReady(snapshot);
        }
        if (guard && feed && feed->isOfferPending) {
            feed->isOfferPending = false;
            const Offer offer = feed->offer;
            Q_EMIT feed->offerReady(offer);
        }
        if (!guard)
            return;
    }
}

void NutServerFeed::connectToServer()
{
    phase = Phase::Connecting;
    link.open(link.isTlsRequired() ? std::max(times.secure, times.answer) : times.answer);
}

void NutServerFeed::askAll()
{
    phase = Phase::Asking;
    deadline.start(times.answer);
    roundDeadline.start(times.longestRound);
    if (discovers && (!askedForUpses || round % discoveryRounds == 0))
        askForUpses();
    const bool alone = feeds.size() == 1;
    for (const QPointer<NutFeed> &feed : feeds) {
        if (alone || feed->wantsEverything || (feed->slot + round) % std::max(times.rounds, 1) == 0)
            askForEverything(feed);
        else
            askForStatus(feed);
    }
    ++round;
    // Nobody to ask about: the server's list of UPSes may name some later.
    if (link.pending() == 0)
        answered();
}

void NutServerFeed::askForUpses()
{
    askedForUpses = true;
    link.ask("LIST UPS", [this](const NutReader &answer) {
        takeUpses(answer);
        answered();
    });
}

void NutServerFeed::takeUpses(const NutReader &answer)
{
    if (answer.state() != NutReader::State::Complete)
        return;
    QVector<NutUps> all;
    for (const QVector<QByteArray> &row : answer.rows()) {
        const QString name = QString::fromUtf8(row.value(0));
        constexpr int longest = 200;
        if (isNutUpsName(name))
            all.append({name, plainText(QString::fromUtf8(row.value(1)), longest)});
    }
    Q_EMIT found(all);
}

void NutServerFeed::askForStatus(NutFeed *feed)
{
    const QPointer<NutFeed> asking(feed);
    link.ask("GET VAR " + feed->upsName.toLatin1() + " ups.status",
             [this, asking](const NutReader &answer) {
                 if (asking && asking->running) {
                     // Whatever differs shows in the list, with all that belongs to it.
                     if (answer.state() == NutReader::State::Complete &&
                         answer.firstWord() == asking->status)
                         asking->setPending(asking->latest);
                     else
                         askForEverything(asking);
                 }
                 answered();
             });
}

void NutServerFeed::askForEverything(NutFeed *feed)
{
    const QPointer<NutFeed> asking(feed);
    link.ask(std::make_unique<NutListReader>(feed->upsName),
             [this, asking](const NutReader &answer) {
                 if (asking && asking->running) {
                     asking->wantsEverything = answer.state() != NutReader::State::Complete;
                     asking->isUnknown = answer.problem() == unknownUps;
                     if (asking->wantsEverything) {
                         asking->wantsOffer = asking->showsOffer;
                         asking->setPending(Snapshot::lost(
                             asking->upsName, wordsForError(answer.problem(), asking->place)));
                     } else {
                         retryRest = times.firstRetry;
                         const NutVariables &variables =
                             static_cast<const NutListReader &>(answer).variables();
                         if (asking->latest.isLost() || variables != asking->variables) {
                             asking->variables = variables;
                             asking->status = variables.value(QStringLiteral("ups.status"));
                             asking->latest = snapshotOf(asking->upsName, variables);
                         }
                         asking->setPending(asking->latest);
                         if (asking->wantsOffer)
                             askForOffer(asking);
                         checkUser(asking);
                     }
                 }
                 answered();
             });
}

void NutServerFeed::askForOffer(NutFeed *feed)
{
    // The server lists no command until the driver has handed over everything.
    if (feed->status == QLatin1String("WAIT"))
        return;
    feed->wantsOffer = false;
    NutOffer::ask(
        &link, feed->upsName, [this] { answered(); },
        [this, asking = QPointer<NutFeed>(feed)](const Offer &offer) {
            if (asking && asking->running)
                takeOffer(asking, offer);
        });
}

void NutServerFeed::takeOffer(NutFeed *feed, const Offer &offer)
{
    // Commands come last from the driver: none may be too early, and is asked again.
    const bool none = offer.commands.isEmpty();
    if (none && !feed->offeredNone) {
        feed->wantsOffer = true;
    } else {
        feed->offer = offer;
        feed->isOfferPending = true;
        deliverSoon();
    }
    feed->offeredNone = none;
}

/// Check users from a file at once, not at the first command. This takes a UPS whose driver runs,
/// so another try may follow.
void NutServerFeed::checkUser(const NutFeed *feed)
{
    if (userIsChecked || checksUser || !commands.hasUser() ||
        (lastCheck.isValid() && lastCheck.elapsed() < times.longestRetry))
        return;
    checksUser = true;
    lastCheck.start();
    const QString user = commands.user();
    commands.probe(feed->upsName, [=](CommandOutcome outcome, const QString &text) {
        checksUser = false;
        userIsChecked = userIsChecked || outcome != CommandOutcome::Failed;
        // Later, as the session is still at the answer.
        if (outcome != CommandOutcome::Failed)
            QTimer::singleShot(0, this, [=] { takeCheck(user, outcome, text); });
    });
}

void NutServerFeed::takeCheck(const QString &user, CommandOutcome outcome, const QString &text)
{
    // Another may have logged in meanwhile.
    if (commands.user() != user)
        return;
    // Do not name a user whom the server refuses.
    if (outcome == CommandOutcome::Refused)
        commands.forgetUser(QStringLiteral("%1 is refused: %2").arg(user, text));
    const QPointer<NutServerFeed> guard(this);
    const std::vector<QPointer<NutFeed>> present = feeds;
    Q_EMIT userChecked(user, outcome, text);
    for (const QPointer<NutFeed> &feed : present) {
        if (guard && feed)
            Q_EMIT feed->userChecked(outcome, text);
    }
}

void NutServerFeed::answered()
{
    deadline.start(times.answer);
    if (phase != Phase::Asking || link.pending() > 0)
        return;
    phase = Phase::Resting;
    roundDeadline.stop();
    next.start(times.poll);
    Q_EMIT reached();
}

void NutServerFeed::takeLoss(const QString &reason)
{
    if (phase == Phase::Idle)
        return;
    phase = Phase::Retrying;
    deadline.stop();
    roundDeadline.stop();
    next.start(retryRest);
    retryRest = std::min(2 * retryRest, times.longestRetry);
    for (const QPointer<NutFeed> &feed : feeds) {
        feed->wantsEverything = true;
        feed->wantsOffer = feed->showsOffer;
        feed->setPending(Snapshot::lost(feed->upsName, reasonAt(reason, shownName)));
    }
    Q_EMIT lost(reason);
}
