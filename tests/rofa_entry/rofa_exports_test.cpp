#include <string>
#include <utility>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "rofa_editor/app/rofa_app.h"
#include "rofa_headless_sal/rofa_headless_gal.h"
#include "rofa_lib/rofa_plugin_api.h"
#include "rofa_linux_sal/win32_messages.h"
#include "tests/test_support.h"

namespace {

// A page with parameters, seen from the library's side of the boundary.
struct test_page : rofa_host_interface
{
    std::vector<std::pair<std::string, std::string>> Parameters;
    int Navigations = 0;

    test_page();
};

uint8_t TestNavigate(rofa_host_interface *Host, const char *, int32_t)
{
    static_cast<test_page *>(Host)->Navigations++;
    return 1;
}
int32_t TestCount(rofa_host_interface *Host)
{
    return static_cast<int32_t>(static_cast<test_page *>(Host)->Parameters.size());
}
const char *TestName(rofa_host_interface *Host, int32_t Index)
{
    return static_cast<test_page *>(Host)->Parameters.at(static_cast<size_t>(Index)).first.c_str();
}
const char *TestValue(rofa_host_interface *Host, int32_t Index)
{
    return static_cast<test_page *>(Host)->Parameters.at(static_cast<size_t>(Index)).second.c_str();
}
const rofa_host_operations TestOperations = {TestNavigate, TestCount, TestName, TestValue};

test_page::test_page()
{
    Operations = &TestOperations;
}

rofa_headless_gal *Layer(RofaAppHandle Handle)
{
    return dynamic_cast<rofa_headless_gal *>(static_cast<graphical_system_abstraction_layer *>(Handle));
}

reference_pointer<rofa_app_instance> App(RofaAppHandle Handle)
{
    return Layer(Handle)->GetGlobalReference("rofa_app_instance").DynamicCast<rofa_app_instance>();
}

uint32_t Send(RofaAppHandle Handle, uint32_t Message, uint32_t WParam = 0, int32_t LParam = 0)
{
    rofa_gui_message Record = {nullptr, Message, WParam, LParam, 1};
    return RofaAppProcessGUIMessage_v2(Handle, &Record);
}

} // namespace

TEST(RofaExports, VersionString)
{
    EXPECT_STREQ(RofaAppGetVersionString(), "0.5.1");
}

TEST(RofaExports, HandleIsTheHeadlessLayerForANullWindow)
{
    RofaAppHandle Handle = RofaAppCreateNewInstance_v2(320, 200, nullptr, nullptr, nullptr);
    ASSERT_NE(Layer(Handle), nullptr);
    EXPECT_EQ(Layer(Handle)->GetWindowSize(), int_point2d(320, 200));
    RofaAppReleaseAppInstance_v2(Handle);
}

TEST(RofaExports, FirstTickRunsBeforeCreationReturnsAndTimerTicksDriveTheApp)
{
    RofaAppHandle Handle = RofaAppCreateNewInstance_v2(64, 48, nullptr, nullptr, nullptr);
    reference_pointer<rofa_app_instance> Instance = App(Handle);
    ASSERT_TRUE(Instance.IsSet());
    // The first tick, before any timer message, built the user interface for the window's size.
    EXPECT_TRUE(Instance->IsGUIInitialized());
    ASSERT_TRUE(Instance->GetTopObject().IsSet());
    EXPECT_EQ(point2d(64, 48), Instance->GetTopObject()->GetSize());
    // A timer message runs a tick: a redraw asked for in between is painted by it and no earlier.
    Instance->GetTopObject()->RequestRedraw();
    EXPECT_TRUE(Instance->GetTopObject()->IsDirty());
    EXPECT_EQ(Send(Handle, WM_TIMER), 0u);
    EXPECT_FALSE(Instance->GetTopObject()->IsDirty());
    RofaAppReleaseAppInstance_v2(Handle);
    EXPECT_FALSE(Instance.IsSet());
}

TEST(RofaExports, ParametersReachTheEnvironmentAndSizeTheWindow)
{
    test_page Page;
    Page.Parameters = {{"rofaID", "abc"}, {"width", "640"}, {"height", "480"}};
    RofaAppHandle Handle = RofaAppCreateNewInstance_v2(100, 100, nullptr, &Page, nullptr);
    EXPECT_EQ(Layer(Handle)->GetEnvironmentVar("rofaid"), zel_string("abc"));
    EXPECT_EQ(Layer(Handle)->GetWindowSize(), int_point2d(640, 480));
    EXPECT_EQ(Page.Navigations, 0);
    RofaAppReleaseAppInstance_v2(Handle);
}

TEST(RofaExports, CommandLineHasTheLastWordButTheWindowSizeCameFromTheParameters)
{
    test_page Page;
    Page.Parameters = {{"width", "640"}, {"height", "480"}};
    RofaAppHandle Handle = RofaAppCreateNewInstance_v2(100, 100, nullptr, &Page, "-width=800 -rofaID=7");
    EXPECT_EQ(Layer(Handle)->GetEnvironmentVar("width"), zel_string("800"));
    EXPECT_EQ(Layer(Handle)->GetEnvironmentVar("rofaid"), zel_string("7"));
    EXPECT_EQ(Layer(Handle)->GetWindowSize(), int_point2d(640, 480));
    RofaAppReleaseAppInstance_v2(Handle);
}

TEST(RofaExports, ZeroSizedWindowGivesAValidHandleThatTakesASizeLater)
{
    RofaAppHandle Handle = RofaAppCreateNewInstance_v2(0, 0, nullptr, nullptr, nullptr);
    ASSERT_NE(Handle, nullptr);
    EXPECT_EQ(Layer(Handle)->GetWindowSize(), int_point2d(0, 0));
    EXPECT_FALSE(App(Handle)->IsGUIInitialized());
    Send(Handle, WM_SIZE, 0, static_cast<int32_t>(MakeLong(300, 200)));
    EXPECT_EQ(Layer(Handle)->GetWindowSize(), int_point2d(300, 200));
    // The size message runs a tick, which finds the window with a size at last.
    ASSERT_TRUE(App(Handle)->IsGUIInitialized());
    EXPECT_EQ(point2d(300, 200), App(Handle)->GetTopObject()->GetSize());
    RofaAppReleaseAppInstance_v2(Handle);
}

TEST(RofaExports, NullHandlesAreIgnored)
{
    EXPECT_EQ(RofaAppProcessGUIMessage_v2(nullptr, nullptr), 0u);
    EXPECT_NO_THROW(RofaAppReleaseAppInstance_v2(nullptr));
}

TEST(RofaExports, InstancesSideBySideKeepTheirOwnState)
{
    RofaAppHandle First = RofaAppCreateNewInstance_v2(10, 10, nullptr, nullptr, "-rofaID=1");
    RofaAppHandle Second = RofaAppCreateNewInstance_v2(20, 20, nullptr, nullptr, "-rofaID=2");
    App(First)->GetTopObject()->RequestRedraw();
    App(Second)->GetTopObject()->RequestRedraw();
    Send(First, WM_TIMER);
    EXPECT_FALSE(App(First)->GetTopObject()->IsDirty());
    EXPECT_TRUE(App(Second)->GetTopObject()->IsDirty());
    EXPECT_EQ(App(First)->GetRofaID(), zel_string("1"));
    EXPECT_EQ(App(Second)->GetRofaID(), zel_string("2"));
    RofaAppReleaseAppInstance_v2(First);
    Send(Second, WM_TIMER);
    EXPECT_FALSE(App(Second)->GetTopObject()->IsDirty());
    RofaAppReleaseAppInstance_v2(Second);
}

TEST(RofaExports, ReleaseOfALayerWithoutItsInstanceFailsTheAssertion)
{
    RofaAppHandle Handle = RofaAppCreateNewInstance_v2(10, 10, nullptr, nullptr, nullptr);
    ownership_pointer<base_object> Taken = Layer(Handle)->RemoveGlobalOwner("rofa_app_instance");
    Taken.Reset();
    std::string Message = ZEL_ERROR_MESSAGE(RofaAppReleaseAppInstance_v2(Handle));
    EXPECT_THAT(Message,
                testing::HasSubstr("): 'GAL->GlobalReferenceIsSet(zel_string(RofaAppInstanceRefName))' is false\n"
                                   " File: 'rofa_entry/rofa_exports.cpp'"));
}

TEST(RofaExports, ReleaseOfAnInstanceThatIsNamedButNoLongerOwnedFailsTheAssertion)
{
    RofaAppHandle Handle = RofaAppCreateNewInstance_v2(10, 10, nullptr, nullptr, nullptr);
    // Taken out of the owners but alive, so its reference is still set.
    ownership_pointer<base_object> Taken = Layer(Handle)->RemoveGlobalOwner("rofa_app_instance");
    ASSERT_TRUE(Layer(Handle)->GlobalReferenceIsSet("rofa_app_instance"));
    std::string Message = ZEL_ERROR_MESSAGE(RofaAppReleaseAppInstance_v2(Handle));
    EXPECT_THAT(Message, testing::HasSubstr("): 'AppInstance.IsSet()' is false\n"
                                            " File: 'rofa_entry/rofa_exports.cpp'"));
    Taken.Reset();
}

TEST(RofaExports, ANativeWindowWithoutABindingFailsWithWords)
{
    int NotAWindow = 0;
    std::string Message = ZEL_ERROR_MESSAGE(RofaAppCreateNewInstance_v2(10, 10, &NotAWindow, nullptr, nullptr));
    EXPECT_EQ(Message, "This build of the library has no binding for native windows; pass a null window to run "
                       "without a display.");
}
