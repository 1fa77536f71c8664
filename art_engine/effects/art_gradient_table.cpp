#include "art_engine/effects/art_gradient_table.h"

#include <cmath>

#include "art_engine/pixels/art_blend.h"
#include "art_engine/pixels/art_color.h"
#include "art_engine/pixels/art_hsb.h"

namespace {

// 1/2047, written out as documents were drawn with it.
const double TableStep = 0.0004885197850512946;

void StoreEntry(agg::rgba8 &Entry, double R, double G, double B, double A)
{
    Entry = ArtColorToRgba8(agg::rgba(R, G, B, A));
    PremultiplyColor(Entry);
}

// Exactly half a turn apart, both ways round are equally long, and neither mode turns the hue the
// other way.
double HueDelta(double H0, double H1, int FadeMode)
{
    double Delta = H1 - H0;
    bool Turn = FadeMode == FadeModeShortHsb ? std::fabs(Delta) > 0.5 : std::fabs(Delta) < 0.5;
    if (Turn)
        Delta = Delta < 0 ? Delta + 1 : Delta - 1;
    return Delta;
}

void BuildHsbTable(agg::rgba8 *Table, const agg::rgba &C0, const agg::rgba &C1, int FadeMode)
{
    double H0, S0, V0, H1, S1, V1;
    RgbToHsb(C0.r, C0.g, C0.b, H0, S0, V0);
    RgbToHsb(C1.r, C1.g, C1.b, H1, S1, V1);
    double DH = HueDelta(H0, H1, FadeMode);
    for (int I = 0; I < ArtGradientTableSize; I++) {
        double T = I * TableStep;
        double U = 1 - T;
        double R, G, B;
        HsbToRgb(H0 + T * DH, U * S0 + T * S1, U * V0 + T * V1, R, G, B);
        StoreEntry(Table[I], R, G, B, U * C0.a + T * C1.a);
    }
}

void BuildRgbTable(agg::rgba8 *Table, const agg::rgba &C0, const agg::rgba &C1)
{
    for (int I = 0; I < ArtGradientTableSize; I++) {
        double T = I * TableStep;
        double U = 1 - T;
        StoreEntry(Table[I], U * C0.r + T * C1.r, U * C0.g + T * C1.g, U * C0.b + T * C1.b, U * C0.a + T * C1.a);
    }
}

} // namespace

bool BuildGradientTable(agg::rgba8 *Table, agg::rgba Color0, agg::rgba Color1, int FadeMode, bool Swap)
{
    const agg::rgba &C0 = Swap ? Color1 : Color0;
    const agg::rgba &C1 = Swap ? Color0 : Color1;
    switch (FadeMode) {
    case FadeModeShortHsb:
    case FadeModeLongHsb:
        BuildHsbTable(Table, C0, C1, FadeMode);
        return true;
    case FadeModeRgb:
        BuildRgbTable(Table, C0, C1);
        return true;
    default:
        return false;
    }
}
