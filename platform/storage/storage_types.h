// Values and records of structured storage with the numbers the Windows headers publish:
// access and sharing modes, element types, commit flags, the element description and the
// storage error codes. They live in talvor::platform::storage; storage.h brings them to the
// global namespace, where the host's code calls them by their published names.
#pragma once

#include "platform/core/win_types.h"

#include <cstdint>

namespace talvor::platform::storage {

using OLECHAR = char16_t;
using LPOLESTR = OLECHAR*;
using LPCOLESTR = const OLECHAR*;

struct FILETIME {
    DWORD dwLowDateTime = 0;
    DWORD dwHighDateTime = 0;
};

struct ULARGE_INTEGER {
    ULONGLONG QuadPart = 0;
};
struct LARGE_INTEGER {
    LONGLONG QuadPart = 0;
};

// The class identifier an element carries (16 bytes, as stored in the file).
struct CLSID {
    DWORD Data1 = 0;
    WORD Data2 = 0;
    WORD Data3 = 0;
    BYTE Data4[8] = {};
};

// Access.
constexpr DWORD STGM_READ = 0x00000000;
constexpr DWORD STGM_WRITE = 0x00000001;
constexpr DWORD STGM_READWRITE = 0x00000002;
// Sharing.
constexpr DWORD STGM_SHARE_DENY_NONE = 0x00000040;
constexpr DWORD STGM_SHARE_DENY_READ = 0x00000030;
constexpr DWORD STGM_SHARE_DENY_WRITE = 0x00000020;
constexpr DWORD STGM_SHARE_EXCLUSIVE = 0x00000010;
constexpr DWORD STGM_PRIORITY = 0x00040000;
// Creation and transactions.
constexpr DWORD STGM_FAILIFTHERE = 0x00000000;
constexpr DWORD STGM_CREATE = 0x00001000;
constexpr DWORD STGM_CONVERT = 0x00020000;
constexpr DWORD STGM_DIRECT = 0x00000000;
constexpr DWORD STGM_TRANSACTED = 0x00010000;
constexpr DWORD STGM_NOSCRATCH = 0x00100000;
constexpr DWORD STGM_NOSNAPSHOT = 0x00200000;
constexpr DWORD STGM_SIMPLE = 0x08000000;
constexpr DWORD STGM_DIRECT_SWMR = 0x00400000;
constexpr DWORD STGM_DELETEONRELEASE = 0x04000000;

// Element types (STATSTG::type).
constexpr DWORD STGTY_STORAGE = 1;
constexpr DWORD STGTY_STREAM = 2;
constexpr DWORD STGTY_LOCKBYTES = 3;
constexpr DWORD STGTY_PROPERTY = 4;

// Commit flags.
constexpr DWORD STGC_DEFAULT = 0;
constexpr DWORD STGC_OVERWRITE = 1;
constexpr DWORD STGC_ONLYIFCURRENT = 2;
constexpr DWORD STGC_DANGEROUSLYCOMMITMERELYTODISKCACHE = 4;
constexpr DWORD STGC_CONSOLIDATE = 8;

// Stat flags.
constexpr DWORD STATFLAG_DEFAULT = 0;
constexpr DWORD STATFLAG_NONAME = 1;
constexpr DWORD STATFLAG_NOOPEN = 2;

// Seek origins.
constexpr DWORD STREAM_SEEK_SET = 0;
constexpr DWORD STREAM_SEEK_CUR = 1;
constexpr DWORD STREAM_SEEK_END = 2;

struct STATSTG {
    LPOLESTR pwcsName = nullptr; // freed with CoTaskMemFree
    DWORD type = 0;
    ULARGE_INTEGER cbSize;
    FILETIME mtime;
    FILETIME ctime;
    FILETIME atime;
    DWORD grfMode = 0;
    DWORD grfLocksSupported = 0;
    CLSID clsid;
    DWORD grfStateBits = 0;
    DWORD reserved = 0;
};

constexpr HRESULT Hr(std::uint32_t value) {
    return static_cast<HRESULT>(value);
}
constexpr HRESULT STG_E_INVALIDFUNCTION = Hr(0x80030001u);
constexpr HRESULT STG_E_FILENOTFOUND = Hr(0x80030002u);
constexpr HRESULT STG_E_PATHNOTFOUND = Hr(0x80030003u);
constexpr HRESULT STG_E_TOOMANYOPENFILES = Hr(0x80030004u);
constexpr HRESULT STG_E_ACCESSDENIED = Hr(0x80030005u);
constexpr HRESULT STG_E_INVALIDHANDLE = Hr(0x80030006u);
constexpr HRESULT STG_E_INSUFFICIENTMEMORY = Hr(0x80030008u);
constexpr HRESULT STG_E_INVALIDPOINTER = Hr(0x80030009u);
constexpr HRESULT STG_E_NOMOREFILES = Hr(0x80030012u);
constexpr HRESULT STG_E_WRITEFAULT = Hr(0x8003001Du);
constexpr HRESULT STG_E_READFAULT = Hr(0x8003001Eu);
constexpr HRESULT STG_E_SHAREVIOLATION = Hr(0x80030020u);
constexpr HRESULT STG_E_LOCKVIOLATION = Hr(0x80030021u);
constexpr HRESULT STG_E_FILEALREADYEXISTS = Hr(0x80030050u);
constexpr HRESULT STG_E_INVALIDPARAMETER = Hr(0x80030057u);
constexpr HRESULT STG_E_MEDIUMFULL = Hr(0x80030070u);
constexpr HRESULT STG_E_INVALIDHEADER = Hr(0x800300FBu);
constexpr HRESULT STG_E_INVALIDNAME = Hr(0x800300FCu);
constexpr HRESULT STG_E_UNKNOWN = Hr(0x800300FDu);
constexpr HRESULT STG_E_UNIMPLEMENTEDFUNCTION = Hr(0x800300FEu);
constexpr HRESULT STG_E_INVALIDFLAG = Hr(0x800300FFu);
constexpr HRESULT STG_E_INUSE = Hr(0x80030100u);
constexpr HRESULT STG_E_NOTCURRENT = Hr(0x80030101u);
constexpr HRESULT STG_E_REVERTED = Hr(0x80030102u);
constexpr HRESULT STG_E_CANTSAVE = Hr(0x80030103u);
constexpr HRESULT STG_E_OLDFORMAT = Hr(0x80030104u);
constexpr HRESULT STG_E_OLDDLL = Hr(0x80030105u);
constexpr HRESULT STG_E_SHAREREQUIRED = Hr(0x80030106u);
constexpr HRESULT STG_E_DOCFILECORRUPT = Hr(0x80030109u);
constexpr HRESULT STG_E_DOCFILETOOLARGE = Hr(0x80030111u);

} // namespace talvor::platform::storage
