// SPDX-License-Identifier: LicenseRef-all-rights-reserved

#include "runner.h"

#include "host.h"
#include "testmain.h"

#include <QtGui/QPixmapCache>

#include <cstdio>
#include <cstring>

namespace {

const Subject *chosen = nullptr;

void swallowQtMessages(QtMsgType, const QMessageLogContext &, const QString &)
{}

} // namespace

bool prepareRun(int argc, char **argv)
{
    static const char widgetOption[] = "--widget=";
    const char *name = "";
    for (int i = 1; i < argc; ++i) {
        if (std::strncmp(argv[i], widgetOption, sizeof widgetOption - 1) == 0)
            name = argv[i] + sizeof widgetOption - 1;
        else if (std::strcmp(argv[i], "--trace") == 0)
            Host::traces = true;
    }
    chosen = subjectNamed(name);
    if (!chosen) {
        std::fprintf(stderr, "fuzzing: --widget names no widget: '%s'\n", name);
        return false;
    }
    prepareTestEnvironment();
    static int count = 1;
    static char program[] = "fuzzing";
    static char *arguments[] = {program, nullptr};
    // Never deleted: libFuzzer ends the process itself.
    static auto *application = new QApplication(count, arguments);
    application->setQuitOnLastWindowClosed(false);
    prepareTestApplication();
    if (!Host::traces) {
        // Error lines are the widgets' normal answer to what comes. The sanitizers do not use the
        // stream itself, so their reports are still seen.
        if (std::FILE *nowhere = std::fopen("/dev/null", "w"))
            stderr = nowhere;
        qInstallMessageHandler(swallowQtMessages);
    }
    return true;
}

void runInput(const std::uint8_t *data, std::size_t size)
{
    {
        Host host(*chosen, Bytes(data, size));
        host.run();
    }
    QPixmapCache::clear();
}
