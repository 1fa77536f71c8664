#pragma once

#include <cstdint>

#include <FreeImage.h>

#include "art_engine/pixels/art_bitmap.h"
#include "zel_basics/lwpointers.h"
#include "zel_basics/zel_string.h"

// What the decoders of single and animated images share.

// A read-only memory stream over the string's bytes; the string outlives the stream.
FIMEMORY *OpenMemoryOver(const zel_string &Data);

// "\n\tFreeImage Error: " and the message that the image library left, for error texts.
zel_string ImageLibraryErrorText();

// The log line of a file that gave no picture, on one line whatever Reason holds.
void LogImageLoadError(const zel_string &Data, const zel_string &Reason);

// Turns straight alpha into the engine's premultiplied pixels.
void PremultiplyBitmap(reference_pointer<art_bitmap> Bitmap);

// What a GIF's blocks say about its size, read without decoding: the largest frame, and the canvas
// that the logical screen and every frame at its offset cover.
struct gif_extent
{
    int64_t LargestFramePixels;
    int64_t CanvasWidth;
    int64_t CanvasHeight;
};
gif_extent ScanGIFExtent(const zel_string &Data);

// An empty string when the picture that the file's header states fits within GetImageMaximumPixels();
// else the reason for refusing it. Leaves the stream at its start.
zel_string CheckImageSize(FREE_IMAGE_FORMAT Format, FIMEMORY *Memory, const zel_string &Data);
