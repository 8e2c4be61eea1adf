// Keyboard glue: the control does the typing; the editor repaints when the caret, the
// selection or the horizontal scroll position moved, keeps the control's horizontal range in
// step, and offers the word at the caret.
#include "editor/syntax_edit.h"

#include "platform/codepage/code_page.h"

#include <cctype>

namespace {
bool IsWordByte(unsigned char c) {
    return std::isalnum(c) || c == '_';
}
} // namespace

BOOL CTalvorSyntaxEdit::PreTranslateMessage(MSG* pMsg) {
    return CRichEditCtrl::PreTranslateMessage(pMsg);
}

LRESULT CTalvorSyntaxEdit::WindowProc(UINT nMsg, WPARAM wParam, LPARAM lParam) {
    constexpr UINT ImeChar = 0x0286;
    if (nMsg != ImeChar)
        return CRichEditCtrl::WindowProc(nMsg, wParam, lParam);
    long start, end;
    GetSel(start, end);
    const LRESULT result = CRichEditCtrl::WindowProc(nMsg, wParam, lParam);
    if (start != end)
        ReCalcCursorPostion();
    else
        m_nHScrollMax = GetScrollLimit(SB_HORZ);
    return result;
}

void CTalvorSyntaxEdit::ReCalcCursorPostion() {
    int minPos = 0, maxPos = 0;
    GetScrollRange(SB_HORZ, &minPos, &maxPos);
    if (maxPos == m_nHScrollMax)
        return;
    // This control keeps its layout right by itself; only the range seen is taken over.
    m_nHScrollMax = maxPos;
}

void CTalvorSyntaxEdit::OnKeyDown(UINT nChar, UINT nRepCnt, UINT nFlags) {
    long start, end;
    GetSel(start, end);
    m_bCanPaint = 0;
    CRichEditCtrl::OnKeyDown(nChar, nRepCnt, nFlags);
    if (start != end && (nChar == VK_DELETE || nChar == VK_BACK))
        ReCalcCursorPostion();
    m_bCanPaint = 1;
    GetSelection();
    if (nChar >= VK_LEFT && nChar <= VK_DOWN)
        SendMessage(WM_PAINT);
    GetSel(start, end);
    if (start != end || GetCurrentLine() != m_nCurLine)
        SendMessage(WM_PAINT);
    const int before = m_nHScrollPos;
    CalcHorzScrollPos();
    if (m_nHScrollPos != before)
        SendMessage(WM_PAINT);
    CWnd* parent = GetParent();
    if (parent) {
        if (nChar == 0x74)
            parent->SendMessage(WM_COMMAND, 6057);
        else if (nChar == 0x72)
            parent->SendMessage(WM_COMMAND, 57640);
        else if (nChar == 0x73)
            parent->SendMessage(WM_COMMAND, 6002);
    }
}

void CTalvorSyntaxEdit::OnChar(UINT nChar, UINT nRepCnt, UINT nFlags) {
    CRichEditCtrl::OnChar(nChar, nRepCnt, nFlags);
    m_bModified = 1;
    long start, end;
    GetSel(start, end);
    if (start != end)
        ReCalcCursorPostion();
    else {
        int minPos = 0;
        GetScrollRange(SB_HORZ, &minPos, &m_nHScrollMax);
    }
}

CString CTalvorSyntaxEdit::GetCursorString() {
    long start, end;
    GetSel(start, end);
    if (start != end && LineFromChar(start) == LineFromChar(end))
        return GetSelText();
    m_nLineCount = GetLineCount();
    const int line = static_cast<int>(LineFromChar(end));
    CString str;
    GetLineString(line, str);
    const std::string_view text = str.View();
    const long column = end - LineIndex(line);
    std::size_t c = 0;
    for (long k = 0; k < column && c < text.size(); ++k)
        c += std::max<std::size_t>(1, talvor::platform::CharLengthAt(text, c));
    c = std::min(c, text.size());
    auto byte = [&](std::size_t i) { return static_cast<unsigned char>(text[i]); };
    std::size_t from = c;
    while (from > 0 && (IsWordByte(byte(from - 1)) || byte(from - 1) >= 0x80))
        from -= (byte(from - 1) >= 0x80 && from >= 2) ? 2 : 1;
    if (from < text.size() && !std::isalnum(byte(from)) && byte(from) < 0x80)
        ++from;
    std::size_t to = c;
    const std::size_t last = text.empty() ? 0 : text.size() - 1;
    while (to < last) {
        if (IsWordByte(byte(to)))
            ++to;
        else if (talvor::platform::IsLeadByte(byte(to)))
            to += 2;
        else
            break;
    }
    to = std::min(to, last);
    if (to <= from)
        return CString();
    return CString(text.substr(from, to - from));
}
