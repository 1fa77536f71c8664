#pragma once

#include <cstdint>

#include "xbd/xbd_dictionary.h"
#include "zel_basics/lwbase_object.h"
#include "zel_basics/lwpointers.h"
#include "zel_basics/zel_string.h"

class xbd_readonly_file;

// Walks the attribute pairs of one tag in the file's bytes, without allocating. It starts on the
// first pair; an empty block gives an iterator that is not valid at once.
class xbd_readonly_attribute_iterator
{
public:
    xbd_readonly_attribute_iterator();
    xbd_readonly_attribute_iterator(reference_pointer<xbd_readonly_file> File, const char *Start, const char *End);

    bool IsValid() const { return Position < End; }
    void Next();
    int32_t GetNameNum() const;
    int32_t GetValueNum() const;

private:
    void Decode();

    reference_pointer<xbd_readonly_file> File;
    const char *Position;
    const char *NextPosition;
    const char *End;
    int32_t NameNum;
    int32_t ValueNum;
};

// Walks a run of sibling tags in the file's bytes, without allocating. It starts on the first tag of
// the run; an empty run gives an iterator that is not valid at once. Every size is checked against
// the range it must fit in before anything inside it is read.
class xbd_readonly_tag_iterator
{
public:
    xbd_readonly_tag_iterator();
    // The tags that lie back to back from Start up to End.
    xbd_readonly_tag_iterator(reference_pointer<xbd_readonly_file> File, const char *Start, const char *End);

    bool IsValidTag() const { return TagStart < End; }
    void Next();

    int32_t GetNameNum() const;
    int32_t GetTagSize() const;
    int32_t GetAttrSize() const;
    int32_t GetChildrenSize() const;
    xbd_readonly_attribute_iterator GetAttributes() const;
    xbd_readonly_tag_iterator GetChildren() const;

    // The number of attribute pairs, counted from the ASIs' last bytes: exact for a well-formed block,
    // and a block that is not is refused when its pairs are read.
    int CountAttributes() const;
    // The number of children, found by stepping over their TagSizes alone.
    int CountChildren() const;

private:
    void Decode();
    // Reads a TagSize at D, checks that the tag fits before End, and returns the tag's end.
    static const char *ReadTagSize(const char *&D, const char *End, uint32_t &Size);
    const char *GetTagEnd() const { return PositionAfterTagSize + TagSize; }

    reference_pointer<xbd_readonly_file> File;
    const char *TagStart;
    const char *PositionAfterTagSize;
    const char *AttributeStart;
    const char *ChildrenStart;
    // The end of the parent's range, where the run of siblings stops.
    const char *End;
    int32_t TagSize;
    int32_t NameNum;
    int32_t AttrSize;
    int32_t ChildrenSize;
};

// A view on the bytes of a binary file: the header and the three dictionaries are parsed at once, the
// tags are walked by iterators on demand. The dictionaries can be taken out, to become those of an
// xbd_file.
class xbd_readonly_file : public base_object
{
public:
    explicit xbd_readonly_file(const zel_string &Init_FileData);

    zel_string GetName() override;

    ownership_pointer<xbd_dictionary> TakeTagNames();
    ownership_pointer<xbd_dictionary> TakeAttributeNames();
    ownership_pointer<xbd_dictionary> TakeValues();

    xbd_readonly_tag_iterator GetRootTag();

    // The three reserved numbers of a version 2 header (Index 0 to 2); 0 in version 1.
    int32_t GetReservedHeaderValue(int Index) const;

private:
    ownership_pointer<xbd_dictionary> ReadDictionary(const zel_string &Init_FileData, const char *&D);

    int32_t ReservedHeaderValues[3];
    ownership_pointer<xbd_dictionary> TagNames;
    ownership_pointer<xbd_dictionary> AttributeNames;
    ownership_pointer<xbd_dictionary> Values;
    // From the root's TagSize ASI through the root's last byte.
    zel_string RootTagData;
};
