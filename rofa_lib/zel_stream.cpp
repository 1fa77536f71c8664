#include "rofa_lib/zel_stream.h"

#include <cstdlib>
#include <cstring>

#include "zel_basics/debug.h"
#include "zel_basics/zel_error.h"

zel_read_stream::zel_read_stream() : Buffer(0), BufferFilled(0), CurrentBufferPosition(0)
{
}

bool zel_read_stream::ReadEndOfStream()
{
    return false;
}

void zel_read_stream::ReadData(void *Target, int Bytes)
{
    TOVAS_ASSERT(Bytes>=0, this);
    int Available = BufferFilled - CurrentBufferPosition;
    if (Bytes <= Available) {
        if (Bytes > 0)
            std::memcpy(Target, Buffer.GetData() + CurrentBufferPosition, static_cast<size_t>(Bytes));
        CurrentBufferPosition += Bytes;
        return;
    }
    if (Available > 0)
        std::memcpy(Target, Buffer.GetData() + CurrentBufferPosition, static_cast<size_t>(Available));
    int BytesRead = Available + ReadDirect(static_cast<uint8_t *>(Target) + Available, Bytes - Available);
    ClearBuffer();
    if (BytesRead < Bytes)
        throw zel_error(zel_string("zel_read_stream::ReadData() Attempted to read ") + zel_string::FromInt(Bytes) +
                        " bytes, but only " + zel_string::FromInt(BytesRead) + " bytes could be read");
}

void zel_read_stream::ClearBuffer()
{
    CurrentBufferPosition = BufferFilled;
}

zel_write_stream::zel_write_stream() : Buffer(0), CurrentBufferPosition(0)
{
}

zel_write_stream::~zel_write_stream()
{
    TOVAS_ASSERT(CurrentBufferPosition==0, this);
}

void zel_write_stream::WriteData(const void *Data, int Bytes)
{
    FlushBuffer();
    WriteDirect(Data, Bytes);
}

void zel_write_stream::FlushBuffer()
{
    if (CurrentBufferPosition <= 0)
        return;
    WriteDirect(Buffer.GetData(), CurrentBufferPosition);
    CurrentBufferPosition = 0;
}

zel_string zel_read_file_stream::GetFileName()
{
    return GetName();
}

zel_string zel_read_file_stream::ReadWholeFile(int Bytes)
{
    if (Bytes < 0) {
        // A position beyond the end, which a seek may leave, has nothing after it.
        int Rest = GetFileSize() - GetPosition();
        Bytes = Rest > 0 ? Rest : 0;
    }
    // The string owns the block from the start, so a failed read cannot leak it; its tail of zero
    // bytes is what every string block ends in.
    char *Block = static_cast<char *>(std::calloc(static_cast<size_t>(Bytes) + 4, 1));
    if (Block == nullptr)
        throw zel_error(zel_string("Out of memory"));
    zel_string Contents;
    Contents.AdoptBuffer(Block, Bytes);
    ReadData(Block, Bytes);
    return Contents;
}

int zel_read_file_stream::GetFileSize()
{
    int Position = GetPosition();
    SeekRelativeToEnd(0);
    int Size = GetPosition();
    SeekRelativeToStart(Position);
    return Size;
}

zel_string zel_write_file_stream::GetFileName()
{
    return GetName();
}
