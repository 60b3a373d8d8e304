// SPDX-License-Identifier: LicenseRef-all-rights-reserved

#pragma once

class QMetaProperty;
class QWidget;

/// Whether @p property acts on the look of @p widget in the widget's present state, so that an
/// editor should offer it. Qt 5 knows it from the class; moc of Qt 6 takes no functions for it, so
/// it is written here.
bool isDesignable(const QWidget &widget, const QMetaProperty &property);
