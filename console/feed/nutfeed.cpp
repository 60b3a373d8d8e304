// SPDX-License-Identifier: LicenseRef-all-rights-reserved

#include "nutfeed.h"

#include <QtCore/QTimer>

NutFeed::NutFeed(const NutAddress &address, const NutTimes &times, QObject *parent)
    : NutFeed(new NutServerFeed(address.server(), NutTls(), times), address.upsName, parent)
{
    server->setParent(this);
}

NutFeed::NutFeed(NutServerFeed *usedServer, const QString &name, QObject *parent)
    : UpsFeed(parent)
    , server(usedServer)
    , upsName(name)
{}

NutFeed::~NutFeed()
{
    NutFeed::stop();
}

void NutFeed::setPlace(const QString &namedAt)
{
    place = namedAt;
}

void NutFeed::start()
{
    if (running || !server)
        return;
    running = true;
    wantsEverything = true;
    setPending(Snapshot::lost(
        upsName, QStringLiteral("connecting to %1@%2").arg(upsName, server->host().toString())));
    server->join(this);
}

void NutFeed::stop()
{
    if (!running)
        return;
    running = false;
    isPending = false;
    isOfferPending = false;
    if (server)
        server->leave(this);
}

void NutFeed::setPending(const Snapshot &snapshot)
{
    latest = snapshot;
    isPending = true;
    server->deliverSoon();
}

void NutFeed::askForOffer()
{
    showsOffer = true;
    wantsOffer = true;
    if (server && running && !latest.isLost())
        server->askForOffer(this);
}

NutSession::Done NutFeed::reporter(const QString &name, const QString &value)
{
    const QPointer<NutFeed> guard(this);
    const QString by = user();
    return [=](CommandOutcome outcome, const QString &text) {
        if (guard)
            Q_EMIT guard->commandFinished({name, value, by, outcome, text});
    };
}

void NutFeed::run(const QString &name, const QString &value)
{
    if (server)
        server->session().run(upsName, name, value, reporter(name, value));
}

void NutFeed::set(const QString &name, const QString &value)
{
    if (server)
        server->session().set(upsName, name, value, reporter(name, value));
}

bool NutFeed::needsUser() const
{
    return true;
}

QString NutFeed::user() const
{
    return server ? server->session().user() : QString();
}

CommandServer NutFeed::commandServer() const
{
    if (!server)
        return {};
    return {server->host().toString(), server->session().isEncrypted(),
            server->host().isLoopback()};
}

QString NutFeed::userProblem() const
{
    return server ? server->session().forgottenFor() : QString();
}

void NutFeed::logOut()
{
    if (server)
        server->session().forgetUser();
}

void NutFeed::logIn(const QString &newUser, const QString &password)
{
    if (!server)
        return;
    server->userIsChecked = true; // here
    if (!server->session().setUser(newUser, password)) {
        Q_EMIT userChecked(CommandOutcome::Refused,
                           QStringLiteral("name and password must be there, and plain text"));
        return;
    }
    const QPointer<NutFeed> guard(this);
    server->session().probe(upsName, [guard, newUser](CommandOutcome outcome, const QString &text) {
        if (!guard)
            return;
        // Later, as the session is still at the answer.
        QTimer::singleShot(0, guard.data(), [=] {
            const bool isRefused = outcome == CommandOutcome::Refused;
            if (guard->server && guard->user() == newUser) {
                if (isRefused)
                    guard->server->session().refuseUser();
                else
                    guard->server->session().acceptUser();
            }
            // Whoever tried a user hears that it is refused; others have no problem with that.
            if (guard->server && !isRefused)
                Q_EMIT guard->server->userChecked(newUser, outcome, text);
            if (guard)
                Q_EMIT guard->userChecked(outcome, text);
        });
    });
}
