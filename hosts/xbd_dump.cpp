#include "hosts/xbd_dump.h"

#include "zel_basics/array.h"
#include "zel_basics/zel_text_buffer.h"

namespace {

const char *const CharacterDataTagName = "*XMLMarkupDataTag";
const char *const CharacterDataAttributeName = "*XMLMarkedDataAttr";

bool IsPlainValueByte(unsigned char Byte)
{
    if (Byte < 32 || Byte > 126)
        return false;
    switch (Byte) {
    case '&':
    case '<':
    case '>':
    case '"':
    case '\'':
    case '\\':
        return false;
    default:
        return true;
    }
}

// Appends through a buffer that grows geometrically: a dump of a large file is one long text.
void Append(zel_text_buffer &Out, const zel_string &Text)
{
    Out.Append(Text.GetString(), Text.GetLength());
}

void Append(zel_text_buffer &Out, const char *Text)
{
    Append(Out, zel_string(Text));
}

void AppendEscapedValue(zel_text_buffer &Out, const zel_string &Value)
{
    const char *Bytes = Value.GetString();
    int RunStart = 0;
    for (int I = 0; I < Value.GetLength(); I++) {
        unsigned char Byte = static_cast<unsigned char>(Bytes[I]);
        if (IsPlainValueByte(Byte))
            continue;
        Out.Append(Bytes + RunStart, I - RunStart);
        Append(Out, zel_string("&#") + zel_string::FromInt(Byte) + ";");
        RunStart = I + 1;
    }
    Out.Append(Bytes + RunStart, Value.GetLength() - RunStart);
}

bool IsCharacterData(xbd_tag &Tag)
{
    return Tag.GetName() == zel_string(CharacterDataTagName);
}

void AppendIndent(zel_text_buffer &Out, int Depth)
{
    for (int I = 0; I < Depth; I++)
        Out.Append("  ", 2);
}

// Writes a tag's opening: the whole tag when it has no children. Returns whether children follow.
bool AppendOpening(zel_text_buffer &Out, xbd_tag &Tag, int Depth, bool Indent)
{
    if (Indent)
        AppendIndent(Out, Depth);
    if (IsCharacterData(Tag)) {
        Append(Out, Tag.GetAttribute(CharacterDataAttributeName, ""));
        return false;
    }
    zel_string Name = Tag.GetName();
    Append(Out, "<");
    Append(Out, Name);
    xbd_file &File = *Tag.GetFile();
    array<xbd_attribute> &Attributes = Tag.GetAttributes();
    for (int I = 0; I < Attributes.GetNumberOfElements(); I++) {
        Append(Out, " ");
        Append(Out, File.GetAttributeNames().GetName(Attributes[I].NameNum));
        Append(Out, "=\"");
        AppendEscapedValue(Out, File.GetValues().GetName(Attributes[I].ValueNum));
        Append(Out, "\"");
    }
    if (Tag.GetChildren().GetNumberOfElements() == 0) {
        bool Instruction = Name.GetLength() > 0 && Name[0] == '?';
        Append(Out, Instruction ? "?>\n" : "/>\n");
        return false;
    }
    Append(Out, ">\n");
    return true;
}

// One open tag of the walk: the next child to write, and whether that child starts a line of its own
// (not when it follows character data, which must run straight into it).
struct open_tag
{
    xbd_tag *Tag = nullptr;
    int NextChild = 0;
    bool IndentNext = true;
};

} // namespace

zel_string DumpXBDTree(xbd_file &File)
{
    zel_text_buffer Out;
    // An explicit stack: files may nest far deeper than the machine stack would allow recursion.
    array<open_tag> Stack(0);
    Stack.AddEmpty();
    Stack[0].Tag = File.GetRootTag().Get();
    while (Stack.GetNumberOfElements() > 0) {
        open_tag &Top = Stack[Stack.GetNumberOfElements() - 1];
        int Depth = Stack.GetNumberOfElements() - 1;
        array<ownership_pointer<xbd_tag>> &Children = Top.Tag->GetChildren();
        if (Top.NextChild == Children.GetNumberOfElements()) {
            if (Depth > 0) {
                if (Top.IndentNext)
                    AppendIndent(Out, Depth - 1);
                Append(Out, "</");
                Append(Out, Top.Tag->GetName());
                Append(Out, ">\n");
            }
            Stack.RemoveLast();
            continue;
        }
        xbd_tag &Child = *Children[Top.NextChild++];
        bool IndentChild = Top.IndentNext;
        Top.IndentNext = !IsCharacterData(Child);
        if (AppendOpening(Out, Child, Depth, IndentChild)) {
            open_tag Opened;
            Opened.Tag = &Child;
            Stack.Add(Opened);
        }
    }
    return Out.TakeString();
}
