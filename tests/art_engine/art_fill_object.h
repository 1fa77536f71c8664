#pragma once

// A stand-in for a shape with a solid fill, for tests and benchmarks until real shapes exist: it
// paints its frame with one premultiplied colour at full coverage and draws nothing else. Its stack
// mode is set before it joins a parent, so that any mode can be tried.
#include <agg_rasterizer_scanline_aa.h>
#include <agg_renderer_scanline.h>
#include <agg_scanline_u.h>

#include "art_engine/art_bitmap.h"
#include "art_engine/art_object.h"

class fill_object : public art_object
{
public:
    fill_object(agg::rgba8 Color, art_stack_mode Mode) : Color(Color) { StackMode = Mode; }

    void Draw(reference_pointer<bitmap_interface> Target, reference_pointer<bitmap_interface>,
              agg::trans_affine Matrix, reference_pointer<art_cache>) override
    {
        agg::trans_affine Frame = GetObjectToParent();
        Frame.multiply(Matrix);
        double Xs[4] = {0, Size.X, Size.X, 0};
        double Ys[4] = {0, 0, Size.Y, Size.Y};
        agg::rasterizer_scanline_aa<> Rasterizer;
        for (int I = 0; I < 4; I++) {
            Frame.transform(&Xs[I], &Ys[I]);
            if (I == 0)
                Rasterizer.move_to_d(Xs[I], Ys[I]);
            else
                Rasterizer.line_to_d(Xs[I], Ys[I]);
        }
        art_bitmap *Bitmap = static_cast<art_bitmap *>(Target.Get());
        agg::scanline_u8 Scanline;
        Bitmap->GetSolidRenderer().color(Color);
        agg::render_scanlines(Rasterizer, Scanline, Bitmap->GetSolidRenderer());
    }

private:
    agg::rgba8 Color;
};
