// Display lines: character widths from the control's font, tab stops, wrapping by pixel width,
// and the mapping between character positions and client pixels.
#include "platform/richedit/rich_edit_ctrl.h"

#include "platform/codepage/code_page.h"

#include <algorithm>

using talvor::platform::CharLengthAt;
using talvor::platform::IsLeadByte;

namespace {
constexpr int DefaultTabPixels = 48; // 720 twips at 96 pixels per inch
int TwipsToPixels(long twips) {
    return static_cast<int>(twips * 96 / 1440);
}
} // namespace

void CRichEditCtrl::RebuildMetrics() {
    m_measure.SelectObject(&m_font);
    for (int b = 0; b < 256; ++b) {
        const char c = static_cast<char>(b);
        m_byteWidth[b] = static_cast<int>(m_measure.GetTextExtent(&c, 1).cx);
    }
    TEXTMETRIC tm{};
    m_measure.GetTextMetrics(&tm);
    m_lineHeight = std::max<int>(1, tm.tmHeight);
    RelayoutAll();
}

int CRichEditCtrl::CharWidth(const char* p, int length) const {
    if (length == 1)
        return m_byteWidth[static_cast<unsigned char>(*p)];
    return static_cast<int>(m_measure.GetTextExtent(p, length).cx);
}

int CRichEditCtrl::TabStop(int x) const {
    const int count = std::clamp<int>(m_para.cTabCount, 0, MAX_TAB_STOPS);
    int last = 0, interval = DefaultTabPixels;
    for (int i = 0; i < count; ++i) {
        const int stop = TwipsToPixels(m_para.rgxTabs[i]);
        if (stop > x)
            return stop;
        interval = std::max(1, stop - last);
        last = stop;
    }
    return last + ((x - last) / interval + 1) * interval;
}

int CRichEditCtrl::WrapPixels() const {
    if (m_wrapWidth == 1)
        return 0;
    if (m_wrapWidth == 0)
        return std::max<int>(1, m_format.Width());
    return std::max(1, TwipsToPixels(m_wrapWidth));
}

void CRichEditCtrl::LayoutParagraph(Paragraph& para) const {
    para.wraps.clear();
    const std::string& text = para.text;
    const int limit = WrapPixels();
    const auto size = text.size();
    int x = 0, widest = 0, chars = 0;
    int lineStart = 0;        // character where the current display line starts
    std::size_t lineByte = 0; // its byte
    int breakChar = -1;       // character behind the last blank of the line
    std::size_t breakByte = 0;
    for (std::size_t pos = 0; pos < size;) {
        const char c = text[pos];
        const std::size_t length =
            static_cast<unsigned char>(c) < 0x80 ? 1 : CharLengthAt(text.data(), size, pos);
        const int w = c == '\t' ? TabStop(x) - x : CharWidth(text.data() + pos, int(length));
        if (limit && x + w > limit && chars > lineStart && c != ' ') {
            // Break behind the last blank of the line, or before this character.
            if (breakChar > lineStart) {
                chars = breakChar;
                pos = breakByte;
            }
            para.wraps.push_back(chars);
            widest = std::max(widest, x);
            lineStart = chars;
            lineByte = pos;
            breakChar = -1;
            x = 0;
            continue;
        }
        x += w;
        pos += length;
        ++chars;
        if (c == ' ' || c == '\t') {
            breakChar = chars;
            breakByte = pos;
        }
    }
    (void)lineByte;
    para.width = std::max(widest, x);
}

void CRichEditCtrl::RelayoutAll() {
    for (Paragraph& para : m_paras)
        LayoutParagraph(para);
    m_validFrom = 0;
    m_maxWidthStale = true;
    m_firstVisible = std::clamp(m_firstVisible, 0, std::max(0, GetLineCount() - 1));
    UpdateScrollBars();
}

int CRichEditCtrl::GetLineCount() const {
    EnsureStarts();
    return m_firstLines.back();
}

int CRichEditCtrl::LineOfLocation(Location loc) const {
    EnsureStarts();
    const auto& wraps = m_paras[loc.para].wraps;
    const auto k = std::upper_bound(wraps.begin(), wraps.end(), loc.offset) - wraps.begin();
    return m_firstLines[loc.para] + static_cast<int>(k);
}

void CRichEditCtrl::LineSpan(int line, int& para, int& first, int& last) const {
    EnsureStarts();
    line = std::clamp(line, 0, GetLineCount() - 1);
    // The paragraph of the last lookup or the one behind it, before searching them all.
    const int count = static_cast<int>(m_paras.size());
    const auto holds = [&](int p) {
        return p >= 0 && p < count && m_firstLines[p] <= line && line < m_firstLines[p + 1];
    };
    if (holds(m_spanPara)) {
        para = m_spanPara;
    } else if (holds(m_spanPara + 1)) {
        para = m_spanPara + 1;
    } else {
        const auto it = std::upper_bound(m_firstLines.begin(), m_firstLines.end() - 1, line);
        para = static_cast<int>(it - m_firstLines.begin()) - 1;
    }
    m_spanPara = para;
    const auto& wraps = m_paras[para].wraps;
    const int k = line - m_firstLines[para];
    first = k == 0 ? 0 : wraps[k - 1];
    last = k < static_cast<int>(wraps.size()) ? wraps[k] : m_paras[para].chars;
}

int CRichEditCtrl::LineIndex(int line) const {
    if (line < 0)
        line = static_cast<int>(LineFromChar(m_selActive));
    if (line >= GetLineCount())
        return -1;
    int para, first, last;
    LineSpan(line, para, first, last);
    return static_cast<int>(ParaStart(para) + first);
}

long CRichEditCtrl::LineFromChar(long charIndex) const {
    if (charIndex < 0)
        charIndex = m_selActive;
    return LineOfLocation(Locate(charIndex));
}

int CRichEditCtrl::LineLength(int charIndex) const {
    const long line = LineFromChar(charIndex);
    int para, first, last;
    LineSpan(static_cast<int>(line), para, first, last);
    return last - first;
}

CString CRichEditCtrl::GetLineText(int line) const {
    CString text;
    AppendLineText(line, text);
    return text;
}

void CRichEditCtrl::AppendLineText(int line, CString& text) const {
    if (line < 0 || line >= GetLineCount())
        return;
    int para, first, last;
    LineSpan(line, para, first, last);
    const std::string& source = m_paras[para].text;
    const bool paraEnd = last == m_paras[para].chars;
    const int from = ByteOfChar(source, first);
    const int to = paraEnd ? static_cast<int>(source.size()) : ByteOfChar(source, last);
    text.Append(source.data() + from, to - from);
    if (paraEnd && para + 1 < static_cast<int>(m_paras.size()))
        text.AppendChar('\r');
}

int CRichEditCtrl::GetLine(int line, LPTSTR buffer, int maxLength) const {
    if (!buffer || maxLength <= 0)
        return 0;
    const CString text = GetLineText(line);
    const int bytes = std::min(maxLength, text.GetLength());
    std::copy_n(text.GetString(), bytes, buffer);
    return CountChars(std::string_view(text.GetString(), bytes));
}

int CRichEditCtrl::XOfChar(const Paragraph& para, int lineFirst, int offset) const {
    const std::string& text = para.text;
    std::size_t pos = static_cast<std::size_t>(ByteOfChar(text, lineFirst));
    int x = 0;
    for (int k = lineFirst; k < offset && pos < text.size(); ++k) {
        const std::size_t length = CharLengthAt(text, pos);
        x += text[pos] == '\t' ? TabStop(x) - x : CharWidth(text.data() + pos, int(length));
        pos += length;
    }
    return x;
}

CPoint CRichEditCtrl::PosFromChar(UINT charIndex) const {
    const Location loc = Locate(static_cast<long>(std::min<UINT>(charIndex, 0x7FFFFFFF)));
    const int line = LineOfLocation(loc);
    int para, first, last;
    LineSpan(line, para, first, last);
    const int x = XOfChar(m_paras[para], first, loc.offset);
    return CPoint(m_format.left + x - m_hScroll,
                  m_format.top + (line - m_firstVisible) * m_lineHeight);
}

int CRichEditCtrl::CharFromPos(CPoint point) const {
    const int row = point.y >= m_format.top
                        ? (point.y - m_format.top) / m_lineHeight
                        : -((m_format.top - point.y + m_lineHeight - 1) / m_lineHeight);
    const int line = std::clamp(m_firstVisible + row, 0, GetLineCount() - 1);
    int para, first, last;
    LineSpan(line, para, first, last);
    const std::string& text = m_paras[para].text;
    const int target = point.x - m_format.left + m_hScroll;
    std::size_t pos = static_cast<std::size_t>(ByteOfChar(text, first));
    int x = 0, k = first;
    for (; k < last && pos < text.size(); ++k) {
        const std::size_t length = CharLengthAt(text, pos);
        const int w =
            text[pos] == '\t' ? TabStop(x) - x : CharWidth(text.data() + pos, int(length));
        if (target < x + w / 2)
            break;
        x += w;
        pos += length;
    }
    // A soft-wrapped line's end is the next line's start; the caret stays on this line.
    if (k == last && last < m_paras[para].chars && k > first)
        --k;
    return static_cast<int>(ParaStart(para) + k);
}

int CRichEditCtrl::VisibleLines() const {
    return std::max(1, m_format.Height() / m_lineHeight);
}

void CRichEditCtrl::UpdateScrollBars() {
    if (!GetSafeHwnd())
        return;
    SCROLLINFO si;
    si.fMask = SIF_RANGE | SIF_PAGE | SIF_POS;
    si.nMin = 0;
    si.nMax = std::max(0, GetLineCount() * m_lineHeight - 1);
    si.nPage = static_cast<UINT>(std::max(0, m_format.Height()));
    si.nPos = m_firstVisible * m_lineHeight;
    SetScrollInfo(SB_VERT, &si, FALSE);
    if (m_maxWidthStale) {
        m_maxWidth = 0;
        for (const Paragraph& para : m_paras)
            m_maxWidth = std::max(m_maxWidth, para.width);
        m_maxWidthStale = false;
    }
    si.nMax = std::max(0, m_maxWidth + m_byteWidth[' '] * 2);
    si.nPage = static_cast<UINT>(std::max(0, m_format.Width()));
    si.nPos = m_hScroll;
    SetScrollInfo(SB_HORZ, &si, FALSE);
    m_hScroll = GetScrollPos(SB_HORZ);
}

void CRichEditCtrl::ScrollCaretIntoView() {
    const int line = static_cast<int>(LineFromChar(m_selActive));
    const int visible = VisibleLines();
    if (line < m_firstVisible)
        m_firstVisible = line;
    else if (line >= m_firstVisible + visible)
        m_firstVisible = line - visible + 1;
    if (m_wrapWidth == 1) {
        int para, first, last;
        LineSpan(line, para, first, last);
        const int x = XOfChar(m_paras[para], first, Locate(m_selActive).offset);
        if (x < m_hScroll)
            m_hScroll = std::max(0, x - m_format.Width() / 3);
        else if (x >= m_hScroll + m_format.Width())
            m_hScroll = x - m_format.Width() * 2 / 3;
    }
    UpdateScrollBars();
}

void CRichEditCtrl::LineScroll(int lines, int chars) {
    const long long target = static_cast<long long>(m_firstVisible) + lines;
    m_firstVisible =
        static_cast<int>(std::clamp<long long>(target, 0, std::max(0, GetLineCount() - 1)));
    m_hScroll = std::max(0, m_hScroll + chars * std::max(1, m_byteWidth[' ']));
    UpdateScrollBars();
    Invalidate(FALSE);
}

void CRichEditCtrl::SetRect(LPCRECT rect) {
    if (!rect)
        return;
    m_format = *rect;
    m_formatSet = true;
    if (m_wrapWidth == 0)
        RelayoutAll();
    else
        UpdateScrollBars();
    Invalidate(FALSE);
}

void CRichEditCtrl::GetRect(LPRECT rect) const {
    if (rect)
        *rect = m_format;
}

BOOL CRichEditCtrl::SetTargetDevice(HDC, long lineWidth) {
    m_wrapWidth = std::max(0L, lineWidth);
    RelayoutAll();
    Invalidate(FALSE);
    return TRUE;
}
