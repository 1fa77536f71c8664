#include "art_engine/shapes/art_rectangle_shape.h"

#include <algorithm>

#include <agg_rounded_rect.h>

#include "art_engine/geometry/art_attribute_text.h"

namespace {

// A radius reaches at most half across; a negative one, or a negative extent, gives square corners.
double ClampRadius(double Radius, double Half)
{
    if (Radius < 0 || Half < 0)
        return 0;
    return Radius < Half ? Radius : Half;
}

} // namespace

art_rectangle_shape::art_rectangle_shape(reference_pointer<xbd_tag> Tag)
{
    zel_string RoundedText = Tag->GetAttribute("rounded", "");
    if (!RoundedText.IsEmpty())
        Radius = ArtTextToPoint(RoundedText);
}

ownership_pointer<art_shape> art_rectangle_shape::Clone()
{
    return ownership_pointer<art_shape>(new art_rectangle_shape(*this));
}

zel_string art_rectangle_shape::GetDebugInfo()
{
    return zel_string("art_rectangle_shape::Radius=") + ArtPointToText(Radius);
}

zel_string art_rectangle_shape::GetTagName()
{
    return "art_rectangle";
}

void art_rectangle_shape::SaveToTag(reference_pointer<xbd_tag> Tag)
{
    if (Radius.X != 0 || Radius.Y != 0)
        Tag->AddAttribute("rounded", ArtPointToText(Radius));
}

void art_rectangle_shape::GetPath(art_path &Path, double ScaleX, double)
{
    point2d Size = GetOwnerSize();
    double RY = ClampRadius(Radius.Y, Size.Y / 2);
    double RX = ClampRadius(Radius.X, Size.X / 2);
    agg::rounded_rect Rectangle(0, 0, Size.X, Size.Y, 0);
    Rectangle.radius(RX, RY);
    Rectangle.approximation_scale(LimitFlatteningScale(ScaleX, 2 * std::max(RX, RY)));
    JoinPath(Path, Rectangle);
}

bool art_rectangle_shape::HasSharpCorners()
{
    return false;
}

int art_rectangle_shape::GetNumHandles()
{
    return 1;
}

point2d art_rectangle_shape::GetHandleLocation(int)
{
    return Radius;
}

void art_rectangle_shape::SetHandleLocation(int, point2d Location, bool Constrain)
{
    if (Constrain) {
        double Smaller = Location.X < Location.Y ? Location.X : Location.Y;
        Location = point2d(Smaller, Smaller);
    }
    Radius = point2d(Location.X < 0 ? 0 : Location.X, Location.Y < 0 ? 0 : Location.Y);
    NotifyChanged();
}

zel_string art_rectangle_shape::GetDisplayName()
{
    return Radius.X == 0 && Radius.Y == 0 ? "Rectangle" : "Rounded Rectangle";
}

void art_rectangle_shape::GetHandleToolTip(int, zel_string &Title, zel_string &Tip)
{
    Title = "Round Corners";
    Tip = "Drag to round the rectangle's corners.";
}
