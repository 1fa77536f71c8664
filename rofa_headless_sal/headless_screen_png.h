#pragma once

#include "rofa_headless_sal/rofa_headless_gal.h"
#include "zel_basics/zel_string.h"

// Writes the layer's screen as an opaque PNG image, the top line first as every viewer shows it.
// Writes nothing while the window has no size.
// Fails with words when the file can't be written.
void WriteScreenPNG(rofa_headless_gal &Layer, zel_string Path);
