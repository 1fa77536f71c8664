#include "art_engine/objects/art_shape.h"

#include "art_engine/objects/art_object.h"
#include "zel_basics/debug.h"

art_shape::art_shape(const art_shape &Other) : base_object(Other) {}

void art_shape::SetOwner(reference_pointer<art_object> NewOwner)
{
    Owner = NewOwner;
}

reference_pointer<art_object> art_shape::GetOwner() const
{
    return Owner;
}

void art_shape::NotifyChanged()
{
    if (Owner.IsSet() && Owner->GetParent().IsSet())
        Owner->GetParent()->RequestRedraw();
}

void art_shape::SaveToTag(reference_pointer<xbd_tag>) {}

bool art_shape::HasSharpCorners()
{
    return true;
}

int art_shape::GetNumHandles()
{
    return 0;
}

point2d art_shape::GetHandleLocation(int)
{
    TOVAS_ASSERT(false, this);
}

void art_shape::SetHandleLocation(int, point2d, bool)
{
    TOVAS_ASSERT(false, this);
}

agg::rgba art_shape::GetHandleColor()
{
    return agg::rgba(0, 1, 0, 0.5);
}

agg::rgba art_shape::GetHandleHighlightColor()
{
    return agg::rgba(0.5, 0.5, 0.5, 0.8);
}

void art_shape::GetHandleToolTip(int Index, zel_string &Title, zel_string &Tip)
{
    Title = "Point Handle";
    Tip = zel_string("Drag to move the point and change the shape (Point #") + zel_string::FromInt(Index + 1) +
          ")\n\nTip: Double-Click lines to add points\n\nTip: Drag lines and make curves";
}

point2d art_shape::GetOwnerSize() const
{
    if (!Owner.IsSet())
        return point2d(0, 0);
    return Owner->GetSize();
}
