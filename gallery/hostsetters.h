// SPDX-License-Identifier: LicenseRef-all-rights-reserved

#pragma once

class QMetaProperty;
class QVariant;
class QWidget;

/// Writes @p property of @p widget as an application would, and lets the widget show it.
///
/// Some classes hide the setter of a base class's property by one of their own, which alone brings
/// the widget up to date; this calls it. This also drops a cached image, so that every change is
/// visible.
void writeAsHost(QWidget *widget, const QMetaProperty &property, const QVariant &value);
