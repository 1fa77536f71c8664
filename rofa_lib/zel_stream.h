#pragma once

#include <cstdint>

#include "zel_basics/array.h"
#include "zel_basics/lwbase_object.h"
#include "zel_basics/zel_string.h"

// A source of bytes. Subclasses whose source is memory may fill Buffer and let ReadData serve from
// it; the file streams leave it empty and read straight into the caller's memory.
class zel_read_stream : public base_object
{
public:
    zel_read_stream();

    // Reads up to Bytes from the source, bypassing Buffer; returns how many came.
    virtual int ReadDirect(void *Target, int Bytes) = 0;
    virtual bool ReadEndOfStream();

    // Exactly Bytes or a zel_error: callers parse what they read and cannot use a short read.
    void ReadData(void *Target, int Bytes);
    // Drops what Buffer still holds, for a source whose position has moved under it.
    void ClearBuffer();

protected:
    array<uint8_t> Buffer;
    int32_t BufferFilled;
    int32_t CurrentBufferPosition;
};

// A destination of bytes. Subclasses may collect small writes in Buffer; WriteData keeps the order
// by flushing them before its own bytes.
class zel_write_stream : public base_object
{
public:
    zel_write_stream();
    // Bytes still waiting in Buffer would be lost silently, so that fails an assertion. A destructor
    // cannot pass the assertion's zel_error on, so failing it ends the process.
    ~zel_write_stream() override;

    virtual void WriteDirect(const void *Data, int Bytes) = 0;

    void WriteData(const void *Data, int Bytes);
    void FlushBuffer();

protected:
    array<uint8_t> Buffer;
    int32_t CurrentBufferPosition;
};

class zel_read_file_stream : public zel_read_stream
{
public:
    // Opens for binary reading.
    virtual void OpenFile(zel_string Name) = 0;
    virtual void CloseFile() = 0;
    virtual bool IsFileOpen() = 0;
    // Every seek drops what Buffer holds, since it no longer follows the file's position.
    virtual void SeekRelativeToStart(int Amount) = 0;
    virtual void SeekRelativeToCurrent(int Amount) = 0;
    virtual void SeekRelativeToEnd(int Amount) = 0;
    // The stream's name as GetName gives it, for messages about the file.
    virtual zel_string GetFileName();
    // A negative Bytes reads the rest of the file.
    virtual zel_string ReadWholeFile(int Bytes = -1);
    // Leaves the position where it was.
    virtual int GetFileSize();
    virtual int GetPosition() = 0;
};

class zel_write_file_stream : public zel_write_stream
{
public:
    // Creates or truncates for binary writing.
    virtual void CreateFile(zel_string Name) = 0;
    // Opens for appending, creating the file if need be.
    virtual void OpenFile(zel_string Name) = 0;
    // Writes what Buffer holds before closing.
    virtual void CloseFile() = 0;
    virtual bool IsFileOpen() = 0;
    virtual void SeekRelativeToStart(int Amount) = 0;
    virtual void SeekRelativeToCurrent(int Amount) = 0;
    virtual void SeekRelativeToEnd(int Amount) = 0;
    virtual zel_string GetFileName();
};
