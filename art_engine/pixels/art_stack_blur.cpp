#include "art_engine/pixels/art_stack_blur.h"

#include <cstdint>

// The blur header leans on the base renderer without including it.
#include <agg_renderer_base.h>
// The blur's buffers grow by freeing and allocating anew, which GCC's optimiser misreads as a use
// after free once it has inlined them; the templates are instantiated further down this file.
#if defined(__GNUC__) && !defined(__clang__)
#pragma GCC diagnostic ignored "-Wuse-after-free"
#endif
#include <agg_blur.h>

namespace {

// The radius above which the multiply-and-shift tables of the blur run out.
const unsigned MaxTableRadius = 254;
// From here up the colour blur takes the general row-and-column blur, which also divides for radii
// beyond the tables.
const unsigned FirstGeneralRadius = 253;

// The bitmap's pixels as the byte-walking blurs read them: Channel is the first byte of a pixel
// that they touch, and a pixel lies 4 bytes on from the one before.
template <int Channel> class blur_bytes
{
public:
    typedef agg::rgba8 color_type;
    typedef agg::order_rgba order_type;
    enum { pix_width = 4 };

    explicit blur_bytes(art_bitmap &Bitmap) : Bitmap(Bitmap) {}

    unsigned width() const { return static_cast<unsigned>(Bitmap.GetSize().X); }
    unsigned height() const { return static_cast<unsigned>(Bitmap.GetSize().Y); }
    int stride() const { return Bitmap.GetPixelStride(); }
    agg::int8u *pix_ptr(int X, int Y)
    {
        return Bitmap.GetPixelData() + ptrdiff_t(Y) * Bitmap.GetPixelStride() + X * 4 + Channel;
    }

private:
    art_bitmap &Bitmap;
};

// The bitmap's pixels as the general blur reads them, whole pixels in and colour bytes out: the
// blur leaves the alpha of the pixels it hands back undefined, so alpha is never written.
class blur_color_pixels
{
public:
    typedef agg::rgba8 color_type;
    typedef agg::row_info<agg::int8u> row_data;

    explicit blur_color_pixels(art_bitmap &Bitmap) : Bitmap(Bitmap) {}

    unsigned width() const { return static_cast<unsigned>(Bitmap.GetSize().X); }
    unsigned height() const { return static_cast<unsigned>(Bitmap.GetSize().Y); }
    color_type pixel(int X, int Y) const { return Bitmap.GetPixelRow(Y)[X]; }
    void copy_color_hspan(int X, int Y, unsigned Length, const color_type *Colors)
    {
        agg::rgba8 *Pixel = Bitmap.GetPixelRow(Y) + X;
        for (unsigned I = 0; I < Length; I++, Pixel++)
            CopyColor(*Pixel, Colors[I]);
    }
    void copy_color_vspan(int X, int Y, unsigned Length, const color_type *Colors)
    {
        for (unsigned I = 0; I < Length; I++)
            CopyColor(Bitmap.GetPixelRow(Y + int(I))[X], Colors[I]);
    }

private:
    static void CopyColor(agg::rgba8 &Pixel, const color_type &Color)
    {
        Pixel.r = Color.r;
        Pixel.g = Color.g;
        Pixel.b = Color.b;
    }

    art_bitmap &Bitmap;
};

bool IsEmpty(art_bitmap &Bitmap)
{
    return Bitmap.GetSize().X <= 0 || Bitmap.GetSize().Y <= 0;
}

} // namespace

void BlurColor(reference_pointer<art_bitmap> Bitmap, double Radius)
{
    art_bitmap &Pixels = *Bitmap;
    if (!(Radius > 0) || IsEmpty(Pixels))
        return;
    unsigned Rounded = Radius + 0.5 < MaxTableRadius ? static_cast<unsigned>(Radius + 0.5) : MaxTableRadius;
    if (Rounded < FirstGeneralRadius) {
        blur_bytes<0> Image(Pixels);
        agg::stack_blur_rgb24(Image, Rounded, Rounded);
        return;
    }
    blur_color_pixels Image(Pixels);
    agg::stack_blur<agg::rgba8, agg::stack_blur_calc_rgb<>> Blur;
    Blur.blur_x(Image, Rounded);
    Blur.blur_y(Image, Rounded);
}

void BlurAlpha(reference_pointer<art_bitmap> Bitmap, double Radius)
{
    art_bitmap &Pixels = *Bitmap;
    if (!(Radius > 0) || IsEmpty(Pixels))
        return;
    double Limited = Radius < FirstGeneralRadius ? Radius : FirstGeneralRadius;
    unsigned Rounded = static_cast<unsigned>(Limited + 0.5);
    blur_bytes<3> Image(Pixels);
    agg::stack_blur_gray8(Image, Rounded, Rounded);
}
