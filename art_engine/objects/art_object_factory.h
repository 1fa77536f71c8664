#pragma once

#include "art_engine/objects/art_object.h"
#include "art_engine/objects/art_shape.h"
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

// Turns a tag into an object of the right class; its table of tag names is the vocabulary of the
// document format. One factory serves the whole process and lives until the process exits. It knows
// the plain object from the start; every other class is added by the part of the engine that holds it
// (shapes, effects, images), so that the tree below them never needs to know them.
class art_object_factory : public base_object
{
public:
    static reference_pointer<art_object_factory> GetFactory();

    // Never unset: a tag that nobody knows becomes an art_unknown_object, which keeps it for saving.
    ownership_pointer<art_object> Make(reference_pointer<xbd_tag> Tag);
    // The shape of a shape tag; a tag that is no shape's is an error in the file.
    ownership_pointer<art_shape> MakeShape(reference_pointer<xbd_tag> Tag);
    // A maker for a tag already known replaces the one before.
    void AddMaker(ownership_pointer<art_maker_interface> Maker);
    template <class T> void AddObjectMaker(const char *TagName)
    {
        AddMaker(ownership_pointer<art_maker_interface>(new art_object_maker<T>(TagName)));
    }

private:
    art_object_factory();

    zel_string_hash_map<ownership_pointer<art_maker_interface>> PegMakers;
};

// The object of a tag by the process's factory: what an object reading an older file's "shape"
// child uses.
ownership_pointer<art_object> ArtMakeObjectFromTag(reference_pointer<xbd_tag> Tag);
// The shape of a shape tag by the process's factory: what a stencil shape reads its child tag with.
ownership_pointer<art_shape> ArtMakeShapeFromTag(reference_pointer<xbd_tag> Tag);
