#include "art_engine/images/art_image_library.h"

#include <FreeImage.h>

namespace {

int64_t ImageMaximumPixels = ArtImageMaximumPixels;
int64_t AnimationMaximumPixels = ArtAnimationMaximumPixels;

zel_string &KeptImageLibraryMessage()
{
    static zel_string Message;
    return Message;
}

void KeepImageLibraryMessage(FREE_IMAGE_FORMAT Format, const char *Message)
{
    zel_string Text;
    if (Format != FIF_UNKNOWN) {
        const char *FormatName = FreeImage_GetFormatFromFIF(Format);
        Text = zel_string(" (Format=") + (FormatName != nullptr ? FormatName : "") + ")";
    }
    KeptImageLibraryMessage() = Text + (Message != nullptr ? Message : "");
}

} // namespace

void SetImageSizeLimits(int64_t MaximumPixels, int64_t MaximumAnimationPixels)
{
    ImageMaximumPixels = MaximumPixels;
    AnimationMaximumPixels = MaximumAnimationPixels;
}

int64_t GetImageMaximumPixels()
{
    return ImageMaximumPixels;
}

int64_t GetAnimationMaximumPixels()
{
    return AnimationMaximumPixels;
}

void SetImageLibraryMessageHook()
{
    KeptImageLibraryMessage() = zel_string();
    FreeImage_SetOutputMessage(KeepImageLibraryMessage);
}

zel_string GetImageLibraryMessage()
{
    return KeptImageLibraryMessage();
}
