#pragma once

#include <cstdint>

#include <agg_color_rgba.h>

#include "art_engine/geometry/art_path.h"
#include "art_engine/objects/art_layer_object.h"

// Strokes the path of the object that owns it, centred on the path. Width and dash lengths are in
// the owner's units, so the line grows and stretches with the owner.
class art_outline : public art_layer_object
{
public:
    // The values a document leaves out.
    static constexpr double DefaultWidth = 1.0;
    static constexpr int32_t DefaultCornerType = ArtJoinMiter;
    static constexpr int32_t DefaultCapType = ArtCapSquare;
    static constexpr double DefaultDashLength = 0.5;
    static constexpr double DefaultDashCycle = 0.0;
    static constexpr double DefaultDashOffset = 0.0;

    art_outline() = default;
    explicit art_outline(reference_pointer<xbd_tag> Tag);
    art_outline(const art_outline &Other);

    ownership_pointer<art_object> Duplicate() const override;
    // Matrix maps the owner's space, which is where its path lies, into Target's pixels.
    void Draw(reference_pointer<bitmap_interface> Target, reference_pointer<bitmap_interface> Backdrop,
              agg::trans_affine Matrix, reference_pointer<art_cache> Cache) override;
    // The line always has its width and carries no stretch of its own: a shape matrix given to it is
    // taken into the width and the dash cycle at once, so what it answers is the identity.
    agg::trans_affine GetShapeMatrix() override;
    void SetShapeMatrix(const agg::trans_affine &Matrix) override;
    bool IsEditTarget() override;
    void ExpandRedrawRect(rectangle &Rect, const agg::trans_affine &Matrix) override;
    void WriteAttributes(reference_pointer<xbd_tag> Tag) override;
    zel_string GetTagName() override;
    zel_string GetTypeLabel() override;
    zel_string GetDebugName() override;
    agg::rgba GetColor() override;
    void SetColor(const agg::rgba &NewColor) override;

    double GetWidth() const { return Width; }
    int32_t GetCornerType() const { return CornerType; }
    int32_t GetCapType() const { return CapType; }
    double GetDashLength() const { return DashLength; }
    double GetDashCycle() const { return DashCycle; }
    double GetDashOffset() const { return DashOffset; }
    // Each asks for a redraw when the value changes.
    void SetWidth(double NewWidth);
    void SetCornerType(int32_t NewCornerType);
    void SetCapType(int32_t NewCapType);
    void SetDashLength(double NewDashLength);
    void SetDashCycle(double NewDashCycle);
    void SetDashOffset(double NewDashOffset);

private:
    void ReadAttributes(reference_pointer<xbd_tag> Tag);
    template <class T> void ChangeField(T &Field, T Value);

    double Width = DefaultWidth;
    agg::rgba Color = agg::rgba(0, 0, 0, 1);
    int32_t CornerType = DefaultCornerType;
    int32_t CapType = DefaultCapType;
    // Fractions of DashCycle.
    double DashLength = DefaultDashLength;
    // In owner units; 0 or less draws a solid line.
    double DashCycle = DefaultDashCycle;
    double DashOffset = DefaultDashOffset;
};
