#pragma once

#include <type_traits>

#include "art_engine/art_object.h"
#include "xbd/xbd.h"
#include "zel_basics/lwbase_object.h"
#include "zel_basics/lwpointers.h"
#include "zel_basics/zel_hash_map.h"
#include "zel_basics/zel_string.h"

// Builds the object of one class from a tag, for the tag name that it serves.
class art_maker_interface : public base_object
{
public:
    explicit art_maker_interface(const zel_string &TagName) : TagName(TagName) {}

    zel_string GetName() override { return TagName; }
    virtual ownership_pointer<art_object> Make(reference_pointer<xbd_tag> Tag) = 0;
    // The bare shape of a shape tag; unset for the tags of objects.
    virtual ownership_pointer<art_shape> MakeShape(reference_pointer<xbd_tag> Tag);

    const zel_string &GetTagName() const { return TagName; }

private:
    zel_string TagName;
};

// The maker of class T, which reads itself from a tag in its constructor.
template <class T> class art_object_maker : public art_maker_interface
{
public:
    explicit art_object_maker(const zel_string &TagName) : art_maker_interface(TagName) {}

    ownership_pointer<art_object> Make(reference_pointer<xbd_tag> Tag) override
    {
        return ownership_pointer<art_object>(new T(Tag));
    }
};

template <class T> class art_shape_maker;

// Turns a tag into an object of the right class; its table of tag names is the vocabulary of the
// document format. One factory serves the whole process: it is filled on first use and lives until
// the process exits.
class art_object_factory : public base_object
{
public:
    static reference_pointer<art_object_factory> GetFactory();

    // Never unset: a tag that nobody knows becomes an art_unknown_object, which keeps it for saving.
    ownership_pointer<art_object> Make(reference_pointer<xbd_tag> Tag);
    // The shape of a shape tag; a tag that is no shape's is an error in the file.
    ownership_pointer<art_shape> MakeShape(reference_pointer<xbd_tag> Tag);
    void AddMaker(ownership_pointer<art_maker_interface> Maker);

private:
    art_object_factory();

    template <class T> void Register(const char *TagName)
    {
        if constexpr (std::is_base_of<art_shape, T>::value)
            AddMaker(ownership_pointer<art_maker_interface>(new art_shape_maker<T>(TagName)));
        else
            AddMaker(ownership_pointer<art_maker_interface>(new art_object_maker<T>(TagName)));
    }

    zel_string_hash_map<ownership_pointer<art_maker_interface>> PegMakers;
};

// The object of a tag by the process's factory: what an object reading an older file's "shape"
// child uses.
ownership_pointer<art_object> ArtMakeObjectFromTag(reference_pointer<xbd_tag> Tag);
// The shape of a shape tag by the process's factory: what a stencil shape reads its child tag with.
ownership_pointer<art_shape> ArtMakeShapeFromTag(reference_pointer<xbd_tag> Tag);
