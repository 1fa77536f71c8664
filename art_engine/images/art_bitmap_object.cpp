#include "art_engine/images/art_bitmap_object.h"

#include <cmath>

#include "art_engine/geometry/art_attribute_text.h"
#include "art_engine/geometry/art_path.h"
#include "art_engine/objects/art_cache.h"
#include "art_engine/pixels/art_bitmap.h"
#include "zel_basics/debug.h"

namespace {

const point2d DefaultImageLocation(art_bitmap_object::DefaultLocation, art_bitmap_object::DefaultLocation);
const point2d DefaultImageSize(art_bitmap_object::DefaultSize, art_bitmap_object::DefaultSize);

// The part of [0, Length] of image pixels that the span from Low to High of the image's own units covers, where
// the image spans 0 to 1 of those units; Low and High are clipped to the image.
void ClipToImage(double Low, double High, double Length, double &Start, double &Extent)
{
    double From = std::fmin(std::fmax(std::fmin(Low, High), 0.0), 1.0);
    double To = std::fmin(std::fmax(std::fmax(Low, High), 0.0), 1.0);
    Start = From * Length;
    Extent = (To - From) * Length;
}

} // namespace

art_bitmap_object::art_bitmap_object(reference_pointer<xbd_tag> Tag)
    : art_object(Tag), BitmapID(Tag->GetAttribute("bitmap_id", "-1").ToInt()), ImageLocation(DefaultImageLocation),
      ImageSize(DefaultImageSize), CurrentFrame(0)
{
    if (Tag->HasAttribute("location"))
        ImageLocation = ArtTextToPoint(Tag->GetAttribute("location", ""));
    if (Tag->HasAttribute("size"))
        ImageSize = ArtTextToPoint(Tag->GetAttribute("size", ""));
    TOVAS_ASSERT(BitmapID>=0, this);
}

art_bitmap_object::art_bitmap_object(reference_pointer<art_bitmap_manager> PegBitmapManagerO, int32_t BitmapID)
    : art_bitmap_object(PegBitmapManagerO, BitmapID, ownership_pointer<art_managed_bitmap>())
{
}

art_bitmap_object::art_bitmap_object(ownership_pointer<art_managed_bitmap> PegBitmapImageO)
    : art_bitmap_object(reference_pointer<art_bitmap_manager>(), -1, PegBitmapImageO)
{
}

art_bitmap_object::art_bitmap_object(reference_pointer<art_bitmap_manager> PegBitmapManagerO, int32_t BitmapID,
                                     ownership_pointer<art_managed_bitmap> PegBitmapImageO)
    : BitmapID(-1), ImageLocation(DefaultImageLocation), ImageSize(DefaultImageSize), CurrentFrame(0)
{
    TOVAS_ASSERT(PegBitmapImageO.IsSet() || BitmapID>=0, this);
    if (PegBitmapImageO.IsSet()) {
        PegBitmapImage = PegBitmapImageO;
        Bitmap = reference_pointer<art_managed_bitmap>(PegBitmapImage.Get());
    } else {
        TOVAS_ASSERT(PegBitmapManagerO.IsSet(), this);
        this->BitmapID = BitmapID;
        Bitmap = PegBitmapManagerO->GetBitmap(BitmapID);
    }
    point2d Natural = GetNaturalSize();
    if (Natural.X > 0 && Natural.Y > 0)
        SetSize(Natural);
}

art_bitmap_object::art_bitmap_object(const art_bitmap_object &Other)
    : art_object(Other), BitmapID(Other.BitmapID), ImageLocation(Other.ImageLocation), ImageSize(Other.ImageSize),
      CurrentFrame(0)
{
    const art_bitmap_object *Source = &Other;
    if (Source->BitmapID >= 0) {
        Bitmap = Source->Bitmap;
        return;
    }
    TOVAS_ASSERT(Source->PegBitmapImage.IsSet(), this);
    // One owner for each image: the copy decodes its own from the same file.
    PegBitmapImage = ownership_pointer<art_managed_bitmap>(new art_managed_bitmap(
        Source->PegBitmapImage->GetOriginalFileBytes(), Source->PegBitmapImage->GetOriginalFileName()));
    Bitmap = reference_pointer<art_managed_bitmap>(PegBitmapImage.Get());
}

ownership_pointer<art_object> art_bitmap_object::Duplicate() const
{
    return ownership_pointer<art_object>(new art_bitmap_object(*this));
}

void art_bitmap_object::ParentChanged()
{
    art_object::ParentChanged();
    if (!Parent->GetDropInEnabled())
        DroppedIn = false;
}

void art_bitmap_object::DrawContent(reference_pointer<bitmap_interface> Target, reference_pointer<bitmap_interface>,
                                    agg::trans_affine Matrix, reference_pointer<art_cache>)
{
    TOVAS_ASSERT(Target->IsArtBitmap(), this);
    reference_pointer<art_bitmap> TargetBitmap(static_cast<art_bitmap *>(Target.Get()));
    point2d S = GetSize();
    if (!Bitmap.IsSet()) {
        art_path Block;
        AddRectanglePath(Block, 0, 0, S.X, S.Y);
        TargetBitmap->FillPath(Block, agg::rgba8(255, 0, 0, 255), Matrix, false, GetMatrixMaxScale(Matrix));
        return;
    }
    agg::trans_affine DrawingMatrix = agg::trans_affine_translation(S.X * ImageLocation.X, S.Y * ImageLocation.Y);
    DrawingMatrix.multiply(Matrix);
    point2d Extent(S.X * ImageSize.X, S.Y * ImageSize.Y);
    art_bitmap_manager::DrawManagedBitmap(TargetBitmap, Bitmap, GetFrameNow(), Extent, DrawingMatrix);
}

double art_bitmap_object::GetNaturalAspectRatio()
{
    int_point2d Pixels;
    if (!Bitmap.IsSet() || !Bitmap->ReadBitmapSize(Pixels) || Pixels.Y == 0)
        return art_object::GetNaturalAspectRatio();
    return double(Pixels.X) / double(Pixels.Y);
}

void art_bitmap_object::WriteAttributes(reference_pointer<xbd_tag> Tag)
{
    // Named as the constructors take the image, which is how the assertion reports it.
    const ownership_pointer<art_managed_bitmap> &PegBitmapImageO = PegBitmapImage;
    TOVAS_ASSERT(!PegBitmapImageO.IsSet(), this);
    art_object::WriteAttributes(Tag);
    Tag->AddAttribute("bitmap_id", zel_string::FromInt(BitmapID));
    // The saved file may hold only the part of the image in use, and then the rectangle is given anew in its
    // pixels.
    point2d SavedLocation = ImageLocation;
    point2d SavedSize = ImageSize;
    if (Bitmap.IsSet())
        Bitmap->RemapToSavedImage(SavedLocation, SavedSize);
    if (SavedLocation != DefaultImageLocation)
        Tag->AddAttribute("location", ArtPointToText(SavedLocation));
    if (SavedSize != DefaultImageSize)
        Tag->AddAttribute("size", ArtPointToText(SavedSize));
}

zel_string art_bitmap_object::GetTagName()
{
    return "art_bitmap";
}

void art_bitmap_object::UpdateBitmaps()
{
    int_point2d Pixels;
    if (Bitmap.IsSet() && !PegBitmapImage.IsSet() && !Bitmap->ReadBitmapSize(Pixels)) {
        // A picture that states no size and does not decode is kept as it came.
        Bitmap->NoteUsage(rectangle(), GetSize());
    } else if (Bitmap.IsSet() && !PegBitmapImage.IsSet()) {
        rectangle Region(point2d(0, 0), point2d(Pixels.X, Pixels.Y));
        // Without a stencil nothing clips the image, so all of it shows; with one, what shows lies within the
        // frame, which spans -Location / Size to (1 - Location) / Size of the image.
        if (IsStencilled() && ImageSize.X != 0 && ImageSize.Y != 0) {
            ClipToImage(-ImageLocation.X / ImageSize.X, (1 - ImageLocation.X) / ImageSize.X, Pixels.X,
                        Region.Location.X, Region.Size.X);
            ClipToImage(-ImageLocation.Y / ImageSize.Y, (1 - ImageLocation.Y) / ImageSize.Y, Pixels.Y,
                        Region.Location.Y, Region.Size.Y);
        }
        // Object units are document pixels: a saved document scales nothing.
        point2d S = GetSize();
        Bitmap->NoteUsage(Region, point2d(std::fabs(S.X * ImageSize.X), std::fabs(S.Y * ImageSize.Y)));
    }
    art_object::UpdateBitmaps();
}

void art_bitmap_object::ReadBitmaps(const reference_pointer<art_bitmap_manager> &Bitmaps)
{
    if (!PegBitmapImage.IsSet()) {
        Bitmap = Bitmaps->FindBitmap(BitmapID);
        RequestRedraw();
    }
    art_object::ReadBitmaps(Bitmaps);
}

void art_bitmap_object::WriteBitmaps(const reference_pointer<art_bitmap_manager> &Bitmaps)
{
    if (Bitmap.IsSet()) {
        Bitmap = Bitmaps->AddBitmap(Bitmap->GetOriginalFileBytes(), Bitmap->GetOriginalFileName());
        BitmapID = Bitmap->GetBitmapID();
        PegBitmapImage.Reset();
    }
    art_object::WriteBitmaps(Bitmaps);
}

bool art_bitmap_object::CanResizeContent()
{
    return false;
}

void art_bitmap_object::SetFrame(point2d Offset, point2d NewSize)
{
    point2d S = GetSize();
    // A side of 0 cannot carry a fraction; the image keeps its fraction there.
    if (NewSize.X != 0) {
        ImageLocation.X = (S.X * ImageLocation.X - Offset.X) / NewSize.X;
        ImageSize.X = S.X * ImageSize.X / NewSize.X;
    }
    if (NewSize.Y != 0) {
        ImageLocation.Y = (S.Y * ImageLocation.Y - Offset.Y) / NewSize.Y;
        ImageSize.Y = S.Y * ImageSize.Y / NewSize.Y;
    }
    art_object::SetFrame(Offset, NewSize);
}

zel_string art_bitmap_object::GetDebugName()
{
    return "Bitmap Image";
}

double art_bitmap_object::GetNextFrameTime(double Now)
{
    double Earliest = art_object::GetNextFrameTime(Now);
    if (!HasAnimatedImage())
        return Earliest;
    double LoopTime = Bitmap->GetLoopTime();
    double InLoop = std::fmod(Now, LoopTime);
    if (InLoop < 0)
        InLoop += LoopTime;
    // The next loop's first frame, unless a frame of this loop starts sooner.
    double Next = LoopTime;
    const array<double> &FrameTimes = Bitmap->GetFrameTimes();
    for (int I = 0; I < FrameTimes.GetNumberOfElements(); I++)
        if (FrameTimes[I] > InLoop && FrameTimes[I] < Next)
            Next = FrameTimes[I];
    double Own = Now - InLoop + Next;
    if (Own > Now && (Earliest < 0 || Own < Earliest))
        Earliest = Own;
    return Earliest;
}

bool art_bitmap_object::IsAnimated()
{
    return HasAnimatedImage() || art_object::IsAnimated();
}

double art_bitmap_object::GetAnimationLength()
{
    double Longest = art_object::GetAnimationLength();
    if (HasAnimatedImage() && Bitmap->GetLoopTime() > Longest)
        Longest = Bitmap->GetLoopTime();
    return Longest;
}

void art_bitmap_object::TimeTick()
{
    if (!HasAnimatedImage())
        return;
    int Frame = GetFrameNow();
    if (Frame != CurrentFrame)
        RequestRedraw();
    CurrentFrame = Frame;
}

void art_bitmap_object::SetImageLocation(point2d NewLocation)
{
    if (NewLocation == ImageLocation)
        return;
    ImageLocation = NewLocation;
    RequestRedraw();
}

void art_bitmap_object::SetImageSize(point2d NewSize)
{
    if (NewSize == ImageSize)
        return;
    ImageSize = NewSize;
    RequestRedraw();
}

point2d art_bitmap_object::GetNaturalSize()
{
    int_point2d Pixels;
    if (!Bitmap.IsSet() || !Bitmap->ReadBitmapSize(Pixels))
        return point2d(0, 0);
    return point2d(Pixels.X * ImageSize.X, Pixels.Y * ImageSize.Y);
}

bool art_bitmap_object::HasAnimatedImage()
{
    return Bitmap.IsSet() && Bitmap->GetIsAnimated() && Bitmap->GetNumberOfFrames() > 1 && Bitmap->GetLoopTime() > 0;
}

int art_bitmap_object::GetFrameNow()
{
    if (!HasAnimatedImage())
        return 0;
    return Bitmap->GetFrameAtTime(GetCurrentTime());
}
