#pragma once

#include <gtest/gtest.h>

#include <functional>
#include <sstream>
#include <string>
#include <vector>

#include <agg_rasterizer_scanline_aa.h>
#include <agg_renderer_scanline.h>
#include <agg_scanline_u.h>

#include "art_engine/objects/art_cache.h"
#include "art_engine/objects/art_object.h"
#include "art_engine/objects/art_object_children.h"
#include "art_engine/objects/art_top_object.h"
#include "art_engine/pixels/art_bitmap.h"
#include "tests/art_engine/objects/art_fill_object.h"

namespace art_render_test {

inline agg::rgba8 Pixel(unsigned R, unsigned G, unsigned B, unsigned A)
{
    return agg::rgba8(static_cast<uint8_t>(R), static_cast<uint8_t>(G), static_cast<uint8_t>(B),
                      static_cast<uint8_t>(A));
}

const agg::rgba8 Transparent = Pixel(0, 0, 0, 0);
const agg::rgba8 Red = Pixel(255, 0, 0, 255);
const agg::rgba8 Green = Pixel(0, 255, 0, 255);
const agg::rgba8 Blue = Pixel(0, 0, 255, 255);
const agg::rgba8 White = Pixel(255, 255, 255, 255);
const agg::rgba8 Black = Pixel(0, 0, 0, 255);

inline std::string PixelText(const agg::rgba8 &P)
{
    std::ostringstream Text;
    Text << "(" << int(P.r) << ", " << int(P.g) << ", " << int(P.b) << ", " << int(P.a) << ")";
    return Text.str();
}

// Source-over of one premultiplied pixel at a coverage, written out from the byte formulas the
// engine fixes, independently of its kernels.
inline agg::rgba8 Over(const agg::rgba8 &Below, const agg::rgba8 &Above, unsigned Cover)
{
    if (Above.a == 0)
        return Below;
    unsigned Inv = 255 - ((Above.a * (Cover + 1)) >> 8);
    auto Lane = [&](unsigned P, unsigned C) { return static_cast<uint8_t>((P * Inv + C * (Cover + 1)) >> 8); };
    return agg::rgba8(Lane(Below.r, Above.r), Lane(Below.g, Above.g), Lane(Below.b, Above.b),
                      static_cast<uint8_t>(255 - (((255 - Below.a) * Inv) >> 8)));
}

// A layer pixel masked by the luminance of a stencil pixel.
inline agg::rgba8 Masked(const agg::rgba8 &Layer, const agg::rgba8 &Stencil)
{
    unsigned L = (13926 * Stencil.r + 46884 * Stencil.g + 4725 * Stencil.b + 32768) >> 16;
    if (L == 255)
        return Layer;
    return agg::rgba8(static_cast<uint8_t>((Layer.r * L) >> 8), static_cast<uint8_t>((Layer.g * L) >> 8),
                      static_cast<uint8_t>((Layer.b * L) >> 8), static_cast<uint8_t>((Layer.a * L + 255) >> 8));
}

// Compares every pixel with what Expected says, and reports the count and the first difference.
inline testing::AssertionResult PixelsAre(art_bitmap &Bitmap, const std::function<agg::rgba8(int X, int Y)> &Expected)
{
    int Differences = 0;
    std::string First;
    for (int Y = 0; Y < Bitmap.GetSize().Y; Y++)
        for (int X = 0; X < Bitmap.GetSize().X; X++) {
            agg::rgba8 Got = Bitmap.GetPixelRow(Y)[X];
            agg::rgba8 Want = Expected(X, Y);
            if (Got.r == Want.r && Got.g == Want.g && Got.b == Want.b && Got.a == Want.a)
                continue;
            if (Differences++ == 0)
                First = "at (" + std::to_string(X) + ", " + std::to_string(Y) + ") got " + PixelText(Got) +
                        ", want " + PixelText(Want);
        }
    if (Differences == 0)
        return testing::AssertionSuccess();
    return testing::AssertionFailure() << Differences << " pixels differ, first " << First;
}

inline bool SameBitmaps(art_bitmap &A, art_bitmap &B)
{
    if (A.GetSize() != B.GetSize())
        return false;
    return PixelsAre(A, [&](int X, int Y) { return B.GetPixelRow(Y)[X]; });
}

inline bool Inside(int X, int Y, int X0, int Y0, int X1, int Y1)
{
    return X >= X0 && X < X1 && Y >= Y0 && Y < Y1;
}

// One call of RenderToBitmap, as the object saw it.
struct render_call
{
    int_rectangle Window;
    bool AllowExpansion;
};

// A group that writes down each composite it is asked for.
class counting_object : public art_object
{
public:
    explicit counting_object(std::vector<render_call> *Calls) : Calls(Calls) {}

    ownership_pointer<art_bitmap> RenderToBitmap(int_rectangle Window, agg::trans_affine Matrix,
                                                 reference_pointer<art_cache> Cache, point2d &PreExpandLocOffset,
                                                 bool AllowExpansion) override
    {
        Calls->push_back({Window, AllowExpansion});
        return art_object::RenderToBitmap(Window, Matrix, Cache, PreExpandLocOffset, AllowExpansion);
    }

private:
    std::vector<render_call> *Calls;
};

// One call of PresentBitmap, with a copy of what was handed over.
struct presented
{
    int X;
    int Y;
    int_point2d Size;
    const uint8_t *FirstLine;
    int32_t Stride;
};

class test_top_object : public art_top_object
{
public:
    explicit test_top_object(ownership_pointer<art_human_input_set> InputSet = ownership_pointer<art_human_input_set>())
        : art_top_object(InputSet)
    {
    }
    void PresentBitmap(int X, int Y, reference_pointer<art_bitmap> Bitmap) override
    {
        Presented.push_back({X, Y, Bitmap->GetSize(), Bitmap->GetFirstLine(), Bitmap->GetLineStride()});
    }
    void Merge(array<int_rectangle> &Merged) { MergeDirtyList(Merged); }

    std::vector<presented> Presented;
};

inline void Place(art_object &Object, point2d Location, point2d Size)
{
    Object.SetHandle(point2d(0, 0));
    Object.SetSize(Size);
    Object.SetLocation(Location);
}

inline reference_pointer<art_object> AddFill(art_object &Parent, point2d Location, point2d Size, agg::rgba8 Color,
                                             art_stack_mode Mode = StackModeNormal)
{
    ownership_pointer<art_object> Fill(new fill_object(Color, Mode));
    Place(*Fill, Location, Size);
    return Parent.AddChild(Fill);
}

inline reference_pointer<art_object> AddGroup(art_object &Parent, point2d Location, point2d Size,
                                              art_stack_mode Mode = StackModeNormal)
{
    ownership_pointer<art_object> Group(new art_object);
    Place(*Group, Location, Size);
    if (Mode != StackModeNormal)
        Group->SetStackMode(Mode);
    return Parent.AddChild(Group);
}

// Draws Object into a fresh transparent bitmap with no cache, the parent space mapped by Matrix.
inline ownership_pointer<art_bitmap> DrawAlone(art_object &Object, int Width, int Height,
                                               agg::trans_affine Matrix = agg::trans_affine(),
                                               reference_pointer<art_cache> Cache = reference_pointer<art_cache>())
{
    ownership_pointer<art_bitmap> Bitmap(new art_bitmap(Width, Height));
    Bitmap->Clear(Transparent);
    reference_pointer<bitmap_interface> Target(Bitmap.Get());
    Object.Draw(Target, Target, Matrix, Cache);
    return Bitmap;
}

} // namespace art_render_test
