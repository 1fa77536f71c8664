#pragma once

#include "rofa_lib/bitmap_interface.h"
#include "zel_basics/lwpointers.h"
#include "zel_basics/zel_string.h"

// The clipboard behind the layer's clipboard functions. A desktop binding installs one that speaks to
// its window system; until then the process keeps its own. Not a managed object: it serves the whole
// process for its whole life, beyond any one instance.
class linux_clipboard
{
public:
    virtual ~linux_clipboard() = default;

    // Replaces everything the clipboard held.
    virtual void CopyText(zel_string Text) = 0;
    virtual bool HasText() = 0;
    // The text as it was copied, zero bytes and all.
    virtual zel_string PasteText() = 0;
    virtual bool HasBitmap() = 0;
    // A new bitmap of 32-bit pixels red, green, blue, alpha, or null when there is none.
    virtual ownership_pointer<bitmap_interface> PasteBitmap() = 0;
};

// The clipboard in use. Null sets the process's own back.
linux_clipboard &GetLinuxClipboard();
void SetLinuxClipboard(linux_clipboard *Clipboard);
