#pragma once

#include <cstdint>

#include "rofa_lib/bitmap_interface.h"
#include "rofa_lib/keyboard.h"
#include "rofa_lib/mouse_interface.h"
#include "rofa_lib/rofa_app_interface.h"
#include "rofa_lib/rofa_plugin_api.h"
#include "zel_basics/lwbase_object.h"
#include "zel_basics/lwpointers.h"
#include "zel_basics/point2d.h"
#include "zel_basics/zel_hash_map.h"
#include "zel_basics/zel_string.h"

// The process side of the platform: the environment variables that the page's parameters and the
// command line fill, and objects known by name to everything that holds the layer.
class system_abstraction_layer : public base_object
{
public:
    system_abstraction_layer();

    // Places kept free for the platform; nothing here uses them.
    virtual void ReservedLayerHook();
    virtual void ReservedLayerHook2();

    // Keys are lower-cased on every access, so "rofaID" and "rofaid" are one variable.
    virtual bool EnvironmentVarExists(zel_string Key);
    virtual zel_string GetEnvironmentVar(zel_string Key);
    virtual void SetEnvironmentVar(zel_string Key, zel_string Value);
    virtual zel_string TakeEnvironmentVar(zel_string Key);
    // Each token "-key=value" or "/key=value" becomes a variable; the whole line is also appended to
    // "CommandLine".
    virtual void ParseCommandLine(zel_string Line);

    virtual bool GlobalReferenceIsSet(zel_string Key);
    virtual reference_pointer<base_object> GetGlobalReference(zel_string Key);
    virtual void SetGlobalReference(zel_string Key, reference_pointer<base_object> Reference);
    // Owns the object until it is taken back or the layer dies, and names it as a reference too.
    virtual void SetGlobalOwner(zel_string Key, ownership_pointer<base_object> Owner);
    virtual ownership_pointer<base_object> RemoveGlobalOwner(zel_string Key);

    virtual void ReservedStringOperation(zel_string, zel_string) = 0;

private:
    zel_string_hash_map<zel_string> EnvironmentVars;
    zel_string_hash_map<reference_pointer<base_object>> GlobalReferences;
    zel_string_hash_map<ownership_pointer<base_object>> GlobalOwners;
};

// The window side of the platform: the messages of one window, the cursor, dialogs, pixels out and
// the browser, plus the input state and the frame clock of the application that the window drives.
class graphical_system_abstraction_layer : public system_abstraction_layer
{
public:
    graphical_system_abstraction_layer();

    virtual uint32_t ProcessGUIMessage(rofa_gui_message *Message) = 0;
    virtual bool NavigateBrowser(zel_string URL, int Mode);
    virtual bool ReservedTrueQuery();
    virtual bool ReservedFalseQuery();
    virtual bool ReservedFalseQuery2();
    virtual void SetWindowTitle(zel_string Title) = 0;
    virtual void SetDisplayMode(int Mode);
    // Cursor numbers: 0 hides the pointer; 1 and any number not listed is the arrow; 2 I-beam,
    // 3 hourglass, 4 resize north-west to south-east, 5 north-east to south-west, 6 north to south,
    // 7 west to east, 8 move, 9 forbidden, 10 hand, 11 help, 12 busy arrow.
    virtual void SetCursor(int Cursor);
    // Filter is pairs of name and pattern, each part ended by "|", with one more "|" at the end. The
    // empty string means that the user cancelled.
    virtual zel_string ShowFileDialog(bool Open, zel_string Title, zel_string DefaultPath, zel_string DefaultExtension,
                                      zel_string Filter, bool PathMustExist, bool AllowMultiSelect,
                                      bool FileMustExist);
    virtual void ReservedHook();
    virtual void ReservedAreaHook(int, int, int, int);
    virtual void PresentBitmap(int X, int Y, reference_pointer<bitmap_interface> Bitmap);
    virtual int_point2d GetWindowSize();
    virtual int GetBitsPerPixel();
    virtual int GetColorDepth();
    virtual bool ReservedFalseQuery3();
    virtual int_point2d GetScreenSize();
    virtual int_point2d GetDisplaySize();

    // From here on the timer's ticks reach App.
    void SetRofaApp(reference_pointer<rofa_app_interface> App) { RofaApp = App; }
    reference_pointer<rofa_app_interface> GetRofaApp() const { return RofaApp; }

    // One tick: the frame clock moves on, then the application runs.
    void RunTick();

    double GetLastTime() const { return LastTime; }
    double GetCurrentTime() const { return CurrentTime; }
    double GetFrameTime() const { return FrameTime; }
    bool GetHasFocus() const { return HasFocus; }
    reference_pointer<keyboard_interface> GetKeyboard() const { return Keyboard; }
    reference_pointer<mouse_interface> GetMouse() const { return Mouse; }

protected:
    reference_pointer<rofa_app_interface> RofaApp;
    // Seconds. The start values give the first frame a small positive duration.
    double LastTime;
    double CurrentTime;
    double FrameTime;
    bool HasFocus;
    ownership_pointer<keyboard_interface> Keyboard;
    ownership_pointer<mouse_interface> Mouse;
};
