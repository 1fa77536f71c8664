#pragma once

// A second, plain implementation of gradients for the tests: colours in doubles by the textbook
// conversions, positions worked out from the geometry of the two points in floating point, and
// repetitions by fmod, so that the engine's integer arithmetic has something independent to meet.
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <string>
#include <vector>

#include <agg_color_rgba.h>

#include "art_engine/effects/art_color_fade.h"
#include "art_engine/objects/art_object.h"
#include "art_engine/pixels/art_bitmap.h"
#include "tests/art_engine/objects/art_render_test_support.h"

namespace art_gradient_test {

using art_render_test::PixelText;

struct hsv
{
    double H;
    double S;
    double V;
};

// Hue in turns, 0 to 1.
inline hsv NaiveRgbToHsv(double R, double G, double B)
{
    double Max = std::max({R, G, B});
    double Min = std::min({R, G, B});
    double Chroma = Max - Min;
    double Sixths = 0;
    if (Chroma > 0) {
        if (Max == R)
            Sixths = std::fmod((G - B) / Chroma + 6, 6);
        else if (Max == G)
            Sixths = (B - R) / Chroma + 2;
        else
            Sixths = (R - G) / Chroma + 4;
    }
    return {Sixths / 6, Max == 0 ? 0 : Chroma / Max, Max};
}

// The conversion by the distance of each channel's own sixth from the hue.
inline void NaiveHsvToRgb(double H, double S, double V, double &R, double &G, double &B)
{
    double Sixths = std::fmod(H * 6, 6);
    if (Sixths < 0)
        Sixths += 6;
    auto Channel = [&](double N) {
        double K = std::fmod(N + Sixths, 6);
        return V - V * S * std::max(0.0, std::min({K, 4 - K, 1.0}));
    };
    R = Channel(5);
    G = Channel(3);
    B = Channel(1);
}

inline uint8_t NaiveByte(double X)
{
    return static_cast<uint8_t>(static_cast<int>(std::floor(X * 255 + 0.5)));
}

inline agg::rgba8 NaivePremultiplied(double R, double G, double B, double A)
{
    agg::rgba8 C(NaiveByte(R), NaiveByte(G), NaiveByte(B), NaiveByte(A));
    if (C.a == 0)
        return agg::rgba8(0, 0, 0, 0);
    if (C.a == 255)
        return C;
    return agg::rgba8(static_cast<uint8_t>(C.r * C.a / 256), static_cast<uint8_t>(C.g * C.a / 256),
                      static_cast<uint8_t>(C.b * C.a / 256), C.a);
}

// The hue step from the first colour to the second: the short way keeps within half a turn, the
// long way goes round the other side, and at exactly half a turn either keeps its sign.
inline double NaiveHueStep(double From, double To, bool LongWay)
{
    double Step = To - From;
    if (!LongWay) {
        if (Step > 0.5)
            Step -= 1;
        else if (Step < -0.5)
            Step += 1;
    } else {
        if (Step >= 0 && Step < 0.5)
            Step -= 1;
        else if (Step < 0 && Step > -0.5)
            Step += 1;
    }
    return Step;
}

inline std::vector<agg::rgba8> NaiveTable(agg::rgba C0, agg::rgba C1, int Mode, bool Swap)
{
    if (Swap)
        std::swap(C0, C1);
    std::vector<agg::rgba8> Table;
    hsv A = NaiveRgbToHsv(C0.r, C0.g, C0.b);
    hsv B = NaiveRgbToHsv(C1.r, C1.g, C1.b);
    double Step = NaiveHueStep(A.H, B.H, Mode == 1);
    for (int I = 0; I < 2048; I++) {
        double T = I / 2047.0;
        double R, G, Bl;
        if (Mode == 2) {
            R = (1 - T) * C0.r + T * C1.r;
            G = (1 - T) * C0.g + T * C1.g;
            Bl = (1 - T) * C0.b + T * C1.b;
        } else {
            NaiveHsvToRgb(A.H + T * Step, (1 - T) * A.S + T * B.S, (1 - T) * A.V + T * B.V, R, G, Bl);
        }
        Table.push_back(NaivePremultiplied(R, G, Bl, (1 - T) * C0.a + T * C1.a));
    }
    return Table;
}

// Where a pixel centre lies in the gradient: along the axis from P0 to P1 and across it, in units of
// which one repetition of the table has 2048, worked out with plain vector geometry in object space
// (the identity maps object units to pixels here).
struct gradient_position
{
    double Along;
    double Across;
};

inline gradient_position NaivePosition(double PX, double PY, point2d P0, point2d P1, double R)
{
    double AxisX = P1.X - P0.X;
    double AxisY = P1.Y - P0.Y;
    double AxisLength = std::sqrt(AxisX * AxisX + AxisY * AxisY);
    double UnitsPerObjectUnit = 2048 * R / AxisLength;
    double DX = PX - P0.X;
    double DY = PY - P0.Y;
    return {(DX * AxisX + DY * AxisY) / AxisLength * UnitsPerObjectUnit,
            (DY * AxisX - DX * AxisY) / AxisLength * UnitsPerObjectUnit};
}

// The table entry of a gradient position. Positions are measured to a sixteenth of a unit,
// truncated (rounded for the angle), and a position past the end stays one sixteenth short of it.
inline int NaiveIndex(int Type, gradient_position P, double R, bool Mirror)
{
    const double Pi = 3.141592654;
    double Length = std::floor(2048 * 16 * R) / 16;
    double Last = Length - 1.0 / 16;
    double Along = P.Along;
    double Across = P.Across;
    double Position = 0;
    switch (Type) {
    case 0:
        Position = Along < 0 ? 0 : (Along >= Length ? Last : Along);
        break;
    case 1: {
        double Radius = std::sqrt(Along * Along + Across * Across);
        Position = Radius >= Length ? Last : Radius;
        break;
    }
    case 2: {
        double Extent = std::max(std::fabs(Along), std::fabs(Across));
        Position = Extent >= Length ? Last : Extent;
        break;
    }
    case 3: {
        // The turn from the axis, from 0 up to a whole turn, with the lower side counted on.
        double Turn = std::atan2(Across, Along) / (2 * Pi);
        if (Turn < 0)
            Turn += 1;
        Position = std::floor(Turn * Length * 16 + 0.5) / 16;
        break;
    }
    case 4: {
        double Product = std::fabs(Along) * std::fabs(Across) / Length;
        Position = Product >= Length ? Last : Product;
        break;
    }
    case 5: {
        double Mean = std::sqrt(std::fabs(Along) * std::fabs(Across));
        Position = Mean >= Length ? Last : Mean;
        break;
    }
    }
    Position = std::floor(Position * 16) / 16;
    double InRun;
    if (Mirror) {
        double Cycle = std::fmod(Position, 4096.0);
        InRun = Cycle > 2048 ? 4096 - Cycle : Cycle;
    } else {
        InRun = std::fmod(Position, 2048.0);
    }
    return std::min(2047, static_cast<int>(std::floor(InRun)));
}

inline bool SamePixel(const agg::rgba8 &A, const agg::rgba8 &B)
{
    return A.r == B.r && A.g == B.g && A.b == B.b && A.a == B.a;
}

// A gradient fill in a plain parent of W by H at the origin; the object space is the pixel space.
struct fade_scene
{
    fade_scene(int W, int H) : Width(W), Height(H)
    {
        Parent.SetHandle(point2d(0, 0));
        Parent.SetSize(point2d(W, H));
        Parent.SetLocation(point2d(0, 0));
        Fade = Parent.AddChild(ownership_pointer<art_object>(new art_color_fade)).DynamicCast<art_color_fade>();
    }

    ~fade_scene()
    {
        Parent.MarkChildrenForDeletion();
        Parent.DeleteMarkedChildren();
    }

    // The two points in object units.
    void SetPoints(point2d P0, point2d P1, agg::rgba C0 = agg::rgba(1, 0, 0, 1), agg::rgba C1 = agg::rgba(0, 0, 1, 1))
    {
        array<point2d> Points;
        Points.Add(point2d(P0.X / Width, P0.Y / Height));
        Points.Add(point2d(P1.X / Width, P1.Y / Height));
        array<agg::rgba> Colors;
        Colors.Add(C0);
        Colors.Add(C1);
        Fade->SetPoints(Points, Colors);
    }

    ownership_pointer<art_bitmap> Draw()
    {
        ownership_pointer<art_bitmap> Bitmap(new art_bitmap(Width, Height));
        Bitmap->Clear(agg::rgba8(0, 0, 0, 0));
        reference_pointer<bitmap_interface> Target(Bitmap.Get());
        Fade->Draw(Target, Target, agg::trans_affine(), reference_pointer<art_cache>());
        return Bitmap;
    }

    int Width;
    int Height;
    art_object Parent;
    reference_pointer<art_color_fade> Fade;
};

} // namespace art_gradient_test
