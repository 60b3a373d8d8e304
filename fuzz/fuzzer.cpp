// SPDX-License-Identifier: LicenseRef-all-rights-reserved

#include "runner.h"

#include <cstdlib>

extern "C" int LLVMFuzzerInitialize(int *argc, char ***argv)
{
    if (!prepareRun(*argc, *argv))
        std::exit(2);
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    runInput(data, size);
    return 0;
}
