#pragma once

#include <cstdint>

#include <agg_trans_affine.h>

#include "art_engine/pixels/art_alpha_runs.h"
#include "art_engine/pixels/art_bitmap.h"
#include "zel_basics/lwbase_object.h"
#include "zel_basics/lwpointers.h"
#include "zel_basics/point2d.h"
#include "zel_basics/rectangle.h"
#include "zel_basics/zel_hash_map.h"

class art_object;

// One object's last picture. The owner reference, not the key, says whose it is: an address can
// come back for a new object.
class art_cached_bitmap : public base_object
{
public:
    art_cached_bitmap(ownership_pointer<art_bitmap> Bitmap, reference_pointer<art_object> Owner, double Cost);

    reference_pointer<art_bitmap> GetBitmap() const { return reference_pointer<art_bitmap>(Bitmap.Get()); }
    reference_pointer<art_object> GetOwner() const { return Owner; }
    int32_t GetHits() const { return Hits; }
    int32_t GetAge() const { return Age; }
    double GetCost() const { return Cost; }
    // How many unused frames the entry outlives: more for a larger picture, which costs more to
    // make again. Fixed with the picture, which keeps its size while the entry holds it, so that
    // the walk of Clean need not visit every picture.
    int32_t GetAgeLimit() const { return AgeLimit; }
    void AddAge() { Age++; }
    void CountHit()
    {
        Hits++;
        Age = 0;
    }

protected:
    ownership_pointer<art_bitmap> Bitmap;
    reference_pointer<art_object> Owner;
    int32_t Hits;
    int32_t Age;
    int32_t AgeLimit;
    // Seconds spent rendering, for inspection; eviction ignores it.
    double Cost;
};

// An object's composite together with what proves that it still fits the object and the matrix.
class art_object_cached_bitmap : public art_cached_bitmap
{
public:
    // Matrix maps the object's own space into target pixels, as it was when Bitmap was rendered.
    art_object_cached_bitmap(ownership_pointer<art_bitmap> Bitmap, reference_pointer<art_object> Owner, double Cost,
                             int32_t RedrawCount, const int_rectangle &Window, const agg::trans_affine &Matrix);

    int32_t GetRedrawCount() const { return RedrawCount; }
    const int_rectangle &GetWindow() const { return Window; }
    point2d GetOrigin() const { return Origin; }
    point2d GetFarCorner() const { return FarCorner; }
    // Measured at the first call, which comes with the first hit: the picture does not change while
    // the entry lives, and an entry that never serves costs nothing.
    const art_alpha_runs &GetAlphaRuns();

    // Whether the picture still serves an object of this Size and RedrawCount under Matrix: the
    // same content, and a matrix that differs by a move of whole pixels, both to 1/256 of a pixel.
    // On success WholeShift holds that move, the amount to add to the window.
    bool Fits(int32_t CurrentRedrawCount, const agg::trans_affine &Matrix, point2d Size,
              int_point2d &WholeShift) const;

private:
    int32_t RedrawCount;
    int_rectangle Window;
    point2d Origin;
    point2d FarCorner;
    bool AlphaRunsMeasured;
    art_alpha_runs AlphaRuns;
};

// The composites of one tree, by object. Owned by the top object and handed down every draw.
class art_cache : public base_object
{
public:
    art_cache();

    // Unset when there is none, when it belongs to an earlier object at the same address, or when
    // the entry is of another kind.
    reference_pointer<art_object_cached_bitmap> GetCachedBitmap(reference_pointer<art_object> Object);
    void SetCachedBitmap(reference_pointer<art_object> Object, ownership_pointer<art_cached_bitmap> Entry);
    // One more frame for every entry.
    void AgeEntries();
    // Drops the entries of dead objects and those unused for longer than their size allows.
    void Clean();
    void SetMaxCacheSize(int_point2d NewMaxCacheSize) { MaxCacheSize = NewMaxCacheSize; }
    int_point2d GetMaxCacheSize() const { return MaxCacheSize; }
    int GetNumberOfEntries() const { return ArtCache.GetNumberOfElements(); }

private:
    static int32_t GetKey(art_object *Object);

    zel_int_hash_map<ownership_pointer<art_cached_bitmap>> ArtCache;
    int_point2d MaxCacheSize;
};
