#include "art_engine/effects/art_color_blur.h"

#include <algorithm>
#include <cmath>

#include "art_engine/geometry/art_attribute_text.h"
#include "art_engine/geometry/art_path.h"
#include "art_engine/pixels/art_bitmap.h"
#include "art_engine/pixels/art_stack_blur.h"

art_color_blur::art_color_blur(reference_pointer<xbd_tag> Tag)
    : art_filter_effect(Tag), Radius(ArtTextToReal(Tag->GetAttribute("radius", ""), 0.0))
{
}

ownership_pointer<art_object> art_color_blur::Duplicate() const
{
    return ownership_pointer<art_object>(new art_color_blur(*this));
}

void art_color_blur::Draw(reference_pointer<bitmap_interface> Target, reference_pointer<bitmap_interface>,
                          agg::trans_affine Matrix, reference_pointer<art_cache>)
{
    // A target that is no art_bitmap reads as unset.
    Blur(*Target.DynamicCast<art_bitmap>(), Matrix);
}

void art_color_blur::Blur(art_bitmap &Bitmap, const agg::trans_affine &Matrix)
{
    int PixelRadius = GetPixelRadius(Matrix);
    if (PixelRadius == 0)
        return;
    reference_pointer<art_bitmap> Pixels(&Bitmap);
    BlurColor(Pixels, PixelRadius);
    if (StackMode == StackModeNormal || StackMode == StackModePost)
        BlurAlpha(Pixels, PixelRadius);
}

int art_color_blur::GetPixelRadius(const agg::trans_affine &Matrix) const
{
    double Rounded = std::round(GetMatrixMaxScale(Matrix) * Radius);
    if (!(Rounded >= 1))
        return 0;
    return Rounded > MaxPixelRadius ? MaxPixelRadius : static_cast<int>(Rounded);
}

// The blur reaches MaxPixelRadius pixels at most, whatever its radius, and so do the margins.
void art_color_blur::ExpandRedrawRect(rectangle &Rect, const agg::trans_affine &Matrix)
{
    double Margin = std::min(GetMatrixMaxScale(Matrix) * Radius, double(MaxPixelRadius));
    if (!(Margin > 0))
        return;
    Rect.Location = Rect.Location - point2d(Margin, Margin);
    Rect.Size = Rect.Size + point2d(2 * Margin, 2 * Margin);
}

// The window is in whole pixels; it grows by whole pixels so that it stays so. It never shrinks:
// the part of the layer that is shown has to be drawn.
void art_color_blur::ExpandDrawWindow(rectangle &Window, const agg::trans_affine &Matrix)
{
    double Margin = std::min(std::ceil(GetMatrixMaxScale(Matrix) * Radius), double(MaxPixelRadius));
    if (!(Margin > 0))
        return;
    Window.Location = Window.Location - point2d(Margin, Margin);
    Window.Size = Window.Size + point2d(2 * Margin, 2 * Margin);
}

void art_color_blur::WriteAttributes(reference_pointer<xbd_tag> Tag)
{
    art_filter_effect::WriteAttributes(Tag);
    if (Radius != 0.0)
        Tag->AddAttribute("radius", ArtRealToText(Radius));
}

zel_string art_color_blur::GetTagName()
{
    return "art_blur";
}

zel_string art_color_blur::GetTypeLabel()
{
    return "Blur";
}

void art_color_blur::SetRadius(double NewRadius)
{
    ChangeField(Radius, NewRadius);
}
