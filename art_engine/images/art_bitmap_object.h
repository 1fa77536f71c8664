#pragma once

#include <cstdint>

#include <agg_trans_affine.h>

#include "art_engine/images/art_bitmap_manager.h"
#include "art_engine/images/art_managed_bitmap.h"
#include "art_engine/objects/art_object.h"
#include "zel_basics/lwpointers.h"
#include "zel_basics/point2d.h"
#include "zel_basics/zel_string.h"

// Shows an image over a rectangle given as fractions of the object's own size: (0, 0) and (1, 1) fill the frame
// exactly, and values beyond 0 to 1 let the image reach past the frame, as after a crop. Several frames play by
// the tree's current time.
//
// The image is either one of a document's, by ID, or a private one that no manager holds, as the editor's own
// pictures are; a private image never goes into a saved document.
class art_bitmap_object : public art_object
{
public:
    // The rectangle that the whole image covers when a document leaves it out.
    static constexpr double DefaultLocation = 0.0;
    static constexpr double DefaultSize = 1.0;

    // A document's object: "bitmap_id", "location" and "size". The image itself is found by ReadBitmaps, once
    // the document's bitmaps are loaded.
    explicit art_bitmap_object(reference_pointer<xbd_tag> Tag);
    // Shows bitmap BitmapID of PegBitmapManagerO, which must know it. The object takes the image's size in
    // pixels.
    art_bitmap_object(reference_pointer<art_bitmap_manager> PegBitmapManagerO, int32_t BitmapID);
    // Owns PegBitmapImageO, an image that no manager holds. The object takes its size in pixels.
    explicit art_bitmap_object(ownership_pointer<art_managed_bitmap> PegBitmapImageO);
    // A document's image is shared with the copy; a private one is copied from its file bytes.
    art_bitmap_object(const art_bitmap_object &Other);

    ownership_pointer<art_object> Duplicate() const override;
    void ParentChanged() override;
    // Matrix maps this object's space into Target's pixels. A missing image is a red block, so that it shows as
    // missing and not as a gap; nothing clips the image to the frame.
    void DrawContent(reference_pointer<bitmap_interface> Target, reference_pointer<bitmap_interface> Backdrop,
                     agg::trans_affine Matrix, reference_pointer<art_cache> Cache) override;
    // Width over height of the image; 1 without one.
    double GetNaturalAspectRatio() override;
    // A private image is never saved: writing one is an assertion.
    void WriteAttributes(reference_pointer<xbd_tag> Tag) override;
    zel_string GetTagName() override;
    // Tells the image which part of it shows and how large, before the document saves it.
    void UpdateBitmaps() override;
    // Finds the image of BitmapID in Bitmaps; an ID that Bitmaps does not know leaves it unset.
    void ReadBitmaps(const reference_pointer<art_bitmap_manager> &Bitmaps) override;
    // Puts the image into Bitmaps, which the object then refers to by its ID there: how an object moves to
    // another document, and how a private image joins one.
    void WriteBitmaps(const reference_pointer<art_bitmap_manager> &Bitmaps) override;
    bool CanResizeContent() override;
    // The image stays where it is on the page while the frame moves and resizes.
    void SetFrame(point2d Offset, point2d NewSize) override;
    zel_string GetDebugName() override;
    double GetNextFrameTime(double Now) override;
    bool IsAnimated() override;
    double GetAnimationLength() override;

    // Once a frame of the tree's time: asks for a redraw when the frame of the image has changed.
    void TimeTick();

    int32_t GetBitmapID() const { return BitmapID; }
    reference_pointer<art_managed_bitmap> GetBitmap() const { return Bitmap; }
    bool HasPrivateImage() const { return PegBitmapImage.IsSet(); }
    // Fractions of the object's size.
    point2d GetImageLocation() const { return ImageLocation; }
    point2d GetImageSize() const { return ImageSize; }
    // Each asks for a redraw when the value changes.
    void SetImageLocation(point2d NewLocation);
    void SetImageSize(point2d NewSize);
    // The frame last found by TimeTick.
    int32_t GetCurrentFrame() const { return CurrentFrame; }
    // The object's size at which each image pixel covers one unit: the image's pixels times the fraction it
    // covers. (0, 0) without an image.
    point2d GetNaturalSize();

private:
    art_bitmap_object(reference_pointer<art_bitmap_manager> PegBitmapManagerO, int32_t BitmapID,
                      ownership_pointer<art_managed_bitmap> PegBitmapImageO);
    // An image of several frames and a length, so that a time picks one of them.
    bool HasAnimatedImage();
    // The frame that the tree's current time shows.
    int GetFrameNow();

    int32_t BitmapID;
    // The image's Location and Size, named apart from the frame's, which are in the parent's units.
    point2d ImageLocation;
    point2d ImageSize;
    reference_pointer<art_managed_bitmap> Bitmap;
    int32_t CurrentFrame;
    ownership_pointer<art_managed_bitmap> PegBitmapImage;
};
