#pragma once

#include <cmath>
#include <cstdint>

// The distance functions of gradients. A position arrives in gradient units with 4 fractional bits,
// the gradient's start at the origin and its end on the X axis; one repetition of the colour table
// spans ArtGradientRepetition of them, and Length is the whole gradient, all repetitions. Each
// function answers a distance from 0 up; beyond the gradient it answers Length - 1, so that the last
// repetition's colours go on outward.

constexpr int64_t ArtGradientRepetition = 2048 * 16;

// The half turn as gradients have always measured angles, to ten digits.
constexpr double ArtGradientPi = 3.141592654;

struct art_gradient_linear
{
    static int64_t Distance(int X, int, int64_t Length)
    {
        if (X < 0)
            return 0;
        return X < Length ? X : Length - 1;
    }
};

struct art_gradient_circular
{
    // The root is taken only inside the circle, and the box test spares it the product far outside.
    static int64_t Distance(int X, int Y, int64_t Length)
    {
        int64_t AX = std::llabs(X);
        int64_t AY = std::llabs(Y);
        if (AX < Length && AY < Length) {
            double Square = double(X) * X + double(Y) * Y;
            double Limit = double(Length);
            if (Square < Limit * Limit)
                return static_cast<int64_t>(std::sqrt(Square));
        }
        return Length - 1;
    }
};

struct art_gradient_diamond
{
    static int64_t Distance(int X, int Y, int64_t Length)
    {
        int64_t AX = std::llabs(X);
        int64_t AY = std::llabs(Y);
        int64_t Max = AX > AY ? AX : AY;
        return Max >= Length ? Length - 1 : Max;
    }
};

// One sweep round the full circle from the positive X axis, the lower half-plane counted back from
// the end, so that the sweep meets itself on the axis again.
struct art_gradient_conic
{
    static int64_t Distance(int X, int Y, int64_t Length)
    {
        double Angle = std::fabs(std::atan2(double(Y), double(X)));
        int64_t E = static_cast<int64_t>(Angle * (0.5 / ArtGradientPi) * double(Length) + 0.5);
        return Y >= 0 ? E : Length - E;
    }
};

struct art_gradient_xy
{
    static int64_t Distance(int X, int Y, int64_t Length)
    {
        double M = double(std::llabs(Y)) * double(std::llabs(X)) / double(Length);
        return M >= double(Length) ? Length - 1 : static_cast<int64_t>(M);
    }
};

struct art_gradient_sqrt_xy
{
    static int64_t Distance(int X, int Y, int64_t Length)
    {
        double M = double(std::llabs(X)) * double(std::llabs(Y));
        double Limit = double(Length);
        return M < Limit * Limit ? static_cast<int64_t>(std::sqrt(M)) : Length - 1;
    }
};

// The table entry for a distance: repetitions wrap round, a mirrored gradient runs there and back
// within twice the repetition. The repetition is a power of two, so the remainder made positive is
// the distance's low bits, and the entry, (Folded << 11) / D, is Folded >> 4: 0 up to 2048 at the
// mirror's turning point, which gives the last entry.
static_assert(ArtGradientRepetition == int64_t(1) << 15, "the fold works on the low bits of a distance");

template <bool Mirror> inline int GradientTableIndex(int64_t Distance)
{
    const int64_t D = ArtGradientRepetition;
    int64_t Folded;
    if (Mirror) {
        Folded = Distance & (2 * D - 1);
        if (Folded >= D)
            Folded = 2 * D - Folded;
    } else {
        Folded = Distance & (D - 1);
    }
    int Index = static_cast<int>(Folded >> 4);
    return Index > 2047 ? 2047 : Index;
}

// The length of the whole gradient in its units, for R repetitions. Kept far below the range of
// the arithmetic that the distance functions do with it, whatever R a document holds.
inline int64_t GradientLength(double R)
{
    double Length = double(ArtGradientRepetition) * R;
    return Length < 4.0e18 ? static_cast<int64_t>(Length) : static_cast<int64_t>(4.0e18);
}
