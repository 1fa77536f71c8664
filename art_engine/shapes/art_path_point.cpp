#include "art_engine/shapes/art_path_point.h"

#include <cmath>

int32_t art_path_point::MakeCurved(int32_t Code)
{
    switch (Code) {
    case ConnectionCut:
    case ConnectionStraight:
        return ConnectionCurved;
    case ConnectionClosingStraight:
        return ConnectionClosingCurved;
    case ConnectionJoinStraight:
        return ConnectionJoinCurved;
    default:
        return Code;
    }
}

int32_t art_path_point::MakeStraight(int32_t Code)
{
    switch (Code) {
    case ConnectionCut:
    case ConnectionCurved:
        return ConnectionStraight;
    case ConnectionClosingCurved:
        return ConnectionClosingStraight;
    case ConnectionJoinCurved:
        return ConnectionJoinStraight;
    default:
        return Code;
    }
}

void art_path_point::SetCurvedBefore(bool Curved)
{
    ConnectionBefore = Curved ? MakeCurved(ConnectionBefore) : MakeStraight(ConnectionBefore);
}

void art_path_point::SetCurvedAfter(bool Curved)
{
    ConnectionAfter = Curved ? MakeCurved(ConnectionAfter) : MakeStraight(ConnectionAfter);
}

void art_path_point::FollowOpposite(point2d Moved, point2d &Other, bool OtherCurved)
{
    if (!OtherCurved)
        return;
    if (CurveType == CurveTypeLinked) {
        double MovedLength = std::sqrt(Moved.X * Moved.X + Moved.Y * Moved.Y);
        if (MovedLength == 0)
            return;
        double OtherLength = std::sqrt(Other.X * Other.X + Other.Y * Other.Y);
        Other = point2d(-Moved.X / MovedLength * OtherLength, -Moved.Y / MovedLength * OtherLength);
    } else if (CurveType == CurveTypeSymmetric) {
        Other = point2d(-Moved.X, -Moved.Y);
    }
}

void art_path_point::SetControlBefore(point2d Location)
{
    CurveBefore = Location - Point;
    SetCurvedBefore(true);
    FollowOpposite(CurveBefore, CurveAfter, GetCurvedAfter());
}

void art_path_point::SetControlAfter(point2d Location)
{
    CurveAfter = Location - Point;
    SetCurvedAfter(true);
    FollowOpposite(CurveAfter, CurveBefore, GetCurvedBefore());
}

void art_path_point::Transform(const agg::trans_affine &Matrix)
{
    point2d Before = GetControlBefore();
    point2d After = GetControlAfter();
    Matrix.transform(&Point.X, &Point.Y);
    Matrix.transform(&Before.X, &Before.Y);
    Matrix.transform(&After.X, &After.Y);
    CurveBefore = Before - Point;
    CurveAfter = After - Point;
}

void art_path_point::SwapSides()
{
    point2d Curve = CurveBefore;
    CurveBefore = CurveAfter;
    CurveAfter = Curve;
    int32_t Connection = ConnectionBefore;
    ConnectionBefore = ConnectionAfter;
    ConnectionAfter = Connection;
}
