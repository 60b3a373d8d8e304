// SPDX-License-Identifier: LicenseRef-all-rights-reserved

#pragma once

#include <cstddef>
#include <cstdint>

/// What the two programs share: the fuzzer, and the one that replays files without it.

/// Makes the application, and takes "--widget=NAME" and "--trace" from the arguments.
/// @return false, and a line on the standard error stream, when no widget is named.
bool prepareRun(int argc, char **argv);
/// Does what one input says.
void runInput(const std::uint8_t *data, std::size_t size);
