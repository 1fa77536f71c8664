#include <cstdint>
#include <string>
#include <unistd.h>

#include <FreeImage.h>
#include <gtest/gtest.h>

#include "tests/e2e/rofa_tool_test_support.h"

namespace {

struct rgba
{
    int R, G, B, A;
};

bool operator==(const rgba &P, const rgba &Q)
{
    return P.R == Q.R && P.G == Q.G && P.B == Q.B && P.A == Q.A;
}

std::ostream &operator<<(std::ostream &Stream, const rgba &P)
{
    return Stream << "(" << P.R << "," << P.G << "," << P.B << "," << P.A << ")";
}

// A PNG as the image library reads it back: its size and straight-alpha pixels, top row 0. A picture
// that is opaque all over comes without an alpha channel, and reads as alpha 255.
class png_picture
{
public:
    explicit png_picture(const std::string &Path) : Image(FreeImage_Load(FIF_PNG, Path.c_str(), PNG_DEFAULT)) {}
    ~png_picture()
    {
        if (Image != nullptr)
            FreeImage_Unload(Image);
    }
    png_picture(const png_picture &) = delete;
    png_picture &operator=(const png_picture &) = delete;

    bool IsLoaded() const
    {
        return Image != nullptr && (FreeImage_GetBPP(Image) == 32 || FreeImage_GetBPP(Image) == 24);
    }
    int GetWidth() const { return static_cast<int>(FreeImage_GetWidth(Image)); }
    int GetHeight() const { return static_cast<int>(FreeImage_GetHeight(Image)); }
    rgba At(int X, int Y) const
    {
        int Bytes = static_cast<int>(FreeImage_GetBPP(Image)) / 8;
        const BYTE *Pixel = FreeImage_GetScanLine(Image, GetHeight() - 1 - Y) + Bytes * X;
        int Alpha = Bytes == 4 ? Pixel[FI_RGBA_ALPHA] : 255;
        return rgba{Pixel[FI_RGBA_RED], Pixel[FI_RGBA_GREEN], Pixel[FI_RGBA_BLUE], Alpha};
    }

private:
    FIBITMAP *Image;
};

// A canvas of 40 by 30 with an opaque red box from (10, 5) to (30, 15) and a half-transparent green
// one from (2, 20) to (8, 26), each filled through a rectangle stencil of its own. Both boxes lie on
// whole pixels, so every pixel is inside or outside, with no partial coverage.
const char *const BoxesText =
    "<art_file art_engine_version=\"0.0.2\" w_val=\"40\" h_val=\"30\"><children>"
    "<pego name=\"red\" handle=\"(0,0)\" x_val=\"10\" y_val=\"5\" w_val=\"20\" h_val=\"10\"><children>"
    "<art_stencil_shape stack_mode=\"+stencil\" x_layout_mode=\"7\" x_val=\"0.5\" w_val=\"1\" y_layout_mode=\"7\""
    " y_val=\"0.5\" h_val=\"1\"><art_rectangle/></art_stencil_shape>"
    "<art_solid_fill color=\"ff0000ff\"/>"
    "</children></pego>"
    "<pego name=\"green\" handle=\"(0,0)\" x_val=\"2\" y_val=\"20\" w_val=\"6\" h_val=\"6\"><children>"
    "<art_stencil_shape stack_mode=\"+stencil\" x_layout_mode=\"7\" x_val=\"0.5\" w_val=\"1\" y_layout_mode=\"7\""
    " y_val=\"0.5\" h_val=\"1\"><art_rectangle/></art_stencil_shape>"
    "<art_solid_fill color=\"00ff0080\"/>"
    "</children></pego>"
    "</children></art_file>";

const rgba Clear{0, 0, 0, 0};
const rgba Red{255, 0, 0, 255};

// The green box as the picture shows it. The fill colour is premultiplied by truncation: green
// 255 * 128 >> 8 = 127, alpha 128. Three source-overs onto transparent pixels follow at full coverage,
// the fill into the box's bitmap, the box into the document's and the document into the picture;
// each keeps the colour byte, (0 * inv >> 8) + 127, and turns alpha a into 255 - ((255 * inv) >> 8)
// with inv = 255 - a. Then straight alpha again: green * 255 / alpha, truncated.
rgba ComputeHalfGreen()
{
    int Green = 127;
    int Alpha = 128;
    for (int Composite = 0; Composite < 3; Composite++)
        Alpha = 255 - ((255 * (255 - Alpha)) >> 8);
    return rgba{0, Green * 255 / Alpha, 0, Alpha};
}
const rgba HalfGreen = ComputeHalfGreen();

class RofaToolRender : public rofa_tool_fixture
{
protected:
    void SetUp() override
    {
        rofa_tool_fixture::SetUp();
        WriteFile(Path("boxes.xml"), BoxesText);
    }

    bool Exists(const std::string &Name) const { return access(Path(Name).c_str(), F_OK) == 0; }

    // Both boxes' corners and the pixels just outside them, on a picture whose pixels are the canvas
    // scaled by ScaleX and ScaleY.
    void ExpectBoxes(const png_picture &Picture, int ScaleX, int ScaleY, rgba Background)
    {
        EXPECT_EQ(Red, Picture.At(10 * ScaleX, 5 * ScaleY));
        EXPECT_EQ(Red, Picture.At(30 * ScaleX - 1, 5 * ScaleY));
        EXPECT_EQ(Red, Picture.At(10 * ScaleX, 15 * ScaleY - 1));
        EXPECT_EQ(Red, Picture.At(30 * ScaleX - 1, 15 * ScaleY - 1));
        EXPECT_EQ(Red, Picture.At(20 * ScaleX, 10 * ScaleY));
        EXPECT_EQ(Background, Picture.At(10 * ScaleX - 1, 5 * ScaleY));
        EXPECT_EQ(Background, Picture.At(10 * ScaleX, 5 * ScaleY - 1));
        EXPECT_EQ(Background, Picture.At(30 * ScaleX, 15 * ScaleY - 1));
        EXPECT_EQ(Background, Picture.At(30 * ScaleX - 1, 15 * ScaleY));
        EXPECT_EQ(Background, Picture.At(0, 0));
        EXPECT_EQ(Background, Picture.At(40 * ScaleX - 1, 30 * ScaleY - 1));
        if (Background == Clear) {
            EXPECT_EQ(HalfGreen, Picture.At(2 * ScaleX, 20 * ScaleY));
            EXPECT_EQ(HalfGreen, Picture.At(8 * ScaleX - 1, 26 * ScaleY - 1));
        }
        EXPECT_EQ(Background, Picture.At(8 * ScaleX, 26 * ScaleY - 1));
    }
};

} // namespace

TEST_F(RofaToolRender, RendersTheCanvasAtItsOwnSize)
{
    tool_result Result = Run("render " + Path("boxes.xml") + " " + Path("out.png"));
    ASSERT_EQ(Result.Status, 0) << Result.Errors;
    EXPECT_EQ(Result.Output, "");
    EXPECT_EQ(Result.Errors, "");
    png_picture Picture(Path("out.png"));
    ASSERT_TRUE(Picture.IsLoaded());
    EXPECT_EQ(40, Picture.GetWidth());
    EXPECT_EQ(30, Picture.GetHeight());
    ExpectBoxes(Picture, 1, 1, Clear);
}

TEST_F(RofaToolRender, AZoomScalesTheDefaultSize)
{
    tool_result Result = Run("render " + Path("boxes.xml") + " " + Path("out.png") + " --zoom 2");
    ASSERT_EQ(Result.Status, 0) << Result.Errors;
    png_picture Picture(Path("out.png"));
    ASSERT_TRUE(Picture.IsLoaded());
    EXPECT_EQ(80, Picture.GetWidth());
    EXPECT_EQ(60, Picture.GetHeight());
    ExpectBoxes(Picture, 2, 2, Clear);
}

TEST_F(RofaToolRender, ASizeStretchesTheCanvasOverTheWholePicture)
{
    tool_result Result = Run("render --size 80x30 " + Path("boxes.xml") + " " + Path("out.png"));
    ASSERT_EQ(Result.Status, 0) << Result.Errors;
    png_picture Picture(Path("out.png"));
    ASSERT_TRUE(Picture.IsLoaded());
    EXPECT_EQ(80, Picture.GetWidth());
    EXPECT_EQ(30, Picture.GetHeight());
    ExpectBoxes(Picture, 2, 1, Clear);
}

TEST_F(RofaToolRender, ASizeWinsOverAZoom)
{
    tool_result Result = Run("render " + Path("boxes.xml") + " " + Path("out.png") + " --zoom 3 --size 40x60");
    ASSERT_EQ(Result.Status, 0) << Result.Errors;
    png_picture Picture(Path("out.png"));
    ASSERT_TRUE(Picture.IsLoaded());
    EXPECT_EQ(40, Picture.GetWidth());
    EXPECT_EQ(60, Picture.GetHeight());
    ExpectBoxes(Picture, 1, 2, Clear);
}

TEST_F(RofaToolRender, TheBackgroundFillsWhatTheDocumentLeavesOpen)
{
    tool_result Result =
        Run("render " + Path("boxes.xml") + " " + Path("out.png") + " --background 0000FFff --time 2.5");
    ASSERT_EQ(Result.Status, 0) << Result.Errors;
    png_picture Picture(Path("out.png"));
    ASSERT_TRUE(Picture.IsLoaded());
    ExpectBoxes(Picture, 1, 1, rgba{0, 0, 255, 255});
}

TEST_F(RofaToolRender, AHalfTransparentBackgroundKeepsItsStraightColour)
{
    // Premultiplied, (255 * 128 + 255) >> 8 = 128; straight again, 128 * 255 / 128 = 255.
    tool_result Result = Run("render " + Path("boxes.xml") + " " + Path("out.png") + " --background 0000ff80");
    ASSERT_EQ(Result.Status, 0) << Result.Errors;
    png_picture Picture(Path("out.png"));
    ASSERT_TRUE(Picture.IsLoaded());
    EXPECT_EQ((rgba{0, 0, 255, 128}), Picture.At(0, 0));
    EXPECT_EQ(Red, Picture.At(10, 5));
}

TEST_F(RofaToolRender, AFillOfTheDocumentCoversTheWholeCanvas)
{
    // The fill fills its parent's shape, which for a document without one is the rectangle it gets.
    WriteFile(Path("edge.xml"), "<art_file w_val=\"20\" h_val=\"10\"><children>"
                                "<art_solid_fill color=\"ffffffff\"/>"
                                "</children></art_file>");
    tool_result Result = Run("render " + Path("edge.xml") + " " + Path("out.png") + " --size 30x10");
    ASSERT_EQ(Result.Status, 0) << Result.Errors;
    png_picture Picture(Path("out.png"));
    ASSERT_TRUE(Picture.IsLoaded());
    EXPECT_EQ((rgba{255, 255, 255, 255}), Picture.At(0, 0));
    EXPECT_EQ((rgba{255, 255, 255, 255}), Picture.At(29, 9));
}

TEST_F(RofaToolRender, WrongOptionsExitWithTwoAndWriteNothing)
{
    const char *const Wrong[] = {"--zoom abc",       "--zoom 0",           "--zoom -1",        "--size 10",
                                 "--size 0x5",       "--size 5x",          "--size 5x5x5",     "--size -3x4",
                                 "--background 12345", "--background gg0000ff", "--background 0000ff801",
                                 "--time -1",        "--time soon",        "--bogus 1",        "--zoom",
                                 "extra"};
    for (const char *Options : Wrong) {
        tool_result Result = Run("render " + Path("boxes.xml") + " " + Path("out.png") + " " + Options);
        EXPECT_EQ(Result.Status, 2) << Options;
        EXPECT_NE(Result.Errors.find("rofa-tool render IN OUT.png [--size WxH] [--zoom Z] [--time T]"
                                     " [--background RRGGBBAA]\n"),
                  std::string::npos)
            << Result.Errors;
        EXPECT_FALSE(Exists("out.png")) << Options;
    }
    EXPECT_EQ(Run("render").Status, 2);
    EXPECT_EQ(Run("render " + Path("boxes.xml")).Status, 2);
}

TEST_F(RofaToolRender, AWrongOptionIsNamed)
{
    tool_result Result = Run("render " + Path("boxes.xml") + " " + Path("out.png") + " --zoom abc");
    EXPECT_EQ(Result.Status, 2);
    EXPECT_EQ(Result.Errors.rfind("rofa-tool: --zoom needs a number above 0, not 'abc'\nusage: ", 0), 0u)
        << Result.Errors;
}

TEST_F(RofaToolRender, APictureTooLargeIsRefusedWithWords)
{
    tool_result Result = Run("render " + Path("boxes.xml") + " " + Path("out.png") + " --size 100000x100000");
    EXPECT_EQ(Result.Status, 1);
    EXPECT_EQ(Result.Errors, "rofa-tool: The picture of 100000 by 100000 pixels is too large to render.\n");
    EXPECT_FALSE(Exists("out.png"));
}

TEST_F(RofaToolRender, AZoomThatLeavesNoPixelsIsRefusedWithWords)
{
    tool_result Result = Run("render " + Path("boxes.xml") + " " + Path("out.png") + " --zoom 0.01");
    EXPECT_EQ(Result.Status, 1);
    EXPECT_EQ(Result.Errors, "rofa-tool: At a zoom of 0.01 the picture would have no pixels.\n");
    EXPECT_FALSE(Exists("out.png"));
}

TEST_F(RofaToolRender, AnUnwritableOutputFailsWithStatusOne)
{
    tool_result Result = Run("render " + Path("boxes.xml") + " " + Path("no/such/folder/out.png"));
    EXPECT_EQ(Result.Status, 1);
    EXPECT_EQ(Result.Errors, "rofa-tool: The picture can't be written to '" + Path("no/such/folder/out.png") + "'.\n");
}

TEST_F(RofaToolRender, ADocumentThatIsRefusedWritesNoPicture)
{
    WriteFile(Path("new.xml"), "<art_file art_engine_version=\"1.2.0\"/>");
    tool_result Result = Run("render " + Path("new.xml") + " " + Path("out.png"));
    EXPECT_EQ(Result.Status, 1);
    EXPECT_EQ(Result.Errors, "rofa-tool: Incompatible file version (1.2.0)\n");
    EXPECT_FALSE(Exists("out.png"));
}

// ---- Files that are no documents ----

namespace {

class RofaToolBadInput : public rofa_tool_fixture
{
protected:
    // Every document command fails on the file with status 1 and words behind the prefix, and leaves
    // no output file.
    void ExpectRefusedEverywhere(const std::string &Name)
    {
        const std::string Commands[] = {"objects " + Path(Name), "resave " + Path(Name) + " " + Path("out.xbd"),
                                        "render " + Path(Name) + " " + Path("out.png")};
        for (const std::string &Command : Commands) {
            tool_result Result = Run(Command);
            EXPECT_EQ(Result.Status, 1) << Command << "\n" << Result.Errors;
            EXPECT_EQ(Result.Output, "") << Command;
            EXPECT_EQ(Result.Errors.rfind("rofa-tool: ", 0), 0u) << Command << "\n" << Result.Errors;
            EXPECT_GT(Result.Errors.size(), std::string("rofa-tool: \n").size()) << Command;
            EXPECT_NE(access(Path("out.xbd").c_str(), F_OK), 0) << Command;
            EXPECT_NE(access(Path("out.png").c_str(), F_OK), 0) << Command;
        }
    }

    // A small generator of its own, so that the bytes are the same on every run.
    static std::string RandomBytes(uint32_t Seed, int Length)
    {
        std::string Bytes;
        uint32_t State = Seed;
        for (int I = 0; I < Length; I++) {
            State = State * 1664525u + 1013904223u;
            Bytes += static_cast<char>(State >> 24);
        }
        return Bytes;
    }
};

} // namespace

TEST_F(RofaToolBadInput, AMissingFileIsRefused)
{
    ExpectRefusedEverywhere("missing.rofa");
}

TEST_F(RofaToolBadInput, AnEmptyFileIsRefused)
{
    WriteFile(Path("empty.rofa"), "");
    ExpectRefusedEverywhere("empty.rofa");
    EXPECT_EQ(Run("objects " + Path("empty.rofa")).Errors, "rofa-tool: Invalid Rofa File (contains no tags)\n");
}

TEST_F(RofaToolBadInput, ATruncatedFileIsRefused)
{
    WriteFile(Path("whole.xml"), BoxesText);
    ASSERT_EQ(Run("compile " + Path("whole.xml") + " " + Path("whole.rofa")).Status, 0);
    std::string Whole = ReadFile(Path("whole.rofa"));
    ASSERT_GT(Whole.size(), 40u);
    for (size_t Length : {size_t(3), size_t(7), size_t(20), Whole.size() / 2, Whole.size() - 1}) {
        WriteFile(Path("cut.rofa"), Whole.substr(0, Length));
        ExpectRefusedEverywhere("cut.rofa");
    }
    WriteFile(Path("cut.xml"), std::string(BoxesText).substr(0, 150));
    ExpectRefusedEverywhere("cut.xml");
}

TEST_F(RofaToolBadInput, RandomBytesAreRefused)
{
    for (uint32_t Seed = 1; Seed <= 6; Seed++) {
        WriteFile(Path("random.rofa"), RandomBytes(Seed, 64 + 97 * static_cast<int>(Seed)));
        ExpectRefusedEverywhere("random.rofa");
        // Behind the binary form's magic, the bytes go to the binary reader.
        WriteFile(Path("random.rofa"), "ZELXML" + RandomBytes(Seed + 100, 40 * static_cast<int>(Seed)));
        ExpectRefusedEverywhere("random.rofa");
    }
}

TEST_F(RofaToolRender, TheShowcaseRendersAtItsCanvasSize)
{
    tool_result Result = Run("showcase " + Path("showcase.png"));
    ASSERT_EQ(Result.Status, 0) << Result.Errors;
    EXPECT_EQ(Result.Errors, "");
    png_picture Picture(Path("showcase.png"));
    ASSERT_TRUE(Picture.IsLoaded());
    EXPECT_EQ(800, Picture.GetWidth());
    EXPECT_EQ(500, Picture.GetHeight());
    // The document's own background gradient covers the canvas: nothing is left transparent.
    EXPECT_EQ(255, Picture.At(0, 0).A);
    EXPECT_EQ(255, Picture.At(799, 499).A);
}

TEST_F(RofaToolRender, TheShowcaseAtTwoTimesDiffersExactlyWhereTheAnimatedPictureIs)
{
    // The animated picture changes frame every quarter second and stands at (660, 280), 96 by 96.
    ASSERT_EQ(Run("showcase " + Path("early.png") + " --time 0").Status, 0);
    ASSERT_EQ(Run("showcase " + Path("late.png") + " --time 0.3").Status, 0);
    png_picture Early(Path("early.png"));
    png_picture Late(Path("late.png"));
    ASSERT_TRUE(Early.IsLoaded());
    ASSERT_TRUE(Late.IsLoaded());
    int Inside = 0;
    int Outside = 0;
    for (int Y = 0; Y < 500; Y++)
        for (int X = 0; X < 800; X++) {
            if (Early.At(X, Y) == Late.At(X, Y))
                continue;
            bool InPicture = X >= 660 && X < 756 && Y >= 280 && Y < 376;
            (InPicture ? Inside : Outside)++;
        }
    EXPECT_GT(Inside, 0);
    EXPECT_EQ(0, Outside);
}

TEST_F(RofaToolRender, TheShowcaseTakesOnlyAnOutputAndTheRenderOptions)
{
    EXPECT_EQ(Run("showcase").Status, 2);
    EXPECT_EQ(Run("showcase " + Path("a.png") + " " + Path("b.png")).Status, 2);
    tool_result Result = Run("showcase " + Path("small.png") + " --size 80x50");
    ASSERT_EQ(Result.Status, 0) << Result.Errors;
    png_picture Small(Path("small.png"));
    ASSERT_TRUE(Small.IsLoaded());
    EXPECT_EQ(80, Small.GetWidth());
    EXPECT_EQ(50, Small.GetHeight());
}
