#include "hosts/plugin_library.h"

#include <dlfcn.h>
#include <stdexcept>

#include "rofa_linux_sal/win32_messages.h"

namespace {

template <class F> F Resolve(void *Library, const char *Name)
{
    void *Symbol = dlsym(Library, Name);
    if (Symbol == nullptr)
        throw std::runtime_error(std::string("librofa.so does not export ") + Name);
    return reinterpret_cast<F>(Symbol);
}

page_host &AsPage(rofa_host_interface *Host)
{
    return *static_cast<page_host *>(Host);
}

uint8_t PageNavigate(rofa_host_interface *Host, const char *URL, int32_t Mode)
{
    page_host &Page = AsPage(Host);
    Page.Navigations.emplace_back(URL, Mode);
    return Page.NavigateSucceeds ? 1 : 0;
}

int32_t PageGetParameterCount(rofa_host_interface *Host)
{
    page_host &Page = AsPage(Host);
    Page.ParameterCalls++;
    return static_cast<int32_t>(Page.Parameters.size());
}

const char *PageGetParameterName(rofa_host_interface *Host, int32_t Index)
{
    page_host &Page = AsPage(Host);
    Page.ParameterCalls++;
    return Page.Parameters.at(static_cast<size_t>(Index)).first.c_str();
}

const char *PageGetParameterValue(rofa_host_interface *Host, int32_t Index)
{
    page_host &Page = AsPage(Host);
    Page.ParameterCalls++;
    return Page.Parameters.at(static_cast<size_t>(Index)).second.c_str();
}

const rofa_host_operations PageOperations = {PageNavigate, PageGetParameterCount, PageGetParameterName,
                                             PageGetParameterValue};

uint32_t Pack(int Low, int High)
{
    return (static_cast<uint32_t>(Low) & 0xFFFFu) | ((static_cast<uint32_t>(High) & 0xFFFFu) << 16);
}

} // namespace

plugin_library::plugin_library(const std::string &Path)
{
    Library = dlopen(Path.c_str(), RTLD_NOW | RTLD_LOCAL);
    if (Library == nullptr)
        throw std::runtime_error(std::string("cannot load ") + Path + ": " + dlerror());
    GetVersionString = Resolve<decltype(GetVersionString)>(Library, "RofaAppGetVersionString");
    CreateNewInstance = Resolve<decltype(CreateNewInstance)>(Library, "RofaAppCreateNewInstance_v2");
    ProcessGUIMessage = Resolve<decltype(ProcessGUIMessage)>(Library, "RofaAppProcessGUIMessage_v2");
    ReleaseAppInstance = Resolve<decltype(ReleaseAppInstance)>(Library, "RofaAppReleaseAppInstance_v2");
}

plugin_library::~plugin_library()
{
    dlclose(Library);
}

page_host::page_host()
{
    Operations = &PageOperations;
}

void page_host::AddParameter(const std::string &Name, const std::string &Value)
{
    Parameters.emplace_back(Name, Value);
}

plugin_window::plugin_window(plugin_library &Library, int Width, int Height, page_host *Host,
                             const char *CommandLine)
    : Library(Library), Handle(Library.CreateNewInstance(Width, Height, nullptr, Host, CommandLine))
{
}

plugin_window::~plugin_window()
{
    Release();
}

uint32_t plugin_window::Send(uint32_t Message, uint32_t WParam, int32_t LParam, bool CallDefaultHandler)
{
    rofa_gui_message Record = {nullptr, Message, WParam, LParam, static_cast<uint8_t>(CallDefaultHandler ? 1 : 0)};
    return Library.ProcessGUIMessage(Handle, &Record);
}

uint32_t plugin_window::Tick()
{
    return Send(WM_TIMER);
}

uint32_t plugin_window::Resize(int Width, int Height)
{
    return Send(WM_SIZE, 0, static_cast<int32_t>(Pack(Width, Height)));
}

uint32_t plugin_window::MouseMove(int X, int Y)
{
    return Send(WM_MOUSEMOVE, 0, static_cast<int32_t>(Pack(X, Y)));
}

uint32_t plugin_window::Click(int X, int Y)
{
    const uint32_t LeftButtonFlag = 1;
    Send(WM_LBUTTONDOWN, LeftButtonFlag, static_cast<int32_t>(Pack(X, Y)));
    return Send(WM_LBUTTONUP, 0, static_cast<int32_t>(Pack(X, Y)));
}

uint32_t plugin_window::Key(uint32_t VirtualKey)
{
    const int32_t RepeatOnce = 1;
    Send(WM_KEYDOWN, VirtualKey, RepeatOnce);
    return Send(WM_KEYUP, VirtualKey, RepeatOnce);
}

void plugin_window::Release()
{
    if (Handle == nullptr)
        return;
    Library.ReleaseAppInstance(Handle);
    Handle = nullptr;
}
