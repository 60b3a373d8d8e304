// SPDX-License-Identifier: LicenseRef-all-rights-reserved

#include "sitefeeds.h"

#include "feed/privatefile.h"
#include "options.h"

#include <QtCore/QFile>

#include <algorithm>
#include <utility>

namespace {

/// So many tries in a row are no news where a server was never reached.
constexpr int lossesBeforeNews = 3;

/// The entry of @p host, which is added where there is none.
ServerEntry *entryOf(SiteEntries *entries, const NutHost &host)
{
    if (ServerEntry *known = entries->find(host))
        return known;
    ServerEntry entry;
    entry.host = host;
    entry.site = host.toString();
    entries->servers.append(entry);
    return &entries->servers.last();
}

/// What the command line names beside its files.
bool takeArguments(const Options &options, SiteEntries *entries, QString *error)
{
    const auto takeTls = [&](ServerEntry *entry) {
        if (options.tls)
            entry->tls = options.tls;
        if (!options.authorities.isEmpty())
            entry->authorities = {options.authorities, {}};
    };
    for (const QString &text : options.upses) {
        const std::optional<NutAddress> address = NutAddress::parse(text, error);
        if (!address)
            return false;
        ServerEntry *entry = entryOf(entries, address->server());
        takeTls(entry);
        const bool known =
            std::any_of(entry->upses.cbegin(), entry->upses.cend(), [&](const UpsEntry &one) {
                return isSameUps(one.upsName, address->upsName);
            });
        if (!known)
            entry->upses.append({address->upsName, {}, {}, QStringLiteral("--ups ") + text});
    }
    for (const QString &text : options.servers) {
        const std::optional<NutHost> host = NutHost::parse(text, error);
        if (!host)
            return false;
        ServerEntry *entry = entryOf(entries, *host);
        takeTls(entry);
        entry->all = true;
    }
    return true;
}

bool takePrometheus(const Options &options, SiteEntries *entries, QString *error)
{
    if (options.prometheus.isEmpty())
        return true;
    if (!PromServer::parseUrl(options.prometheus, error))
        return false;
    PromEntry entry;
    entry.url = options.prometheus;
    entry.auth = {options.prometheusAuth, {}};
    entry.authorities = {options.authorities, {}};
    entries->prometheus.append(entry);
    return true;
}

/// Whether there is something to follow, of each server.
bool namesUpses(const Options &options, const SiteEntries &entries, QString *error)
{
    for (const ServerEntry &entry : entries.servers) {
        if (entry.all || !entry.upses.isEmpty())
            continue;
        *error = QStringLiteral("%1: the server has no ups; give 'ups = all', or names")
                     .arg(entry.place);
        return false;
    }
    if (options.simulates() || !entries.servers.isEmpty() || !entries.prometheus.isEmpty())
        return true;
    *error =
        QStringLiteral("%1:1: the file has no [server] and no [prometheus]").arg(options.config);
    return false;
}

using ReadFile = std::optional<QByteArray> (*)(const QString &, int, QString *);

/// Begins @p reason with the line that names @p file, where there is one.
void addPlace(const NamedFile &file, QString *reason)
{
    if (!file.place.isEmpty())
        *reason = file.place + QStringLiteral(": ") + *reason;
}

/// Reads what @p file names; a reason why not begins with the line that names it.
std::optional<QByteArray> readNamed(const NamedFile &file, ReadFile read, QString *error)
{
    std::optional<QByteArray> text = read(file.path, mostSiteBytes, error);
    if (!text)
        addPlace(file, error);
    return text;
}

/// The certificates in PEM form.
std::optional<QByteArray> readCertificates(const QString &path, int mostBytes, QString *error)
{
    std::optional<QByteArray> text = readSmallFile(path, mostBytes, error);
    if (text && QSslCertificate::fromData(*text, QSsl::Pem).isEmpty()) {
        *error = QStringLiteral("%1 has no certificate in PEM form").arg(path);
        return std::nullopt;
    }
    return text;
}

bool readAuthorities(const NamedFile &file, QList<QSslCertificate> *authorities, QString *error)
{
    if (file.path.isEmpty())
        return true;
    const std::optional<QByteArray> text = readNamed(file, readCertificates, error);
    if (text)
        *authorities = QSslCertificate::fromData(*text, QSsl::Pem);
    return text.has_value();
}

} // namespace

bool readSite(const Options &options, const QString &kept, SiteEntries *entries,
              QVector<Credentials> *users, QString *error)
{
    if (!options.config.isEmpty()) {
        const std::optional<QByteArray> text = readSmallFile(options.config, mostSiteBytes, error);
        if (!text)
            return false;
        std::optional<SiteEntries> read = parseSiteFile(*text, options.config, error);
        if (!read)
            return false;
        *entries = *read;
    }
    if (!takeArguments(options, entries, error) || !takePrometheus(options, entries, error) ||
        !namesUpses(options, *entries, error))
        return false;
    if (!options.credentials.isEmpty())
        entries->credentials = {options.credentials, {}};
    else if (entries->credentials.path.isEmpty() && QFile::exists(kept) && !options.simulates())
        entries->credentials.path = kept;
    if (entries->credentials.path.isEmpty())
        return true;
    const std::optional<QByteArray> text = readNamed(entries->credentials, readPrivateFile, error);
    if (!text)
        return false;
    const std::optional<QVector<Credentials>> read =
        parseCredentials(*text, entries->credentials.path, error);
    if (read)
        *users = *read;
    return read.has_value();
}

SiteFeeds::SiteFeeds(SiteModel *fedSite, QObject *parent)
    : QObject(parent)
    , site(fedSite)
{}

SiteFeeds::~SiteFeeds() = default;

bool SiteFeeds::add(const SiteEntries &entries, const QVector<Credentials> &users, QString *error,
                    const NutTimes &times, const PromTimes &promTimes)
{
    for (const ServerEntry &entry : entries.servers) {
        if (!addServer(entry, users, times, error))
            return false;
    }
    for (const PromEntry &entry : entries.prometheus) {
        if (!addPrometheus(entry, promTimes, error))
            return false;
    }
    return true;
}

bool SiteFeeds::addServer(const ServerEntry &entry, const QVector<Credentials> &users,
                          const NutTimes &times, QString *error)
{
    const auto user = std::find_if(users.cbegin(), users.cend(), [&entry](const Credentials &one) {
        return one.host == entry.host;
    });
    const bool hasUser = user != users.cend();
    NutTls tls;
    // Who names authorities wants them to be asked.
    tls.required = entry.tls.value_or((hasUser && !entry.host.isLoopback()) ||
                                      !entry.authorities.path.isEmpty());
    tls.requiredForPasswords = entry.tls.value_or(true);
    if (!readAuthorities(entry.authorities, &tls.authorities, error))
        return false;
    servers.push_back(std::make_unique<Server>());
    Server *server = servers.back().get();
    server->entry = entry;
    server->link = std::make_unique<NutServerFeed>(entry.host, tls, times);
    if (hasUser && !server->link->session().setUser(user->user, user->password)) {
        *error =
            QStringLiteral("the user of %1 has characters that no server takes").arg(entry.title());
        return false;
    }
    server->link->setTitle(entry.title());
    // Events keep the address, whatever the section is called later.
    site->addServer(entry.host.toString(), entry.title());
    for (const UpsEntry &ups : entry.upses)
        addUps(server, ups, false);
    follow(server);
    return true;
}

void SiteFeeds::follow(Server *server)
{
    const NutServerFeed *link = server->link.get();
    const QString address = server->entry.host.toString();
    const QString source = server->entry.title();
    connect(link, &NutServerFeed::userChecked, this,
            [this, source](const QString &name, CommandOutcome outcome, const QString &text) {
                if (outcome != CommandOutcome::Failed)
                    takeUser(source, name, outcome == CommandOutcome::Done ? QString() : text);
            });
    connect(link, &NutServerFeed::lost, this,
            [this, server, source, address](const QString &reason) {
                // A single UPS gives the reason itself.
                if (site->isGrowing() || site->count() > 1)
                    site->setProblem(source, reason);
                // Named UPSes are without communication themselves.
                if (server->entry.upses.isEmpty() && ++server->losses == lossesBeforeNews)
                    site->missServer(address, reason);
            });
    connect(link, &NutServerFeed::reached, this, [this, server, source, address] {
        site->meetServer(address);
        if (!server->entry.all)
            site->setProblem(source, QString());
        showUnseen(server);
    });
    if (!server->entry.all)
        return;
    site->setGrowing(true);
    connect(link, &NutServerFeed::found, this,
            [this, server](const QVector<NutUps> &all) { takeFound(server, all); });
}

bool SiteFeeds::addPrometheus(const PromEntry &entry, const PromTimes &times, QString *error)
{
    PromServer server;
    const std::optional<QUrl> url = PromServer::parseUrl(entry.url, error);
    if (!url || !readAuthorities(entry.authorities, &server.authorities, error))
        return false;
    server.url = *url;
    if (!entry.name.isEmpty())
        server.name = QStringLiteral("Prometheus ") + entry.name;
    server.job = entry.job;
    server.dialect = entry.dialect;
    server.upsLabel = entry.label;
    server.place = entry.place;
    server.dialectPlace = entry.dialectPlace;
    server.labelPlace = entry.labelPlace;
    if (!entry.auth.path.isEmpty()) {
        const std::optional<QByteArray> text = readNamed(entry.auth, readPrivateFile, error);
        if (!text || !server.takeSecrets(*text, entry.auth.path, error))
            return false;
        if (server.wouldLeak()) {
            *error = PromServer::leakWords();
            addPlace(entry.auth, error);
            return false;
        }
    }
    site->setGrowing(true);
    auto added = std::make_unique<Source>();
    added->entry = entry;
    // Two servers may have a UPS of the same name.
    added->isFirst = sources.empty();
    for (int i = 0; i < int(entry.upses.size()); ++i)
        added->named.insert(entry.upses.at(i).upsName, i);
    added->unseen = added->named;
    added->link = std::make_unique<PromSource>(server, times);
    sources.push_back(std::move(added));
    Source *source = sources.back().get();
    PromSource *link = source->link.get();
    // Events keep the name, wherever the server is later.
    source->title = entry.name.isEmpty()
                        ? link->name()
                        : QStringLiteral("%1 (%2)").arg(link->name(), url->authority());
    site->addServer(link->name(), source->title);
    connect(
        link, &PromSource::problemChanged, this, [this, source](const QString &text, bool isLost) {
            site->setProblem(source->title, text, isLost ? Severity::Unknown : Severity::Warning);
        });
    connect(link, &PromSource::found, this,
            [this, source](PromFeed *feed) { addPromFeed(source, feed); });
    connect(link, &PromSource::lost, this, [this, source](const QString &reason) {
        if (++source->losses == lossesBeforeNews)
            site->missServer(source->link->name(), reason);
    });
    connect(link, &PromSource::refreshed, this, [this, source] {
        site->meetServer(source->link->name());
        showUnseen(source);
    });
    return true;
}

void SiteFeeds::addPromFeed(Source *source, PromFeed *feed)
{
    const PromEntry &entry = source->entry;
    // The exact name goes before the one that several UPSes may have.
    UpsEntry own;
    for (const QString &name :
         {feed->upsName() + QLatin1Char('@') + feed->instance(), feed->upsName()}) {
        const auto named = source->named.constFind(name);
        if (named == source->named.constEnd())
            continue;
        source->unseen.remove(name);
        const UpsEntry &one = entry.upses.at(*named);
        own.name = own.name.isEmpty() ? one.name : own.name;
        own.site = own.site.isEmpty() ? one.site : own.site;
    }
    if (own.site.isEmpty())
        own.site = entry.site.isEmpty() ? feed->instance() : entry.site;
    const QString id =
        source->isFirst ? feed->key() : feed->key() + QStringLiteral(", ") + source->link->name();
    UpsModel *model = site->add(id);
    model->setNames(own.name, own.site);
    model->setFeed(feed);
    promFeeds.insert(id, feed);
    source->hasUpses = true;
    feed->start();
}

void SiteFeeds::showUnseen(Source *source)
{
    // Where the server has no UPS at all, it has a problem of its own.
    const bool any = !source->unseen.isEmpty() && source->hasUpses;
    const int first = any ? *std::min_element(source->unseen.cbegin(), source->unseen.cend()) : 0;
    showUnseen(source->title, any ? &source->entry.upses.at(first) : nullptr,
               int(source->unseen.size()), &source->unseenPlace);
}

void SiteFeeds::showUnseen(Server *server)
{
    const QStringList unknown = server->link->unknownUpses();
    const UpsEntry *first = nullptr;
    int count = 0;
    if (!unknown.isEmpty()) {
        const QSet<QString> names(unknown.cbegin(), unknown.cend());
        for (const UpsEntry &ups : std::as_const(server->entry.upses)) {
            if (!names.contains(ups.upsName))
                continue;
            first = first ? first : &ups;
            ++count;
        }
    }
    showUnseen(server->entry.title(), first, count, &server->unseenPlace);
}

/// What the file or an option names and the server does not have is a mistake in one of them. The
/// problem has the place of the @p first of @p count such names; null: there is none.
void SiteFeeds::showUnseen(const QString &server, const UpsEntry *first, int count,
                           QString *shownPlace)
{
    const QString place = first ? first->place : QString();
    if (*shownPlace != place)
        site->setProblem(*shownPlace, QString());
    *shownPlace = place;
    if (place.isEmpty())
        return;
    QString text = QStringLiteral("%1 has no UPS '%2'").arg(server, first->upsName);
    if (count > 1)
        text += QStringLiteral(" and %1 more that are named").arg(count - 1);
    site->setProblem(place, text, Severity::Warning);
    if (misnamed.contains(place))
        return;
    misnamed.insert(place);
    Q_EMIT nameMissed(place + QStringLiteral(": ") + text);
}

PromFeed *SiteFeeds::promFeed(const QString &upsId) const
{
    return promFeeds.value(upsId);
}

void SiteFeeds::start()
{
    for (const auto &source : sources)
        source->link->start();
    for (const auto &feed : feeds)
        feed->start();
    for (const auto &server : servers) {
        if (!server->entry.all)
            continue;
        site->setProblem(server->entry.title(), QStringLiteral("connecting"), Severity::Normal);
        server->link->discover();
    }
}

bool SiteFeeds::keepUser(const QString &path, const QString &upsId, const QString &user,
                         const QString &password, QString *error)
{
    const std::optional<NutAddress> ups = NutAddress::parse(upsId, error);
    if (!ups || path.isEmpty())
        return false;
    QByteArray text;
    if (QFile::exists(path)) {
        // One that cannot be read is not replaced either.
        const std::optional<QByteArray> present = readPrivateFile(path, mostSiteBytes, error);
        if (!present)
            return false;
        text = *present;
    }
    const std::optional<QByteArray> changed =
        withCredentials(text, {ups->server(), user, password}, path, error);
    return changed && writePrivateFile(path, *changed, error);
}

/// Reports a user whom @p server refuses, until it takes one.
void SiteFeeds::takeUser(const QString &server, const QString &user, const QString &problem)
{
    const QString before = refusedUsers.take(server);
    if (!before.isEmpty())
        site->setProblem(before, QString());
    if (problem.isEmpty())
        return;
    const QString source = user + QLatin1Char('@') + server;
    refusedUsers.insert(server, source);
    site->setProblem(source, problem, Severity::Warning);
}

void SiteFeeds::addUps(Server *server, const UpsEntry &ups, bool begin)
{
    const ServerEntry &entry = server->entry;
    const QString id = NutAddress{ups.upsName, entry.host.host, entry.host.port}.toString();
    // A server has each name once, whatever its case here and there.
    const QString key = ups.upsName.toLower();
    if (feeds.size() >= std::size_t(mostEntries) || server->names.contains(key))
        return;
    server->names.insert(key);
    UpsModel *model = site->add(id);
    model->setNames(ups.name, ups.site.isEmpty() ? entry.site : ups.site);
    feeds.push_back(std::make_unique<NutFeed>(server->link.get(), ups.upsName));
    feeds.back()->setPlace(ups.place);
    model->setFeed(feeds.back().get());
    if (begin)
        feeds.back()->start();
}

void SiteFeeds::takeFound(Server *server, const QVector<NutUps> &all)
{
    site->setProblem(server->entry.title(),
                     all.isEmpty() ? QStringLiteral("the server has no UPS") : QString(),
                     Severity::Warning);
    for (const NutUps &ups : all) {
        // What the server describes names a UPS, unless it is the default of an empty file.
        const bool described = ups.description != QLatin1String("Description unavailable");
        addUps(server, {ups.name, described ? ups.description : QString(), {}, {}}, true);
    }
    // Now its UPSes are known.
    site->meetServer(server->entry.host.toString());
}
