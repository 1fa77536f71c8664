#pragma once

#include "rofa_linux_sal/linux_clipboard.h"
#include "zel_basics/point2d.h"

// The clipboard of a process without a window system: what was copied inside the process, and a
// bitmap that the host or a test puts there.
class in_process_clipboard : public linux_clipboard
{
public:
    in_process_clipboard();

    void CopyText(zel_string Text) override;
    bool HasText() override { return TextAvailable; }
    zel_string PasteText() override { return Text; }
    bool HasBitmap() override { return BitmapAvailable; }
    ownership_pointer<bitmap_interface> PasteBitmap() override;

    // Keeps a copy of the pixels, so the bitmap may die afterwards. Replaces everything held.
    void CopyBitmap(reference_pointer<bitmap_interface> Bitmap);
    void Clear();

private:
    bool TextAvailable;
    zel_string Text;
    bool BitmapAvailable;
    int_point2d BitmapSize;
    // Top-down lines of four bytes a pixel, without padding.
    zel_string BitmapPixels;
};

// The one in-process clipboard, the default of GetLinuxClipboard.
in_process_clipboard &GetInProcessClipboard();
