#pragma once

#include "art_engine/art_object.h"
#include "zel_basics/lwpointers.h"
#include "zel_basics/zel_string.h"

// The object tree of a markup file (binary or text form): the first tag under the root, made by the
// object factory and laid out. The file itself is not kept: every object holds what it read.
ownership_pointer<art_object> LoadObjectTree(const zel_string &FileName);
