#include "nutaddress.h"

#include <QtCore/QRegularExpression>
#include <QtNetwork/QHostAddress>

namespace {

bool matches(const char *pattern, const QString &text)
{
    return QRegularExpression(QRegularExpression::anchoredPattern(QLatin1String(pattern)))
        .match(text)
        .hasMatch();
}

bool isIPv6(const QString &text)
{
    // The characters too: a scope may hold anything as far as QHostAddress is concerned.
    return matches("[0-9A-Fa-f:.]+(%[A-Za-z0-9_.-]+)?", text) &&
           QHostAddress(text).protocol() == QAbstractSocket::IPv6Protocol;
}

/// What is wrong with an address, or nothing.
QString problemOf(const QString &name, const QString &host, const QString &port, bool bracketed)
{
    if (!matches("[A-Za-z0-9_.-]{1,64}", name))
        return QStringLiteral("the UPS's name must be of letters, digits, '.', '_' and '-'");
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

} // namespace

std::optional<NutAddress> NutAddress::parse(const QString &text, QString *error)
{
    static const QRegularExpression form(
        QStringLiteral(
            "\\A(?<name>[^@]*)@(\\[(?<six>[^\\]]*)\\]|(?<host>.*?))(:(?<port>[^:]*))?\\z"),
        QRegularExpression::DotMatchesEverythingOption);
    const QRegularExpressionMatch match = form.match(text);
    if (!match.hasMatch()) {
        *error = QStringLiteral("the UPS must be given as NAME@HOST[:PORT]");
        return std::nullopt;
    }

    const bool bracketed = match.capturedStart(QStringLiteral("six")) >= 0;
    const bool hasPort = match.capturedStart(QStringLiteral("port")) >= 0;
    const QString name = match.captured(QStringLiteral("name"));
    const QString host = match.captured(bracketed ? QStringLiteral("six") : QStringLiteral("host"));
    const QString port =
        hasPort ? match.captured(QStringLiteral("port")) : QString::number(defaultPort);
    *error = problemOf(name, host, port, bracketed);
    if (!error->isEmpty())
        return std::nullopt;
    return NutAddress{name, host, quint16(port.toInt())};
}

QString NutAddress::toString() const
{
    const bool six = host.contains(QLatin1Char(':'));
    return QStringLiteral("%1@%2:%3")
        .arg(upsName, six ? QLatin1Char('[') + host + QLatin1Char(']') : host)
        .arg(port);
}
