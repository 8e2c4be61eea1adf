// Conversion of the pages without a table of their own, through iconv. Descriptors are opened
// once per page and thread and reset before each conversion.
#include "platform/codepage/detail/iconv_pages.h"

#include <cerrno>
#include <cstring>
#include <iconv.h>
#include <map>
#include <memory>

namespace talvor::platform::detail {
namespace {

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

} // namespace

std::u16string IconvToWide(const PageInfo& page, std::string_view text) {
    std::u16string out;
    iconv_t cd = Converters(page).toWide;
    if (cd == reinterpret_cast<iconv_t>(-1)) { // no converter: bytes below 0x80 only
        for (unsigned char b : text)
            out.push_back(b < 0x80 ? char16_t(b) : char16_t(0xDC00 + b));
        return out;
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
    return out;
}

std::string IconvFromWide(const PageInfo& page, std::u16string_view wide) {
    std::string out;
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
    return out;
}

bool IconvAsciiSame(const PageInfo& page) {
    return Converters(page).asciiSame;
}

} // namespace talvor::platform::detail
