// The editor's text commands: block indent and unindent, comment and uncomment on the lines of
// the selection, and case, tab and blank conversions and trimming of the selected text.
#include "editor/syntax_edit.h"

#include "editor/detail/text_transforms.h"
#include "platform/codepage/code_page.h"

#include <functional>

namespace {
// Characters in the first bytes of a line's text.
long CharsIn(std::string_view text, std::size_t bytes) {
    long chars = 0;
    for (std::size_t pos = 0; pos < bytes && pos < text.size();
         pos += std::max<std::size_t>(1, talvor::platform::CharLengthAt(text, pos)))
        ++chars;
    return chars;
}
} // namespace

void CTalvorSyntaxEdit::LoadText(CString&) {
    ResetParseCookie();
    SetMacroEditFont(m_lfFont);
}

void CTalvorSyntaxEdit::LineCommand(const std::function<void(long, std::string_view)>& step) {
    ShowWindow(SW_HIDE);
    m_nLineCount = GetLineCount();
    int first = 0, last = 0;
    GetSelLine(first, last);
    int n = last - first + 1;
    CString str, above;
    // Rewrapping may add display lines at every step (a tab at the start of a line in a very
    // narrow window); the walk never goes beyond a bound of the lines there were at the start.
    const long limit = 4L * GetLineCount() + 64;
    for (int i = 0; i < n && i < limit; ++i) {
        const int line = first + i;
        m_nLineCount = GetLineCount();
        const int prevHard = line == 0 ? 1 : GetLineString(line - 1, above);
        GetLineString(line, str);
        if (!prevHard && first != last)
            continue;
        const long index = LineIndex(line);
        if (index < 0)
            break;
        SetSel(index, index);
        const int before = GetLineCount();
        // The appended blank is never text of the line.
        std::string_view text = str.View();
        if (!text.empty())
            text.remove_suffix(1);
        step(index, text);
        n += GetLineCount() - before;
    }
    const long start = LineIndex(first);
    const long end = LineIndex(first + n);
    SetSel(start, end < 0 ? GetTextLength() : end);
    ShowWindow(SW_SHOW);
    m_bModified = 1;
}

void CTalvorSyntaxEdit::RemoveChars(long index, long count) {
    if (count <= 0)
        return;
    SetSel(index, index + count);
    ReplaceSel("", TRUE);
}

void CTalvorSyntaxEdit::OnEditMoveright() {
    LineCommand([this](long, std::string_view) { ReplaceSel("\t", TRUE); });
}

void CTalvorSyntaxEdit::OnEditMoveleft() {
    LineCommand([this](long index, std::string_view text) {
        if (text.empty())
            return;
        if (text[0] == '\t') {
            RemoveChars(index, 1);
            return;
        }
        std::size_t blanks = 0;
        while (blanks < text.size() && text[blanks] == ' ')
            ++blanks;
        RemoveChars(index, static_cast<long>(blanks));
    });
}

void CTalvorSyntaxEdit::OnEditComment() {
    const CString comment = GetLineCommentString();
    if (comment.IsEmpty())
        return;
    LineCommand([this, &comment](long, std::string_view) { ReplaceSel(comment, TRUE); });
}

void CTalvorSyntaxEdit::OnEditUncomment() {
    const CString commentText = GetLineCommentString();
    if (commentText.IsEmpty())
        return;
    const std::string_view comment = commentText.View();
    LineCommand([this, comment](long index, std::string_view text) {
        if (text.empty())
            return;
        std::size_t at = std::string_view::npos;
        if (text.substr(0, comment.size()) == comment) {
            at = 0;
        } else {
            std::size_t skip = 0;
            while (skip < text.size() && (text[skip] == ' ' || text[skip] == '\t'))
                ++skip;
            if (text.substr(skip, comment.size()) == comment)
                at = text.find(comment);
        }
        if (at == std::string_view::npos)
            return;
        RemoveChars(index + CharsIn(text, at), CharsIn(text.substr(at), comment.size()));
    });
}

void CTalvorSyntaxEdit::SelectionCommand(const std::function<std::string(std::string)>& transform,
                                         bool keepSelection) {
    long start, end;
    GetSel(start, end);
    std::string text;
    EDITSTREAM es;
    es.dwCookie = reinterpret_cast<DWORD_PTR>(&text);
    es.pfnCallback = [](DWORD_PTR cookie, BYTE* buf, LONG cb, LONG* pcb) -> DWORD {
        reinterpret_cast<std::string*>(cookie)->append(reinterpret_cast<char*>(buf),
                                                       static_cast<std::size_t>(cb));
        *pcb = cb;
        return 0;
    };
    StreamOut(SF_TEXT | SFF_SELECTION, es);
    const std::string result = transform(std::move(text));
    ReplaceSel(result.c_str(), TRUE);
    if (keepSelection) {
        SetSel(start, end);
    } else {
        CString unused;
        LoadText(unused);
    }
    m_bModified = 1;
}

void CTalvorSyntaxEdit::OnEditUcase() {
    SelectionCommand([](std::string t) { return talvor::editor::UpperCase(std::move(t)); }, true);
}
void CTalvorSyntaxEdit::OnEditLcase() {
    SelectionCommand([](std::string t) { return talvor::editor::LowerCase(std::move(t)); }, true);
}
void CTalvorSyntaxEdit::OnEditInvert() {
    SelectionCommand([](std::string t) { return talvor::editor::InvertCase(std::move(t)); }, true);
}
void CTalvorSyntaxEdit::OnEditCapitalize() {
    SelectionCommand([](std::string t) { return talvor::editor::Capitalize(std::move(t)); }, true);
}
void CTalvorSyntaxEdit::OnEditSentancecase() {
    SelectionCommand([](std::string t) { return talvor::editor::SentenceCase(std::move(t)); },
                     true);
}
void CTalvorSyntaxEdit::OnEditTabtospace() {
    const int size = GetTabSize();
    SelectionCommand([size](std::string t) { return talvor::editor::TabsToSpaces(t, size); },
                     false);
}
void CTalvorSyntaxEdit::OnEditSpacetotab() {
    const int size = GetTabSize();
    SelectionCommand([size](std::string t) { return talvor::editor::SpacesToTabs(t, size); },
                     false);
}
void CTalvorSyntaxEdit::OnEditLeadingspacetotab() {
    const int size = GetTabSize();
    SelectionCommand([size](std::string t) { return talvor::editor::LeadingSpacesToTabs(t, size); },
                     false);
}
void CTalvorSyntaxEdit::OnEditTrimtraillingspace() {
    SelectionCommand([](std::string t) { return talvor::editor::TrimTrailing(t, ' '); }, false);
}
void CTalvorSyntaxEdit::OnEditTrimtraillingtab() {
    SelectionCommand([](std::string t) { return talvor::editor::TrimTrailing(t, '\t'); }, false);
}
