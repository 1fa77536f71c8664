// Drawing an image into any four-cornered figure: photos, mip levels and their reductions all
// come through here.
#include <agg_image_filters.h>
#include <agg_renderer_scanline.h>
#include <agg_scanline_u.h>
#include <agg_span_interpolator_linear.h>
#include <agg_trans_bilinear.h>

#include "art_engine/geometry/art_rasterizer.h"
#include "art_engine/pixels/art_bitmap.h"
#include "art_engine/pixels/art_image_span_2x2.h"
#include "art_engine/pixels/art_span_buffer.h"
#include "zel_basics/array.h"

namespace {

// The bilinear mapping from target pixels into the source, its results held within a million
// source pixels of the origin. Where two corners of the figure (nearly) meet, a whole edge of the
// source is squeezed into a point, and the pixels there map back to positions beyond the integer
// range of 1/256 pixel; out there every position repeats an edge pixel anyway.
class quad_mapping
{
public:
    quad_mapping(const double *Quad, const int_rectangle &SourceRectangle)
        : Bilinear(Quad, SourceRectangle.Location.X, SourceRectangle.Location.Y, SourceRectangle.GetEnd().X,
                   SourceRectangle.GetEnd().Y)
    {
    }

    // False when the four corners give no mapping, as when they lie on one line.
    bool IsValid() const { return Bilinear.is_valid(); }

    void transform(double *X, double *Y) const
    {
        Bilinear.transform(X, Y);
        *X = Bounded(*X);
        *Y = Bounded(*Y);
    }

private:
    // Written so that a position that is no number at all is bounded too.
    static double Bounded(double Value)
    {
        const double Limit = 1 << 20;
        if (!(Value > -Limit))
            return -Limit;
        return Value < Limit ? Value : Limit;
    }

    agg::trans_bilinear Bilinear;
};

// The mapping is evaluated at the two ends of a span only, in 1/256 pixel, and stepped in integers
// between them: along a row a bilinear mapping is linear, so nothing is lost but the rounding.
typedef agg::span_interpolator_linear<quad_mapping, agg::image_subpixel_shift> quad_interpolator;

} // namespace

void art_bitmap::DrawBitmapInQuad(reference_pointer<art_bitmap> Source, const int_rectangle &SourceRectangle,
                                  const point2d Corners[4])
{
    art_bitmap &Image = *Source;
    int_point2d ImageSize = Image.GetSize();
    // A mip level of a very thin image can have no pixels on one side; there is nothing to repeat.
    if (ImageSize.X <= 0 || ImageSize.Y <= 0 || SourceRectangle.IsEmpty())
        return;

    // From target pixels back into the source, so that each target pixel asks for its colour. The
    // source around the rectangle takes part in filtering its border, as for any crop of a larger
    // picture; only the edges of the whole source repeat.
    double Quad[8] = {Corners[0].X, Corners[0].Y, Corners[1].X, Corners[1].Y,
                      Corners[2].X, Corners[2].Y, Corners[3].X, Corners[3].Y};
    quad_mapping TargetToSource(Quad, SourceRectangle);
    if (!TargetToSource.IsValid())
        return;

    // The rasterizer's gamma is the identity from construction, so the figure's edges get the exact
    // covered area.
    art_rasterizer Rasterizer;
    Rasterizer.filling_rule(agg::fill_non_zero);
    Rasterizer.clip_box(0, 0, Size.X, Size.Y);
    Rasterizer.move_to_d(Corners[0].X, Corners[0].Y);
    for (int I = 1; I < 4; I++)
        Rasterizer.line_to_d(Corners[I].X, Corners[I].Y);
    Rasterizer.close_polygon();

    agg::image_filter_lut Filter(agg::image_filter_bilinear(), true);
    quad_interpolator Interpolator(TargetToSource);
    art_image_span_2x2<quad_interpolator> Generator(Image, Interpolator, Filter);
    agg::scanline_u8 Line;
    art_span_buffer Allocator;
    agg::render_scanlines_aa(Rasterizer, Line, BaseRenderer, Allocator, Generator);
}
