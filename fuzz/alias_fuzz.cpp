// Arbitrary alias text (alias files are edited by hand) under every code page, read and updated
// with names and values taken from the input: damaged sections, missing "=", lone lead bytes and
// CR-only line ends must give the documented results, never a crash, and an update must leave
// no end mark behind.
#include "alias/ocx_alias.h"
#include "platform/codepage/code_page.h"

#include <cstdint>
#include <cstring>
#include <string>

namespace {

struct Probe : CTalvorOcxAlias {
    using CTalvorOcxAlias::FindEntry;
    using CTalvorOcxAlias::FindLine;
    using CTalvorOcxAlias::FormatIniText;
    using CTalvorOcxAlias::GetEntry;
    using CTalvorOcxAlias::GetSection;
    using CTalvorOcxAlias::GetValue;
    using CTalvorOcxAlias::IsValueLine;
};

constexpr const char* EndMark = "[.Unknow!@%^_&*+#$]";

// Cuts the next piece of the input at a 0x00 byte; the rest when there is none.
std::string NextPiece(const char*& data, const char* end) {
    const char* stop = static_cast<const char*>(std::memchr(data, 0, end - data));
    if (stop == nullptr)
        stop = end;
    std::string piece(data, stop);
    data = stop < end ? stop + 1 : end;
    return piece;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* bytes, size_t size) {
    if (size < 2 || size > 1 << 16)
        return 0;
    static const unsigned pages[] = {1252, 936, 65001};
    talvor::platform::SetSystemCodePage(pages[bytes[0] % 3]);
    const unsigned kind = bytes[1] % 5; // 1 to 3 and two kinds that name no section
    const char* data = reinterpret_cast<const char*>(bytes + 2);
    const char* end = reinterpret_cast<const char*>(bytes + size);
    const std::string text = NextPiece(data, end);
    const std::string name = NextPiece(data, end);
    const std::string value = NextPiece(data, end);
    const DWORD language = value.size() % 2 ? 0x0409 : 0x0804;

    Probe alias;
    alias.FormatIniText(text.c_str());
    alias.SetIniText(text.c_str());
    alias.FindLine(text.c_str(), name.c_str());
    alias.GetSection(text.c_str(), name.c_str(), "[.");
    alias.GetEntry(text.c_str(), "Name", name.c_str());
    alias.FindEntry(text.c_str(), "Name", name.c_str());
    alias.IsValueLine(name.c_str(), "Name", value.c_str(), value.empty() ? 0 : value[0]);
    alias.GetValue(value.c_str(), name.empty() ? 0 : name[0]);
    DWORD number = 0;
    alias.GetLCID(number);
    alias.GetCLSID();

    CString a, d, e;
    alias.GetAlias(kind, name.c_str(), a, d, e, language);
    const bool markBefore = text.find(EndMark) != std::string::npos;
    alias.SetAlias(kind, name.c_str(), value.c_str(), nullptr, value.c_str(), language);
    alias.GetAlias(kind, name.c_str(), a, d, e, language);
    alias.SetAlias(kind, name.c_str(), nullptr, nullptr, nullptr, language);
    if (!markBefore && alias.GetIniText().Find(EndMark) >= 0)
        __builtin_trap(); // an update left its end mark in the text
    alias.SetLCID(language);
    return 0;
}
