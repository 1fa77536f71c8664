#pragma once

#include <agg_color_rgba.h>

// A gradient's colours are looked up, never computed, per pixel: the table holds the whole run from
// the first colour to the second in this many steps.
constexpr int ArtGradientTableSize = 2048;

// How the colours between the two ends are blended.
enum art_fade_mode
{
    FadeModeShortHsb = 0,
    FadeModeLongHsb = 1,
    FadeModeRgb = 2
};

// Fills Table (ArtGradientTableSize entries) from Color0 to Color1, premultiplied, with Swap
// running it from Color1 to Color0 instead. An unknown mode leaves the table alone and gives false.
bool BuildGradientTable(agg::rgba8 *Table, agg::rgba Color0, agg::rgba Color1, int FadeMode, bool Swap);
