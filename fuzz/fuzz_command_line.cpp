// Arbitrary command lines into a window layer's environment. A mismatched quote may end as zel_error;
// anything else must parse, and every variable it set must read back.
#include <cstddef>
#include <cstdint>

#include "rofa_headless_sal/rofa_headless_gal.h"
#include "zel_basics/zel_error.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *Data, size_t Size)
{
    zel_string Line(reinterpret_cast<const char *>(Data), static_cast<int>(Size));
    rofa_headless_gal Layer(0, 0, nullptr);
    try {
        Layer.ParseCommandLine(Line);
    } catch (const zel_error &) {
        return 0;
    }
    if (!Layer.EnvironmentVarExists("CommandLine"))
        __builtin_trap();
    return 0;
}
