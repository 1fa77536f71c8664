#pragma once

#include "zel_basics/point2d.h"
#include "zel_basics/zel_string.h"

// The text forms of attribute values that objects read and write.

// "%g": six significant digits.
zel_string ArtRealToText(double Value);
// "(x,y)", each a real, no blanks.
zel_string ArtPointToText(point2d Value);
// The standard conversion of the text; an empty text gives Default.
double ArtTextToReal(const zel_string &Text, double Default);
// The text between the first "(" and the next ",", and between that and the next ")", each by the
// standard conversion.
point2d ArtTextToPoint(const zel_string &Text);
