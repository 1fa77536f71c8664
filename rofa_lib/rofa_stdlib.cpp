#include "rofa_lib/rofa_stdlib.h"

#include <cerrno>
#include <dirent.h>
#include <sys/stat.h>

#include "rofa_lib/stdio_file_streams.h"
#include "zel_basics/debug.h"
#include "zel_basics/zel_error.h"

void ListDirectory(zel_string Path, array<zel_string> &Names)
{
    // The root keeps its separator: without it nothing would be left to name.
    if (Path.GetLength() > 1 && Path[Path.GetLength() - 1] == '/')
        Path.RemoveLast();
    DIR *Directory = opendir(Path.GetString());
    if (Directory == nullptr) {
        int Error = errno;
        throw zel_error(zel_string("Error opening directory: '") + Path + "'\nErrno=" + zel_string::FromInt(Error));
    }
    for (dirent *Entry = readdir(Directory); Entry != nullptr; Entry = readdir(Directory))
        Names.Add(zel_string(Entry->d_name));
    if (closedir(Directory) != 0) {
        int Error = errno;
        throw zel_error(zel_string("Error closing directory: '") + Path + "'\nErrno=" + zel_string::FromInt(Error));
    }
}

void GetFileSize(zel_string Path, int &Size)
{
    struct stat Status;
    int StatRet = stat(Path.GetString(), &Status);
    TOVAS_ASSERT(StatRet==0, nullptr);
    Size = static_cast<int>(Status.st_size);
}

ownership_pointer<zel_read_file_stream> OpenReadFile()
{
    return ownership_pointer<zel_read_file_stream>(new stdio_read_file_stream());
}
