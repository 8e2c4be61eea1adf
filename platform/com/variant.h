// VARIANT, the tagged value of the component model, with the type numbers the headers
// publish, and the conversions the type description needs (every constant type to VT_BSTR).
#pragma once

#include "platform/com/bstr.h"
#include "platform/com/hresult.h"

class IUnknown;
class IDispatch;

using VARTYPE = std::uint16_t;
using DATE = double;
using SCODE = std::int32_t;

enum VARENUM : VARTYPE {
    VT_EMPTY = 0,
    VT_NULL = 1,
    VT_I2 = 2,
    VT_I4 = 3,
    VT_R4 = 4,
    VT_R8 = 5,
    VT_CY = 6,
    VT_DATE = 7,
    VT_BSTR = 8,
    VT_DISPATCH = 9,
    VT_ERROR = 10,
    VT_BOOL = 11,
    VT_VARIANT = 12,
    VT_UNKNOWN = 13,
    VT_DECIMAL = 14,
    VT_I1 = 16,
    VT_UI1 = 17,
    VT_UI2 = 18,
    VT_UI4 = 19,
    VT_I8 = 20,
    VT_UI8 = 21,
    VT_INT = 22,
    VT_UINT = 23,
    VT_VOID = 24,
    VT_HRESULT = 25,
    VT_PTR = 26,
    VT_SAFEARRAY = 27,
    VT_CARRAY = 28,
    VT_USERDEFINED = 29,
    VT_LPSTR = 30,
    VT_LPWSTR = 31,
    VT_RECORD = 36,
    VT_INT_PTR = 37,
    VT_UINT_PTR = 38,
    VT_FILETIME = 64,
    VT_BLOB = 65,
    VT_STREAM = 66,
    VT_STORAGE = 67,
    VT_STREAMED_OBJECT = 68,
    VT_STORED_OBJECT = 69,
    VT_BLOB_OBJECT = 70,
    VT_CF = 71,
    VT_CLSID = 72,
    VT_VERSIONED_STREAM = 73,
    VT_BSTR_BLOB = 0x0FFF,
    VT_VECTOR = 0x1000,
    VT_ARRAY = 0x2000,
    VT_BYREF = 0x4000,
    VT_RESERVED = 0x8000,
    VT_ILLEGAL = 0xFFFF,
    VT_ILLEGALMASKED = 0x0FFF,
    VT_TYPEMASK = 0x0FFF
};

// Currency: a 64-bit integer of ten-thousandths.
union CY {
    struct {
        std::uint32_t Lo;
        std::int32_t Hi;
    } s;
    std::int64_t int64;
};

struct DECIMAL {
    std::uint16_t wReserved;
    BYTE scale; // powers of ten to divide by, 0 to 28
    BYTE sign;  // 0x80 for negative
    std::uint32_t Hi32;
    std::uint64_t Lo64;
};
constexpr BYTE DECIMAL_NEG = 0x80;

// A decimal overlays the whole variant, its first word being the type, as the headers lay
// it out.
struct tagVARIANT {
    union {
        struct {
            VARTYPE vt;
            WORD wReserved1;
            WORD wReserved2;
            WORD wReserved3;
            union {
                LONGLONG llVal;
                LONG lVal;
                BYTE bVal;
                SHORT iVal;
                float fltVal;
                double dblVal;
                VARIANT_BOOL boolVal;
                SCODE scode;
                CY cyVal;
                DATE date;
                BSTR bstrVal;
                IUnknown* punkVal;
                IDispatch* pdispVal;
                char cVal;
                USHORT uiVal;
                ULONG ulVal;
                ULONGLONG ullVal;
                int intVal;
                unsigned int uintVal;
                void* byref;
            };
        };
        DECIMAL decVal;
    };
};
static_assert(sizeof(tagVARIANT) == 16, "a variant is 16 bytes, as the headers lay it out");
using VARIANT = tagVARIANT;
using VARIANTARG = tagVARIANT;
using LPVARIANT = VARIANT*;

// Flags of VariantChangeType.
constexpr USHORT VARIANT_NOVALUEPROP = 0x01;
constexpr USHORT VARIANT_ALPHABOOL = 0x02; // Booleans as "True" / "False"
constexpr USHORT VARIANT_NOUSEROVERRIDE = 0x04;
constexpr USHORT VARIANT_LOCALBOOL = 0x10; // the same, in this platform's one language

void VariantInit(VARIANTARG* value);
// Frees a string, releases an object; leaves VT_EMPTY. DISP_E_BADVARTYPE for an unknown type.
HRESULT VariantClear(VARIANTARG* value);
// A deep copy (new string, added reference) after clearing `dest`.
HRESULT VariantCopy(VARIANTARG* dest, const VARIANTARG* source);
// Converts to `vt`. To VT_BSTR every scalar type converts (integers, reals, currency, dates,
// Booleans, decimals, characters); VT_NULL, VT_ERROR, VT_HRESULT and objects give
// DISP_E_TYPEMISMATCH, with `dest` left alone. Between equal types it copies. Other targets
// are DISP_E_TYPEMISMATCH. `dest` may be `source`.
HRESULT VariantChangeType(VARIANTARG* dest, const VARIANTARG* source, USHORT flags, VARTYPE vt);
