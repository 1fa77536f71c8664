#include "art_engine/effects/art_color_fade.h"

#include <cmath>

#include "art_engine/geometry/art_attribute_text.h"
#include "art_engine/pixels/art_bitmap.h"
#include "art_engine/pixels/art_color.h"
#include "zel_basics/debug.h"

namespace {

// The texts of "fade_type" by type; linear is the attribute left out.
const char *const FadeTypeTexts[] = {"", "circular", "diamond", "conic", "xy", "sqrtxy"};
const int NumberOfFadeTypes = 6;
// The texts of "fade_mode" by mode; "rgb" is the default and so never written.
const char *const FadeModeTexts[] = {"short_hsb", "long_hsb", "rgb"};
const int NumberOfFadeModes = 3;

const double MinimumReps = 0.001;

// The text's index in Texts, or Default when it is none of them.
int32_t FindText(const zel_string &Text, const char *const *Texts, int Count, int32_t Default)
{
    for (int I = 0; I < Count; I++)
        if (Text == Texts[I])
            return I;
    return Default;
}

bool IsFiniteMatrix(const agg::trans_affine &M)
{
    return std::isfinite(M.sx) && std::isfinite(M.shy) && std::isfinite(M.shx) && std::isfinite(M.sy) &&
           std::isfinite(M.tx) && std::isfinite(M.ty);
}

} // namespace

art_color_fade::art_color_fade()
    : FadeType(FadeTypeLinear), FadeMode(FadeModeRgb), Reps(1.0), Mirror(false), CurrentColorIndex(0)
{
    SetDefaultPoints();
}

art_color_fade::art_color_fade(reference_pointer<xbd_tag> Tag)
    : art_fill_effect(Tag),
      FadeType(FindText(Tag->GetAttribute("fade_type", ""), FadeTypeTexts, NumberOfFadeTypes, FadeTypeLinear)),
      FadeMode(FindText(Tag->GetAttribute("fade_mode", ""), FadeModeTexts, NumberOfFadeModes, FadeModeRgb)),
      Reps(1.0), Mirror(false), CurrentColorIndex(0)
{
    ReadRepetitions(Tag);
    ReadPoints(Tag);
}

void art_color_fade::SetDefaultPoints()
{
    FadePoints.Clear();
    Colors.Clear();
    FadePoints.Add(point2d(0, 0));
    FadePoints.Add(point2d(1, 1));
    Colors.Add(agg::rgba(1, 0, 0, 1));
    Colors.Add(agg::rgba(0, 1, 0, 1));
}

// Older documents counted a mirrored run there and back as two repetitions in "reps"; newer ones
// count it as one in "repetitions". An integer "reps" of exactly 1, which its absence gives too,
// marks a newer document.
void art_color_fade::ReadRepetitions(reference_pointer<xbd_tag> Tag)
{
    zel_string OldReps = Tag->GetAttribute("reps", "1");
    zel_string NewReps = Tag->GetAttribute("repetitions", "1");
    Mirror = Tag->GetAttribute("mirror", "0").ToInt() != 0;
    if (OldReps.ToInt() == 1) {
        Reps = NewReps.ToFloat();
        if (Reps < MinimumReps)
            Reps = MinimumReps;
        return;
    }
    Reps = OldReps.ToFloat();
    if (Reps < MinimumReps)
        Reps = MinimumReps;
    if (Mirror)
        Reps /= 2;
}

void art_color_fade::ReadPoints(reference_pointer<xbd_tag> Tag)
{
    reference_pointer<xbd_tag> List = Tag->GetChildTag("points");
    if (!List.IsSet()) {
        SetDefaultPoints();
        return;
    }
    for (array_iterator<ownership_pointer<xbd_tag>> Point(List->GetChildren()); Point.NotDone(); Point.Next()) {
        reference_pointer<xbd_tag> Entry(Point.Current().Get());
        if (Entry->GetName() != "points")
            continue;
        FadePoints.Add(ArtTextToPoint(Entry->GetAttribute("loc", "(0,0)")));
        Colors.Add(ArtTextToColor(Entry->GetAttribute("color", "")));
    }
}

ownership_pointer<art_object> art_color_fade::Duplicate() const
{
    return ownership_pointer<art_object>(new art_color_fade(*this));
}

// The gradient is computed in this object's units over the whole bitmap: the parent's stencil
// gives it its shape afterwards.
void art_color_fade::Draw(reference_pointer<bitmap_interface> Target, reference_pointer<bitmap_interface>,
                          agg::trans_affine Matrix, reference_pointer<art_cache>)
{
    reference_pointer<art_bitmap> Bitmap = Target.DynamicCast<art_bitmap>();
    TOVAS_ASSERT(Bitmap.IsSet(), this);
    TOVAS_ASSERT(FadePoints.GetNumberOfElements()==Colors.GetNumberOfElements(), this);
    TOVAS_ASSERT(Colors.GetNumberOfElements()>=2, this);
    agg::rgba8 Table[ArtGradientTableSize];
    if (!BuildGradientTable(Table, Colors[0], Colors[1], FadeMode, FadeType == FadeTypeConic))
        return;
    agg::trans_affine ObjectToBitmap = GetObjectToParent();
    ObjectToBitmap.multiply(Matrix);
    agg::trans_affine BitmapToObject = ObjectToBitmap;
    BitmapToObject.invert();
    // A matrix that flattens the object covers no pixel.
    if (!IsFiniteMatrix(BitmapToObject))
        return;
    int_point2d Size = Bitmap->GetSize();
    art_path Path;
    AddRectanglePath(Path, 0, 0, Size.X, Size.Y);
    Path.transform(BitmapToObject);
    FillPathWithFade(*Bitmap, Path, ObjectToBitmap, Table, GetHandleLocation(0), GetHandleLocation(1), FadeType, 1.0,
                     Reps, Mirror);
}

void art_color_fade::WriteAttributes(reference_pointer<xbd_tag> Tag)
{
    art_fill_effect::WriteAttributes(Tag);
    if (std::fabs(Reps - 1.0) > 1e-9)
        Tag->AddAttribute("repetitions", ArtRealToText(Reps));
    if (Mirror)
        Tag->AddAttribute("mirror", "1");
    if (FadeType < 0 || FadeType >= NumberOfFadeTypes)
        TOVAS_ASSERT(false, this);
    if (FadeType != FadeTypeLinear)
        Tag->AddAttribute("fade_type", FadeTypeTexts[FadeType]);
    if (FadeMode < 0 || FadeMode >= NumberOfFadeModes)
        TOVAS_ASSERT(false, this);
    if (FadeMode != FadeModeRgb)
        Tag->AddAttribute("fade_mode", FadeModeTexts[FadeMode]);
    ownership_pointer<xbd_tag> List = Tag->NewTag("points");
    for (int I = 0; I < FadePoints.GetNumberOfElements(); I++) {
        ownership_pointer<xbd_tag> Entry = List->NewTag("points");
        Entry->AddAttribute("loc", ArtPointToText(FadePoints[I]));
        Entry->AddAttribute("color", ArtColorToText(Colors[I]));
        List->AddChildTag(Entry);
    }
    Tag->AddChildTag(List);
}

zel_string art_color_fade::GetTagName()
{
    return "art_gradient_fill";
}

zel_string art_color_fade::GetTypeLabel()
{
    return "Gradient";
}

bool art_color_fade::HasGradientControls()
{
    return true;
}

bool art_color_fade::HasCurrentColor() const
{
    return CurrentColorIndex >= 0 && CurrentColorIndex < Colors.GetNumberOfElements();
}

agg::rgba art_color_fade::GetColor()
{
    if (!HasCurrentColor())
        return art_fill_effect::GetColor();
    return Colors[CurrentColorIndex];
}

void art_color_fade::SetColor(const agg::rgba &NewColor)
{
    if (!HasCurrentColor()) {
        art_fill_effect::SetColor(NewColor);
        return;
    }
    agg::rgba &Color = Colors[CurrentColorIndex];
    if (Color.r == NewColor.r && Color.g == NewColor.g && Color.b == NewColor.b && Color.a == NewColor.a)
        return;
    Color = NewColor;
    RequestRedraw();
}

int art_color_fade::GetNumHandles() const
{
    return FadePoints.GetNumberOfElements();
}

point2d art_color_fade::GetHandleLocation(int Index)
{
    point2d Fraction = FadePoints[Index];
    return point2d(Size.X * Fraction.X, Size.Y * Fraction.Y);
}

void art_color_fade::SetHandleLocation(int Index, point2d Location)
{
    point2d &Fraction = FadePoints[Index];
    point2d NewFraction(Size.X == 0 ? 0 : Location.X / Size.X, Size.Y == 0 ? 0 : Location.Y / Size.Y);
    if (NewFraction == Fraction)
        return;
    Fraction = NewFraction;
    RequestRedraw();
}

// The first point is where the gradient starts; what the second one sets depends on the shape of
// the gradient.
void art_color_fade::GetHandleToolTip(int Index, zel_string &Title, zel_string &Tip)
{
    Tip = "Drag to move; Click to select for setting color";
    if (Index == 0) {
        Title = FadeType == FadeTypeLinear ? "Gradient Position: Start" : "Gradient Position: Center";
        return;
    }
    switch (FadeType) {
    case FadeTypeLinear:
        Title = "Gradient Position: End";
        break;
    case FadeTypeCircular:
        Title = "Gradient Position: Size";
        break;
    case FadeTypeConic:
        Title = "Gradient Position: Angle";
        break;
    default:
        Title = "Gradient Position: Size and Angle";
        break;
    }
}

void art_color_fade::SetFadeType(int32_t NewFadeType)
{
    if (NewFadeType == FadeType)
        return;
    FadeType = NewFadeType;
    RequestRedraw();
}

void art_color_fade::SetFadeMode(int32_t NewFadeMode)
{
    if (NewFadeMode == FadeMode)
        return;
    FadeMode = NewFadeMode;
    RequestRedraw();
}

void art_color_fade::SetReps(double NewReps)
{
    if (NewReps < MinimumReps)
        NewReps = MinimumReps;
    if (NewReps == Reps)
        return;
    Reps = NewReps;
    RequestRedraw();
}

void art_color_fade::SetMirror(bool NewMirror)
{
    if (NewMirror == Mirror)
        return;
    Mirror = NewMirror;
    RequestRedraw();
}

void art_color_fade::SetPoints(const array<point2d> &NewFadePoints, const array<agg::rgba> &NewColors)
{
    TOVAS_ASSERT(NewFadePoints.GetNumberOfElements()==NewColors.GetNumberOfElements(), this);
    TOVAS_ASSERT(NewColors.GetNumberOfElements()>=2, this);
    FadePoints = NewFadePoints;
    Colors = NewColors;
    RequestRedraw();
}
