#pragma once

#include <cstdint>

#include <agg_trans_affine.h>

#include "art_engine/images/art_managed_bitmap.h"
#include "art_engine/pixels/art_bitmap.h"
#include "xbd/xbd.h"
#include "zel_basics/lwbase_object.h"
#include "zel_basics/lwpointers.h"
#include "zel_basics/point2d.h"
#include "zel_basics/zel_hash_map.h"
#include "zel_basics/zel_string.h"

// The images of one document, by ID. An image added twice is held once, so every object that shows
// it shares its file bytes, its frames and its mip levels.
class art_bitmap_manager : public base_object
{
public:
    // No bitmaps; the first ID given is 0.
    art_bitmap_manager();
    // A "bitmaps" tag: a managed bitmap for each "bitmap" child. The next ID follows the highest.
    explicit art_bitmap_manager(reference_pointer<xbd_tag> BitmapsTag);

    zel_string GetName() override;

    // The bitmap that holds exactly these bytes; a new one with the next ID when none does.
    reference_pointer<art_managed_bitmap> AddBitmap(const zel_string &OriginalFileBytes, const zel_string &FileName);
    // The ID must be known.
    reference_pointer<art_managed_bitmap> GetBitmap(int32_t BitmapID);
    // Not set for an unknown ID, as a document that refers to a missing image may.
    reference_pointer<art_managed_bitmap> FindBitmap(int32_t BitmapID);
    int GetNumberOfBitmaps() const { return Bitmaps.GetNumberOfElements(); }
    int32_t GetNextBitmapID() const { return NextBitmapID; }

    // Forgets the usage of every bitmap, before the objects of a document note theirs again.
    void ClearUsage();
    // Adds to BitmapsTag one "bitmap" tag for each bitmap in use, in the order of their IDs.
    void SaveToTag(reference_pointer<xbd_tag> BitmapsTag);

    // Draws frame FrameIndex of Bitmap over the rectangle from (0, 0) to Extent in object units,
    // which Matrix maps to Target's pixels, from the mip level nearest above the size on screen. An
    // unset bitmap, one whose file did not decode, and a level with a side of 0 draw nothing.
    static void DrawManagedBitmap(reference_pointer<art_bitmap> Target, reference_pointer<art_managed_bitmap> Bitmap,
                                  int FrameIndex, point2d Extent, const agg::trans_affine &Matrix);

private:
    // Replaces any bitmap of the same ID.
    void Store(ownership_pointer<art_managed_bitmap> Bitmap);

    zel_int_hash_map<ownership_pointer<art_managed_bitmap>> Bitmaps;
    int32_t NextBitmapID;
};
