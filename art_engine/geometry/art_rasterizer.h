#pragma once

#include <agg_rasterizer_scanline_aa.h>

// Vertices reach the rasterizer as pixels in doubles that come from documents, and a document can
// hold any number. AGG's plain conversion to its 24.8 fixed point overflows beyond about 8 million
// pixels; this one saturates at AGG's largest coordinate and takes a coordinate that is not a number
// as 0, so that a damaged document may draw oddly but never computes out of range. Every coordinate
// that a bitmap could show converts exactly as with the plain conversion.
struct art_ras_conv_int : agg::ras_conv_int_sat
{
    static int upscale(double Value) { return agg::ras_conv_int_sat::upscale(Value == Value ? Value : 0); }
};

typedef agg::rasterizer_scanline_aa<agg::rasterizer_sl_clip<art_ras_conv_int>> art_rasterizer;
