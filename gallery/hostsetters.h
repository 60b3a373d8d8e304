// SPDX-License-Identifier: LicenseRef-all-rights-reserved

#pragma once

class QMetaProperty;
class QVariant;
class QWidget;

/// Writes @p property of @p widget as an application would, and lets the widget show it.
///
/// Some classes hide the setter of a base class's property by one of their own, which alone brings
/// the widget up to date; this calls it. Where a widget keeps its image until something else
/// drops it, that is dropped here, since in the gallery every change is to be seen.
void writeAsHost(QWidget *widget, const QMetaProperty &property, const QVariant &value);
