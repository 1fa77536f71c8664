#include <gtest/gtest.h>

#include "rofa_editor/app/plugin_version.h"
#include "rofa_lib/rofa_plugin_api.h"

namespace {

void ExpectVersion(const plugin_version &Version, int Major, int Minor, int Revision, bool Debug)
{
    EXPECT_EQ(Major, Version.Major);
    EXPECT_EQ(Minor, Version.Minor);
    EXPECT_EQ(Revision, Version.Revision);
    EXPECT_EQ(Debug, Version.Debug);
}

TEST(PluginVersion, ThreePartsAreReadInRadixTen)
{
    ExpectVersion(plugin_version::FromText("0.5.1"), 0, 5, 1, false);
    ExpectVersion(plugin_version::FromText("10.020.3"), 10, 20, 3, false);
}

TEST(PluginVersion, AnyOtherCountOfPartsIsUnset)
{
    for (const char *Text : {"0.5", "", "1", "1.2.3.4", "..."})
        ExpectVersion(plugin_version::FromText(Text), -1, -1, -1, false);
    ExpectVersion(plugin_version(), -1, -1, -1, false);
}

TEST(PluginVersion, ADInTheThirdPartInAnyCaseMarksADebugBuild)
{
    ExpectVersion(plugin_version::FromText("0.5.1d"), 0, 5, 1, true);
    ExpectVersion(plugin_version::FromText("0.5.1D"), 0, 5, 1, true);
    // Only the third part counts.
    ExpectVersion(plugin_version::FromText("0d.5.1"), 0, 5, 1, false);
}

TEST(PluginVersion, TextFormHasThreeNumbersAndTheDebugWord)
{
    EXPECT_EQ(zel_string("0.5.1"), plugin_version(0, 5, 1).ToText());
    EXPECT_EQ(zel_string("2.0.13 debug"), plugin_version(2, 0, 13, true).ToText());
    EXPECT_EQ(zel_string("-1.-1.-1"), plugin_version().ToText());
}

TEST(PluginVersion, OwnVersionIsTheLibrarysVersionText)
{
    EXPECT_EQ(plugin_version::FromText(RofaAppGetVersionString()), plugin_version::GetOwnVersion());
    ExpectVersion(plugin_version::GetOwnVersion(), 0, 5, 1, false);
}

TEST(PluginVersion, OrderGoesByMajorMinorRevision)
{
    plugin_version Own(0, 5, 1);
    EXPECT_TRUE(Own.IsOlderThan(plugin_version(0, 5, 2)));
    EXPECT_TRUE(Own.IsOlderThan(plugin_version(0, 6, 0)));
    EXPECT_TRUE(Own.IsOlderThan(plugin_version(1, 0, 0)));
    EXPECT_FALSE(Own.IsOlderThan(plugin_version(0, 5, 1)));
    EXPECT_FALSE(Own.IsOlderThan(plugin_version(0, 5, 0)));
    EXPECT_FALSE(Own.IsOlderThan(plugin_version(0, 4, 9)));
    EXPECT_FALSE(plugin_version(1, 0, 0).IsOlderThan(plugin_version(0, 99, 99)));
}

TEST(PluginVersion, DebugBuildIsOlderThanTheReleaseOfTheSameNumbers)
{
    EXPECT_TRUE(plugin_version(0, 5, 1, true).IsOlderThan(plugin_version(0, 5, 1)));
    EXPECT_FALSE(plugin_version(0, 5, 1).IsOlderThan(plugin_version(0, 5, 1, true)));
    EXPECT_FALSE(plugin_version(0, 5, 2, true).IsOlderThan(plugin_version(0, 5, 1)));
}

TEST(PluginVersion, OnlyCompleteVersionsAreComparable)
{
    EXPECT_TRUE(plugin_version::AreComparable(plugin_version(0, 0, 0), plugin_version(0, 5, 1)));
    EXPECT_FALSE(plugin_version::AreComparable(plugin_version(), plugin_version(0, 5, 1)));
    EXPECT_FALSE(plugin_version::AreComparable(plugin_version(0, 5, 1), plugin_version::FromText("0.5")));
    EXPECT_FALSE(plugin_version::AreComparable(plugin_version(0, -1, 1), plugin_version(0, 5, 1)));
}

} // namespace
