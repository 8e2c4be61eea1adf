// Settings, colours per language, the state record, fonts from the GUI font description and
// changes of font, tab size and wrap mode that keep the text.
#include "tests/editor/editor_fixture.h"

#include "platform/app/profile.h"
#include "platform/files/archive.h"
#include "platform/files/file.h"

#include <cstring>

namespace {

using Settings = EditorTest;

TEST_F(Settings, ColourIndicesOutsideTheTableGiveNormalAndSetNothing) {
    edit.SetColor(2, RGB(9, 9, 9));
    for (int index : {16, -1, 18})
        EXPECT_EQ(edit.GetColor(index), RGB(9, 9, 9)) << index;
    CTalvorSyntaxEdit fresh;
    for (int i = 0; i < 18; ++i)
        fresh.SetColor(16, RGB(7, 7, 7));
    for (int i = 0; i < 18; ++i)
        EXPECT_NE(fresh.GetColor(i), RGB(7, 7, 7)) << i;
    fresh.SetColor(17, RGB(1, 1, 1));
    EXPECT_EQ(fresh.m_clrBKSelText, RGB(1, 1, 1));
    fresh.SetColor(9, RGB(2, 2, 2));
    EXPECT_EQ(fresh.m_clrBkCurLine, RGB(2, 2, 2));
}

TEST_F(Settings, ProfileValuesAreReadClampedAndColoursStayWithTheirLanguage) {
    CWinApp* app = AfxGetApp();
    app->WriteProfileInt(EditorFontSection, "m_nUndoLimits", -5);
    app->WriteProfileInt(EditorFontSection, "m_nTabSize", 8);
    app->WriteProfileInt(EditorFontSection, "m_nLanguage", 3);
    const std::string basic = std::string(EditorColorSection) + "Basic";
    app->WriteProfileInt(basic.c_str(), "m_clrBkColor", 0x123456);
    edit.ReadSettings();
    EXPECT_EQ(edit.m_nUndoLimits, 0);
    EXPECT_EQ(edit.GetTabSize(), 8);
    EXPECT_EQ(edit.m_clrBkColor, 0x123456u);
    Create();
    edit.SelectLanguage(8);
    EXPECT_EQ(edit.m_clrBkColor, CTalvorSyntax().m_clrBkColor) << "no leak from Basic";

    edit.SetColor(0, RGB(4, 5, 6));
    edit.WriteSettings();
    const std::string cpp = std::string(EditorColorSection) + "C++";
    EXPECT_EQ(app->GetProfileInt(cpp.c_str(), "m_clrCommentColor", 0), RGB(4, 5, 6));
    EXPECT_EQ(app->GetProfileInt(EditorFontSection, "m_nLanguage", 0), 8u);
    app->WriteProfileString(EditorFontSection, nullptr, nullptr);
    app->WriteProfileString(basic.c_str(), nullptr, nullptr);
    app->WriteProfileString(cpp.c_str(), nullptr, nullptr);
}

TEST_F(Settings, TheStateRecordHas104BytesWithTheLiveWordSelection) {
    Create();
    edit.m_bAutoWordSelect = 0;
    edit.SetAutoWordSelect(1);
    edit.ShowCross(1);
    CMemFile file;
    {
        CArchive ar(&file, CArchive::store);
        edit.SerializeState(ar);
        ar.Close();
    }
    const std::string& data = file.Data();
    ASSERT_EQ(data.size(), 104u);
    auto at = [&](int offset) {
        std::int32_t v;
        std::memcpy(&v, data.data() + offset, 4);
        return v;
    };
    EXPECT_EQ(at(4), 1);  // line numbers
    EXPECT_EQ(at(20), 1); // cross
    EXPECT_EQ(at(28), 3); // language
    EXPECT_EQ(at(32), 4); // tab size
    EXPECT_EQ(at(36), 1) << "the live option, not m_bAutoWordSelect";
    EXPECT_EQ(at(40), 100);
    EXPECT_EQ(at(44), edit.m_lfFont.lfHeight);
    EXPECT_EQ(std::string(data.data() + 72), std::string(edit.m_lfFont.lfFaceName));

    CMemFile source(data.data(), static_cast<UINT>(data.size()));
    CArchive in(&source, CArchive::load);
    edit.ShowCross(0);
    edit.SerializeState(in);
    EXPECT_EQ(edit.IsShowCross(), 0) << "loading reads nothing";
}

TEST_F(Settings, TheFontComesFromTheGuiFontDescriptionOrItsDefaults) {
    talvor::platform::DeleteRegistryKey(HKEY_LOCAL_MACHINE, "");
    Create();
    EXPECT_EQ(edit.m_lfFont.lfHeight, 13) << "10 points at 96 pixels per inch";
    EXPECT_EQ(edit.m_lfFont.lfCharSet, 0);
    EXPECT_STREQ(edit.m_lfFont.lfFaceName, "DejaVu Sans Mono");
    EXPECT_EQ(edit.m_nLineHeight, 13);
    EXPECT_EQ(edit.GetLineHeight(), 13) << "the control lays out lines as they are painted";

    TestEdit other;
    talvor::platform::SetRegistryDword(HKEY_LOCAL_MACHINE, FontKey, "GUIFont.Height", 12);
    talvor::platform::SetRegistryString(HKEY_LOCAL_MACHINE, FontKey, "GUIFont.Facename",
                                        "DejaVu Sans");
    ASSERT_TRUE(other.Create(WS_CHILD | WS_VISIBLE, RECT{0, 0, 100, 100}, nullptr, 2));
    EXPECT_EQ(other.m_lfFont.lfHeight, 16);
    EXPECT_STREQ(other.m_lfFont.lfFaceName, "DejaVu Sans");
}

TEST_F(Settings, FontAndTabChangesKeepTextAndModifiedState) {
    Create();
    SetText("a\tb\r\nline two");
    edit.SetModify(TRUE);
    LOGFONT lf = edit.GetMacroEditFont();
    lf.lfHeight = 20;
    edit.SetMacroEditFont(lf);
    EXPECT_TRUE(edit.GetModify());
    CString text;
    edit.GetWindowText(text);
    EXPECT_EQ(text, CString("a\tb\r\nline two"));
    EXPECT_EQ(edit.m_nLineHeight, 20);
    edit.SetModify(FALSE);
    edit.SetSynCtrlTabSize(2);
    EXPECT_FALSE(edit.GetModify());
    edit.GetWindowText(text);
    EXPECT_EQ(text, CString("a\tb\r\nline two"));
    EXPECT_EQ(edit.m_nTabWidth, 2 * edit.m_nDigitWidth);
    EXPECT_EQ(edit.PosFromChar(2).x, edit.m_nLeftMargin + edit.m_nTabWidth)
        << "the control's tab is the painted one";
}

TEST_F(Settings, WrapModesSwitchTheControlsWrappingAndTheScrollBar) {
    Create();
    edit.SetWrapMode(2);
    EXPECT_TRUE(edit.IsWrapping());
    EXPECT_FALSE(edit.IsScrollBarVisible(SB_HORZ));
    edit.SetWrapMode(0);
    EXPECT_FALSE(edit.IsWrapping());
    EXPECT_TRUE(edit.IsScrollBarVisible(SB_HORZ));
    edit.SetWrapMode(1);
    EXPECT_FALSE(edit.IsWrapping()) << "mode 1 leaves the control as it stands";
    EXPECT_EQ(edit.GetWrapMode(), 1);
}

} // namespace
