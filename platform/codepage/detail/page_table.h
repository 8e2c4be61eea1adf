// The table of code pages this build knows and the one the process uses. Each page says how
// its bytes form characters (single byte, double byte, UTF-8) and what iconv calls it.
#pragma once

#include <atomic>

namespace talvor::platform::detail {

enum class PageKind { SingleByte, DoubleByte, Utf8 };

struct PageInfo {
    unsigned codePage;
    PageKind kind;
    const char* iconvName;
    unsigned char leadFrom1, leadTo1, leadFrom2, leadTo2; // lead byte ranges of a DBCS page
};

// The row of codePage, or nullptr for a page this build cannot convert.
const PageInfo* FindPage(unsigned codePage);

// The page named by TALVOR_CODE_PAGE, else the one the locale variables suggest.
unsigned CodePageFromEnvironment();

// The system code page's row; starts from the environment (see SystemCodePage). Inline: every
// step over a character beyond ASCII asks for it.
inline std::atomic<const PageInfo*>& CurrentPageSlot() {
    static std::atomic<const PageInfo*> slot{FindPage(CodePageFromEnvironment())};
    return slot;
}
inline const PageInfo& CurrentPage() {
    return *CurrentPageSlot().load(std::memory_order_relaxed);
}
void SetCurrentPage(const PageInfo& page);

// Code units 0xDC80..0xDCFF stand for bytes that form no character of the page, so every
// 8-bit text converts to wide and back unchanged.
inline bool IsEscapeUnit(char16_t unit) {
    return unit >= 0xDC80 && unit <= 0xDCFF;
}

} // namespace talvor::platform::detail
