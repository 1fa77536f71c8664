#pragma once

#include <cstdint>

#include "zel_basics/zel_string.h"

// The image library's state is the process's: the limits that every decoder checks, and the one hook
// through which the library reports failures.

// The largest picture, in pixels, that is decoded: a damaged or hostile header could otherwise ask
// for gigabytes before a single pixel has been read. Animations count their canvas and each frame.
constexpr int64_t ArtImageMaximumPixels = int64_t(1) << 26;
// All frames of an animation together, since each frame is kept as a whole picture.
constexpr int64_t ArtAnimationMaximumPixels = int64_t(1) << 28;
// Replaces the two limits above, for a harness that feeds many hostile files and must stay fast.
void SetImageSizeLimits(int64_t MaximumPixels, int64_t MaximumAnimationPixels);
int64_t GetImageMaximumPixels();
int64_t GetAnimationMaximumPixels();

// The image library reports failures through one global hook. SetImageLibraryMessageHook installs
// it and forgets the message kept so far; GetImageLibraryMessage gives the last message since then,
// with " (Format=name)" in front when the library named a format, or an empty string.
void SetImageLibraryMessageHook();
zel_string GetImageLibraryMessage();
