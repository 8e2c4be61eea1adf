// Reader of the "MSFT" type library: header, segment directory, type infos, members, names.
// All reads go through the ByteView, so a damaged file ends in a message, never outside the
// buffer; the whole library is checked at load, so later calls can trust what they find.
#include "platform/com/typelib/detail/msft_type_lib.h"

#include "platform/com/typelib/detail/msft_format.h"
#include "platform/com/typelib/detail/type_lib_cache.h"

#include <cstring>
#include <cwctype>

namespace talvor::platform::typelib {
namespace {

constexpr int MaxTypeDepth = 32; // no real type nests deeper; a loop in the table ends here

std::string Hex(std::uint64_t value) {
    char buffer[24];
    std::snprintf(buffer, sizeof buffer, "0x%llx", static_cast<unsigned long long>(value));
    return buffer;
}

bool IsValidInvokeKind(std::uint32_t kind) {
    return kind == INVOKE_FUNC || kind == INVOKE_PROPERTYGET || kind == INVOKE_PROPERTYPUT ||
           kind == INVOKE_PROPERTYPUTREF;
}

} // namespace

MsftTypeLib::MsftTypeLib(std::vector<std::uint8_t> bytes, std::string folder)
    : m_bytes(std::move(bytes)), m_folder(std::move(folder)), m_view(m_bytes) {}

MsftTypeLib::~MsftTypeLib() {
    for (VARIANT& value : m_values)
        VariantClear(&value);
    for (PARAMDESCEX& value : m_defaults)
        VariantClear(&value.varDefaultValue);
}

bool MsftTypeLib::SegmentRange(int segment, std::int64_t offset, std::uint32_t size,
                               std::uint64_t& at, const char* what) {
    const SegmentEntry& s = m_segments[segment];
    if (offset < 0 || s.offset < 0 || static_cast<std::uint64_t>(offset) > s.length ||
        size > s.length - static_cast<std::uint64_t>(offset)) {
        m_view.FailWith(std::string("typelib: ") + what + " at " + Hex(offset) +
                        " lies outside its segment (" + Hex(s.length) + " bytes)");
        return false;
    }
    at = static_cast<std::uint64_t>(s.offset) + static_cast<std::uint64_t>(offset);
    return true;
}

bool MsftTypeLib::Load() {
    if (!ReadHeader())
        return false;
    for (UINT i = 0; i < m_infos.size(); ++i) {
        if (!ReadTypeInfo(i))
            return false;
    }
    return true;
}

bool MsftTypeLib::ReadHeader() {
    std::uint32_t magic = 0, version = 0, flags = 0, libVersion = 0, libFlags = 0, count = 0;
    std::int32_t guidOffset = 0;
    if (!m_view.U32(0, magic, "typelib: header"))
        return false;
    if (magic != msft::Magic) {
        m_view.FailWith("typelib: no \"MSFT\" signature");
        return false;
    }
    if (!m_view.U32(0x04, version, "typelib: header") ||
        !m_view.I32(0x08, guidOffset, "typelib: header") ||
        !m_view.U32(0x0C, m_attr.lcid, "typelib: header") ||
        !m_view.U32(0x14, flags, "typelib: header") ||
        !m_view.U32(0x18, libVersion, "typelib: header") ||
        !m_view.U32(0x1C, libFlags, "typelib: header") ||
        !m_view.U32(0x20, count, "typelib: header") ||
        !m_view.I32(0x24, m_helpString, "typelib: header") ||
        !m_view.U32(0x2C, m_helpContext, "typelib: header") ||
        !m_view.I32(0x38, m_name, "typelib: header") ||
        !m_view.I32(0x3C, m_helpFile, "typelib: header") ||
        !m_view.U32(0x4C, m_dispatchHref, "typelib: header"))
        return false;
    if ((flags & 0xF) > SYS_WIN64) {
        m_view.FailWith("typelib: unknown system kind " + std::to_string(flags & 0xF));
        return false;
    }
    m_attr.syskind = static_cast<SYSKIND>(flags & 0xF);
    m_attr.wMajorVerNum = static_cast<WORD>(libVersion & 0xFFFF);
    m_attr.wMinorVerNum = static_cast<WORD>(libVersion >> 16);
    m_attr.wLibFlags = static_cast<WORD>(libFlags);
    std::uint64_t at = msft::HeaderSize + ((flags & msft::HelpDllFlag) ? 4 : 0);
    // Each type info takes at least its 0x64-byte entry, so a count beyond that is damage.
    if (count > m_view.Size() / msft::TypeInfoSize) {
        m_view.FailWith("typelib: " + std::to_string(count) + " type infos can't fit in " +
                        Hex(m_view.Size()) + " bytes");
        return false;
    }
    at += 4ull * count; // the type info offsets; entries are read by index below
    for (int i = 0; i < msft::SegmentCount; ++i) {
        std::int32_t offset = 0;
        std::uint32_t length = 0;
        if (!m_view.I32(at + 16ull * i, offset, "typelib: segment directory") ||
            !m_view.U32(at + 16ull * i + 4, length, "typelib: segment directory"))
            return false;
        if (offset >= 0 &&
            !m_view.At(static_cast<std::uint32_t>(offset), length, "typelib: segment"))
            return false;
        m_segments[i] = {offset, offset < 0 ? 0 : length};
    }
    if (count > 0 && m_segments[msft::TypeInfoTable].length / msft::TypeInfoSize < count) {
        m_view.FailWith("typelib: type info table holds fewer than " + std::to_string(count) +
                        " entries");
        return false;
    }
    if (!ReadGuid(guidOffset, m_attr.guid, "library guid") || !CheckName(m_name, "library name") ||
        !CheckString(m_helpString, "library help") || !CheckString(m_helpFile, "help file"))
        return false;
    m_typeDescCache.assign(m_segments[msft::TypeDescTable].length / 8, nullptr);
    m_infos.resize(count);
    m_halves.resize(count);
    return true;
}

bool MsftTypeLib::ReadGuid(std::int32_t offset, GUID& guid, const char* what) {
    if (offset < 0) {
        guid = GUID_NULL;
        return true;
    }
    std::uint64_t at = 0;
    if (!SegmentRange(msft::GuidTable, offset, 16, at, what))
        return false;
    const std::uint8_t* p = m_view.At(at, 16, what);
    if (!p)
        return false;
    guid.Data1 = static_cast<std::uint32_t>(p[0] | p[1] << 8 | p[2] << 16) |
                 static_cast<std::uint32_t>(p[3]) << 24;
    guid.Data2 = static_cast<std::uint16_t>(p[4] | p[5] << 8);
    guid.Data3 = static_cast<std::uint16_t>(p[6] | p[7] << 8);
    std::memcpy(guid.Data4, p + 8, 8);
    return true;
}

bool MsftTypeLib::CheckName(std::int32_t offset, const char* what) {
    if (offset < 0)
        return true;
    std::uint64_t at = 0;
    if (!SegmentRange(msft::NameTable, offset, 12, at, what))
        return false;
    std::uint8_t length = 0;
    m_view.U8(at + 8, length, what);
    return SegmentRange(msft::NameTable, offset, 12u + length, at, what);
}

bool MsftTypeLib::CheckString(std::int32_t offset, const char* what) {
    if (offset < 0)
        return true;
    std::uint64_t at = 0;
    if (!SegmentRange(msft::StringTable, offset, 2, at, what))
        return false;
    std::uint16_t length = 0;
    m_view.U16(at, length, what);
    return SegmentRange(msft::StringTable, offset, 2u + length, at, what);
}

std::wstring MsftTypeLib::NameWide(std::int32_t offset) const {
    // Checked at load: the entry and its characters lie inside the name table.
    if (offset < 0)
        return std::wstring();
    const std::uint8_t* p =
        m_bytes.data() + m_segments[msft::NameTable].offset + static_cast<std::uint32_t>(offset);
    const std::uint8_t length = p[8];
    // Names are single-byte text of the library's locale; the first 256 code points match.
    return std::wstring(p + 12, p + 12 + length);
}

BSTR MsftTypeLib::NameText(std::int32_t offset) const {
    if (offset < 0)
        return nullptr;
    const std::uint8_t* p =
        m_bytes.data() + m_segments[msft::NameTable].offset + static_cast<std::uint32_t>(offset);
    const std::uint8_t length = p[8];
    BSTR text = SysAllocStringLen(nullptr, length);
    if (!text)
        return nullptr;
    for (std::uint8_t i = 0; i < length; ++i)
        text[i] = p[12 + i];
    return text;
}

BSTR MsftTypeLib::StringText(std::int32_t offset) const {
    if (offset < 0)
        return nullptr;
    const std::uint8_t* p =
        m_bytes.data() + m_segments[msft::StringTable].offset + static_cast<std::uint32_t>(offset);
    const std::uint16_t length = static_cast<std::uint16_t>(p[0] | p[1] << 8);
    BSTR text = SysAllocStringLen(nullptr, length);
    if (!text)
        return nullptr;
    for (std::uint16_t i = 0; i < length; ++i)
        text[i] = p[2 + i];
    return text;
}

bool MsftTypeLib::DecodeTypeInto(std::uint32_t encoded, TYPEDESC& out, int depth) {
    out = TYPEDESC{};
    if (encoded & msft::SimpleTypeBit) {
        out.vt = static_cast<VARTYPE>(encoded & VT_TYPEMASK);
        if (out.vt == VT_PTR || out.vt == VT_SAFEARRAY || out.vt == VT_CARRAY) {
            // These need the description of what they point to or hold.
            m_view.FailWith("typelib: simple type " + std::to_string(out.vt) + " (" + Hex(encoded) +
                            ") has no description of its element");
            return false;
        }
        return true;
    }
    if (depth > MaxTypeDepth) {
        m_view.FailWith("typelib: type description at " + Hex(encoded) + " nests too deep");
        return false;
    }
    if (encoded % 8 != 0 || encoded / 8 >= m_typeDescCache.size()) {
        m_view.FailWith("typelib: type description " + Hex(encoded) + " lies outside its table (" +
                        Hex(m_segments[msft::TypeDescTable].length) + " bytes)");
        return false;
    }
    std::uint64_t at = 0;
    if (!SegmentRange(msft::TypeDescTable, encoded, 8, at, "type description"))
        return false;
    std::uint16_t vt = 0, low = 0, high = 0;
    m_view.U16(at, vt, "type description");
    m_view.U16(at + 4, low, "type description");
    m_view.U16(at + 6, high, "type description");
    out.vt = static_cast<VARTYPE>(vt & VT_TYPEMASK);
    const std::uint32_t reference = static_cast<std::uint32_t>(high) << 16 | low;
    switch (out.vt) {
    case VT_PTR:
    case VT_SAFEARRAY:
        // With the top bit of the high word set, the low word is the simple type pointed to.
        out.lptdesc = const_cast<TYPEDESC*>(
            DecodeType(high & 0x8000 ? (msft::SimpleTypeBit | low) : reference, depth + 1));
        return out.lptdesc != nullptr;
    case VT_USERDEFINED:
        out.hreftype = reference;
        return true;
    case VT_CARRAY: {
        std::uint64_t arrayAt = 0;
        if (!SegmentRange(msft::ArrayDescTable, reference, 8, arrayAt, "array description"))
            return false;
        std::uint32_t element = 0, dims = 0;
        m_view.U32(arrayAt, element, "array description");
        m_view.U32(arrayAt + 4, dims, "array description");
        const std::uint16_t cDims = static_cast<std::uint16_t>(dims & 0xFFFF);
        if (cDims == 0 || !SegmentRange(msft::ArrayDescTable, reference, 8u + 8u * cDims, arrayAt,
                                        "array bounds"))
            return cDims != 0 ? false
                              : (m_view.FailWith("typelib: array without dimensions"), false);
        const std::size_t bytes = sizeof(ARRAYDESC) + sizeof(SAFEARRAYBOUND) * cDims;
        auto block = std::make_unique<std::uint8_t[]>(bytes);
        auto* desc = new (block.get()) ARRAYDESC{};
        if (!DecodeTypeInto(element, desc->tdescElem, depth + 1))
            return false;
        desc->cDims = cDims;
        for (std::uint16_t d = 0; d < cDims; ++d) {
            std::uint32_t elements = 0;
            std::int32_t lower = 0;
            m_view.U32(arrayAt + 8 + 8ull * d, elements, "array bounds");
            m_view.I32(arrayAt + 12 + 8ull * d, lower, "array bounds");
            desc->rgbounds[d] = {elements, lower};
        }
        out.lpadesc = desc;
        m_arrayDescs.push_back(std::move(block));
        return !m_view.Failed();
    }
    default:
        return true;
    }
}

const TYPEDESC* MsftTypeLib::DecodeType(std::uint32_t encoded, int depth) {
    const bool cached = !(encoded & msft::SimpleTypeBit) && encoded % 8 == 0 &&
                        encoded / 8 < m_typeDescCache.size();
    if (cached && m_typeDescCache[encoded / 8])
        return m_typeDescCache[encoded / 8];
    TYPEDESC desc;
    if (!DecodeTypeInto(encoded, desc, depth))
        return nullptr;
    m_typeDescs.push_back(desc);
    if (cached)
        m_typeDescCache[encoded / 8] = &m_typeDescs.back();
    return &m_typeDescs.back();
}

bool MsftTypeLib::ReadValue(std::int32_t encoded, VARIANT& value, const char* what) {
    VariantInit(&value);
    if (encoded < 0) {
        const std::uint32_t bits = static_cast<std::uint32_t>(encoded);
        value.vt = static_cast<VARTYPE>((bits & 0x7C000000u) >> 26);
        const std::uint32_t number = bits & 0x03FFFFFFu;
        switch (value.vt) {
        case VT_I2:
        case VT_BOOL:
            value.iVal = static_cast<SHORT>(number);
            return true;
        case VT_I1:
        case VT_UI1:
            value.bVal = static_cast<BYTE>(number);
            return true;
        case VT_UI2:
            value.uiVal = static_cast<USHORT>(number);
            return true;
        case VT_I4:
        case VT_UI4:
        case VT_INT:
        case VT_UINT:
        case VT_ERROR:
        case VT_HRESULT:
            value.ulVal = number;
            return true;
        case VT_VARIANT:
            // widl writes a small default of a VARIANT parameter so: the number is the value.
            value.vt = VT_I4;
            value.lVal = static_cast<LONG>(number);
            return true;
        case VT_EMPTY:
        case VT_NULL:
            return true;
        default:
            m_view.FailWith(std::string("typelib: ") + what + " has inline type " +
                            std::to_string(value.vt));
            return false;
        }
    }
    std::uint64_t at = 0;
    if (!SegmentRange(msft::CustomData, encoded, 2, at, what))
        return false;
    std::uint16_t vt = 0;
    m_view.U16(at, vt, what);
    value.vt = vt;
    std::uint64_t dataAt = 0;
    switch (vt) {
    case VT_EMPTY:
    case VT_NULL:
        return true;
    case VT_I1:
    case VT_UI1:
    case VT_I2:
    case VT_UI2:
    case VT_BOOL:
    case VT_I4:
    case VT_UI4:
    case VT_INT:
    case VT_UINT:
    case VT_R4:
    case VT_ERROR:
    case VT_HRESULT: {
        std::uint32_t bits = 0;
        if (!SegmentRange(msft::CustomData, encoded + 2ll, 4, dataAt, what) ||
            !m_view.U32(dataAt, bits, what))
            return false;
        if (vt == VT_I1 || vt == VT_UI1)
            value.bVal = static_cast<BYTE>(bits);
        else if (vt == VT_I2 || vt == VT_UI2 || vt == VT_BOOL)
            value.uiVal = static_cast<USHORT>(bits);
        else
            value.ulVal = bits;
        return true;
    }
    case VT_R8:
    case VT_CY:
    case VT_DATE:
    case VT_I8:
    case VT_UI8: {
        if (!SegmentRange(msft::CustomData, encoded + 2ll, 8, dataAt, what))
            return false;
        return m_view.U64(dataAt, value.ullVal, what);
    }
    case VT_DECIMAL: {
        const std::uint8_t* p = nullptr;
        if (!SegmentRange(msft::CustomData, encoded + 2ll, 14, dataAt, what) ||
            !(p = m_view.At(dataAt, 14, what)))
            return false;
        // The 14 bytes behind the type word of a DECIMAL.
        value.decVal.scale = p[0];
        value.decVal.sign = p[1];
        std::memcpy(&value.decVal.Hi32, p + 2, 4);
        std::memcpy(&value.decVal.Lo64, p + 6, 8);
        value.vt = VT_DECIMAL;
        return true;
    }
    case VT_BSTR: {
        std::int32_t length = 0;
        if (!SegmentRange(msft::CustomData, encoded + 2ll, 4, dataAt, what) ||
            !m_view.I32(dataAt, length, what))
            return false;
        if (length < 0) { // a null string
            value.bstrVal = nullptr;
            return true;
        }
        const std::uint8_t* p = nullptr;
        if (!SegmentRange(msft::CustomData, encoded + 6ll, static_cast<std::uint32_t>(length),
                          dataAt, what) ||
            !(p = m_view.At(dataAt, static_cast<std::uint32_t>(length), what)))
            return false;
        value.bstrVal = SysAllocStringLen(nullptr, static_cast<UINT>(length));
        for (std::int32_t i = 0; i < length; ++i)
            value.bstrVal[i] = p[i];
        return true;
    }
    default:
        m_view.FailWith(std::string("typelib: ") + what + " at " + Hex(encoded) +
                        " has unknown type " + std::to_string(vt));
        value.vt = VT_EMPTY;
        return false;
    }
}

bool MsftTypeLib::ReadTypeInfo(UINT index) {
    std::uint64_t at = 0;
    if (!SegmentRange(msft::TypeInfoTable, static_cast<std::int64_t>(index) * msft::TypeInfoSize,
                      msft::TypeInfoSize, at, "type info"))
        return false;
    std::uint32_t w[25];
    for (int i = 0; i < 25; ++i) {
        if (!m_view.U32(at + 4ull * i, w[i], "type info"))
            return false;
    }
    const TYPEKIND kind = static_cast<TYPEKIND>(w[0] & 0xF);
    if (kind >= TKIND_MAX) {
        m_view.FailWith("typelib: type info " + std::to_string(index) + " has kind " +
                        std::to_string(kind));
        return false;
    }
    const bool dual = kind == TKIND_DISPATCH && (w[12] & TYPEFLAG_FDUAL);
    auto info = std::make_unique<MsftTypeInfo>(
        *this, index, dual ? MsftTypeInfo::View::DispatchOfDual : MsftTypeInfo::View::Plain);
    TYPEATTR& a = info->m_attr;
    if (!ReadGuid(static_cast<std::int32_t>(w[11]), a.guid, "type guid"))
        return false;
    a.lcid = m_attr.lcid;
    a.memidConstructor = MEMBERID_NIL;
    a.memidDestructor = MEMBERID_NIL;
    a.typekind = kind;
    a.cbAlignment = static_cast<WORD>((w[0] >> 11) & 0x1F);
    a.cbSizeInstance = w[20];
    a.cImplTypes = static_cast<WORD>(w[19] & 0xFFFF);
    a.cbSizeVft = static_cast<WORD>(w[19] >> 16);
    a.wTypeFlags = static_cast<WORD>(w[12]);
    a.wMajorVerNum = static_cast<WORD>(w[14] & 0xFFFF);
    a.wMinorVerNum = static_cast<WORD>(w[14] >> 16);
    a.tdescAlias.vt = VT_EMPTY;
    info->m_texts = {
        this, static_cast<std::int32_t>(w[13]), static_cast<std::int32_t>(w[15]), w[17], nullptr,
        0};
    if (!CheckName(info->m_texts.name, "type name") ||
        !CheckString(info->m_texts.helpString, "type help"))
        return false;
    if (kind == TKIND_ALIAS) {
        if (!DecodeTypeInto(w[21], a.tdescAlias, 0))
            return false;
    }
    if (!ReadMembers(*info, w[1], w[6] & 0xFFFF, w[6] >> 16))
        return false;
    if (!ReadImplTypes(*info, static_cast<std::int32_t>(w[21]), a.cImplTypes))
        return false;
    a.cFuncs = static_cast<WORD>(info->m_funcs.size());
    a.cVars = static_cast<WORD>(info->m_vars.size());
    if (dual) {
        // The record holds the interface: the file keeps one entry for both halves.
        auto half =
            std::make_unique<MsftTypeInfo>(*this, index, MsftTypeInfo::View::InterfaceOfDual);
        half->m_attr = a;
        half->m_attr.typekind = TKIND_INTERFACE;
        half->m_texts = info->m_texts;
        half->m_funcs = std::move(info->m_funcs);
        half->m_vars = std::move(info->m_vars);
        half->m_impls = std::move(info->m_impls);
        half->m_paramNames = std::move(info->m_paramNames);
        half->m_params = std::move(info->m_params);
        info->m_funcs.clear();
        info->m_vars.clear();
        info->m_impls.clear();
        m_halves[index] = std::move(half);
    }
    m_infos[index] = std::move(info);
    return true;
}

bool MsftTypeLib::ReadImplTypes(MsftTypeInfo& info, std::int32_t dataType1, std::uint32_t count) {
    if (count == 0)
        return true;
    switch (info.m_attr.typekind) {
    case TKIND_COCLASS: {
        std::int32_t ref = dataType1;
        for (std::uint32_t i = 0; i < count; ++i) {
            std::uint64_t at = 0;
            if (!SegmentRange(msft::RefTable, ref, 16, at, "implemented type"))
                return false;
            std::uint32_t href = 0;
            std::int32_t flags = 0, next = 0;
            m_view.U32(at, href, "implemented type");
            m_view.I32(at + 4, flags, "implemented type");
            m_view.I32(at + 12, next, "implemented type");
            info.m_impls.push_back({href, flags});
            if (next < 0 && i + 1 < count) {
                m_view.FailWith("typelib: coclass lists fewer implemented types than it counts");
                return false;
            }
            ref = next;
        }
        return true;
    }
    case TKIND_DISPATCH:
        if (!(info.m_attr.wTypeFlags & TYPEFLAG_FDUAL)) {
            info.m_impls.push_back({m_dispatchHref, 0});
            return true;
        }
        [[fallthrough]];
    case TKIND_INTERFACE:
        info.m_impls.push_back({static_cast<HREFTYPE>(dataType1), 0});
        return true;
    default:
        return true;
    }
}

bool MsftTypeLib::ReadMembers(MsftTypeInfo& info, std::uint32_t memOffset, std::uint32_t cFuncs,
                              std::uint32_t cVars) {
    const std::uint32_t total = cFuncs + cVars;
    if (total == 0)
        return true;
    std::uint32_t blockLength = 0;
    if (!m_view.U32(memOffset, blockLength, "typelib: member block"))
        return false;
    const std::uint64_t records = static_cast<std::uint64_t>(memOffset) + 4;
    const std::uint64_t tail = records + blockLength;
    // Behind the records: member ids, name offsets and record offsets, one word each.
    if (!m_view.At(tail, 12ull * total, "typelib: member tables"))
        return false;
    const std::uint8_t* ids = m_view.Data() + tail;
    const std::uint8_t* names = ids + 4ull * total;
    const std::uint8_t* offsets = names + 4ull * total;
    auto word = [](const std::uint8_t* p, std::uint32_t i) {
        p += 4ull * i;
        return static_cast<std::uint32_t>(p[0]) | static_cast<std::uint32_t>(p[1]) << 8 |
               static_cast<std::uint32_t>(p[2]) << 16 | static_cast<std::uint32_t>(p[3]) << 24;
    };
    info.m_funcs.resize(cFuncs);
    info.m_vars.resize(cVars);
    // Parameter storage is counted first, so the pointers into it stay put.
    std::uint64_t paramTotal = 0;
    for (std::uint32_t i = 0; i < cFuncs; ++i) {
        const std::uint32_t offset = word(offsets, i);
        std::uint16_t nrargs = 0;
        if (offset >= blockLength ||
            !m_view.U16(records + offset + 20, nrargs, "typelib: function record"))
            return m_view.Failed()
                       ? false
                       : (m_view.FailWith("typelib: function record offset " + Hex(offset) +
                                          " lies outside the member block"),
                          false);
        paramTotal += nrargs;
    }
    info.m_params.resize(paramTotal);
    info.m_paramNames.resize(paramTotal);
    std::uint64_t nextParam = 0;
    for (std::uint32_t i = 0; i < cFuncs; ++i) {
        const std::uint32_t offset = word(offsets, i);
        const std::uint64_t r = records + offset;
        std::uint32_t info0 = 0, dataType = 0, flags = 0, vtable = 0, fkccic = 0, args = 0;
        if (!m_view.U32(r, info0, "typelib: function record") ||
            !m_view.U32(r + 4, dataType, "typelib: function record") ||
            !m_view.U32(r + 8, flags, "typelib: function record") ||
            !m_view.U32(r + 12, vtable, "typelib: function record") ||
            !m_view.U32(r + 16, fkccic, "typelib: function record") ||
            !m_view.U32(r + 20, args, "typelib: function record"))
            return false;
        const std::uint32_t size = info0 & 0xFFFF;
        const std::uint32_t nrargs = args & 0xFFFF;
        const bool hasDefaults = fkccic & msft::FuncHasDefaults;
        const std::uint64_t fixed =
            msft::FuncFixedSize + nrargs * (msft::ParamInfoSize + (hasDefaults ? 4ull : 0));
        if (size < fixed || offset + static_cast<std::uint64_t>(size) > blockLength) {
            m_view.FailWith("typelib: function record at " + Hex(r) + " has size " + Hex(size));
            return false;
        }
        const std::uint32_t optional = static_cast<std::uint32_t>((size - fixed) / 4);
        FuncEntry& f = info.m_funcs[i];
        FUNCDESC& d = f.desc;
        d.memid = static_cast<MEMBERID>(word(ids, i));
        d.funckind = static_cast<FUNCKIND>(fkccic & 7);
        const std::uint32_t invkind = (fkccic >> 3) & 0xF;
        const std::uint32_t callconv = (fkccic >> 8) & 0xF;
        if (d.funckind > FUNC_DISPATCH || !IsValidInvokeKind(invkind) || callconv >= CC_MAX) {
            m_view.FailWith("typelib: function record at " + Hex(r) + " has kinds " + Hex(fkccic));
            return false;
        }
        d.invkind = static_cast<INVOKEKIND>(invkind);
        d.callconv = static_cast<CALLCONV>(callconv);
        d.cParams = static_cast<SHORT>(nrargs);
        d.cParamsOpt = static_cast<SHORT>(args >> 16);
        d.oVft = static_cast<SHORT>(vtable & 0xFFFF);
        d.wFuncFlags = static_cast<WORD>(flags);
        if (!DecodeTypeInto(dataType, d.elemdescFunc.tdesc, 0))
            return false;
        d.elemdescFunc.idldesc = {};
        f.texts.lib = this;
        f.texts.name = static_cast<std::int32_t>(word(names, i));
        if (!CheckName(f.texts.name, "function name"))
            return false;
        std::int32_t optionalWords[2] = {0, -1};
        for (std::uint32_t k = 0; k < optional && k < 2; ++k)
            m_view.I32(r + msft::FuncFixedSize + 4ull * k, optionalWords[k], "function record");
        f.texts.helpContext = static_cast<std::uint32_t>(optionalWords[0]);
        f.texts.helpString = optionalWords[1];
        if (!CheckString(f.texts.helpString, "function help"))
            return false;
        const std::uint64_t defaultsAt = r + msft::FuncFixedSize + 4ull * optional;
        const std::uint64_t paramsAt = defaultsAt + (hasDefaults ? 4ull * nrargs : 0);
        f.texts.paramNames = info.m_paramNames.data() + nextParam;
        f.texts.storedParams = static_cast<std::uint16_t>(nrargs);
        d.lprgelemdescParam = nrargs ? info.m_params.data() + nextParam : nullptr;
        for (std::uint32_t p = 0; p < nrargs; ++p) {
            std::uint32_t paramType = 0, paramFlags = 0;
            std::int32_t paramName = 0;
            const std::uint64_t pa = paramsAt + msft::ParamInfoSize * p;
            m_view.U32(pa, paramType, "parameter");
            m_view.I32(pa + 4, paramName, "parameter");
            m_view.U32(pa + 8, paramFlags, "parameter");
            ELEMDESC& e = info.m_params[nextParam + p];
            if (!DecodeTypeInto(paramType, e.tdesc, 0) || !CheckName(paramName, "parameter name"))
                return false;
            e.paramdesc.wParamFlags = static_cast<USHORT>(paramFlags);
            e.paramdesc.pparamdescex = nullptr;
            info.m_paramNames[nextParam + p] = paramName;
            if (hasDefaults && (paramFlags & PARAMFLAG_FHASDEFAULT)) {
                std::int32_t encoded = -1;
                m_view.I32(defaultsAt + 4ull * p, encoded, "default value");
                m_defaults.push_back(PARAMDESCEX{sizeof(PARAMDESCEX), {}});
                if (!ReadValue(encoded, m_defaults.back().varDefaultValue, "default value"))
                    return false;
                e.paramdesc.pparamdescex = &m_defaults.back();
            }
        }
        nextParam += nrargs;
        if (m_view.Failed())
            return false;
    }
    for (std::uint32_t i = 0; i < cVars; ++i) {
        const std::uint32_t offset = word(offsets, cFuncs + i);
        const std::uint64_t r = records + offset;
        std::uint32_t info0 = 0, dataType = 0, flags = 0, kind = 0;
        std::int32_t value = 0;
        if (offset >= blockLength || !m_view.U32(r, info0, "typelib: variable record") ||
            !m_view.U32(r + 4, dataType, "typelib: variable record") ||
            !m_view.U32(r + 8, flags, "typelib: variable record") ||
            !m_view.U32(r + 12, kind, "typelib: variable record") ||
            !m_view.I32(r + 16, value, "typelib: variable record"))
            return m_view.Failed()
                       ? false
                       : (m_view.FailWith("typelib: variable record offset " + Hex(offset) +
                                          " lies outside the member block"),
                          false);
        const std::uint32_t size = info0 & 0xFFFF;
        if (size < msft::VarFixedSize || offset + static_cast<std::uint64_t>(size) > blockLength ||
            (kind & 0xFFFF) > VAR_DISPATCH) {
            m_view.FailWith("typelib: variable record at " + Hex(r) + " is malformed");
            return false;
        }
        VarEntry& v = info.m_vars[i];
        VARDESC& d = v.desc;
        d.memid = static_cast<MEMBERID>(word(ids, cFuncs + i));
        d.varkind = static_cast<VARKIND>(kind & 0xFFFF);
        d.wVarFlags = static_cast<WORD>(flags);
        if (!DecodeTypeInto(dataType, d.elemdescVar.tdesc, 0))
            return false;
        d.elemdescVar.idldesc = {};
        if (d.varkind == VAR_CONST) {
            m_values.emplace_back();
            if (!ReadValue(value, m_values.back(), "constant"))
                return false;
            d.lpvarValue = &m_values.back();
        } else {
            d.oInst = static_cast<ULONG>(value);
        }
        v.texts.lib = this;
        v.texts.name = static_cast<std::int32_t>(word(names, cFuncs + i));
        const std::uint32_t optional = (size - msft::VarFixedSize) / 4;
        std::int32_t optionalWords[2] = {0, -1};
        for (std::uint32_t k = 0; k < optional && k < 2; ++k)
            m_view.I32(r + msft::VarFixedSize + 4ull * k, optionalWords[k], "variable record");
        v.texts.helpContext = static_cast<std::uint32_t>(optionalWords[0]);
        v.texts.helpString = optionalWords[1];
        if (!CheckName(v.texts.name, "variable name") ||
            !CheckString(v.texts.helpString, "variable help"))
            return false;
    }
    return !m_view.Failed();
}

// --- ITypeLib -----------------------------------------------------------------------------

HRESULT MsftTypeLib::QueryInterface(REFIID iid, void** object) {
    if (!object)
        return E_POINTER;
    if (iid == IID_IUnknown || iid == IID_ITypeLib) {
        *object = static_cast<ITypeLib*>(this);
        AddRef();
        return S_OK;
    }
    *object = nullptr;
    return E_NOINTERFACE;
}

ULONG MsftTypeLib::SharedAddRef() {
    return m_refs.Add();
}

ULONG MsftTypeLib::SharedRelease() {
    ULONG remaining = 0;
    if (m_refs.Drop(remaining))
        delete this;
    return remaining;
}

ULONG MsftTypeLib::AddRef() {
    return SharedAddRef();
}

ULONG MsftTypeLib::Release() {
    return SharedRelease();
}

UINT MsftTypeLib::GetTypeInfoCount() {
    return static_cast<UINT>(m_infos.size());
}

HRESULT MsftTypeLib::GetTypeInfo(UINT index, ITypeInfo** typeInfo) {
    if (!typeInfo)
        return E_INVALIDARG;
    *typeInfo = nullptr;
    if (index >= m_infos.size())
        return TYPE_E_ELEMENTNOTFOUND;
    *typeInfo = m_infos[index].get();
    AddRef();
    return S_OK;
}

HRESULT MsftTypeLib::GetTypeInfoType(UINT index, TYPEKIND* kind) {
    if (!kind)
        return E_INVALIDARG;
    if (index >= m_infos.size())
        return TYPE_E_ELEMENTNOTFOUND;
    *kind = m_infos[index]->m_attr.typekind;
    return S_OK;
}

HRESULT MsftTypeLib::GetTypeInfoOfGuid(REFGUID guid, ITypeInfo** typeInfo) {
    if (!typeInfo)
        return E_INVALIDARG;
    *typeInfo = nullptr;
    for (const auto& info : m_infos) {
        if (info->m_attr.guid == guid) {
            *typeInfo = info.get();
            AddRef();
            return S_OK;
        }
    }
    return TYPE_E_ELEMENTNOTFOUND;
}

HRESULT MsftTypeLib::GetLibAttr(TLIBATTR** attr) {
    if (!attr)
        return E_INVALIDARG;
    *attr = new TLIBATTR(m_attr);
    return S_OK;
}

void MsftTypeLib::ReleaseTLibAttr(TLIBATTR* attr) {
    delete attr;
}

HRESULT MsftTypeLib::GetTypeComp(ITypeComp** comp) {
    if (comp)
        *comp = nullptr;
    return E_NOTIMPL;
}

HRESULT MsftTypeLib::GetDocumentation(INT index, BSTR* name, BSTR* docString, DWORD* helpContext,
                                      BSTR* helpFile) {
    if (index == -1) {
        if (name)
            *name = NameText(m_name);
        if (docString)
            *docString = StringText(m_helpString);
        if (helpContext)
            *helpContext = m_helpContext;
        if (helpFile)
            *helpFile = HelpFile();
        return S_OK;
    }
    if (index < 0 || static_cast<std::size_t>(index) >= m_infos.size())
        return TYPE_E_ELEMENTNOTFOUND;
    return m_infos[index]->GetDocumentation(MEMBERID_NIL, name, docString, helpContext, helpFile);
}

HRESULT MsftTypeLib::IsName(LPOLESTR name, ULONG, BOOL* found) {
    if (!name || !found)
        return E_INVALIDARG;
    *found = FALSE;
    std::wstring wanted(name);
    auto same = [&](std::int32_t offset) {
        const std::wstring candidate = NameWide(offset);
        if (candidate.size() != wanted.size())
            return false;
        for (std::size_t i = 0; i < wanted.size(); ++i) {
            if (std::towlower(candidate[i]) != std::towlower(wanted[i]))
                return false;
        }
        return true;
    };
    for (const auto& info : m_infos) {
        if (same(info->m_texts.name)) {
            *found = TRUE;
            return S_OK;
        }
        const MsftTypeInfo* members =
            m_halves[info->Index()] ? m_halves[info->Index()].get() : info.get();
        for (const FuncEntry& f : members->m_funcs) {
            if (same(f.texts.name)) {
                *found = TRUE;
                return S_OK;
            }
        }
        for (const VarEntry& v : members->m_vars) {
            if (same(v.texts.name)) {
                *found = TRUE;
                return S_OK;
            }
        }
    }
    return S_OK;
}

HRESULT MsftTypeLib::FindName(LPOLESTR name, ULONG, ITypeInfo** typeInfos, MEMBERID* ids,
                              USHORT* found) {
    if (!name || !typeInfos || !ids || !found)
        return E_INVALIDARG;
    const USHORT room = *found;
    USHORT count = 0;
    for (const auto& info : m_infos) {
        if (count >= room)
            break;
        const std::wstring typeName = NameWide(info->m_texts.name);
        MEMBERID id = MEMBERID_NIL;
        bool hit = false;
        if (wcscasecmp(typeName.c_str(), name) == 0) {
            hit = true;
        } else {
            const MsftTypeInfo* members =
                m_halves[info->Index()] ? m_halves[info->Index()].get() : info.get();
            for (const FuncEntry& f : members->m_funcs) {
                if (wcscasecmp(NameWide(f.texts.name).c_str(), name) == 0) {
                    hit = true;
                    id = f.desc.memid;
                    break;
                }
            }
            for (const VarEntry& v : members->m_vars) {
                if (!hit && wcscasecmp(NameWide(v.texts.name).c_str(), name) == 0) {
                    hit = true;
                    id = v.desc.memid;
                }
            }
        }
        if (hit) {
            typeInfos[count] = info.get();
            AddRef();
            ids[count] = id;
            ++count;
        }
    }
    *found = count;
    return S_OK;
}

// --- references -----------------------------------------------------------------------------

HREFTYPE MsftTypeLib::AddForeignRef(ITypeInfo* typeInfo) {
    typeInfo->AddRef();
    m_foreign.emplace_back(typeInfo);
    return static_cast<HREFTYPE>((m_foreign.size() - 1) << 2 | 3);
}

HRESULT MsftTypeLib::LoadImport(std::uint32_t fileOffset, ITypeLib** lib) {
    for (ImportEntry& entry : m_imports) {
        if (entry.fileOffset == fileOffset && entry.tried) {
            if (FAILED(entry.result))
                return entry.result;
            *lib = entry.lib ? entry.lib.Get() : this; // empty for a library importing itself
            (*lib)->AddRef();
            return S_OK;
        }
    }
    ImportEntry entry;
    entry.fileOffset = fileOffset;
    entry.tried = true;
    std::uint64_t at = 0;
    std::int32_t guidOffset = 0;
    std::uint32_t lcid = 0, version = 0;
    std::uint16_t sizeWord = 0;
    GUID libid{};
    if (!SegmentRange(msft::ImportFiles, fileOffset, 14, at, "import file") ||
        !m_view.I32(at, guidOffset, "import file") || !m_view.U32(at + 4, lcid, "import file") ||
        !m_view.U32(at + 8, version, "import file") ||
        !m_view.U16(at + 12, sizeWord, "import file") ||
        !ReadGuid(guidOffset, libid, "import guid")) {
        entry.result = TYPE_E_INVDATAREAD;
    } else {
        const std::uint32_t length = sizeWord >> 2;
        std::uint64_t nameAt = 0;
        if (!SegmentRange(msft::ImportFiles, fileOffset + 14ll, length, nameAt, "import name")) {
            entry.result = TYPE_E_INVDATAREAD;
        } else {
            const std::uint8_t* p = m_view.At(nameAt, length, "import name");
            const std::string fileName(reinterpret_cast<const char*>(p), length);
            if (libid == m_attr.guid) {
                // A library that imports itself (stdole2 names IDispatch so).
                entry.result = S_OK;
                entry.lib = ComPtr<ITypeLib>();
            } else {
                ITypeLib* found = nullptr;
                entry.result = ResolveImport(libid, static_cast<WORD>(version & 0xFFFF),
                                             static_cast<WORD>(version >> 16), lcid, fileName,
                                             m_folder, &found);
                entry.lib = ComPtr<ITypeLib>(found);
            }
        }
    }
    m_imports.push_back(std::move(entry));
    const ImportEntry& stored = m_imports.back();
    if (FAILED(stored.result))
        return stored.result;
    *lib = stored.lib ? stored.lib.Get() : this;
    (*lib)->AddRef();
    return S_OK;
}

HRESULT MsftTypeLib::ResolveHref(HREFTYPE href, ITypeInfo** typeInfo) {
    *typeInfo = nullptr;
    switch (href & 3) {
    case 0:
    case 2: {
        const HREFTYPE offset = href & ~3u;
        if (offset % msft::TypeInfoSize != 0 || offset / msft::TypeInfoSize >= m_infos.size())
            return TYPE_E_ELEMENTNOTFOUND;
        const UINT index = offset / msft::TypeInfoSize;
        MsftTypeInfo* target = m_infos[index].get();
        if ((href & 2) && m_halves[index])
            target = m_halves[index].get();
        *typeInfo = target;
        AddRef();
        return S_OK;
    }
    case 1: {
        std::uint64_t at = 0;
        std::uint32_t flags = 0, fileOffset = 0;
        std::int32_t guidOrIndex = 0;
        if (!SegmentRange(msft::ImportInfos, href & ~3u, 12, at, "import info") ||
            !m_view.U32(at, flags, "import info") ||
            !m_view.U32(at + 4, fileOffset, "import info") ||
            !m_view.I32(at + 8, guidOrIndex, "import info"))
            return TYPE_E_ELEMENTNOTFOUND;
        ITypeLib* lib = nullptr;
        const HRESULT hr = LoadImport(fileOffset, &lib);
        if (FAILED(hr))
            return hr;
        ComPtr<ITypeLib> holder(lib);
        if (flags & msft::ImportByGuid) {
            GUID guid{};
            if (!ReadGuid(guidOrIndex, guid, "imported type guid"))
                return TYPE_E_ELEMENTNOTFOUND;
            return lib->GetTypeInfoOfGuid(guid, typeInfo);
        }
        return lib->GetTypeInfo(static_cast<UINT>(guidOrIndex), typeInfo);
    }
    default: {
        const std::size_t slot = href >> 2;
        if (slot >= m_foreign.size())
            return TYPE_E_ELEMENTNOTFOUND;
        *typeInfo = m_foreign[slot].Get();
        (*typeInfo)->AddRef();
        return S_OK;
    }
    }
}

const TYPEDESC* MsftTypeLib::AdoptTypeDesc(const TYPEDESC& source, ITypeInfo& owner, int depth) {
    if (depth > MaxTypeDepth)
        return nullptr;
    TYPEDESC copy = source;
    switch (source.vt) {
    case VT_PTR:
    case VT_SAFEARRAY:
        copy.lptdesc = const_cast<TYPEDESC*>(AdoptTypeDesc(*source.lptdesc, owner, depth + 1));
        if (!copy.lptdesc)
            return nullptr;
        break;
    case VT_USERDEFINED: {
        ITypeInfo* target = nullptr;
        if (FAILED(owner.GetRefTypeInfo(source.hreftype, &target)))
            return nullptr;
        copy.hreftype = AddForeignRef(target);
        target->Release();
        break;
    }
    case VT_CARRAY: {
        const std::size_t bytes =
            sizeof(ARRAYDESC) + sizeof(SAFEARRAYBOUND) * source.lpadesc->cDims;
        auto block = std::make_unique<std::uint8_t[]>(bytes);
        auto* desc = new (block.get()) ARRAYDESC{};
        const TYPEDESC* element = AdoptTypeDesc(source.lpadesc->tdescElem, owner, depth + 1);
        if (!element)
            return nullptr;
        desc->tdescElem = *element;
        desc->cDims = source.lpadesc->cDims;
        for (USHORT d = 0; d < desc->cDims; ++d)
            desc->rgbounds[d] = source.lpadesc->rgbounds[d];
        copy.lpadesc = desc;
        m_arrayDescs.push_back(std::move(block));
        break;
    }
    default:
        break;
    }
    m_typeDescs.push_back(copy);
    return &m_typeDescs.back();
}

} // namespace talvor::platform::typelib
