// Window messages, virtual keys, scroll bar records and the creation record, with the
// framework's published names and values, for the headless window model.
#pragma once

#include "platform/core/win_types.h"
#include "platform/draw/gdi_types.h"

#include <cstdint>

using WPARAM = std::uintptr_t;
using LPARAM = std::intptr_t;
using LRESULT = std::intptr_t;
using LPINT = int*;

constexpr UINT WM_NULL = 0x0000;
constexpr UINT WM_CREATE = 0x0001;
constexpr UINT WM_DESTROY = 0x0002;
constexpr UINT WM_SIZE = 0x0005;
constexpr UINT WM_SETFOCUS = 0x0007;
constexpr UINT WM_KILLFOCUS = 0x0008;
constexpr UINT WM_SETTEXT = 0x000C;
constexpr UINT WM_GETTEXT = 0x000D;
constexpr UINT WM_GETTEXTLENGTH = 0x000E;
constexpr UINT WM_PAINT = 0x000F;
constexpr UINT WM_CLOSE = 0x0010;
constexpr UINT WM_QUIT = 0x0012;
constexpr UINT WM_ERASEBKGND = 0x0014;
constexpr UINT WM_SETFONT = 0x0030;
constexpr UINT WM_GETFONT = 0x0031;
constexpr UINT WM_NOTIFY = 0x004E;
constexpr UINT WM_KEYDOWN = 0x0100;
constexpr UINT WM_KEYUP = 0x0101;
constexpr UINT WM_CHAR = 0x0102;
constexpr UINT WM_SYSKEYDOWN = 0x0104;
constexpr UINT WM_COMMAND = 0x0111;
constexpr UINT WM_TIMER = 0x0113;
constexpr UINT WM_HSCROLL = 0x0114;
constexpr UINT WM_VSCROLL = 0x0115;
constexpr UINT WM_MOUSEMOVE = 0x0200;
constexpr UINT WM_LBUTTONDOWN = 0x0201;
constexpr UINT WM_LBUTTONUP = 0x0202;
constexpr UINT WM_LBUTTONDBLCLK = 0x0203;
constexpr UINT WM_RBUTTONDOWN = 0x0204;
constexpr UINT WM_RBUTTONUP = 0x0205;
constexpr UINT WM_MOUSEWHEEL = 0x020A;
constexpr UINT WM_CUT = 0x0300;
constexpr UINT WM_COPY = 0x0301;
constexpr UINT WM_PASTE = 0x0302;
constexpr UINT WM_CLEAR = 0x0303;
constexpr UINT WM_UNDO = 0x0304;
constexpr UINT WM_USER = 0x0400;
// A notification of a child window, reflected back to the child by its parent: the message
// number plus this base.
constexpr UINT WM_REFLECT_BASE = 0xBC00;

// Notification codes in the high word of WM_COMMAND from an edit control.
constexpr WORD EN_CHANGE = 0x0300;

// Window styles.
constexpr DWORD WS_CHILD = 0x40000000;
constexpr DWORD WS_VISIBLE = 0x10000000;
constexpr DWORD WS_VSCROLL = 0x00200000;
constexpr DWORD WS_HSCROLL = 0x00100000;
constexpr DWORD WS_BORDER = 0x00800000;
constexpr DWORD WS_TABSTOP = 0x00010000;

// Scroll bars and scroll codes.
constexpr int SB_HORZ = 0;
constexpr int SB_VERT = 1;
constexpr int SB_CTL = 2;
constexpr int SB_BOTH = 3;
constexpr UINT SB_LINEUP = 0;
constexpr UINT SB_LINELEFT = 0;
constexpr UINT SB_LINEDOWN = 1;
constexpr UINT SB_LINERIGHT = 1;
constexpr UINT SB_PAGEUP = 2;
constexpr UINT SB_PAGELEFT = 2;
constexpr UINT SB_PAGEDOWN = 3;
constexpr UINT SB_PAGERIGHT = 3;
constexpr UINT SB_THUMBPOSITION = 4;
constexpr UINT SB_THUMBTRACK = 5;
constexpr UINT SB_TOP = 6;
constexpr UINT SB_LEFT = 6;
constexpr UINT SB_BOTTOM = 7;
constexpr UINT SB_RIGHT = 7;
constexpr UINT SB_ENDSCROLL = 8;

constexpr UINT SIF_RANGE = 0x0001;
constexpr UINT SIF_PAGE = 0x0002;
constexpr UINT SIF_POS = 0x0004;
constexpr UINT SIF_DISABLENOSCROLL = 0x0008;
constexpr UINT SIF_TRACKPOS = 0x0010;
constexpr UINT SIF_ALL = SIF_RANGE | SIF_PAGE | SIF_POS | SIF_TRACKPOS;

struct SCROLLINFO {
    UINT cbSize = sizeof(SCROLLINFO);
    UINT fMask = 0;
    int nMin = 0;
    int nMax = 0;
    UINT nPage = 0;
    int nPos = 0;
    int nTrackPos = 0;
};
using LPSCROLLINFO = SCROLLINFO*;

// Virtual keys.
constexpr int VK_BACK = 0x08;
constexpr int VK_TAB = 0x09;
constexpr int VK_RETURN = 0x0D;
constexpr int VK_SHIFT = 0x10;
constexpr int VK_CONTROL = 0x11;
constexpr int VK_MENU = 0x12;
constexpr int VK_ESCAPE = 0x1B;
constexpr int VK_PRIOR = 0x21;
constexpr int VK_NEXT = 0x22;
constexpr int VK_END = 0x23;
constexpr int VK_HOME = 0x24;
constexpr int VK_LEFT = 0x25;
constexpr int VK_UP = 0x26;
constexpr int VK_RIGHT = 0x27;
constexpr int VK_DOWN = 0x28;
constexpr int VK_INSERT = 0x2D;
constexpr int VK_DELETE = 0x2E;
constexpr int VK_LBUTTON = 0x01;
constexpr int VK_F3 = 0x72;

constexpr UINT MK_LBUTTON = 0x0001;
constexpr UINT MK_SHIFT = 0x0004;
constexpr UINT MK_CONTROL = 0x0008;

constexpr UINT SIZE_RESTORED = 0;

struct CREATESTRUCT {
    void* lpCreateParams = nullptr;
    UINT_PTR hMenu = 0; // the child id
    HWND hwndParent = nullptr;
    int cy = 0;
    int cx = 0;
    int y = 0;
    int x = 0;
    LONG style = 0;
    LPCSTR lpszName = nullptr;
    LPCSTR lpszClass = nullptr;
    DWORD dwExStyle = 0;
};
using LPCREATESTRUCT = CREATESTRUCT*;

struct MSG {
    HWND hwnd = nullptr;
    UINT message = 0;
    WPARAM wParam = 0;
    LPARAM lParam = 0;
};

constexpr WORD LOWORD(std::uintptr_t v) {
    return static_cast<WORD>(v & 0xFFFF);
}
constexpr WORD HIWORD(std::uintptr_t v) {
    return static_cast<WORD>((v >> 16) & 0xFFFF);
}
constexpr LPARAM MAKELPARAM(int low, int high) {
    return static_cast<LPARAM>((static_cast<std::uint32_t>(high & 0xFFFF) << 16) |
                               static_cast<std::uint32_t>(low & 0xFFFF));
}
constexpr WPARAM MAKEWPARAM(int low, int high) {
    return static_cast<WPARAM>((static_cast<std::uint32_t>(high & 0xFFFF) << 16) |
                               static_cast<std::uint32_t>(low & 0xFFFF));
}
// Signed coordinates of a mouse message's lParam.
constexpr int GET_X_LPARAM(LPARAM l) {
    return static_cast<SHORT>(LOWORD(static_cast<WPARAM>(l)));
}
constexpr int GET_Y_LPARAM(LPARAM l) {
    return static_cast<SHORT>(HIWORD(static_cast<WPARAM>(l)));
}
