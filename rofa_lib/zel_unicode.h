#pragma once

#include "zel_basics/zel_string.h"

// Conversions between UTF-8 byte strings and UTF-16 in 16-bit units of the machine's byte order, the
// same on every platform. Malformed input becomes U+FFFD.

// A negative Length means Wide is zero-terminated.
zel_string UTF16ToUTF8(const char16_t *Wide, int Length = -1);

// The result's bytes are the 16-bit units; its Length counts bytes, and the string's block ends in a
// zero unit, so GetString() can be read as a zero-terminated const char16_t *.
zel_string UTF8ToUTF16(zel_string Text);
