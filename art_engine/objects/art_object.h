#pragma once

#include <cstdint>
#include <typeinfo>

#include <agg_color_rgba.h>
#include <agg_trans_affine.h>

#include "art_engine/geometry/art_path.h"
#include "art_engine/geometry/art_rasterizer.h"
#include "art_engine/objects/art_events.h"
#include "art_engine/pixels/art_stack_mode.h"
#include "xbd/xbd.h"
#include "zel_basics/array.h"
#include "zel_basics/array_iterator.h"
#include "zel_basics/lwpointers.h"
#include "zel_basics/point2d.h"
#include "zel_basics/rectangle.h"
#include "zel_basics/zel_string.h"

class bitmap_interface;
class art_bitmap;
class art_cache;
class art_object_cached_bitmap;
class art_key_event;
class art_top_object;
class art_shape;
class art_bitmap_manager;
class art_autolayout;
class art_object_children;

// Where the coverage of stencil shapes is gathered for scan conversion.
typedef art_rasterizer art_coverage;

// The node of every tree: documents, the viewer and the editor's interface. Object space has its
// origin at the top-left corner and the size as extent; object to parent is
//   p_parent = Location + R(Angle) * (Scale * (p_object - Size * Handle)).
class art_object : public base_object
{
public:
    art_object();
    explicit art_object(reference_pointer<xbd_tag> Tag);
    art_object(const art_object &Other);
    ~art_object() override;

    zel_string GetName() override;

    virtual void SetSizeInternal(point2d NewSize, bool FromLayout);
    virtual void SetLocationInternal(point2d NewLocation, bool FromLayout);
    virtual void SetName(const zel_string &NewName);
    virtual void ChildrenLayoutChanged();
    virtual bool Layout();
    virtual void ChildSizeChanged();
    virtual void InvalidateLayout();
    virtual void WidthSettled();
    virtual bool SizeDependsOnChildren();
    virtual bool SizeDependsOnParent();
    virtual bool WidthDependsOnChildren();
    virtual bool HeightDependsOnChildren();
    virtual bool WidthDependsOnParent();
    virtual bool HeightDependsOnParent();
    virtual void SetShape(ownership_pointer<art_object> Shape);
    virtual reference_pointer<art_shape> GetShape();
    // Const, so that it adds a slot of its own beside base_object's untyped Duplicate.
    virtual ownership_pointer<art_object> Duplicate() const;
    virtual rectangle GetChildrenExtent();
    virtual double GetChildrenWidth();
    virtual double GetChildrenHeight();
    virtual int32_t GetRedrawCount();
    virtual void ParentChanged();
    virtual point2d GetSize();
    virtual point2d GetLocation();
    virtual void SetSize(point2d NewSize);
    virtual void SetLocation(point2d NewLocation);
    virtual void SetHandle(point2d NewHandle);
    virtual point2d GetHandleOffset();
    virtual point2d GetHandle();
    virtual point2d GetMinimumSize();
    virtual void SetAngle(double NewAngle);
    virtual void SetStackMode(art_stack_mode NewMode);
    virtual void SetStackModeInternal(art_stack_mode NewMode);
    virtual reference_pointer<art_top_object> GetTopObject();
    virtual ownership_pointer<art_object> RemoveChild(reference_pointer<art_object> Child);
    // Matrix maps this object's parent space into Target's pixels.
    virtual void Draw(reference_pointer<bitmap_interface> Target, reference_pointer<bitmap_interface> Backdrop,
                      agg::trans_affine Matrix, reference_pointer<art_cache> Cache);
    // The composite of this object for Window, in target pixels; Matrix maps this object's space
    // into target pixels. With AllowExpansion the children may widen the window for their effects:
    // the bitmap is then larger, and PreExpandLocOffset says how far its origin lies left and up of
    // Window's.
    virtual ownership_pointer<art_bitmap> RenderToBitmap(int_rectangle Window, agg::trans_affine Matrix,
                                                         reference_pointer<art_cache> Cache,
                                                         point2d &PreExpandLocOffset, bool AllowExpansion);
    virtual void DrawContent(reference_pointer<bitmap_interface> Target, reference_pointer<bitmap_interface> Backdrop,
                             agg::trans_affine Matrix, reference_pointer<art_cache> Cache);
    // Point in this object's space.
    virtual bool HasStencilCoverage(point2d Point);
    virtual void GetCoverage(art_coverage &Coverage, const agg::trans_affine &Matrix);
    // Rect in this object's space, which is the space of its children's frames.
    virtual void RequestRedrawRect(const rectangle &Rect);
    virtual void RequestRedraw();
    // Matrix becomes: Matrix, then parent to object. Composes down the tree from any outer space.
    virtual void ApplyParentToObject(agg::trans_affine &Matrix);
    // Matrix becomes: object to parent, then Matrix. Composes down the tree towards any outer space.
    virtual void ApplyObjectToParent(agg::trans_affine &Matrix);
    virtual agg::trans_affine GetObjectToParent();
    virtual bool IsPointInside(const point2d &Point);
    virtual bool IsPointNear(const point2d &Point, double Margin);
    virtual point2d ParentToObjectVector(point2d Vector);
    virtual void DeleteMarkedChildren();
    // The event comes in this object's own space; see art_object_children for the routing.
    virtual reference_pointer<art_object> HandlePointerEvent(reference_pointer<art_pointer_event> PointerEvent);
    virtual reference_pointer<art_object> HandleKeyEvent(reference_pointer<art_key_event> KeyEvent);
    virtual bool AcceptsTextInput();
    // A 2 by 2 matrix: the translation stays 0.
    virtual agg::trans_affine GetShapeMatrix();
    virtual void SetShapeMatrix(const agg::trans_affine &Matrix);
    virtual reference_pointer<art_object> FindEditTarget();
    virtual bool IsEditTarget();
    virtual bool CanHaveChildren();
    virtual double GetNaturalAspectRatio();
    virtual void GetHandleTip(zel_string &Title, zel_string &Text);
    virtual int GetSpecialControlCount();
    virtual void ReservedNoOp();
    virtual agg::rgba GetHandleColor();
    virtual point2d GetSpecialControl(int Index);
    virtual void SetSpecialControl(int Index, point2d Point);
    virtual bool IsLayer();
    virtual bool HasOwnFrame();
    virtual bool IsFramed();
    virtual double GetHitMargin();
    virtual double GetHitMarginX();
    virtual double GetHitMarginY();
    virtual bool HasGradientControls();
    // Rect in the space that Matrix maps this object's parent space into.
    virtual void ExpandRedrawRect(rectangle &Rect, const agg::trans_affine &Matrix);
    virtual void ExpandDrawWindow(rectangle &Window, const agg::trans_affine &Matrix);
    virtual void PrepareForSave();
    virtual void WriteAttributes(reference_pointer<xbd_tag> Tag);
    virtual zel_string GetTagName();
    virtual void UpdateBitmaps();
    virtual ownership_pointer<xbd_tag> CreateTag(reference_pointer<xbd_file> File);
    virtual void ReadBitmaps(const reference_pointer<art_bitmap_manager> &Bitmaps);
    virtual void WriteBitmaps(const reference_pointer<art_bitmap_manager> &Bitmaps);
    virtual bool IsLayerObject();
    virtual bool IsTextObject();
    virtual bool IsFillEffect();
    virtual bool IsFilterEffect();
    virtual bool ReservedQuery();
    virtual bool CanBeSelected();
    virtual bool CanResizeContent();
    virtual void SetFrame(point2d Offset, point2d NewSize);
    virtual void FitToChildren();
    virtual zel_string GetTypeLabel();
    virtual zel_string GetDebugName();
    virtual void SetVisible(bool NewVisible);
    virtual bool IsVisible();
    virtual double GetNextFrameTime(double Now);
    virtual bool IsAnimated();
    virtual double GetAnimationLength();
    virtual double GetCurrentTime();
    // The outline that fills, outlines and shadows follow, in this object's units, flattened for
    // the scales. The first stencil child's, carried into this object's space; an object without
    // one gives its own rectangle.
    virtual void GetShapePath(art_path &Path, double ScaleX, double ScaleY);
    // What an art_draw_parents_custom_fill child draws in its place among the effects, with the
    // arguments of its Draw: Matrix maps this object's space into Target's pixels. Nothing here.
    virtual void DrawCustomFill(reference_pointer<bitmap_interface> Target, reference_pointer<bitmap_interface> Backdrop,
                                agg::trans_affine Matrix, reference_pointer<art_cache> Cache);
    // The colour that the colour picker shows and sets for this object: straight, 0 to 1. A plain
    // object has none of its own: it reads as opaque black and ignores a new one.
    virtual agg::rgba GetColor();
    virtual void SetColor(const agg::rgba &Color);

    reference_pointer<art_object> GetParent() const { return Parent; }
    array_iterator<ownership_pointer<art_object>> GetChildren();
    reference_pointer<art_object_children> GetChildrenObject() const;
    int GetNumberOfChildren() const;
    bool HasChildren() const;
    reference_pointer<art_object> AddChild(ownership_pointer<art_object> Child);
    reference_pointer<art_object> AddChildAfter(reference_pointer<art_object> After, ownership_pointer<art_object> Child);
    bool MoveChild(reference_pointer<art_object> Child, int Delta);
    reference_pointer<art_object> GetChildAt(const point2d &Point, double Margin,
                                             reference_pointer<art_object> Start = reference_pointer<art_object>());
    reference_pointer<art_object> GetChildByName(const zel_string &ChildName);
    bool GetMarkedForDeletion() const { return MarkedForDeletion; }
    // The object goes at the next DeleteMarkedChildren of an object above it.
    void MarkForDeletion();
    void MarkChildrenForDeletion();
    // Drops the capture that a held button set along the path below this object.
    void ReleasePointerCapture();
    bool IsStencilled();

    point2d GetScale() const { return Scale; }
    void SetScale(point2d NewScale);
    double GetAngle() const { return Angle; }
    double GetOpacity() const { return Opacity; }
    void SetOpacity(double NewOpacity);
    art_stack_mode GetStackMode() const { return StackMode; }
    double GetAspectRatio() const { return AspectRatio; }
    bool HasAspectRatio() const { return HasAspectRatioField; }
    int32_t GetLockMode() const { return LockMode; }
    void SetLockMode(int32_t NewLockMode);
    bool GetDropInEnabled() const { return DropInEnabled; }
    void SetDropInEnabled(bool Enabled) { DropInEnabled = Enabled; }
    bool GetDroppedIn() const { return DroppedIn; }
    void SetDroppedIn(bool NewDroppedIn) { DroppedIn = NewDroppedIn; }
    reference_pointer<art_autolayout> GetLayout() const;
    bool IsLayoutValid() const { return LayoutValid; }
    // Settled: this object's layout and its children's are up to date.
    bool IsLayoutSettled() const;

    // "normal", "stencil", "post", "+stencil" or "-stencil".
    static zel_string GetStackModeText(art_stack_mode Mode);

    // The box of the object's frame in parent space, rounded outward to whole units.
    rectangle GetParentBounds();
    // Matrix maps this object's space outward; the result is everything the object draws.
    rectangle GetDrawBounds(const agg::trans_affine &Matrix);

protected:
    // Nothing for a normal object: that is the default of the attribute.
    void WriteStackMode(reference_pointer<xbd_tag> Tag);
    void SetParent(reference_pointer<art_object> NewParent);
    void ComputeAspectRatio();
    void TellLayoutTheFrame();
    void InvalidateChildrenDependingOnParent(bool Width, bool Height);
    // Tells this object and every one above it that a deletion waits below.
    void NoteMarkBelow();
    // The children object sets the parent of every child it takes in.
    friend class art_object_children;

    // The fields that layout, redraw requests and hit tests read for every object come first, so
    // that a walk over a large tree touches few cache lines of each object.
    bool Visible;
    bool MarkedForDeletion;
    // Some object below this one is marked for deletion: the deletion walk goes down here.
    bool MarkedBelow;
    bool LayoutValid;
    art_stack_mode StackMode;
    point2d Location;
    point2d Size;
    point2d Handle;
    double Angle;
    point2d Scale;
    reference_pointer<art_object> Parent;
    int32_t RedrawCount;
    ownership_pointer<art_autolayout> AutoLayout;
    ownership_pointer<art_object_children> Children;
    zel_string Name;
    // The cosine and sine of RotationAngle, kept so that frames turn without computing them anew.
    double RotationAngle;
    double RotationCos;
    double RotationSin;
    double AspectRatio;
    bool HasAspectRatioField;
    int32_t LockMode;
    bool DroppedIn;
    bool DropInEnabled;
    double Opacity;

private:
    void ReadAttributes(reference_pointer<xbd_tag> Tag);
    // From here to ParentPointToObject: inline, in art_object_frame.h.
    void UpdateRotation();
    agg::trans_affine ComputeObjectToParent();
    // The box of Box, given in this object's space, in parent space: TransformBox under
    // ComputeObjectToParent.
    rectangle BoxToParent(const rectangle &Box);
    // Kept out of line: it is the rare road of BoxToParent, and inlined it would crowd the hot one.
    __attribute__((noinline)) rectangle TransformedBoxToParent(const rectangle &Box);
    void ComputeParentToObject(agg::trans_affine &Matrix);
    // Point, in parent space, in this object's space by the steps of ComputeParentToObject.
    point2d ParentPointToObject(const point2d &Point);
    // A plain art_object, not a subclass: every virtual operation is then this class's own, so
    // the walks that run for every object of a tree read the fields those operations answer from.
    // Type information compares by address; were two copies of it ever to differ, the walks would
    // only take the slower road through the virtual calls.
    bool IsPlainObject() const { return &typeid(*this) == &typeid(art_object); }
    // The parent's RequestRedrawRect with this object's box, when there is a parent.
    void RequestRedrawRectOfParent();
    // A cached picture that passed its validity test, moved by WholeShift, for ClippingWindow: the
    // entry itself when it covers the window, a grown one in its place, or unset when growing does
    // not pay. WholeShift becomes that of the entry returned.
    reference_pointer<art_object_cached_bitmap> ReuseCachedBitmap(reference_pointer<art_object_cached_bitmap> Entry,
                                                                  int_point2d &WholeShift,
                                                                  const int_rectangle &ClippingWindow,
                                                                  const agg::trans_affine &Matrix,
                                                                  reference_pointer<art_cache> Cache,
                                                                  int_point2d TargetSize);
    // Gives one axis the layout's extent, raised to the minimum; true when the size changed.
    bool SettleExtent(bool Horizontal, double Extent);
    void DropChildrenIfEmpty();
};
