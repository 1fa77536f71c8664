#pragma once

#include <cstdint>

// The window message numbers that every binding speaks to the library. A Linux host translates its
// toolkit's events into these, so the message handling is written once.
enum win32_message : uint32_t
{
    WM_MOVE = 0x0003,
    WM_SIZE = 0x0005,
    WM_ACTIVATE = 0x0006,
    WM_SETFOCUS = 0x0007,
    WM_KILLFOCUS = 0x0008,
    WM_PAINT = 0x000F,
    WM_ERASEBKGND = 0x0014,
    WM_ACTIVATEAPP = 0x001C,
    WM_SETCURSOR = 0x0020,
    WM_MOUSEACTIVATE = 0x0021,
    WM_WINDOWPOSCHANGING = 0x0046,
    WM_NCPAINT = 0x0085,
    WM_NCMOUSEMOVE = 0x00A0,
    WM_KEYDOWN = 0x0100,
    WM_KEYUP = 0x0101,
    WM_CHAR = 0x0102,
    WM_SYSKEYDOWN = 0x0104,
    WM_SYSKEYUP = 0x0105,
    WM_TIMER = 0x0113,
    WM_MOUSEMOVE = 0x0200,
    WM_LBUTTONDOWN = 0x0201,
    WM_LBUTTONUP = 0x0202,
    WM_LBUTTONDBLCLK = 0x0203,
    WM_RBUTTONDOWN = 0x0204,
    WM_RBUTTONUP = 0x0205,
    WM_RBUTTONDBLCLK = 0x0206,
    WM_MBUTTONDOWN = 0x0207,
    WM_MBUTTONUP = 0x0208,
    WM_MBUTTONDBLCLK = 0x0209,
    WM_MOUSEWHEEL = 0x020A,
    WM_DROPFILES = 0x0233,
};

// WM_ACTIVATE's low word.
constexpr uint32_t WA_INACTIVE = 0;

// The two 16-bit halves of a message parameter. Coordinates in them are signed: cast the half to
// int16_t.
inline uint32_t LowWord(uint32_t Value) { return Value & 0xFFFF; }
inline uint32_t HighWord(uint32_t Value) { return (Value >> 16) & 0xFFFF; }

// A parameter from its two halves, as a host packs one.
inline uint32_t MakeLong(uint32_t Low, uint32_t High) { return (Low & 0xFFFF) | ((High & 0xFFFF) << 16); }

// Hosts on Linux send WM_WINDOWPOSCHANGING with the proposed position packed as in WM_MOVE: x in the
// low word and y in the high word of LParam, both signed, since a 32-bit parameter cannot point at a
// position record. WM_DROPFILES carries in WParam a number that names the drop to the binding, which
// asks its host for the paths.
