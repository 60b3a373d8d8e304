#pragma once

#include <QtCore/QString>

#include <optional>

/// Where a UPS is found: its name on a server of Network UPS Tools, and that server.
struct NutAddress
{
    static constexpr quint16 defaultPort = 3493;

    /// Reads NAME@HOST[:PORT]; an IPv6 address stands in brackets. Only what is harmless in the
    /// server's line protocol is taken. Where @p text is not an address, returns nothing and, in
    /// @p error, why, in one line.
    static std::optional<NutAddress> parse(const QString &text, QString *error);
    /// The same form, always with its port.
    QString toString() const;

    QString upsName;
    QString host; ///< without brackets
    quint16 port = defaultPort;
};
