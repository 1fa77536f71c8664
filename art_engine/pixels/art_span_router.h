#pragma once

#include <agg_color_rgba.h>

// Takes scanlines as AGG's scanline renderers do (prepare, then render for each line), and hands
// each span of one colour to the pixel format by the span's own form: a span with a coverage byte
// for each pixel goes to blend_solid_hspan even when every byte is 255, and only a run of one
// coverage byte (negative length in the scanline) goes to blend_hline. AGG's own renderers may
// choose otherwise, and the two kernels are kept apart on purpose.
template <class PixelFormat> class art_span_router
{
public:
    art_span_router(PixelFormat &Format, const agg::rgba8 &Color) : Format(Format), Color(Color) {}

    void prepare() {}

    template <class Scanline> void render(const Scanline &Line)
    {
        int Y = Line.y();
        unsigned Spans = Line.num_spans();
        typename Scanline::const_iterator Span = Line.begin();
        for (;;) {
            if (Span->len > 0)
                Format.blend_solid_hspan(Span->x, Y, unsigned(Span->len), Color, Span->covers);
            else
                Format.blend_hline(Span->x, Y, unsigned(-Span->len), Color, *Span->covers);
            if (--Spans == 0)
                break;
            ++Span;
        }
    }

private:
    PixelFormat &Format;
    agg::rgba8 Color;
};
