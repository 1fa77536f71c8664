#pragma once

#include <cstdint>

#include "art_engine/images/art_animated_bitmap.h"
#include "art_engine/images/art_image_library.h"
#include "art_engine/pixels/art_bitmap.h"
#include "zel_basics/lwpointers.h"
#include "zel_basics/zel_string.h"

struct FIBITMAP;

// Format codes of image files; they are stored in documents and preferences, so they never change.
constexpr int ArtImageFormatJPEG = 0;
constexpr int ArtImageFormatPNG = 1;
constexpr int ArtImageFormatGIF = 5;

// Every image file is read and written from memory. Decoded pictures are art_bitmaps: rows top-down,
// bytes R, G, B, A, premultiplied.

// A null result, never an exception, when the bytes are of no known format, do not decode, end
// before their picture does, or state a picture above the limit; the reason goes to the log. Formats
// whose picture size cannot be read before decoding are not opened. With MinimumLongSide above 0, a
// JPEG may come out smaller, at a half, a quarter or an eighth of its size: the smallest of these at
// which the longer side, before its rounding up to whole pixels, is still at least MinimumLongSide.
// Other formats come out whole.
ownership_pointer<art_bitmap> LoadImageFromString(const zel_string &Data, int MinimumLongSide = 0);
// Every page composed onto the canvas in turn. A null result when the bytes hold no readable
// multi-page image; the reason goes to the log.
ownership_pointer<art_animated_bitmap> LoadAnimatedImageFromString(const zel_string &Data);
// True for a GIF of more than one page.
bool IsAnimatedImage(const zel_string &Data);
// The picture size that the file states, read without decoding its pixels (the canvas of a GIF);
// false when the bytes are of no known format or state no size.
bool ReadImageSize(const zel_string &Data, int_point2d &Size);

// Replaces Target with the encoded file. Quality is for JPEG, 1 to 100, and -1 for the default of 75.
// A failure of the image library throws zel_error, and so does GIF until this build has a GIF writer.
void SaveImageToString(zel_string &Target, reference_pointer<art_bitmap> Bitmap, int Format, int Quality = -1);
// Stores a PNG in Target when one fits within MaximumBytes (unless ForceJPEG) and answers true;
// otherwise the best JPEG quality that fits, or, when none does, the smallest JPEG tried, and false.
bool SaveImageUnderSize(zel_string &Target, reference_pointer<art_bitmap> Bitmap, int MaximumBytes, bool ForceJPEG);
// "jpg", "png" or "gif"; any other code asserts.
zel_string GetImageExtension(int Format);
// Writes the encoded file to Name, adding "." and the extension when AddExtension is set.
void SaveImageToFile(reference_pointer<art_bitmap> Bitmap, zel_string Name, bool AddExtension, int Format);

// Turns an image-library bitmap of any depth into a straight-alpha art_bitmap (not premultiplied),
// and unloads Source when UnloadSource is set.
ownership_pointer<art_bitmap> ConvertFIBitmapToArtBitmap(FIBITMAP *Source, bool UnloadSource);
