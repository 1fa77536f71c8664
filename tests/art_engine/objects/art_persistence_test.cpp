#include <gtest/gtest.h>

#include "art_engine/objects/art_layer_object.h"
#include "art_engine/objects/art_object_factory.h"
#include "tests/art_engine/objects/art_test_support.h"

using namespace art_test;

namespace {

// The factory lives from its first use to the end of the process: made before any test runs, it
// does not count against the first test that reads children.
class factory_environment : public testing::Environment
{
public:
    void SetUp() override { art_object_factory::GetFactory(); }
};

testing::Environment *const FactoryEnvironment = testing::AddGlobalTestEnvironment(new factory_environment);

// A document tree in the form this system writes: every attribute in its order, no defaults.
ownership_pointer<xbd_tag> MakeDocument(xbd_file &File)
{
    ownership_pointer<xbd_tag> Root =
        MakeTag(File, "pego",
                {{"drop_in_enabled", ""}, {"name", "page"}, {"angle", "0.125"}, {"handle", "(0,0)"},
                 {"opacity", "0.9"}, {"lock_mode", "2"}, {"w_val", "640"}, {"h_val", "480"}});
    ownership_pointer<xbd_tag> Children = Root->NewTag("children");
    Children->AddChildTag(MakeTag(File, "pego",
                                  {{"name", "shape"}, {"stack_mode", "+stencil"}, {"x_layout_mode", "7"},
                                   {"x_val", "0.5"}, {"w_val", "1"}, {"y_layout_mode", "7"}, {"y_val", "0.5"},
                                   {"h_val", "1"}}));
    ownership_pointer<xbd_tag> Group =
        MakeTag(File, "pego",
                {{"name", "group"}, {"handle", "(0.25,0.75)"}, {"aspect_ratio", "1.33333"}, {"lock_mode", "3"},
                 {"x_layout_mode", "3"}, {"x_val", "12.5"}, {"w_val", "4"}, {"y_layout_mode", "6"},
                 {"y_val", "-3"}, {"h_val", "-8e-05"}});
    ownership_pointer<xbd_tag> GroupChildren = Group->NewTag("children");
    GroupChildren->AddChildTag(MakeTag(File, "pego", {{"name", "leaf one"}, {"x_val", "1"}, {"w_val", "2"}}));
    GroupChildren->AddChildTag(
        MakeTag(File, "pego", {{"name", "leaf two"}, {"stack_mode", "-stencil"}, {"x_layout_mode", "1"}}));
    Group->AddChildTag(GroupChildren);
    Children->AddChildTag(Group);
    Children->AddChildTag(MakeTag(File, "pego", {{"opacity", "0"}, {"stack_mode", "stencil"}}));
    Root->AddChildTag(Children);
    return Root;
}

const char *const DocumentText =
    "<pego drop_in_enabled=\"\" name=\"page\" angle=\"0.125\" handle=\"(0,0)\" opacity=\"0.9\" lock_mode=\"2\" "
    "w_val=\"640\" h_val=\"480\"><children>"
    "<pego name=\"shape\" stack_mode=\"+stencil\" x_layout_mode=\"7\" x_val=\"0.5\" w_val=\"1\" "
    "y_layout_mode=\"7\" y_val=\"0.5\" h_val=\"1\"></pego>"
    "<pego name=\"group\" handle=\"(0.25,0.75)\" aspect_ratio=\"1.33333\" lock_mode=\"3\" x_layout_mode=\"3\" "
    "x_val=\"12.5\" w_val=\"4\" y_layout_mode=\"6\" y_val=\"-3\" h_val=\"-8e-05\"><children>"
    "<pego name=\"leaf one\" x_val=\"1\" w_val=\"2\"></pego>"
    "<pego name=\"leaf two\" stack_mode=\"-stencil\" x_layout_mode=\"1\"></pego>"
    "</children></pego>"
    "<pego opacity=\"0\" stack_mode=\"stencil\"></pego>"
    "</children></pego>";

TEST(ArtPersistence, TheDocumentTreeIsBuiltAsExpected)
{
    xbd_file File;
    ownership_pointer<xbd_tag> Tag = MakeDocument(File);
    EXPECT_EQ(DocumentText, Dump(Tag));
}

TEST(ArtPersistence, ATreeReadFromTagsHasItsChildrenInStackOrder)
{
    xbd_file File;
    ownership_pointer<xbd_tag> Tag = MakeDocument(File);
    art_object Page(Tag);
    ASSERT_EQ(3, Page.GetNumberOfChildren());
    reference_pointer<art_object> Group = Page.GetChildByName("group");
    ASSERT_TRUE(Group.IsSet());
    EXPECT_EQ(&Page, Group->GetParent().Get());
    EXPECT_EQ(point2d(0.25, 0.75), Group->GetHandle());
    EXPECT_EQ(1.33333, Group->GetAspectRatio());
    EXPECT_EQ(2, Group->GetNumberOfChildren());
    EXPECT_EQ(StackModeMinusStencil, Group->GetChildByName("leaf two")->GetStackMode());
    EXPECT_EQ(StackModePlusStencil, Page.GetChildByName("shape")->GetStackMode());
    EXPECT_TRUE(Page.IsStencilled());
    EXPECT_FALSE(Group->IsStencilled());
    EXPECT_EQ(0.125, Page.GetAngle());
    EXPECT_EQ(0.9, Page.GetOpacity());
    EXPECT_TRUE(Page.GetDropInEnabled());
}

TEST(ArtPersistence, WritingGivesBackTheAttributesInTheirOrder)
{
    xbd_file File;
    ownership_pointer<xbd_tag> Tag = MakeDocument(File);
    art_object Page(Tag);
    EXPECT_EQ(DocumentText, Written(Page));
}

TEST(ArtPersistence, LoadSaveLoadGivesIdenticalTrees)
{
    xbd_file File;
    ownership_pointer<xbd_tag> Tag = MakeDocument(File);
    art_object First(Tag);
    xbd_file Saved;
    ownership_pointer<xbd_tag> SavedTag = First.CreateTag(&Saved);
    art_object Second(SavedTag);
    EXPECT_EQ(Written(First), Written(Second));
    EXPECT_EQ(Dump(SavedTag), Written(Second));
}

TEST(ArtPersistence, TheBinaryFormCarriesTheTreeThrough)
{
    xbd_file File;
    File.GetRootTag()->AddChildTag(MakeDocument(File));
    zel_string Bytes = File.GetZELXMLv1String();
    ownership_pointer<xbd_file> Loaded = xbd_file::LoadFromData(Bytes, false);
    reference_pointer<xbd_tag> Top(Loaded->GetRootTag()->GetChildren()[0].Get());
    art_object Page(Top);
    EXPECT_EQ(DocumentText, Written(Page));
}

TEST(ArtPersistence, ALaidOutTreeWritesTheSameTags)
{
    xbd_file File;
    ownership_pointer<xbd_tag> Tag = MakeDocument(File);
    art_object Page(Tag);
    Page.Layout();
    EXPECT_EQ(point2d(640, 480), Page.GetSize());
    EXPECT_EQ(DocumentText, Written(Page));
}

TEST(ArtPersistence, AnEmptyChildrenTagMakesNoChildren)
{
    xbd_file File;
    ownership_pointer<xbd_tag> Tag = MakeTag(File, "pego");
    Tag->AddChildTag(Tag->NewTag("children"));
    art_object Object(Tag);
    EXPECT_FALSE(Object.GetChildrenObject().IsSet());
    EXPECT_EQ("<pego></pego>", Written(Object));
}

TEST(ArtPersistence, ObjectsMarkedForDeletionAreStillWritten)
{
    art_object Parent;
    Parent.SetSize(point2d(0, 0));
    reference_pointer<art_object> Child = Parent.AddChild(ownership_pointer<art_object>(new art_object));
    Child->SetName("marked");
    Child->SetSize(point2d(0, 0));
    Child->MarkForDeletion();
    EXPECT_EQ("<pego><children><pego name=\"marked\"></pego></children></pego>", Written(Parent));
    Parent.DeleteMarkedChildren();
    EXPECT_EQ("<pego></pego>", Written(Parent));
}

TEST(ArtPersistence, SetShapeReplacesTheStencilChildrenAndKeepsTheSize)
{
    art_object Object;
    Object.SetSize(point2d(30, 40));
    reference_pointer<art_object> OldShape = Object.AddChild(ownership_pointer<art_object>(new art_object));
    OldShape->SetStackMode(StackModePlusStencil);
    reference_pointer<art_object> Content = Object.AddChild(ownership_pointer<art_object>(new art_object));
    Content->SetName("content");
    reference_pointer<art_object> OldMask = Object.AddChild(ownership_pointer<art_object>(new art_object));
    OldMask->SetStackMode(StackModeStencil);
    ownership_pointer<art_object> NewShape(new art_object);
    NewShape->SetName("new shape");
    NewShape->SetStackMode(StackModeMinusStencil);
    Object.SetShape(NewShape);
    EXPECT_FALSE(OldShape.IsSet());
    EXPECT_FALSE(OldMask.IsSet());
    ASSERT_EQ(2, Object.GetNumberOfChildren());
    EXPECT_EQ("content", ToStd(Object.GetChildrenObject()->GetChild(0)->GetName()));
    EXPECT_EQ("new shape", ToStd(Object.GetChildrenObject()->GetChild(1)->GetName()));
    EXPECT_EQ(point2d(30, 40), Object.GetSize());
}

} // namespace
