// Literal and bracket masking of statement lines. Every scan steps by whole characters of the
// system code page, so a trail byte that happens to be a quote or a parenthesis never counts.
#include "engine/detail/statement_mask.h"

#include "platform/codepage/code_page.h"

namespace talvor::engine::detail {
namespace {

std::vector<int> QuotePositions(const CString& text) {
    std::vector<int> quotes;
    std::string_view view = text.View();
    for (std::size_t i = 0; i < view.size(); i += platform::CharLengthAt(view, i)) {
        if (view[i] == '"')
            quotes.push_back(static_cast<int>(i));
    }
    return quotes;
}

} // namespace

bool MaskLiterals(const CString& code, CString& masked, std::vector<CString>* literals) {
    std::vector<int> quotes = QuotePositions(code);
    if (quotes.size() % 2 != 0)
        return false;
    // From the last pair to the first, so that the positions of earlier pairs stay valid.
    std::string text = code.Str();
    std::vector<CString> found;
    for (std::size_t pair = quotes.size() / 2; pair-- > 0;) {
        auto open = static_cast<std::size_t>(quotes[2 * pair]);
        auto close = static_cast<std::size_t>(quotes[2 * pair + 1]);
        found.emplace_back(std::string_view(text).substr(open, close - open + 1));
        text.replace(open, close - open + 1, 1, LiteralMask);
    }
    masked = CString(std::move(text));
    if (literals != nullptr)
        literals->assign(found.rbegin(), found.rend());
    return true;
}

int ClosingBracket(const CString& text, int open) {
    std::string_view view = text.View();
    int depth = 0;
    for (std::size_t i = static_cast<std::size_t>(open); i < view.size();
         i += platform::CharLengthAt(view, i)) {
        if (view[i] == '(') {
            ++depth;
        } else if (view[i] == ')') {
            if (--depth == 0)
                return static_cast<int>(i);
        }
    }
    return -1;
}

void MaskGroupsEverywhere(CString& masked) {
    for (int open = masked.Find('('); open >= 0; open = masked.Find('(')) {
        int close = ClosingBracket(masked, open);
        if (close < 0) {
            masked = masked.Left(open) + GroupMask;
            return;
        }
        // Every occurrence of the group, left to right, whole characters only.
        std::string group = masked.Mid(open, close - open + 1).Str();
        std::string_view text = masked.View();
        std::string result;
        std::size_t from = 0;
        for (std::size_t hit = platform::FindText(text, group); hit != std::string_view::npos;
             hit = platform::FindText(text, group, from)) {
            result.append(text.substr(from, hit - from));
            result += GroupMask;
            from = hit + group.size();
        }
        result.append(text.substr(from));
        masked = CString(std::move(result));
    }
}

void MaskGroupsInPlace(CString& masked, std::vector<BracketGroup>& groups) {
    for (int open = masked.Find('('); open >= 0; open = masked.Find('(')) {
        int close = ClosingBracket(masked, open);
        if (close < 0) {
            groups.push_back({masked.Mid(open), false});
            masked = masked.Left(open) + GroupMask;
            return;
        }
        groups.push_back({masked.Mid(open, close - open + 1), true});
        masked = masked.Left(open) + GroupMask + masked.Mid(close + 1);
    }
}

} // namespace talvor::engine::detail
