// SPDX-License-Identifier: LicenseRef-all-rights-reserved

#include <QtWidgets/QApplication>

#include <dlfcn.h>

#include <chrono>
#include <cstdio>

// Prints in microseconds how long the library takes to load into a process that has Qt already: it
// is mapped, relocated, and its initialisers run.

int main(int argc, char *argv[])
{
    if (argc != 2) {
        std::fprintf(stderr, "usage: kivload LIBRARY\n");
        return 2;
    }
    qputenv("QT_QPA_PLATFORM", "offscreen");
    const QApplication application(argc, argv);
    using Clock = std::chrono::steady_clock;
    const Clock::time_point begin = Clock::now();
    const void *library = dlopen(argv[1], RTLD_LAZY | RTLD_LOCAL);
    const Clock::time_point end = Clock::now();
    if (!library) {
        std::fprintf(stderr, "kivload: %s\n", dlerror());
        return 1;
    }
    std::printf("%.1f\n", std::chrono::duration<double, std::micro>(end - begin).count());
    return 0;
}
