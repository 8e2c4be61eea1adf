// Keyword questions of a masked statement line.
#include "engine/detail/keyword_test.h"

#include "engine/detail/text_compare.h"
#include "text/regular_expressions.h"

namespace talvor::engine::detail {

bool MaskedLine::Has(const CString& keyword) const {
    constexpr short On = -1;
    return TVPfxTestByRegExp("[\\W]{1}" + keyword + "[\\W]{1}", m_padded, On, On) == 1;
}

bool MaskedLine::Is(const CString& keyword) const {
    return SameNoCase(m_masked, keyword);
}

} // namespace talvor::engine::detail
