#include "art_engine/objects/art_object_children.h"

#include "art_engine/objects/art_cache.h"
#include "art_engine/objects/art_object_factory.h"
#include "art_engine/objects/art_object_frame.h"
#include "xbd/xbd.h"

// ---- The children of an object, as the object sees them ----

reference_pointer<art_object_children> art_object::GetChildrenObject() const
{
    return reference_pointer<art_object_children>(Children.Get());
}

int art_object::GetNumberOfChildren() const
{
    return Children.IsSet() ? Children->GetNumberOfElements() : 0;
}

bool art_object::HasChildren() const
{
    return GetNumberOfChildren() > 0;
}

array_iterator<ownership_pointer<art_object>> art_object::GetChildren()
{
    if (Children.IsSet())
        return Children->GetIterator(reference_pointer<art_object>());
    // An iterator over an array that has died counts nothing and is done at once.
    ownership_pointer<array<ownership_pointer<art_object>>> Empty(new array<ownership_pointer<art_object>>(0));
    return array_iterator<ownership_pointer<art_object>>(*Empty);
}

void art_object::DropChildrenIfEmpty()
{
    if (Children.IsSet() && Children->GetNumberOfElements() == 0)
        Children.Reset();
}

reference_pointer<art_object> art_object::AddChild(ownership_pointer<art_object> Child)
{
    TOVAS_ASSERT(CanHaveChildren(), this);
    if (!Children.IsSet())
        Children.Reset(new art_object_children(this));
    art_object *Added = Child.Get();
    Children->Insert(Children->GetNumberOfElements(), Child);
    TOVAS_ASSERT(HasChildren(), this);
    if (SizeDependsOnChildren())
        InvalidateLayout();
    if (!Added->IsLayoutSettled())
        ChildrenLayoutChanged();
    return reference_pointer<art_object>(Added);
}

reference_pointer<art_object> art_object::AddChildAfter(reference_pointer<art_object> After,
                                                        ownership_pointer<art_object> Child)
{
    TOVAS_ASSERT(CanHaveChildren(), this);
    if (!Children.IsSet())
        Children.Reset(new art_object_children(this));
    int AfterIndex = After.IsSet() ? Children->FindIndex(After.Get()) : -1;
    TOVAS_ASSERT(!After.IsSet() || AfterIndex>=0, this);
    art_object *Added = Child.Get();
    Children->Insert(AfterIndex + 1, Child);
    TOVAS_ASSERT(HasChildren(), this);
    if (SizeDependsOnChildren())
        InvalidateLayout();
    if (!Added->IsLayoutSettled())
        ChildrenLayoutChanged();
    RequestRedraw();
    return reference_pointer<art_object>(Added);
}

ownership_pointer<art_object> art_object::RemoveChild(reference_pointer<art_object> Child)
{
    Child->RequestRedraw();
    int Index = Children.IsSet() ? Children->FindIndex(Child.Get()) : -1;
    TOVAS_ASSERT(Index>=0, this);
    ownership_pointer<art_object> Ret = Children->Take(Index);
    Ret->Parent.Clear();
    TOVAS_ASSERT(!Ret->GetParent().IsSet(), this);
    // The texts of these reports keep the names that the pointers' accessors have always had in them.
    if (Ret.Get() != Child.Get())
        TovasDebugAssert("Ret.Access()==Child.Access()", __FILE__, __LINE__, this);
    DropChildrenIfEmpty();
    return Ret;
}

bool art_object::MoveChild(reference_pointer<art_object> Child, int Delta)
{
    if (!Children.IsSet())
        return false;
    return Children->MoveChild(Child, Delta);
}

void art_object::DeleteMarkedChildren()
{
    if (!Children.IsSet() || !MarkedBelow)
        return;
    MarkedBelow = false;
    Children->DeleteMarkedChildren();
    DropChildrenIfEmpty();
}

reference_pointer<art_object> art_object::GetChildAt(const point2d &Point, double Margin,
                                                     reference_pointer<art_object> Start)
{
    if (!Children.IsSet())
        return reference_pointer<art_object>();
    return Children->GetChildAt(Point, Margin, Start);
}

reference_pointer<art_object> art_object::GetChildByName(const zel_string &ChildName)
{
    if (!Children.IsSet())
        return reference_pointer<art_object>();
    return Children->GetChildByName(ChildName);
}

// Left and top edges are inside, right and bottom edges are not. A negative extent runs left or up
// from the origin.
static bool IsInFrame(double X, double Y, point2d Size, double Margin)
{
    double Left = Size.X < 0 ? Size.X : 0;
    double Top = Size.Y < 0 ? Size.Y : 0;
    double Width = Size.X < 0 ? -Size.X : Size.X;
    double Height = Size.Y < 0 ? -Size.Y : Size.Y;
    Left -= Margin;
    Top -= Margin;
    Width += 2 * Margin;
    Height += 2 * Margin;
    return X >= Left && X < Left + Width && Y >= Top && Y < Top + Height;
}

// The point rides in the matrix as a translation, so the steps of parent to object apply to it in
// their own order: from the location, turned back, unscaled, then out to the pivot.
static point2d ToObjectSpace(art_object &Object, const point2d &Point)
{
    agg::trans_affine Matrix(1, 0, 0, 1, Point.X, Point.Y);
    Object.ApplyParentToObject(Matrix);
    return point2d(Matrix.tx, Matrix.ty);
}

bool art_object::IsPointInside(const point2d &Point)
{
    point2d Local = ToObjectSpace(*this, Point);
    if (IsLayer())
        return GetChildAt(Local, 0).IsSet();
    return IsInFrame(Local.X, Local.Y, Size, 0);
}

bool art_object::IsPointNear(const point2d &Point, double Margin)
{
    point2d Local = ToObjectSpace(*this, Point);
    if (IsLayer())
        return GetChildAt(Local, Margin).IsSet();
    return IsInFrame(Local.X, Local.Y, Size, Margin);
}

reference_pointer<art_object> art_object::HandlePointerEvent(reference_pointer<art_pointer_event> PointerEvent)
{
    TOVAS_ASSERT(PointerEvent.IsSet(), this);
    if (!Children.IsSet())
        return reference_pointer<art_object>();
    return Children->HandlePointerEvent(PointerEvent);
}

// ---- art_object_children ----

art_object_children::art_object_children(reference_pointer<art_object> Owner)
    : Owner(Owner), Children(1), StencilState(StencilUnknown), LayoutValid(true)
{
}

bool art_object_children::FindStencilChild()
{
    StencilState = StencilAbsent;
    for (int I = Children.GetNumberOfElements() - 1; I >= 0; I--) {
        art_stack_mode Mode = Children[I]->GetStackMode();
        if (Mode == StackModePlusStencil || Mode == StackModeStencil) {
            StencilState = StencilPresent;
            break;
        }
    }
    return StencilState == StencilPresent;
}

int art_object_children::FindIndex(const art_object *Child) const
{
    for (int I = 0; I < Children.GetNumberOfElements(); I++)
        if (Children[I].Get() == Child)
            return I;
    return -1;
}

void art_object_children::Insert(int Index, ownership_pointer<art_object> Child)
{
    art_object *Inserted = Child.Get();
    if (Index == Children.GetNumberOfElements())
        Children.Add(Child);
    else
        Children.Insert(Index, Child);
    StackModesChanged();
    Inserted->SetParent(Owner);
    if (Inserted->MarkedForDeletion || Inserted->MarkedBelow)
        Owner->NoteMarkBelow();
}

ownership_pointer<art_object> art_object_children::Take(int Index)
{
    ownership_pointer<art_object> Taken = Children[Index];
    Children.Remove(Index);
    StackModesChanged();
    ForgetPointerTarget(Taken.Get());
    return Taken;
}

void art_object_children::ForgetPointerTarget(const art_object *Child)
{
    if (MouseFocusedDHO.Get() == Child)
        MouseFocusedDHO.Clear();
    if (MouseOverDHO.Get() == Child)
        MouseOverDHO.Clear();
}

bool art_object_children::MoveChild(reference_pointer<art_object> Child, int Delta)
{
    int FromIndex = FindIndex(Child.Get());
    TOVAS_ASSERT(FromIndex>=0, this);
    int Count = Children.GetNumberOfElements();
    int ToIndex = FromIndex + Delta;
    if (ToIndex < 0 || Count == 0)
        ToIndex = 0;
    else if (ToIndex > Count - 1)
        ToIndex = Count - 1;
    if (ToIndex == FromIndex)
        return false;
    Children.Move(FromIndex, ToIndex);
    return true;
}

array_iterator<ownership_pointer<art_object>> art_object_children::GetIterator(reference_pointer<art_object> Start)
{
    array_iterator<ownership_pointer<art_object>> Iterator(Children);
    if (Start.IsSet()) {
        int Index = FindIndex(Start.Get());
        TOVAS_ASSERT(Index>=0, this);
        for (int I = 0; I < Index; I++)
            Iterator.Next();
    }
    return Iterator;
}

reference_pointer<art_object> art_object_children::GetChildAt(const point2d &Point, double Margin,
                                                              reference_pointer<art_object> Start)
{
    int First = Start.IsSet() ? FindIndex(Start.Get()) - 1 : Children.GetNumberOfElements() - 1;
    double FrameMargin = Margin <= 0 ? 0 : Margin;
    for (int I = First; I >= 0; I--) {
        art_object *Child = Children[I].Get();
        // Most children miss: asking the geometry first spares the visibility question for them.
        // A plain object is no layer, and its frame and visibility are its fields: it is tested
        // here without a virtual call.
        bool Hit;
        if (Child->IsPlainObject()) {
            point2d Local = Child->ParentPointToObject(Point);
            Hit = IsInFrame(Local.X, Local.Y, Child->Size, FrameMargin) && Child->Visible &&
                  !Child->MarkedForDeletion;
        } else {
            Hit = (Margin <= 0 ? Child->IsPointInside(Point) : Child->IsPointNear(Point, Margin)) &&
                  Child->IsVisible();
        }
        if (Hit)
            return reference_pointer<art_object>(Child);
    }
    return reference_pointer<art_object>();
}

reference_pointer<art_object> art_object_children::GetChildByName(const zel_string &ChildName)
{
    return FindChild([&ChildName](art_object *Child) { return Child->GetName() == ChildName; });
}

void art_object_children::SortByStack()
{
    int Count = Children.GetNumberOfElements();
    array<ownership_pointer<art_object>> Sorted(Count);
    // Three stable passes: stencil modes, then normal, then post.
    for (int Pass = 0; Pass < 3; Pass++)
        for (int I = 0; I < Count; I++) {
            if (!Children[I].IsSet())
                continue;
            art_stack_mode Mode = Children[I]->GetStackMode();
            int Group = IsStencilStackMode(Mode) ? 0 : (Mode == StackModePost ? 2 : 1);
            if (Group == Pass)
                Sorted.Add(Children[I]);
        }
    Children = Sorted;
}

void art_object_children::Duplicate(const art_object_children &Other)
{
    for (int I = 0; I < Other.Children.GetNumberOfElements(); I++)
        Insert(Children.GetNumberOfElements(), Other.Children[I]->Duplicate());
}

void art_object_children::DeleteMarkedChildren()
{
    int Marked = 0;
    for (int I = 0; I < Children.GetNumberOfElements(); I++) {
        art_object *Child = Children[I].Get();
        if (!Child->GetMarkedForDeletion()) {
            Child->DeleteMarkedChildren();
            continue;
        }
        ForgetPointerTarget(Child);
        Owner->RequestRedraw();
        Marked++;
    }
    if (Marked == 0)
        return;
    int NewNumElements = Children.GetNumberOfElements() - Marked;
    array<ownership_pointer<art_object>> Survivors(NewNumElements);
    for (int I = 0; I < Children.GetNumberOfElements(); I++)
        if (!Children[I]->GetMarkedForDeletion())
            Survivors.Add(Children[I]);
    // The marked children die here, with the places of the old array.
    Children = Survivors;
    StackModesChanged();
    TOVAS_ASSERT(Children.GetNumberOfElements()==NewNumElements, this);
    for (array_iterator<ownership_pointer<art_object>> CI(Children); CI.NotDone(); CI.Next()) {
        if (!CI.Current().IsSet())
            TovasDebugAssert("CI.Access().IsSet()", __FILE__, __LINE__, this);
        if (CI.Current()->GetMarkedForDeletion())
            TovasDebugAssert("!CI.Access()->GetMarkedForDeletion()", __FILE__, __LINE__, this);
    }
}

namespace {

bool IsNormalStackMode(int Mode)
{
    return Mode == StackModeNormal;
}

bool IsPostStackMode(int Mode)
{
    return Mode == StackModePost;
}

void DrawChildrenOfGroup(array<ownership_pointer<art_object>> &Children, bool (*InGroup)(int Mode),
                         reference_pointer<bitmap_interface> Target, reference_pointer<bitmap_interface> Backdrop,
                         const agg::trans_affine &Matrix, reference_pointer<art_cache> Cache)
{
    for (int I = 0; I < Children.GetNumberOfElements(); I++) {
        art_object *Child = Children[I].Get();
        if (InGroup(Child->GetStackMode()) && Child->IsVisible())
            Child->Draw(Target, Backdrop, Matrix, Cache);
    }
}

} // namespace

void art_object_children::DrawNormal(reference_pointer<bitmap_interface> Target,
                                     reference_pointer<bitmap_interface> Backdrop, agg::trans_affine Matrix,
                                     reference_pointer<art_cache> Cache)
{
    DrawChildrenOfGroup(Children, IsNormalStackMode, Target, Backdrop, Matrix, Cache);
}

void art_object_children::DrawStencilChildren(reference_pointer<bitmap_interface> Target,
                                              reference_pointer<bitmap_interface> Backdrop, agg::trans_affine Matrix,
                                              reference_pointer<art_cache> Cache)
{
    DrawChildrenOfGroup(Children, IsStencilStackMode, Target, Backdrop, Matrix, Cache);
}

void art_object_children::DrawPost(reference_pointer<bitmap_interface> Target,
                                   reference_pointer<bitmap_interface> Backdrop, agg::trans_affine Matrix,
                                   reference_pointer<art_cache> Cache)
{
    DrawChildrenOfGroup(Children, IsPostStackMode, Target, Backdrop, Matrix, Cache);
}

void art_object_children::ReadBitmaps(const reference_pointer<art_bitmap_manager> &Bitmaps)
{
    for (int I = 0; I < Children.GetNumberOfElements(); I++)
        Children[I]->ReadBitmaps(Bitmaps);
}

void art_object_children::WriteBitmaps(const reference_pointer<art_bitmap_manager> &Bitmaps)
{
    for (int I = 0; I < Children.GetNumberOfElements(); I++)
        Children[I]->WriteBitmaps(Bitmaps);
}

void art_object_children::ReadChildren(reference_pointer<xbd_tag> ChildrenTag)
{
    array<ownership_pointer<xbd_tag>> &Tags = ChildrenTag->GetChildren();
    int Count = Tags.GetNumberOfElements();
    if (Count > Children.GetReservedSize())
        Children.Reserve(Count);
    reference_pointer<art_object_factory> Factory = art_object_factory::GetFactory();
    ownership_pointer<art_object> B;
    for (int I = 0; I < Count; I++) {
        B = Factory->Make(reference_pointer<xbd_tag>(Tags[I].Get()));
        TOVAS_ASSERT(B.IsSet(), this);
        art_object *Made = B.Get();
        Made->SetParent(Owner);
        Children.Add(B);
    }
    StackModesChanged();
    TOVAS_ASSERT(!B.IsSet(), this);
}

reference_pointer<xbd_tag> art_object_children::WriteChildren(reference_pointer<xbd_tag> Tag)
{
    reference_pointer<xbd_file> File = Tag->GetFile();
    ownership_pointer<xbd_tag> ChildrenTag = Tag->NewTag("children");
    for (int I = 0; I < Children.GetNumberOfElements(); I++)
        ChildrenTag->AddChildTag(Children[I]->CreateTag(File));
    reference_pointer<xbd_tag> Written(ChildrenTag.Get());
    Tag->AddChildTag(ChildrenTag);
    return Written;
}

// ---- Pointer routing ----

reference_pointer<art_object> art_object_children::SendToChild(art_object *Child,
                                                               reference_pointer<art_pointer_event> PointerEvent)
{
    point2d SavedLocation = PointerEvent->GetLocation();
    point2d SavedLastLocation = PointerEvent->GetLastLocation();
    agg::trans_affine ToChild;
    Child->ApplyParentToObject(ToChild);
    point2d Location = SavedLocation;
    point2d LastLocation = SavedLastLocation;
    ToChild.transform(&Location.X, &Location.Y);
    ToChild.transform(&LastLocation.X, &LastLocation.Y);
    PointerEvent->SetLocation(Location);
    PointerEvent->SetLastLocation(LastLocation);
    reference_pointer<art_object> Result = Child->HandlePointerEvent(PointerEvent);
    PointerEvent->SetLocation(SavedLocation);
    PointerEvent->SetLastLocation(SavedLastLocation);
    return Result;
}

bool art_object_children::SetMouseOverDHO(reference_pointer<art_object> NewDHO,
                                          reference_pointer<art_pointer_event> PointerEvent)
{
    if (MouseFocusedDHO.IsSet() && MouseFocusedDHO->IsVisible()) {
        TOVAS_ASSERT(MouseFocusedDHO==MouseOverDHO, this);
        return false;
    }
    if (NewDHO == MouseOverDHO)
        return false;
    if (MouseOverDHO.IsSet()) {
        art_pointer_event MovedOut(art_pointer_event::PointerMovedOut, PointerEvent->GetLocation(),
                                   PointerEvent->GetLastLocation(), PointerEvent->GetInputSet());
        SendToChild(MouseOverDHO.Get(), &MovedOut);
    }
    if (NewDHO.IsSet()) {
        art_pointer_event MovedIn(art_pointer_event::PointerMovedIn, PointerEvent->GetLocation(),
                                  PointerEvent->GetLastLocation(), PointerEvent->GetInputSet());
        SendToChild(NewDHO.Get(), &MovedIn);
    }
    MouseOverDHO = NewDHO;
    return true;
}

void art_object_children::ReleasePointerCapture()
{
    if (MouseFocusedDHO.IsSet())
        MouseFocusedDHO->ReleasePointerCapture();
    MouseFocusedDHO.Clear();
}

void art_object::ReleasePointerCapture()
{
    if (Children.IsSet())
        Children->ReleasePointerCapture();
}

reference_pointer<art_object> art_object_children::HandlePointerEvent(reference_pointer<art_pointer_event> PointerEvent)
{
    if (MouseFocusedDHO.IsSet() && MouseFocusedDHO->GetMarkedForDeletion())
        MouseFocusedDHO.Clear();
    if (MouseOverDHO.IsSet() && MouseOverDHO->GetMarkedForDeletion())
        MouseOverDHO.Clear();

    reference_pointer<art_object> Target = MouseFocusedDHO.IsSet()
                                               ? MouseFocusedDHO
                                               : GetChildAt(PointerEvent->GetLocation(), 0, reference_pointer<art_object>());
    if (PointerEvent->GetPointerEventType() == art_pointer_event::PointerMovedOut)
        Target.Clear();
    bool OverChanged = SetMouseOverDHO(Target, PointerEvent);

    if (PointerEvent->IsButtonEvent()) {
        if (PointerEvent->GetButtonStatusAtEvent() != 0)
            MouseFocusedDHO = Target;
        else
            MouseFocusedDHO.Clear();
        if (Target.IsSet()) {
            reference_pointer<art_object> Taker = SendToChild(Target.Get(), PointerEvent);
            if (Taker.IsSet())
                return Taker;
        }
        return Owner;
    }
    if (PointerEvent->IsMoveEvent()) {
        if (!OverChanged && Target.IsSet()) {
            TOVAS_ASSERT(PointerEvent->GetPointerEventType()==art_pointer_event::PointerMovedWithin, this);
            SendToChild(Target.Get(), PointerEvent);
        }
        return Owner;
    }
    return reference_pointer<art_object>();
}
