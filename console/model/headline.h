// SPDX-License-Identifier: LicenseRef-all-rights-reserved

#pragma once

#include "severity.h"
#include "snapshot.h"

/// Whether the load is safe from a mains failure.
enum class Protection {
    Protected,    ///< by a UPS in order
    Limited,      ///< fed through the UPS, but for how long or how well is in doubt
    NotProtected, ///< fed straight from the mains
    NotFed,       ///< the output is off
    Unknown,
};

/// The state of a UPS in one line.
struct Headline
{
    QString text;   ///< such as "On battery – load protected"
    QString state;  ///< its first part: "On battery"
    QString detail; ///< its second part: "load protected"; may be empty
    Severity severity = Severity::Unknown;
    /// Among headlines of one severity, the greater one is the more urgent.
    int rank = 0;
    Protection protection = Protection::Unknown;
    /// The battery feeds the load, or would: the time left means something.
    bool showsTimeLeft = false;
};
bool operator==(const Headline &a, const Headline &b);
bool operator!=(const Headline &a, const Headline &b);

/// The one place where a status becomes words, severity and protection.
Headline headlineOf(Snapshot::Link link, StatusTokens tokens);
Headline headlineOf(const Snapshot &snapshot);
