#pragma once

#include <cmath>

#include <agg_trans_affine.h>

#include "art_engine/geometry/art_bounds.h"
#include "art_engine/objects/art_object.h"

// The frame arithmetic of art_object, inline for the walks that run through every object of a
// tree: redraw requests climbing to the root and hit tests. Steps that would multiply by an
// identity are skipped: the result is the same.

// AGG's rotate, with the cosine and sine given: a frame keeps them for its angle.
inline void ArtRotateMatrix(agg::trans_affine &Matrix, double Cos, double Sin)
{
    double T0 = Matrix.sx * Cos - Matrix.shy * Sin;
    double T2 = Matrix.shx * Cos - Matrix.sy * Sin;
    double T4 = Matrix.tx * Cos - Matrix.ty * Sin;
    Matrix.shy = Matrix.sx * Sin + Matrix.shy * Cos;
    Matrix.sy = Matrix.shx * Sin + Matrix.sy * Cos;
    Matrix.ty = Matrix.tx * Sin + Matrix.ty * Cos;
    Matrix.sx = T0;
    Matrix.shx = T2;
    Matrix.tx = T4;
}

inline void art_object::UpdateRotation()
{
    if (Angle == RotationAngle)
        return;
    RotationAngle = Angle;
    RotationCos = std::cos(Angle);
    RotationSin = std::sin(Angle);
}

inline agg::trans_affine art_object::ComputeObjectToParent()
{
    agg::trans_affine Matrix(1, 0, 0, 1, -Size.X * Handle.X, -Size.Y * Handle.Y);
    if (Scale.X != 1 || Scale.Y != 1)
        Matrix.scale(Scale.X, Scale.Y);
    if (Angle != 0) {
        UpdateRotation();
        ArtRotateMatrix(Matrix, RotationCos, RotationSin);
    }
    Matrix.translate(Location.X, Location.Y);
    return Matrix;
}

// Most frames neither turn nor scale; their box reaches the parent by a move, the translation
// that ComputeObjectToParent builds by the same sums.
inline rectangle art_object::BoxToParent(const rectangle &Box)
{
    if (Angle == 0 && Scale.X == 1 && Scale.Y == 1)
        return art_bounds::MoveBox(Box, -Size.X * Handle.X + Location.X, -Size.Y * Handle.Y + Location.Y);
    // A copy goes out to the call, so that the caller's box never has its address taken and can
    // stay in registers.
    rectangle Turned = Box;
    return TransformedBoxToParent(Turned);
}

inline void art_object::ComputeParentToObject(agg::trans_affine &Matrix)
{
    Matrix.translate(-Location.X, -Location.Y);
    if (Angle != 0) {
        UpdateRotation();
        ArtRotateMatrix(Matrix, RotationCos, -RotationSin);
    }
    if (Scale.X != 1 || Scale.Y != 1)
        Matrix.scale(1 / Scale.X, 1 / Scale.Y);
    Matrix.translate(Size.X * Handle.X, Size.Y * Handle.Y);
}

// The point rides in the matrix as a translation, which no step mixes with the rest of the matrix:
// the compiler keeps the arithmetic of the translation alone.
inline point2d art_object::ParentPointToObject(const point2d &Point)
{
    agg::trans_affine Matrix(1, 0, 0, 1, Point.X, Point.Y);
    ComputeParentToObject(Matrix);
    return point2d(Matrix.tx, Matrix.ty);
}
