#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <random>
#include <string>
#include <unistd.h>
#include <vector>

#include "tests/xbd/xbd_binary_test_support.h"
#include "xbd/xbd.h"
#include "zel_basics/array_iterator.h"

using namespace xbd_test;
using testing::HasSubstr;

namespace {

// A file in the system's temporary directory that is removed at the end of the test.
class temporary_file
{
public:
    explicit temporary_file(const bytes &Data)
    {
        char Template[] = "/tmp/xbd_tree_test_XXXXXX";
        int Descriptor = mkstemp(Template);
        Path = Template;
        if (Descriptor >= 0) {
            if (!Data.empty() && write(Descriptor, Data.data(), Data.size()) != static_cast<ssize_t>(Data.size()))
                Path.clear();
            close(Descriptor);
        }
    }
    ~temporary_file() { std::remove(Path.c_str()); }
    zel_string GetPath() const { return zel_string(Path.c_str()); }

private:
    std::string Path;
};

// The worked example's tree, built through the tree.
void AddShelf(xbd_file &File)
{
    ownership_pointer<xbd_tag> Shelf = File.GetRootTag()->NewTag("shelf");
    Shelf->AddAttribute("width", "9");
    Shelf->AddAttribute("label", "9");
    Shelf->AddChildTag(Shelf->NewTag("book"));
    File.GetRootTag()->AddChildTag(Shelf);
}

TEST(xbd_tree, EmptyFileHasRootTagAsTagNameZero)
{
    xbd_file File;
    EXPECT_EQ(0, File.GetRootTag()->GetNameNum());
    EXPECT_EQ(zel_string("RootTag"), File.GetRootTag()->GetName());
    EXPECT_EQ(1, File.GetTagNames().GetNumberOfNames());
    EXPECT_EQ(0, File.GetAttributeNames().GetNumberOfNames());
    EXPECT_EQ(0, File.GetValues().GetNumberOfNames());
    EXPECT_EQ(Hex("5a 45 4c 58 4d 4c 01 00  09 01 07 52 6f 6f 74 54 61 67  01 00  01 00  02 00 00"), Save(File));
}

TEST(xbd_tree, GetAttributeWithANameNoTagUsedReturnsTheDefaultAndAddsNothing)
{
    ownership_pointer<xbd_file> File = Load(WorkedExample());
    reference_pointer<xbd_tag> Shelf = File->GetRootTag()->GetChildTag("shelf");
    EXPECT_EQ(zel_string("fallback"), Shelf->GetAttribute("height", "fallback"));
    EXPECT_FALSE(Shelf->HasAttribute("height"));
    EXPECT_EQ(2, File->GetAttributeNames().GetNumberOfNames());
    EXPECT_EQ(-1, File->GetAttributeNames().GetNameNum("height"));
    EXPECT_EQ(WorkedExample(), Save(*File));
}

TEST(xbd_tree, GetAttributeOfANameKnownButAbsentFromTheTagReturnsTheDefault)
{
    ownership_pointer<xbd_file> File = Load(WorkedExample());
    reference_pointer<xbd_tag> Book = File->GetRootTag()->GetChildTag("shelf")->GetChildTag("book");
    EXPECT_EQ(zel_string("none"), Book->GetAttribute("width", "none"));
    EXPECT_EQ(zel_string("none"), Book->GetAttribute(0, "none"));
    EXPECT_FALSE(Book->HasAttribute("width"));
}

TEST(xbd_tree, TwoTagsWithTheSameValueShareOneValueNumber)
{
    xbd_file File;
    ownership_pointer<xbd_tag> A = File.GetRootTag()->NewTag("a");
    ownership_pointer<xbd_tag> B = File.GetRootTag()->NewTag("b");
    A->AddAttribute("x", "shared");
    B->AddAttribute("y", "shared");
    EXPECT_EQ(A->GetAttributes()[0].ValueNum, B->GetAttributes()[0].ValueNum);
    EXPECT_EQ(1, File.GetValues().GetNumberOfNames());
    File.GetRootTag()->AddChildTag(A);
    File.GetRootTag()->AddChildTag(B);
    // One value entry, six bytes long.
    model_file Model;
    Model.TagNames = {"RootTag", "a", "b"};
    Model.AttributeNames = {"x", "y"};
    Model.Values = {"shared"};
    model_tag TagA;
    TagA.NameNum = 1;
    TagA.Attributes = {{0, 0}};
    model_tag TagB;
    TagB.NameNum = 2;
    TagB.Attributes = {{1, 0}};
    Model.Root.Children = {TagA, TagB};
    EXPECT_EQ(EncodeFile(Model), Save(File));
}

TEST(xbd_tree, SetAttributeOnDuplicateNamesChangesOnlyTheFirst)
{
    xbd_file File;
    reference_pointer<xbd_tag> Root = File.GetRootTag();
    Root->AddAttribute("n", "one");
    Root->AddAttribute("n", "two");
    Root->SetAttribute("n", "three");
    ASSERT_EQ(2, Root->GetAttributes().GetNumberOfElements());
    EXPECT_EQ(zel_string("three"), File.GetValues().GetName(Root->GetAttributes()[0].ValueNum));
    EXPECT_EQ(zel_string("two"), File.GetValues().GetName(Root->GetAttributes()[1].ValueNum));
    EXPECT_EQ(zel_string("three"), Root->GetAttribute("n", ""));
}

TEST(xbd_tree, SetAttributeAppendsWhenTheNameIsAbsent)
{
    xbd_file File;
    reference_pointer<xbd_tag> Root = File.GetRootTag();
    Root->SetAttribute("a", "1");
    Root->SetAttribute("b", "2");
    Root->SetAttribute("a", "3");
    ASSERT_EQ(2, Root->GetAttributes().GetNumberOfElements());
    EXPECT_EQ(zel_string("3"), Root->GetAttribute("a", ""));
    EXPECT_EQ(zel_string("2"), Root->GetAttribute("b", ""));
    // The replaced value stays in the dictionary.
    EXPECT_EQ(3, File.GetValues().GetNumberOfNames());
    const int32_t B = File.GetAttributeNames().GetNameNum("b");
    Root->SetAttribute(B, "4");
    EXPECT_EQ(zel_string("4"), Root->GetAttribute(B, ""));
}

TEST(xbd_tree, AddAttributeTwiceWithOneNameKeepsBothAndGetAttributeSeesTheFirst)
{
    xbd_file File;
    reference_pointer<xbd_tag> Root = File.GetRootTag();
    Root->AddAttribute("n", "first");
    Root->AddAttribute("n", "second");
    ASSERT_EQ(2, Root->GetAttributes().GetNumberOfElements());
    EXPECT_EQ(Root->GetAttributes()[0].NameNum, Root->GetAttributes()[1].NameNum);
    EXPECT_EQ(zel_string("first"), Root->GetAttribute("n", ""));
    ownership_pointer<xbd_file> Loaded = Load(Save(File));
    ASSERT_EQ(2, Loaded->GetRootTag()->GetAttributes().GetNumberOfElements());
    EXPECT_EQ(zel_string("first"), Loaded->GetRootTag()->GetAttribute("n", ""));
}

TEST(xbd_tree, GetChildTagFindsOnlyDirectChildrenAndOnlyTheFirst)
{
    xbd_file File;
    reference_pointer<xbd_tag> Root = File.GetRootTag();
    ownership_pointer<xbd_tag> Outer = Root->NewTag("outer");
    ownership_pointer<xbd_tag> Deep = Outer->NewTag("deep");
    Outer->AddChildTag(Deep);
    ownership_pointer<xbd_tag> First = Root->NewTag("twin");
    First->AddAttribute("order", "1");
    ownership_pointer<xbd_tag> Second = Root->NewTag("twin");
    Second->AddAttribute("order", "2");
    Root->AddChildTag(Outer);
    Root->AddChildTag(First);
    Root->AddChildTag(Second);
    EXPECT_FALSE(Root->GetChildTag("deep").IsSet());
    EXPECT_TRUE(Root->GetChildTag("outer")->GetChildTag("deep").IsSet());
    EXPECT_EQ(zel_string("1"), Root->GetChildTag("twin")->GetAttribute("order", ""));
    EXPECT_EQ(Root->GetChildren()[1].Get(), Root->GetChildTag(File.GetTagNames().GetNameNum("twin")).Get());
}

TEST(xbd_tree, GetChildTagOfAnUnknownNameIsUnsetAndAddsNothing)
{
    xbd_file File;
    EXPECT_FALSE(File.GetRootTag()->GetChildTag("nowhere").IsSet());
    EXPECT_FALSE(File.GetRootTag()->GetChildTag(0).IsSet());
    EXPECT_EQ(1, File.GetTagNames().GetNumberOfNames());
}

TEST(xbd_tree, BinaryValueWithZeroBytesSurvivesLoadAndSave)
{
    bytes Value;
    for (int I = 0; I < 256; I++)
        Value.push_back(static_cast<uint8_t>(I));
    Value = Value + Hex("00 00 ff 80 00");
    xbd_file File;
    File.GetRootTag()->AddAttribute("blob", ToZel(Value));
    File.GetRootTag()->AddAttribute("zero", ToZel(Hex("00")));
    bytes Saved = Save(File);
    ownership_pointer<xbd_file> Loaded = Load(Saved);
    EXPECT_EQ(Value, FromZel(Loaded->GetRootTag()->GetAttribute("blob", "")));
    EXPECT_EQ(Hex("00"), FromZel(Loaded->GetRootTag()->GetAttribute("zero", "")));
    EXPECT_EQ(Saved, Save(*Loaded));
    model_file Model;
    Model.TagNames = {"RootTag"};
    Model.AttributeNames = {"blob", "zero"};
    Model.Values = {std::string(Value.begin(), Value.end()), std::string(1, '\0')};
    Model.Root.Attributes = {{0, 0}, {1, 1}};
    EXPECT_EQ(EncodeFile(Model), Saved);
}

TEST(xbd_tree, LoadThenSaveKeepsDictionariesOrderAndNumbers)
{
    // Dictionaries in an order no writer of this tree would choose, with a repeated and unused entries.
    model_file Model;
    Model.TagNames = {"zeta", "RootTag", "alpha", "zeta", "unused"};
    Model.AttributeNames = {"late", "early", "spare"};
    Model.Values = {"v2", "v1", "", "v2"};
    model_tag Child;
    Child.NameNum = 2;
    Child.Attributes = {{1, 3}, {0, 1}, {1, 0}};
    model_tag Other;
    Other.NameNum = 0;
    Other.Attributes = {{0, 2}};
    Model.Root.NameNum = 1;
    Model.Root.Children = {Child, Other};
    bytes Data = EncodeFile(Model);
    ownership_pointer<xbd_file> File = Load(Data);
    model_file Read = ReadFile(*File);
    EXPECT_EQ(Model.TagNames, Read.TagNames);
    EXPECT_EQ(Model.AttributeNames, Read.AttributeNames);
    EXPECT_EQ(Model.Values, Read.Values);
    EXPECT_EQ(Model.Root, Read.Root);
    EXPECT_EQ(Data, Save(*File));
    // A lookup after the load does not disturb the numbers either.
    EXPECT_EQ(3, File->GetTagNames().GetNameNum("zeta"));
    EXPECT_EQ(3, File->GetValues().AddName("v2"));
    EXPECT_EQ(Data, Save(*File));
}

TEST(xbd_tree, ChildRemovedFromTheTreeLeavesItsNameInTheDictionaryAndTheNextSave)
{
    xbd_file File;
    reference_pointer<xbd_tag> Root = File.GetRootTag();
    Root->AddChildTag(Root->NewTag("kept"));
    Root->AddChildTag(Root->NewTag("gone"));
    ownership_pointer<xbd_tag> Removed = Root->RemoveChildTag(1);
    EXPECT_EQ(zel_string("gone"), Removed->GetName());
    EXPECT_EQ(1, Root->GetChildren().GetNumberOfElements());
    EXPECT_EQ(2, File.GetTagNames().GetNameNum("gone"));
    model_file Model;
    Model.TagNames = {"RootTag", "kept", "gone"};
    model_tag Kept;
    Kept.NameNum = 1;
    Model.Root.Children = {Kept};
    EXPECT_EQ(EncodeFile(Model), Save(File));
    ownership_pointer<xbd_file> Loaded = Load(Save(File));
    EXPECT_EQ(2, Loaded->GetTagNames().GetNameNum("gone"));
    EXPECT_FALSE(Loaded->GetRootTag()->GetChildTag("gone").IsSet());
}

TEST(xbd_tree, RemoveChildTagOutsideTheChildrenFails)
{
    xbd_file File;
    EXPECT_THAT(ZEL_ERROR_MESSAGE(File.GetRootTag()->RemoveChildTag(0)), HasSubstr("ASSERTION FAILED"));
}

TEST(xbd_tree, NewTagIsFreeUntilAddedButItsNameIsInterned)
{
    xbd_file File;
    {
        ownership_pointer<xbd_tag> Free = File.GetRootTag()->NewTag("draft");
        Free->AddAttribute("note", "never saved");
        EXPECT_EQ(0, File.GetRootTag()->GetChildren().GetNumberOfElements());
        EXPECT_TRUE(Free->GetFile() == reference_pointer<xbd_file>(&File));
    }
    EXPECT_EQ(1, File.GetTagNames().GetNameNum("draft"));
    EXPECT_EQ(0, File.GetValues().GetNameNum("never saved"));
}

TEST(xbd_tree, AddingANullChildFails)
{
    xbd_file File;
    EXPECT_THAT(ZEL_ERROR_MESSAGE(File.GetRootTag()->AddChildTag(ownership_pointer<xbd_tag>())),
                HasSubstr("'NewTag.IsSet()' is false"));
}

TEST(xbd_tree, TagWithoutAFileFails)
{
    EXPECT_THAT(ZEL_ERROR_MESSAGE(xbd_tag Tag("name", reference_pointer<xbd_file>())),
                HasSubstr("'XBDFile.IsSet()' is false"));
    EXPECT_THAT(ZEL_ERROR_MESSAGE(xbd_tag Tag(0, reference_pointer<xbd_file>())),
                HasSubstr("'XBDFile.IsSet()' is false"));
    EXPECT_THAT(ZEL_ERROR_MESSAGE(ownership_pointer<xbd_tag> Tag(new xbd_tag("name", reference_pointer<xbd_file>()))),
                HasSubstr("'XBDFile.IsSet()' is false"));
}

TEST(xbd_tree, ReferencesToTagsDieWithTheirFile)
{
    ownership_pointer<xbd_file> File = Load(WorkedExample());
    reference_pointer<xbd_tag> Book = File->GetRootTag()->GetChildTag("shelf")->GetChildTag("book");
    reference_pointer<xbd_file> FileReference = Book->GetFile();
    EXPECT_EQ(File.Get(), FileReference.Get());
    File.Reset();
    EXPECT_FALSE(Book.IsSet());
    EXPECT_FALSE(FileReference.IsSet());
}

TEST(xbd_tree, ChildrenAndAttributesIterateInOrder)
{
    ownership_pointer<xbd_file> File = Load(WorkedExample());
    reference_pointer<xbd_tag> Shelf = File->GetRootTag()->GetChildTag("shelf");
    std::vector<std::string> Seen;
    for (array_iterator<xbd_attribute> Attribute(Shelf->GetAttributes()); Attribute.NotDone(); Attribute.Next())
        Seen.push_back(ToStdString(File->GetAttributeNames().GetName(Attribute.Current().NameNum)) + "=" +
                       ToStdString(File->GetValues().GetName(Attribute.Current().ValueNum)));
    for (array_iterator<ownership_pointer<xbd_tag>> Child(Shelf->GetChildren()); Child.NotDone(); Child.Next())
        Seen.push_back(ToStdString(Child.Current()->GetName()));
    EXPECT_EQ((std::vector<std::string>{"width=9", "label=9", "book"}), Seen);
}

TEST(xbd_tree, DuplicateCopiesThroughTheStringsInDepthFirstOrder)
{
    ownership_pointer<xbd_file> Source = Load(WorkedExample());
    xbd_file Destination;
    Destination.GetRootTag()->AddAttribute("label", "first");
    ownership_pointer<xbd_tag> Copy = Source->GetRootTag()->GetChildTag("shelf")->Duplicate(&Destination);
    Destination.GetRootTag()->AddChildTag(Copy);
    // "label" and "RootTag" keep the numbers they had; the rest follows in the order of the walk.
    model_file Model;
    Model.TagNames = {"RootTag", "shelf", "book"};
    Model.AttributeNames = {"label", "width"};
    Model.Values = {"first", "9"};
    model_tag Book;
    Book.NameNum = 2;
    model_tag Shelf;
    Shelf.NameNum = 1;
    Shelf.Attributes = {{1, 1}, {0, 1}};
    Shelf.Children = {Book};
    Model.Root.Attributes = {{0, 0}};
    Model.Root.Children = {Shelf};
    EXPECT_EQ(EncodeFile(Model), Save(Destination));
    Source.Reset();
    EXPECT_EQ(zel_string("9"), Destination.GetRootTag()->GetChildTag("shelf")->GetAttribute("width", ""));
}

TEST(xbd_tree, DuplicateOfABranchingTreeKeepsEveryOrder)
{
    xbd_file Source;
    reference_pointer<xbd_tag> Root = Source.GetRootTag();
    ownership_pointer<xbd_tag> A = Root->NewTag("a");
    A->AddAttribute("p", "1");
    ownership_pointer<xbd_tag> A1 = A->NewTag("a1");
    A1->AddAttribute("q", "2");
    A->AddChildTag(A1);
    A->AddChildTag(A->NewTag("a2"));
    ownership_pointer<xbd_tag> B = Root->NewTag("b");
    B->AddAttribute("r", "3");
    Root->AddChildTag(A);
    Root->AddChildTag(B);
    xbd_file Destination;
    ownership_pointer<xbd_tag> Copy = Source.GetRootTag()->Duplicate(&Destination);
    // The copy of the root is one more RootTag, under the destination's own root.
    Destination.GetRootTag()->AddChildTag(Copy);
    EXPECT_EQ((std::vector<std::string>{"RootTag", "a", "a1", "a2", "b"}), ReadDictionary(Destination.GetTagNames()));
    EXPECT_EQ((std::vector<std::string>{"p", "q", "r"}), ReadDictionary(Destination.GetAttributeNames()));
    EXPECT_EQ((std::vector<std::string>{"1", "2", "3"}), ReadDictionary(Destination.GetValues()));
    EXPECT_EQ(ReadTree(*Source.GetRootTag()), ReadTree(*Destination.GetRootTag()->GetChildren()[0]));
}

TEST(xbd_tree, WriterUsesTheShortestASIForLargeNumbers)
{
    xbd_file File;
    reference_pointer<xbd_tag> Root = File.GetRootTag();
    model_file Model;
    Model.TagNames = {"RootTag"};
    for (int I = 0; I < 300; I++) {
        std::string Name = "attribute" + std::to_string(I);
        std::string Value = "value" + std::to_string(I % 150);
        Root->AddAttribute(zel_string(Name.c_str()), zel_string(Value.c_str()));
        Model.AttributeNames.push_back(Name);
        if (I < 150)
            Model.Values.push_back(Value);
        Model.Root.Attributes.push_back({static_cast<uint32_t>(I), static_cast<uint32_t>(I % 150)});
    }
    bytes Saved = Save(File);
    EXPECT_EQ(EncodeFile(Model), Saved);
    ownership_pointer<xbd_file> Loaded = Load(Saved);
    EXPECT_EQ(zel_string("value149"), Loaded->GetRootTag()->GetAttribute("attribute299", ""));
}

TEST(xbd_tree, RandomTreesSaveAsTheReferenceEncoderAndLoadBack)
{
    std::mt19937 Random(42);
    for (int Round = 0; Round < 30; Round++) {
        xbd_file File;
        model_file Model;
        Model.TagNames = {"RootTag"};
        auto Intern = [](std::vector<std::string> &Names, const std::string &Name) {
            for (size_t I = 0; I < Names.size(); I++)
                if (Names[I] == Name)
                    return static_cast<uint32_t>(I);
            Names.push_back(Name);
            return static_cast<uint32_t>(Names.size() - 1);
        };
        // Tags are added depth first, each under a random tag already in the tree.
        std::vector<std::pair<reference_pointer<xbd_tag>, std::vector<size_t>>> Tags;
        Tags.push_back({File.GetRootTag(), {}});
        for (int I = 0; I < 60; I++) {
            size_t ParentIndex = Random() % Tags.size();
            std::string Name = "t" + std::to_string(Random() % 12);
            ownership_pointer<xbd_tag> Tag = Tags[ParentIndex].first->NewTag(zel_string(Name.c_str()));
            model_tag ModelTag;
            ModelTag.NameNum = Intern(Model.TagNames, Name);
            for (int A = static_cast<int>(Random() % 4); A > 0; A--) {
                std::string AttributeName = "a" + std::to_string(Random() % 9);
                std::string Value(Random() % 6, '\0');
                for (char &C : Value)
                    C = static_cast<char>(Random() % 3 == 0 ? 0 : Random());
                Tag->AddAttribute(zel_string(AttributeName.c_str()), zel_string(Value.data(), static_cast<int>(Value.size())));
                uint32_t NameNum = Intern(Model.AttributeNames, AttributeName);
                ModelTag.Attributes.push_back({NameNum, Intern(Model.Values, Value)});
            }
            reference_pointer<xbd_tag> Added = Tag.Get();
            Tags[ParentIndex].first->AddChildTag(Tag);
            std::vector<size_t> Path = Tags[ParentIndex].second;
            model_tag *Parent = &Model.Root;
            for (size_t Step : Path)
                Parent = &Parent->Children[Step];
            Path.push_back(Parent->Children.size());
            Parent->Children.push_back(ModelTag);
            Tags.push_back({Added, Path});
        }
        bytes Saved = Save(File);
        ASSERT_EQ(EncodeFile(Model), Saved) << Round;
        ownership_pointer<xbd_file> Loaded = Load(Saved);
        model_file Read = ReadFile(*Loaded);
        ASSERT_EQ(Model.Root, Read.Root);
        ASSERT_EQ(Model.Values, Read.Values);
        ASSERT_EQ(Saved, Save(*Loaded));
    }
}

TEST(xbd_tree, LoadXBDFileReadsAWholeFile)
{
    temporary_file File(WorkedExample());
    ownership_pointer<xbd_file> Loaded = xbd_file::LoadXBDFile(File.GetPath());
    EXPECT_EQ(WorkedExample(), Save(*Loaded));
}

TEST(xbd_tree, LoadXBDFileOfAMissingFileNamesIt)
{
    EXPECT_EQ("xbd_file::LoadXBDFile() Could not open file: /nonexistent/place/doc.rofa",
              ZEL_ERROR_MESSAGE(xbd_file::LoadXBDFile("/nonexistent/place/doc.rofa")));
}

TEST(xbd_tree, LoadXBDFileOfADirectoryIsRefused)
{
    EXPECT_EQ("xbd_file::LoadXBDFile() Could not read file: /tmp", ZEL_ERROR_MESSAGE(xbd_file::LoadXBDFile("/tmp")));
}

TEST(xbd_tree, LoadXBDFileOfABinaryFileWithBadDataGivesTheFormatError)
{
    bytes Data = WorkedExample();
    Data[6] = 5;
    temporary_file File(Data);
    EXPECT_EQ("ZELXML file MajorVersion=5 is not supported.", ZEL_ERROR_MESSAGE(xbd_file::LoadXBDFile(File.GetPath())));
}

TEST(xbd_tree, LoadXBDFileThatReadsShortFailsTheAssertion)
{
    // Kernel attribute files claim a size of a page and give less.
    const char *Path = "/sys/kernel/mm/transparent_hugepage/enabled";
    std::FILE *Probe = std::fopen(Path, "rb");
    if (Probe == nullptr)
        GTEST_SKIP() << "no short-reading file on this machine";
    std::fclose(Probe);
    EXPECT_THAT(ZEL_ERROR_MESSAGE(xbd_file::LoadXBDFile(Path)), HasSubstr("'NumBytes==FileSize' is false"));
}

TEST(xbd_tree, LoadFromDataHandsTextToTheTextParser)
{
    ownership_pointer<xbd_file> File = xbd_file::LoadFromData("<shelf width=\"9\" label=\"9\"><book/></shelf>", false);
    xbd_file Expected;
    AddShelf(Expected);
    EXPECT_EQ(ReadTree(*Expected.GetRootTag()), ReadTree(*File->GetRootTag()));
}

} // namespace
