#include "rofa_linux_sal/in_process_clipboard.h"

#include <cstring>

#include "rofa_linux_sal/linux_bitmap.h"

in_process_clipboard::in_process_clipboard() : TextAvailable(false), BitmapAvailable(false) {}

void in_process_clipboard::CopyText(zel_string NewText)
{
    Clear();
    Text = NewText;
    TextAvailable = true;
}

void in_process_clipboard::CopyBitmap(reference_pointer<bitmap_interface> Bitmap)
{
    Clear();
    BitmapSize = Bitmap->GetSize();
    int LineBytes = BitmapSize.X * 4;
    BitmapPixels = zel_string('\0', LineBytes * BitmapSize.Y);
    uint8_t *Line = Bitmap->GetFirstLine();
    for (int Y = 0; Y < BitmapSize.Y && LineBytes > 0; Y++, Line += Bitmap->GetLineStride())
        memcpy(&BitmapPixels[Y * LineBytes], Line, static_cast<size_t>(LineBytes));
    BitmapAvailable = true;
}

ownership_pointer<bitmap_interface> in_process_clipboard::PasteBitmap()
{
    if (!BitmapAvailable)
        return ownership_pointer<bitmap_interface>();
    ownership_pointer<bitmap_interface> Bitmap(new linux_bitmap(BitmapSize));
    if (BitmapPixels.GetLength() > 0)
        memcpy(Bitmap->GetFirstLine(), BitmapPixels.GetString(), static_cast<size_t>(BitmapPixels.GetLength()));
    return Bitmap;
}

void in_process_clipboard::Clear()
{
    TextAvailable = false;
    Text = zel_string();
    BitmapAvailable = false;
    BitmapSize = int_point2d();
    BitmapPixels = zel_string();
}

in_process_clipboard &GetInProcessClipboard()
{
    static in_process_clipboard Clipboard;
    return Clipboard;
}
