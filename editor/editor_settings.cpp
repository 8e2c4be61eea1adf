// The editor's defaults, its colour index table, settings in the application profile and the
// state record.
#include "editor/syntax_edit.h"

#include "platform/app/profile.h"
#include "platform/files/archive.h"

#include <algorithm>
#include <cstring>

const CRuntimeClass CTalvorSyntaxEdit::classCTalvorSyntaxEdit = MakeRuntimeClass<CTalvorSyntaxEdit>(
    "CTalvorSyntaxEdit", 0xFFFF, &CRichEditCtrl::classCRichEditCtrl);

namespace {

// The colours in the order they are written to the profile, with their key names.
struct ColourKey {
    const char* name;
    COLORREF CTalvorSyntax::*member;
};
constexpr ColourKey ColourKeys[] = {
    {"m_clrBkColor", &CTalvorSyntax::m_clrBkColor},
    {"m_clrCommentColor", &CTalvorSyntax::m_clrCommentColor},
    {"m_clrSyntaxColor", &CTalvorSyntax::m_clrSyntaxColor},
    {"m_clrNormalColor", &CTalvorSyntax::m_clrNormalColor},
    {"m_clrStringColor", &CTalvorSyntax::m_clrStringColor},
    {"m_clrCharColor", &CTalvorSyntax::m_clrCharColor},
    {"m_clrNumberColor", &CTalvorSyntax::m_clrNumberColor},
    {"m_clrUnderLine", &CTalvorSyntax::m_clrUnderLine},
    {"m_clrBkCurLine", &CTalvorSyntax::m_clrBkCurLine},
    {"m_clrLineEnd", &CTalvorSyntax::m_clrLineEnd},
    {"m_clrLinNumberBkColor", &CTalvorSyntax::m_clrLinNumberBkColor},
    {"m_clrLinNumberNormal", &CTalvorSyntax::m_clrLinNumberNormal},
    {"m_clrCurLinNumber", &CTalvorSyntax::m_clrCurLinNumber},
    {"m_clrLinNumberSep", &CTalvorSyntax::m_clrLinNumberSep},
    {"m_clrCross", &CTalvorSyntax::m_clrCross},
    {"m_clrTab", &CTalvorSyntax::m_clrTab},
    {"m_clrBKSelText", &CTalvorSyntax::m_clrBKSelText},
};

// Index table of GetColor and SetColor; null for 16, which has no colour.
constexpr COLORREF CTalvorSyntax::*IndexedColours[18] = {
    &CTalvorSyntax::m_clrCommentColor,
    &CTalvorSyntax::m_clrSyntaxColor,
    &CTalvorSyntax::m_clrNormalColor,
    &CTalvorSyntax::m_clrNumberColor,
    &CTalvorSyntax::m_clrStringColor,
    &CTalvorSyntax::m_clrCharColor,
    &CTalvorSyntax::m_clrBkColor,
    &CTalvorSyntax::m_clrUnderLine,
    &CTalvorSyntax::m_clrLineEnd,
    &CTalvorSyntax::m_clrBkCurLine,
    &CTalvorSyntax::m_clrLinNumberBkColor,
    &CTalvorSyntax::m_clrLinNumberNormal,
    &CTalvorSyntax::m_clrCurLinNumber,
    &CTalvorSyntax::m_clrLinNumberSep,
    &CTalvorSyntax::m_clrCross,
    &CTalvorSyntax::m_clrTab,
    nullptr,
    &CTalvorSyntax::m_clrBKSelText,
};

void WriteLong(CArchive& ar, LONG value) {
    ar << value;
}

} // namespace

CTalvorSyntaxEdit::CTalvorSyntaxEdit()
    : m_nHScrollPos(0), m_nMarkCount(0), m_nMarkLine{}, m_bShowTabSpace(0), m_nLineNumberDigits(0),
      m_bShowCross(0), m_bAutoWordSelect(0), m_nUndoLimits(100), m_bShowReturnLineToken(0),
      m_nLineCount(0), m_bHScrollTracking(0), m_nTabWidth(1), m_nSpaceWidth(1), m_nGutterWidth(0),
      m_bShowLineNumber(1), m_bPrevHardEnd(1), m_bShowSelectLine(0), m_bShowUnderLine(0),
      m_nCurLine(0), m_nCookieCount(0), m_lfFont{}, m_nDigitWidth(1), m_nLineHeight(17),
      m_nWrapMode(0), m_nTabSize(4), m_nLeftMargin(1), m_bRepaintAfterSize(0), m_bModified(0),
      m_nHScrollMax(0), m_bCanPaint(1), m_nWrapType(0) {
    m_lfFont.lfHeight = -12;
    m_lfFont.lfOrientation = 4;
    m_lfFont.lfWeight = 400;
    m_lfFont.lfOutPrecision = 1;
    m_lfFont.lfQuality = 2;
    m_lfFont.lfPitchAndFamily = 0x22;
    std::strcpy(m_lfFont.lfFaceName, "System");
}

CTalvorSyntaxEdit::~CTalvorSyntaxEdit() = default;

void CTalvorSyntaxEdit::SetColor(int nIndex, unsigned long clr) {
    if (nIndex < 0 || nIndex > 17 || !IndexedColours[nIndex])
        return;
    this->*IndexedColours[nIndex] = static_cast<COLORREF>(clr);
}

unsigned long CTalvorSyntaxEdit::GetColor(int nIndex) {
    if (nIndex < 0 || nIndex > 17 || !IndexedColours[nIndex])
        return m_clrNormalColor;
    return this->*IndexedColours[nIndex];
}

void CTalvorSyntaxEdit::ReadSettings() {
    CWinApp* app = AfxGetApp();
    auto read = [&](const char* key, int def) {
        return static_cast<int>(app->GetProfileInt(EditorFontSection, key, def));
    };
    m_nWrapMode = read("m_nWrapMode", 0);
    m_bShowLineNumber = read("m_bShowLineNumber", 1);
    m_bShowSelectLine = read("m_bShowSelectLine", 0);
    m_bShowUnderLine = read("m_bShowUnderLine", 0);
    m_bShowReturnLineToken = read("m_bShowReturnLineToken", 0);
    m_bShowCross = read("m_bShowCross", 0);
    m_bShowTabSpace = read("m_bShowTabSpace", 0);
    m_nLanguage = static_cast<UINT>(read("m_nLanguage", 3));
    m_nTabSize = read("m_nTabSize", 4);
    m_bAutoWordSelect = read("m_bAutoWordSelect", 0);
    m_nUndoLimits = std::max(0, read("m_nUndoLimits", 100));
    ReadColorInfo(static_cast<int>(m_nLanguage));
}

void CTalvorSyntaxEdit::ReadColorInfo(int) {
    const CString section = CString(EditorColorSection) + GetStringShowByLanguage();
    const CTalvorSyntax defaults;
    CWinApp* app = AfxGetApp();
    for (const ColourKey& key : ColourKeys)
        this->*key.member = static_cast<COLORREF>(app->GetProfileInt(
            section.GetString(), key.name, static_cast<int>(defaults.*key.member)));
}

void CTalvorSyntaxEdit::WriteSettings() {
    CWinApp* app = AfxGetApp();
    auto write = [&](const char* key, int value) {
        app->WriteProfileInt(EditorFontSection, key, value);
    };
    write("m_nWrapMode", m_nWrapMode);
    write("m_bShowLineNumber", m_bShowLineNumber);
    write("m_bShowSelectLine", m_bShowSelectLine);
    write("m_bShowUnderLine", m_bShowUnderLine);
    write("m_bShowReturnLineToken", m_bShowReturnLineToken);
    write("m_bShowCross", m_bShowCross);
    write("m_bShowTabSpace", m_bShowTabSpace);
    write("m_nLanguage", static_cast<int>(m_nLanguage));
    write("m_nTabSize", m_nTabSize);
    write("m_bAutoWordSelect", IsAutoWordSelect());
    write("m_nUndoLimits", m_nUndoLimits);
    const CString section = CString(EditorColorSection) + GetStringShowByLanguage();
    for (const ColourKey& key : ColourKeys)
        app->WriteProfileInt(section.GetString(), key.name, static_cast<int>(this->*key.member));
}

void CTalvorSyntaxEdit::SerializeState(CArchive& ar) {
    if (!ar.IsStoring())
        return;
    for (int value : {m_nWrapMode, m_bShowLineNumber, m_bShowSelectLine, m_bShowUnderLine,
                      m_bShowReturnLineToken, m_bShowCross, m_bShowTabSpace,
                      static_cast<int>(m_nLanguage), m_nTabSize, IsAutoWordSelect(), m_nUndoLimits})
        WriteLong(ar, value);
    // The platform's 8-bit LOGFONT: five 32-bit numbers, eight bytes, a 32-byte face name.
    for (LONG value : {m_lfFont.lfHeight, m_lfFont.lfWidth, m_lfFont.lfEscapement,
                       m_lfFont.lfOrientation, m_lfFont.lfWeight})
        WriteLong(ar, value);
    for (BYTE value : {m_lfFont.lfItalic, m_lfFont.lfUnderline, m_lfFont.lfStrikeOut,
                       m_lfFont.lfCharSet, m_lfFont.lfOutPrecision, m_lfFont.lfClipPrecision,
                       m_lfFont.lfQuality, m_lfFont.lfPitchAndFamily})
        ar << value;
    ar.Write(m_lfFont.lfFaceName, LF_FACESIZE);
}

void CTalvorSyntaxEdit::Serialize(CArchive& ar) {
    if (ar.IsStoring()) {
        const CString selection = GetSelText();
        ar.Write(selection.GetString(), static_cast<UINT>(selection.GetLength()));
        return;
    }
    char block[4096];
    while (ar.Read(block, sizeof block) == sizeof block) {
    }
}

int CTalvorSyntaxEdit::GetVisibleLineCount() {
    CRect client;
    GetClientRect(&client);
    return client.Height() / std::max(1, m_nLineHeight);
}

void CTalvorSyntaxEdit::SetUndoLimits(int n) {
    m_nUndoLimits = n;
    SetUndoLimit(static_cast<UINT>(std::max(0, n)));
}

int CTalvorSyntaxEdit::IsAutoWordSelect() {
    return (GetOptions() & ECO_AUTOWORDSELECTION) ? 1 : 0;
}

void CTalvorSyntaxEdit::SetAutoWordSelect(int b) {
    if ((b != 0) != (IsAutoWordSelect() != 0))
        SetOptions(ECOOP_XOR, ECO_AUTOWORDSELECTION);
}

CHARFORMAT2& CTalvorSyntaxEdit::GetCharFormatSelection() {
    GetSelectionCharFormat(m_cfSelection);
    return m_cfSelection;
}
