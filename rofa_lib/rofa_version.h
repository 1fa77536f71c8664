#pragma once

// The library's version, major.minor.revision; a revision ending in "d" marks a debug build.
#define ROFA_VERSION_STRING "0.5.1"
