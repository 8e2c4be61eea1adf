// The matcher singleton and the life of its engine object: built on the first facade call,
// given up by TVPfxRegExpRelease, built again by a call after that.
#include "text/regex_matcher.h"

#include "platform/regex/regex_engine.h"
#include "text/detail/regex_cache.h"

namespace {

talvor::platform::RegExpEngine* NewEngine() {
    return new talvor::platform::RegExpEngine(
        [](std::u16string_view pattern, bool ignoreCase, talvor::platform::CompiledRegExpPtr& out) {
            return talvor::text::detail::FacadeRegexCache().Compile(pattern, ignoreCase, out);
        });
}

// Never destroyed: it lives until the process ends.
CTalvorRegExp*& Matcher() {
    static CTalvorRegExp* matcher = nullptr;
    return matcher;
}

} // namespace

CTalvorRegExp::CTalvorRegExp() : m_pRegExp(NewEngine()) {}

// The engine object is given up by Release alone, at the time the host chooses.
CTalvorRegExp::~CTalvorRegExp() = default;

CTalvorRegExp& CTalvorRegExp::GetRegExp() {
    CTalvorRegExp*& matcher = Matcher();
    if (matcher == nullptr)
        matcher = new CTalvorRegExp;
    else if (matcher->m_pRegExp == nullptr)
        matcher->m_pRegExp = NewEngine();
    return *matcher;
}

void CTalvorRegExp::Release() {
    delete m_pRegExp;
    m_pRegExp = nullptr;
    talvor::text::detail::FacadeRegexCache().Clear();
}

void TVPfxRegExpRelease() {
    // Without a matcher there is nothing to give up, and none is built for it.
    if (CTalvorRegExp* matcher = Matcher())
        matcher->Release();
}
