#pragma once

#include <cstdint>

// A point of any coordinate type; document and layout coordinates use doubles, pixels 32-bit integers.
template <class T> struct zel_point2d
{
    T X;
    T Y;

    zel_point2d() : X(0), Y(0) {}
    zel_point2d(T X, T Y) : X(X), Y(Y) {}

    zel_point2d operator+(const zel_point2d &Other) const { return zel_point2d(X + Other.X, Y + Other.Y); }
    zel_point2d operator-(const zel_point2d &Other) const { return zel_point2d(X - Other.X, Y - Other.Y); }
    zel_point2d &operator+=(const zel_point2d &Other)
    {
        X += Other.X;
        Y += Other.Y;
        return *this;
    }
    bool operator==(const zel_point2d &Other) const { return X == Other.X && Y == Other.Y; }
    bool operator!=(const zel_point2d &Other) const { return !(*this == Other); }
    // On both axes at once: a point lies within a size when it is <= on each.
    bool operator<=(const zel_point2d &Other) const { return X <= Other.X && Y <= Other.Y; }
};

// Document and layout coordinates.
struct point2d : zel_point2d<double>
{
    point2d() = default;
    point2d(double X, double Y) : zel_point2d<double>(X, Y) {}
    point2d(const zel_point2d<double> &Other) : zel_point2d<double>(Other) {}
};

// Pixel coordinates.
using int_point2d = zel_point2d<int32_t>;
