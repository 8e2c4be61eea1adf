// CString operations as the framework gives them, and AfxExtractSubString.
#include "platform/strings/cstring.h"

#include <cstring>
#include <gtest/gtest.h>

TEST(CStringFormat, PrintfFormatsOfTheLibrary) {
    CString s;
    s.Format("%ld", -40001L);
    EXPECT_EQ(s, "-40001");
    s.Format("0x%04x", 0x409u);
    EXPECT_EQ(s, "0x0409");
    const char* guidPart = "%#08.8x"; // the 0 flag is ignored beside a precision, as printf says
    s.Format(guidPart, 0x1234u);
    EXPECT_EQ(s, "0x00001234");
    s.Format("%s%d", "Copy", 2);
    EXPECT_EQ(s, "Copy2");
    s.Format("%s", std::string(1000, 'x').c_str()); // longer than the first buffer
    EXPECT_EQ(s.GetLength(), 1000);
    s.AppendFormat("-%d", 7);
    EXPECT_EQ(s.Right(2), "-7");
}

TEST(CStringTokenize, SkipsRunsOfDelimitersAndEndsWithMinusOne) {
    CString text(",, Alias,And,,Any,");
    int pos = 0;
    std::vector<std::string> pieces;
    for (CString token = text.Tokenize(",", pos); pos != -1; token = text.Tokenize(",", pos))
        pieces.push_back(token.Str());
    EXPECT_EQ(pieces, (std::vector<std::string>{" Alias", "And", "Any"}));
    EXPECT_EQ(pos, -1);

    pos = 2;
    EXPECT_EQ(CString("abcdef").Tokenize("", pos), "cdef"); // empty set: the rest, start stays
    EXPECT_EQ(pos, 2);
    pos = -5;
    EXPECT_EQ(CString("abc").Tokenize(",", pos), "");
    EXPECT_EQ(pos, -1);
    pos = 0;
    EXPECT_EQ(CString(",,,").Tokenize(",", pos), "");
    EXPECT_EQ(pos, -1);
}

TEST(CStringTrim, CharacterSetsAndWhiteSpace) {
    CString s(" \t x \r\n");
    EXPECT_EQ(CString(s).Trim(), "x");
    EXPECT_EQ(CString(s).TrimLeft(), "x \r\n");
    EXPECT_EQ(CString(s).TrimRight(), " \t x");
    EXPECT_EQ(CString("  a b  ").Trim(' '), "a b");
    EXPECT_EQ(CString("\t \tv\t ").Trim("\t "), "v");
    EXPECT_EQ(CString("xxyx").TrimLeft("xy"), "");
}

TEST(CStringEdit, PositionsAreClippedToTheText) {
    CString s("Sub Foo()");
    EXPECT_EQ(s.Mid(4, 3), "Foo");
    EXPECT_EQ(s.Mid(20), "");
    EXPECT_EQ(s.Mid(-3, 3), "Sub");
    EXPECT_EQ(s.Left(100), "Sub Foo()");
    EXPECT_EQ(s.Right(-1), "");
    EXPECT_EQ(s.Find("Foo", 5), -1);
    EXPECT_EQ(s.Find('(', 99), -1);
    EXPECT_EQ(s.FindOneOf("()"), 7);
    EXPECT_EQ(s.GetAt(99), '\0');

    CString e("a = b = c");
    EXPECT_EQ(e.Replace(" = ", "\t"), 2);
    EXPECT_EQ(e, "a\tb\tc");
    e.Delete(1, 100);
    EXPECT_EQ(e, "a");
    e.Insert(5, "bc");
    EXPECT_EQ(e, "abc");
    e.Insert(0, '>');
    EXPECT_EQ(e, ">abc");
    EXPECT_EQ(CString("a,b,c").Remove(','), 2);
    CString r("abc");
    r.MakeReverse();
    EXPECT_EQ(r, "cba");
    EXPECT_EQ(CString("Sub").CompareNoCase("sUB"), 0);
    EXPECT_LT(CString("A").Compare("a"), 0);
}

TEST(CStringBuffer, ReleaseBufferTakesTheLengthFromTheTerminator) {
    CString s;
    char* p = s.GetBuffer(10);
    std::strcpy(p, "abc");
    s.ReleaseBuffer();
    EXPECT_EQ(s.GetLength(), 3);
    p = s.GetBufferSetLength(2);
    s.ReleaseBuffer(2);
    EXPECT_EQ(s, "ab");
}

namespace {
struct PieceCase {
    const char* what;
    const char* text;
    int n;
    BOOL ok;
    const char* piece;
};
const PieceCase Pieces[] = {
    {"first piece", "If\nThen\nElse", 0, TRUE, "If"},
    {"middle piece", "If\nThen\nElse", 1, TRUE, "Then"},
    {"last piece", "If\nThen\nElse", 2, TRUE, "Else"},
    {"past the pieces", "If\nThen\nElse", 3, FALSE, ""},
    {"a final separator gives an empty piece", "If\nThen\n", 2, TRUE, ""},
    {"but nothing beyond it", "If\nThen\n", 3, FALSE, ""},
    {"empty text has one empty piece", "", 0, TRUE, ""},
    {"empty text has no second piece", "", 1, FALSE, ""},
    {"adjacent separators", "a\n\nb", 1, TRUE, ""},
    {"negative index", "a", -1, FALSE, ""},
};
} // namespace

TEST(AfxExtractSubString, PiecesOfALineList) {
    for (const PieceCase& c : Pieces) {
        SCOPED_TRACE(c.what);
        CString piece("junk");
        EXPECT_EQ(AfxExtractSubString(piece, c.text, c.n, '\n'), c.ok);
        EXPECT_EQ(piece, c.piece);
    }
    CString piece("junk");
    EXPECT_FALSE(AfxExtractSubString(piece, nullptr, 0, '\n'));
    EXPECT_TRUE(piece.IsEmpty());
    EXPECT_TRUE(AfxExtractSubString(piece, "a\tb", 1, '\t'));
    EXPECT_EQ(piece, "b");
}
