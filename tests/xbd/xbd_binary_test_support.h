#pragma once

// Helpers of the binary markup tests: byte vectors written as hexadecimal text, and a second, plainly
// recursive encoder of the file format over a model tree, to compute expected bytes independently of
// the code under test.

#include <cstdint>
#include <cstdlib>
#include <string>
#include <utility>
#include <vector>

#include "tests/test_support.h"
#include "xbd/xbd.h"

namespace xbd_test {

typedef std::vector<uint8_t> bytes;

// "5a 45 4c" -> {0x5a, 0x45, 0x4c}; blanks between bytes are optional.
inline bytes Hex(const std::string &Text)
{
    bytes Result;
    std::string Digits;
    for (char C : Text)
        if (C != ' ' && C != '\n')
            Digits += C;
    for (size_t I = 0; I + 1 < Digits.size(); I += 2)
        Result.push_back(static_cast<uint8_t>(std::strtoul(Digits.substr(I, 2).c_str(), nullptr, 16)));
    return Result;
}

inline bytes Bytes(const std::string &Text)
{
    return bytes(Text.begin(), Text.end());
}

inline zel_string ToZel(const bytes &Data)
{
    if (Data.empty())
        return zel_string();
    return zel_string(reinterpret_cast<const char *>(Data.data()), static_cast<int>(Data.size()));
}

inline bytes FromZel(const zel_string &Text)
{
    const uint8_t *Start = reinterpret_cast<const uint8_t *>(Text.GetString());
    return bytes(Start, Start + Text.GetLength());
}

inline bytes operator+(bytes A, const bytes &B)
{
    A.insert(A.end(), B.begin(), B.end());
    return A;
}

// Seven bits a byte, lowest group first, bit 7 on every byte but the last.
inline bytes ASI(uint32_t Value)
{
    bytes Result;
    uint64_t Rest = Value;
    while (Rest >= 128) {
        Result.push_back(static_cast<uint8_t>(0x80 | (Rest % 128)));
        Rest /= 128;
    }
    Result.push_back(static_cast<uint8_t>(Rest));
    return Result;
}

struct model_tag
{
    uint32_t NameNum = 0;
    std::vector<std::pair<uint32_t, uint32_t>> Attributes;
    std::vector<model_tag> Children;

    bool operator==(const model_tag &Other) const
    {
        return NameNum == Other.NameNum && Attributes == Other.Attributes && Children == Other.Children;
    }
};

struct model_file
{
    std::vector<std::string> TagNames;
    std::vector<std::string> AttributeNames;
    std::vector<std::string> Values;
    model_tag Root;
};

inline bytes EncodeDictionary(const std::vector<std::string> &Names)
{
    bytes Block = ASI(static_cast<uint32_t>(Names.size()));
    for (const std::string &Name : Names)
        Block = Block + ASI(static_cast<uint32_t>(Name.size()));
    for (const std::string &Name : Names)
        Block = Block + Bytes(Name);
    return ASI(static_cast<uint32_t>(Block.size())) + Block;
}

inline bytes EncodeTag(const model_tag &Tag)
{
    bytes Pairs;
    for (const auto &Pair : Tag.Attributes)
        Pairs = Pairs + ASI(Pair.first) + ASI(Pair.second);
    bytes Body = ASI(Tag.NameNum) + ASI(static_cast<uint32_t>(Pairs.size())) + Pairs;
    for (const model_tag &Child : Tag.Children)
        Body = Body + EncodeTag(Child);
    return ASI(static_cast<uint32_t>(Body.size())) + Body;
}

inline bytes Header()
{
    return Bytes("ZELXML") + bytes{1, 0};
}

inline bytes EncodeFile(const model_file &File)
{
    return Header() + EncodeDictionary(File.TagNames) + EncodeDictionary(File.AttributeNames) +
           EncodeDictionary(File.Values) + EncodeTag(File.Root);
}

inline std::string ToStdString(const zel_string &Text)
{
    return std::string(Text.GetString(), static_cast<size_t>(Text.GetLength()));
}

inline std::vector<std::string> ReadDictionary(const xbd_dictionary &Dictionary)
{
    std::vector<std::string> Names;
    for (int I = 0; I < Dictionary.GetNumberOfNames(); I++)
        Names.push_back(ToStdString(Dictionary.GetName(I)));
    return Names;
}

// The numbers of a tree as the API shows them. Recursive: only for the shallow trees of the tests.
inline model_tag ReadTree(xbd_tag &Tag)
{
    model_tag Model;
    Model.NameNum = static_cast<uint32_t>(Tag.GetNameNum());
    array<xbd_attribute> &Attributes = Tag.GetAttributes();
    for (int I = 0; I < Attributes.GetNumberOfElements(); I++)
        Model.Attributes.push_back({static_cast<uint32_t>(Attributes[I].NameNum),
                                    static_cast<uint32_t>(Attributes[I].ValueNum)});
    array<ownership_pointer<xbd_tag>> &Children = Tag.GetChildren();
    for (int I = 0; I < Children.GetNumberOfElements(); I++)
        Model.Children.push_back(ReadTree(*Children[I]));
    return Model;
}

inline model_file ReadFile(xbd_file &File)
{
    model_file Model;
    Model.TagNames = ReadDictionary(File.GetTagNames());
    Model.AttributeNames = ReadDictionary(File.GetAttributeNames());
    Model.Values = ReadDictionary(File.GetValues());
    Model.Root = ReadTree(*File.GetRootTag());
    return Model;
}

// The 60 bytes of the shelf-and-book example, as its table lists them.
inline bytes WorkedExample()
{
    return Hex("5a 45 4c 58 4d 4c"
               "01"
               "00"
               "14"
               "03"
               "07 05 04"
               "52 6f 6f 74 54 61 67"
               "73 68 65 6c 66"
               "62 6f 6f 6b"
               "0d"
               "02"
               "05 05"
               "77 69 64 74 68"
               "6c 61 62 65 6c"
               "03"
               "01"
               "01"
               "39"
               "0c"
               "00"
               "00"
               "09"
               "01"
               "04"
               "00 00"
               "01 00"
               "02"
               "02"
               "00");
}

inline ownership_pointer<xbd_file> Load(const bytes &Data)
{
    return xbd_file::LoadFromData(ToZel(Data), false);
}

// The binary loader alone, without the fallback to the text form.
inline ownership_pointer<xbd_file> LoadBinary(const bytes &Data)
{
    ownership_pointer<xbd_readonly_file> ReadOnly(new xbd_readonly_file(ToZel(Data)));
    return ownership_pointer<xbd_file>(new xbd_file(ReadOnly));
}

inline bytes Save(xbd_file &File)
{
    return FromZel(File.GetZELXMLv1String());
}

} // namespace xbd_test
