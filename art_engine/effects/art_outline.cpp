#include "art_engine/effects/art_outline.h"

#include <cmath>

#include "art_engine/geometry/art_attribute_text.h"
#include "art_engine/objects/art_shape.h"
#include "art_engine/pixels/art_bitmap.h"
#include "art_engine/pixels/art_color.h"
#include "zel_basics/debug.h"

namespace {

// A word of the document and the AGG value it stands for.
struct outline_word
{
    const char *Text;
    int32_t Value;
};

const outline_word CornerWords[] = {{"miter", ArtJoinMiter}, {"round", ArtJoinRound}, {"bevel", ArtJoinBevel}};
const outline_word CapWords[] = {{"butt_cap", ArtCapButt}, {"square_cap", ArtCapSquare}, {"round_cap", ArtCapRound}};

// The value of the attribute's word, compared in lower case; Default when the attribute is absent
// or holds a word that means nothing here.
template <int N>
int32_t ReadWord(reference_pointer<xbd_tag> Tag, const char *Name, const outline_word (&Words)[N], int32_t Default)
{
    zel_string Text = Tag->GetAttribute(Name, "").ToLower();
    for (const outline_word &Word : Words)
        if (Text == zel_string(Word.Text))
            return Word.Value;
    return Default;
}

// Nothing for the default; nothing either for a value that has no word, which then reads back as
// the default.
template <int N>
void WriteWord(reference_pointer<xbd_tag> Tag, const char *Name, const outline_word (&Words)[N], int32_t Value,
               int32_t Default)
{
    if (Value == Default)
        return;
    for (const outline_word &Word : Words)
        if (Word.Value == Value)
            Tag->AddAttribute(Name, Word.Text);
}

bool SameColor(const agg::rgba &A, const agg::rgba &B)
{
    return A.r == B.r && A.g == B.g && A.b == B.b && A.a == B.a;
}

} // namespace

art_outline::art_outline(reference_pointer<xbd_tag> Tag) : art_layer_object(Tag)
{
    ReadAttributes(Tag);
}

art_outline::art_outline(const art_outline &Other)
    : art_layer_object(Other), Width(Other.Width), Color(Other.Color), CornerType(Other.CornerType),
      CapType(Other.CapType), DashLength(Other.DashLength), DashCycle(Other.DashCycle), DashOffset(Other.DashOffset)
{
}

void art_outline::ReadAttributes(reference_pointer<xbd_tag> Tag)
{
    Width = ArtTextToReal(Tag->GetAttribute("width", "1"), DefaultWidth);
    // An empty colour text would read as white: only a colour that is there replaces black.
    if (Tag->HasAttribute("color"))
        Color = ArtTextToColor(Tag->GetAttribute("color", ""));
    CornerType = ReadWord(Tag, "corner_type", CornerWords, DefaultCornerType);
    CapType = ReadWord(Tag, "cap_type", CapWords, DefaultCapType);
    DashLength = ArtTextToReal(Tag->GetAttribute("dash_len", ""), DefaultDashLength);
    DashCycle = ArtTextToReal(Tag->GetAttribute("dash_cycle", ""), DefaultDashCycle);
    DashOffset = ArtTextToReal(Tag->GetAttribute("dash_offset", ""), DefaultDashOffset);
}

ownership_pointer<art_object> art_outline::Duplicate() const
{
    return ownership_pointer<art_object>(new art_outline(*this));
}

// Matrix maps the owner's space: a layer object shares its parent's frame.
void art_outline::Draw(reference_pointer<bitmap_interface> Target, reference_pointer<bitmap_interface>,
                       agg::trans_affine Matrix, reference_pointer<art_cache>)
{
    reference_pointer<art_bitmap> Bitmap = Target.DynamicCast<art_bitmap>();
    TOVAS_ASSERT(Bitmap.IsSet(), this);
    agg::rgba LineColor;
    switch (StackMode) {
    case StackModeNormal:
    case StackModeStencil:
    case StackModePost:
        LineColor = GetColor();
        break;
    // In a stencil stack the line only adds to or cuts from the mask.
    case StackModePlusStencil:
        LineColor = agg::rgba(1, 1, 1, 1);
        break;
    case StackModeMinusStencil:
        LineColor = agg::rgba(0, 0, 0, 1);
        break;
    default:
        TOVAS_ASSERT(false, this);
    }
    agg::rgba8 Color8 = ArtColorToRgba8(LineColor);
    double Scale = GetMatrixMaxScale(Matrix);
    art_path Path;
    if (Parent.IsSet())
        Parent->GetShapePath(Path, Scale, Scale);
    if (DashCycle <= 0)
        Bitmap->StrokePath(Path, Color8, Width, Matrix, OutlineCentred, CornerType, CapType, ArtMiterLimit, Scale);
    else
        Bitmap->StrokeDashedPath(Path, Color8, Width, DashLength, DashCycle, DashOffset, Matrix, CornerType, CapType,
                                 ArtMiterLimit, Scale);
}

agg::trans_affine art_outline::GetShapeMatrix()
{
    return agg::trans_affine();
}

// The lengths scale by the mean scale of the matrix, the square root of its area factor, so that a
// line keeps its weight against a shape that the same matrix stretches.
void art_outline::SetShapeMatrix(const agg::trans_affine &Matrix)
{
    double Factor = std::sqrt(std::fabs(Matrix.determinant()));
    SetWidth(Width * Factor);
    SetDashCycle(DashCycle * Factor);
}

bool art_outline::IsEditTarget()
{
    return true;
}

// In "normal" mode the line is clipped to the owner's layer with everything else there, so it
// reaches no further than the owner's frame.
void art_outline::ExpandRedrawRect(rectangle &Rect, const agg::trans_affine &Matrix)
{
    if (StackMode == StackModeNormal || !(Width > 0))
        return;
    double Margin = Width;
    if (CornerType == ArtJoinMiter) {
        reference_pointer<art_shape> Shape;
        if (Parent.IsSet())
            Shape = Parent->GetShape();
        // A sharp corner lets the miter run out to its limit.
        bool Sharp = Shape.IsSet() && Shape->HasSharpCorners();
        Margin = ((Sharp ? ArtMiterLimit : 1.0) + 0.5) * Width;
    }
    Margin *= GetMatrixMaxScale(Matrix);
    Rect.Location = Rect.Location - point2d(Margin, Margin);
    Rect.Size = Rect.Size + point2d(2 * Margin, 2 * Margin);
}

void art_outline::WriteAttributes(reference_pointer<xbd_tag> Tag)
{
    art_layer_object::WriteAttributes(Tag);
    if (Width != DefaultWidth)
        Tag->AddAttribute("width", ArtRealToText(Width));
    if (!SameColor(Color, agg::rgba(0, 0, 0, 1)))
        Tag->AddAttribute("color", ArtColorToText(Color));
    WriteWord(Tag, "corner_type", CornerWords, CornerType, DefaultCornerType);
    WriteWord(Tag, "cap_type", CapWords, CapType, DefaultCapType);
    // The dash fields mean nothing to a solid line.
    if (DashCycle > 0) {
        if (DashLength != DefaultDashLength)
            Tag->AddAttribute("dash_len", ArtRealToText(DashLength));
        Tag->AddAttribute("dash_cycle", ArtRealToText(DashCycle));
        if (DashOffset != DefaultDashOffset)
            Tag->AddAttribute("dash_offset", ArtRealToText(DashOffset));
    }
}

zel_string art_outline::GetTagName()
{
    return "art_outline";
}

zel_string art_outline::GetTypeLabel()
{
    return "Outline";
}

zel_string art_outline::GetDebugName()
{
    return "Outline";
}

agg::rgba art_outline::GetColor()
{
    return Color;
}

void art_outline::SetColor(const agg::rgba &NewColor)
{
    if (SameColor(Color, NewColor))
        return;
    Color = NewColor;
    RequestRedraw();
}

// The reach of the line may shrink with the change, so the area it covered is redrawn as well as
// the one it covers now.
template <class T> void art_outline::ChangeField(T &Field, T Value)
{
    if (Field == Value)
        return;
    RequestRedraw();
    Field = Value;
    RequestRedraw();
}

void art_outline::SetWidth(double NewWidth)
{
    ChangeField(Width, NewWidth);
}

void art_outline::SetCornerType(int32_t NewCornerType)
{
    ChangeField(CornerType, NewCornerType);
}

void art_outline::SetCapType(int32_t NewCapType)
{
    ChangeField(CapType, NewCapType);
}

void art_outline::SetDashLength(double NewDashLength)
{
    ChangeField(DashLength, NewDashLength);
}

void art_outline::SetDashCycle(double NewDashCycle)
{
    ChangeField(DashCycle, NewDashCycle);
}

void art_outline::SetDashOffset(double NewDashOffset)
{
    ChangeField(DashOffset, NewDashOffset);
}
