#include "art_engine/documents/art_builtin_documents.h"

#include <cstddef>

// Made by the build from assets/showcase.xml.
extern const unsigned char ROFA_ASSET_SHOWCASE[];
extern const size_t ROFA_ASSET_SHOWCASE_SIZE;

zel_string GetShowcaseDocumentText()
{
    return zel_string(reinterpret_cast<const char *>(ROFA_ASSET_SHOWCASE), static_cast<int>(ROFA_ASSET_SHOWCASE_SIZE));
}
