// Renaming a control across the plain text of a script: every use of the name outside string
// literals, and the handlers that carry the name in their own, follow the new name.
#include "engine/detail/wide_positions.h"
#include "engine/script_text_disposal.h"
#include "platform/core/ascii.h"
#include "text/regular_expressions.h"

#include <algorithm>
#include <vector>

namespace {

constexpr short On = -1;
constexpr short Off = 0;

using Matches = CArray<tagREGEXPINFO, tagREGEXPINFO>;

// One replacement of the name, in bytes of the script text.
struct Edit {
    std::size_t start;
    std::size_t length;
};

bool IsPlainWord(const CString& name) {
    for (unsigned char ch : name.View())
        if (ch >= 0x80 || !(talvor::platform::IsAsciiLetter(ch) ||
                            talvor::platform::IsAsciiDigit(ch) || ch == '_'))
            return false;
    return true;
}

// The string literals of the text as first and last wide positions, in text order.
class Literals {
public:
    explicit Literals(const Matches& matches) {
        m_spans.reserve(static_cast<std::size_t>(matches.GetSize()));
        for (const tagREGEXPINFO& match : matches)
            m_spans.push_back({match.nFirstIndex, match.nFirstIndex + match.nLength - 1});
    }
    // A match from position to end overlaps a literal when end is not below the literal's
    // first position and position + 1 is not above its last. Literals don't overlap each
    // other, so only the last one that starts at or before end can qualify.
    bool Overlaps(long position, long end) const {
        auto after =
            std::upper_bound(m_spans.begin(), m_spans.end(), end,
                             [](long value, const Span& span) { return value < span.first; });
        if (after == m_spans.begin())
            return false;
        return position + 1 <= std::prev(after)->last;
    }

private:
    struct Span {
        long first;
        long last;
    };
    std::vector<Span> m_spans;
};

} // namespace

void CTalvorScriptTextDisposal::ChangeNameToScriptTxt(CString& script, CString oldName,
                                                      CString newName, CVXInterfaceInfo* info) {
    // An empty old name would be found between every two characters; there is nothing to
    // rename then.
    if (script.IsEmpty() || oldName.IsEmpty())
        return;

    Matches found;
    TVPfxGetInfoByRegExp("\"[^\"]*\"", script, found, On, Off);
    const Literals literals(found);
    const talvor::engine::detail::WidePositions positions(script.View());
    const bool plainName = IsPlainWord(oldName);
    std::vector<Edit> edits;

    // Where the name stands inside one match: the first occurrence, without regard to case.
    // The match is cut from the text by its byte positions: the delimiter on its left can be
    // the second half of a character outside the basic plane, which has no bytes of its own.
    const std::string_view text = script.View();
    auto addEdit = [&](const tagREGEXPINFO& match) {
        const std::size_t matchStart = positions.ToByte(match.nFirstIndex);
        const std::string_view value = text.substr(
            matchStart, positions.ToByte(match.nFirstIndex + match.nLength) - matchStart);
        if (plainName) {
            const std::string_view name = oldName.View();
            for (std::size_t at = 0; at + name.size() <= value.size(); ++at) {
                bool same = true;
                for (std::size_t k = 0; k < name.size() && same; ++k)
                    same =
                        talvor::platform::AsciiLower(static_cast<unsigned char>(value[at + k])) ==
                        talvor::platform::AsciiLower(static_cast<unsigned char>(name[k]));
                if (same) {
                    edits.push_back({matchStart + at, name.size()});
                    return;
                }
            }
            return;
        }
        Matches inner;
        if (TVPfxGetInfoByRegExp(oldName, CString(value), inner, Off, On) == 0 || inner.IsEmpty())
            return;
        const talvor::engine::detail::WidePositions innerPositions(value);
        const std::size_t at = innerPositions.ToByte(inner[0].nFirstIndex);
        edits.push_back({matchStart + at, static_cast<std::size_t>(inner[0].strValue.GetLength())});
    };

    // The delimiter on the right is looked at but not taken in, so a use right behind a
    // match (one character between, or at the start of the next line) is found as well.
    TVPfxGetInfoByRegExp(CString("[^\\w\\.]{1}\\s*") + oldName + "(?=\\s*[^\\w]{1})", script, found,
                         On, On);
    for (const tagREGEXPINFO& match : found)
        if (!literals.Overlaps(match.nFirstIndex, match.nFirstIndex + match.nLength - 1))
            addEdit(match);

    if (info != nullptr) {
        // The events whose names are plain words go into one search as alternatives, which
        // finds the same places as one search per event; any other name is searched alone.
        CString alternatives;
        std::vector<CString> alone;
        for (int i = 0; i < info->GetNumMethods(); ++i) {
            const CVXMethodInfo* member = info->GetMethod(i);
            if (member == nullptr)
                continue;
            const CString event = member->GetName();
            if (!IsPlainWord(event) || event.IsEmpty()) {
                alone.push_back(event);
                continue;
            }
            if (!alternatives.IsEmpty())
                alternatives += "|";
            alternatives += event;
        }
        if (!alternatives.IsEmpty())
            alone.push_back("(?:" + alternatives + ")");
        for (const CString& events : alone) {
            TVPfxGetInfoByRegExp(CString("[^\\w\\.]{1}\\s*") + oldName + "_" + events +
                                     "(?=\\s*\\()",
                                 script, found, On, On);
            for (const tagREGEXPINFO& match : found)
                if (!literals.Overlaps(match.nFirstIndex, match.nFirstIndex + match.nLength - 1))
                    addEdit(match);
        }
    }
    if (edits.empty())
        return;

    // One pass over the text; a place found twice (an event listed twice) is renamed once.
    std::sort(edits.begin(), edits.end(),
              [](const Edit& a, const Edit& b) { return a.start < b.start; });
    std::string result;
    result.reserve(text.size() + edits.size() * newName.View().size());
    std::size_t done = 0;
    for (const Edit& edit : edits) {
        if (edit.start < done || edit.start + edit.length > text.size())
            continue;
        result.append(text.substr(done, edit.start - done));
        result.append(newName.View());
        done = edit.start + edit.length;
    }
    result.append(text.substr(done));
    script = CString(std::move(result));
}
