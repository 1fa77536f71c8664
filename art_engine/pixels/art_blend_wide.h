#pragma once

#include <cstddef>
#include <cstdint>

#include <agg_color_rgba.h>

// The block parts of the span kernels in 32-byte blocks, built for AVX2 in art_blend_wide.cpp, where
// the compiler can build for it. Each handles whole blocks from the start of its span and returns
// how many pixels it did. Call them only when the processor has AVX2. Left out on Windows, where the
// compilers at hand do not align the stack for 32-byte spills.
#if (defined(__x86_64__) || defined(__i386__)) && defined(__GNUC__) && defined(__ELF__)
#define ART_WIDE_BLOCKS 1

unsigned WideSolidRunBlocks(uint8_t *Pixels, unsigned Length, const agg::rgba8 &Color, unsigned Cover);
unsigned WideSolidSpanBlocks(uint8_t *Pixels, unsigned Length, const agg::rgba8 &Color, const uint8_t *Covers);
unsigned WideColorSpanBlocks(uint8_t *Pixels, const uint8_t *Colors, unsigned Length, const uint8_t *Covers,
                             unsigned Cover);
size_t WideStencilBlocks(uint8_t *Layer, const uint8_t *Stencil, size_t Count);

#endif
