// rofa-tool: the library's features for scripts and tests, one command a call. Exit status 0 on
// success; on failure the error's text goes to standard error behind "rofa-tool: ", with status 1, or
// 2 for wrong usage.
#include <cstdio>
#include <cstring>
#include <exception>

#include "hosts/object_listing.h"
#include "hosts/object_tree_loading.h"
#include "hosts/object_tree_saving.h"
#include "hosts/xbd_dump.h"
#include "rofa_lib/rofa_plugin_api.h"
#include "rofa_lib/stdio_file_streams.h"
#include "xbd/xbd.h"
#include "zel_basics/zel_error.h"

namespace {

const char *const Usage = "usage: rofa-tool version\n"
                          "       rofa-tool dump FILE\n"
                          "       rofa-tool compile IN OUT\n"
                          "       rofa-tool objects FILE\n"
                          "       rofa-tool resave IN OUT\n";

struct usage_error
{
};

void WriteStandardOutput(const zel_string &Text)
{
    std::fwrite(Text.GetString(), 1, static_cast<size_t>(Text.GetLength()), stdout);
}

void WriteFile(const zel_string &Path, const zel_string &Bytes)
{
    stdio_write_file_stream Out;
    Out.CreateFile(Path);
    Out.WriteData(Bytes.GetString(), Bytes.GetLength());
    Out.CloseFile();
}

int RunVersion(int ArgumentCount, char **)
{
    if (ArgumentCount != 2)
        throw usage_error();
    std::printf("%s\n", RofaAppGetVersionString());
    return 0;
}

int RunDump(int ArgumentCount, char **Arguments)
{
    if (ArgumentCount != 3)
        throw usage_error();
    ownership_pointer<xbd_file> File = xbd_file::LoadXBDFile(Arguments[2]);
    WriteStandardOutput(DumpXBDTree(*File));
    return 0;
}

int RunCompile(int ArgumentCount, char **Arguments)
{
    if (ArgumentCount != 4)
        throw usage_error();
    ownership_pointer<xbd_file> File = xbd_file::LoadXBDFile(Arguments[2]);
    WriteFile(Arguments[3], File->GetZELXMLv1String());
    return 0;
}

int RunObjects(int ArgumentCount, char **Arguments)
{
    if (ArgumentCount != 3)
        throw usage_error();
    ownership_pointer<art_object> Tree = LoadObjectTree(Arguments[2]);
    WriteStandardOutput(ListObjects(*Tree));
    return 0;
}

int RunResave(int ArgumentCount, char **Arguments)
{
    if (ArgumentCount != 4)
        throw usage_error();
    ownership_pointer<art_object> Tree = LoadObjectTree(Arguments[2]);
    WriteFile(Arguments[3], SaveObjectTree(*Tree));
    return 0;
}

struct command
{
    const char *Name;
    int (*Run)(int ArgumentCount, char **Arguments);
};

const command Commands[] = {
    {"version", RunVersion},
    {"dump", RunDump},
    {"compile", RunCompile},
    {"objects", RunObjects},
    {"resave", RunResave},
};

} // namespace

int main(int ArgumentCount, char **Arguments)
{
    try {
        if (ArgumentCount < 2)
            throw usage_error();
        for (const command &Command : Commands)
            if (std::strcmp(Arguments[1], Command.Name) == 0)
                return Command.Run(ArgumentCount, Arguments);
        throw usage_error();
    } catch (const usage_error &) {
        std::fputs(Usage, stderr);
        return 2;
    } catch (const zel_error &Error) {
        std::fputs("rofa-tool: ", stderr);
        std::fwrite(Error.GetMessage().GetString(), 1, static_cast<size_t>(Error.GetMessage().GetLength()), stderr);
        std::fputs("\n", stderr);
        return 1;
    } catch (const std::exception &Error) {
        std::fprintf(stderr, "rofa-tool: %s\n", Error.what());
        return 1;
    }
}
