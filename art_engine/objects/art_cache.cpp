#include "art_engine/objects/art_cache.h"

#include <cmath>
#include <cstdint>

#include "art_engine/objects/art_object.h"
#include "zel_basics/array.h"
#include "zel_basics/array_iterator.h"
#include "zel_basics/debug.h"

namespace {

// A sub-pixel difference below this is taken as none: a picture shifted by less is not told apart.
const double PixelTolerance = 0.00390625;

} // namespace

art_cached_bitmap::art_cached_bitmap(ownership_pointer<art_bitmap> Bitmap, reference_pointer<art_object> Owner,
                                     double Cost)
    : Bitmap(Bitmap), Owner(Owner), Hits(0), Age(0), Cost(Cost)
{
    int_point2d Size = this->Bitmap->GetSize();
    AgeLimit = (Size.X * Size.Y) / 1000 + 100;
}

art_object_cached_bitmap::art_object_cached_bitmap(ownership_pointer<art_bitmap> Bitmap,
                                                   reference_pointer<art_object> Owner, double Cost,
                                                   int32_t RedrawCount, const int_rectangle &Window,
                                                   const agg::trans_affine &Matrix)
    : art_cached_bitmap(Bitmap, Owner, Cost), RedrawCount(RedrawCount), Window(Window), Origin(Matrix.tx, Matrix.ty),
      AlphaRunsMeasured(false)
{
    double X = 1;
    double Y = 1;
    Matrix.transform(&X, &Y);
    FarCorner = point2d(X, Y);
}

bool art_object_cached_bitmap::Fits(int32_t CurrentRedrawCount, const agg::trans_affine &Matrix, point2d Size,
                                    int_point2d &WholeShift) const
{
    if (CurrentRedrawCount != RedrawCount)
        return false;
    point2d CurrentOrigin(Matrix.tx, Matrix.ty);
    point2d Difference = Origin - CurrentOrigin;
    point2d Whole(std::trunc(Difference.X), std::trunc(Difference.Y));
    if (std::fabs(Difference.X - Whole.X) >= PixelTolerance || std::fabs(Difference.Y - Whole.Y) >= PixelTolerance)
        return false;
    double X = 1;
    double Y = 1;
    Matrix.transform(&X, &Y);
    point2d Change = (point2d(X, Y) - CurrentOrigin) - (FarCorner - Origin);
    if (std::fabs(Size.X * Change.X) >= PixelTolerance || std::fabs(Size.Y * Change.Y) >= PixelTolerance)
        return false;
    // The difference runs from the current origin to the cached one; the window moves the other way.
    WholeShift = int_point2d(-static_cast<int32_t>(Whole.X), -static_cast<int32_t>(Whole.Y));
    return true;
}

const art_alpha_runs &art_object_cached_bitmap::GetAlphaRuns()
{
    if (!AlphaRunsMeasured) {
        AlphaRuns = art_alpha_runs(*Bitmap);
        AlphaRunsMeasured = true;
    }
    return AlphaRuns;
}

art_cache::art_cache() {}

int32_t art_cache::GetKey(art_object *Object)
{
    return static_cast<int32_t>(reinterpret_cast<uintptr_t>(Object));
}

reference_pointer<art_object_cached_bitmap> art_cache::GetCachedBitmap(reference_pointer<art_object> Object)
{
    int Slot = ArtCache.Find(GetKey(Object.Get()));
    if (Slot < 0)
        return reference_pointer<art_object_cached_bitmap>();
    art_cached_bitmap *Entry = ArtCache.GetValueAt(Slot).Get();
    if (Entry->GetOwner().Get() != Object.Get() || !Entry->GetOwner().IsSet())
        return reference_pointer<art_object_cached_bitmap>();
    return reference_pointer<art_object_cached_bitmap>(dynamic_cast<art_object_cached_bitmap *>(Entry));
}

void art_cache::SetCachedBitmap(reference_pointer<art_object> Object, ownership_pointer<art_cached_bitmap> Entry)
{
    int32_t Key = GetKey(Object.Get());
    int Slot = ArtCache.Find(Key);
    if (Slot >= 0)
        ArtCache.GetValueAt(Slot) = Entry;
    else
        ArtCache.Insert(Key, Entry);
}

void art_cache::AgeEntries()
{
    for (zel_int_hash_map_iterator<ownership_pointer<art_cached_bitmap>> I(ArtCache); I.NotDone(); I.Next())
        I.Current()->AddAge();
}

void art_cache::Clean()
{
    array<int32_t> KeysToDelete;
    for (zel_int_hash_map_iterator<ownership_pointer<art_cached_bitmap>> I(ArtCache); I.NotDone(); I.Next()) {
        art_cached_bitmap *Entry = I.Current().Get();
        if (!Entry->GetOwner().IsSet() || Entry->GetAge() > Entry->GetAgeLimit())
            KeysToDelete.Add(I.GetKey());
    }
    // The keys are gathered first, so that the map does not change under its own walk.
    for (array_iterator<int32_t> KTDI(KeysToDelete); KTDI.NotDone(); KTDI.Next()) {
        if (!ArtCache.KeyExists(KTDI.Current()))
            TovasDebugAssert("ArtCache.KeyExists(KTDI.Access())", __FILE__, __LINE__, this);
        ArtCache.RemoveAt(ArtCache.Find(KTDI.Current()));
    }
}
