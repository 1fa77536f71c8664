#pragma once

#include <cstdint>

#include "xbd/xbd_asi.h"
#include "zel_basics/array.h"
#include "zel_basics/lwbase_object.h"
#include "zel_basics/zel_hash_map.h"
#include "zel_basics/zel_string.h"

// One entry of a dictionary. The bytes belong to the dictionary: to the copy of the block it was loaded
// from, or to the key of the entry in its name map.
struct xbd_dictionary_name
{
    int32_t Length;
    const char *Bytes;
};

// An intern table of byte strings: the tag names, the attribute names or the attribute values of one
// file. Numbers are indices in insertion order; they are never reused and entries are never removed,
// so a saved file keeps every number that a loaded one had.
class xbd_dictionary : public base_object
{
public:
    xbd_dictionary();
    // Parses a dictionary block without its DictionarySize: Layout 1 is the ASI layout of every file
    // that is read today, 0 the older fixed-width layout.
    xbd_dictionary(const zel_string &BinaryDictionary, int Layout);
    xbd_dictionary(const xbd_byte_range &BinaryDictionary, int Layout);

    zel_string GetName() override;

    // -1 when the name is absent; never adds.
    int32_t GetNameNum(const zel_string &Name) const;
    // The existing number, or a new one at the end.
    int32_t AddName(const zel_string &Name);
    zel_string GetName(int32_t NameNum) const;
    int GetNumberOfNames() const { return Names.GetNumberOfElements(); }

    // Fails unless NameNum numbers an entry; loaders check every number they read with it.
    void CheckNameNum(int32_t NameNum) const
    {
        TOVAS_ASSERT(NameNum>=0, const_cast<xbd_dictionary *>(this));
        TOVAS_ASSERT(NameNum<Names.GetNumberOfElements(), const_cast<xbd_dictionary *>(this));
    }

    // The block with its DictionarySize ASI in front, always in the ASI layout.
    zel_string GetBinaryDictionary() const;
    // The block's size without that ASI.
    int32_t GetBinarySize() const;
    // Writes what GetBinaryDictionary returns at Destination, given GetBinarySize(), and returns the
    // position after it; the file writer puts all blocks into one buffer this way.
    char *WriteBinaryDictionary(char *Destination, int32_t TotalSize) const;

private:
    void ParseASILayout(const xbd_byte_range &BinaryDictionary);
    void ParseFixedWidthLayout(const xbd_byte_range &BinaryDictionary);
    void AddLoadedName(int32_t Offset, int32_t Length);
    void CopyBlock(const xbd_byte_range &BinaryDictionary);
    void MapLoadedNames() const;

    // A loaded file is mostly saved again without a single lookup, and hashing every value of a file
    // with images costs more than reading it. So loaded entries reach the map only at the first lookup
    // or addition; until then they point into LoadedBlock, afterwards into the map's keys, and the
    // block goes.
    mutable zel_string_hash_map<int32_t> NameMap;
    mutable array<xbd_dictionary_name> Names;
    mutable zel_string LoadedBlock;
    mutable int32_t NumberOfMappedNames;
    int32_t TotalNameBytes;
};
