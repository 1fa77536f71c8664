#include "art_engine/effects/art_fill_path_with_fade.h"

#include <cmath>

#include <agg_conv_curve.h>
#include <agg_conv_transform.h>
#include <agg_renderer_scanline.h>
#include <agg_scanline_u.h>

#include "art_engine/effects/art_gradient_distance.h"
#include "art_engine/effects/art_gradient_interpolator.h"
#include "art_engine/effects/art_gradient_span_generator.h"
#include "art_engine/geometry/art_rasterizer.h"
#include "art_engine/pixels/art_bitmap.h"
#include "art_engine/pixels/art_span_buffer.h"
#include "zel_basics/array.h"
#include "zel_basics/debug.h"

namespace {

typedef art_rasterizer fade_rasterizer;

// The angle of the gradient's axis, dx = 0 included, so that a gradient of no length has one too.
double AxisAngle(double DX, double DY)
{
    if (DX != 0) {
        double Angle = std::atan(DY / DX);
        return DX < 0 ? Angle + ArtGradientPi : Angle;
    }
    return DY > 0 ? ArtGradientPi * 0.5 : ArtGradientPi * 1.5;
}

template <class Shape, bool Mirror>
void RenderFade(fade_rasterizer &Rasterizer, art_bitmap &Target, art_gradient_interpolator &Interpolator,
                const agg::rgba8 *Table, int64_t Length)
{
    agg::scanline_u8 Line;
    art_span_buffer Allocator;
    art_gradient_span_generator<Shape, Mirror> Generator(Interpolator, Table, Length);
    agg::render_scanlines_aa(Rasterizer, Line, Target.GetBaseRenderer(), Allocator, Generator);
}

// The fold of repetitions is chosen once for the whole fill rather than at every pixel.
template <class Shape>
void RenderFade(fade_rasterizer &Rasterizer, art_bitmap &Target, art_gradient_interpolator &Interpolator,
                const agg::rgba8 *Table, int64_t Length, bool Mirror)
{
    if (Mirror)
        RenderFade<Shape, true>(Rasterizer, Target, Interpolator, Table, Length);
    else
        RenderFade<Shape, false>(Rasterizer, Target, Interpolator, Table, Length);
}

} // namespace

void FillPathWithFade(art_bitmap &Target, art_path &Path, const agg::trans_affine &Matrix, const agg::rgba8 *Table,
                      point2d P0, point2d P1, int FadeType, double Scale, double Reps, bool Mirror)
{
    double R = Mirror ? Reps * 2 : Reps;
    // Written so that a repetition count that is no number at all is raised too.
    if (!(R >= 0.001))
        R = 0.001;
    double DX = P1.X - P0.X;
    double DY = P1.Y - P0.Y;
    double Unit = std::sqrt(DX * DX + DY * DY) / (R * 2048.0);
    agg::trans_affine PixelToGradient = agg::trans_affine_scaling(Unit);
    PixelToGradient *= agg::trans_affine_rotation(AxisAngle(DX, DY));
    PixelToGradient *= agg::trans_affine_translation(P0.X, P0.Y);
    PixelToGradient *= Matrix;
    PixelToGradient.invert();

    agg::conv_curve<art_path> Curve(Path);
    Curve.approximation_scale(GetPathFlatteningScale(Path, Scale));
    agg::conv_transform<agg::conv_curve<art_path>, const agg::trans_affine> Transformed(Curve, Matrix);
    fade_rasterizer Rasterizer;
    Rasterizer.filling_rule(agg::fill_non_zero);
    Rasterizer.auto_close(true);
    Rasterizer.clip_box(0, 0, Target.GetSize().X, Target.GetSize().Y);
    Rasterizer.add_path(Transformed);

    art_gradient_interpolator Interpolator(PixelToGradient);
    int64_t Length = GradientLength(R);
    switch (FadeType) {
    case FadeTypeLinear:
        RenderFade<art_gradient_linear>(Rasterizer, Target, Interpolator, Table, Length, Mirror);
        break;
    case FadeTypeCircular:
        RenderFade<art_gradient_circular>(Rasterizer, Target, Interpolator, Table, Length, Mirror);
        break;
    case FadeTypeDiamond:
        RenderFade<art_gradient_diamond>(Rasterizer, Target, Interpolator, Table, Length, Mirror);
        break;
    case FadeTypeConic:
        RenderFade<art_gradient_conic>(Rasterizer, Target, Interpolator, Table, Length, Mirror);
        break;
    case FadeTypeXY:
        RenderFade<art_gradient_xy>(Rasterizer, Target, Interpolator, Table, Length, Mirror);
        break;
    case FadeTypeSqrtXY:
        RenderFade<art_gradient_sqrt_xy>(Rasterizer, Target, Interpolator, Table, Length, Mirror);
        break;
    default:
        TOVAS_ASSERT(false, nullptr);
    }
}
