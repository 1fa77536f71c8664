#pragma once

// The block parts of the span kernels, written once for any vector width in the compiler's generic
// vector types. art_blend.cpp includes this for 16-byte blocks, and art_blend_wide.cpp, built for
// AVX2, for 32-byte ones; each keeps its own copy (unnamed namespace) made for its own instructions.
// Include it after every other header, so that nothing else is built for wider instructions than
// the processor may have.
//
// The arithmetic runs in 16-bit lanes, and every intermediate stays below 65536 (see BlendLane in
// art_blend.h), so the lanes give exactly the bytes of the pixel functions.

#include <cstddef>
#include <cstdint>
#include <cstring>

#include <agg_color_rgba.h>
#if defined(__SSE2__)
#include <immintrin.h>
#endif

#define ART_BLOCK_FUNCTION inline __attribute__((always_inline))

namespace {

// The lanes split pixels by byte order: the even bytes [r, b] of a pixel are the low bytes of its
// two 16-bit lanes.
constexpr bool LanesFitByteOrder = __BYTE_ORDER__ == __ORDER_LITTLE_ENDIAN__;

// One block of Bytes / 4 pixels, seen as bytes, as 16-bit lanes or as 32-bit pixels. Split by byte
// parity, the even bytes [r, b] of each pixel (mask 0x00FF) and the odd bytes [g, a] (shift right by
// 8) each fill 16-bit lanes, in which products fit; one shift and one OR put them back.
template <int Bytes> struct block
{
    typedef uint8_t bytes __attribute__((vector_size(Bytes)));
    typedef uint16_t lanes __attribute__((vector_size(Bytes)));
    typedef uint32_t pixels __attribute__((vector_size(Bytes)));
    typedef uint64_t words __attribute__((vector_size(Bytes)));
    static const unsigned Pixels = Bytes / 4;
};

typedef block<16> narrow_block;
typedef block<32> wide_block;

template <class To, class From> ART_BLOCK_FUNCTION To As(From Value)
{
    static_assert(sizeof(To) == sizeof(From), "a block is seen whole");
    To Result;
    std::memcpy(&Result, &Value, sizeof Result);
    return Result;
}

template <class B> ART_BLOCK_FUNCTION typename B::pixels LoadBlock(const uint8_t *Bytes)
{
    typename B::pixels Block;
    std::memcpy(&Block, Bytes, sizeof Block);
    return Block;
}

template <class B> ART_BLOCK_FUNCTION void StoreBlock(uint8_t *Bytes, typename B::pixels Block)
{
    std::memcpy(Bytes, &Block, sizeof Block);
}

template <class B> ART_BLOCK_FUNCTION typename B::pixels Splat(uint32_t Value) { return typename B::pixels{} + Value; }

template <class B> ART_BLOCK_FUNCTION typename B::lanes EvenBytes(typename B::pixels Block)
{
    return As<typename B::lanes>(Block) & 0x00FF;
}

template <class B> ART_BLOCK_FUNCTION typename B::lanes OddBytes(typename B::pixels Block)
{
    return As<typename B::lanes>(Block) >> 8;
}

// The low byte of each even lane and of each odd lane, back in place.
template <class B> ART_BLOCK_FUNCTION typename B::pixels Interleave(typename B::lanes Even, typename B::lanes Odd)
{
    return As<typename B::pixels>((Even & 0x00FF) | (Odd << 8));
}

// A value below 65536 in each pixel, in both of its 16-bit lanes.
template <class B> ART_BLOCK_FUNCTION typename B::lanes BothHalves(typename B::pixels Values)
{
    return As<typename B::lanes>(Values | (Values << 16));
}

// Where a source pixel has alpha 0, the target pixel as it was.
template <class B>
ART_BLOCK_FUNCTION typename B::pixels KeepWhereTransparent(typename B::pixels Blended, typename B::pixels Target,
                                                           typename B::pixels SourceAlpha)
{
    typename B::pixels Transparent = As<typename B::pixels>(SourceAlpha == 0);
    return (Blended & ~Transparent) | (Target & Transparent);
}

// BlendLane on 16-bit lanes: ((t * inv + (k & 255)) >> 8) + (k >> 8), k being c * (cover + 1).
template <class B>
ART_BLOCK_FUNCTION typename B::lanes BlendLanes(typename B::lanes T, typename B::lanes Inv, typename B::lanes K)
{
    return ((T * Inv + (K & 0x00FF)) >> 8) + (K >> 8);
}

// A source split for BlendScaledBlock: [r, b], [g, 0] and [a, a] lanes of each pixel.
template <class B> struct source_lanes
{
    typename B::lanes Even;
    typename B::lanes Odd;
    typename B::lanes Alpha;
};

template <class B> ART_BLOCK_FUNCTION source_lanes<B> SplitColour(const agg::rgba8 &Color)
{
    return source_lanes<B>{As<typename B::lanes>(Splat<B>(Color.r | Color.b << 16)),
                           As<typename B::lanes>(Splat<B>(Color.g)),
                           As<typename B::lanes>(Splat<B>(Color.a | Color.a << 16))};
}

template <class B>
ART_BLOCK_FUNCTION source_lanes<B> SplitSource(typename B::pixels Source, typename B::pixels SourceAlpha)
{
    return source_lanes<B>{EvenBytes<B>(Source), OddBytes<B>(Source & 0x00FFFFFF), BothHalves<B>(SourceAlpha)};
}

// Target pixels under source pixels, each at the scale cover + 1 in both lanes of its pixel. The
// alpha byte is flipped before and after, which turns BlendLane's colour form into its alpha form.
template <class B>
ART_BLOCK_FUNCTION typename B::pixels BlendScaledBlock(typename B::pixels Target, const source_lanes<B> &Source,
                                                       typename B::lanes Scale)
{
    typename B::lanes Inv = ((Source.Alpha * Scale) >> 8) ^ 0x00FF;
    typename B::pixels T = Target ^ 0xFF000000;
    typename B::lanes Even = BlendLanes<B>(EvenBytes<B>(T), Inv, Source.Even * Scale);
    typename B::lanes Odd = BlendLanes<B>(OddBytes<B>(T), Inv, Source.Odd * Scale);
    return Interleave<B>(Even, Odd) ^ 0xFF000000;
}

// At full coverage k = c * 256 has no low byte, so each lane is ((t * inv) >> 8) + c; c is added
// bytewise, which wraps as a byte store does.
template <class B>
ART_BLOCK_FUNCTION typename B::pixels BlendFullCoverBlock(typename B::pixels Target, typename B::pixels Source,
                                                          typename B::pixels SourceAlpha)
{
    typename B::lanes Inv = BothHalves<B>(SourceAlpha ^ 0xFF);
    typename B::pixels T = Target ^ 0xFF000000;
    typename B::pixels Scaled =
        As<typename B::pixels>(((EvenBytes<B>(T) * Inv) >> 8) | (((OddBytes<B>(T) * Inv) >> 8) << 8));
    typename B::bytes Sum = As<typename B::bytes>(Scaled) + As<typename B::bytes>(Source & 0x00FFFFFF);
    return As<typename B::pixels>(Sum) ^ 0xFF000000;
}

// cover + 1 of one block's coverage bytes, in both lanes of each pixel: each byte is doubled, then
// widened to 16 bits, by byte interleaving, which every vector unit does in one step.
template <class B> ART_BLOCK_FUNCTION typename B::lanes CoverScales(const uint8_t *Covers)
{
    typedef uint8_t sixteen_bytes __attribute__((vector_size(16)));
    typedef uint64_t two_words __attribute__((vector_size(16)));
    uint64_t Covered = 0;
    std::memcpy(&Covered, Covers, B::Pixels);
    sixteen_bytes Bytes = As<sixteen_bytes>(two_words{Covered, 0});
    sixteen_bytes Twice = __builtin_shufflevector(Bytes, Bytes, 0, 16, 1, 17, 2, 18, 3, 19, 4, 20, 5, 21, 6, 22, 7, 23);
    if constexpr (B::Pixels == 4)
        return As<typename B::lanes>(__builtin_shufflevector(Twice, sixteen_bytes{}, 0, 16, 1, 17, 2, 18, 3, 19, 4, 20,
                                                             5, 21, 6, 22, 7, 23)) +
               1;
    else
        return __builtin_convertvector(Twice, typename B::lanes) + 1;
}

// Luma in 16-bit lanes: the weights split into high and low bytes (0x3666 = 0x36 * 256 + 0x66 and so
// on), each byte set adding up to 255, so that each pixel's two weighted sums fit 16 bits; then
// (256 * high + low + 0x8000) >> 16 without leaving 32 bits.
template <class B> ART_BLOCK_FUNCTION typename B::pixels StencilLuma(typename B::pixels Stencil)
{
    typename B::lanes Even = EvenBytes<B>(Stencil);
    typename B::lanes Odd = OddBytes<B>(Stencil);
    typename B::pixels High = As<typename B::pixels>(Even * As<typename B::lanes>(Splat<B>(0x36 | 0x12 << 16)) +
                                                     Odd * As<typename B::lanes>(Splat<B>(0xB7)));
    typename B::pixels Low = As<typename B::pixels>(Even * As<typename B::lanes>(Splat<B>(0x66 | 0x75 << 16)) +
                                                    Odd * As<typename B::lanes>(Splat<B>(0x24)));
    High = (High & 0xFFFF) + (High >> 16);
    Low = (Low & 0xFFFF) + (Low >> 16);
    return (High + (Low >> 8) + 128) >> 8;
}

template <class B>
ART_BLOCK_FUNCTION typename B::pixels StencilBlock(typename B::pixels Layer, typename B::pixels Stencil)
{
    typename B::pixels L = StencilLuma<B>(Stencil);
    // 256 at full luma, as in StencilPixel.
    typename B::lanes Factor = BothHalves<B>(L - As<typename B::pixels>(L == 255));
    typename B::lanes Even = (EvenBytes<B>(Layer) * Factor) >> 8;
    typename B::lanes Odd = (OddBytes<B>(Layer) * Factor + As<typename B::lanes>(Splat<B>(255 << 16))) >> 8;
    return As<typename B::pixels>(Even | (Odd << 8));
}

// The block parts of the kernels: each handles whole blocks from the start of its span and returns
// how many pixels it did.

template <class B>
ART_BLOCK_FUNCTION unsigned SolidRunBlocks(uint8_t *Pixels, unsigned Length, const agg::rgba8 &Color, unsigned Cover)
{
    source_lanes<B> Source = SplitColour<B>(Color);
    typename B::lanes Scale = typename B::lanes{} + uint16_t(Cover + 1);
    unsigned I = 0;
    for (; I + B::Pixels <= Length; I += B::Pixels)
        StoreBlock<B>(Pixels + 4 * I, BlendScaledBlock<B>(LoadBlock<B>(Pixels + 4 * I), Source, Scale));
    return I;
}

template <class B>
ART_BLOCK_FUNCTION unsigned SolidSpanBlocks(uint8_t *Pixels, unsigned Length, const agg::rgba8 &Color,
                                            const uint8_t *Covers)
{
    source_lanes<B> Source = SplitColour<B>(Color);
    unsigned I = 0;
    for (; I + B::Pixels <= Length; I += B::Pixels) {
        typename B::pixels Target = LoadBlock<B>(Pixels + 4 * I);
        StoreBlock<B>(Pixels + 4 * I, BlendScaledBlock<B>(Target, Source, CoverScales<B>(Covers + I)));
    }
    return I;
}

// Whether no pixel of a block has a bit of Mask set: one test instruction on x86, where the width's
// own instructions are at hand (this is built for AVX2 only where wide blocks are).
template <class B> ART_BLOCK_FUNCTION bool NoneSet(typename B::pixels Block, uint32_t Mask)
{
    typename B::pixels Masked = Block & Mask;
#if defined(__SSE2__)
    if constexpr (B::Pixels == 8) {
        __m256i Vector = As<__m256i>(Masked);
        return _mm256_testz_si256(Vector, Vector) != 0;
    } else {
        return _mm_movemask_epi8(_mm_cmpeq_epi32(As<__m128i>(Masked), _mm_setzero_si128())) == 0xFFFF;
    }
#else
    typename B::words Words = As<typename B::words>(Masked);
    uint64_t Any = 0;
    for (unsigned I = 0; I < B::Pixels / 2; I++)
        Any |= Words[I];
    return Any == 0;
#endif
}

// How the coverage of a colour span is given; a separate loop for each keeps the choice out of the
// blocks.
enum span_cover
{
    CoverArray,
    OneFullCover,
    OnePartialCover
};

// One block of a colour span under the source block Source, into Result; false when the target is
// to stay as it is. LoadTarget gives the target block. At cover 255, the form in which pictures from
// the render cache are composed, two kinds of block are common and need no arithmetic:
// - Every source alpha 0: each pixel is skipped, so the block would store the target exactly as it
//   was, and leaving memory alone gives the same bytes.
// - Every source alpha 255: the quick path gives p = c and pa = 255 = ca, so the target becomes the
//   source block byte for byte, and the target is not even read.
// A block mixing these with partial pixels takes the arithmetic, whose lanes are independent. The
// other forms are rarely given such blocks and do without the tests.
template <class B, span_cover Form, class TargetLoader>
ART_BLOCK_FUNCTION bool ColorSpanBlock(typename B::pixels &Result, TargetLoader LoadTarget, typename B::pixels Source,
                                       const uint8_t *Covers, typename B::lanes OneScale)
{
    if (Form == OneFullCover) {
        if (NoneSet<B>(Source, 0xFF000000))
            return false;
        if (NoneSet<B>(~Source, 0xFF000000)) {
            Result = Source;
            return true;
        }
    }
    typename B::pixels Target = LoadTarget();
    typename B::pixels SourceAlpha = Source >> 24;
    typename B::pixels Blended;
    if (Form == CoverArray)
        Blended = BlendScaledBlock<B>(Target, SplitSource<B>(Source, SourceAlpha), CoverScales<B>(Covers));
    else if (Form == OneFullCover)
        Blended = BlendFullCoverBlock<B>(Target, Source, SourceAlpha);
    else
        Blended = BlendScaledBlock<B>(Target, SplitSource<B>(Source, SourceAlpha), OneScale);
    Result = KeepWhereTransparent<B>(Blended, Target, SourceAlpha);
    return true;
}

// Each block loads all its targets and sources before it stores, which keeps the left-to-right
// result when the source lies further right in the same memory: no block reads what an earlier one
// wrote. A span that does not end on a block boundary ends with one more block over its last
// pixels, loaded before anything is stored. Its first pixels are done twice, from the same original
// bytes, so they come out the same; short rows (small pictures) thus never fall back to the pixel
// functions. The span must be at least one block long.
template <class B, span_cover Form>
ART_BLOCK_FUNCTION void ColorSpanOfForm(uint8_t *Pixels, const uint8_t *Colors, unsigned Length, const uint8_t *Covers,
                                        unsigned Cover)
{
    typename B::lanes OneScale = typename B::lanes{} + uint16_t(Cover + 1);
    unsigned Last = Length - B::Pixels;
    bool Ragged = Length % B::Pixels != 0;
    typename B::pixels LastTarget{};
    typename B::pixels LastSource{};
    if (Ragged) {
        LastTarget = LoadBlock<B>(Pixels + 4 * Last);
        LastSource = LoadBlock<B>(Colors + 4 * Last);
    }
    typename B::pixels Result;
    for (unsigned I = 0; I + B::Pixels <= Length; I += B::Pixels) {
        uint8_t *Target = Pixels + 4 * I;
        if (ColorSpanBlock<B, Form>(
                Result, [Target] { return LoadBlock<B>(Target); }, LoadBlock<B>(Colors + 4 * I),
                Form == CoverArray ? Covers + I : nullptr, OneScale))
            StoreBlock<B>(Target, Result);
    }
    if (Ragged && ColorSpanBlock<B, Form>(
                      Result, [LastTarget] { return LastTarget; }, LastSource,
                      Form == CoverArray ? Covers + Last : nullptr, OneScale))
        StoreBlock<B>(Pixels + 4 * Last, Result);
}

// Does the whole span when it is at least one block long, else leaves it to the pixel functions.
template <class B>
ART_BLOCK_FUNCTION unsigned ColorSpanBlocks(uint8_t *Pixels, const uint8_t *Colors, unsigned Length,
                                            const uint8_t *Covers, unsigned Cover)
{
    if (Length < B::Pixels)
        return 0;
    if (Covers != nullptr)
        ColorSpanOfForm<B, CoverArray>(Pixels, Colors, Length, Covers, Cover);
    else if (Cover == 255)
        ColorSpanOfForm<B, OneFullCover>(Pixels, Colors, Length, Covers, Cover);
    else
        ColorSpanOfForm<B, OnePartialCover>(Pixels, Colors, Length, Covers, Cover);
    return Length;
}

template <class B> ART_BLOCK_FUNCTION size_t StencilBlocks(uint8_t *Layer, const uint8_t *Stencil, size_t Count)
{
    size_t I = 0;
    for (; I + B::Pixels <= Count; I += B::Pixels)
        StoreBlock<B>(Layer + 4 * I, StencilBlock<B>(LoadBlock<B>(Layer + 4 * I), LoadBlock<B>(Stencil + 4 * I)));
    return I;
}

// The kernels of one block width as functions of their own, so that each keeps its blocks inline and
// is built for the instructions in force where this header is included.
template <class B> struct block_entry_points
{
    static unsigned SolidRun(uint8_t *Pixels, unsigned Length, const agg::rgba8 &Color, unsigned Cover)
    {
        return SolidRunBlocks<B>(Pixels, Length, Color, Cover);
    }
    static unsigned SolidSpan(uint8_t *Pixels, unsigned Length, const agg::rgba8 &Color, const uint8_t *Covers)
    {
        return SolidSpanBlocks<B>(Pixels, Length, Color, Covers);
    }
    static unsigned ColorSpan(uint8_t *Pixels, const uint8_t *Colors, unsigned Length, const uint8_t *Covers,
                              unsigned Cover)
    {
        return ColorSpanBlocks<B>(Pixels, Colors, Length, Covers, Cover);
    }
    static size_t Stencil(uint8_t *Layer, const uint8_t *Stencil, size_t Count)
    {
        return StencilBlocks<B>(Layer, Stencil, Count);
    }
    static art_block_kernels Kernels()
    {
        return art_block_kernels{B::Pixels * 4 == 32, SolidRun, SolidSpan, ColorSpan, Stencil};
    }
};

} // namespace
