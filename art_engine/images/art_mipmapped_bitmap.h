#pragma once

#include "art_engine/pixels/art_bitmap.h"
#include "zel_basics/array.h"
#include "zel_basics/lwbase_object.h"
#include "zel_basics/lwpointers.h"

// The levels of one picture: level 0 is the picture, and each further level is half the size of the
// one before on both axes, so that a picture shrunk on screen can be filtered from a level near its
// shown size. Each level is filtered from the one before, so levels are made in order, and only when
// a drawing asks for them; once made they stay for the picture's life.
class art_mipmapped_bitmap : public base_object
{
public:
    explicit art_mipmapped_bitmap(ownership_pointer<art_bitmap> Level0);

    zel_string GetName() override;

    // The levels made so far.
    int GetNumberOfLevels() const { return Levels.GetNumberOfElements(); }
    // Makes the missing levels up to Level first.
    reference_pointer<art_bitmap> GetLevel(int Level);

    // A picture of (W / 2, H / 2), integer division, filtered bilinearly from Source as on screen.
    // A side of 0 leaves it empty.
    static ownership_pointer<art_bitmap> MakeHalfSizeBitmap(reference_pointer<art_bitmap> Source);

private:
    array<ownership_pointer<art_bitmap>> Levels;
};
