#pragma once

#include <metroStyle.h>

#include <QtCore/QString>

/// The state that a Metro widget holds.
elemDesc_t heldState(const MetroStyle &widget);

/// Alarm and operating state of an element as an operator calls them.
QString stateWords(elemDesc_t state);

/// The alarm alone; empty when there is none.
QString alarmWords(elemDesc_t state);
