#pragma once

#include <agg_trans_affine.h>

#include "zel_basics/rectangle.h"

// Axis-aligned boxes of the engine: the box that holds a transformed rectangle, and the growing
// union of boxes. A union starts empty, which no box of zero size can stand for.
class art_bounds
{
public:
    art_bounds() : Empty(true) {}

    void Add(const rectangle &Box)
    {
        point2d End = Box.GetEnd();
        if (Empty) {
            Low = Box.Location;
            High = End;
            Empty = false;
            return;
        }
        Low.X = Box.Location.X < Low.X ? Box.Location.X : Low.X;
        Low.Y = Box.Location.Y < Low.Y ? Box.Location.Y : Low.Y;
        High.X = End.X > High.X ? End.X : High.X;
        High.Y = End.Y > High.Y ? End.Y : High.Y;
    }

    bool IsEmpty() const { return Empty; }
    // The empty union reads as the zero rectangle at the origin.
    rectangle GetRectangle() const { return Empty ? rectangle() : rectangle(Low, High - Low); }

    // The box of Box moved by Offset: what TransformBox gives for a matrix that only moves, the
    // same sums with the products by 1 and 0 left out.
    static rectangle MoveBox(const rectangle &Box, double OffsetX, double OffsetY)
    {
        double X0 = Box.Location.X + OffsetX;
        double X1 = (Box.Location.X + Box.Size.X) + OffsetX;
        double Y0 = Box.Location.Y + OffsetY;
        double Y1 = (Box.Location.Y + Box.Size.Y) + OffsetY;
        point2d Low(X0 < X1 ? X0 : X1, Y0 < Y1 ? Y0 : Y1);
        point2d High(X0 < X1 ? X1 : X0, Y0 < Y1 ? Y1 : Y0);
        return rectangle(Low, High - Low);
    }

    // The box of the four corners of Box under Matrix.
    static rectangle TransformBox(const rectangle &Box, const agg::trans_affine &Matrix)
    {
        // A plain move is the common case of redraw requests going up the tree.
        if (Matrix.sx == 1 && Matrix.shy == 0 && Matrix.shx == 0 && Matrix.sy == 1)
            return MoveBox(Box, Matrix.tx, Matrix.ty);
        double Xs[4] = {Box.Location.X, Box.Location.X + Box.Size.X, Box.Location.X, Box.Location.X + Box.Size.X};
        double Ys[4] = {Box.Location.Y, Box.Location.Y, Box.Location.Y + Box.Size.Y, Box.Location.Y + Box.Size.Y};
        for (int I = 0; I < 4; I++)
            Matrix.transform(&Xs[I], &Ys[I]);
        point2d Low(Xs[0], Ys[0]);
        point2d High(Xs[0], Ys[0]);
        for (int I = 1; I < 4; I++) {
            Low.X = Xs[I] < Low.X ? Xs[I] : Low.X;
            Low.Y = Ys[I] < Low.Y ? Ys[I] : Low.Y;
            High.X = Xs[I] > High.X ? Xs[I] : High.X;
            High.Y = Ys[I] > High.Y ? Ys[I] : High.Y;
        }
        return rectangle(Low, High - Low);
    }

private:
    bool Empty;
    point2d Low;
    point2d High;
};
