#include "rofa_headless_sal/headless_screen_png.h"

#include <FreeImage.h>

#include "zel_basics/zel_error.h"

namespace {

// Frees the image library's bitmap on every way out.
struct free_image_bitmap
{
    FIBITMAP *Bitmap;
    ~free_image_bitmap()
    {
        if (Bitmap != nullptr)
            FreeImage_Unload(Bitmap);
    }
};

} // namespace

void WriteScreenPNG(rofa_headless_gal &Layer, zel_string Path)
{
    int_point2d Size = Layer.GetWindowSize();
    if (Size.X <= 0 || Size.Y <= 0)
        throw zel_error("The screen can't be written to '" + Path + "': the window has no pixels.");
    free_image_bitmap Image{FreeImage_Allocate(Size.X, Size.Y, 24)};
    if (Image.Bitmap == nullptr)
        throw zel_error("The screen can't be written to '" + Path + "': out of memory.");
    // Both the screen and the image library's bitmaps keep their bottom line first.
    const win_rgba *Screen = Layer.GetScreen().GetData();
    for (int Y = 0; Y < Size.Y; Y++) {
        BYTE *Line = FreeImage_GetScanLine(Image.Bitmap, Y);
        const win_rgba *Row = Screen + size_t(Y) * size_t(Size.X);
        for (int X = 0; X < Size.X; X++) {
            Line[3 * X + FI_RGBA_RED] = Row[X].Red;
            Line[3 * X + FI_RGBA_GREEN] = Row[X].Green;
            Line[3 * X + FI_RGBA_BLUE] = Row[X].Blue;
        }
    }
    if (!FreeImage_Save(FIF_PNG, Image.Bitmap, Path.GetString(), PNG_DEFAULT))
        throw zel_error("The screen can't be written to '" + Path + "'.");
}
