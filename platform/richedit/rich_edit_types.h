// The rich edit control's messages, option bits, stream and format records, with the published
// names and values.
#pragma once

#include "platform/draw/gdi_types.h"
#include "platform/window/char_format.h"
#include "platform/window/messages.h"

constexpr UINT EM_GETSEL = 0x00B0;
constexpr UINT EM_SETSEL = 0x00B1;
constexpr UINT EM_GETRECT = 0x00B2;
constexpr UINT EM_SETRECT = 0x00B3;
constexpr UINT EM_LINESCROLL = 0x00B6;
constexpr UINT EM_SCROLLCARET = 0x00B7;
constexpr UINT EM_GETMODIFY = 0x00B8;
constexpr UINT EM_SETMODIFY = 0x00B9;
constexpr UINT EM_GETLINECOUNT = 0x00BA;
constexpr UINT EM_LINEINDEX = 0x00BB;
constexpr UINT EM_LINELENGTH = 0x00C1;
constexpr UINT EM_REPLACESEL = 0x00C2;
constexpr UINT EM_GETLINE = 0x00C4;
constexpr UINT EM_CANUNDO = 0x00C6;
constexpr UINT EM_UNDO = 0x00C7;
constexpr UINT EM_LINEFROMCHAR = 0x00C9;
constexpr UINT EM_EMPTYUNDOBUFFER = 0x00CD;
constexpr UINT EM_GETFIRSTVISIBLELINE = 0x00CE;
constexpr UINT EM_SETREADONLY = 0x00CF;
constexpr UINT EM_POSFROMCHAR = 0x00D6;
constexpr UINT EM_CHARFROMPOS = 0x00D7;
constexpr UINT EM_CANPASTE = WM_USER + 50;
constexpr UINT EM_EXGETSEL = WM_USER + 52;
constexpr UINT EM_EXLIMITTEXT = WM_USER + 53;
constexpr UINT EM_EXLINEFROMCHAR = WM_USER + 54;
constexpr UINT EM_EXSETSEL = WM_USER + 55;
constexpr UINT EM_GETCHARFORMAT = WM_USER + 58;
constexpr UINT EM_GETPARAFORMAT = WM_USER + 61;
constexpr UINT EM_GETSELTEXT = WM_USER + 62;
constexpr UINT EM_HIDESELECTION = WM_USER + 63;
constexpr UINT EM_SETBKGNDCOLOR = WM_USER + 67;
constexpr UINT EM_SETCHARFORMAT = WM_USER + 68;
constexpr UINT EM_SETPARAFORMAT = WM_USER + 71;
constexpr UINT EM_SETTARGETDEVICE = WM_USER + 72;
constexpr UINT EM_STREAMIN = WM_USER + 73;
constexpr UINT EM_STREAMOUT = WM_USER + 74;
constexpr UINT EM_GETTEXTRANGE = WM_USER + 75;
constexpr UINT EM_SETOPTIONS = WM_USER + 77;
constexpr UINT EM_GETOPTIONS = WM_USER + 78;
constexpr UINT EM_SETUNDOLIMIT = WM_USER + 82;
constexpr UINT EM_REDO = WM_USER + 84;
constexpr UINT EM_CANREDO = WM_USER + 85;
constexpr UINT EM_SETTEXTMODE = WM_USER + 89;
constexpr UINT EM_GETTEXTMODE = WM_USER + 90;

constexpr DWORD ES_MULTILINE = 0x0004;
constexpr DWORD ES_AUTOVSCROLL = 0x0040;
constexpr DWORD ES_AUTOHSCROLL = 0x0080;
constexpr DWORD ES_NOHIDESEL = 0x0100;
constexpr DWORD ES_READONLY = 0x0800;
constexpr DWORD ES_WANTRETURN = 0x1000;

constexpr DWORD ECO_AUTOWORDSELECTION = 0x00000001;
constexpr DWORD ECO_AUTOVSCROLL = 0x00000040;
constexpr DWORD ECO_AUTOHSCROLL = 0x00000080;
constexpr DWORD ECO_NOHIDESEL = 0x00000100;
constexpr DWORD ECO_READONLY = 0x00000800;
constexpr DWORD ECO_WANTRETURN = 0x00001000;
constexpr DWORD ECO_SELECTIONBAR = 0x01000000;
constexpr WORD ECOOP_SET = 1;
constexpr WORD ECOOP_OR = 2;
constexpr WORD ECOOP_AND = 3;
constexpr WORD ECOOP_XOR = 4;

constexpr UINT TM_PLAINTEXT = 1;
constexpr UINT TM_RICHTEXT = 2;
constexpr UINT TM_SINGLELEVELUNDO = 4;
constexpr UINT TM_MULTILEVELUNDO = 8;
constexpr UINT TM_SINGLECODEPAGE = 16;
constexpr UINT TM_MULTICODEPAGE = 32;

constexpr int SF_TEXT = 0x0001;
constexpr int SF_RTF = 0x0002;
constexpr int SFF_SELECTION = 0x8000;

struct CHARRANGE {
    LONG cpMin = 0;
    LONG cpMax = 0;
};

struct TEXTRANGE {
    CHARRANGE chrg;
    LPSTR lpstrText = nullptr; // room for the range and a terminating zero
};

// Called by the control for each block: it reads (stream in) or writes (stream out) up to cb
// bytes at buf and reports the count in *pcb; a non-zero result stops the stream.
using EDITSTREAMCALLBACK = DWORD (*)(DWORD_PTR dwCookie, BYTE* pbBuff, LONG cb, LONG* pcb);
struct EDITSTREAM {
    DWORD_PTR dwCookie = 0;
    DWORD dwError = 0;
    EDITSTREAMCALLBACK pfnCallback = nullptr;
};

constexpr int MAX_TAB_STOPS = 32;
constexpr DWORD PFM_TABSTOPS = 0x00000010;
constexpr DWORD PFM_ALIGNMENT = 0x00000008;

struct PARAFORMAT {
    UINT cbSize = sizeof(PARAFORMAT);
    DWORD dwMask = 0;
    WORD wNumbering = 0;
    WORD wReserved = 0;
    LONG dxStartIndent = 0;
    LONG dxRightIndent = 0;
    LONG dxOffset = 0;
    WORD wAlignment = 1;
    SHORT cTabCount = 0;
    LONG rgxTabs[MAX_TAB_STOPS] = {};
};
