#include <gtest/gtest.h>

#include "zel_basics/rectangle.h"

TEST(Point2d, AddsAndSubtracts)
{
    point2d A(1.5, -2);
    point2d B = A + point2d(0.5, 4);
    EXPECT_EQ(B.X, 2.0);
    EXPECT_EQ(B.Y, 2.0);
    point2d C = B - A;
    EXPECT_EQ(C, point2d(0.5, 4));
}

TEST(IntPoint2d, ComparesOnBothAxesAtOnce)
{
    int_point2d Size(10, 20);
    EXPECT_TRUE(int_point2d(10, 20) <= Size);
    EXPECT_TRUE(int_point2d(3, 4) <= Size);
    EXPECT_FALSE(int_point2d(11, 4) <= Size);
    EXPECT_FALSE(int_point2d(3, 21) <= Size);
    EXPECT_EQ(int_point2d(3, 4) + int_point2d(7, 16), Size);
}

TEST(Rectangle, RightEdgeIsLocationPlusSize)
{
    rectangle R(point2d(2, 3), point2d(10, 5));
    EXPECT_EQ(R.GetEnd(), point2d(12, 8));
    int_rectangle I(int_point2d(-1, 1), int_point2d(4, 4));
    EXPECT_EQ(I.GetEnd(), int_point2d(3, 5));
    EXPECT_TRUE(I == int_rectangle(int_point2d(-1, 1), int_point2d(4, 4)));
    EXPECT_TRUE(I != int_rectangle(int_point2d(-1, 1), int_point2d(4, 5)));
}

TEST(Rectangle, IntersectAndUnite)
{
    int_rectangle A(int_point2d(0, 0), int_point2d(10, 10));
    int_rectangle B(int_point2d(5, -5), int_point2d(10, 10));
    EXPECT_EQ(A.Intersect(B), int_rectangle(int_point2d(5, 0), int_point2d(5, 5)));
    EXPECT_EQ(A.Unite(B), int_rectangle(int_point2d(0, -5), int_point2d(15, 15)));
    int_rectangle Apart(int_point2d(20, 0), int_point2d(3, 3));
    EXPECT_TRUE(A.Intersect(Apart).IsEmpty());
    EXPECT_FALSE(A.IsEmpty());
    EXPECT_TRUE(int_rectangle(int_point2d(1, 1), int_point2d(0, 4)).IsEmpty());
}

TEST(Rectangle, ContainsIncludesTheEdges)
{
    int_rectangle Outer(int_point2d(0, 0), int_point2d(10, 10));
    EXPECT_TRUE(Outer.Contains(Outer));
    EXPECT_TRUE(Outer.Contains(int_rectangle(int_point2d(2, 3), int_point2d(8, 7))));
    EXPECT_FALSE(Outer.Contains(int_rectangle(int_point2d(2, 3), int_point2d(9, 7))));
    EXPECT_FALSE(Outer.Contains(int_rectangle(int_point2d(-1, 3), int_point2d(2, 2))));
}

TEST(Rectangle, AreaOfLargeRectanglesDoesNotOverflow)
{
    EXPECT_EQ(GetArea(int_rectangle(int_point2d(0, 0), int_point2d(100000, 100000))), 10000000000LL);
    EXPECT_EQ(GetArea(int_rectangle(int_point2d(3, 4), int_point2d(5, 6))), 30);
}
