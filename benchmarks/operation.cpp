// SPDX-License-Identifier: LicenseRef-all-rights-reserved

#include "subject.h"

#include <QtWidgets/QApplication>

#include <valgrind/callgrind.h>

#include <cstdio>
#include <cstdlib>

// Does each operation of the named subjects a number of times. Under callgrind (started with
// --instr-atstart=no) each leaves a dump of its own, named "SUBJECT OPERATION".

namespace {

struct Operation
{
    const char *name;
    void (SubjectStage::*perform)();
};

constexpr Operation operations[] = {
    {"repaint", &SubjectStage::repaint},
    {"change", &SubjectStage::changeAndRepaint},
    {"blit", &SubjectStage::blit},
    {"floor", &SubjectStage::floor},
};

template <typename Perform>
void measure(const Subject &subject, const char *operation, int count, Perform perform)
{
    CALLGRIND_START_INSTRUMENTATION;
    CALLGRIND_ZERO_STATS;
    for (int i = 0; i < count; ++i)
        perform();
    const QByteArray name = QByteArray(subject.name) + ' ' + operation;
    CALLGRIND_DUMP_STATS_AT(name.constData());
    CALLGRIND_STOP_INSTRUMENTATION;
}

void measureAll(const Subject &subject, int count)
{
    {
        SubjectStage stage(subject);
        for (const Operation &operation : operations) {
            measure(subject, operation.name, count, [&] { (stage.*operation.perform)(); });
        }
    }
    const std::unique_ptr<QWidget> window = shownWindow();
    measure(subject, "construct", count, [&] { constructAndDestroy(subject, window.get()); });
}

} // namespace

int main(int argc, char *argv[])
{
    if (!qEnvironmentVariableIsSet("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    const QApplication application(argc, argv);

    char *end = nullptr;
    const long count = argc > 1 ? std::strtol(argv[1], &end, 10) : 0;
    bool understood = end && *end == '\0' && count > 0 && count <= 1000000;
    for (int i = 2; i < argc && understood; ++i)
        understood = subjectNamed(argv[i]) != nullptr;
    if (!understood) {
        std::fprintf(stderr, "usage: kivoperation COUNT [SUBJECT...]\n");
        return 2;
    }
    for (const Subject &subject : subjects()) {
        bool wanted = argc == 2;
        for (int i = 2; i < argc; ++i)
            wanted = wanted || qstrcmp(subject.name, argv[i]) == 0;
        if (wanted)
            measureAll(subject, int(count));
    }
    return 0;
}
