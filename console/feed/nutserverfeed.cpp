// SPDX-License-Identifier: LicenseRef-all-rights-reserved

#include "nutserverfeed.h"

#include "nutfeed.h"
#include "nutlistreader.h"
#include "nutmapping.h"
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

/// What a UPS offers comes in two turns: the names, and all that is to know of them. The last
/// answer of all delivers it.
void NutServerFeed::askForOffer(NutFeed *feed)
{
    // The server lists no command until the driver has handed over everything.
    if (feed->status == QLatin1String("WAIT"))
        return;
    constexpr int mostOffered = 200;
    constexpr int longest = 200;
    const auto text = [](const QByteArray &bytes) {
        return plainText(QString::fromUtf8(bytes), longest);
    };
    feed->wantsOffer = false;
    const QPointer<NutFeed> asking(feed);
    const QByteArray ups = feed->upsName.toLatin1();
    const auto offer = std::make_shared<Offer>();
    const auto ask = [this](const QByteArray &question, NutLink::Answer take) {
        link.ask(question, [this, take](const NutReader &answer) {
            if (answer.state() == NutReader::State::Complete)
                take(answer);
            answered();
        });
    };
    ask("LIST CMD " + ups, [=](const NutReader &names) {
        for (const QVector<QByteArray> &row : names.rows()) {
            const QString name = QString::fromUtf8(row.value(0));
            if (!isNutName(name) || offer->commands.size() >= mostOffered)
                continue;
            const int index = int(offer->commands.size());
            offer->commands.append({name, {}});
            ask("GET CMDDESC " + ups + ' ' + row.value(0), [=](const NutReader &answer) {
                offer->commands[index].description = text(answer.rows().value(0).value(0));
            });
        }
    });
    link.ask("LIST RW " + ups, [=](const NutReader &names) {
        for (const QVector<QByteArray> &row : names.rows()) {
            const QString name = QString::fromUtf8(row.value(0));
            if (!isNutName(name) || offer->settings.size() >= mostOffered)
                continue;
            const int index = int(offer->settings.size());
            OfferedSetting setting;
            setting.name = name;
            setting.value = text(row.value(1));
            offer->settings.append(setting);
            const QByteArray subject = ups + ' ' + row.value(0);
            ask("GET DESC " + subject, [=](const NutReader &answer) {
                offer->settings[index].description = text(answer.rows().value(0).value(0));
            });
            ask("GET TYPE " + subject, [=](const NutReader &answer) {
                const QVector<QByteArray> words = answer.rows().value(0);
                OfferedSetting &one = offer->settings[index];
                one.isNumber = words.contains("NUMBER");
                for (const QByteArray &word : words) {
                    if (word.startsWith("STRING:"))
                        one.longest = std::max(word.mid(int(sizeof "STRING")).toInt(), 0);
                }
            });
            ask("LIST ENUM " + subject, [=](const NutReader &answer) {
                for (const QVector<QByteArray> &choice : answer.rows()) {
                    if (offer->settings.at(index).choices.size() < mostOffered)
                        offer->settings[index].choices += text(choice.value(0));
                }
            });
            ask("LIST RANGE " + subject, [=](const NutReader &answer) {
                for (const QVector<QByteArray> &range : answer.rows()) {
                    const auto from = nutNumber(QString::fromUtf8(range.value(0)));
                    const auto to = nutNumber(QString::fromUtf8(range.value(1)));
                    if (from && to && *from <= *to &&
                        offer->settings.at(index).ranges.size() < mostOffered)
                        offer->settings[index].ranges.append({*from, *to});
                }
            });
        }
        // Answers keep their order: behind this one all is known.
        link.ask("VER", [=](const NutReader &) {
            if (asking && asking->running) {
                // Commands come last from the driver: none may be too early, and is asked again.
                const bool none = offer->commands.isEmpty();
                if (none && !asking->offeredNone) {
                    asking->wantsOffer = true;
                } else {
                    asking->offer = *offer;
                    asking->isOfferPending = true;
                    deliverSoon();
                }
                asking->offeredNone = none;
            }
            answered();
        });
        answered();
    });
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
