// SPDX-License-Identifier: LicenseRef-all-rights-reserved

#pragma once

#include "elementstate.h"

#include <metroStyle.h>

#include <QtCore/QDateTime>
#include <QtCore/QString>

/// An element's state as the Metro widgets take it.
elemDesc_t shownState(ElementState state);

/// @p text with a capital at its start.
QString sentence(QString text);

/// Where a page would show the history and there is none, as on screenshots.
QString noHistoryText();

/// An instant (milliseconds since 1970, UTC) as local time: "14:03:22" on the day of @p now, else
/// "21 Nov 14:03", with the year where it is another one.
QString momentText(qint64 at, const QDateTime &now);
/// A length of time in words: "42 s", "12 min", "1 h 05 min", "3 d 4 h".
QString lengthText(qint64 msecs);
