#include <gtest/gtest.h>

#include <typeinfo>

#include "art_engine/objects/art_object_factory.h"
#include "art_engine/objects/art_unknown_object.h"
#include "tests/art_engine/objects/art_test_support.h"

using namespace art_test;

namespace {

// An object class that the factory does not know by itself; the test environment adds its maker.
class sample_widget : public art_object
{
public:
    explicit sample_widget(reference_pointer<xbd_tag> Tag)
        : art_object(Tag), Flavour(Tag->GetAttribute("flavour", ""))
    {
    }

    zel_string GetTagName() override { return "sample_widget"; }

    zel_string Flavour;
};

// The factory and every maker live until the process exits: made before any test runs, they do not
// count as objects that a test left alive.
class factory_with_sample_environment : public testing::Environment
{
public:
    void SetUp() override
    {
        art_object_factory::GetFactory()->AddMaker(
            ownership_pointer<art_maker_interface>(new art_object_maker<sample_widget>("sample_widget")));
    }
};

testing::Environment *const SampleEnvironment =
    testing::AddGlobalTestEnvironment(new factory_with_sample_environment);

ownership_pointer<art_object> MakeFromText(const char *Text)
{
    ownership_pointer<xbd_file> File = xbd_file::LoadFromData(Text, false);
    reference_pointer<xbd_tag> Tag(File->GetRootTag()->GetChildren()[0].Get());
    return art_object_factory::GetFactory()->Make(Tag);
}

} // namespace

TEST(ArtObjectFactory, GetFactoryGivesTheOneFactoryOfTheProcess)
{
    reference_pointer<art_object_factory> First = art_object_factory::GetFactory();
    reference_pointer<art_object_factory> Second = art_object_factory::GetFactory();
    ASSERT_TRUE(First.IsSet());
    EXPECT_EQ(First.Get(), Second.Get());
}

TEST(ArtObjectFactory, PegoMakesAPlainObjectThatReadsItsTag)
{
    ownership_pointer<art_object> Object = MakeFromText("<pego name=\"box\" angle=\"0.25\" opacity=\"0.5\"/>");
    ASSERT_TRUE(Object.IsSet());
    EXPECT_EQ(typeid(art_object), typeid(*Object));
    EXPECT_EQ(zel_string("box"), Object->GetName());
    EXPECT_EQ(0.25, Object->GetAngle());
    EXPECT_EQ(0.5, Object->GetOpacity());
    EXPECT_EQ(zel_string("pego"), Object->GetTagName());
}

TEST(ArtObjectFactory, TagNamesCompareWithCaseSoPegoInCapitalsIsUnknown)
{
    ownership_pointer<art_object> Object = MakeFromText("<Pego name=\"box\"/>");
    ASSERT_TRUE(Object.IsSet());
    art_unknown_object *Unknown = dynamic_cast<art_unknown_object *>(Object.Get());
    ASSERT_NE(nullptr, Unknown);
    EXPECT_EQ(zel_string("Pego"), Unknown->GetStoredTag()->GetName());
    EXPECT_EQ(zel_string("Unknown Object Type: Pego"), Object->GetDebugName());
}

TEST(ArtObjectFactory, AnUnknownTagGivesAnUnknownObjectAndNeverAnUnsetPointer)
{
    ownership_pointer<art_object> Object = MakeFromText("<art_sparkle/>");
    ASSERT_TRUE(Object.IsSet());
    EXPECT_NE(nullptr, dynamic_cast<art_unknown_object *>(Object.Get()));
    EXPECT_EQ(zel_string("Unknown Object Type: art_sparkle"), Object->GetDebugName());
}

// A document's top tag and the tags that objects read themselves are not object classes.
TEST(ArtObjectFactory, TagsThatObjectsReadThemselvesAreNotInTheTable)
{
    for (const char *Text : {"<art_file/>", "<children/>", "<bitmaps/>", "<embedded_fonts/>", "<points/>", "<p/>"}) {
        ownership_pointer<art_object> Object = MakeFromText(Text);
        ASSERT_TRUE(Object.IsSet()) << Text;
        EXPECT_NE(nullptr, dynamic_cast<art_unknown_object *>(Object.Get())) << Text;
    }
}

TEST(ArtObjectFactory, AMakerAddedUnderItsTagNameMakesItsClass)
{
    ownership_pointer<art_object> Object = MakeFromText("<sample_widget flavour=\"lime\" name=\"w\"/>");
    ASSERT_TRUE(Object.IsSet());
    sample_widget *Widget = dynamic_cast<sample_widget *>(Object.Get());
    ASSERT_NE(nullptr, Widget);
    EXPECT_EQ(zel_string("lime"), Widget->Flavour);
    EXPECT_EQ(zel_string("w"), Widget->GetName());
}

TEST(ArtObjectFactory, AMakerServesTheTagNameItWasMadeFor)
{
    art_object_maker<art_object> Maker("pego");
    EXPECT_EQ(zel_string("pego"), Maker.GetTagName());
    EXPECT_EQ(zel_string("pego"), Maker.GetName());
    xbd_file File;
    ownership_pointer<xbd_tag> Tag = MakeTag(File, "pego", {{"name", "made"}});
    ownership_pointer<art_object> Object = Maker.Make(reference_pointer<xbd_tag>(Tag.Get()));
    ASSERT_TRUE(Object.IsSet());
    EXPECT_EQ(zel_string("made"), Object->GetName());
}

TEST(ArtObjectFactory, ChildrenOfEveryKindAreMadeByTheFactoryInFileOrder)
{
    ownership_pointer<art_object> Object = MakeFromText("<pego name=\"page\"><children>"
                                                        "<sample_widget name=\"one\"/>"
                                                        "<pego name=\"two\"/>"
                                                        "<art_sparkle name=\"three\"/>"
                                                        "</children></pego>");
    ASSERT_EQ(3, Object->GetNumberOfChildren());
    array_iterator<ownership_pointer<art_object>> Child = Object->GetChildren();
    EXPECT_NE(nullptr, dynamic_cast<sample_widget *>(Child.Current().Get()));
    EXPECT_EQ(Object.Get(), Child.Current()->GetParent().Get());
    Child.Next();
    EXPECT_EQ(typeid(art_object), typeid(*Child.Current()));
    EXPECT_EQ(zel_string("two"), Child.Current()->GetName());
    Child.Next();
    EXPECT_NE(nullptr, dynamic_cast<art_unknown_object *>(Child.Current().Get()));
    EXPECT_EQ(Object.Get(), Child.Current()->GetParent().Get());
}

TEST(ArtObjectFactory, TheFreeFunctionForwardsToTheFactory)
{
    xbd_file File;
    ownership_pointer<xbd_tag> Known = MakeTag(File, "pego", {{"name", "shape"}});
    ownership_pointer<xbd_tag> Unknown = MakeTag(File, "art_squiggle");
    ownership_pointer<art_object> FromKnown = ArtMakeObjectFromTag(reference_pointer<xbd_tag>(Known.Get()));
    ownership_pointer<art_object> FromUnknown = ArtMakeObjectFromTag(reference_pointer<xbd_tag>(Unknown.Get()));
    ASSERT_TRUE(FromKnown.IsSet());
    EXPECT_EQ(typeid(art_object), typeid(*FromKnown));
    EXPECT_EQ(zel_string("shape"), FromKnown->GetName());
    ASSERT_TRUE(FromUnknown.IsSet());
    EXPECT_EQ(zel_string("Unknown Object Type: art_squiggle"), FromUnknown->GetDebugName());
}

// A failure deep in a load unwinds every object made so far: the test's count of live objects
// catches any that stayed behind.
TEST(ArtObjectFactory, AFailureInAConstructorUnwindsTheWholeLoad)
{
    ownership_pointer<xbd_file> File =
        xbd_file::LoadFromData("<pego><children><pego name=\"fine\"/><art_sparkle/>"
                               "<pego><children><pego x_layout_mode=\"9\"/></children></pego>"
                               "</children></pego>",
                               false);
    reference_pointer<xbd_tag> Tag(File->GetRootTag()->GetChildren()[0].Get());
    EXPECT_NE(std::string::npos,
              ZEL_ERROR_MESSAGE(art_object_factory::GetFactory()->Make(Tag)).find("'false' is false"));
}
