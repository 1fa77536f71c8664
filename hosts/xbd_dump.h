#pragma once

#include "xbd/xbd.h"
#include "zel_basics/zel_string.h"

// The tag tree in the markup's text form, for people and scripts: the top-level tags (not the root
// that holds them), two blanks of indent a level, attributes in their order. Every byte of a value
// that is not printable ASCII, and each of & < > " ' \, is written as &#N;, so the text parses back
// to the same tree. A character-data tag is written as the data it holds, directly followed by what
// comes next, since the parser would take any white space before the next tag into the data.
zel_string DumpXBDTree(xbd_file &File);
