// The control as a window: creation, its messages, streams, formats and its own plain painting.
#include "platform/richedit/rich_edit_ctrl.h"

#include "platform/codepage/code_page.h"
#include "platform/window/input_state.h"

#include <algorithm>
#include <cstring>

const CRuntimeClass CRichEditCtrl::classCRichEditCtrl =
    MakeRuntimeClass<CRichEditCtrl>("CRichEditCtrl", 0xFFFF, &CWnd::classCWnd);

CRichEditCtrl::CRichEditCtrl() {
    m_measure.CreateCompatibleDC(nullptr);
    LOGFONT lf = talvor::platform::PointFontLogFont(100, "DejaVu Sans Mono");
    m_font.CreateFontIndirect(&lf);
    m_paras.emplace_back();
    RebuildMetrics();
}

CRichEditCtrl::~CRichEditCtrl() = default;

BOOL CRichEditCtrl::Create(DWORD style, const RECT& rect, CWnd* parent, UINT id) {
    if (!CWnd::Create("RichEdit20A", nullptr, style, rect, parent, id))
        return FALSE;
    return TRUE;
}

void CRichEditCtrl::SetFont(CFont* font, BOOL redraw) {
    LOGFONT lf{};
    if (!font || !font->GetLogFont(&lf))
        return;
    m_font.DeleteObject();
    m_font.CreateFontIndirect(&lf);
    RebuildMetrics();
    if (redraw)
        Invalidate(FALSE);
}

long CRichEditCtrl::StreamIn(int format, EDITSTREAM& es) {
    if (!es.pfnCallback || !(format & SF_TEXT))
        return 0;
    std::string text;
    BYTE block[4096];
    while (true) {
        LONG got = 0;
        es.dwError = es.pfnCallback(es.dwCookie, block, sizeof block, &got);
        if (es.dwError != 0 || got <= 0)
            break;
        text.append(reinterpret_cast<const char*>(block),
                    std::min<std::size_t>(static_cast<std::size_t>(got), sizeof block));
    }
    if (format & SFF_SELECTION) {
        long s, e;
        GetSel(s, e);
        Replace(s, e, text, true, false);
    } else {
        SetAllText(text);
        m_modified = false;
        Invalidate(FALSE);
    }
    return CountChars(text);
}

long CRichEditCtrl::StreamOut(int format, EDITSTREAM& es) {
    if (!es.pfnCallback || !(format & SF_TEXT))
        return 0;
    std::string text;
    if (format & SFF_SELECTION) {
        long s, e;
        GetSel(s, e);
        for (char c : Range(s, e)) {
            if (c == '\r')
                text += "\r\n";
            else
                text.push_back(c);
        }
    } else {
        text = AllText(true);
    }
    std::size_t pos = 0;
    while (pos < text.size()) {
        const LONG chunk = static_cast<LONG>(std::min<std::size_t>(text.size() - pos, 4096));
        LONG written = 0;
        es.dwError = es.pfnCallback(es.dwCookie, reinterpret_cast<BYTE*>(text.data() + pos), chunk,
                                    &written);
        if (es.dwError != 0 || written <= 0)
            break;
        pos += static_cast<std::size_t>(std::min(written, chunk));
    }
    return CountChars(std::string_view(text.data(), pos));
}

DWORD CRichEditCtrl::GetParaFormat(PARAFORMAT& pf) const {
    pf = m_para;
    pf.dwMask = PFM_TABSTOPS | PFM_ALIGNMENT;
    return pf.dwMask;
}

BOOL CRichEditCtrl::SetParaFormat(PARAFORMAT& pf) {
    if (pf.dwMask & PFM_TABSTOPS) {
        m_para.cTabCount = std::clamp<SHORT>(pf.cTabCount, 0, MAX_TAB_STOPS);
        std::copy_n(pf.rgxTabs, MAX_TAB_STOPS, m_para.rgxTabs);
        RelayoutAll();
        Invalidate(FALSE);
    }
    if (pf.dwMask & PFM_ALIGNMENT)
        m_para.wAlignment = pf.wAlignment;
    return TRUE;
}

DWORD CRichEditCtrl::GetSelectionCharFormat(CHARFORMAT2& cf) const {
    LOGFONT lf{};
    m_font.GetLogFont(&lf);
    cf = CHARFORMAT2{};
    cf.dwMask = CFM_BOLD | CFM_ITALIC | CFM_COLOR | CFM_SIZE | CFM_FACE | CFM_CHARSET;
    cf.dwEffects =
        CFE_AUTOCOLOR | (lf.lfWeight >= 700 ? CFE_BOLD : 0) | (lf.lfItalic ? CFE_ITALIC : 0);
    cf.yHeight = m_lineHeight * 1440 / 96;
    cf.bCharSet = lf.lfCharSet;
    cf.bPitchAndFamily = lf.lfPitchAndFamily;
    std::memcpy(cf.szFaceName, lf.lfFaceName, LF_FACESIZE);
    cf.szFaceName[LF_FACESIZE - 1] = '\0';
    cf.wWeight = static_cast<WORD>(lf.lfWeight);
    return cf.dwMask;
}

COLORREF CRichEditCtrl::SetBackgroundColor(BOOL useSystem, COLORREF color) {
    const COLORREF before = m_background;
    m_background = useSystem ? RGB(255, 255, 255) : color;
    Invalidate(FALSE);
    return before;
}

void CRichEditCtrl::KeyDown(UINT key) {
    const bool ctrl = GetKeyState(VK_CONTROL) < 0, shift = GetKeyState(VK_SHIFT) < 0;
    long s, e;
    GetSel(s, e);
    const int line = static_cast<int>(LineFromChar(m_selActive));
    switch (key) {
    case VK_LEFT:
        if (s != e && !shift)
            MoveCaret(s, false);
        else
            MoveCaret(ctrl ? WordStart(m_selActive) : m_selActive - 1, shift);
        break;
    case VK_RIGHT:
        if (s != e && !shift)
            MoveCaret(e, false);
        else
            MoveCaret(ctrl ? WordEnd(m_selActive) : m_selActive + 1, shift);
        break;
    case VK_UP:
    case VK_DOWN:
    case VK_PRIOR:
    case VK_NEXT: {
        const int step = key == VK_UP      ? -1
                         : key == VK_DOWN  ? 1
                         : key == VK_PRIOR ? -VisibleLines()
                                           : VisibleLines();
        if (key == VK_PRIOR || key == VK_NEXT)
            LineScroll(step);
        const int target = std::clamp(line + step, 0, GetLineCount() - 1);
        if (target == line)
            break;
        CPoint p = PosFromChar(static_cast<UINT>(m_selActive));
        p.y = m_format.top + (target - m_firstVisible) * m_lineHeight;
        MoveCaret(CharFromPos(p), shift);
        break;
    }
    case VK_HOME:
        MoveCaret(ctrl ? 0 : LineIndex(line), shift);
        break;
    case VK_END:
        MoveCaret(ctrl ? GetTextLength() : LineIndex(line) + LineLength(LineIndex(line)), shift);
        break;
    case VK_DELETE:
        if (IsReadOnly())
            break;
        if (s != e)
            Clear();
        else if (s < GetTextLength()) {
            Replace(s, s + 1, "", true, false);
            ScrollCaretIntoView();
        }
        break;
    case 'A':
        if (ctrl)
            SetSel(0, -1);
        break;
    case 'C':
    case VK_INSERT:
        if (ctrl)
            Copy();
        break;
    case 'X':
        if (ctrl)
            Cut();
        break;
    case 'V':
        if (ctrl)
            Paste();
        break;
    case 'Z':
        if (ctrl)
            Undo();
        break;
    case 'Y':
        if (ctrl)
            Redo();
        break;
    default:
        break;
    }
}

void CRichEditCtrl::CharIn(UINT ch) {
    if (IsReadOnly())
        return;
    const bool ctrl = GetKeyState(VK_CONTROL) < 0;
    long s, e;
    GetSel(s, e);
    if (ch == VK_BACK) {
        if (s != e)
            Clear();
        else if (s > 0) {
            Replace(s - 1, s, "", true, false);
            ScrollCaretIntoView();
        }
        return;
    }
    std::string bytes;
    if (ch == '\r' || ch == '\n') {
        bytes = "\r";
    } else if (ch == '\t') {
        bytes = "\t";
    } else if (ch < 0x20 || ch == 0x7F || (ctrl && ch < 0x80 && !std::isprint(int(ch)))) {
        return;
    } else if (ch > 0xFF) {
        bytes.push_back(static_cast<char>((ch >> 8) & 0xFF));
        bytes.push_back(static_cast<char>(ch & 0xFF));
    } else {
        // A multi-byte character may come one byte per message.
        m_pending.push_back(static_cast<char>(ch));
        const auto lead = static_cast<unsigned char>(m_pending[0]);
        std::size_t need = 1;
        if (talvor::platform::IsLeadByte(lead))
            need = talvor::platform::SystemCodePage() != talvor::platform::CodePageUtf8 ? 2
                   : lead >= 0xF0                                                       ? 4
                   : lead >= 0xE0                                                       ? 3
                                                                                        : 2;
        if (m_pending.size() < need)
            return;
        bytes.swap(m_pending);
        m_pending.clear();
    }
    Replace(s, e, bytes, true, bytes != "\r");
    ScrollCaretIntoView();
}

void CRichEditCtrl::Scroll(int bar, UINT code, int thumb) {
    if (bar == SB_VERT) {
        int first = m_firstVisible;
        switch (code) {
        case SB_LINEUP:
            --first;
            break;
        case SB_LINEDOWN:
            ++first;
            break;
        case SB_PAGEUP:
            first -= VisibleLines();
            break;
        case SB_PAGEDOWN:
            first += VisibleLines();
            break;
        case SB_THUMBTRACK:
        case SB_THUMBPOSITION:
            first = thumb / m_lineHeight;
            break;
        case SB_TOP:
            first = 0;
            break;
        case SB_BOTTOM:
            first = GetLineCount() - VisibleLines();
            break;
        default:
            return;
        }
        LineScroll(first - m_firstVisible);
        return;
    }
    int x = m_hScroll;
    const int step = std::max(1, m_byteWidth[' ']);
    switch (code) {
    case SB_LINELEFT:
        x -= step;
        break;
    case SB_LINERIGHT:
        x += step;
        break;
    case SB_PAGELEFT:
        x -= m_format.Width();
        break;
    case SB_PAGERIGHT:
        x += m_format.Width();
        break;
    case SB_THUMBTRACK:
    case SB_THUMBPOSITION:
        x = thumb;
        break;
    case SB_LEFT:
        x = 0;
        break;
    case SB_RIGHT:
        x = GetScrollLimit(SB_HORZ);
        break;
    default:
        return;
    }
    SCROLLINFO si;
    si.fMask = SIF_POS | SIF_TRACKPOS;
    si.nPos = std::max(0, x);
    si.nTrackPos = si.nPos;
    SetScrollInfo(SB_HORZ, &si);
    m_hScroll = GetScrollPos(SB_HORZ);
    Invalidate(FALSE);
}

void CRichEditCtrl::PaintSelf() {
    CPaintDC dc(this);
    CRect client;
    GetClientRect(&client);
    dc.FillSolidRect(&client, m_background);
    dc.SelectObject(&m_font);
    long s, e;
    GetSel(s, e);
    const int lines = GetLineCount();
    for (int line = m_firstVisible; line < lines; ++line) {
        const int y = m_format.top + (line - m_firstVisible) * m_lineHeight;
        if (y >= m_format.bottom)
            break;
        int para, first, last;
        LineSpan(line, para, first, last);
        const std::string& text = m_paras[para].text;
        std::size_t pos = static_cast<std::size_t>(ByteOfChar(text, first));
        long cp = ParaStart(para) + first;
        int x = 0;
        for (int k = first; k < last && pos < text.size(); ++k, ++cp) {
            const std::size_t length = talvor::platform::CharLengthAt(text, pos);
            const bool tab = text[pos] == '\t';
            const int w = tab ? TabStop(x) - x : CharWidth(text.data() + pos, int(length));
            const bool selected = !m_hideSelection && cp >= s && cp < e;
            dc.SetBkColor(selected ? RGB(0, 0, 0) : m_background);
            dc.SetTextColor(selected ? RGB(255, 255, 255) : RGB(0, 0, 0));
            if (tab)
                dc.FillSolidRect(m_format.left + x - m_hScroll, y, w, m_lineHeight,
                                 selected ? RGB(0, 0, 0) : m_background);
            else
                dc.TextOut(m_format.left + x - m_hScroll, y, text.data() + pos, int(length));
            x += w;
            pos += length;
        }
    }
}

LRESULT CRichEditCtrl::DefWindowProc(UINT message, WPARAM wParam, LPARAM lParam) {
    switch (message) {
    case WM_CREATE: {
        const auto* cs = reinterpret_cast<const CREATESTRUCT*>(lParam);
        if (cs && (cs->style & (WS_HSCROLL | ES_AUTOHSCROLL)))
            m_wrapWidth = 1;
        if (cs && (cs->style & ES_READONLY))
            m_options |= ECO_READONLY;
        return 0;
    }
    case WM_SIZE:
        if (!m_formatSet) {
            GetClientRect(&m_format);
            RelayoutAll();
        }
        return 0;
    case WM_SETTEXT:
        SetAllText(lParam ? reinterpret_cast<const char*>(lParam) : "");
        m_modified = false;
        Invalidate(FALSE);
        return TRUE;
    case WM_GETTEXTLENGTH:
        return static_cast<LRESULT>(AllText(true).size());
    case WM_GETTEXT: {
        if (!lParam || wParam == 0)
            return 0;
        const std::string text = AllText(true);
        const std::size_t n = std::min<std::size_t>(wParam - 1, text.size());
        std::memcpy(reinterpret_cast<char*>(lParam), text.data(), n);
        reinterpret_cast<char*>(lParam)[n] = '\0';
        return static_cast<LRESULT>(n);
    }
    case WM_SETFONT:
        SetFont(reinterpret_cast<CFont*>(wParam), static_cast<BOOL>(lParam));
        return 0;
    case WM_PAINT:
        PaintSelf();
        return 0;
    case WM_KEYDOWN:
        KeyDown(static_cast<UINT>(wParam));
        return 0;
    case WM_CHAR:
        CharIn(static_cast<UINT>(wParam));
        return 0;
    case WM_LBUTTONDOWN: {
        SetFocus();
        const CPoint p(GET_X_LPARAM(lParam), GET_Y_LPARAM(lParam));
        MoveCaret(CharFromPos(p), (wParam & MK_SHIFT) != 0);
        m_dragging = true;
        return 0;
    }
    case WM_MOUSEMOVE:
        if (m_dragging && (wParam & MK_LBUTTON))
            MoveCaret(CharFromPos(CPoint(GET_X_LPARAM(lParam), GET_Y_LPARAM(lParam))), true);
        return 0;
    case WM_LBUTTONUP:
        m_dragging = false;
        return 0;
    case WM_LBUTTONDBLCLK: {
        const long at = CharFromPos(CPoint(GET_X_LPARAM(lParam), GET_Y_LPARAM(lParam)));
        const long start = WordStart(std::min(at + 1, GetTextLength()));
        m_selAnchor = std::min(start, at);
        m_selActive = WordEnd(m_selAnchor);
        Invalidate(FALSE);
        return 0;
    }
    case WM_VSCROLL:
    case WM_HSCROLL:
        Scroll(message == WM_VSCROLL ? SB_VERT : SB_HORZ, LOWORD(wParam), HIWORD(wParam));
        return 0;
    case WM_COPY:
        Copy();
        return 0;
    case WM_CUT:
        Cut();
        return 0;
    case WM_PASTE:
        Paste();
        return 0;
    case WM_CLEAR:
        Clear();
        return 0;
    case WM_UNDO:
    case EM_UNDO:
        return Undo();
    case EM_REDO:
        return Redo();
    case EM_CANUNDO:
        return CanUndo();
    case EM_CANREDO:
        return CanRedo();
    case EM_EMPTYUNDOBUFFER:
        EmptyUndoBuffer();
        return 0;
    case EM_SETUNDOLIMIT:
        return SetUndoLimit(static_cast<UINT>(wParam));
    case EM_GETSEL: {
        long s, e;
        GetSel(s, e);
        if (wParam)
            *reinterpret_cast<DWORD*>(wParam) = static_cast<DWORD>(s);
        if (lParam)
            *reinterpret_cast<DWORD*>(lParam) = static_cast<DWORD>(e);
        return MAKELPARAM(s, e);
    }
    case EM_SETSEL:
        SetSel(static_cast<long>(static_cast<std::intptr_t>(wParam)), static_cast<long>(lParam));
        return 0;
    case EM_EXGETSEL:
        if (lParam)
            GetSel(*reinterpret_cast<CHARRANGE*>(lParam));
        return 0;
    case EM_EXSETSEL:
        if (lParam)
            SetSel(*reinterpret_cast<CHARRANGE*>(lParam));
        return std::max(m_selAnchor, m_selActive);
    case EM_GETRECT:
        GetRect(reinterpret_cast<LPRECT>(lParam));
        return 0;
    case EM_SETRECT:
        SetRect(reinterpret_cast<LPCRECT>(lParam));
        return 0;
    case EM_LINESCROLL:
        LineScroll(static_cast<int>(lParam), static_cast<int>(static_cast<std::intptr_t>(wParam)));
        return TRUE;
    case EM_SCROLLCARET:
        ScrollCaretIntoView();
        return 0;
    case EM_GETMODIFY:
        return GetModify();
    case EM_SETMODIFY:
        SetModify(static_cast<BOOL>(wParam));
        return 0;
    case EM_GETLINECOUNT:
        return GetLineCount();
    case EM_LINEINDEX:
        return LineIndex(static_cast<int>(static_cast<std::intptr_t>(wParam)));
    case EM_LINELENGTH:
        return LineLength(static_cast<int>(static_cast<std::intptr_t>(wParam)));
    case EM_LINEFROMCHAR:
    case EM_EXLINEFROMCHAR:
        return LineFromChar(static_cast<long>(lParam ? lParam : static_cast<LPARAM>(wParam)));
    case EM_GETLINE: {
        // The first WORD of the buffer holds its size, as with the framework's message.
        if (!lParam)
            return 0;
        auto* buffer = reinterpret_cast<char*>(lParam);
        WORD room = 0;
        std::memcpy(&room, buffer, sizeof room);
        return GetLine(static_cast<int>(wParam), buffer, room);
    }
    case EM_REPLACESEL:
        ReplaceSel(reinterpret_cast<LPCTSTR>(lParam), static_cast<BOOL>(wParam));
        return 0;
    case EM_GETFIRSTVISIBLELINE:
        return GetFirstVisibleLine();
    case EM_SETREADONLY:
        return SetReadOnly(static_cast<BOOL>(wParam));
    case EM_POSFROMCHAR: {
        // Rich edit form: wParam points at the POINTL that receives the position.
        const CPoint p = PosFromChar(static_cast<UINT>(lParam));
        if (wParam)
            *reinterpret_cast<POINT*>(wParam) = p;
        return 0;
    }
    case EM_CHARFROMPOS:
        return lParam ? CharFromPos(*reinterpret_cast<const POINT*>(lParam)) : 0;
    case EM_HIDESELECTION:
        HideSelection(static_cast<BOOL>(wParam), static_cast<BOOL>(lParam));
        return 0;
    case EM_SETBKGNDCOLOR:
        return SetBackgroundColor(static_cast<BOOL>(wParam), static_cast<COLORREF>(lParam));
    case EM_SETTARGETDEVICE:
        return SetTargetDevice(reinterpret_cast<HDC>(wParam), static_cast<long>(lParam));
    case EM_GETOPTIONS:
        return GetOptions();
    case EM_SETOPTIONS:
        SetOptions(static_cast<WORD>(wParam), static_cast<DWORD>(lParam));
        return GetOptions();
    case EM_SETTEXTMODE:
        // Only an empty control changes its mode; plain text is the only kind kept anyway.
        if (GetTextLength() != 0)
            return 1;
        m_textMode = static_cast<UINT>(wParam);
        return 0;
    case EM_GETTEXTMODE:
        return m_textMode;
    case EM_STREAMIN:
        return lParam ? StreamIn(static_cast<int>(wParam), *reinterpret_cast<EDITSTREAM*>(lParam))
                      : 0;
    case EM_STREAMOUT:
        return lParam ? StreamOut(static_cast<int>(wParam), *reinterpret_cast<EDITSTREAM*>(lParam))
                      : 0;
    case EM_GETPARAFORMAT:
        return lParam ? GetParaFormat(*reinterpret_cast<PARAFORMAT*>(lParam)) : 0;
    case EM_SETPARAFORMAT:
        return lParam ? SetParaFormat(*reinterpret_cast<PARAFORMAT*>(lParam)) : 0;
    case EM_GETCHARFORMAT:
        return lParam ? GetSelectionCharFormat(*reinterpret_cast<CHARFORMAT2*>(lParam)) : 0;
    case EM_GETSELTEXT: {
        const CString text = GetSelText();
        if (lParam)
            std::memcpy(reinterpret_cast<char*>(lParam), text.GetString(), text.GetLength() + 1);
        return text.GetLength();
    }
    case EM_GETTEXTRANGE: {
        auto* range = reinterpret_cast<TEXTRANGE*>(lParam);
        if (!range || !range->lpstrText)
            return 0;
        const std::string text =
            Range(range->chrg.cpMin, range->chrg.cpMax < 0 ? GetTextLength() : range->chrg.cpMax);
        std::memcpy(range->lpstrText, text.c_str(), text.size() + 1);
        return static_cast<LRESULT>(text.size());
    }
    case EM_CANPASTE:
        return CanPaste();
    default:
        return CWnd::DefWindowProc(message, wParam, lParam);
    }
}
