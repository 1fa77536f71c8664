#include <gtest/gtest.h>

#include <cstring>
#include <random>
#include <string>
#include <vector>

#include "art_engine/fonts/art_packed_path.h"
#include "tests/art_engine/fonts/art_font_test_support.h"
#include "tests/test_support.h"

using namespace art_font_test;

namespace {

// The packed bytes written out by hand: ASIs as single bytes (all values here are below 128) and
// points as two native floats.
class packed_bytes
{
public:
    packed_bytes &Int(unsigned Value)
    {
        Bytes.push_back(static_cast<char>(Value));
        return *this;
    }
    packed_bytes &Point(float X, float Y)
    {
        char Raw[8];
        std::memcpy(Raw, &X, 4);
        std::memcpy(Raw + 4, &Y, 4);
        Bytes.insert(Bytes.end(), Raw, Raw + 8);
        return *this;
    }
    zel_string Get() const { return zel_string(Bytes.data(), static_cast<int>(Bytes.size())); }
    zel_string Left(size_t Length) const { return zel_string(Bytes.data(), static_cast<int>(Length)); }

    std::vector<char> Bytes;
};

packed_bytes TriangleBytes()
{
    return packed_bytes().Int(1).Int(2).Int(1).Int(0).Point(1, 2).Int(2).Int(1).Point(3, 4).Point(5, 6);
}

std::string DecodeError(const zel_string &Bytes)
{
    art_path Path;
    return ZEL_ERROR_MESSAGE(DecodePackedPath(Bytes, Path));
}

bool HasAssertionText(const std::string &Message, const std::string &Text)
{
    return Message.find("'" + Text + "' is false") != std::string::npos;
}

TEST(ArtPackedPath, ClosedTriangleHasTheDocumentedBytes)
{
    art_path Path;
    Path.move_to(1, 2);
    Path.line_to(3, 4);
    Path.line_to(5, 6);
    Path.close_polygon();

    EXPECT_EQ(TriangleBytes().Get(), EncodePackedPath(Path));
}

TEST(ArtPackedPath, OpenPolygonIsWrittenUnclosedAndReadBackClosed)
{
    art_path Path;
    Path.move_to(1, 2);
    Path.line_to(3, 4);
    Path.end_poly(0);
    const zel_string Bytes = EncodePackedPath(Path);
    EXPECT_EQ(packed_bytes().Int(0).Int(2).Int(1).Int(0).Point(1, 2).Int(1).Int(1).Point(3, 4).Get(), Bytes);

    art_path Read;
    DecodePackedPath(Bytes, Read);
    art_path Want;
    Want.move_to(1, 2);
    Want.line_to(3, 4);
    Want.close_polygon();
    EXPECT_TRUE(SamePath(Read, Want));
}

TEST(ArtPackedPath, PathThatNeverEndsIsWrittenAsAnOpenPolygon)
{
    art_path Path;
    Path.move_to(0.5, 0.25);
    Path.line_to(-1, 8);
    EXPECT_EQ(packed_bytes().Int(0).Int(2).Int(1).Int(0).Point(0.5, 0.25).Int(1).Int(1).Point(-1, 8).Get(),
              EncodePackedPath(Path));
}

TEST(ArtPackedPath, CurvesAreRunsOfTheirVertices)
{
    art_path Path;
    Path.move_to(0, 0);
    Path.curve3(1, 1, 2, 0);
    Path.curve3(3, -1, 4, 0);
    Path.curve4(5, 1, 6, 1, 7, 0);
    Path.close_polygon();
    const zel_string Want = packed_bytes()
                                .Int(1)
                                .Int(3)
                                .Int(1)
                                .Int(0)
                                .Point(0, 0)
                                .Int(4)
                                .Int(2)
                                .Point(1, 1)
                                .Point(2, 0)
                                .Point(3, -1)
                                .Point(4, 0)
                                .Int(3)
                                .Int(3)
                                .Point(5, 1)
                                .Point(6, 1)
                                .Point(7, 0)
                                .Get();
    EXPECT_EQ(Want, EncodePackedPath(Path));
}

TEST(ArtPackedPath, EmptyPathPacksToNoBytesAndNoBytesToAnEmptyPath)
{
    art_path Path;
    EXPECT_EQ(zel_string(), EncodePackedPath(Path));
    DecodePackedPath(zel_string(), Path);
    EXPECT_EQ(0u, Path.total_vertices());
}

TEST(ArtPackedPath, CoordinatesAreStoredAsFloats)
{
    art_path Path;
    Path.move_to(0.1, 1.0 / 3);
    Path.close_polygon();
    art_path Read;
    DecodePackedPath(EncodePackedPath(Path), Read);
    double X, Y;
    Read.vertex(0, &X, &Y);
    EXPECT_EQ(static_cast<double>(0.1f), X);
    EXPECT_EQ(static_cast<double>(static_cast<float>(1.0 / 3)), Y);
}

// Random closed polygons of moves, lines, quadratic and cubic segments, with coordinates exact as
// floats, come back vertex for vertex.
TEST(ArtPackedPath, RandomPathsOfEveryCommandRoundTripExactly)
{
    std::mt19937 Random(7321);
    auto Coordinate = [&Random]() { return static_cast<double>(static_cast<int>(Random() % 200001) - 100000) / 64; };
    for (int Trial = 0; Trial < 300; Trial++) {
        art_path Path;
        const int Polygons = 1 + static_cast<int>(Random() % 4);
        for (int Polygon = 0; Polygon < Polygons; Polygon++) {
            Path.move_to(Coordinate(), Coordinate());
            const int Segments = static_cast<int>(Random() % 12);
            for (int Segment = 0; Segment < Segments; Segment++) {
                switch (Random() % 4) {
                case 0:
                    Path.move_to(Coordinate(), Coordinate());
                    break;
                case 1:
                    Path.line_to(Coordinate(), Coordinate());
                    break;
                case 2:
                    Path.curve3(Coordinate(), Coordinate(), Coordinate(), Coordinate());
                    break;
                default:
                    Path.curve4(Coordinate(), Coordinate(), Coordinate(), Coordinate(), Coordinate(), Coordinate());
                    break;
                }
            }
            Path.close_polygon();
        }
        art_path Read;
        DecodePackedPath(EncodePackedPath(Path), Read);
        ASSERT_TRUE(SamePath(Read, Path)) << "trial " << Trial;
    }
}

TEST(ArtPackedPath, LargeCountsUseMultiByteIntegers)
{
    art_path Path;
    Path.move_to(0, 0);
    for (int Index = 0; Index < 200; Index++)
        Path.line_to(Index, Index % 3);
    Path.close_polygon();
    const zel_string Bytes = EncodePackedPath(Path);
    // Closed flag, 2 runs, the move run, then 200 points: 0xC8 0x01, the line command.
    ASSERT_GT(Bytes.GetLength(), 15);
    EXPECT_EQ('\xC8', Bytes[12]);
    EXPECT_EQ('\x01', Bytes[13]);
    EXPECT_EQ('\x01', Bytes[14]);
    EXPECT_EQ(1 + 1 + 2 + 8 + 3 + 200 * 8, Bytes.GetLength());
    art_path Read;
    DecodePackedPath(Bytes, Read);
    EXPECT_TRUE(SamePath(Read, Path));
}

TEST(ArtPackedPath, UnknownVertexCommandFailsWhenWritten)
{
    art_path Path;
    Path.move_to(1, 1);
    Path.modify_command(0, 6);
    EXPECT_TRUE(HasAssertionText(ZEL_ERROR_MESSAGE(EncodePackedPath(Path)), "Command<5 || Command>7"));
}

TEST(ArtPackedPath, PolygonWithoutRunsFails)
{
    EXPECT_TRUE(HasAssertionText(DecodeError(packed_bytes().Int(1).Int(0).Get()), "NumRuns>0"));
}

TEST(ArtPackedPath, RunCommandAboveCubicFails)
{
    EXPECT_TRUE(HasAssertionText(DecodeError(packed_bytes().Int(1).Int(1).Int(1).Int(4).Point(0, 0).Get()), "false"));
}

TEST(ArtPackedPath, PointsCutShortFail)
{
    const zel_string Bytes = packed_bytes().Int(1).Int(1).Int(1).Int(0).Point(3, 4).Left(4 + 7);
    EXPECT_TRUE(HasAssertionText(DecodeError(Bytes), "BytesLeft>=sizeof(save_point)"));
}

TEST(ArtPackedPath, IntegerRunningPastTheEndNamesTheBytesLeftAndThePartialValue)
{
    EXPECT_EQ("Invalid ASI - exceeded MaxLength=1 Value at Error=1", DecodeError(packed_bytes().Int(1).Int(0x81).Get()));
    EXPECT_EQ("Invalid ASI - exceeded MaxLength=2 Value at Error=645",
              DecodeError(packed_bytes().Int(1).Int(1).Int(0x85).Int(0x85).Get()));
}

TEST(ArtPackedPath, MissingIntegerAtTheEndIsAnInvalidInteger)
{
    EXPECT_EQ("Invalid ASI - exceeded MaxLength=0 Value at Error=0", DecodeError(packed_bytes().Int(1).Get()));
}

TEST(ArtPackedPath, IntegerLongerThan32BitsFails)
{
    EXPECT_TRUE(HasAssertionText(
        DecodeError(packed_bytes().Int(0x80).Int(0x80).Int(0x80).Int(0x80).Int(0x80).Int(0x80).Int(1).Get()),
        "Shift<32"));
}

// Every cut of a valid string ends in one of the documented errors, according to where it falls.
TEST(ArtPackedPath, EveryTruncationOfATriangleEndsInTheErrorOfItsPlace)
{
    const packed_bytes Triangle = TriangleBytes();
    const size_t Length = Triangle.Bytes.size();
    for (size_t Cut = 1; Cut < Length; Cut++) {
        const std::string Message = DecodeError(Triangle.Left(Cut));
        // Integers stand at 0 to 3, 12 and 13; points fill 4 to 11 and 14 to 29.
        const bool AtInteger = Cut == 1 || Cut == 2 || Cut == 3 || Cut == 12 || Cut == 13;
        if (AtInteger)
            EXPECT_EQ("Invalid ASI - exceeded MaxLength=0 Value at Error=0", Message) << "cut at " << Cut;
        else
            EXPECT_TRUE(HasAssertionText(Message, "BytesLeft>=sizeof(save_point)")) << "cut at " << Cut << ": "
                                                                                      << Message;
    }
}

// Damaged strings: a valid one with a few bytes changed and perhaps cut short. Changed point bytes still
// decode; changed integers mostly end in an error. Either way the result holds only real commands.
TEST(ArtPackedPath, DamagedBytesEndNormallyOrInAnError)
{
    std::mt19937 Random(99);
    const packed_bytes Triangle = TriangleBytes();
    int Errors = 0;
    int Decoded = 0;
    for (int Trial = 0; Trial < 2000; Trial++) {
        std::vector<char> Bytes = Triangle.Bytes;
        const int Changes = 1 + static_cast<int>(Random() % 3);
        for (int Change = 0; Change < Changes; Change++)
            Bytes[Random() % Bytes.size()] = static_cast<char>(Random());
        if (Random() % 2 == 0)
            Bytes.resize(1 + Random() % Bytes.size());
        const zel_string Damaged(Bytes.data(), static_cast<int>(Bytes.size()));
        art_path Path;
        try {
            DecodePackedPath(Damaged, Path);
            Decoded++;
        } catch (const zel_error &) {
            Errors++;
        }
        for (unsigned Index = 0; Index < Path.total_vertices(); Index++) {
            double X, Y;
            const unsigned Command = Path.vertex(Index, &X, &Y);
            ASSERT_TRUE((Command >= 1 && Command <= 4) || Command == 0x4F) << Command;
        }
    }
    EXPECT_GT(Errors, 0);
    EXPECT_GT(Decoded, 0);
}

} // namespace
