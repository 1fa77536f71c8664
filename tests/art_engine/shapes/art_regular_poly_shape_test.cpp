#include <gtest/gtest.h>

#include <cmath>

#include "art_engine/shapes/art_regular_poly_shape.h"
#include "tests/art_engine/shapes/art_shape_test_support.h"

using namespace art_shape_test;

namespace {

// One point a quarter turn from the centre, closing on both sides: the corners of a square.
const char *Square = "<art_custom_radial_shape num_sides=\"4\">"
                     "<point loc=\"(0,-1)\" connection_before=\"3\" connection_after=\"3\"/>"
                     "</art_custom_radial_shape>";

// Two points of one side, mirrored across the vertical through the centre.
const char *Mirrored = "<art_custom_radial_shape mirror_symmetry_angle=\"0\">"
                       "<point loc=\"(0,-1)\" connection_before=\"3\"/>"
                       "<point loc=\"(1,0)\" connection_after=\"3\"/>"
                       "</art_custom_radial_shape>";

} // namespace

TEST(ArtRegularPolyShape, EachSideIsTheFirstTurnedAboutTheCentre)
{
    ownership_pointer<art_stencil_shape> Stencil = StencilFromText(Square, 2, 2);
    art_regular_poly_shape &Shape = ShapeOf<art_regular_poly_shape>(*Stencil);
    ASSERT_EQ(4, Shape.GetNumPoints());
    // A quarter turn takes (x, y) to (-y, x) in these axes.
    point2d Want[4] = {point2d(0, -1), point2d(1, 0), point2d(0, 1), point2d(-1, 0)};
    for (int I = 0; I < 4; I++) {
        EXPECT_NEAR(Want[I].X, Shape.GetPathPoint(I).GetPoint().X, 1e-8) << I;
        EXPECT_NEAR(Want[I].Y, Shape.GetPathPoint(I).GetPoint().Y, 1e-8) << I;
    }
    std::vector<vertex> Path = {{Move, 1, 0}, {Line, 2, 1}, {Line, 1, 2}, {Line, 0, 1}, {Line, 1, 0}, {Close, 0, 0}};
    EXPECT_TRUE(NearVertices(ShapePath(*Stencil), Path, 1e-8));
    EXPECT_EQ(4, Shape.GetNumRepetitions());
    EXPECT_EQ(1, Shape.GetNumPointsPerSide());
}

TEST(ArtRegularPolyShape, TwoMirroredSidesDrawOneSideAndItsReflection)
{
    ownership_pointer<art_stencil_shape> Stencil = StencilFromText(Mirrored, 2, 1);
    art_regular_poly_shape &Shape = ShapeOf<art_regular_poly_shape>(*Stencil);
    ASSERT_EQ(4, Shape.GetNumPoints());
    // The reflection runs the other way: (1,0) reflected first, then (0,-1), with the sides exchanged.
    EXPECT_NEAR(-1, Shape.GetPathPoint(2).GetPoint().X, 1e-8);
    EXPECT_NEAR(0, Shape.GetPathPoint(2).GetPoint().Y, 1e-8);
    EXPECT_EQ(ConnectionClosingStraight, Shape.GetPathPoint(2).GetConnectionBefore());
    EXPECT_EQ(ConnectionClosingStraight, Shape.GetPathPoint(3).GetConnectionAfter());
    std::vector<vertex> Path = {{Move, 1, 0}, {Line, 2, 1}, {Line, 0, 1}, {Line, 1, 0}, {Line, 1, 0}, {Close, 0, 0}};
    EXPECT_TRUE(NearVertices(ShapePath(*Stencil), Path, 1e-8));
    EXPECT_EQ(2, Shape.GetNumPointsToMirror());
}

TEST(ArtRegularPolyShape, OnlyTheFirstSideIsWritten)
{
    ownership_pointer<art_shape> Shape = ShapeFromText(Mirrored);
    EXPECT_EQ("<art_custom_radial_shape mirror_symmetry_angle=\"0\">"
              "<point loc=\"(0,-1)\" connection_before=\"3\"></point>"
              "<point loc=\"(1,0)\" connection_after=\"3\"></point>"
              "</art_custom_radial_shape>",
              SavedShape(*Shape));
    ownership_pointer<art_shape> Four = ShapeFromText(Square);
    EXPECT_EQ("<art_custom_radial_shape num_sides=\"4\">"
              "<point loc=\"(0,-1)\" connection_before=\"3\" connection_after=\"3\"></point>"
              "</art_custom_radial_shape>",
              SavedShape(*Four));
}

TEST(ArtRegularPolyShape, MovingACopyMovesThePrimaryPointAndEverySide)
{
    ownership_pointer<art_stencil_shape> Stencil = StencilFromText(Square, 2, 2);
    art_regular_poly_shape &Shape = ShapeOf<art_regular_poly_shape>(*Stencil);
    // Point 2 is the bottom corner (0, 1), at object (1, 2); moving it to object (1, 2.5) is point (0, 1.5).
    Shape.SetHandleLocation(2, point2d(1, 2.5), false);
    point2d Want[4] = {point2d(0, -1.5), point2d(1.5, 0), point2d(0, 1.5), point2d(-1.5, 0)};
    for (int I = 0; I < 4; I++) {
        EXPECT_NEAR(Want[I].X, Shape.GetPathPoint(I).GetPoint().X, 1e-8) << I;
        EXPECT_NEAR(Want[I].Y, Shape.GetPathPoint(I).GetPoint().Y, 1e-8) << I;
    }
}

TEST(ArtRegularPolyShape, ThePrimaryIndexRunsBackwardsOnMirroredSides)
{
    ownership_pointer<art_shape> Shape = ShapeFromText("<art_custom_radial_shape num_sides=\"4\" "
                                                       "mirror_symmetry_angle=\"0.5\">"
                                                       "<point loc=\"(0,-1)\" connection_before=\"3\"/>"
                                                       "<point loc=\"(1,-1)\" connection_after=\"3\"/>"
                                                       "</art_custom_radial_shape>");
    art_regular_poly_shape &Poly = *dynamic_cast<art_regular_poly_shape *>(Shape.Get());
    ASSERT_EQ(8, Poly.GetNumPoints());
    int Want[8] = {0, 1, 1, 0, 0, 1, 1, 0};
    for (int P = 0; P < 8; P++)
        EXPECT_EQ(Want[P], Poly.GetPrimaryIndex(P)) << P;
}

TEST(ArtRegularPolyShape, TheCentreAndMirrorHandlesFollowThePoints)
{
    ownership_pointer<art_stencil_shape> Stencil = StencilFromText(Mirrored, 2, 1);
    art_regular_poly_shape &Shape = ShapeOf<art_regular_poly_shape>(*Stencil);
    ASSERT_EQ(6, Shape.GetNumHandles());
    // The box runs from (-1, -1) to (1, 0): the centre (0, 0) is object (1, 1).
    EXPECT_NEAR(1, Shape.GetHandleLocation(4).X, 1e-8);
    EXPECT_NEAR(1, Shape.GetHandleLocation(4).Y, 1e-8);
    zel_string Title;
    zel_string Tip;
    Shape.GetHandleToolTip(0, Title, Tip);
    EXPECT_EQ(zel_string("Primary"), Title);
    EXPECT_EQ(zel_string("Primary points are the points which are mirrored\nor repeated to form the full "
                         "symmetrical shape.\n"),
              Tip);
    Shape.GetHandleToolTip(2, Title, Tip);
    EXPECT_EQ(zel_string("Point Handle"), Title);
    Shape.GetHandleToolTip(4, Title, Tip);
    EXPECT_EQ(zel_string("Center Point"), Title);
    EXPECT_EQ(zel_string("Drag to change the center of the symmetry shape."), Tip);
    Shape.GetHandleToolTip(5, Title, Tip);
    EXPECT_EQ(zel_string("Mirror Line"), Title);
    EXPECT_EQ(zel_string("Drag to change the angle of the symmetry shape's mirror-line."), Tip);
    ownership_pointer<art_stencil_shape> Plain = StencilFromText(Square, 2, 2);
    EXPECT_EQ(5, ShapeOf<art_regular_poly_shape>(*Plain).GetNumHandles());
}

TEST(ArtRegularPolyShape, MovingTheCentreIsWrittenWithTheShape)
{
    ownership_pointer<art_stencil_shape> Stencil = StencilFromText(Square, 2, 2);
    art_regular_poly_shape &Shape = ShapeOf<art_regular_poly_shape>(*Stencil);
    // Object (1, 2) is point (0, 1): the square now turns about its bottom corner.
    Shape.SetHandleLocation(4, point2d(1, 2), false);
    EXPECT_EQ(point2d(0, 1), Shape.GetCenter());
    EXPECT_NEAR(2, Shape.GetPathPoint(1).GetPoint().X, 1e-8);
    EXPECT_NEAR(1, Shape.GetPathPoint(1).GetPoint().Y, 1e-8);
    EXPECT_NE(std::string::npos, SavedShape(Shape).find("center=\"(0,1)\""));
}

TEST(ArtRegularPolyShape, RotatingBySidesIsBounded)
{
    ownership_pointer<art_stencil_shape> Stencil = StencilFromText(Square, 2, 2);
    art_regular_poly_shape &Shape = ShapeOf<art_regular_poly_shape>(*Stencil);
    Shape.RotateSides(1);
    EXPECT_NEAR(1, Shape.GetPathPoint(0).GetPoint().X, 1e-8);
    EXPECT_NE(std::string::npos, ZEL_ERROR_MESSAGE(Shape.RotateSides(4)).find("'SideAmount<NumSides' is false"));
    EXPECT_NE(std::string::npos, ZEL_ERROR_MESSAGE(Shape.RotateSides(-1)).find("'SideAmount>=0' is false"));
}

TEST(ArtRegularPolyShape, AnswersAsASymmetryShape)
{
    art_regular_poly_shape Shape;
    EXPECT_EQ(zel_string("art_custom_radial_shape"), Shape.GetTagName());
    EXPECT_EQ(zel_string("Symmetry"), Shape.GetDisplayName());
    EXPECT_EQ(3, Shape.GetNumPoints());
    EXPECT_EQ(3, Shape.GetNumSides());
    EXPECT_TRUE(Shape.HasSharpCorners());
}

TEST(ArtRegularPolyShape, SidesStopBelowTenThousandPoints)
{
    // Two points a side: 4,999 sides at most. A count from a damaged document, up to the largest
    // number there is, makes no more.
    for (const char *Sides : {"4999", "5000", "2000000000", "2147483647"}) {
        std::string Text = std::string("<art_custom_radial_shape num_sides=\"") + Sides +
                           "\"><point loc=\"(0,-1)\" connection_before=\"3\"/>"
                           "<point loc=\"(1,0)\" connection_after=\"3\"/></art_custom_radial_shape>";
        ownership_pointer<art_shape> Shape = ShapeFromText(Text.c_str());
        art_regular_poly_shape &Poly = static_cast<art_regular_poly_shape &>(*Shape);
        EXPECT_EQ(4999, Poly.GetNumSides()) << Sides;
        EXPECT_EQ(9998, Poly.GetNumPoints()) << Sides;
    }
    // Without points, the count still stops there, so that nothing is turned a billion times.
    ownership_pointer<art_shape> Empty = ShapeFromText("<art_custom_radial_shape num_sides=\"2000000000\"/>");
    EXPECT_EQ(9999, static_cast<art_regular_poly_shape &>(*Empty).GetNumSides());
    EXPECT_EQ(0, static_cast<art_regular_poly_shape &>(*Empty).GetNumPoints());
    ownership_pointer<art_shape> Few = ShapeFromText(Square);
    EXPECT_EQ(4, static_cast<art_regular_poly_shape &>(*Few).GetNumSides());
}
