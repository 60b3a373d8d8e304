// SPDX-License-Identifier: LicenseRef-all-rights-reserved

#pragma once

#include <QtCore/QString>

struct Options;

/// Writes the report that @p options ask for, of the history in @p directory, to their file.
/// @return false with the reason in @p error, in one line.
bool writeReport(const Options &options, const QString &directory, QString *error);
