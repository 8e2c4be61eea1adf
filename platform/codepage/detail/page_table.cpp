// The table of known code pages and the process-wide choice among them, read first from
// TALVOR_CODE_PAGE or the locale variables.
#include "platform/codepage/detail/page_table.h"

#include "platform/codepage/code_page.h"
#include "platform/core/ascii.h"

#include <cstdlib>
#include <cstring>
#include <string>

namespace talvor::platform::detail {
namespace {

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

} // namespace

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
            c = AsciiLower(c);
        if (text.find("utf-8") != std::string::npos || text.find("utf8") != std::string::npos)
            return CodePageUtf8;
        if (text.find("gbk") != std::string::npos || text.find("gb2312") != std::string::npos ||
            text.find("gb18030") != std::string::npos)
            return CodePageSimplifiedChinese;
        return CodePageWestern;
    }
    return CodePageWestern;
}

void SetCurrentPage(const PageInfo& page) {
    CurrentPageSlot().store(&page, std::memory_order_relaxed);
}

} // namespace talvor::platform::detail
