#pragma once

#include "feed/snapshot.h"

#include <metroStyle.h>

#include <QtCore/QVariant>

#include <initializer_list>
#include <utility>

class QObject;

/// Sets properties by name, as a form would. A name that the object does not declare is a defect of
/// the console and ends it.
void setUp(QObject *object, std::initializer_list<std::pair<const char *, QVariant>> properties);

/// An element's state as the Metro widgets take it.
elemDesc_t shownState(ElementState state);

/// The state of the whole in a few words: the alarm where there is one, else what the UPS says of
/// itself first.
QString stateTitle(const Snapshot &snapshot);

/// @p text with a capital at its start.
QString sentence(QString text);

/// A value as text with its unit: "230 V"; "no data" when there is none.
QString textOf(const Snapshot &snapshot, Quantity quantity, int decimals = 0);
