#pragma once

#include "zel_basics/point2d.h"

// A rectangle by its top-left corner and its size; the right edge is Location.X + Size.X.
template <class P> struct zel_rectangle
{
    P Location;
    P Size;

    zel_rectangle() = default;
    zel_rectangle(const P &Location, const P &Size) : Location(Location), Size(Size) {}

    P GetEnd() const { return Location + Size; }
    bool operator==(const zel_rectangle &Other) const { return Location == Other.Location && Size == Other.Size; }
    bool operator!=(const zel_rectangle &Other) const { return !(*this == Other); }
};

using rectangle = zel_rectangle<point2d>;
using int_rectangle = zel_rectangle<int_point2d>;
