#pragma once

class art_object_factory;

// Adds the stencil shape and every shape tag to Factory; a shape tag makes a stencil shape that holds
// the shape.
void ArtAddShapeMakers(art_object_factory &Factory);
