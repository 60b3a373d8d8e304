// SPDX-License-Identifier: LicenseRef-all-rights-reserved

// What it costs to go on with SSE code after AVX code that leaves the upper halves of its registers
// in use. Qt 5.15's and 6.4's fill of an opaque row does that, and the code after it uses SSE. For
// each of some short rows, this fills the row and changes its first pixel with an SSE instruction:
// kivtransition prints the time of one row, the shortest of many repetitions.

#include <algorithm>
#include <array>
#include <chrono>
#include <cstdint>
#include <cstdio>
#include <limits>

namespace {

constexpr int rowCount = 100;
constexpr int repetitions = 1000;

/// A row of 128 bytes.
using Row = std::array<std::uint32_t, 32>;
std::array<Row, rowCount> rows;

// In assembler, since compilers add the instruction that this is about.

void fillWithSse(Row *row)
{
    asm volatile("pcmpeqd %%xmm0, %%xmm0\n\t"
                 "movdqu %%xmm0, (%0)\n\t"
                 "movdqu %%xmm0, 16(%0)\n\t"
                 "movdqu %%xmm0, 32(%0)\n\t"
                 "movdqu %%xmm0, 48(%0)\n\t"
                 "movdqu %%xmm0, 64(%0)\n\t"
                 "movdqu %%xmm0, 80(%0)\n\t"
                 "movdqu %%xmm0, 96(%0)\n\t"
                 "movdqu %%xmm0, 112(%0)"
                 :
                 : "r"(row->data())
                 : "xmm0", "memory");
}

void fillWithAvx(Row *row)
{
    asm volatile("vpcmpeqd %%xmm0, %%xmm0, %%xmm0\n\t"
                 "vinsertf128 $1, %%xmm0, %%ymm0, %%ymm0\n\t"
                 "vmovdqu %%ymm0, (%0)\n\t"
                 "vmovdqu %%ymm0, 32(%0)\n\t"
                 "vmovdqu %%ymm0, 64(%0)\n\t"
                 "vmovdqu %%ymm0, 96(%0)"
                 :
                 : "r"(row->data())
                 : "xmm0", "memory");
}

void clearUpperHalves()
{
    asm volatile("vzeroupper" : : : "memory");
}

void fillWithAvxAndClear(Row *row)
{
    fillWithAvx(row);
    clearUpperHalves();
}

void changeFirstPixel(Row *row)
{
    asm volatile("movd (%0), %%xmm0\n\t"
                 "paddb %%xmm0, %%xmm0\n\t"
                 "movd %%xmm0, (%0)"
                 :
                 : "r"(row->data())
                 : "xmm0", "memory");
}

template <typename Fill>
double nanosecondsOfRow(Fill fill)
{
    using Clock = std::chrono::steady_clock;
    double best = std::numeric_limits<double>::max();
    for (int i = 0; i < repetitions; ++i) {
        const Clock::time_point begin = Clock::now();
        for (Row &row : rows) {
            fill(&row);
            changeFirstPixel(&row);
        }
        const std::chrono::duration<double, std::nano> time = Clock::now() - begin;
        best = std::min(best, time.count() / rowCount);
    }
    return best;
}

} // namespace

int main()
{
    if (!__builtin_cpu_supports("avx")) {
        std::printf("this processor has no AVX\n");
        return 0;
    }
    const double sse = nanosecondsOfRow(fillWithSse);
    const double avx = nanosecondsOfRow(fillWithAvx);
    clearUpperHalves();
    const double cleared = nanosecondsOfRow(fillWithAvxAndClear);
    std::printf("a row filled with SSE: %.1f ns; with AVX: %.1f ns; with AVX, and the upper halves "
                "cleared: %.1f ns\n",
                sse, avx, cleared);
    return 0;
}
