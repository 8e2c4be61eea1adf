// The file and font dialogs answered without a screen, and the window update lock.
#include "platform/window/file_dialog.h"
#include "platform/window/font_dialog.h"

#include <gtest/gtest.h>

#include <cstring>
#include <string_view>

namespace {

using talvor::platform::FileDialogAnswer;
using talvor::platform::FontDialogAnswer;

TEST(FileDialog, DefaultAnswersAreGivenInTurnThenCancel) {
    talvor::platform::ClearFileDialogAnswers();
    CFileDialog dialog(TRUE, nullptr, "start.vbs", OFN_HIDEREADONLY, "A(*.a)|*.a|All|*.*||");
    EXPECT_EQ(std::string_view(dialog.m_ofn.lpstrFilter, 18),
              std::string_view("A(*.a)\0*.a\0All\0*.*\0\0", 18))
        << "the system's form has zero bytes for bars";
    talvor::platform::QueueFileDialogAnswer(FileDialogAnswer{IDOK, "/x/one.vbs", 2});
    talvor::platform::QueueFileDialogAnswer(FileDialogAnswer{IDCANCEL, "", 1});
    EXPECT_EQ(dialog.DoModal(), IDOK);
    EXPECT_EQ(dialog.GetPathName(), CString("/x/one.vbs"));
    EXPECT_EQ(dialog.GetFileName(), CString("one.vbs"));
    EXPECT_EQ(dialog.m_ofn.nFilterIndex, 2u);
    EXPECT_EQ(dialog.DoModal(), IDCANCEL);
    EXPECT_EQ(dialog.m_ofn.nFilterIndex, 1u) << "a cancelled dialog may still change the index";
    EXPECT_EQ(dialog.DoModal(), IDCANCEL) << "nothing queued";
    EXPECT_EQ(dialog.GetPathName(), CString("/x/one.vbs"));
}

TEST(FileDialog, AnInstalledHandlerTakesPrecedence) {
    talvor::platform::ClearFileDialogAnswers();
    talvor::platform::QueueFileDialogAnswer(FileDialogAnswer{IDOK, "/queued", -1});
    talvor::platform::SetFileDialogHandler([](CFileDialog& dialog) -> INT_PTR {
        dialog.SetPathName("/from/handler");
        return 42; // anything but OK counts as Cancel
    });
    CFileDialog dialog(FALSE);
    EXPECT_EQ(dialog.DoModal(), IDCANCEL);
    EXPECT_EQ(dialog.m_ofn.lpstrFilter, nullptr);
    talvor::platform::SetFileDialogHandler(nullptr);
    EXPECT_EQ(dialog.DoModal(), IDOK) << "the default is back";
    EXPECT_EQ(dialog.GetPathName(), CString("/queued"));
}

TEST(FontDialog, StartsFromACharacterFormat) {
    CHARFORMAT2 format;
    format.dwMask = CFM_SIZE | CFM_FACE | CFM_BOLD | CFM_ITALIC | CFM_CHARSET;
    format.dwEffects = CFE_BOLD;
    format.yHeight = 240; // 12 points
    format.bCharSet = 134;
    std::strcpy(format.szFaceName, "DejaVu Sans Mono");
    CFontDialog dialog(format, 0x803);
    EXPECT_EQ(dialog.m_cf.Flags, 0x803u | CF_INITTOLOGFONTSTRUCT);
    EXPECT_EQ(dialog.m_lf.lfHeight, -16) << "12 points at 96 pixels per inch";
    EXPECT_EQ(dialog.m_lf.lfWeight, 700);
    EXPECT_EQ(dialog.m_lf.lfItalic, 0);
    EXPECT_EQ(dialog.m_lf.lfCharSet, 134);
    EXPECT_EQ(dialog.GetFaceName(), CString("DejaVu Sans Mono"));
    EXPECT_EQ(dialog.GetSize(), 120);

    talvor::platform::ClearFontDialogAnswers();
    EXPECT_EQ(dialog.DoModal(), IDCANCEL);
    FontDialogAnswer answer;
    answer.result = IDOK;
    answer.font.lfHeight = -20;
    std::strcpy(answer.font.lfFaceName, "DejaVu Serif");
    talvor::platform::QueueFontDialogAnswer(answer);
    EXPECT_EQ(dialog.DoModal(), IDOK);
    LOGFONT chosen;
    dialog.GetCurrentFont(&chosen);
    EXPECT_EQ(chosen.lfHeight, -20);
    EXPECT_STREQ(chosen.lfFaceName, "DejaVu Serif");
    EXPECT_EQ(dialog.m_cf.iPointSize, 150);
}

TEST(WindowUpdateLock, HoldsPaintsBackUntilReleased) {
    struct Counting : CWnd {
        int paints = 0;
        void OnPaint() override {
            ++paints;
            CPaintDC dc(this);
        }
    } one, two;
    ASSERT_TRUE(one.Create(nullptr, nullptr, WS_VISIBLE, RECT{0, 0, 10, 10}, nullptr, 1));
    ASSERT_TRUE(two.Create(nullptr, nullptr, WS_VISIBLE, RECT{0, 0, 10, 10}, nullptr, 2));
    AfxPumpMessages();
    one.paints = 0;
    ASSERT_TRUE(one.LockWindowUpdate());
    EXPECT_FALSE(two.LockWindowUpdate()) << "one window at a time";
    one.Invalidate();
    AfxPumpMessages();
    one.SendMessage(WM_PAINT);
    EXPECT_EQ(one.paints, 0);
    one.UnlockWindowUpdate();
    AfxPumpMessages();
    EXPECT_EQ(one.paints, 1) << "the held-back paints come as one";
    EXPECT_TRUE(two.LockWindowUpdate());
    two.UnlockWindowUpdate();
    AfxPumpMessages();
    EXPECT_EQ(two.paints, 0) << "nothing was held back, so nothing is painted";
}

} // namespace
