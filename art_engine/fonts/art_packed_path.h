#pragma once

#include <cstdint>

#include "art_engine/geometry/art_path.h"
#include "zel_basics/zel_string.h"

// The vertex of a packed path on disk: two floats. The command numbers are those of the packed form
// only; a path in memory uses the vertex commands of scan conversion.
struct save_point
{
    enum command
    {
        MoveTo = 0,
        LineTo = 1,
        Curve3 = 2,
        Curve4 = 3,
        EndClosedPoly = 4,
        EndOpenPoly = 5
    };

    float X;
    float Y;
};

constexpr int SavePointRecordSize = 8;
static_assert(sizeof(save_point) == SavePointRecordSize, "a save_point is two floats");

// The packed form of a path: polygons, each a closed flag, a run count and runs; a run is a point
// count, a run command and the points. All integers are ASIs. A path without vertices packs to no bytes.
zel_string EncodePackedPath(art_path &Path);
// Appends the polygons of Bytes to Path, every one closed whatever its flag says. Malformed bytes end
// in a zel_error, with what was read so far left in Path.
void DecodePackedPath(const zel_string &Bytes, art_path &Path);
