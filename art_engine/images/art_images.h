#pragma once

class art_object_factory;

// Adds the bitmap object's tag to Factory.
void ArtAddImageMakers(art_object_factory &Factory);
