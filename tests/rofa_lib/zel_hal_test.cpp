#include <gtest/gtest.h>

#include "rofa_lib/sal_functions.h"
#include "rofa_lib/zel_hal.h"
#include "tests/rofa_lib/counting_app.h"
#include "tests/test_support.h"

namespace {

// The smallest window layer: the abstract operations do nothing, everything else is the layer's own.
class bare_gal : public graphical_system_abstraction_layer
{
public:
    uint32_t ProcessGUIMessage(rofa_gui_message *) override { return 0; }
    void SetWindowTitle(zel_string) override {}
    void ReservedStringOperation(zel_string, zel_string) override {}
};

class sized_gal : public bare_gal
{
public:
    int_point2d GetScreenSize() override { return int_point2d(640, 480); }
    int GetBitsPerPixel() override { return 16; }
};

// Counts its own deaths, to see when an owner lets it go.
class watched_object : public base_object
{
public:
    explicit watched_object(int &Deaths) : Deaths(Deaths) {}
    ~watched_object() override { Deaths++; }

private:
    int &Deaths;
};

} // namespace

TEST(EnvironmentVars, AbsentKeyReadsAsEmptyString)
{
    bare_gal Layer;
    EXPECT_FALSE(Layer.EnvironmentVarExists("rofaID"));
    EXPECT_EQ(zel_string(""), Layer.GetEnvironmentVar("rofaID"));
}

TEST(EnvironmentVars, KeysAreCaseInsensitiveAndValuesKeepTheirCase)
{
    bare_gal Layer;
    Layer.SetEnvironmentVar("WIDTH", "Wide640");
    EXPECT_TRUE(Layer.EnvironmentVarExists("width"));
    EXPECT_EQ(zel_string("Wide640"), Layer.GetEnvironmentVar("width"));
    EXPECT_EQ(zel_string("Wide640"), Layer.GetEnvironmentVar("Width"));
}

TEST(EnvironmentVars, SetOverwritesUnderAnyCase)
{
    bare_gal Layer;
    Layer.SetEnvironmentVar("rofaID", "1");
    Layer.SetEnvironmentVar("ROFAID", "2");
    EXPECT_EQ(zel_string("2"), Layer.GetEnvironmentVar("rofaid"));
}

TEST(EnvironmentVars, TakeReturnsTheValueAndRemovesTheKey)
{
    bare_gal Layer;
    Layer.SetEnvironmentVar("DropFileNames", zel_string("a\0b\0", 4));
    EXPECT_EQ(zel_string("a\0b\0", 4), Layer.TakeEnvironmentVar("dropfilenames"));
    EXPECT_FALSE(Layer.EnvironmentVarExists("DropFileNames"));
}

TEST(EnvironmentVars, TakingAnAbsentKeyFailsTheAssertion)
{
    bare_gal Layer;
    EXPECT_NE(std::string::npos, ZEL_ERROR_MESSAGE(Layer.TakeEnvironmentVar("missing"))
                                     .find("'EnvironmentVars.KeyExists(Key)' is false"));
}

TEST(ParseCommandLine, DashAndSlashTokensSetKeysAndQuotedValuesLoseTheirQuotes)
{
    bare_gal Layer;
    Layer.ParseCommandLine("-width=640 /height=\"480\"");
    EXPECT_EQ(zel_string("640"), Layer.GetEnvironmentVar("width"));
    EXPECT_EQ(zel_string("480"), Layer.GetEnvironmentVar("height"));
}

TEST(ParseCommandLine, TheCommandLineVariableAccumulatesEveryLine)
{
    bare_gal Layer;
    Layer.ParseCommandLine("-a=1");
    EXPECT_EQ(zel_string(" -a=1"), Layer.GetEnvironmentVar("CommandLine"));
    Layer.ParseCommandLine("/b=2  ");
    EXPECT_EQ(zel_string(" -a=1 /b=2  "), Layer.GetEnvironmentVar("commandline"));
}

TEST(ParseCommandLine, WhiteSpaceInsideQuotesBelongsToTheToken)
{
    bare_gal Layer;
    Layer.ParseCommandLine("  -title=\"Tessaly  Editor\"\t-x=1 ");
    EXPECT_EQ(zel_string("Tessaly  Editor"), Layer.GetEnvironmentVar("title"));
    EXPECT_EQ(zel_string("1"), Layer.GetEnvironmentVar("x"));
}

TEST(ParseCommandLine, SeveralQuotedStretchesMakeOneToken)
{
    bare_gal Layer;
    Layer.ParseCommandLine("-path=\"a b\"/\"c d\" -next=2");
    EXPECT_EQ(zel_string("a b\"/\"c d"), Layer.GetEnvironmentVar("path"));
    EXPECT_EQ(zel_string("2"), Layer.GetEnvironmentVar("next"));
}

TEST(ParseCommandLine, AnEscapedQuoteDoesNotCloseTheStretch)
{
    bare_gal Layer;
    Layer.ParseCommandLine("-q=\"say \\\"hi\\\" now\" -r=1");
    EXPECT_EQ(zel_string("say \\\"hi\\\" now"), Layer.GetEnvironmentVar("q"));
    EXPECT_EQ(zel_string("1"), Layer.GetEnvironmentVar("r"));
}

TEST(ParseCommandLine, ATokenInQuotesLosesThemBeforeItIsSplit)
{
    bare_gal Layer;
    Layer.ParseCommandLine("\"-name=a b\"");
    EXPECT_EQ(zel_string("a b"), Layer.GetEnvironmentVar("name"));
}

TEST(ParseCommandLine, ATokenWithoutEqualsSignGivesAnEmptyValue)
{
    bare_gal Layer;
    Layer.ParseCommandLine("-Verbose plain");
    EXPECT_TRUE(Layer.EnvironmentVarExists("verbose"));
    EXPECT_EQ(zel_string(""), Layer.GetEnvironmentVar("verbose"));
    EXPECT_TRUE(Layer.EnvironmentVarExists("plain"));
}

TEST(ParseCommandLine, OnlyTheFirstEqualsSignCutsAndOnlyOnePrefixCharacterGoes)
{
    bare_gal Layer;
    Layer.ParseCommandLine("--url=a=b");
    EXPECT_EQ(zel_string("a=b"), Layer.GetEnvironmentVar("-url"));
}

TEST(ParseCommandLine, EmptyQuotedTokensAreDropped)
{
    bare_gal Layer;
    Layer.ParseCommandLine("\"\" -k=v");
    EXPECT_FALSE(Layer.EnvironmentVarExists(""));
    EXPECT_EQ(zel_string("v"), Layer.GetEnvironmentVar("k"));
}

TEST(ParseCommandLine, AnUnclosedQuoteIsAnError)
{
    bare_gal Layer;
    std::string Message = ZEL_ERROR_MESSAGE(Layer.ParseCommandLine("-a=\"open"));
    EXPECT_EQ(0u, Message.find("Mismatched quotation starting with: ")) << Message;
}

TEST(ParseCommandLine, OverridesWhatWasSetBefore)
{
    bare_gal Layer;
    Layer.SetEnvironmentVar("width", "100");
    Layer.ParseCommandLine("-WIDTH=200");
    EXPECT_EQ(zel_string("200"), Layer.GetEnvironmentVar("width"));
}

TEST(GlobalObjects, AnOwnerIsAlsoAReferenceAndComesBackOnRemoval)
{
    int Deaths = 0;
    bare_gal Layer;
    watched_object *Object = new watched_object(Deaths);
    Layer.SetGlobalOwner("rofa_app_instance", ownership_pointer<base_object>(Object));
    EXPECT_TRUE(Layer.GlobalReferenceIsSet("rofa_app_instance"));
    EXPECT_EQ(Object, Layer.GetGlobalReference("rofa_app_instance").Get());

    ownership_pointer<base_object> Back = Layer.RemoveGlobalOwner("rofa_app_instance");
    EXPECT_EQ(Object, Back.Get());
    EXPECT_EQ(0, Deaths);
    EXPECT_FALSE(Layer.RemoveGlobalOwner("rofa_app_instance").IsSet());

    Back.Reset();
    EXPECT_EQ(1, Deaths);
    EXPECT_FALSE(Layer.GlobalReferenceIsSet("rofa_app_instance"));
}

TEST(GlobalObjects, ASecondOwnerUnderTheSameKeyFailsTheAssertion)
{
    int Deaths = 0;
    bare_gal Layer;
    Layer.SetGlobalOwner("thing", ownership_pointer<base_object>(new watched_object(Deaths)));
    std::string Message =
        ZEL_ERROR_MESSAGE(Layer.SetGlobalOwner("thing", ownership_pointer<base_object>(new watched_object(Deaths))));
    EXPECT_NE(std::string::npos, Message.find("'!GlobalOwners.KeyExists(Key)' is false")) << Message;
    // The refused object is not kept anywhere.
    EXPECT_EQ(1, Deaths);
}

TEST(GlobalObjects, OwnedObjectsDieWithTheLayer)
{
    int Deaths = 0;
    {
        bare_gal Layer;
        Layer.SetGlobalOwner("a", ownership_pointer<base_object>(new watched_object(Deaths)));
        Layer.SetGlobalOwner("b", ownership_pointer<base_object>(new watched_object(Deaths)));
        EXPECT_EQ(0, Deaths);
    }
    EXPECT_EQ(2, Deaths);
}

TEST(GlobalObjects, AReferenceGoesUnsetWhenItsObjectDies)
{
    int Deaths = 0;
    bare_gal Layer;
    watched_object *Object = new watched_object(Deaths);
    Layer.SetGlobalReference("viewer", reference_pointer<base_object>(Object));
    EXPECT_TRUE(Layer.GlobalReferenceIsSet("viewer"));
    delete Object;
    EXPECT_FALSE(Layer.GlobalReferenceIsSet("viewer"));
    EXPECT_FALSE(Layer.GetGlobalReference("viewer").IsSet());
}

TEST(GlobalObjects, AbsentKeysGiveUnsetReferences)
{
    bare_gal Layer;
    EXPECT_FALSE(Layer.GlobalReferenceIsSet("nothing"));
    EXPECT_FALSE(Layer.GetGlobalReference("nothing").IsSet());
}

TEST(GlobalObjects, SetGlobalReferenceOverwrites)
{
    int Deaths = 0;
    bare_gal Layer;
    watched_object First(Deaths), Second(Deaths);
    Layer.SetGlobalReference("x", reference_pointer<base_object>(&First));
    Layer.SetGlobalReference("x", reference_pointer<base_object>(&Second));
    EXPECT_EQ(&Second, Layer.GetGlobalReference("x").Get());
}

TEST(GraphicalLayer, StartsWithFocusInputAndASmallPositiveFrame)
{
    bare_gal Layer;
    EXPECT_TRUE(Layer.GetHasFocus());
    EXPECT_TRUE(Layer.GetKeyboard().IsSet());
    EXPECT_TRUE(Layer.GetMouse().IsSet());
    EXPECT_EQ(-0.001, Layer.GetLastTime());
    EXPECT_EQ(0.0, Layer.GetCurrentTime());
    EXPECT_EQ(0.001, Layer.GetFrameTime());
}

TEST(GraphicalLayer, DefaultsOfTheOperations)
{
    bare_gal Layer;
    EXPECT_FALSE(Layer.NavigateBrowser("http://example.invalid/", 5));
    EXPECT_TRUE(Layer.ReservedTrueQuery());
    EXPECT_FALSE(Layer.ReservedFalseQuery());
    EXPECT_FALSE(Layer.ReservedFalseQuery2());
    EXPECT_FALSE(Layer.ReservedFalseQuery3());
    EXPECT_EQ(zel_string(""), Layer.ShowFileDialog(true, "Open", "", "rofa", "Rofa|*.rofa||", true, false, true));
    EXPECT_EQ(32, Layer.GetBitsPerPixel());
    EXPECT_EQ(32, Layer.GetColorDepth());
    EXPECT_EQ(int_point2d(0, 0), Layer.GetWindowSize());
}

TEST(GraphicalLayer, SizesAndDepthGoThroughTheScreenSizeAndBitsPerPixel)
{
    sized_gal Layer;
    EXPECT_EQ(int_point2d(640, 480), Layer.GetWindowSize());
    EXPECT_EQ(int_point2d(640, 480), Layer.GetDisplaySize());
    EXPECT_EQ(16, Layer.GetColorDepth());
}

TEST(RunTick, MovesTheFrameClockBeforeTheApplicationRuns)
{
    bare_gal Layer;
    counting_app App(&Layer);
    Layer.SetRofaApp(reference_pointer<rofa_app_interface>(&App));

    double Before = SALGetTime();
    Layer.RunTick();
    double After = SALGetTime();
    ASSERT_EQ(1, App.Runs);
    EXPECT_EQ(0.0, App.SeenLastTimes[0]);
    EXPECT_LE(Before, App.SeenCurrentTimes[0]);
    EXPECT_GE(After, App.SeenCurrentTimes[0]);
    EXPECT_EQ(App.SeenCurrentTimes[0] - 0.0, App.SeenFrameTimes[0]);

    Layer.RunTick();
    ASSERT_EQ(2, App.Runs);
    EXPECT_EQ(App.SeenCurrentTimes[0], App.SeenLastTimes[1]);
    EXPECT_LE(App.SeenCurrentTimes[0], App.SeenCurrentTimes[1]);
    EXPECT_EQ(App.SeenCurrentTimes[1] - App.SeenCurrentTimes[0], App.SeenFrameTimes[1]);
    EXPECT_EQ(Layer.GetCurrentTime(), App.SeenCurrentTimes[1]);
    EXPECT_EQ(Layer.GetFrameTime(), App.SeenFrameTimes[1]);
}

TEST(RunTick, WithoutAnApplicationFailsTheAssertion)
{
    bare_gal Layer;
    EXPECT_NE(std::string::npos, ZEL_ERROR_MESSAGE(Layer.RunTick()).find("'RofaApp.IsSet()' is false"));
}

TEST(RunTick, AnApplicationThatDiedFailsTheAssertion)
{
    bare_gal Layer;
    counting_app *App = new counting_app;
    Layer.SetRofaApp(reference_pointer<rofa_app_interface>(App));
    Layer.RunTick();
    EXPECT_EQ(1, App->Runs);
    delete App;
    EXPECT_NE(std::string::npos, ZEL_ERROR_MESSAGE(Layer.RunTick()).find("'RofaApp.IsSet()' is false"));
}
