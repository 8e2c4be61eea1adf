// Keyboard glue: the control does the typing; the editor repaints when the caret, the
// selection or the horizontal scroll position moved, keeps the control's horizontal range in
// step, and offers the word at the caret.
#include "editor/syntax_edit.h"

#include "platform/codepage/code_page.h"
#include "platform/window/input_state.h"

#include <cctype>

namespace {
bool IsWordByte(unsigned char c) {
    return std::isalnum(c) || c == '_';
}
} // namespace

BOOL CTalvorSyntaxEdit::PreTranslateMessage(MSG* pMsg) {
    if (pMsg && pMsg->message == WM_KEYDOWN && (GetAsyncKeyState(VK_CONTROL) & 0x8000) &&
        pMsg->wParam >= 65 && pMsg->wParam < 86) {
        const bool shift = (GetAsyncKeyState(VK_SHIFT) & 0x8000) != 0;
        UINT command = 0;
        switch (pMsg->wParam) {
        case 'A':
            command = 57642;
            break;
        case 'F':
            command = 57636;
            break;
        case 'H':
            command = 57641;
            break;
        case 'K':
            command = shift ? 6018 : 6011;
            break;
        case 'L':
            command = 6008;
            break;
        case 'U':
            command = shift ? 6012 : 6007;
            break;
        default:
            break;
        }
        if (command)
            SendMessage(WM_COMMAND, command);
    }
    return CRichEditCtrl::PreTranslateMessage(pMsg);
}

BOOL CTalvorSyntaxEdit::OnCommand(UINT nID) {
    switch (nID) {
    case 6000:
        OnEditMoveright();
        return TRUE;
    case 6001:
        OnEditMoveleft();
        return TRUE;
    case 6003:
        OnEditComment();
        return TRUE;
    case 6004:
        OnEditUncomment();
        return TRUE;
    case 6007:
        OnEditUcase();
        return TRUE;
    case 6008:
        OnEditLcase();
        return TRUE;
    case 6010:
        OnEditInsertfile();
        return TRUE;
    case 6011:
        OnEditInvert();
        return TRUE;
    case 6012:
        OnEditCapitalize();
        return TRUE;
    case 6013:
        OnEditTabtospace();
        return TRUE;
    case 6014:
        OnEditSpacetotab();
        return TRUE;
    case 6015:
        OnEditLeadingspacetotab();
        return TRUE;
    case 6016:
        OnEditTrimtraillingspace();
        return TRUE;
    case 6017:
        OnEditTrimtraillingtab();
        return TRUE;
    case 6018:
        OnEditSentancecase();
        return TRUE;
    case 57634:
        OnEditcopy();
        return TRUE;
    case 57635:
        OnEditcut();
        return TRUE;
    case 57637:
        OnEditPaste();
        return TRUE;
    case 57642:
        OnEditselectall();
        return TRUE;
    case 57643:
        OnEditundo();
        return TRUE;
    case 57644:
        OnEditredo();
        return TRUE;
    default:
        return FALSE;
    }
}

void CTalvorSyntaxEdit::OnEditcut() {
    long start, end;
    GetSel(start, end);
    SendMessage(WM_CUT);
    if (start != end)
        ReCalcCursorPostion();
    else
        m_nHScrollMax = GetScrollLimit(SB_HORZ);
    m_bModified = 1;
}

void CTalvorSyntaxEdit::OnEditcopy() {
    SendMessage(WM_COPY);
}

void CTalvorSyntaxEdit::OnEditPaste() {
    std::string text;
    if (!talvor::platform::GetClipboardText(text))
        return;
    CWnd* focus = GetFocus();
    if (focus && focus != this) {
        focus->SendMessage(WM_PASTE);
        return;
    }
    long start, end;
    GetSel(start, end);
    m_nLineCount = GetLineCount();
    SetParseCookieZeroFromGivenLine(static_cast<int>(LineFromChar(start)));
    ReplaceSel(text.c_str(), TRUE);
    if (start != end)
        ReCalcCursorPostion();
    m_bModified = 1;
}

void CTalvorSyntaxEdit::OnEditselectall() {
    CWnd* focus = GetFocus();
    if (focus && focus != this) {
        focus->SendMessage(EM_SETSEL, 0, -1);
        return;
    }
    SetSel(0, -1);
    SetFocus();
    PostMessage(WM_PAINT);
    m_bModified = 1;
}

void CTalvorSyntaxEdit::OnEditundo() {
    SendMessage(EM_UNDO);
}

void CTalvorSyntaxEdit::OnEnChange() {
    m_bModified = 1;
}

void CTalvorSyntaxEdit::OnEditredo() {
    SendMessage(EM_REDO);
    m_bModified = 1;
}

LRESULT CTalvorSyntaxEdit::WindowProc(UINT nMsg, WPARAM wParam, LPARAM lParam) {
    constexpr UINT ImeChar = 0x0286;
    if (nMsg == WM_COMMAND && OnCommand(LOWORD(wParam)))
        return 0;
    if (nMsg == WM_REFLECT_BASE + WM_COMMAND && HIWORD(wParam) == EN_CHANGE) {
        OnEnChange();
        return 1; // handled: the parent does not see the notification
    }
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
