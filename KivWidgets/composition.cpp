// SPDX-License-Identifier: LicenseRef-all-rights-reserved

#include "composition_p.h"

#if defined(__SSE2__) && defined(__GNUC__)
#define KIV_HAS_VECTORS
#include <immintrin.h>
#endif

namespace KivPrivate {

namespace {

constexpr quint32 opaque = 255;

void composePlainly(quint32 *out, const quint32 *background, const quint32 *value,
                    const quint32 *mask, int count)
{
    for (int i = 0; i < count; ++i) {
        const quint32 ink = mask[i] >> 24;
        if (ink == opaque) {
            out[i] = 0;
            continue;
        }
        const quint32 cover = value[i] >> 24;
        const quint32 both =
            cover == opaque ? value[i] : value[i] + scaledPixel(background[i], opaque - cover);
        out[i] = ink == 0 ? both : scaledPixel(both, opaque - ink);
    }
}

#ifdef KIV_HAS_VECTORS

// The arithmetic of composePlainly() in lanes of 16 bits: the even and the odd channels of four or
// eight pixels. Most of a layer is transparent or opaque, so whole vectors of either are not
// computed.

inline __m128i scaledFour(__m128i pixels, __m128i factor)
{
    const auto product = [factor](__m128i channels) {
        const __m128i exact = _mm_mullo_epi16(channels, factor);
        return _mm_add_epi16(_mm_add_epi16(exact, _mm_srli_epi16(exact, 8)), _mm_set1_epi16(0x80));
    };
    const __m128i low = _mm_set1_epi16(0xff);
    const __m128i even = product(_mm_and_si128(pixels, low));
    const __m128i odd = product(_mm_srli_epi16(pixels, 8));
    return _mm_or_si128(_mm_srli_epi16(even, 8), _mm_andnot_si128(low, odd));
}

/// What four pixels leave of those below, in both halves of each lane.
inline __m128i restOfFour(__m128i pixels)
{
    const __m128i rest = _mm_sub_epi32(_mm_set1_epi32(opaque), _mm_srli_epi32(pixels, 24));
    return _mm_or_si128(rest, _mm_slli_epi32(rest, 16));
}

inline bool allZero(__m128i lanes)
{
    return _mm_movemask_epi8(_mm_cmpeq_epi32(lanes, _mm_setzero_si128())) == 0xffff;
}

inline __m128i loadFour(const quint32 *pixels)
{
    return _mm_loadu_si128(reinterpret_cast<const __m128i *>(pixels));
}

inline void storeFour(quint32 *out, __m128i pixels)
{
    _mm_storeu_si128(reinterpret_cast<__m128i *>(out), pixels);
}

void composeFours(quint32 *out, const quint32 *background, const quint32 *value,
                  const quint32 *mask, int count)
{
    int i = 0;
    for (; i + 4 <= count; i += 4) {
        const __m128i ink = loadFour(mask + i);
        const __m128i afterMask = restOfFour(ink);
        if (allZero(afterMask)) {
            storeFour(out + i, _mm_setzero_si128());
            continue;
        }
        __m128i pixels = loadFour(value + i);
        const __m128i below = loadFour(background + i);
        const __m128i afterValue = restOfFour(pixels);
        if (!allZero(afterValue))
            pixels = _mm_add_epi8(pixels, scaledFour(below, afterValue));
        storeFour(out + i, allZero(ink) ? pixels : scaledFour(pixels, afterMask));
    }
    composePlainly(out + i, background + i, value + i, mask + i, count - i);
}

#define KIV_AVX2 __attribute__((target("avx2")))

KIV_AVX2 inline __m256i productOfEight(__m256i channels, __m256i factor)
{
    const __m256i exact = _mm256_mullo_epi16(channels, factor);
    return _mm256_add_epi16(_mm256_add_epi16(exact, _mm256_srli_epi16(exact, 8)),
                            _mm256_set1_epi16(0x80));
}

KIV_AVX2 inline __m256i scaledEight(__m256i pixels, __m256i factor)
{
    const __m256i low = _mm256_set1_epi16(0xff);
    const __m256i even = productOfEight(_mm256_and_si256(pixels, low), factor);
    const __m256i odd = productOfEight(_mm256_srli_epi16(pixels, 8), factor);
    return _mm256_or_si256(_mm256_srli_epi16(even, 8), _mm256_andnot_si256(low, odd));
}

KIV_AVX2 inline __m256i restOfEight(__m256i pixels)
{
    const __m256i rest = _mm256_sub_epi32(_mm256_set1_epi32(opaque), _mm256_srli_epi32(pixels, 24));
    return _mm256_or_si256(rest, _mm256_slli_epi32(rest, 16));
}

KIV_AVX2 inline __m256i loadEight(const quint32 *pixels)
{
    return _mm256_loadu_si256(reinterpret_cast<const __m256i *>(pixels));
}

KIV_AVX2 inline void storeEight(quint32 *out, __m256i pixels)
{
    _mm256_storeu_si256(reinterpret_cast<__m256i *>(out), pixels);
}

KIV_AVX2 void composeEights(quint32 *out, const quint32 *background, const quint32 *value,
                            const quint32 *mask, int count)
{
    const __m256i alpha = _mm256_set1_epi32(int(opaque << 24));
    int i = 0;
    for (; i + 8 <= count; i += 8) {
        const __m256i ink = loadEight(mask + i);
        if (_mm256_testc_si256(ink, alpha)) {
            storeEight(out + i, _mm256_setzero_si256());
            continue;
        }
        __m256i pixels = loadEight(value + i);
        const __m256i below = loadEight(background + i);
        if (!_mm256_testc_si256(pixels, alpha))
            pixels = _mm256_add_epi8(pixels, scaledEight(below, restOfEight(pixels)));
        if (!_mm256_testz_si256(ink, ink))
            pixels = scaledEight(pixels, restOfEight(ink));
        storeEight(out + i, pixels);
    }
    // The compiler leaves this out, and then SSE code after it is slow on some processors.
    _mm256_zeroupper();
    composePlainly(out + i, background + i, value + i, mask + i, count - i);
}

#endif

} // namespace

ComposeWays composeWays()
{
    static const ComposeWay ways[] = {
        {"plain", true, composePlainly},
#ifdef KIV_HAS_VECTORS
        {"SSE2", true, composeFours},
        {"AVX2", __builtin_cpu_supports("avx2") != 0, composeEights},
#endif
    };
    return {ways, int(sizeof ways / sizeof *ways)};
}

ComposePixels fastestCompose()
{
    static const ComposePixels fastest = [] {
        const ComposeWays ways = composeWays();
        int best = ways.count - 1;
        while (!ways.first[best].isAvailable)
            --best;
        return ways.first[best].compose;
    }();
    return fastest;
}

} // namespace KivPrivate
