#pragma once

// Image files made by ImageMagick's convert, run as a child process, and its own decoding of them,
// so that the codecs are checked against a decoder that is not theirs.
#include <gtest/gtest.h>

#include <unistd.h>

#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <string>
#include <vector>

#include <agg_color_rgba.h>

#include "art_engine/images/art_image_codecs.h"
#include "art_engine/pixels/art_bitmap.h"
#include "zel_basics/debug.h"
#include "zel_basics/zel_string.h"

namespace art_image_test {

// A folder for one test's files, removed with them.
class scratch_folder
{
public:
    scratch_folder()
    {
        const char *Base = std::getenv("TMPDIR");
        std::string Template = std::string(Base != nullptr && Base[0] != 0 ? Base : "/tmp") + "/rofa_codecs_XXXXXX";
        std::vector<char> Name(Template.begin(), Template.end());
        Name.push_back(0);
        if (mkdtemp(Name.data()) != nullptr)
            Path = Name.data();
    }
    ~scratch_folder()
    {
        if (!Path.empty())
            std::filesystem::remove_all(Path);
    }
    scratch_folder(const scratch_folder &) = delete;
    scratch_folder &operator=(const scratch_folder &) = delete;

    std::string File(const std::string &Name) const { return Path + "/" + Name; }

    std::string Path;
};

inline void WriteBytes(const std::string &Path, const std::string &Bytes)
{
    std::ofstream File(Path, std::ios::binary);
    File.write(Bytes.data(), static_cast<std::streamsize>(Bytes.size()));
}

inline std::string ReadBytes(const std::string &Path)
{
    std::ifstream File(Path, std::ios::binary);
    std::stringstream Text;
    Text << File.rdbuf();
    return Text.str();
}

inline zel_string ToZel(const std::string &Bytes)
{
    return zel_string(Bytes.data(), static_cast<int>(Bytes.size()));
}

struct command_result
{
    int Status = -1;
    std::string Output;
};

// Runs a shell command and keeps what it writes to its standard output; standard error passes through
// to the test's own, where a failing tool's words are seen.
inline command_result RunCommand(const std::string &Command)
{
    command_result Result;
    FILE *Pipe = popen(Command.c_str(), "r");
    if (Pipe == nullptr)
        return Result;
    char Buffer[65536];
    size_t Got;
    while ((Got = std::fread(Buffer, 1, sizeof Buffer, Pipe)) > 0)
        Result.Output.append(Buffer, Got);
    Result.Status = pclose(Pipe);
    return Result;
}

// The real ImageMagick answers "convert -version" with its name; anything else cannot make the files.
inline testing::AssertionResult ImageMagickAnswers()
{
    command_result Result = RunCommand("convert -version");
    if (Result.Status == 0 && Result.Output.find("ImageMagick") != std::string::npos)
        return testing::AssertionSuccess();
    return testing::AssertionFailure()
           << "ImageMagick's convert is needed to make and check the image files of these tests, and "
              "\"convert -version\" did not answer as ImageMagick (status "
           << Result.Status << "). Run scripts/install-deps, which installs the package imagemagick.";
}

// Runs "convert Arguments"; a failure of the tool fails the test.
inline std::string Convert(const std::string &Arguments)
{
    command_result Result = RunCommand("convert " + Arguments);
    EXPECT_EQ(Result.Status, 0) << "convert " << Arguments;
    return Result.Output;
}

inline std::string Identify(const std::string &Arguments)
{
    command_result Result = RunCommand("identify " + Arguments);
    EXPECT_EQ(Result.Status, 0) << "identify " << Arguments;
    return Result.Output;
}

// Straight R, G, B, A bytes, top row first.
typedef std::vector<uint8_t> rgba_bytes;

inline std::string AsString(const rgba_bytes &Bytes)
{
    return std::string(reinterpret_cast<const char *>(Bytes.data()), Bytes.size());
}

// ImageMagick's own decoding of a file (or of one frame, "file[2]", or of a whole list after an
// operator), as straight 8-bit R, G, B, A.
inline rgba_bytes DecodeWithImageMagick(const std::string &FileAndOperators)
{
    std::string Output = Convert(FileAndOperators + " -depth 8 rgba:-");
    return rgba_bytes(Output.begin(), Output.end());
}

// Premultiplies as the engine stores pixels: alpha 0 clears the colour, alpha 255 keeps it, and
// between the two each colour byte becomes (c * a + 255) / 256, rounded down.
inline rgba_bytes Premultiplied(rgba_bytes Bytes)
{
    for (size_t I = 0; I + 3 < Bytes.size(); I += 4) {
        unsigned A = Bytes[I + 3];
        for (size_t C = 0; C < 3; C++) {
            if (A == 0)
                Bytes[I + C] = 0;
            else if (A < 255)
                Bytes[I + C] = static_cast<uint8_t>((Bytes[I + C] * A + 255) / 256);
        }
    }
    return Bytes;
}

inline rgba_bytes PixelsOf(art_bitmap &Bitmap)
{
    rgba_bytes Bytes;
    int_point2d Size = Bitmap.GetSize();
    for (int Y = 0; Y < Size.Y; Y++) {
        const uint8_t *Row = reinterpret_cast<const uint8_t *>(Bitmap.GetPixelRow(Y));
        Bytes.insert(Bytes.end(), Row, Row + size_t(Size.X) * 4);
    }
    return Bytes;
}

// Equal within Tolerance on every byte; reports the count of differing bytes and the first one.
inline testing::AssertionResult SameBytes(const rgba_bytes &Got, const rgba_bytes &Want, int Tolerance, int Width)
{
    if (Got.size() != Want.size())
        return testing::AssertionFailure() << "sizes differ: " << Got.size() << " bytes, wanted " << Want.size();
    size_t Differences = 0;
    size_t First = 0;
    int Largest = 0;
    for (size_t I = 0; I < Got.size(); I++) {
        int Difference = std::abs(int(Got[I]) - int(Want[I]));
        if (Difference > Largest)
            Largest = Difference;
        if (Difference > Tolerance && Differences++ == 0)
            First = I;
    }
    if (Differences == 0)
        return testing::AssertionSuccess();
    size_t Pixel = First / 4;
    return testing::AssertionFailure() << Differences << " bytes differ by more than " << Tolerance
                                       << " (largest difference " << Largest << "); first at pixel ("
                                       << Pixel % size_t(Width) << ", " << Pixel / size_t(Width) << ") channel "
                                       << First % 4 << ": " << int(Got[First]) << ", wanted " << int(Want[First]);
}

// A picture with smooth gradients and a few hard edges, so that both photographs and drawings are
// represented; Alpha decides each pixel's opacity.
template <class AlphaFunction> rgba_bytes MakePicture(int Width, int Height, AlphaFunction Alpha)
{
    rgba_bytes Bytes;
    for (int Y = 0; Y < Height; Y++)
        for (int X = 0; X < Width; X++) {
            Bytes.push_back(static_cast<uint8_t>(X * 255 / (Width > 1 ? Width - 1 : 1)));
            Bytes.push_back(static_cast<uint8_t>(Y * 255 / (Height > 1 ? Height - 1 : 1)));
            Bytes.push_back(static_cast<uint8_t>(X < Width / 2 ? 40 : 200));
            Bytes.push_back(static_cast<uint8_t>(Alpha(X, Y)));
        }
    return Bytes;
}

inline rgba_bytes Opaque(int Width, int Height)
{
    return MakePicture(Width, Height, [](int, int) { return 255; });
}

// Opaque, half-transparent and fully transparent pixels in a pattern.
inline rgba_bytes Translucent(int Width, int Height)
{
    return MakePicture(Width, Height, [](int X, int Y) { return (X + Y) % 5 != 0 ? 255 : (X % 3 == 0 ? 0 : 128); });
}

// Each test has its own folder for ImageMagick's files and its own debug log.
class image_magick_test : public testing::Test
{
protected:
    void SetUp() override
    {
        ASSERT_FALSE(Folder.Path.empty()) << "no temporary folder";
        ASSERT_TRUE(ImageMagickAnswers());
        SavedLogPath = DebugLogPath();
        SetDebugLogPath(Folder.File("debug.log").c_str());
    }
    void TearDown() override { SetDebugLogPath(SavedLogPath); }

    std::string Log() const { return ReadBytes(Folder.File("debug.log")); }

    // Straight RGBA pixels handed to ImageMagick, which writes them as Output with Options; Coder,
    // such as "PNG8:", chooses a form of the format.
    std::string MakeFile(const rgba_bytes &Pixels, int Width, int Height, const std::string &Options,
                         const std::string &Output, const std::string &Coder = "")
    {
        std::string Raw = Folder.File(Output + ".raw");
        WriteBytes(Raw, AsString(Pixels));
        std::string Path = Folder.File(Output);
        Convert("-size " + std::to_string(Width) + "x" + std::to_string(Height) + " -depth 8 rgba:" + Raw + " " +
                Options + " " + Coder + Path);
        return Path;
    }

    // The file's PNG colour type and bit depth as they were written, in ImageMagick's words.
    std::string PNGKind(const std::string &Path)
    {
        return Identify("-format \"%[png:IHDR.color-type-orig] %[png:IHDR.bit-depth-orig]\" " + Path);
    }

    ownership_pointer<art_bitmap> Load(const std::string &Path) { return LoadImageFromString(ToZel(ReadBytes(Path))); }

    // Loading Bytes gives no picture, throws nothing and leaves one more log line about it.
    void ExpectNullWithLogLine(const std::string &Bytes, const std::string &What)
    {
        std::string Before = Log();
        ownership_pointer<art_bitmap> Bitmap;
        EXPECT_NO_THROW(Bitmap = LoadImageFromString(ToZel(Bytes))) << What;
        EXPECT_FALSE(Bitmap.IsSet()) << What;
        std::string Added = Log().substr(Before.size());
        std::string Expected = "Error loading image file. Byte-Size=" + std::to_string(Bytes.size()) + " Error=";
        EXPECT_EQ(Added.rfind(Expected, 0), 0u) << What << ": " << Added;
        EXPECT_EQ(Added.back(), '\n') << What;
    }

    scratch_folder Folder;
    zel_string SavedLogPath;
};

} // namespace art_image_test
