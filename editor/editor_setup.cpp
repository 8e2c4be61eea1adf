// Creation, the editor's font from the system's GUI font, font and tab size changes that keep
// the text, wrap modes, and the options that change the left margin.
#include "editor/syntax_edit.h"

#include "host/core/vp_aux_data.h"
#include "platform/app/registry_values.h"
#include "syntax/document_colourer.h"

#include <algorithm>
#include <cstring>

namespace {
constexpr const char* GuiFontKey =
    "SOFTWARE\\Microsoft\\Windows NT\\CurrentVersion\\GRE_Initialize";

// One value of the GUI font key, the key opened anew for it; false when it cannot be read.
bool ReadGuiFontValue(const char* name, BYTE (&buffer)[80], DWORD& size) {
    HKEY key = nullptr;
    if (RegOpenKeyEx(HKEY_LOCAL_MACHINE, GuiFontKey, 0, KEY_READ, &key) != ERROR_SUCCESS)
        return false;
    size = sizeof buffer;
    const bool ok = RegQueryValueEx(key, name, nullptr, nullptr, buffer, &size) == ERROR_SUCCESS;
    RegCloseKey(key);
    return ok;
}

DWORD StreamIntoString(DWORD_PTR cookie, BYTE* buf, LONG cb, LONG* pcb) {
    reinterpret_cast<std::string*>(cookie)->append(reinterpret_cast<char*>(buf),
                                                   static_cast<std::size_t>(cb));
    *pcb = cb;
    return 0;
}

struct StringReader {
    const std::string* text;
    std::size_t pos;
};
DWORD StreamFromString(DWORD_PTR cookie, BYTE* buf, LONG cb, LONG* pcb) {
    auto* reader = reinterpret_cast<StringReader*>(cookie);
    const std::size_t n =
        std::min<std::size_t>(static_cast<std::size_t>(cb), reader->text->size() - reader->pos);
    std::memcpy(buf, reader->text->data() + reader->pos, n);
    reader->pos += n;
    *pcb = static_cast<LONG>(n);
    return 0;
}
} // namespace

std::string CTalvorSyntaxEdit::TakeText() {
    std::string text;
    EDITSTREAM es;
    es.dwCookie = reinterpret_cast<DWORD_PTR>(&text);
    es.pfnCallback = StreamIntoString;
    StreamOut(SF_TEXT, es);
    return text;
}

void CTalvorSyntaxEdit::PutText(const std::string& text) {
    StringReader reader{&text, 0};
    EDITSTREAM es;
    es.dwCookie = reinterpret_cast<DWORD_PTR>(&reader);
    es.pfnCallback = StreamFromString;
    StreamIn(SF_TEXT, es);
}

BOOL CTalvorSyntaxEdit::PreCreateWindow(CREATESTRUCT& cs) {
    // The control's library is part of this one, so it is always there.
    cs.lpszClass = "RichEdit20A";
    return CRichEditCtrl::PreCreateWindow(cs);
}

int CTalvorSyntaxEdit::OnCreate(LPCREATESTRUCT cs) {
    if (CRichEditCtrl::OnCreate(cs) == -1)
        return -1;
    HideSelection(TRUE, FALSE);
    Initialize();
    return 0;
}

void CTalvorSyntaxEdit::OnDestroy() {
    DeleteAllocString();
    CRichEditCtrl::OnDestroy();
}

void CTalvorSyntaxEdit::Initialize() {
    ResetParseCookie();
    SelectLanguage(static_cast<int>(m_nLanguage));
    HideSelection(TRUE, FALSE);
    SetWrapMode(m_nWrapMode);
    SetUndoLimit(static_cast<UINT>(std::max(0, m_nUndoLimits)));
    SetAutoWordSelect(m_bAutoWordSelect);
    m_nWrapType = m_nWrapMode;
    WrapChanged();
    ResetParseCookie();
    ShowScrollBar(SB_HORZ, m_nWrapMode == 0);
    InitEditorFont();
    PostMessage(WM_PAINT);
}

void CTalvorSyntaxEdit::InitEditorFont() {
    LONG height = 10;
    BYTE charSet = 0;
    char face[LF_FACESIZE] = {};
    std::memcpy(face, CVPAuxData::Get().m_lfFont.lfFaceName, LF_FACESIZE - 1);

    BYTE buffer[80];
    DWORD size = 0;
    if (ReadGuiFontValue("GUIFont.Height", buffer, size) && size >= 4)
        std::memcpy(&height, buffer, 4);
    if (ReadGuiFontValue("GUIFont.CharSet", buffer, size) && size >= 4) {
        DWORD value = 0;
        std::memcpy(&value, buffer, 4);
        charSet = static_cast<BYTE>(value);
    }
    if (ReadGuiFontValue("GUIFont.Facename", buffer, size)) {
        // The value holds up to 80 bytes; the face name keeps what fits, zero-terminated.
        std::memset(face, 0, sizeof face);
        std::memcpy(face, buffer, std::min<std::size_t>(size, LF_FACESIZE - 1));
    }
    CDC screen;
    screen.CreateCompatibleDC(nullptr);
    const int dpi = screen.GetDeviceCaps(LOGPIXELSY);
    // MulDiv: the product in 64 bits, rounded half away from zero.
    const long long product = static_cast<long long>(height) * dpi;
    m_lfFont.lfHeight = static_cast<LONG>((product + (product >= 0 ? 36 : -36)) / 72);
    m_lfFont.lfCharSet = charSet;
    std::memcpy(m_lfFont.lfFaceName, face, LF_FACESIZE);
    m_lfFont.lfFaceName[LF_FACESIZE - 1] = '\0';

    SetWindowText("");
    SetMacroEditFont(m_lfFont);
    SetSynCtrlTabSize(m_nTabSize);
    SendMessage(EM_SETTEXTMODE, TM_PLAINTEXT | TM_MULTILEVELUNDO | TM_SINGLECODEPAGE);
}

void CTalvorSyntaxEdit::SetMacroEditFont(LOGFONT lf) {
    ResetParseCookie();
    SetSynCtrlFont(lf);
}

void CTalvorSyntaxEdit::SetSynCtrlFont(LOGFONT lf) {
    ShowWindow(SW_HIDE);
    const std::string text = TakeText();
    const BOOL modified = GetModify();
    m_font.DeleteObject();
    m_font.CreateFontIndirect(&lf);
    SendMessage(WM_SETFONT, reinterpret_cast<WPARAM>(&m_font), TRUE);
    m_lfFont = lf;
    SetCharWidth();
    SetLineHeight();
    SetLeftMargin();
    PutText(text);
    SetModify(modified);
    ShowWindow(SW_SHOW);
}

void CTalvorSyntaxEdit::SetSynCtrlTabSize(int nSize) {
    // A tab of no width would divide by zero below and in the painting.
    nSize = std::max(1, nSize);
    const std::string text = TakeText();
    const BOOL modified = GetModify();
    SetWindowText("\t");
    const int defaultTabWidth = std::max<int>(1, PosFromChar(1).x - PosFromChar(0).x);
    PARAFORMAT pf;
    GetParaFormat(pf);
    const long defaultStop = pf.rgxTabs[0] != 0 ? pf.rgxTabs[0] : 720;
    SetWindowText("");
    const auto stop = static_cast<LONG>(static_cast<double>(m_nDigitWidth) * defaultStop * nSize /
                                        defaultTabWidth);
    pf.dwMask = PFM_TABSTOPS;
    pf.cTabCount = MAX_TAB_STOPS;
    for (int i = 0; i < MAX_TAB_STOPS; ++i)
        pf.rgxTabs[i] = (i + 1) * stop;
    SetParaFormat(pf);
    m_nTabWidth = m_nDigitWidth * nSize;
    m_nTabSize = nSize;
    PutText(text);
    SetModify(modified);
}

void CTalvorSyntaxEdit::SetWrapMode(int nMode) {
    ShowWindow(SW_HIDE);
    m_nWrapMode = nMode;
    m_nWrapType = nMode;
    WrapChanged();
    ResetParseCookie();
    ShowWindow(SW_SHOW);
    ShowScrollBar(SB_HORZ, nMode == 0);
}

void CTalvorSyntaxEdit::WrapChanged() {
    if (m_nWrapType == 0)
        SetTargetDevice(nullptr, 1);
    else if (m_nWrapType == 2)
        SetTargetDevice(nullptr, 0);
}

void CTalvorSyntaxEdit::ShowLineNumber(int b) {
    ShowWindow(SW_HIDE);
    m_bShowLineNumber = b;
    SetLeftMargin();
    SetBackgroundColor(FALSE, b ? m_clrLinNumberBkColor : m_clrBkColor);
    if (m_nWrapMode == 1)
        ResetParseCookie();
    ShowWindow(SW_SHOW);
}

void CTalvorSyntaxEdit::ShowReturnLineToken(int b) {
    ShowWindow(SW_HIDE);
    m_bShowReturnLineToken = b;
    if (m_nWrapMode == 1) {
        SetLeftMargin();
        ResetParseCookie();
    }
    ShowWindow(SW_SHOW);
    SetFocus();
}

void CTalvorSyntaxEdit::SelectLanguage(int nLanguage) {
    SetLanguage(static_cast<UINT>(nLanguage));
    ReadColorInfo(nLanguage);
    LoadSynWord();
    ResetParseCookie();
    SendMessage(WM_PAINT);
}

void CTalvorSyntaxEdit::OnSize(UINT nType, int cx, int cy) {
    CRichEditCtrl::OnSize(nType, cx, cy);
    GetClientRect(&m_rcClient);
    m_pPaintBitmap.reset();
    SetLeftMargin();
    m_bCanPaint = 1;
    m_bRepaintAfterSize = 1;
    PostMessage(WM_PAINT);
}
