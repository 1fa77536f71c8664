#pragma once

#include <cstdint>

#include "art_engine/images/art_mipmapped_bitmap.h"
#include "art_engine/pixels/art_bitmap.h"
#include "xbd/xbd.h"
#include "zel_basics/array.h"
#include "zel_basics/lwbase_object.h"
#include "zel_basics/lwpointers.h"
#include "zel_basics/point2d.h"
#include "zel_basics/rectangle.h"
#include "zel_basics/zel_string.h"

// One image of a document, held once however many objects show it. The encoded file is kept as it
// came, and decoded on first use into frames, each with its own chain of mip levels; all frames of
// an animation share one size and so one list of level sizes.
//
// Before a save, every object that shows the image notes which part of it is in use and how large
// it appears, so that the saved document need not carry more pixels than it shows.
class art_managed_bitmap : public base_object
{
public:
    // The bytes of an image file. Decoding waits for the first use.
    art_managed_bitmap(const zel_string &FileBytes, const zel_string &FileName);
    // A "bitmap" tag of a document: "bitmap_id" (-1 when missing) and "pixel_data".
    explicit art_managed_bitmap(reference_pointer<xbd_tag> Tag);

    zel_string GetName() override;

    int32_t GetBitmapID() const { return BitmapID; }
    void SetBitmapID(int32_t NewBitmapID) { BitmapID = NewBitmapID; }
    const zel_string &GetOriginalFileName() const { return OriginalFileName; }
    const zel_string &GetOriginalFileBytes() const { return OriginalFileBytes; }
    bool GetIsAnimated() const { return IsAnimated; }

    // These decode the file when that has not been tried yet. Bytes that do not decode leave the
    // bitmap with no frames, for good.
    bool HasFrames();
    int GetNumberOfFrames();
    const array<double> &GetFrameTimes();
    double GetLoopTime();
    // The last frame that starts at or before Time, taken modulo the loop time.
    int GetFrameAtTime(double Time);
    // The size of level 0 of the first frame.
    int_point2d GetBitmapSize();
    // The size of the first frame, from the file's own statement while nothing is decoded, so that
    // a document can note what it uses without holding every picture's pixels; false when the file
    // states no size it can be read by and does not decode.
    bool ReadBitmapSize(int_point2d &Size);
    // Whether the pixels are decoded (or were tried), and letting them go again: the next use
    // decodes anew. A save releases what it alone decoded.
    bool IsDecoded() const { return DecodeTried; }
    void ReleasePixels();
    const array<int_point2d> &GetMipSizes();
    // Makes the levels up to Level of that frame first when they are missing.
    reference_pointer<art_bitmap> GetMipLevel(int FrameIndex, int Level);
    reference_pointer<art_mipmapped_bitmap> GetMipMappedBitmap(int FrameIndex);

    // Recomputes MipSizes from the first frame.
    void ComputeMipSizes();
    // The level sizes of a picture of Level0Size: halved, integer division, while the long side of
    // the last level is above 4.
    static void ComputeMipSizes(int_point2d Level0Size, array<int_point2d> &Sizes);
    // The level from which a picture shown at M screen pixels per image pixel is drawn: each level
    // down while M stays below one half, so that the bilinear filter never skips source pixels.
    static int SelectMipLevel(double M, int NumberOfLevels);

    // Region is in level-0 pixels; ShownSize is the size, in document pixels, at which the whole
    // image appears. The first note after ClearUsage sets both, later ones widen them.
    void NoteUsage(const rectangle &Region, point2d ShownSize);
    void ClearUsage();
    bool IsUsed() const { return Used; }
    const rectangle &GetUsedRegion() const { return UsedRegion; }
    point2d GetUsedAtScale() const { return UsedAtScale; }

    // Adds a "bitmap" tag to BitmapsTag: the original file when it is needed whole, or else a
    // smaller file of the part in use at the size in use.
    void SaveToTag(reference_pointer<xbd_tag> BitmapsTag);
    // The rectangle of level-0 pixels that the last save made into the whole saved picture.
    const int_rectangle &GetSavedRegion() const { return SavedRegion; }
    // Rewrites the rectangle that the whole image covers, given as fractions of an object's size,
    // so that the saved picture covers what its region of the image covered.
    void RemapToSavedImage(point2d &Location, point2d &Size);

private:
    void DecodeOnce();
    void Decode();
    void CheckFrame(int FrameIndex);
    // The pixels in use of an image of Size, rounded outward and kept inside the image.
    int_rectangle GetUsedPixels(int_point2d Size);
    // The size of Crop on screen, never more than Crop itself.
    int_point2d GetSizeInUse(const int_rectangle &Crop, int_point2d Size);
    // The file bytes that a save writes; sets SavedRegion.
    zel_string GetBytesToSave();
    // Crop of the picture, whose whole is Full, at PictureSize; null when the file does not decode.
    ownership_pointer<art_bitmap> MakeSavedPicture(const int_rectangle &Crop, int_point2d PictureSize, int_point2d Full);
    // The picture decoded no larger than a save of Crop at PictureSize needs, with Area the crop on
    // its grid; null when the file does not decode.
    ownership_pointer<art_bitmap> DecodeForSave(const int_rectangle &Crop, int_point2d PictureSize, int_point2d Full,
                                                int_rectangle &Area);

    int32_t BitmapID;
    zel_string OriginalFileName;
    zel_string OriginalFileBytes;
    array<int_point2d> MipSizes;
    array<ownership_pointer<art_mipmapped_bitmap>> MipMappedBitmaps;
    array<double> FrameTimes;
    bool IsAnimated;
    double LoopTime;
    rectangle UsedRegion;
    point2d UsedAtScale;
    // Whether a use was noted since the last ClearUsage.
    bool Used;
    // Decoding runs once: a damaged file would otherwise be decoded again at every drawing.
    bool DecodeTried;
    int_rectangle SavedRegion;
};
