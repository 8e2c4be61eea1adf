// Changing the text: replacing a range, the undo and redo lists, selection and clipboard.
#include "platform/richedit/rich_edit_ctrl.h"

#include "platform/codepage/code_page.h"
#include "platform/window/input_state.h"

#include <algorithm>

namespace {
// Any line end becomes the control's paragraph mark.
std::string ToParagraphMarks(std::string_view text) {
    std::string out;
    out.reserve(text.size());
    for (std::size_t i = 0; i < text.size(); ++i) {
        if (text[i] == '\r' && i + 1 < text.size() && text[i + 1] == '\n')
            ++i;
        out.push_back(text[i] == '\n' ? '\r' : text[i]);
    }
    return out;
}
std::string ToCrLf(std::string_view text) {
    std::string out;
    out.reserve(text.size() + text.size() / 16);
    for (char c : text) {
        if (c == '\r')
            out += "\r\n";
        else
            out.push_back(c);
    }
    return out;
}
} // namespace

void CRichEditCtrl::Replace(long start, long end, std::string_view rawText, bool canUndo,
                            bool typing) {
    start = Clamp(start);
    end = Clamp(end);
    if (end < start)
        std::swap(start, end);
    const std::string text = ToParagraphMarks(rawText);
    Step step;
    step.start = start;
    step.removed = Range(start, end);
    step.inserted = text;
    step.insertedChars = CountChars(text);
    step.selStart = std::min(m_selAnchor, m_selActive);
    step.selEnd = std::max(m_selAnchor, m_selActive);
    step.typing = typing;

    const Location a = Locate(start), b = Locate(end);
    const std::string head =
        m_paras[a.para].text.substr(0, ByteOfChar(m_paras[a.para].text, a.offset));
    const std::string tail =
        m_paras[b.para].text.substr(ByteOfChar(m_paras[b.para].text, b.offset));
    // The widest line is looked for again only when one of the widest paragraphs goes and
    // nothing at least as wide takes its place.
    bool removedWidest = false;
    for (int p = a.para; p <= b.para; ++p)
        removedWidest = removedWidest || m_paras[p].width >= m_maxWidth;
    int widestFresh = 0;
    std::vector<Paragraph> fresh;
    std::size_t pos = 0;
    std::size_t endByte = 0; // in the last new paragraph, behind the inserted text
    while (true) {
        const std::size_t mark = text.find('\r', pos);
        Paragraph para;
        para.text = (fresh.empty() ? head : std::string()) +
                    text.substr(pos, mark == std::string::npos ? std::string::npos : mark - pos);
        if (mark == std::string::npos) {
            endByte = para.text.size();
            para.text += tail;
        }
        para.chars = CountChars(para.text);
        LayoutParagraph(para);
        widestFresh = std::max(widestFresh, para.width);
        fresh.push_back(std::move(para));
        if (mark == std::string::npos)
            break;
        pos = mark + 1;
    }
    if (widestFresh >= m_maxWidth)
        m_maxWidth = widestFresh;
    else if (removedWidest)
        m_maxWidthStale = true;
    if (fresh.size() == static_cast<std::size_t>(b.para - a.para + 1)) {
        std::move(fresh.begin(), fresh.end(), m_paras.begin() + a.para);
        ShiftStarts(a.para, b.para);
    } else {
        m_paras.erase(m_paras.begin() + a.para, m_paras.begin() + b.para + 1);
        m_paras.insert(m_paras.begin() + a.para, std::make_move_iterator(fresh.begin()),
                       std::make_move_iterator(fresh.end()));
        Invalidated(a.para);
    }
    m_modified = true;
    // The caret goes behind the inserted bytes. A lone lead byte in front of them, or in the
    // text behind, may have joined a new byte into one character, so the count of characters
    // is taken from the text as it now stands.
    const int lastPara = a.para + static_cast<int>(fresh.size()) - 1;
    const std::string& last = m_paras[lastPara].text;
    const long caret = ParaStart(lastPara) + CountChars(std::string_view(last).substr(0, endByte));
    step.insertedChars = std::max(0L, caret - start);
    m_selAnchor = m_selActive = Clamp(caret);
    if (canUndo)
        Record(std::move(step));
    else {
        m_undo.clear();
        m_redo.clear();
    }
    UpdateScrollBars();
    Invalidate(FALSE);
    OnTextChanged(start, false);
    if (CWnd* parent = GetParent())
        parent->SendMessage(WM_COMMAND, MAKEWPARAM(static_cast<int>(GetDlgCtrlID()), EN_CHANGE),
                            reinterpret_cast<LPARAM>(this));
}

void CRichEditCtrl::Record(Step step) {
    m_redo.clear();
    if (m_undoLimit == 0)
        return;
    if (step.typing && !m_undo.empty()) {
        Step& last = m_undo.back();
        if (last.typing && step.removed.empty() && last.start + last.insertedChars == step.start) {
            last.inserted += step.inserted;
            last.insertedChars += step.insertedChars;
            return;
        }
    }
    m_undo.push_back(std::move(step));
    if (m_undo.size() > m_undoLimit)
        m_undo.erase(m_undo.begin(), m_undo.begin() + (m_undo.size() - m_undoLimit));
}

BOOL CRichEditCtrl::CanUndo() const {
    return m_undo.empty() ? FALSE : TRUE;
}
BOOL CRichEditCtrl::CanRedo() const {
    return m_redo.empty() ? FALSE : TRUE;
}

BOOL CRichEditCtrl::Undo() {
    if (m_undo.empty())
        return FALSE;
    Step step = std::move(m_undo.back());
    m_undo.pop_back();
    auto redo = std::move(m_redo);
    auto undo = std::move(m_undo);
    Replace(step.start, step.start + step.insertedChars, step.removed, false, false);
    m_redo = std::move(redo);
    m_undo = std::move(undo);
    m_selAnchor = Clamp(step.selStart);
    m_selActive = Clamp(step.selEnd);
    step.typing = false;
    m_redo.push_back(std::move(step));
    ScrollCaretIntoView();
    return TRUE;
}

BOOL CRichEditCtrl::Redo() {
    if (m_redo.empty())
        return FALSE;
    Step step = std::move(m_redo.back());
    m_redo.pop_back();
    auto redo = std::move(m_redo);
    auto undo = std::move(m_undo);
    Replace(step.start, step.start + CountChars(step.removed), step.inserted, false, false);
    m_redo = std::move(redo);
    m_undo = std::move(undo);
    m_undo.push_back(std::move(step));
    ScrollCaretIntoView();
    return TRUE;
}

void CRichEditCtrl::EmptyUndoBuffer() {
    m_undo.clear();
    m_redo.clear();
}

UINT CRichEditCtrl::SetUndoLimit(UINT limit) {
    m_undoLimit = limit;
    if (m_undo.size() > limit)
        m_undo.erase(m_undo.begin(), m_undo.begin() + (m_undo.size() - limit));
    if (limit == 0)
        m_redo.clear();
    return limit;
}

BOOL CRichEditCtrl::SetReadOnly(BOOL readOnly) {
    ModifyStyle(readOnly ? 0 : ES_READONLY, readOnly ? ES_READONLY : 0);
    if (readOnly)
        m_options |= ECO_READONLY;
    else
        m_options &= ~ECO_READONLY;
    return TRUE;
}

void CRichEditCtrl::SetOptions(WORD operation, DWORD flags) {
    switch (operation) {
    case ECOOP_SET:
        m_options = flags;
        break;
    case ECOOP_OR:
        m_options |= flags;
        break;
    case ECOOP_AND:
        m_options &= flags;
        break;
    case ECOOP_XOR:
        m_options ^= flags;
        break;
    default:
        return;
    }
    SetReadOnly((m_options & ECO_READONLY) ? TRUE : FALSE);
}

void CRichEditCtrl::GetSel(long& start, long& end) const {
    start = std::min(m_selAnchor, m_selActive);
    end = std::max(m_selAnchor, m_selActive);
}

void CRichEditCtrl::GetSel(CHARRANGE& range) const {
    long s, e;
    GetSel(s, e);
    range.cpMin = s;
    range.cpMax = e;
}

void CRichEditCtrl::SetSel(long start, long end) {
    if (start < 0) {
        long s, e;
        GetSel(s, e);
        m_selAnchor = m_selActive = s;
    } else {
        const long length = GetTextLength();
        m_selAnchor = std::min(start, length);
        m_selActive = end < 0 ? length : std::min(end, length);
    }
    Invalidate(FALSE);
}

CString CRichEditCtrl::GetSelText() const {
    long s, e;
    GetSel(s, e);
    return CString(std::string_view(Range(s, e)));
}

void CRichEditCtrl::ReplaceSel(LPCTSTR newText, BOOL canUndo) {
    if (IsReadOnly())
        return;
    long s, e;
    GetSel(s, e);
    Replace(s, e, newText ? newText : "", canUndo != FALSE, false);
    ScrollCaretIntoView();
}

void CRichEditCtrl::Clear() {
    long s, e;
    GetSel(s, e);
    if (s != e && !IsReadOnly()) {
        Replace(s, e, "", true, false);
        ScrollCaretIntoView();
    }
}

void CRichEditCtrl::Copy() const {
    long s, e;
    GetSel(s, e);
    if (s != e)
        talvor::platform::SetClipboardText(ToCrLf(Range(s, e)));
}

void CRichEditCtrl::Cut() {
    long s, e;
    GetSel(s, e);
    if (s == e || IsReadOnly())
        return;
    Copy();
    Clear();
}

BOOL CRichEditCtrl::CanPaste(UINT) const {
    return !IsReadOnly() && IsClipboardFormatAvailable(CF_TEXT) ? TRUE : FALSE;
}

void CRichEditCtrl::Paste() {
    std::string text;
    if (IsReadOnly() || !talvor::platform::GetClipboardText(text))
        return;
    long s, e;
    GetSel(s, e);
    Replace(s, e, text, true, false);
    ScrollCaretIntoView();
}

void CRichEditCtrl::HideSelection(BOOL hide, BOOL) {
    m_hideSelection = hide != FALSE;
    Invalidate(FALSE);
}

void CRichEditCtrl::MoveCaret(long to, bool extend) {
    m_selActive = Clamp(to);
    if (!extend)
        m_selAnchor = m_selActive;
    ScrollCaretIntoView();
    Invalidate(FALSE);
}

namespace {
bool IsWordByte(unsigned char c) {
    return c >= 0x80 || std::isalnum(c) || c == '_';
}
} // namespace

long CRichEditCtrl::WordStart(long pos) const {
    const Location loc = Locate(pos);
    const std::string& text = m_paras[loc.para].text;
    const long start = ParaStart(loc.para);
    int k = loc.offset;
    // Single-byte pages: characters are bytes; multi-byte text steps by whole characters.
    auto byteAt = [&](int chars) {
        return static_cast<unsigned char>(text[ByteOfChar(text, chars)]);
    };
    while (k > 0 && !IsWordByte(byteAt(k - 1)))
        --k;
    while (k > 0 && IsWordByte(byteAt(k - 1)))
        --k;
    return start + k;
}

long CRichEditCtrl::WordEnd(long pos) const {
    const Location loc = Locate(pos);
    const std::string& text = m_paras[loc.para].text;
    const int chars = m_paras[loc.para].chars;
    const long start = ParaStart(loc.para);
    auto byteAt = [&](int k) { return static_cast<unsigned char>(text[ByteOfChar(text, k)]); };
    int k = loc.offset;
    while (k < chars && IsWordByte(byteAt(k)))
        ++k;
    while (k < chars && !IsWordByte(byteAt(k)))
        ++k;
    return start + k;
}
