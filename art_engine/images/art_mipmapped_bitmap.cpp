#include "art_engine/images/art_mipmapped_bitmap.h"

art_mipmapped_bitmap::art_mipmapped_bitmap(ownership_pointer<art_bitmap> Level0)
{
    TOVAS_ASSERT(Level0.IsSet(), this);
    Levels.Add(Level0);
}

zel_string art_mipmapped_bitmap::GetName()
{
    return zel_string("art_mipmapped_bitmap with ") + zel_string::FromInt(GetNumberOfLevels()) + " levels";
}

reference_pointer<art_bitmap> art_mipmapped_bitmap::GetLevel(int Level)
{
    TOVAS_ASSERT(Level>=0, this);
    while (Levels.GetNumberOfElements() < Level + 1)
        Levels.Add(MakeHalfSizeBitmap(Levels.GetLast()));
    return Levels[Level];
}

ownership_pointer<art_bitmap> art_mipmapped_bitmap::MakeHalfSizeBitmap(reference_pointer<art_bitmap> Source)
{
    int_point2d Size = Source->GetSize();
    int_point2d Half(Size.X / 2, Size.Y / 2);
    ownership_pointer<art_bitmap> Ret(new art_bitmap(Half.X, Half.Y));
    Ret->Clear(agg::rgba8(0, 0, 0, 0));
    if (Half.X > 0 && Half.Y > 0) {
        const point2d Corners[4] = {point2d(0, 0), point2d(Half.X, 0), point2d(Half.X, Half.Y), point2d(0, Half.Y)};
        Ret->DrawBitmapInQuad(Source, int_rectangle(int_point2d(0, 0), Size), Corners);
    }
    return Ret;
}
