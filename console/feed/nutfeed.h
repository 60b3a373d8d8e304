// SPDX-License-Identifier: LicenseRef-all-rights-reserved

#pragma once

#include "nutlistreader.h"
#include "nutserverfeed.h"
#include "upsfeed.h"

/// Follows a UPS through a server of Network UPS Tools, over a connection that the server's other
/// UPSes share.
///
/// Where the server refuses, closes, falls silent, talks anything but the protocol or says that its
/// data are stale, a snapshot without communication comes at once, or for silence after
/// NutTimes::answer; then the feed reconnects by itself. A snapshot of a server's only UPS is never
/// older than NutTimes::answer. It contains what the server knows: how soon the server notices a
/// dead driver is not the feed's concern.
class NutFeed : public UpsFeed
{
    Q_OBJECT

public:
    /// With a connection of its own, in the clear.
    explicit NutFeed(const NutAddress &address, const NutTimes &times = NutTimes(),
                     QObject *parent = nullptr);
    /// Over the connection of @p server. Ends with it: from then on nothing comes.
    NutFeed(NutServerFeed *server, const QString &upsName, QObject *parent = nullptr);
    ~NutFeed() override;

    /// What names the UPS here, such as "site.ini:3", for where the server does not have it.
    void setPlace(const QString &place);

    void start() override;
    void stop() override;

    void askForOffer() override;
    void run(const QString &name, const QString &value) override;
    void set(const QString &name, const QString &value) override;
    bool needsUser() const override;
    QString user() const override;
    CommandServer commandServer() const override;
    QString userProblem() const override;
    void logOut() override;
    void logIn(const QString &user, const QString &password) override;

private:
    friend class NutServerFeed;

    void setPending(const Snapshot &snapshot);
    NutSession::Done reporter(const QString &name, const QString &value);

    QPointer<NutServerFeed> server;
    const QString upsName;
    QString place;
    bool running = false;
    // For the connection:
    int slot = 0;
    bool wantsEverything = true;
    bool isUnknown = false; // to the server
    NutVariables variables; // of the last list
    QString status;         // as it was there
    Snapshot latest;
    bool isPending = false;
    bool wantsOffer = false; // as soon as the UPS is reached
    Offer offer;
    bool isOfferPending = false;
    bool offeredNone = false; // the last time
    bool showsOffer = false;  // somebody asked for it
};
