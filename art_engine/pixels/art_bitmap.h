#pragma once

#include <cstdint>

#include <agg_color_rgba.h>
#include <agg_renderer_base.h>
#include <agg_renderer_scanline.h>
#include <agg_rendering_buffer.h>

#include "art_engine/geometry/art_path.h"
#include "art_engine/pixels/art_comp_op.h"
#include "art_engine/pixels/art_pixfmt_rgba.h"
#include "rofa_lib/bitmap_interface.h"
#include "zel_basics/array.h"
#include "zel_basics/lwpointers.h"
#include "zel_basics/rectangle.h"

class art_alpha_runs;

typedef agg::renderer_base<art_pixfmt_rgba> art_renderer_base;
typedef agg::renderer_scanline_aa_solid<art_renderer_base> art_renderer_solid;

// The one picture format of the engine: 32 bits a pixel, bytes R, G, B, A, colour premultiplied
// by alpha, rows top-down. A bitmap owns its store, rows with no padding, or is a view of a
// rectangle of another bitmap's store, rows as far apart as the other's. The four AGG objects point
// at each other and at the store, so a bitmap is never copied bit by bit: copies go through the
// copying constructor, and a bitmap is held through ownership_pointer.
class art_bitmap : public bitmap_interface
{
public:
    // 0 by 0, with room reserved for one pixel.
    art_bitmap();
    // The content is not cleared.
    art_bitmap(int Width, int Height);
    // Takes the size and pixels of any 32-bit source, top row first whatever the source's row order,
    // and premultiplies them if the source has straight alpha.
    explicit art_bitmap(reference_pointer<bitmap_interface> Source);
    // A view of Part of Parent's pixels: drawing into it draws into Parent, with no copy. Parent
    // keeps its size while the view lives, and outlives it.
    art_bitmap(reference_pointer<art_bitmap> Parent, const int_rectangle &Part);
    art_bitmap(const art_bitmap &) = delete;
    art_bitmap &operator=(const art_bitmap &) = delete;

    int_point2d GetSize() override { return Size; }
    uint8_t *GetFirstLine() override { return GetPixelData(); }
    int32_t GetLineStride() override { return GetPixelStride(); }
    bool IsArtBitmap() override { return true; }
    bool IsPremultiplied() override { return true; }

    // The top-left pixel; the rows follow GetPixelStride bytes apart.
    uint8_t *GetPixelData() { return Data; }
    int32_t GetPixelStride() const { return Stride; }
    // The element count of the own store: width times height, and 0 in a view.
    int GetPixelDataSize() const { return Pixels.GetNumberOfElements(); }
    bool IsView() const { return View; }
    // Row Y, top row 0; no bounds check.
    agg::rgba8 *GetPixelRow(int Y) { return reinterpret_cast<agg::rgba8 *>(Data + ptrdiff_t(Y) * Stride); }

    // Reuses the store when it is large enough, so a bitmap can serve as a temporary again and again.
    // Newly exposed pixels are not cleared. A view cannot change its size. Above MaximumPixels, a
    // zel_error says in words that the picture is too large.
    void SetSize(int Width, int Height);
    static constexpr int64_t MaximumPixels = int64_t(1) << 27;
    // Whether any pixel has alpha below 255; stops at the first one.
    bool HasTransparency();
    // Writes Value, unblended, to every pixel.
    void Clear(const agg::rgba8 &Value);

    // Calls Function with the address of every pixel, top row first, left to right.
    template <class PixelFunction> void ForEachPixel(PixelFunction Function)
    {
        for (int Y = 0; Y < Size.Y; Y++) {
            agg::rgba8 *Row = GetPixelRow(Y);
            for (int X = 0; X < Size.X; X++)
                Function(Row + X);
        }
    }

    // The rectangle operations put the Location of the source rectangle (the whole source when none
    // is given) at target (X, Y). Both rectangles are clipped, each trim moving the other's corner
    // with it. A bitmap may be drawn onto itself: rows and pixels run in the order that reads every
    // source pixel before it is overwritten.

    // Plain copy, alpha included.
    void CopyBitmap(int X, int Y, reference_pointer<art_bitmap> Source);
    void CopyBitmap(int X, int Y, reference_pointer<art_bitmap> Source, const int_rectangle &SourceRectangle);
    // Source-over of a premultiplied source at a constant opacity.
    void BlendBitmap(int X, int Y, reference_pointer<art_bitmap> Source, uint8_t Opacity);
    void BlendBitmap(int X, int Y, reference_pointer<art_bitmap> Source, const int_rectangle &SourceRectangle,
                     uint8_t Opacity);
    // The same bytes, faster, with SourceRuns measured on Source as it is now: transparent runs are
    // left out, and at full opacity opaque runs are copied. A source that shares memory with this
    // bitmap may change under its own blend, so there the runs are not trusted.
    void BlendBitmap(int X, int Y, reference_pointer<art_bitmap> Source, const int_rectangle &SourceRectangle,
                     uint8_t Opacity, const art_alpha_runs &SourceRuns);
    // A composite operation at a constant opacity. The source has straight alpha: each pixel is
    // premultiplied on the way in.
    void CompositeBitmap(int X, int Y, reference_pointer<art_bitmap> Source, uint8_t Opacity, art_comp_op Operation);
    void CompositeBitmap(int X, int Y, reference_pointer<art_bitmap> Source, const int_rectangle &SourceRectangle,
                         uint8_t Opacity, art_comp_op Operation);

    // Masks this layer by the luma of a stencil bitmap of the same size; the stencil's alpha does
    // not enter.
    void ApplyStencil(reference_pointer<art_bitmap> StencilBitmap);
    // Reduces a layer drawn for the stencil to one grey: premultiplied white for "+stencil", black
    // for "-stencil", each at the layer's own alpha. Other stack modes keep their colours.
    void ColorizeStencilLayer(int StackMode);

    // Scan conversion. Colours are straight here and premultiplied on the way in; paths are in
    // object units, Matrix maps them to this bitmap's pixels, and Scale is the detail that curves,
    // arcs and joins are flattened to (GetMatrixMaxScale of the matrix for shapes). Everything is
    // clipped to the bitmap.

    // Fills a path given in pixels, curves flattened at scale 1, non-zero.
    void FillPathPlain(art_path &Path, agg::rgba8 Color);
    void FillRectangle(double X, double Y, double W, double H, agg::rgba8 Color);
    void FillPath(art_path &Path, agg::rgba8 Color, const agg::trans_affine &Matrix, bool EvenOdd, double Scale);
    // Width is in object units; inside and outside outlines lie wholly on their side of the path.
    void StrokePath(art_path &Path, agg::rgba8 Color, double Width, const agg::trans_affine &Matrix,
                    art_outline_mode OutlineMode, int JoinType, int CapType, double MiterLimit, double Scale);
    // DashLength and DashOffset are fractions of DashCycle, clamped: the length to 1e-6 .. 1, the
    // offset to 0 .. 1. Beyond 100,000 cycles along the path, the line is solid, its alpha times
    // DashLength.
    void StrokeDashedPath(art_path &Path, agg::rgba8 Color, double Width, double DashLength, double DashCycle,
                          double DashOffset, const agg::trans_affine &Matrix, int JoinType, int CapType,
                          double MiterLimit, double Scale);
    void StrokeEllipse(double X, double Y, double RX, double RY, double Scale, agg::rgba8 Color, double Width);

    // Maps SourceRectangle of Source onto the four-cornered figure Corners (top left, top right,
    // bottom right, bottom left, in this bitmap's pixels) bilinearly, filtering 2x2 with the edge
    // pixels repeated, the figure's edges anti-aliased. A degenerate figure draws nothing.
    void DrawBitmapInQuad(reference_pointer<art_bitmap> Source, const int_rectangle &SourceRectangle,
                          const point2d Corners[4]);

    agg::rendering_buffer &GetRenderingBuffer() { return RenderingBuffer; }
    art_pixfmt_rgba &GetPixelFormat() { return PixelFormat; }
    art_renderer_base &GetBaseRenderer() { return BaseRenderer; }
    art_renderer_solid &GetSolidRenderer() { return SolidRenderer; }

private:
    void AttachRenderers();
    // Whether the rows lie end to end, so that the pixels are one run.
    bool IsOneRun() const { return Stride == Size.X * 4; }
    // A source rectangle in AGG's inclusive corners.
    static agg::rect_i ToAggRectangle(const int_rectangle &Rectangle);
    // The rest take a null SourceArea for the whole source.
    void CopyBitmapArea(int X, int Y, reference_pointer<art_bitmap> Source, const agg::rect_i *SourceArea);
    // SourceRuns may be null.
    void BlendBitmapArea(int X, int Y, reference_pointer<art_bitmap> Source, const agg::rect_i *SourceArea,
                         uint8_t Opacity, const art_alpha_runs *SourceRuns);
    // Whether the stores of the two meet anywhere from first pixel to last; the gaps between the
    // rows of a view count, which errs on the safe side.
    bool SharesMemoryWith(const art_bitmap &Other) const;
    void CompositeBitmapArea(int X, int Y, reference_pointer<art_bitmap> Source, const agg::rect_i *SourceArea,
                             uint8_t Opacity, art_comp_op Operation);

    // Empty in a view.
    array<agg::rgba8> Pixels;
    bool View;
    uint8_t *Data;
    int32_t Stride;
    int_point2d Size;
    agg::rendering_buffer RenderingBuffer;
    art_pixfmt_rgba PixelFormat;
    art_renderer_base BaseRenderer;
    art_renderer_solid SolidRenderer;
};
