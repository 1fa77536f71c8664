#include "xbd/xbd_xml_parser.h"

#include <cstdio>
#include <cstring>

#include "xbd/xbd.h"
#include "zel_basics/debug.h"
#include "zel_basics/zel_error.h"
#include "zel_basics/zel_text_buffer.h"

namespace {

enum scan_state
{
    TagStartState = 0,
    TagNameState = 1,
    InsideTagState = 2,
    BetweenTagsState = 3,
    AttributeNameState = 4,
    BeforeValueState = 5,
    ValueState = 6
};

bool IsNameStart(char C)
{
    return (C >= 'A' && C <= 'Z') || (C >= 'a' && C <= 'z') || C == '_' || C == ':';
}

bool IsNameCharacter(char C)
{
    return IsNameStart(C) || (C >= '0' && C <= '9') || C == '-' || C == '.';
}

bool IsWhiteSpace(char C)
{
    return C == '\t' || C == '\n' || C == '\r' || C == ' ';
}

// ASCII only: the escape names are ASCII, and a locale must not change what the markup means.
char LowerASCII(char C)
{
    return (C >= 'A' && C <= 'Z') ? static_cast<char>(C - 'A' + 'a') : C;
}

// Whether the bytes at Text, of which Available can be read, spell Form (lower case) in any case.
bool MatchesNoCase(const char *Text, int32_t Available, const char *Form)
{
    int32_t FormLength = static_cast<int32_t>(std::strlen(Form));
    if (Available < FormLength)
        return false;
    for (int32_t I = 0; I < FormLength; I++)
        if (LowerASCII(Text[I]) != Form[I])
            return false;
    return true;
}

const char *const MarkupDataTagName = "*XMLMarkupDataTag";
const char *const MarkedDataAttributeName = "*XMLMarkedDataAttr";

} // namespace

xbd_xml_parser::xbd_xml_parser() : ScanText(nullptr), ScanPos(0), LastPos(0), UnescapeBuffer(0) {}

xbd_xml_parser::~xbd_xml_parser() = default;

zel_string xbd_xml_parser::DescribeCharacter(char C)
{
    unsigned char Byte = static_cast<unsigned char>(C);
    zel_string Number = zel_string("ASCII #") + zel_string::FromInt(Byte);
    if (Byte < 32)
        return Number;
    return zel_string("'") + zel_string(C, 1) + "' (" + Number + ")";
}

zel_string xbd_xml_parser::GetPlaceText(int32_t CurPos)
{
    TOVAS_ASSERT(ScanPos<=CurPos && CurPos<=LastPos, this);
    int64_t Line = 0;
    int64_t Column = 0;
    // The line break that may still be the first half of a CR LF or LF CR pair; 0 when none is held.
    char HeldLineBreak = 0;
    for (int32_t Pos = ScanPos; Pos < CurPos; Pos++) {
        char C = ScanText[Pos];
        if (C == '\t') {
            Column = (Column / 4) * 4 + 4;
        } else if (C == '\n' || C == '\r') {
            Column = 0;
            if (HeldLineBreak != 0 && HeldLineBreak != C) {
                HeldLineBreak = 0;
            } else {
                Line++;
                HeldLineBreak = C;
            }
        } else {
            Column++;
        }
    }
    char Place[64];
    int PlaceLength = std::snprintf(Place, sizeof(Place), "\n(line %lld, column %lld)", static_cast<long long>(Line + 1),
                                    static_cast<long long>(Column + 1));
    return zel_string(Place, PlaceLength);
}

void xbd_xml_parser::RaiseScanError(const zel_string &Message, int32_t CurPos)
{
    throw zel_error(Message + GetPlaceText(CurPos));
}

void xbd_xml_parser::RaiseEscapeError(const zel_string &Message, int32_t Offset, int32_t DataOffset)
{
    if (DataOffset >= 0)
        RaiseScanError(Message, DataOffset + Offset);
    throw zel_error(Message);
}

zel_string xbd_xml_parser::UnescapeXML(const zel_string &Text, char Quote)
{
    return Unescape(Text.GetString(), Text.GetLength(), Quote, -1);
}

// DataOffset is where Text starts in the data being parsed, so that errors can name their place;
// -1 outside a parse.
zel_string xbd_xml_parser::Unescape(const char *Text, int32_t Length, char Quote, int32_t DataOffset)
{
    const void *Terminator = std::memchr(Text, 0, static_cast<size_t>(Length));
    int32_t End = Terminator != nullptr ? static_cast<int32_t>(static_cast<const char *>(Terminator) - Text) : Length;
    if (End == 0)
        return zel_string();
    // Every escape shrinks, so the result never outgrows the text.
    UnescapeBuffer.SetNumberOfElements(End, 0);
    char *Out = UnescapeBuffer.GetData();
    int32_t OutLength = 0;
    int32_t I = 0;
    while (I < End) {
        char C = Text[I];
        if (C == Quote)
            RaiseEscapeError("ERROR - Quote found in XML string", I, DataOffset);
        if (C != '&') {
            Out[OutLength++] = C;
            I++;
            continue;
        }
        const char *Sequence = Text + I;
        int32_t Available = End - I;
        char Second = Available > 1 ? LowerASCII(Sequence[1]) : 0;
        char Third = Available > 2 ? LowerASCII(Sequence[2]) : 0;
        const char *Form = nullptr;
        char Result = 0;
        if (Second == '#') {
            int32_t Pos = 2;
            int32_t Value = 0;
            while (Pos < Available && Sequence[Pos] >= '0' && Sequence[Pos] <= '9') {
                // Stops growing once out of range, so no number of digits can overflow it.
                if (Value <= 255)
                    Value = Value * 10 + (Sequence[Pos] - '0');
                Pos++;
            }
            if (Pos > 2 && Value <= 255 && Pos < Available && Sequence[Pos] == ';') {
                Out[OutLength++] = static_cast<char>(Value);
                I += Pos + 1;
                continue;
            }
        } else if (Second == 'a' && Third == 'm') {
            Form = "&amp;";
            Result = '&';
        } else if (Second == 'a' && Third == 'p') {
            Form = "&apos;";
            Result = '\'';
        } else if (Second == 'g') {
            Form = "&gt;";
            Result = '>';
        } else if (Second == 'l') {
            if (!MatchesNoCase(Sequence, Available, "&lt;"))
                RaiseEscapeError("lt doesn't compare", I, DataOffset);
            Form = "&lt;";
            Result = '<';
        } else if (Second == 'q') {
            Form = "&quot;";
            Result = '"';
        }
        if (Form != nullptr && MatchesNoCase(Sequence, Available, Form)) {
            Out[OutLength++] = Result;
            I += static_cast<int32_t>(std::strlen(Form));
            continue;
        }
        // The sequence as the writer meant it: through its ";" when there is one.
        const void *Semicolon = std::memchr(Sequence, ';', static_cast<size_t>(Available));
        int32_t Shown = Semicolon != nullptr ? static_cast<int32_t>(static_cast<const char *>(Semicolon) - Sequence) + 1
                                             : Available;
        RaiseEscapeError(zel_string("Error Parsing XML file: Invalid Escape Sequence (sequence starting with '&'): '") +
                             zel_string(Sequence, Shown) + "'",
                         I, DataOffset);
    }
    return zel_string(Out, OutLength);
}

// TagStart is the "<" of a "<!" form; returns the position after its end.
int32_t xbd_xml_parser::SkipDeclaration(int32_t TagStart)
{
    if (LastPos - TagStart >= 4 && std::memcmp(ScanText + TagStart, "<!--", 4) == 0) {
        for (int32_t Pos = TagStart + 4; Pos + 3 <= LastPos; Pos++)
            if (std::memcmp(ScanText + Pos, "-->", 3) == 0)
                return Pos + 3;
        RaiseScanError("Comment was never closed.", TagStart);
    }
    int32_t Depth = 0;
    for (int32_t Pos = TagStart; Pos < LastPos; Pos++) {
        if (ScanText[Pos] == '<') {
            Depth++;
        } else if (ScanText[Pos] == '>') {
            Depth--;
            if (Depth == 0)
                return Pos + 1;
        }
    }
    RaiseScanError("<!Blah... was never closed.", TagStart);
}

ownership_pointer<xbd_file> xbd_xml_parser::ParseXML(const zel_string &Data, bool Lenient)
{
    ownership_pointer<xbd_file> File(new xbd_file());
    ScanText = Data.GetString();
    ScanPos = 0;
    LastPos = Data.GetLength();

    // The bottom is the root, which no close tag may pop.
    array<reference_pointer<xbd_tag>> OpenTags(16);
    OpenTags.Add(File->GetRootTag());

    int State = BetweenTagsState;
    int32_t CurPos = ScanPos;
    int32_t TagStart = 0;       // the "<" of the tag being read
    bool InCloseTag = false;
    bool InQuestionTag = false; // the tag being read is a "<?" tag, closed by "?>"
    int32_t PopToDepth = 0;     // the stack size that the close tag being read leaves at its ">"
    int32_t RunStart = -1;      // start of the character data being read, -1 when none
    zel_string TempStr;         // the attribute name being read
    char Quote = 0;             // the quote of the value being read, 0 for an unquoted value
    int32_t ValueStart = 0;

    while (CurPos < LastPos) {
        char C = ScanText[CurPos];
        switch (State) {
        case BetweenTagsState:
            if (C == '<') {
                if (RunStart >= 0) {
                    ownership_pointer<xbd_tag> DataTag = OpenTags.GetLast()->NewTag(MarkupDataTagName);
                    DataTag->AddAttribute(MarkedDataAttributeName, zel_string(ScanText + RunStart, CurPos - RunStart));
                    OpenTags.GetLast()->AddChildTag(DataTag);
                    RunStart = -1;
                }
                TagStart = CurPos;
                InCloseTag = false;
                State = TagStartState;
            } else if (RunStart < 0 && !IsWhiteSpace(C)) {
                RunStart = CurPos;
            }
            CurPos++;
            break;

        case TagStartState:
            if (C == '/') {
                if (InCloseTag)
                    RaiseScanError("Invalid second / in close tag.", CurPos);
                InCloseTag = true;
                CurPos++;
            } else if (C == '!' && !InCloseTag) {
                CurPos = SkipDeclaration(TagStart);
                State = BetweenTagsState;
            } else if (C == '?' || IsNameStart(C)) {
                State = TagNameState;
            } else {
                RaiseScanError(zel_string("ERROR - Invalid tag start-character: ") + DescribeCharacter(C), CurPos);
            }
            break;

        case TagNameState: {
            int32_t NameStart = CurPos;
            // The first byte is a name start or "?", both already checked.
            CurPos++;
            while (CurPos < LastPos && IsNameCharacter(ScanText[CurPos]))
                CurPos++;
            zel_string Name(ScanText + NameStart, CurPos - NameStart);
            InQuestionTag = Name[0] == '?';
            if (InCloseTag) {
                int32_t Depth = OpenTags.GetNumberOfElements();
                if (Depth == 1)
                    RaiseScanError(zel_string("Close tag </") + Name + "> has no matching open tag.", TagStart);
                int32_t NameNum = File->GetTagNames().GetNameNum(Name);
                PopToDepth = 0;
                if (OpenTags.GetLast()->GetNameNum() == NameNum) {
                    PopToDepth = Depth - 1;
                } else if (!Lenient) {
                    RaiseScanError(zel_string("Close tag </") + Name + "> does not match open tag <" +
                                       OpenTags.GetLast()->GetName() + ">",
                                   TagStart);
                } else {
                    for (int32_t I = Depth - 2; I >= 1 && PopToDepth == 0; I--)
                        if (OpenTags[I]->GetNameNum() == NameNum)
                            PopToDepth = I;
                    if (PopToDepth == 0)
                        RaiseScanError(zel_string("Close tag </") + Name + "> has no matching open tag.", TagStart);
                }
            } else {
                ownership_pointer<xbd_tag> Tag = OpenTags.GetLast()->NewTag(Name);
                reference_pointer<xbd_tag> TagRef(Tag);
                OpenTags.GetLast()->AddChildTag(Tag);
                OpenTags.Add(TagRef);
            }
            State = InsideTagState;
            break;
        }

        case InsideTagState:
            if (IsWhiteSpace(C)) {
                CurPos++;
            } else if (C == '>') {
                if (InCloseTag)
                    OpenTags.SetNumberOfElements(PopToDepth, reference_pointer<xbd_tag>());
                State = BetweenTagsState;
                CurPos++;
            } else if (C == '/') {
                if (InCloseTag)
                    RaiseScanError("Invalid second / in close tag.", CurPos);
                CurPos++;
                if (CurPos < LastPos) {
                    if (ScanText[CurPos] != '>')
                        RaiseScanError(zel_string("Invalid Character after / in open-close tag: ") +
                                           DescribeCharacter(ScanText[CurPos]),
                                       CurPos);
                    OpenTags.RemoveLast();
                    State = BetweenTagsState;
                    CurPos++;
                }
            } else if (C == '?') {
                if (!InQuestionTag)
                    RaiseScanError("'?' in non-'?' tag", CurPos);
                if (InCloseTag || (CurPos + 1 < LastPos && ScanText[CurPos + 1] != '>'))
                    RaiseScanError(zel_string("Invalid character inside tag: ") + DescribeCharacter(C), CurPos);
                CurPos++;
                if (CurPos < LastPos) {
                    OpenTags.RemoveLast();
                    State = BetweenTagsState;
                    CurPos++;
                }
            } else if (IsNameStart(C)) {
                if (InCloseTag)
                    RaiseScanError("Attributes not allowed in close tags.", CurPos);
                State = AttributeNameState;
            } else {
                RaiseScanError(zel_string("Invalid character inside tag: ") + DescribeCharacter(C), CurPos);
            }
            break;

        case AttributeNameState: {
            int32_t NameStart = CurPos;
            while (CurPos < LastPos && IsNameCharacter(ScanText[CurPos]))
                CurPos++;
            TempStr = zel_string(ScanText + NameStart, CurPos - NameStart);
            TOVAS_ASSERT(TempStr.GetLength()>0, this);
            while (CurPos < LastPos && IsWhiteSpace(ScanText[CurPos]))
                CurPos++;
            if (CurPos < LastPos) {
                if (ScanText[CurPos] != '=')
                    RaiseScanError(zel_string("Attribute name not followed by '=' (followed by: ") +
                                       DescribeCharacter(ScanText[CurPos]) + ")",
                                   CurPos);
                State = BeforeValueState;
                CurPos++;
            }
            break;
        }

        case BeforeValueState:
            if (IsWhiteSpace(C)) {
                CurPos++;
            } else if (C == '"' || C == '\'') {
                Quote = C;
                ValueStart = CurPos + 1;
                State = ValueState;
                CurPos++;
            } else if (Lenient) {
                Quote = 0;
                ValueStart = CurPos;
                State = ValueState;
            } else {
                RaiseScanError(zel_string("ERROR - Attribute '=' not followed by \" or ' (followed by: ") +
                                   DescribeCharacter(C) + ")",
                               CurPos);
            }
            break;

        case ValueState: {
            int32_t ValueEnd = CurPos;
            if (Quote != 0) {
                // A backslash hides the next byte from the search for the closing quote; both bytes stay in
                // the value.
                while (ValueEnd < LastPos && ScanText[ValueEnd] != Quote)
                    ValueEnd += ScanText[ValueEnd] == '\\' ? 2 : 1;
            } else {
                while (ValueEnd < LastPos && !IsWhiteSpace(ScanText[ValueEnd]) && ScanText[ValueEnd] != '>')
                    ValueEnd++;
            }
            if (ValueEnd >= LastPos) {
                CurPos = LastPos;
                break;
            }
            OpenTags.GetLast()->AddAttribute(TempStr,
                                             Unescape(ScanText + ValueStart, ValueEnd - ValueStart, Quote, ValueStart));
            CurPos = Quote != 0 ? ValueEnd + 1 : ValueEnd;
            State = InsideTagState;
            break;
        }
        }
    }

    // A run of character data that the end cuts off is dropped; a tag that it cuts off is unclosed.
    if (State != BetweenTagsState || OpenTags.GetNumberOfElements() > 1) {
        // A buffer that grows geometrically: deep input can leave many thousands of names open.
        zel_text_buffer Message;
        const char *Head = "End of file reached with unclosed tags: ";
        Message.Append(Head, static_cast<int>(std::strlen(Head)));
        for (int32_t I = 1; I < OpenTags.GetNumberOfElements(); I++) {
            zel_string Name = OpenTags[I]->GetName();
            Message.Append(Name.GetString(), Name.GetLength());
            Message.Append(" ", 1);
        }
        RaiseScanError(Message.TakeString(), LastPos);
    }
    return File;
}
