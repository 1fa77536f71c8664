#pragma once

#include <cstdint>

#include <agg_color_rgba.h>

#include "art_engine/effects/art_filter_effect.h"

// The pixel arithmetic of the colour filter, prepared once from its settings and then run over
// every pixel of a layer. It is integer arithmetic in hue, saturation and lightness with the hue in
// 1,536 steps (six sectors of 256), and its rounding is part of how documents look, to the byte.
class art_hsbc_pixel_filter
{
public:
    // Hue steps round the whole colour wheel.
    static constexpr int HueSteps = 1536;

    art_hsbc_pixel_filter(double HShift, double SShift, double BShift, double CShift, bool Colorize, bool Invert);

    // One premultiplied pixel, in place; alpha stays as it is.
    void FilterPixel(agg::rgba8 &Pixel) const;
    // Eight pixels at a time through the processor's vector unit where it has one that the filter
    // can use, and the rest one by one; the bytes are the same either way.
    void FilterPixels(agg::rgba8 *Pixels, int Count) const;
    // One pixel at a time, on any processor: the arithmetic that the vector kernel is held to.
    void FilterPixelsOneByOne(agg::rgba8 *Pixels, int Count) const;
    // Whether this processor runs the vector kernel.
    static bool HasVectorKernel();
    // The leading pixels that the vector kernel filters, in whole groups of eight: 0 without it.
    int FilterPixelsVector(agg::rgba8 *Pixels, int Count) const;

    // What the settings were prepared into. The table maps a straight colour byte through invert,
    // brightness and contrast.
    uint8_t GetToneEntry(int Index) const { return static_cast<uint8_t>(Tone[Index]); }
    int GetHueShift() const { return HueShift; }
    int GetColorizeHue() const { return ColorizeHue; }
    int GetColorizeSat() const { return ColorizeSat; }

private:
    // What the hue and saturation step does to a pixel.
    enum hue_step
    {
        HueStepNone,
        HueStepGrey,
        HueStepShift,
        HueStepColorize
    };

    void MakeToneTable(double BShift, double CShift, bool Invert);
    // The pixels of a run, with the hue step fixed so that the loop holds no test of it.
    template <hue_step Step> void FilterRun(agg::rgba8 *Pixels, int Count) const;
    template <hue_step Step> void FilterRunVector(agg::rgba8 *Pixels, int Count) const;
    // Red, green and blue, straight, in place.
    template <hue_step Step> void ShiftHue(unsigned &R, unsigned &G, unsigned &B) const;

    hue_step HueStep;
    int HueShift;
    int ColorizeHue;
    int ColorizeSat;
    // Byte values in words, which the vector kernel gathers eight at a time.
    uint32_t Tone[256];
    // The saturation that a pixel of saturation S gets. S = ((max - min) << 8) / (2 * M) never
    // exceeds 384, since max - min is at most 2 * M + 1.
    uint32_t SatOfS[385];
};

// Shifts the hue, saturation, brightness and contrast of the layer that its parent has drawn so
// far, inverts it or colourises it.
class art_hsbc_filter : public art_filter_effect
{
public:
    art_hsbc_filter() = default;
    explicit art_hsbc_filter(reference_pointer<xbd_tag> Tag);
    art_hsbc_filter(const art_hsbc_filter &Other) = default;

    ownership_pointer<art_object> Duplicate() const override;
    // Works on every pixel of Target; the matrix does not enter.
    void Draw(reference_pointer<bitmap_interface> Target, reference_pointer<bitmap_interface> Backdrop,
              agg::trans_affine Matrix, reference_pointer<art_cache> Cache) override;
    void WriteAttributes(reference_pointer<xbd_tag> Tag) override;
    zel_string GetTagName() override;
    zel_string GetTypeLabel() override;
    // The colour picker shows hue, saturation and brightness shifts as one colour: each shift
    // (-1 to 1) is a component (0 to 1) of a colour in hue, saturation and value.
    agg::rgba GetColor() override;
    // Picking a colour turns the filter into a colouriser of that colour.
    void SetColor(const agg::rgba &NewColor) override;

    double GetHShift() const { return HShift; }
    double GetSShift() const { return SShift; }
    double GetBShift() const { return BShift; }
    double GetCShift() const { return CShift; }
    bool GetColorize() const { return Colorize; }
    bool GetInvert() const { return Invert; }
    // The shifts are clamped to -1 to 1. Each asks for a redraw when the value changes.
    void SetHShift(double NewHShift);
    void SetSShift(double NewSShift);
    void SetBShift(double NewBShift);
    void SetCShift(double NewCShift);
    void SetColorize(bool NewColorize);
    void SetInvert(bool NewInvert);

    art_hsbc_pixel_filter MakePixelFilter() const;

private:
    template <class T> void ChangeField(T &Field, T Value);
    // Component is 0 to 1; a change of 0.001 or less is not taken.
    void SetShiftFromComponent(double &Field, double Component);

    double HShift = 0;
    double SShift = 0;
    double BShift = 0;
    double CShift = 0;
    bool Colorize = false;
    bool Invert = false;
};
