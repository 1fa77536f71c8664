#include "xbd/xbd_readonly.h"

#include <cstring>

#include "xbd/xbd.h"
#include "xbd/xbd_asi.h"
#include "zel_basics/debug.h"
#include "zel_basics/zel_error.h"

xbd_readonly_attribute_iterator::xbd_readonly_attribute_iterator()
    : Position(nullptr), NextPosition(nullptr), End(nullptr), NameNum(0), ValueNum(0)
{
}

xbd_readonly_attribute_iterator::xbd_readonly_attribute_iterator(reference_pointer<xbd_readonly_file> File,
                                                                 const char *Start, const char *End)
    : File(File), Position(Start), NextPosition(Start), End(End), NameNum(0), ValueNum(0)
{
    if (IsValid())
        Decode();
}

// The bytes belong to the file, so a walk must not outlive it.
void xbd_readonly_attribute_iterator::Decode()
{
    TOVAS_ASSERT(File.IsSet(), nullptr);
    const char *D = Position;
    NameNum = static_cast<int32_t>(ReadASI(D, End));
    if (D == End)
        throw zel_error(zel_string("XBD attribute block ends inside an attribute."));
    ValueNum = static_cast<int32_t>(ReadASI(D, End));
    NextPosition = D;
}

void xbd_readonly_attribute_iterator::Next()
{
    TOVAS_ASSERT(IsValid(), File.Get());
    Position = NextPosition;
    if (IsValid())
        Decode();
}

int32_t xbd_readonly_attribute_iterator::GetNameNum() const
{
    TOVAS_ASSERT(IsValid(), File.Get());
    return NameNum;
}

int32_t xbd_readonly_attribute_iterator::GetValueNum() const
{
    TOVAS_ASSERT(IsValid(), File.Get());
    return ValueNum;
}

xbd_readonly_tag_iterator::xbd_readonly_tag_iterator()
    : TagStart(nullptr), PositionAfterTagSize(nullptr), AttributeStart(nullptr), ChildrenStart(nullptr),
      End(nullptr), TagSize(0), NameNum(0), AttrSize(0), ChildrenSize(0)
{
}

xbd_readonly_tag_iterator::xbd_readonly_tag_iterator(reference_pointer<xbd_readonly_file> File, const char *Start,
                                                     const char *End)
    : File(File), TagStart(Start), PositionAfterTagSize(Start), AttributeStart(Start), ChildrenStart(Start),
      End(End), TagSize(0), NameNum(0), AttrSize(0), ChildrenSize(0)
{
    if (IsValidTag())
        Decode();
}

const char *xbd_readonly_tag_iterator::ReadTagSize(const char *&D, const char *End, uint32_t &Size)
{
    Size = ReadASI(D, End);
    if (Size > static_cast<uint32_t>(End - D))
        throw zel_error(zel_string("XBD tag runs past the end of the tag that holds it."));
    return D + Size;
}

void xbd_readonly_tag_iterator::Decode()
{
    TOVAS_ASSERT(File.IsSet(), nullptr);
    const char *D = TagStart;
    uint32_t Size = 0;
    const char *TagEnd = ReadTagSize(D, End, Size);
    PositionAfterTagSize = D;
    const uint32_t Name = ReadASI(D, TagEnd);
    const uint32_t Attributes = ReadASI(D, TagEnd);
    if (Attributes > static_cast<uint32_t>(TagEnd - D))
        throw zel_error(zel_string("XBD attribute block runs past the end of its tag."));
    AttributeStart = D;
    ChildrenStart = D + Attributes;
    TagSize = static_cast<int32_t>(Size);
    NameNum = static_cast<int32_t>(Name);
    AttrSize = static_cast<int32_t>(Attributes);
    ChildrenSize = TagSize - static_cast<int32_t>(ChildrenStart - PositionAfterTagSize);
}

void xbd_readonly_tag_iterator::Next()
{
    TOVAS_ASSERT(IsValidTag(), File.Get());
    TagStart = GetTagEnd();
    if (IsValidTag())
        Decode();
}

int32_t xbd_readonly_tag_iterator::GetNameNum() const
{
    TOVAS_ASSERT(IsValidTag(), File.Get());
    return NameNum;
}

int32_t xbd_readonly_tag_iterator::GetTagSize() const
{
    TOVAS_ASSERT(IsValidTag(), File.Get());
    return TagSize;
}

int32_t xbd_readonly_tag_iterator::GetAttrSize() const
{
    TOVAS_ASSERT(IsValidTag(), File.Get());
    return AttrSize;
}

int32_t xbd_readonly_tag_iterator::GetChildrenSize() const
{
    TOVAS_ASSERT(IsValidTag(), File.Get());
    return ChildrenSize;
}

xbd_readonly_attribute_iterator xbd_readonly_tag_iterator::GetAttributes() const
{
    TOVAS_ASSERT(IsValidTag(), File.Get());
    return xbd_readonly_attribute_iterator(File, AttributeStart, ChildrenStart);
}

xbd_readonly_tag_iterator xbd_readonly_tag_iterator::GetChildren() const
{
    TOVAS_ASSERT(IsValidTag(), File.Get());
    return xbd_readonly_tag_iterator(File, ChildrenStart, GetTagEnd());
}

int xbd_readonly_tag_iterator::CountAttributes() const
{
    TOVAS_ASSERT(IsValidTag(), File.Get());
    TOVAS_ASSERT(File.IsSet(), nullptr);
    int LastBytes = 0;
    for (const char *D = AttributeStart; D < ChildrenStart; D++)
        LastBytes += (*D & 0x80) == 0;
    return (LastBytes + 1) / 2;
}

int xbd_readonly_tag_iterator::CountChildren() const
{
    TOVAS_ASSERT(IsValidTag(), File.Get());
    TOVAS_ASSERT(File.IsSet(), nullptr);
    const char *TagEnd = GetTagEnd();
    int Count = 0;
    uint32_t Size = 0;
    for (const char *D = ChildrenStart; D < TagEnd; Count++)
        D = ReadTagSize(D, TagEnd, Size);
    return Count;
}

xbd_readonly_file::xbd_readonly_file(const zel_string &Init_FileData)
    : ReservedHeaderValues{0, 0, 0}
{
    if (!xbd_file::IsValid(Init_FileData))
        throw zel_error(zel_string("Data is not valid XBD."));
    const char *Data = Init_FileData.GetString();
    const char *End = Data + Init_FileData.GetLength();
    const char *D = Data;
    if (std::memcmp(Data, "ZELXML", 6) == 0) {
        // A signed byte: the negative versions of old files pass.
        const int MajorVersion = static_cast<signed char>(Data[6]);
        if (MajorVersion > 1)
            throw zel_error(zel_string("ZELXML file MajorVersion=") + zel_string::FromInt(MajorVersion) +
                            " is not supported.");
        D += 8;
    } else {
        D += 3;
        // The whole header is read before it is judged.
        const uint32_t MaxASISize = ReadASI(D, End);
        const uint32_t MajorVersion = ReadASI(D, End);
        ReadASI(D, End);
        for (int I = 0; I < 3; I++)
            ReservedHeaderValues[I] = static_cast<int32_t>(ReadASI(D, End));
        if (MaxASISize > 31)
            throw zel_error(zel_string("XBD ASIs > 31bits (MaxASISize=") + zel_string::FromUnsigned(MaxASISize) +
                            ") not supported is not supported.");
        if (MajorVersion != 2)
            throw zel_error(zel_string("XBD file MajorVersion=") + zel_string::FromUnsigned(MajorVersion) +
                            " is not supported.");
    }
    TagNames = ReadDictionary(Init_FileData, D);
    AttributeNames = ReadDictionary(Init_FileData, D);
    Values = ReadDictionary(Init_FileData, D);
    const char *RootStart = D;
    const uint32_t RootTagSize = ReadASI(D, End);
    TOVAS_ASSERT((D-Data)+RootTagSize<=Init_FileData.GetLength(), this);
    RootTagData = zel_string(RootStart, static_cast<int>((D - RootStart) + RootTagSize));
}

// At least a root tag must follow a dictionary, hence the strict comparison.
ownership_pointer<xbd_dictionary> xbd_readonly_file::ReadDictionary(const zel_string &Init_FileData, const char *&D)
{
    const char *Data = Init_FileData.GetString();
    const uint32_t DictionarySize = ReadASI(D, Data + Init_FileData.GetLength());
    TOVAS_ASSERT((D-Data)+DictionarySize<Init_FileData.GetLength(), this);
    ownership_pointer<xbd_dictionary> Dictionary(
        new xbd_dictionary(xbd_byte_range{D, static_cast<int32_t>(DictionarySize)}, 1));
    D += DictionarySize;
    return Dictionary;
}

zel_string xbd_readonly_file::GetName()
{
    return zel_string("xbd_readonly_file with ") + zel_string::FromInt(RootTagData.GetLength()) +
           " bytes of tags";
}

ownership_pointer<xbd_dictionary> xbd_readonly_file::TakeTagNames()
{
    return TagNames;
}

ownership_pointer<xbd_dictionary> xbd_readonly_file::TakeAttributeNames()
{
    return AttributeNames;
}

ownership_pointer<xbd_dictionary> xbd_readonly_file::TakeValues()
{
    return Values;
}

xbd_readonly_tag_iterator xbd_readonly_file::GetRootTag()
{
    const char *Start = RootTagData.GetString();
    return xbd_readonly_tag_iterator(this, Start, Start + RootTagData.GetLength());
}

int32_t xbd_readonly_file::GetReservedHeaderValue(int Index) const
{
    TOVAS_ASSERT(Index>=0 && Index<3, const_cast<xbd_readonly_file *>(this));
    return ReservedHeaderValues[Index];
}
