#include "art_engine/objects/art_layout.h"

#include "art_engine/geometry/art_attribute_text.h"
#include "art_engine/geometry/art_bounds.h"
#include "art_engine/objects/art_object_children.h"
#include "xbd/xbd.h"

// ---- art_relativizer ----

// The modes of the legal pairs; -1 marks a pair without a mode. Rows are PinLeft, columns PinRight.
static const int ModeOfPins[4][4] = {
    {-1, 1, 2, -1},
    {0, 6, 0, 3},
    {2, 2, 7, 5},
    {-1, 4, 5, -1},
};

static const art_pin PinsOfMode[8][2] = {
    {PinAdd, PinImplied}, {PinImplied, PinAdd},   {PinMul, PinImplied}, {PinAdd, PinChildren},
    {PinChildren, PinAdd}, {PinMul, PinChildren}, {PinAdd, PinAdd},     {PinMul, PinMul},
};

static art_pin NextPin(art_pin Pin)
{
    return static_cast<art_pin>((Pin + 1) % 4);
}

bool art_relativizer::IllegalPin() const
{
    return (PinLeft == PinImplied && PinRight == PinChildren) || (PinLeft == PinChildren && PinRight == PinImplied);
}

bool art_relativizer::IsCenterPinned() const
{
    return PinLeft == PinRight && (PinLeft == PinChildren || PinLeft == PinImplied);
}

bool art_relativizer::IsRelChildren() const
{
    return DependsOnChildren();
}

void art_relativizer::SetImplied(double Value)
{
    if (PinLeft == PinImplied)
        RelVals[0] = Value;
    else if (PinRight == PinImplied)
        RelVals[1] = Value;
}

int art_relativizer::GetMode() const
{
    int Mode = ModeOfPins[PinLeft][PinRight];
    if (Mode < 0)
        TOVAS_ASSERT(false, nullptr);
    return Mode;
}

void art_relativizer::SetMode(int Mode)
{
    if (Mode < 0 || Mode > 7)
        TOVAS_ASSERT(false, nullptr);
    PinLeft = PinsOfMode[Mode][0];
    PinRight = PinsOfMode[Mode][1];
}

void art_relativizer::FixIllegalPinRight()
{
    while (IllegalPin())
        PinRight = NextPin(PinRight);
    TOVAS_ASSERT(!IllegalPin(), nullptr);
}

void art_relativizer::FixIllegalPinLeft()
{
    while (IllegalPin())
        PinLeft = NextPin(PinLeft);
    TOVAS_ASSERT(!IllegalPin(), nullptr);
}

void art_relativizer::SetPinLeft(art_pin Pin)
{
    PinLeft = Pin;
    FixIllegalPinRight();
}

void art_relativizer::SetPinRight(art_pin Pin)
{
    PinRight = Pin;
    FixIllegalPinLeft();
}

void art_relativizer::NextPinLeft()
{
    PinLeft = NextPin(PinLeft);
    if (IllegalPin())
        PinLeft = NextPin(PinLeft);
    TOVAS_ASSERT(!IllegalPin(), nullptr);
}

void art_relativizer::NextPinRight()
{
    PinRight = NextPin(PinRight);
    if (IllegalPin())
        PinRight = NextPin(PinRight);
    TOVAS_ASSERT(!IllegalPin(), nullptr);
}

void art_relativizer::Compute(double P, double C, double K, double &Position, double &Extent) const
{
    double A = RelVals[0];
    double B = RelVals[1];
    switch (GetMode()) {
    case 0:
        Position = A;
        Extent = B;
        break;
    case 1:
        Position = A + P;
        Extent = B;
        break;
    case 2:
        Position = A * P;
        Extent = B;
        break;
    case 3:
        Position = A;
        Extent = B + C;
        break;
    case 4:
        Position = A + P;
        Extent = B + C;
        break;
    case 5:
        Position = A * P;
        Extent = B + C;
        break;
    case 6: {
        double E = (B + P) - A;
        Position = E * K + A;
        Extent = E;
        break;
    }
    case 7:
        Position = A * P;
        Extent = B * P;
        break;
    default:
        TOVAS_ASSERT(false, nullptr);
    }
}

void art_relativizer::SetFromObject(double Position, double Extent, double P, double C, double K,
                                    bool UpdatePosition, bool UpdateSize)
{
    double A = 0;
    double B = 0;
    switch (GetMode()) {
    case 0:
        A = Position;
        B = Extent;
        break;
    case 1:
        A = Position - P;
        B = Extent;
        break;
    case 2:
        A = P == 0 ? K : Position / P;
        B = Extent;
        break;
    case 3:
        A = Position;
        B = Extent - C;
        break;
    case 4:
        A = Position - P;
        B = Extent - C;
        break;
    case 5:
        A = P == 0 ? K : Position / P;
        B = Extent - C;
        break;
    case 6:
        A = Position - Extent * K;
        B = (A + Extent) - P;
        break;
    case 7:
        A = P == 0 ? K : Position / P;
        B = P == 0 ? Extent : Extent / P;
        break;
    default:
        TOVAS_ASSERT(false, nullptr);
    }
    if (UpdatePosition)
        RelVals[0] = A;
    if (UpdateSize)
        RelVals[1] = B;
}

art_pin art_relativizer::GetPinFromLetter(char Letter)
{
    switch (Letter) {
    case 'i':
    case 'I':
        return PinImplied;
    case 'a':
    case 'A':
    case '+':
        return PinAdd;
    case 'm':
    case 'M':
    case '*':
        return PinMul;
    case 'c':
    case 'C':
        return PinChildren;
    default:
        TOVAS_ASSERT(false, nullptr);
    }
}

void art_relativizer::ReadAttributes(reference_pointer<xbd_tag> Tag, const char *XName, const char *WName, double K)
{
    zel_string LayoutX = Tag->GetAttribute(zel_string("layout_") + XName, "");
    zel_string LayoutW = Tag->GetAttribute(zel_string("layout_") + WName, "");
    zel_string OldX = Tag->GetAttribute(XName, "");
    zel_string OldW = Tag->GetAttribute(WName, "");

    if (LayoutX.IsEmpty() && LayoutW.IsEmpty() && OldX.IsEmpty() && OldW.IsEmpty()) {
        SetMode(Tag->GetAttribute(zel_string(XName) + "_layout_mode", "").ToInt());
        RelVals[0] = ArtTextToReal(Tag->GetAttribute(zel_string(XName) + "_val", ""), 0);
        RelVals[1] = ArtTextToReal(Tag->GetAttribute(zel_string(WName) + "_val", ""), 0);
        return;
    }

    PinLeft = LayoutX.IsEmpty() ? PinAdd : GetPinFromLetter(LayoutX[0]);
    PinRight = LayoutW.IsEmpty() ? PinImplied : GetPinFromLetter(LayoutW[0]);
    RelVals[0] = ArtTextToReal(OldX, 0);
    RelVals[1] = ArtTextToReal(OldW, 0);
    // The older form gave the low edge, and with two relative pins the high edge too; the current
    // one gives where the handle point goes, and the extent.
    if (PinLeft == PinAdd && PinRight == PinImplied) {
        RelVals[0] = K * RelVals[1] + RelVals[0];
    } else if (PinLeft == PinMul && PinRight == PinMul) {
        RelVals[1] = RelVals[1] - RelVals[0];
        RelVals[0] = RelVals[1] * K + RelVals[0];
    }
}

void art_relativizer::WriteAttributes(reference_pointer<xbd_tag> Tag, const char *XName, const char *WName) const
{
    int Mode = GetMode();
    if (Mode != 0)
        Tag->AddAttribute(zel_string(XName) + "_layout_mode", zel_string::FromInt(Mode));
    if (RelVals[0] != 0)
        Tag->AddAttribute(zel_string(XName) + "_val", ArtRealToText(RelVals[0]));
    if (RelVals[1] != 0)
        Tag->AddAttribute(zel_string(WName) + "_val", ArtRealToText(RelVals[1]));
}

zel_string art_relativizer::GetPinName(art_pin Pin)
{
    switch (Pin) {
    case PinImplied:
        return "Implied";
    case PinAdd:
        return "Add";
    case PinMul:
        return "Mul";
    case PinChildren:
        return "Children";
    }
    TOVAS_ASSERT(false, nullptr);
}

static zel_string FlagText(bool Flag)
{
    return Flag ? "true" : "false";
}

zel_string art_relativizer::GetDebugString() const
{
    return zel_string("art_relativizer(PinLeft=") + GetPinName(PinLeft) + ", PinRight=" + GetPinName(PinRight) +
           ", RelVals=(" + ArtRealToText(RelVals[0]) + "," + ArtRealToText(RelVals[1]) +
           "), CenterPinned=" + FlagText(IsCenterPinned()) + ", RelChildren=" + FlagText(IsRelChildren()) + ")";
}

// ---- art_floating_autolayout ----

art_floating_autolayout::art_floating_autolayout(reference_pointer<art_object> Object) : art_autolayout(Object)
{
    point2d Location = Object->GetLocation();
    point2d Size = Object->GetSize();
    H.RelVals[0] = Location.X;
    H.RelVals[1] = Size.X;
    V.RelVals[0] = Location.Y;
    V.RelVals[1] = Size.Y;
}

art_floating_autolayout::art_floating_autolayout(const art_floating_autolayout &Other)
    : art_autolayout(Other.Object), H(Other.H), V(Other.V)
{
}

ownership_pointer<art_autolayout> art_floating_autolayout::Duplicate() const
{
    return ownership_pointer<art_autolayout>(new art_floating_autolayout(*this));
}

double art_floating_autolayout::GetParentWidth()
{
    reference_pointer<art_object> Parent = Object->GetParent();
    return Parent.IsSet() ? Parent->GetSize().X : 0;
}

double art_floating_autolayout::GetParentHeight()
{
    reference_pointer<art_object> Parent = Object->GetParent();
    return Parent.IsSet() ? Parent->GetSize().Y : 0;
}

// The children's extent is measured only when a pin asks for it: it walks the children.
void art_floating_autolayout::ComputeHorizontal(double &Position, double &Extent)
{
    double C = H.DependsOnChildren() ? Object->GetChildrenWidth() : 0;
    H.Compute(GetParentWidth(), C, Object->GetHandle().X, Position, Extent);
}

void art_floating_autolayout::ComputeVertical(double &Position, double &Extent)
{
    double C = V.DependsOnChildren() ? Object->GetChildrenHeight() : 0;
    V.Compute(GetParentHeight(), C, Object->GetHandle().Y, Position, Extent);
}

void art_floating_autolayout::SetFromObject(point2d Location, point2d Size, bool UpdatePosition, bool UpdateSize)
{
    point2d Handle = Object->GetHandle();
    double CX = H.DependsOnChildren() ? Object->GetChildrenWidth() : 0;
    double CY = V.DependsOnChildren() ? Object->GetChildrenHeight() : 0;
    H.SetFromObject(Location.X, Size.X, GetParentWidth(), CX, Handle.X, UpdatePosition, UpdateSize);
    V.SetFromObject(Location.Y, Size.Y, GetParentHeight(), CY, Handle.Y, UpdatePosition, UpdateSize);
}

bool art_floating_autolayout::WidthDependsOnChildren()
{
    return H.DependsOnChildren();
}

bool art_floating_autolayout::HeightDependsOnChildren()
{
    return V.DependsOnChildren();
}

bool art_floating_autolayout::WidthDependsOnParent()
{
    return H.DependsOnParent();
}

bool art_floating_autolayout::HeightDependsOnParent()
{
    return V.DependsOnParent();
}

bool art_floating_autolayout::HasImpliedWidth()
{
    return H.HasImplied();
}

bool art_floating_autolayout::HasImpliedHeight()
{
    return V.HasImplied();
}

void art_floating_autolayout::SetImpliedWidth(double Value)
{
    H.SetImplied(Value);
}

void art_floating_autolayout::SetImpliedHeight(double Value)
{
    V.SetImplied(Value);
}

zel_string art_floating_autolayout::GetDebugString()
{
    return zel_string("art_floating_autolayout::GetDebugString()\n\tH: ") + H.GetDebugString() + "\n\tV: " +
           V.GetDebugString();
}

void art_floating_autolayout::WriteAttributes(reference_pointer<xbd_tag> Tag)
{
    H.WriteAttributes(Tag, "x", "w");
    V.WriteAttributes(Tag, "y", "h");
}

void art_floating_autolayout::ReadAttributes(reference_pointer<xbd_tag> Tag)
{
    point2d Handle = Object->GetHandle();
    H.ReadAttributes(Tag, "x", "w", Handle.X);
    V.ReadAttributes(Tag, "y", "h", Handle.Y);
}

void art_floating_autolayout::SetMode(int HorizontalMode, int VerticalMode)
{
    H.SetMode(HorizontalMode);
    V.SetMode(VerticalMode);
    if (Object.IsSet())
        Object->InvalidateLayout();
}

void art_floating_autolayout::SetAllPins(art_pin HorizontalLeft, art_pin HorizontalRight, art_pin VerticalLeft,
                                         art_pin VerticalRight)
{
    H.PinRight = HorizontalRight;
    H.SetPinLeft(HorizontalLeft);
    V.PinRight = VerticalRight;
    V.SetPinLeft(VerticalLeft);
    if (Object.IsSet())
        Object->InvalidateLayout();
}

// ---- Layout of an object ----

bool art_object::SettleExtent(bool Horizontal, double Extent)
{
    point2d Minimum = GetMinimumSize();
    double Low = Horizontal ? Minimum.X : Minimum.Y;
    Extent = Extent < Low ? Low : Extent;
    if (Extent == (Horizontal ? Size.X : Size.Y))
        return false;
    SetSizeInternal(Horizontal ? point2d(Extent, Size.Y) : point2d(Size.X, Extent), true);
    InvalidateChildrenDependingOnParent(Horizontal, !Horizontal);
    return true;
}

bool art_object::Layout()
{
    bool WidthFromChildren = WidthDependsOnChildren();
    point2d OldLocation = Location;
    point2d OldSize = Size;
    int Count = GetNumberOfChildren();

    for (int I = 0; I < Count; I++) {
        art_object *Child = Children->GetChild(I);
        if (Child->WidthDependsOnParent())
            continue;
        if (!Child->IsLayoutSettled())
            Child->Layout();
        if (Child->HeightDependsOnParent())
            Child->InvalidateLayout();
    }

    point2d NewLocation;
    double Extent = 0;
    if (!WidthFromChildren) {
        AutoLayout->ComputeHorizontal(NewLocation.X, Extent);
        SettleExtent(true, Extent);
        WidthSettled();
    } else {
        WidthSettled();
        AutoLayout->ComputeHorizontal(NewLocation.X, Extent);
        SettleExtent(true, Extent);
    }

    bool Redone = false;
    for (int I = 0; I < Count; I++) {
        art_object *Child = Children->GetChild(I);
        if (Child->HeightDependsOnParent() || Child->IsLayoutSettled())
            continue;
        Child->Layout();
        Redone = true;
    }
    if (Redone && WidthFromChildren)
        WidthSettled();

    AutoLayout->ComputeVertical(NewLocation.Y, Extent);
    SettleExtent(false, Extent);

    if (NewLocation != Location)
        SetLocationInternal(NewLocation, true);

    for (int I = 0; I < Count; I++) {
        art_object *Child = Children->GetChild(I);
        if (!Child->IsLayoutSettled())
            Child->Layout();
    }

    LayoutValid = true;
    if (Children.IsSet())
        Children->SetLayoutValid(true);
    return Location != OldLocation || Size != OldSize;
}

// A child whose extent hangs on this object's would make a cycle, so it is left out.
double art_object::GetChildrenWidth()
{
    art_bounds Union;
    for (int I = 0; I < GetNumberOfChildren(); I++) {
        art_object *Child = Children->GetChild(I);
        if (Child->GetStackMode() == StackModeNormal && !Child->WidthDependsOnParent())
            Union.Add(Child->GetDrawBounds(Child->GetObjectToParent()));
    }
    return Union.GetRectangle().Size.X;
}

double art_object::GetChildrenHeight()
{
    art_bounds Union;
    for (int I = 0; I < GetNumberOfChildren(); I++) {
        art_object *Child = Children->GetChild(I);
        if (Child->GetStackMode() == StackModeNormal && !Child->HeightDependsOnParent())
            Union.Add(Child->GetDrawBounds(Child->GetObjectToParent()));
    }
    return Union.GetRectangle().Size.Y;
}

rectangle art_object::GetChildrenExtent()
{
    art_bounds Union;
    for (int I = 0; I < GetNumberOfChildren(); I++) {
        art_object *Child = Children->GetChild(I);
        if (Child->GetStackMode() == StackModeNormal)
            Union.Add(Child->GetDrawBounds(Child->GetObjectToParent()));
    }
    return Union.GetRectangle();
}
