#include "art_engine/pixels/art_blend_wide.h"

#include <cstddef>
#include <cstdint>
#include <cstring>

#include <agg_color_rgba.h>
#if defined(__SSE2__)
#include <immintrin.h>
#endif

#if defined(ART_WIDE_BLOCKS)

// Everything defined from here on is built for AVX2; the headers above are not.
#if defined(__clang__)
#pragma clang attribute push(__attribute__((target("avx2"))), apply_to = function)
#else
#pragma GCC push_options
#pragma GCC target("avx2")
#endif

#include "art_engine/pixels/art_blend_blocks.h"

unsigned WideSolidRunBlocks(uint8_t *Pixels, unsigned Length, const agg::rgba8 &Color, unsigned Cover)
{
    return SolidRunBlocks<wide_block>(Pixels, Length, Color, Cover);
}

unsigned WideSolidSpanBlocks(uint8_t *Pixels, unsigned Length, const agg::rgba8 &Color, const uint8_t *Covers)
{
    return SolidSpanBlocks<wide_block>(Pixels, Length, Color, Covers);
}

unsigned WideColorSpanBlocks(uint8_t *Pixels, const uint8_t *Colors, unsigned Length, const uint8_t *Covers,
                             unsigned Cover)
{
    return ColorSpanBlocks<wide_block>(Pixels, Colors, Length, Covers, Cover);
}

size_t WideStencilBlocks(uint8_t *Layer, const uint8_t *Stencil, size_t Count)
{
    return StencilBlocks<wide_block>(Layer, Stencil, Count);
}

#if defined(__clang__)
#pragma clang attribute pop
#else
#pragma GCC pop_options
#endif

#endif
