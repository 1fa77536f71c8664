#include "art_engine/effects/art_color_fill.h"

#include "art_engine/pixels/art_bitmap.h"
#include "art_engine/pixels/art_color.h"
#include "zel_basics/debug.h"

namespace {

const agg::rgba DefaultColor(1, 1, 1, 1);

bool SameColor(const agg::rgba &A, const agg::rgba &B)
{
    return A.r == B.r && A.g == B.g && A.b == B.b && A.a == B.a;
}

} // namespace

art_color_fill::art_color_fill() : Color(DefaultColor) {}

art_color_fill::art_color_fill(const agg::rgba &Color) : Color(Color) {}

art_color_fill::art_color_fill(reference_pointer<xbd_tag> Tag)
    : art_fill_effect(Tag), Color(ArtTextToColor(Tag->GetAttribute("color", "ffffffff")))
{
}

ownership_pointer<art_object> art_color_fill::Duplicate() const
{
    return ownership_pointer<art_object>(new art_color_fill(*this));
}

// An opaque colour replaces the layer outright; a translucent one has to blend with what earlier
// children painted.
void art_color_fill::Draw(reference_pointer<bitmap_interface> Target, reference_pointer<bitmap_interface>,
                          agg::trans_affine, reference_pointer<art_cache>)
{
    reference_pointer<art_bitmap> Bitmap = Target.DynamicCast<art_bitmap>();
    TOVAS_ASSERT(Bitmap.IsSet(), this);
    agg::rgba8 Bytes = ArtColorToRgba8(Color);
    if (Color.a == 1.0) {
        Bitmap->Clear(Bytes);
        return;
    }
    int_point2d Size = Bitmap->GetSize();
    Bitmap->FillRectangle(0, 0, Size.X, Size.Y, Bytes);
}

void art_color_fill::WriteAttributes(reference_pointer<xbd_tag> Tag)
{
    art_fill_effect::WriteAttributes(Tag);
    if (!SameColor(Color, DefaultColor))
        Tag->AddAttribute("color", ArtColorToText(Color));
}

zel_string art_color_fill::GetTagName()
{
    return "art_solid_fill";
}

zel_string art_color_fill::GetTypeLabel()
{
    return "Solid Color";
}

agg::rgba art_color_fill::GetColor()
{
    return Color;
}

void art_color_fill::SetColor(const agg::rgba &NewColor)
{
    if (SameColor(Color, NewColor))
        return;
    Color = NewColor;
    RequestRedraw();
}
