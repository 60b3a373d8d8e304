// SPDX-License-Identifier: LicenseRef-all-rights-reserved

#pragma once

class QWidget;

/// Draws a bar at the bottom of the checked button @p button, from within its paint event: some
/// styles hardly show the difference.
void paintChoiceBar(QWidget *button);
