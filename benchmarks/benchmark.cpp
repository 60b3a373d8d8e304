// SPDX-License-Identifier: LicenseRef-all-rights-reserved

#include "subject.h"

#include <QtCore/QMap>
#include <QtCore/QStringList>
#include <QtWidgets/QApplication>

#include <benchmark/benchmark.h>

#include <malloc.h>

#include <algorithm>
#include <cstdio>
#include <vector>

// Times every operation of every subject, interleaved, and prints the medians as multiples of one
// copy of the same image.

namespace {

struct Operation
{
    const char *name;
    void (SubjectStage::*perform)();
};

constexpr Operation operations[] = {
    {"copy", &SubjectStage::blit},
    {"floor", &SubjectStage::floor},
    {"repaint", &SubjectStage::repaint},
    {"change", &SubjectStage::changeAndRepaint},
};

constexpr char construction[] = "construct";

void performRepeatedly(benchmark::State &state, const Subject &subject,
                       void (SubjectStage::*perform)())
{
    SubjectStage stage(subject);
    for (auto _ : state)
        (stage.*perform)();
}

void constructRepeatedly(benchmark::State &state, const Subject &subject)
{
    const std::unique_ptr<QWidget> window = shownWindow();
    for (auto _ : state)
        constructAndDestroy(subject, window.get());
}

QByteArray nameOf(const Subject &subject, const char *operation)
{
    return QByteArray(subject.name) + '/' + operation;
}

void registerAll()
{
    for (const Subject &subject : subjects()) {
        for (const Operation &operation : operations) {
            benchmark::RegisterBenchmark(nameOf(subject, operation.name).constData(),
                                         performRepeatedly, subject, operation.perform);
        }
        benchmark::RegisterBenchmark(nameOf(subject, construction).constData(), constructRepeatedly,
                                     subject);
    }
}

/// Keeps the CPU times of all repetitions, by the name of the benchmark.
class TableReporter : public benchmark::BenchmarkReporter
{
public:
    bool ReportContext(const Context &context) override
    {
        PrintBasicContext(&GetErrorStream(), context);
        return true;
    }
    void ReportRuns(const std::vector<Run> &runs) override
    {
        for (const Run &run : runs) {
            if (run.run_type == Run::RT_Iteration)
                times[QByteArray::fromStdString(run.run_name.function_name)].push_back(
                    run.GetAdjustedCPUTime());
        }
    }
    /// The median in nanoseconds; 0 for what did not run.
    double median(const QByteArray &name) const
    {
        std::vector<double> sorted = times.value(name);
        if (sorted.empty())
            return 0.0;
        std::sort(sorted.begin(), sorted.end());
        return sorted[sorted.size() / 2];
    }

private:
    QMap<QByteArray, std::vector<double>> times;
};

/// Bytes on the heap that one shown and painted widget of many uses.
double heapOf(const Subject &subject)
{
    constexpr int count = 20;
    const std::unique_ptr<QWidget> window = shownWindow();
    const auto used = [] {
        const struct mallinfo2 info = mallinfo2();
        return double(info.uordblks) + double(info.hblkhd);
    };
    addPainted(subject, window.get());
    const double before = used();
    for (int i = 0; i < count; ++i)
        addPainted(subject, window.get());
    return (used() - before) / count;
}

void printTable(const TableReporter &reporter)
{
    std::printf("%-20s %9s %9s %8s %8s %8s %8s %9s\n", "", "size", "copy", "floor", "repaint",
                "change", "build", "heap");
    for (const Subject &subject : subjects()) {
        const double copy = reporter.median(nameOf(subject, "copy"));
        if (copy <= 0.0)
            continue;
        const auto multiple = [&](const char *operation) {
            return reporter.median(nameOf(subject, operation)) / copy;
        };
        const QByteArray size = QByteArray::number(subject.size.width()) + 'x' +
                                QByteArray::number(subject.size.height());
        std::printf("%-20s %9s %6.0f ns %7.2fx %7.2fx %7.2fx %7.2fx %6.1f KB\n", subject.name,
                    size.constData(), copy, multiple("floor"), multiple("repaint"),
                    multiple("change"), multiple(construction), heapOf(subject) / 1024.0);
    }
}

} // namespace

int main(int argc, char *argv[])
{
    if (!qEnvironmentVariableIsSet("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    const QApplication application(argc, argv);
    // Interleaved, a disturbance of the machine meets all alike.
    std::vector<char *> arguments(argv, argv + argc);
    char interleaved[] = "--benchmark_enable_random_interleaving=true";
    char repetitions[] = "--benchmark_repetitions=9";
    char shortest[] = "--benchmark_min_time=0.02";
    arguments.insert(arguments.begin() + 1, {interleaved, repetitions, shortest});
    int count = int(arguments.size());
    benchmark::Initialize(&count, arguments.data());
    if (benchmark::ReportUnrecognizedArguments(count, arguments.data()))
        return 2;
    registerAll();
    TableReporter reporter;
    benchmark::RunSpecifiedBenchmarks(&reporter);
    printTable(reporter);
    return 0;
}
