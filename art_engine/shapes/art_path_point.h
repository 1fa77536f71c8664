#pragma once

#include <cstdint>

#include <agg_trans_affine.h>

#include "zel_basics/array.h"
#include "zel_basics/point2d.h"

// Connection codes of a point's side. The straight and curved code of one kind differ by one:
// cut/straight/curved to a neighbour in the list, closing the figure round the end of its run,
// and a third kind that closes the same way.
enum art_connection
{
    ConnectionCut = 0,
    ConnectionStraight = 1,
    ConnectionCurved = 2,
    ConnectionClosingStraight = 5,
    ConnectionClosingCurved = 6,
    ConnectionJoinStraight = 9,
    ConnectionJoinCurved = 10
};

enum art_curve_type
{
    CurveTypeCorner = 0,
    CurveTypeLinked = 1,
    CurveTypeSymmetric = 2
};

// An array that can name its last element the way a stack does.
template <class T> class art_peek_array : public array<T>
{
public:
    T &Peek() { return array<T>::GetLast(); }
};

// One point of a custom shape, in point space, with a control vector towards each neighbour.
class art_path_point
{
public:
    art_path_point() = default;
    explicit art_path_point(point2d Point) : Point(Point) {}

    point2d GetPoint() const { return Point; }
    void SetPoint(point2d NewPoint) { Point = NewPoint; }
    point2d GetCurveBefore() const { return CurveBefore; }
    point2d GetCurveAfter() const { return CurveAfter; }
    void SetCurveBefore(point2d Vector) { CurveBefore = Vector; }
    void SetCurveAfter(point2d Vector) { CurveAfter = Vector; }
    // The control points as locations.
    point2d GetControlBefore() const { return Point + CurveBefore; }
    point2d GetControlAfter() const { return Point + CurveAfter; }
    int32_t GetCurveType() const { return CurveType; }
    void SetCurveType(int32_t NewType) { CurveType = NewType; }
    int32_t GetConnectionBefore() const { return ConnectionBefore; }
    int32_t GetConnectionAfter() const { return ConnectionAfter; }
    void SetConnectionBefore(int32_t Code) { ConnectionBefore = Code; }
    void SetConnectionAfter(int32_t Code) { ConnectionAfter = Code; }

    bool GetCutBefore() const { return ConnectionBefore == ConnectionCut; }
    bool GetCutAfter() const { return ConnectionAfter == ConnectionCut; }
    // Joined to the neighbour in the list: the two are in one run.
    static bool IsConnected(int32_t Code) { return Code == ConnectionStraight || Code == ConnectionCurved; }
    static bool IsCurved(int32_t Code)
    {
        return Code == ConnectionCurved || Code == ConnectionClosingCurved || Code == ConnectionJoinCurved;
    }
    static bool IsClosing(int32_t Code)
    {
        return Code == ConnectionClosingStraight || Code == ConnectionClosingCurved || Code == ConnectionJoinStraight ||
               Code == ConnectionJoinCurved;
    }
    // The same kind of join, curved or straight.
    static int32_t MakeCurved(int32_t Code);
    static int32_t MakeStraight(int32_t Code);
    bool GetConnectedBefore() const { return IsConnected(ConnectionBefore); }
    bool GetConnectedAfter() const { return IsConnected(ConnectionAfter); }
    bool GetCurvedBefore() const { return IsCurved(ConnectionBefore); }
    bool GetCurvedAfter() const { return IsCurved(ConnectionAfter); }
    bool GetAnyClosedPathBefore() const { return IsClosing(ConnectionBefore); }
    bool GetAnyClosedPathAfter() const { return IsClosing(ConnectionAfter); }
    void SetCurvedBefore(bool Curved);
    void SetCurvedAfter(bool Curved);

    // Location is absolute, in point space. The side becomes curved, and a curved opposite side
    // follows by the curve type.
    void SetControlBefore(point2d Location);
    void SetControlAfter(point2d Location);
    // The point and both control locations go through Matrix.
    void Transform(const agg::trans_affine &Matrix);
    // Before becomes after: the point as seen walking the other way.
    void SwapSides();

private:
    // Turns Other by the curve type after Moved was set.
    void FollowOpposite(point2d Moved, point2d &Other, bool OtherCurved);

    point2d Point;
    point2d CurveBefore;
    point2d CurveAfter;
    int32_t CurveType = CurveTypeCorner;
    int32_t ConnectionBefore = ConnectionStraight;
    int32_t ConnectionAfter = ConnectionStraight;
};
