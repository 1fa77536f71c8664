#include "rofa_lib/stdio_file_streams.h"

#include <cerrno>
#include <cstring>

#include "zel_basics/debug.h"
#include "zel_basics/zel_error.h"

namespace {

// One line of a failure text: every field but the heading is indented by three blanks and every
// value ends its line.
zel_string Field(const char *Label, const zel_string &Value)
{
    return zel_string("   ") + Label + Value + "\n";
}

zel_string Field(const char *Label, int Value)
{
    return Field(Label, zel_string::FromInt(Value));
}

zel_string ErrorField(int Error)
{
    return Field("Error: ", zel_string(std::strerror(Error)));
}

// Both kinds of stream report a failed seek in the same words; only the running count differs.
[[noreturn]] void ThrowSeekError(const char *Operation, int Amount, const zel_string &FileName,
                                 const char *CountLabel, int Count, int Error)
{
    throw zel_error(zel_string("stdio_read_file_stream::") + Operation + "() detected an error.\n" +
                    Field("SeekAmount: ", Amount) + Field("FileName: ", FileName) + Field(CountLabel, Count) +
                    ErrorField(Error));
}

} // namespace

stdio_read_file_stream::stdio_read_file_stream() : File(nullptr), BytesRead(0)
{
}

stdio_read_file_stream::~stdio_read_file_stream()
{
    if (File != nullptr)
        std::fclose(File);
}

zel_string stdio_read_file_stream::GetName()
{
    return zel_string("stdio Read file stream: ") + FileName;
}

int stdio_read_file_stream::ReadDirect(void *Target, int Bytes)
{
    TOVAS_ASSERT(IsFileOpen(), this);
    int Read = static_cast<int>(std::fread(Target, 1, static_cast<size_t>(Bytes), File));
    int Error = errno;
    BytesRead += Read;
    if (std::ferror(File))
        throw zel_error(zel_string("stdio_read_file_stream::ReadData() detected an error.\n") +
                        Field("BytesWantedRead: ", Bytes) + Field("BytesActuallyRead: ", Read) +
                        Field("FileName: ", FileName) + Field("BytesRead: ", BytesRead) + ErrorField(Error));
    return Read;
}

bool stdio_read_file_stream::ReadEndOfStream()
{
    return File == nullptr || std::feof(File) != 0;
}

void stdio_read_file_stream::OpenFile(zel_string Name)
{
    TOVAS_ASSERT(IsFileOpen()==false, this);
    FileName = Name;
    BytesRead = 0;
    ClearBuffer();
    File = std::fopen(Name.GetString(), "rb");
    if (File == nullptr) {
        int Error = errno;
        throw zel_error(zel_string("stdio_read_file_stream::OpenFile() detected an error.\n") +
                        Field("FileName:  '", Name + "'") + Field("BytesRead: ", BytesRead) +
                        Field("Error: ", zel_string(std::strerror(Error)) + "(" + zel_string::FromInt(Error) + ")"));
    }
}

void stdio_read_file_stream::CloseFile()
{
    TOVAS_ASSERT(IsFileOpen(), this);
    // fclose lets go of the file even when it reports an error, so the stream is closed either way.
    int Result = std::fclose(File);
    int Error = errno;
    File = nullptr;
    if (Result != 0)
        throw zel_error(zel_string("stdio_read_file_stream::CloseFile() detected an error.\n") +
                        Field("FileName: ", FileName) + Field("BytesRead: ", BytesRead) + ErrorField(Error));
}

bool stdio_read_file_stream::IsFileOpen()
{
    return File != nullptr;
}

void stdio_read_file_stream::SeekRelativeToStart(int Amount)
{
    Seek(Amount, SEEK_SET, "SeekRelativeToStart");
}

void stdio_read_file_stream::SeekRelativeToCurrent(int Amount)
{
    Seek(Amount, SEEK_CUR, "SeekRelativeToCurrent");
}

void stdio_read_file_stream::SeekRelativeToEnd(int Amount)
{
    Seek(Amount, SEEK_END, "SeekRelativeToEnd");
}

int stdio_read_file_stream::GetPosition()
{
    TOVAS_ASSERT(IsFileOpen(), this);
    return static_cast<int>(std::ftell(File));
}

void stdio_read_file_stream::Seek(int Amount, int Origin, const char *Operation)
{
    TOVAS_ASSERT(IsFileOpen(), this);
    ClearBuffer();
    if (std::fseek(File, Amount, Origin) != 0)
        ThrowSeekError(Operation, Amount, FileName, "BytesRead: ", BytesRead, errno);
}

stdio_write_file_stream::stdio_write_file_stream() : File(nullptr), BytesWrote(0)
{
}

stdio_write_file_stream::~stdio_write_file_stream()
{
    if (File != nullptr)
        std::fclose(File);
}

zel_string stdio_write_file_stream::GetName()
{
    return zel_string("stdio Write file stream: ") + FileName;
}

void stdio_write_file_stream::WriteDirect(const void *Data, int Bytes)
{
    TOVAS_ASSERT(IsFileOpen(), this);
    int Wrote = static_cast<int>(std::fwrite(Data, 1, static_cast<size_t>(Bytes), File));
    int Error = errno;
    BytesWrote += Wrote;
    if (Wrote != Bytes)
        throw zel_error(zel_string("stdio_write_file_stream::WriteData() detected an error.\n") +
                        Field("BytesWantedWritten: ", Bytes) + Field("BytesActuallyWritten: ", Wrote) +
                        Field("FileName: ", FileName) + Field("BytesWrote: ", BytesWrote) + ErrorField(Error));
}

void stdio_write_file_stream::CreateFile(zel_string Name)
{
    Open(Name, "wb", "CreateFile");
}

void stdio_write_file_stream::OpenFile(zel_string Name)
{
    Open(Name, "ab", "OpenFile");
}

void stdio_write_file_stream::CloseFile()
{
    TOVAS_ASSERT(IsFileOpen(), this);
    FlushBuffer();
    // fclose lets go of the file even when its last write fails, so the stream is closed either way.
    int Result = std::fclose(File);
    int Error = errno;
    File = nullptr;
    if (Result != 0)
        throw zel_error(zel_string("stdio_write_file_stream::CloseFile() detected an error.\n") +
                        Field("FileName: ", FileName) + Field("BytesWrote: ", BytesWrote) + ErrorField(Error));
}

bool stdio_write_file_stream::IsFileOpen()
{
    return File != nullptr;
}

void stdio_write_file_stream::SeekRelativeToStart(int Amount)
{
    Seek(Amount, SEEK_SET, "SeekRelativeToStart");
}

void stdio_write_file_stream::SeekRelativeToCurrent(int Amount)
{
    Seek(Amount, SEEK_CUR, "SeekRelativeToCurrent");
}

void stdio_write_file_stream::SeekRelativeToEnd(int Amount)
{
    Seek(Amount, SEEK_END, "SeekRelativeToEnd");
}

void stdio_write_file_stream::Open(zel_string Name, const char *Mode, const char *Operation)
{
    TOVAS_ASSERT(IsFileOpen()==false, this);
    FileName = Name;
    BytesWrote = 0;
    File = std::fopen(Name.GetString(), Mode);
    if (File == nullptr) {
        int Error = errno;
        throw zel_error(zel_string("stdio_write_file_stream::") + Operation + "() detected an error.\n" +
                        Field("FileName: ", FileName) + Field("BytesWrote: ", BytesWrote) + ErrorField(Error));
    }
}

void stdio_write_file_stream::Seek(int Amount, int Origin, const char *Operation)
{
    TOVAS_ASSERT(IsFileOpen(), this);
    FlushBuffer();
    if (std::fseek(File, Amount, Origin) != 0)
        ThrowSeekError(Operation, Amount, FileName, "BytesWrote: ", BytesWrote, errno);
}
