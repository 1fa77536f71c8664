#pragma once

#include "art_engine/art_object.h"
#include "zel_basics/lwpointers.h"

// Turns a tag into an object of the right class. One factory serves the whole process.
class art_object_factory : public base_object
{
public:
    static reference_pointer<art_object_factory> GetFactory();
    // A plain object for "pego"; no object for a tag it does not know.
    ownership_pointer<art_object> Make(reference_pointer<xbd_tag> Tag);
};
