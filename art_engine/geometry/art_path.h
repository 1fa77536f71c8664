#pragma once

#include <agg_path_storage.h>
#include <agg_trans_affine.h>

// A path in object units: AGG's vertex storage, commands and all. Glyph outlines are the same type.
typedef agg::path_storage art_path;

// The engine's stroke settings, AGG's own values.
constexpr int ArtJoinMiter = 0;
constexpr int ArtJoinRound = 2;
constexpr int ArtJoinBevel = 3;
constexpr int ArtCapButt = 0;
constexpr int ArtCapSquare = 1;
constexpr int ArtCapRound = 2;
constexpr double ArtMiterLimit = 16.0;

// Where an outline lies against its path.
enum art_outline_mode
{
    OutlineInside = 0,
    OutlineOutside = 1,
    OutlineCentred = 2
};

// The lengths of the images of the unit vectors under Matrix, translation left out: X for (1, 0),
// Y for (0, 1).
void GetMatrixScale(const agg::trans_affine &Matrix, double &ScaleX, double &ScaleY);
// The larger of the two: the approximation scale that fits curves to their size on screen.
double GetMatrixMaxScale(const agg::trans_affine &Matrix);

// Flattening curves, arcs and round joins makes more vertices the larger they are on screen, and
// the rasterizer holds coordinates only to about 4 million pixels anyway. So nothing is flattened
// more finely than a figure of that size on screen would be, and a damaged document's giant figure
// costs no more than that.
constexpr double ArtLargestFlattenedSize = 4194304;
// Scale, or less where a figure Extent across (in the units that Scale turns into pixels) would be
// larger than ArtLargestFlattenedSize on screen.
double LimitFlatteningScale(double Scale, double Extent);
// The larger side of the box round every point of Path, control points included; 0 when empty.
double GetPathExtent(art_path &Path);
// Scale limited for the whole of Path.
double GetPathFlatteningScale(art_path &Path, double Scale);

// A closed rectangle figure; an open figure before it is ended first.
void AddRectanglePath(art_path &Path, double X, double Y, double W, double H);
// A rounded rectangle, the radii clamped to 0 to half the size, joined on by JoinPath's rule.
void AddRoundedRectanglePath(art_path &Path, double X, double Y, double W, double H, double RX, double RY);

// Appends the vertices of Source: the first continues the target's figure (as a line-to, or dropped
// when it lies on the target's last point), or starts one when the target has none open; every
// later move-to becomes a line-to.
template <class VertexSource> void JoinPath(art_path &Target, VertexSource &Source);

#include "art_engine/geometry/art_path_join.h"
