#pragma once

#include "zel_basics/zel_string.h"

// The documents that the library carries with it, in the markup's text form.

// One document with every kind of object the engine draws: shapes, fills, gradients, outlines,
// shadows, a blur, a colour filter, a photo and an animated picture, nested stencils.
zel_string GetShowcaseDocumentText();
