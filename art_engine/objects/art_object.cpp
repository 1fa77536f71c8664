#include "art_engine/objects/art_object.h"

#include <cmath>

#include "art_engine/geometry/art_attribute_text.h"
#include "art_engine/geometry/art_bounds.h"
#include "art_engine/objects/art_layout.h"
#include "art_engine/objects/art_object_children.h"
#include "art_engine/objects/art_object_factory.h"
#include "art_engine/objects/art_object_frame.h"
#include "art_engine/objects/art_shape.h"
#include "xbd/xbd.h"

// Below this, a change of size or location is noise of the arithmetic and not worth a redraw.
static const double FrameTolerance = 1e-09;

static bool DiffersBeyondTolerance(point2d A, point2d B)
{
    return std::fabs(A.X - B.X) > FrameTolerance || std::fabs(A.Y - B.Y) > FrameTolerance;
}

art_object::art_object()
    : Visible(true), MarkedForDeletion(false), MarkedBelow(false), LayoutValid(false), StackMode(StackModeNormal),
      Location(0, 0),
      Size(50, 50), Handle(0.5, 0.5), Angle(0), Scale(1, 1), RedrawCount(0), RotationAngle(0), RotationCos(1),
      RotationSin(0), AspectRatio(1), HasAspectRatioField(false), LockMode(0), DroppedIn(false), DropInEnabled(false),
      Opacity(1)
{
    AutoLayout.Reset(new art_floating_autolayout(this));
}

art_object::art_object(reference_pointer<xbd_tag> Tag) : art_object()
{
    ReadAttributes(Tag);
}

art_object::art_object(const art_object &Other)
    : base_object(Other), Visible(true), MarkedForDeletion(false), MarkedBelow(false), LayoutValid(false),
      StackMode(Other.StackMode), Location(Other.Location), Size(Other.Size), Handle(Other.Handle), Angle(Other.Angle),
      Scale(Other.Scale),
      RedrawCount(0), AutoLayout(Other.AutoLayout->Duplicate()), Name(Other.Name), RotationAngle(Other.RotationAngle),
      RotationCos(Other.RotationCos), RotationSin(Other.RotationSin), AspectRatio(Other.AspectRatio),
      HasAspectRatioField(Other.HasAspectRatioField), LockMode(Other.LockMode), DroppedIn(Other.DroppedIn),
      DropInEnabled(Other.DropInEnabled), Opacity(Other.Opacity)
{
    AutoLayout->SetObject(this);
    if (Other.Children.IsSet() && Other.Children->GetNumberOfElements() > 0) {
        Children.Reset(new art_object_children(this));
        Children->Duplicate(*Other.Children);
    }
}

art_object::~art_object() = default;

void art_object::ReadAttributes(reference_pointer<xbd_tag> Tag)
{
    Angle = ArtTextToReal(Tag->GetAttribute("angle", ""), 0);
    Name = Tag->GetAttribute("name", "");
    zel_string HandleText = Tag->GetAttribute("handle", "");
    if (!HandleText.IsEmpty())
        Handle = ArtTextToPoint(HandleText);
    zel_string AspectText = Tag->GetAttribute("aspect_ratio", "");
    if (!AspectText.IsEmpty()) {
        AspectRatio = AspectText.ToFloat();
        HasAspectRatioField = true;
    }
    Opacity = ArtTextToReal(Tag->GetAttribute("opacity", ""), 1);

    if (Tag->HasAttribute("alpha_object")) {
        StackMode = StackModeStencil;
    } else {
        // "-stencil" and "+stencil" hold "stencil": the longer texts must be tried first.
        zel_string ModeText = Tag->GetAttribute("stack_mode", "");
        if (ModeText.Contains("-stencil"))
            StackMode = StackModeMinusStencil;
        else if (ModeText.Contains("+stencil"))
            StackMode = StackModePlusStencil;
        else if (ModeText.Contains("stencil"))
            StackMode = StackModeStencil;
        else if (ModeText.Contains("post"))
            StackMode = StackModePost;
        else
            StackMode = StackModeNormal;
    }

    DropInEnabled = Tag->HasAttribute("drop_in_enabled");
    SetLockMode(Tag->GetAttribute("lock_mode", "").ToInt());
    if (LockMode == 2)
        DropInEnabled = true;

    AutoLayout->ReadAttributes(Tag);

    // Older files give the shape as the one child of a "shape" tag.
    reference_pointer<xbd_tag> ShapeTag = Tag->GetChildTag("shape");
    if (ShapeTag.IsSet() && ShapeTag->GetChildren().GetNumberOfElements() > 0)
        SetShape(ArtMakeObjectFromTag(reference_pointer<xbd_tag>(ShapeTag->GetChildren()[0].Get())));

    reference_pointer<xbd_tag> ChildrenTag = Tag->GetChildTag("children");
    if (ChildrenTag.IsSet() && ChildrenTag->GetChildren().GetNumberOfElements() > 0) {
        if (!Children.IsSet())
            Children.Reset(new art_object_children(this));
        Children->ReadChildren(ChildrenTag);
    }
}

void art_object::WriteAttributes(reference_pointer<xbd_tag> Tag)
{
    if (DropInEnabled)
        Tag->AddAttribute("drop_in_enabled", "");
    if (!Name.IsEmpty())
        Tag->AddAttribute("name", Name);
    if (Angle != 0)
        Tag->AddAttribute("angle", ArtRealToText(Angle));
    if (Handle != point2d(0.5, 0.5))
        Tag->AddAttribute("handle", ArtPointToText(Handle));
    if (HasAspectRatioField)
        Tag->AddAttribute("aspect_ratio", ArtRealToText(AspectRatio));
    if (Opacity != 1)
        Tag->AddAttribute("opacity", ArtRealToText(Opacity));
    if (LockMode != 0)
        Tag->AddAttribute("lock_mode", zel_string::FromInt(LockMode));
    WriteStackMode(Tag);
    if (CanHaveChildren() && HasChildren())
        Children->WriteChildren(Tag);
    AutoLayout->WriteAttributes(Tag);
}

zel_string art_object::GetStackModeText(art_stack_mode Mode)
{
    switch (Mode) {
    case StackModeNormal:
        return "normal";
    case StackModeStencil:
        return "stencil";
    case StackModePost:
        return "post";
    case StackModePlusStencil:
        return "+stencil";
    case StackModeMinusStencil:
        return "-stencil";
    }
    TOVAS_ASSERT(false, nullptr);
}

void art_object::WriteStackMode(reference_pointer<xbd_tag> Tag)
{
    if (StackMode != StackModeNormal)
        Tag->AddAttribute("stack_mode", GetStackModeText(StackMode));
}

ownership_pointer<xbd_tag> art_object::CreateTag(reference_pointer<xbd_file> File)
{
    ownership_pointer<xbd_tag> Tag(new xbd_tag(GetTagName(), File));
    WriteAttributes(Tag);
    return Tag;
}

zel_string art_object::GetTagName()
{
    return "pego";
}

zel_string art_object::GetName()
{
    return Name;
}

void art_object::SetName(const zel_string &NewName)
{
    Name = NewName;
}

zel_string art_object::GetDebugName()
{
    return "Object";
}

zel_string art_object::GetTypeLabel()
{
    return zel_string();
}

ownership_pointer<art_object> art_object::Duplicate() const
{
    return ownership_pointer<art_object>(new art_object(*this));
}

void art_object::SetParent(reference_pointer<art_object> NewParent)
{
    Parent = NewParent;
    if (Parent.IsSet())
        ParentChanged();
}

void art_object::ParentChanged() {}

reference_pointer<art_autolayout> art_object::GetLayout() const
{
    return reference_pointer<art_autolayout>(AutoLayout.Get());
}

void art_object::ComputeAspectRatio()
{
    AspectRatio = Size.Y == 0 ? 1 : Size.X / Size.Y;
}

void art_object::TellLayoutTheFrame()
{
    AutoLayout->SetFromObject(Location, Size, true, true);
}

void art_object::InvalidateChildrenDependingOnParent(bool Width, bool Height)
{
    if (!Children.IsSet())
        return;
    for (int I = 0; I < Children->GetNumberOfElements(); I++) {
        art_object *Child = Children->GetChild(I);
        if ((Width && Child->WidthDependsOnParent()) || (Height && Child->HeightDependsOnParent())) {
            Child->LayoutValid = false;
            Child->InvalidateLayout();
        }
    }
}

void art_object::SetSizeInternal(point2d NewSize, bool FromLayout)
{
    point2d Minimum = GetMinimumSize();
    NewSize.X = NewSize.X < Minimum.X ? Minimum.X : NewSize.X;
    NewSize.Y = NewSize.Y < Minimum.Y ? Minimum.Y : NewSize.Y;
    bool Differs = DiffersBeyondTolerance(NewSize, Size);
    Size = NewSize;
    if (!Differs)
        return;
    RequestRedraw();
    if (FromLayout)
        return;
    ComputeAspectRatio();
    TellLayoutTheFrame();
    InvalidateLayout();
    InvalidateChildrenDependingOnParent(true, true);
}

void art_object::SetLocationInternal(point2d NewLocation, bool FromLayout)
{
    bool Differs = DiffersBeyondTolerance(NewLocation, Location);
    if (Differs) {
        if (Parent.IsSet())
            RequestRedrawRectOfParent();
        else
            RequestRedraw();
    }
    Location = NewLocation;
    if (!Differs)
        return;
    if (Parent.IsSet())
        RequestRedrawRectOfParent();
    else
        RequestRedraw();
    if (FromLayout)
        return;
    ComputeAspectRatio();
    TellLayoutTheFrame();
}

void art_object::ChildrenLayoutChanged()
{
    if (!Children.IsSet() || !Children->IsLayoutValid())
        return;
    Children->SetLayoutValid(false);
    if (Parent.IsSet())
        Parent->ChildrenLayoutChanged();
}

void art_object::ChildSizeChanged()
{
    if (SizeDependsOnChildren())
        InvalidateLayout();
    else
        ChildrenLayoutChanged();
}

void art_object::InvalidateLayout()
{
    if (!LayoutValid)
        return;
    LayoutValid = false;
    if (Parent.IsSet())
        Parent->ChildSizeChanged();
}

void art_object::WidthSettled() {}

bool art_object::SizeDependsOnChildren()
{
    return AutoLayout->WidthDependsOnChildren() || AutoLayout->HeightDependsOnChildren();
}

bool art_object::SizeDependsOnParent()
{
    if (!AutoLayout.IsSet())
        return false;
    return AutoLayout->WidthDependsOnParent() || AutoLayout->HeightDependsOnParent();
}

bool art_object::WidthDependsOnChildren()
{
    return AutoLayout->WidthDependsOnChildren();
}

bool art_object::HeightDependsOnChildren()
{
    return AutoLayout->HeightDependsOnChildren();
}

bool art_object::WidthDependsOnParent()
{
    return AutoLayout->WidthDependsOnParent();
}

bool art_object::HeightDependsOnParent()
{
    return AutoLayout->HeightDependsOnParent();
}

bool art_object::IsLayoutSettled() const
{
    return LayoutValid && (!HasChildren() || Children->IsLayoutValid());
}

void art_object::SetShape(ownership_pointer<art_object> Shape)
{
    point2d OldSize = Size;
    if (Children.IsSet()) {
        for (int I = Children->GetNumberOfElements() - 1; I >= 0; I--)
            if (IsStencilStackMode(Children->GetChild(I)->GetStackMode()))
                RemoveChild(Children->GetChild(I));
    }
    reference_pointer<art_object> Added = AddChild(Shape);
    // The shape outlines the whole object, and keeps doing so as the object is resized.
    Added->SetHandle(point2d(0.5, 0.5));
    Added->SetSize(OldSize);
    Added->SetLocation(point2d(OldSize.X / 2, OldSize.Y / 2));
    SetSizeInternal(OldSize, true);
}

reference_pointer<art_shape> art_object::GetShape()
{
    if (!Children.IsSet())
        return reference_pointer<art_shape>();
    for (int I = 0; I < Children->GetNumberOfElements(); I++) {
        art_object *Child = Children->GetChild(I);
        if (IsStencilStackMode(Child->GetStackMode()))
            return Child->GetShape();
    }
    return reference_pointer<art_shape>();
}

void art_object::GetShapePath(art_path &Path, double ScaleX, double ScaleY)
{
    for (array_iterator<ownership_pointer<art_object>> Child = GetChildren(); Child.NotDone(); Child.Next()) {
        art_object *Stencil = Child.Current().Get();
        if (!IsStencilStackMode(Stencil->GetStackMode()) || !Stencil->GetShape().IsSet())
            continue;
        agg::trans_affine ChildToThis = Stencil->GetObjectToParent();
        double ChildScaleX = 1;
        double ChildScaleY = 1;
        GetMatrixScale(ChildToThis, ChildScaleX, ChildScaleY);
        art_path ChildPath;
        Stencil->GetShapePath(ChildPath, ScaleX * ChildScaleX, ScaleY * ChildScaleY);
        ChildPath.transform(ChildToThis);
        Path.concat_path(ChildPath);
        return;
    }
    AddRectanglePath(Path, 0, 0, Size.X, Size.Y);
}

agg::rgba art_object::GetColor()
{
    return agg::rgba(0, 0, 0, 1);
}

void art_object::SetColor(const agg::rgba &) {}

void art_object::DrawCustomFill(reference_pointer<bitmap_interface>, reference_pointer<bitmap_interface>,
                                agg::trans_affine, reference_pointer<art_cache>)
{
}

int32_t art_object::GetRedrawCount()
{
    return RedrawCount;
}

point2d art_object::GetSize()
{
    return Size;
}

point2d art_object::GetLocation()
{
    return Location;
}

void art_object::SetSize(point2d NewSize)
{
    SetSizeInternal(NewSize, false);
}

void art_object::SetLocation(point2d NewLocation)
{
    SetLocationInternal(NewLocation, false);
}

void art_object::SetHandle(point2d NewHandle)
{
    if (NewHandle == Handle)
        return;
    Handle = NewHandle;
    RequestRedraw();
}

point2d art_object::GetHandleOffset()
{
    return point2d(Handle.X * Size.X, Handle.Y * Size.Y);
}

point2d art_object::GetHandle()
{
    return Handle;
}

point2d art_object::GetMinimumSize()
{
    return point2d(0, 0);
}

void art_object::SetAngle(double NewAngle)
{
    if (NewAngle == Angle)
        return;
    RequestRedraw();
    Angle = NewAngle;
    RequestRedraw();
    if (Parent.IsSet() && Parent->SizeDependsOnChildren())
        Parent->InvalidateLayout();
}

void art_object::SetScale(point2d NewScale)
{
    if (NewScale == Scale)
        return;
    RequestRedraw();
    Scale = NewScale;
    RequestRedraw();
}

void art_object::SetOpacity(double NewOpacity)
{
    if (NewOpacity == Opacity)
        return;
    Opacity = NewOpacity;
    RequestRedraw();
}

void art_object::SetLockMode(int32_t NewLockMode)
{
    LockMode = NewLockMode < 0 ? 0 : (NewLockMode > 4 ? 4 : NewLockMode);
}

void art_object::SetStackMode(art_stack_mode NewMode)
{
    if (NewMode == StackModePost)
        return;
    SetStackModeInternal(NewMode);
}

void art_object::SetStackModeInternal(art_stack_mode NewMode)
{
    if (NewMode == StackMode || (NewMode == StackModePost && !IsLayerObject()))
        return;
    bool WasStencil = IsStencilStackMode(StackMode);
    StackMode = NewMode;
    if (Parent.IsSet() && Parent->Children.IsSet())
        Parent->Children->StackModesChanged();
    if (!WasStencil && !IsStencilStackMode(NewMode)) {
        if (Parent.IsSet())
            Parent->RequestRedraw();
        return;
    }
    // A stencil follows its parent's frame wherever it goes, so its frame is kept as fractions.
    art_floating_autolayout *Floating = dynamic_cast<art_floating_autolayout *>(AutoLayout.Get());
    TOVAS_ASSERT(Floating!=NULL, this);
    Floating->SetMode(7, 7);
    AutoLayout->SetFromObject(Location, Size, true, true);
    RequestRedraw();
}

reference_pointer<art_top_object> art_object::GetTopObject()
{
    if (!Parent.IsSet())
        return reference_pointer<art_top_object>();
    return Parent->GetTopObject();
}

// A plain object has no picture of its own: what it shows comes from its children.
void art_object::DrawContent(reference_pointer<bitmap_interface>, reference_pointer<bitmap_interface>,
                             agg::trans_affine, reference_pointer<art_cache>)
{
}

bool art_object::HasStencilCoverage(point2d Point)
{
    if (!Children.IsSet())
        return false;
    for (int I = 0; I < Children->GetNumberOfElements(); I++) {
        art_object *Child = Children->GetChild(I);
        if (Child->GetStackMode() != StackModePlusStencil)
            continue;
        agg::trans_affine ToChild;
        Child->ApplyParentToObject(ToChild);
        double X = Point.X;
        double Y = Point.Y;
        ToChild.transform(&X, &Y);
        if (Child->HasStencilCoverage(point2d(X, Y)))
            return true;
    }
    return false;
}

// Scan conversion fills the coverage from the stencil shapes.
void art_object::GetCoverage(art_coverage &, const agg::trans_affine &) {}

// Every change sends rectangles up to the root, several for each object that a layout moves, so
// the request climbs through plain objects by this loop rather than by a call a level. An object
// of any other class may handle a rectangle its own way and is asked by its virtual operation.
void art_object::RequestRedrawRect(const rectangle &Rect)
{
    art_object *Object = this;
    // The box goes by value from level to level, so that it can stay in registers: only copies of
    // it leave the loop.
    rectangle Box = Rect;
    for (;;) {
        Object->RedrawCount++;
        // A stencilled object draws its post children around its frame: a blur or shadow there
        // reaches further than the change itself.
        if (Object->IsStencilled() &&
            (Object->IsPlainObject() ? Object->Visible && !Object->MarkedForDeletion : Object->IsVisible())) {
            agg::trans_affine Identity;
            for (int I = 0; I < Object->Children->GetNumberOfElements(); I++)
                Object->Children->GetChild(I)->ExpandRedrawRect(Box, Identity);
        }
        art_object *Up = Object->Parent.Get();
        if (Up == nullptr)
            return;
        Box = Object->BoxToParent(Box);
        if (!Up->IsPlainObject()) {
            rectangle Handed = Box;
            Up->RequestRedrawRect(Handed);
            return;
        }
        Object = Up;
    }
}

rectangle art_object::TransformedBoxToParent(const rectangle &Box)
{
    return art_bounds::TransformBox(Box, ComputeObjectToParent());
}

void art_object::RequestRedrawRectOfParent()
{
    art_object *Up = Parent.Get();
    if (Up == nullptr)
        return;
    if (Up->IsPlainObject())
        Up->art_object::RequestRedrawRect(GetParentBounds());
    else
        Up->RequestRedrawRect(GetParentBounds());
}

void art_object::RequestRedraw()
{
    RedrawCount++;
    // A plain object answers visibility from its fields, and always has a frame of its own.
    bool Plain = IsPlainObject();
    if (Plain ? !Visible || MarkedForDeletion : !IsVisible())
        return;
    if (!Plain && !HasOwnFrame()) {
        if (Children.IsSet())
            for (int I = 0; I < Children->GetNumberOfElements(); I++)
                Children->GetChild(I)->RequestRedraw();
        return;
    }
    RequestRedrawRectOfParent();
}

void art_object::ApplyParentToObject(agg::trans_affine &Matrix)
{
    ComputeParentToObject(Matrix);
}

void art_object::ApplyObjectToParent(agg::trans_affine &Matrix)
{
    Matrix.premultiply(GetObjectToParent());
}

agg::trans_affine art_object::GetObjectToParent()
{
    return ComputeObjectToParent();
}

point2d art_object::ParentToObjectVector(point2d Vector)
{
    agg::trans_affine Matrix = GetObjectToParent();
    double Determinant = Matrix.sx * Matrix.sy - Matrix.shx * Matrix.shy;
    return point2d((Matrix.sy * Vector.X - Matrix.shx * Vector.Y) / Determinant,
                   (Matrix.sx * Vector.Y - Matrix.shy * Vector.X) / Determinant);
}

rectangle art_object::GetParentBounds()
{
    rectangle Box;
    if (IsPlainObject() || HasOwnFrame())
        Box = BoxToParent(rectangle(point2d(), Size));
    else
        Box = GetDrawBounds(agg::trans_affine());
    point2d Low(std::floor(Box.Location.X), std::floor(Box.Location.Y));
    point2d High(std::ceil(Box.Location.X + Box.Size.X), std::ceil(Box.Location.Y + Box.Size.Y));
    return rectangle(Low, High - Low);
}

rectangle art_object::GetDrawBounds(const agg::trans_affine &Matrix)
{
    if (HasOwnFrame()) {
        rectangle Box = art_bounds::TransformBox(rectangle(point2d(), Size), Matrix);
        if (Children.IsSet())
            for (int I = 0; I < Children->GetNumberOfElements(); I++)
                Children->GetChild(I)->ExpandRedrawRect(Box, Matrix);
        return Box;
    }
    art_bounds Union;
    if (Children.IsSet())
        for (int I = 0; I < Children->GetNumberOfElements(); I++) {
            art_object *Child = Children->GetChild(I);
            agg::trans_affine ChildMatrix = Child->GetObjectToParent();
            ChildMatrix.multiply(Matrix);
            Union.Add(Child->GetDrawBounds(ChildMatrix));
        }
    return Union.GetRectangle();
}

void art_object::ExpandRedrawRect(rectangle &Rect, const agg::trans_affine &Matrix)
{
    if (StackMode != StackModeStencil && StackMode != StackModePlusStencil)
        return;
    agg::trans_affine FrameMatrix = GetObjectToParent();
    FrameMatrix.multiply(Matrix);
    art_bounds Union;
    Union.Add(Rect);
    Union.Add(art_bounds::TransformBox(rectangle(point2d(), Size), FrameMatrix));
    Rect = Union.GetRectangle();
}

void art_object::ExpandDrawWindow(rectangle &, const agg::trans_affine &) {}

reference_pointer<art_object> art_object::HandleKeyEvent(reference_pointer<art_key_event>)
{
    return reference_pointer<art_object>();
}

bool art_object::AcceptsTextInput()
{
    return false;
}

agg::trans_affine art_object::GetShapeMatrix()
{
    reference_pointer<art_object> Target = FindEditTarget();
    if (!Target.IsSet() || Target.Get() == this)
        return agg::trans_affine();
    return Target->GetShapeMatrix();
}

void art_object::SetShapeMatrix(const agg::trans_affine &Matrix)
{
    reference_pointer<art_object> Target = FindEditTarget();
    if (Target.IsSet() && Target.Get() != this)
        Target->SetShapeMatrix(Matrix);
}

reference_pointer<art_object> art_object::FindEditTarget()
{
    if (IsEditTarget())
        return this;
    if (Children.IsSet())
        for (int I = 0; I < Children->GetNumberOfElements(); I++) {
            reference_pointer<art_object> Found = Children->GetChild(I)->FindEditTarget();
            if (Found.IsSet())
                return Found;
        }
    return reference_pointer<art_object>();
}

bool art_object::IsEditTarget()
{
    return false;
}

bool art_object::CanHaveChildren()
{
    return true;
}

double art_object::GetNaturalAspectRatio()
{
    return 1;
}

void art_object::GetHandleTip(zel_string &Title, zel_string &Text)
{
    Title = "Special Control Point";
    Text = "Drag to move";
}

int art_object::GetSpecialControlCount()
{
    return 0;
}

void art_object::ReservedNoOp() {}

agg::rgba art_object::GetHandleColor()
{
    return agg::rgba(0.8, 0, 1, 0.8);
}

point2d art_object::GetSpecialControl(int)
{
    TOVAS_ASSERT(false, this);
}

void art_object::SetSpecialControl(int, point2d)
{
    TOVAS_ASSERT(false, this);
}

bool art_object::IsLayer()
{
    return false;
}

bool art_object::HasOwnFrame()
{
    return true;
}

bool art_object::IsFramed()
{
    if (HasOwnFrame())
        return true;
    if (Children.IsSet())
        for (int I = 0; I < Children->GetNumberOfElements(); I++)
            if (!Children->GetChild(I)->IsFramed())
                return false;
    return true;
}

double art_object::GetHitMargin()
{
    return 0;
}

double art_object::GetHitMarginX()
{
    return GetHitMargin();
}

double art_object::GetHitMarginY()
{
    return GetHitMargin();
}

bool art_object::HasGradientControls()
{
    return false;
}

void art_object::PrepareForSave()
{
    if (Children.IsSet())
        for (int I = 0; I < Children->GetNumberOfElements(); I++)
            Children->GetChild(I)->PrepareForSave();
}

void art_object::UpdateBitmaps()
{
    if (Children.IsSet())
        for (int I = 0; I < Children->GetNumberOfElements(); I++)
            Children->GetChild(I)->UpdateBitmaps();
}

void art_object::ReadBitmaps(const reference_pointer<art_bitmap_manager> &Bitmaps)
{
    if (Children.IsSet())
        Children->ReadBitmaps(Bitmaps);
}

void art_object::WriteBitmaps(const reference_pointer<art_bitmap_manager> &Bitmaps)
{
    if (Children.IsSet())
        Children->WriteBitmaps(Bitmaps);
}

bool art_object::IsLayerObject()
{
    return false;
}

bool art_object::IsTextObject()
{
    return false;
}

bool art_object::IsFillEffect()
{
    return false;
}

bool art_object::IsFilterEffect()
{
    return false;
}

bool art_object::ReservedQuery()
{
    return false;
}

bool art_object::CanBeSelected()
{
    return true;
}

bool art_object::CanResizeContent()
{
    return true;
}

void art_object::SetFrame(point2d Offset, point2d NewSize)
{
    if (Children.IsSet())
        for (int I = 0; I < Children->GetNumberOfElements(); I++) {
            art_object *Child = Children->GetChild(I);
            Child->SetLocation(Child->GetLocation() - Offset);
        }
    // The frame's new corner is the old object point Offset; the handle then sits at the same
    // fractions of the new size.
    double MoveX = Offset.X + (NewSize.X - Size.X) * Handle.X;
    double MoveY = Offset.Y + (NewSize.Y - Size.Y) * Handle.Y;
    GetObjectToParent().transform_2x2(&MoveX, &MoveY);
    point2d NewLocation(Location.X + MoveX, Location.Y + MoveY);
    SetSize(NewSize);
    SetLocation(NewLocation);
    if (Children.IsSet())
        for (int I = 0; I < Children->GetNumberOfElements(); I++)
            Children->GetChild(I)->TellLayoutTheFrame();
}

void art_object::FitToChildren()
{
    if (!HasChildren())
        return;
    art_bounds Union;
    for (int I = 0; I < Children->GetNumberOfElements(); I++) {
        art_object *Child = Children->GetChild(I);
        Union.Add(Child->GetDrawBounds(Child->GetObjectToParent()));
    }
    rectangle Box = Union.GetRectangle();
    SetFrame(Box.Location, Box.Size);
}

void art_object::SetVisible(bool NewVisible)
{
    Visible = NewVisible;
    if (Parent.IsSet())
        Parent->RequestRedraw();
    else
        RequestRedraw();
    if (NewVisible)
        InvalidateLayout();
}

bool art_object::IsVisible()
{
    return Visible && !MarkedForDeletion;
}

double art_object::GetNextFrameTime(double Now)
{
    double Earliest = -1;
    if (Children.IsSet())
        for (int I = 0; I < Children->GetNumberOfElements(); I++) {
            double Time = Children->GetChild(I)->GetNextFrameTime(Now);
            if (Time > Now && (Earliest < 0 || Time < Earliest))
                Earliest = Time;
        }
    return Earliest;
}

bool art_object::IsAnimated()
{
    if (Children.IsSet())
        for (int I = 0; I < Children->GetNumberOfElements(); I++)
            if (Children->GetChild(I)->IsAnimated())
                return true;
    return false;
}

double art_object::GetAnimationLength()
{
    double Longest = 0;
    if (Children.IsSet())
        for (int I = 0; I < Children->GetNumberOfElements(); I++) {
            double Length = Children->GetChild(I)->GetAnimationLength();
            Longest = Length > Longest ? Length : Longest;
        }
    return Longest;
}

double art_object::GetCurrentTime()
{
    if (!Parent.IsSet())
        return 0;
    return Parent->GetCurrentTime();
}

bool art_object::IsStencilled()
{
    return Children.IsSet() && Children->HasStencilChild();
}

void art_object::MarkForDeletion()
{
    MarkedForDeletion = true;
    if (Parent.IsSet())
        Parent->NoteMarkBelow();
}

// A tick deletes through the whole tree; the flags let that walk pass over every part of the tree
// where nothing is marked, so that an idle tick costs nothing for it.
void art_object::NoteMarkBelow()
{
    for (art_object *Object = this; Object != nullptr && !Object->MarkedBelow; Object = Object->Parent.Get())
        Object->MarkedBelow = true;
}

void art_object::MarkChildrenForDeletion()
{
    if (Children.IsSet())
        for (int I = 0; I < Children->GetNumberOfElements(); I++)
            Children->GetChild(I)->MarkForDeletion();
}
