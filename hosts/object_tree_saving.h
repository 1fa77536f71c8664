#pragma once

#include "art_engine/art_object.h"
#include "zel_basics/zel_string.h"

// The bytes of a binary markup file whose root holds the tree's tag, as a save writes it: the objects
// marked for deletion are deleted first.
zel_string SaveObjectTree(art_object &Tree);
