#include <cstdlib>
#include <fstream>
#include <sstream>
#include <string>
#include <sys/wait.h>
#include <unistd.h>

#include <gtest/gtest.h>

#include "tests/e2e/rofa_tool_test_support.h"

#include "hosts/object_tree_saving.h"
#include "xbd/xbd.h"

namespace {

bool Exists(const std::string &Path)
{
    return access(Path.c_str(), F_OK) == 0;
}

using RofaToolObjects = rofa_tool_fixture;

// A page of 400 by 300 with objects in every stack mode and most layout modes, a group that fits its
// children, a tag that no class knows, and three levels of nesting.
const char *const PageText =
    "<pego name=\"page\" handle=\"(0,0)\" w_val=\"400\" h_val=\"300\">\n"
    " <children>\n"
    "  <pego name=\"mask\" stack_mode=\"stencil\" x_layout_mode=\"7\" x_val=\"0.5\" w_val=\"1\" y_layout_mode=\"7\""
    " y_val=\"0.5\" h_val=\"1\"/>\n"
    "  <pego name=\"hole\" stack_mode=\"-stencil\" handle=\"(0,1)\" x_layout_mode=\"1\" x_val=\"-100\" w_val=\"60\""
    " y_layout_mode=\"2\" y_val=\"0.25\" h_val=\"40\"/>\n"
    "  <pego name=\"extra\" stack_mode=\"+stencil\" angle=\"0.785398\" x_val=\"50\" w_val=\"20\" y_val=\"60\""
    " h_val=\"10\"/>\n"
    "  <pego name=\"group\" opacity=\"0.5\" handle=\"(0,0)\" x_layout_mode=\"3\" x_val=\"10\" w_val=\"5\""
    " y_layout_mode=\"4\" y_val=\"-100\" h_val=\"2\">\n"
    "   <children>\n"
    "    <pego name=\"left\" handle=\"(0,0)\" w_val=\"30\" h_val=\"20\"/>\n"
    "    <pego name=\"right\" handle=\"(1,1)\" x_val=\"80\" w_val=\"40\" y_val=\"50\" h_val=\"30\">\n"
    "     <children>\n"
    "      <pego name=\"dot\" angle=\"3.14159\" x_layout_mode=\"5\" x_val=\"0.25\" w_val=\"6\" y_layout_mode=\"2\""
    " y_val=\"0.5\" h_val=\"4\"/>\n"
    "     </children>\n"
    "    </pego>\n"
    "    <pego name=\"filler\" x_layout_mode=\"7\" x_val=\"0.5\" w_val=\"1\" y_layout_mode=\"7\" y_val=\"0.5\""
    " h_val=\"1\"/>\n"
    "   </children>\n"
    "  </pego>\n"
    "  <art_sparkle name=\"kept\" stack_mode=\"+stencil\"/>\n"
    "  <pego name=\"stretch\" x_layout_mode=\"6\" x_val=\"10\" w_val=\"-10\" y_layout_mode=\"6\" y_val=\"20\""
    " h_val=\"-40\"/>\n"
    "  <pego name=\"glow\" stack_mode=\"post\" opacity=\"0.125\" handle=\"(0,0)\" x_layout_mode=\"7\" w_val=\"1\""
    " y_layout_mode=\"7\" h_val=\"1\"/>\n"
    " </children>\n"
    "</pego>\n";

// Worked out from the layout rules, with P the parent's size, C the children's extent and k the handle:
//   mask, mode 7: position 0.5 * P = (200, 150), extent 1 * P = (400, 300).
//   hole, x mode 1: -100 + 400 = 300, extent 60; y mode 2: 0.25 * 300 = 75, extent 40.
//   group: its children that do not depend on it span x 0..30 and 40..80 (right's handle is its
//     bottom-right corner), y 0..20 and 20..50, so C = (80, 50); filler, in mode 7, is left out.
//     x mode 3: 10, extent 5 + 80 = 85; y mode 4: -100 + 300 = 200, extent 2 + 50 = 52.
//   dot, x mode 5 in right (40 by 30): 0.25 * 40 = 10, extent 6 + 0; y mode 2: 0.5 * 30 = 15, extent 4.
//   filler, mode 7 in group: (42.5, 26), extent (85, 52).
//   the unknown tag fills its parent and keeps none of its attributes in memory.
//   stretch, mode 6: e = (-10 + 400) - 10 = 380, position 380 * 0.5 + 10 = 200;
//     e = (-40 + 300) - 20 = 240, position 240 * 0.5 + 20 = 140.
//   glow, mode 7 with a = 0 and b = 1: (0, 0), extent (400, 300).
const char *const PageObjects =
    "pego \"page\" normal loc=(0,0) size=(400,300) handle=(0,0) angle=0 opacity=1 layout=(0,0)\n"
    "  pego \"mask\" stencil loc=(200,150) size=(400,300) handle=(0.5,0.5) angle=0 opacity=1 layout=(7,7)\n"
    "  pego \"hole\" -stencil loc=(300,75) size=(60,40) handle=(0,1) angle=0 opacity=1 layout=(1,2)\n"
    "  pego \"extra\" +stencil loc=(50,60) size=(20,10) handle=(0.5,0.5) angle=0.785398 opacity=1 layout=(0,0)\n"
    "  pego \"group\" normal loc=(10,200) size=(85,52) handle=(0,0) angle=0 opacity=0.5 layout=(3,4)\n"
    "    pego \"left\" normal loc=(0,0) size=(30,20) handle=(0,0) angle=0 opacity=1 layout=(0,0)\n"
    "    pego \"right\" normal loc=(80,50) size=(40,30) handle=(1,1) angle=0 opacity=1 layout=(0,0)\n"
    "      pego \"dot\" normal loc=(10,15) size=(6,4) handle=(0.5,0.5) angle=3.14159 opacity=1 layout=(5,2)\n"
    "    pego \"filler\" normal loc=(42.5,26) size=(85,52) handle=(0.5,0.5) angle=0 opacity=1 layout=(7,7)\n"
    "  art_sparkle \"\" normal loc=(0,0) size=(400,300) handle=(0,0) angle=0 opacity=1 layout=(7,7)\n"
    "  pego \"stretch\" normal loc=(200,140) size=(380,240) handle=(0.5,0.5) angle=0 opacity=1 layout=(6,6)\n"
    "  pego \"glow\" post loc=(0,0) size=(400,300) handle=(0,0) angle=0 opacity=0.125 layout=(7,7)\n";

const char *const KeptText = "<pego name=\"page\" w_val=\"100\" h_val=\"50\"><children>"
                             "<pego name=\"a\"/>"
                             "<art_sparkle rate=\"3\" blob=\"&#0;&#255;\" stack_mode=\"post\"><star points=\"5\"/>"
                             "</art_sparkle>"
                             "<pego name=\"b\" stack_mode=\"stencil\"/>"
                             "</children></pego>";

} // namespace

TEST_F(RofaToolObjects, ListsEveryObjectDepthFirstInStackOrder)
{
    WriteFile(Path("page.xml"), PageText);
    tool_result Result = Run("objects " + Path("page.xml"));
    EXPECT_EQ(Result.Status, 0) << Result.Errors;
    EXPECT_EQ(Result.Errors, "");
    EXPECT_EQ(Result.Output, PageObjects);
}

TEST_F(RofaToolObjects, ListsShapesInBothTheirForms)
{
    // A stencil shape with its shape as the first child tag, and the older "shape" child, whose shape
    // outlines its whole object: in mode 7 about the middle, a = 0.5 and b = 1, so (15, 20) and (30, 40).
    WriteFile(Path("shapes.xml"),
              "<pego name=\"card\" handle=\"(0,0)\" w_val=\"120\" h_val=\"80\"><children>"
              "<art_stencil_shape name=\"outline\" stack_mode=\"+stencil\" x_layout_mode=\"7\" x_val=\"0.5\""
              " w_val=\"1\" y_layout_mode=\"7\" y_val=\"0.5\" h_val=\"1\"><art_rectangle rounded=\"(4,4)\"/>"
              "</art_stencil_shape>"
              "<pego name=\"old\" handle=\"(0,0)\" x_val=\"10\" y_val=\"20\" w_val=\"30\" h_val=\"40\">"
              "<shape><art_ellipse/></shape></pego>"
              "</children></pego>");
    tool_result Result = Run("objects " + Path("shapes.xml"));
    EXPECT_EQ(Result.Status, 0) << Result.Errors;
    EXPECT_EQ(Result.Output,
              "pego \"card\" normal loc=(0,0) size=(120,80) handle=(0,0) angle=0 opacity=1 layout=(0,0)\n"
              "  art_stencil_shape \"outline\" +stencil loc=(60,40) size=(120,80) handle=(0.5,0.5) angle=0 opacity=1"
              " layout=(7,7)\n"
              "  pego \"old\" normal loc=(10,20) size=(30,40) handle=(0,0) angle=0 opacity=1 layout=(0,0)\n"
              "    art_stencil_shape \"\" +stencil loc=(15,20) size=(30,40) handle=(0.5,0.5) angle=0 opacity=1"
              " layout=(7,7)\n");
}

TEST_F(RofaToolObjects, ListsTheBinaryFormAsTheTextForm)
{
    WriteFile(Path("page.xml"), PageText);
    ASSERT_EQ(Run("compile " + Path("page.xml") + " " + Path("page.xbd")).Status, 0);
    tool_result Result = Run("objects " + Path("page.xbd"));
    EXPECT_EQ(Result.Status, 0) << Result.Errors;
    EXPECT_EQ(Result.Output, PageObjects);
}

TEST_F(RofaToolObjects, ListsOnlyTheFirstTagUnderTheRoot)
{
    WriteFile(Path("two.xml"), "<pego name=\"first\" w_val=\"8\" h_val=\"6\"/><pego name=\"second\"/>");
    tool_result Result = Run("objects " + Path("two.xml"));
    EXPECT_EQ(Result.Status, 0) << Result.Errors;
    EXPECT_EQ(Result.Output,
              "pego \"first\" normal loc=(0,0) size=(8,6) handle=(0.5,0.5) angle=0 opacity=1 layout=(0,0)\n");
}

TEST_F(RofaToolObjects, ResaveKeepsATagThatNobodyKnows)
{
    WriteFile(Path("kept.xml"), KeptText);
    tool_result Resave = Run("resave " + Path("kept.xml") + " " + Path("kept.xbd"));
    ASSERT_EQ(Resave.Status, 0) << Resave.Errors;
    EXPECT_EQ(Resave.Output, "");
    EXPECT_EQ(ReadFile(Path("kept.xbd")).substr(0, 6), "ZELXML");
    tool_result Dump = Run("dump " + Path("kept.xbd"));
    ASSERT_EQ(Dump.Status, 0) << Dump.Errors;
    EXPECT_EQ(Dump.Output, "<pego name=\"page\" w_val=\"100\" h_val=\"50\">\n"
                           "  <children>\n"
                           "    <pego name=\"a\"/>\n"
                           "    <art_sparkle rate=\"3\" blob=\"&#0;&#255;\" stack_mode=\"post\">\n"
                           "      <star points=\"5\"/>\n"
                           "    </art_sparkle>\n"
                           "    <pego name=\"b\" stack_mode=\"stencil\"/>\n"
                           "  </children>\n"
                           "</pego>\n");
}

TEST_F(RofaToolObjects, ResaveWritesWhatTheObjectsHoldNotWhatTheFileSaid)
{
    WriteFile(Path("defaults.xml"),
              "<pego name=\"p\" opacity=\"1.0\" handle=\"(0.5,0.5)\" lock_mode=\"9\" angle=\"0\"/>");
    ASSERT_EQ(Run("resave " + Path("defaults.xml") + " " + Path("defaults.xbd")).Status, 0);
    tool_result Dump = Run("dump " + Path("defaults.xbd"));
    EXPECT_EQ(Dump.Output, "<pego name=\"p\" lock_mode=\"4\"/>\n");
}

TEST_F(RofaToolObjects, ResavingTwiceGivesIdenticalBytes)
{
    WriteFile(Path("page.xml"), PageText);
    ASSERT_EQ(Run("resave " + Path("page.xml") + " " + Path("first.xbd")).Status, 0);
    ASSERT_EQ(Run("resave " + Path("first.xbd") + " " + Path("second.xbd")).Status, 0);
    std::string First = ReadFile(Path("first.xbd"));
    EXPECT_FALSE(First.empty());
    EXPECT_EQ(First, ReadFile(Path("second.xbd")));
    tool_result Listed = Run("objects " + Path("second.xbd"));
    EXPECT_EQ(Listed.Output, PageObjects);
}

TEST_F(RofaToolObjects, AMissingFileFailsWithStatusOne)
{
    tool_result Objects = Run("objects " + Path("missing.xml"));
    EXPECT_EQ(Objects.Status, 1);
    EXPECT_EQ(Objects.Output, "");
    EXPECT_EQ(Objects.Errors.rfind("rofa-tool: ", 0), 0u) << Objects.Errors;
    EXPECT_NE(Objects.Errors.find("missing.xml"), std::string::npos) << Objects.Errors;

    tool_result Resave = Run("resave " + Path("missing.xml") + " " + Path("never.xbd"));
    EXPECT_EQ(Resave.Status, 1);
    EXPECT_EQ(Resave.Errors.rfind("rofa-tool: ", 0), 0u) << Resave.Errors;
    EXPECT_FALSE(Exists(Path("never.xbd")));
}

TEST_F(RofaToolObjects, AFileWithoutTagsFailsWithStatusOne)
{
    WriteFile(Path("empty.xml"), "");
    tool_result Result = Run("objects " + Path("empty.xml"));
    EXPECT_EQ(Result.Status, 1);
    EXPECT_EQ(Result.Errors, "rofa-tool: Invalid Rofa File (contains no tags)\n");
}

TEST_F(RofaToolObjects, AnObjectThatCannotBeReadFailsWithStatusOneAndWritesNothing)
{
    WriteFile(Path("bad.xml"), "<pego><children><pego x_layout_mode=\"9\"/></children></pego>");
    tool_result Objects = Run("objects " + Path("bad.xml"));
    EXPECT_EQ(Objects.Status, 1);
    EXPECT_EQ(Objects.Output, "");
    EXPECT_NE(Objects.Errors.find("'false' is false"), std::string::npos) << Objects.Errors;
    tool_result Resave = Run("resave " + Path("bad.xml") + " " + Path("bad.xbd"));
    EXPECT_EQ(Resave.Status, 1);
    EXPECT_FALSE(Exists(Path("bad.xbd")));
}

TEST_F(RofaToolObjects, WrongUsageExitsWithTwoAndShowsBothCommands)
{
    WriteFile(Path("page.xml"), PageText);
    tool_result Bare = Run("objects");
    EXPECT_EQ(Bare.Status, 2);
    EXPECT_NE(Bare.Errors.find("rofa-tool objects FILE\n"), std::string::npos) << Bare.Errors;
    EXPECT_NE(Bare.Errors.find("rofa-tool resave IN OUT\n"), std::string::npos) << Bare.Errors;
    EXPECT_EQ(Run("objects " + Path("page.xml") + " extra").Status, 2);
    EXPECT_EQ(Run("resave").Status, 2);
    EXPECT_EQ(Run("resave " + Path("page.xml")).Status, 2);
    EXPECT_EQ(Run("resave " + Path("page.xml") + " " + Path("a.xbd") + " extra").Status, 2);
    EXPECT_FALSE(Exists(Path("a.xbd")));
}

TEST(RofaToolSaving, ASaveDeletesTheMarkedObjectsFirst)
{
    art_object Page;
    Page.SetSize(point2d(0, 0));
    ownership_pointer<art_object> Kept(new art_object);
    Kept->SetName("kept");
    Kept->SetSize(point2d(0, 0));
    ownership_pointer<art_object> Gone(new art_object);
    Gone->SetName("gone");
    Gone->SetSize(point2d(0, 0));
    Page.AddChild(Kept);
    reference_pointer<art_object> Marked = Page.AddChild(Gone);
    Marked->MarkForDeletion();

    zel_string Bytes = SaveObjectTree(Page);

    EXPECT_FALSE(Marked.IsSet());
    EXPECT_EQ(1, Page.GetNumberOfChildren());
    ownership_pointer<xbd_file> Saved = xbd_file::LoadFromData(Bytes, false);
    reference_pointer<xbd_tag> Top(Saved->GetRootTag()->GetChildren()[0].Get());
    reference_pointer<xbd_tag> Children = Top->GetChildTag("children");
    ASSERT_TRUE(Children.IsSet());
    ASSERT_EQ(1, Children->GetChildren().GetNumberOfElements());
    EXPECT_EQ(zel_string("kept"), Children->GetChildren()[0]->GetAttribute("name", ""));
}
