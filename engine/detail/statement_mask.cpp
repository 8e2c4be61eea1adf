// Literal and bracket masking of statement lines. Every scan steps by whole characters of the
// system code page, so a trail byte that happens to be a quote or a parenthesis never counts.
#include "engine/detail/statement_mask.h"

#include "platform/codepage/code_page.h"

#include <algorithm>

namespace talvor::engine::detail {
bool MaskLiterals(const CString& code, CString& masked, std::vector<CString>* literals) {
    // One pass: quotes pair up in order, each pair and what it holds becomes one mask.
    const std::string_view view = code.View();
    std::size_t quotes = 0;
    // Every byte is a character of its own in a single-byte page and in ASCII text.
    const bool byteWise =
        !platform::IsMultiByteCodePage() ||
        std::all_of(view.begin(), view.end(), [](char c) { return (c & 0x80) == 0; });
    if (byteWise) {
        quotes = static_cast<std::size_t>(std::count(view.begin(), view.end(), '"'));
    } else {
        for (std::size_t i = 0; i < view.size(); i += platform::CharLengthAt(view, i))
            quotes += view[i] == '"' ? 1 : 0;
    }
    if (quotes % 2 != 0)
        return false;
    if (quotes == 0) {
        masked = code;
        if (literals != nullptr)
            literals->clear();
        return true;
    }
    std::string text;
    text.reserve(view.size());
    std::vector<CString> found;
    std::size_t open = std::string_view::npos;
    for (std::size_t i = 0; i < view.size();) {
        const std::size_t length = platform::CharLengthAt(view, i);
        if (view[i] == '"') {
            if (open == std::string_view::npos) {
                open = i;
            } else {
                if (literals != nullptr)
                    found.emplace_back(view.substr(open, i - open + 1));
                text.push_back(LiteralMask);
                open = std::string_view::npos;
            }
        } else if (open == std::string_view::npos) {
            text.append(view.substr(i, length));
        }
        i += length;
    }
    masked = CString(std::move(text));
    if (literals != nullptr)
        *literals = std::move(found);
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
