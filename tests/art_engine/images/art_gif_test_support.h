#pragma once

#include <algorithm>
#include <cstdint>
#include <string>
#include <vector>

#include "zel_basics/zel_string.h"

// A GIF89a of Width by Height with a palette of two colours, red and blue, and one page for each
// entry of Indices, each page filled with that palette index and shown for DelayHundredths. The
// image data is LZW with a clear code before every two pixels, so the code width stays 3 bits.
inline zel_string MakeTwoColourGIF(int Width, int Height, const std::vector<int> &Indices, int DelayHundredths)
{
    std::string G = "GIF89a";
    auto Word = [&G](int Value) {
        G += char(Value & 255);
        G += char((Value >> 8) & 255);
    };
    Word(Width);
    Word(Height);
    G += char(0x80);
    G += char(0);
    G += char(0);
    G += std::string("\xFF\x00\x00\x00\x00\xFF", 6);
    if (Indices.size() > 1)
        G += std::string("\x21\xFF\x0BNETSCAPE2.0\x03\x01\x00\x00\x00", 19);
    for (int Index : Indices) {
        G += std::string("\x21\xF9\x04\x00", 4);
        Word(DelayHundredths);
        G += std::string("\x00\x00", 2);
        G += char(0x2C);
        Word(0);
        Word(0);
        Word(Width);
        Word(Height);
        G += char(0);
        G += char(2);
        std::vector<uint8_t> Data;
        uint32_t Bits = 0;
        int BitCount = 0;
        auto Code = [&](int Value) {
            Bits |= uint32_t(Value) << BitCount;
            BitCount += 3;
            while (BitCount >= 8) {
                Data.push_back(uint8_t(Bits & 255));
                Bits >>= 8;
                BitCount -= 8;
            }
        };
        for (int P = 0; P < Width * Height; P += 2) {
            Code(4);
            Code(Index);
            if (P + 1 < Width * Height)
                Code(Index);
        }
        Code(5);
        if (BitCount > 0)
            Data.push_back(uint8_t(Bits & 255));
        for (size_t Start = 0; Start < Data.size(); Start += 255) {
            size_t Length = std::min<size_t>(255, Data.size() - Start);
            G += char(Length);
            G += std::string(reinterpret_cast<const char *>(Data.data() + Start), Length);
        }
        G += char(0);
    }
    G += char(0x3B);
    return zel_string(G.data(), int(G.size()));
}
