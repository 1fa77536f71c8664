#pragma once

#include <agg_color_rgba.h>
#include <agg_trans_affine.h>

#include "rofa_lib/bitmap_interface.h"
#include "zel_basics/lwpointers.h"
#include "zel_basics/rectangle.h"

// Fills Box of an object's space, mapped into Target's pixels by Matrix, with one premultiplied
// colour, anti-aliased at its edges. Target must be an art_bitmap.
void FillSolidBox(reference_pointer<bitmap_interface> Target, const agg::trans_affine &Matrix, const rectangle &Box,
                  const agg::rgba8 &Color);
