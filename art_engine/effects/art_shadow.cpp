#include "art_engine/effects/art_shadow.h"

#include <algorithm>
#include <cmath>
#include <cstdint>

#include "art_engine/geometry/art_attribute_text.h"
#include "art_engine/geometry/art_path.h"
#include "art_engine/objects/art_cache.h"
#include "art_engine/objects/art_object_children.h"
#include "art_engine/pixels/art_bitmap.h"
#include "art_engine/pixels/art_blend.h"
#include "art_engine/pixels/art_color.h"
#include "art_engine/pixels/art_stack_blur.h"
#include "zel_basics/debug.h"

namespace {

// How far the weight may push the shadow's alpha: at 0.75 the table multiplies by 4.
const double MaxWeightShift = 0.75;

bool SameColor(const agg::rgba &A, const agg::rgba &B)
{
    return A.r == B.r && A.g == B.g && A.b == B.b && A.a == B.a;
}

// A shift in pixels, halves away from zero. Beyond the extent nothing of the temporary lands on
// the target whatever the shift, so it is held there, inside what an int holds.
int WholeShift(double Shift, int Extent)
{
    double Rounded = std::round(Shift);
    if (Rounded > Extent)
        return Extent;
    if (Rounded < -Extent)
        return -Extent;
    return static_cast<int>(Rounded);
}

} // namespace

const agg::rgba art_shadow::DefaultColor(0, 0, 0, 0.333);

art_shadow::art_shadow() : Color(DefaultColor) {}

art_shadow::art_shadow(reference_pointer<xbd_tag> Tag)
    : art_color_blur(Tag), Offset(ArtTextToPoint(Tag->GetAttribute("offset", "(0,0)"))),
      Weight(ArtTextToReal(Tag->GetAttribute("weight", ""), 0.0)), Color(DefaultColor)
{
    // An empty colour text would read as white: only a colour that is there replaces the default.
    if (Tag->HasAttribute("color"))
        Color = ArtTextToColor(Tag->GetAttribute("color", ""));
}

ownership_pointer<art_object> art_shadow::Duplicate() const
{
    return ownership_pointer<art_object>(new art_shadow(*this));
}

void art_shadow::Draw(reference_pointer<bitmap_interface> Target, reference_pointer<bitmap_interface>,
                      agg::trans_affine Matrix, reference_pointer<art_cache> Cache)
{
    // A target that is no art_bitmap reads as unset.
    art_bitmap &Bitmap = *Target.DynamicCast<art_bitmap>();
    ownership_pointer<art_bitmap> StencilBitmap;
    if (StackMode == StackModeNormal && Parent.IsSet() && Parent->HasChildren()) {
        // The layer's stencil as the parent made it: black, then its stencil children in order.
        reference_pointer<art_object_children> Children = Parent->GetChildrenObject();
        bool HasStencil = false;
        for (int I = 0; I < Children->GetNumberOfElements(); I++)
            HasStencil = HasStencil || IsStencilStackMode(Children->GetChild(I)->GetStackMode());
        if (HasStencil) {
            StencilBitmap = ownership_pointer<art_bitmap>(new art_bitmap(Bitmap.GetSize().X, Bitmap.GetSize().Y));
            StencilBitmap->Clear(agg::rgba8(0, 0, 0, 255));
            reference_pointer<bitmap_interface> StencilTarget(StencilBitmap.Get());
            Children->DrawStencilChildren(StencilTarget, StencilTarget, Matrix, Cache);
        }
    }
    DrawShadow(Bitmap, StencilBitmap, Matrix);
}

void art_shadow::DrawShadow(art_bitmap &Target, const ownership_pointer<art_bitmap> &StencilBitmap,
                            const agg::trans_affine &Matrix)
{
    int_point2d Size = Target.GetSize();
    int NumPixels = Size.X * Size.Y;
    ownership_pointer<art_bitmap> TempBitmap(new art_bitmap(Size.X, Size.Y));
    TOVAS_ASSERT(TempBitmap->GetPixelDataSize()==NumPixels, this);
    agg::rgba8 Shade = ArtColorToRgba8(Color);
    int IntOpacity = static_cast<int>(Color.a * 255 + 0.5);

    bool Inner = StackMode == StackModeNormal;
    // The inner shadow lies where the stencil does not cover; the drop shadow where the layer does.
    art_bitmap *Stencil = nullptr;
    if (Inner) {
        Stencil = &*StencilBitmap;
        TOVAS_ASSERT(Stencil->GetSize() == Size, this);
    }
    for (int Y = 0; Y < Size.Y; Y++) {
        agg::rgba8 *Shadow = TempBitmap->GetPixelRow(Y);
        const agg::rgba8 *Cover = Inner ? Stencil->GetPixelRow(Y) : Target.GetPixelRow(Y);
        for (int X = 0; X < Size.X; X++) {
            Shadow[X] = Shade;
            Shadow[X].a = static_cast<uint8_t>(Inner ? 255 - Luma(Cover[X]) : Cover[X].a);
        }
    }
    // The colour is the same everywhere, so only the alpha needs the blur.
    int PixelRadius = GetPixelRadius(Matrix);
    if (PixelRadius > 0)
        BlurAlpha(reference_pointer<art_bitmap>(TempBitmap), PixelRadius);
    // Weight pushes the partly covered edge towards full cover.
    if (Weight != 0) {
        double Shift = Weight * MaxWeightShift;
        Shift = Shift < 0 ? 0 : Shift > MaxWeightShift ? MaxWeightShift : Shift;
        double Factor = 1.0 / (1.0 - Shift);
        uint8_t Table[256];
        for (int I = 0; I < 256; I++) {
            int Value = static_cast<int>(I * Factor);
            Table[I] = static_cast<uint8_t>(Value > 255 ? 255 : Value);
        }
        TempBitmap->ForEachPixel([&Table](agg::rgba8 *Pixel) { Pixel->a = Table[Pixel->a]; });
    }
    double DX = Offset.X;
    double DY = Offset.Y;
    Matrix.transform_2x2(&DX, &DY);
    TOVAS_ASSERT(IntOpacity>=0 && IntOpacity <256, this);
    uint8_t Opacity = static_cast<uint8_t>(IntOpacity);
    int ShiftX = WholeShift(DX, Size.X);
    int ShiftY = WholeShift(DY, Size.Y);
    if (Inner) {
        // The outside of the shape goes on past the layer, so the bands that the shifted shadow
        // uncovers at the edges are in shadow too.
        agg::rgba8 Band(Shade.r, Shade.g, Shade.b, Opacity);
        if (DX > 0)
            Target.FillRectangle(0, 0, DX, Size.Y, Band);
        else if (DX < 0)
            Target.FillRectangle(Size.X + DX, 0, -DX, Size.Y, Band);
        if (DY > 0)
            Target.FillRectangle(0, 0, Size.X, DY, Band);
        else if (DY < 0)
            Target.FillRectangle(0, Size.Y + DY, Size.X, -DY, Band);
        TempBitmap->ForEachPixel([](agg::rgba8 *Pixel) { PremultiplyPixel(*Pixel); });
        Target.BlendBitmap(ShiftX, ShiftY, TempBitmap, Opacity);
        return;
    }
    // Straight alpha, as the composite expects; it goes under what the layer already shows.
    Target.CompositeBitmap(ShiftX, ShiftY, TempBitmap, Opacity, CompOpDstOver);
}

// In object units: the reach goes towards the offset, then the blur's on top.
void art_shadow::ExpandRedrawRect(rectangle &Rect, const agg::trans_affine &Matrix)
{
    double Factor = GetMatrixMaxScale(Matrix);
    point2d Shift(Factor * Offset.X, Factor * Offset.Y);
    Rect.Location = point2d(std::min(Rect.Location.X, Rect.Location.X + Shift.X),
                            std::min(Rect.Location.Y, Rect.Location.Y + Shift.Y));
    Rect.Size = Rect.Size + point2d(std::fabs(Shift.X), std::fabs(Shift.Y));
    art_color_blur::ExpandRedrawRect(Rect, Matrix);
}

// In whole pixels: the window takes in the pixels whose shadow falls into it, on the side the
// shadow comes from.
void art_shadow::ExpandDrawWindow(rectangle &Window, const agg::trans_affine &Matrix)
{
    double X = -Offset.X;
    double Y = -Offset.Y;
    Matrix.transform_2x2(&X, &Y);
    point2d AbsTSO(std::ceil(std::fabs(X)), std::ceil(std::fabs(Y)));
    TOVAS_ASSERT(AbsTSO.X>=0 && AbsTSO.Y>=0, this);
    if (X < 0)
        Window.Location.X -= AbsTSO.X;
    if (Y < 0)
        Window.Location.Y -= AbsTSO.Y;
    Window.Size = Window.Size + AbsTSO;
    art_color_blur::ExpandDrawWindow(Window, Matrix);
}

void art_shadow::WriteAttributes(reference_pointer<xbd_tag> Tag)
{
    art_color_blur::WriteAttributes(Tag);
    if (Offset != point2d(0, 0))
        Tag->AddAttribute("offset", ArtPointToText(Offset));
    if (Weight != 0.0)
        Tag->AddAttribute("weight", ArtRealToText(Weight));
    if (!SameColor(Color, DefaultColor))
        Tag->AddAttribute("color", ArtColorToText(Color));
}

zel_string art_shadow::GetTagName()
{
    return "art_shadow";
}

zel_string art_shadow::GetTypeLabel()
{
    return "Shadow";
}

agg::rgba art_shadow::GetColor()
{
    return Color;
}

void art_shadow::SetColor(const agg::rgba &NewColor)
{
    if (SameColor(Color, NewColor))
        return;
    Color = NewColor;
    RequestRedraw();
}

void art_shadow::GetHandleTip(zel_string &Title, zel_string &Text)
{
    art_color_blur::GetHandleTip(Title, Text);
    Title = "Shadow Offset";
}

int art_shadow::GetSpecialControlCount()
{
    return 1;
}

point2d art_shadow::GetSpecialControl(int Index)
{
    if (Index != 0)
        return art_color_blur::GetSpecialControl(Index);
    return Offset;
}

void art_shadow::SetSpecialControl(int Index, point2d Point)
{
    if (Index != 0) {
        art_color_blur::SetSpecialControl(Index, Point);
        return;
    }
    SetOffset(Point);
}

void art_shadow::SetOffset(point2d NewOffset)
{
    ChangeField(Offset, NewOffset);
}

void art_shadow::SetWeight(double NewWeight)
{
    ChangeField(Weight, NewWeight);
}
