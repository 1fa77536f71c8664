#pragma once

#include <gtest/gtest.h>

#include <sstream>
#include <string>
#include <vector>

#include "art_engine/geometry/art_path.h"
#include "art_engine/objects/art_object_factory.h"
#include "art_engine/objects/art_shape.h"
#include "art_engine/shapes/art_stencil_shape.h"
#include "tests/art_engine/objects/art_test_support.h"

namespace art_shape_test {

const unsigned Move = agg::path_cmd_move_to;
const unsigned Line = agg::path_cmd_line_to;
const unsigned Quad = agg::path_cmd_curve3;
const unsigned Cubic = agg::path_cmd_curve4;
const unsigned Close = agg::path_cmd_end_poly | agg::path_flags_close;

// One vertex of a path as it was stored.
struct vertex
{
    unsigned Command;
    double X;
    double Y;
};

// The coordinates of a command that is no vertex, such as the end of a polygon, mean nothing.
inline bool operator==(const vertex &A, const vertex &B)
{
    if (A.Command != B.Command)
        return false;
    return !agg::is_vertex(A.Command) || (A.X == B.X && A.Y == B.Y);
}

inline std::ostream &operator<<(std::ostream &Stream, const vertex &V)
{
    return Stream << "{" << V.Command << ", " << V.X << ", " << V.Y << "}";
}

inline std::vector<vertex> Vertices(art_path &Path)
{
    std::vector<vertex> List;
    for (unsigned I = 0; I < Path.total_vertices(); I++) {
        vertex V;
        V.Command = Path.vertex(I, &V.X, &V.Y);
        List.push_back(V);
    }
    return List;
}

// Every vertex of an AGG vertex source from path 0.
template <class Source> std::vector<vertex> SourceVertices(Source &Vertices)
{
    std::vector<vertex> List;
    Vertices.rewind(0);
    vertex V;
    while (!agg::is_stop(V.Command = Vertices.vertex(&V.X, &V.Y)))
        List.push_back(V);
    return List;
}

inline testing::AssertionResult NearVertices(const std::vector<vertex> &Got, const std::vector<vertex> &Want,
                                             double Tolerance)
{
    if (Got.size() != Want.size())
        return testing::AssertionFailure() << "got " << Got.size() << " vertices, want " << Want.size();
    for (size_t I = 0; I < Got.size(); I++) {
        bool Far = std::fabs(Got[I].X - Want[I].X) > Tolerance || std::fabs(Got[I].Y - Want[I].Y) > Tolerance;
        if (Got[I].Command != Want[I].Command || (agg::is_vertex(Got[I].Command) && Far))
            return testing::AssertionFailure() << "vertex " << I << " is " << Got[I] << ", want " << Want[I];
    }
    return testing::AssertionSuccess();
}

// A stencil shape of the given size that owns Shape, placed with its top-left corner at the origin.
inline ownership_pointer<art_stencil_shape> MakeStencil(art_shape *Shape, double W, double H)
{
    ownership_pointer<art_stencil_shape> Stencil(new art_stencil_shape(ownership_pointer<art_shape>(Shape)));
    Stencil->SetHandle(point2d(0, 0));
    Stencil->SetSize(point2d(W, H));
    Stencil->SetLocation(point2d(0, 0));
    return Stencil;
}

inline std::vector<vertex> ShapePath(art_object &Object, double Scale = 1)
{
    art_path Path;
    Object.GetShapePath(Path, Scale, Scale);
    return Vertices(Path);
}

// A file parsed from the text form; its first top-level tag is the one a test reads.
struct parsed
{
    explicit parsed(const char *Text) : File(xbd_file::LoadFromData(Text, false)) {}
    reference_pointer<xbd_tag> Tag() { return reference_pointer<xbd_tag>(File->GetRootTag()->GetChildren()[0].Get()); }

    ownership_pointer<xbd_file> File;
};

// The shape a stencil reads from a shape tag in the text form.
inline ownership_pointer<art_shape> ShapeFromText(const char *Text)
{
    parsed Parsed(Text);
    return ArtMakeShapeFromTag(Parsed.Tag());
}

// The tag that Shape saves of itself, as text.
// A stencil of the given size holding the shape of a text-form tag.
inline ownership_pointer<art_stencil_shape> StencilFromText(const char *Text, double W, double H)
{
    return MakeStencil(ShapeFromText(Text).Release(), W, H);
}

// The stencil's shape as the class the test made it of.
template <class T> T &ShapeOf(art_stencil_shape &Stencil)
{
    return *dynamic_cast<T *>(Stencil.GetShape().Get());
}

inline std::string SavedShape(art_shape &Shape)
{
    xbd_file File;
    ownership_pointer<xbd_tag> Tag = File.GetRootTag()->NewTag(Shape.GetTagName());
    Shape.SaveToTag(reference_pointer<xbd_tag>(Tag.Get()));
    return art_test::Dump(reference_pointer<xbd_tag>(Tag.Get()));
}

} // namespace art_shape_test
