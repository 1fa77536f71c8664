#pragma once

#include <string>
#include <utility>
#include <vector>

#include "rofa_lib/rofa_plugin_api.h"

// librofa.so loaded at run time, as a browser loads a plug-in: nothing but the four exported functions
// is reached.
class plugin_library
{
public:
    explicit plugin_library(const std::string &Path);
    ~plugin_library();
    plugin_library(const plugin_library &) = delete;
    plugin_library &operator=(const plugin_library &) = delete;

    const char *(*GetVersionString)(void) = nullptr;
    RofaAppHandle (*CreateNewInstance)(int, int, rofa_native_window, rofa_host_interface *, const char *) = nullptr;
    uint32_t (*ProcessGUIMessage)(RofaAppHandle, rofa_gui_message *) = nullptr;
    void (*ReleaseAppInstance)(RofaAppHandle) = nullptr;

private:
    void *Library = nullptr;
};

// A page that embeds the plug-in: its tag's parameters, and a browser that records where it was sent.
class page_host : public rofa_host_interface
{
public:
    page_host();
    page_host(const page_host &) = delete;
    page_host &operator=(const page_host &) = delete;

    void AddParameter(const std::string &Name, const std::string &Value);

    std::vector<std::pair<std::string, std::string>> Parameters;
    std::vector<std::pair<std::string, int>> Navigations;
    bool NavigateSucceeds = true;
    int ParameterCalls = 0;
};

// One instance driven through the boundary: a handle and the messages a window would send it.
class plugin_window
{
public:
    plugin_window(plugin_library &Library, int Width, int Height, page_host *Host, const char *CommandLine);
    ~plugin_window();
    plugin_window(const plugin_window &) = delete;
    plugin_window &operator=(const plugin_window &) = delete;

    uint32_t Send(uint32_t Message, uint32_t WParam = 0, int32_t LParam = 0, bool CallDefaultHandler = true);
    uint32_t Tick();
    uint32_t Resize(int Width, int Height);
    uint32_t MouseMove(int X, int Y);
    uint32_t Click(int X, int Y);
    uint32_t Key(uint32_t VirtualKey);
    void Release();

    RofaAppHandle GetHandle() const { return Handle; }

private:
    plugin_library &Library;
    RofaAppHandle Handle;
};
