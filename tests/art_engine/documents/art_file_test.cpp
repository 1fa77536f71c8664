#include <gtest/gtest.h>

#include <string>

#include <FreeImage.h>

#include "art_engine/documents/art_file.h"
#include "art_engine/fonts/art_font.h"
#include "art_engine/fonts/art_font_manager.h"
#include "art_engine/images/art_bitmap_manager.h"
#include "art_engine/images/art_managed_bitmap.h"
#include "art_engine/objects/art_object_factory.h"
#include "art_engine/shapes/art_rectangle_shape.h"
#include "art_engine/shapes/art_stencil_shape.h"
#include "tests/art_engine/objects/art_test_support.h"
#include "xbd/xbd.h"

using namespace art_test;

namespace {

// Shows the bitmap of its "bitmap_id" whole, at the image's own size: what a picture object notes
// before a save, so that the document keeps the picture.
class bitmap_user : public art_object
{
public:
    explicit bitmap_user(reference_pointer<xbd_tag> Tag)
        : art_object(Tag), ID(Tag->GetAttribute("bitmap_id", "").ToInt())
    {
    }

    zel_string GetTagName() override { return "test_bitmap_user"; }
    void WriteAttributes(reference_pointer<xbd_tag> Tag) override
    {
        Tag->AddAttribute("bitmap_id", zel_string::FromInt(ID));
        art_object::WriteAttributes(Tag);
    }
    void ReadBitmaps(const reference_pointer<art_bitmap_manager> &Bitmaps) override
    {
        Bitmap = Bitmaps->FindBitmap(ID);
        ReadBitmapsCalls++;
    }
    void UpdateBitmaps() override
    {
        if (!Bitmap.IsSet())
            return;
        point2d Whole(Bitmap->GetBitmapSize().X, Bitmap->GetBitmapSize().Y);
        Bitmap->NoteUsage(rectangle(point2d(0, 0), Whole), Whole);
    }

    int32_t ID;
    reference_pointer<art_managed_bitmap> Bitmap;
    int ReadBitmapsCalls = 0;
};

// The factory lives from its first use to the end of the process: made before any test runs, it and
// the maker added here do not count against the first test.
class factory_environment : public testing::Environment
{
public:
    void SetUp() override
    {
        art_object_factory::GetFactory()->AddMaker(
            ownership_pointer<art_maker_interface>(new art_object_maker<bitmap_user>("test_bitmap_user")));
    }
};

testing::Environment *const FactoryEnvironment = testing::AddGlobalTestEnvironment(new factory_environment);

ownership_pointer<xbd_file> Parse(const std::string &Text)
{
    return xbd_file::LoadFromData(zel_string(Text.c_str(), static_cast<int>(Text.size())), false);
}

ownership_pointer<art_file> Read(const std::string &Text, zel_string &Warning)
{
    ownership_pointer<xbd_file> File = Parse(Text);
    return art_file::ReadDocument(*File, reference_pointer<art_bitmap_manager>(), Warning);
}

ownership_pointer<art_file> Read(const std::string &Text)
{
    zel_string Warning;
    ownership_pointer<art_file> Document = Read(Text, Warning);
    EXPECT_EQ(zel_string(), Warning);
    return Document;
}

std::string ReadError(const std::string &Text)
{
    zel_string Warning;
    return ZEL_ERROR_MESSAGE(Read(Text, Warning));
}

reference_pointer<xbd_tag> DocumentTag(xbd_file &File)
{
    return reference_pointer<xbd_tag>(File.GetRootTag()->GetChildren()[0].Get());
}

// The saved document's tag, as text.
std::string Saved(art_file &Document)
{
    ownership_pointer<xbd_file> File = Document.CreateXBDFile();
    EXPECT_EQ(1, File->GetRootTag()->GetChildren().GetNumberOfElements());
    return Dump(DocumentTag(*File));
}

// The text that the rectangle shape of a document is written as, for a canvas of any size.
const std::string RectangleShape = "<art_stencil_shape stack_mode=\"+stencil\" x_layout_mode=\"7\" x_val=\"0.5\" "
                                   "w_val=\"1\" y_layout_mode=\"7\" y_val=\"0.5\" h_val=\"1\"><art_rectangle>"
                                   "</art_rectangle></art_stencil_shape>";

// A PNG of Width by Height opaque pixels, made by the image library itself.
zel_string MakePNG(int Width, int Height)
{
    FIBITMAP *Image = FreeImage_Allocate(Width, Height, 32);
    for (int Y = 0; Y < Height; Y++) {
        BYTE *Line = FreeImage_GetScanLine(Image, Y);
        for (int X = 0; X < 4 * Width; X++)
            Line[X] = static_cast<BYTE>(40 * Y + X);
    }
    FIMEMORY *Memory = FreeImage_OpenMemory();
    FreeImage_SaveToMemory(FIF_PNG, Image, Memory, PNG_DEFAULT);
    BYTE *Data = nullptr;
    DWORD Size = 0;
    FreeImage_AcquireMemory(Memory, &Data, &Size);
    zel_string Bytes(reinterpret_cast<const char *>(Data), static_cast<int>(Size));
    FreeImage_CloseMemory(Memory);
    FreeImage_Unload(Image);
    return Bytes;
}

// A document file whose "art_file" holds Children and a "bitmaps" tag with one bitmap of ID 3.
ownership_pointer<xbd_file> DocumentWithBitmap(const std::string &Children, const zel_string &PNG)
{
    ownership_pointer<xbd_file> File =
        Parse("<art_file art_engine_version=\"0.0.2\" w_val=\"40\" h_val=\"30\"><children>" + Children +
              "</children></art_file>");
    reference_pointer<xbd_tag> Document = DocumentTag(*File);
    ownership_pointer<xbd_tag> Bitmaps = Document->NewTag("bitmaps");
    ownership_pointer<xbd_tag> Bitmap = Bitmaps->NewTag("bitmap");
    Bitmap->AddAttribute("bitmap_id", "3");
    Bitmap->AddAttribute("pixel_data", PNG);
    Bitmaps->AddChildTag(Bitmap);
    Document->AddChildTag(Bitmaps);
    return File;
}

} // namespace

// ---- Reading ----

TEST(ArtFile, AFileWithNoEngineVersionReadsAsZeroAndLoads)
{
    ownership_pointer<art_file> Document = Read("<art_file w_val=\"40\" h_val=\"30\"/>");
    ASSERT_TRUE(Document.IsSet());
    EXPECT_EQ(zel_string("0.0.0"), Document->GetEngineVersion());
    EXPECT_EQ(point2d(40, 30), Document->GetSize());
}

TEST(ArtFile, VersionZeroZeroNineLoadsSilentlyBecauseTheThirdPartDoesNotCount)
{
    zel_string Warning = "not emptied";
    ownership_pointer<art_file> Document = Read("<art_file art_engine_version=\"0.0.9\"/>", Warning);
    ASSERT_TRUE(Document.IsSet());
    EXPECT_EQ(zel_string(), Warning);
    EXPECT_EQ(zel_string("0.0.9"), Document->GetEngineVersion());
}

TEST(ArtFile, ANewerMinorVersionLoadsWithTheWarning)
{
    zel_string Warning;
    ownership_pointer<art_file> Document =
        Read("<art_file art_engine_version=\"0.1.0\" w_val=\"20\" h_val=\"20\"/>", Warning);
    ASSERT_TRUE(Document.IsSet());
    EXPECT_EQ(point2d(20, 20), Document->GetSize());
    EXPECT_EQ(zel_string("The Rofa loaded, but it was created with a newer version of\n"
                         "the editor. There may be some inconsistancies because this\n"
                         "editor doesn't support the newer features.\n\n"
                         "Rofa Format Version: 0.1.0\n"
                         "Latest Rofa-Format supported: 0.0.2"),
              Warning);
    EXPECT_STREQ("Rofa Load Inconsistency Warning", ArtFileLoadWarningTitle);
}

TEST(ArtFile, ANewerMajorVersionIsRefused)
{
    EXPECT_EQ("Incompatible file version (1.0.0)", ReadError("<art_file art_engine_version=\"1.0.0\"/>"));
    EXPECT_EQ("Incompatible file version (2)", ReadError("<art_file art_engine_version=\"2\"/>"));
}

TEST(ArtFile, AConstructorThatRefusesTheVersionLeavesNoObjectBehind)
{
    ownership_pointer<xbd_file> File = Parse("<art_file art_engine_version=\"3.1\"><children><pego/><pego/>"
                                             "</children></art_file>");
    EXPECT_EQ("Incompatible file version (3.1)",
              ZEL_ERROR_MESSAGE(art_file(DocumentTag(*File), reference_pointer<art_bitmap_manager>())));
}

TEST(ArtFile, AFileWithoutTagsIsRefused)
{
    EXPECT_EQ("Invalid Rofa File (contains no tags)", ReadError(""));
}

TEST(ArtFile, AFileWithTwoTagsIsRefused)
{
    EXPECT_EQ("Invalid Rofa File (contains too many tags)", ReadError("<art_file/><art_file/>"));
}

namespace {

// A document with Levels groups inside one another, the innermost holding a fill.
std::string Nested(int Levels)
{
    std::string Text = "<art_file art_engine_version=\"0.0.2\" w_val=\"10\" h_val=\"10\"><children>";
    for (int I = 0; I < Levels; I++)
        Text += "<pego><children>";
    Text += "<art_solid_fill color=\"ff0000ff\"/>";
    for (int I = 0; I < Levels; I++)
        Text += "</children></pego>";
    return Text + "</children></art_file>";
}

} // namespace

TEST(ArtFile, TagsNestedBeyondTwoThousandLevelsAreRefusedBeforeAnyObjectIsMade)
{
    // The fill inside 998 groups is tag 2 * 998 + 3 = 1,999 levels down, inside 999 tag 2,001.
    ownership_pointer<art_file> Deep = Read(Nested(998));
    ASSERT_TRUE(Deep.IsSet());
    // The outermost group, after the shape that a document without one is given.
    EXPECT_EQ(2, Deep->GetNumberOfChildren());
    EXPECT_EQ("Invalid Rofa File (tags nested more than 2000 deep)", ReadError(Nested(999)));
    // Far deeper than any stack would hold, and still only refused.
    EXPECT_EQ("Invalid Rofa File (tags nested more than 2000 deep)", ReadError(Nested(100000)));
}

TEST(ArtFile, ARootTagOtherThanArtFileIsRefusedWithItsName)
{
    EXPECT_EQ("Invalid Rofa File (root tag is not valid: pego)", ReadError("<pego w_val=\"10\"/>"));
    EXPECT_EQ("Invalid Rofa File (root tag is not valid: Art_File)", ReadError("<Art_File/>"));
}

TEST(ArtFile, AServerErrorFailsWithTheMessageForTheUser)
{
    EXPECT_EQ("You are not signed in.", ReadError("<get_rofa_error show_user=\"You are not signed in.\"/>"));
}

TEST(ArtFile, AServerErrorWithoutAMessageFailsWithTheDefaultText)
{
    EXPECT_EQ("Server didn't specify an error message.", ReadError("<get_rofa_error code=\"7\"/>"));
}

TEST(ArtFile, CreatingTheFileLaysItOutOnce)
{
    ownership_pointer<xbd_file> File = Parse("<art_file w_val=\"400\" h_val=\"300\"><children>"
                                             "<pego name=\"half\" x_layout_mode=\"7\" x_val=\"0.5\" w_val=\"0.5\""
                                             " y_layout_mode=\"7\" y_val=\"0.5\" h_val=\"0.25\"/>"
                                             "</children></art_file>");
    ownership_pointer<art_file> Document =
        art_file::CreateArtFile(DocumentTag(*File), reference_pointer<art_bitmap_manager>());
    EXPECT_TRUE(Document->IsLayoutSettled());
    EXPECT_EQ(point2d(400, 300), Document->GetSize());
    reference_pointer<art_object> Half = Document->GetChildByName("half");
    ASSERT_TRUE(Half.IsSet());
    EXPECT_EQ(point2d(200, 150), Half->GetLocation());
    EXPECT_EQ(point2d(200, 75), Half->GetSize());
}

TEST(ArtFile, TheCanvasIsWhatTheFileSaysAfterTheShapeIsAdded)
{
    ownership_pointer<xbd_file> File = Parse("<art_file x_val=\"7\" w_val=\"1125\" h_val=\"727\"/>");
    art_file Document(DocumentTag(*File), reference_pointer<art_bitmap_manager>());
    Document.Layout();
    EXPECT_EQ(point2d(1125, 727), Document.GetSize());
    EXPECT_EQ(point2d(7, 0), Document.GetLocation());
    EXPECT_EQ("<art_file art_engine_version=\"0.0.2\" x_val=\"7\" w_val=\"1125\" h_val=\"727\"><children>" +
                  RectangleShape + "</children></art_file>",
              Saved(Document));
}

TEST(ArtFile, ADocumentWithNoStencilChildGetsARectangleShapeAndSavesWithIt)
{
    ownership_pointer<art_file> Document =
        Read("<art_file w_val=\"40\" h_val=\"30\"><children><pego name=\"a\"/>"
             "<art_solid_fill stack_mode=\"post\"/></children></art_file>");
    ASSERT_EQ(3, Document->GetNumberOfChildren());
    reference_pointer<art_shape> Shape = Document->GetShape();
    ASSERT_TRUE(Shape.IsSet());
    EXPECT_NE(nullptr, dynamic_cast<art_rectangle_shape *>(Shape.Get()));
    art_object *Added = Document->GetChildrenObject()->GetChild(2);
    EXPECT_EQ(StackModePlusStencil, Added->GetStackMode());
    EXPECT_EQ(point2d(40, 30), Added->GetSize());
    EXPECT_EQ(point2d(20, 15), Added->GetLocation());
    EXPECT_EQ("<art_file art_engine_version=\"0.0.2\" w_val=\"40\" h_val=\"30\"><children>"
              "<pego name=\"a\"></pego><art_solid_fill stack_mode=\"post\"></art_solid_fill>" +
                  RectangleShape + "</children></art_file>",
              Saved(*Document));
}

TEST(ArtFile, ADocumentWithAStencilChildKeepsItsOwnShape)
{
    ownership_pointer<art_file> Document =
        Read("<art_file w_val=\"40\" h_val=\"30\"><children><art_ellipse stack_mode=\"+stencil\"/>"
             "<pego name=\"a\"/></children></art_file>");
    ASSERT_EQ(2, Document->GetNumberOfChildren());
    EXPECT_EQ(nullptr, dynamic_cast<art_rectangle_shape *>(Document->GetShape().Get()));
    EXPECT_EQ(zel_string("art_ellipse"), Document->GetShape()->GetTagName());
    // Any stencil mode counts, one that takes away as well.
    ownership_pointer<art_file> Cut = Read("<art_file><children><pego name=\"cut\" stack_mode=\"-stencil\"/>"
                                           "</children></art_file>");
    ASSERT_EQ(1, Cut->GetNumberOfChildren());
    EXPECT_EQ(zel_string("cut"), Cut->GetChildrenObject()->GetChild(0)->GetName());
}

TEST(ArtFile, AnEmptyDocumentHasItsShapeAndABitmapManagerOfItsOwn)
{
    art_file Document;
    EXPECT_EQ(zel_string("0.0.0"), Document.GetEngineVersion());
    ASSERT_EQ(1, Document.GetNumberOfChildren());
    EXPECT_NE(nullptr, dynamic_cast<art_rectangle_shape *>(Document.GetShape().Get()));
    ASSERT_TRUE(Document.GetBitmapManager().IsSet());
    EXPECT_EQ(0, Document.GetBitmapManager()->GetNumberOfBitmaps());
}

TEST(ArtFile, AGivenBitmapManagerIsSharedAndNotOwned)
{
    ownership_pointer<art_bitmap_manager> Shared(new art_bitmap_manager);
    reference_pointer<art_bitmap_manager> SharedReference(Shared.Get());
    {
        art_file Document(SharedReference);
        EXPECT_EQ(SharedReference, Document.GetBitmapManager());
    }
    EXPECT_TRUE(SharedReference.IsSet());
}

// ---- Saving ----

TEST(ArtFile, LoadingAndSavingChangesTheEngineVersionToZeroZeroTwo)
{
    for (const char *Version : {"0.0.0", "0.0.1", "0.0.9", "0.3.1", ""}) {
        ownership_pointer<xbd_file> File =
            Parse(std::string("<art_file art_engine_version=\"") + Version + "\" w_val=\"20\" h_val=\"20\"/>");
        ownership_pointer<art_file> Document =
            art_file::CreateArtFile(DocumentTag(*File), reference_pointer<art_bitmap_manager>());
        ownership_pointer<xbd_file> Written = Document->CreateXBDFile();
        reference_pointer<xbd_tag> Tag = DocumentTag(*Written);
        ASSERT_GT(Tag->GetAttributes().GetNumberOfElements(), 0);
        EXPECT_EQ("art_engine_version", AttributeName(*Tag, Tag->GetAttributes()[0])) << Version;
        EXPECT_EQ("0.0.2", AttributeValue(*Tag, Tag->GetAttributes()[0])) << Version;
    }
}

TEST(ArtFile, OnlyTheVersionAndTheLayoutAreWrittenOfTheDocumentsOwnAttributes)
{
    ownership_pointer<art_file> Document =
        Read("<art_file art_engine_version=\"0.0.2\" name=\"doc\" angle=\"0.5\" handle=\"(0,0)\" opacity=\"0.5\""
             " lock_mode=\"3\" drop_in_enabled=\"\" aspect_ratio=\"2\" rofa_editor_version=\"0.5.0\""
             " w_val=\"64\" h_val=\"48\"/>");
    EXPECT_EQ("<art_file art_engine_version=\"0.0.2\" w_val=\"64\" h_val=\"48\"><children>" + RectangleShape +
                  "</children></art_file>",
              Saved(*Document));
}

TEST(ArtFile, ADocumentWithNoBitmapsAndNoTextHasNeitherBitmapsNorFontsTags)
{
    ownership_pointer<art_file> Document =
        Read("<art_file w_val=\"40\" h_val=\"30\"><children><pego name=\"a\"/></children></art_file>");
    ownership_pointer<xbd_file> File = Document->CreateXBDFile();
    reference_pointer<xbd_tag> Tag = DocumentTag(*File);
    EXPECT_FALSE(Tag->GetChildTag("bitmaps").IsSet());
    EXPECT_FALSE(Tag->GetChildTag("embedded_fonts").IsSet());
    ASSERT_EQ(1, Tag->GetChildren().GetNumberOfElements());
    EXPECT_EQ(zel_string("children"), Tag->GetChildren()[0]->GetName());
    // The bitmaps tag was made before the children, and its name stays in the dictionary.
    EXPECT_EQ(2, File->GetTagNames().GetNameNum("bitmaps"));
    EXPECT_EQ(3, File->GetTagNames().GetNameNum("children"));
}

TEST(ArtFile, TheFileIsARootTagHoldingTheDocumentAlone)
{
    art_file Document;
    ownership_pointer<xbd_file> File = Document.CreateXBDFile();
    EXPECT_EQ(zel_string("RootTag"), File->GetRootTag()->GetName());
    EXPECT_EQ(0, File->GetRootTag()->GetAttributes().GetNumberOfElements());
    ASSERT_EQ(1, File->GetRootTag()->GetChildren().GetNumberOfElements());
    EXPECT_EQ(zel_string("art_file"), DocumentTag(*File)->GetName());
    EXPECT_EQ(0, File->GetTagNames().GetNameNum("RootTag"));
    EXPECT_EQ(1, File->GetTagNames().GetNameNum("art_file"));
}

TEST(ArtFile, SavingTwiceWritesIdenticalBytes)
{
    ownership_pointer<art_file> Document =
        Read("<art_file w_val=\"40\" h_val=\"30\"><children><pego name=\"a\" w_val=\"4\"/></children></art_file>");
    zel_string First = Document->CreateXBDFile()->GetZELXMLv1String();
    zel_string Second = Document->CreateXBDFile()->GetZELXMLv1String();
    EXPECT_GT(First.GetLength(), 0);
    EXPECT_EQ(First, Second);
}

// ---- Bitmaps ----

TEST(ArtFile, TheBitmapsOfTheDocumentAreReadAndEveryObjectFindsItsOwn)
{
    zel_string PNG = MakePNG(3, 2);
    ownership_pointer<xbd_file> File = DocumentWithBitmap("<test_bitmap_user bitmap_id=\"3\"/>", PNG);
    ownership_pointer<art_file> Document =
        art_file::CreateArtFile(DocumentTag(*File), reference_pointer<art_bitmap_manager>());
    ASSERT_TRUE(Document->GetBitmapManager().IsSet());
    EXPECT_EQ(1, Document->GetBitmapManager()->GetNumberOfBitmaps());
    EXPECT_EQ(4, Document->GetBitmapManager()->GetNextBitmapID());
    bitmap_user *User = dynamic_cast<bitmap_user *>(Document->GetChildrenObject()->GetChild(0));
    ASSERT_NE(nullptr, User);
    EXPECT_EQ(1, User->ReadBitmapsCalls);
    ASSERT_TRUE(User->Bitmap.IsSet());
    EXPECT_EQ(3, User->Bitmap->GetBitmapID());
    EXPECT_EQ(PNG, User->Bitmap->GetOriginalFileBytes());
}

TEST(ArtFile, ABitmapInUseIsSavedAfterTheChildrenWithTheLowestNumbers)
{
    zel_string PNG = MakePNG(3, 2);
    ownership_pointer<xbd_file> Source = DocumentWithBitmap("<test_bitmap_user bitmap_id=\"3\"/>", PNG);
    ownership_pointer<art_file> Document =
        art_file::CreateArtFile(DocumentTag(*Source), reference_pointer<art_bitmap_manager>());
    ownership_pointer<xbd_file> File = Document->CreateXBDFile();
    reference_pointer<xbd_tag> Tag = DocumentTag(*File);
    ASSERT_EQ(2, Tag->GetChildren().GetNumberOfElements());
    EXPECT_EQ(zel_string("children"), Tag->GetChildren()[0]->GetName());
    EXPECT_EQ(zel_string("bitmaps"), Tag->GetChildren()[1]->GetName());
    reference_pointer<xbd_tag> Bitmaps = Tag->GetChildTag("bitmaps");
    ASSERT_EQ(1, Bitmaps->GetChildren().GetNumberOfElements());
    reference_pointer<xbd_tag> Bitmap(Bitmaps->GetChildren()[0].Get());
    EXPECT_EQ(zel_string("3"), Bitmap->GetAttribute("bitmap_id", ""));
    EXPECT_EQ(PNG, Bitmap->GetAttribute("pixel_data", ""));
    // Made first, the bitmaps' names and values come before those of the children and the layout.
    EXPECT_EQ(2, File->GetTagNames().GetNameNum("bitmaps"));
    EXPECT_EQ(3, File->GetTagNames().GetNameNum("bitmap"));
    EXPECT_LT(File->GetAttributeNames().GetNameNum("bitmap_id"), File->GetAttributeNames().GetNameNum("w_val"));
    EXPECT_EQ(zel_string("art_engine_version"), File->GetAttributeNames().GetName(0));
    EXPECT_EQ(zel_string("0.0.2"), File->GetValues().GetName(0));
}

TEST(ArtFile, ABitmapThatNoObjectUsesIsNotSaved)
{
    ownership_pointer<xbd_file> Source = DocumentWithBitmap("<pego name=\"a\"/>", MakePNG(2, 2));
    ownership_pointer<art_file> Document =
        art_file::CreateArtFile(DocumentTag(*Source), reference_pointer<art_bitmap_manager>());
    EXPECT_EQ(1, Document->GetBitmapManager()->GetNumberOfBitmaps());
    ownership_pointer<xbd_file> File = Document->CreateXBDFile();
    EXPECT_FALSE(DocumentTag(*File)->GetChildTag("bitmaps").IsSet());
}

TEST(ArtFile, TheBitmapsOfTheFileReplaceAGivenManager)
{
    ownership_pointer<art_bitmap_manager> Shared(new art_bitmap_manager);
    ownership_pointer<xbd_file> Source = DocumentWithBitmap("<pego name=\"a\"/>", MakePNG(2, 2));
    ownership_pointer<art_file> Document =
        art_file::CreateArtFile(DocumentTag(*Source), reference_pointer<art_bitmap_manager>(Shared.Get()));
    EXPECT_NE(Shared.Get(), Document->GetBitmapManager().Get());
    EXPECT_EQ(1, Document->GetBitmapManager()->GetNumberOfBitmaps());
    EXPECT_EQ(0, Shared->GetNumberOfBitmaps());
}

// ---- Fonts ----

TEST(ArtFile, TheEmbeddedFontsAreReadBeforeTheDocument)
{
    ownership_pointer<art_file> Document =
        Read("<art_file w_val=\"40\" h_val=\"30\"><embedded_fonts><font name=\"Rofa Nowhere Serif\">"
             "<glyph char=\"120\" x_step=\"0.5\"/></font></embedded_fonts></art_file>");
    reference_pointer<art_font> Font = GetFontManager().FindFont("Rofa Nowhere Serif");
    ASSERT_TRUE(Font.IsSet());
    reference_pointer<art_font_face> Face = Font->GetFaceAt(0);
    ASSERT_TRUE(Face.IsSet());
    EXPECT_TRUE(Face->HasGlyph('x'));
    EXPECT_EQ(0.5, Face->GetGlyph('x')->GetXStep());
    // With no text in the tree, the document does not carry the fonts on.
    ownership_pointer<xbd_file> File = Document->CreateXBDFile();
    EXPECT_FALSE(DocumentTag(*File)->GetChildTag("embedded_fonts").IsSet());
}

// ---- Frame ----

TEST(ArtFile, SettingTheSizeGivesWholeNumbers)
{
    art_file Document;
    Document.SetSize(point2d(10.4, 20.6));
    EXPECT_EQ(point2d(16, 21), Document.GetSize());
    Document.SetSize(point2d(100.4, 20.6));
    EXPECT_EQ(point2d(100, 21), Document.GetSize());
    Document.SetSize(point2d(30.5, 40.49));
    EXPECT_EQ(point2d(31, 40), Document.GetSize());
}

TEST(ArtFile, ASizeBelowSixteenInEitherAxisBecomesSixteen)
{
    art_file Document;
    EXPECT_EQ(point2d(16, 16), Document.GetMinimumSize());
    Document.SetSize(point2d(3, 40));
    EXPECT_EQ(point2d(16, 40), Document.GetSize());
    Document.SetSize(point2d(50, -7));
    EXPECT_EQ(point2d(50, 16), Document.GetSize());
    ownership_pointer<art_file> Small = Read("<art_file w_val=\"5\" h_val=\"200\"/>");
    EXPECT_EQ(point2d(16, 200), Small->GetSize());
}

TEST(ArtFile, SettingTheLocationGivesWholeNumbers)
{
    art_file Document;
    Document.SetLocation(point2d(1.5, -2.4));
    EXPECT_EQ(point2d(2, -2), Document.GetLocation());
}

TEST(ArtFile, UnderAFrameLockTheFrameStaysWhereItIs)
{
    art_file Document;
    Document.SetSize(point2d(100, 80));
    Document.SetLocation(point2d(5, 6));
    Document.LockFrame();
    Document.LockFrame();
    EXPECT_TRUE(Document.IsFrameLocked());
    Document.SetSize(point2d(300, 200));
    Document.SetLocation(point2d(50, 60));
    Document.UnlockFrame();
    Document.SetSize(point2d(300, 200));
    EXPECT_EQ(point2d(100, 80), Document.GetSize());
    EXPECT_EQ(point2d(5, 6), Document.GetLocation());
    Document.UnlockFrame();
    EXPECT_FALSE(Document.IsFrameLocked());
    Document.SetSize(point2d(300, 200));
    Document.SetLocation(point2d(50, 60));
    EXPECT_EQ(point2d(300, 200), Document.GetSize());
    EXPECT_EQ(point2d(50, 60), Document.GetLocation());
}

TEST(ArtFile, ADocumentDoesNotRotate)
{
    art_file Document;
    int32_t Count = Document.GetRedrawCount();
    Document.SetAngle(0.5);
    EXPECT_EQ(0, Document.GetAngle());
    EXPECT_EQ(Count, Document.GetRedrawCount());
}

TEST(ArtFile, ItsContentIsNotResizedWithItAndItsTagIsArtFile)
{
    art_file Document;
    EXPECT_FALSE(Document.CanResizeContent());
    EXPECT_EQ(zel_string("art_file"), Document.GetTagName());
}

// ---- Time ----

namespace {

class clock_object : public art_object
{
public:
    double GetCurrentTime() override { return 4.25; }
};

} // namespace

TEST(ArtFile, AParentlessDocumentShowsTimeZeroUntilATimeIsSet)
{
    art_file Document;
    EXPECT_EQ(0, Document.GetCurrentTime());
    Document.SetCurrentTime(2.5);
    EXPECT_EQ(2.5, Document.GetCurrentTime());
    Document.SetCurrentTime(0);
    EXPECT_EQ(0, Document.GetCurrentTime());
}

TEST(ArtFile, ANegativeTimeAsksTheParent)
{
    clock_object Clock;
    reference_pointer<art_object> Added = Clock.AddChild(ownership_pointer<art_object>(new art_file));
    art_file *Document = dynamic_cast<art_file *>(Added.Get());
    ASSERT_NE(nullptr, Document);
    EXPECT_EQ(4.25, Document->GetCurrentTime());
    Document->SetCurrentTime(1);
    EXPECT_EQ(1, Document->GetCurrentTime());
    Document->SetCurrentTime(-1);
    EXPECT_EQ(4.25, Document->GetCurrentTime());
}

// ---- Copies ----

TEST(ArtFile, ACopySharesTheBitmapManagerAndKeepsTheVersion)
{
    ownership_pointer<art_file> Document =
        Read("<art_file art_engine_version=\"0.0.1\" w_val=\"40\" h_val=\"30\"><children><pego name=\"a\"/>"
             "</children></art_file>");
    ownership_pointer<art_object> Copy = Document->Duplicate();
    art_file *CopiedFile = dynamic_cast<art_file *>(Copy.Get());
    ASSERT_NE(nullptr, CopiedFile);
    EXPECT_EQ(Document->GetBitmapManager(), CopiedFile->GetBitmapManager());
    EXPECT_EQ(zel_string("0.0.1"), CopiedFile->GetEngineVersion());
    EXPECT_EQ(Saved(*Document), Saved(*CopiedFile));
    EXPECT_NE(Document->GetChildByName("a").Get(), CopiedFile->GetChildByName("a").Get());
}

// ---- Versions ----

TEST(ArtFile, OnlyTheFirstTwoPartsOfAVersionCount)
{
    EXPECT_TRUE(art_file::IsSupportedVersion("0.0.1", true));
    EXPECT_TRUE(art_file::IsSupportedVersion("0.0.2", true));
    EXPECT_TRUE(art_file::IsSupportedVersion("0.0.99", true));
    EXPECT_FALSE(art_file::IsSupportedVersion("0.1.0", true));
    EXPECT_TRUE(art_file::IsSupportedVersion("0.1.0", false));
    EXPECT_FALSE(art_file::IsSupportedVersion("1.0.0", false));
    EXPECT_FALSE(art_file::IsSupportedVersion("1.0.0", true));
    EXPECT_TRUE(art_file::IsSupportedVersion("0", true));
    EXPECT_TRUE(art_file::IsSupportedVersion("", true));
    EXPECT_FALSE(art_file::IsSupportedVersion("0.2", true));
    EXPECT_TRUE(art_file::IsSupportedVersion("0.0.0.7", true));
}
