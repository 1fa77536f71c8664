#include <gtest/gtest.h>

#include <cmath>
#include <vector>

#include <agg_rounded_rect.h>
#include <agg_trans_affine.h>

#include "art_engine/geometry/art_path.h"

namespace {

struct vertex
{
    unsigned Command;
    double X;
    double Y;
};

bool operator==(const vertex &A, const vertex &B) { return A.Command == B.Command && A.X == B.X && A.Y == B.Y; }

void PrintTo(const vertex &V, std::ostream *Stream) { *Stream << "{" << V.Command << ", " << V.X << ", " << V.Y << "}"; }

// Every stored vertex, stops included, in storage order.
std::vector<vertex> Stored(const art_path &Path)
{
    std::vector<vertex> Vertices;
    for (unsigned I = 0; I < Path.total_vertices(); I++) {
        vertex V;
        V.Command = Path.vertex(I, &V.X, &V.Y);
        Vertices.push_back(V);
    }
    return Vertices;
}

const unsigned Stop = agg::path_cmd_stop;
const unsigned MoveTo = agg::path_cmd_move_to;
const unsigned LineTo = agg::path_cmd_line_to;
const unsigned Curve3 = agg::path_cmd_curve3;
const unsigned EndPoly = agg::path_cmd_end_poly;
const unsigned Close = agg::path_cmd_end_poly | agg::path_flags_close;

TEST(ArtMatrixScale, IdentityHasUnitLengths)
{
    double X = 0;
    double Y = 0;
    GetMatrixScale(agg::trans_affine(), X, Y);
    EXPECT_EQ(1.0, X);
    EXPECT_EQ(1.0, Y);
}

TEST(ArtMatrixScale, RotationKeepsTheAxisLengthsOfTheScaling)
{
    agg::trans_affine Matrix = agg::trans_affine_scaling(3, 2) * agg::trans_affine_rotation(0.7);
    Matrix *= agg::trans_affine_translation(500, -300);
    double X = 0;
    double Y = 0;
    GetMatrixScale(Matrix, X, Y);
    EXPECT_NEAR(3.0, X, 1e-12);
    EXPECT_NEAR(2.0, Y, 1e-12);
    EXPECT_NEAR(3.0, GetMatrixMaxScale(Matrix), 1e-12);
}

// sx=2, shy=1, shx=3, sy=4: (1, 0) maps to (2, 1) and (0, 1) to (3, 4), whatever the translation.
TEST(ArtMatrixScale, SkewedMatrixMeasuresTheImagesOfTheUnitVectors)
{
    agg::trans_affine Matrix(2, 1, 3, 4, 1000, -77);
    double X = 0;
    double Y = 0;
    GetMatrixScale(Matrix, X, Y);
    EXPECT_DOUBLE_EQ(std::sqrt(5.0), X);
    EXPECT_DOUBLE_EQ(5.0, Y);
    EXPECT_DOUBLE_EQ(5.0, GetMatrixMaxScale(Matrix));
}

TEST(ArtMatrixScale, ShearAlongXLengthensOnlyTheYAxis)
{
    agg::trans_affine Matrix = agg::trans_affine_skewing(std::atan(0.75), 0);
    double X = 0;
    double Y = 0;
    GetMatrixScale(Matrix, X, Y);
    EXPECT_DOUBLE_EQ(1.0, X);
    EXPECT_DOUBLE_EQ(1.25, Y);
}

TEST(ArtMatrixScale, MirroringGivesPositiveLengths)
{
    double X = 0;
    double Y = 0;
    GetMatrixScale(agg::trans_affine_scaling(-4, -0.5), X, Y);
    EXPECT_DOUBLE_EQ(4.0, X);
    EXPECT_DOUBLE_EQ(0.5, Y);
    EXPECT_DOUBLE_EQ(4.0, GetMatrixMaxScale(agg::trans_affine_scaling(-4, -0.5)));
}

TEST(ArtRectanglePath, OnAnEmptyPathIsOneClosedFigure)
{
    art_path Path;
    AddRectanglePath(Path, 1, 2, 10, 5);
    std::vector<vertex> Want = {{MoveTo, 1, 2}, {LineTo, 11, 2}, {LineTo, 11, 7}, {LineTo, 1, 7}, {LineTo, 1, 2},
                                {Close, 0, 0}};
    EXPECT_EQ(Want, Stored(Path));
}

TEST(ArtRectanglePath, AfterAnOpenFigureEndsThatFigureFirst)
{
    art_path Path;
    Path.move_to(0, 0);
    Path.line_to(5, 5);
    AddRectanglePath(Path, 1, 2, 3, 4);
    std::vector<vertex> Want = {{MoveTo, 0, 0}, {LineTo, 5, 5}, {Stop, 0, 0},  {MoveTo, 1, 2},
                                {LineTo, 4, 2}, {LineTo, 4, 6}, {LineTo, 1, 6}, {LineTo, 1, 2},
                                {Close, 0, 0}};
    EXPECT_EQ(Want, Stored(Path));
}

TEST(ArtRectanglePath, AfterAClosedFigureAddsNoStop)
{
    art_path Path;
    AddRectanglePath(Path, 0, 0, 1, 1);
    AddRectanglePath(Path, 2, 2, 1, 1);
    std::vector<vertex> Stored2 = Stored(Path);
    ASSERT_EQ(12u, Stored2.size());
    EXPECT_EQ((vertex{Close, 0, 0}), Stored2[5]);
    EXPECT_EQ((vertex{MoveTo, 2, 2}), Stored2[6]);
}

TEST(ArtJoinPath, OnAnEmptyTargetKeepsTheFirstCommand)
{
    art_path Source;
    Source.move_to(3, 4);
    Source.line_to(5, 6);
    art_path Target;
    JoinPath(Target, Source);
    std::vector<vertex> Want = {{MoveTo, 3, 4}, {LineTo, 5, 6}};
    EXPECT_EQ(Want, Stored(Target));
}

TEST(ArtJoinPath, AfterAClosedFigureKeepsTheFirstCommand)
{
    art_path Target;
    Target.move_to(0, 0);
    Target.line_to(1, 0);
    Target.close_polygon();
    art_path Source;
    Source.move_to(3, 4);
    Source.line_to(5, 6);
    JoinPath(Target, Source);
    std::vector<vertex> Want = {{MoveTo, 0, 0}, {LineTo, 1, 0}, {Close, 0, 0}, {MoveTo, 3, 4}, {LineTo, 5, 6}};
    EXPECT_EQ(Want, Stored(Target));
}

TEST(ArtJoinPath, OnAnOpenFigureContinuesItWithALine)
{
    art_path Target;
    Target.move_to(0, 0);
    Target.line_to(1, 0);
    art_path Source;
    Source.move_to(3, 4);
    Source.line_to(5, 6);
    JoinPath(Target, Source);
    std::vector<vertex> Want = {{MoveTo, 0, 0}, {LineTo, 1, 0}, {LineTo, 3, 4}, {LineTo, 5, 6}};
    EXPECT_EQ(Want, Stored(Target));
}

TEST(ArtJoinPath, DropsAFirstVertexOnTheLastPoint)
{
    art_path Target;
    Target.move_to(0, 0);
    Target.line_to(1, 0);
    art_path Source;
    Source.move_to(1 + 1e-15, 0);
    Source.line_to(5, 6);
    JoinPath(Target, Source);
    std::vector<vertex> Want = {{MoveTo, 0, 0}, {LineTo, 1, 0}, {LineTo, 5, 6}};
    EXPECT_EQ(Want, Stored(Target));
}

TEST(ArtJoinPath, KeepsAFirstVertexJustBeyondTheTolerance)
{
    art_path Target;
    Target.move_to(0, 0);
    Target.line_to(0, 0);
    art_path Source;
    Source.move_to(2e-14, 0);
    JoinPath(Target, Source);
    std::vector<vertex> Want = {{MoveTo, 0, 0}, {LineTo, 0, 0}, {LineTo, 2e-14, 0}};
    EXPECT_EQ(Want, Stored(Target));
}

TEST(ArtJoinPath, LaterMovesBecomeLinesAndOtherCommandsStay)
{
    art_path Source;
    Source.move_to(1, 1);
    Source.curve3(2, 0, 3, 1);
    Source.close_polygon();
    Source.move_to(7, 7);
    Source.line_to(8, 8);
    Source.end_poly(agg::path_flags_none);
    art_path Target;
    JoinPath(Target, Source);
    std::vector<vertex> Want = {{MoveTo, 1, 1}, {Curve3, 2, 0}, {Curve3, 3, 1}, {Close, 0, 0},
                                {LineTo, 7, 7}, {LineTo, 8, 8}, {EndPoly, 0, 0}};
    EXPECT_EQ(Want, Stored(Target));
}

TEST(ArtJoinPath, AnEmptySourceChangesNothing)
{
    art_path Target;
    Target.move_to(0, 0);
    art_path Source;
    JoinPath(Target, Source);
    EXPECT_EQ((std::vector<vertex>{{MoveTo, 0, 0}}), Stored(Target));
}

// The vertices that a rounded rectangle with these exact radii gives, straight from AGG.
std::vector<vertex> RoundedRectangleVertices(double X, double Y, double W, double H, double RX, double RY)
{
    art_path Direct;
    agg::rounded_rect Shape(X, Y, X + W, Y + H, 0);
    Shape.radius(RX, RY);
    Direct.concat_path(Shape);
    return Stored(Direct);
}

TEST(ArtRoundedRectanglePath, OnAnEmptyPathIsTheRoundedRectangleAlone)
{
    art_path Path;
    AddRoundedRectanglePath(Path, 2, 3, 20, 10, 4, 3);
    std::vector<vertex> Got = Stored(Path);
    EXPECT_EQ(RoundedRectangleVertices(2, 3, 20, 10, 4, 3), Got);
    ASSERT_FALSE(Got.empty());
    EXPECT_EQ(MoveTo, Got.front().Command);
    EXPECT_TRUE(agg::is_close(Got.back().Command));
}

TEST(ArtRoundedRectanglePath, RadiiAboveHalfTheSizeBecomeHalfTheSize)
{
    art_path Path;
    AddRoundedRectanglePath(Path, 0, 0, 20, 10, 100, 6);
    EXPECT_EQ(RoundedRectangleVertices(0, 0, 20, 10, 10, 5), Stored(Path));
    EXPECT_NE(RoundedRectangleVertices(0, 0, 20, 10, 9, 4), Stored(Path));
}

TEST(ArtRoundedRectanglePath, NegativeRadiiBecomeZero)
{
    art_path Path;
    AddRoundedRectanglePath(Path, 0, 0, 20, 10, -3, -1);
    EXPECT_EQ(RoundedRectangleVertices(0, 0, 20, 10, 0, 0), Stored(Path));
    EXPECT_NE(RoundedRectangleVertices(0, 0, 20, 10, 1, 1), Stored(Path));
}

TEST(ArtRoundedRectanglePath, ContinuesAnOpenFigure)
{
    art_path Path;
    Path.move_to(-5, -5);
    AddRoundedRectanglePath(Path, 0, 0, 20, 10, 2, 2);
    std::vector<vertex> Rounded = RoundedRectangleVertices(0, 0, 20, 10, 2, 2);
    std::vector<vertex> Got = Stored(Path);
    ASSERT_EQ(Rounded.size() + 1, Got.size());
    EXPECT_EQ((vertex{MoveTo, -5, -5}), Got[0]);
    EXPECT_EQ((vertex{LineTo, Rounded[0].X, Rounded[0].Y}), Got[1]);
    for (size_t I = 1; I < Rounded.size(); I++)
        EXPECT_EQ(Rounded[I], Got[I + 1]) << "vertex " << I;
}

} // namespace

TEST(ArtFlattening, ScaleStaysUntilTheFigureOnScreenPassesTheLargestSize)
{
    EXPECT_EQ(2.0, LimitFlatteningScale(2.0, 100));
    EXPECT_EQ(1.0, LimitFlatteningScale(1.0, ArtLargestFlattenedSize));
    // 4,194,304 across at scale 2 would be twice the largest size: the scale halves.
    EXPECT_EQ(1.0, LimitFlatteningScale(2.0, ArtLargestFlattenedSize));
    EXPECT_EQ(ArtLargestFlattenedSize / 1e15, LimitFlatteningScale(1.0, 1e15));
    EXPECT_EQ(0.0, LimitFlatteningScale(1.0, HUGE_VAL));
}

TEST(ArtFlattening, PathExtentIsTheLargerSideOfEveryPointControlPointsIncluded)
{
    art_path Path;
    EXPECT_EQ(0.0, GetPathExtent(Path));
    Path.move_to(-2, 1);
    Path.curve3(30, -4, 5, 6);
    Path.close_polygon();
    EXPECT_EQ(32.0, GetPathExtent(Path));
    Path.move_to(1, 100);
    EXPECT_EQ(104.0, GetPathExtent(Path));
}

TEST(ArtFlattening, AGiantRoundedRectangleHasNoMoreCornerVerticesThanAFourMillionPixelOne)
{
    auto Vertices = [](double Side) {
        art_path Path;
        AddRoundedRectanglePath(Path, 0, 0, Side, Side, Side / 4, Side / 4);
        return Path.total_vertices();
    };
    // The corners' radius is a quarter of the side, so the corners of a side of twice the largest
    // size reach it exactly.
    EXPECT_EQ(Vertices(2 * ArtLargestFlattenedSize), Vertices(1e15));
    EXPECT_LT(Vertices(1e15), 100000u);
    EXPECT_LT(Vertices(1000), Vertices(2 * ArtLargestFlattenedSize));
}
