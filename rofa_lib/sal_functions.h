#pragma once

#include <cstddef>

#include "rofa_lib/bitmap_interface.h"
#include "zel_basics/lwpointers.h"
#include "zel_basics/zel_string.h"

// The layer's services that need no window. Each platform binding implements them.

// Seconds on a monotonic clock with millisecond grain. Safe from any thread.
double SALGetTime();

// Called at the end of every tick of the application.
void SALFrameDone();

// Tells the system that the Bytes at Data, a large block about to be written whole (a picture's
// pixels), is best backed by large pages: a few faults on first touch instead of thousands. Only
// advice: a platform without it does nothing.
void SALAdviseLargeBlock(void *Data, size_t Bytes);

// Replaces the whole clipboard with Text as plain 8-bit text.
void SALCopyTextToClipboard(zel_string Text);
bool SALClipboardHasText();
// The clipboard's text up to its first zero byte; empty when it holds no text.
zel_string SALPasteTextFromClipboard();
bool SALClipboardHasBitmap();
// The clipboard's bitmap as 32-bit pixels red, green, blue, alpha, or a null pointer when it holds none.
ownership_pointer<bitmap_interface> SALPasteBitmapFromClipboard();
