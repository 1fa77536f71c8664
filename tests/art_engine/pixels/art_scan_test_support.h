#pragma once

#include <cstdint>
#include <vector>

#include <agg_color_rgba.h>

#include "art_engine/geometry/art_path.h"
#include "art_engine/pixels/art_bitmap.h"

namespace art_scan_test {

const agg::rgba8 White(255, 255, 255, 255);

// A bitmap of transparent black, into which opaque white is drawn: then the red byte of each pixel
// is the coverage byte that reached it, since (255 * (cover + 1)) >> 8 is cover itself below 255.
inline void ClearToTransparent(art_bitmap &Bitmap) { Bitmap.Clear(agg::rgba8(0, 0, 0, 0)); }

inline unsigned CoverAt(art_bitmap &Bitmap, int X, int Y) { return Bitmap.GetPixelRow(Y)[X].r; }

inline std::vector<unsigned> Covers(art_bitmap &Bitmap)
{
    std::vector<unsigned> Result;
    for (int Y = 0; Y < Bitmap.GetSize().Y; Y++)
        for (int X = 0; X < Bitmap.GetSize().X; X++)
            Result.push_back(CoverAt(Bitmap, X, Y));
    return Result;
}

// Covered pixels in pixel units.
inline double CoveredArea(art_bitmap &Bitmap)
{
    double Sum = 0;
    for (unsigned Cover : Covers(Bitmap))
        Sum += Cover / 255.0;
    return Sum;
}

inline std::vector<agg::rgba8> PixelsOf(art_bitmap &Bitmap)
{
    std::vector<agg::rgba8> Result;
    for (int Y = 0; Y < Bitmap.GetSize().Y; Y++)
        for (int X = 0; X < Bitmap.GetSize().X; X++)
            Result.push_back(Bitmap.GetPixelRow(Y)[X]);
    return Result;
}

// A circle of four cubic arcs, the usual 0.5523 handle length, which stays within 0.03 percent of
// the true radius.
inline void AddCirclePath(art_path &Path, double CX, double CY, double R)
{
    const double K = 0.5522847498 * R;
    Path.move_to(CX + R, CY);
    Path.curve4(CX + R, CY + K, CX + K, CY + R, CX, CY + R);
    Path.curve4(CX - K, CY + R, CX - R, CY + K, CX - R, CY);
    Path.curve4(CX - R, CY - K, CX - K, CY - R, CX, CY - R);
    Path.curve4(CX + K, CY - R, CX + R, CY - K, CX + R, CY);
    Path.close_polygon();
}

} // namespace art_scan_test
