#include "art_engine/images/art_images.h"

#include "art_engine/images/art_bitmap_object.h"
#include "art_engine/objects/art_object_factory.h"

void ArtAddImageMakers(art_object_factory &Factory)
{
    Factory.AddObjectMaker<art_bitmap_object>("art_bitmap");
}
