#include "art_engine/pixels/art_solid_box.h"

#include <agg_renderer_scanline.h>
#include <agg_scanline_u.h>

#include "art_engine/geometry/art_rasterizer.h"
#include "art_engine/pixels/art_bitmap.h"
#include "zel_basics/debug.h"

void FillSolidBox(reference_pointer<bitmap_interface> Target, const agg::trans_affine &Matrix, const rectangle &Box,
                  const agg::rgba8 &Color)
{
    TOVAS_ASSERT(Target->IsArtBitmap(), Target.Get());
    point2d End = Box.GetEnd();
    double Xs[4] = {Box.Location.X, End.X, End.X, Box.Location.X};
    double Ys[4] = {Box.Location.Y, Box.Location.Y, End.Y, End.Y};
    art_rasterizer Rasterizer;
    // Clipped to the target, so that a box far larger than the bitmap costs no more than the bitmap.
    Rasterizer.clip_box(0, 0, Target->GetSize().X, Target->GetSize().Y);
    for (int I = 0; I < 4; I++) {
        Matrix.transform(&Xs[I], &Ys[I]);
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
