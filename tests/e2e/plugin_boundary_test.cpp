#include <cstdio>
#include <memory>
#include <set>
#include <string>

#include <gtest/gtest.h>

#include "hosts/plugin_library.h"

namespace {

// One loaded library for the whole file: a browser loads a plug-in once and makes many instances.
plugin_library &Library()
{
    static plugin_library *Loaded = new plugin_library(ROFA_LIBRARY_PATH);
    return *Loaded;
}

std::set<std::string> ExportedFunctions(const std::string &Path)
{
    std::set<std::string> Names;
    std::string Command = "nm -D --defined-only " + Path;
    FILE *Pipe = popen(Command.c_str(), "r");
    if (Pipe == nullptr)
        return Names;
    char Line[1024];
    while (fgets(Line, sizeof(Line), Pipe) != nullptr) {
        char Type = 0;
        char Name[900] = {0};
        if (sscanf(Line, "%*s %c %899s", &Type, Name) == 2 && (Type == 'T' || Type == 'W'))
            Names.insert(Name);
    }
    pclose(Pipe);
    return Names;
}

} // namespace

TEST(PluginBoundary, ExportsExactlyTheFourFunctions)
{
    std::set<std::string> Expected = {"RofaAppGetVersionString", "RofaAppCreateNewInstance_v2",
                                      "RofaAppProcessGUIMessage_v2", "RofaAppReleaseAppInstance_v2"};
    std::set<std::string> Exported = ExportedFunctions(ROFA_LIBRARY_PATH);
    for (const char *Boilerplate : {"_init", "_fini"})
        Exported.erase(Boilerplate);
    EXPECT_EQ(Exported, Expected);
}

TEST(PluginBoundary, VersionString)
{
    EXPECT_STREQ(Library().GetVersionString(), "0.5.1");
}

TEST(PluginBoundary, MessageWithNullHandleAnswersZeroWithoutReadingTheMessage)
{
    EXPECT_EQ(Library().ProcessGUIMessage(nullptr, nullptr), 0u);
}

TEST(PluginBoundary, ReleasingANullHandleDoesNothing)
{
    EXPECT_NO_THROW(Library().ReleaseAppInstance(nullptr));
}

TEST(PluginBoundary, CreationCopiesThePagesParameters)
{
    page_host Page;
    Page.AddParameter("rofaID", "42");
    Page.AddParameter("sessionID", "abc");
    plugin_window Window(Library(), 320, 240, &Page, nullptr);
    EXPECT_NE(Window.GetHandle(), nullptr);
    // The count once, then each name and each value once.
    EXPECT_EQ(Page.ParameterCalls, 1 + 2 * 2);
    EXPECT_TRUE(Page.Navigations.empty());
}

TEST(PluginBoundary, InstanceLivesThroughTicksInputAndRelease)
{
    page_host Page;
    plugin_window Window(Library(), 200, 100, &Page, "-width=200 /height=\"100\"");
    for (int I = 0; I < 10; I++)
        EXPECT_EQ(Window.Tick(), 0u);
    EXPECT_EQ(Window.MouseMove(10, 20), 0u);
    EXPECT_EQ(Window.Click(10, 20), 0u);
    EXPECT_EQ(Window.Key('Q'), 0u);
    EXPECT_EQ(Window.Resize(400, 300), 0u);
    EXPECT_EQ(Window.Tick(), 0u);
    Window.Release();
    EXPECT_EQ(Window.GetHandle(), nullptr);
}

TEST(PluginBoundary, WithoutAHostObject)
{
    plugin_window Window(Library(), 64, 64, nullptr, nullptr);
    EXPECT_NE(Window.GetHandle(), nullptr);
    EXPECT_EQ(Window.Tick(), 0u);
}

TEST(PluginBoundary, ZeroSizedWindowGivesAValidHandle)
{
    plugin_window Window(Library(), 0, 0, nullptr, nullptr);
    EXPECT_NE(Window.GetHandle(), nullptr);
    EXPECT_EQ(Window.Tick(), 0u);
    EXPECT_EQ(Window.Resize(640, 480), 0u);
    EXPECT_EQ(Window.Tick(), 0u);
}

TEST(PluginBoundary, SeveralInstancesSideBySide)
{
    page_host FirstPage;
    FirstPage.AddParameter("rofaID", "1");
    page_host SecondPage;
    SecondPage.AddParameter("rofaID", "2");
    auto First = std::make_unique<plugin_window>(Library(), 100, 100, &FirstPage, nullptr);
    auto Second = std::make_unique<plugin_window>(Library(), 200, 150, &SecondPage, "-rofaID=3");
    auto Third = std::make_unique<plugin_window>(Library(), 50, 50, nullptr, nullptr);
    EXPECT_NE(First->GetHandle(), Second->GetHandle());
    EXPECT_NE(Second->GetHandle(), Third->GetHandle());
    for (int I = 0; I < 5; I++) {
        First->Tick();
        Second->Tick();
        Third->Tick();
    }
    Second.reset();
    First->Click(5, 5);
    Third->Key('Z');
    First->Tick();
    Third->Tick();
    First.reset();
    Third.reset();
}

TEST(PluginBoundary, ANativeWindowThatNoBindingServesFailsCreation)
{
    int NotAWindow = 0;
    bool Threw = false;
    try {
        Library().CreateNewInstance(10, 10, &NotAWindow, nullptr, nullptr);
    } catch (...) {
        Threw = true;
    }
    EXPECT_TRUE(Threw);
}
