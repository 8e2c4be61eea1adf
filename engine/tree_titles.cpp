// Node texts of the code tree: fixed words from the title strings of TalvorRes, with the
// expressions of the statement, taken from its bracket groups, put between them.
#include "engine/script_text_disposal.h"

#include "engine/detail/keyword_test.h"
#include "engine/detail/statement_mask.h"
#include "resources/resource_guard.h"
#include "resources/talvor_res_ids.h"
#include "text/regular_expressions.h"

#include <deque>
#include <vector>

using talvor::engine::detail::BracketGroup;
using talvor::engine::detail::LiteralMask;
using talvor::engine::detail::MaskedLine;

namespace {

constexpr UINT IfTitlesId = IDS_IF_TITLES;
constexpr UINT LoopTitlesId = IDS_LOOP_TITLES;
constexpr UINT ForTitlesId = IDS_FOR_TITLES;
constexpr UINT ExitTitlesId = IDS_EXIT_TITLES;
constexpr UINT CallTitlesId = IDS_CALL_TITLES;

constexpr const char* Separator = "    ";

// Line n of a title string; empty when the string or the line is missing.
CString TitleLine(UINT id, int n) {
    CString text;
    CString line;
    if (text.LoadString(id))
        AfxExtractSubString(line, text, n, '\n');
    return line;
}

// The expression of a bracket group: each literal mask takes the next literal of the
// statement back, then the parentheses go. A mask with no literal left stays as it is.
CString Expression(const BracketGroup& group, std::deque<CString>& literals) {
    CString text;
    for (char ch : group.text.View()) {
        if (ch == LiteralMask && !literals.empty()) {
            text += literals.front();
            literals.pop_front();
        } else {
            text += ch;
        }
    }
    // An unclosed group has only its "(" to lose.
    return group.closed ? text.Mid(1, text.GetLength() - 2) : text.Mid(1);
}

// Test of a statement that begins with keyword and white space: the rest of the statement.
bool ReplaceLeadingWord(const CString& keyword, CString& code) {
    constexpr short Off = 0;
    constexpr short On = -1;
    return TVPfxReplaceByRegExp("^\\s*" + keyword + "\\s+", code, CString(), code, Off, On) == 1;
}

} // namespace

CString CTalvorScriptTextDisposal::GetTreeTitleByCode(CString code) {
    talvor::resources::ResourceGuard guard;
    CString masked;
    std::vector<CString> literalList;
    if (!talvor::engine::detail::MaskLiterals(code, masked, &literalList))
        return CString();
    std::deque<CString> literals(literalList.begin(), literalList.end());
    std::vector<BracketGroup> groups;
    talvor::engine::detail::MaskGroupsInPlace(masked, groups);

    // Titles that need a bracket group the statement doesn't have show the statement as
    // it is written.
    const MaskedLine line(masked);
    talvor::engine::detail::FlowKeywordPatterns& patterns = talvor::engine::detail::FlowPatterns();
    if (line.Has(patterns.ifWord, m_strIf) && line.Has(patterns.thenWord, m_strThen)) {
        if (groups.empty())
            return code;
        return TitleLine(IfTitlesId, 0) + Separator + Expression(groups[0], literals) + Separator +
               TitleLine(IfTitlesId, 1);
    }
    if (line.Is(m_strElse))
        return TitleLine(IfTitlesId, 2);
    if (line.Is(m_strEndIf))
        return TitleLine(IfTitlesId, 3);
    if (line.Has(patterns.doWhile, m_strDoWhile)) {
        if (groups.empty())
            return code;
        return TitleLine(LoopTitlesId, 0) + Separator + Expression(groups[0], literals);
    }
    if (line.Is(m_strLoop))
        return TitleLine(LoopTitlesId, 1);
    if (line.Has(patterns.forWord, m_strFor) && line.Has(patterns.toWord, m_strTo) &&
        !groups.empty()) {
        // The variable stands between the keyword and its blank (four characters) and the
        // first " = ".
        int equals = masked.Find(" = ");
        if (groups.size() < 2 || equals < 4)
            return code;
        CString start = Expression(groups[0], literals);
        CString end = Expression(groups[1], literals);
        CString step;
        if (groups.size() == 3)
            step = Expression(groups[2], literals);
        if (step.IsEmpty())
            step = "1";
        return TitleLine(ForTitlesId, 0) + Separator + masked.Mid(4, equals - 4) + " = " + start +
               Separator + TitleLine(ForTitlesId, 1) + Separator + end + Separator +
               TitleLine(ForTitlesId, 2) + Separator + step;
    }
    if (line.Is(m_strNext))
        return TitleLine(ForTitlesId, 3);
    if (line.Has(patterns.loopWhile, m_strLoopWhile)) {
        if (groups.empty())
            return code;
        return TitleLine(LoopTitlesId, 1) + Separator + Expression(groups[0], literals);
    }
    if (line.Is(m_strDo))
        return TitleLine(LoopTitlesId, 0);
    if (line.Has(patterns.exitWord, m_strExit))
        return TitleLine(ExitTitlesId, 0);
    if (ReplaceLeadingWord(m_strCall, code))
        return TitleLine(CallTitlesId, 0) + Separator + code;
    if (ReplaceLeadingWord(m_strSet, code))
        return TitleLine(CallTitlesId, 1) + Separator + code;
    return code;
}
