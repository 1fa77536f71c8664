#pragma once

#include <agg_color_rgba.h>
#include <agg_trans_affine.h>

#include "art_engine/geometry/art_path.h"
#include "zel_basics/point2d.h"

class art_bitmap;

// The distance function of a gradient: what its colours follow.
enum art_fade_type
{
    FadeTypeLinear = 0,
    FadeTypeCircular = 1,
    FadeTypeDiamond = 2,
    FadeTypeConic = 3,
    FadeTypeXY = 4,
    FadeTypeSqrtXY = 5
};

// Fills Path, in object units, with the gradient of Table (ArtGradientTableSize premultiplied
// entries) from P0 to P1 in object units; Matrix maps object units to Target's pixels and Scale is
// the detail that curves are flattened to. Reps is the number of times the table runs between P0
// and P1, each run going there and back when Mirror is set. Coverage blends each colour in with the
// colour-span kernel.
void FillPathWithFade(art_bitmap &Target, art_path &Path, const agg::trans_affine &Matrix, const agg::rgba8 *Table,
                      point2d P0, point2d P1, int FadeType, double Scale, double Reps, bool Mirror);
