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
    // A size of 0 or less on either axis holds no point.
    bool IsEmpty() const { return Size.X <= 0 || Size.Y <= 0; }
    bool Contains(const zel_rectangle &Inner) const { return Location <= Inner.Location && Inner.GetEnd() <= GetEnd(); }

    // The common part; empty when the two do not meet.
    zel_rectangle Intersect(const zel_rectangle &Other) const
    {
        P End = GetEnd();
        P OtherEnd = Other.GetEnd();
        P Low(Larger(Location.X, Other.Location.X), Larger(Location.Y, Other.Location.Y));
        P High(Smaller(End.X, OtherEnd.X), Smaller(End.Y, OtherEnd.Y));
        return zel_rectangle(Low, High - Low);
    }

    // The smallest rectangle holding both.
    zel_rectangle Unite(const zel_rectangle &Other) const
    {
        P End = GetEnd();
        P OtherEnd = Other.GetEnd();
        P Low(Smaller(Location.X, Other.Location.X), Smaller(Location.Y, Other.Location.Y));
        P High(Larger(End.X, OtherEnd.X), Larger(End.Y, OtherEnd.Y));
        return zel_rectangle(Low, High - Low);
    }

    bool operator==(const zel_rectangle &Other) const { return Location == Other.Location && Size == Other.Size; }
    bool operator!=(const zel_rectangle &Other) const { return !(*this == Other); }

private:
    template <class T> static T Smaller(T A, T B) { return A < B ? A : B; }
    template <class T> static T Larger(T A, T B) { return A > B ? A : B; }
};

using rectangle = zel_rectangle<point2d>;
using int_rectangle = zel_rectangle<int_point2d>;

// Pixel count of a pixel rectangle, wide enough for any product of two 32-bit sides.
inline int64_t GetArea(const int_rectangle &Rect)
{
    return int64_t(Rect.Size.X) * int64_t(Rect.Size.Y);
}
