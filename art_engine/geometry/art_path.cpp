#include "art_engine/geometry/art_path.h"

#include <algorithm>
#include <cmath>

#include <agg_rounded_rect.h>

void GetMatrixScale(const agg::trans_affine &Matrix, double &ScaleX, double &ScaleY)
{
    double XX = 1;
    double XY = 0;
    Matrix.transform_2x2(&XX, &XY);
    double YX = 0;
    double YY = 1;
    Matrix.transform_2x2(&YX, &YY);
    ScaleX = std::sqrt(XX * XX + XY * XY);
    ScaleY = std::sqrt(YX * YX + YY * YY);
}

double GetMatrixMaxScale(const agg::trans_affine &Matrix)
{
    double ScaleX = 0;
    double ScaleY = 0;
    GetMatrixScale(Matrix, ScaleX, ScaleY);
    return std::max(ScaleX, ScaleY);
}

double LimitFlatteningScale(double Scale, double Extent)
{
    return Extent * Scale > ArtLargestFlattenedSize ? ArtLargestFlattenedSize / Extent : Scale;
}

double GetPathExtent(art_path &Path)
{
    double MinX = 0;
    double MinY = 0;
    double MaxX = 0;
    double MaxY = 0;
    bool First = true;
    for (unsigned I = 0; I < Path.total_vertices(); I++) {
        double X = 0;
        double Y = 0;
        if (!agg::is_vertex(Path.vertex(I, &X, &Y)))
            continue;
        MinX = First || X < MinX ? X : MinX;
        MaxX = First || X > MaxX ? X : MaxX;
        MinY = First || Y < MinY ? Y : MinY;
        MaxY = First || Y > MaxY ? Y : MaxY;
        First = false;
    }
    return std::max(MaxX - MinX, MaxY - MinY);
}

double GetPathFlatteningScale(art_path &Path, double Scale)
{
    return LimitFlatteningScale(Scale, GetPathExtent(Path));
}

void AddRectanglePath(art_path &Path, double X, double Y, double W, double H)
{
    // A figure left open would otherwise run on into the rectangle.
    if (agg::is_vertex(Path.vertices().last_command()))
        Path.vertices().add_vertex(0, 0, agg::path_cmd_stop);
    Path.move_to(X, Y);
    Path.line_to(X + W, Y);
    Path.line_to(X + W, Y + H);
    Path.line_to(X, Y + H);
    Path.line_to(X, Y);
    Path.close_polygon();
}

namespace {

// Between 0 and half the size; a negative size leaves no room for a corner at all.
double ClampRadius(double Radius, double Size)
{
    double Half = Size / 2;
    if (Radius < 0 || Half < 0)
        return 0;
    return std::min(Radius, Half);
}

} // namespace

void AddRoundedRectanglePath(art_path &Path, double X, double Y, double W, double H, double RX, double RY)
{
    agg::rounded_rect Shape(X, Y, X + W, Y + H, 0);
    Shape.radius(ClampRadius(RX, W), ClampRadius(RY, H));
    Shape.approximation_scale(LimitFlatteningScale(1.0, 2 * std::max(ClampRadius(RX, W), ClampRadius(RY, H))));
    JoinPath(Path, Shape);
}
