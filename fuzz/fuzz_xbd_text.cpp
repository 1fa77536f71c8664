// Arbitrary bytes through the markup's text parser, strict and lenient. A refusal is a zel_error; a
// tree that parses must write as binary and load back to the same bytes.
#include <cstddef>
#include <cstdint>

#include "xbd/xbd.h"
#include "xbd/xbd_xml_parser.h"
#include "zel_basics/zel_error.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *Data, size_t Size)
{
    zel_string Text(reinterpret_cast<const char *>(Data), static_cast<int>(Size));
    for (bool Lenient : {false, true}) {
        ownership_pointer<xbd_file> File;
        try {
            xbd_xml_parser Parser;
            File = Parser.ParseXML(Text, Lenient);
        } catch (const zel_error &) {
            continue;
        }
        zel_string Written = File->GetZELXMLv1String();
        ownership_pointer<xbd_file> Again = xbd_file::LoadFromData(Written, false);
        if (Again->GetZELXMLv1String() != Written)
            __builtin_trap();
    }
    return 0;
}
