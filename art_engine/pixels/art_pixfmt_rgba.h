#pragma once

#include <cstdint>

#include <agg_pixfmt_rgba.h>
#include <agg_rendering_buffer.h>

#include "art_engine/pixels/art_blend.h"

static_assert(sizeof(agg::rgba8) == 4, "a span of colours is read as R, G, B, A bytes");

// Source-over for the engine's premultiplied R, G, B, A pixels, with the engine's own rounding
// rather than that of the AGG release at hand. AGG calls it for single pixels; the line and span
// operations below go to the span kernels, which compute the same bytes faster.
struct art_blender_rgba_pre
{
    typedef agg::rgba8 color_type;
    typedef agg::order_rgba order_type;
    typedef color_type::value_type value_type;
    typedef color_type::calc_type calc_type;
    typedef color_type::long_type long_type;

    static void blend_pix(value_type *p, value_type cr, value_type cg, value_type cb, value_type alpha,
                          agg::cover_type cover)
    {
        const value_type Source[4] = {cr, cg, cb, alpha};
        BlendPixel(p, Source, cover);
    }

    static void blend_pix(value_type *p, value_type cr, value_type cg, value_type cb, value_type alpha)
    {
        blend_pix(p, cr, cg, cb, alpha, agg::cover_full);
    }
};

// The pixel format of every art_bitmap: AGG's RGBA format over the blender above, with the span
// operations that scan conversion and bitmap blending use replaced by the engine's span kernels.
// renderer_base calls these by name on the concrete type, so they take effect without virtuals.
class art_pixfmt_rgba : public agg::pixfmt_alpha_blend_rgba<art_blender_rgba_pre, agg::rendering_buffer>
{
public:
    typedef agg::pixfmt_alpha_blend_rgba<art_blender_rgba_pre, agg::rendering_buffer> base_type;

    art_pixfmt_rgba() {}
    explicit art_pixfmt_rgba(agg::rendering_buffer &Buffer) : base_type(Buffer) {}

    // The run form: a scanline span of one coverage byte.
    void blend_hline(int x, int y, unsigned len, const color_type &c, agg::int8u cover)
    {
        BlendSolidRun(pix_ptr(x, y), len, c, cover);
    }

    void blend_vline(int x, int y, unsigned len, const color_type &c, agg::int8u cover)
    {
        for (unsigned I = 0; I < len; I++)
            BlendSolidRun(pix_ptr(x, y + int(I)), 1, c, cover);
    }

    // The per-pixel form: a scanline span with a coverage byte for each pixel, even when all are 255.
    void blend_solid_hspan(int x, int y, unsigned len, const color_type &c, const agg::int8u *covers)
    {
        BlendSolidSpan(pix_ptr(x, y), len, c, covers);
    }

    void blend_solid_vspan(int x, int y, unsigned len, const color_type &c, const agg::int8u *covers)
    {
        for (unsigned I = 0; I < len; I++)
            BlendSolidSpan(pix_ptr(x, y + int(I)), 1, c, covers + I);
    }

    void blend_color_hspan(int x, int y, unsigned len, const color_type *colors, const agg::int8u *covers,
                           agg::int8u cover)
    {
        BlendColorSpan(pix_ptr(x, y), reinterpret_cast<const uint8_t *>(colors), len, covers, cover);
    }

    void blend_color_vspan(int x, int y, unsigned len, const color_type *colors, const agg::int8u *covers,
                           agg::int8u cover)
    {
        for (unsigned I = 0; I < len; I++)
            BlendColorSpan(pix_ptr(x, y + int(I)), reinterpret_cast<const uint8_t *>(colors + I), 1,
                           covers != nullptr ? covers + I : nullptr, cover);
    }

    // One row of another bitmap, source-over with one coverage.
    template <class SourceFormat>
    void blend_from(const SourceFormat &from, int xdst, int ydst, int xsrc, int ysrc, unsigned len, agg::int8u cover)
    {
        BlendColorRow(pix_ptr(xdst, ydst), from.pix_ptr(xsrc, ysrc), len, cover, xdst > xsrc);
    }
};
