// A host with no display: it loads librofa.so as a browser loads a plug-in, embeds it in a page with
// parameters, and drives one instance through its whole life, saying what it does at each step. The
// page asks the library to leave its screen in a PNG file, so that what the window would show can be
// looked at.
//
// Usage: rofa-headless-host [--library PATH] [--screen FILE.png]
#include <cstdio>
#include <cstring>
#include <exception>
#include <string>

#include "hosts/plugin_library.h"

namespace {

const int TicksPerSecond = 45;

void Say(const char *Text)
{
    std::printf("%s\n", Text);
}

} // namespace

int main(int argc, char **argv)
{
    std::string LibraryPath = ROFA_LIBRARY_PATH;
    std::string ScreenPath = "rofa-screen.png";
    for (int I = 1; I < argc; I++) {
        bool HasValue = I + 1 < argc;
        if (std::strcmp(argv[I], "--library") == 0 && HasValue) {
            LibraryPath = argv[++I];
        } else if (std::strcmp(argv[I], "--screen") == 0 && HasValue) {
            ScreenPath = argv[++I];
        } else {
            std::fprintf(stderr, "usage: rofa-headless-host [--library PATH] [--screen FILE.png]\n");
            return 2;
        }
    }
    try {
        plugin_library Library(LibraryPath.c_str());
        std::printf("loaded %s, version %s\n", LibraryPath.c_str(), Library.GetVersionString());

        page_host Page;
        Page.AddParameter("rofaID", "sample");
        Page.AddParameter("width", "640");
        Page.AddParameter("height", "480");
        // A newer release is recommended, so the library offers the update over its editor.
        Page.AddParameter("recommended_plugin_version", "0.6.0");
        Page.AddParameter("screen_png", ScreenPath);
        plugin_window Window(Library, 320, 200, &Page, "-startup_path=/tmp");
        std::printf("created an instance for a 320x200 window on a page whose parameters ask for 640x480; the "
                    "library read the parameters in %d calls\n",
                    Page.ParameterCalls);

        for (int I = 0; I < TicksPerSecond; I++)
            Window.Tick();
        std::printf("ran %d ticks, one second of the window's timer\n", TicksPerSecond);

        Window.MouseMove(100, 120);
        Window.Click(100, 120);
        Window.Key('A');
        Window.Tick();
        Say("moved the pointer, clicked at (100, 120) and pressed A: the update notice in front takes them all");

        Window.Resize(800, 600);
        Window.Tick();
        Say("resized the window to 800x600");
        std::printf("a message with a null handle answers %u\n",
                    static_cast<unsigned>(Library.ProcessGUIMessage(nullptr, nullptr)));
        std::printf("the window's last picture, with the update notice, is in %s\n", ScreenPath.c_str());

        Window.Release();
        Say("released the instance");
        std::printf("the browser was sent to %zu pages\n", Page.Navigations.size());
    } catch (const std::exception &Error) {
        std::fprintf(stderr, "rofa-headless-host: %s\n", Error.what());
        return 1;
    } catch (...) {
        std::fprintf(stderr, "rofa-headless-host: the library failed with an error of its own\n");
        return 1;
    }
    return 0;
}
