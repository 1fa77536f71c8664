#pragma once

#include <agg_color_rgba.h>

#include "zel_basics/array.h"

// Room for the colours of one span, on AGG's span allocator interface, grown to the widest span of
// a drawing and kept for the rest of it.
class art_span_buffer
{
public:
    agg::rgba8 *allocate(unsigned Length)
    {
        if (Colors.GetNumberOfElements() < int(Length))
            Colors.SetNumberOfElements(int(Length), agg::rgba8());
        return &Colors[0];
    }

private:
    array<agg::rgba8> Colors;
};
