// Keyword questions of a masked statement line.
#include "engine/detail/keyword_test.h"

#include "engine/detail/text_compare.h"
#include "text/regular_expressions.h"

namespace talvor::engine::detail {

const CString& KeywordPattern::Of(const CString& keyword) {
    if (!m_built || m_keyword.Str() != keyword.Str()) {
        m_keyword = keyword;
        std::string pattern;
        pattern.reserve(static_cast<std::size_t>(keyword.GetLength()) + 14);
        pattern.append("[\\W]{1}").append(keyword.View()).append("[\\W]{1}");
        m_pattern = CString(std::move(pattern));
        m_built = true;
    }
    return m_pattern;
}

FlowKeywordPatterns& FlowPatterns() {
    static FlowKeywordPatterns* patterns = new FlowKeywordPatterns; // never destroyed
    return *patterns;
}

MaskedLine::MaskedLine(const CString& masked) : m_masked(masked) {
    std::string padded;
    padded.reserve(static_cast<std::size_t>(masked.GetLength()) + 2);
    padded.append(1, ' ').append(masked.View()).append(1, ' ');
    m_padded = CString(std::move(padded));
}

bool MaskedLine::Has(KeywordPattern& pattern, const CString& keyword) const {
    constexpr short On = -1;
    return text::TestByRegExp(pattern.Of(keyword).View(), m_padded.View(), On, On) == 1;
}

bool MaskedLine::Is(const CString& keyword) const {
    return SameNoCase(m_masked, keyword);
}

} // namespace talvor::engine::detail
