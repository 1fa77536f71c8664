#pragma once

#include "rofa_lib/zel_stream.h"
#include "zel_basics/array.h"
#include "zel_basics/lwpointers.h"
#include "zel_basics/zel_string.h"

// Appends the name of every entry of the directory Path, "." and ".." included as the system gives
// them, in the system's order. "/tmp/x/" lists the same directory as "/tmp/x".
void ListDirectory(zel_string Path, array<zel_string> &Names);

// The size of the named file in bytes.
void GetFileSize(zel_string Path, int &Size);

// A new read stream that is not yet open; the caller opens it with OpenFile.
ownership_pointer<zel_read_file_stream> OpenReadFile();
