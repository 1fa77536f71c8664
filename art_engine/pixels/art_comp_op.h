#pragma once

#include <agg_pixfmt_rgba.h>
#include <agg_rendering_buffer.h>

// The composite operations, in the order that composite operation numbers have always had. The
// engine itself uses destination-over only, for shadows.
enum art_comp_op
{
    CompOpClear,
    CompOpSrc,
    CompOpDst,
    CompOpSrcOver,
    CompOpDstOver,
    CompOpSrcIn,
    CompOpDstIn,
    CompOpSrcOut,
    CompOpDstOut,
    CompOpSrcAtop,
    CompOpDstAtop,
    CompOpXor,
    CompOpPlus,
    CompOpMinus,
    CompOpMultiply,
    CompOpScreen,
    CompOpOverlay,
    CompOpDarken,
    CompOpLighten,
    CompOpColorDodge,
    CompOpColorBurn,
    CompOpHardLight,
    CompOpSoftLight,
    CompOpDifference,
    CompOpExclusion,
    CompOpContrast,
    CompOpInvert,
    CompOpInvertRgb,
    CompOpCount
};

// One operation on one destination pixel p (R, G, B, A bytes) with a premultiplied source and a
// coverage.
typedef void (*art_comp_op_function)(agg::int8u *p, agg::int8u r, agg::int8u g, agg::int8u b, agg::int8u a,
                                     agg::cover_type cover);

extern const art_comp_op_function ArtCompOpTable[CompOpCount];

// Destination-over in the engine's arithmetic: a coverage below 255 first scales every source byte
// by (s * cover + 255) >> 8; then each colour byte becomes p + ((s * (255 - pa) + 255) >> 8) and
// alpha sa + pa - ((sa * pa + 255) >> 8).
void CompositeDstOver(agg::int8u *p, agg::int8u r, agg::int8u g, agg::int8u b, agg::int8u a, agg::cover_type cover);

// The blender of the composite pixel format. It takes a source with straight alpha: colour bytes
// are premultiplied with (c * a + 255) >> 8 before the operation sees them.
struct art_comp_op_adaptor_rgba
{
    typedef agg::rgba8 color_type;
    typedef agg::order_rgba order_type;
    typedef color_type::value_type value_type;
    typedef color_type::calc_type calc_type;
    typedef color_type::long_type long_type;

    static void blend_pix(unsigned op, value_type *p, value_type r, value_type g, value_type b, value_type a,
                          agg::cover_type cover)
    {
        ArtCompOpTable[op](p, static_cast<value_type>((r * a + 255) >> 8), static_cast<value_type>((g * a + 255) >> 8),
                           static_cast<value_type>((b * a + 255) >> 8), a, cover);
    }
};

class art_pixfmt_composite_rgba : public agg::pixfmt_custom_blend_rgba<art_comp_op_adaptor_rgba, agg::rendering_buffer>
{
public:
    typedef agg::pixfmt_custom_blend_rgba<art_comp_op_adaptor_rgba, agg::rendering_buffer> base_type;

    art_pixfmt_composite_rgba(agg::rendering_buffer &Buffer, unsigned Operation) : base_type(Buffer, Operation) {}

    // One row of another bitmap, walked by bytes: AGG's own walk steps its four-byte pixel records
    // further than one record, which leaves the record's array. Right to left when the target lies
    // further right, so that a row blended onto itself reads no pixel after writing it.
    template <class SourceFormat>
    void blend_from(const SourceFormat &from, int xdst, int ydst, int xsrc, int ysrc, unsigned len, agg::int8u cover)
    {
        const agg::int8u *Source = from.pix_ptr(xsrc, ysrc);
        agg::int8u *Target = pix_ptr(xdst, ydst);
        ptrdiff_t Step = 4;
        if (xdst > xsrc) {
            Source += ptrdiff_t(len - 1) * 4;
            Target += ptrdiff_t(len - 1) * 4;
            Step = -4;
        }
        for (; len > 0; len--, Source += Step, Target += Step)
            art_comp_op_adaptor_rgba::blend_pix(comp_op(), Target, Source[0], Source[1], Source[2], Source[3], cover);
    }
};
