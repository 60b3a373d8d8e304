// SPDX-License-Identifier: LicenseRef-all-rights-reserved

#pragma once

#include <QtCore/QString>

/// What giving the command @p name does to what the UPS feeds, in a sentence; empty when nothing.
QString consequenceOf(const QString &name);
/// Likewise, of setting the variable @p name.
QString consequenceOfSetting(const QString &name);
/// Whether the command is one that no display offers.
bool isNeverOffered(const QString &name);
