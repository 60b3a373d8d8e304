// SPDX-License-Identifier: LicenseRef-all-rights-reserved

#include "nutaddress.h"

#include <QtCore/QRegularExpression>
#include <QtNetwork/QHostAddress>

#include <algorithm>

namespace {

bool matches(const char *pattern, const QString &text)
{
    return QRegularExpression(QRegularExpression::anchoredPattern(QLatin1String(pattern)))
        .match(text)
        .hasMatch();
}

/// Letters and digits of ASCII, and a few marks. Servers give names by the thousand, which is why
/// this is no pattern.
bool isName(const QString &text, int longest)
{
    return !text.isEmpty() && text.size() <= longest &&
           std::all_of(text.cbegin(), text.cend(), [](QChar c) {
               const ushort code = c.unicode();
               const ushort small = code | 0x20;
               return (small >= 'a' && small <= 'z') || (code >= '0' && code <= '9') ||
                      code == '_' || code == '.' || code == '-';
           });
}

bool isIPv6(const QString &text)
{
    // The characters too: a scope may contain anything as far as QHostAddress is concerned.
    return matches("[0-9A-Fa-f:.]+(%[A-Za-z0-9_.-]+)?", text) &&
           QHostAddress(text).protocol() == QAbstractSocket::IPv6Protocol;
}

QString problemOf(const QString &host, const QString &port, bool bracketed)
{
    if (bracketed && !isIPv6(host))
        return QStringLiteral("what stands in brackets is not an IPv6 address");
    if (!bracketed && host.contains(QLatin1Char(':')))
        return QStringLiteral("an IPv6 address must stand in brackets");
    if (!bracketed && !matches("[A-Za-z0-9_.-]{1,253}", host))
        return QStringLiteral("the host must be a host name or an IP address");
    if (!matches("[0-9]{1,5}", port) || port.toInt() < 1 || port.toInt() > 65535)
        return QStringLiteral("the port must be a number from 1 to 65535");
    return QString();
}

/// Reads [NAME@]HOST[:PORT]; the name is empty where there is none.
std::optional<NutHost> parseHost(const QString &text, const QString &form, QString *error)
{
    static const QRegularExpression pattern(
        QStringLiteral("\\A(\\[(?<six>[^\\]]*)\\]|(?<host>.*?))(:(?<port>[^:]*))?\\z"),
        QRegularExpression::DotMatchesEverythingOption);
    const QRegularExpressionMatch match = pattern.match(text);
    if (!match.hasMatch()) {
        *error = form;
        return std::nullopt;
    }
    const bool bracketed = match.capturedStart(QStringLiteral("six")) >= 0;
    const bool hasPort = match.capturedStart(QStringLiteral("port")) >= 0;
    const QString host = match.captured(bracketed ? QStringLiteral("six") : QStringLiteral("host"));
    const QString port =
        hasPort ? match.captured(QStringLiteral("port")) : QString::number(NutHost::defaultPort);
    *error = problemOf(host, port, bracketed);
    if (!error->isEmpty())
        return std::nullopt;
    return NutHost{host, quint16(port.toInt())};
}

} // namespace

bool isNutUpsName(const QString &name)
{
    constexpr int longest = 64;
    return isName(name, longest);
}

bool isNutName(const QString &name)
{
    constexpr int longest = 128;
    return isName(name, longest);
}

std::optional<NutHost> NutHost::parse(const QString &text, QString *error)
{
    return parseHost(text, QStringLiteral("the server must be given as HOST[:PORT]"), error);
}

QString NutHost::toString() const
{
    const bool six = host.contains(QLatin1Char(':'));
    return QStringLiteral("%1:%2")
        .arg(six ? QLatin1Char('[') + host + QLatin1Char(']') : host)
        .arg(port);
}

bool NutHost::isLoopback() const
{
    return host.compare(QLatin1String("localhost"), Qt::CaseInsensitive) == 0 ||
           QHostAddress(host).isLoopback();
}

bool NutHost::operator==(const NutHost &other) const
{
    return host.compare(other.host, Qt::CaseInsensitive) == 0 && port == other.port;
}

std::optional<NutAddress> NutAddress::parse(const QString &text, QString *error)
{
    const QString form = QStringLiteral("the UPS must be given as NAME@HOST[:PORT]");
    const int at = int(text.indexOf(QLatin1Char('@')));
    if (at < 0) {
        *error = form;
        return std::nullopt;
    }
    const QString name = text.left(at);
    if (!isNutUpsName(name)) {
        *error = QStringLiteral("the UPS's name must be of letters, digits, '.', '_' and '-'");
        return std::nullopt;
    }
    const std::optional<NutHost> found = parseHost(text.mid(at + 1), form, error);
    if (!found)
        return std::nullopt;
    return NutAddress{name, found->host, found->port};
}

QString NutAddress::toString() const
{
    return upsName + QLatin1Char('@') + server().toString();
}

NutHost NutAddress::server() const
{
    return {host, port};
}
