#pragma once

#include <cstdint>

#include "xbd/xbd_dictionary.h"
#include "xbd/xbd_readonly.h"
#include "zel_basics/array.h"
#include "zel_basics/lwbase_object.h"
#include "zel_basics/lwpointers.h"
#include "zel_basics/zel_string.h"

class xbd_file;

// An attribute is two numbers: its name in the file's attribute names and its value in the file's
// values. Tags carry no strings at all.
struct xbd_attribute
{
    int32_t NameNum;
    int32_t ValueNum;
};

// One node of a tree of tags. Every tag belongs to one file, whose dictionaries give its numbers a
// meaning; a tag moves to another file only by Duplicate, which goes through the strings.
//
// Walks of the tree (loading, sizing, writing, copying, destruction) keep their place in arrays
// instead of on the machine stack, so a tree of any depth that fits in memory is safe.
class xbd_tag : public base_object
{
public:
    xbd_tag(const zel_string &Name, reference_pointer<xbd_file> XBDFile);
    xbd_tag(int32_t NameNum, reference_pointer<xbd_file> XBDFile);
    // Builds the tag and all its descendants from the file's bytes. Every number is checked against
    // XBDFile's dictionaries, so a tree that loads has no number without an entry.
    xbd_tag(xbd_readonly_tag_iterator &Tag, reference_pointer<xbd_file> XBDFile);
    ~xbd_tag() override;

    zel_string GetName() override;
    int32_t GetNameNum() const { return NameNum; }
    reference_pointer<xbd_file> GetFile() const { return XBDFile; }

    // Appends without looking for an attribute of the same name, so names can repeat.
    void AddAttribute(const zel_string &Name, const zel_string &Value);
    void AddAttribute(int32_t NameNum, const zel_string &Value);
    // Replaces the value of the first attribute of that name, or appends.
    void SetAttribute(const zel_string &Name, const zel_string &Value);
    void SetAttribute(int32_t NameNum, const zel_string &Value);
    // The value of the first attribute of that name, or Default. Never adds to a dictionary.
    zel_string GetAttribute(const zel_string &Name, const zel_string &Default) const;
    zel_string GetAttribute(int32_t NameNum, const zel_string &Default) const;
    // Presence alone: a flag is an attribute with an empty value.
    bool HasAttribute(const zel_string &Name) const;

    // The first direct child of that name, or an unset pointer.
    reference_pointer<xbd_tag> GetChildTag(const zel_string &Name);
    reference_pointer<xbd_tag> GetChildTag(int32_t NameNum);
    void AddChildTag(ownership_pointer<xbd_tag> NewTag);
    // A free tag of this tag's file, to be filled and then added with AddChildTag.
    ownership_pointer<xbd_tag> NewTag(const zel_string &Name);
    // Takes a child out of the tree and hands it to the caller.
    ownership_pointer<xbd_tag> RemoveChildTag(int Index);

    // A deep copy into Destination, whose dictionaries take every name and value in the order of a
    // depth-first walk.
    ownership_pointer<xbd_tag> Duplicate(reference_pointer<xbd_file> Destination);

    array<xbd_attribute> &GetAttributes() { return Attributes; }
    array<ownership_pointer<xbd_tag>> &GetChildren() { return Children; }

private:
    friend class xbd_file;

    int FindAttribute(int32_t AttributeNameNum) const;
    void CopyFromData(xbd_readonly_tag_iterator &Tag, const xbd_file &File);
    // The tag with its name and attributes, without children.
    ownership_pointer<xbd_tag> DuplicateAlone(const reference_pointer<xbd_file> &Destination);
    void SumByteSizes();
    // The sizing pass of the writer over this tag's subtree; returns this tag's TagSize.
    int32_t ComputeByteSizes();
    char *WriteTagHead(char *D, const char *&ContentStart) const;
    static void CheckWrittenLength(const xbd_tag *Tag, const char *ContentStart, const char *D);
    // Writes the subtree sized by ComputeByteSizes() at D and returns the position after it.
    char *WriteTree(char *D) const;

    int32_t NameNum;
    // Scratch of the writer: AttrSize and TagSize of the last sizing pass.
    int32_t AttributeByteSize;
    int32_t TagByteSize;
    reference_pointer<xbd_file> XBDFile;
    array<ownership_pointer<xbd_tag>> Children;
    array<xbd_attribute> Attributes;
};

// A whole tree with its three dictionaries. Loading and saving keep every dictionary entry and every
// number as they were, used or not.
class xbd_file : public base_object
{
public:
    // Empty dictionaries, "RootTag" as tag name 0 and a root tag without attributes.
    xbd_file();
    explicit xbd_file(ownership_pointer<xbd_readonly_file> ReadOnly);

    zel_string GetName() override;

    reference_pointer<xbd_tag> GetRootTag();
    xbd_dictionary &GetTagNames();
    xbd_dictionary &GetAttributeNames();
    xbd_dictionary &GetValues();
    const xbd_dictionary &GetTagNames() const;
    const xbd_dictionary &GetAttributeNames() const;
    const xbd_dictionary &GetValues() const;

    // The whole file in the binary form that every writer produces.
    zel_string GetZELXMLv1String();

    static ownership_pointer<xbd_file> LoadXBDFile(const zel_string &FileName);
    // Binary data when IsValid says so, otherwise the text form, to whose parser Lenient goes.
    static ownership_pointer<xbd_file> LoadFromData(const zel_string &Data, bool Lenient);
    // Whether Data is in the binary form: nothing else tells the two forms apart.
    static bool IsValid(const zel_string &Data);

private:
    ownership_pointer<xbd_dictionary> TagNames;
    ownership_pointer<xbd_dictionary> AttributeNames;
    ownership_pointer<xbd_dictionary> Values;
    ownership_pointer<xbd_tag> RootTag;
};
