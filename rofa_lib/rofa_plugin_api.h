/* The boundary of librofa.so, for hosts written in C or C++. A host creates one instance per native
 * window, forwards every window message to it on the window's thread, and releases it at the end. */
#ifndef ROFA_PLUGIN_API_H
#define ROFA_PLUGIN_API_H

#include <stdint.h>

#ifdef __cplusplus
extern "C" {
#endif

#if defined(__GNUC__)
#define ROFA_EXPORT __attribute__((visibility("default")))
#else
#define ROFA_EXPORT
#endif

/* The library's handle of one instance. Opaque to the host. */
typedef void *RofaAppHandle;

/* The host's native window. On Linux an opaque value the host and its binding agree on; a null window
 * makes the library build its headless binding, whose window is an in-memory screen. */
typedef void *rofa_native_window;

/* One window message, with the Win32 message numbers and parameter packing on every platform. */
typedef struct rofa_gui_message {
    rofa_native_window Window;
    uint32_t Message;
    uint32_t WParam;
    int32_t LParam;
    /* Nonzero: a message the library does not handle goes to the platform's default handling. */
    uint8_t CallDefaultHandler;
} rofa_gui_message;

typedef struct rofa_host_interface rofa_host_interface;

/* The host's operations, called through this table in this order. Strings the host returns are copied
 * at once by the library. */
typedef struct rofa_host_operations {
    /* Directs the hosting browser to URL; the library always passes Mode 5. Zero: the host could not. */
    uint8_t (*Navigate)(rofa_host_interface *Host, const char *URL, int32_t Mode);
    int32_t (*GetParameterCount)(rofa_host_interface *Host);
    const char *(*GetParameterName)(rofa_host_interface *Host, int32_t Index);
    const char *(*GetParameterValue)(rofa_host_interface *Host, int32_t Index);
} rofa_host_operations;

/* A host object begins with its operation table; it must outlive the instance it is given to. */
struct rofa_host_interface {
    const rofa_host_operations *Operations;
};

ROFA_EXPORT const char *RofaAppGetVersionString(void);
ROFA_EXPORT RofaAppHandle RofaAppCreateNewInstance_v2(int Width, int Height, rofa_native_window Window,
                                                      rofa_host_interface *Host, const char *CommandLine);
ROFA_EXPORT uint32_t RofaAppProcessGUIMessage_v2(RofaAppHandle Handle, rofa_gui_message *Message);
ROFA_EXPORT void RofaAppReleaseAppInstance_v2(RofaAppHandle Handle);

#ifdef __cplusplus
}
#endif

#endif
