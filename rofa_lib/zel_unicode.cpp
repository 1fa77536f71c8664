#include "rofa_lib/zel_unicode.h"

#include <cstdint>

#include "zel_basics/debug.h"

namespace {

constexpr uint32_t ReplacementCharacter = 0xFFFD;

bool IsHighSurrogate(uint32_t Unit)
{
    return Unit >= 0xD800 && Unit <= 0xDBFF;
}

bool IsLowSurrogate(uint32_t Unit)
{
    return Unit >= 0xDC00 && Unit <= 0xDFFF;
}

int EncodeUTF8(uint32_t CodePoint, unsigned char *Out)
{
    if (CodePoint < 0x80)
    {
        Out[0] = static_cast<unsigned char>(CodePoint);
        return 1;
    }
    if (CodePoint < 0x800)
    {
        Out[0] = static_cast<unsigned char>(0xC0 | (CodePoint >> 6));
        Out[1] = static_cast<unsigned char>(0x80 | (CodePoint & 0x3F));
        return 2;
    }
    if (CodePoint < 0x10000)
    {
        Out[0] = static_cast<unsigned char>(0xE0 | (CodePoint >> 12));
        Out[1] = static_cast<unsigned char>(0x80 | ((CodePoint >> 6) & 0x3F));
        Out[2] = static_cast<unsigned char>(0x80 | (CodePoint & 0x3F));
        return 3;
    }
    Out[0] = static_cast<unsigned char>(0xF0 | (CodePoint >> 18));
    Out[1] = static_cast<unsigned char>(0x80 | ((CodePoint >> 12) & 0x3F));
    Out[2] = static_cast<unsigned char>(0x80 | ((CodePoint >> 6) & 0x3F));
    Out[3] = static_cast<unsigned char>(0x80 | (CodePoint & 0x3F));
    return 4;
}

// Decodes one character at Bytes[Index], advancing Index. A malformed sequence yields U+FFFD for its
// longest valid-looking start (at least one byte), so decoding resumes at the first byte that cannot
// belong to it; overlong forms, encoded surrogates and values past U+10FFFF are malformed.
uint32_t DecodeUTF8(const unsigned char *Bytes, int Length, int &Index)
{
    unsigned char Lead = Bytes[Index++];
    if (Lead < 0x80)
        return Lead;
    int Trail;
    uint32_t CodePoint;
    unsigned char SecondMin = 0x80;
    unsigned char SecondMax = 0xBF;
    if (Lead >= 0xC2 && Lead <= 0xDF)
    {
        Trail = 1;
        CodePoint = Lead & 0x1F;
    }
    else if (Lead >= 0xE0 && Lead <= 0xEF)
    {
        Trail = 2;
        CodePoint = Lead & 0x0F;
        if (Lead == 0xE0)
            SecondMin = 0xA0;
        if (Lead == 0xED)
            SecondMax = 0x9F;
    }
    else if (Lead >= 0xF0 && Lead <= 0xF4)
    {
        Trail = 3;
        CodePoint = Lead & 0x07;
        if (Lead == 0xF0)
            SecondMin = 0x90;
        if (Lead == 0xF4)
            SecondMax = 0x8F;
    }
    else
        return ReplacementCharacter;
    for (int I = 0; I < Trail; I++)
    {
        if (Index >= Length)
            return ReplacementCharacter;
        unsigned char Byte = Bytes[Index];
        unsigned char Min = I == 0 ? SecondMin : 0x80;
        unsigned char Max = I == 0 ? SecondMax : 0xBF;
        if (Byte < Min || Byte > Max)
            return ReplacementCharacter;
        CodePoint = (CodePoint << 6) | (Byte & 0x3F);
        Index++;
    }
    return CodePoint;
}

} // namespace

zel_string UTF16ToUTF8(const char16_t *Wide, int Length)
{
    int WideStringLength = Length;
    if (WideStringLength < 0)
    {
        WideStringLength = 0;
        while (Wide[WideStringLength] != 0)
            WideStringLength++;
    }
    // Room for the terminator as one more character keeps the bound above the count even when empty.
    int MaxUTF8Length = 5 * (WideStringLength + 1);
    zel_string Buffer('\0', MaxUTF8Length);
    unsigned char *Out = reinterpret_cast<unsigned char *>(&Buffer[0]);
    int NumWritten = 0;
    for (int I = 0; I < WideStringLength; I++)
    {
        uint32_t CodePoint = Wide[I];
        if (IsHighSurrogate(CodePoint) && I + 1 < WideStringLength && IsLowSurrogate(Wide[I + 1]))
        {
            CodePoint = 0x10000 + ((CodePoint - 0xD800) << 10) + (Wide[I + 1] - 0xDC00u);
            I++;
        }
        else if (IsHighSurrogate(CodePoint) || IsLowSurrogate(CodePoint))
            CodePoint = ReplacementCharacter;
        NumWritten += EncodeUTF8(CodePoint, Out + NumWritten);
    }
    TOVAS_ASSERT(NumWritten>=WideStringLength, nullptr);
    TOVAS_ASSERT(NumWritten<MaxUTF8Length, nullptr);
    return Buffer.Left(NumWritten);
}

zel_string UTF8ToUTF16(zel_string Text)
{
    // Every character takes at least as many bytes in UTF-8 as it takes units in UTF-16; one unit more
    // keeps the buffer non-empty.
    zel_string Buffer('\0', 2 * (Text.GetLength() + 1));
    char16_t *Units = reinterpret_cast<char16_t *>(&Buffer[0]);
    const unsigned char *Bytes = reinterpret_cast<const unsigned char *>(Text.GetString());
    int NumUnits = 0;
    int Index = 0;
    while (Index < Text.GetLength())
    {
        uint32_t CodePoint = DecodeUTF8(Bytes, Text.GetLength(), Index);
        if (CodePoint >= 0x10000)
        {
            CodePoint -= 0x10000;
            Units[NumUnits++] = static_cast<char16_t>(0xD800 + (CodePoint >> 10));
            Units[NumUnits++] = static_cast<char16_t>(0xDC00 + (CodePoint & 0x3FF));
        }
        else
            Units[NumUnits++] = static_cast<char16_t>(CodePoint);
    }
    return Buffer.Left(NumUnits * static_cast<int>(sizeof(char16_t)));
}
