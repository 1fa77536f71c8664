#pragma once

#include <cstdint>

#include <agg_color_rgba.h>

#include "art_engine/effects/art_gradient_distance.h"
#include "art_engine/effects/art_gradient_interpolator.h"

// The colours of a gradient along a span, on AGG's span generator interface: each pixel centre is
// mapped to gradient units, measured by the distance function Shape, and looked up in the
// premultiplied colour table. Per pixel this is integer work and one table read, plus a root or an
// arctangent for the shapes that need one.
template <class Shape, bool Mirror> class art_gradient_span_generator
{
public:
    typedef agg::rgba8 color_type;

    art_gradient_span_generator(art_gradient_interpolator &Interpolator, const agg::rgba8 *Table, int64_t Length)
        : Interpolator(Interpolator), Table(Table), Length(Length)
    {
    }

    void prepare() {}

    void generate(agg::rgba8 *Span, int X, int Y, unsigned Count)
    {
        // The colours are bytes, and a store of bytes may alias anything: stepping a local copy and
        // reading the table and length from locals keeps the loop out of memory.
        art_gradient_interpolator Steps(Interpolator);
        const agg::rgba8 *Entries = Table;
        const int64_t Whole = Length;
        // From 8 fractional bits to the 4 that the distance functions take.
        const int Downscale = art_gradient_interpolator::subpixel_shift - 4;
        Steps.begin(X + 0.5, Y + 0.5, Count);
        for (unsigned I = 0; I < Count; I++) {
            int PX;
            int PY;
            Steps.coordinates(&PX, &PY);
            Span[I] = Entries[GradientTableIndex<Mirror>(Shape::Distance(PX >> Downscale, PY >> Downscale, Whole))];
            ++Steps;
        }
    }

private:
    art_gradient_interpolator &Interpolator;
    const agg::rgba8 *Table;
    int64_t Length;
};
