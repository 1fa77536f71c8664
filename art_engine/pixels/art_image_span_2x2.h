#pragma once

#include <cstdint>
#include <cstring>

#include <agg_color_rgba.h>
#include <agg_image_filters.h>
#if defined(__SSE2__)
#include <emmintrin.h>
#endif

#include "art_engine/pixels/art_bitmap.h"

// The pixels of a transformed image along a span, on AGG's span generator interface: each pixel
// centre is mapped into the source by Interpolator, and the four source pixels around it are
// weighted from a filter table of diameter 2 at 14 bits. Pixels outside the source repeat the
// nearest edge pixel, so nothing dark comes in at the image's border. The source has at least one
// pixel. The rounding is fixed to the byte (each sum starts at half of the filter scale) because
// every image of every document goes through it; AGG releases differ there, so this one is our own.
template <class Interpolator> class art_image_span_2x2
{
public:
    typedef agg::rgba8 color_type;

    // Filter must outlive the generator; its diameter is 2.
    art_image_span_2x2(art_bitmap &Source, Interpolator &Mapping, const agg::image_filter_lut &Filter)
        : Pixels(Source.GetPixelData()), Stride(Source.GetPixelStride()), Last(Source.GetSize().X - 1,
                                                                               Source.GetSize().Y - 1),
          Mapping(Mapping)
    {
        const int16_t *Table = Filter.weight_array() + ((Filter.diameter() / 2 - 1) << agg::image_subpixel_shift);
        for (int I = 0; I < 2 * agg::image_subpixel_scale; I++)
            Weights[I] = Table[I];
        // Normalising leaves 16320 and 64 at fraction 0, so a pixel mapped onto a pixel centre would
        // take 64/16384 of its right and lower neighbours, and an image shown at its own size would
        // lose its hard edges. At fraction 0 the pixel is itself.
        Weights[0] = 0;
        Weights[agg::image_subpixel_scale] = agg::image_filter_scale;
    }

    void prepare() {}

    void generate(agg::rgba8 *Span, int X, int Y, unsigned Count)
    {
        // The table's taps sit half a pixel off the pixel centre: taking it off here puts a pixel
        // centre that lands on a source pixel centre at fraction 0.
        const int Half = agg::image_subpixel_scale / 2;
        const int16_t *Table = Weights;
        Mapping.begin(X + 0.5, Y + 0.5, Count);
        for (unsigned I = 0; I < Count; I++) {
            int SX;
            int SY;
            Mapping.coordinates(&SX, &SY);
            SX -= Half;
            SY -= Half;
            unsigned FX = unsigned(SX) & agg::image_subpixel_mask;
            unsigned FY = unsigned(SY) & agg::image_subpixel_mask;
            // The far tap of each axis reads the table at the fraction, the near one a whole pixel on.
            int NearX = Table[FX + agg::image_subpixel_scale];
            int FarX = Table[FX];
            int NearY = Table[FY + agg::image_subpixel_scale];
            int FarY = Table[FY];

            const uint8_t *Taps[4];
            FindTaps(Taps, SX >> agg::image_subpixel_shift, SY >> agg::image_subpixel_shift);
            Span[I] = Weigh(Taps, Weight(NearX * NearY), Weight(FarX * NearY), Weight(NearX * FarY),
                            Weight(FarX * FarY));
            ++Mapping;
        }
    }

private:
    static const unsigned Round = agg::image_filter_scale / 2;

    // The four source pixels from (X, Y) to (X + 1, Y + 1), left to right and top to bottom. Outside
    // the source the nearest edge pixel stands in.
    void FindTaps(const uint8_t **Taps, int X, int Y) const
    {
        if (unsigned(X) < unsigned(Last.X) && unsigned(Y) < unsigned(Last.Y)) {
            Taps[0] = Pixels + ptrdiff_t(Y) * Stride + X * 4;
            Taps[1] = Taps[0] + 4;
            Taps[2] = Taps[0] + Stride;
            Taps[3] = Taps[2] + 4;
            return;
        }
        int Left = Clamp(X, Last.X) * 4;
        int Right = Clamp(X + 1, Last.X) * 4;
        const uint8_t *Top = Pixels + ptrdiff_t(Clamp(Y, Last.Y)) * Stride;
        const uint8_t *Bottom = Pixels + ptrdiff_t(Clamp(Y + 1, Last.Y)) * Stride;
        Taps[0] = Top + Left;
        Taps[1] = Top + Right;
        Taps[2] = Bottom + Left;
        Taps[3] = Bottom + Right;
    }

    static int Clamp(int Value, int Highest) { return Value < 0 ? 0 : (Value > Highest ? Highest : Value); }

    static unsigned Weight(int Product) { return unsigned(Product + int(Round)) >> agg::image_filter_shift; }

    // The sum of the four taps, each byte weighted and rounded at 14 bits, alpha capped to 255 and
    // each colour byte to alpha, so that the premultiplied form that every kernel downstream relies
    // on holds even for a source where it did not.
#if defined(__SSE2__)
    static agg::rgba8 Weigh(const uint8_t *const *Taps, unsigned W00, unsigned W01, unsigned W10, unsigned W11)
    {
        const __m128i Zero = _mm_setzero_si128();
        // Left and right pixel of a row side by side in 16-bit lanes, channel by channel, so that
        // one multiply-add weighs both: R0 R1 G0 G1 B0 B1 A0 A1. Weights are at most 16384 and fit
        // a signed 16-bit lane.
        __m128i Top = _mm_unpacklo_epi8(_mm_unpacklo_epi32(Load(Taps[0]), Load(Taps[1])), Zero);
        __m128i Bottom = _mm_unpacklo_epi8(_mm_unpacklo_epi32(Load(Taps[2]), Load(Taps[3])), Zero);
        Top = _mm_unpacklo_epi16(Top, _mm_srli_si128(Top, 8));
        Bottom = _mm_unpacklo_epi16(Bottom, _mm_srli_si128(Bottom, 8));
        __m128i Sum = _mm_add_epi32(_mm_madd_epi16(Top, _mm_set1_epi32(int(W00 | (W01 << 16)))),
                                    _mm_madd_epi16(Bottom, _mm_set1_epi32(int(W10 | (W11 << 16)))));
        Sum = _mm_srli_epi32(_mm_add_epi32(Sum, _mm_set1_epi32(int(Round))), agg::image_filter_shift);
        __m128i Lanes = _mm_packs_epi32(Sum, Sum);
        __m128i Alpha = _mm_min_epi16(_mm_shufflelo_epi16(Lanes, _MM_SHUFFLE(3, 3, 3, 3)), _mm_set1_epi16(255));
        Lanes = _mm_min_epi16(Lanes, Alpha);
        uint32_t Bytes = uint32_t(_mm_cvtsi128_si32(_mm_packus_epi16(Lanes, Lanes)));
        agg::rgba8 Result;
        // rgba8 is four bytes in the order R, G, B, A, as the lanes are.
        std::memcpy(static_cast<void *>(&Result), &Bytes, 4);
        return Result;
    }

    static __m128i Load(const uint8_t *Pixel)
    {
        int32_t Bytes;
        std::memcpy(&Bytes, Pixel, 4);
        return _mm_cvtsi32_si128(Bytes);
    }
#else
    static agg::rgba8 Weigh(const uint8_t *const *Taps, unsigned W00, unsigned W01, unsigned W10, unsigned W11)
    {
        const unsigned Weights[4] = {W00, W01, W10, W11};
        unsigned Sum[4] = {Round, Round, Round, Round};
        for (int Tap = 0; Tap < 4; Tap++)
            for (int Channel = 0; Channel < 4; Channel++)
                Sum[Channel] += Weights[Tap] * Taps[Tap][Channel];
        unsigned A = Sum[3] >> agg::image_filter_shift;
        if (A > 255)
            A = 255;
        return agg::rgba8(Capped(Sum[0] >> agg::image_filter_shift, A), Capped(Sum[1] >> agg::image_filter_shift, A),
                          Capped(Sum[2] >> agg::image_filter_shift, A), static_cast<uint8_t>(A));
    }

    static uint8_t Capped(unsigned Channel, unsigned Alpha)
    {
        return static_cast<uint8_t>(Channel > Alpha ? Alpha : Channel);
    }
#endif

    const uint8_t *Pixels;
    int32_t Stride;
    int_point2d Last;
    Interpolator &Mapping;
    // Far taps by fraction, then near taps by fraction.
    int16_t Weights[2 * agg::image_subpixel_scale];
};
