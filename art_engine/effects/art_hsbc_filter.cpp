#include "art_engine/effects/art_hsbc_filter.h"

#include <cmath>

#include "art_engine/geometry/art_attribute_text.h"
#include "art_engine/pixels/art_hsb.h"
#include "rofa_lib/bitmap_interface.h"
#include "zel_basics/debug.h"

namespace {

// Below this a shift counts as none: the sliders cannot set it back to exactly 0.
constexpr double ShiftTolerance = 0.001;

double ClampShift(double Value)
{
    return Value < -1 ? -1 : Value > 1 ? 1 : Value;
}

int ClampByte(int Value)
{
    return Value < 0 ? 0 : Value > 255 ? 255 : Value;
}

// Reciprocals for dividing by 0 to 255 with a multiply. Values[D] is 2^32 / D rounded up, by less
// than 1; (X * Values[D]) >> 32 stays X / D as long as X times that excess is below 2^32, which
// holds for every X below 2^17, all that the filter divides. Values[0] is 0, so that a division by
// zero gives 0.
struct reciprocal_table
{
    uint64_t Values[256];

    constexpr reciprocal_table() : Values()
    {
        for (uint64_t D = 1; D < 256; D++)
            Values[D] = ((uint64_t(1) << 32) + D - 1) / D;
    }
};

constexpr reciprocal_table Reciprocals;

inline unsigned DivideSmall(unsigned X, unsigned D)
{
    return static_cast<unsigned>((X * Reciprocals.Values[D]) >> 32);
}

// A premultiplied colour byte in straight form: (C * 255) / A, capped at 255 for a byte above its
// alpha, with Reciprocal that of A.
inline unsigned Unpremultiplied(unsigned C, uint64_t Reciprocal)
{
    unsigned Value = static_cast<unsigned>((C * 255 * Reciprocal) >> 32);
    return Value > 255 ? 255 : Value;
}

// The larger and smaller of two channels by arithmetic on the sign of their difference. On a photo
// the order of the channels changes from pixel to pixel, and the compiler turns a comparison into a
// branch often enough that mispredictions would cost more than all the rest of the arithmetic.
inline int Larger(int A, int B)
{
    int Difference = A - B;
    return A - (Difference & (Difference >> 31));
}

inline int Smaller(int A, int B)
{
    int Difference = A - B;
    return B + (Difference & (Difference >> 31));
}

} // namespace

art_hsbc_pixel_filter::art_hsbc_pixel_filter(double HShift, double SShift, double BShift, double CShift,
                                             bool Colorize, bool Invert)
{
    MakeToneTable(BShift, CShift, Invert);
    HueShift = static_cast<int>(HShift * 768) % HueSteps;
    if (HueShift < 0)
        HueShift += HueSteps;
    ColorizeHue = HueShift + HueSteps / 2;
    if (ColorizeHue >= HueSteps)
        ColorizeHue -= HueSteps;
    ColorizeSat = ClampByte(static_cast<int>((SShift + 1) * 0.5 * 255));
    double SatFactor = SShift > 0 ? 255 / ((1 - SShift) * 254 + 1) : SShift + 1;
    for (int S = 0; S < 385; S++)
        SatOfS[S] = static_cast<uint32_t>(ClampByte(static_cast<int>(S * SatFactor)));
    if (!(SShift > -0.999))
        HueStep = HueStepGrey;
    else if (Colorize)
        HueStep = HueStepColorize;
    else if (std::fabs(HShift) <= ShiftTolerance && std::fabs(SShift) <= ShiftTolerance)
        HueStep = HueStepNone;
    else
        HueStep = HueStepShift;
}

// Inversion comes before brightness and contrast, so it is folded into the one table.
void art_hsbc_pixel_filter::MakeToneTable(double BShift, double CShift, bool Invert)
{
    uint8_t Levels[256];
    if (std::fabs(CShift) <= ShiftTolerance && std::fabs(BShift) <= ShiftTolerance) {
        for (int I = 0; I < 256; I++)
            Levels[I] = static_cast<uint8_t>(I);
    } else if (BShift == -1.0 || BShift == 1.0) {
        for (int I = 0; I < 256; I++)
            Levels[I] = BShift < 0 ? 0 : 255;
    } else {
        double Slope;
        if (CShift > 0) {
            double D = (1 - CShift) * 255;
            Slope = D == 0 ? 255 : 255 / D;
        } else {
            Slope = CShift + 1;
        }
        double Offset = (CShift < 0 ? 1 + CShift * 0.5 : 1 - CShift * 0.5) * BShift * 255;
        double Base = Offset * Slope + 127.5;
        for (int I = 0; I < 256; I++) {
            double Value = (I - 127.5) * Slope + Base;
            Levels[I] = static_cast<uint8_t>(Value < 0 ? 0 : Value > 255 ? 255 : Value);
        }
    }
    for (int I = 0; I < 256; I++)
        Tone[I] = Levels[Invert ? 255 - I : I];
}

// Every hue of the wheel is Offset + Numerator * 256 / (max - min), truncated towards zero, where
// the channel that is the maximum picks the numerator and the offset. Ties go to red before green
// before blue; with red the maximum, the offset is 0 when green is at least blue and a whole turn
// when it is not, so that the negative numerator brings the hue back below 1536.
template <art_hsbc_pixel_filter::hue_step Step>
void art_hsbc_pixel_filter::ShiftHue(unsigned &R, unsigned &G, unsigned &B) const
{
    int Red = static_cast<int>(R);
    int Green = static_cast<int>(G);
    int Blue = static_cast<int>(B);
    int Max = Larger(Larger(Red, Green), Blue);
    int Min = Smaller(Smaller(Red, Green), Blue);
    int L = (Min + Max) / 2;
    int M = Smaller(L, 255 - L);
    int Hue;
    int Sat;
    if (Step == HueStepColorize) {
        Hue = ColorizeHue;
        Sat = ColorizeSat;
    } else {
        // Masks rather than branches, for the reason given at Larger: all ones for the channel
        // that is the maximum, and for red's second offset.
        int RedMax = -static_cast<int>((Red >= Green) & (Red >= Blue));
        int GreenMax = ~RedMax & -static_cast<int>(Green >= Blue);
        int BlueMax = ~(RedMax | GreenMax);
        int Numerator = ((Green - Blue) & RedMax) | ((Blue - Red) & GreenMax) | ((Red - Green) & BlueMax);
        int Offset = (0x600 & RedMax & -static_cast<int>(Green < Blue)) | (0x200 & GreenMax) | (0x400 & BlueMax);
        unsigned Magnitude = static_cast<unsigned>(Numerator < 0 ? -Numerator : Numerator);
        // A grey has max - min = 0, whose reciprocal is 0: hue 0, as it should be.
        int Quotient = static_cast<int>(DivideSmall(Magnitude * 256, static_cast<unsigned>(Max - Min)));
        Hue = Offset + (Numerator < 0 ? -Quotient : Quotient) + HueShift;
        Hue -= Hue >= HueSteps ? HueSteps : 0;
        // M = 0 gives S = 0 the same way.
        Sat = SatOfS[DivideSmall(static_cast<unsigned>(Max - Min) * 256, static_cast<unsigned>(2 * M))];
    }
    // Rounding up on those two bits of the product, and only there, is how the filter has always
    // rounded the chroma; documents depend on it.
    int P = M * Sat;
    int C1 = P >> 8;
    int C2 = C1 + ((P & 0x50) != 0 ? 1 : 0);
    int Hi = L + C2;
    int Lo = L - C1;
    int Sector = Hue >> 8;
    if (Sector > 5)
        TOVAS_ASSERT(false, nullptr);
    int T = ((Hi - Lo) * (Hue & 255)) >> 8;
    // Each sector takes for red, green and blue one of four values, Hi, Lo, Hi - T and Lo + T, all
    // bytes. They are packed into one word, and the sector's table entry holds for each channel the
    // shift that brings its value down: no branch and no memory between the arithmetic and the result.
    uint32_t Packed = static_cast<uint32_t>(Hi) | static_cast<uint32_t>(Lo) << 8 |
                      static_cast<uint32_t>(Hi - T) << 16 | static_cast<uint32_t>(Lo + T) << 24;
    static const uint32_t SectorShifts[6] = {
        0 | 24 << 8 | 8 << 16,  // Hi, Lo + T, Lo
        16 | 0 << 8 | 8 << 16,  // Hi - T, Hi, Lo
        8 | 0 << 8 | 24 << 16,  // Lo, Hi, Lo + T
        8 | 16 << 8 | 0 << 16,  // Lo, Hi - T, Hi
        24 | 8 << 8 | 0 << 16,  // Lo + T, Lo, Hi
        0 | 8 << 8 | 16 << 16,  // Hi, Lo, Hi - T
    };
    uint32_t Shifts = SectorShifts[Sector];
    R = (Packed >> (Shifts & 0xff)) & 0xff;
    G = (Packed >> ((Shifts >> 8) & 0xff)) & 0xff;
    B = (Packed >> (Shifts >> 16)) & 0xff;
}

// Unpremultiplying and premultiplying again are UnpremultiplyPixel and PremultiplyColor, done
// without a division and without a test of alpha: at alpha 255 the reciprocal of 255 and the factor
// 256 give every byte back as it was, and at alpha 0 the reciprocal 0 gives 0.
template <art_hsbc_pixel_filter::hue_step Step>
void art_hsbc_pixel_filter::FilterRun(agg::rgba8 *Pixels, int Count) const
{
    for (int I = 0; I < Count; I++) {
        agg::rgba8 &Pixel = Pixels[I];
        unsigned A = Pixel.a;
        uint64_t Reciprocal = Reciprocals.Values[A];
        unsigned R = Tone[Unpremultiplied(Pixel.r, Reciprocal)];
        unsigned G = Tone[Unpremultiplied(Pixel.g, Reciprocal)];
        unsigned B = Tone[Unpremultiplied(Pixel.b, Reciprocal)];
        if (Step == HueStepGrey) {
            int Red = static_cast<int>(R);
            int Green = static_cast<int>(G);
            int Blue = static_cast<int>(B);
            R = G = B = static_cast<unsigned>(Smaller(Smaller(Red, Green), Blue) + Larger(Larger(Red, Green), Blue)) / 2;
        } else if (Step != HueStepNone) {
            ShiftHue<Step>(R, G, B);
        }
        unsigned Factor = A + (A == 255 ? 1 : 0);
        Pixel.r = static_cast<uint8_t>((R * Factor) >> 8);
        Pixel.g = static_cast<uint8_t>((G * Factor) >> 8);
        Pixel.b = static_cast<uint8_t>((B * Factor) >> 8);
    }
}

void art_hsbc_pixel_filter::FilterPixel(agg::rgba8 &Pixel) const
{
    FilterPixels(&Pixel, 1);
}

void art_hsbc_pixel_filter::FilterPixels(agg::rgba8 *Pixels, int Count) const
{
    int Done = FilterPixelsVector(Pixels, Count);
    FilterPixelsOneByOne(Pixels + Done, Count - Done);
}

void art_hsbc_pixel_filter::FilterPixelsOneByOne(agg::rgba8 *Pixels, int Count) const
{
    switch (HueStep) {
    case HueStepNone: FilterRun<HueStepNone>(Pixels, Count); break;
    case HueStepGrey: FilterRun<HueStepGrey>(Pixels, Count); break;
    case HueStepShift: FilterRun<HueStepShift>(Pixels, Count); break;
    case HueStepColorize: FilterRun<HueStepColorize>(Pixels, Count); break;
    }
}

art_hsbc_filter::art_hsbc_filter(reference_pointer<xbd_tag> Tag)
    : art_filter_effect(Tag), HShift(ClampShift(ArtTextToReal(Tag->GetAttribute("hshift", "0.0"), 0))),
      SShift(ClampShift(ArtTextToReal(Tag->GetAttribute("sshift", "0.0"), 0))),
      BShift(ClampShift(ArtTextToReal(Tag->GetAttribute("bshift", "0.0"), 0))),
      CShift(ClampShift(ArtTextToReal(Tag->GetAttribute("cshift", "0.0"), 0))), Colorize(Tag->HasAttribute("colorize")),
      Invert(Tag->HasAttribute("invert"))
{
}

ownership_pointer<art_object> art_hsbc_filter::Duplicate() const
{
    return ownership_pointer<art_object>(new art_hsbc_filter(*this));
}

art_hsbc_pixel_filter art_hsbc_filter::MakePixelFilter() const
{
    return art_hsbc_pixel_filter(HShift, SShift, BShift, CShift, Colorize, Invert);
}

void art_hsbc_filter::Draw(reference_pointer<bitmap_interface> Target, reference_pointer<bitmap_interface>,
                           agg::trans_affine, reference_pointer<art_cache>)
{
    TOVAS_ASSERT(Target.IsSet(), this);
    art_hsbc_pixel_filter Filter = MakePixelFilter();
    int_point2d Size = Target->GetSize();
    uint8_t *Row = Target->GetFirstLine();
    for (int Y = 0; Y < Size.Y; Y++, Row += Target->GetLineStride())
        Filter.FilterPixels(reinterpret_cast<agg::rgba8 *>(Row), Size.X);
}

void art_hsbc_filter::WriteAttributes(reference_pointer<xbd_tag> Tag)
{
    art_filter_effect::WriteAttributes(Tag);
    const struct
    {
        const char *Name;
        double Value;
    } Shifts[] = {{"hshift", HShift}, {"sshift", SShift}, {"bshift", BShift}, {"cshift", CShift}};
    for (const auto &Shift : Shifts)
        if (std::fabs(Shift.Value) > ShiftTolerance)
            Tag->AddAttribute(Shift.Name, ArtRealToText(Shift.Value));
    if (Colorize)
        Tag->AddAttribute("colorize", "");
    if (Invert)
        Tag->AddAttribute("invert", "");
}

zel_string art_hsbc_filter::GetTagName()
{
    return "art_hsbc_filter";
}

zel_string art_hsbc_filter::GetTypeLabel()
{
    return "Hue, Saturation, Brightness & Contrast";
}

agg::rgba art_hsbc_filter::GetColor()
{
    agg::rgba Color(0, 0, 0, 1.0);
    HsbToRgb((HShift + 1) / 2, (SShift + 1) / 2, (BShift + 1) / 2, Color.r, Color.g, Color.b);
    return Color;
}

void art_hsbc_filter::SetColor(const agg::rgba &NewColor)
{
    double H;
    double S;
    double V;
    RgbToHsb(NewColor.r, NewColor.g, NewColor.b, H, S, V);
    SetColorize(true);
    SetInvert(false);
    SetShiftFromComponent(HShift, H);
    SetShiftFromComponent(SShift, S);
    SetShiftFromComponent(BShift, V);
}

void art_hsbc_filter::SetShiftFromComponent(double &Field, double Component)
{
    double Value = ClampShift(2 * Component - 1);
    if (std::fabs(Value - Field) <= ShiftTolerance)
        return;
    Field = Value;
    RequestRedraw();
}

template <class T> void art_hsbc_filter::ChangeField(T &Field, T Value)
{
    if (Field == Value)
        return;
    Field = Value;
    RequestRedraw();
}

void art_hsbc_filter::SetHShift(double NewHShift)
{
    ChangeField(HShift, ClampShift(NewHShift));
}

void art_hsbc_filter::SetSShift(double NewSShift)
{
    ChangeField(SShift, ClampShift(NewSShift));
}

void art_hsbc_filter::SetBShift(double NewBShift)
{
    ChangeField(BShift, ClampShift(NewBShift));
}

void art_hsbc_filter::SetCShift(double NewCShift)
{
    ChangeField(CShift, ClampShift(NewCShift));
}

void art_hsbc_filter::SetColorize(bool NewColorize)
{
    ChangeField(Colorize, NewColorize);
}

void art_hsbc_filter::SetInvert(bool NewInvert)
{
    ChangeField(Invert, NewInvert);
}
