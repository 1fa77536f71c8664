#pragma once

class art_object_factory;

// Adds every fill, filter and outline tag to Factory.
void ArtAddEffectMakers(art_object_factory &Factory);
