#pragma once

#include "art_engine/documents/art_file.h"
#include "zel_basics/lwpointers.h"
#include "zel_basics/zel_string.h"

// The document of a markup file (binary or text form), laid out, with its own bitmaps. The file
// itself is not kept: every object holds what it read. Warning is emptied, or receives the text of
// the warning that a document of a newer minor version loads with.
ownership_pointer<art_file> LoadDocument(const zel_string &FileName, zel_string &Warning);
// The same from the bytes of a document, such as one the library carries.
ownership_pointer<art_file> LoadDocumentFromData(const zel_string &Data, zel_string &Warning);
