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

art_block_kernels GetWideBlockKernels()
{
    return block_entry_points<wide_block>::Kernels();
}

#if defined(__clang__)
#pragma clang attribute pop
#else
#pragma GCC pop_options
#endif

#endif
