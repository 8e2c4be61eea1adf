#include "platform/com/variant.h"

#include "platform/com/unknown.h"

#include <cmath>
#include <cstdio>
#include <string>

void VariantInit(VARIANTARG* value) {
    if (!value)
        return;
    value->vt = VT_EMPTY;
    value->wReserved1 = value->wReserved2 = value->wReserved3 = 0;
    value->llVal = 0;
}

HRESULT VariantClear(VARIANTARG* value) {
    if (!value)
        return E_INVALIDARG;
    if ((value->vt & VT_BYREF) == 0) {
        switch (value->vt & VT_TYPEMASK) {
        case VT_BSTR:
            SysFreeString(value->bstrVal);
            break;
        case VT_UNKNOWN:
        case VT_DISPATCH:
            if (value->punkVal)
                value->punkVal->Release();
            break;
        case VT_DECIMAL:
            break;
        default:
            if ((value->vt & VT_TYPEMASK) > VT_CLSID)
                return DISP_E_BADVARTYPE;
            break;
        }
    }
    VariantInit(value);
    return S_OK;
}

HRESULT VariantCopy(VARIANTARG* dest, const VARIANTARG* source) {
    if (!dest || !source)
        return E_INVALIDARG;
    if (dest == source)
        return S_OK;
    VARIANT copy = *source;
    if ((source->vt & VT_BYREF) == 0) {
        if (source->vt == VT_BSTR && source->bstrVal) {
            copy.bstrVal = SysAllocStringLen(source->bstrVal, SysStringLen(source->bstrVal));
            if (!copy.bstrVal)
                return E_OUTOFMEMORY;
        } else if ((source->vt == VT_UNKNOWN || source->vt == VT_DISPATCH) && source->punkVal) {
            source->punkVal->AddRef();
        }
    }
    VariantClear(dest);
    *dest = copy;
    return S_OK;
}

namespace {

// Removes trailing zeros of a fraction and a dot left alone.
void TrimFraction(std::string& text) {
    if (text.find('.') == std::string::npos)
        return;
    while (!text.empty() && text.back() == '0')
        text.pop_back();
    if (!text.empty() && text.back() == '.')
        text.pop_back();
}

std::string RealText(double value, int digits) {
    if (std::isnan(value))
        return "NaN";
    if (std::isinf(value))
        return value < 0 ? "-1.#INF" : "1.#INF";
    char buffer[64];
    std::snprintf(buffer, sizeof buffer, "%.*G", digits, value);
    return buffer;
}

// A whole number of ten-thousandths, "%lld.%04lld" without the zeros at the end.
std::string CurrencyText(std::int64_t value) {
    const bool negative = value < 0;
    const std::uint64_t magnitude =
        negative ? 0 - static_cast<std::uint64_t>(value) : static_cast<std::uint64_t>(value);
    char buffer[48];
    std::snprintf(buffer, sizeof buffer, "%s%llu.%04llu", negative ? "-" : "",
                  static_cast<unsigned long long>(magnitude / 10000),
                  static_cast<unsigned long long>(magnitude % 10000));
    std::string text = buffer;
    TrimFraction(text);
    return text;
}

std::string DecimalText(const DECIMAL& value) {
    // 96-bit magnitude as decimal digits: repeated division of three 32-bit words.
    std::uint32_t words[3] = {value.Hi32, static_cast<std::uint32_t>(value.Lo64 >> 32),
                              static_cast<std::uint32_t>(value.Lo64)};
    std::string digits;
    while (words[0] || words[1] || words[2]) {
        std::uint64_t rest = 0;
        for (std::uint32_t& word : words) {
            const std::uint64_t part = (rest << 32) | word;
            word = static_cast<std::uint32_t>(part / 10);
            rest = part % 10;
        }
        digits.insert(digits.begin(), static_cast<char>('0' + rest));
    }
    const unsigned scale = value.scale > 28 ? 28 : value.scale;
    while (digits.size() <= scale)
        digits.insert(digits.begin(), '0');
    if (scale > 0) {
        digits.insert(digits.end() - scale, '.');
        TrimFraction(digits);
    }
    if ((value.sign & DECIMAL_NEG) && digits != "0")
        digits.insert(digits.begin(), '-');
    return digits;
}

// Days since 30 December 1899 to a civil date (proleptic Gregorian).
void CivilFromDays(std::int64_t days, int& year, int& month, int& day) {
    // Hinnant's civil-from-days, counted from 1 March of year 0: 1899-12-30 is day 693899.
    const std::int64_t z = days + 693899;
    const std::int64_t era = (z >= 0 ? z : z - 146096) / 146097;
    const std::int64_t doe = z - era * 146097;
    const std::int64_t yoe = (doe - doe / 1460 + doe / 36524 - doe / 146096) / 365;
    const std::int64_t doy = doe - (365 * yoe + yoe / 4 - yoe / 100);
    const std::int64_t mp = (5 * doy + 2) / 153;
    day = static_cast<int>(doy - (153 * mp + 2) / 5 + 1);
    month = static_cast<int>(mp < 10 ? mp + 3 : mp - 9);
    year = static_cast<int>(yoe + era * 400 + (month <= 2 ? 1 : 0));
}

// The short date and long time of the English locale: "M/D/YYYY", "h:mm:ss AM"; a date alone
// when the time is midnight, a time alone on day zero.
bool DateText(double date, std::string& text) {
    if (!(date > -657435.0 && date < 2958466.0)) // 1 January 100 to 31 December 9999
        return false;
    // The fraction counts from the day's start in both directions: -1.25 is 29 Dec 1899 06:00.
    double wholeDays = std::trunc(date);
    double fraction = std::fabs(date - wholeDays);
    long seconds = std::lround(fraction * 86400.0);
    if (seconds >= 86400) {
        seconds -= 86400;
        wholeDays += date < 0 ? -1 : 1;
    }
    int year = 0, month = 0, day = 0;
    CivilFromDays(static_cast<std::int64_t>(wholeDays), year, month, day);
    char buffer[64];
    text.clear();
    if (wholeDays != 0) {
        std::snprintf(buffer, sizeof buffer, "%d/%d/%d", month, day, year);
        text = buffer;
    }
    if (seconds != 0 || wholeDays == 0) {
        const long hour = seconds / 3600;
        std::snprintf(buffer, sizeof buffer, "%ld:%02ld:%02ld %s", hour % 12 == 0 ? 12 : hour % 12,
                      seconds / 60 % 60, seconds % 60, hour < 12 ? "AM" : "PM");
        if (!text.empty())
            text += ' ';
        text += buffer;
    }
    return true;
}

// The text of a scalar value; false when the type has no text.
bool ScalarText(const VARIANT& value, USHORT flags, std::string& text) {
    switch (value.vt) {
    case VT_EMPTY:
        text.clear();
        return true;
    case VT_I1:
        text = std::to_string(static_cast<int>(static_cast<signed char>(value.cVal)));
        return true;
    case VT_UI1:
        text = std::to_string(value.bVal);
        return true;
    case VT_I2:
        text = std::to_string(value.iVal);
        return true;
    case VT_UI2:
        text = std::to_string(value.uiVal);
        return true;
    case VT_I4:
        text = std::to_string(value.lVal);
        return true;
    case VT_INT:
        text = std::to_string(value.intVal);
        return true;
    case VT_UI4:
        text = std::to_string(value.ulVal);
        return true;
    case VT_UINT:
        text = std::to_string(value.uintVal);
        return true;
    case VT_I8:
        text = std::to_string(value.llVal);
        return true;
    case VT_UI8:
        text = std::to_string(value.ullVal);
        return true;
    case VT_R4:
        text = RealText(value.fltVal, 7);
        return true;
    case VT_R8:
        text = RealText(value.dblVal, 15);
        return true;
    case VT_CY:
        text = CurrencyText(value.cyVal.int64);
        return true;
    case VT_DATE:
        return DateText(value.date, text);
    case VT_BOOL:
        if (flags & (VARIANT_ALPHABOOL | VARIANT_LOCALBOOL))
            text = value.boolVal ? "True" : "False";
        else
            text = value.boolVal ? "-1" : "0";
        return true;
    case VT_DECIMAL:
        text = DecimalText(value.decVal);
        return true;
    default:
        return false;
    }
}

} // namespace

HRESULT VariantChangeType(VARIANTARG* dest, const VARIANTARG* source, USHORT flags, VARTYPE vt) {
    if (!dest || !source)
        return E_INVALIDARG;
    if (source->vt == vt)
        return VariantCopy(dest, source);
    if (vt != VT_BSTR)
        return DISP_E_TYPEMISMATCH;
    std::string text;
    if (!ScalarText(*source, flags, text))
        return (source->vt & VT_TYPEMASK) > VT_CLSID ? DISP_E_BADVARTYPE : DISP_E_TYPEMISMATCH;
    std::wstring wide(text.begin(), text.end()); // the texts above are ASCII
    BSTR result = talvor::platform::AllocBstr(wide);
    if (!result)
        return E_OUTOFMEMORY;
    VariantClear(dest);
    dest->vt = VT_BSTR;
    dest->bstrVal = result;
    return S_OK;
}
