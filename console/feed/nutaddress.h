// SPDX-License-Identifier: LicenseRef-all-rights-reserved

#pragma once

#include <QtCore/QString>

#include <optional>

/// A server of Network UPS Tools.
struct NutHost
{
    static constexpr quint16 defaultPort = 3493;

    /// Reads HOST[:PORT] as NutAddress does.
    static std::optional<NutHost> parse(const QString &text, QString *error);
    /// The same form, always with its port.
    QString toString() const;
    /// Whether what is sent there does not leave this machine, as far as the address says.
    bool isLoopback() const;
    bool operator==(const NutHost &other) const;

    QString host; ///< without brackets
    quint16 port = defaultPort;
};

/// Whether @p name can be a UPS's: letters, digits, '.', '_' and '-', 64 at most.
bool isNutUpsName(const QString &name);

/// Whether @p name can be a command or a variable: as the above, and longer.
bool isNutName(const QString &name);

/// Where a UPS is found: its name on a server of Network UPS Tools, and that server.
struct NutAddress
{
    static constexpr quint16 defaultPort = NutHost::defaultPort;

    /// Reads NAME@HOST[:PORT]; an IPv6 address stands in brackets. Only what is harmless in the
    /// server's line protocol is taken. Where @p text is not an address, returns nothing and, in
    /// @p error, why, in one line.
    static std::optional<NutAddress> parse(const QString &text, QString *error);
    /// The same form, always with its port.
    QString toString() const;
    NutHost server() const;

    QString upsName;
    QString host; ///< without brackets
    quint16 port = defaultPort;
};
