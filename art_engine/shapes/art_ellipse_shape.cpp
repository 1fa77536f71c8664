#include "art_engine/shapes/art_ellipse_shape.h"

#include <cmath>

namespace {

// The vertices of the ellipse as a vertex source, so that the first one joins the path as every
// other figure's does. The step count keeps each chord within an eighth of a pixel at Scale.
class ellipse_vertices
{
public:
    ellipse_vertices(double CX, double CY, double RX, double RY, double Scale) : CX(CX), CY(CY), RX(RX), RY(RY)
    {
        double Average = (std::fabs(RX) + std::fabs(RY)) / 2;
        Scale = LimitFlatteningScale(Scale, 2 * Average);
        double Step = std::acos(Average / (Average + 0.125 / Scale)) * 2;
        double Count = std::floor(2 * agg::pi / Step + 0.5);
        // A count that is not a number, as from a zero scale, draws nothing like a zero count.
        NumSteps = Count >= 1 ? static_cast<int>(Count) : 0;
    }

    void rewind(unsigned) { Index = 0; }

    unsigned vertex(double *X, double *Y)
    {
        if (NumSteps == 0 || Index > NumSteps)
            return agg::path_cmd_stop;
        if (Index == NumSteps) {
            Index++;
            *X = 0;
            *Y = 0;
            return agg::path_cmd_end_poly | agg::path_flags_close;
        }
        double Angle = double(Index) / double(NumSteps) * 2.0 * agg::pi;
        *X = CX + std::cos(Angle) * RX;
        *Y = CY + std::sin(Angle) * RY;
        return Index++ == 0 ? agg::path_cmd_move_to : agg::path_cmd_line_to;
    }

private:
    double CX;
    double CY;
    double RX;
    double RY;
    int NumSteps = 0;
    int Index = 0;
};

} // namespace

art_ellipse_shape::art_ellipse_shape(reference_pointer<xbd_tag>) {}

ownership_pointer<art_shape> art_ellipse_shape::Clone()
{
    return ownership_pointer<art_shape>(new art_ellipse_shape(*this));
}

zel_string art_ellipse_shape::GetDebugInfo()
{
    return "art_ellipse_shape";
}

zel_string art_ellipse_shape::GetTagName()
{
    return "art_ellipse";
}

void art_ellipse_shape::GetPath(art_path &Path, double ScaleX, double)
{
    point2d Size = GetOwnerSize();
    ellipse_vertices Vertices(Size.X / 2, Size.Y / 2, Size.X / 2, Size.Y / 2, ScaleX);
    JoinPath(Path, Vertices);
}

bool art_ellipse_shape::HasSharpCorners()
{
    return false;
}

zel_string art_ellipse_shape::GetDisplayName()
{
    return "Ellipse";
}
