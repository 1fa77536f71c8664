#include <gtest/gtest.h>

#include <string>

#include "art_engine/objects/art_object_factory.h"
#include "art_engine/objects/art_unknown_object.h"
#include "tests/art_engine/objects/art_test_support.h"

using namespace art_test;

namespace {

// A tag of a newer format: attributes, a flag, binary values with every awkward byte, and children
// to some depth.
const char *const SparkleText =
    "<art_sparkle name=\"glitter\" rate=\"2.5\" flag=\"\" blob=\"&#0;&#1;&#255;&#128;x&#0;\" stack_mode=\"post\">"
    "<star points=\"5\" colour=\"ffcc00ff\"><twinkle phase=\"&#200;&#0;\"/></star>"
    "<children><pego name=\"inside\"/></children>"
    "<star/>"
    "</art_sparkle>";

std::string SparkleBlob()
{
    return std::string("\0\1\xff\x80x\0", 6);
}

ownership_pointer<xbd_file> Parse(const char *Text)
{
    return xbd_file::LoadFromData(Text, false);
}

reference_pointer<xbd_tag> FirstTag(xbd_file &File)
{
    return reference_pointer<xbd_tag>(File.GetRootTag()->GetChildren()[0].Get());
}

art_unknown_object *AsUnknown(const ownership_pointer<art_object> &Object)
{
    return dynamic_cast<art_unknown_object *>(Object.Get());
}

// What an object writes of itself into a destination whose dictionaries already hold other entries,
// so that every number of the written tag differs from the numbers it was read with.
std::string WrittenAmongOtherEntries(art_object &Object)
{
    xbd_file Destination;
    Destination.GetRootTag()->AddChildTag(MakeTag(Destination, "unrelated", {{"width", "9"}, {"blob", "q"}}));
    ownership_pointer<xbd_tag> Tag = Object.CreateTag(&Destination);
    return Dump(reference_pointer<xbd_tag>(Tag.Get()));
}

} // namespace

TEST(ArtUnknownObject, TheTestTagHoldsItsBinaryValues)
{
    ownership_pointer<xbd_file> File = Parse(SparkleText);
    EXPECT_EQ(SparkleBlob(), ToStd(FirstTag(*File)->GetAttribute("blob", "")));
}

TEST(ArtUnknownObject, ATagNobodyKnowsLoadsAsUnknownAndSavesTheSameStrings)
{
    ownership_pointer<xbd_file> File = Parse(SparkleText);
    ownership_pointer<art_object> Object = art_object_factory::GetFactory()->Make(FirstTag(*File));
    ASSERT_NE(nullptr, AsUnknown(Object));
    std::string Expected = Dump(FirstTag(*File));
    EXPECT_EQ(Expected, WrittenAmongOtherEntries(*Object));
    EXPECT_NE(std::string::npos, Expected.find(SparkleBlob()));
}

TEST(ArtUnknownObject, ATagNobodyKnowsSurvivesTheBinaryFormBothWays)
{
    std::string PageText = std::string("<pego><children>") + SparkleText + "</children></pego>";
    ownership_pointer<xbd_file> Source = Parse(PageText.c_str());
    ownership_pointer<xbd_file> Loaded = xbd_file::LoadFromData(Source->GetZELXMLv1String(), false);
    ownership_pointer<art_object> Page = art_object_factory::GetFactory()->Make(FirstTag(*Loaded));

    xbd_file Saved;
    Saved.GetRootTag()->AddChildTag(Page->CreateTag(&Saved));
    ownership_pointer<xbd_file> Reloaded = xbd_file::LoadFromData(Saved.GetZELXMLv1String(), false);
    EXPECT_EQ(Dump(FirstTag(*Source)), Dump(FirstTag(*Reloaded)));
}

TEST(ArtUnknownObject, TheCopyOutlivesTheFileItCameFrom)
{
    ownership_pointer<xbd_file> File = Parse(SparkleText);
    std::string Expected = Dump(FirstTag(*File));
    ownership_pointer<art_object> Object = art_object_factory::GetFactory()->Make(FirstTag(*File));
    File.Reset();
    EXPECT_EQ(Expected, Written(*Object));
}

TEST(ArtUnknownObject, TheCopyLivesInAFileOfItsOwn)
{
    ownership_pointer<xbd_file> File = Parse(SparkleText);
    ownership_pointer<art_object> Object = art_object_factory::GetFactory()->Make(FirstTag(*File));
    reference_pointer<xbd_tag> Stored = AsUnknown(Object)->GetStoredTag();
    ASSERT_TRUE(Stored.IsSet());
    EXPECT_NE(FirstTag(*File).Get(), Stored.Get());
    reference_pointer<xbd_file> Private = Stored->GetFile();
    ASSERT_TRUE(Private.IsSet());
    EXPECT_NE(File.Get(), Private.Get());
    EXPECT_EQ(zel_string("RootTag"), Private->GetRootTag()->GetName());
    EXPECT_EQ(zel_string("RootTag"), Private->GetTagNames().GetName(0));
    EXPECT_EQ(zel_string("art_sparkle"), Private->GetTagNames().GetName(1));
}

TEST(ArtUnknownObject, PostInTheTagIsNormalInMemoryAndStillSaved)
{
    ownership_pointer<xbd_file> File = Parse("<art_sparkle stack_mode=\"post\" glow=\"1\"/>");
    ownership_pointer<art_object> Object = art_object_factory::GetFactory()->Make(FirstTag(*File));
    EXPECT_EQ(StackModeNormal, Object->GetStackMode());
    EXPECT_EQ("<art_sparkle stack_mode=\"post\" glow=\"1\"></art_sparkle>", Written(*Object));
}

TEST(ArtUnknownObject, NothingOfTheTagIsReadIntoTheObject)
{
    ownership_pointer<xbd_file> File =
        Parse("<art_sparkle name=\"n\" angle=\"1\" opacity=\"0.5\" alpha_object=\"\">"
              "<children><pego/></children></art_sparkle>");
    ownership_pointer<art_object> Object = art_object_factory::GetFactory()->Make(FirstTag(*File));
    EXPECT_EQ(zel_string(""), Object->GetName());
    EXPECT_EQ(0, Object->GetAngle());
    EXPECT_EQ(1, Object->GetOpacity());
    EXPECT_EQ(StackModeNormal, Object->GetStackMode());
    EXPECT_FALSE(Object->HasChildren());
}

TEST(ArtUnknownObject, EditsOfTheObjectDoNotReachTheFile)
{
    ownership_pointer<xbd_file> File = Parse("<art_sparkle glow=\"1\"/>");
    ownership_pointer<art_object> Object = art_object_factory::GetFactory()->Make(FirstTag(*File));
    Object->SetName("renamed");
    Object->SetOpacity(0.25);
    Object->SetStackMode(StackModePost);
    EXPECT_EQ(StackModePost, Object->GetStackMode());
    EXPECT_EQ("<art_sparkle glow=\"1\"></art_sparkle>", Written(*Object));
}

TEST(ArtUnknownObject, ItFillsItsParentAndHasNoChildren)
{
    ownership_pointer<xbd_file> File =
        Parse("<pego handle=\"(0,0)\" w_val=\"120\" h_val=\"80\"><children><art_sparkle/></children></pego>");
    ownership_pointer<art_object> Page = art_object_factory::GetFactory()->Make(FirstTag(*File));
    Page->Layout();
    ASSERT_EQ(1, Page->GetNumberOfChildren());
    art_object &Sparkle = *Page->GetChildren().Current();
    EXPECT_EQ(point2d(0, 0), Sparkle.GetLocation());
    EXPECT_EQ(point2d(120, 80), Sparkle.GetSize());
    EXPECT_TRUE(Sparkle.IsLayerObject());
    EXPECT_FALSE(Sparkle.CanHaveChildren());
    EXPECT_FALSE(Sparkle.HasOwnFrame());
}

TEST(ArtUnknownObject, AnUnknownTagKeepsItsPlaceAmongItsSiblings)
{
    const char *Text = "<pego name=\"page\"><children>"
                       "<pego name=\"below\"></pego>"
                       "<art_sparkle rate=\"3\"><star></star></art_sparkle>"
                       "<pego name=\"above\" stack_mode=\"stencil\"></pego>"
                       "</children></pego>";
    ownership_pointer<xbd_file> File = Parse(Text);
    ownership_pointer<art_object> Page = art_object_factory::GetFactory()->Make(FirstTag(*File));
    ASSERT_EQ(3, Page->GetNumberOfChildren());
    array_iterator<ownership_pointer<art_object>> Child = Page->GetChildren();
    Child.Next();
    EXPECT_NE(nullptr, dynamic_cast<art_unknown_object *>(Child.Current().Get()));
    EXPECT_EQ(Text, WrittenAmongOtherEntries(*Page));
}

TEST(ArtUnknownObject, ADuplicateKeepsACopyOfItsOwn)
{
    ownership_pointer<xbd_file> File = Parse(SparkleText);
    std::string Expected = Dump(FirstTag(*File));
    ownership_pointer<art_object> Original = art_object_factory::GetFactory()->Make(FirstTag(*File));
    ownership_pointer<art_object> Copy = Original->Duplicate();
    ASSERT_NE(nullptr, AsUnknown(Copy));
    reference_pointer<xbd_tag> CopyTag = AsUnknown(Copy)->GetStoredTag();
    EXPECT_NE(AsUnknown(Original)->GetStoredTag().Get(), CopyTag.Get());
    EXPECT_NE(AsUnknown(Original)->GetStoredTag()->GetFile().Get(), CopyTag->GetFile().Get());

    Original.Reset();
    ASSERT_TRUE(CopyTag.IsSet());
    EXPECT_EQ(Expected, Written(*Copy));
    EXPECT_EQ(zel_string("Unknown Object Type: art_sparkle"), Copy->GetDebugName());
}

TEST(ArtUnknownObject, ADuplicatedTreeKeepsItsUnknownChild)
{
    ownership_pointer<xbd_file> File =
        Parse("<pego name=\"page\"><children><art_sparkle rate=\"3\"></art_sparkle></children></pego>");
    ownership_pointer<art_object> Page = art_object_factory::GetFactory()->Make(FirstTag(*File));
    ownership_pointer<art_object> Copy = Page->Duplicate();
    Page.Reset();
    EXPECT_EQ("<pego name=\"page\"><children><art_sparkle rate=\"3\"></art_sparkle></children></pego>", Written(*Copy));
}

TEST(ArtUnknownObject, SavingNeedsADestinationFile)
{
    ownership_pointer<xbd_file> File = Parse("<art_sparkle/>");
    ownership_pointer<art_object> Object = art_object_factory::GetFactory()->Make(FirstTag(*File));
    EXPECT_NE(std::string::npos,
              ZEL_ERROR_MESSAGE(Object->CreateTag(reference_pointer<xbd_file>())).find("'File.IsSet()' is false"));
}
