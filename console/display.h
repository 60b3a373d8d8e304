#pragma once

#include "elementstate.h"

#include <metroStyle.h>

#include <QtCore/QString>

/// An element's state as the Metro widgets take it.
elemDesc_t shownState(ElementState state);

/// @p text with a capital at its start.
QString sentence(QString text);
