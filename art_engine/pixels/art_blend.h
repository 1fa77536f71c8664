#pragma once

#include <cstddef>
#include <cstdint>

#include <agg_color_rgba.h>

// The pixel arithmetic of the engine: 8-bit fixed point on premultiplied R, G, B, A bytes. The
// rounding differs from kernel to kernel, and documents already rendered depend on every one of
// them, so none may be "corrected" to match another.

// For the drawing colour at the start of a fill or stroke, gradient table entries and the end of the
// colour filter. Truncates: white at alpha 254 becomes 253.
inline void PremultiplyColor(agg::rgba8 &Color)
{
    if (Color.a == 255)
        return;
    if (Color.a == 0) {
        Color.r = Color.g = Color.b = 0;
        return;
    }
    Color.r = static_cast<uint8_t>((Color.r * Color.a) >> 8);
    Color.g = static_cast<uint8_t>((Color.g * Color.a) >> 8);
    Color.b = static_cast<uint8_t>((Color.b * Color.a) >> 8);
}

// For pixels arriving from outside (copied bitmaps, decoded images) and the shadow's temporary.
// Rounds up: white at alpha 254 stays 254.
inline void PremultiplyPixel(agg::rgba8 &Pixel)
{
    if (Pixel.a == 255)
        return;
    if (Pixel.a == 0) {
        Pixel.r = Pixel.g = Pixel.b = 0;
        return;
    }
    Pixel.r = static_cast<uint8_t>((Pixel.r * Pixel.a + 255) >> 8);
    Pixel.g = static_cast<uint8_t>((Pixel.g * Pixel.a + 255) >> 8);
    Pixel.b = static_cast<uint8_t>((Pixel.b * Pixel.a + 255) >> 8);
}

// Back to straight alpha, for the colour filter and image export. A colour byte above its alpha
// would come out above 255 and is capped.
inline void UnpremultiplyPixel(agg::rgba8 &Pixel)
{
    if (Pixel.a == 255)
        return;
    if (Pixel.a == 0) {
        Pixel.r = Pixel.g = Pixel.b = 0;
        return;
    }
    unsigned Alpha = Pixel.a;
    unsigned R = Pixel.r * 255u / Alpha;
    unsigned G = Pixel.g * 255u / Alpha;
    unsigned B = Pixel.b * 255u / Alpha;
    Pixel.r = static_cast<uint8_t>(R > 255 ? 255 : R);
    Pixel.g = static_cast<uint8_t>(G > 255 ? 255 : G);
    Pixel.b = static_cast<uint8_t>(B > 255 ? 255 : B);
}

// Rec. 709 luma in 16-bit fixed point; the weights add up to 65535, so white gives 255. Taken from
// the bytes as stored, premultiplied.
inline unsigned Luma(unsigned R, unsigned G, unsigned B)
{
    return (R * 0x3666 + G * 0xB724 + B * 0x1275 + 0x8000) >> 16;
}
inline unsigned Luma(const agg::rgba8 &Pixel) { return Luma(Pixel.r, Pixel.g, Pixel.b); }

// Source-over of one byte. Every blend of a premultiplied colour c with coverage cover comes down,
// byte by byte, to this, with inv = 255 - ((ca * (cover + 1)) >> 8):
//   colour bytes: Xor = 0, Low and High the low and high byte of c * (cover + 1), giving
//                 (p * inv + c * (cover + 1)) >> 8, split so that no sum reaches 65536;
//   alpha byte:   Xor = 255, Low = High = 0, giving 255 - (((255 - pa) * inv) >> 8).
// With full coverage c * 256 has no low byte, so the colour bytes read ((p * inv) >> 8) + c, the
// run form. A result above 255 (a colour byte above its alpha) wraps as a byte store does.
inline uint8_t BlendLane(unsigned In, unsigned Xor, unsigned Inv, unsigned Low, unsigned High)
{
    return static_cast<uint8_t>(((((In ^ Xor) * Inv + Low) >> 8) + High) ^ Xor);
}

// One destination pixel P under one source pixel C (both R, G, B, A bytes) at a coverage of
// Cover, 0 to 255. A source with alpha 0 leaves P alone whatever its colour bytes hold. With alpha
// and coverage both full, inv is 0 and the bytes of C arrive as they are, alpha 255.
inline void BlendPixel(uint8_t *P, const uint8_t *C, unsigned Cover)
{
    unsigned Scale = Cover + 1;
    unsigned Inv = 255 - ((C[3] * Scale) >> 8);
    bool Skip = C[3] == 0;
    for (int Lane = 0; Lane < 3; Lane++) {
        unsigned Product = C[Lane] * Scale;
        uint8_t Out = BlendLane(P[Lane], 0, Inv, Product & 255, Product >> 8);
        P[Lane] = Skip ? P[Lane] : Out;
    }
    uint8_t OutAlpha = BlendLane(P[3], 255, Inv, 0, 0);
    P[3] = Skip ? P[3] : OutAlpha;
}

// Masks one layer pixel P by the luma of one stencil pixel S. At full luma the factor becomes 256,
// which leaves every byte exactly as it was: the same result as skipping the pixel.
inline void StencilPixel(uint8_t *P, const uint8_t *S)
{
    unsigned L = Luma(S[0], S[1], S[2]);
    unsigned Factor = L + (L == 255 ? 1 : 0);
    P[0] = static_cast<uint8_t>((P[0] * Factor) >> 8);
    P[1] = static_cast<uint8_t>((P[1] * Factor) >> 8);
    P[2] = static_cast<uint8_t>((P[2] * Factor) >> 8);
    P[3] = static_cast<uint8_t>((P[3] * Factor + 255) >> 8);
}

// Span kernels over rows of R, G, B, A bytes; the target pixel format, the bitmap operations and
// the benchmarks all go through these. They compute exactly what the pixel functions above compute.

// A run of Length pixels under one premultiplied colour with one coverage byte.
void BlendSolidRun(uint8_t *Pixels, unsigned Length, const agg::rgba8 &Color, unsigned Cover);
// Length pixels under one premultiplied colour with a coverage byte for each pixel.
void BlendSolidSpan(uint8_t *Pixels, unsigned Length, const agg::rgba8 &Color, const uint8_t *Covers);
// Length pixels under as many premultiplied source pixels, left to right, with a coverage byte for
// each pixel, or Cover for all when Covers is null.
void BlendColorSpan(uint8_t *Pixels, const uint8_t *Colors, unsigned Length, const uint8_t *Covers, unsigned Cover);
// The same from right to left, for a source that overlaps the target further left.
void BlendColorSpanBackwards(uint8_t *Pixels, const uint8_t *Colors, unsigned Length, unsigned Cover);
// One row of another picture, or of the same one, under one coverage. When the source lies in the
// same memory and TargetFurtherRight says that the target lies right of it in its picture, the
// pixels go right to left, so that none is read after it was written; otherwise the direction cannot
// change a byte and the forward kernel runs.
void BlendColorRow(uint8_t *Pixels, const uint8_t *Colors, unsigned Length, unsigned Cover, bool TargetFurtherRight);
// Masks Count layer pixels by the luma of as many stencil pixels; the stencil's alpha does not enter.
void ApplyStencilToPixels(uint8_t *Layer, const uint8_t *Stencil, size_t Count);

// The span kernels work in blocks of the widest vectors that the processor offers. Both widths give
// the same bytes; tests select the narrow one too, so that each is checked on any machine. Asking for
// wide blocks where there are none keeps the narrow ones. Returns whether wide blocks were in use.
bool UseWideBlendBlocks(bool Wide);
