#include "art_engine/objects/art_top_object.h"

#include <cmath>
#include <cstdint>

#include "art_engine/objects/art_object_children.h"

namespace {

// The floor of Edge, clipped to 0 to Extent while still a double: a rectangle of change may reach
// past what 32 bits hold.
int32_t PixelEdge(double Edge, int32_t Extent)
{
    double Floor = std::floor(Edge);
    return Floor > 0 ? (Floor < Extent ? static_cast<int32_t>(Floor) : Extent) : 0;
}

uint8_t ColorByte(double Component)
{
    return static_cast<uint8_t>(Component * 255 + 0.5);
}

} // namespace

art_top_object::art_top_object(ownership_pointer<art_human_input_set> GivenInputSet)
    : Dirty(true), FullRedraw(true), CurrentTime(0), BackgroundColor(0, 0, 0, 0), PointerPending(false),
      Bitmap(new art_bitmap), Cache(new art_cache), InputSet(GivenInputSet)
{
    if (!InputSet.IsSet())
        InputSet = ownership_pointer<art_human_input_set>(
            new art_human_input_set(reference_pointer<mouse_interface>(), reference_pointer<keyboard_interface>()));
    Name = "topmost layer";
    // Window pixels are top object space: the frame maps by the identity.
    Handle = point2d(0, 0);
    Location = point2d(0, 0);
}

art_top_object::~art_top_object()
{
    // The children go first, while the cache and the bitmap that they may still reach are alive.
    Children = ownership_pointer<art_object_children>();
}

reference_pointer<art_top_object> art_top_object::GetTopObject()
{
    return reference_pointer<art_top_object>(this);
}

double art_top_object::GetCurrentTime()
{
    return CurrentTime;
}

void art_top_object::RequestRedraw()
{
    FullRedraw = true;
    Dirty = true;
    DirtyList.Clear();
    art_layer::RequestRedraw();
}

void art_top_object::RequestRedrawRect(const rectangle &Rect)
{
    RedrawCount++;
    Dirty = true;
    if (FullRedraw)
        return;
    int_point2d Extent = Bitmap->GetSize();
    int_point2d Low(PixelEdge(Rect.Location.X, Extent.X), PixelEdge(Rect.Location.Y, Extent.Y));
    point2d End = Rect.GetEnd();
    int_point2d High(PixelEdge(End.X, Extent.X), PixelEdge(End.Y, Extent.Y));
    int_rectangle Pixels(Low, High - Low);
    if (Pixels.IsEmpty())
        return;
    DirtyList.Add(int_rectangle(Pixels.Location - int_point2d(1, 1), Pixels.Size + int_point2d(2, 2)));
}

void art_top_object::SetSize(point2d NewSize)
{
    SetSizeInternal(NewSize, false);
    Bitmap = ownership_pointer<art_bitmap>(
        new art_bitmap(static_cast<int>(NewSize.X), static_cast<int>(NewSize.Y)));
    Bitmap->Clear(agg::rgba8(0, 0, 0, 0));
    // Nothing of the old picture is left to keep.
    FullRedraw = true;
    Dirty = true;
    DirtyList.Clear();
}

reference_pointer<art_object> art_top_object::HandlePointerEvent(reference_pointer<art_pointer_event> PointerEvent)
{
    TOVAS_ASSERT(PointerEvent.IsSet(), this);
    PointerLocation = PointerEvent->GetLocation();
    return art_layer::HandlePointerEvent(PointerEvent);
}

reference_pointer<art_object> art_top_object::HandleKeyEvent(reference_pointer<art_key_event> KeyEvent)
{
    TOVAS_ASSERT(KeyEvent.IsSet(), this);
    reference_pointer<art_object> Target = KeyEvent->GetTarget();
    if (!Target.IsSet())
        Target = InputSet->GetKeyFocus();
    if (!Target.IsSet())
        return reference_pointer<art_object>();
    return Target->HandleKeyEvent(KeyEvent);
}

void art_top_object::Tick()
{
    if (PointerPending) {
        PointerPending = false;
        art_pointer_event Hover(art_pointer_event::PointerMovedWithin, PointerLocation, PointerLocation, GetInputSet());
        HandlePointerEvent(reference_pointer<art_pointer_event>(&Hover));
    }
    DeleteMarkedChildren();
    SettleLayout(*this);
    if (Dirty)
        PaintAll();
}

void art_top_object::SettleLayout(art_object &Object)
{
    if (!Object.IsLayoutValid()) {
        Object.Layout();
        return;
    }
    if (Object.IsLayoutSettled())
        return;
    reference_pointer<art_object_children> Children = Object.GetChildrenObject();
    Children->SetLayoutValid(true);
    for (int I = 0; I < Children->GetNumberOfElements(); I++)
        SettleLayout(*Children->GetChild(I));
}

void art_top_object::MergeDirtyList(array<int_rectangle> &Merged)
{
    // Ascending by area, by insertion so that equal areas keep their order.
    array<int_rectangle> Sorted;
    for (int I = 0; I < DirtyList.GetNumberOfElements(); I++) {
        int Place = Sorted.GetNumberOfElements();
        Sorted.Add(DirtyList[I]);
        while (Place > 0 && GetArea(Sorted[Place - 1]) > GetArea(DirtyList[I])) {
            Sorted[Place] = Sorted[Place - 1];
            Place--;
        }
        Sorted[Place] = DirtyList[I];
    }
    for (int I = Sorted.GetNumberOfElements() - 1; I >= 0; I--) {
        const int_rectangle &Rect = Sorted[I];
        bool Joined = false;
        for (int J = 0; J < Merged.GetNumberOfElements() && !Joined; J++) {
            int_rectangle Union = Merged[J].Unite(Rect);
            if (GetArea(Union) < GetArea(Merged[J]) + GetArea(Rect)) {
                Merged[J] = Union;
                Joined = true;
            }
        }
        if (!Joined)
            Merged.Add(Rect);
    }
}

void art_top_object::PaintAll()
{
    int_point2d WindowSize = Bitmap->GetSize();
    Cache->SetMaxCacheSize(int_point2d(static_cast<int32_t>(WindowSize.X * 1.25), static_cast<int32_t>(WindowSize.Y * 1.25)));
    Cache->AgeEntries();
    Dirty = false;
    agg::rgba8 Background(ColorByte(BackgroundColor.r), ColorByte(BackgroundColor.g), ColorByte(BackgroundColor.b),
                          ColorByte(BackgroundColor.a));
    int_rectangle Window(int_point2d(), WindowSize);
    bool Partial = false;
    array<int_rectangle> Merged;
    if (!FullRedraw) {
        MergeDirtyList(Merged);
        int64_t Sum = 0;
        for (int I = 0; I < Merged.GetNumberOfElements(); I++)
            Sum += GetArea(Merged[I]);
        Partial = Sum < GetArea(Window);
    }
    reference_pointer<art_cache> CacheReference(Cache.Get());
    if (Partial) {
        for (int I = 0; I < Merged.GetNumberOfElements(); I++) {
            int_rectangle Part = Merged[I].Intersect(Window);
            if (Part.IsEmpty())
                continue;
            art_bitmap View(reference_pointer<art_bitmap>(Bitmap.Get()), Part);
            View.Clear(Background);
            agg::trans_affine Matrix;
            Matrix.translate(-Part.Location.X, -Part.Location.Y);
            reference_pointer<bitmap_interface> Target(&View);
            Draw(Target, Target, Matrix, CacheReference);
            PresentBitmap(Part.Location.X, Part.Location.Y, reference_pointer<art_bitmap>(&View));
        }
    } else {
        Bitmap->Clear(Background);
        reference_pointer<bitmap_interface> Target(Bitmap.Get());
        Draw(Target, Target, agg::trans_affine(), CacheReference);
        PresentBitmap(0, 0, reference_pointer<art_bitmap>(Bitmap.Get()));
    }
    FullRedraw = false;
    DirtyList.Clear();
    Cache->Clean();
}
