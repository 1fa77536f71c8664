#pragma once

#include "rofa_lib/zel_stream.h"
#include "zel_basics/zel_string.h"

// A read stream over bytes already in memory, for decoders that take a stream and for data that
// came from somewhere other than a file. The bytes are copied in once and served from Buffer.
class zel_memory_read_stream : public zel_read_stream
{
public:
    explicit zel_memory_read_stream(const zel_string &Data);

    zel_string GetName() override;
    // Everything there is sits in Buffer, so nothing lies beyond it.
    int ReadDirect(void *Target, int Bytes) override;
    bool ReadEndOfStream() override;

    int GetBytesLeft() const;
};
