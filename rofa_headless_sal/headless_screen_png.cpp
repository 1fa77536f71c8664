#include "rofa_headless_sal/headless_screen_png.h"

#include "art_engine/images/art_image_codecs.h"
#include "art_engine/pixels/art_bitmap.h"
#include "zel_basics/zel_error.h"

void WriteScreenPNG(rofa_headless_gal &Layer, zel_string Path)
{
    int_point2d Size = Layer.GetWindowSize();
    // A window without a size has no picture yet; the file comes with the first one.
    if (Size.X <= 0 || Size.Y <= 0)
        return;
    ownership_pointer<art_bitmap> Picture(new art_bitmap(Size.X, Size.Y));
    // The screen keeps its bottom line first, and what its alpha bytes hold is not shown.
    const win_rgba *Screen = Layer.GetScreen().GetData();
    for (int Y = 0; Y < Size.Y; Y++) {
        const win_rgba *Row = Screen + size_t(Size.Y - 1 - Y) * size_t(Size.X);
        agg::rgba8 *Target = Picture->GetPixelRow(Y);
        for (int X = 0; X < Size.X; X++)
            Target[X] = agg::rgba8(Row[X].Red, Row[X].Green, Row[X].Blue, 255);
    }
    try {
        SaveImageToFile(reference_pointer<art_bitmap>(Picture.Get()), Path, false, ArtImageFormatPNG);
    } catch (const zel_error &) {
        throw zel_error("The screen can't be written to '" + Path + "'.");
    }
}
