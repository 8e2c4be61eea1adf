// Display lines as the parser sees them, the cookie cache between paints, and the pixel
// geometry of lines, selection and margins.
#include "editor/syntax_edit.h"

#include "syntax/document_colourer.h"

#include <algorithm>

namespace {
constexpr unsigned long UnknownCookie = 0xFFFFFFFF;
}

int CTalvorSyntaxEdit::GetLineString(int nLine, CString& str) {
    str.Empty();
    if (nLine < 0 || nLine >= m_nLineCount)
        return 1;
    AppendLineText(nLine, str);
    int hardEnd = 0;
    if (!str.IsEmpty() && str[str.GetLength() - 1] == '\r') {
        str.Truncate(str.GetLength() - 1);
        hardEnd = 1;
    }
    // Every line ends in a blank that is not in the text: words at the line's end are closed
    // by it, and all offsets stay right because it comes last.
    str += ' ';
    return hardEnd;
}

unsigned long CTalvorSyntaxEdit::CarriedCookie(unsigned long cookieAbove, int hardEndAbove) {
    talvor::syntax::DocumentColourer colourer(*this);
    return colourer.CookieForNextLine(cookieAbove, hardEndAbove != 0);
}

unsigned long CTalvorSyntaxEdit::GetParseCookie(int nLine) {
    if (!m_pParseCookie) {
        m_nCookieCount = std::max(0, m_nLineCount);
        m_pParseCookie =
            std::make_unique<unsigned long[]>(static_cast<std::size_t>(m_nCookieCount));
        std::fill_n(m_pParseCookie.get(), m_nCookieCount, UnknownCookie);
        m_nKnownCookiesBelow = 0;
    }
    if (nLine < 0 || nLine >= m_nCookieCount)
        return 0;
    if (m_pParseCookie[nLine] != UnknownCookie)
        return m_pParseCookie[nLine];
    int first = nLine;
    while (first > 0 && m_pParseCookie[first - 1] == UnknownCookie)
        --first;
    // How the line above the first unknown one ends decides what of its cookie passes on.
    CString line;
    int hardEnd = first == 0 ? 1 : GetLineString(first - 1, line);
    talvor::syntax::DocumentColourer colourer(*this);
    for (int k = first; k <= nLine; ++k) {
        const unsigned long start =
            k == 0 ? 0 : colourer.CookieForNextLine(m_pParseCookie[k - 1], hardEnd != 0);
        hardEnd = GetLineString(k, line);
        m_pParseCookie[k] = colourer.CookieAtEnd(start, line);
    }
    return m_pParseCookie[nLine];
}

void CTalvorSyntaxEdit::OnTextChanged(long firstChar, bool wholeText) {
    if (wholeText) {
        SetParseCookieZeroFromGivenLine(0);
        return;
    }
    SetParseCookieZeroFromGivenLine(static_cast<int>(LineFromChar(firstChar)));
}

void CTalvorSyntaxEdit::ResetParseCookie() {
    m_nCookieCount = 0;
    m_nHScrollPos = 0;
    m_pParseCookie.reset();
    m_pPaintBitmap.reset();
    m_nKnownCookiesBelow = 0;
}

void CTalvorSyntaxEdit::SetParseCookieZeroFromGivenLine(int nLine) {
    if (!m_pParseCookie || nLine < 0 || nLine >= m_nCookieCount)
        return;
    std::fill(m_pParseCookie.get() + nLine, m_pParseCookie.get() + m_nCookieCount, UnknownCookie);
    m_nKnownCookiesBelow = std::min(m_nKnownCookiesBelow, nLine);
}

void CTalvorSyntaxEdit::ResynchroniseCookies() {
    if (!m_pParseCookie || m_nCookieCount == m_nLineCount)
        return;
    const int caret = m_nCurLine, oldCount = m_nCookieCount, newCount = std::max(0, m_nLineCount);
    int keep = caret;
    if (oldCount < newCount) {
        keep = caret - newCount + oldCount;
        if (keep < 0)
            keep = caret;
    }
    if (caret > newCount)
        keep = 0;
    keep = std::min(keep, oldCount);
    auto fresh = std::make_unique<unsigned long[]>(static_cast<std::size_t>(newCount));
    std::fill_n(fresh.get(), newCount, UnknownCookie);
    const int kept = caret > 0 ? std::min(keep, newCount) : 0;
    std::copy_n(m_pParseCookie.get(), kept, fresh.get());
    m_pParseCookie = std::move(fresh);
    m_nCookieCount = newCount;
    m_nKnownCookiesBelow = std::min(m_nKnownCookiesBelow, kept);
}

BOOL CTalvorSyntaxEdit::OnIdle(LONG) {
    return WorkOutCookiesAhead() ? TRUE : FALSE;
}

bool CTalvorSyntaxEdit::WorkOutCookiesAhead() {
    // About 2 ms of parsing: the host's loop stays quick to answer its next message.
    constexpr int Slice = 8192;
    if (!m_pParseCookie || m_nCookieCount != m_nLineCount || m_nLineCount != GetLineCount())
        return false;
    const unsigned long* entries = m_pParseCookie.get();
    int first = std::max(0, m_nKnownCookiesBelow);
    while (first < m_nCookieCount && entries[first] != UnknownCookie)
        ++first;
    m_nKnownCookiesBelow = first;
    if (first >= m_nCookieCount)
        return false;
    // The last line of this run of unknown ones: the walk from it back reaches just to first.
    const int end = std::min(m_nCookieCount, first + Slice);
    int last = first;
    while (last + 1 < end && entries[last + 1] == UnknownCookie)
        ++last;
    GetParseCookie(last);
    m_nKnownCookiesBelow = last + 1;
    return m_nKnownCookiesBelow < m_nCookieCount;
}

int CTalvorSyntaxEdit::GetLinesTop(int nLine) {
    const int count = GetLineCount();
    if (nLine >= count && count > 0)
        return GetLinesTop(count - 1) + m_nLineHeight;
    const int index = LineIndex(std::max(0, nLine));
    return PosFromChar(static_cast<UINT>(std::max(0, index))).y;
}

int CTalvorSyntaxEdit::GetCurrentLine() {
    long start, end;
    GetSel(start, end);
    if (start == end)
        return static_cast<int>(LineFromChar(end));
    return m_nCurLine;
}

void CTalvorSyntaxEdit::GetSelection() {
    long start, end;
    GetSel(start, end);
    m_ptSelStart = PosFromChar(static_cast<UINT>(start));
    m_ptSelEnd = PosFromChar(static_cast<UINT>(end));
}

void CTalvorSyntaxEdit::GetSelLine(int& nFirst, int& nLast) {
    long start, end;
    GetSel(start, end);
    nFirst = static_cast<int>(LineFromChar(start));
    nLast = static_cast<int>(LineFromChar(end));
    if (end > 0 && LineFromChar(end - 1) < nLast)
        --nLast;
    nLast = std::max(nLast, nFirst);
}

void CTalvorSyntaxEdit::SetLeftMargin() {
    if (m_bShowLineNumber)
        m_nLeftMargin = m_nDigitWidth * m_nLineNumberDigits + m_nGutterWidth + 4;
    else
        m_nLeftMargin = m_nGutterWidth;
    GetClientRect(&m_rcClient);
    CRect format = m_rcClient;
    format.left = m_nLeftMargin;
    if (m_bShowReturnLineToken && m_nWrapMode == 1)
        format.right -= 12;
    CRect before;
    GetRect(&before);
    SendMessage(EM_SETRECT, 0, reinterpret_cast<LPARAM>(static_cast<LPCRECT>(format)));
    if (!GetSafeHwnd())
        SetRect(format);
    // Wrapping changes with the width: in mode 1 always, and when the control wraps at the
    // window as soon as the width is another.
    if (m_nWrapMode == 1 || (IsWrapping() && before.Width() != format.Width()))
        ResetParseCookie();
}

void CTalvorSyntaxEdit::SetCharWidth() {
    SetWindowText("8");
    m_nDigitWidth = std::max<int>(1, PosFromChar(1).x - PosFromChar(0).x);
    m_nGutterWidth = 15;
    SetWindowText(" ");
    m_nSpaceWidth = std::max<int>(1, PosFromChar(1).x - PosFromChar(0).x);
}

void CTalvorSyntaxEdit::SetLineHeight() {
    // A font given by its character height (negative) has the control's cell height as line
    // height; a line must be at least one pixel high.
    m_nLineHeight = m_lfFont.lfHeight > 0 ? m_lfFont.lfHeight : GetLineHeight();
    m_nLineHeight = std::max(1, m_nLineHeight);
}

void CTalvorSyntaxEdit::CalcHorzScrollPos() {
    if (m_nWrapMode == 1) {
        m_nHScrollPos = 0;
        return;
    }
    SCROLLINFO si;
    si.fMask = SIF_POS | SIF_TRACKPOS;
    GetScrollInfo(SB_HORZ, &si);
    m_nHScrollPos = m_bHScrollTracking ? si.nTrackPos : si.nPos;
}

void CTalvorSyntaxEdit::GotoLine(int nLine) {
    m_nLineCount = GetLineCount();
    nLine = std::min(nLine, m_nLineCount);
    const int target = nLine - 1 < 1 ? 0 : nLine - 1;
    const int first = GetFirstVisibleLine();
    const int visible = GetVisibleLineCount();
    if (target >= first && target < first + visible) {
        const int index = LineIndex(target);
        SetSel(index, index);
        PostMessage(WM_PAINT);
        return;
    }
    const int top = std::min(target, m_nLineCount - visible);
    LineScroll(std::max(0, top) - first);
    SetFocus();
}
