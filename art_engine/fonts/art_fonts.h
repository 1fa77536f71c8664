#pragma once

// The font subsystem in one include: glyphs, faces, fonts, the manager and the embedded glyph sets.
#include "art_engine/fonts/art_embedded_fonts.h"
#include "art_engine/fonts/art_font.h"
#include "art_engine/fonts/art_font_face.h"
#include "art_engine/fonts/art_font_manager.h"
#include "art_engine/fonts/art_font_source.h"
#include "art_engine/fonts/art_glyph.h"
#include "art_engine/fonts/art_glyph_drawing.h"
#include "art_engine/fonts/art_packed_path.h"
#include "art_engine/fonts/art_stub_font_face.h"
#include "art_engine/fonts/art_xml_partial_font_face.h"
