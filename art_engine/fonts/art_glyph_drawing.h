#pragma once

#include <agg_color_rgba.h>
#include <agg_trans_affine.h>

#include "zel_basics/point2d.h"
#include "zel_basics/zel_string.h"

class art_bitmap;
class art_glyph;
class art_font_face;

// Fills Glyph, FontSize object units to the em, with its origin at Position in object units; Matrix maps
// object units to Bitmap's pixels. The outline is flattened for its size on screen: the matrix's scale
// times the font size.
void DrawGlyph(art_bitmap &Bitmap, art_glyph &Glyph, agg::rgba8 Color, const agg::trans_affine &Matrix,
               double FontSize, point2d Position);
// Draws every byte of Text as a character of Face, starting with the pen at Position on the baseline and
// advancing it by each glyph's x_step; returns where the pen stops.
point2d DrawGlyphString(art_bitmap &Bitmap, art_font_face &Face, const zel_string &Text, agg::rgba8 Color,
                        const agg::trans_affine &Matrix, double FontSize, point2d Position);
