#include "art_engine/objects/art_unknown_object.h"

#include "zel_basics/debug.h"

art_unknown_object::art_unknown_object(reference_pointer<xbd_tag> Tag)
{
    Keep(Tag);
}

// A copy has a file and a tag of its own, so that the two objects never share what they write.
art_unknown_object::art_unknown_object(const art_unknown_object &Other) : art_layer_object(Other)
{
    Keep(Other.GetStoredTag());
}

// A new file has empty dictionaries and "RootTag" as its first tag name, so the copy's numbers start
// afresh; only the strings carry over.
void art_unknown_object::Keep(reference_pointer<xbd_tag> Tag)
{
    PrivateFile.Reset(new xbd_file);
    StoredTag = Tag->Duplicate(reference_pointer<xbd_file>(PrivateFile.Get()));
}

ownership_pointer<art_object> art_unknown_object::Duplicate() const
{
    return ownership_pointer<art_object>(new art_unknown_object(*this));
}

// Nothing of the object's own state goes out: the tag as it came in is all there is to write.
ownership_pointer<xbd_tag> art_unknown_object::CreateTag(reference_pointer<xbd_file> File)
{
    TOVAS_ASSERT(File.IsSet(), this);
    return StoredTag->Duplicate(File);
}

zel_string art_unknown_object::GetDebugName()
{
    return zel_string("Unknown Object Type: ") + StoredTag->GetName();
}
