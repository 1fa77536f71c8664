// Arbitrary bytes through the string operations that read text from outside: number parsing, quote
// matching, splitting, replacing, trimming and the Unicode conversions. Any outcome but a crash, a
// sanitizer report or an exception other than zel_error is a finding.
#include <cstddef>
#include <cstdint>

#include "rofa_lib/zel_unicode.h"
#include "zel_basics/array.h"
#include "zel_basics/zel_error.h"
#include "zel_basics/zel_string.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *Data, size_t Size)
{
    zel_string Text(reinterpret_cast<const char *>(Data), static_cast<int>(Size));
    for (int Radix = 2; Radix <= 36; Radix += 7)
        Text.ToInt(Radix);
    Text.ToFloat();
    for (int I = 0; I < Text.GetLength(); I++) {
        if (Text[I] == '"' || Text[I] == '\'') {
            try {
                int Closing = Text.FindClosingQuote(I);
                if (Closing <= I || Closing >= Text.GetLength())
                    __builtin_trap();
            } catch (const zel_error &) {
            }
        }
    }
    array<zel_string> Pieces(0);
    Text.Split(',', Pieces);
    int Total = 0;
    for (int I = 0; I < Pieces.GetNumberOfElements(); I++)
        Total += Pieces[I].GetLength();
    if (Total + Pieces.GetNumberOfElements() - 1 != Text.GetLength())
        __builtin_trap();
    Text.Replace(Text.Left(2), Text.Right(3));
    Text.Trim();
    Text.Mid(static_cast<int>(Size % 7) - 2, static_cast<int>(Size % 11) - 3);
    zel_string Wide = UTF8ToUTF16(Text);
    UTF16ToUTF8(reinterpret_cast<const char16_t *>(Wide.GetString()), Wide.GetLength() / 2);
    return 0;
}
