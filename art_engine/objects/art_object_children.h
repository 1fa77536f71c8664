#pragma once

#include "art_engine/objects/art_object.h"

// The stack of an object's children, first element lowest, and the state that routes the pointer
// among them. A DHO is the child that is the target of pointer routing at this level. The owner
// makes it with its first child and drops it with its last.
class art_object_children : public base_object
{
public:
    explicit art_object_children(reference_pointer<art_object> Owner);

    virtual void DeleteMarkedChildren();
    // The event comes in the owner's space; each child is handed it in its own space.
    virtual reference_pointer<art_object> HandlePointerEvent(reference_pointer<art_pointer_event> PointerEvent);
    // Each draws the visible children of one group of stack modes, lowest first, with Matrix
    // mapping the owner's space into Target's pixels: normal children, stencil children (all three
    // stencil modes) and post children.
    void DrawNormal(reference_pointer<bitmap_interface> Target, reference_pointer<bitmap_interface> Backdrop,
                    agg::trans_affine Matrix, reference_pointer<art_cache> Cache);
    void DrawStencilChildren(reference_pointer<bitmap_interface> Target, reference_pointer<bitmap_interface> Backdrop,
                             agg::trans_affine Matrix, reference_pointer<art_cache> Cache);
    void DrawPost(reference_pointer<bitmap_interface> Target, reference_pointer<bitmap_interface> Backdrop,
                  agg::trans_affine Matrix, reference_pointer<art_cache> Cache);
    virtual void ReadBitmaps(const reference_pointer<art_bitmap_manager> &Bitmaps);
    virtual void WriteBitmaps(const reference_pointer<art_bitmap_manager> &Bitmaps);

    reference_pointer<art_object> GetOwner() const { return Owner; }
    array<ownership_pointer<art_object>> &GetArray() { return Children; }
    int GetNumberOfElements() const { return Children.GetNumberOfElements(); }
    art_object *GetChild(int Index) { return Children[Index].Get(); }
    // The index of Child, or -1 when it is not here.
    int FindIndex(const art_object *Child) const;

    // Puts Child at Index and makes the owner its parent; nothing is told about layout.
    void Insert(int Index, ownership_pointer<art_object> Child);
    // Takes the child at Index out of the stack and out of the pointer routing.
    ownership_pointer<art_object> Take(int Index);
    bool MoveChild(reference_pointer<art_object> Child, int Delta);
    array_iterator<ownership_pointer<art_object>> GetIterator(reference_pointer<art_object> Start);
    reference_pointer<art_object> GetChildAt(const point2d &Point, double Margin, reference_pointer<art_object> Start);
    reference_pointer<art_object> GetChildByName(const zel_string &ChildName);
    // The first child, lowest first, for which Test(art_object *) holds; marked children are skipped.
    template <class Predicate> reference_pointer<art_object> FindChild(Predicate Test)
    {
        for (int I = 0; I < Children.GetNumberOfElements(); I++) {
            art_object *Child = Children[I].Get();
            if (!Child->GetMarkedForDeletion() && Test(Child))
                return reference_pointer<art_object>(Child);
        }
        return reference_pointer<art_object>();
    }
    // Stable: stencil modes first, then normal, then post.
    void SortByStack();
    bool SetMouseOverDHO(reference_pointer<art_object> NewDHO, reference_pointer<art_pointer_event> PointerEvent);
    reference_pointer<art_object> GetMouseFocusedDHO() const { return MouseFocusedDHO; }
    // Lets go of a held button's capture along the whole path below, without telling anyone: for
    // starting afresh after a failure.
    void ReleasePointerCapture();
    reference_pointer<art_object> GetMouseOverDHO() const { return MouseOverDHO; }
    void ReadChildren(reference_pointer<xbd_tag> ChildrenTag);
    reference_pointer<xbd_tag> WriteChildren(reference_pointer<xbd_tag> Tag);
    // Appends a copy of each of Other's children, in order.
    void Duplicate(const art_object_children &Other);

    // Whether any child has mode "stencil" or "+stencil", found by a walk from the last child to
    // the first. Redraw requests ask it at every level they climb, so the answer is kept until the
    // children or a child's stack mode change.
    bool HasStencilChild()
    {
        return StencilState == StencilUnknown ? FindStencilChild() : StencilState == StencilPresent;
    }
    void StackModesChanged() { StencilState = StencilUnknown; }
    bool IsLayoutValid() const { return LayoutValid; }
    void SetLayoutValid(bool Valid) { LayoutValid = Valid; }

private:
    // Hands the event to Child in Child's own space, and gives it back to the caller unchanged.
    reference_pointer<art_object> SendToChild(art_object *Child, reference_pointer<art_pointer_event> PointerEvent);
    void ForgetPointerTarget(const art_object *Child);
    // The walk behind HasStencilChild; keeps its answer.
    bool FindStencilChild();

    enum stencil_state : int8_t
    {
        StencilUnknown,
        StencilPresent,
        StencilAbsent
    };

    reference_pointer<art_object> Owner;
    array<ownership_pointer<art_object>> Children;
    stencil_state StencilState;
    reference_pointer<art_object> MouseFocusedDHO;
    reference_pointer<art_object> MouseOverDHO;
    bool LayoutValid;
};
