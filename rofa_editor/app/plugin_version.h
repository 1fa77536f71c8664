#pragma once

#include <cstdint>

#include "zel_basics/zel_string.h"

// A release of the library as the page and the library itself name it: "major.minor.revision",
// with a "d" in the revision for a debug build. -1 in a number means unset.
class plugin_version
{
public:
    plugin_version() = default;
    plugin_version(int32_t Major, int32_t Minor, int32_t Revision, bool Debug = false);

    // Exactly three parts separated by dots, each read in radix 10; any other text gives the unset
    // version.
    static plugin_version FromText(const zel_string &Text);
    // "major.minor.revision", with " debug" behind for a debug build.
    zel_string ToText() const;

    // Parsed once from the library's own version text.
    static const plugin_version &GetOwnVersion();

    // Whether every number is set, which ordering needs of both sides.
    bool IsComplete() const { return Major >= 0 && Minor >= 0 && Revision >= 0; }
    static bool AreComparable(const plugin_version &A, const plugin_version &B)
    {
        return A.IsComplete() && B.IsComplete();
    }
    // By major, minor and revision; at equal numbers a debug build is older than a release.
    bool IsOlderThan(const plugin_version &Other) const;
    bool operator==(const plugin_version &Other) const;

    int32_t Major = -1;
    int32_t Minor = -1;
    int32_t Revision = -1;
    bool Debug = false;
};
