#include "art_engine/effects/art_hsbc_filter.h"

// The colour filter eight pixels at a time, with the 256-bit integer vectors of x86 processors. The
// build targets processors without them, so the kernel carries its own target and runs only where
// the processor says it has them. Each step is the one-by-one arithmetic, lane by lane, and gives
// its bytes exactly.

#if defined(__x86_64__) || defined(__i386__)

#include <immintrin.h>

#define ROFA_VECTOR_KERNEL __attribute__((target("avx2")))

namespace {

ROFA_VECTOR_KERNEL inline __m256i Bytes(__m256i Value)
{
    return _mm256_and_si256(Value, _mm256_set1_epi32(0xff));
}

// X / D rounded down, for 0 <= X < 2^17 and 0 <= D < 256, and 0 where D is 0. The single-precision
// quotient is rounded correctly, and every quotient that is kept lies below 512, where the gap of
// at least 1 / D between a quotient and the next whole number is far wider than its rounding: so
// the quotient never rounds up onto the next whole number, and truncating it is exact. Quotients of
// 512 and more only ever meet a cap at 255, which rounding cannot cross.
ROFA_VECTOR_KERNEL inline __m256i DivideDown(__m256i X, __m256i D)
{
    __m256i Quotient = _mm256_cvttps_epi32(_mm256_div_ps(_mm256_cvtepi32_ps(X), _mm256_cvtepi32_ps(D)));
    return _mm256_andnot_si256(_mm256_cmpeq_epi32(D, _mm256_setzero_si256()), Quotient);
}

// C * 255 / A rounded down and capped at 255, and 0 at alpha 0.
ROFA_VECTOR_KERNEL inline __m256i Unpremultiply(__m256i C, __m256i A)
{
    __m256i Scaled = _mm256_sub_epi32(_mm256_slli_epi32(C, 8), C);
    return _mm256_min_epi32(DivideDown(Scaled, A), _mm256_set1_epi32(255));
}

ROFA_VECTOR_KERNEL inline __m256i Lookup(const uint32_t *Table, __m256i Index)
{
    return _mm256_i32gather_epi32(reinterpret_cast<const int *>(Table), Index, 4);
}

// Values below 2^16 in each 32-bit lane multiply as 16-bit halves: the upper halves are 0 and stay
// 0, and the lower half holds the whole product as long as it is below 2^16.
ROFA_VECTOR_KERNEL inline __m256i MultiplySmall(__m256i A, __m256i B)
{
    return _mm256_mullo_epi16(A, B);
}

ROFA_VECTOR_KERNEL inline __m256i AllOnes()
{
    return _mm256_set1_epi32(-1);
}

} // namespace

bool art_hsbc_pixel_filter::HasVectorKernel()
{
    static const bool Has = __builtin_cpu_supports("avx2");
    return Has;
}

template <art_hsbc_pixel_filter::hue_step Step>
ROFA_VECTOR_KERNEL void art_hsbc_pixel_filter::FilterRunVector(agg::rgba8 *Pixels, int Count) const
{
    const __m256i Opaque = _mm256_set1_epi32(255);
    // For each sector, the shift that brings each channel's value out of the packed word, as the
    // one-by-one arithmetic has it; sectors 6 and 7 do not occur.
    const __m256i RedShifts = _mm256_setr_epi32(0, 16, 8, 8, 24, 0, 0, 0);
    const __m256i GreenShifts = _mm256_setr_epi32(24, 0, 0, 16, 8, 8, 0, 0);
    const __m256i BlueShifts = _mm256_setr_epi32(8, 8, 24, 0, 0, 16, 0, 0);
    for (int I = 0; I + 8 <= Count; I += 8) {
        __m256i *Group = reinterpret_cast<__m256i *>(Pixels + I);
        __m256i P = _mm256_loadu_si256(Group);
        __m256i A = _mm256_srli_epi32(P, 24);
        __m256i R = Bytes(P);
        __m256i G = Bytes(_mm256_srli_epi32(P, 8));
        __m256i B = Bytes(_mm256_srli_epi32(P, 16));
        // The inside of a photo is opaque, where unpremultiplying changes nothing.
        if (_mm256_movemask_epi8(_mm256_cmpeq_epi32(A, Opaque)) != -1) {
            R = Unpremultiply(R, A);
            G = Unpremultiply(G, A);
            B = Unpremultiply(B, A);
        }
        R = Lookup(Tone, R);
        G = Lookup(Tone, G);
        B = Lookup(Tone, B);
        if (Step == HueStepGrey) {
            R = G = B = _mm256_srli_epi32(
                _mm256_add_epi32(_mm256_min_epi32(_mm256_min_epi32(R, G), B), _mm256_max_epi32(_mm256_max_epi32(R, G), B)),
                1);
        } else if (Step != HueStepNone) {
            __m256i Max = _mm256_max_epi32(_mm256_max_epi32(R, G), B);
            __m256i Min = _mm256_min_epi32(_mm256_min_epi32(R, G), B);
            __m256i L = _mm256_srli_epi32(_mm256_add_epi32(Min, Max), 1);
            __m256i M = _mm256_min_epi32(L, _mm256_sub_epi32(Opaque, L));
            __m256i Hue;
            __m256i Sat;
            if (Step == HueStepColorize) {
                Hue = _mm256_set1_epi32(ColorizeHue);
                Sat = _mm256_set1_epi32(ColorizeSat);
            } else {
                __m256i BAboveG = _mm256_cmpgt_epi32(B, G);
                __m256i RedMax = _mm256_andnot_si256(_mm256_or_si256(_mm256_cmpgt_epi32(G, R), _mm256_cmpgt_epi32(B, R)),
                                                     AllOnes());
                __m256i GreenMax = _mm256_andnot_si256(_mm256_or_si256(RedMax, BAboveG), AllOnes());
                __m256i BlueMax = _mm256_andnot_si256(_mm256_or_si256(RedMax, GreenMax), AllOnes());
                __m256i Numerator = _mm256_or_si256(
                    _mm256_or_si256(_mm256_and_si256(_mm256_sub_epi32(G, B), RedMax),
                                    _mm256_and_si256(_mm256_sub_epi32(B, R), GreenMax)),
                    _mm256_and_si256(_mm256_sub_epi32(R, G), BlueMax));
                __m256i Offset = _mm256_or_si256(
                    _mm256_or_si256(_mm256_and_si256(_mm256_set1_epi32(0x600), _mm256_and_si256(RedMax, BAboveG)),
                                    _mm256_and_si256(_mm256_set1_epi32(0x200), GreenMax)),
                    _mm256_and_si256(_mm256_set1_epi32(0x400), BlueMax));
                __m256i Range = _mm256_sub_epi32(Max, Min);
                __m256i Quotient = DivideDown(_mm256_slli_epi32(_mm256_abs_epi32(Numerator), 8), Range);
                Hue = _mm256_add_epi32(_mm256_add_epi32(Offset, _mm256_sign_epi32(Quotient, Numerator)),
                                       _mm256_set1_epi32(HueShift));
                __m256i Wrapped = _mm256_cmpgt_epi32(Hue, _mm256_set1_epi32(HueSteps - 1));
                Hue = _mm256_sub_epi32(Hue, _mm256_and_si256(Wrapped, _mm256_set1_epi32(HueSteps)));
                Sat = Lookup(SatOfS, DivideDown(_mm256_slli_epi32(Range, 8), _mm256_slli_epi32(M, 1)));
            }
            __m256i Product = MultiplySmall(M, Sat);
            __m256i C1 = _mm256_srli_epi32(Product, 8);
            __m256i RoundsUp = _mm256_andnot_si256(
                _mm256_cmpeq_epi32(_mm256_and_si256(Product, _mm256_set1_epi32(0x50)), _mm256_setzero_si256()), AllOnes());
            __m256i Hi = _mm256_sub_epi32(_mm256_add_epi32(L, C1), RoundsUp);
            __m256i Lo = _mm256_sub_epi32(L, C1);
            __m256i Sector = _mm256_srli_epi32(Hue, 8);
            __m256i T = _mm256_srli_epi32(MultiplySmall(_mm256_sub_epi32(Hi, Lo), Bytes(Hue)), 8);
            __m256i Packed = _mm256_or_si256(
                _mm256_or_si256(Hi, _mm256_slli_epi32(Lo, 8)),
                _mm256_or_si256(_mm256_slli_epi32(_mm256_sub_epi32(Hi, T), 16), _mm256_slli_epi32(_mm256_add_epi32(Lo, T), 24)));
            R = Bytes(_mm256_srlv_epi32(Packed, _mm256_permutevar8x32_epi32(RedShifts, Sector)));
            G = Bytes(_mm256_srlv_epi32(Packed, _mm256_permutevar8x32_epi32(GreenShifts, Sector)));
            B = Bytes(_mm256_srlv_epi32(Packed, _mm256_permutevar8x32_epi32(BlueShifts, Sector)));
        }
        // Premultiplied again by alpha, and by 256 at alpha 255, which leaves the bytes as they are.
        __m256i Factor = _mm256_sub_epi32(A, _mm256_cmpeq_epi32(A, Opaque));
        R = _mm256_srli_epi32(MultiplySmall(R, Factor), 8);
        G = _mm256_srli_epi32(MultiplySmall(G, Factor), 8);
        B = _mm256_srli_epi32(MultiplySmall(B, Factor), 8);
        __m256i Colour = _mm256_or_si256(R, _mm256_or_si256(_mm256_slli_epi32(G, 8), _mm256_slli_epi32(B, 16)));
        _mm256_storeu_si256(Group, _mm256_or_si256(Colour, _mm256_slli_epi32(A, 24)));
    }
}

int art_hsbc_pixel_filter::FilterPixelsVector(agg::rgba8 *Pixels, int Count) const
{
    if (!HasVectorKernel() || Count < 8)
        return 0;
    switch (HueStep) {
    case HueStepNone: FilterRunVector<HueStepNone>(Pixels, Count); break;
    case HueStepGrey: FilterRunVector<HueStepGrey>(Pixels, Count); break;
    case HueStepShift: FilterRunVector<HueStepShift>(Pixels, Count); break;
    case HueStepColorize: FilterRunVector<HueStepColorize>(Pixels, Count); break;
    }
    return Count - Count % 8;
}

#else

bool art_hsbc_pixel_filter::HasVectorKernel()
{
    return false;
}

int art_hsbc_pixel_filter::FilterPixelsVector(agg::rgba8 *, int) const
{
    return 0;
}

#endif
