// Building the keyword table and the lookups that need the code page.
#include "syntax/keyword_cache.h"

#include "platform/codepage/code_page.h"
#include "syntax/detail/keyword_search.h"

namespace talvor::syntax {
namespace {

// The form both sides are compared in: the bytes when case counts, else the lower case of the
// code page, which is what the comparison that ignores case compares.
std::string Fold(std::string_view word, bool exactCase) {
    std::string out(word);
    if (!exactCase)
        platform::MakeLowerInPlace(out);
    return out;
}

int Compare(std::string_view a, std::string_view b, bool exactCase) {
    return exactCase ? platform::CompareExact(a, b) : platform::CompareNoCase(a, b);
}

} // namespace

void KeywordCache::Update(const CStringArray& keywords, bool exactCase) {
    const unsigned codePage = platform::SystemCodePage();
    if (m_built && m_array == &keywords && m_version == keywords.GetVersion() &&
        m_exactCase == exactCase && m_codePage == codePage)
        return;
    m_built = true;
    m_array = &keywords;
    m_version = keywords.GetVersion();
    m_exactCase = exactCase;
    m_codePage = codePage;
    m_sorted = true;
    m_hasEmpty = false;
    m_arena.clear();
    const CString* data = keywords.GetData();
    const INT_PTR size = keywords.GetSize();
    int bits = 4;
    while ((std::size_t{1} << bits) < 4 * static_cast<std::size_t>(size))
        ++bits;
    m_slots.assign(std::size_t{1} << bits, Slot{});
    m_mask = (std::size_t{1} << bits) - 1;
    m_shift = 32 - bits;
    for (INT_PTR i = 0; i < size; ++i) {
        if (i > 0 && Compare(data[i - 1].View(), data[i].View(), exactCase) > 0)
            m_sorted = false;
        if (data[i].IsEmpty())
            m_hasEmpty = true;
        else
            Insert(Fold(data[i].View(), exactCase));
    }
}

void KeywordCache::Insert(std::string_view folded) {
    const std::uint32_t hash = Hash(static_cast<unsigned char>(folded.front()),
                                    static_cast<unsigned char>(folded.back()), folded.size());
    if (FindExact(folded, hash))
        return; // duplicates answer alike
    for (std::size_t i = hash >> m_shift;; i = (i + 1) & m_mask) {
        if (!m_slots[i].used) {
            m_slots[i] = {hash, static_cast<std::uint32_t>(m_arena.size()),
                          static_cast<std::uint32_t>(folded.size()), true};
            m_arena.append(folded);
            return;
        }
    }
}

bool KeywordCache::FindExact(std::string_view folded, std::uint32_t hash) const {
    for (std::size_t i = hash >> m_shift;; i = (i + 1) & m_mask) {
        const Slot& slot = m_slots[i];
        if (!slot.used)
            return false;
        if (slot.hash == hash &&
            std::string_view(m_arena).substr(slot.offset, slot.length) == folded)
            return true;
    }
}

bool KeywordCache::FindFolded(std::string_view word) const {
    const std::string folded = Fold(word, m_exactCase);
    return FindExact(folded, Hash(static_cast<unsigned char>(folded.front()),
                                  static_cast<unsigned char>(folded.back()), folded.size()));
}

bool KeywordCache::SearchUnsorted(const CStringArray& keywords, std::string_view word) const {
    return detail::IsKeyword(keywords, m_exactCase, word);
}

} // namespace talvor::syntax
