#pragma once

#include "zel_basics/zel_string.h"

// The system's message for a platform error number, with " (Error #" + number + ")" behind it.
zel_string SALGetErrorText(int ErrorNumber);
