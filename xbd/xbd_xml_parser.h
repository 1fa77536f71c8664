#pragma once

#include <cstdint>

#include "zel_basics/array.h"
#include "zel_basics/lwbase_object.h"
#include "zel_basics/lwpointers.h"
#include "zel_basics/zel_string.h"

class xbd_file;

// Reads the text form of the markup into an xbd_file. The text is a small XML dialect: tags and
// attributes, no namespaces, character data kept as "*XMLMarkupDataTag" children, comments and "<!"
// declarations dropped, "<?...?>" tags kept as ordinary tags whose name begins with "?".
//
// The parse is one iterative loop over the bytes with a state variable and an array of open tags, so
// the depth of nesting costs heap, never machine stack.
//
// Every error is a zel_error whose text ends in "\n(line L, column C)", the place of the byte at
// fault, counted from 1:
// - a bad byte (start character, stray byte in a tag, missing "=", missing quote, the byte after "/",
//   a second "/", a "?" that does not close, the first byte of an attribute in a close tag): that byte;
// - close tags without a match: the "<" of the close tag;
// - comments and declarations that never end: their "<";
// - escapes: the "&" of the bad sequence, or the quote found in a value;
// - tags still open at the end, including a tag that the end of input cuts off: the end of the data.
class xbd_xml_parser : public base_object
{
public:
    xbd_xml_parser();
    ~xbd_xml_parser() override;

    // On failure nothing survives: the partial file is destroyed before the error leaves.
    ownership_pointer<xbd_file> ParseXML(const zel_string &Data, bool Lenient);

    // Resolves the five named escapes (any case) and "&#N;" (N at most 255) up to the end of Text or
    // its first zero byte. Meeting Quote is an error; a Quote of 0 allows any quote. The result is
    // built in a buffer that the parser keeps and reuses at the next call.
    zel_string UnescapeXML(const zel_string &Text, char Quote);

    // A byte for messages: below 32 "ASCII #N", otherwise "'c' (ASCII #N)", N read as unsigned.
    static zel_string DescribeCharacter(char C);

private:
    zel_string Unescape(const char *Text, int32_t Length, char Quote, int32_t DataOffset);
    [[noreturn]] void RaiseEscapeError(const zel_string &Message, int32_t Offset, int32_t DataOffset);
    [[noreturn]] void RaiseScanError(const zel_string &Message, int32_t CurPos);
    zel_string GetPlaceText(int32_t CurPos);
    int32_t SkipDeclaration(int32_t TagStart);

    // The data of the parse in progress; only valid inside ParseXML.
    const char *ScanText;
    int32_t ScanPos;
    int32_t LastPos;

    array<char> UnescapeBuffer;
};
