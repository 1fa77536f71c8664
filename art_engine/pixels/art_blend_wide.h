#pragma once

#include <cstddef>
#include <cstdint>

#include <agg_color_rgba.h>

// The block parts of the span kernels for one block width: each handles whole blocks from the start
// of its span and returns how many pixels it did. Wide says whether the blocks are 32 bytes.
struct art_block_kernels
{
    bool Wide;
    unsigned (*SolidRun)(uint8_t *, unsigned, const agg::rgba8 &, unsigned);
    unsigned (*SolidSpan)(uint8_t *, unsigned, const agg::rgba8 &, const uint8_t *);
    unsigned (*ColorSpan)(uint8_t *, const uint8_t *, unsigned, const uint8_t *, unsigned);
    size_t (*Stencil)(uint8_t *, const uint8_t *, size_t);
};

// The block parts in 32-byte blocks, built for AVX2 in art_blend_wide.cpp, where the compiler can
// build for it. Use them only when the processor has AVX2. Left out on Windows, where the compilers
// at hand do not align the stack for 32-byte spills.
#if (defined(__x86_64__) || defined(__i386__)) && defined(__GNUC__) && defined(__ELF__)
#define ART_WIDE_BLOCKS 1

art_block_kernels GetWideBlockKernels();

#endif
