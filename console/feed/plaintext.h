// SPDX-License-Identifier: LicenseRef-all-rights-reserved

#pragma once

#include <QtCore/QString>

/// The text in one line, without characters that steer or reorder what is shown.
QString plainText(const QString &text);

/// The text, or, where it has more than @p longest characters, so many with an ellipsis at the end.
QString cutText(const QString &text, int longest);

/// Both, without the effort for what is far beyond @p longest.
QString plainText(const QString &text, int longest);

/// Whether the text is a line of printable ASCII characters without a blank too many, which
/// plainText() leaves as it is.
bool isPlainAscii(const QString &text);
