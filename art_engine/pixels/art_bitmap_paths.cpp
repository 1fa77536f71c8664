// Scan conversion into an art_bitmap. Each call builds its pipeline on the stack and drops it at
// the end: nothing is kept from one shape to the next.
#include "art_engine/pixels/art_bitmap.h"

#include <algorithm>
#include <cmath>

#include <agg_conv_curve.h>
#include <agg_conv_dash.h>
#include <agg_conv_stroke.h>
#include <agg_conv_transform.h>
#include <agg_ellipse.h>
#include <agg_rasterizer_scanline_aa.h>
#include <agg_scanline_p.h>
// The boolean algebra sets its span pointers on every path that reads them, in a way the optimiser
// cannot follow once it has inlined the loops. The templates are instantiated further down this
// file, so the warning stays off for all of it.
#pragma GCC diagnostic ignored "-Wmaybe-uninitialized"
#include <agg_scanline_boolean_algebra.h>

#include "art_engine/geometry/art_rasterizer.h"
#include "art_engine/pixels/art_blend.h"
#include "art_engine/pixels/art_span_router.h"
#include "zel_basics/debug.h"

namespace {

typedef agg::conv_curve<art_path> art_curve;
// The matrix is only read.
template <class VertexSource> using art_transform = agg::conv_transform<VertexSource, const agg::trans_affine>;

// A rasterizer for Target: non-zero, figures closed automatically, clipped to the whole bitmap, so
// that nothing outside it reaches a kernel. Its gamma table is the identity from construction, so
// coverage is the exact covered area.
void PrepareRasterizer(art_rasterizer &Rasterizer, art_bitmap &Target)
{
    Rasterizer.filling_rule(agg::fill_non_zero);
    Rasterizer.auto_close(true);
    Rasterizer.clip_box(0, 0, Target.GetSize().X, Target.GetSize().Y);
}

template <class VertexSource> void AddVertices(art_rasterizer &Rasterizer, VertexSource &Source)
{
    double X = 0;
    double Y = 0;
    unsigned Command;
    Source.rewind(0);
    while (!agg::is_stop(Command = Source.vertex(&X, &Y)))
        Rasterizer.add_vertex(X, Y, Command);
}

typedef art_span_router<art_pixfmt_rgba> span_router;

// The length of all figures of Curve together, as it flattens them; their closing segments do not
// count.
double PathLength(art_curve &Curve)
{
    double Length = 0;
    double LastX = 0;
    double LastY = 0;
    double X = 0;
    double Y = 0;
    unsigned Command;
    Curve.rewind(0);
    while (!agg::is_stop(Command = Curve.vertex(&X, &Y))) {
        if (agg::is_line_to(Command))
            Length += std::hypot(X - LastX, Y - LastY);
        if (agg::is_vertex(Command)) {
            LastX = X;
            LastY = Y;
        }
    }
    return Length;
}

// A dashed line with more dashes than this shows none of them apart on any screen, and making them
// one by one along the whole path, seen or not, would take without end.
constexpr double MaximumDashes = 100000;

void Draw(art_rasterizer &Rasterizer, art_bitmap &Target, const agg::rgba8 &Color)
{
    if (!Rasterizer.rewind_scanlines())
        return;
    agg::scanline_p8 Line;
    Line.reset(Rasterizer.min_x(), Rasterizer.max_x());
    span_router Router(Target.GetPixelFormat(), Color);
    while (Rasterizer.sweep_scanline(Line))
        Router.render(Line);
}

template <class VertexSource> void FillSource(VertexSource &Source, art_bitmap &Target, const agg::rgba8 &Color)
{
    art_rasterizer Rasterizer;
    PrepareRasterizer(Rasterizer, Target);
    AddVertices(Rasterizer, Source);
    Draw(Rasterizer, Target, Color);
}

template <class VertexSource>
void SetUpStroke(agg::conv_stroke<VertexSource> &Stroke, double Width, int JoinType, int CapType, double MiterLimit,
                 double Scale)
{
    Stroke.line_join(agg::line_join_e(JoinType));
    Stroke.line_cap(agg::line_cap_e(CapType));
    Stroke.miter_limit(MiterLimit);
    Stroke.approximation_scale(LimitFlatteningScale(Scale, Width));
    Stroke.width(Width);
}

} // namespace

void art_bitmap::FillPathPlain(art_path &Path, agg::rgba8 Color)
{
    PremultiplyColor(Color);
    art_curve Curve(Path);
    Curve.approximation_scale(GetPathFlatteningScale(Path, 1.0));
    FillSource(Curve, *this, Color);
}

void art_bitmap::FillRectangle(double X, double Y, double W, double H, agg::rgba8 Color)
{
    art_path Path;
    AddRectanglePath(Path, X, Y, W, H);
    FillPathPlain(Path, Color);
}

void art_bitmap::FillPath(art_path &Path, agg::rgba8 Color, const agg::trans_affine &Matrix, bool EvenOdd,
                          double Scale)
{
    PremultiplyColor(Color);
    // Curves are flattened once, in object units, to the detail that their size on screen needs.
    art_curve Curve(Path);
    Curve.approximation_scale(GetPathFlatteningScale(Path, Scale));
    art_transform<art_curve> Transformed(Curve, Matrix);
    art_rasterizer Rasterizer;
    PrepareRasterizer(Rasterizer, *this);
    AddVertices(Rasterizer, Transformed);
    if (EvenOdd)
        Rasterizer.filling_rule(agg::fill_even_odd);
    Draw(Rasterizer, *this, Color);
}

void art_bitmap::StrokePath(art_path &Path, agg::rgba8 Color, double Width, const agg::trans_affine &Matrix,
                            art_outline_mode OutlineMode, int JoinType, int CapType, double MiterLimit, double Scale)
{
    PremultiplyColor(Color);
    // The stroke is made in object units before the matrix, so a matrix that stretches one axis
    // stretches the line with it.
    art_curve Curve(Path);
    Curve.approximation_scale(GetPathFlatteningScale(Path, Scale));
    agg::conv_stroke<art_curve> Stroke(Curve);
    // An outline on one side only is half of a centred one twice as wide.
    SetUpStroke(Stroke, OutlineMode == OutlineCentred ? Width : 2 * Width, JoinType, CapType, MiterLimit, Scale);
    art_transform<agg::conv_stroke<art_curve>> StrokeTransformed(Stroke, Matrix);
    art_rasterizer StrokeRasterizer;
    PrepareRasterizer(StrokeRasterizer, *this);
    AddVertices(StrokeRasterizer, StrokeTransformed);
    if (OutlineMode == OutlineCentred) {
        Draw(StrokeRasterizer, *this, Color);
        return;
    }

    art_transform<art_curve> FillTransformed(Curve, Matrix);
    art_rasterizer FillRasterizer;
    PrepareRasterizer(FillRasterizer, *this);
    AddVertices(FillRasterizer, FillTransformed);
    agg::scanline_p8 FillLine;
    agg::scanline_p8 StrokeLine;
    agg::scanline_p8 Result;
    span_router Router(GetPixelFormat(), Color);
    agg::sbool_combine_shapes_aa(OutlineMode == OutlineInside ? agg::sbool_and : agg::sbool_b_minus_a,
                                 FillRasterizer, StrokeRasterizer, FillLine, StrokeLine, Result, Router);
}

void art_bitmap::StrokeDashedPath(art_path &Path, agg::rgba8 Color, double Width, double DashLength,
                                  double DashCycle, double DashOffset, const agg::trans_affine &Matrix, int JoinType,
                                  int CapType, double MiterLimit, double Scale)
{
    // A cycle of no length would never move the dashes along the path.
    TOVAS_ASSERT(DashCycle>0, this);
    // A dash never shrinks to nothing, so that round and square caps still leave their dots.
    DashLength = DashLength < 1e-6 ? 1e-6 : (DashLength > 1.0 ? 1.0 : DashLength);
    DashOffset = DashOffset < 0.0 ? 0.0 : (DashOffset > 1.0 ? 1.0 : DashOffset);
    art_curve Curve(Path);
    Curve.approximation_scale(GetPathFlatteningScale(Path, Scale));
    // Too many dashes to tell apart (or a cycle or a path beyond any number) make an even tone: a
    // solid line at the share of the cycle that the dash covers.
    if (!std::isfinite(DashCycle) || !(PathLength(Curve) / DashCycle <= MaximumDashes)) {
        Color.a = static_cast<agg::int8u>(Color.a * DashLength + 0.5);
        StrokePath(Path, Color, Width, Matrix, OutlineCentred, JoinType, CapType, MiterLimit, Scale);
        return;
    }
    PremultiplyColor(Color);
    agg::conv_dash<art_curve> Dash(Curve);
    Dash.add_dash(DashLength * DashCycle, (1 - DashLength) * DashCycle);
    Dash.dash_start((1 - DashOffset) * DashCycle);
    agg::conv_stroke<agg::conv_dash<art_curve>> Stroke(Dash);
    SetUpStroke(Stroke, Width, JoinType, CapType, MiterLimit, Scale);
    art_transform<agg::conv_stroke<agg::conv_dash<art_curve>>> Transformed(Stroke, Matrix);
    FillSource(Transformed, *this, Color);
}

void art_bitmap::StrokeEllipse(double X, double Y, double RX, double RY, double Scale, agg::rgba8 Color,
                               double Width)
{
    PremultiplyColor(Color);
    agg::ellipse Ellipse(X, Y, RX, RY);
    Ellipse.approximation_scale(LimitFlatteningScale(Scale, 2 * std::max(std::fabs(RX), std::fabs(RY))));
    agg::conv_stroke<agg::ellipse> Stroke(Ellipse);
    Stroke.approximation_scale(LimitFlatteningScale(Scale, Width));
    Stroke.width(Width);
    FillSource(Stroke, *this, Color);
}
