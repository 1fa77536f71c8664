#include <cmath>
#include <cstdint>

#include "art_engine/objects/art_cache.h"
#include "art_engine/objects/art_object.h"
#include "art_engine/objects/art_object_children.h"
#include "art_engine/pixels/art_bitmap.h"
#include "rofa_lib/sal_functions.h"
#include "zel_basics/debug.h"

// The drawing members of art_object: the composite of a stencilled object, its cache entry, and
// the growth of that entry by strips.

namespace {

// A window offset is kept in document coordinates, though it is whole pixels by construction.
using point2df = point2d;

bool operator>=(const point2d &A, const point2d &B)
{
    return A.X >= B.X && A.Y >= B.Y;
}

int32_t Smaller(int32_t A, int32_t B)
{
    return A < B ? A : B;
}

int32_t Larger(int32_t A, int32_t B)
{
    return A > B ? A : B;
}

// Floor of the low edges, ceiling of the high ones: every pixel the box touches. Edges beyond a
// quarter of what 32 bits hold stop there, which no bitmap reaches, so that the size stays in range.
int_rectangle RoundOutward(const rectangle &Box)
{
    auto Whole = [](double Edge) {
        const double Limit = 1 << 29;
        return static_cast<int32_t>(Edge > -Limit ? (Edge < Limit ? Edge : Limit) : -Limit);
    };
    int_point2d Low(Whole(std::floor(Box.Location.X)), Whole(std::floor(Box.Location.Y)));
    point2d End = Box.GetEnd();
    int_point2d High(Whole(std::ceil(End.X)), Whole(std::ceil(End.Y)));
    return int_rectangle(Low, High - Low);
}

// The part of Box on a target of Extent, in whole pixels: floor of the low edges, ceiling of the
// high ones. Clipped while still in doubles, since a frame may reach past what 32 bits hold.
int_rectangle ClippedOutward(const rectangle &Box, const int_point2d &Extent)
{
    auto Clamp = [](double Edge, int32_t High) {
        return Edge > 0 ? (Edge < High ? static_cast<int32_t>(Edge) : High) : 0;
    };
    point2d End = Box.GetEnd();
    int_point2d Low(Clamp(std::floor(Box.Location.X), Extent.X), Clamp(std::floor(Box.Location.Y), Extent.Y));
    int_point2d High(Clamp(std::ceil(End.X), Extent.X), Clamp(std::ceil(End.Y), Extent.Y));
    return int_rectangle(Low, High - Low);
}

art_bitmap *AsArtBitmap(reference_pointer<bitmap_interface> Bitmap)
{
    TOVAS_ASSERT(Bitmap->IsArtBitmap(), Bitmap.Get());
    return static_cast<art_bitmap *>(Bitmap.Get());
}

// Cuts one axis of Union down to Limit, keeping ClippingWindow inside: a union that reaches out
// past ClippingWindow's low edge gives up its low part, any other its high part.
void LimitAxis(int32_t &Location, int32_t &Size, int32_t ClippingLocation, int32_t Limit)
{
    int32_t Excess = Size - Limit;
    if (Excess <= 0)
        return;
    if (Location != ClippingLocation)
        Location = Smaller(Location + Excess, ClippingLocation);
    Size = Limit;
}

} // namespace

void art_object::Draw(reference_pointer<bitmap_interface> Target, reference_pointer<bitmap_interface> Backdrop,
                      agg::trans_affine Matrix, reference_pointer<art_cache> Cache)
{
    bool Stencilled = IsStencilled();
    agg::trans_affine ObjectMatrix = GetObjectToParent();
    ObjectMatrix.multiply(Matrix);
    // Without a stencil an object is a plain group: no frame clips it, and its own opacity and its
    // post children take no part. Only a stencil makes the bitmap of its own worth its cost. What
    // the object shows of its own (a picture, text) lies under its children.
    if (!Stencilled) {
        DrawContent(Target, Backdrop, ObjectMatrix, Cache);
        if (Children.IsSet())
            Children->DrawNormal(Target, Backdrop, ObjectMatrix, Cache);
        return;
    }
    reference_pointer<bitmap_interface> Bitmap = Target;
    int_rectangle ClippingWindow = ClippedOutward(GetDrawBounds(ObjectMatrix), Bitmap->GetSize());
    if (ClippingWindow.IsEmpty())
        return;
    TOVAS_ASSERT(ClippingWindow.Size <= Bitmap->GetSize(), this);
    art_bitmap *TargetBitmap = AsArtBitmap(Target);
    // A document may carry any real as the opacity; beyond 0 to 1 the byte would wrap round, so
    // the nearer end holds.
    uint8_t OpacityByte = Opacity >= 1 ? 255 : Opacity > 0 ? static_cast<uint8_t>(Opacity * 255) : 0;

    reference_pointer<art_object_cached_bitmap> Entry;
    // How far the picture has moved, in whole pixels, since the entry was rendered.
    int_point2d WholeShift;
    if (Cache.IsSet()) {
        Entry = Cache->GetCachedBitmap(this);
        if (Entry.IsSet() && Entry->Fits(RedrawCount, ObjectMatrix, GetSize(), WholeShift))
            Entry = ReuseCachedBitmap(Entry, WholeShift, ClippingWindow, ObjectMatrix, Cache, Bitmap->GetSize());
        else
            Entry = reference_pointer<art_object_cached_bitmap>();
    }
    // The picture to composite, and where its top-left pixel goes on the target.
    reference_pointer<art_bitmap> Picture;
    int_point2d PictureLocation;
    // Owns a fresh picture until a cache entry takes it.
    ownership_pointer<art_bitmap> Rendered;
    if (Entry.IsSet()) {
        Picture = Entry->GetBitmap();
        PictureLocation = Entry->GetWindow().Location + WholeShift;
    } else {
        double Start = SALGetTime();
        point2d PreExpandLocOffset;
        Rendered = RenderToBitmap(ClippingWindow, ObjectMatrix, Cache, PreExpandLocOffset, true);
        if (Rendered->GetSize() != ClippingWindow.Size) {
            ownership_pointer<art_bitmap> Window(new art_bitmap(ClippingWindow.Size.X, ClippingWindow.Size.Y));
            int_point2d Offset(static_cast<int32_t>(PreExpandLocOffset.X), static_cast<int32_t>(PreExpandLocOffset.Y));
            Window->CopyBitmap(0, 0, Rendered, int_rectangle(Offset, ClippingWindow.Size));
            Rendered = Window;
        } else {
            TOVAS_ASSERT(PreExpandLocOffset==point2df(), this);
        }
        double Cost = SALGetTime() - Start;
        Picture = Rendered;
        PictureLocation = ClippingWindow.Location;
        if (Cache.IsSet())
            Cache->SetCachedBitmap(this, ownership_pointer<art_cached_bitmap>(new art_object_cached_bitmap(
                                             Rendered, this, Cost, RedrawCount, ClippingWindow, ObjectMatrix)));
    }
    int_rectangle Part(ClippingWindow.Location - PictureLocation, ClippingWindow.Size);
    // A cached picture is composed again and again, so it pays to know where it is opaque.
    if (Entry.IsSet())
        TargetBitmap->BlendBitmap(ClippingWindow.Location.X, ClippingWindow.Location.Y, Picture, Part, OpacityByte,
                                  Entry->GetAlphaRuns());
    else
        TargetBitmap->BlendBitmap(ClippingWindow.Location.X, ClippingWindow.Location.Y, Picture, Part, OpacityByte);
}

reference_pointer<art_object_cached_bitmap> art_object::ReuseCachedBitmap(
    reference_pointer<art_object_cached_bitmap> Entry, int_point2d &WholeShift, const int_rectangle &ClippingWindow,
    const agg::trans_affine &Matrix, reference_pointer<art_cache> Cache, int_point2d TargetSize)
{
    int_rectangle Window(Entry->GetWindow().Location + WholeShift, Entry->GetWindow().Size);
    // The entry keeps the window and matrix it was rendered with, so that every later frame
    // measures its move from the same place.
    if (Window.Contains(ClippingWindow)) {
        Entry->CountHit();
        return Entry;
    }
    int_point2d MaxCacheSize = Cache->GetMaxCacheSize();
    MaxCacheSize.X = Larger(MaxCacheSize.X, TargetSize.X);
    MaxCacheSize.Y = Larger(MaxCacheSize.Y, TargetSize.Y);
    TOVAS_ASSERT(MaxCacheSize.X >= ClippingWindow.Size.X, this);
    TOVAS_ASSERT(MaxCacheSize.Y >= ClippingWindow.Size.Y, this);
    int_rectangle Union = Window.Unite(ClippingWindow);
    LimitAxis(Union.Location.X, Union.Size.X, ClippingWindow.Location.X, MaxCacheSize.X);
    TOVAS_ASSERT(Union.Location.X<=ClippingWindow.Location.X, this);
    LimitAxis(Union.Location.Y, Union.Size.Y, ClippingWindow.Location.Y, MaxCacheSize.Y);
    TOVAS_ASSERT(Union.Location.Y<=ClippingWindow.Location.Y, this);
    int64_t Gain = GetArea(Union) - GetArea(Window);
    int64_t LimitArea = GetArea(int_rectangle(int_point2d(), MaxCacheSize));
    int64_t Smallest = GetArea(Window) < LimitArea ? GetArea(Window) : LimitArea;
    if (Gain > Smallest / 2) {
        // The old picture is given up for good.
        RedrawCount++;
        return reference_pointer<art_object_cached_bitmap>();
    }
    double Start = SALGetTime();
    ownership_pointer<art_bitmap> Grown(new art_bitmap(Union.Size.X, Union.Size.Y));
    // Every pixel is overwritten below; red left anywhere shows a fault in the strips at once.
    Grown->Clear(agg::rgba8(255, 0, 0, 255));
    Grown->CopyBitmap(Window.Location.X - Union.Location.X, Window.Location.Y - Union.Location.Y, Entry->GetBitmap());
    int_rectangle Kept = Window.Intersect(Union);
    if (Kept.IsEmpty())
        Kept = int_rectangle(Union.Location, int_point2d());
    int32_t UnionEndX = Union.GetEnd().X;
    int32_t UnionEndY = Union.GetEnd().Y;
    int32_t KeptEndX = Kept.GetEnd().X;
    int32_t KeptEndY = Kept.GetEnd().Y;
    int_rectangle Strips[4] = {
        int_rectangle(Union.Location, int_point2d(Union.Size.X, Kept.Location.Y - Union.Location.Y)),
        int_rectangle(int_point2d(Union.Location.X, KeptEndY), int_point2d(Union.Size.X, UnionEndY - KeptEndY)),
        int_rectangle(int_point2d(Union.Location.X, Kept.Location.Y),
                      int_point2d(Kept.Location.X - Union.Location.X, Kept.Size.Y)),
        int_rectangle(int_point2d(KeptEndX, Kept.Location.Y), int_point2d(UnionEndX - KeptEndX, Kept.Size.Y))};
    for (const int_rectangle &Strip : Strips) {
        if (Strip.IsEmpty())
            continue;
        // Without expansion the strip's picture has the strip's size and no offset.
        point2d NoOffset;
        ownership_pointer<art_bitmap> Part = RenderToBitmap(Strip, Matrix, Cache, NoOffset, false);
        Grown->CopyBitmap(Strip.Location.X - Union.Location.X, Strip.Location.Y - Union.Location.Y, Part);
    }
    double Cost = Entry->GetCost() + (SALGetTime() - Start);
    ownership_pointer<art_object_cached_bitmap> NewEntry(
        new art_object_cached_bitmap(Grown, this, Cost, RedrawCount, Union, Matrix));
    reference_pointer<art_object_cached_bitmap> Result(NewEntry.Get());
    WholeShift = int_point2d();
    Cache->SetCachedBitmap(this, NewEntry);
    Result->CountHit();
    return Result;
}

ownership_pointer<art_bitmap> art_object::RenderToBitmap(int_rectangle Window, agg::trans_affine Matrix,
                                                         reference_pointer<art_cache> Cache,
                                                         point2d &PreExpandLocOffset, bool AllowExpansion)
{
    PreExpandLocOffset = point2d();
    if (AllowExpansion && Children.IsSet()) {
        rectangle Expanded(point2d(Window.Location.X, Window.Location.Y), point2d(Window.Size.X, Window.Size.Y));
        for (int I = 0; I < Children->GetNumberOfElements(); I++)
            Children->GetChild(I)->ExpandDrawWindow(Expanded, Matrix);
        int_rectangle Grown = RoundOutward(Expanded);
        if (Grown != Window) {
            PreExpandLocOffset = point2d(Window.Location.X - Grown.Location.X, Window.Location.Y - Grown.Location.Y);
            TOVAS_ASSERT(PreExpandLocOffset>=point2d(), this);
            Window = Grown;
        }
    }
    ownership_pointer<art_bitmap> Layer(new art_bitmap(Window.Size.X, Window.Size.Y));
    Layer->Clear(agg::rgba8(0, 0, 0, 0));
    agg::trans_affine WindowMatrix = Matrix;
    WindowMatrix.translate(-Window.Location.X, -Window.Location.Y);
    reference_pointer<bitmap_interface> LayerTarget(Layer.Get());
    DrawContent(LayerTarget, LayerTarget, WindowMatrix, Cache);
    if (!Children.IsSet()) {
        Layer->ColorizeStencilLayer(StackMode);
        return Layer;
    }
    ownership_pointer<art_bitmap> StencilBitmap;
    for (int I = 0; I < Children->GetNumberOfElements(); I++)
        if (IsStencilStackMode(Children->GetChild(I)->GetStackMode())) {
            // Black lets nothing through; the stencil children paint in what shows.
            StencilBitmap = ownership_pointer<art_bitmap>(new art_bitmap(Window.Size.X, Window.Size.Y));
            StencilBitmap->Clear(agg::rgba8(0, 0, 0, 255));
            break;
        }
    if (StencilBitmap.IsSet()) {
        reference_pointer<bitmap_interface> StencilTarget(StencilBitmap.Get());
        Children->DrawStencilChildren(StencilTarget, StencilTarget, WindowMatrix, Cache);
    }
    Children->DrawNormal(LayerTarget, LayerTarget, WindowMatrix, Cache);
    if (StencilBitmap.IsSet())
        Layer->ApplyStencil(StencilBitmap);
    // Post children act on the masked picture: a shadow falls around the stencilled shape.
    Children->DrawPost(LayerTarget, LayerTarget, WindowMatrix, Cache);
    Layer->ColorizeStencilLayer(StackMode);
    return Layer;
}
