#pragma once

#include "art_engine/documents/art_file.h"
#include "zel_basics/zel_string.h"

// The bytes of a binary markup file of the document, as the editor saves it: the objects marked for
// deletion are deleted first, and the document carries the library's version as the editor's.
zel_string SaveDocument(art_file &Document);
