// SPDX-License-Identifier: LicenseRef-all-rights-reserved

#pragma once

#include <metroStyle.h>

class QWidget;
struct WidgetDescription;

/// A new widget of the described class, a child of @p parent, set up to show what it is for: with a
/// label, an icon or values, a container with something in it.
QWidget *createOnStage(const WidgetDescription &description, QWidget *parent);

/// The element's state that a widget on the stage begins with.
elemDesc_t stateOnStage(const WidgetDescription &description);
