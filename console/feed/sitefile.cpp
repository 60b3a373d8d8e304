// SPDX-License-Identifier: LicenseRef-all-rights-reserved

#include "sitefile.h"

#include "plaintext.h"
#include "prometheus.h"

#include <QtCore/QDir>
#include <QtCore/QFileInfo>
#include <QtCore/QHash>
#include <QtCore/QMap>
#include <QtCore/QSet>

#include <algorithm>

namespace {

constexpr int longestLine = 4096;
constexpr int longestText = 200;

/// The kinds of lines that a configuration has: "[section]", "key = value", comments with # or ;
/// at the line's start, and empty lines.
struct Line
{
    enum class Kind { Nothing, Section, Value, Wrong };

    Kind kind = Kind::Wrong;
    QString name; // of the section, or the key
    QString value;
};

Line lineOf(const QByteArray &bytes)
{
    const QString text = QString::fromUtf8(bytes).trimmed();
    if (text.isEmpty() || text.startsWith(QLatin1Char('#')) || text.startsWith(QLatin1Char(';')))
        return {Line::Kind::Nothing, {}, {}};
    if (text.startsWith(QLatin1Char('[')) && text.endsWith(QLatin1Char(']')))
        return {Line::Kind::Section, text.mid(1, text.size() - 2).simplified(), {}};
    const int equals = int(text.indexOf(QLatin1Char('=')));
    const QString key = text.left(std::max(equals, 0)).trimmed();
    if (equals < 0 || key.isEmpty())
        return {};
    return {Line::Kind::Value, key, text.mid(equals + 1).trimmed()};
}

/// Reads a file section by section, and stops at the first thing that is wrong.
class SectionReader
{
public:
    virtual ~SectionReader() = default;

    /// @return the reason with the place; empty when all is well.
    QString read(const QByteArray &text, const QString &fileName)
    {
        file = fileName;
        QByteArray rest = text.startsWith("\xef\xbb\xbf") ? text.mid(3) : text;
        const QList<QByteArray> lines = rest.split('\n');
        for (number = 1; number <= int(lines.size()); ++number) {
            const QString reason = take(lines.at(number - 1));
            if (!reason.isEmpty())
                return place() + QStringLiteral(": ") + reason;
        }
        const QString reason = end();
        return reason.isEmpty() ? QString() : place() + QStringLiteral(": ") + reason;
    }

protected:
    /// Each returns the reason why not, or nothing.
    virtual QString beginSection(const QString &name) = 0;
    virtual QString takeValue(const QString &key, const QString &value) = 0;
    virtual QString endSection() = 0;

    /// The file and the present line.
    QString place() const
    {
        return QStringLiteral("%1:%2").arg(file).arg(number);
    }

private:
    QString take(const QByteArray &bytes)
    {
        if (bytes.size() > longestLine)
            return QStringLiteral("the line has more than %1 bytes").arg(longestLine);
        if (bytes.contains('\0'))
            return QStringLiteral("the line is no text");
        const Line line = lineOf(bytes);
        switch (line.kind) {
        case Line::Kind::Nothing:
            return {};
        case Line::Kind::Section: {
            const int here = number;
            QString reason = end();
            if (!reason.isEmpty())
                return reason;
            begin = number = here;
            keys.clear();
            return beginSection(line.name);
        }
        case Line::Kind::Value:
            if (!begin)
                return QStringLiteral("a [section] must come first");
            if (keys.contains(line.name))
                return QStringLiteral("'%1' is there twice").arg(line.name.left(longestText));
            keys.insert(line.name);
            return takeValue(line.name, line.value);
        case Line::Kind::Wrong:
            break;
        }
        return QStringLiteral("neither [section] nor key = value");
    }

    /// Whatever a section lacks is reported where it begins.
    QString end()
    {
        if (!begin)
            return {};
        number = begin;
        return endSection();
    }

    QString file;
    int number = 0; // of the present line
    int begin = 0;  // of the present section
    QSet<QString> keys;
};

QString unknownKey(const QString &key, const QString &known)
{
    return QStringLiteral("unknown key '%1'; there are %2").arg(key.left(longestText), known);
}

bool isLabelName(const QString &text)
{
    const auto fits = [](QChar c) {
        const ushort code = c.unicode();
        return (code >= 'a' && code <= 'z') || (code >= 'A' && code <= 'Z') ||
               (code >= '0' && code <= '9') || code == '_';
    };
    return !text.isEmpty() && text.size() <= longestText && !(text.at(0) <= QLatin1Char('9')) &&
           std::all_of(text.cbegin(), text.cend(), fits);
}

class SiteReader : public SectionReader
{
public:
    explicit SiteReader(const QString &fileName)
        : directory(QFileInfo(fileName).absoluteDir())
    {}

    SiteEntries result;

protected:
    QString beginSection(const QString &name) override
    {
        const QString kind = name.section(QLatin1Char(' '), 0, 0);
        subject = name.section(QLatin1Char(' '), 1);
        const int serverName = int(subject.lastIndexOf(QLatin1Char('@'))) + 1;
        const QString key = kind + QLatin1Char(' ') + subject.left(serverName) +
                            subject.mid(serverName).toCaseFolded();
        if (sections.contains(key))
            return QStringLiteral("the section [%1] is there twice").arg(name.left(longestText));
        sections.insert(key);
        if (name == QLatin1String("console")) {
            section = Section::Console;
            return {};
        }
        if (kind == QLatin1String("server") && !subject.isEmpty())
            return beginServer();
        if (kind == QLatin1String("prometheus") && !subject.isEmpty())
            return beginPrometheus();
        if (kind == QLatin1String("ups") && !subject.isEmpty())
            return beginUps();
        return QStringLiteral(
            "unknown section; there are [console], [server NAME], [prometheus NAME] and "
            "[ups UPS@NAME]");
    }

    QString takeValue(const QString &key, const QString &value) override
    {
        if (value.isEmpty())
            return QStringLiteral("'%1' has no value").arg(key.left(longestText));
        switch (section) {
        case Section::Console:
            if (key != QLatin1String("credentials"))
                return unknownKey(key, QStringLiteral("credentials"));
            result.credentials = {directory.absoluteFilePath(value), place()};
            return {};
        case Section::Server:
            return takeServerValue(key, value);
        case Section::Prometheus:
            return takePrometheusValue(key, value);
        case Section::Ups:
            if (key == QLatin1String("name"))
                return takeText(value, &ups.name);
            if (key == QLatin1String("site"))
                return takeText(value, &ups.site);
            return unknownKey(key, QStringLiteral("name and site"));
        }
        return {};
    }

    QString endSection() override
    {
        switch (section) {
        case Section::Console:
            return {};
        case Section::Server:
            return endServer();
        case Section::Prometheus:
            return endPrometheus();
        case Section::Ups:
            break;
        }
        if (++entries > mostEntries)
            return QStringLiteral("more than %1 UPSes").arg(mostEntries);
        QVector<UpsEntry> &upses = upsesOf(owner);
        const bool isLabel = sources.contains(owner);
        const auto named = std::find_if(upses.begin(), upses.end(), [&](const UpsEntry &one) {
            return isLabel ? one.upsName == ups.upsName : isSameUps(one.upsName, ups.upsName);
        });
        if (named == upses.end())
            upses.append(ups);
        else if (named->upsName == ups.upsName)
            *named = ups;
        else
            return QStringLiteral("the UPS '%1' is there as '%2': upper and lower case do not "
                                  "distinguish UPSes")
                .arg(ups.upsName, named->upsName);
        return {};
    }

private:
    enum class Section { Console, Server, Prometheus, Ups };

    QString beginServer()
    {
        section = Section::Server;
        server = ServerEntry();
        server.host.host.clear();
        server.name = plainText(subject, longestText);
        server.place = place();
        if (servers.size() >= mostServers)
            return QStringLiteral("more than %1 servers").arg(mostServers);
        return nameOfServer();
    }

    QString beginPrometheus()
    {
        section = Section::Prometheus;
        prometheus = PromEntry();
        prometheus.name = plainText(subject, longestText);
        prometheus.place = prometheus.dialectPlace = prometheus.labelPlace = place();
        if (sources.size() >= mostServers)
            return QStringLiteral("more than %1 servers").arg(mostServers);
        return nameOfServer();
    }

    /// Why the name of the present section is none for a server.
    QString nameOfServer() const
    {
        if (subject.contains(QLatin1Char('@')))
            return QStringLiteral("a server's name has no '@'");
        const QString key = subject.toCaseFolded();
        if (servers.contains(key) || sources.contains(key))
            return QStringLiteral("another server has this name");
        return {};
    }

    QString beginUps()
    {
        section = Section::Ups;
        ups = UpsEntry();
        ups.place = place();
        const int at = int(subject.lastIndexOf(QLatin1Char('@')));
        ups.upsName = plainText(subject.left(std::max(at, 0)));
        const QString name = subject.mid(at + 1);
        owner = name.toCaseFolded();
        if (at < 0)
            return QStringLiteral("a UPS is named as [ups UPS@NAME], with the NAME of its server");
        if (sources.contains(owner))
            return ups.upsName.isEmpty() || ups.upsName.size() > longestText
                       ? QStringLiteral("a UPS of Prometheus is named as [ups UPS@NAME] or "
                                        "[ups UPS@INSTANCE@NAME]")
                       : QString();
        if (!isNutUpsName(ups.upsName))
            return QStringLiteral("a UPS is named as [ups UPS@NAME], UPS of letters, digits, "
                                  "'.', '_' and '-'");
        if (!servers.contains(owner))
            return QStringLiteral("there is no [server %1] or [prometheus %1] above")
                .arg(name.left(longestText));
        return {};
    }

    /// Of the server @p name, which is there.
    QVector<UpsEntry> &upsesOf(const QString &name)
    {
        const auto source = sources.constFind(name);
        return source != sources.constEnd() ? result.prometheus[*source].upses
                                            : result.servers[servers.value(name)].upses;
    }

    QString takeServerValue(const QString &key, const QString &value)
    {
        QString reason;
        if (key == QLatin1String("address")) {
            const std::optional<NutHost> host = NutHost::parse(value, &reason);
            if (!host)
                return reason;
            if (result.find(*host))
                return QStringLiteral("another section has this address");
            server.host = *host;
        } else if (key == QLatin1String("site")) {
            return takeText(value, &server.site);
        } else if (key == QLatin1String("tls")) {
            if (value != QLatin1String("off") && value != QLatin1String("required"))
                return QStringLiteral("tls is off or required");
            server.tls = value == QLatin1String("required");
        } else if (key == QLatin1String("ca")) {
            server.authorities = {directory.absoluteFilePath(value), place()};
        } else if (key == QLatin1String("ups")) {
            return takeUpses(value);
        } else {
            return unknownKey(key, QStringLiteral("address, ca, site, tls and ups"));
        }
        return {};
    }

    QString takePrometheusValue(const QString &key, const QString &value)
    {
        QString reason;
        if (key == QLatin1String("url")) {
            if (!PromServer::parseUrl(value, &reason))
                return reason;
            prometheus.url = value;
        } else if (key == QLatin1String("auth")) {
            prometheus.auth = {directory.absoluteFilePath(value), place()};
        } else if (key == QLatin1String("ca")) {
            prometheus.authorities = {directory.absoluteFilePath(value), place()};
        } else if (key == QLatin1String("job")) {
            prometheus.place = place();
            return takeText(value, &prometheus.job);
        } else if (key == QLatin1String("label")) {
            if (!isLabelName(value))
                return QStringLiteral("label has letters, digits and '_'");
            prometheus.label = value;
            prometheus.labelPlace = place();
        } else if (key == QLatin1String("site")) {
            return takeText(value, &prometheus.site);
        } else if (key == QLatin1String("dialect")) {
            if (!PromDialect::find(value))
                return QStringLiteral("dialect is one of ") +
                       PromDialect::names().join(QStringLiteral(", "));
            prometheus.dialect = value;
            prometheus.dialectPlace = place();
        } else {
            return unknownKey(key, QStringLiteral("auth, ca, dialect, job, label, site and url"));
        }
        return {};
    }

    QString takeUpses(const QString &value)
    {
        server.all = value == QLatin1String("all");
        if (server.all)
            return {};
        const QStringList names = value.split(QLatin1Char(','));
        QSet<QString> known;
        for (const QString &name : names) {
            UpsEntry entry;
            entry.upsName = name.trimmed();
            entry.place = place();
            if (!isNutUpsName(entry.upsName) || entry.upsName == QLatin1String("all"))
                return QStringLiteral("ups is 'all', or names separated by commas");
            const QString key = entry.upsName.toLower();
            if (known.contains(key))
                return QStringLiteral("the UPS '%1' is there twice").arg(entry.upsName);
            known.insert(key);
            if (++entries > mostEntries)
                return QStringLiteral("more than %1 UPSes").arg(mostEntries);
            server.upses.append(entry);
        }
        return {};
    }

    QString endServer()
    {
        if (server.host.host.isEmpty())
            return QStringLiteral("[server %1] has no address").arg(subject.left(longestText));
        if (!server.authorities.path.isEmpty() && !server.tls.value_or(true))
            return QStringLiteral("[server %1] has a ca, but tls is off")
                .arg(subject.left(longestText));
        if (server.site.isEmpty())
            server.site = subject;
        servers.insert(subject.toCaseFolded(), int(result.servers.size()));
        result.servers.append(server);
        return {};
    }

    QString endPrometheus()
    {
        const QString name = subject.left(longestText);
        if (prometheus.url.isEmpty())
            return QStringLiteral("[prometheus %1] has no url").arg(name);
        if (!prometheus.authorities.path.isEmpty() &&
            !prometheus.url.startsWith(QLatin1String("https:"), Qt::CaseInsensitive))
            return QStringLiteral("[prometheus %1] has a ca, but its url is not https").arg(name);
        sources.insert(subject.toCaseFolded(), int(result.prometheus.size()));
        result.prometheus.append(prometheus);
        return {};
    }

    static QString takeText(const QString &value, QString *text)
    {
        *text = plainText(value);
        return text->size() > longestText
                   ? QStringLiteral("the text has more than %1 characters").arg(longestText)
                   : QString();
    }

    const QDir directory;
    Section section = Section::Console;
    QString subject;
    ServerEntry server;
    PromEntry prometheus;
    UpsEntry ups;
    QString owner; // of the UPS, as a key
    // Upper and lower case do not distinguish servers.
    QHash<QString, int> servers;
    QHash<QString, int> sources;
    QSet<QString> sections;
    int entries = 0;
};

class CredentialsReader : public SectionReader
{
public:
    QVector<Credentials> result;

protected:
    QString beginSection(const QString &name) override
    {
        QString reason;
        const std::optional<NutHost> host = NutHost::parse(name, &reason);
        if (!host)
            return QStringLiteral("a section is named as its server, [HOST:PORT]");
        for (const Credentials &one : std::as_const(result)) {
            if (one.host == *host)
                return QStringLiteral("the server is there twice");
        }
        result.append({*host, {}, {}});
        return {};
    }

    QString takeValue(const QString &key, const QString &value) override
    {
        if (key == QLatin1String("user"))
            result.last().user = value;
        else if (key == QLatin1String("password"))
            result.last().password = value;
        else
            return QStringLiteral("a key that is neither user nor password");
        return {};
    }

    QString endSection() override
    {
        if (result.isEmpty())
            return {};
        if (result.last().user.isEmpty() || result.last().password.isEmpty())
            return QStringLiteral("the section needs a user and a password");
        return {};
    }
};

} // namespace

bool isSameUps(const QString &a, const QString &b)
{
    return a.compare(b, Qt::CaseInsensitive) == 0;
}

QString ServerEntry::title() const
{
    const QString address = host.toString();
    const bool isAddress = name.isEmpty() || name.compare(host.host, Qt::CaseInsensitive) == 0 ||
                           name.compare(address, Qt::CaseInsensitive) == 0;
    return isAddress ? address : QStringLiteral("%1 (%2)").arg(name, address);
}

ServerEntry *SiteEntries::find(const NutHost &host)
{
    const auto found = std::find_if(servers.begin(), servers.end(),
                                    [&host](const ServerEntry &one) { return one.host == host; });
    return found == servers.end() ? nullptr : &*found;
}

std::optional<SiteEntries> parseSiteFile(const QByteArray &text, const QString &fileName,
                                         QString *error)
{
    SiteReader reader(fileName);
    *error = reader.read(text, fileName);
    if (!error->isEmpty())
        return std::nullopt;
    return reader.result;
}

std::optional<QVector<Credentials>> parseCredentials(const QByteArray &text,
                                                     const QString &fileName, QString *error)
{
    CredentialsReader reader;
    *error = reader.read(text, fileName);
    if (!error->isEmpty())
        return std::nullopt;
    return reader.result;
}

namespace {

/// Puts @p user in place of what the section that begins at @p line has.
void replaceUser(QList<QByteArray> *lines, int line, const Credentials &user)
{
    for (++line; line < lines->size(); ++line) {
        QByteArray &bytes = (*lines)[line];
        const Line now = lineOf(bytes);
        if (now.kind == Line::Kind::Section)
            return;
        if (now.kind != Line::Kind::Value)
            continue;
        const QString &value = now.name == QLatin1String("user") ? user.user : user.password;
        const QByteArray end = bytes.endsWith('\r') ? "\r" : "";
        bytes = (now.name + QStringLiteral(" = ") + value).toUtf8() + end;
    }
}

bool isSame(const Credentials &a, const Credentials &b)
{
    return a.host == b.host && a.user == b.user && a.password == b.password;
}

} // namespace

std::optional<QByteArray> withCredentials(const QByteArray &text, const Credentials &user,
                                          const QString &fileName, QString *error)
{
    std::optional<QVector<Credentials>> wanted = parseCredentials(text, fileName, error);
    if (!wanted)
        return std::nullopt;
    const auto known =
        std::find_if(wanted->begin(), wanted->end(),
                     [&user](const Credentials &one) { return one.host == user.host; });
    QByteArray result = text;
    if (known != wanted->end()) {
        *known = user;
        QList<QByteArray> lines = text.split('\n');
        for (int i = 0; i < lines.size(); ++i) {
            const Line line = lineOf(lines.at(i));
            QString reason;
            if (line.kind == Line::Kind::Section && NutHost::parse(line.name, &reason) == user.host)
                replaceUser(&lines, i, user);
        }
        result = lines.join('\n');
    } else {
        wanted->append(user);
        if (text.isEmpty())
            result = "# Users of the console's servers. Only their owner may read this file.\n";
        else if (!text.endsWith('\n'))
            result += '\n';
        result += QStringLiteral("\n[%1]\nuser = %2\npassword = %3\n")
                      .arg(user.host.toString(), user.user, user.password)
                      .toUtf8();
    }
    const std::optional<QVector<Credentials>> read = parseCredentials(result, fileName, error);
    if (!read ||
        !std::equal(read->cbegin(), read->cend(), wanted->cbegin(), wanted->cend(), isSame)) {
        // Such as one that begins with a space. The reason must not quote it.
        *error = QStringLiteral("%1 cannot hold this user or password").arg(fileName);
        return std::nullopt;
    }
    return result;
}
