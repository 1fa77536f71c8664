#include "art_engine/pixels/art_blend.h"

#include <cstring>

#include "art_engine/pixels/art_blend_wide.h"
// Included last, as it asks.
#include "art_engine/pixels/art_blend_blocks.h"

// The span kernels take blocks of pixels, 16 bytes to a block, or 32 where the processor has AVX2
// (chosen at the first span); the pixel functions do the rest of each span, and the whole of a
// colour span shorter than one block.

namespace {

size_t NoStencilBlocks(uint8_t *, const uint8_t *, size_t) { return 0; }
unsigned NoSolidRunBlocks(uint8_t *, unsigned, const agg::rgba8 &, unsigned) { return 0; }
unsigned NoSolidSpanBlocks(uint8_t *, unsigned, const agg::rgba8 &, const uint8_t *) { return 0; }
unsigned NoColorSpanBlocks(uint8_t *, const uint8_t *, unsigned, const uint8_t *, unsigned) { return 0; }

art_block_kernels ChooseBlockKernels(bool Wide)
{
    if (!LanesFitByteOrder)
        return art_block_kernels{false, NoSolidRunBlocks, NoSolidSpanBlocks, NoColorSpanBlocks, NoStencilBlocks};
#if defined(ART_WIDE_BLOCKS)
    if (Wide && __builtin_cpu_supports("avx2"))
        return GetWideBlockKernels();
#endif
    return block_entry_points<narrow_block>::Kernels();
}

art_block_kernels &BlockKernels()
{
    static art_block_kernels Kernels = ChooseBlockKernels(true);
    return Kernels;
}

} // namespace

void BlendSolidRun(uint8_t *Pixels, unsigned Length, const agg::rgba8 &Color, unsigned Cover)
{
    if (Color.a == 0)
        return;
    if (((Color.a * (Cover + 1)) >> 8) > 254) {
        for (unsigned I = 0; I < Length; I++) {
            uint8_t *P = Pixels + 4 * I;
            P[0] = Color.r;
            P[1] = Color.g;
            P[2] = Color.b;
            P[3] = 255;
        }
        return;
    }
    const uint8_t Source[4] = {Color.r, Color.g, Color.b, Color.a};
    for (unsigned I = BlockKernels().SolidRun(Pixels, Length, Color, Cover); I < Length; I++)
        BlendPixel(Pixels + 4 * I, Source, Cover);
}

void BlendSolidSpan(uint8_t *Pixels, unsigned Length, const agg::rgba8 &Color, const uint8_t *Covers)
{
    if (Color.a == 0)
        return;
    const uint8_t Source[4] = {Color.r, Color.g, Color.b, Color.a};
    for (unsigned I = BlockKernels().SolidSpan(Pixels, Length, Color, Covers); I < Length; I++)
        BlendPixel(Pixels + 4 * I, Source, Covers[I]);
}

void BlendColorSpan(uint8_t *Pixels, const uint8_t *Colors, unsigned Length, const uint8_t *Covers, unsigned Cover)
{
    for (unsigned I = BlockKernels().ColorSpan(Pixels, Colors, Length, Covers, Cover); I < Length; I++)
        BlendPixel(Pixels + 4 * I, Colors + 4 * I, Covers != nullptr ? Covers[I] : Cover);
}

void BlendColorSpanBackwards(uint8_t *Pixels, const uint8_t *Colors, unsigned Length, unsigned Cover)
{
    for (unsigned I = Length; I-- > 0;)
        BlendPixel(Pixels + 4 * I, Colors + 4 * I, Cover);
}

void BlendColorRow(uint8_t *Pixels, const uint8_t *Colors, unsigned Length, unsigned Cover, bool TargetFurtherRight)
{
    uintptr_t SourceStart = reinterpret_cast<uintptr_t>(Colors);
    uintptr_t TargetStart = reinterpret_cast<uintptr_t>(Pixels);
    uintptr_t Bytes = uintptr_t(Length) * 4;
    bool Overlaps = TargetStart < SourceStart + Bytes && SourceStart < TargetStart + Bytes;
    if (TargetFurtherRight && Overlaps)
        BlendColorSpanBackwards(Pixels, Colors, Length, Cover);
    else
        BlendColorSpan(Pixels, Colors, Length, nullptr, Cover);
}

void ApplyStencilToPixels(uint8_t *Layer, const uint8_t *Stencil, size_t Count)
{
    for (size_t I = BlockKernels().Stencil(Layer, Stencil, Count); I < Count; I++)
        StencilPixel(Layer + 4 * I, Stencil + 4 * I);
}

bool UseWideBlendBlocks(bool Wide)
{
    bool WasWide = BlockKernels().Wide;
    BlockKernels() = ChooseBlockKernels(Wide);
    return WasWide;
}
