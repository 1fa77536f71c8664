#pragma once

// A stand-in for a shape with a solid fill, for tests and benchmarks until real shapes exist: it
// paints its frame with one premultiplied colour at full coverage and draws nothing else. Its stack
// mode is set before it joins a parent, so that any mode can be tried.
#include "art_engine/objects/art_object.h"
#include "art_engine/pixels/art_solid_box.h"

class fill_object : public art_object
{
public:
    fill_object(agg::rgba8 Color, art_stack_mode Mode) : Color(Color) { StackMode = Mode; }

    void Draw(reference_pointer<bitmap_interface> Target, reference_pointer<bitmap_interface>,
              agg::trans_affine Matrix, reference_pointer<art_cache>) override
    {
        agg::trans_affine Frame = GetObjectToParent();
        Frame.multiply(Matrix);
        FillSolidBox(Target, Frame, rectangle(point2d(0, 0), Size), Color);
    }

private:
    agg::rgba8 Color;
};
