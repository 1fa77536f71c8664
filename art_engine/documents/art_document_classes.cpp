#include "art_engine/documents/art_document_classes.h"

#include "art_engine/effects/art_effects.h"
#include "art_engine/images/art_images.h"
#include "art_engine/objects/art_object_factory.h"
#include "art_engine/shapes/art_shapes.h"

void ArtAddDocumentMakers()
{
    // The factory lives as long as the process, so once a process is enough.
    static bool Added = false;
    if (Added)
        return;
    reference_pointer<art_object_factory> Factory = art_object_factory::GetFactory();
    ArtAddImageMakers(*Factory);
    ArtAddEffectMakers(*Factory);
    ArtAddShapeMakers(*Factory);
    Added = true;
}
