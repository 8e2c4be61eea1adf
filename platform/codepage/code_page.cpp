// Code page state, character stepping, case mapping and wide conversion. Windows-1252 and
// UTF-8 are converted here directly (they are the common pages and the conversion is hot in
// the regular expression facade); every other page goes through iconv.
#include "platform/codepage/code_page.h"

#include <atomic>
#include <cerrno>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <cwctype>
#include <iconv.h>
#include <locale.h>
#include <map>
#include <memory>

namespace talvor::platform {
namespace {

enum class PageKind { SingleByte, DoubleByte, Utf8 };

struct PageInfo {
    unsigned codePage;
    PageKind kind;
    const char* iconvName;
    unsigned char leadFrom1, leadTo1, leadFrom2, leadTo2; // lead byte ranges of a DBCS page
};

const PageInfo Pages[] = {
    {1252, PageKind::SingleByte, "CP1252", 0, 0, 0, 0},
    {65001, PageKind::Utf8, "UTF-8", 0, 0, 0, 0},
    {936, PageKind::DoubleByte, "CP936", 0x81, 0xFE, 0, 0},
    {932, PageKind::DoubleByte, "CP932", 0x81, 0x9F, 0xE0, 0xFC},
    {949, PageKind::DoubleByte, "CP949", 0x81, 0xFE, 0, 0},
    {950, PageKind::DoubleByte, "CP950", 0x81, 0xFE, 0, 0},
    {874, PageKind::SingleByte, "CP874", 0, 0, 0, 0},
    {1250, PageKind::SingleByte, "CP1250", 0, 0, 0, 0},
    {1251, PageKind::SingleByte, "CP1251", 0, 0, 0, 0},
    {1253, PageKind::SingleByte, "CP1253", 0, 0, 0, 0},
    {1254, PageKind::SingleByte, "CP1254", 0, 0, 0, 0},
    {1255, PageKind::SingleByte, "CP1255", 0, 0, 0, 0},
    {1256, PageKind::SingleByte, "CP1256", 0, 0, 0, 0},
    {1257, PageKind::SingleByte, "CP1257", 0, 0, 0, 0},
    {1258, PageKind::SingleByte, "CP1258", 0, 0, 0, 0},
    {437, PageKind::SingleByte, "CP437", 0, 0, 0, 0},
    {850, PageKind::SingleByte, "CP850", 0, 0, 0, 0},
    {28591, PageKind::SingleByte, "ISO-8859-1", 0, 0, 0, 0},
};

const PageInfo* FindPage(unsigned codePage) {
    for (const PageInfo& page : Pages)
        if (page.codePage == codePage)
            return &page;
    return nullptr;
}

unsigned CodePageFromEnvironment() {
    for (const char* name : {"TALVOR_CODE_PAGE", "LC_ALL", "LC_CTYPE", "LANG"}) {
        const char* value = std::getenv(name);
        if (value == nullptr || *value == '\0')
            continue;
        if (std::strcmp(name, "TALVOR_CODE_PAGE") == 0) {
            unsigned page = static_cast<unsigned>(std::strtoul(value, nullptr, 10));
            if (FindPage(page) != nullptr)
                return page;
            continue;
        }
        std::string text(value);
        for (char& c : text)
            c = static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
        if (text.find("utf-8") != std::string::npos || text.find("utf8") != std::string::npos)
            return CodePageUtf8;
        if (text.find("gbk") != std::string::npos || text.find("gb2312") != std::string::npos ||
            text.find("gb18030") != std::string::npos)
            return CodePageSimplifiedChinese;
        return CodePageWestern;
    }
    return CodePageWestern;
}

std::atomic<const PageInfo*>& CurrentPageSlot() {
    static std::atomic<const PageInfo*> slot{FindPage(CodePageFromEnvironment())};
    return slot;
}

const PageInfo& CurrentPage() {
    return *CurrentPageSlot().load(std::memory_order_relaxed);
}

// --- UTF-8 --------------------------------------------------------------------------------

// Length of a valid UTF-8 sequence at pos, or 0 when the bytes there are not one.
std::size_t Utf8SequenceLength(const unsigned char* s, std::size_t length, std::size_t pos) {
    unsigned char b = s[pos];
    std::size_t need;
    unsigned char low = 0x80, high = 0xBF; // range of the first continuation byte
    if (b >= 0xC2 && b <= 0xDF) {
        need = 2;
    } else if (b >= 0xE0 && b <= 0xEF) {
        need = 3;
        if (b == 0xE0)
            low = 0xA0;
        else if (b == 0xED)
            high = 0x9F; // no UTF-16 surrogates encoded in UTF-8
    } else if (b >= 0xF0 && b <= 0xF4) {
        need = 4;
        if (b == 0xF0)
            low = 0x90;
        else if (b == 0xF4)
            high = 0x8F;
    } else {
        return 0;
    }
    if (length - pos < need)
        return 0;
    if (s[pos + 1] < low || s[pos + 1] > high)
        return 0;
    for (std::size_t k = 2; k < need; ++k)
        if ((s[pos + k] & 0xC0) != 0x80)
            return 0;
    return need;
}

char32_t DecodeUtf8(const unsigned char* s, std::size_t n) {
    switch (n) {
    case 2:
        return ((s[0] & 0x1Fu) << 6) | (s[1] & 0x3Fu);
    case 3:
        return ((s[0] & 0x0Fu) << 12) | ((s[1] & 0x3Fu) << 6) | (s[2] & 0x3Fu);
    case 4:
        return ((s[0] & 0x07u) << 18) | ((s[1] & 0x3Fu) << 12) | ((s[2] & 0x3Fu) << 6) |
               (s[3] & 0x3Fu);
    default:
        return s[0];
    }
}

std::size_t EncodeUtf8(char32_t cp, char* out) {
    if (cp < 0x80) {
        out[0] = static_cast<char>(cp);
        return 1;
    }
    if (cp < 0x800) {
        out[0] = static_cast<char>(0xC0 | (cp >> 6));
        out[1] = static_cast<char>(0x80 | (cp & 0x3F));
        return 2;
    }
    if (cp < 0x10000) {
        out[0] = static_cast<char>(0xE0 | (cp >> 12));
        out[1] = static_cast<char>(0x80 | ((cp >> 6) & 0x3F));
        out[2] = static_cast<char>(0x80 | (cp & 0x3F));
        return 3;
    }
    out[0] = static_cast<char>(0xF0 | (cp >> 18));
    out[1] = static_cast<char>(0x80 | ((cp >> 12) & 0x3F));
    out[2] = static_cast<char>(0x80 | ((cp >> 6) & 0x3F));
    out[3] = static_cast<char>(0x80 | (cp & 0x3F));
    return 4;
}

locale_t Utf8Locale() {
    static locale_t locale = [] {
        for (const char* name : {"C.UTF-8", "C.utf8", "en_US.UTF-8"}) {
            locale_t l = newlocale(LC_CTYPE_MASK, name, static_cast<locale_t>(nullptr));
            if (l != static_cast<locale_t>(nullptr))
                return l;
        }
        return static_cast<locale_t>(nullptr);
    }();
    return locale;
}

char32_t MapCodePoint(char32_t cp, bool upper) {
    if (cp < 0x80) {
        if (upper && cp >= 'a' && cp <= 'z')
            return cp - 0x20;
        if (!upper && cp >= 'A' && cp <= 'Z')
            return cp + 0x20;
        return cp;
    }
    locale_t l = Utf8Locale();
    if (l == static_cast<locale_t>(nullptr))
        return cp;
    wint_t mapped =
        upper ? towupper_l(static_cast<wint_t>(cp), l) : towlower_l(static_cast<wint_t>(cp), l);
    return static_cast<char32_t>(mapped);
}

// --- Windows-1252 -------------------------------------------------------------------------

// 0x80..0x9F of Windows-1252; the five unassigned bytes map to the C1 control of the same
// value, as MultiByteToWideChar does, so every byte converts and converts back.
const char16_t Cp1252High[32] = {0x20AC, 0x0081, 0x201A, 0x0192, 0x201E, 0x2026, 0x2020, 0x2021,
                                 0x02C6, 0x2030, 0x0160, 0x2039, 0x0152, 0x008D, 0x017D, 0x008F,
                                 0x0090, 0x2018, 0x2019, 0x201C, 0x201D, 0x2022, 0x2013, 0x2014,
                                 0x02DC, 0x2122, 0x0161, 0x203A, 0x0153, 0x009D, 0x017E, 0x0178};

int Cp1252Byte(char16_t unit) {
    if (unit < 0x80 || (unit >= 0xA0 && unit <= 0xFF))
        return unit;
    for (int i = 0; i < 32; ++i)
        if (Cp1252High[i] == unit)
            return 0x80 + i;
    return -1;
}

unsigned char Cp1252Lower(unsigned char b) {
    if (b >= 'A' && b <= 'Z')
        return b + 0x20;
    if (b >= 0xC0 && b <= 0xDE && b != 0xD7)
        return b + 0x20;
    switch (b) {
    case 0x8A:
        return 0x9A;
    case 0x8C:
        return 0x9C;
    case 0x8E:
        return 0x9E;
    case 0x9F:
        return 0xFF;
    default:
        return b;
    }
}

unsigned char Cp1252Upper(unsigned char b) {
    if (b >= 'a' && b <= 'z')
        return b - 0x20;
    if (b >= 0xE0 && b <= 0xFE && b != 0xF7)
        return b - 0x20;
    switch (b) {
    case 0x9A:
        return 0x8A;
    case 0x9C:
        return 0x8C;
    case 0x9E:
        return 0x8E;
    case 0xFF:
        return 0x9F;
    default:
        return b;
    }
}

unsigned char AsciiLower(unsigned char b) {
    return (b >= 'A' && b <= 'Z') ? b + 0x20 : b;
}
unsigned char AsciiUpper(unsigned char b) {
    return (b >= 'a' && b <= 'z') ? b - 0x20 : b;
}

// --- iconv --------------------------------------------------------------------------------

struct IconvPair {
    iconv_t toWide = reinterpret_cast<iconv_t>(-1);
    iconv_t fromWide = reinterpret_cast<iconv_t>(-1);
    bool asciiSame = false; // bytes below 0x80 and code units below 0x80 map to each other
    ~IconvPair() {
        if (toWide != reinterpret_cast<iconv_t>(-1))
            iconv_close(toWide);
        if (fromWide != reinterpret_cast<iconv_t>(-1))
            iconv_close(fromWide);
    }
};

// True when the page converts every byte below 0x80 to the code unit of the same value and
// back, so ASCII text may skip iconv. Asked once per page and thread, of the converters.
bool AsciiMapsToItself(IconvPair& pair) {
    if (pair.toWide == reinterpret_cast<iconv_t>(-1) ||
        pair.fromWide == reinterpret_cast<iconv_t>(-1))
        return false;
    char bytes[0x80];
    char units[0x100];
    char back[0x80];
    for (int b = 0; b < 0x80; ++b)
        bytes[b] = static_cast<char>(b);
    char* in = bytes;
    std::size_t inLeft = sizeof bytes;
    char* out = units;
    std::size_t outLeft = sizeof units;
    iconv(pair.toWide, nullptr, nullptr, nullptr, nullptr);
    if (iconv(pair.toWide, &in, &inLeft, &out, &outLeft) == static_cast<std::size_t>(-1) ||
        outLeft != 0)
        return false;
    for (int b = 0; b < 0x80; ++b)
        if (units[2 * b] != static_cast<char>(b) || units[2 * b + 1] != 0)
            return false;
    in = units;
    inLeft = sizeof units;
    out = back;
    outLeft = sizeof back;
    iconv(pair.fromWide, nullptr, nullptr, nullptr, nullptr);
    if (iconv(pair.fromWide, &in, &inLeft, &out, &outLeft) == static_cast<std::size_t>(-1) ||
        outLeft != 0)
        return false;
    return std::memcmp(bytes, back, sizeof bytes) == 0;
}

// iconv descriptors carry shift state, so each thread keeps its own.
IconvPair& Converters(const PageInfo& page) {
    thread_local std::map<unsigned, std::unique_ptr<IconvPair>> cache;
    auto& slot = cache[page.codePage];
    if (!slot) {
        slot = std::make_unique<IconvPair>();
        slot->toWide = iconv_open("UTF-16LE", page.iconvName);
        slot->fromWide = iconv_open(page.iconvName, "UTF-16LE");
        slot->asciiSame = AsciiMapsToItself(*slot);
    }
    return *slot;
}

bool IsEscapeUnit(char16_t unit) {
    return unit >= 0xDC80 && unit <= 0xDCFF;
}

void IconvToWide(const PageInfo& page, std::string_view text, std::u16string& out) {
    iconv_t cd = Converters(page).toWide;
    if (cd == reinterpret_cast<iconv_t>(-1)) { // no converter: bytes below 0x80 only
        for (unsigned char b : text)
            out.push_back(b < 0x80 ? char16_t(b) : char16_t(0xDC00 + b));
        return;
    }
    iconv(cd, nullptr, nullptr, nullptr, nullptr);
    std::size_t pos = 0;
    char buffer[1024];
    while (pos < text.size()) {
        char* in = const_cast<char*>(text.data() + pos);
        std::size_t inLeft = text.size() - pos;
        char* outPtr = buffer;
        std::size_t outLeft = sizeof buffer;
        std::size_t rc = iconv(cd, &in, &inLeft, &outPtr, &outLeft);
        int error = errno;
        std::size_t produced = sizeof buffer - outLeft;
        for (std::size_t k = 0; k + 1 < produced; k += 2)
            out.push_back(static_cast<char16_t>(static_cast<unsigned char>(buffer[k]) |
                                                (static_cast<unsigned char>(buffer[k + 1]) << 8)));
        pos = text.size() - inLeft;
        if (rc != static_cast<std::size_t>(-1))
            break;
        if (error == E2BIG)
            continue;
        // EILSEQ or EINVAL: the byte at pos starts no character of the page.
        out.push_back(static_cast<char16_t>(0xDC00 + static_cast<unsigned char>(text[pos])));
        ++pos;
        iconv(cd, nullptr, nullptr, nullptr, nullptr);
    }
}

void IconvFromWideRun(iconv_t cd, std::u16string_view run, std::string& out) {
    std::string bytes;
    bytes.reserve(run.size() * 2);
    for (char16_t unit : run) {
        bytes.push_back(static_cast<char>(unit & 0xFF));
        bytes.push_back(static_cast<char>(unit >> 8));
    }
    iconv(cd, nullptr, nullptr, nullptr, nullptr);
    std::size_t pos = 0;
    char buffer[1024];
    while (pos < bytes.size()) {
        char* in = bytes.data() + pos;
        std::size_t inLeft = bytes.size() - pos;
        char* outPtr = buffer;
        std::size_t outLeft = sizeof buffer;
        std::size_t rc = iconv(cd, &in, &inLeft, &outPtr, &outLeft);
        int error = errno;
        out.append(buffer, sizeof buffer - outLeft);
        pos = bytes.size() - inLeft;
        if (rc != static_cast<std::size_t>(-1))
            break;
        if (error == E2BIG)
            continue;
        // A character the page cannot hold: skip one code unit, or a surrogate pair.
        out.push_back('?');
        char16_t unit = static_cast<char16_t>(static_cast<unsigned char>(bytes[pos]) |
                                              (static_cast<unsigned char>(bytes[pos + 1]) << 8));
        pos += (unit >= 0xD800 && unit <= 0xDBFF && pos + 4 <= bytes.size()) ? 4 : 2;
        iconv(cd, nullptr, nullptr, nullptr, nullptr);
    }
}

void IconvFromWide(const PageInfo& page, std::u16string_view wide, std::string& out) {
    iconv_t cd = Converters(page).fromWide;
    std::size_t runStart = 0;
    auto flush = [&](std::size_t end) {
        if (end <= runStart)
            return;
        std::u16string_view run = wide.substr(runStart, end - runStart);
        if (cd == reinterpret_cast<iconv_t>(-1)) {
            for (char16_t unit : run)
                out.push_back(unit < 0x80 ? static_cast<char>(unit) : '?');
        } else {
            IconvFromWideRun(cd, run, out);
        }
    };
    for (std::size_t i = 0; i < wide.size(); ++i) {
        if (!IsEscapeUnit(wide[i]))
            continue;
        bool paired = i > 0 && wide[i - 1] >= 0xD800 && wide[i - 1] <= 0xDBFF;
        if (paired)
            continue;
        flush(i);
        out.push_back(static_cast<char>(wide[i] & 0xFF));
        runStart = i + 1;
    }
    flush(wide.size());
}

// Folds the character at pos to the form that case-insensitive comparison uses, writing its
// bytes to out; returns the number of source bytes it took.
std::size_t FoldCharLower(const PageInfo& page, const unsigned char* s, std::size_t length,
                          std::size_t pos, unsigned char* out, std::size_t& outLength) {
    unsigned char b = s[pos];
    if (b < 0x80) {
        out[0] = AsciiLower(b);
        outLength = 1;
        return 1;
    }
    switch (page.kind) {
    case PageKind::SingleByte:
        out[0] = page.codePage == 1252 ? Cp1252Lower(b) : b;
        outLength = 1;
        return 1;
    case PageKind::DoubleByte: {
        std::size_t n = detail::MultiByteCharLength(reinterpret_cast<const char*>(s), length, pos);
        std::memcpy(out, s + pos, n);
        outLength = n;
        return n;
    }
    case PageKind::Utf8: {
        std::size_t n = Utf8SequenceLength(s, length, pos);
        if (n == 0) {
            out[0] = b;
            outLength = 1;
            return 1;
        }
        char32_t lower = MapCodePoint(DecodeUtf8(s + pos, n), false);
        char encoded[4];
        std::size_t m = EncodeUtf8(lower, encoded);
        if (m != n) { // keep lengths stable
            std::memcpy(out, s + pos, n);
        } else {
            std::memcpy(out, encoded, n);
        }
        outLength = n;
        return n;
    }
    }
    return 1;
}

void MapCaseInPlace(std::string& text, bool upper) {
    const PageInfo& page = CurrentPage();
    auto* s = reinterpret_cast<unsigned char*>(text.data());
    std::size_t length = text.size();
    for (std::size_t pos = 0; pos < length;) {
        unsigned char b = s[pos];
        if (b < 0x80) {
            s[pos] = upper ? AsciiUpper(b) : AsciiLower(b);
            ++pos;
            continue;
        }
        if (page.kind == PageKind::SingleByte) {
            if (page.codePage == 1252)
                s[pos] = upper ? Cp1252Upper(b) : Cp1252Lower(b);
            ++pos;
            continue;
        }
        if (page.kind == PageKind::DoubleByte) {
            pos += detail::MultiByteCharLength(text.data(), length, pos);
            continue;
        }
        std::size_t n = Utf8SequenceLength(s, length, pos);
        if (n == 0) {
            ++pos;
            continue;
        }
        char32_t mapped = MapCodePoint(DecodeUtf8(s + pos, n), upper);
        char encoded[4];
        if (EncodeUtf8(mapped, encoded) == n)
            std::memcpy(s + pos, encoded, n);
        pos += n;
    }
}

} // namespace

namespace detail {
std::size_t MultiByteCharLength(const char* text, std::size_t length, std::size_t pos) {
    const PageInfo& page = CurrentPage();
    auto* s = reinterpret_cast<const unsigned char*>(text);
    switch (page.kind) {
    case PageKind::SingleByte:
        return 1;
    case PageKind::DoubleByte:
        return (IsLeadByte(s[pos]) && pos + 1 < length) ? 2 : 1;
    case PageKind::Utf8: {
        std::size_t n = Utf8SequenceLength(s, length, pos);
        return n == 0 ? 1 : n;
    }
    }
    return 1;
}
} // namespace detail

unsigned SystemCodePage() {
    return CurrentPage().codePage;
}

bool SetSystemCodePage(unsigned codePage) {
    const PageInfo* page = FindPage(codePage);
    if (page == nullptr)
        return false;
    CurrentPageSlot().store(page, std::memory_order_relaxed);
    return true;
}

bool IsKnownCodePage(unsigned codePage) {
    return FindPage(codePage) != nullptr;
}

bool IsMultiByteCodePage() {
    return CurrentPage().kind != PageKind::SingleByte;
}

bool IsLeadByte(unsigned char byte) {
    const PageInfo& page = CurrentPage();
    switch (page.kind) {
    case PageKind::SingleByte:
        return false;
    case PageKind::DoubleByte:
        return (byte >= page.leadFrom1 && byte <= page.leadTo1) ||
               (page.leadFrom2 != 0 && byte >= page.leadFrom2 && byte <= page.leadTo2);
    case PageKind::Utf8:
        return byte >= 0xC2 && byte <= 0xF4;
    }
    return false;
}

namespace {

// Bytes below 0x80 from the start of text, written to out as code units of the same value up
// to the first byte that is not; gives how many. Eight bytes are tested at a time.
std::size_t WidenAscii(const char* text, std::size_t length, char16_t* out) {
    std::size_t i = 0;
    for (; i + 8 <= length; i += 8) {
        std::uint64_t block;
        std::memcpy(&block, text + i, 8);
        if ((block & 0x8080808080808080ull) != 0)
            break;
        for (std::size_t k = 0; k < 8; ++k)
            out[i + k] = static_cast<char16_t>(static_cast<unsigned char>(text[i + k]));
    }
    for (; i < length && static_cast<unsigned char>(text[i]) < 0x80; ++i)
        out[i] = static_cast<char16_t>(static_cast<unsigned char>(text[i]));
    return i;
}

// The same the other way: code units below 0x80 from the start, as bytes.
std::size_t NarrowAscii(const char16_t* wide, std::size_t length, char* out) {
    std::size_t i = 0;
    for (; i + 4 <= length; i += 4) {
        std::uint64_t block;
        std::memcpy(&block, wide + i, 8);
        if ((block & 0xFF80FF80FF80FF80ull) != 0)
            break;
        for (std::size_t k = 0; k < 4; ++k)
            out[i + k] = static_cast<char>(wide[i + k]);
    }
    for (; i < length && wide[i] < 0x80; ++i)
        out[i] = static_cast<char>(wide[i]);
    return i;
}

bool AsciiSame(const PageInfo& page) {
    if (page.kind == PageKind::Utf8 || page.codePage == 1252)
        return true;
    return Converters(page).asciiSame;
}

void Utf8ToWide(const unsigned char* s, std::size_t length, std::size_t pos, std::u16string& out) {
    while (pos < length) {
        if (s[pos] < 0x80) {
            out.push_back(s[pos++]);
            continue;
        }
        std::size_t n = Utf8SequenceLength(s, length, pos);
        if (n == 0) {
            out.push_back(static_cast<char16_t>(0xDC00 + s[pos]));
            ++pos;
            continue;
        }
        char32_t cp = DecodeUtf8(s + pos, n);
        if (cp >= 0x10000) {
            cp -= 0x10000;
            out.push_back(static_cast<char16_t>(0xD800 + (cp >> 10)));
            out.push_back(static_cast<char16_t>(0xDC00 + (cp & 0x3FF)));
        } else {
            out.push_back(static_cast<char16_t>(cp));
        }
        pos += n;
    }
}

void Utf8FromWide(std::u16string_view wide, std::string& out) {
    for (std::size_t i = 0; i < wide.size(); ++i) {
        char16_t unit = wide[i];
        char encoded[4];
        if (unit >= 0xD800 && unit <= 0xDBFF && i + 1 < wide.size() && wide[i + 1] >= 0xDC00 &&
            wide[i + 1] <= 0xDFFF) {
            char32_t cp = 0x10000 + ((char32_t(unit) - 0xD800) << 10) + (wide[i + 1] - 0xDC00);
            out.append(encoded, EncodeUtf8(cp, encoded));
            ++i;
        } else if (IsEscapeUnit(unit)) {
            out.push_back(static_cast<char>(unit & 0xFF));
        } else if (unit >= 0xD800 && unit <= 0xDFFF) {
            out.push_back('?');
        } else {
            out.append(encoded, EncodeUtf8(unit, encoded));
        }
    }
}

void Cp1252FromWide(std::u16string_view wide, std::string& out) {
    for (std::size_t i = 0; i < wide.size(); ++i) {
        char16_t unit = wide[i];
        if (IsEscapeUnit(unit)) {
            out.push_back(static_cast<char>(unit & 0xFF));
            continue;
        }
        int b = Cp1252Byte(unit);
        out.push_back(b < 0 ? '?' : static_cast<char>(b));
        if (b < 0 && unit >= 0xD800 && unit <= 0xDBFF && i + 1 < wide.size() &&
            wide[i + 1] >= 0xDC00 && wide[i + 1] <= 0xDFFF)
            ++i; // one "?" for the whole pair
    }
}

} // namespace

bool ToWide(std::string_view text, std::u16string& out) {
    const PageInfo& page = CurrentPage();
    // ASCII comes first and alone in almost every script line: it needs no table and no
    // iconv in any page that maps it to itself. The rest starts at a character boundary.
    std::size_t ascii = 0;
    if (AsciiSame(page)) {
        out.resize(text.size());
        ascii = WidenAscii(text.data(), text.size(), out.data());
        if (ascii == text.size())
            return true;
    }
    out.resize(ascii);
    const std::string_view rest = text.substr(ascii);
    if (page.kind == PageKind::Utf8) {
        Utf8ToWide(reinterpret_cast<const unsigned char*>(text.data()), text.size(), ascii, out);
    } else if (page.codePage == 1252) {
        for (unsigned char b : rest)
            out.push_back(b >= 0x80 && b < 0xA0 ? Cp1252High[b - 0x80] : char16_t(b));
    } else {
        IconvToWide(page, rest, out);
    }
    return false;
}

std::u16string ToWide(std::string_view text) {
    std::u16string out;
    ToWide(text, out);
    return out;
}

void FromWide(std::u16string_view wide, std::string& out) {
    const PageInfo& page = CurrentPage();
    std::size_t ascii = 0;
    if (AsciiSame(page)) {
        out.resize(wide.size());
        ascii = NarrowAscii(wide.data(), wide.size(), out.data());
        if (ascii == wide.size())
            return;
    }
    out.resize(ascii);
    const std::u16string_view rest = wide.substr(ascii);
    if (page.kind == PageKind::Utf8)
        Utf8FromWide(rest, out);
    else if (page.codePage == 1252)
        Cp1252FromWide(rest, out);
    else
        IconvFromWide(page, rest, out);
}

std::string FromWide(std::u16string_view wide) {
    std::string out;
    FromWide(wide, out);
    return out;
}

int CompareExact(std::string_view a, std::string_view b) {
    std::size_t n = a.size() < b.size() ? a.size() : b.size();
    int c = n == 0 ? 0 : std::memcmp(a.data(), b.data(), n);
    if (c != 0)
        return c < 0 ? -1 : 1;
    if (a.size() == b.size())
        return 0;
    return a.size() < b.size() ? -1 : 1;
}

int CompareNoCase(std::string_view a, std::string_view b) {
    const PageInfo& page = CurrentPage();
    auto* sa = reinterpret_cast<const unsigned char*>(a.data());
    auto* sb = reinterpret_cast<const unsigned char*>(b.data());
    std::size_t ia = 0, ib = 0;
    // Folded characters are compared byte by byte: the same order as comparing the lower-case
    // forms of both texts exactly, which is how sorted lower-case keyword lists are searched.
    unsigned char fa[4], fb[4];
    std::size_t na = 0, nb = 0, ka = 0, kb = 0;
    for (;;) {
        if (ka == na) {
            ka = na = 0;
            if (ia < a.size()) {
                if (sa[ia] < 0x80) {
                    fa[0] = AsciiLower(sa[ia++]);
                    na = 1;
                } else {
                    ia += FoldCharLower(page, sa, a.size(), ia, fa, na);
                }
            }
        }
        if (kb == nb) {
            kb = nb = 0;
            if (ib < b.size()) {
                if (sb[ib] < 0x80) {
                    fb[0] = AsciiLower(sb[ib++]);
                    nb = 1;
                } else {
                    ib += FoldCharLower(page, sb, b.size(), ib, fb, nb);
                }
            }
        }
        bool endA = ka == na, endB = kb == nb;
        if (endA || endB)
            return endA == endB ? 0 : (endA ? -1 : 1);
        if (fa[ka] != fb[kb])
            return fa[ka] < fb[kb] ? -1 : 1;
        ++ka;
        ++kb;
    }
}

void MakeUpperInPlace(std::string& text) {
    MapCaseInPlace(text, true);
}
void MakeLowerInPlace(std::string& text) {
    MapCaseInPlace(text, false);
}

std::size_t FindText(std::string_view haystack, std::string_view needle, std::size_t from) {
    if (from > haystack.size())
        return std::string_view::npos;
    if (needle.empty())
        return from;
    if (!IsMultiByteCodePage())
        return haystack.find(needle, from);
    for (std::size_t pos = from; pos + needle.size() <= haystack.size();
         pos += CharLengthAt(haystack, pos)) {
        if (std::memcmp(haystack.data() + pos, needle.data(), needle.size()) == 0)
            return pos;
    }
    return std::string_view::npos;
}

std::size_t FindChar(std::string_view haystack, char ch, std::size_t from) {
    if (!IsMultiByteCodePage())
        return haystack.find(ch, from);
    for (std::size_t pos = from; pos < haystack.size(); pos += CharLengthAt(haystack, pos)) {
        if (haystack[pos] == ch && CharLengthAt(haystack, pos) == 1)
            return pos;
    }
    return std::string_view::npos;
}

} // namespace talvor::platform

using talvor::platform::CharLengthAt;

namespace {
std::string_view View(const unsigned char* s) {
    return s == nullptr ? std::string_view() : std::string_view(reinterpret_cast<const char*>(s));
}

bool CharInSet(std::string_view text, std::size_t pos, std::size_t n, std::string_view set) {
    for (std::size_t k = 0; k < set.size(); k += CharLengthAt(set, k)) {
        std::size_t m = CharLengthAt(set, k);
        if (m == n && std::memcmp(set.data() + k, text.data() + pos, n) == 0)
            return true;
    }
    return false;
}
} // namespace

BOOL IsDBCSLeadByte(BYTE byte) {
    return talvor::platform::IsLeadByte(byte) ? TRUE : FALSE;
}

int _mbscmp(const unsigned char* a, const unsigned char* b) {
    return talvor::platform::CompareExact(View(a), View(b));
}

int _mbsicmp(const unsigned char* a, const unsigned char* b) {
    return talvor::platform::CompareNoCase(View(a), View(b));
}

int _mbsicoll(const unsigned char* a, const unsigned char* b) {
    return _mbsicmp(a, b);
}

unsigned char* _mbsstr(const unsigned char* haystack, const unsigned char* needle) {
    std::size_t pos = talvor::platform::FindText(View(haystack), View(needle));
    return pos == std::string_view::npos ? nullptr : const_cast<unsigned char*>(haystack + pos);
}

unsigned char* _mbschr(const unsigned char* text, unsigned int ch) {
    std::string_view view = View(text);
    if (ch == 0)
        return const_cast<unsigned char*>(text + view.size());
    std::size_t pos = talvor::platform::FindChar(view, static_cast<char>(ch));
    return pos == std::string_view::npos ? nullptr : const_cast<unsigned char*>(text + pos);
}

unsigned char* _mbsupr(unsigned char* text) {
    if (text == nullptr)
        return text;
    std::string copy(reinterpret_cast<char*>(text));
    talvor::platform::MakeUpperInPlace(copy);
    std::memcpy(text, copy.data(), copy.size());
    return text;
}

unsigned char* _mbslwr(unsigned char* text) {
    if (text == nullptr)
        return text;
    std::string copy(reinterpret_cast<char*>(text));
    talvor::platform::MakeLowerInPlace(copy);
    std::memcpy(text, copy.data(), copy.size());
    return text;
}

unsigned char* _mbsinc(const unsigned char* text) {
    std::string_view view = View(text);
    std::size_t n = view.empty() ? 1 : CharLengthAt(view, 0);
    return const_cast<unsigned char*>(text + n);
}

std::size_t _mbsspn(const unsigned char* text, const unsigned char* set) {
    std::string_view view = View(text), chars = View(set);
    std::size_t pos = 0;
    while (pos < view.size()) {
        std::size_t n = CharLengthAt(view, pos);
        if (!CharInSet(view, pos, n, chars))
            break;
        pos += n;
    }
    return pos;
}

std::size_t _mbscspn(const unsigned char* text, const unsigned char* set) {
    std::string_view view = View(text), chars = View(set);
    std::size_t pos = 0;
    while (pos < view.size()) {
        std::size_t n = CharLengthAt(view, pos);
        if (CharInSet(view, pos, n, chars))
            break;
        pos += n;
    }
    return pos;
}
