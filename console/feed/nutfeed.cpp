#include "nutfeed.h"

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
    if (server)
        server->leave(this);
}

void NutFeed::setPending(const Snapshot &snapshot)
{
    latest = snapshot;
    isPending = true;
    server->deliverSoon();
}
