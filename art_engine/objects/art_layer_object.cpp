#include "art_engine/objects/art_layer_object.h"

#include "art_engine/objects/art_layout.h"

art_layer_object::art_layer_object()
{
    FillParent();
}

art_layer_object::art_layer_object(reference_pointer<xbd_tag> Tag) : art_object(Tag)
{
    FillParent();
}

// With the pivot at the corner, location (0, 0) lays this frame exactly over the parent's. The
// layout says the same, all of the parent on both axes, so that whoever asks what this frame hangs
// on hears that it is the parent.
void art_layer_object::FillParent()
{
    Handle = point2d(0, 0);
    art_floating_autolayout *Floating = dynamic_cast<art_floating_autolayout *>(AutoLayout.Get());
    TOVAS_ASSERT(Floating!=NULL, this);
    Floating->SetMode(7, 7);
    Floating->GetH().RelVals[0] = 0;
    Floating->GetH().RelVals[1] = 1;
    Floating->GetV().RelVals[0] = 0;
    Floating->GetV().RelVals[1] = 1;
}

art_layer_object::art_layer_object(const art_layer_object &Other) : art_object(Other) {}

ownership_pointer<art_object> art_layer_object::Duplicate() const
{
    return ownership_pointer<art_object>(new art_layer_object(*this));
}

bool art_layer_object::Layout()
{
    point2d OldLocation = Location;
    point2d OldSize = Size;
    SetLocationInternal(point2d(0, 0), true);
    if (Parent.IsSet())
        SetSizeInternal(Parent->GetSize(), true);
    LayoutValid = true;
    return Location != OldLocation || Size != OldSize;
}

bool art_layer_object::SizeDependsOnParent()
{
    return true;
}

int32_t art_layer_object::GetRedrawCount()
{
    return RedrawCount + (Parent.IsSet() ? Parent->GetRedrawCount() : 0);
}

void art_layer_object::ParentChanged()
{
    Layout();
}

void art_layer_object::SetSize(point2d)
{
    Layout();
}

void art_layer_object::SetLocation(point2d)
{
    Layout();
}

void art_layer_object::SetHandle(point2d)
{
    Layout();
}

void art_layer_object::SetAngle(double)
{
    Layout();
}

void art_layer_object::SetStackMode(art_stack_mode NewMode)
{
    SetStackModeInternal(NewMode);
}

// It has no area of its own: what it shows covers the parent's whole frame.
void art_layer_object::RequestRedraw()
{
    RedrawCount++;
    if (Parent.IsSet())
        Parent->RequestRedrawRect(rectangle(point2d(), Parent->GetSize()));
}

bool art_layer_object::CanHaveChildren()
{
    return false;
}

bool art_layer_object::IsLayer()
{
    return true;
}

bool art_layer_object::HasOwnFrame()
{
    return false;
}

void art_layer_object::WriteAttributes(reference_pointer<xbd_tag> Tag)
{
    WriteStackMode(Tag);
}

bool art_layer_object::IsLayerObject()
{
    return true;
}

bool art_layer_object::CanBeSelected()
{
    return false;
}

bool art_layer_object::ReservedLayerObjectQuery()
{
    return false;
}

zel_string art_layer_object::GetEffectKind()
{
    return "Effect";
}
