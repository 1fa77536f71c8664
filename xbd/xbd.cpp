#include "xbd/xbd.h"

#include <cstdio>
#include <cstring>

#include "xbd/xbd_asi.h"
#include "xbd/xbd_xml_parser.h"
#include "zel_basics/debug.h"
#include "zel_basics/zel_error.h"

xbd_tag::xbd_tag(const zel_string &Name, reference_pointer<xbd_file> XBDFile)
    : NameNum(0), AttributeByteSize(0), TagByteSize(0), XBDFile(XBDFile), Children(0), Attributes(0)
{
    TOVAS_ASSERT(XBDFile.IsSet(), this);
    NameNum = XBDFile->GetTagNames().AddName(Name);
}

xbd_tag::xbd_tag(int32_t NameNum, reference_pointer<xbd_file> XBDFile)
    : NameNum(NameNum), AttributeByteSize(0), TagByteSize(0), XBDFile(XBDFile), Children(0), Attributes(0)
{
    TOVAS_ASSERT(XBDFile.IsSet(), this);
}

xbd_tag::xbd_tag(xbd_readonly_tag_iterator &Tag, reference_pointer<xbd_file> XBDFile)
    : NameNum(Tag.GetNameNum()), AttributeByteSize(0), TagByteSize(0), XBDFile(XBDFile), Children(0), Attributes(0)
{
    TOVAS_ASSERT(XBDFile.IsSet(), this);
    const xbd_file &File = *XBDFile;
    CopyFromData(Tag, File);
    // Each frame holds a tag whose children are being built and the walk over their bytes.
    struct frame
    {
        xbd_tag *Parent;
        xbd_readonly_tag_iterator Child;
    };
    array<frame> Stack(0);
    Stack.Add(frame{this, Tag.GetChildren()});
    while (Stack.GetNumberOfElements() > 0) {
        frame &Top = Stack.GetLast();
        if (!Top.Child.IsValidTag()) {
            Stack.RemoveLast();
            continue;
        }
        ownership_pointer<xbd_tag> NewChild(new xbd_tag(Top.Child.GetNameNum(), XBDFile));
        xbd_tag *Child = NewChild.Get();
        Child->CopyFromData(Top.Child, File);
        Top.Parent->Children.Add(NewChild);
        xbd_readonly_tag_iterator Grandchildren = Top.Child.GetChildren();
        Top.Child.Next();
        if (Grandchildren.IsValidTag())
            Stack.Add(frame{Child, Grandchildren});
    }
}

// The file gives the counts of pairs and children before they are read, so both arrays are
// allocated once at their final size.
void xbd_tag::CopyFromData(xbd_readonly_tag_iterator &Tag, const xbd_file &File)
{
    File.GetTagNames().CheckNameNum(NameNum);
    const xbd_dictionary &AttributeNames = File.GetAttributeNames();
    const xbd_dictionary &Values = File.GetValues();
    Attributes.Reserve(Tag.CountAttributes());
    for (xbd_readonly_attribute_iterator Attribute = Tag.GetAttributes(); Attribute.IsValid(); Attribute.Next()) {
        const xbd_attribute Pair = {Attribute.GetNameNum(), Attribute.GetValueNum()};
        AttributeNames.CheckNameNum(Pair.NameNum);
        Values.CheckNameNum(Pair.ValueNum);
        Attributes.Add(Pair);
    }
    Children.Reserve(Tag.CountChildren());
}

// Children would otherwise die inside their parent's destructor, one machine stack frame per level
// of the tree. Handing every descendant to one list first lets each die without children.
xbd_tag::~xbd_tag()
{
    bool HasGrandchildren = false;
    for (int I = 0; I < Children.GetNumberOfElements() && !HasGrandchildren; I++)
        HasGrandchildren = Children[I].IsSet() && Children[I]->Children.GetNumberOfElements() > 0;
    if (!HasGrandchildren)
        return;
    array<ownership_pointer<xbd_tag>> Pending(0);
    for (int I = 0; I < Children.GetNumberOfElements(); I++)
        Pending.Add(Children[I]);
    while (Pending.GetNumberOfElements() > 0) {
        ownership_pointer<xbd_tag> Tag = Pending.GetLast();
        Pending.RemoveLast();
        if (!Tag.IsSet())
            continue;
        array<ownership_pointer<xbd_tag>> &TagChildren = Tag->Children;
        for (int I = 0; I < TagChildren.GetNumberOfElements(); I++)
            Pending.Add(TagChildren[I]);
    }
}

zel_string xbd_tag::GetName()
{
    return XBDFile->GetTagNames().GetName(NameNum);
}

void xbd_tag::AddAttribute(const zel_string &Name, const zel_string &Value)
{
    AddAttribute(XBDFile->GetAttributeNames().AddName(Name), Value);
}

void xbd_tag::AddAttribute(int32_t NameNum, const zel_string &Value)
{
    Attributes.Add(xbd_attribute{NameNum, XBDFile->GetValues().AddName(Value)});
}

void xbd_tag::SetAttribute(const zel_string &Name, const zel_string &Value)
{
    SetAttribute(XBDFile->GetAttributeNames().AddName(Name), Value);
}

void xbd_tag::SetAttribute(int32_t NameNum, const zel_string &Value)
{
    const int32_t ValueNum = XBDFile->GetValues().AddName(Value);
    const int Index = FindAttribute(NameNum);
    if (Index >= 0)
        Attributes[Index].ValueNum = ValueNum;
    else
        Attributes.Add(xbd_attribute{NameNum, ValueNum});
}

int xbd_tag::FindAttribute(int32_t AttributeNameNum) const
{
    for (int I = 0; I < Attributes.GetNumberOfElements(); I++)
        if (Attributes[I].NameNum == AttributeNameNum)
            return I;
    return -1;
}

zel_string xbd_tag::GetAttribute(const zel_string &Name, const zel_string &Default) const
{
    const int32_t AttributeNameNum = XBDFile->GetAttributeNames().GetNameNum(Name);
    if (AttributeNameNum < 0)
        return Default;
    return GetAttribute(AttributeNameNum, Default);
}

zel_string xbd_tag::GetAttribute(int32_t NameNum, const zel_string &Default) const
{
    const int Index = FindAttribute(NameNum);
    if (Index < 0)
        return Default;
    return XBDFile->GetValues().GetName(Attributes[Index].ValueNum);
}

bool xbd_tag::HasAttribute(const zel_string &Name) const
{
    const int32_t AttributeNameNum = XBDFile->GetAttributeNames().GetNameNum(Name);
    return AttributeNameNum >= 0 && FindAttribute(AttributeNameNum) >= 0;
}

reference_pointer<xbd_tag> xbd_tag::GetChildTag(const zel_string &Name)
{
    const int32_t ChildNameNum = XBDFile->GetTagNames().GetNameNum(Name);
    if (ChildNameNum < 0)
        return reference_pointer<xbd_tag>();
    return GetChildTag(ChildNameNum);
}

reference_pointer<xbd_tag> xbd_tag::GetChildTag(int32_t NameNum)
{
    for (int I = 0; I < Children.GetNumberOfElements(); I++)
        if (Children[I]->NameNum == NameNum)
            return reference_pointer<xbd_tag>(Children[I].Get());
    return reference_pointer<xbd_tag>();
}

void xbd_tag::AddChildTag(ownership_pointer<xbd_tag> NewTag)
{
    TOVAS_ASSERT(NewTag.IsSet(), this);
    Children.Add(NewTag);
}

ownership_pointer<xbd_tag> xbd_tag::NewTag(const zel_string &Name)
{
    return ownership_pointer<xbd_tag>(new xbd_tag(Name, XBDFile));
}

ownership_pointer<xbd_tag> xbd_tag::RemoveChildTag(int Index)
{
    ownership_pointer<xbd_tag> Removed = Children[Index];
    Children.Remove(Index);
    return Removed;
}

ownership_pointer<xbd_tag> xbd_tag::DuplicateAlone(const reference_pointer<xbd_file> &Destination)
{
    ownership_pointer<xbd_tag> Copy(new xbd_tag(GetName(), Destination));
    const xbd_file &File = *XBDFile;
    for (int I = 0; I < Attributes.GetNumberOfElements(); I++)
        Copy->AddAttribute(File.GetAttributeNames().GetName(Attributes[I].NameNum),
                           File.GetValues().GetName(Attributes[I].ValueNum));
    return Copy;
}

// Depth first, parents before children, as a recursive copy would go: that order decides the numbers
// that the names and values get in Destination.
ownership_pointer<xbd_tag> xbd_tag::Duplicate(reference_pointer<xbd_file> Destination)
{
    ownership_pointer<xbd_tag> Copy = DuplicateAlone(Destination);
    struct frame
    {
        xbd_tag *Source;
        xbd_tag *Copy;
        int32_t NextChild;
    };
    array<frame> Stack(0);
    Stack.Add(frame{this, Copy.Get(), 0});
    while (Stack.GetNumberOfElements() > 0) {
        frame &Top = Stack.GetLast();
        if (Top.NextChild >= Top.Source->Children.GetNumberOfElements()) {
            Stack.RemoveLast();
            continue;
        }
        xbd_tag *Source = &*Top.Source->Children[Top.NextChild++];
        xbd_tag *Parent = Top.Copy;
        ownership_pointer<xbd_tag> ChildCopy = Source->DuplicateAlone(Destination);
        xbd_tag *Child = ChildCopy.Get();
        Parent->AddChildTag(ChildCopy);
        Stack.Add(frame{Source, Child, 0});
    }
    return Copy;
}

void xbd_tag::SumByteSizes()
{
    int32_t AttrSize = 0;
    for (int I = 0; I < Attributes.GetNumberOfElements(); I++)
        AttrSize += GetASILength(static_cast<uint32_t>(Attributes[I].NameNum)) +
                    GetASILength(static_cast<uint32_t>(Attributes[I].ValueNum));
    int32_t TagSize = AttrSize + GetASILength(static_cast<uint32_t>(NameNum)) +
                      GetASILength(static_cast<uint32_t>(AttrSize));
    for (int I = 0; I < Children.GetNumberOfElements(); I++) {
        const int32_t ChildSize = Children[I]->TagByteSize;
        TagSize += ChildSize + GetASILength(static_cast<uint32_t>(ChildSize));
    }
    AttributeByteSize = AttrSize;
    TagByteSize = TagSize;
}

// Children first. A tag without children is sized where it is met, which spares the stack most of
// the tags of a tree.
int32_t xbd_tag::ComputeByteSizes()
{
    struct frame
    {
        xbd_tag *Tag;
        int32_t NextChild;
    };
    array<frame> Stack(0);
    Stack.Add(frame{this, 0});
    while (Stack.GetNumberOfElements() > 0) {
        frame &Top = Stack.GetLast();
        xbd_tag *Tag = Top.Tag;
        if (Top.NextChild >= Tag->Children.GetNumberOfElements()) {
            Tag->SumByteSizes();
            Stack.RemoveLast();
            continue;
        }
        xbd_tag *Child = &*Tag->Children[Top.NextChild++];
        if (Child->Children.GetNumberOfElements() == 0)
            Child->SumByteSizes();
        else
            Stack.Add(frame{Child, 0});
    }
    return TagByteSize;
}

char *xbd_tag::WriteTagHead(char *D, const char *&ContentStart) const
{
    D = WriteASI(D, static_cast<uint32_t>(TagByteSize));
    ContentStart = D;
    D = WriteASI(D, static_cast<uint32_t>(NameNum));
    D = WriteASI(D, static_cast<uint32_t>(AttributeByteSize));
    const xbd_attribute *Pairs = Attributes.GetData();
    for (int I = 0; I < Attributes.GetNumberOfElements(); I++) {
        D = WriteASI(D, static_cast<uint32_t>(Pairs[I].NameNum));
        D = WriteASI(D, static_cast<uint32_t>(Pairs[I].ValueNum));
    }
    return D;
}

void xbd_tag::CheckWrittenLength(const xbd_tag *Tag, const char *ContentStart, const char *D)
{
    const int32_t TagSize = Tag->TagByteSize;
    // What was written for the tag after its TagSize ASI.
    auto GetZELXMLv1StringLength = [ContentStart, D]() { return static_cast<int32_t>(D - ContentStart); };
    TOVAS_ASSERT(TagSize==GetZELXMLv1StringLength(), const_cast<xbd_tag *>(Tag));
}

char *xbd_tag::WriteTree(char *D) const
{
    struct frame
    {
        const xbd_tag *Tag;
        int32_t NextChild;
        const char *ContentStart;
    };
    array<frame> Stack(0);
    const char *ContentStart = nullptr;
    D = WriteTagHead(D, ContentStart);
    Stack.Add(frame{this, 0, ContentStart});
    while (Stack.GetNumberOfElements() > 0) {
        frame &Top = Stack.GetLast();
        if (Top.NextChild >= Top.Tag->Children.GetNumberOfElements()) {
            CheckWrittenLength(Top.Tag, Top.ContentStart, D);
            Stack.RemoveLast();
            continue;
        }
        const xbd_tag *Child = &*Top.Tag->Children[Top.NextChild++];
        D = Child->WriteTagHead(D, ContentStart);
        if (Child->Children.GetNumberOfElements() == 0)
            CheckWrittenLength(Child, ContentStart, D);
        else
            Stack.Add(frame{Child, 0, ContentStart});
    }
    return D;
}

xbd_file::xbd_file()
    : TagNames(new xbd_dictionary()), AttributeNames(new xbd_dictionary()), Values(new xbd_dictionary())
{
    RootTag.Reset(new xbd_tag(zel_string("RootTag"), this));
}

xbd_file::xbd_file(ownership_pointer<xbd_readonly_file> ReadOnly)
    : TagNames(ReadOnly->TakeTagNames()), AttributeNames(ReadOnly->TakeAttributeNames()),
      Values(ReadOnly->TakeValues())
{
    xbd_readonly_tag_iterator Root = ReadOnly->GetRootTag();
    RootTag.Reset(new xbd_tag(Root, this));
}

zel_string xbd_file::GetName()
{
    return "xbd_file";
}

reference_pointer<xbd_tag> xbd_file::GetRootTag()
{
    return reference_pointer<xbd_tag>(RootTag.Get());
}

xbd_dictionary &xbd_file::GetTagNames()
{
    return *TagNames;
}

xbd_dictionary &xbd_file::GetAttributeNames()
{
    return *AttributeNames;
}

xbd_dictionary &xbd_file::GetValues()
{
    return *Values;
}

const xbd_dictionary &xbd_file::GetTagNames() const
{
    return *TagNames;
}

const xbd_dictionary &xbd_file::GetAttributeNames() const
{
    return *AttributeNames;
}

const xbd_dictionary &xbd_file::GetValues() const
{
    return *Values;
}

// Sizes first, so the file is written into one block of its exact length.
zel_string xbd_file::GetZELXMLv1String()
{
    TOVAS_ASSERT(TagNames.IsSet(), this);
    TOVAS_ASSERT(AttributeNames.IsSet(), this);
    TOVAS_ASSERT(Values.IsSet(), this);
    TOVAS_ASSERT(RootTag.IsSet(), this);
    const xbd_dictionary *Dictionaries[3] = {TagNames.Get(), AttributeNames.Get(), Values.Get()};
    int32_t DictionarySizes[3];
    int64_t FileSize = 8;
    for (int I = 0; I < 3; I++) {
        DictionarySizes[I] = Dictionaries[I]->GetBinarySize();
        FileSize += GetASILength(static_cast<uint32_t>(DictionarySizes[I])) + DictionarySizes[I];
    }
    const int32_t RootTagSize = RootTag->ComputeByteSizes();
    FileSize += GetASILength(static_cast<uint32_t>(RootTagSize)) + RootTagSize;
    xbd_byte_buffer Buffer(FileSize);
    char *D = Buffer.GetData();
    const char Header[8] = {'Z', 'E', 'L', 'X', 'M', 'L', 1, 0};
    std::memcpy(D, Header, sizeof(Header));
    D += sizeof(Header);
    for (int I = 0; I < 3; I++)
        D = Dictionaries[I]->WriteBinaryDictionary(D, DictionarySizes[I]);
    RootTag->WriteTree(D);
    return Buffer.TakeString();
}

ownership_pointer<xbd_file> xbd_file::LoadXBDFile(const zel_string &FileName)
{
    std::FILE *File = std::fopen(FileName.GetString(), "rb");
    if (File == nullptr)
        throw zel_error(zel_string("xbd_file::LoadXBDFile() Could not open file: ") + FileName);
    // A directory opens too, and then cannot seek or tells a size that no string can hold.
    const bool SeekedToEnd = std::fseek(File, 0, SEEK_END) == 0;
    const long FileSize = std::ftell(File);
    if (!SeekedToEnd || std::fseek(File, 0, SEEK_SET) != 0 || FileSize < 0 || FileSize > 0x7FFFFFFB) {
        std::fclose(File);
        throw zel_error(zel_string("xbd_file::LoadXBDFile() Could not read file: ") + FileName);
    }
    xbd_byte_buffer Buffer(FileSize);
    const long NumBytes = static_cast<long>(std::fread(Buffer.GetData(), 1, static_cast<size_t>(FileSize), File));
    std::fclose(File);
    TOVAS_ASSERT(NumBytes==FileSize, nullptr);
    return LoadFromData(Buffer.TakeString(), false);
}

ownership_pointer<xbd_file> xbd_file::LoadFromData(const zel_string &Data, bool Lenient)
{
    if (!IsValid(Data))
        return xbd_xml_parser().ParseXML(Data, Lenient);
    ownership_pointer<xbd_readonly_file> ReadOnly(new xbd_readonly_file(Data));
    return ownership_pointer<xbd_file>(new xbd_file(ReadOnly));
}

bool xbd_file::IsValid(const zel_string &Data)
{
    const int Length = Data.GetLength();
    if (Length < 19)
        return false;
    if (std::memcmp(Data.GetString(), "ZELXML", 6) == 0)
        return true;
    return Length >= 20 && std::memcmp(Data.GetString(), "XBD", 3) == 0;
}
