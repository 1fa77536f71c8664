#include "xbd/xbd_dictionary.h"

#include <cstring>

#include "zel_basics/debug.h"
#include "zel_basics/zel_error.h"

xbd_dictionary::xbd_dictionary() : NameMap(16), Names(0), NumberOfMappedNames(0), TotalNameBytes(0) {}

xbd_dictionary::xbd_dictionary(const zel_string &BinaryDictionary, int Layout)
    : xbd_dictionary(xbd_byte_range{BinaryDictionary.GetString(), BinaryDictionary.GetLength()}, Layout)
{
}

xbd_dictionary::xbd_dictionary(const xbd_byte_range &BinaryDictionary, int Layout)
    : NameMap(16), Names(0), NumberOfMappedNames(0), TotalNameBytes(0)
{
    if (Layout == 1)
        ParseASILayout(BinaryDictionary);
    else if (Layout == 0)
        ParseFixedWidthLayout(BinaryDictionary);
    else
        TOVAS_ASSERT(false, this);
}

zel_string xbd_dictionary::GetName()
{
    return zel_string("xbd_dictionary with ") + zel_string::FromInt(Names.GetNumberOfElements()) + " names";
}

void xbd_dictionary::ParseASILayout(const xbd_byte_range &BinaryDictionary)
{
    const char *Data = BinaryDictionary.GetString();
    const char *End = Data + BinaryDictionary.GetLength();
    const char *D = Data;
    const uint32_t NumNames = ReadASI(D, End);
    // Every length takes one byte at least, so a count beyond the bytes left cannot be met, and
    // reserving for it would let a few bytes ask for gigabytes.
    const int32_t BytesLeft = static_cast<int32_t>(End - D);
    array<uint32_t> Lengths(0);
    Lengths.Reserve(NumNames < static_cast<uint32_t>(BytesLeft) ? static_cast<int32_t>(NumNames) : BytesLeft);
    for (uint32_t I = 0; I < NumNames; I++)
        Lengths.Add(ReadASI(D, End));
    CopyBlock(BinaryDictionary);
    Names.Reserve(Lengths.GetNumberOfElements());
    for (int I = 0; I < Lengths.GetNumberOfElements(); I++) {
        TOVAS_ASSERT((D-Data)+Lengths[I]<=BinaryDictionary.GetLength(), this);
        AddLoadedName(static_cast<int32_t>(D - Data), static_cast<int32_t>(Lengths[I]));
        D += Lengths[I];
    }
    TOVAS_ASSERT((D-Data)==BinaryDictionary.GetLength(), this);
}

void xbd_dictionary::ParseFixedWidthLayout(const xbd_byte_range &BinaryDictionary)
{
    // The two sizes are read before anything can be checked against them.
    if (BinaryDictionary.GetLength() < 6)
        throw zel_error(zel_string("Unexpected end of XBD data."));
    const unsigned char *Bytes = reinterpret_cast<const unsigned char *>(BinaryDictionary.GetString());
    const int32_t TotalSize = static_cast<int32_t>(static_cast<uint32_t>(Bytes[0]) | static_cast<uint32_t>(Bytes[1]) << 8 |
                                                   static_cast<uint32_t>(Bytes[2]) << 16 |
                                                   static_cast<uint32_t>(Bytes[3]) << 24);
    TOVAS_ASSERT(TotalSize==BinaryDictionary.GetLength(), this);
    const int NumNames = Bytes[4] | Bytes[5] << 8;
    TOVAS_ASSERT(NumNames*(int)(sizeof(short)+4) < TotalSize, this);
    CopyBlock(BinaryDictionary);
    Names.Reserve(NumNames);
    int Pos = 6;
    const int InitialValOffset = Pos + NumNames * static_cast<int>(sizeof(short));
    int ValOffset = InitialValOffset;
    for (int I = 0; I < NumNames; I++) {
        TOVAS_ASSERT(Pos+1<TotalSize, this);
        const int ValLen = Bytes[Pos] | Bytes[Pos + 1] << 8;
        Pos += 2;
        TOVAS_ASSERT(ValOffset+ValLen <= TotalSize, this);
        AddLoadedName(ValOffset, ValLen);
        ValOffset += ValLen;
    }
    TOVAS_ASSERT(InitialValOffset==Pos, this);
    TOVAS_ASSERT(ValOffset==TotalSize, this);
}

// One copy of the whole block serves all its entries: one allocation instead of one per entry.
void xbd_dictionary::CopyBlock(const xbd_byte_range &BinaryDictionary)
{
    LoadedBlock = zel_string(BinaryDictionary.GetString(), BinaryDictionary.GetLength());
}

void xbd_dictionary::AddLoadedName(int32_t Offset, int32_t Length)
{
    Names.Add(xbd_dictionary_name{Length, LoadedBlock.GetString() + Offset});
    TotalNameBytes += Length;
}

// In entry order, so that when the same bytes stand twice the map keeps the later number. A record
// then points into its map key: the map moves keys between slots as it grows, and a moved zel_string
// keeps its block.
void xbd_dictionary::MapLoadedNames() const
{
    while (NumberOfMappedNames < Names.GetNumberOfElements()) {
        xbd_dictionary_name &Name = Names[NumberOfMappedNames];
        const zel_string Key(Name.Bytes, Name.Length);
        int Slot = NameMap.Find(Key);
        if (Slot < 0)
            Slot = NameMap.Insert(Key, NumberOfMappedNames);
        else
            NameMap.GetValueAt(Slot) = NumberOfMappedNames;
        Name.Bytes = NameMap.GetKeyAt(Slot).GetString();
        NumberOfMappedNames++;
    }
    if (!LoadedBlock.IsEmpty())
        LoadedBlock = zel_string();
}

int32_t xbd_dictionary::GetNameNum(const zel_string &Name) const
{
    MapLoadedNames();
    const int Slot = NameMap.Find(Name);
    return Slot < 0 ? -1 : NameMap.GetValueAt(Slot);
}

int32_t xbd_dictionary::AddName(const zel_string &Name)
{
    MapLoadedNames();
    int Slot = NameMap.Find(Name);
    if (Slot >= 0)
        return NameMap.GetValueAt(Slot);
    const int32_t NameNum = Names.GetNumberOfElements();
    Slot = NameMap.Insert(Name, NameNum);
    const zel_string &Key = NameMap.GetKeyAt(Slot);
    Names.Add(xbd_dictionary_name{Key.GetLength(), Key.GetString()});
    NumberOfMappedNames++;
    TotalNameBytes += Key.GetLength();
    return NameNum;
}

zel_string xbd_dictionary::GetName(int32_t NameNum) const
{
    CheckNameNum(NameNum);
    const xbd_dictionary_name &Name = Names[NameNum];
    return zel_string(Name.Bytes, Name.Length);
}

int32_t xbd_dictionary::GetBinarySize() const
{
    const int NumNames = Names.GetNumberOfElements();
    int64_t TotalSize = static_cast<int64_t>(TotalNameBytes) + GetASILength(static_cast<uint32_t>(NumNames));
    for (int I = 0; I < NumNames; I++)
        TotalSize += GetASILength(static_cast<uint32_t>(Names[I].Length));
    TOVAS_ASSERT(TotalSize<10*1024*1024, const_cast<xbd_dictionary *>(this));
    return static_cast<int32_t>(TotalSize);
}

char *xbd_dictionary::WriteBinaryDictionary(char *Destination, int32_t TotalSize) const
{
    const int NumNames = Names.GetNumberOfElements();
    const xbd_dictionary_name *Entries = Names.GetData();
    char *D = WriteASI(Destination, static_cast<uint32_t>(TotalSize));
    D = WriteASI(D, static_cast<uint32_t>(NumNames));
    for (int I = 0; I < NumNames; I++)
        D = WriteASI(D, static_cast<uint32_t>(Entries[I].Length));
    for (int I = 0; I < NumNames; I++) {
        std::memcpy(D, Entries[I].Bytes, static_cast<size_t>(Entries[I].Length));
        D += Entries[I].Length;
    }
    return D;
}

zel_string xbd_dictionary::GetBinaryDictionary() const
{
    const int32_t TotalSize = GetBinarySize();
    xbd_byte_buffer Buffer(static_cast<int64_t>(GetASILength(static_cast<uint32_t>(TotalSize))) + TotalSize);
    WriteBinaryDictionary(Buffer.GetData(), TotalSize);
    return Buffer.TakeString();
}
