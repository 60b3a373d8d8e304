// SPDX-License-Identifier: LicenseRef-all-rights-reserved

#pragma once

#include <metroStyle.h>

#include <QtCore/QString>

/// Alarm and operating state of an element as an operator calls them.
QString stateWords(elemDesc_t state);

/// The alarm alone; empty when there is none.
QString alarmWords(elemDesc_t state);
