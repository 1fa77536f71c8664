#include "rofa_lib/zel_memory_read_stream.h"

#include <cstring>

zel_memory_read_stream::zel_memory_read_stream(const zel_string &Data)
{
    Buffer.SetNumberOfElements(Data.GetLength(), 0);
    if (Data.GetLength() > 0)
        std::memcpy(Buffer.GetData(), Data.GetString(), static_cast<size_t>(Data.GetLength()));
    BufferFilled = Data.GetLength();
    CurrentBufferPosition = 0;
}

zel_string zel_memory_read_stream::GetName()
{
    return zel_string("memory read stream of ") + zel_string::FromInt(BufferFilled) + " bytes";
}

int zel_memory_read_stream::ReadDirect(void *, int)
{
    return 0;
}

bool zel_memory_read_stream::ReadEndOfStream()
{
    return GetBytesLeft() == 0;
}

int zel_memory_read_stream::GetBytesLeft() const
{
    return BufferFilled - CurrentBufferPosition;
}
