// Arbitrary bytes through the image decoders: single pictures, animations and the test for
// animation. A decoded picture must keep the engine's premultiplied invariant and survive a PNG
// round trip; an animation must have frames of one size at rising times. Any outcome but a null
// result or a picture that holds to that (a crash, a sanitizer report, any exception) is a finding.
#include <cstddef>
#include <cstdint>

#include "art_engine/images/art_animated_bitmap.h"
#include "art_engine/images/art_image_codecs.h"
#include "zel_basics/zel_string.h"

namespace {

void CheckPremultiplied(art_bitmap &Bitmap)
{
    Bitmap.ForEachPixel([](agg::rgba8 *Pixel) {
        if (Pixel->r > Pixel->a || Pixel->g > Pixel->a || Pixel->b > Pixel->a)
            __builtin_trap();
    });
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *Data, size_t Size)
{
    // Pictures of a few hundred thousand pixels reach every path; larger ones only make each run slow.
    static bool LimitsSet = (SetImageSizeLimits(int64_t(1) << 18, int64_t(1) << 20), true);
    (void)LimitsSet;
    zel_string Bytes(reinterpret_cast<const char *>(Data), static_cast<int>(Size));
    ownership_pointer<art_bitmap> Bitmap = LoadImageFromString(Bytes);
    if (Bitmap.IsSet()) {
        CheckPremultiplied(*Bitmap);
        zel_string Png;
        SaveImageToString(Png, Bitmap, ArtImageFormatPNG);
        ownership_pointer<art_bitmap> Back = LoadImageFromString(Png);
        if (!Back.IsSet() || !(Back->GetSize() == Bitmap->GetSize()))
            __builtin_trap();
    }
    if (IsAnimatedImage(Bytes)) {
        ownership_pointer<art_animated_bitmap> Animation = LoadAnimatedImageFromString(Bytes);
        if (Animation.IsSet()) {
            int Frames = Animation->GetNumberOfFrames();
            if (Frames < 1 || Animation->FrameTimes.GetNumberOfElements() != Frames)
                __builtin_trap();
            for (int I = 0; I < Frames; I++) {
                if (!(Animation->Frames[I]->GetSize() == Animation->Frames[0]->GetSize()))
                    __builtin_trap();
                if (I > 0 && !(Animation->FrameTimes[I] >= Animation->FrameTimes[I - 1] + 1.0 / 30.0 - 1e-9))
                    __builtin_trap();
                CheckPremultiplied(*Animation->Frames[I]);
            }
            if (Animation->TotalTime < Animation->FrameTimes[Frames - 1])
                __builtin_trap();
        }
    }
    return 0;
}
