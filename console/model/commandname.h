// SPDX-License-Identifier: LicenseRef-all-rights-reserved

#pragma once

#include "upsfeed.h"

/// What a command is called on screen, such as "Switch on".
QString nameOf(Command command);
/// The name of a server's command or variable as words: "load.off" is "Load off".
QString wordsOf(const QString &name);
