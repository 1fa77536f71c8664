// A host with no display: it loads librofa.so as a browser loads a plug-in, embeds it in a page with
// parameters, and drives one instance through its whole life, saying what it does at each step.
#include <cstdio>
#include <exception>

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
    const char *LibraryPath = argc > 1 ? argv[1] : ROFA_LIBRARY_PATH;
    try {
        plugin_library Library(LibraryPath);
        std::printf("loaded %s, version %s\n", LibraryPath, Library.GetVersionString());

        page_host Page;
        Page.AddParameter("rofaID", "sample");
        Page.AddParameter("width", "640");
        Page.AddParameter("height", "480");
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
        Say("moved the pointer, clicked at (100, 120), pressed A, and ticked once more");

        Window.Resize(800, 600);
        Say("resized the window to 800x600");
        std::printf("a message with a null handle answers %u\n",
                    static_cast<unsigned>(Library.ProcessGUIMessage(nullptr, nullptr)));

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
