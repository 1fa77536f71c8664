#include <algorithm>

#include "art_engine/images/art_free_image_handles.h"
#include "art_engine/images/art_image_codecs.h"
#include "art_engine/images/art_image_codecs_support.h"
#include "zel_basics/debug.h"
#include "zel_basics/zel_error.h"

namespace {

// A frame shorter than this is shown this long: browsers do the same, and a frame time of 0 would
// otherwise make a frame that is never seen.
constexpr double ShortestFrameTime = 1.0 / 30.0;

constexpr int DisposeToBackground = 2;

// What the animation tags of one page say. Logical sizes are 0 where the page has none.
struct gif_page_tags
{
    int DisposalMethod = 0;
    int FrameLeft = 0;
    int FrameTop = 0;
    int LogicalWidth = 0;
    int LogicalHeight = 0;
    double FrameTime = 0;
};

// The first value of an integer tag, by its type: 1 bytes, 3 16-bit words, 4 32-bit words. False for
// any other type, or a tag without a value.
bool ReadTagInteger(FITAG *Tag, int64_t &Value)
{
    const void *Data = FreeImage_GetTagValue(Tag);
    if (Data == nullptr || FreeImage_GetTagCount(Tag) < 1)
        return false;
    switch (FreeImage_GetTagType(Tag)) {
    case FIDT_BYTE:
        Value = *static_cast<const uint8_t *>(Data);
        return true;
    case FIDT_SHORT:
        Value = *static_cast<const uint16_t *>(Data);
        return true;
    case FIDT_LONG:
        Value = *static_cast<const uint32_t *>(Data);
        return true;
    default:
        return false;
    }
}

class metadata_search
{
public:
    metadata_search(FIBITMAP *Bitmap, FITAG *&FirstTag)
        : Search(FreeImage_FindFirstMetadata(FIMD_ANIMATION, Bitmap, &FirstTag))
    {
    }
    metadata_search(const metadata_search &) = delete;
    metadata_search &operator=(const metadata_search &) = delete;
    ~metadata_search()
    {
        if (Search != nullptr)
            FreeImage_FindCloseMetadata(Search);
    }
    FIMETADATA *Get() const { return Search; }

private:
    FIMETADATA *Search;
};

gif_page_tags ReadPageTags(FIBITMAP *FIBitmap)
{
    gif_page_tags Tags;
    FITAG *Tag = nullptr;
    metadata_search Search(FIBitmap, Tag);
    if (Search.Get() == nullptr)
        return Tags;
    do {
        int64_t Value = 0;
        if (Tag == nullptr || FreeImage_GetTagKey(Tag) == nullptr || !ReadTagInteger(Tag, Value))
            continue;
        zel_string Key = zel_string(FreeImage_GetTagKey(Tag)).ToLower();
        if (Key == "disposalmethod")
            Tags.DisposalMethod = static_cast<int>(Value);
        else if (Key == "frameleft")
            Tags.FrameLeft = static_cast<int>(Value);
        else if (Key == "frametop")
            Tags.FrameTop = static_cast<int>(Value);
        else if (Key == "logicalwidth")
            Tags.LogicalWidth = static_cast<int>(Value);
        else if (Key == "logicalheight")
            Tags.LogicalHeight = static_cast<int>(Value);
        else if (Key == "frametime")
            Tags.FrameTime = double(Value) * 0.001;
    } while (FreeImage_FindNextMetadata(Search.Get(), &Tag));
    return Tags;
}

ownership_pointer<art_bitmap> CopyOf(reference_pointer<art_bitmap> Bitmap)
{
    return ownership_pointer<art_bitmap>(new art_bitmap(reference_pointer<bitmap_interface>(Bitmap.Get())));
}

// Bitmap in the top left corner of a transparent bitmap of at least Size; Bitmap itself when it
// already covers Size.
ownership_pointer<art_bitmap> Enlarged(ownership_pointer<art_bitmap> Bitmap, int_point2d Size)
{
    int_point2d OldSize = Bitmap->GetSize();
    if (OldSize.X >= Size.X && OldSize.Y >= Size.Y)
        return Bitmap;
    ownership_pointer<art_bitmap> Larger(new art_bitmap(std::max(OldSize.X, Size.X), std::max(OldSize.Y, Size.Y)));
    Larger->Clear(agg::rgba8(0, 0, 0, 0));
    Larger->CopyBitmap(0, 0, Bitmap);
    return Larger;
}

ownership_pointer<art_animated_bitmap> DecodeAnimation(FIMULTIBITMAP *MultiBitmap)
{
    int PageCount = FreeImage_GetPageCount(MultiBitmap);
    if (PageCount < 1)
        throw zel_error("The animation has no frames.");
    ownership_pointer<art_animated_bitmap> Animation(new art_animated_bitmap());
    double RunningTime = 0;
    int_point2d CanvasSize(0, 0);
    ownership_pointer<art_bitmap> Canvas;
    for (int Page = 0; Page < PageCount; Page++) {
        gif_page_tags Tags;
        ownership_pointer<art_bitmap> PageBitmap;
        {
            free_image_locked_page Locked(MultiBitmap, Page);
            FIBITMAP *FIBitmap = Locked.Get();
            TOVAS_ASSERT(FIBitmap, nullptr);
            Tags = ReadPageTags(FIBitmap);
            PageBitmap = ConvertFIBitmapToArtBitmap(FIBitmap, false);
        }
        PremultiplyBitmap(PageBitmap);
        int_point2d PageSize = PageBitmap->GetSize();
        if (Page == 0)
            CanvasSize = PageSize;
        CanvasSize.X = std::max(CanvasSize.X, Tags.LogicalWidth);
        CanvasSize.Y = std::max(CanvasSize.Y, Tags.LogicalHeight);
        double StartTime = RunningTime;
        RunningTime += std::max(Tags.FrameTime, ShortestFrameTime);

        if (!Canvas.IsSet()) {
            TOVAS_ASSERT(Page==0, nullptr);
            if (PageSize == CanvasSize) {
                Canvas = PageBitmap;
            } else {
                Canvas.Reset(new art_bitmap(CanvasSize.X, CanvasSize.Y));
                Canvas->Clear(agg::rgba8(0, 0, 0, 0));
                Canvas->BlendBitmap(Tags.FrameLeft, Tags.FrameTop, PageBitmap, 255);
            }
        } else {
            Canvas = Enlarged(Canvas, int_point2d(Tags.FrameLeft + PageSize.X, Tags.FrameTop + PageSize.Y));
            Canvas->BlendBitmap(Tags.FrameLeft, Tags.FrameTop, PageBitmap, 255);
        }
        int_point2d Composed = Canvas->GetSize();
        if (int64_t(Composed.X) * Composed.Y * (Page + 1) > GetAnimationMaximumPixels())
            throw zel_error(zel_string("The animation is too large to open: ") + zel_string::FromInt(PageCount) +
                            " frames of " + zel_string::FromInt(Composed.X) + " x " +
                            zel_string::FromInt(Composed.Y) + " pixels.");
        Animation->Frames.Add(CopyOf(Canvas));
        Animation->FrameTimes.Add(StartTime);
        if (Tags.DisposalMethod == DisposeToBackground)
            Canvas->Clear(agg::rgba8(0, 0, 0, 0));
    }
    Animation->TotalTime = RunningTime;
    // A frame that reached past the canvas grew it; the frames before it grow to match, so that
    // every frame has the one size.
    int_point2d FinalSize = Canvas->GetSize();
    for (int I = 0; I < Animation->GetNumberOfFrames(); I++)
        Animation->Frames[I] = Enlarged(Animation->Frames[I], FinalSize);
    return Animation;
}

} // namespace

ownership_pointer<art_animated_bitmap> LoadAnimatedImageFromString(const zel_string &Data)
{
    SetImageLibraryMessageHook();
    FIMEMORY *FIMemoryHandle = OpenMemoryOver(Data);
    TOVAS_ASSERT(FIMemoryHandle, nullptr);
    free_image_memory Memory(FIMemoryHandle);
    try {
        if (FreeImage_GetFileTypeFromMemory(FIMemoryHandle, 0) != FIF_GIF) {
            LogImageLoadError(Data, "The bytes are not a GIF file.");
            return ownership_pointer<art_animated_bitmap>();
        }
        zel_string Refusal = CheckImageSize(FIF_GIF, FIMemoryHandle, Data);
        if (!Refusal.IsEmpty()) {
            LogImageLoadError(Data, Refusal);
            return ownership_pointer<art_animated_bitmap>();
        }
        free_image_multi_bitmap MultiBitmap(FreeImage_LoadMultiBitmapFromMemory(FIF_GIF, FIMemoryHandle, 0));
        if (MultiBitmap.Get() == nullptr) {
            LogImageLoadError(Data, GetImageLibraryMessage());
            return ownership_pointer<art_animated_bitmap>();
        }
        return DecodeAnimation(MultiBitmap.Get());
    } catch (const zel_error &Error) {
        LogImageLoadError(Data, Error.GetMessage() + ImageLibraryErrorText());
        return ownership_pointer<art_animated_bitmap>();
    }
}

bool IsAnimatedImage(const zel_string &Data)
{
    SetImageLibraryMessageHook();
    FIMEMORY *FIMemoryHandle = OpenMemoryOver(Data);
    TOVAS_ASSERT(FIMemoryHandle, nullptr);
    free_image_memory Memory(FIMemoryHandle);
    if (FreeImage_GetFileTypeFromMemory(FIMemoryHandle, 0) != FIF_GIF)
        return false;
    free_image_multi_bitmap MultiBitmap(FreeImage_LoadMultiBitmapFromMemory(FIF_GIF, FIMemoryHandle, 0));
    return MultiBitmap.Get() != nullptr && FreeImage_GetPageCount(MultiBitmap.Get()) > 1;
}
