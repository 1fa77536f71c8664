#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstdint>
#include <functional>
#include <random>
#include <string>
#include <vector>

#include "tests/xbd/xbd_binary_test_support.h"
#include "xbd/xbd.h"
#include "xbd/xbd_readonly.h"
#include "xbd/xbd_xml_parser.h"

using namespace xbd_test;
using testing::HasSubstr;

namespace {

std::string HexText(const bytes &Data)
{
    static const char Digits[] = "0123456789abcdef";
    std::string Text;
    for (uint8_t Byte : Data) {
        Text += Digits[Byte >> 4];
        Text += Digits[Byte & 15];
    }
    return Text;
}

// What a load gives: the saved bytes of the file, or the error's text.
std::string Outcome(const std::function<ownership_pointer<xbd_file>()> &Make)
{
    try {
        ownership_pointer<xbd_file> File = Make();
        return "file " + HexText(Save(*File));
    } catch (const zel_error &Error) {
        return "error " + ToStd(Error.GetMessage());
    }
}

std::string LoadMessage(const bytes &Data)
{
    return ZEL_ERROR_MESSAGE(LoadBinary(Data));
}

model_file WorkedExampleModel()
{
    model_file Model;
    Model.TagNames = {"RootTag", "shelf", "book"};
    Model.AttributeNames = {"width", "label"};
    Model.Values = {"9"};
    model_tag Book;
    Book.NameNum = 2;
    model_tag Shelf;
    Shelf.NameNum = 1;
    Shelf.Attributes = {{0, 0}, {1, 0}};
    Shelf.Children = {Book};
    Model.Root.Children = {Shelf};
    return Model;
}

// The example's dictionaries and root after a header of the caller's choice.
bytes ExampleBody()
{
    bytes Example = WorkedExample();
    return bytes(Example.begin() + 8, Example.end());
}

// Tag name "R", two empty dictionaries, a root with nothing in it: 11 bytes after the header.
bytes SmallestBody()
{
    return Hex("03 01 01 52  01 00  01 00  02 00 00");
}

std::string BinaryValue()
{
    return std::string("\x00\x01\xff\x80\x00 end\x7f\xfe", 11);
}

// Several levels, attributes with a binary and an empty value, and entries that no tag uses.
model_file RichModel()
{
    model_file Model;
    Model.TagNames = {"RootTag", "art_file", "layer", "shape", "unused tag"};
    Model.AttributeNames = {"name", "size", "data", "flag", "never used"};
    Model.Values = {"doc", "(10,20)", BinaryValue(), "", "layer one", "unused value"};
    model_tag Shape;
    Shape.NameNum = 3;
    Shape.Attributes = {{2, 2}};
    model_tag Bare;
    Bare.NameNum = 3;
    model_tag Layer;
    Layer.NameNum = 2;
    Layer.Attributes = {{0, 4}, {3, 3}};
    Layer.Children = {Shape, Bare};
    model_tag EmptyLayer;
    EmptyLayer.NameNum = 2;
    model_tag Document;
    Document.NameNum = 1;
    Document.Attributes = {{0, 0}, {1, 1}};
    Document.Children = {Layer, EmptyLayer};
    Model.Root.Children = {Document};
    return Model;
}

// Root tags nested Depth levels deep, built from the inside out.
bytes DeepFile(int Depth)
{
    bytes Reversed = {0, 0, 2};
    for (int Level = 1; Level < Depth; Level++) {
        uint32_t Size = static_cast<uint32_t>(Reversed.size()) + 2;
        Reversed.push_back(0);
        Reversed.push_back(0);
        bytes SizeASI = ASI(Size);
        Reversed.insert(Reversed.end(), SizeASI.rbegin(), SizeASI.rend());
    }
    bytes Root(Reversed.rbegin(), Reversed.rend());
    return Header() + EncodeDictionary({"RootTag"}) + EncodeDictionary({}) + EncodeDictionary({}) + Root;
}

TEST(xbd_format, ReferenceEncoderGivesTheExampleTable)
{
    EXPECT_EQ(60u, WorkedExample().size());
    EXPECT_EQ(WorkedExample(), EncodeFile(WorkedExampleModel()));
}

TEST(xbd_format, EighteenBytesWithVersion1MagicAreNotBinaryAndGoToTheTextParser)
{
    bytes Data = Header() + SmallestBody();
    Data.pop_back();
    ASSERT_EQ(18u, Data.size());
    EXPECT_FALSE(xbd_file::IsValid(ToZel(Data)));
    EXPECT_EQ("Data is not valid XBD.", ZEL_ERROR_MESSAGE(xbd_readonly_file ReadOnly(ToZel(Data))));
    std::string Loaded = Outcome([&] { return xbd_file::LoadFromData(ToZel(Data), false); });
    EXPECT_EQ(Outcome([&] { return xbd_xml_parser().ParseXML(ToZel(Data), false); }), Loaded);
    EXPECT_EQ(std::string::npos, Loaded.find("XBD"));
}

TEST(xbd_format, NineteenBytesWithVersion1MagicAreBinary)
{
    bytes Data = Header() + SmallestBody();
    ASSERT_EQ(19u, Data.size());
    EXPECT_TRUE(xbd_file::IsValid(ToZel(Data)));
    ownership_pointer<xbd_file> File = Load(Data);
    EXPECT_EQ(zel_string("R"), File->GetRootTag()->GetName());
    EXPECT_EQ(0, File->GetRootTag()->GetAttributes().GetNumberOfElements());
    EXPECT_EQ(0, File->GetRootTag()->GetChildren().GetNumberOfElements());
    EXPECT_EQ(Data, Save(*File));
}

TEST(xbd_format, NineteenBytesWithVersion2MagicAreNotBinary)
{
    bytes Data = Bytes("XBD") + Hex("1f 02 00 00 00 00") + SmallestBody();
    Data.pop_back();
    ASSERT_EQ(19u, Data.size());
    EXPECT_FALSE(xbd_file::IsValid(ToZel(Data)));
    EXPECT_EQ("Data is not valid XBD.", ZEL_ERROR_MESSAGE(xbd_readonly_file ReadOnly(ToZel(Data))));
    EXPECT_EQ(Outcome([&] { return xbd_xml_parser().ParseXML(ToZel(Data), false); }),
              Outcome([&] { return xbd_file::LoadFromData(ToZel(Data), false); }));
}

TEST(xbd_format, TwentyBytesWithVersion2MagicAreBinary)
{
    bytes Data = Bytes("XBD") + Hex("1f 02 00 00 00 00") + SmallestBody();
    ASSERT_EQ(20u, Data.size());
    EXPECT_TRUE(xbd_file::IsValid(ToZel(Data)));
    ownership_pointer<xbd_file> File = Load(Data);
    EXPECT_EQ(zel_string("R"), File->GetRootTag()->GetName());
    EXPECT_EQ(Header() + SmallestBody(), Save(*File));
}

TEST(xbd_format, OtherDataOfAnyLengthIsNotBinary)
{
    EXPECT_FALSE(xbd_file::IsValid(zel_string("")));
    EXPECT_FALSE(xbd_file::IsValid(zel_string("<RootTag></RootTag>  <a/>  <b/> ")));
    EXPECT_FALSE(xbd_file::IsValid(ToZel(Bytes("ZELXMl") + bytes(20, 0))));
    EXPECT_FALSE(xbd_file::IsValid(ToZel(Bytes("XBd") + bytes(20, 0))));
}

TEST(xbd_format, Version1MajorVersionZeroLoadsLikeOne)
{
    bytes Data = WorkedExample();
    Data[6] = 0;
    ownership_pointer<xbd_file> File = Load(Data);
    EXPECT_EQ(ReadFile(*File).Root, WorkedExampleModel().Root);
    EXPECT_EQ(WorkedExample(), Save(*File));
}

TEST(xbd_format, Version1MajorVersionTwoIsRefused)
{
    bytes Data = WorkedExample();
    Data[6] = 2;
    EXPECT_EQ("ZELXML file MajorVersion=2 is not supported.", LoadMessage(Data));
    EXPECT_EQ("ZELXML file MajorVersion=2 is not supported.", ZEL_ERROR_MESSAGE(Load(Data)));
    Data[6] = 0x7f;
    EXPECT_EQ("ZELXML file MajorVersion=127 is not supported.", LoadMessage(Data));
}

TEST(xbd_format, Version1MajorVersionByte0x80PassesAsANegativeNumber)
{
    bytes Data = WorkedExample();
    Data[6] = 0x80;
    ownership_pointer<xbd_file> File = Load(Data);
    EXPECT_EQ(ReadFile(*File).Root, WorkedExampleModel().Root);
    Data[6] = 0xff;
    EXPECT_EQ(WorkedExample(), Save(*Load(Data)));
}

TEST(xbd_format, Version1MinorVersionIsNeverRead)
{
    bytes Data = WorkedExample();
    Data[7] = 0xee;
    EXPECT_EQ(WorkedExample(), Save(*Load(Data)));
}

TEST(xbd_format, Version2HeaderIsAcceptedAndItsReservedValuesKept)
{
    // MaxASISize 31, MajorVersion 2, minor version 5, reserved 7, 300, 0.
    bytes Data = Bytes("XBD") + Hex("1f 02 05 07 ac 02 00") + ExampleBody();
    ownership_pointer<xbd_readonly_file> ReadOnly(new xbd_readonly_file(ToZel(Data)));
    EXPECT_EQ(7, ReadOnly->GetReservedHeaderValue(0));
    EXPECT_EQ(300, ReadOnly->GetReservedHeaderValue(1));
    EXPECT_EQ(0, ReadOnly->GetReservedHeaderValue(2));
    ownership_pointer<xbd_file> File(new xbd_file(ReadOnly));
    EXPECT_EQ(ReadFile(*File).Root, WorkedExampleModel().Root);
    EXPECT_EQ(WorkedExample(), Save(*File));
}

TEST(xbd_format, Version1HasNoReservedValues)
{
    xbd_readonly_file ReadOnly(ToZel(WorkedExample()));
    EXPECT_EQ(0, ReadOnly.GetReservedHeaderValue(0));
    EXPECT_EQ(0, ReadOnly.GetReservedHeaderValue(1));
    EXPECT_EQ(0, ReadOnly.GetReservedHeaderValue(2));
}

TEST(xbd_format, Version2MaxASISizeAbove31IsRefused)
{
    EXPECT_EQ("XBD ASIs > 31bits (MaxASISize=32) not supported is not supported.",
              LoadMessage(Bytes("XBD") + Hex("20 02 00 00 00 00") + ExampleBody()));
    EXPECT_EQ("XBD ASIs > 31bits (MaxASISize=4294967295) not supported is not supported.",
              LoadMessage(Bytes("XBD") + Hex("ff ff ff ff 0f 02 00 00 00 00") + ExampleBody()));
    EXPECT_EQ(WorkedExample(), Save(*Load(Bytes("XBD") + Hex("00 02 00 00 00 00") + ExampleBody())));
}

TEST(xbd_format, Version2MajorVersionOtherThanTwoIsRefused)
{
    EXPECT_EQ("XBD file MajorVersion=3 is not supported.",
              LoadMessage(Bytes("XBD") + Hex("1f 03 00 00 00 00") + ExampleBody()));
    EXPECT_EQ("XBD file MajorVersion=1 is not supported.",
              LoadMessage(Bytes("XBD") + Hex("1f 01 00 00 00 00") + ExampleBody()));
    EXPECT_EQ("XBD file MajorVersion=0 is not supported.",
              LoadMessage(Bytes("XBD") + Hex("1f 00 00 00 00 00") + ExampleBody()));
}

TEST(xbd_format, Version2MaxASISizeIsJudgedBeforeMajorVersion)
{
    EXPECT_EQ("XBD ASIs > 31bits (MaxASISize=40) not supported is not supported.",
              LoadMessage(Bytes("XBD") + Hex("28 07 00 00 00 00") + ExampleBody()));
}

TEST(xbd_format, Version2ReadsAllSixHeaderASIsBeforeJudging)
{
    EXPECT_EQ("Invalid ASI - exceeded MaxLength=0 Value at Error=-128",
              LoadMessage(Bytes("XBD") + Hex("28 07 00 00 00 80 80 80 80 80") + ExampleBody()));
}

TEST(xbd_format, Version2HeaderASIsMayBeLongerThanNeeded)
{
    bytes Data = Bytes("XBD") + Hex("9f 00 82 80 00 80 00 80 00 80 80 00 81 00") + ExampleBody();
    ownership_pointer<xbd_readonly_file> ReadOnly(new xbd_readonly_file(ToZel(Data)));
    EXPECT_EQ(1, ReadOnly->GetReservedHeaderValue(2));
    ownership_pointer<xbd_file> File(new xbd_file(ReadOnly));
    EXPECT_EQ(WorkedExample(), Save(*File));
}

TEST(xbd_format, WorkedExampleBuiltThroughTheTreeIsItsSixtyBytes)
{
    xbd_file File;
    ownership_pointer<xbd_tag> Shelf = File.GetRootTag()->NewTag("shelf");
    Shelf->AddAttribute("width", "9");
    Shelf->AddAttribute("label", "9");
    Shelf->AddChildTag(Shelf->NewTag("book"));
    File.GetRootTag()->AddChildTag(Shelf);
    EXPECT_EQ(Hex("5a 45 4c 58 4d 4c 01 00 14 03 07 05 04 52 6f 6f 74 54 61 67 73 68 65 6c 66 62 6f 6f 6b"
                  "0d 02 05 05 77 69 64 74 68 6c 61 62 65 6c 03 01 01 39 0c 00 00 09 01 04 00 00 01 00 02 02 00"),
              Save(File));
}

TEST(xbd_format, WorkedExampleLoadsBackToTheSameTree)
{
    ownership_pointer<xbd_file> File = Load(WorkedExample());
    reference_pointer<xbd_tag> Root = File->GetRootTag();
    EXPECT_EQ(zel_string("RootTag"), Root->GetName());
    EXPECT_EQ(0, Root->GetAttributes().GetNumberOfElements());
    ASSERT_EQ(1, Root->GetChildren().GetNumberOfElements());
    reference_pointer<xbd_tag> Shelf = Root->GetChildTag("shelf");
    ASSERT_TRUE(Shelf.IsSet());
    EXPECT_EQ(zel_string("9"), Shelf->GetAttribute("width", "none"));
    EXPECT_EQ(zel_string("9"), Shelf->GetAttribute("label", "none"));
    ASSERT_EQ(2, Shelf->GetAttributes().GetNumberOfElements());
    EXPECT_EQ(Shelf->GetAttributes()[0].ValueNum, Shelf->GetAttributes()[1].ValueNum);
    reference_pointer<xbd_tag> Book = Shelf->GetChildTag("book");
    ASSERT_TRUE(Book.IsSet());
    EXPECT_EQ(0, Book->GetAttributes().GetNumberOfElements());
    EXPECT_EQ(0, Book->GetChildren().GetNumberOfElements());
    model_file Model = ReadFile(*File);
    model_file Expected = WorkedExampleModel();
    EXPECT_EQ(Expected.TagNames, Model.TagNames);
    EXPECT_EQ(Expected.AttributeNames, Model.AttributeNames);
    EXPECT_EQ(Expected.Values, Model.Values);
    EXPECT_EQ(Expected.Root, Model.Root);
}

TEST(xbd_format, IteratorsWalkTheExampleBytes)
{
    ownership_pointer<xbd_readonly_file> ReadOnly(new xbd_readonly_file(ToZel(WorkedExample())));
    xbd_readonly_tag_iterator Root = ReadOnly->GetRootTag();
    ASSERT_TRUE(Root.IsValidTag());
    EXPECT_EQ(0, Root.GetNameNum());
    EXPECT_EQ(12, Root.GetTagSize());
    EXPECT_EQ(0, Root.GetAttrSize());
    EXPECT_EQ(10, Root.GetChildrenSize());
    EXPECT_EQ(1, Root.CountChildren());
    EXPECT_FALSE(Root.GetAttributes().IsValid());

    xbd_readonly_tag_iterator Shelf = Root.GetChildren();
    ASSERT_TRUE(Shelf.IsValidTag());
    EXPECT_EQ(1, Shelf.GetNameNum());
    EXPECT_EQ(9, Shelf.GetTagSize());
    EXPECT_EQ(4, Shelf.GetAttrSize());
    EXPECT_EQ(3, Shelf.GetChildrenSize());
    EXPECT_EQ(2, Shelf.CountAttributes());
    xbd_readonly_attribute_iterator Attribute = Shelf.GetAttributes();
    ASSERT_TRUE(Attribute.IsValid());
    EXPECT_EQ(0, Attribute.GetNameNum());
    EXPECT_EQ(0, Attribute.GetValueNum());
    Attribute.Next();
    ASSERT_TRUE(Attribute.IsValid());
    EXPECT_EQ(1, Attribute.GetNameNum());
    EXPECT_EQ(0, Attribute.GetValueNum());
    Attribute.Next();
    EXPECT_FALSE(Attribute.IsValid());
    EXPECT_THAT(ZEL_ERROR_MESSAGE(Attribute.GetNameNum()), HasSubstr("'IsValid()' is false"));
    EXPECT_THAT(ZEL_ERROR_MESSAGE(Attribute.Next()), HasSubstr("'IsValid()' is false"));

    xbd_readonly_tag_iterator Book = Shelf.GetChildren();
    ASSERT_TRUE(Book.IsValidTag());
    EXPECT_EQ(2, Book.GetNameNum());
    Book.Next();
    EXPECT_FALSE(Book.IsValidTag());
    EXPECT_THAT(ZEL_ERROR_MESSAGE(Book.GetNameNum()), HasSubstr("'IsValidTag()' is false"));
    EXPECT_THAT(ZEL_ERROR_MESSAGE(Book.GetChildren()), HasSubstr("'IsValidTag()' is false"));
    Shelf.Next();
    EXPECT_FALSE(Shelf.IsValidTag());
    Root.Next();
    EXPECT_FALSE(Root.IsValidTag());
}

TEST(xbd_format, IteratorOfADestroyedFileRefusesToRead)
{
    ownership_pointer<xbd_readonly_file> ReadOnly(new xbd_readonly_file(ToZel(WorkedExample())));
    xbd_readonly_tag_iterator Root = ReadOnly->GetRootTag();
    ReadOnly.Reset();
    EXPECT_THAT(ZEL_ERROR_MESSAGE(Root.CountChildren()), HasSubstr("'File.IsSet()' is false"));
    EXPECT_THAT(ZEL_ERROR_MESSAGE(Root.GetChildren()), HasSubstr("'File.IsSet()' is false"));
}

TEST(xbd_format, DictionariesMoveOutOfTheReadOnlyFile)
{
    xbd_readonly_file ReadOnly(ToZel(WorkedExample()));
    ownership_pointer<xbd_dictionary> TagNames = ReadOnly.TakeTagNames();
    ownership_pointer<xbd_dictionary> AttributeNames = ReadOnly.TakeAttributeNames();
    ownership_pointer<xbd_dictionary> Values = ReadOnly.TakeValues();
    EXPECT_EQ(WorkedExampleModel().TagNames, ReadDictionary(*TagNames));
    EXPECT_EQ(WorkedExampleModel().AttributeNames, ReadDictionary(*AttributeNames));
    EXPECT_EQ(WorkedExampleModel().Values, ReadDictionary(*Values));
    EXPECT_FALSE(ReadOnly.TakeTagNames().IsSet());
}

TEST(xbd_format, EmptyValueEntryIsLegalAndAFlagWithItIsPresent)
{
    model_file Model;
    Model.TagNames = {"RootTag", "shape"};
    Model.AttributeNames = {"closed", "open"};
    Model.Values = {""};
    model_tag Shape;
    Shape.NameNum = 1;
    Shape.Attributes = {{0, 0}};
    Model.Root.Children = {Shape};
    bytes Data = EncodeFile(Model);
    ownership_pointer<xbd_file> File = Load(Data);
    reference_pointer<xbd_tag> Tag = File->GetRootTag()->GetChildTag("shape");
    EXPECT_TRUE(Tag->HasAttribute("closed"));
    EXPECT_FALSE(Tag->HasAttribute("open"));
    EXPECT_EQ(zel_string(""), Tag->GetAttribute("closed", "absent"));
    EXPECT_EQ(zel_string("absent"), Tag->GetAttribute("open", "absent"));
    EXPECT_EQ(Data, Save(*File));
}

TEST(xbd_format, TagWithAttrSizeZeroAndTagSizeTwoHasNeitherAttributesNorChildren)
{
    bytes Data = Header() + EncodeDictionary({"RootTag", "leaf"}) + EncodeDictionary({}) + EncodeDictionary({}) +
                 Hex("05 00 00 02 01 00");
    xbd_readonly_file ReadOnly(ToZel(Data));
    xbd_readonly_tag_iterator Leaf = ReadOnly.GetRootTag().GetChildren();
    ASSERT_TRUE(Leaf.IsValidTag());
    EXPECT_EQ(2, Leaf.GetTagSize());
    EXPECT_EQ(0, Leaf.GetAttrSize());
    EXPECT_EQ(0, Leaf.GetChildrenSize());
    EXPECT_FALSE(Leaf.GetAttributes().IsValid());
    EXPECT_FALSE(Leaf.GetChildren().IsValidTag());
    ownership_pointer<xbd_file> File = Load(Data);
    reference_pointer<xbd_tag> Tag = File->GetRootTag()->GetChildTag("leaf");
    ASSERT_TRUE(Tag.IsSet());
    EXPECT_EQ(0, Tag->GetAttributes().GetNumberOfElements());
    EXPECT_EQ(0, Tag->GetChildren().GetNumberOfElements());
}

TEST(xbd_format, EntryLongerThan127BytesHasATwoByteLengthInTheFile)
{
    std::string LongName(200, 'q');
    xbd_file File;
    File.GetRootTag()->AddChildTag(File.GetRootTag()->NewTag(zel_string(LongName.c_str())));
    bytes Data = Save(File);
    // Tag names: "RootTag" and 200 bytes; 207 + 1 + 1 + 2 = 211, written d3 01.
    EXPECT_EQ(Header() + Hex("d3 01 02 07 c8 01") + Bytes("RootTag") + Bytes(LongName), bytes(Data.begin(), Data.begin() + 221));
    ownership_pointer<xbd_file> Loaded = Load(Data);
    EXPECT_EQ(zel_string(LongName.c_str()), Loaded->GetRootTag()->GetChildren()[0]->GetName());
}

TEST(xbd_format, JpegInTheValueDictionaryHasAThreeByteLength)
{
    std::string Jpeg(20000, '\0');
    for (size_t I = 0; I < Jpeg.size(); I++)
        Jpeg[I] = static_cast<char>((I * 131) ^ (I >> 3));
    Jpeg[0] = '\xff';
    Jpeg[1] = '\xd8';
    xbd_file File;
    ownership_pointer<xbd_tag> Photo = File.GetRootTag()->NewTag("photo");
    Photo->AddAttribute("data", zel_string(Jpeg.data(), 20000));
    File.GetRootTag()->AddChildTag(Photo);
    bytes Data = Save(File);

    model_file Model;
    Model.TagNames = {"RootTag", "photo"};
    Model.AttributeNames = {"data"};
    Model.Values = {Jpeg};
    model_tag Tag;
    Tag.NameNum = 1;
    Tag.Attributes = {{0, 0}};
    Model.Root.Children = {Tag};
    EXPECT_EQ(EncodeFile(Model), Data);
    // The value block starts after the header and the two name blocks of 16 and 7 bytes: a4 9c 01 is
    // 20004, a0 9c 01 20000.
    size_t ValueBlock = 8 + 16 + 7;
    EXPECT_EQ(Hex("a4 9c 01 01 a0 9c 01"), bytes(Data.begin() + ValueBlock, Data.begin() + ValueBlock + 7));

    ownership_pointer<xbd_file> Loaded = Load(Data);
    EXPECT_EQ(Bytes(Jpeg), FromZel(Loaded->GetRootTag()->GetChildTag("photo")->GetAttribute("data", "")));
    EXPECT_EQ(Data, Save(*Loaded));
}

TEST(xbd_format, DictionaryEndingAtTheEndOfTheBufferIsRefused)
{
    bytes Example = WorkedExample();
    EXPECT_THAT(LoadMessage(bytes(Example.begin(), Example.begin() + 47)),
                HasSubstr("'(D-Data)+DictionarySize<Init_FileData.GetLength()' is false"));
    bytes TagNamesOnly = Header() + Hex("0a 01 08") + Bytes("RootTagX");
    ASSERT_EQ(19u, TagNamesOnly.size());
    EXPECT_THAT(LoadMessage(TagNamesOnly), HasSubstr("'(D-Data)+DictionarySize<Init_FileData.GetLength()' is false"));
}

TEST(xbd_format, DictionaryPastTheEndOfTheBufferIsRefused)
{
    bytes Data = Header() + Hex("ff ff ff ff 0f 00") + bytes(20, 0);
    EXPECT_THAT(LoadMessage(Data), HasSubstr("'(D-Data)+DictionarySize<Init_FileData.GetLength()' is false"));
}

TEST(xbd_format, RootTagMayEndExactlyAtTheEndOfTheBuffer)
{
    bytes Example = WorkedExample();
    EXPECT_EQ(Example, Save(*Load(Example)));
    EXPECT_THAT(LoadMessage(bytes(Example.begin(), Example.end() - 1)),
                HasSubstr("'(D-Data)+RootTagSize<=Init_FileData.GetLength()' is false"));
}

TEST(xbd_format, RootTagSizePastTheEndIsRefused)
{
    bytes Data = Header() + SmallestBody();
    Data[Data.size() - 3] = 0x03;
    EXPECT_THAT(LoadMessage(Data), HasSubstr("'(D-Data)+RootTagSize<=Init_FileData.GetLength()' is false"));
    Data = Header() + Hex("03 01 01 52  01 00  01 00  ff ff ff ff 0f 00 00");
    EXPECT_THAT(LoadMessage(Data), HasSubstr("'(D-Data)+RootTagSize<=Init_FileData.GetLength()' is false"));
}

TEST(xbd_format, BytesAfterTheRootTagAreIgnored)
{
    bytes Data = WorkedExample() + Bytes("trailing bytes \xff\x80");
    ownership_pointer<xbd_file> File = Load(Data);
    EXPECT_EQ(ReadFile(*File).Root, WorkedExampleModel().Root);
    EXPECT_EQ(WorkedExample(), Save(*File));
}

TEST(xbd_format, TagNameRemovedBeforeTheSaveIsStillInTheDictionary)
{
    ownership_pointer<xbd_file> File = Load(WorkedExample());
    reference_pointer<xbd_tag> Shelf = File->GetRootTag()->GetChildTag("shelf");
    Shelf->RemoveChildTag(0);
    model_file Expected = WorkedExampleModel();
    Expected.Root.Children[0].Children.clear();
    EXPECT_EQ(EncodeFile(Expected), Save(*File));
    EXPECT_EQ(2, Load(Save(*File))->GetTagNames().GetNameNum("book"));
}

TEST(xbd_format, UnusedEntriesOfAllDictionariesSurviveLoadAndSave)
{
    bytes Data = EncodeFile(RichModel());
    ownership_pointer<xbd_file> File = Load(Data);
    model_file Model = ReadFile(*File);
    EXPECT_EQ(RichModel().TagNames, Model.TagNames);
    EXPECT_EQ(RichModel().AttributeNames, Model.AttributeNames);
    EXPECT_EQ(RichModel().Values, Model.Values);
    EXPECT_EQ(RichModel().Root, Model.Root);
    EXPECT_EQ(Data, Save(*File));
}

TEST(xbd_format, NonShortestASIsInAFileAreReadAndWrittenShortest)
{
    const bytes Example = WorkedExample();
    const bytes TagNames(Example.begin() + 9, Example.begin() + 29);
    const bytes AttributeNames(Example.begin() + 30, Example.begin() + 43);
    const bytes Values(Example.begin() + 44, Example.begin() + 47);
    const bytes Shelf(Example.begin() + 50, Example.end());
    // Two sizes and every number of the root one byte longer than needed: the root holds 2 + 2 + 10 bytes.
    bytes Data = Header() + Hex("94 00") + TagNames + Hex("8d 80 00") + AttributeNames + Hex("03") + Values +
                 Hex("8e 00 80 00 80 00") + Shelf;
    ownership_pointer<xbd_file> File = Load(Data);
    EXPECT_EQ(ReadFile(*File).Root, WorkedExampleModel().Root);
    EXPECT_EQ(WorkedExample(), Save(*File));
}

TEST(xbd_format, ChildRunningPastItsParentIsRefused)
{
    // The shelf claims 10 bytes where the root has 9 left for it.
    bytes Data = WorkedExample();
    Data[50] = 0x0a;
    EXPECT_EQ("XBD tag runs past the end of the tag that holds it.", LoadMessage(Data));
    // The book claims 3 bytes inside a shelf that has 2 left.
    Data = WorkedExample();
    Data[57] = 0x03;
    EXPECT_EQ("XBD tag runs past the end of the tag that holds it.", LoadMessage(Data));
}

TEST(xbd_format, AttributeBlockRunningPastItsTagIsRefused)
{
    bytes Data = WorkedExample();
    Data[52] = 0x08;
    EXPECT_EQ("XBD attribute block runs past the end of its tag.", LoadMessage(Data));
}

TEST(xbd_format, AttributeBlockEndingInsideAPairIsRefused)
{
    // Attribute block of 3 bytes: one pair and half of another; the book now starts one byte early.
    bytes Data = WorkedExample();
    Data[52] = 0x03;
    EXPECT_EQ("XBD attribute block ends inside an attribute.", LoadMessage(Data));
    Data = WorkedExample();
    Data[52] = 0x04;
    Data[56] = 0x80;
    EXPECT_EQ("Unexpected end of XBD data.", LoadMessage(Data));
}

TEST(xbd_format, TagTooShortForItsNumbersIsRefused)
{
    const bytes Dictionaries = EncodeDictionary({"RootTag"}) + EncodeDictionary({}) + EncodeDictionary({});
    // A root of TagSize 0.
    EXPECT_EQ("Unexpected end of XBD data.", LoadMessage(Header() + Dictionaries + Hex("00")));
    // A child of TagSize 0.
    EXPECT_EQ("Unexpected end of XBD data.", LoadMessage(Header() + Dictionaries + Hex("03 00 00 00")));
    // A child of TagSize 1: its AttrSize lies outside it.
    EXPECT_EQ("Unexpected end of XBD data.", LoadMessage(Header() + Dictionaries + Hex("04 00 00 01 00")));
}

TEST(xbd_format, TagNameNumberOutOfRangeIsRefused)
{
    bytes Data = WorkedExample();
    Data[58] = 0x03;
    EXPECT_THAT(LoadMessage(Data), HasSubstr("'NameNum<Names.GetNumberOfElements()' is false"));
    Data = WorkedExample();
    Data[48] = 0x03;
    EXPECT_THAT(LoadMessage(Data), HasSubstr("'NameNum<Names.GetNumberOfElements()' is false"));
}

TEST(xbd_format, NameNumberAboveTheSignedRangeIsRefused)
{
    model_file Model = WorkedExampleModel();
    Model.Root.Children[0].NameNum = 0x80000000u;
    EXPECT_THAT(LoadMessage(EncodeFile(Model)), HasSubstr("'NameNum>=0' is false"));
    Model = WorkedExampleModel();
    Model.Root.Children[0].Attributes[1].second = 0xFFFFFFFFu;
    EXPECT_THAT(LoadMessage(EncodeFile(Model)), HasSubstr("'NameNum>=0' is false"));
}

TEST(xbd_format, AttributeNumbersOutOfRangeAreRefused)
{
    bytes Data = WorkedExample();
    Data[55] = 0x02;
    EXPECT_THAT(LoadMessage(Data), HasSubstr("'NameNum<Names.GetNumberOfElements()' is false"));
    Data = WorkedExample();
    Data[56] = 0x01;
    EXPECT_THAT(LoadMessage(Data), HasSubstr("'NameNum<Names.GetNumberOfElements()' is false"));
}

TEST(xbd_format, InvalidASIInsideATreeIsRefused)
{
    bytes Data = Header() + EncodeDictionary({"RootTag"}) + EncodeDictionary({}) + EncodeDictionary({}) +
                 Hex("08 00 00 80 80 80 80 80 00");
    EXPECT_EQ("Invalid ASI - exceeded MaxLength=0 Value at Error=-128", LoadMessage(Data));
}

TEST(xbd_format, TruncationAtEveryOffsetIsAnError)
{
    bytes Data = EncodeFile(RichModel());
    for (size_t Length = 0; Length < Data.size(); Length++) {
        bytes Prefix(Data.begin(), Data.begin() + static_cast<long>(Length));
        std::string Message = LoadMessage(Prefix);
        ASSERT_NE("(no zel_error thrown)", Message) << Length;
        if (Length < 19) {
            ASSERT_EQ("Data is not valid XBD.", Message) << Length;
        } else {
            ASSERT_NE("(no zel_error thrown)", ZEL_ERROR_MESSAGE(Load(Prefix))) << Length;
        }
    }
    EXPECT_EQ(Data, Save(*Load(Data)));
}

TEST(xbd_format, CorruptedFilesLoadOrFailButNeverCrash)
{
    const bytes Original = EncodeFile(RichModel());
    std::mt19937 Random(20260101);
    int Loaded = 0;
    int Refused = 0;
    for (int Round = 0; Round < 4000; Round++) {
        bytes Data = Original;
        int Changes = 1 + static_cast<int>(Random() % 4);
        for (int I = 0; I < Changes; I++) {
            size_t Place = 8 + Random() % (Data.size() - 8);
            switch (Random() % 4) {
            case 0:
                Data[Place] = static_cast<uint8_t>(Random());
                break;
            case 1:
                Data[Place] ^= static_cast<uint8_t>(1u << (Random() % 8));
                break;
            case 2:
                Data.erase(Data.begin() + static_cast<long>(Place));
                break;
            default:
                Data.insert(Data.begin() + static_cast<long>(Place), static_cast<uint8_t>(Random()));
                break;
            }
        }
        try {
            ownership_pointer<xbd_file> File = LoadBinary(Data);
            // Whatever loads must save, and load again to the same tree.
            bytes Saved = Save(*File);
            ownership_pointer<xbd_file> Again = LoadBinary(Saved);
            ASSERT_EQ(Saved, Save(*Again));
            Loaded++;
        } catch (const zel_error &) {
            Refused++;
        }
    }
    EXPECT_GT(Loaded, 0);
    EXPECT_GT(Refused, 0);
}

TEST(xbd_format, DeepNestingLoadsSavesCopiesAndDies)
{
    const int Depth = 200000;
    const bytes Data = DeepFile(Depth);
    const bytes Dictionaries = EncodeDictionary({"RootTag"}) + EncodeDictionary({}) + EncodeDictionary({});
    const bytes Root(Data.begin() + static_cast<long>(8 + Dictionaries.size()), Data.end());
    ownership_pointer<xbd_file> File = Load(Data);
    int Levels = 0;
    for (reference_pointer<xbd_tag> Tag = File->GetRootTag(); Tag.IsSet(); Tag = Tag->GetChildTag("RootTag"))
        Levels++;
    EXPECT_EQ(Depth, Levels);
    EXPECT_EQ(Data, Save(*File));
    xbd_file Other;
    Other.GetRootTag()->AddChildTag(File->GetRootTag()->Duplicate(&Other));
    File.Reset();
    EXPECT_EQ(Header() + Dictionaries + ASI(static_cast<uint32_t>(2 + Root.size())) + Hex("00 00") + Root, Save(Other));
}

} // namespace
