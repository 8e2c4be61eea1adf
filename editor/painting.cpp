// Painting: the whole view is drawn into an off-screen bitmap (text with its colour runs,
// selection, tab and line-end marks, underlining, line numbers and marks, the cross hair) and
// copied to the window in one step. The control's own painting never shows.
#include "editor/syntax_edit.h"

#include "platform/codepage/code_page.h"
#include "syntax/document_colourer.h"

#include <algorithm>
#include <cstdio>
#include <cstring>

namespace {
COLORREF Inverse(COLORREF c) {
    return RGB(255 - (c & 0xFF), 255 - ((c >> 8) & 0xFF), 255 - ((c >> 16) & 0xFF));
}
int DecimalDigits(int n) {
    int digits = 0;
    for (; n > 0; n /= 10)
        ++digits;
    return digits;
}
void DrawLine(CDC* pDC, int x0, int y0, int x1, int y1, COLORREF colour) {
    CPen pen;
    pen.CreatePen(PS_SOLID, 1, colour);
    CPen* old = pDC->SelectObject(&pen);
    pDC->MoveTo(x0, y0);
    pDC->LineTo(x1, y1);
    pDC->SelectObject(old);
}
} // namespace

CFont& CTalvorSyntaxEdit::PaintFont() {
    if (!m_paintFont.Face() || std::memcmp(&m_paintFontSource, &m_lfFont, sizeof m_lfFont) != 0) {
        m_paintFont.DeleteObject();
        m_paintFont.CreateFontIndirect(&m_lfFont);
        m_paintFontSource = m_lfFont;
    }
    return m_paintFont;
}

void CTalvorSyntaxEdit::OnPaint() {
    CPaintDC dc(this);
    if (!m_bCanPaint)
        return;
    m_nLineCount = GetLineCount();
    m_nCurLine = GetCurrentLine();
    const int digits = DecimalDigits(m_nLineCount);
    if (digits != m_nLineNumberDigits) {
        m_nLineNumberDigits = digits;
        SetLeftMargin();
        PostMessage(WM_PAINT);
    }
    ResynchroniseCookies();

    GetClientRect(&m_rcClient);
    CDC memDC;
    memDC.CreateCompatibleDC(&dc);
    if (!m_pPaintBitmap) {
        m_pPaintBitmap = std::make_unique<CBitmap>();
        m_pPaintBitmap->CreateCompatibleBitmap(&dc, std::max(1, m_rcClient.Width()),
                                               std::max(1, m_rcClient.Height()));
    }
    CBitmap* oldBitmap = memDC.SelectObject(m_pPaintBitmap.get());
    GetSelection();
    CalcHorzScrollPos();

    const int first = GetFirstVisibleLine();
    CString above;
    m_bPrevHardEnd = first == 0 ? 1 : GetLineString(first - 1, above);
    const int L = m_nLeftMargin, G = m_nGutterWidth;
    memDC.FillSolidRect(L, m_rcClient.top, m_rcClient.right - L, m_rcClient.Height(), m_clrBkColor);

    CRect line(L - m_nHScrollPos, GetLinesTop(first), m_rcClient.right, 0);
    line.bottom = line.top + m_nLineHeight;
    int visible = 0;
    for (int top = line.top; top <= m_rcClient.bottom && first + visible < m_nLineCount;
         top += m_nLineHeight)
        ++visible;
    for (int k = 0; k < visible; ++k) {
        DrawSingleLineColorText(&memDC, first + k, line);
        line.OffsetRect(0, m_nLineHeight);
    }

    int filledRight;
    if (m_bShowLineNumber) {
        memDC.FillSolidRect(m_rcClient.left, m_rcClient.top, L - m_rcClient.left,
                            m_rcClient.Height(), m_clrBkColor);
        DrawLine(&memDC, L - G, m_rcClient.top, L - G, m_rcClient.bottom, m_clrLinNumberSep);
        memDC.FillSolidRect(m_rcClient.left, m_rcClient.top, L - G - m_rcClient.left,
                            m_rcClient.Height(), m_clrLinNumberBkColor);
        filledRight = L - G;
    } else {
        memDC.FillSolidRect(m_rcClient.left, m_rcClient.top, G - m_rcClient.left,
                            m_rcClient.Height(), m_clrBkColor);
        filledRight = G;
    }
    CRect numbers(m_rcClient.left, GetLinesTop(first), filledRight - 2, 0);
    numbers.bottom = numbers.top + m_nLineHeight;
    for (int k = 0; k < visible; ++k) {
        DrawLineNumber(&memDC, first + k, numbers);
        numbers.OffsetRect(0, m_nLineHeight);
    }
    if (m_bShowCross)
        DrawCross(&memDC);

    dc.BitBlt(m_rcClient.left, m_rcClient.top, m_rcClient.Width(), m_rcClient.Height(), &memDC, 0,
              0, SRCCOPY);
    memDC.SelectObject(oldBitmap);
    // The lines not painted get their cookies in idle time, so a later jump down is quick.
    RequestIdle();
    if (m_bRepaintAfterSize) {
        // Cleared first: the paint that UpdateWindow sends comes back here.
        m_bRepaintAfterSize = 0;
        Invalidate(TRUE);
        UpdateWindow();
    }
}

void CTalvorSyntaxEdit::DrawSingleLineColorText(CDC* pDC, int nLine, CRect rc) {
    COLORREF clrBk = m_clrBkColor;
    if (m_bShowSelectLine) {
        if (nLine == m_nCurLine && m_ptSelStart == m_ptSelEnd)
            clrBk = m_clrBkCurLine;
        pDC->FillSolidRect(&rc, clrBk);
    }
    CFont* oldFont = pDC->SelectObject(&PaintFont());
    CString str;
    const int hardEnd = GetLineString(nLine, str);
    const auto length = static_cast<std::size_t>(str.GetLength());
    if (m_runs.size() < 2 * length + 1)
        m_runs.resize(2 * length + 1);
    unsigned long cookie = GetParseCookie(nLine - 1);
    if (nLine > 0)
        cookie = CarriedCookie(cookie, m_bPrevHardEnd);
    else
        cookie = 0;
    m_bPrevHardEnd = hardEnd;
    int count = 0;
    const unsigned long end = ParseLine(cookie, str, m_runs.data(), count);
    if (m_pParseCookie && nLine >= 0 && nLine < m_nCookieCount)
        m_pParseCookie[nLine] = end;

    const int origin = rc.left;
    const int tabWidth = std::max(1, m_nTabWidth);
    int stops = 0, written = 0;
    const std::string_view text = str.View();
    for (int r = 0; r < count; ++r) {
        const auto from =
            static_cast<std::size_t>(std::clamp<int>(m_runs[r].m_nCharPos, 0, int(length)));
        const auto to = r + 1 < count ? static_cast<std::size_t>(std::clamp<int>(
                                            m_runs[r + 1].m_nCharPos, int(from), int(length)))
                                      : length;
        if (to <= from)
            continue;
        const COLORREF clrText = GetColor(m_runs[r].m_nColorIndex);
        std::string_view piece = text.substr(from, to - from);
        for (std::size_t tab; (tab = piece.find('\t')) != std::string_view::npos;) {
            CString before(piece.substr(0, tab));
            const int left = rc.left;
            JudgeInSeletioAndDrawText(pDC, rc, before, clrBk, clrText);
            written += rc.left - left;
            stops += written / tabWidth + 1;
            written = 0;
            const int gapLeft = rc.left;
            rc.left = origin + stops * tabWidth;
            if (IsStrInSelection(gapLeft, rc.top, 1) && IsStrInSelection(rc.left, rc.top, 0))
                pDC->FillSolidRect(gapLeft, rc.top, rc.left - gapLeft, rc.Height(), m_clrBKSelText);
            if (m_bShowTabSpace)
                DrawTabMark(pDC, gapLeft, rc);
            piece.remove_prefix(tab + 1);
        }
        CString rest(piece);
        const int left = rc.left;
        JudgeInSeletioAndDrawText(pDC, rc, rest, clrBk, clrText);
        written += rc.left - left;
    }
    if (m_bShowReturnLineToken)
        DrawReturnLineToken(m_bPrevHardEnd, pDC, rc);
    if (m_bShowUnderLine)
        DrawLine(pDC, origin, rc.bottom - 1, rc.right, rc.bottom - 1, m_clrUnderLine);
    pDC->SelectObject(oldFont);
}

void CTalvorSyntaxEdit::DrawTabMark(CDC* pDC, int x, const CRect& rc) {
    const int m = (rc.bottom - rc.top) / 2 + rc.top;
    for (int k = 0; k < 3; ++k) {
        pDC->SetPixel(x + 1 + k, m - 3 + k, m_clrTab);
        pDC->SetPixel(x + 4 + k, m - 3 + k, m_clrTab);
        pDC->SetPixel(x + 1 + k, m + 1 - k, m_clrTab);
        pDC->SetPixel(x + 4 + k, m + 1 - k, m_clrTab);
    }
}

void CTalvorSyntaxEdit::JudgeInSeletioAndDrawText(CDC* pDC, CRect& rc, CString& str, COLORREF clrBk,
                                                  COLORREF clrText) {
    if (str.IsEmpty())
        return;
    const CSize extent = pDC->GetTextExtent(str);
    const int y = rc.top + (rc.Height() - extent.cy) / 2;
    const int W = extent.cx;
    auto drawPlain = [&](const char* text, int bytes, int width, bool selected) {
        pDC->SetBkMode(OPAQUE);
        if (selected) {
            pDC->FillSolidRect(rc.left, rc.top, width, rc.Height(), m_clrBKSelText);
            pDC->SetBkColor(m_clrBKSelText);
            pDC->SetTextColor(Inverse(clrText));
        } else {
            pDC->SetBkColor(clrBk);
            pDC->SetTextColor(clrText);
        }
        pDC->TextOut(rc.left, y, text, bytes);
        rc.left += width;
    };
    if (!IsSelectionInStr(rc.left, W, rc.top)) {
        const int a = IsStrInSelection(rc.left, rc.top, 1);
        const int b = IsStrInSelection(rc.left + W, rc.top, 0);
        if (a == b) {
            drawPlain(str.GetString(), str.GetLength(), W, a != 0);
            return;
        }
    }
    const std::string_view text = str.View();
    for (std::size_t pos = 0; pos < text.size();) {
        const std::size_t n = std::max<std::size_t>(1, talvor::platform::CharLengthAt(text, pos));
        const int w = pDC->GetTextExtent(text.data() + pos, static_cast<int>(n)).cx;
        const bool selected =
            IsStrInSelection(rc.left, rc.top, 1) && IsStrInSelection(rc.left + w, rc.top, 0);
        drawPlain(text.data() + pos, static_cast<int>(n), w, selected);
        pos += n;
    }
}

int CTalvorSyntaxEdit::IsStrInSelection(int x, int y, int bStart) {
    if (m_ptSelStart == m_ptSelEnd)
        return 0;
    const int tolerance = m_nSpaceWidth / 2;
    x += bStart ? tolerance : -tolerance;
    if (m_ptSelStart.y == m_ptSelEnd.y)
        return y == m_ptSelStart.y && x >= m_ptSelStart.x && x <= m_ptSelEnd.x;
    if (y == m_ptSelStart.y)
        return x >= m_ptSelStart.x;
    if (y == m_ptSelEnd.y)
        return x < m_ptSelEnd.x;
    return y > m_ptSelStart.y && y < m_ptSelEnd.y;
}

int CTalvorSyntaxEdit::IsSelectionInStr(int x, int nWidth, int y) {
    return m_ptSelStart != m_ptSelEnd && m_ptSelStart.y == m_ptSelEnd.y && y == m_ptSelStart.y &&
           x < m_ptSelStart.x && m_ptSelEnd.x < x + nWidth;
}

void CTalvorSyntaxEdit::DrawReturnLineToken(int bHardEnd, CDC* pDC, CRect& rc) {
    rc.left -= 2 + m_nSpaceWidth;
    const int x = rc.left, h = rc.Height(), q = h / 4, b = rc.bottom - q;
    const COLORREF c = m_clrLineEnd;
    if (bHardEnd) {
        for (int y = rc.top + q + 2; y <= b; ++y)
            pDC->SetPixel(x + 5, y, c);
        pDC->SetPixel(x + 2, b - 3, c);
        pDC->SetPixel(x + 3, b - 2, c);
        pDC->SetPixel(x + 4, b - 1, c);
        pDC->SetPixel(x + 6, b - 1, c);
        pDC->SetPixel(x + 7, b - 2, c);
        pDC->SetPixel(x + 8, b - 3, c);
        return;
    }
    const int m = rc.top + h / 2;
    for (int px = x + 2; px <= x + 7; ++px)
        pDC->SetPixel(px, m, c);
    pDC->SetPixel(x + 7, m - 1, c);
    pDC->SetPixel(x + 7, m + 1, c);
    pDC->SetPixel(x + 6, m - 2, c);
    pDC->SetPixel(x + 6, m + 2, c);
    pDC->SetPixel(x + 5, m - 3, c);
    pDC->SetPixel(x + 5, m + 3, c);
}

void CTalvorSyntaxEdit::DrawLineNumber(CDC* pDC, int nLine, CRect rc) {
    const int y0 = rc.Height() / 2 + rc.top;
    const int x0 = m_bShowLineNumber ? rc.right + 1 : rc.left - 1;
    const int markCount = std::clamp(m_nMarkCount, 0, 256);
    for (int i = 0; i < markCount; ++i) {
        if (m_nMarkLine[i] != nLine + 1)
            continue;
        const COLORREF c = m_clrCurLinNumber;
        for (int k = 0; k <= 5; ++k) {
            pDC->SetPixel(x0 + 7 + k, y0 - k, c);
            pDC->SetPixel(x0 + 7 - k, y0 + k, c);
        }
        const int columns[7][3] = {{8, 0, 4},   {9, -1, 5}, {10, -2, 6}, {11, -3, 6},
                                   {12, -2, 6}, {13, 1, 5}, {14, 2, 3}};
        for (const auto& col : columns)
            for (int y = y0 + col[1]; y <= y0 + col[2]; ++y)
                pDC->SetPixel(x0 + col[0], y, c);
    }
    if (!m_bShowLineNumber)
        return;
    CFont* oldFont = pDC->SelectObject(&PaintFont());
    char format[16];
    std::snprintf(format, sizeof format, "%%0%d", m_nLineNumberDigits);
    std::string fmt = std::string(format) + "d";
    char number[32];
    std::snprintf(number, sizeof number, fmt.c_str(), nLine + 1);
    const COLORREF colour = nLine == m_nCurLine && m_ptSelStart == m_ptSelEnd
                                ? m_clrCurLinNumber
                                : m_clrLinNumberNormal;
    const CSize extent = pDC->GetTextExtent(number, static_cast<int>(std::strlen(number)));
    pDC->SetBkMode(TRANSPARENT);
    pDC->SetTextColor(colour);
    pDC->TextOut(rc.left, rc.top + (rc.Height() - extent.cy) / 2, number,
                 static_cast<int>(std::strlen(number)));
    pDC->SelectObject(oldFont);
}

void CTalvorSyntaxEdit::DrawCross(CDC* pDC) {
    if (m_ptSelStart != m_ptSelEnd)
        return;
    const int y = m_ptSelStart.y + m_nLineHeight;
    DrawLine(pDC, m_nLeftMargin, y, m_rcClient.Width(), y, m_clrCross);
    DrawLine(pDC, m_ptSelStart.x, 0, m_ptSelStart.x, m_rcClient.Height(), m_clrCross);
}

void CTalvorSyntaxEdit::OnHScroll(UINT nSBCode, UINT nPos, CScrollBar* pScrollBar) {
    InvalidateRect(nullptr, FALSE);
    m_bCanPaint = 0;
    CRichEditCtrl::OnHScroll(nSBCode, nPos, pScrollBar);
    m_bCanPaint = 1;
    ValidateRect(nullptr);
    m_bHScrollTracking = nSBCode == SB_THUMBPOSITION || nSBCode == SB_THUMBTRACK;
    SendMessage(WM_PAINT);
}

void CTalvorSyntaxEdit::OnVScroll(UINT nSBCode, UINT nPos, CScrollBar* pScrollBar) {
    InvalidateRect(nullptr, FALSE);
    m_bCanPaint = 0;
    CRichEditCtrl::OnVScroll(nSBCode, nPos, pScrollBar);
    m_bCanPaint = 1;
    ValidateRect(nullptr);
    SendMessage(WM_PAINT);
}
