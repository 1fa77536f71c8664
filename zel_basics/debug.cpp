#include "zel_basics/debug.h"

#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cxxabi.h>
#include <typeinfo>

#include "zel_basics/lwbase_object.h"

namespace {

zel_string &GetDebugLogPathStorage()
{
    static zel_string *Path = nullptr;
    if (Path == nullptr) {
        const char *Folder = std::getenv("TMPDIR");
        if (Folder == nullptr || Folder[0] == 0)
            Folder = "/tmp";
        Path = new zel_string(zel_string(Folder) + "/debug_tessaly.log");
    }
    return *Path;
}

int DebugNesting = 0;

zel_string GetTypeName(base_object *Object)
{
    const char *Mangled = typeid(*Object).name();
    int Status = 0;
    char *Demangled = abi::__cxa_demangle(Mangled, nullptr, nullptr, &Status);
    zel_string Name(Status == 0 && Demangled != nullptr ? Demangled : Mangled);
    std::free(Demangled);
    return Name;
}

[[noreturn]] void FailAssertion(int Form, const char *Heading, const char *DString, const char *File, int Line,
                                const zel_string *Comment, base_object *Object)
{
    DebugLog(zel_string("\n\n") + Heading + " THROW ERROR");
    zel_string Message = zel_string::FromInt(Form) + " ASSERTION FAILED" + GetObjectDebugText(Object, 0) + ": '" + DString +
                         "' is false\n File: '" + File + "'\n Line: " + zel_string::FromInt(Line);
    if (Comment != nullptr)
        Message += zel_string("\n Comment: ") + *Comment;
    DebugLog(Message);
    ZELDebugLogCallStack();
    throw zel_error(Message);
}

} // namespace

void TovasDebugAssert(const char *DString, const char *File, int Line, base_object *Object)
{
    FailAssertion(1, "TovasDebugAssert(const char *DString,const char *File,int Line,base_object *Object)", DString,
                  File, Line, nullptr, Object);
}

void TovasDebugAssert(const char *DString, const char *File, int Line, const char *Comment, base_object *Object)
{
    zel_string CommentText(Comment);
    FailAssertion(2, "TovasDebugAssert(const char *DString,const char *File,int Line,const char *Comment,base_object "
                  "*Object)",
                  DString, File, Line, &CommentText, Object);
}

void TovasDebugAssert(const char *DString, const char *File, int Line, zel_string Comment, base_object *Object)
{
    FailAssertion(3, "TovasDebugAssert(const char *DString,const char *File,int Line,zel_string Comment,base_object "
                  "*Object)",
                  DString, File, Line, &Comment, Object);
}

zel_string GetObjectDebugText(base_object *Object, int Format)
{
    if (Object == nullptr)
        return "(NULL)";
    if (Format != 0 && Format != 1)
        TOVAS_ASSERT(false, Object);
    zel_string Name;
    try {
        Name = Object->GetName();
    } catch (...) {
        Name = "(error getting name)";
    }
    zel_string ID;
    try {
        ID = zel_string::FromInt(base_object::ReadObjectID(Object));
    } catch (...) {
        ID = "(error getting ObjectID)";
    }
    char Address[32];
    std::snprintf(Address, sizeof(Address), "%llu",
                  static_cast<unsigned long long>(reinterpret_cast<uintptr_t>(Object)));
    zel_string Details = zel_string("Type=") + GetTypeName(Object) + " Addr=" + Address + " ID=" + ID + ")";
    if (Format == 0)
        return zel_string("(Name='") + Name + "' " + Details;
    return Name + " (" + Details;
}

zel_string DebugLogPath()
{
    return GetDebugLogPathStorage();
}

void SetDebugLogPath(const zel_string &Path)
{
    GetDebugLogPathStorage() = Path;
}

void DebugLogToFile(const zel_string &Text)
{
    FILE *File = std::fopen(DebugLogPath().GetString(), "a+");
    if (File == nullptr)
        return;
    std::fwrite(Text.GetString(), 1, static_cast<size_t>(Text.GetLength()), File);
    std::fputc('\n', File);
    std::fclose(File);
}

void DebugLog(const zel_string &Text)
{
#ifdef NDEBUG
    (void)Text;
#else
    DebugLogToFile(Text);
#endif
}

void ZELDebugLogCallStack()
{
    DebugLog("*** ZELDebugLogCallStack() Not Debug-Build, no stack-trace information available.");
}

void DebugNestingReset()
{
    DebugNesting = 0;
}

void DebugNestingEnter()
{
    DebugNesting++;
}

void DebugNestingLeave()
{
    if (DebugNesting > 0)
        DebugNesting--;
}

int GetDebugNesting()
{
    return DebugNesting;
}
