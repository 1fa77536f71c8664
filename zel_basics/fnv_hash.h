#pragma once

#include <cstdint>

// The one hash of the system: 32-bit FNV-1 (multiply, then exclusive-or), so hash tables and
// anything persisted by hash agree everywhere.
constexpr uint32_t FNVOffsetBasis = 0x811C9DC5u;
constexpr uint32_t FNVPrime = 0x01000193u;

inline uint32_t FNV1Hash(const void *Bytes, int Length, uint32_t Hash = FNVOffsetBasis)
{
    const unsigned char *Byte = static_cast<const unsigned char *>(Bytes);
    for (int I = 0; I < Length; I++)
        Hash = (Hash * FNVPrime) ^ Byte[I];
    return Hash;
}
