// SPDX-License-Identifier: LicenseRef-all-rights-reserved

#pragma once

class QAbstractScrollArea;

/// Gives @p area narrow scroll bars without arrows.
void useSlimScrollBars(QAbstractScrollArea *area);
