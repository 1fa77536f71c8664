#pragma once

#include "art_engine/objects/art_layer_object.h"
#include "xbd/xbd.h"
#include "zel_basics/lwpointers.h"
#include "zel_basics/zel_string.h"

// Stands in for a tag that no class knows, such as one from a newer format, so that a load and a
// save keep it. It keeps a copy of the whole tag in a small file of its own and writes that copy
// back unchanged; in the tree it fills its parent, draws nothing and has no children.
class art_unknown_object : public art_layer_object
{
public:
    // Reads nothing from the tag: none of its meaning is known here, and all of it goes out again.
    explicit art_unknown_object(reference_pointer<xbd_tag> Tag);
    art_unknown_object(const art_unknown_object &Other);

    ownership_pointer<art_object> Duplicate() const override;
    ownership_pointer<xbd_tag> CreateTag(reference_pointer<xbd_file> File) override;
    zel_string GetDebugName() override;

    reference_pointer<xbd_tag> GetStoredTag() const { return reference_pointer<xbd_tag>(StoredTag.Get()); }

private:
    void Keep(reference_pointer<xbd_tag> Tag);

    ownership_pointer<xbd_tag> StoredTag;
    ownership_pointer<xbd_file> PrivateFile;
};
