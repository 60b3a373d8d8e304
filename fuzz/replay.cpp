// SPDX-License-Identifier: LicenseRef-all-rights-reserved

// Runs inputs of the fuzzer once each, in builds without it: replay --widget=NAME FILE...

#include "runner.h"

#include <QtCore/QFile>

#include <cstdio>

int main(int argc, char **argv)
{
    if (!prepareRun(argc, argv))
        return 2;
    int inputs = 0;
    for (int i = 1; i < argc; ++i) {
        if (argv[i][0] == '-')
            continue;
        QFile file(QFile::decodeName(argv[i]));
        if (!file.open(QIODevice::ReadOnly)) {
            std::printf("replay: cannot read %s\n", argv[i]);
            return 2;
        }
        // Printed first, so that the last line names the input that ended the program.
        std::printf("%s\n", argv[i]);
        std::fflush(stdout);
        const QByteArray input = file.readAll();
        runInput(reinterpret_cast<const std::uint8_t *>(input.constData()),
                 static_cast<std::size_t>(input.size()));
        ++inputs;
    }
    if (inputs == 0) {
        std::printf("replay: no input given\n");
        return 2;
    }
    std::printf("%d inputs replayed\n", inputs);
    return 0;
}
