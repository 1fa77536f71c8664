#include "art_engine/effects/art_effects.h"

#include "art_engine/effects/art_color_blur.h"
#include "art_engine/effects/art_color_fade.h"
#include "art_engine/effects/art_color_fill.h"
#include "art_engine/effects/art_draw_parents_custom_fill.h"
#include "art_engine/effects/art_hsbc_filter.h"
#include "art_engine/effects/art_outline.h"
#include "art_engine/effects/art_shadow.h"
#include "art_engine/objects/art_object_factory.h"

void ArtAddEffectMakers(art_object_factory &Factory)
{
    Factory.AddObjectMaker<art_color_fill>("art_solid_fill");
    Factory.AddObjectMaker<art_color_blur>("art_blur");
    Factory.AddObjectMaker<art_color_fade>("art_gradient_fill");
    Factory.AddObjectMaker<art_shadow>("art_shadow");
    Factory.AddObjectMaker<art_outline>("art_outline");
    Factory.AddObjectMaker<art_draw_parents_custom_fill>("art_draw_parents_custom_fill");
    Factory.AddObjectMaker<art_hsbc_filter>("art_hsbc_filter");
}
