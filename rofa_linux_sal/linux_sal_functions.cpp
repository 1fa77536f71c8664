#include "rofa_linux_sal/linux_sal_functions.h"

#include <cstdint>
#include <cstring>
#include <sys/mman.h>
#include <time.h>

#include "rofa_lib/sal_functions.h"
#include "rofa_linux_sal/in_process_clipboard.h"
#include "rofa_linux_sal/linux_clipboard.h"

namespace {

linux_clipboard *InstalledClipboard = nullptr;

} // namespace

double SALGetTime()
{
    // Whole milliseconds, as the platform's millisecond counter that the application's timing was
    // made for counts them.
    timespec Now;
    clock_gettime(CLOCK_MONOTONIC, &Now);
    int64_t Milliseconds = static_cast<int64_t>(Now.tv_sec) * 1000 + Now.tv_nsec / 1000000;
    return static_cast<double>(Milliseconds) * 0.001;
}

void SALFrameDone() {}

void SALAdviseLargeBlock(void *Data, size_t Bytes)
{
    // Only whole large pages inside the block can be advised.
    const uintptr_t LargePage = uintptr_t(2) << 20;
    uintptr_t Start = (reinterpret_cast<uintptr_t>(Data) + LargePage - 1) & ~(LargePage - 1);
    uintptr_t End = (reinterpret_cast<uintptr_t>(Data) + Bytes) & ~(LargePage - 1);
    if (End > Start)
        madvise(reinterpret_cast<void *>(Start), End - Start, MADV_HUGEPAGE);
}

zel_string SALGetErrorText(int ErrorNumber)
{
    char Buffer[256];
    const char *Text = strerror_r(ErrorNumber, Buffer, sizeof Buffer);
    return zel_string(Text) + " (Error #" + zel_string::FromInt(ErrorNumber) + ")";
}

linux_clipboard &GetLinuxClipboard()
{
    if (InstalledClipboard != nullptr)
        return *InstalledClipboard;
    return GetInProcessClipboard();
}

void SetLinuxClipboard(linux_clipboard *Clipboard) { InstalledClipboard = Clipboard; }

void SALCopyTextToClipboard(zel_string Text) { GetLinuxClipboard().CopyText(Text); }

bool SALClipboardHasText() { return GetLinuxClipboard().HasText(); }

zel_string SALPasteTextFromClipboard()
{
    if (!SALClipboardHasText())
        return zel_string();
    zel_string Text = GetLinuxClipboard().PasteText();
    return Text.Left(Text.Find('\0'));
}

bool SALClipboardHasBitmap() { return GetLinuxClipboard().HasBitmap(); }

ownership_pointer<bitmap_interface> SALPasteBitmapFromClipboard() { return GetLinuxClipboard().PasteBitmap(); }
