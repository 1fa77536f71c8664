#include "art_engine/pixels/art_bitmap.h"

#include <cstring>

#include "art_engine/pixels/art_alpha_runs.h"
#include "art_engine/pixels/art_blend.h"
#include "art_engine/pixels/art_stack_mode.h"
#include "rofa_lib/sal_functions.h"
#include "zel_basics/debug.h"
#include "zel_basics/zel_error.h"

art_bitmap::art_bitmap()
    : Pixels(1), View(false), Data(reinterpret_cast<uint8_t *>(Pixels.GetData())), Stride(0),
      PixelFormat(RenderingBuffer), BaseRenderer(PixelFormat), SolidRenderer(BaseRenderer)
{
    AttachRenderers();
}

art_bitmap::art_bitmap(reference_pointer<art_bitmap> Parent, const int_rectangle &Part)
    : Pixels(1), View(true), Data(nullptr), Stride(Parent->GetPixelStride()), Size(Part.Size),
      PixelFormat(RenderingBuffer), BaseRenderer(PixelFormat), SolidRenderer(BaseRenderer)
{
    TOVAS_ASSERT(int_rectangle(int_point2d(), Parent->GetSize()).Contains(Part), this);
    Data = Parent->GetPixelData() + ptrdiff_t(Part.Location.Y) * Stride + ptrdiff_t(Part.Location.X) * 4;
    AttachRenderers();
}

art_bitmap::art_bitmap(int Width, int Height) : art_bitmap() { SetSize(Width, Height); }

art_bitmap::art_bitmap(reference_pointer<bitmap_interface> Source) : art_bitmap()
{
    TOVAS_ASSERT(Source->GetBitsPerPixel()==GetBitsPerPixel(), this);
    int_point2d SourceSize = Source->GetSize();
    SetSize(SourceSize.X, SourceSize.Y);
    const uint8_t *FirstLine = Source->GetFirstLine();
    ptrdiff_t SourceStride = Source->GetLineStride();
    size_t RowBytes = size_t(Size.X) * size_t(Source->GetBytesPerPixel());
    if (RowBytes > 0) {
        for (int Y = 0; Y < Size.Y; Y++)
            std::memcpy(GetPixelRow(Y), FirstLine + Y * SourceStride, RowBytes);
    }
    if (!Source->IsPremultiplied())
        ForEachPixel([](agg::rgba8 *Pixel) { PremultiplyPixel(*Pixel); });
}

void art_bitmap::SetSize(int Width, int Height)
{
    TOVAS_ASSERT(!View, this);
    int64_t Product = int64_t(Width) * Height;
    // A side alone is held to the limit too, since the row's bytes must fit in an int.
    if (Product > MaximumPixels || Width > MaximumPixels || Height > MaximumPixels)
        throw zel_error("A picture of " + zel_string::FromInt(Width) + " by " + zel_string::FromInt(Height) +
                        " pixels is too large to draw.");
    int NewArraySize = Product < 0 ? -1 : static_cast<int>(Product);
    TOVAS_ASSERT(NewArraySize>=0, this);
    int OldArraySize = Pixels.GetNumberOfElements();
    if (NewArraySize > Pixels.GetReservedSize()) {
        Pixels.Reserve(NewArraySize);
        SALAdviseLargeBlock(Pixels.GetData(), size_t(NewArraySize) * sizeof(agg::rgba8));
    }
    if (NewArraySize < OldArraySize) {
        Pixels.SetNumberOfElements(NewArraySize, agg::rgba8(0, 0, 0, 0));
        // The array puts its default element into the places it frees, and AGG's pixel leaves its
        // bytes undefined by default; transparent black makes the stale pixels the same every time.
        std::memset(static_cast<void *>(Pixels.GetData() + NewArraySize), 0,
                    size_t(OldArraySize - NewArraySize) * sizeof(agg::rgba8));
    }
    // Growth hands out places without writing them: a caller that wants a clean bitmap clears it.
    while (Pixels.GetNumberOfElements() < NewArraySize)
        Pixels.AddEmpty();
    Size = int_point2d(Width, Height);
    Data = reinterpret_cast<uint8_t *>(Pixels.GetData());
    Stride = Width * 4;
    AttachRenderers();
}

void art_bitmap::AttachRenderers()
{
    RenderingBuffer.attach(Data, unsigned(Size.X), unsigned(Size.Y), Stride);
    PixelFormat.attach(RenderingBuffer);
    BaseRenderer.attach(PixelFormat);
    SolidRenderer.attach(BaseRenderer);
}

bool art_bitmap::HasTransparency()
{
    for (int Y = 0; Y < Size.Y; Y++) {
        const agg::rgba8 *Row = GetPixelRow(Y);
        for (int X = 0; X < Size.X; X++) {
            if (Row[X].a < 255)
                return true;
        }
    }
    return false;
}

namespace {

// Four equal bytes (opaque white, transparent black, the common backgrounds) are a byte fill; any
// other pattern is written once and then doubled by copies, up to a piece that stays in the
// first-level cache, which is then copied on along the run.
void FillRun(uint8_t *Run, size_t Bytes, const agg::rgba8 &Value)
{
    if (Value.r == Value.g && Value.g == Value.b && Value.b == Value.a) {
        std::memset(Run, Value.r, Bytes);
        return;
    }
    const size_t PieceBytes = 4096;
    std::memcpy(Run, &Value, sizeof(agg::rgba8));
    size_t Done = sizeof(agg::rgba8);
    while (Done < Bytes) {
        size_t Step = Done < PieceBytes ? Done : PieceBytes;
        Step = Step < Bytes - Done ? Step : Bytes - Done;
        std::memcpy(Run + Done, Run, Step);
        Done += Step;
    }
}

} // namespace

// An own store is one run; a view's rows each are one.
void art_bitmap::Clear(const agg::rgba8 &Value)
{
    size_t RowBytes = size_t(Size.X) * sizeof(agg::rgba8);
    if (RowBytes == 0 || Size.Y == 0)
        return;
    if (IsOneRun()) {
        FillRun(Data, RowBytes * size_t(Size.Y), Value);
        return;
    }
    for (int Y = 0; Y < Size.Y; Y++)
        FillRun(reinterpret_cast<uint8_t *>(GetPixelRow(Y)), RowBytes, Value);
}

agg::rect_i art_bitmap::ToAggRectangle(const int_rectangle &Rectangle)
{
    return agg::rect_i(Rectangle.Location.X, Rectangle.Location.Y, Rectangle.Location.X + Rectangle.Size.X - 1,
                       Rectangle.Location.Y + Rectangle.Size.Y - 1);
}

void art_bitmap::CopyBitmap(int X, int Y, reference_pointer<art_bitmap> Source)
{
    CopyBitmapArea(X, Y, Source, nullptr);
}

void art_bitmap::CopyBitmap(int X, int Y, reference_pointer<art_bitmap> Source, const int_rectangle &SourceRectangle)
{
    agg::rect_i Area = ToAggRectangle(SourceRectangle);
    CopyBitmapArea(X, Y, Source, &Area);
}

void art_bitmap::BlendBitmap(int X, int Y, reference_pointer<art_bitmap> Source, uint8_t Opacity)
{
    BlendBitmapArea(X, Y, Source, nullptr, Opacity, nullptr);
}

void art_bitmap::BlendBitmap(int X, int Y, reference_pointer<art_bitmap> Source, const int_rectangle &SourceRectangle,
                             uint8_t Opacity)
{
    agg::rect_i Area = ToAggRectangle(SourceRectangle);
    BlendBitmapArea(X, Y, Source, &Area, Opacity, nullptr);
}

void art_bitmap::BlendBitmap(int X, int Y, reference_pointer<art_bitmap> Source, const int_rectangle &SourceRectangle,
                             uint8_t Opacity, const art_alpha_runs &SourceRuns)
{
    agg::rect_i Area = ToAggRectangle(SourceRectangle);
    BlendBitmapArea(X, Y, Source, &Area, Opacity, &SourceRuns);
}

void art_bitmap::CompositeBitmap(int X, int Y, reference_pointer<art_bitmap> Source, uint8_t Opacity,
                                 art_comp_op Operation)
{
    CompositeBitmapArea(X, Y, Source, nullptr, Opacity, Operation);
}

void art_bitmap::CompositeBitmap(int X, int Y, reference_pointer<art_bitmap> Source,
                                 const int_rectangle &SourceRectangle, uint8_t Opacity, art_comp_op Operation)
{
    agg::rect_i Area = ToAggRectangle(SourceRectangle);
    CompositeBitmapArea(X, Y, Source, &Area, Opacity, Operation);
}

// AGG's renderer_base takes the offset from the source rectangle to the target, and does the
// clipping and the choice of row order.

void art_bitmap::CopyBitmapArea(int X, int Y, reference_pointer<art_bitmap> Source, const agg::rect_i *SourceArea)
{
    art_bitmap *SourceBitmap = Source.operator->();
    int DX = SourceArea != nullptr ? X - SourceArea->x1 : X;
    int DY = SourceArea != nullptr ? Y - SourceArea->y1 : Y;
    BaseRenderer.copy_from(SourceBitmap->RenderingBuffer, SourceArea, DX, DY);
}

// The rows are those of AGG's renderer_base::blend_from, walked here directly: a repaint from the
// render cache composes thousands of short rows, and the per-row calls showed.
void art_bitmap::BlendBitmapArea(int X, int Y, reference_pointer<art_bitmap> Source, const agg::rect_i *SourceArea,
                                 uint8_t Opacity, const art_alpha_runs *SourceRuns)
{
    art_bitmap *SourceBitmap = Source.operator->();
    // Source and target rectangles with their far ends exclusive, as AGG's clipping takes them.
    agg::rect_i From(0, 0, SourceBitmap->Size.X, SourceBitmap->Size.Y);
    if (SourceArea != nullptr)
        From = agg::rect_i(SourceArea->x1, SourceArea->y1, SourceArea->x2 + 1, SourceArea->y2 + 1);
    agg::rect_i To(X, Y, X + From.x2 - From.x1, Y + From.y2 - From.y1);
    agg::rect_i Area = BaseRenderer.clip_rect_area(To, From, SourceBitmap->Size.X, SourceBitmap->Size.Y);
    if (Area.x2 <= 0 || Area.y2 <= 0)
        return;
    TOVAS_ASSERT(SourceRuns==nullptr || SourceRuns->GetSize()==SourceBitmap->GetSize(), this);
    if (SourceRuns != nullptr && !SharesMemoryWith(*SourceBitmap)) {
        // Apart from the target, the source cannot change under the blend, and every pixel's result
        // stands alone, so that the runs may go in any order.
        ptrdiff_t SourceStride = SourceBitmap->Stride;
        SourceRuns->ForEachRun(
            From.y1, From.y1 + Area.y2, From.x1, From.x1 + Area.x2,
            [&](art_alpha_runs::run_kind Kind, int32_t Top, int32_t Rows, int32_t Start, int32_t Length) {
                if (Kind == art_alpha_runs::Transparent)
                    return;
                uint8_t *Target =
                    Data + ptrdiff_t(To.y1 + Top - From.y1) * Stride + ptrdiff_t(To.x1 + Start - From.x1) * 4;
                const uint8_t *Colors = SourceBitmap->Data + ptrdiff_t(Top) * SourceStride + ptrdiff_t(Start) * 4;
                bool Copy = Kind == art_alpha_runs::Opaque && Opacity == 255;
                for (int32_t Row = 0; Row < Rows; Row++, Target += Stride, Colors += SourceStride) {
                    if (Copy)
                        std::memcpy(Target, Colors, size_t(Length) * 4);
                    else
                        BlendColorSpan(Target, Colors, unsigned(Length), nullptr, Opacity);
                }
            });
        return;
    }
    // Bottom to top when the target lies lower, so that no row is read after it was written.
    int Step = To.y1 > From.y1 ? -1 : 1;
    bool TargetFurtherRight = To.x1 > From.x1;
    for (int Row = Step < 0 ? Area.y2 - 1 : 0; Row >= 0 && Row < Area.y2; Row += Step) {
        BlendColorRow(Data + ptrdiff_t(To.y1 + Row) * Stride + ptrdiff_t(To.x1) * 4,
                      SourceBitmap->Data + ptrdiff_t(From.y1 + Row) * SourceBitmap->Stride + ptrdiff_t(From.x1) * 4,
                      unsigned(Area.x2), Opacity, TargetFurtherRight);
    }
}

bool art_bitmap::SharesMemoryWith(const art_bitmap &Other) const
{
    auto End = [](const art_bitmap &Bitmap) {
        return reinterpret_cast<uintptr_t>(Bitmap.Data) + uintptr_t(Bitmap.Size.Y - 1) * uintptr_t(Bitmap.Stride) +
               uintptr_t(Bitmap.Size.X) * 4;
    };
    return reinterpret_cast<uintptr_t>(Data) < End(Other) && reinterpret_cast<uintptr_t>(Other.Data) < End(*this);
}

void art_bitmap::CompositeBitmapArea(int X, int Y, reference_pointer<art_bitmap> Source, const agg::rect_i *SourceArea,
                                     uint8_t Opacity, art_comp_op Operation)
{
    art_bitmap *SourceBitmap = Source.operator->();
    TOVAS_ASSERT(Operation>=0 && Operation<CompOpCount, this);
    art_pixfmt_composite_rgba Composite(RenderingBuffer, Operation);
    agg::renderer_base<art_pixfmt_composite_rgba> Renderer(Composite);
    int DX = SourceArea != nullptr ? X - SourceArea->x1 : X;
    int DY = SourceArea != nullptr ? Y - SourceArea->y1 : Y;
    Renderer.blend_from(SourceBitmap->PixelFormat, SourceArea, DX, DY, Opacity);
}

void art_bitmap::ApplyStencil(reference_pointer<art_bitmap> StencilBitmap)
{
    int PixelsPerLine = Size.X;
    int NumLines = Size.Y;
    TOVAS_ASSERT(PixelsPerLine==StencilBitmap->GetSize().X, this);
    TOVAS_ASSERT(NumLines==StencilBitmap->GetSize().Y, this);
    if (IsOneRun() && StencilBitmap->IsOneRun()) {
        ApplyStencilToPixels(Data, StencilBitmap->Data, size_t(PixelsPerLine) * size_t(NumLines));
        return;
    }
    for (int Y = 0; Y < NumLines; Y++) {
        ApplyStencilToPixels(reinterpret_cast<uint8_t *>(GetPixelRow(Y)),
                             reinterpret_cast<uint8_t *>(StencilBitmap->GetPixelRow(Y)), size_t(PixelsPerLine));
    }
}

void art_bitmap::ColorizeStencilLayer(int StackMode)
{
    if (StackMode == StackModePlusStencil)
        ForEachPixel([](agg::rgba8 *Pixel) { Pixel->r = Pixel->g = Pixel->b = Pixel->a; });
    else if (StackMode == StackModeMinusStencil)
        ForEachPixel([](agg::rgba8 *Pixel) { Pixel->r = Pixel->g = Pixel->b = 0; });
}
