// Display lines as the parser sees them, the selection's lines, going to a line, and the
// cookie cache against a full re-parse.
#include "tests/editor/editor_fixture.h"

#include "syntax/document_colourer.h"

#include <algorithm>
#include <cstdio>
#include <unistd.h>

namespace {

using Lines = EditorTest;

TEST_F(Lines, LineStringsEndInABlankAndTellHardEnds) {
    Create();
    SetText("Dim a\r\n\r\n");
    edit.m_nLineCount = edit.GetLineCount();
    CString str;
    EXPECT_EQ(edit.GetLineString(0, str), 1);
    EXPECT_EQ(str, CString("Dim a "));
    EXPECT_EQ(edit.GetLineString(1, str), 1);
    EXPECT_EQ(str, CString(" "));
    EXPECT_EQ(edit.GetLineString(2, str), 0) << "the empty last line";
    EXPECT_EQ(str, CString(" "));
    EXPECT_EQ(edit.GetLineString(3, str), 1);
    EXPECT_TRUE(str.IsEmpty());

    edit.SetWrapMode(2);
    SetText("alpha beta gamma delta epsilon zeta eta theta iota kappa lambda mu nu xi omicron pi");
    edit.m_nLineCount = edit.GetLineCount();
    ASSERT_GT(edit.m_nLineCount, 1);
    EXPECT_EQ(edit.GetLineString(0, str), 0) << "a soft wrap is no hard end";
}

TEST_F(Lines, SelectionLinesAndGoingToALine) {
    Create();
    std::string text;
    for (int i = 0; i < 100; ++i)
        text += "line " + std::to_string(i) + "\r\n";
    SetText(text);
    int first = -1, last = -1;
    edit.SetSel(edit.LineIndex(3), edit.LineIndex(4));
    edit.GetSelLine(first, last);
    EXPECT_EQ(first, 3);
    EXPECT_EQ(last, 3) << "a selection ending at a line's start does not reach it";
    edit.SetSel(edit.LineIndex(3) + 2, edit.LineIndex(5) + 1);
    edit.GetSelLine(first, last);
    EXPECT_EQ(last, 5);

    edit.GotoLine(0);
    EXPECT_EQ(edit.GetFirstVisibleLine(), 0);
    edit.GotoLine(-7);
    EXPECT_EQ(edit.GetFirstVisibleLine(), 0);
    edit.GotoLine(1000);
    EXPECT_EQ(edit.GetFirstVisibleLine(), edit.GetLineCount() - edit.GetVisibleLineCount());
    edit.GotoLine(edit.GetFirstVisibleLine() + 2);
    long s, e;
    edit.GetSel(s, e);
    EXPECT_EQ(s, edit.LineIndex(edit.GetFirstVisibleLine() + 1)) << "a visible line gets the caret";
}

// The cookie at the end of each line as a parse of the whole text gives it.
std::vector<unsigned long> FullParse(CTalvorSyntax& syntax, const std::string& text) {
    talvor::syntax::DocumentColourer colourer(syntax);
    colourer.SetAppendBlank(true);
    std::vector<unsigned long> cookies;
    colourer.ColourText(text, [&](const talvor::syntax::ColouredLine& line) {
        cookies.push_back(line.cookieAtEnd);
    });
    return cookies;
}

TEST_F(Lines, ABlockCommentShowsBelowWhetherScrolledOrJumpedTo) {
    Create(400, 60);
    edit.SelectLanguage(8);
    std::string text = "int a;\r\nint b;\r\n/* open\r\n";
    for (int i = 0; i < 60; ++i)
        text += "inside " + std::to_string(i) + "\r\n";
    text += "*/ int c;";
    SetText(text);
    edit.SetSel(0, 0);
    edit.GotoLine(1000);
    edit.SendMessage(WM_PAINT);
    edit.GotoLine(4);
    edit.SendMessage(WM_PAINT);
    const auto expected = FullParse(edit, text);
    ASSERT_EQ(static_cast<int>(expected.size()), edit.m_nCookieCount);
    for (int line = 0; line < edit.m_nCookieCount; ++line)
        EXPECT_EQ(edit.GetParseCookie(line), expected[line]) << line;
    EXPECT_TRUE(edit.GetParseCookie(3) & 0x04);
}

TEST_F(Lines, InsertingLinesForgetsOnlyTheCookiesFromTheChange) {
    Create(400, 40);
    std::string text;
    for (int i = 0; i < 100; ++i)
        text += "x" + std::to_string(i) + "\r\n";
    SetText(text);
    edit.SetSel(0, 0);
    Paint();
    edit.GetParseCookie(100);
    for (int line = 0; line <= 100; ++line)
        ASSERT_NE(edit.m_pParseCookie[line], 0xFFFFFFFFu) << line;
    edit.SetSel(edit.LineIndex(58), edit.LineIndex(58));
    edit.ReplaceSel("new\r\nnew\r\n", TRUE);
    ASSERT_EQ(edit.GetCurrentLine(), 60);
    Paint();
    ASSERT_EQ(edit.m_nCookieCount, 103);
    for (int line = 0; line < 58; ++line)
        EXPECT_NE(edit.m_pParseCookie[line], 0xFFFFFFFFu) << line;
    const int visibleEnd = edit.GetFirstVisibleLine() + edit.GetVisibleLineCount() + 1;
    for (int line = visibleEnd; line < 103; ++line)
        EXPECT_EQ(edit.m_pParseCookie[line], 0xFFFFFFFFu) << line;

    edit.SetSel(0, -1);
    edit.ReplaceSel("", TRUE);
    edit.m_nCurLine = 50; // the caret was far below the new last line
    edit.SendMessage(WM_PAINT);
    EXPECT_EQ(edit.m_nCookieCount, 1);
}

TEST_F(Lines, TheWordAtTheCaret) {
    Create();
    SetText("  abc_def  x\r\n_tail");
    edit.SetSel(4, 4);
    EXPECT_EQ(edit.GetCursorString(), CString("abc_def"));
    edit.SetSel(9, 9);
    EXPECT_EQ(edit.GetCursorString(), CString("abc_def")) << "the caret behind the word";
    edit.SetSel(10, 10);
    EXPECT_EQ(edit.GetCursorString(), CString(""));
    edit.SetSel(3, 5);
    EXPECT_EQ(edit.GetCursorString(), CString("bc"));
    edit.SetSel(3, 17);
    EXPECT_EQ(edit.GetCursorString(), CString("tail")) << "a leading underscore is dropped";
}

} // namespace

namespace {

TEST_F(Lines, FileContextTellsSixteenBitTextByItsFirstByte) {
    Create();
    const std::string path = "/tmp/talvor-editor-file-" + std::to_string(::getpid());
    auto write = [&](const std::string& bytes) {
        std::FILE* f = std::fopen(path.c_str(), "wb");
        std::fwrite(bytes.data(), 1, bytes.size(), f);
        std::fclose(f);
    };
    write(std::string("\xFF\xFE"
                      "a\0b\0c",
                      7));
    EXPECT_EQ(edit.GetFileContext(path.c_str()), CString("ab")) << "the odd last byte is lost";
    write(std::string("\xFE\xFF"
                      "a\0b",
                      5));
    EXPECT_EQ(edit.GetFileContext(path.c_str()).GetLength(), 3) << "8-bit text up to the zero";
    write("");
    EXPECT_TRUE(edit.GetFileContext(path.c_str()).IsEmpty());
    CString name(path.c_str());
    EXPECT_EQ(edit.IsFileExist(name), 1);
    std::remove(path.c_str());
    EXPECT_EQ(edit.IsFileExist(name), 0);
    CString empty;
    EXPECT_EQ(edit.IsFileExist(empty), 0);
}

} // namespace

namespace {

// Every known cookie agrees with a parse of all display lines from the first, the cookie
// carried over hard and soft line ends.
void ExpectCacheMatchesFullParse(TestEdit& edit) {
    edit.m_nLineCount = edit.GetLineCount();
    talvor::syntax::DocumentColourer colourer(edit);
    ASSERT_EQ(edit.m_nLineCount, edit.m_nCookieCount);
    CString line;
    int hardEnd = 1;
    unsigned long end = 0;
    for (int k = 0; k < edit.m_nLineCount; ++k) {
        const unsigned long start = k == 0 ? 0 : colourer.CookieForNextLine(end, hardEnd != 0);
        hardEnd = edit.GetLineString(k, line);
        end = colourer.CookieAtEnd(start, line);
        if (edit.m_pParseCookie[k] != 0xFFFFFFFFu)
            EXPECT_EQ(edit.m_pParseCookie[k], end) << k;
    }
}

int UnknownCookies(const TestEdit& edit) {
    return static_cast<int>(std::count(
        edit.m_pParseCookie.get(), edit.m_pParseCookie.get() + edit.m_nCookieCount, 0xFFFFFFFFu));
}

// Idle rounds until the editor wants no more; how many rounds it took.
int RunIdle() {
    LONG round = 0;
    while (AfxIdle(round))
        ++round;
    return static_cast<int>(round) + 1;
}

TEST_F(Lines, IdleTimeWorksOutTheCookiesNoPaintNeededYet) {
    Create(400, 40);
    edit.SelectLanguage(8);
    // Block comments and strings across many lines, so a wrong start cookie shows.
    std::string text;
    for (int i = 0; i < 20000; ++i) {
        if (i % 997 == 3)
            text += "/* opens here\r\n";
        else if (i % 997 == 40)
            text += "closes */ int x" + std::to_string(i) + " = \"s\";\r\n";
        else
            text += "a" + std::to_string(i) + " = b; // note\r\n";
    }
    SetText(text);
    edit.SetSel(0, 0);
    Paint();
    ASSERT_GT(UnknownCookies(edit), 19000) << "a paint of the top knows only the top";
    EXPECT_GE(RunIdle(), 3) << "the work comes in slices, not in one long round";
    EXPECT_EQ(UnknownCookies(edit), 0);
    ExpectCacheMatchesFullParse(edit);
    EXPECT_EQ(edit.m_pParseCookie[1020] & 0x04, 0x04u) << "inside the second comment";
    EXPECT_EQ(edit.m_pParseCookie[1100] & 0x04, 0u) << "behind it";

    // A comment opened near the top: the change forgets the cookies below it, the paint
    // brings back the visible ones, idle time the rest, now inside the new comment.
    edit.SetSel(edit.LineIndex(1), edit.LineIndex(1));
    edit.ReplaceSel("/*", TRUE);
    Paint();
    EXPECT_GT(UnknownCookies(edit), 19000);
    RunIdle();
    EXPECT_EQ(UnknownCookies(edit), 0);
    ExpectCacheMatchesFullParse(edit);
    EXPECT_EQ(edit.m_pParseCookie[2] & 0x04, 0x04u);

    // New lines wait for the paint that brings the cache in step; idle time does nothing
    // before it.
    edit.SetSel(edit.LineIndex(1), edit.LineIndex(1));
    edit.ReplaceSel("x;\r\ny;\r\n", TRUE);
    EXPECT_FALSE(AfxIdle(0));
    EXPECT_EQ(edit.m_nCookieCount, 20001) << "untouched until the paint";
    Paint();
    EXPECT_EQ(edit.m_nCookieCount, 20003);
    RunIdle();
    EXPECT_EQ(UnknownCookies(edit), 0);
    ExpectCacheMatchesFullParse(edit);

    // A jump to the end after idle time finds the cookies above the view known.
    edit.GotoLine(20003);
    Paint();
    EXPECT_EQ(UnknownCookies(edit), 0);
    ExpectCacheMatchesFullParse(edit);
}

// Found by the fuzz target: a change above the view left the cookies below it as they were.
TEST_F(Lines, AChangeAboveTheViewIsNotCarriedByStaleCookies) {
    Create(400, 40);
    edit.SelectLanguage(8);
    std::string text = "/* start\r\n";
    for (int i = 0; i < 30; ++i)
        text += "x" + std::to_string(i) + ";\r\n";
    SetText(text);
    edit.SetSel(0, 0);
    edit.GotoLine(30);
    edit.SendMessage(WM_PAINT);
    ExpectCacheMatchesFullParse(edit);
    edit.SetSel(0, 2);
    edit.ReplaceSel("", TRUE);
    edit.GotoLine(30);
    edit.SendMessage(WM_PAINT);
    ExpectCacheMatchesFullParse(edit);
    EXPECT_EQ(edit.GetParseCookie(20) & 0x04, 0u);
}

TEST_F(Lines, ANewWrappingWidthStartsTheCacheAfresh) {
    Create(400, 120);
    edit.SetWrapMode(2);
    edit.SelectLanguage(8);
    SetText("int a = \"a long string that wraps somewhere along the way\"; /* and a comment "
            "that goes on */ int b;\r\nint c;");
    edit.SetSel(0, 0);
    edit.SendMessage(WM_PAINT);
    ExpectCacheMatchesFullParse(edit);
    edit.MoveWindow(0, 0, 150, 120);
    AfxPumpMessages();
    edit.SendMessage(WM_PAINT);
    ExpectCacheMatchesFullParse(edit);
}

} // namespace
