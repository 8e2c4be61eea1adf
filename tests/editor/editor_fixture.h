// An editor window on a known font for the editor's tests, with access to the members the
// painting works from.
#pragma once

#include "editor/syntax_edit.h"
#include "platform/app/registry_values.h"
#include "platform/window/input_state.h"
#include "platform/window/wnd.h"

#include <gtest/gtest.h>

#include <string>

// Opens the protected members and operations to the tests.
class TestEdit : public CTalvorSyntaxEdit {
public:
    using CTalvorSyntaxEdit::DrawReturnLineToken;
    using CTalvorSyntaxEdit::IsSelectionInStr;
    using CTalvorSyntaxEdit::IsStrInSelection;
    using CTalvorSyntaxEdit::m_bAutoWordSelect;
    using CTalvorSyntaxEdit::m_bModified;
    using CTalvorSyntaxEdit::m_bShowLineNumber;
    using CTalvorSyntaxEdit::m_lfFont;
    using CTalvorSyntaxEdit::m_nCookieCount;
    using CTalvorSyntaxEdit::m_nCurLine;
    using CTalvorSyntaxEdit::m_nDigitWidth;
    using CTalvorSyntaxEdit::m_nGutterWidth;
    using CTalvorSyntaxEdit::m_nLeftMargin;
    using CTalvorSyntaxEdit::m_nLineCount;
    using CTalvorSyntaxEdit::m_nLineHeight;
    using CTalvorSyntaxEdit::m_nLineNumberDigits;
    using CTalvorSyntaxEdit::m_nMarkCount;
    using CTalvorSyntaxEdit::m_nMarkLine;
    using CTalvorSyntaxEdit::m_nSpaceWidth;
    using CTalvorSyntaxEdit::m_nTabWidth;
    using CTalvorSyntaxEdit::m_nUndoLimits;
    using CTalvorSyntaxEdit::m_nWrapMode;
    using CTalvorSyntaxEdit::m_pParseCookie;
    using CTalvorSyntaxEdit::m_ptSelEnd;
    using CTalvorSyntaxEdit::m_ptSelStart;
};

class EditorTest : public ::testing::Test {
protected:
    static constexpr const char* FontKey =
        "SOFTWARE\\Microsoft\\Windows NT\\CurrentVersion\\GRE_Initialize";
    void SetUp() override {
        talvor::platform::DeleteRegistryKey(HKEY_LOCAL_MACHINE, "");
        talvor::platform::SetRegistryString(HKEY_LOCAL_MACHINE, FontKey, "GUIFont.Facename",
                                            "DejaVu Sans Mono");
    }
    void TearDown() override {
        talvor::platform::DeleteRegistryKey(HKEY_LOCAL_MACHINE, "");
        talvor::platform::ReleaseAllKeys();
        AfxPumpMessages();
    }
    // Creates the window (400 x 200 unless given) with the options the test set before.
    void Create(int width = 400, int height = 200) {
        ASSERT_TRUE(edit.Create(WS_CHILD | WS_VISIBLE | WS_HSCROLL | WS_VSCROLL,
                                RECT{0, 0, width, height}, nullptr, 1));
        AfxPumpMessages();
    }
    void SetText(const std::string& text) {
        edit.SetWindowText(text.c_str());
        edit.ResetParseCookie();
    }
    // Paints as the window would, messages posted meanwhile included.
    const CBitmap& Paint() {
        AfxPumpMessages();
        edit.SendMessage(WM_PAINT);
        AfxPumpMessages();
        return edit.GetLastPaintedRaster();
    }
    COLORREF Pixel(int x, int y) { return edit.GetLastPaintedRaster().GetPixelColor(x, y); }
    // Pixels of the rectangle that have exactly this colour.
    int CountColour(const CRect& r, COLORREF colour) {
        int n = 0;
        for (int y = r.top; y < r.bottom; ++y)
            for (int x = r.left; x < r.right; ++x)
                n += Pixel(x, y) == colour;
        return n;
    }
    TestEdit edit;
};
