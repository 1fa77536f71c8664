#pragma once

#include <cstdint>
#include <cstdio>

#include "rofa_lib/zel_stream.h"
#include "zel_basics/zel_string.h"

// File streams over the C library's buffered files. Every failure is a zel_error whose text names
// the operation, the file, how far the stream had got and the C library's words for the error.
// Destroying a stream closes a file that is still open.
class stdio_read_file_stream : public zel_read_file_stream
{
public:
    stdio_read_file_stream();
    ~stdio_read_file_stream() override;

    zel_string GetName() override;
    int ReadDirect(void *Target, int Bytes) override;
    // A closed stream has nothing more to give.
    bool ReadEndOfStream() override;
    void OpenFile(zel_string Name) override;
    void CloseFile() override;
    bool IsFileOpen() override;
    void SeekRelativeToStart(int Amount) override;
    void SeekRelativeToCurrent(int Amount) override;
    void SeekRelativeToEnd(int Amount) override;
    int GetPosition() override;

private:
    void Seek(int Amount, int Origin, const char *Operation);

    zel_string FileName;
    FILE *File;
    int32_t BytesRead;
};

class stdio_write_file_stream : public zel_write_file_stream
{
public:
    stdio_write_file_stream();
    ~stdio_write_file_stream() override;

    zel_string GetName() override;
    void WriteDirect(const void *Data, int Bytes) override;
    void CreateFile(zel_string Name) override;
    void OpenFile(zel_string Name) override;
    void CloseFile() override;
    bool IsFileOpen() override;
    // Bytes waiting in Buffer belong before the new position, so they are written first.
    void SeekRelativeToStart(int Amount) override;
    void SeekRelativeToCurrent(int Amount) override;
    void SeekRelativeToEnd(int Amount) override;

private:
    void Open(zel_string Name, const char *Mode, const char *Operation);
    void Seek(int Amount, int Origin, const char *Operation);

    zel_string FileName;
    FILE *File;
    int32_t BytesWrote;
};
