// SPDX-License-Identifier: LicenseRef-all-rights-reserved

#pragma once

#include "upsfeed.h"

/// What a command is called on screen, such as "Switch on".
QString nameOf(Command command);
