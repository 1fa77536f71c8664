#include "art_engine/images/art_managed_bitmap.h"

#include <algorithm>
#include <cmath>

#include "art_engine/images/art_animated_bitmap.h"
#include "art_engine/images/art_image_codecs.h"
#include "zel_basics/debug.h"
#include "zel_basics/zel_error.h"

namespace {

// A coordinate in pixels, rounded by Round and kept within 0 to Limit; the clamping comes first so
// that no out-of-range double is converted.
template <class RoundFunction> int ToPixel(double Value, int Limit, RoundFunction Round)
{
    double Rounded = Round(Value);
    if (!(Rounded > 0))
        return 0;
    if (Rounded >= Limit)
        return Limit;
    return static_cast<int>(Rounded);
}

// The size on screen of Length source pixels shown at Shown over Full, rounded up, between 1 and
// Length.
int GetLengthInUse(int Length, double Shown, int Full)
{
    double InUse = std::ceil(Shown * Length / Full);
    if (!(InUse >= 1))
        return 1;
    if (InUse >= Length)
        return Length;
    return static_cast<int>(InUse);
}

} // namespace

art_managed_bitmap::art_managed_bitmap(const zel_string &FileBytes, const zel_string &FileName)
    : BitmapID(-1), OriginalFileName(FileName), OriginalFileBytes(FileBytes),
      IsAnimated(!FileBytes.IsEmpty() && IsAnimatedImage(FileBytes)), LoopTime(0), Used(false), DecodeTried(false)
{
}

art_managed_bitmap::art_managed_bitmap(reference_pointer<xbd_tag> Tag)
    : art_managed_bitmap(Tag->GetAttribute("pixel_data", ""), "")
{
    BitmapID = Tag->GetAttribute("bitmap_id", "-1").ToInt();
}

zel_string art_managed_bitmap::GetName()
{
    return zel_string("art_managed_bitmap ") + zel_string::FromInt(BitmapID) + " '" + OriginalFileName + "'";
}

void art_managed_bitmap::DecodeOnce()
{
    if (DecodeTried)
        return;
    DecodeTried = true;
    if (!OriginalFileBytes.IsEmpty()) {
        // A damaged file in a document must not take the document down with it: the image stays
        // empty and the rest of the document works.
        try {
            Decode();
        } catch (const zel_error &Error) {
            DebugLog(Error.GetMessage());
            MipMappedBitmaps.Clear();
            FrameTimes.Clear();
            LoopTime = 0;
        }
    }
    if (MipMappedBitmaps.GetNumberOfElements() == 0) {
        DebugLog("failed init");
        return;
    }
    ComputeMipSizes();
}

void art_managed_bitmap::Decode()
{
    if (IsAnimated) {
        ownership_pointer<art_animated_bitmap> Animation = LoadAnimatedImageFromString(OriginalFileBytes);
        if (!Animation.IsSet())
            return;
        for (int I = 0; I < Animation->GetNumberOfFrames(); I++) {
            ownership_pointer<art_mipmapped_bitmap> Frame(new art_mipmapped_bitmap(Animation->Frames[I]));
            MipMappedBitmaps.Add(Frame);
            FrameTimes.Add(Animation->FrameTimes[I]);
        }
        LoopTime = Animation->TotalTime;
        return;
    }
    ownership_pointer<art_bitmap> Picture = LoadImageFromString(OriginalFileBytes);
    if (!Picture.IsSet())
        return;
    MipMappedBitmaps.Add(ownership_pointer<art_mipmapped_bitmap>(new art_mipmapped_bitmap(Picture)));
    FrameTimes.Add(0);
    LoopTime = 0;
}

bool art_managed_bitmap::HasFrames()
{
    DecodeOnce();
    return MipMappedBitmaps.GetNumberOfElements() > 0;
}

int art_managed_bitmap::GetNumberOfFrames()
{
    DecodeOnce();
    return MipMappedBitmaps.GetNumberOfElements();
}

const array<double> &art_managed_bitmap::GetFrameTimes()
{
    DecodeOnce();
    return FrameTimes;
}

double art_managed_bitmap::GetLoopTime()
{
    DecodeOnce();
    return LoopTime;
}

int art_managed_bitmap::GetFrameAtTime(double Time)
{
    DecodeOnce();
    double LoopedTime = Time;
    if (LoopTime > 0) {
        LoopedTime = std::fmod(Time, LoopTime);
        if (LoopedTime < 0)
            LoopedTime += LoopTime;
    }
    int Frame = 0;
    for (int I = 1; I < FrameTimes.GetNumberOfElements(); I++)
        if (FrameTimes[I] <= LoopedTime)
            Frame = I;
    return Frame;
}

void art_managed_bitmap::CheckFrame(int FrameIndex)
{
    DecodeOnce();
    TOVAS_ASSERT(MipMappedBitmaps.GetNumberOfElements()>0, this);
    TOVAS_ASSERT(FrameIndex>=0 && FrameIndex<MipMappedBitmaps.GetNumberOfElements(), this);
}

bool art_managed_bitmap::ReadBitmapSize(int_point2d &Size)
{
    if (!DecodeTried && ReadImageSize(OriginalFileBytes, Size))
        return true;
    if (!HasFrames())
        return false;
    Size = GetBitmapSize();
    return true;
}

void art_managed_bitmap::ReleasePixels()
{
    MipMappedBitmaps.Clear();
    FrameTimes.Clear();
    MipSizes.Clear();
    LoopTime = 0;
    DecodeTried = false;
}

int_point2d art_managed_bitmap::GetBitmapSize()
{
    CheckFrame(0);
    return MipMappedBitmaps[0]->GetLevel(0)->GetSize();
}

const array<int_point2d> &art_managed_bitmap::GetMipSizes()
{
    DecodeOnce();
    return MipSizes;
}

reference_pointer<art_mipmapped_bitmap> art_managed_bitmap::GetMipMappedBitmap(int FrameIndex)
{
    CheckFrame(FrameIndex);
    return MipMappedBitmaps[FrameIndex];
}

reference_pointer<art_bitmap> art_managed_bitmap::GetMipLevel(int FrameIndex, int Level)
{
    CheckFrame(FrameIndex);
    TOVAS_ASSERT(Level>=0 && Level<MipSizes.GetNumberOfElements(), this);
    return MipMappedBitmaps[FrameIndex]->GetLevel(Level);
}

void art_managed_bitmap::ComputeMipSizes()
{
    ComputeMipSizes(GetBitmapSize(), MipSizes);
}

void art_managed_bitmap::ComputeMipSizes(int_point2d Level0Size, array<int_point2d> &Sizes)
{
    Sizes.Clear();
    int W = Level0Size.X;
    int H = Level0Size.Y;
    Sizes.Add(int_point2d(W, H));
    double D = std::max(W, H);
    while (D > 4.0) {
        W = W / 2;
        H = H / 2;
        Sizes.Add(int_point2d(W, H));
        D = D * 0.5;
    }
}

int art_managed_bitmap::SelectMipLevel(double M, int NumberOfLevels)
{
    int Level = 0;
    while (Level < NumberOfLevels - 1 && M < 0.5) {
        Level++;
        M = M * 2;
    }
    return Level;
}

void art_managed_bitmap::NoteUsage(const rectangle &Region, point2d ShownSize)
{
    if (!Used) {
        UsedRegion = Region;
        UsedAtScale = ShownSize;
        Used = true;
        return;
    }
    UsedRegion = UsedRegion.Unite(Region);
    UsedAtScale.X = std::max(UsedAtScale.X, ShownSize.X);
    UsedAtScale.Y = std::max(UsedAtScale.Y, ShownSize.Y);
}

void art_managed_bitmap::ClearUsage()
{
    UsedRegion = rectangle();
    UsedAtScale = point2d();
    Used = false;
}

int_rectangle art_managed_bitmap::GetUsedPixels(int_point2d Size)
{
    point2d End = UsedRegion.GetEnd();
    auto Floor = [](double V) { return std::floor(V); };
    auto Ceil = [](double V) { return std::ceil(V); };
    int_point2d Low(ToPixel(UsedRegion.Location.X, Size.X, Floor), ToPixel(UsedRegion.Location.Y, Size.Y, Floor));
    int_point2d High(ToPixel(End.X, Size.X, Ceil), ToPixel(End.Y, Size.Y, Ceil));
    return int_rectangle(Low, High - Low);
}

int_point2d art_managed_bitmap::GetSizeInUse(const int_rectangle &Crop, int_point2d Size)
{
    return int_point2d(GetLengthInUse(Crop.Size.X, UsedAtScale.X, Size.X),
                       GetLengthInUse(Crop.Size.Y, UsedAtScale.Y, Size.Y));
}

zel_string art_managed_bitmap::GetBytesToSave()
{
    SavedRegion = int_rectangle();
    // An animation would lose its frames, and a file that does not decode has nothing to re-encode.
    int_point2d Size;
    if (IsAnimated || !ReadBitmapSize(Size))
        return OriginalFileBytes;
    SavedRegion = int_rectangle(int_point2d(0, 0), Size);
    int_rectangle Crop = GetUsedPixels(Size);
    if (Crop.IsEmpty())
        return OriginalFileBytes;
    int_point2d SizeInUse = GetSizeInUse(Crop, Size);
    double Budget = std::ceil(double(SizeInUse.X) * double(SizeInUse.Y) * 0.33);
    if ((Crop == SavedRegion && SizeInUse == Size) || OriginalFileBytes.GetLength() <= Budget)
        return OriginalFileBytes;
    ownership_pointer<art_bitmap> Picture = MakeSavedPicture(Crop, SizeInUse, Size);
    if (!Picture.IsSet())
        return OriginalFileBytes;
    zel_string Encoded;
    SaveImageUnderSize(Encoded, Picture, static_cast<int>(Budget), false);
    // Re-encoding loses detail, which only pays when it saves bytes.
    if (Encoded.GetLength() >= OriginalFileBytes.GetLength())
        return OriginalFileBytes;
    SavedRegion = Crop;
    return Encoded;
}

ownership_pointer<art_bitmap> art_managed_bitmap::DecodeForSave(const int_rectangle &Crop, int_point2d PictureSize,
                                                                 int_point2d Full, int_rectangle &Area)
{
    Area = Crop;
    double Fraction = std::max(double(PictureSize.X) / Crop.Size.X, double(PictureSize.Y) / Crop.Size.Y);
    int LongSide = static_cast<int>(std::ceil(std::max(Full.X, Full.Y) * std::min(Fraction, 1.0)));
    ownership_pointer<art_bitmap> Picture = LoadImageFromString(OriginalFileBytes, LongSide);
    if (!Picture.IsSet())
        return Picture;
    int_point2d Got = Picture->GetSize();
    if (Got == Full)
        return Picture;
    auto Scaled = [](int Value, int To, int From, bool Up) {
        int64_t Product = int64_t(Value) * To;
        return static_cast<int>(Up ? (Product + From - 1) / From : Product / From);
    };
    int_point2d Low(Scaled(Crop.Location.X, Got.X, Full.X, false), Scaled(Crop.Location.Y, Got.Y, Full.Y, false));
    int_point2d High(std::min(Got.X, Scaled(Crop.Location.X + Crop.Size.X, Got.X, Full.X, true)),
                     std::min(Got.Y, Scaled(Crop.Location.Y + Crop.Size.Y, Got.Y, Full.Y, true)));
    Area = int_rectangle(Low, High - Low);
    return Picture;
}

ownership_pointer<art_bitmap> art_managed_bitmap::MakeSavedPicture(const int_rectangle &Crop, int_point2d PictureSize,
                                                                    int_point2d Full)
{
    // Pixels that are on screen already serve as they are; otherwise only as many are decoded as
    // the saved picture needs, and they go again once cropped.
    int_rectangle Area = Crop;
    ownership_pointer<art_bitmap> Decoded;
    reference_pointer<art_bitmap> Source;
    if (IsDecoded()) {
        if (!HasFrames())
            return ownership_pointer<art_bitmap>();
        Source = GetMipLevel(0, 0);
    } else {
        Decoded = DecodeForSave(Crop, PictureSize, Full, Area);
        Source = Decoded.Get();
    }
    if (!Source.IsSet() || Area.IsEmpty())
        return ownership_pointer<art_bitmap>();
    ownership_pointer<art_bitmap> Cropped(new art_bitmap(Area.Size.X, Area.Size.Y));
    Cropped->CopyBitmap(0, 0, Source, Area);
    Decoded.Reset();
    if (PictureSize == Area.Size)
        return Cropped;
    // Shrunk from a level near the size in use, as a drawing would be, so that the bilinear filter
    // does not skip pixels.
    array<int_point2d> Sizes;
    ComputeMipSizes(Area.Size, Sizes);
    double M = (double(PictureSize.X) / Area.Size.X + double(PictureSize.Y) / Area.Size.Y) * 0.5;
    int Level = SelectMipLevel(M, Sizes.GetNumberOfElements());
    while (Level > 0 && (Sizes[Level].X == 0 || Sizes[Level].Y == 0))
        Level--;
    ownership_pointer<art_mipmapped_bitmap> Levels(new art_mipmapped_bitmap(Cropped));
    ownership_pointer<art_bitmap> Picture(new art_bitmap(PictureSize.X, PictureSize.Y));
    Picture->Clear(agg::rgba8(0, 0, 0, 0));
    const point2d Corners[4] = {point2d(0, 0), point2d(PictureSize.X, 0), point2d(PictureSize.X, PictureSize.Y),
                                point2d(0, PictureSize.Y)};
    Picture->DrawBitmapInQuad(Levels->GetLevel(Level), int_rectangle(int_point2d(0, 0), Sizes[Level]), Corners);
    return Picture;
}

void art_managed_bitmap::SaveToTag(reference_pointer<xbd_tag> BitmapsTag)
{
    TOVAS_ASSERT(BitmapID>=0, this);
    ownership_pointer<xbd_tag> Tag = BitmapsTag->NewTag("bitmap");
    Tag->AddAttribute("bitmap_id", zel_string::FromInt(BitmapID));
    Tag->AddAttribute("pixel_data", GetBytesToSave());
    BitmapsTag->AddChildTag(Tag);
}

void art_managed_bitmap::RemapToSavedImage(point2d &Location, point2d &Size)
{
    int_point2d Full;
    if (!ReadBitmapSize(Full))
        return;
    if (SavedRegion.IsEmpty() || SavedRegion == int_rectangle(int_point2d(0, 0), Full))
        return;
    Location.X += Size.X * SavedRegion.Location.X / Full.X;
    Location.Y += Size.Y * SavedRegion.Location.Y / Full.Y;
    Size.X = Size.X * SavedRegion.Size.X / Full.X;
    Size.Y = Size.Y * SavedRegion.Size.Y / Full.Y;
}
