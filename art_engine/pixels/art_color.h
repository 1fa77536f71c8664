#pragma once

#include <cstdint>

#include <agg_color_rgba.h>

#include "zel_basics/zel_string.h"

// Colours live in two forms: agg::rgba, four doubles with straight alpha, in documents and object
// fields; and agg::rgba8, four bytes, where pixels are written (premultiplied inside a bitmap).

// A colour key of the palette generator. Hashed by its three bytes, so it has no padding.
struct color_rgb8
{
    uint8_t r = 0;
    uint8_t g = 0;
    uint8_t b = 0;

    color_rgb8() = default;
    color_rgb8(uint8_t r, uint8_t g, uint8_t b) : r(r), g(g), b(b) {}
    bool operator==(const color_rgb8 &Other) const { return r == Other.r && g == Other.g && b == Other.b; }
    bool operator!=(const color_rgb8 &Other) const { return !(*this == Other); }
};

static_assert(sizeof(color_rgb8) == 3, "a colour key hashes exactly its three bytes");

// A colour accumulator of the palette generator: room for sums and for errors below zero.
struct color_rgb32s
{
    int32_t r = 0;
    int32_t g = 0;
    int32_t b = 0;

    color_rgb32s() = default;
    color_rgb32s(int32_t r, int32_t g, int32_t b) : r(r), g(g), b(b) {}
    bool operator==(const color_rgb32s &Other) const { return r == Other.r && g == Other.g && b == Other.b; }
    bool operator!=(const color_rgb32s &Other) const { return !(*this == Other); }
};

// The text form "rrggbbaa", an optional "#" in front. Each pair is divided by 255; a pair cut short
// by the end of the text reads as 1, so "ff8000" is opaque orange and "" opaque white.
agg::rgba ArtTextToColor(const zel_string &Text);

// Eight lowercase digits, each channel times 255 truncated. Truncation after the division by 255 in
// reading loses a step on some bytes at each save; files depend on that, so it stays.
zel_string ArtColorToText(const agg::rgba &Color);

// "(r=R, g=G, b=B, a=A)".
zel_string ArtColorToDebugText(const agg::rgba &Color);

// The byte form a colour is drawn with: each channel times 255, rounded half up, red first. Not yet
// premultiplied; the drawing operations do that themselves.
agg::rgba8 ArtColorToRgba8(const agg::rgba &Color);
