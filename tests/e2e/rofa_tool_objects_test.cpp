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

// A document of 400 by 300 with objects in every stack mode and most layout modes, a group that fits
// its children, a tag that no class knows, and three levels of nesting. Its stencil child stands in for
// the rectangle shape that a document without one gets.
const char *const PageText =
    "<art_file art_engine_version=\"0.0.2\" w_val=\"400\" h_val=\"300\">\n"
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
    "</art_file>\n";

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
    "art_file \"\" normal loc=(0,0) size=(400,300) handle=(0.5,0.5) angle=0 opacity=1 layout=(0,0)\n"
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

const char *const KeptText = "<art_file art_engine_version=\"0.0.1\" w_val=\"100\" h_val=\"50\"><children>"
                             "<pego name=\"a\" opacity=\"0.25\" handle=\"(0,1)\" lock_mode=\"2\"/>"
                             "<art_sparkle rate=\"3\" blob=\"&#0;&#255;\" stack_mode=\"post\"><star points=\"5\"/>"
                             "</art_sparkle>"
                             "<art_solid_fill color=\"ff800040\"/>"
                             "<pego name=\"b\" stack_mode=\"stencil\" angle=\"0.5\" x_layout_mode=\"2\" x_val=\"0.25\""
                             " w_val=\"10\"><children><art_stencil_shape stack_mode=\"+stencil\" x_layout_mode=\"7\""
                             " x_val=\"0.5\" w_val=\"1\" y_layout_mode=\"7\" y_val=\"0.5\" h_val=\"1\"><art_ellipse/>"
                             "</art_stencil_shape></children></pego>"
                             "</children></art_file>";

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
              "<art_file w_val=\"120\" h_val=\"80\"><children>"
              "<art_stencil_shape name=\"outline\" stack_mode=\"+stencil\" x_layout_mode=\"7\" x_val=\"0.5\""
              " w_val=\"1\" y_layout_mode=\"7\" y_val=\"0.5\" h_val=\"1\"><art_rectangle rounded=\"(4,4)\"/>"
              "</art_stencil_shape>"
              "<pego name=\"old\" handle=\"(0,0)\" x_val=\"10\" y_val=\"20\" w_val=\"30\" h_val=\"40\">"
              "<shape><art_ellipse/></shape></pego>"
              "</children></art_file>");
    tool_result Result = Run("objects " + Path("shapes.xml"));
    EXPECT_EQ(Result.Status, 0) << Result.Errors;
    EXPECT_EQ(Result.Output,
              "art_file \"\" normal loc=(0,0) size=(120,80) handle=(0.5,0.5) angle=0 opacity=1 layout=(0,0)\n"
              "  art_stencil_shape \"outline\" +stencil loc=(60,40) size=(120,80) handle=(0.5,0.5) angle=0 opacity=1"
              " layout=(7,7)\n"
              "  pego \"old\" normal loc=(10,20) size=(30,40) handle=(0,0) angle=0 opacity=1 layout=(0,0)\n"
              "    art_stencil_shape \"\" +stencil loc=(15,20) size=(30,40) handle=(0.5,0.5) angle=0 opacity=1"
              " layout=(7,7)\n");
}

TEST_F(RofaToolObjects, ADocumentWithoutAStencilChildIsListedWithItsRectangleShape)
{
    // The shape follows the canvas in mode 7: centred at (32, 24), as large as the canvas.
    WriteFile(Path("plain.xml"), "<art_file w_val=\"64\" h_val=\"48\"><children><pego name=\"a\" handle=\"(0,0)\""
                                 " x_val=\"3\" y_val=\"4\" w_val=\"5\" h_val=\"6\"/></children></art_file>");
    tool_result Result = Run("objects " + Path("plain.xml"));
    EXPECT_EQ(Result.Status, 0) << Result.Errors;
    EXPECT_EQ(Result.Output,
              "art_file \"\" normal loc=(0,0) size=(64,48) handle=(0.5,0.5) angle=0 opacity=1 layout=(0,0)\n"
              "  pego \"a\" normal loc=(3,4) size=(5,6) handle=(0,0) angle=0 opacity=1 layout=(0,0)\n"
              "  art_stencil_shape \"\" +stencil loc=(32,24) size=(64,48) handle=(0.5,0.5) angle=0 opacity=1"
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

TEST_F(RofaToolObjects, AFileOfTwoTagsIsNoDocument)
{
    WriteFile(Path("two.xml"), "<art_file w_val=\"20\" h_val=\"20\"/><art_file/>");
    tool_result Result = Run("objects " + Path("two.xml"));
    EXPECT_EQ(Result.Status, 1);
    EXPECT_EQ(Result.Output, "");
    EXPECT_EQ(Result.Errors, "rofa-tool: Invalid Rofa File (contains too many tags)\n");
}

TEST_F(RofaToolObjects, ATreeWhoseTagIsNotArtFileIsNoDocument)
{
    WriteFile(Path("pego.xml"), "<pego name=\"first\" w_val=\"8\" h_val=\"6\"/>");
    tool_result Objects = Run("objects " + Path("pego.xml"));
    EXPECT_EQ(Objects.Status, 1);
    EXPECT_EQ(Objects.Output, "");
    EXPECT_EQ(Objects.Errors, "rofa-tool: Invalid Rofa File (root tag is not valid: pego)\n");
    tool_result Resave = Run("resave " + Path("pego.xml") + " " + Path("pego.xbd"));
    EXPECT_EQ(Resave.Status, 1);
    EXPECT_EQ(Resave.Errors, "rofa-tool: Invalid Rofa File (root tag is not valid: pego)\n");
    EXPECT_FALSE(Exists(Path("pego.xbd")));
}

TEST_F(RofaToolObjects, AServersErrorReplyFailsWithItsMessage)
{
    WriteFile(Path("reply.xml"), "<get_rofa_error show_user=\"That Rofa was deleted.\"/>");
    tool_result Result = Run("objects " + Path("reply.xml"));
    EXPECT_EQ(Result.Status, 1);
    EXPECT_EQ(Result.Errors, "rofa-tool: That Rofa was deleted.\n");
    WriteFile(Path("bare.xml"), "<get_rofa_error/>");
    EXPECT_EQ(Run("objects " + Path("bare.xml")).Errors, "rofa-tool: Server didn't specify an error message.\n");
}

TEST_F(RofaToolObjects, ADocumentOfANewerMajorVersionIsRefused)
{
    WriteFile(Path("new.xml"), "<art_file art_engine_version=\"1.0.0\" w_val=\"20\" h_val=\"20\"/>");
    tool_result Result = Run("objects " + Path("new.xml"));
    EXPECT_EQ(Result.Status, 1);
    EXPECT_EQ(Result.Output, "");
    EXPECT_EQ(Result.Errors, "rofa-tool: Incompatible file version (1.0.0)\n");
    tool_result Resave = Run("resave " + Path("new.xml") + " " + Path("new.xbd"));
    EXPECT_EQ(Resave.Status, 1);
    EXPECT_FALSE(Exists(Path("new.xbd")));
}

TEST_F(RofaToolObjects, ADocumentOfANewerMinorVersionLoadsWithAWarning)
{
    WriteFile(Path("minor.xml"), "<art_file art_engine_version=\"0.3.1\" w_val=\"20\" h_val=\"20\">"
                                 "<children><pego stack_mode=\"+stencil\"/></children></art_file>");
    tool_result Result = Run("objects " + Path("minor.xml"));
    EXPECT_EQ(Result.Status, 0);
    EXPECT_EQ(Result.Output,
              "art_file \"\" normal loc=(0,0) size=(20,20) handle=(0.5,0.5) angle=0 opacity=1 layout=(0,0)\n"
              "  pego \"\" +stencil loc=(0,0) size=(0,0) handle=(0.5,0.5) angle=0 opacity=1 layout=(0,0)\n");
    EXPECT_EQ(Result.Errors, "rofa-tool: Rofa Load Inconsistency Warning\n"
                             "The Rofa loaded, but it was created with a newer version of\n"
                             "the editor. There may be some inconsistancies because this\n"
                             "editor doesn't support the newer features.\n\n"
                             "Rofa Format Version: 0.3.1\n"
                             "Latest Rofa-Format supported: 0.0.2\n");
}

TEST_F(RofaToolObjects, ResaveKeepsEveryObjectAttributeAndTagThatNobodyKnows)
{
    WriteFile(Path("kept.xml"), KeptText);
    tool_result Resave = Run("resave " + Path("kept.xml") + " " + Path("kept.xbd"));
    ASSERT_EQ(Resave.Status, 0) << Resave.Errors;
    EXPECT_EQ(Resave.Output, "");
    EXPECT_EQ(Resave.Errors, "");
    EXPECT_EQ(ReadFile(Path("kept.xbd")).substr(0, 6), "ZELXML");
    tool_result Dump = Run("dump " + Path("kept.xbd"));
    ASSERT_EQ(Dump.Status, 0) << Dump.Errors;
    // The version becomes the one this engine writes, the editor's that of the library; reading lock
    // mode 2 enables dropping in.
    EXPECT_EQ(Dump.Output,
              "<art_file art_engine_version=\"0.0.2\" w_val=\"100\" h_val=\"50\" rofa_editor_version=\"0.5.1\">\n"
              "  <children>\n"
              "    <pego drop_in_enabled=\"\" name=\"a\" handle=\"(0,1)\" opacity=\"0.25\" lock_mode=\"2\"/>\n"
              "    <art_sparkle rate=\"3\" blob=\"&#0;&#255;\" stack_mode=\"post\">\n"
              "      <star points=\"5\"/>\n"
              "    </art_sparkle>\n"
              "    <art_solid_fill color=\"ff800040\"/>\n"
              "    <pego name=\"b\" angle=\"0.5\" stack_mode=\"stencil\" x_layout_mode=\"2\" x_val=\"0.25\""
              " w_val=\"10\">\n"
              "      <children>\n"
              "        <art_stencil_shape stack_mode=\"+stencil\" x_layout_mode=\"7\" x_val=\"0.5\" w_val=\"1\""
              " y_layout_mode=\"7\" y_val=\"0.5\" h_val=\"1\">\n"
              "          <art_ellipse/>\n"
              "        </art_stencil_shape>\n"
              "      </children>\n"
              "    </pego>\n"
              "  </children>\n"
              "</art_file>\n");
}

TEST_F(RofaToolObjects, ResaveWritesWhatTheObjectsHoldNotWhatTheFileSaid)
{
    WriteFile(Path("defaults.xml"), "<art_file w_val=\"30.0\" h_val=\"20\" name=\"ignored\"><children>"
                                    "<pego name=\"p\" opacity=\"1.0\" handle=\"(0.5,0.5)\" lock_mode=\"9\""
                                    " angle=\"0\"/>"
                                    "</children></art_file>");
    ASSERT_EQ(Run("resave " + Path("defaults.xml") + " " + Path("defaults.xbd")).Status, 0);
    tool_result Dump = Run("dump " + Path("defaults.xbd"));
    EXPECT_EQ(Dump.Output,
              "<art_file art_engine_version=\"0.0.2\" w_val=\"30\" h_val=\"20\" rofa_editor_version=\"0.5.1\">\n"
              "  <children>\n"
              "    <pego name=\"p\" lock_mode=\"4\"/>\n"
              "    <art_stencil_shape stack_mode=\"+stencil\" x_layout_mode=\"7\" x_val=\"0.5\" w_val=\"1\""
              " y_layout_mode=\"7\" y_val=\"0.5\" h_val=\"1\">\n"
              "      <art_rectangle/>\n"
              "    </art_stencil_shape>\n"
              "  </children>\n"
              "</art_file>\n");
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
    WriteFile(Path("bad.xml"), "<art_file><children><pego x_layout_mode=\"9\"/></children></art_file>");
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

TEST(RofaToolSaving, ASaveDeletesTheMarkedObjectsFirstAndNamesTheEditorsVersion)
{
    art_file Document;
    ownership_pointer<art_object> Kept(new art_object);
    Kept->SetName("kept");
    ownership_pointer<art_object> Gone(new art_object);
    Gone->SetName("gone");
    Document.AddChild(Kept);
    reference_pointer<art_object> Marked = Document.AddChild(Gone);
    Marked->MarkForDeletion();

    zel_string Bytes = SaveDocument(Document);

    EXPECT_FALSE(Marked.IsSet());
    EXPECT_EQ(2, Document.GetNumberOfChildren());
    ownership_pointer<xbd_file> Saved = xbd_file::LoadFromData(Bytes, false);
    ASSERT_EQ(1, Saved->GetRootTag()->GetChildren().GetNumberOfElements());
    reference_pointer<xbd_tag> Top(Saved->GetRootTag()->GetChildren()[0].Get());
    EXPECT_EQ(zel_string("art_file"), Top->GetName());
    EXPECT_EQ(zel_string("0.5.1"), Top->GetAttribute("rofa_editor_version", ""));
    reference_pointer<xbd_tag> Children = Top->GetChildTag("children");
    ASSERT_TRUE(Children.IsSet());
    ASSERT_EQ(2, Children->GetChildren().GetNumberOfElements());
    EXPECT_EQ(zel_string("art_stencil_shape"), Children->GetChildren()[0]->GetName());
    EXPECT_EQ(zel_string("kept"), Children->GetChildren()[1]->GetAttribute("name", ""));
}
