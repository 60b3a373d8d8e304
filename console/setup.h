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

/// A value as text with its unit: "230 V"; "no data" when there is none.
QString textOf(const Snapshot &snapshot, Quantity quantity, int decimals = 0);
