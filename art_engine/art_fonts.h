#pragma once

// The font subsystem in one include: glyphs, faces, fonts, the manager and the embedded glyph sets.
#include "art_engine/art_embedded_fonts.h"
#include "art_engine/art_font.h"
#include "art_engine/art_font_face.h"
#include "art_engine/art_font_manager.h"
#include "art_engine/art_font_source.h"
#include "art_engine/art_glyph.h"
#include "art_engine/art_glyph_drawing.h"
#include "art_engine/art_packed_path.h"
#include "art_engine/art_stub_font_face.h"
#include "art_engine/art_xml_partial_font_face.h"
