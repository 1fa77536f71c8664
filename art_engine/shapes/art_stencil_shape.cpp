#include "art_engine/shapes/art_stencil_shape.h"

#include "art_engine/pixels/art_bitmap.h"
#include "art_engine/pixels/art_color.h"
#include "art_engine/shapes/art_rectangle_shape.h"
#include "zel_basics/debug.h"

art_stencil_shape::art_stencil_shape() : art_stencil_shape(ownership_pointer<art_shape>(new art_rectangle_shape)) {}

art_stencil_shape::art_stencil_shape(ownership_pointer<art_shape> NewShape) : Shape(NewShape)
{
    SetStackModeInternal(StackModePlusStencil);
    AdoptShape();
}

art_stencil_shape::art_stencil_shape(reference_pointer<xbd_tag> Tag) : art_object(Tag)
{
    reference_pointer<xbd_tag> ShapeTag;
    if (Tag->GetChildren().GetNumberOfElements() > 0)
        ShapeTag = reference_pointer<xbd_tag>(Tag->GetChildren()[0].Get());
    TOVAS_ASSERT(ShapeTag.IsSet(), this);
    Shape = ArtMakeShapeFromTag(ShapeTag);
    AdoptShape();
}

art_stencil_shape::art_stencil_shape(const art_stencil_shape &Other) : art_object(Other), Shape(Other.Shape->Clone())
{
    AdoptShape();
}

void art_stencil_shape::AdoptShape()
{
    TOVAS_ASSERT(Shape.IsSet(), this);
    Shape->SetOwner(reference_pointer<art_object>(this));
}

ownership_pointer<art_object> art_stencil_shape::Duplicate() const
{
    return ownership_pointer<art_object>(new art_stencil_shape(*this));
}

void art_stencil_shape::SetShape(ownership_pointer<art_object> NewShape)
{
    art_stencil_shape *Holder = dynamic_cast<art_stencil_shape *>(NewShape.Get());
    TOVAS_ASSERT(Holder!=NULL, this);
    SetStencilShape(Holder->Shape);
}

void art_stencil_shape::SetStencilShape(ownership_pointer<art_shape> NewShape)
{
    Shape = NewShape;
    AdoptShape();
    Shape->NotifyChanged();
    RequestRedraw();
}

reference_pointer<art_shape> art_stencil_shape::GetShape()
{
    return reference_pointer<art_shape>(Shape.Get());
}

// A stencil shape exists to add to or cut from a stencil, or to carry effects: the other roles
// would give its silhouette no meaning.
void art_stencil_shape::SetStackMode(art_stack_mode NewMode)
{
    if (NewMode == StackModePlusStencil || NewMode == StackModeMinusStencil)
        SetStackModeInternal(NewMode);
}

void art_stencil_shape::Draw(reference_pointer<bitmap_interface> Target, reference_pointer<bitmap_interface>,
                             agg::trans_affine Matrix, reference_pointer<art_cache>)
{
    reference_pointer<art_bitmap> Bitmap = Target.DynamicCast<art_bitmap>();
    TOVAS_ASSERT(Bitmap.IsSet(), this);
    agg::trans_affine ObjectMatrix = GetObjectToParent();
    ObjectMatrix.multiply(Matrix);
    double Gray = StackMode == StackModePlusStencil ? 1 : 0;
    double Alpha = Opacity < 0 ? 0 : (Opacity > 1 ? 1 : Opacity);
    agg::rgba8 Color = ArtColorToRgba8(agg::rgba(Gray, Gray, Gray, Alpha));
    double Scale = GetMatrixMaxScale(ObjectMatrix);
    art_path Path;
    GetShapePath(Path, Scale, Scale);
    // Even-odd, so that a custom shape with a hole keeps it.
    Bitmap->FillPath(Path, Color, ObjectMatrix, true, Scale);
}

bool art_stencil_shape::CanHaveChildren()
{
    return false;
}

void art_stencil_shape::WriteAttributes(reference_pointer<xbd_tag> Tag)
{
    art_object::WriteAttributes(Tag);
    ownership_pointer<xbd_tag> ShapeTag = Tag->NewTag(Shape->GetTagName());
    Shape->SaveToTag(ShapeTag);
    Tag->AddChildTag(ShapeTag);
}

zel_string art_stencil_shape::GetTagName()
{
    return "art_stencil_shape";
}

zel_string art_stencil_shape::GetTypeLabel()
{
    return Shape->GetDisplayName();
}

zel_string art_stencil_shape::GetDebugName()
{
    return zel_string("Stencil Shape: ") + Shape->GetDebugInfo();
}

void art_stencil_shape::GetShapePath(art_path &Path, double ScaleX, double ScaleY)
{
    Shape->GetPath(Path, ScaleX, ScaleY);
}

agg::rgba art_stencil_shape::GetColor()
{
    if (Parent.IsSet())
        return Parent->GetColor();
    return art_object::GetColor();
}

void art_stencil_shape::SetColor(const agg::rgba &Color)
{
    if (Parent.IsSet())
        Parent->SetColor(Color);
    else
        art_object::SetColor(Color);
}

bool art_stencil_shape::HasSharpCorners()
{
    return Shape->HasSharpCorners();
}
