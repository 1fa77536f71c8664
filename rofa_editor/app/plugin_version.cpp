#include "rofa_editor/app/plugin_version.h"

#include "rofa_lib/rofa_plugin_api.h"
#include "zel_basics/array.h"

plugin_version::plugin_version(int32_t Major, int32_t Minor, int32_t Revision, bool Debug)
    : Major(Major), Minor(Minor), Revision(Revision), Debug(Debug)
{
}

plugin_version plugin_version::FromText(const zel_string &Text)
{
    array<zel_string> Parts;
    Text.Split('.', Parts);
    if (Parts.GetNumberOfElements() != 3)
        return plugin_version();
    bool Debug = Parts[2].ToLower().Contains("d");
    return plugin_version(Parts[0].ToInt(10), Parts[1].ToInt(10), Parts[2].ToInt(10), Debug);
}

zel_string plugin_version::ToText() const
{
    zel_string Text = zel_string::FromInt(Major) + "." + zel_string::FromInt(Minor) + "." + zel_string::FromInt(Revision);
    if (Debug)
        Text += " debug";
    return Text;
}

const plugin_version &plugin_version::GetOwnVersion()
{
    static const plugin_version Own = FromText(RofaAppGetVersionString());
    return Own;
}

bool plugin_version::IsOlderThan(const plugin_version &Other) const
{
    if (Major != Other.Major)
        return Major < Other.Major;
    if (Minor != Other.Minor)
        return Minor < Other.Minor;
    if (Revision != Other.Revision)
        return Revision < Other.Revision;
    return Debug && !Other.Debug;
}

bool plugin_version::operator==(const plugin_version &Other) const
{
    return Major == Other.Major && Minor == Other.Minor && Revision == Other.Revision && Debug == Other.Debug;
}
