#pragma once

#include <cstdint>

#include <agg_color_rgba.h>

#include "art_engine/effects/art_fill_effect.h"
#include "art_engine/effects/art_fill_path_with_fade.h"
#include "art_engine/effects/art_gradient_table.h"
#include "zel_basics/array.h"
#include "zel_basics/point2d.h"

// Floods its parent's layer with a gradient between two points of the object. The points are
// fractions of the object's size, so the gradient follows the object when it is resized. Each point
// has a colour; the first two points and colours make the gradient, and any further ones are kept
// and saved but not drawn.
class art_color_fade : public art_fill_effect
{
public:
    // Linear, red to green in RGB, from the top-left corner to the bottom-right.
    art_color_fade();
    explicit art_color_fade(reference_pointer<xbd_tag> Tag);
    art_color_fade(const art_color_fade &Other) = default;

    ownership_pointer<art_object> Duplicate() const override;
    void Draw(reference_pointer<bitmap_interface> Target, reference_pointer<bitmap_interface> Backdrop,
              agg::trans_affine Matrix, reference_pointer<art_cache> Cache) override;
    void WriteAttributes(reference_pointer<xbd_tag> Tag) override;
    zel_string GetTagName() override;
    zel_string GetTypeLabel() override;
    bool HasGradientControls() override;
    // The colour of the point that the colour picker is setting; with no such point, the plain
    // object's answer.
    agg::rgba GetColor() override;
    void SetColor(const agg::rgba &NewColor) override;

    // The editor's handles, one for each point, in object units.
    int GetNumHandles() const;
    point2d GetHandleLocation(int Index);
    void SetHandleLocation(int Index, point2d Location);
    void GetHandleToolTip(int Index, zel_string &Title, zel_string &Tip);

    // Each setter asks for a redraw when the value changes.
    int32_t GetFadeType() const { return FadeType; }
    void SetFadeType(int32_t NewFadeType);
    int32_t GetFadeMode() const { return FadeMode; }
    void SetFadeMode(int32_t NewFadeMode);
    double GetReps() const { return Reps; }
    // Raised to 0.001 when below.
    void SetReps(double NewReps);
    bool GetMirror() const { return Mirror; }
    void SetMirror(bool NewMirror);
    int32_t GetCurrentColorIndex() const { return CurrentColorIndex; }
    // Any index is taken; one that names no point sends the colour operations to the plain object.
    void SetCurrentColorIndex(int32_t Index) { CurrentColorIndex = Index; }
    const array<point2d> &GetFadePoints() const { return FadePoints; }
    const array<agg::rgba> &GetColors() const { return Colors; }
    // Replaces every point with its colour; both arrays must have the same count, at least 2.
    void SetPoints(const array<point2d> &NewFadePoints, const array<agg::rgba> &NewColors);

private:
    void SetDefaultPoints();
    void ReadRepetitions(reference_pointer<xbd_tag> Tag);
    void ReadPoints(reference_pointer<xbd_tag> Tag);
    bool HasCurrentColor() const;

    int32_t FadeType;
    int32_t FadeMode;
    array<point2d> FadePoints;
    array<agg::rgba> Colors;
    double Reps;
    bool Mirror;
    int32_t CurrentColorIndex;
};
