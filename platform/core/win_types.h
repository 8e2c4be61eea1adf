// The scalar types and constants of the Windows API that the library's public surface uses,
// with the widths the interfaces promise (LONG and DWORD are 32 bits, as on Windows).
#pragma once

#include <cstddef>
#include <cstdint>

// A window handle is the window object itself in the headless window model; declared here so
// that interfaces below the window library can name it.
class CWnd;
using HWND = CWnd*;

using BYTE = std::uint8_t;
using WORD = std::uint16_t;
using DWORD = std::uint32_t;
using UINT = unsigned int;
using LONG = std::int32_t;
using ULONG = std::uint32_t;
using LONGLONG = std::int64_t;
using ULONGLONG = std::uint64_t;
using DWORD_PTR = std::uintptr_t;
using BOOL = int;
using SHORT = std::int16_t;
using USHORT = std::uint16_t;
using COLORREF = std::uint32_t;
using HRESULT = std::int32_t;
using LCID = std::uint32_t;
using INT_PTR = std::intptr_t;
using UINT_PTR = std::uintptr_t;
// The framework's cursor into a collection: opaque, null before the first and after the last.
struct PositionTag;
using POSITION = PositionTag*;
using LPCTSTR = const char*;
using LPTSTR = char*;
using LPCSTR = const char*;
using LPSTR = char*;
using TCHAR = char;
using WCHAR = char16_t;
using VARIANT_BOOL = std::int16_t;

#ifndef TRUE
#define TRUE 1
#endif
#ifndef FALSE
#define FALSE 0
#endif

constexpr VARIANT_BOOL VARIANT_TRUE = -1;
constexpr VARIANT_BOOL VARIANT_FALSE = 0;

constexpr HRESULT S_OK = 0;
constexpr HRESULT S_FALSE = 1;
constexpr HRESULT E_NOTIMPL = static_cast<HRESULT>(0x80004001u);
constexpr HRESULT E_NOINTERFACE = static_cast<HRESULT>(0x80004002u);
constexpr HRESULT E_POINTER = static_cast<HRESULT>(0x80004003u);
constexpr HRESULT E_FAIL = static_cast<HRESULT>(0x80004005u);
constexpr HRESULT E_UNEXPECTED = static_cast<HRESULT>(0x8000FFFFu);
constexpr HRESULT E_OUTOFMEMORY = static_cast<HRESULT>(0x8007000Eu);
constexpr HRESULT E_INVALIDARG = static_cast<HRESULT>(0x80070057u);

constexpr bool SUCCEEDED(HRESULT hr) {
    return hr >= 0;
}
constexpr bool FAILED(HRESULT hr) {
    return hr < 0;
}

constexpr WORD LOWORD(DWORD value) {
    return static_cast<WORD>(value & 0xFFFFu);
}
constexpr WORD HIWORD(DWORD value) {
    return static_cast<WORD>((value >> 16) & 0xFFFFu);
}
constexpr DWORD MAKELONG(WORD low, WORD high) {
    return static_cast<DWORD>(low) | (static_cast<DWORD>(high) << 16);
}
constexpr COLORREF RGB(BYTE r, BYTE g, BYTE b) {
    return static_cast<COLORREF>(r) | (static_cast<COLORREF>(g) << 8) |
           (static_cast<COLORREF>(b) << 16);
}
constexpr BYTE GetRValue(COLORREF c) {
    return static_cast<BYTE>(c & 0xFF);
}
constexpr BYTE GetGValue(COLORREF c) {
    return static_cast<BYTE>((c >> 8) & 0xFF);
}
constexpr BYTE GetBValue(COLORREF c) {
    return static_cast<BYTE>((c >> 16) & 0xFF);
}
