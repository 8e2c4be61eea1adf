// The binary type library format "MSFT", as far as this reader uses it. All numbers are
// little-endian 32-bit unless said otherwise; offsets into segments are relative to the
// segment's start.
//
// Header, at 0:
//   0x00 magic "MSFT"            0x04 version 0x00010002     0x08 library GUID (guid offset)
//   0x0C lcid                    0x10 lcid2                  0x14 flags: low nibble SYSKIND,
//                                                                 0x100 a help DLL follows
//   0x18 version (major low word, minor high word)          0x1C LIBFLAGS
//   0x20 number of type infos    0x24 help string (string offset, -1 none)
//   0x28 help string context     0x2C help context           0x30 name table count
//   0x34 name table characters   0x38 library name (name offset)
//   0x3C help file (string offset)                           0x40 custom data offset
//   0x44 unknown; 0x20 in every file we have                 0x48 unknown; 0x80
//   0x4C href of IDispatch       0x50 number of import infos
//   0x54 help DLL name (string offset), only with flag 0x100
// then one 32-bit offset per type info (into segment 0), then 15 segment entries of
// 16 bytes: offset (-1 absent), length, -1, 0x0F.
#pragma once

#include <cstdint>

namespace talvor::platform::typelib::msft {

constexpr std::uint32_t Magic = 0x5446534D; // "MSFT"
constexpr std::uint32_t HeaderSize = 0x54;
constexpr std::uint32_t HelpDllFlag = 0x100;
constexpr int SegmentCount = 15;

enum Segment {
    TypeInfoTable = 0, // 0x64-byte type info entries
    ImportInfos = 1,   // 12 bytes: flags, import file offset, guid offset or type index
    ImportFiles = 2,   // guid offset, lcid, version, 16-bit length << 2, name, padding
    RefTable = 3,      // 16 bytes: href, IMPLTYPEFLAGS, custom data, next (-1 at the end)
    GuidHash = 4,
    GuidTable = 5, // 24 bytes: GUID, href, next in hash chain
    NameHash = 6,
    NameTable = 7,       // href, next in hash chain, length byte + hash, characters, padding
    StringTable = 8,     // 16-bit length, characters, padding
    TypeDescTable = 9,   // 8 bytes: vt, flags, 32-bit reference
    ArrayDescTable = 10, // element type, dims (low word), then count and lower bound per dim
    CustomData = 11,     // 16-bit vt, then the value (a string: 32-bit length, characters)
    CustomDataGuids = 12,
};

// Type info entry, 0x64 bytes, in 32-bit words:
//   0 typekind: low nibble TYPEKIND, bits 11-15 alignment    1 offset of the member block
//   6 cElement: functions low word, variables high word      11 guid offset (-1 none)
//   12 TYPEFLAGS   13 name offset   14 version   15 help string   17 help context
//   19 implemented types low word, vtable size high word    20 instance size
//   21 datatype1: the parent's href (interface), first ref table offset (coclass),
//      the aliased type (alias)                               22 datatype2
constexpr std::uint32_t TypeInfoSize = 0x64;

// Function record: word 0 low word the record size; 1 the result type; 2 FUNCFLAGS;
// 3 low word vtable offset; 4 FKCCIC: bits 0-2 FUNCKIND, 3-6 INVOKEKIND, 8-11 CALLCONV,
// bit 12 default values present; 5 parameter count low word, optional count high word;
// then optional words (help context, help string, entry, 2 unknown, help string context,
// custom data), then one default value per parameter with bit 12, then 12 bytes a
// parameter: type, name offset, PARAMFLAGS.
constexpr std::uint32_t FuncFixedSize = 24;
constexpr std::uint32_t ParamInfoSize = 12;
constexpr std::uint32_t FuncHasDefaults = 0x1000;

// Variable record: word 0 low word the size; 1 type; 2 VARFLAGS; 3 low word VARKIND;
// 4 value (constant) or offset; then optional words (help context, help string, ...).
constexpr std::uint32_t VarFixedSize = 20;

// A 32-bit type with the top bit set is a simple type: vt in the low 15 bits. A constant
// value with the top bit set is inline: vt in bits 26-30, the value in bits 0-25.
constexpr std::uint32_t SimpleTypeBit = 0x80000000u;
constexpr std::uint32_t ImportByGuid = 0x10000;

} // namespace talvor::platform::typelib::msft
