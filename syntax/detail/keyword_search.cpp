// The binary search of the keyword array, the parsers' most frequent question. Its probes are
// the documented ones (they decide the answer if a host leaves the array unsorted); what is
// made fast is each comparison: an inline loop that folds ASCII letters as it goes.
#include "syntax/detail/keyword_search.h"

#include "platform/codepage/code_page.h"
#include "platform/core/ascii.h"

namespace talvor::syntax::detail {
namespace {

// The exact comparison: bytes as unsigned values, a prefix before the longer text.
int CompareBytes(std::string_view a, std::string_view b) {
    const std::size_t common = a.size() < b.size() ? a.size() : b.size();
    for (std::size_t i = 0; i < common; ++i) {
        const auto x = static_cast<unsigned char>(a[i]);
        const auto y = static_cast<unsigned char>(b[i]);
        if (x != y)
            return x < y ? -1 : 1;
    }
    return a.size() == b.size() ? 0 : (a.size() < b.size() ? -1 : 1);
}

// The comparison that ignores case, folding ASCII letters of both texts as it goes. At the
// first byte above 0x7F on either side the code page's comparison decides, which folds whole
// characters; up to that byte both agree, so the answer is the same.
int CompareNoCaseAscii(std::string_view word, std::string_view entry) {
    const std::size_t common = word.size() < entry.size() ? word.size() : entry.size();
    for (std::size_t i = 0; i < common; ++i) {
        const auto x = static_cast<unsigned char>(word[i]);
        const auto y = static_cast<unsigned char>(entry[i]);
        if ((x | y) >= 0x80)
            return platform::CompareNoCase(word, entry);
        const unsigned char a = platform::AsciiLowerTable[x];
        const unsigned char b = platform::AsciiLowerTable[y];
        if (a != b)
            return a < b ? -1 : 1;
    }
    return word.size() == entry.size() ? 0 : (word.size() < entry.size() ? -1 : 1);
}

} // namespace

bool IsKeyword(const CStringArray& keywords, bool exactCase, std::string_view word) {
    const CString* entries = keywords.GetData();
    INT_PTR low = 0;
    INT_PTR high = keywords.GetSize() - 1;
    while (low <= high) {
        const INT_PTR middle = (low + high) / 2;
        const std::string_view entry = entries[middle].View();
        const int order = exactCase ? CompareBytes(word, entry) : CompareNoCaseAscii(word, entry);
        if (order < 0)
            high = middle - 1;
        else if (order > 0)
            low = middle + 1;
        else
            return true;
    }
    return false;
}

} // namespace talvor::syntax::detail
