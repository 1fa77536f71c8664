// Arbitrary bytes as binary markup. Loading may refuse them with zel_error; what loads must write back
// and load again to the same bytes.
#include <cstddef>
#include <cstdint>

#include "xbd/xbd.h"
#include "zel_basics/zel_error.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *Data, size_t Size)
{
    zel_string Bytes(reinterpret_cast<const char *>(Data), static_cast<int>(Size));
    if (!xbd_file::IsValid(Bytes))
        return 0;
    ownership_pointer<xbd_file> File;
    try {
        File = xbd_file::LoadFromData(Bytes, false);
    } catch (const zel_error &) {
        return 0;
    }
    zel_string Written = File->GetZELXMLv1String();
    ownership_pointer<xbd_file> Again = xbd_file::LoadFromData(Written, false);
    if (Again->GetZELXMLv1String() != Written)
        __builtin_trap();
    return 0;
}
