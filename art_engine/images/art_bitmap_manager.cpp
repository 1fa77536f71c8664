#include "art_engine/images/art_bitmap_manager.h"

#include <cstdint>

#include "art_engine/geometry/art_path.h"
#include "zel_basics/array.h"
#include "zel_basics/array_iterator.h"
#include "zel_basics/debug.h"

art_bitmap_manager::art_bitmap_manager() : NextBitmapID(0) {}

art_bitmap_manager::art_bitmap_manager(reference_pointer<xbd_tag> BitmapsTag) : NextBitmapID(0)
{
    array<ownership_pointer<xbd_tag>> &Children = BitmapsTag->GetChildren();
    for (int I = 0; I < Children.GetNumberOfElements(); I++) {
        reference_pointer<xbd_tag> Child = Children[I];
        if (Child->GetName() != "bitmap")
            continue;
        ownership_pointer<art_managed_bitmap> Bitmap(new art_managed_bitmap(Child));
        int32_t ID = Bitmap->GetBitmapID();
        TOVAS_ASSERT(ID>=0, this);
        TOVAS_ASSERT(ID<INT32_MAX, "No bitmap ID is left after this one.", this);
        if (ID >= NextBitmapID)
            NextBitmapID = ID + 1;
        Store(Bitmap);
    }
}

zel_string art_bitmap_manager::GetName()
{
    return zel_string("art_bitmap_manager with ") + zel_string::FromInt(GetNumberOfBitmaps()) + " bitmaps";
}

void art_bitmap_manager::Store(ownership_pointer<art_managed_bitmap> Bitmap)
{
    int32_t ID = Bitmap->GetBitmapID();
    int Slot = Bitmaps.Find(ID);
    if (Slot >= 0)
        Bitmaps.GetValueAt(Slot) = Bitmap;
    else
        Bitmaps.Insert(ID, Bitmap);
}

reference_pointer<art_managed_bitmap> art_bitmap_manager::AddBitmap(const zel_string &OriginalFileBytes,
                                                                    const zel_string &FileName)
{
    TOVAS_ASSERT(OriginalFileBytes.GetLength()>0, this);
    for (zel_int_hash_map_iterator<ownership_pointer<art_managed_bitmap>> It(Bitmaps); It.NotDone(); It.Next())
        if (It.Current()->GetOriginalFileBytes() == OriginalFileBytes)
            return It.Current();
    TOVAS_ASSERT(NextBitmapID<INT32_MAX, "No bitmap ID is left.", this);
    ownership_pointer<art_managed_bitmap> Bitmap(new art_managed_bitmap(OriginalFileBytes, FileName));
    Bitmap->SetBitmapID(NextBitmapID++);
    reference_pointer<art_managed_bitmap> Ret(Bitmap);
    Store(Bitmap);
    return Ret;
}

reference_pointer<art_managed_bitmap> art_bitmap_manager::GetBitmap(int32_t BitmapID)
{
    TOVAS_ASSERT(BitmapID>=0, this);
    int Slot = Bitmaps.Find(BitmapID);
    TOVAS_ASSERT(Slot>=0, "Unknown bitmap ID.", this);
    return Bitmaps.GetValueAt(Slot);
}

reference_pointer<art_managed_bitmap> art_bitmap_manager::FindBitmap(int32_t BitmapID)
{
    int Slot = Bitmaps.Find(BitmapID);
    if (Slot < 0)
        return reference_pointer<art_managed_bitmap>();
    return Bitmaps.GetValueAt(Slot);
}

void art_bitmap_manager::ClearUsage()
{
    for (zel_int_hash_map_iterator<ownership_pointer<art_managed_bitmap>> It(Bitmaps); It.NotDone(); It.Next())
        It.Current()->ClearUsage();
}

void art_bitmap_manager::SaveToTag(reference_pointer<xbd_tag> BitmapsTag)
{
    // The map keeps no order; IDs in order make the same document save to the same bytes.
    array<int32_t> IDs;
    for (zel_int_hash_map_iterator<ownership_pointer<art_managed_bitmap>> It(Bitmaps); It.NotDone(); It.Next())
        if (It.Current()->IsUsed())
            IDs.Add(It.GetKey());
    for (int I = 1; I < IDs.GetNumberOfElements(); I++)
        for (int J = I; J > 0 && IDs[J - 1] > IDs[J]; J--) {
            int32_t Swap = IDs[J];
            IDs[J] = IDs[J - 1];
            IDs[J - 1] = Swap;
        }
    // One picture's pixels at a time: those that only the save decoded go again at once.
    for (int I = 0; I < IDs.GetNumberOfElements(); I++) {
        reference_pointer<art_managed_bitmap> Bitmap = GetBitmap(IDs[I]);
        bool WasDecoded = Bitmap->IsDecoded();
        Bitmap->SaveToTag(BitmapsTag);
        if (!WasDecoded)
            Bitmap->ReleasePixels();
    }
}

void art_bitmap_manager::DrawManagedBitmap(reference_pointer<art_bitmap> Target,
                                           reference_pointer<art_managed_bitmap> Bitmap, int FrameIndex,
                                           point2d Extent, const agg::trans_affine &Matrix)
{
    if (!Bitmap.IsSet() || !Bitmap->HasFrames())
        return;
    int_point2d Size = Bitmap->GetBitmapSize();
    if (Size.X <= 0 || Size.Y <= 0)
        return;
    double SX;
    double SY;
    GetMatrixScale(Matrix, SX, SY);
    double RX = SX / (Size.X / Extent.X);
    double RY = SY / (Size.Y / Extent.Y);
    double M = (RX + RY) * 0.5;
    const array<int_point2d> &MipSizes = Bitmap->GetMipSizes();
    int Level = art_managed_bitmap::SelectMipLevel(M, MipSizes.GetNumberOfElements());
    int_point2d LevelSize = MipSizes[Level];
    if (LevelSize.X <= 0 || LevelSize.Y <= 0)
        return;
    // The level's pixels cover the same extent as level 0's, so only the source rectangle changes.
    point2d Corners[4] = {point2d(0, 0), point2d(Extent.X, 0), point2d(Extent.X, Extent.Y), point2d(0, Extent.Y)};
    for (point2d &Corner : Corners)
        Matrix.transform(&Corner.X, &Corner.Y);
    Target->DrawBitmapInQuad(Bitmap->GetMipLevel(FrameIndex, Level), int_rectangle(int_point2d(0, 0), LevelSize),
                             Corners);
}
